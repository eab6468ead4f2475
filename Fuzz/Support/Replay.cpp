// Runs a fuzzer's test on files instead of under the fuzzing engine: ReplayNAME [--break RULE] FILE|FOLDER... The name
// of each file is printed before it is tested, so the last one is the one that failed. A folder that does not exist
// holds no files; it is a failure when there is none at all.

#include "Fuzz/Support/Target.h"
#include "Tests/Support/BrokenRule.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>
#include <vector>

namespace
{

namespace fs = std::filesystem;

// In the same order on every machine.
std::vector<fs::path> FilesOf(const fs::path& iPath)
{
    std::vector<fs::path> lFiles;
    if (fs::is_regular_file(iPath))
    {
        lFiles.push_back(iPath);
    }
    if (fs::is_directory(iPath))
    {
        for (const fs::directory_entry& lEntry : fs::directory_iterator(iPath))
        {
            lFiles.push_back(lEntry.path());
        }
    }
    std::sort(lFiles.begin(), lFiles.end());
    return lFiles;
}

void Replay(const fs::path& iFile)
{
    std::printf("%s\n", iFile.c_str());
    std::fflush(stdout);
    std::ifstream lStream(iFile, std::ios::binary);
    const std::vector<char> lBytes{std::istreambuf_iterator<char>(lStream), std::istreambuf_iterator<char>()};
    if (!lStream.is_open())
    {
        std::fprintf(stderr, "cannot be read\n");
        std::exit(2);
    }
    // A copy of exactly that size, so that a sanitizer sees a read behind its end.
    const std::vector<std::uint8_t> lInput(lBytes.begin(), lBytes.end());
    LLVMFuzzerTestOneInput(lInput.data(), lInput.size());
}

} // namespace

int main(int iCount, char** ipArguments)
{
    // An exit instead of a signal, so that tests of this program can expect it to fail.
    std::signal(SIGABRT, [](int) { std::_Exit(1); });
    int lIndex = 1;
    if (iCount > 2 && std::string_view(ipArguments[1]) == "--break")
    {
        Plain::gBrokenRule = ipArguments[2];
        lIndex = 3;
    }
    std::size_t lReplayed = 0;
    for (; lIndex < iCount; ++lIndex)
    {
        for (const fs::path& lFile : FilesOf(ipArguments[lIndex]))
        {
            Replay(lFile);
            ++lReplayed;
        }
    }
    std::printf("%zu files replayed\n", lReplayed);
    return lReplayed == 0 ? 2 : 0;
}
