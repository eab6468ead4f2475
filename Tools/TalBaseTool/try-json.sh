#!/usr/bin/env bash
# usage: Tools/TalBaseTool/try-json.sh TALBASE FILE...
# Sends real JSON documents into a bag and back, with the program TALBASE, and compares each with what comes back. Says
# what a bag could not hold; fails where something else is different. Needs python3.
set -euo pipefail

if [[ $# -lt 2 ]]; then
    echo "usage: Tools/TalBaseTool/try-json.sh TALBASE FILE..." >&2
    exit 2
fi
gTools=$(dirname "${BASH_SOURCE[0]}")
gTalBase=$1
shift
gFolder=$(mktemp -d)
trap 'rm -rf "$gFolder"' EXIT
gStatus=0
for gFile in "$@"; do
    echo "== $gFile ($(stat -Lc %s "$gFile") bytes)"
    "$gTalBase" from-json "$gFile" >"$gFolder/document.bag"
    "$gTalBase" check "$gFolder/document.bag" | sed "s|^.*/||"
    "$gTalBase" to-json --typed "$gFolder/document.bag" >"$gFolder/back.json"
    python3 "$gTools/compare_json.py" "$gFile" "$gFolder/back.json" || gStatus=1
done
exit "$gStatus"
