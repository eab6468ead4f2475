// The words of a command line, made ready for its parser, CLI11.

#ifndef TALBASETOOL_PROGRAM_ARGUMENTS_H
#define TALBASETOOL_PROGRAM_ARGUMENTS_H

#include <string>
#include <vector>

namespace CLI
{
class App;
}

namespace TalBaseTool
{

// "help show" is "show --help", and what CLI11 would take for something else is written in another way. Throws
// UsageError for what begins with no command, since CLI11 does not name it.
std::vector<std::string> PrepareArguments(const CLI::App& iApp, const std::vector<std::string>& iArguments);

// What may be shown of a message about arguments. A value in a wrong place may be a secret's, so where one of them
// holds a sensitive name, those that the message quotes are masked; ones of less than four characters are not looked
// for.
std::string HideArguments(const CLI::App& iApp, const std::vector<std::string>& iArguments, std::string iMessage);

// Has the parser take arguments as they were before that.
void RestoreArguments(CLI::App& oApp);

} // namespace TalBaseTool

#endif
