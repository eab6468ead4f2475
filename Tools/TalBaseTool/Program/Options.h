// What commands have in common on the command line: their arguments and options, and how one is told to the parser.

#ifndef TALBASETOOL_PROGRAM_OPTIONS_H
#define TALBASETOOL_PROGRAM_OPTIONS_H

#include "Commands/Commands.h"
#include "Program/CommandLine.h"

#include <CLI/CLI.hpp>
#include <limits>
#include <memory>
#include <optional>
#include <string>

namespace TalBaseTool
{

inline constexpr int gMost = std::numeric_limits<int>::max(); // of what is counted
extern const char* const gAboutPaths;                         // for the descriptions of commands that take one

void AddFile(CLI::App& oApp, std::string& oFile);
void AddInputs(CLI::App& oApp, InputOptions& oInputs, bool iHasLines = true); // FILES, --recursive, --lines, the pair
void AddZero(CLI::App& oApp, bool& oEndsWithZero, const char* ipWhat);
void AddFileNames(CLI::App& oApp, FileNames& oNames);
void AddOptional(CLI::App& oApp, const char* ipName, std::optional<std::string>& oValue, const char* ipWhat);
void AddPair(CLI::App& oApp, RawPair& oPair, const char* ipBegin = "--begin", const char* ipEnd = "--end");
void AddColor(CLI::App& oApp, ColorChoice& oColor);
void AddSensitiveNames(CLI::App& oApp, SecretOptions& oOptions); // --name
void AddSecrets(CLI::App& oApp, SecretOptions& oOptions);        // the same, and --show-secrets
void AddView(CLI::App& oApp, ViewOptions& oOptions);
void AddQuiet(CLI::App& oApp);
void AddRaw(CLI::App& oApp);
bool WritesData(const CLI::App& iApp);              // and does not draw
void AddInPlace(CLI::App& oApp, Target& oTarget);   // --in-place, and the same as AddReplacing
void AddReplacing(CLI::App& oApp, Target& oTarget); // --wait and --backup

// A command: its name, what its help says, its options, and what it does.
template <class Options, class Define>
void AddCommand(CLI::App& oApp, ChosenCommand& oChosen, const char* ipName, const std::string& iDescription,
                const char* ipExample, int (*ipRun)(const Options&, const Streams&), Define iDefine)
{
    const auto lOptions = std::make_shared<Options>();
    CLI::App& lApp = *oApp.add_subcommand(ipName, iDescription);
    lApp.footer(ipExample);
    iDefine(lApp, *lOptions);
    AddQuiet(lApp);
    if (WritesData(lApp) && lApp.get_option_no_throw(gRaw) == nullptr)
    {
        AddRaw(lApp);
    }
    lApp.callback([lOptions, ipRun, &oChosen] {
        oChosen = [lOptions, ipRun](const Streams& iStreams) { return ipRun(*lOptions, iStreams); };
    });
}

} // namespace TalBaseTool

#endif
