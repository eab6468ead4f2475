#include "Cases.h"
#include "Process.h"
#include "Sections.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <thread>

#include <unistd.h>

namespace Bench
{

namespace
{

constexpr std::size_t gFirstPower = 10;
constexpr std::size_t gLastPower = 20;
constexpr double gSeconds = 10;           // for all sizes of a case
constexpr double gCountedSeconds = 1.5;   // of these, as many as callgrind can count: it is some 60 times slower
constexpr double gCallgrindSeconds = 120; // for its count
constexpr std::size_t gTimedDoublings = 5;

// What a case cost at one size. No instructions: not counted.
struct Cost
{
    double mSeconds = 0;
    double mInstructions = 0;
    double mAllocatedBytes = 0;
    double mPeakBytes = 0;
};

// The costs of a case at doubling sizes, from the first on, as far as it got.
struct Growth
{
    HostileCase mCase;
    std::vector<Cost> mCosts;
    Outcome mOutcome = Outcome::Done;
};

// The first size comes twice: once to load what a program loads when it first needs it.
std::vector<std::string> MakeCommand(const Options& iOptions, const Growth& iGrowth, std::size_t iSizes)
{
    std::vector<std::string> lCommand{iOptions.mCaseProgram, "growth", iGrowth.mCase.mName,
                                      std::to_string(std::size_t{1} << gFirstPower)};
    for (std::size_t lIndex = 0; lIndex < iSizes; ++lIndex)
    {
        lCommand.push_back(std::to_string(std::size_t{1} << (gFirstPower + lIndex)));
    }
    return lCommand;
}

void MeasureCosts(const Options& iOptions, Growth& oGrowth)
{
    const ChildResult lResult = RunChild(MakeCommand(iOptions, oGrowth, gLastPower - gFirstPower + 1), gSeconds);
    oGrowth.mOutcome = lResult.mOutcome;
    std::istringstream lLines(lResult.mOutput);
    std::string lLine;
    std::getline(lLines, lLine);
    while (std::getline(lLines, lLine))
    {
        Cost lCost;
        std::size_t lSize = 0;
        if (std::istringstream(lLine) >> lSize >> lCost.mSeconds >> lCost.mInstructions >> lCost.mAllocatedBytes >>
            lCost.mPeakBytes)
        {
            oGrowth.mCosts.push_back(lCost);
        }
    }
}

// A folder that vanishes with this object.
class TemporaryFolder
{
public:
    TemporaryFolder()
    {
        std::string lName = (std::filesystem::temp_directory_path() / "talbase-bench-XXXXXX").string();
        if (::mkdtemp(lName.data()) == nullptr)
        {
            throw std::runtime_error("no temporary folder");
        }
        mPath = lName;
    }

