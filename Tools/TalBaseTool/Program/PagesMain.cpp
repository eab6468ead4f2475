// Writes the manual pages and the completions of talbase below a folder, as they are installed below share.

#include "Program/CommandLine.h"
#include "Program/Pages.h"

#include <CLI/CLI.hpp>
#include <filesystem>
#include <fstream>
#include <iostream>

namespace
{

void Write(const std::filesystem::path& iFile, const std::string& iText)
{
    std::filesystem::create_directories(iFile.parent_path());
    std::ofstream lFile(iFile, std::ios::binary);
    lFile << iText;
    lFile.close();
    if (!lFile)
    {
        throw std::runtime_error("cannot write " + iFile.string());
    }
}

} // namespace

int main(int iCount, char** ipArguments)
{
    if (iCount != 2)
    {
        std::cerr << "usage: talbase-pages FOLDER\n";
        return 2;
    }
    try
    {
        using namespace TalBaseTool;
        const std::filesystem::path lFolder = ipArguments[1];
        ChosenCommand lChosen;
        const std::unique_ptr<CLI::App> lParser = MakeParser(lChosen);
        const CommandHelp lProgram = ReadHelp(*lParser);
        const std::vector<CommandHelp> lCommands = ReadCommands(*lParser);
        Write(lFolder / "man/man1/talbase.1", MakeManualPage(lProgram, lCommands));
        for (const CommandHelp& lCommand : lCommands)
        {
            const std::string lWord = lCommand.mName.substr(lProgram.mName.size() + 1);
            Write(lFolder / "man/man1" / ("talbase-" + lWord + ".1"), MakeManualPage(lCommand, {}));
        }
        Write(lFolder / "bash-completion/completions/talbase", MakeBashCompletion(lProgram, lCommands));
        Write(lFolder / "zsh/site-functions/_talbase", MakeZshCompletion(lProgram, lCommands));
        Write(lFolder / "fish/vendor_completions.d/talbase.fish", MakeFishCompletion(lProgram, lCommands));
        return 0;
    }
    catch (const std::exception& lError)
    {
        std::cerr << "talbase-pages: " << lError.what() << '\n';
        return 2;
    }
}
