#!/usr/bin/env bash
# usage: Packaging/finish.sh FOLDER
# Finishes the packages that cpack has put into FOLDER, where they say things that cpack cannot say in the Debian way:
#   - The libraries are announced to ldconfig by a trigger (Debian/triggers), so the scripts that cpack adds go.
#   - What lies in folders of its architecture, libraries and symbols, can be installed for several of them.
#   - A package with debug symbols is a .deb like others, shares the documents of its owner, and holds no programs.
#   - Manual pages are compressed.
#   - The sums are those of the files, by the names that they are installed under.
# With SOURCE_DATE_EPOCH set, the same files give the same packages.
set -euo pipefail

if [[ $# -ne 1 ]]; then
    echo "usage: Packaging/finish.sh FOLDER" >&2
    exit 2
fi
gTree=$(mktemp -d)
trap 'rm -rf "$gTree"' EXIT

# Changes an unpacked package of debug symbols.
finish_symbols() {
    local iTree=$1 iOwner=$2
    sed -i '/^Package-Type:/d' "$iTree/DEBIAN/control"
    find "$iTree/usr/lib/debug" -type f -exec chmod 644 {} +
    mkdir -p "$iTree/usr/share/doc"
    ln -s "$iOwner" "$iTree/usr/share/doc/$iOwner-dbgsym"
}

finish_package() {
    local iPackage=$1 lName lTree=$gTree/package
    lName=$(dpkg-deb --field "$iPackage" Package)
    rm -rf "$lTree"
    dpkg-deb --raw-extract "$iPackage" "$lTree"
    rm -f "$lTree/DEBIAN/postinst" "$lTree/DEBIAN/postrm"
    [[ $lName != *-dbgsym ]] || finish_symbols "$lTree" "${lName%-dbgsym}"
    [[ $lName != lib* ]] || sed -i 's/^Architecture: .*/&\nMulti-Arch: same/' "$lTree/DEBIAN/control"
    [[ ! -d $lTree/usr/share/man ]] || find "$lTree/usr/share/man" -type f -exec gzip -9n {} +
    (cd "$lTree" && find usr -type f -print0 | LC_ALL=C sort -z | xargs -0 md5sum >DEBIAN/md5sums)
    chmod -R u=rwX,go=rX "$lTree"
    rm "$iPackage"
    dpkg-deb --root-owner-group -Zxz --build "$lTree" "$(dirname "$iPackage")"
}

for gPackage in "$1"/*.deb "$1"/*.ddeb; do
    [[ ! -e $gPackage ]] || finish_package "$gPackage"
done
