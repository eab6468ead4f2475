// The command line: what the commands and their options are called, and what the help says.

#ifndef TALBASETOOL_PROGRAM_COMMANDLINE_H
#define TALBASETOOL_PROGRAM_COMMANDLINE_H

#include "File/Document.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace CLI
{
class App;
}

namespace TalBaseTool
{

// What the arguments chose; set while they are parsed.
using ChosenCommand = std::function<int(const Streams&)>;

// Makes the parser. oChosen must outlive it. The description of a command begins with a line that sums it up; its
// footer is an example. The type of an argument tells what may stand there: FILE, or words with '|' between them.
// iWidth: of the help's lines; 0 for the usual.
std::unique_ptr<CLI::App> MakeParser(ChosenCommand& oChosen, std::size_t iWidth = 0);

// What every command has.
inline constexpr const char* gQuiet = "--quiet";

// What every command has that writes data and does not draw; for it, a terminal gets no control characters.
inline constexpr const char* gRaw = "--raw";

// Runs one command. iArguments: without the program's name. Returns the exit status; all trouble is reported.
int RunCommandLine(const std::vector<std::string>& iArguments, const Streams& iStreams);

} // namespace TalBaseTool

#endif