    ~TemporaryFolder()
    {
        std::error_code lIgnored;
        std::filesystem::remove_all(mPath, lIgnored);
    }

    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::filesystem::path mPath;
};

// Returns the total of one of callgrind's files, or 0.
double ReadTotal(const std::filesystem::path& iFile)
{
    std::ifstream lFile(iFile);
    for (std::string lLine; std::getline(lFile, lLine);)
    {
        if (lLine.rfind("totals: ", 0) == 0)
        {
            return std::stod(lLine.substr(8));
        }
    }
    return 0;
}

// Returns how many of the sizes callgrind can count in its time.
std::size_t CountCountable(const Growth& iGrowth)
{
    double lSeconds = 0;
    const auto lEnd = std::find_if(iGrowth.mCosts.begin(), iGrowth.mCosts.end(), [&lSeconds](const Cost& iCost) {
        return (lSeconds += iCost.mSeconds) > gCountedSeconds;
    });
    return static_cast<std::size_t>(lEnd - iGrowth.mCosts.begin());
}

// Has callgrind count; it writes a numbered file for each size.
void CountInstructions(const Options& iOptions, Growth& oGrowth)
{
    const TemporaryFolder lFolder;
    const std::size_t lSizes = CountCountable(oGrowth);
    const std::string lOutput = (lFolder.mPath / "out").string();
    std::vector<std::string> lCommand{"valgrind", "--tool=callgrind", "--instr-atstart=no",
                                      "--callgrind-out-file=" + lOutput};
    for (const std::string& lArgument : MakeCommand(iOptions, oGrowth, lSizes))
    {
        lCommand.push_back(lArgument);
    }
    RunChild(lCommand, gCallgrindSeconds);
    for (std::size_t lIndex = 0; lIndex < lSizes; ++lIndex)
    {
        oGrowth.mCosts[lIndex].mInstructions = ReadTotal(lOutput + '.' + std::to_string(lIndex + 2));
    }
}

// Counting doesn't mind company, so each processor gets a case; the next one takes the next case.
void CountAllInstructions(const Options& iOptions, std::vector<Growth>& oGrowths)
{
    std::atomic<std::size_t> lNext{0};
    const auto lWork = [&] {
        for (std::size_t lIndex = lNext++; lIndex < oGrowths.size(); lIndex = lNext++)
        {
            Growth& lGrowth = oGrowths[lIndex];
            if (!lGrowth.mCosts.empty() && lGrowth.mCosts.front().mInstructions == 0)
            {
                ShowProgress("growth: counting the instructions of " + lGrowth.mCase.mName);
                CountInstructions(iOptions, lGrowth);
            }
        }
    };
    std::vector<std::thread> lThreads(std::max(1U, std::thread::hardware_concurrency()));
    std::generate(lThreads.begin(), lThreads.end(), [&] { return std::thread(lWork); });
    for (std::thread& lThread : lThreads)
    {
        lThread.join();
    }
}

// The factors of one kind of cost, one for each doubling whose two costs are known.
std::vector<double> GetFactors(const Growth& iGrowth, double Cost::*iCost)
{
    std::vector<double> lFactors;
    for (std::size_t lIndex = 1; lIndex < iGrowth.mCosts.size(); ++lIndex)
    {
        const double lBefore = iGrowth.mCosts[lIndex - 1].*iCost;
        const double lAfter = iGrowth.mCosts[lIndex].*iCost;
        if (lBefore > 0 && lAfter > 0)
        {
            lFactors.push_back(lAfter / lBefore);
        }
    }
    return lFactors;
}

std::string FormatWorst(const std::vector<double>& iFactors)
{
    return iFactors.empty() ? "-" : Format(*std::max_element(iFactors.begin(), iFactors.end()), 2);
}

// Times jump about from one size to the next, so they are taken over several doublings.
std::string FormatTimeFactor(const Growth& iGrowth)
{
    const std::size_t lLast = iGrowth.mCosts.size() - 1;
    if (lLast < gTimedDoublings)
    {
        return "-";
    }
    const double lFactor = iGrowth.mCosts[lLast].mSeconds / iGrowth.mCosts[lLast - gTimedDoublings].mSeconds;
    return Format(std::pow(lFactor, 1.0 / gTimedDoublings), 2);
}

std::string DescribeEnd(const Growth& iGrowth)
{
    const bool lIsCounted = GetFactors(iGrowth, &Cost::mInstructions).size() == gLastPower - gFirstPower;
    return iGrowth.mOutcome == Outcome::Done && !lIsCounted ? "not counted to the end"
                                                            : GetOutcomeName(iGrowth.mOutcome);
}

std::vector<std::string> MakeRow(const Growth& iGrowth)
{
    if (iGrowth.mCosts.empty())
    {
        return {iGrowth.mCase.mName, iGrowth.mCase.mSizeName, "none", "-", "-", "-", "-", "-", "-",
                DescribeEnd(iGrowth)};
    }
    const Cost& lLast = iGrowth.mCosts.back();
    return {iGrowth.mCase.mName,
            iGrowth.mCase.mSizeName,
            "2^" + std::to_string(gFirstPower + iGrowth.mCosts.size() - 1),
            FormatShort(lLast.mSeconds * 1000),
            FormatShort(lLast.mPeakBytes / 1e6),
            FormatWorst(GetFactors(iGrowth, &Cost::mInstructions)),
            FormatWorst(GetFactors(iGrowth, &Cost::mAllocatedBytes)),
            FormatTimeFactor(iGrowth),
            FormatWorst(GetFactors(iGrowth, &Cost::mPeakBytes)),
            DescribeEnd(iGrowth)};
}

Table MakeDetailTable(const std::vector<Growth>& iGrowths)
{
    Table lTable{"Instructions: the factor of each doubling, from 2^10 on", {"case"}, {}};
    for (std::size_t lPower = gFirstPower + 1; lPower <= gLastPower; ++lPower)
    {
        lTable.mHeader.push_back("to 2^" + std::to_string(lPower));
    }
    for (const Growth& lGrowth : iGrowths)
    {
        std::vector<std::string> lRow{lGrowth.mCase.mName};
        for (const double lFactor : GetFactors(lGrowth, &Cost::mInstructions))
        {
            lRow.push_back(Format(lFactor, 2));
        }
        lRow.resize(lTable.mHeader.size(), "-");
        lTable.mRows.push_back(std::move(lRow));
    }
    return lTable;
}

} // namespace

std::vector<Table> MakeGrowthTables(const Options& iOptions)
{
    std::vector<Growth> lGrowths;
    for (HostileCase& lCase : MakeGrowthCases())
    {
        if (std::regex_search("growth/" + lCase.mName, iOptions.mFilter))
        {
            lGrowths.push_back({std::move(lCase), {}});
            ShowProgress("growth: measuring " + lGrowths.back().mCase.mName);
            MeasureCosts(iOptions, lGrowths.back());
        }
    }
    if (lGrowths.empty())
    {
        return {};
    }
    CountAllInstructions(iOptions, lGrowths);
    Table lTable{"The factor of a doubling",
                 {"case", "what doubles", "up to", "ms there", "peak MB there", "instructions", "bytes allocated",
                  "time", "peak", "ended"},
                 {}};
    std::transform(lGrowths.begin(), lGrowths.end(), std::back_inserter(lTable.mRows), MakeRow);
    return {lTable, MakeDetailTable(lGrowths)};
}

} // namespace Bench
