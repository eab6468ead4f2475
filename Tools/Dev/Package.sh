# Sourced by ../../dev: the Debian packages.
# shellcheck shell=bash

gPackagePackages=(binutils dpkg-dev file gdb lintian lldb-14 python3-lldb-14)
gPackageFolder=build/package/packages

# Builds them with the date of their changelog, so that the same sources give the same packages.
make_packages() {
    local lEpoch
    lEpoch=$(dpkg-parsechangelog --file Packaging/Debian/changelog --show-field Timestamp)
    rm -rf "$gPackageFolder"
    show env SOURCE_DATE_EPOCH="$lEpoch" cmake --workflow --preset package
    show env SOURCE_DATE_EPOCH="$lEpoch" Packaging/finish.sh "$gPackageFolder"
    show lintian --allow-root --fail-on error,warning "$gPackageFolder"/*.deb
}

word_package() {
    if [[ $# -gt 1 || ${1:---chroot} != --chroot ]]; then
        echo "usage: ./dev package [--chroot]" >&2
        return 2
    fi
    # shellcheck disable=SC2154 # dev has the lists
    require_packages "${gBuildPackages[@]}" "${gToolPackages[@]}" "${gPackagePackages[@]}"
    make_packages
    if [[ $# -eq 1 ]]; then
        require_packages debootstrap
        show Tests/Consumer/chroot.sh "$gPackageFolder"
    fi
    ls -l "$gPackageFolder"/*.deb
}

# The packages, their installation and their removal, and the clients of what they install.
step_packages() {
    require_packages "${gBuildPackages[@]}" "${gToolPackages[@]}" "${gPackagePackages[@]}" clang-14 fakeroot pkgconf
    make_packages
    show Tests/Consumer/packages.sh "$gPackageFolder" g++-12 clang++-14
}
