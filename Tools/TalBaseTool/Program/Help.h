// What there is to know of the command line, read from its parser once for everything that tells it on: the help, the
// manual pages and the completions.

#ifndef TALBASETOOL_PROGRAM_HELP_H
#define TALBASETOOL_PROGRAM_HELP_H

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace CLI
{
class App;
class FormatterBase;
} // namespace CLI

namespace TalBaseTool
{

struct ArgumentHelp
{
    std::vector<std::string> mNames; // "-i" and "--in-place"; empty for a positional argument
    std::string mValue;              // "FILE", "auto|always|never"; empty for a flag
    std::string mOptionalValue;      // of a flag that may have one: "--backup=SUFFIX"
    std::string mPlaceholder;        // of a positional argument: "A", "[FILE]", "FILES..."
    std::string mText;
};

struct CommandHelp
{
    std::string mName;    // "talbase", "talbase show"
    std::string mSummary; // one line
    std::string mDetails;
    std::string mExample;
    std::string mExit; // what its exit statuses mean; of the program, the table
    std::vector<ArgumentHelp> mPositionals;
    std::vector<ArgumentHelp> mOptions;

    std::string GetUsage() const; // "talbase show [OPTION]... [FILE]"
};

CommandHelp ReadHelp(const CLI::App& iApp);

// The same for each command of the program.
std::vector<CommandHelp> ReadCommands(const CLI::App& iApp);

// Prints all that as the answer to --help, in lines of a width; 0: the usual.
std::shared_ptr<CLI::FormatterBase> MakeHelpFormatter(std::size_t iWidth);

} // namespace TalBaseTool

#endif
