// What the commands cost: memory on a file of mails as a multiple of its size, and time that grows with the length of
// hostile input and not with its square. `./dev bench tool` measures both on large files; here each case has to stay
// far below a square, on any machine and under any load.

#include "Tests/Support/FailingNew.h"
#include "Tests/Tools/Hostile.h"
#include "Tests/Tools/RunTool.h"
#include "Tests/Tools/Screens.h"

#include "TalBase/Initializer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

using namespace ToolTests;

namespace
{

const QTalBase::Initializer gInitializer;

// Swallows what a command writes, which a file or a pipe would take.
class NoBuffer : public std::streambuf
{
protected:
    int_type overflow(int_type iCharacter) override
    {
        return traits_type::not_eof(iCharacter);
    }

    std::streamsize xsputn(const char*, std::streamsize iCount) override
    {
        return iCount;
    }
};

void Run(const std::vector<std::string>& iArguments)
{
    NoBuffer lBuffer;
    std::ostream lOut(&lBuffer);
    std::ostream lErr(&lBuffer);
    TalBaseTool::RunCommandLine(iArguments, {lOut, lErr, false, false});
}

double PeakMultiple(const std::vector<std::string>& iArguments, std::size_t iBytes)
{
    const std::size_t lBefore = Support::BytesHeld();
    Support::RestartPeak();
    Run(iArguments);
    return static_cast<double>(Support::PeakBytesHeld() - lBefore) / static_cast<double>(iBytes);
}

constexpr std::size_t gShort = 1 << 10;
constexpr std::size_t gFactor = 16;    // a square would take 256 times as long
constexpr double gLargestGrowth = 100; // six times what is linear, for caches and whatever else disturbs
constexpr double gLeastSeconds = 5e-4; // below that the clock counts for too much

double ProcessorSeconds()
{
    timespec lTime = {};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &lTime);
    return static_cast<double>(lTime.tv_sec) + 1e-9 * static_cast<double>(lTime.tv_nsec);
}

double Seconds(const std::vector<std::string>& iArguments)
{
    const double lStart = ProcessorSeconds();
    Run(iArguments);
    return ProcessorSeconds() - lStart;
}

// Where it seems too slow, it may have been disturbed, so the faster of two runs counts.
void ExpectNoSquare(const std::string& iWhat, const std::vector<std::string>& iShort,
                    const std::vector<std::string>& iLong)
{
    const double lShort = std::max(Seconds(iShort), gLeastSeconds);
    double lLong = Seconds(iLong);
    if (lLong > gLargestGrowth * lShort)
    {
        lLong = std::min(lLong, Seconds(iLong));
    }
    EXPECT_LE(lLong, gLargestGrowth * lShort) << iWhat;
}

// The arguments with "%" for the file of a shape.
std::vector<std::string> With(std::vector<std::string> iArguments, const std::string& iFile)
{
    for (std::string& lArgument : iArguments)
    {
        lArgument = lArgument == "%" ? iFile : lArgument;
    }
    return iArguments;
}

std::string First(const std::vector<std::string>& iArguments)
{
    std::string lText;
    for (const std::string& lArgument : iArguments)
    {
        lText += lArgument.substr(0, 20) + " ";
    }
    return lText;
}

// The next number.
void Increment(std::wstring& oDigits)
{
    std::size_t lDigit = oDigits.size() - 1;
    for (; oDigits[lDigit] == L'9'; --lDigit)
    {
        oDigits[lDigit] = L'0';
    }
    ++oDigits[lDigit];
}

// A JSON object and a bag, each with one property for each name.
std::string MakeObject(const std::vector<std::string>& iNames)
{
    std::string lText = "{";
    for (const std::string& lName : iNames)
    {
        lText += (lText.size() > 1 ? ",\"" : "\"") + lName + "\":\"x\"";
    }
    return lText + "}";
}

std::string MakeBagOf(const std::vector<std::string>& iNames)
{
    std::string lText = "EndDelimiter;BeginDelimiter=;";
    for (const std::string& lName : iNames)
    {
        lText += lName + "=x;";
    }
    return lText;
}

} // namespace

