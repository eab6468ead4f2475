#include "Program/ExitStatus.h"

#include <algorithm>

namespace TalBaseTool
{

namespace
{

const std::vector<ExitMeaning>& Meanings()
{
    static const std::vector<ExitMeaning> lMeanings = {
        {{"check"}, "valid", "invalid", true, false},
        {{"diff"}, "the same", "different", true, true},
        {{"get", "has"}, "there", "not there", true, true},
        {{"grep"}, "found", "not found", true, true},
        {{"list"}, "done", "-", false, true},
        {{"remove", "move", "window"}, "done", "not there, not kept", false, true},
        {{}, "done", "invalid, not kept", false, false},
    };
    return lMeanings;
}

std::string DescribeTrouble(const ExitMeaning& iMeaning)
{
    return iMeaning.mIsUnreadableTrouble ? "trouble, unreadable" : "trouble";
}

std::string Padded(const std::string& iText, std::size_t iWidth)
{
    return iText + std::string(iWidth - std::min(iWidth, iText.size()), ' ');
}

std::string MakeRow(const std::string& iCommands, const std::string& iGood, const std::string& iBad,
                    const std::string& iTrouble)
{
    return Padded(iCommands, 22) + Padded(iGood, 10) + Padded(iBad, 21) + iTrouble + "\n";
}

} // namespace

const char* const gAboutExits =
    "Trouble is a command line that makes no sense, or a system that refuses. Unreadable is a text that is no bag's, "
    "which elsewhere is invalid. What is not kept is what no text could hold";

const ExitMeaning& FindExitMeaning(const std::string& iCommand)
{
    for (const ExitMeaning& lMeaning : Meanings())
    {
        if (std::count(lMeaning.mCommands.begin(), lMeaning.mCommands.end(), iCommand) != 0)
        {
            return lMeaning;
        }
    }
    return Meanings().back();
}

std::string DescribeExit(const ExitMeaning& iMeaning)
{
    const std::string lBad = iMeaning.mBad != "-" ? ", 1 " + iMeaning.mBad : "";
    return "0 " + iMeaning.mGood + lBad + ", 2 " + DescribeTrouble(iMeaning);
}

std::string MakeExitTable(const std::vector<std::string>& iCommands)
{
    std::string lTable = MakeRow("", "0", "1", "2");
    for (const ExitRow& lRow : FindExitRows(iCommands))
    {
        lTable += MakeRow(lRow.mCommands, lRow.mMeaning.mGood, lRow.mMeaning.mBad, DescribeTrouble(lRow.mMeaning));
    }
    return lTable;
}

std::vector<ExitRow> FindExitRows(const std::vector<std::string>& iCommands)
{
    std::vector<ExitRow> lRows;
    for (const ExitMeaning& lMeaning : Meanings())
    {
        std::string lNames = lMeaning.mCommands.empty() ? "all others" : "";
        for (const std::string& lCommand : lMeaning.mCommands)
        {
            const bool lIsThere = std::count(iCommands.begin(), iCommands.end(), lCommand) != 0;
            lNames += lIsThere ? (lNames.empty() ? "" : ", ") + lCommand : "";
        }
        if (!lNames.empty())
        {
            lRows.push_back({lNames, lMeaning});
        }
    }
    return lRows;
}

} // namespace TalBaseTool
