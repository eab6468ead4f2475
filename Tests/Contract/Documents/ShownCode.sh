#!/bin/sh
# The code that the documents show, and what it prints, are what is compiled and run (ShownCode.awk tells how a document
# names it).
#   ShownCode.sh check    PROGRAMS DOCUMENT...   compares the documents with the sources and the output of the programs
#   ShownCode.sh write    PROGRAMS DOCUMENT...   writes the blocks of the documents again
#   ShownCode.sh programs PROGRAMS DOCUMENT...   runs every program, and looks whether a document shows it
# PROGRAMS is a file with a line for each program: its source, a blank, its executable. All paths of sources and documents
# are relative to the project's folder. TALBASE_EMULATOR: the command that runs programs of another machine, if they are.
set -eu

lHere=$(cd "$(dirname "$0")" && pwd)
lRoot=$(cd "$lHere/../../.." && pwd)
lWord=$1
lPrograms=$2
shift 2
lFolder=$(mktemp -d)
trap 'rm -rf "$lFolder"' EXIT
mkdir "$lFolder/outputs"

fail() {
    echo "ShownCode.sh: $1" >&2
    exit 1
}

# Runs the program of a source, once, in a folder of its own, and keeps what it prints.
run() {
    lOutput=$lFolder/outputs/$(echo "$1" | tr / _)
    [ ! -e "$lOutput" ] || return 0
    lProgram=$(sed -n "s|^$1 ||p" "$lPrograms")
    [ -n "$lProgram" ] || fail "$1 is no program that is built"
    mkdir "$lFolder/run"
    # shellcheck disable=SC2086 # several words
    (cd "$lFolder/run" && ${TALBASE_EMULATOR:-} "$lProgram") >"$lOutput" || fail "$1 ends with status $?"
    rm -rf "$lFolder/run"
    [ -s "$lOutput" ] || fail "$1 prints nothing"
}

# Prints what the documents name as sources or as programs with output.
named() {
    lKind=$1
    shift
    (cd "$lRoot" && sed -n "s/^<!-- $lKind: \([^ ,]*\).* -->\$/\1/p" "$@") | sort -u
}

fill() {
    for lSource in $(named output "$1"); do
        run "$lSource"
    done
    (cd "$lRoot" && awk -v root="$lRoot" -v outputs="$lFolder/outputs" -f "$lHere/ShownCode.awk" "$1") >"$lFolder/filled"
}

# What is shown is compiled: a program that is run, or a header that a program beside it includes.
check_sources() {
    for lSource in $(named source "$@"); do
        grep -q "^$lSource " "$lPrograms" ||
            grep -q -s -F "#include \"$(basename "$lSource")\"" "$lRoot/$(dirname "$lSource")"/*.cpp ||
            fail "$lSource is neither a program nor included by one"
    done
}

case $lWord in
    check)
        for lDocument in "$@"; do
            fill "$lDocument"
            diff -u "$lRoot/$lDocument" "$lFolder/filled" || fail "$lDocument shows something else; ./dev docs mends it"
        done
        ;;
    write)
        for lDocument in "$@"; do
            fill "$lDocument"
            cmp -s "$lRoot/$lDocument" "$lFolder/filled" || cp "$lFolder/filled" "$lRoot/$lDocument"
        done
        ;;
    programs)
        cut -d ' ' -f 1 "$lPrograms" | while read -r lSource; do
            run "$lSource"
            { named source "$@"; named output "$@"; } | grep -q -x -F "$lSource" || fail "no document shows $lSource"
        done
        check_sources "$@"
        ;;
    *)
        echo "ShownCode.sh: unknown word '$lWord'" >&2
        exit 2
        ;;
esac
