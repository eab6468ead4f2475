# Sourced by ../../dev: the word `abi` and the step `abi` of `./dev check`. They compare the interface of the libraries
# with its record in Tests/Abi/, whose README.md says what each file is for.
# shellcheck shell=bash

gAbiRecord=Tests/Abi
gAbiBuild=build/abi
gAbiPackages=(g++-12 cmake ninja-build clang-14 python3 git abigail-tools binutils)

# Builds the libraries as they are released, but with the debug information that abidw reads, and installs them.
abi_build() {
    show cmake --preset abi
    show cmake --build --preset abi
    rm -rf "$gAbiBuild/installed"
    show cmake --install "$gAbiBuild" --prefix "$gAbiBuild/installed" >/dev/null
}

# Prints the six libraries as a client links them.
abi_libraries() {
    find "$gAbiBuild/installed" -name 'lib*.so' | LC_ALL=C sort
}

# Prints what a library exports, a symbol to a line: its kind, with the size that a program copying it relies on, its
# linker's name and its name. What abidw is told to leave out is left out here as well.
abi_exports() {
    local lExports
    lExports=$(readelf --dyn-syms --wide "$1" |
        awk '$7 != "UND" && $4 == "FUNC" { print "function", $8 }
             $7 != "UND" && $4 == "OBJECT" { print "data(" $3 ")", $8 }' |
        awk 'NR == FNR { if (sub(/^ *symbol_name_regexp = /, "")) gLeftOut[$0]; next }
             { for (lPattern in gLeftOut) if ($2 ~ lPattern) next; print }' Tools/Dev/abi.suppressions - |
        LC_ALL=C sort)
    paste -d ' ' <(echo "$lExports") <(cut -d ' ' -f 2 <<<"$lExports" | c++filt)
}

# Writes the types and functions that a library exports, without what differs from folder to folder.
abi_types() {
    local iLibrary=$1 iFile=$2
    if ! readelf --sections --wide "$iLibrary" | grep -q ' \.debug_info '; then
        echo "abi: $iLibrary has no debug information, so nothing about its types could be seen" >&2
        return 1
    fi
    show abidw --suppressions Tools/Dev/abi.suppressions --headers-dir "$gAbiBuild/installed/include" \
        --drop-private-types --exported-interfaces-only --no-parameter-names --no-show-locs --no-corpus-path --no-elf-needed \
        --no-comp-dir-path --out-file "$iFile" "$iLibrary"
    sed -i -E "s|(<abi-instr [^>]*path=')[^']*/((TalBase\|Platform)/)|\1\2|" "$iFile"
}

# Writes today's interface into a folder.
abi_write() {
    local iFolder=$1 lLibrary lName
    rm -rf "$iFolder"
    mkdir -p "$iFolder"
    for lLibrary in $(abi_libraries); do
        lName=$(basename "$lLibrary" .so)
        abi_exports "$lLibrary" >"$iFolder/$lName.exports"
        abi_types "$lLibrary" "$iFolder/$lName.abi"
    done
    Tools/Abi/headers.py "$gAbiBuild/installed/include" >"$iFolder/headers.sums"
}

# Shows how the headers differ whose sums differ, from when the sums were recorded.
abi_show_headers() {
    local lRecorded lHeader
    lRecorded=$(git log -1 --format=%h -- "$gAbiRecord/headers.sums")
    awk 'NR == FNR { gSums[$2] = $1; next } $1 != gSums[$2] { print $2 }' "$gAbiRecord/headers.sums" "$1" |
        while IFS= read -r lHeader; do
            show git --no-pager diff "${lRecorded:-HEAD}" -- "$lHeader" "Platform/$lHeader"
        done
}

abi_slots() {
    show Tests/Contract/VirtualTables.sh golden clang++-14 "$PWD" "$PWD/Platform"
}

