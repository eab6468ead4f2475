# Sourced by ../../dev: the steps `analysis` and `analyzer` of `./dev check`, which run at night and when they are named.
# Three tools read the sources of the library and of the platform family, each with what it is good at; none may have
# anything to say.
# shellcheck shell=bash

analysis_sources() {
    find TalBase Platform -name '*.cpp' -print0
}

# The list of checks, and why each is in or out, is in the configuration.
analysis_clang_tidy() {
    show cmake --preset clang-release
    analysis_sources | show xargs -0 -n 1 -P 2 clang-tidy-14 --quiet -p build/clang-release \
        --config-file=Tools/Dev/analysis.clang-tidy 2>&1 |
        { grep -v -E '^[0-9]+ warnings? generated\.$' || true; }
}

# Style is clang-tidy's. A suppression stands where the finding is, with its reason: // cppcheck-suppress id.
analysis_cppcheck() {
    show cppcheck --enable=warning,performance,portability --inline-suppr --std=c++20 --language=c++ -j 2 --quiet \
        --error-exitcode=1 -I . -I Platform TalBase Platform
}

# What g++ 12 knows of C++ is use after delete, deleting twice and the wrong delete. The warnings that are turned off take
# `new` for a function that may return null and leaks from factories, and do not see what a function returns in place.
step_analyzer() {
    analysis_sources | show xargs -0 -n 1 -P 2 g++-12 -std=c++20 -I . -I Platform -c -o /dev/null -Werror -fanalyzer \
        -Wno-analyzer-malloc-leak -Wno-analyzer-null-dereference -Wno-analyzer-possible-null-argument \
        -Wno-analyzer-possible-null-dereference -Wno-analyzer-use-of-uninitialized-value
}

step_analysis() {
    local lFailed=0
    analysis_cppcheck || lFailed=1
    analysis_clang_tidy || lFailed=1
    return $lFailed
}
