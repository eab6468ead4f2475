#!/usr/bin/env bash
# usage: Benchmarks/tool.sh [MEGABYTES...]
# Behind `./dev bench tool`: installs what it needs, builds talbase, and measures the time and the memory of its commands
# on files of mails of so many megabytes and on a million levels, beside jq on the JSON of the same data. A whole run, of
# 3, 30 and 300 MB, writes Docs/ToolPerformance.md; sizes of yours are only shown. TALBASE_BENCH_TOOL names a talbase that
# is built already.
set -euo pipefail

gRoot=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
# shellcheck source=Tools/Dev/Setup.sh
source "$gRoot/Tools/Dev/Setup.sh"

gPackages=(g++-12 cmake ninja-build libcli11-dev nlohmann-json3-dev jq time)
gLevels=1000000
gLongest=300 # seconds for one command
gHeader='EndDelimiter***BeginDelimiter++++***'

# What is measured: a heading, the data that it reads (bag, json or list), and the command. "talbase" is the one that was
# built; FILE is the data; OTHER is the bag with one value changed. Those of jq stand behind what they are beside.
list_cases() {
    cat <<'CASES'
check|bag|talbase check FILE
show|bag|talbase show FILE
list|bag|talbase list FILE
get|bag|talbase get NAME FILE
|json|jq -r JQNAME FILE
has|bag|talbase has NAME FILE
grep|bag|talbase grep example FILE
set|bag|talbase set NAME x FILE
|json|jq JQNAME="x" FILE
remove|bag|talbase remove NAME FILE
|json|jq del(JQNAME) FILE
redact|bag|talbase redact FILE
delimiters|bag|talbase delimiters --begin <== --end ==> FILE
diff|bag|talbase diff FILE OTHER
merge|bag|talbase merge FILE OTHER
merge --deep|bag|talbase merge --deep FILE OTHER
|json|jq -s .[0]*.[1] FILE OTHER
to-json|bag|talbase to-json FILE
|json|jq . FILE
from-json|json|talbase from-json FILE
from-list|list|talbase from-list FILE
CASES
}

# Jobs as the mail spool exports them, until there are so many megabytes.
write_mails() {
    awk -v iBytes=$(($1 * 1000000)) -v iHeader="$gHeader" 'BEGIN {
        lLine = "Lines of some seventy characters, as mails have them since long ago,\n"
        while (length(lLines) < 6000) lLines = lLines lLine
        printf "%s", iHeader
        for (lSize = length(iHeader); lSize < iBytes; lSize += length(lJob)) {
            lJob = "Job " lNumber + 0 "++++Queued++++2026-01-02T03:04:05.678901Z***Attempts++++0***Source++++/mail/in/"
            lJob = lJob lNumber + 0 ".eml***Route++++example.org***Sender++++someone@example.com***Recipient++++"
            lJob = lJob "else@example.org***Subject++++Message number " lNumber + 0 "***Size++++3557***EightBit++++false"
            lJob = lJob "***BodyCharset++++UTF-8***LineEnding++++LF***Body++++" substr(lLines, 1, 1500 + lNumber * 37 % 4000)
            lJob = lJob "***Account++++FTPUser++++someone***FTPServerPassword++++secret " lNumber + 0 "******Header++++"
            for (lField = 0; lField < 12; ++lField)
                lJob = lJob "Received " lField "++++from mx" lField ".example.com (192.0.2.1) by example.org for <else>***"
            lJob = lJob "******"
            printf "%s", lJob
            ++lNumber
        }
    }' </dev/null
}

write_levels() {
    awk -v iLevels=$gLevels -v iHeader="$gHeader" 'BEGIN {
        printf "%s", iHeader
        for (lLevel = 0; lLevel < iLevels; ++lLevel) printf "n++++"
        printf "k++++v***"
        for (lLevel = 0; lLevel < iLevels; ++lLevel) printf "***"
    }' </dev/null
}

# Whether this talbase has a command.
has_command() {
    "$gTool" "$1" --help >/dev/null 2>&1
}

# Makes what the cases read of a bag: FOLDER/NAME.bag, .json, .list and the others.
make_data() {
    local iData=$1 iName=$2
    "$gTool" set "$iName" other "$iData.bag" >"$iData-other.bag"
    "$gTool" to-json "$iData.bag" >"$iData.json"
    "$gTool" to-json "$iData-other.bag" >"$iData-other.json"
    if has_command list; then
        "$gTool" list --show-secrets "$iData.bag" >"$iData.list"
    fi
}

# Runs a command and prints a cell: processor seconds, the most memory, and that as a multiple of the file.
measure() {
    local iFile=$1 lStatus=0 lSeconds lMemory
    shift
    LC_ALL=C.UTF-8 /usr/bin/time -o "$gFolder/time" -f '%U %S %M' timeout "$gLongest" "$@" >/dev/null 2>"$gFolder/error" ||
        lStatus=$?
    if [[ $lStatus -eq 124 ]]; then
        echo "over $gLongest s"
    elif [[ $lStatus -gt 1 ]]; then # 1 is a difference
        echo "refused"
    else
        read -r lSeconds lMemory < <(awk 'END { printf "%.2f %d\n", $1 + $2, $3 }' "$gFolder/time")
        awk -v s="$lSeconds" -v m="$lMemory" -v f="$(stat -c %s "$iFile")" \
            'BEGIN { printf "%.2f s, %.0f MB (%.1f)\n", s, m / 976.5625, m * 1024 / f }'
    fi
}

