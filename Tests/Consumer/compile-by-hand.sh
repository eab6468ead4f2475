#!/bin/sh
# Builds the client with nothing but a compiler and its options, as C++17 and as C++20, and runs it.
#   compile-by-hand.sh PREFIX COMPILER                compile-by-hand.sh /opt/talbase g++-12
#   compile-by-hand.sh --pkg-config PREFIX COMPILER   the options are those that pkg-config names
set -eu

lSource=$(dirname "$0")/Client.cpp
lUsePkgConfig=no
if [ "$1" = --pkg-config ]; then
    lUsePkgConfig=yes
    shift
fi
lPrefix=$1
lCompiler=$2
lLibraries=$(dirname "$(find "$lPrefix" -name libTalBase.so)")
lOptions="-I $lPrefix/include -L $lLibraries -lTalBase -lQ8Stream1 -lQ8DatTy4 -lQ8Log2 -lQ8Synch4 -lQ8Base4"
if [ $lUsePkgConfig = yes ]; then
    # Only the files of this prefix: another installation on the machine may not help out.
    lOptions=$(PKG_CONFIG_LIBDIR=$lLibraries/pkgconfig pkg-config --cflags --libs 'talbase >= 1' q8stream)
fi
lFolder=$(mktemp -d)
trap 'rm -rf "$lFolder"' EXIT
for lStandard in 17 20; do
    # shellcheck disable=SC2086 # the options are words
    "$lCompiler" -std=c++$lStandard -DCLIENT_CXX_STANDARD=$lStandard -Wall -Wextra -Wpedantic -Wconversion -Wshadow \
        -Werror "$lSource" -o "$lFolder/client" $lOptions
    # The libraries of a distribution's package carry no path to each other.
    LD_LIBRARY_PATH=$lLibraries "$lFolder/client"
done
