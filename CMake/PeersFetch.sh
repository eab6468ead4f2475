#!/usr/bin/env bash
# usage: CMake/PeersFetch.sh FOLDER
# Brings the peers that no installed package can give into FOLDER, where CMake/Peers.cmake finds them:
#   FOLDER/pugixml   the Debian source package, because Debian's own library is built for narrow characters
#   FOLDER/boost     libboost1.81-dev unpacked, because it can't be installed beside the default Boost
# The machine's apt configuration stays as it is: the source entries are made from the archives that apt already reads,
# and they and what they list live in FOLDER. Needs no root. What is there already is not fetched again.
set -euo pipefail

if [[ $# -ne 1 ]]; then
    echo "usage: CMake/PeersFetch.sh FOLDER" >&2
    exit 2
fi
mkdir -p "$1"
gFolder=$(cd "$1" && pwd)

# Prints a source entry for each archive of packages that apt reads from Debian.
list_source_entries() {
    local lKeyring=/usr/share/keyrings/debian-archive-keyring.gpg lOption=""
    [[ -r $lKeyring ]] && lOption="[signed-by=$lKeyring] "
    # apt replaces these names itself
    # shellcheck disable=SC2016
    apt-get indextargets --format '$(REPO_URI) $(RELEASE) $(COMPONENT)' 'Identifier: Packages' 'Origin: Debian' |
        sort -u | sed "s|^|deb-src $lOption|"
}

# apt-get with lists and a cache of its own below FOLDER.
own_apt_get() {
    mkdir -p "$gFolder/apt/lists/partial" "$gFolder/apt/cache/archives/partial"
    apt-get -o "Dir::Etc::SourceList=$gFolder/apt/sources.list" -o Dir::Etc::SourceParts=- \
        -o "Dir::State::Lists=$gFolder/apt/lists" -o "Dir::Cache=$gFolder/apt/cache" -o APT::Sandbox::User=root "$@"
}

fetch_pugixml() {
    local lWork=$gFolder/pugixml.part
    rm -rf "$lWork"
    mkdir -p "$lWork" "$gFolder/apt"
    list_source_entries >"$gFolder/apt/sources.list"
    own_apt_get -q update
    (cd "$lWork" && own_apt_get -q source --only-source pugixml)
    mv "$lWork"/pugixml-*/ "$gFolder/pugixml"
    rm -rf "$lWork" "$gFolder/apt"
}

fetch_boost() {
    local lWork=$gFolder/boost.part
    rm -rf "$lWork"
    mkdir -p "$lWork/tree"
    (cd "$lWork" && apt-get -q -o APT::Sandbox::User=root download libboost1.81-dev)
    dpkg -x "$lWork"/libboost1.81-dev_*.deb "$lWork/tree"
    mv "$lWork/tree/usr/include" "$gFolder/boost"
    rm -rf "$lWork"
}

[[ -r $gFolder/pugixml/src/pugixml.cpp ]] || fetch_pugixml
[[ -r $gFolder/boost/boost/json.hpp ]] || fetch_boost
