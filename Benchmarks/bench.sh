#!/usr/bin/env bash
# usage: Benchmarks/bench.sh [--filter REGEX]
# Behind `./dev bench`: installs what the benchmarks need, fetches the peers that are no packages, builds and runs. A
# whole run writes Docs/Performance.md; --filter runs what it is found in, among names such as ratios/parse/SMALL,
# conversions/read/ASCII, growth/asterisks, memory/nests and depth/parse, and writes nothing. TALBASE_BENCH_MAIL names
# another folder of messages.
set -euo pipefail

gRoot=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
# shellcheck source=Tools/Dev/Setup.sh
source "$gRoot/Tools/Dev/Setup.sh"

gPackages=(g++-12 cmake ninja-build dpkg-dev valgrind rapidjson-dev librapidxml-dev nlohmann-json3-dev libjsoncpp-dev)

main() {
    if [[ $# -ne 0 && ($# -ne 2 || $1 != --filter) ]]; then
        echo "usage: ./dev bench [--filter REGEX]" >&2
        return 2
    fi
    local lFilter=${2-} lMail=${TALBASE_BENCH_MAIL:-$gRoot/Examples/MailSpool/mail} lBuild=$gRoot/build/bench
    require_packages "${gPackages[@]}"
    show "$gRoot/CMake/PeersFetch.sh" "$lBuild/peers"
    cd "$gRoot"
    show cmake --preset bench -DTALBASE_BUILD_EXAMPLES=OFF
    show cmake --build --preset bench --target talbase-bench
    mkdir -p "$gRoot/Docs"
    show "$lBuild/Benchmarks/talbase-bench" --filter "$lFilter" --mail "$lMail" \
        --notes "$gRoot/Benchmarks/Notes.md" --output "$gRoot/Docs/Performance.md"
}

main "$@"
