// usage: talbase-bench [--filter REGEX] [--mail FOLDER] [--notes FILE] [--output FILE]
// Runs the benchmarks and prints their tables. A whole run writes them to the output file too, with the notes, the
// machine and the command; a part of one writes nothing. `./dev bench` calls it.

#include "Sections.h"

#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <stdexcept>

namespace
{

struct Section
{
    const char* mTitle;
    std::vector<Bench::Table> (*mMake)(const Bench::Options&);
};

constexpr Section gSections[] = {{"Beside other libraries", Bench::MakeRatioTables},
                                 {"Conversions", Bench::MakeConversionTables},
                                 {"Growth of hostile input", Bench::MakeGrowthTables},
                                 {"Memory for hostile input", Bench::MakeMemoryTables},
                                 {"Depth", Bench::MakeDepthTables}};

// Reads "--name value" pairs.
std::map<std::string, std::string> ReadArguments(int iCount, char** ipArguments)
{
    std::map<std::string, std::string> lArguments{{"--filter", ""}, {"--mail", ""}, {"--notes", ""}, {"--output", ""}};
    for (int lIndex = 1; lIndex < iCount; lIndex += 2)
    {
        if (lArguments.count(ipArguments[lIndex]) == 0 || lIndex + 1 == iCount)
        {
            throw std::invalid_argument(
                "usage: talbase-bench [--filter REGEX] [--mail FOLDER] [--notes FILE] [--output FILE]");
        }
        lArguments[ipArguments[lIndex]] = ipArguments[lIndex + 1];
    }
    return lArguments;
}

std::string ReadFile(const std::string& iName)
{
    std::ifstream lFile(iName, std::ios::binary);
    return {std::istreambuf_iterator<char>(lFile), {}};
}

std::string RunSections(const Bench::Options& iOptions)
{
    std::string lDocument;
    for (const Section& lSection : gSections)
    {
        std::string lText;
        for (const Bench::Table& lTable : lSection.mMake(iOptions))
        {
            lText += Bench::ToMarkdown(lTable);
        }
        Bench::ShowProgress("");
        if (!lText.empty())
        {
            lText.insert(0, std::string("## ") + lSection.mTitle + "\n\n");
            std::fputs(lText.c_str(), stdout);
            std::fflush(stdout);
            lDocument += lText;
        }
    }
    return lDocument;
}

void WriteDocument(const std::string& iName, const std::string& iNotes, const std::string& iLoads,
                   const std::string& iTables)
{
    std::ofstream lFile(iName, std::ios::binary | std::ios::trunc);
    lFile << "# Performance\n\nWritten by `./dev bench`; don't edit.\n\n"
          << Bench::DescribeMachine() << iLoads << "- command: `./dev bench`\n\n"
          << iNotes << (iNotes.empty() ? "" : "\n") << iTables.substr(0, iTables.size() - 1);
    if (!lFile.flush())
    {
        throw std::runtime_error("cannot write " + iName);
    }
}

void Run(int iCount, char** ipArguments)
{
    std::map<std::string, std::string> lArguments = ReadArguments(iCount, ipArguments);
    const std::filesystem::path lProgram = std::filesystem::canonical("/proc/self/exe");
    const Bench::Options lOptions{std::regex(lArguments["--filter"]), lArguments["--mail"],
                                  lProgram.parent_path() / "bench-case"};
    const std::string lLoadBefore = Bench::GetLoad();
    const std::string lTables = RunSections(lOptions);
    if (lTables.empty())
    {
        throw std::runtime_error("the filter lets nothing through");
    }
    const std::string lLoads = "- load averages before: " + lLoadBefore + "; after: " + Bench::GetLoad() + "\n";
    std::printf("%s%s", Bench::DescribeMachine().c_str(), lLoads.c_str());
    if (lArguments["--filter"].empty() && !lArguments["--output"].empty())
    {
        WriteDocument(lArguments["--output"], ReadFile(lArguments["--notes"]), lLoads, lTables);
        std::printf("\nwritten to %s\n", lArguments["--output"].c_str());
    }
}

} // namespace

int main(int iCount, char** ipArguments)
{
    try
    {
        Run(iCount, ipArguments);
    }
    catch (const std::invalid_argument& lFailure)
    {
        std::fprintf(stderr, "%s\n", lFailure.what());
        return 2;
    }
    catch (const std::exception& lFailure)
    {
        std::fprintf(stderr, "talbase-bench: %s\n", lFailure.what());
        return 1;
    }
}