// The multiples that Docs/Limits.md states.
TEST(Cost, MemoryStaysWithinTheStatedMultiplesOfAFileOfMails)
{
    const Workplace lWorkplace;
    const std::string lText = MakeMails(500000);
    const std::string lFile = lWorkplace.Write("mails.bag", lText);
    const std::string lJson = lWorkplace.Write("mails.json", RunTool({"to-json", lFile}).mOut);
    struct Case
    {
        double mMost;
        std::vector<std::string> mArguments;
    };
    const Case lCases[] = {{7, {"check", lFile}},
                           {9, {"show", lFile}},
                           {9, {"get", "Job 0", lFile}},
                           {9, {"to-json", lFile}},
                           {8, {"from-json", lJson}},
                           {11, {"set", "Job 0/Subject", "x", lFile}},
                           {11, {"set", "New/Subject", "x", lFile}},
                           {11, {"remove", "Job 0/Subject", lFile}},
                           {11, {"move", "Job 0/Subject", "Subject", lFile}},
                           {11, {"redact", lFile}},
                           {11, {"delimiters", "--begin", "<=", "--end", ";;>", lFile}}};
    for (const Case& lCase : lCases)
    {
        EXPECT_LE(PeakMultiple(lCase.mArguments, lText.size()), lCase.mMost) << First(lCase.mArguments);
    }
}

TEST(Cost, HostileFilesTakeTimeInProportionToTheirLength)
{
    const Workplace lWorkplace;
    const std::string lFlat = lWorkplace.Write("flat.bag", gHeader + "a++++1***");
    const std::vector<std::vector<std::string>> lCommands = {{"check", "%"},
                                                             {"check", "--max-warnings", "0", "%"},
                                                             {"show", "%"},
                                                             {"get", "n", "%"},
                                                             {"set", "a/b", "x", "%"},
                                                             {"remove", "n", "%"},
                                                             {"move", "n", "m", "%"},
                                                             {"embed", "m/n", "%", lFlat},
                                                             {"diff", "%", "%"},
                                                             {"diff", lFlat, "%"},
                                                             {"merge", lFlat, "%"},
                                                             {"merge", "--deep", "%", "%"},
                                                             {"redact", "%"},
                                                             {"delimiters", "--begin", "<=", "--end", ";;>", "%"},
                                                             {"to-json", "%"},
                                                             {"window", "%"},
                                                             {"has", "n", "%"},
                                                             {"grep", "-i", "words", "%"},
                                                             {"get", "**/k", "%"},
                                                             {"get", "n*/*", "%"}};
    for (const Shape& lShape : MakeShapes())
    {
        const std::string lShort = lWorkplace.Write("short.bag", lShape.mMake(gShort));
        const std::string lLong = lWorkplace.Write("long.bag", lShape.mMake(gFactor * gShort));
        for (const std::vector<std::string>& lCommand : lCommands)
        {
            ExpectNoSquare(First(lCommand) + "of " + lShape.mName, With(lCommand, lShort), With(lCommand, lLong));
        }
    }
}

TEST(Cost, HostileDocumentsTakeTimeInProportionToTheirLength)
{
    const Workplace lWorkplace;
    for (const Shape& lShape : MakeJsonShapes())
    {
        const std::string lShort = lWorkplace.Write("short.json", lShape.mMake(gShort));
        const std::string lLong = lWorkplace.Write("long.json", lShape.mMake(gFactor * gShort));
        ExpectNoSquare("from-json of " + lShape.mName, {"from-json", lShort}, {"from-json", lLong});
        ExpectNoSquare("from-json -v of " + lShape.mName, {"from-json", "-v", lShort}, {"from-json", "-v", lLong});
    }
}

// Not of levels: their paths are as long as a square. The editor changes one value, and all the rest stays.
TEST(Cost, ListsTakeTimeInProportionToTheirLength)
{
    const Workplace lWorkplace;
    const std::string lEditor = lWorkplace.Write("editor", "#!/bin/sh\nsed -i 's/^n = .*/n = 2/' \"$1\"\n");
    std::filesystem::permissions(lEditor, std::filesystem::perms::owner_all);
    ::setenv("EDITOR", lEditor.c_str(), 1);
    ::unsetenv("VISUAL");
    for (const Shape& lShape : MakeShapes())
    {
        const auto lWrite = [&](const std::string& iName, std::size_t iCount) {
            const std::string lFile = lWorkplace.Write(iName + ".bag", lShape.mMake(iCount));
            const std::string lText = RunTool({"list", "--show-secrets", lFile}).mOut;
            return std::pair(lFile, lWorkplace.Write(iName + ".list", lText));
        };
        if (lShape.mName.rfind("levels", 0) == 0)
        {
            continue;
        }
        const std::pair lShort = lWrite("short", gShort);
        const std::pair lLong = lWrite("long", gFactor * gShort);
        ExpectNoSquare("list of " + lShape.mName, {"list", lShort.first}, {"list", lLong.first});
        ExpectNoSquare("list --sort of " + lShape.mName, {"list", "--sort", lShort.first},
                       {"list", "--sort", lLong.first});
        ExpectNoSquare("from-list of " + lShape.mName, {"from-list", lShort.second}, {"from-list", lLong.second});
        ExpectNoSquare("edit of " + lShape.mName, {"edit", lShort.first}, {"edit", lLong.first});
    }
}

