// talbase: sees into property bags.

#include "File/OutputBuffer.h"
#include "File/Terminal.h"
#include "Program/CommandLine.h"

#include "TalBase/Initializer.h"

#include <fcntl.h>
#include <iostream>
#include <unistd.h>

namespace
{

// The program is one client of the library and holds it up from its start to its end.
const QTalBase::Initializer gInitializer;

// Where a standard stream is closed, the next file that is opened takes its number: messages would go into a file. What
// stands there instead refuses what the stream is for, as a closed one does.
void OccupyStandardStreams()
{
    for (const int lStream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
    {
        if (::fcntl(lStream, F_GETFD) < 0)
        {
            ::open("/dev/null", lStream == STDIN_FILENO ? O_WRONLY : O_RDONLY); // gets the lowest number that is free
        }
    }
}

} // namespace

int main(int iCount, char** ipArguments)
{
    OccupyStandardStreams();
    std::ios::sync_with_stdio(false);
    TalBaseTool::OutputBuffer lBuffer(STDOUT_FILENO);
    std::ostream lOutput(&lBuffer);
    return TalBaseTool::RunCommandLine({ipArguments + 1, ipArguments + iCount},
                                       {lOutput, std::cerr, ::isatty(STDOUT_FILENO) == 1, ::isatty(STDERR_FILENO) == 1,
                                        TalBaseTool::FindWidth(STDOUT_FILENO)});
}
