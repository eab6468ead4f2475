# Sourced by ../../dev: the documents, for those who use the library.
# shellcheck shell=bash

gDocsPackages=(doxygen graphviz clang-14)

# What the documents tell of other libraries is compiled with them; that of JSON also comes with the tool.
# shellcheck disable=SC2034 # for ./dev check
gToldPackages=(rapidjson-dev libboost-dev)

# Makes HTML of the public headers and the documents in build/docs/html. Fails on whatever Doxygen has to say: it goes on
# with nothing where one of the filters fails.
build_html() {
    local lFolder=build/docs lVersion
    lVersion=$(sed -n 's/^project(TalBase VERSION \([0-9.]*\) .*/\1/p' CMakeLists.txt)
    rm -rf "$lFolder"
    mkdir -p "$lFolder"
    show Tests/Contract/VirtualTables.sh page clang++-14 "$PWD" "$PWD/Platform" >"$lFolder/VirtualSlots.md"
    show env TALBASE_VERSION="$lVersion" doxygen Docs/Doxyfile 2>&1 | tee "$lFolder/said" >&2
    if grep -q -v '^+ ' "$lFolder/said"; then
        echo "build_html: Doxygen is to say nothing" >&2
        return 1
    fi
}

word_docs() {
    # shellcheck disable=SC2154 # dev has the first list
    require_packages "${gTestPackages[@]}" "${gDocsPackages[@]}"
    show cmake --preset release
    show cmake --build --preset release --target shown-code
    build_html
    echo "The pages begin at build/docs/html/index.html" >&2
}

# The pages are made without a warning, and hold what the headers say.
step_documents() {
    build_html
    show grep -q 'Sets a property, replacing what bears the name' build/docs/html/classQTalBase_1_1PropertyBag.html
}
