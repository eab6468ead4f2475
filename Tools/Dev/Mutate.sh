# Sourced by ../../dev: whether the tests notice changes of the library.
# shellcheck shell=bash

word_mutate() {
    # shellcheck disable=SC2154 # ../../dev sets it
    require_packages "${gTestPackages[@]}" git python3
    show Tools/Mutate/mutate.py "$@"
}
