# Sourced by ../../dev: the steps of `./dev check`, in the order in which they run; the cheap ones come first.
# shellcheck shell=bash

gCheckSteps=(format shell documents tools release headers abi asan-ubsan naming tsan minimal packages)
gNightSteps=(clang-release naming-tests analysis analyzer) # they run when they are named

# Prints the tracked files, and new ones that are not ignored, that match the patterns and exist, each ended by a zero.
# A copy of the tree without its history is searched instead.
project_files() {
    local lFile
    if git rev-parse --is-inside-work-tree >/dev/null 2>&1; then
        git ls-files -z --cached --others --exclude-standard -- "$@"
    else
        local -a lNames=()
        for lFile in "$@"; do
            lNames+=(-o -name "$lFile")
        done
        find . -path ./build -prune -o -type f \( "${lNames[@]:1}" \) -print0
    fi | while IFS= read -r -d '' lFile; do
        [[ ! -e $lFile ]] || printf '%s\0' "$lFile"
    done
}

step_format() {
    project_files '*.h' '*.cpp' | show xargs -0 -r clang-format-14 --dry-run --Werror
}

step_shell() {
    { project_files '*.sh'; printf '%s\0' dev .ci/run; } | show xargs -0 shellcheck --external-sources
}

# The tools that judge the tests have tests of their own.
step_tools() {
    local lFolder
    for lFolder in Tools/*/; do
        if compgen -G "$lFolder*_test.py" >/dev/null; then
            show python3 -B -m unittest discover --start-directory "$lFolder" --pattern '*_test.py'
        fi
    done
}

step_release() {
    run_workflow release
}

step_clang-release() {
    run_workflow clang-release
}

# The files that the sanitized build compiles, which is clang's, and with them the project's headers, follow the naming conventions: those that
# match a pattern, or do not where that is asked for.
# clang-tidy reports what it left out of the system's headers after each file; that is not ours to read.
check_names() {
    local lBuild=build/asan-ubsan
    show cmake --preset asan-ubsan
    sed -n 's/^ *"file": "\(.*\)",\{0,1\}$/\1/p' "$lBuild/compile_commands.json" | grep -v "/$lBuild/" | sort -u |
        grep "$@" | tr '\n' '\0' | show xargs -0 -n 2 -P 2 clang-tidy-14 --quiet -p "$lBuild" 2>&1 |
        { grep -v -E '^[0-9]+ warnings? generated\.$' || true; }
}

step_naming() {
    check_names -v -E "^$PWD/(Tests|Fuzz)/"
}

# The same for the tests, which takes longer than all the rest: a step for the night, or for whoever changed tests.
step_naming-tests() {
    check_names -E "^$PWD/(Tests|Fuzz)/"
}

# Every public header, alone and first, in each language version that a client may use, with both compilers.
step_headers() {
    local lPreset
    for lPreset in release clang-release; do
        show cmake --preset "$lPreset"
        show cmake --build --preset "$lPreset" --target public-headers
    done
}

step_asan-ubsan() {
    run_workflow asan-ubsan
}

step_tsan() {
    run_workflow tsan
}

# The build that needs a compiler and CMake only, its installed files, and a client that knows nothing else.
step_minimal() {
    local lFolder
    lFolder=$(mktemp -d)
    # shellcheck disable=SC2064 # the folder of now is the one to remove
    trap "rm -rf '$lFolder'" EXIT
    show cmake -S . -B "$lFolder/build" -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=OFF -DCMAKE_CXX_COMPILER=g++-12 \
        -DCMAKE_DISABLE_FIND_PACKAGE_CLI11=ON -DCMAKE_DISABLE_FIND_PACKAGE_nlohmann_json=ON
    show cmake --build "$lFolder/build" --parallel 2
    show cmake --install "$lFolder/build" --prefix "$lFolder/prefix"
    show Tests/Consumer/compile-by-hand.sh "$lFolder/prefix" g++-12
    show Tests/Consumer/compile-by-hand.sh "$lFolder/prefix" clang++-14
}

# Runs one step in a shell of its own, so that its first failing command ends it, and sets gStatus. Callers must not ask
# for its success with `if` or `||`: inside those bash forgets `set -e`, and a step would run on after a failure.
run_check_step() {
    local lStart=$SECONDS lOutcome=passed
    printf '\n== %s\n' "$1"
    set +e
    (
        set -e
        "step_$1"
    )
    gStatus=$?
    set -e
    [[ $gStatus -eq 0 ]] || lOutcome="FAILED with status $gStatus"
    printf '== %s: %s (%d s)\n' "$1" "$lOutcome" $((SECONDS - lStart))
}

# run_steps WORD KNOWN [STEP...] runs those steps of a word that are named, or all that it knows (in one argument, with
# blanks between). A failed step does not keep the others from running: one run tells all.
run_steps() {
    local iWord=$1 iKnown=$2 lStep
    shift 2
    local -a lSteps lFailed=()
    read -r -a lSteps <<<"$iKnown"
    [[ $# -eq 0 ]] || lSteps=("$@")
    for lStep in "${lSteps[@]}"; do
        if [[ " $iKnown " != *" $lStep "* ]]; then
            echo "./dev $iWord: unknown step '$lStep'; there are: $iKnown" >&2
            return 2
        fi
    done
    for lStep in "${lSteps[@]}"; do
        run_check_step "$lStep"
        [[ $gStatus -eq 0 ]] || lFailed+=("$lStep")
    done
    echo
    if [[ ${#lFailed[@]} -gt 0 ]]; then
        echo "$iWord: ${#lFailed[@]} of ${#lSteps[@]} steps FAILED: ${lFailed[*]}"
        return 1
    fi
    echo "$iWord: all ${#lSteps[@]} steps passed: ${lSteps[*]}"
}

run_check_steps() {
    if [[ $# -eq 0 ]]; then
        run_steps check "${gCheckSteps[*]}"
    else
        run_steps check "${gCheckSteps[*]} ${gNightSteps[*]}" "$@"
    fi
}
