#!/usr/bin/env bash
# usage: Tests/Consumer/packages.sh FOLDER COMPILER...
# Installs the packages of FOLDER with dpkg into a root of their own, looks at what is there, builds and runs a client of
# it in every way that a host may take, as C++17 and as C++20, with each compiler, and purges the packages again.
# Changes nothing outside a temporary folder; who is not root needs fakeroot.
set -euo pipefail

if [[ $# -lt 2 ]]; then
    echo "usage: Tests/Consumer/packages.sh FOLDER COMPILER..." >&2
    exit 2
fi
if [[ $EUID -ne 0 ]]; then
    exec fakeroot "$0" "$@"
fi
gHere=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
gFolder=$1
shift
gCompilers=("$@")
gWork=$(mktemp -d)
trap 'rm -rf "$gWork"' EXIT
gRoot=$gWork/root
gTriplet=$(dpkg-architecture -qDEB_HOST_MULTIARCH)
gLibraries=$gRoot/usr/lib/$gTriplet
gRows=()

fail() {
    echo "packages.sh: $*" >&2
    exit 1
}

in_root() {
    dpkg --root="$gRoot" --log=/dev/null "$@"
}

# A root that has nothing but the record of those packages of this machine that the libraries rest on.
make_root() {
    local lPackage lInfo=$gRoot/var/lib/dpkg/info
    mkdir -p "$lInfo" "$gRoot/var/lib/dpkg/updates"
    for lPackage in libc6 libgcc-s1 libstdc++6; do
        dpkg-query --status "$lPackage"
        echo
        : >"$lInfo/$lPackage:$(dpkg --print-architecture).list"
    done >"$gRoot/var/lib/dpkg/status"
}

list_root() {
    (cd "$gRoot" && find . -path ./var/lib/dpkg -prune -o -print | LC_ALL=C sort)
}

# Whether the files are where Debian has them, whole, and name no folder of the build.
check_files() {
    local lFile lDynamic
    [[ -z $(in_root --verify) ]] || fail "dpkg --verify finds differences"
    list_root | grep -v -E "^\.(/var(/lib)?|/usr(/(bin|include|lib|share)(/.*)?)?)?$" && fail "files in unexpected folders"
    [[ $(readelf -d "$gLibraries/libTalBase.so.1") == *"soname: [libTalBase.so.1]"* ]] || fail "wrong soname"
    while IFS= read -r -d '' lFile; do
        lDynamic=$(readelf -d "$lFile" 2>/dev/null || true)
        [[ $lDynamic != *PATH* ]] || fail "${lFile#"$gRoot"} has a path to libraries"
        if LC_ALL=C grep -q -F "$(dirname "$(dirname "$gHere")")" "$lFile"; then
            fail "${lFile#"$gRoot"} names a folder of the build"
        fi
    done < <(find "$gRoot/usr" -type f -print0)
}

# Runs a command for a row of the table at the end.
row() {
    local iWay=$1 iCompiler=$2
    shift 2
    if ! "$@" >"$gWork/log" 2>&1; then
        cat "$gWork/log" >&2
        fail "$iWay with $iCompiler"
    fi
    [[ $(grep -c '^client: 0 failures$' "$gWork/log") -eq 2 ]] || fail "$iWay with $iCompiler: not two clients have run"
    gRows+=("$(printf '%-14s %-12s C++17 C++20  passed' "$iWay" "$iCompiler")")
}

find_package_client() {
    local lBuild=$gWork/build-$1
    cmake -S "$gHere/FindPackage" -B "$lBuild" -G Ninja -DCMAKE_CXX_COMPILER="$1" -DCMAKE_PREFIX_PATH="$gRoot/usr"
    cmake --build "$lBuild"
    LD_LIBRARY_PATH=$gLibraries ctest --test-dir "$lBuild" --verbose --no-tests=error
    sed -i 's/^[0-9]*: //' "$gWork/log" # ctest's numbers
}

# Whether gdb loads the printers and the symbols by itself, as it does where the root is the machine's own: so it is
# told where the folders of that are.
gdb_client() {
    local lScripts=$gWork/auto-load lShown
    mkdir -p "$lScripts$(dirname "$gRoot")"
    ln -s "$gRoot/usr/share/gdb/auto-load" "$lScripts$gRoot"
    # shellcheck disable=SC2046 # the options are words
    "$1" -g -O0 -std=c++17 "$gHere/../../Examples/Documents/Example.cpp" -o "$gWork/example" \
        $(PKG_CONFIG_LIBDIR=$gLibraries/pkgconfig pkg-config --cflags --libs talbase)
    lShown=$(LD_LIBRARY_PATH=$gLibraries gdb -nx -batch -iex "set auto-load scripts-directory $lScripts" \
        -iex "set auto-load safe-path $lScripts" -iex "set debug-file-directory $gRoot/usr/lib/debug" \
        -ex 'set startup-with-shell off' -ex 'break printf' -ex run -ex up -ex 'print lCopy' "$gWork/example" 2>&1)
    [[ $lShown == *'Transport = bag of 1 property, 1 reference = {Host = "ftp.example.com"}'* ]] ||
        fail "gdb does not show a bag: $lShown"
}

# Whether the tool works, and has a manual page for itself and for each of its commands, and completions for each shell.
tool_client() {
    local lTool=$gRoot/usr/bin/talbase lShare=$gRoot/usr/share lCommands lCommand lPage lFile lShown
    local -x LD_LIBRARY_PATH=$gLibraries
    lShown=$(printf 'EndDelimiter***BeginDelimiter++++***Name++++Value***' | "$lTool" check)
    [[ $lShown == "(standard input): valid" ]] || fail "talbase check says $lShown"
    mapfile -t lCommands < <("$lTool" --help | sed -n '/^Commands:$/,/^$/s/^  \([a-z-]*\) .*/\1/p')
    [[ ${lCommands[*]} == "show check get "*" guid" ]] || fail "talbase --help names ${lCommands[*]}"
    for lCommand in "" "${lCommands[@]}"; do
        lPage=talbase${lCommand:+-$lCommand}
        lShown=$(gzip -dc "$lShare/man/man1/$lPage.1.gz") || fail "there is no manual page $lPage"
        [[ $lShown == ".TH ${lPage^^} 1 "*".SH SYNOPSIS"*".SH OPTIONS"* ]] || fail "the manual page $lPage is none"
    done
    [[ $(find "$lShare/man" -type f | wc -l) -eq $((${#lCommands[@]} + 1)) ]] || fail "manual pages of no command"
    for lFile in bash-completion/completions/talbase zsh/site-functions/_talbase fish/vendor_completions.d/talbase.fish; do
        for lCommand in "${lCommands[@]}"; do
            grep -q -w -e "$lCommand" "$lShare/$lFile" || fail "$lFile does not complete $lCommand"
        done
    done
    gRows+=("talbase        $(printf '%-12s' "${#lCommands[@]} commands") pages, completions  passed")
}

make_root
list_root >"$gWork/before"
in_root --install "$gFolder"/*.deb
check_files
in_root --remove libtalbase1 2>/dev/null && fail "libtalbase1 went although others need it"

for gCompiler in "${gCompilers[@]}"; do
    row "by hand" "$gCompiler" "$gHere/compile-by-hand.sh" "$gRoot/usr" "$gCompiler"
    row "pkg-config" "$gCompiler" "$gHere/compile-by-hand.sh" --pkg-config "$gRoot/usr" "$gCompiler"
    row "find_package" "$gCompiler" find_package_client "$gCompiler"
done
gdb_client "${gCompilers[0]}"
if compgen -G "$gFolder/talbase-tools_*.deb" >/dev/null; then
    tool_client
fi

mapfile -t gNames < <(for gPackage in "$gFolder"/*.deb; do dpkg-deb --field "$gPackage" Package; done)
in_root --purge "${gNames[@]}"
list_root | diff "$gWork/before" - || fail "purging left something"
printf '%s\n' "${gRows[@]}"
