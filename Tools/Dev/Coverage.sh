# Sourced by ../../dev: what the tests reach.
# shellcheck shell=bash

# Old profiles are thrown away: they tell of code that may be gone.
word_coverage() {
    # shellcheck disable=SC2154 # ../../dev sets it
    require_packages "${gTestPackages[@]}" libclang-rt-14-dev llvm-14 python3
    show cmake --preset coverage
    show cmake --build --preset coverage
    rm -rf build/coverage/profiles
    show ctest --preset coverage
    show Tools/Coverage/report.py build/coverage
}
