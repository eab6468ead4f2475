# Sourced by ../../dev: the word that runs the fuzzers; Fuzz/README.md tells what they check.
# shellcheck shell=bash

gFuzzSeconds=60
gFuzzBuild=build/fuzz

# The longest input that a fuzzer makes.
fuzz_length() {
    case $1 in
        BagOperations) echo 1601 ;; # a hundred steps
        BagText | Streams) echo 4096 ;;
        *) echo 512 ;;
    esac
}

# Runs one fuzzer on its corpus and on what earlier runs found, which it adds to, and prints a line about it. Its output
# goes to a file, in which the trace of a crash is found too.
fuzz_one() {
    local iName=$1 iSeconds=$2
    local lGrown=$gFuzzBuild/Corpus/$iName lFindings=$gFuzzBuild/Findings/$iName lLog=$gFuzzBuild/Logs/$iName.log lStatus=0
    local -a lCommand=("$gFuzzBuild/Fuzz/$iName" "-max_total_time=$iSeconds" "-max_len=$(fuzz_length "$iName")"
        -timeout=30 -rss_limit_mb=2048 -malloc_limit_mb=256 -print_final_stats=1 "-artifact_prefix=$lFindings/"
        "$lGrown" "Fuzz/Corpus/$iName")
    mkdir -p "$lGrown" "$lFindings" "$gFuzzBuild/Logs"
    announce "${lCommand[@]}"
    ASAN_OPTIONS=malloc_context_size=8 "${lCommand[@]}" >"$lLog" 2>&1 || lStatus=$?
    fuzz_report "$iName" "$lLog" "$lStatus"
    return "$lStatus"
}

# Prints the last number that follows a word in a log.
fuzz_number() {
    { grep -a -o -E "$1 *[0-9]+" "$2" || echo 0; } | tail -n 1 | grep -o -E '[0-9]+$'
}

fuzz_report() {
    local iName=$1 iLog=$2 iStatus=$3 lReproducer
    printf '%-14s %10d executions %6d in corpus %6d edges %6d new units %s\n' "$iName" \
        "$(fuzz_number 'stat::number_of_executed_units:' "$iLog")" "$(fuzz_number 'corp:' "$iLog")" \
        "$(fuzz_number 'cov:' "$iLog")" "$(fuzz_number 'stat::new_units_added:' "$iLog")" \
        "$([[ $iStatus -eq 0 ]] && echo 'nothing found' || echo 'SOMETHING FOUND')"
    [[ $iStatus -ne 0 ]] || return 0
    lReproducer=$(sed -n 's/.*Test unit written to //p' "$iLog" | tail -n 1)
    printf '  what:    %s\n' "$(grep -a -m 1 -E 'A RULE IS BROKEN|ERROR: |runtime error' "$iLog" || tail -n 1 "$iLog")"
    printf '  log:     %s\n' "$iLog"
    printf '  replay:  %s\n' "$gFuzzBuild/Fuzz/$iName ${lReproducer:-(no reproducer was written)}"
}

word_fuzz() {
    local lSeconds=$gFuzzSeconds lName lFailed=0
    if [[ $# -gt 0 ]]; then
        lSeconds=$1
        shift
    fi
    local -a lNames=("$@")
    [[ $# -gt 0 ]] || mapfile -t lNames < <(ls Fuzz/Corpus)
    if [[ ! $lSeconds =~ ^[1-9][0-9]*$ ]]; then
        echo "usage: ./dev fuzz [SECONDS [NAME...]]" >&2
        return 2
    fi
    require_packages clang-14 libclang-rt-14-dev cmake ninja-build
    show cmake --preset fuzz
    show cmake --build --preset fuzz
    for lName in "${lNames[@]}"; do
        while [[ $(jobs -rp | wc -l) -ge 2 ]]; do
            wait -n || lFailed=1
        done
        fuzz_one "$lName" "$lSeconds" &
    done
    while [[ -n $(jobs -p) ]]; do
        wait -n || lFailed=1
    done
    return "$lFailed"
}
