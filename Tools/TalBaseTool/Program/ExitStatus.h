// What the exit statuses mean, in one table for the program, its help and its manual: 0, 1 and 2 as diff and grep have
// them.

#ifndef TALBASETOOL_PROGRAM_EXITSTATUS_H
#define TALBASETOOL_PROGRAM_EXITSTATUS_H

#include <string>
#include <vector>

namespace TalBaseTool
{

// A row of the table.
struct ExitMeaning
{
    std::vector<std::string> mCommands; // empty for all that no other row has
    std::string mGood;                  // 0
    std::string mBad;                   // 1
    bool mIsQuestion;                   // what is asked for is the status: with --quiet nothing else is answered
    bool mIsUnreadableTrouble;          // a text that is no bag's is 2, because 1 means something else
};

const ExitMeaning& FindExitMeaning(const std::string& iCommand);

// "0 valid, 1 invalid, 2 trouble"
std::string DescribeExit(const ExitMeaning& iMeaning);

// The table for the commands that there are, with a line of headings; every line ends.
std::string MakeExitTable(const std::vector<std::string>& iCommands);

// Its rows, for who has no room for it.
struct ExitRow
{
    std::string mCommands; // "get, has"
    const ExitMeaning& mMeaning;
};
std::vector<ExitRow> FindExitRows(const std::vector<std::string>& iCommands);

// What "trouble" and "unreadable" are.
extern const char* const gAboutExits;

} // namespace TalBaseTool

#endif
