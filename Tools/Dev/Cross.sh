# Sourced by ../../dev: the word `cross`, the tests with another standard library and on other machines. What the
# presets leave out is labelled: `consumer` builds clients with the compiler of this machine, `host` starts programs of
# this machine, such as its compiler. Under qemu the differential test does fewer operations.
# shellcheck shell=bash

gCrossSteps=(libcxx aarch64 s390x)
gCrossPackages=(cmake ninja-build make clang-14 googletest
    libc++-14-dev libc++abi-14-dev g++-12-aarch64-linux-gnu g++-12-s390x-linux-gnu qemu-user-static)

step_libcxx() {
    run_workflow libcxx
}

step_aarch64() {
    run_workflow aarch64
}

step_s390x() {
    run_workflow s390x
}

word_cross() {
    require_packages "${gCrossPackages[@]}"
    run_steps cross "${gCrossSteps[*]}" "$@"
}
