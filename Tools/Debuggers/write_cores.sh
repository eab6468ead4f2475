#!/usr/bin/env bash
# usage: write_cores.sh GDB PROGRAM FOLDER
# Runs the program to each of its two stops and writes FOLDER/whole.core and FOLDER/damaged.core. gdb writes them, so it
# does not matter what the machine does with cores.
set -euo pipefail

rm -f "$3/whole.core" "$3/damaged.core"
"$1" -nx -batch -ex 'set startup-with-shell off' -ex 'break Stop' -ex run -ex "generate-core-file $3/whole.core" \
    -ex continue -ex "generate-core-file $3/damaged.core" -ex kill "$2"
[[ -s $3/whole.core && -s $3/damaged.core ]]