# The command of a case for a data set, as an array.
expand() {
    local iCommand=$1 iData=$2 iKind=$3 iName=$4 lWord
    gCommand=()
    # shellcheck disable=SC2206 # words without blanks, and no globs
    set -f
    for lWord in $iCommand; do
        lWord=${lWord//JQNAME/$(jq_name "$iName")}
        case $lWord in
            talbase) lWord=$gTool ;;
            NAME) lWord=$iName ;;
            FILE) lWord=$iData.$iKind ;;
            OTHER) lWord=$iData-other.$iKind ;;
        esac
        gCommand+=("$lWord")
    done
    set +f
}

# '."Job 0"."Subject"' of 'Job 0/Subject'
jq_name() {
    local lPath=$1
    echo ".\"${lPath//\//\".\"}\""
}

write_table() {
    local lHeading lKind lCommand lRow lIndex
    printf '| command | beside |'
    printf ' %s |' "${gTitles[@]}"
    printf '\n|:--|:--|'
    printf ':--|%.0s' "${gTitles[@]}"
    printf '\n'
    while IFS='|' read -r lHeading lKind lCommand; do
        if [[ $lCommand == talbase* ]] && ! has_command "${lHeading%% *}"; then
            continue
        fi
        lRow="| $lHeading | |"
        if [[ $lCommand == jq* ]]; then
            lRow=${lCommand//JQNAME/.a.b}
            lRow="| | \`${lRow%% FILE*}\` |"
        fi
        for lIndex in "${!gData[@]}"; do
            expand "$lCommand" "${gData[lIndex]}" "$lKind" "${gNames[lIndex]}"
            lRow+=" $(measure "${gData[lIndex]}.$lKind" "${gCommand[@]}") |"
        done
        printf '%s\n' "$lRow"
        echo "$lRow" >&2
    done < <(list_cases)
}

write_page() {
    cat <<PAGE
# What the commands of talbase cost

Written by \`./dev bench tool\`; don't edit.

- processor: $(sed -n 's/^model name[^:]*: //p' /proc/cpuinfo | head -1), $(nproc) in use
- system: $(uname -sr) $(uname -m)
- compiler: g++ $(g++-12 -dumpfullversion), flags \`-O3 -DNDEBUG\`; $(jq --version)
- load averages before: $gLoad; after: $(cut -d' ' -f1-3 /proc/loadavg)

A cell has the processor time, the most memory that the process held (resident, with the program itself, which takes some
5 MB), and in parentheses that memory as a multiple of the file that is read. The files are bags of mails as the mail
spool exports them, and 1,000,000 bags one in another; jq reads the JSON of the same data, as \`talbase to-json\` writes
it. It refuses more than 10,000 levels. \`diff\` and \`merge\` read a second file of the same size with one value changed.

PAGE
    write_table
    cat <<'PAGE'

Where the memory goes: a character takes four bytes in the text that is read and four in the bag that is made of it, and
both are there while it is made. A bag nested in another takes some 250 bytes. What is written goes out in small blocks.
[Limits.md](Limits.md) has what is promised.
PAGE
}

main() {
    local lSize
    gLoad=$(cut -d' ' -f1-3 /proc/loadavg)
    require_packages "${gPackages[@]}"
    cd "$gRoot"
    gTool=${TALBASE_BENCH_TOOL:-$gRoot/build/bench/Tools/TalBaseTool/talbase}
    if [[ ! -v TALBASE_BENCH_TOOL ]]; then
        show cmake --preset bench -DTALBASE_BUILD_EXAMPLES=OFF >&2
        show cmake --build --preset bench --target talbase >&2
    fi
    gFolder=$(mktemp -d)
    trap 'rm -rf "$gFolder"' EXIT
    gData=()
    gTitles=()
    gNames=()
    local lSizes=("$@")
    [[ $# -gt 0 ]] || lSizes=(3 30 300)
    for lSize in "${lSizes[@]}"; do
        gData+=("$gFolder/mails$lSize")
        gTitles+=("$lSize MB")
        gNames+=("Job 0/Subject")
        write_mails "$lSize" >"$gFolder/mails$lSize.bag"
        make_data "$gFolder/mails$lSize" "Job 0/Subject"
    done
    gData+=("$gFolder/levels")
    gTitles+=("1,000,000 levels")
    gNames+=("n")
    write_levels >"$gFolder/levels.bag"
    make_data "$gFolder/levels" "a"
    if [[ $# -gt 0 ]]; then
        write_table
    else
        write_page >"$gFolder/page.md"
        mv "$gFolder/page.md" "$gRoot/Docs/ToolPerformance.md"
    fi
}

main "$@"