// Each bag on the way was embedded in the next, and so copied as often as the path had names.
TEST(Cost, LongPathsTakeTimeInProportionToTheirLength)
{
    const Workplace lWorkplace;
    const std::string lFile = lWorkplace.Write("a.bag", gHeader + "a++++1***b++++c++++1******");
    const auto lPath = [](std::size_t iNames) { return Repeated("n/", iNames) + "n"; };
    for (const std::vector<std::string>& lCommand :
         std::vector<std::vector<std::string>>{{"set", "%", "x", lFile}, {"move", "b", "%", lFile}})
    {
        ExpectNoSquare(lCommand[0], With(lCommand, lPath(gShort)), With(lCommand, lPath(gFactor * gShort)));
    }
    EXPECT_EQ(RunTool({"set", "n/m/l", "x", lFile}).mOut,
              gHeader + "a++++1***b++++c++++1******n++++m++++l++++x*********");
    EXPECT_EQ(RunTool({"move", "b", "n/m/l", lFile}).mOut, gHeader + "a++++1***n++++m++++l++++c++++1************");
}

// A message for each of 20,000 nested objects, each with its whole path, came to 400 MB.
TEST(Cost, PathsOfDeepPlacesAreCut)
{
    const Workplace lWorkplace;
    const std::string lJson =
        lWorkplace.Write("deep.json", Repeated("{\"n\":", 50) + "{\"e\":\"\"}" + Repeated("}", 50));
    EXPECT_EQ(RunTool({"from-json", "-v", lJson}).mErr,
              "talbase: 1 empty text: left out (⋯ level 51 ⋯/" + Repeated("n/", 39) + "e)\n");
    const std::string lFile = lWorkplace.Write("a.bag", gHeader + "a++++1***");
    EXPECT_EQ(RunTool({"remove", Repeated("n/", 40) + "m", lFile}).mErr,
              "talbase: there is no ⋯ level 41 ⋯/" + Repeated("n/", 39) + "m\n");
    EXPECT_EQ(RunTool({"remove", Repeated("n/", 39) + "m", lFile}).mErr,
              "talbase: there is no " + Repeated("n/", 39) + "m\n");
}

// Who knows how the standard library hashes names can choose them so that all fall together.
TEST(Cost, NamesThatHashAlikeTakeNoLonger)
{
    constexpr std::size_t lCount = 5000;
    std::unordered_map<std::wstring, int> lTable;
    std::vector<std::string> lNames;
    for (std::size_t lNumber = 0; lNumber < lCount; ++lNumber)
    {
        lNames.push_back(std::to_string(1000000 + lNumber));
        lTable.emplace(std::to_wstring(1000000 + lNumber), 0);
    }
    std::vector<std::string> lAlike;
    for (std::wstring lName = L"10000000"; lAlike.size() < lCount; Increment(lName))
    {
        if (std::hash<std::wstring>()(lName) % lTable.bucket_count() == 0)
        {
            lAlike.emplace_back(lName.begin(), lName.end());
        }
    }
    const Workplace lWorkplace;
    const auto lExpect = [](const std::vector<std::string>& iPlain, const std::vector<std::string>& iAlike) {
        const double lPlain = std::max(Seconds(iPlain), 10 * gLeastSeconds);
        EXPECT_LT(std::min(Seconds(iAlike), Seconds(iAlike)), 4 * lPlain) << First(iAlike);
    };
    lExpect({"from-json", lWorkplace.Write("plain.json", MakeObject(lNames))},
            {"from-json", lWorkplace.Write("alike.json", MakeObject(lAlike))});
    const std::string lPlain = lWorkplace.Write("plain.bag", MakeBagOf(lNames));
    const std::string lHostile = lWorkplace.Write("alike.bag", MakeBagOf(lAlike));
    lExpect({"diff", lPlain, lPlain}, {"diff", lHostile, lHostile});
    lExpect({"merge", "--deep", lPlain, lPlain}, {"merge", "--deep", lHostile, lHostile});
}
