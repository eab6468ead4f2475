#!/usr/bin/env bash
# usage: Tests/Consumer/chroot.sh FOLDER
# The long test of the packages of FOLDER: a fresh Debian of its own, into which apt installs them beside a compiler. A
# client is built and run by somebody who says nothing of where the libraries lie; then apt purges them, and every file
# is as it was. Needs root, debootstrap and the archive that apt reads here; takes some minutes.
set -euo pipefail

if [[ $# -ne 1 || $EUID -ne 0 ]]; then
    echo "usage: Tests/Consumer/chroot.sh FOLDER (as root)" >&2
    exit 2
fi
gHere=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
gWork=$(mktemp -d)
trap 'rm -rf "$gWork"' EXIT
gRoot=$gWork/root

fail() {
    echo "chroot.sh: $*" >&2
    exit 1
}

in_root() {
    chroot "$gRoot" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C DEBIAN_FRONTEND=noninteractive "$@"
}

# All but what apt, dpkg and ldconfig keep for themselves.
list_root() {
    (cd "$gRoot" && find . \( -path ./proc -o -path ./sys -o -path ./dev -o -path ./tmp -o -path ./var/lib/apt \
        -o -path ./var/lib/dpkg -o -path ./var/cache -o -path ./var/log \) -prune -o -print | LC_ALL=C sort)
}

make_root() {
    local lArchive
    # apt replaces these names itself
    # shellcheck disable=SC2016
    lArchive=$(apt-get indextargets --format '$(REPO_URI) $(CODENAME)' 'Identifier: Packages' 'Origin: Debian' |
        sed -n 's/ bookworm$//p' | head -n 1)
    [[ -n $lArchive ]] || fail "apt knows no archive of Debian 12"
    debootstrap --variant=minbase bookworm "$gRoot" "$lArchive" >"$gWork/log" || { cat "$gWork/log" && return 1; }
    in_root apt-get -qq update
    in_root apt-get -qq -o Dpkg::Use-Pty=0 install --no-install-recommends g++ pkgconf >"$gWork/log" || { cat "$gWork/log" && return 1; }
}

make_root
list_root >"$gWork/before"
mkdir "$gRoot/tmp/packages" "$gRoot/tmp/client"
cp "$1"/*.deb "$gRoot/tmp/packages"
cp "$gHere/Client.cpp" "$gHere/compile-by-hand.sh" "$gRoot/tmp/client"
in_root sh -c 'apt-get -q -o Dpkg::Use-Pty=0 install --no-install-recommends -y /tmp/packages/*.deb'
in_root ldconfig -p | grep -F 'libTalBase.so.1 ' || fail "ldconfig does not know the library"
# shellcheck disable=SC2016 # the shell in there expands it
in_root sh -c 'cd /tmp/client && g++ -DCLIENT_CXX_STANDARD=17 -std=c++17 Client.cpp -o client \
    $(pkg-config --cflags --libs talbase q8stream) && ./client'
in_root /tmp/client/compile-by-hand.sh --pkg-config /usr g++
in_root apt-get -q -o Dpkg::Use-Pty=0 purge -y 'libtalbase*' 'talbase-*'
in_root ldconfig -p | grep -F libTalBase && fail "ldconfig still knows the library"
list_root | diff "$gWork/before" - || fail "purging left something"
echo "chroot.sh: installed, used and purged"
