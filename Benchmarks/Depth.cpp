#include "Cases.h"
#include "Process.h"
#include "Sections.h"
#include "SmallStack.h"

#include <algorithm>
#include <sstream>

namespace Bench
{

namespace
{

constexpr std::size_t gLevels[] = {1'000, 10'000, 100'000, 1'000'000};
constexpr double gSeconds = 20; // for one operation at one depth, setting up included

std::vector<std::string> MakeRow(const Options& iOptions, const HostileCase& iCase)
{
    std::vector<std::string> lRow{iCase.mName};
    std::size_t lMostStack = 0;
    for (const std::size_t lLevels : gLevels)
    {
        ShowProgress("depth: " + iCase.mName + " at " + std::to_string(lLevels) + " levels");
        const ChildResult lResult =
            RunChild({iOptions.mCaseProgram, "depth", iCase.mName, std::to_string(lLevels)}, gSeconds);
        std::size_t lSize = 0;
        double lSeconds = 0;
        std::string lUnused;
        std::size_t lStack = 0;
        std::istringstream(lResult.mOutput) >> lSize >> lSeconds >> lUnused >> lUnused >> lUnused >> lStack;
        if (lResult.mOutcome != Outcome::Done)
        {
            lRow.push_back(GetOutcomeName(lResult.mOutcome));
            break; // deeper is no better
        }
        lRow.push_back(FormatShort(lSeconds * 1000));
        lMostStack = std::max(lMostStack, lStack);
    }
    lRow.resize(1 + std::size(gLevels), "-");
    lRow.push_back(lMostStack == 0 ? "-" : FormatShort(static_cast<double>(lMostStack) / 1024));
    return lRow;
}

} // namespace

std::vector<Table> MakeDepthTables(const Options& iOptions)
{
    Table lTable{"Milliseconds by depth, each on a thread with a stack of " +
                     FormatShort(static_cast<double>(SmallStack::GetSize()) / 1024) + " KiB",
                 {"operation"},
                 {}};
    for (const std::size_t lLevels : gLevels)
    {
        lTable.mHeader.push_back(std::to_string(lLevels) + " levels");
    }
    lTable.mHeader.push_back("most KiB of stack used");
    for (const HostileCase& lCase : MakeDepthCases())
    {
        if (std::regex_search("depth/" + lCase.mName, iOptions.mFilter))
        {
            lTable.mRows.push_back(MakeRow(iOptions, lCase));
        }
    }
    return lTable.mRows.empty() ? std::vector<Table>{} : std::vector<Table>{lTable};
}

} // namespace Bench
