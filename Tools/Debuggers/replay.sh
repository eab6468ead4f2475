#!/usr/bin/env bash
# usage: replay.sh TRANSCRIPT DEBUGGER PROGRAM FOLDER
# Says to the debugger what the transcript says after each prompt, about the core files in FOLDER, and compares what it
# answers. Addresses and numbers of damaged objects count as equal. A line "# FILE" begins a session with FOLDER/FILE.
# The transcript of gdb is gdb.txt, that of lldb lldb.txt.
set -euo pipefail

gHere=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
gTranscript=$1 gDebugger=$2 gProgram=$3 gFolder=$4
gKind=$(basename "$gTranscript" .txt)

# A session about one core file, in the function that has stopped; its commands come from the standard input.
talk_to_gdb() {
    local lLine
    local -a lCommands=(-ex "source $gHere/talbase_gdb.py" -ex 'set width 0' -ex 'set host-charset UTF-8' -ex up-silently)
    while IFS= read -r lLine; do
        lCommands+=(-ex "echo (gdb) $lLine\\n" -ex "$lLine")
    done
    "$gDebugger" -nx -batch "${lCommands[@]}" "$gProgram" "$1" 2>&1 | sed -n '/^(gdb) /,$p'
}

# The same with lldb. Debian's looks for its own modules in a folder that does not exist.
talk_to_lldb() {
    local lLine
    local -a lCommands=(-o "command script import $gHere/talbase_lldb.py" -o 'frame select 1' -o 'script print("begin")')
    while IFS= read -r lLine; do
        lCommands+=(-o "$lLine")
    done
    PYTHONPATH=$(echo "$(dirname "$(readlink -f "$(command -v "$gDebugger")")")"/../lib/python3.*/dist-packages) \
        "$gDebugger" --no-lldbinit --batch --core "$1" "${lCommands[@]}" "$gProgram" 2>&1 | sed '1,/^begin$/d'
}

# Prints the transcript anew, session by session.
replay() {
    local lCore
    while IFS= read -r lCore; do
        printf '# %s\n' "$lCore"
        awk -v core="$lCore" '/^# / { here = $2 == core } here && sub(/^\(g?l*db\) /, "")' "$gTranscript" |
            "talk_to_$gKind" "$gFolder/$lCore"
    done < <(sed -n 's/^# //p' "$gTranscript")
}

comparable() {
    sed -E 's/0x[0-9a-f]+/ADDRESS/g; s/<damaged: [0-9a-zA-Z ]*>/<damaged>/' "$@"
}

replay | comparable | diff -u <(comparable "$gTranscript") -
