#!/bin/sh
# What stands in which slot of the virtual tables, read from the compiler's own layout of the classes.
#   VirtualTables.sh golden COMPILER INCLUDEFOLDER...   compares it with the golden file
#   VirtualTables.sh page   COMPILER INCLUDEFOLDER...   prints it as a page for readers
# COMPILER is a clang, the one compiler that names the functions of an interface in its dump.
set -eu

lHere=$(cd "$(dirname "$0")" && pwd)
lGolden=$lHere/../Golden/Layout/VirtualSlots.txt
lWord=$1
lCompiler=$2
shift 2
lFolder=$(mktemp -d)
trap 'rm -rf "$lFolder"' EXIT

for lInclude in "$@"; do
    set -- "$@" "-I$lInclude"
    shift
done
"$lCompiler" -std=c++20 -Xclang -fdump-vtable-layouts -S -emit-llvm -o /dev/null "$@" "$lHere/VirtualTables.cpp" \
    >"$lFolder/dump"

page() {
    cat <<'TEXT'
# The virtual slots

Hosts are built against these tables: what a host calls is the function that stands in a slot of an object's table, so
a function never moves, and new ones come after the last. Each slot has 8 bytes; slot 0 is where the object's pointer
to its table points. "X as B" is the table that an X shows when it is used through its virtual base B. The tables are
those of the Itanium C++ ABI, which g++ and clang share on Linux.
TEXT
    awk -v kind=markdown -f "$lHere/VirtualTables.awk" "$lFolder/dump"
}

case $lWord in
    golden)
        awk -v kind=text -f "$lHere/VirtualTables.awk" "$lFolder/dump" >"$lFolder/slots"
        diff -u -B -I '^#' "$lGolden" "$lFolder/slots"
        ;;
    page)
        page
        ;;
    *)
        echo "VirtualTables.sh: unknown word '$lWord'" >&2
        exit 2
        ;;
esac
