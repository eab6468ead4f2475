# Sourced by ../../dev: the word `nightly`, which calls the words that take too long for every change, and the words
# `differential` and `secrets`, which are two of them.
# shellcheck shell=bash

# Words of the door with their arguments, in the order in which they run: what fails soonest comes first.
gNightly=(check 'check clang-release naming-tests analysis analyzer' cross coverage 'package --chroot' mutate 'differential 10000000' 'secrets 1000000'
    'fuzz 1200')

word_nightly() {
    local lEntry lStart
    local -a lOutcomes=() lFailed=()
    if [[ $# -gt 0 ]]; then
        echo "usage: ./dev nightly" >&2
        return 2
    fi
    printf './dev nightly runs, one after the other:\n'
    printf '  ./dev %s\n' "${gNightly[@]}"
    for lEntry in "${gNightly[@]}"; do
        printf '\n==== ./dev %s\n' "$lEntry"
        lStart=$SECONDS
        # shellcheck disable=SC2086 # a word and its arguments
        if "$PWD/dev" $lEntry; then
            lOutcomes+=("passed")
        else
            lOutcomes+=("FAILED with status $?")
            lFailed+=("$lEntry")
        fi
        lOutcomes[-1]="$lEntry: ${lOutcomes[-1]} ($((SECONDS - lStart)) s)"
    done
    printf '\nnightly:\n'
    printf '  %s\n' "${lOutcomes[@]}"
    [[ ${#lFailed[@]} -eq 0 ]]
}

# The library against the plain implementation, by many more random operations than the test does by default.
word_differential() {
    local lOperations=${1:-1000000}
    if [[ $# -gt 1 || ! $lOperations =~ ^[1-9][0-9]*$ ]]; then
        echo "usage: ./dev differential [OPERATIONS]" >&2
        return 2
    fi
    require_packages g++-12 cmake ninja-build libgtest-dev
    show cmake --preset release
    show cmake --build --preset release --target DifferentialTest
    show env TALBASE_DIFFERENTIAL_OPERATIONS="$lOperations" build/release/Tests/Contract/DifferentialTest
}

# The tool with texts that hold secrets, by many more of them than the test does by default.
word_secrets() {
    local lTexts=${1:-1000000}
    if [[ $# -gt 1 || ! $lTexts =~ ^[1-9][0-9]*$ ]]; then
        echo "usage: ./dev secrets [TEXTS]" >&2
        return 2
    fi
    require_packages g++-12 cmake ninja-build libgtest-dev libcli11-dev nlohmann-json3-dev
    show cmake --preset release
    show cmake --build --preset release --target ToolSecretsTest
    show env TALBASE_SECRETS_TEXTS="$lTexts" build/release/Tests/Tools/ToolSecretsTest
}
