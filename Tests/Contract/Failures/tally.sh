#!/bin/sh
# usage: tally.sh ALLOCATIONS PRIMITIVES PROGRAM...
# Runs test programs and adds up how many allocations and stream primitives they made fail. Fails where a test fails, a
# program says nothing, or the sums are below the two given numbers.
set -eu
gLeastAllocations=$1
gLeastPrimitives=$2
shift 2
gAllocations=0
gPrimitives=0
for gProgram in "$@"; do
    gOutput=$("$gProgram" --gtest_brief=1) || {
        printf '%s\n' "$gOutput"
        exit 1
    }
    # "failed on purpose: 5482 allocations, 12 stream primitives"
    gLine=$(printf '%s\n' "$gOutput" | grep '^failed on purpose: ')
    printf '%s: %s\n' "$(basename "$gProgram")" "$gLine"
    gNumber=${gLine#failed on purpose: }
    gAllocations=$((gAllocations + ${gNumber%% allocations*}))
    gNumber=${gLine#*, }
    gPrimitives=$((gPrimitives + ${gNumber%% stream*}))
done
echo "failed on purpose in all: $gAllocations allocations, $gPrimitives stream primitives"
[ "$gAllocations" -ge "$gLeastAllocations" ] && [ "$gPrimitives" -ge "$gLeastPrimitives" ]
