// Calls the tool's logic as main does, with texts in the place of the terminal.

#ifndef TESTS_TOOLS_RUNTOOL_H
#define TESTS_TOOLS_RUNTOOL_H

#include "Program/CommandLine.h"

#include <sstream>
#include <string>
#include <vector>

namespace ToolTests
{

struct ToolRun
{
    int mStatus;
    std::string mOut;
    std::string mErr;
};

inline ToolRun RunTool(const std::vector<std::string>& iArguments)
{
    std::ostringstream lOut;
    std::ostringstream lErr;
    const int lStatus = TalBaseTool::RunCommandLine(iArguments, {lOut, lErr, false, false});
    return {lStatus, lOut.str(), lErr.str()};
}

} // namespace ToolTests

#endif
