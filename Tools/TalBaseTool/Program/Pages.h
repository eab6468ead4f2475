// The manual pages and the completions, made from the command line itself, so that they cannot fall behind it.

#ifndef TALBASETOOL_PROGRAM_PAGES_H
#define TALBASETOOL_PROGRAM_PAGES_H

#include "Program/Help.h"

#include <string>
#include <vector>

namespace TalBaseTool
{

// The manual page of a command, or of the program, whose commands are then given.
std::string MakeManualPage(const CommandHelp& iCommand, const std::vector<CommandHelp>& iCommands);

// The completion scripts of the program.
std::string MakeBashCompletion(const CommandHelp& iProgram, const std::vector<CommandHelp>& iCommands);
std::string MakeZshCompletion(const CommandHelp& iProgram, const std::vector<CommandHelp>& iCommands);
std::string MakeFishCompletion(const CommandHelp& iProgram, const std::vector<CommandHelp>& iCommands);

} // namespace TalBaseTool

#endif
