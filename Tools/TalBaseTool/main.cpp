// talbase: sees into property bags.

#include "CommandLine.h"

#include "TalBase/Initializer.h"

#include <iostream>
#include <unistd.h>

namespace
{

// The program is one client of the library and holds it up from its start to its end.
const QTalBase::Initializer gInitializer;

} // namespace

int main(int iCount, char** ipArguments)
{
    std::ios::sync_with_stdio(false);
    return TalBaseTool::RunCommandLine(
        {ipArguments + 1, ipArguments + iCount},
        {std::cout, std::cerr, ::isatty(STDOUT_FILENO) == 1, ::isatty(STDERR_FILENO) == 1});
}
