#!/bin/sh
# usage: tally.sh ALLOCATIONS PRIMITIVES CUTS PROGRAM...
# Runs test programs and adds up how many allocations and stream primitives they made fail, and how many cuts in the data
# of streams were noticed. Fails where a test fails, a program says nothing, or a sum is below the given number.
set -eu
gLeastAllocations=$1
gLeastPrimitives=$2
gLeastCuts=$3
shift 3
gAllocations=0
gPrimitives=0
gCuts=0
for gProgram in "$@"; do
    gOutput=$("$gProgram" --gtest_brief=1) || {
        printf '%s\n' "$gOutput"
        exit 1
    }
    # "failed on purpose: 5482 allocations, 12 stream primitives, 7 cuts"
    gLine=$(printf '%s\n' "$gOutput" | grep '^failed on purpose: ')
    printf '%s: %s\n' "$(basename "$gProgram")" "$gLine"
    gNumber=${gLine#failed on purpose: }
    gAllocations=$((gAllocations + ${gNumber%% allocations*}))
    gNumber=${gLine#*, }
    gPrimitives=$((gPrimitives + ${gNumber%% stream*}))
    gNumber=${gLine##*, }
    gCuts=$((gCuts + ${gNumber%% cuts*}))
done
echo "failed on purpose in all: $gAllocations allocations, $gPrimitives stream primitives, $gCuts cuts"
[ "$gAllocations" -ge "$gLeastAllocations" ] && [ "$gPrimitives" -ge "$gLeastPrimitives" ] &&
    [ "$gCuts" -ge "$gLeastCuts" ]
