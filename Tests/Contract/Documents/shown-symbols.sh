#!/bin/sh
# What Docs/Architecture.md says of the built libraries.
#   shown-symbols.sh symbols NM LIBRARY...               none shows a symbol of the standard library
#   shown-symbols.sh links READELF LINKS LIBRARY...      each needs every other one that it is linked with
# LINKS: a line for each library, its name and those that it is linked with.
set -eu
mWhat=$1
mTool=$2
shift 2
lStatus=0

# The prefixes are those of mangled names: of std itself, and of what its headers have outside of it.
check_symbols() {
    for lLibrary in "$@"; do
        lFound=$("$mTool" --dynamic --defined-only "$lLibrary" |
            awk '$NF ~ /^_Z(T[ISVT]|N|NK|Z|ZN|ZNK|GV|GVN|GVZN|GVZNK)?(S[tabdios]|NS[tabdios]|9__gnu_cxx|N9__gnu_cxx)/ { print $NF }')
        if [ -n "$lFound" ]; then
            printf '%s shows:\n%s\n' "$lLibrary" "$lFound"
            lStatus=1
        fi
    done
}

check_links() {
    lLinks=$1
    shift
    for lLibrary in "$@"; do
        lName=$(basename "$lLibrary" | sed 's/[.]so.*//')
        lNeeded=$("$mTool" --dynamic "$lLibrary" | sed -n 's/.*NEEDED.*\[\(.*\)[.]so.*\]/\1/p')
        lUnneeded=$(sed -n "s/^$lName //p" "$lLinks" | tr ' ' '\n' | grep -vxF -e "$lNeeded" || true)
        if [ -n "$lUnneeded" ]; then
            printf '%s is linked with what it needs nothing of:\n%s\n' "$lName" "$lUnneeded"
            lStatus=1
        fi
    done
}

case $mWhat in
symbols) check_symbols "$@" ;;
links) check_links "$@" ;;
esac
exit $lStatus
