#include "MemoryCases.h"
#include "Process.h"
#include "Sections.h"

#include <algorithm>
#include <sstream>

namespace Bench
{

namespace
{

// Tables double, so the worst of a whole doubling counts.
constexpr std::size_t gCharacters[] = {400'000, 460'000, 530'000, 610'000, 700'000};
constexpr double gSeconds = 20; // for one cell, setting up included

std::string MakeCell(const Options& iOptions, const MemoryCase& iCase)
{
    ShowProgress("memory: " + iCase.mText + ", " + iCase.mOperation);
    std::vector<std::string> lCommand{iOptions.mCaseProgram, "memory", iCase.mText, iCase.mOperation};
    for (const std::size_t lCharacters : gCharacters)
    {
        lCommand.push_back(std::to_string(lCharacters));
    }
    const ChildResult lResult = RunChild(lCommand, gSeconds);
    if (lResult.mOutcome != Outcome::Done)
    {
        return GetOutcomeName(lResult.mOutcome);
    }
    std::istringstream lLines(lResult.mOutput);
    std::size_t lSize = 0;
    double lMultiple = 0;
    double lWorst = 0;
    while (lLines >> lSize >> lMultiple)
    {
        lWorst = std::max(lWorst, lMultiple);
    }
    return Format(lWorst, 2);
}

// Texts that have the same operations share a table.
struct Group
{
    std::vector<std::string> mOperations;
    std::vector<std::vector<std::string>> mRows;
};

Table MakeTable(const Group& iGroup)
{
    const std::vector<std::string>& lNames = iGroup.mOperations;
    const std::string lWhat = lNames.front() + (lNames.size() > 1 ? " to " + lNames.back() : "");
    Table lTable{"Peak memory as a multiple of the input: " + lWhat, {"text"}, iGroup.mRows};
    lTable.mHeader.insert(lTable.mHeader.end(), iGroup.mOperations.begin(), iGroup.mOperations.end());
    return lTable;
}

} // namespace

std::vector<Table> MakeMemoryTables(const Options& iOptions)
{
    const std::vector<MemoryCase> lCases = MakeMemoryCases();
    std::vector<Group> lGroups;
    for (std::size_t lIndex = 0; lIndex < lCases.size();)
    {
        const std::string lText = lCases[lIndex].mText;
        const bool lIsWanted = std::regex_search("memory/" + lText, iOptions.mFilter);
        std::vector<std::string> lOperations;
        std::vector<std::string> lRow{lText};
        for (; lIndex < lCases.size() && lCases[lIndex].mText == lText; ++lIndex)
        {
            lOperations.push_back(lCases[lIndex].mOperation);
            lRow.push_back(lIsWanted ? MakeCell(iOptions, lCases[lIndex]) : "");
        }
        if (lIsWanted && (lGroups.empty() || lGroups.back().mOperations != lOperations))
        {
            lGroups.push_back({lOperations, {}});
        }
        if (lIsWanted)
        {
            lGroups.back().mRows.push_back(lRow);
        }
    }
    std::vector<Table> lTables;
    std::transform(lGroups.begin(), lGroups.end(), std::back_inserter(lTables), MakeTable);
    return lTables;
}

} // namespace Bench
