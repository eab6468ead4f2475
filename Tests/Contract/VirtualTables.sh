#!/bin/sh
# What stands in which slot of the virtual tables, read from the compiler's own layout of the classes.
#   VirtualTables.sh golden   COMPILER INCLUDEFOLDER...   compares it with the golden file
#   VirtualTables.sh document COMPILER INCLUDEFOLDER...   compares the document that is made of it
#   VirtualTables.sh write    COMPILER INCLUDEFOLDER...   writes that document again
# COMPILER is a clang, the one compiler that names the functions of an interface in its dump.
set -eu

lHere=$(cd "$(dirname "$0")" && pwd)
lGolden=$lHere/../Golden/Layout/VirtualSlots.txt
lDocument=$lHere/../../Docs/VirtualSlots.md
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

document() {
    cat <<'TEXT'
# The virtual slots

Hosts are built against these tables: what a host calls is the function that stands in a slot of an object's table, so
a function never moves, and new ones come after the last. Each slot has 8 bytes; slot 0 is where the object's pointer
to its table points. "X as B" is the table that an X shows when it is used through its virtual base B. The tables are
those of the Itanium C++ ABI, which g++ and clang share on Linux.

This file is written by `./dev docs` from the compiler's layout of the classes; a test compares it, and another one
compares the layout with a list that was written by hand.
TEXT
    awk -v kind=markdown -f "$lHere/VirtualTables.awk" "$lFolder/dump"
}

case $lWord in
    golden)
        awk -v kind=text -f "$lHere/VirtualTables.awk" "$lFolder/dump" >"$lFolder/slots"
        diff -u -B -I '^#' "$lGolden" "$lFolder/slots"
        ;;
    document)
        document >"$lFolder/document"
        diff -u "$lDocument" "$lFolder/document"
        ;;
    write)
        document >"$lFolder/document"
        cp "$lFolder/document" "$lDocument"
        ;;
    *)
        echo "VirtualTables.sh: unknown word '$lWord'" >&2
        exit 2
        ;;
esac
