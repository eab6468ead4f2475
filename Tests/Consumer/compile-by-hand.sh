#!/bin/sh
# Builds the client against an installation with nothing but a compiler's own options, and runs it.
#   compile-by-hand.sh PREFIX COMPILER [OPTION...]      compile-by-hand.sh /opt/talbase g++-12 -std=c++17
set -eu

lSource=$(dirname "$0")/Client.cpp
lPrefix=$1
shift
lLibraries=$(dirname "$(find "$lPrefix" -name libTalBase.so)")
lFolder=$(mktemp -d)
trap 'rm -rf "$lFolder"' EXIT
"$@" -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror -I "$lPrefix/include" "$lSource" -o "$lFolder/client" \
    -L "$lLibraries" -Wl,-rpath,"$lLibraries" -lTalBase -lQ8Stream1 -lQ8DatTy4 -lQ8Log2 -lQ8Synch4 -lQ8Base4
"$lFolder/client"