# Every class whose virtual table is exported is among those whose slots are recorded. All ExceptionImpl<T> have the
# slots of their T and one of them stands for all.
abi_slots_complete() {
    local lClass lMissing=0
    while IFS= read -r lClass; do
        if ! grep -q -x "$lClass" Tests/Golden/Layout/VirtualSlots.txt; then
            echo "Tests/Contract/VirtualTables.cpp does not probe $lClass, whose virtual table is exported"
            lMissing=1
        fi
    done < <(sed -n 's/^data(.*) _ZTV[^ ]* vtable for //p' "$1"/*.exports | grep -v '^QBase::ExceptionImpl<' | sort -u)
    return $lMissing
}

# A client that was compiled against the headers of the baseline runs against today's libraries.
abi_old_client() {
    local lLibraries lClient=$gAbiBuild/old-client
    lLibraries=$(dirname "$(find "$gAbiBuild/installed" -name libTalBase.so)")
    show g++-12 -std=c++17 -Wall -Wextra -I "$gAbiRecord/baseline/headers" "$gAbiRecord/baseline/Client.cpp" \
        -o "$lClient" -L "$lLibraries" -Wl,-rpath,"$PWD/$lLibraries" \
        -lTalBase -lQ8Stream1 -lQ8DatTy4 -lQ8Log2 -lQ8Synch4 -lQ8Base4 && show "$lClient"
}

# Compares today's interface, written into a folder, with the record, and sets gDifferences to what differs.
abi_compare() {
    local iToday=$1 lFile
    gDifferences=()
    show diff -u -r --exclude=README.md --exclude=baseline --exclude='*.abi' --exclude=headers.sums "$gAbiRecord" \
        "$iToday" || gDifferences+=("exports")
    if ! show diff -u "$gAbiRecord/headers.sums" "$iToday/headers.sums"; then
        abi_show_headers "$iToday/headers.sums"
        gDifferences+=("headers: default arguments, inline functions, macros or declarations")
    fi
    abi_slots || gDifferences+=("virtual slots")
    abi_slots_complete "$iToday" || gDifferences+=("classes without recorded slots")
    for lFile in "$gAbiRecord"/*.abi; do
        # Any status but 0: a changed interface is 4, an incompatible one 12, and each is a difference.
        show abidiff --harmless "$lFile" "$iToday/$(basename "$lFile")" || gDifferences+=("types of $(basename "$lFile")")
    done
    abi_old_client || gDifferences+=("a client of the baseline, which no longer runs: hosts would break")
}

step_abi() {
    abi_build
    abi_write "$gAbiBuild/today"
    abi_compare "$gAbiBuild/today"
    if [[ ${#gDifferences[@]} -gt 0 ]]; then
        echo "abi: the interface is not the one of the record ($gAbiRecord/README.md). What differs:"
        printf '  %s\n' "${gDifferences[@]}"
        echo "abi: where that is meant, this accepts it: ./dev abi --accept"
        return 1
    fi
}

# Writes the record again, and with iBaseline what old clients are built against as well.
abi_accept() {
    local iBaseline=$1
    abi_build
    abi_write "$gAbiBuild/today"
    rm -rf "${gAbiRecord:?}"/*.exports "$gAbiRecord"/*.abi
    cp -r "$gAbiBuild/today/." "$gAbiRecord"
    if [[ $iBaseline == yes ]]; then
        rm -rf "$gAbiRecord/baseline"
        mkdir "$gAbiRecord/baseline"
        cp -r "$gAbiBuild/installed/include" "$gAbiRecord/baseline/headers"
        cp Tests/Consumer/Client.cpp "$gAbiRecord/baseline"
    fi
    echo "abi: written; read the difference before it is committed: git diff --stat $gAbiRecord"
    abi_slots || echo "abi: Tests/Golden/Layout/VirtualSlots.txt is written by hand, and needs the same change"
    abi_old_client || echo "abi: hosts would break; a new major version gives them up: ./dev abi --accept --break"
}

word_abi() {
    require_packages "${gAbiPackages[@]}"
    case "$*" in
        '') run_check_steps abi ;;
        --accept) abi_accept no ;;
        '--accept --break') abi_accept yes ;;
        *)
            echo "usage: ./dev abi [--accept [--break]]" >&2
            return 2
            ;;
    esac
}
