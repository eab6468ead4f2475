#!/usr/bin/env bash
# What `./dev install` builds: what it installs, the program that writes the manual pages, and nothing else.
#   install-builds.sh SOURCE FOLDER
# The command itself is run with a cmake that only notes how it is called; what the preset builds, cmake is asked.
set -euo pipefail

gSource=$1
gFolder=$2
gBuild=$gFolder/build

fail() {
    echo "install-builds.sh: $*" >&2
    exit 1
}

rm -rf "$gFolder"
mkdir -p "$gFolder/stubs"
printf '#!/bin/sh\necho "$*" >>"%s/calls"\n' "$gFolder" >"$gFolder/stubs/cmake"
printf '#!/bin/sh\necho "install ok installed"\n' >"$gFolder/stubs/dpkg-query"
chmod +x "$gFolder/stubs/"*
PATH=$gFolder/stubs:$PATH "$gSource/dev" install "$gFolder/prefix" 2>/dev/null
diff "$gFolder/calls" - <<CALLS || fail "./dev install does not build its preset"
--preset install
--build --preset install
--install build/install --prefix $gFolder/prefix
CALLS

cmake --preset install -S "$gSource" -B "$gBuild" >/dev/null
cmake --build "$gBuild" -- -n >"$gFolder/steps"
grep -o 'Building CXX object [^ ]*' "$gFolder/steps" | cut -d ' ' -f 4 >"$gFolder/objects"
[[ $(wc -l <"$gFolder/objects") -gt 50 ]] || fail "hardly anything would be compiled"
! grep -vE '^(Platform|TalBase|Tools/TalBaseTool)/' "$gFolder/objects" || fail "these are compiled for nothing"

# What is linked, beside what the scripts that install copy from the build.
grep -oE 'Linking CXX (shared library|executable) [^ ]*' "$gFolder/steps" | sed 's/.* //' |
    grep -vx Tools/TalBaseTool/talbase-pages | LC_ALL=C sort >"$gFolder/linked"
find "$gBuild" -name cmake_install.cmake -exec cat {} + | grep -oE "\"$gBuild/[^\"]*(\.so(\.[0-9]+){3}|/talbase)\"" |
    sed "s|^\"$gBuild/||; s|\"$||" | LC_ALL=C sort -u >"$gFolder/installed"
[[ $(wc -l <"$gFolder/installed") -eq 7 ]] || fail "not six libraries and talbase: $(cat "$gFolder/installed")"
diff "$gFolder/installed" "$gFolder/linked" || fail "what is built is not what is installed"
