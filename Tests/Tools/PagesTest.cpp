// The help, the manual pages and the completions tell all there is.

#include "Program/Pages.h"

#include "Program/CommandLine.h"
#include "Tests/Tools/RunTool.h"
#include "Tests/Tools/Screens.h"

#include <CLI/CLI.hpp>
#include <gtest/gtest.h>

#include <algorithm>
#include <regex>

using namespace TalBaseTool;
using namespace ToolTests;

namespace
{

std::vector<CommandHelp> Commands()
{
    ChosenCommand lChosen;
    return ReadCommands(*MakeParser(lChosen));
}

std::string Word(const CommandHelp& iCommand)
{
    return iCommand.mName.substr(iCommand.mName.find(' ') + 1);
}

// Runs the completion of a command line as bash does; the last word is the one that is completed.
std::string Complete(const std::string& iWords)
{
    const Workplace lWorkplace;
    const std::string lScript = TALBASE_TOOL_SHARE "/bash-completion/completions/talbase";
    return RunShell(lWorkplace.GetFolder(), "source " + lScript + "; COMP_WORDS=(" + iWords +
                                                "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _talbase; echo "
                                                "\"${COMPREPLY[*]}\"")
        .mOutput;
}

} // namespace

TEST(Help, EveryCommandHasASummaryDetailsAndAnExample)
{
    EXPECT_EQ(Commands().size(), 20U);
    for (const CommandHelp& lCommand : Commands())
    {
        const ToolRun lRun = RunTool({Word(lCommand), "--help"});
        EXPECT_EQ(lRun.mStatus, 0);
        EXPECT_EQ(lRun.mErr, "");
        EXPECT_EQ(lRun.mOut.rfind("usage: " + lCommand.mName + " [OPTION]...", 0), 0U) << lRun.mOut;
        EXPECT_NE(lRun.mOut.find("\nExample:\n  " + lCommand.mName), std::string::npos) << lRun.mOut;
        EXPECT_GT(lCommand.mDetails.size(), 20U) << lCommand.mName;
        std::size_t lStart = 0;
        for (std::size_t lStop; (lStop = lRun.mOut.find('\n', lStart)) != std::string::npos; lStart = lStop + 1)
        {
            EXPECT_LE(lStop - lStart, 80U) << lRun.mOut.substr(lStart, lStop - lStart);
        }
        for (const ArgumentHelp& lOption : lCommand.mOptions)
        {
            EXPECT_NE(lRun.mOut.find(lOption.mNames.back()), std::string::npos) << lOption.mNames.back();
            EXPECT_FALSE(lOption.mText.empty()) << lOption.mNames.back();
        }
    }
}

TEST(Help, EveryCommandWithAPathTellsHowASlashIsWritten)
{
    std::size_t lCount = 0;
    for (const CommandHelp& lCommand : Commands())
    {
        const std::string lPage = ReadFile(TALBASE_TOOL_SHARE "/man/man1/talbase-" + Word(lCommand) + ".1");
        const auto lIsPath = [](const ArgumentHelp& iArgument) { return iArgument.mValue == "PATH"; };
        const bool lHasPath = std::any_of(lCommand.mPositionals.begin(), lCommand.mPositionals.end(), lIsPath) ||
                              std::any_of(lCommand.mOptions.begin(), lCommand.mOptions.end(), lIsPath) ||
                              Word(lCommand) == "list"; // which writes them
        const std::string lHelp = RunTool({"help", Word(lCommand)}).mOut;
        EXPECT_EQ(std::regex_search(lHelp, std::regex(R"(a\s+/\s+in\s+a\s+name\s+is\s+written\s+\\/)")), lHasPath)
            << lHelp;
        EXPECT_EQ(lPage.find("a / in a name is written \\e/ and a \\e is written \\e\\e.") != std::string::npos,
                  lHasPath)
            << lPage;
        EXPECT_FALSE(std::regex_search(lPage, std::regex("[^.][.][.]\n"))) << lPage;
        lCount += lHasPath ? 1 : 0;
    }
    EXPECT_EQ(lCount, 8U);
}

// They are commands that work, one after the other, where the README's first block about the tool has made its bags.
TEST(Help, ExamplesRunBehindTheReadmes)
{
    const Workplace lWorkplace;
    for (const auto& lFile : std::filesystem::directory_iterator(lWorkplace.GetFolder()))
    {
        std::filesystem::remove(lFile);
    }
    const std::string lReadme = ReadFile(std::filesystem::path(TALBASE_SOURCE_DIR) / "README.md");
    const std::size_t lStart = lReadme.find("talbase from-json >job.bag");
    ASSERT_NE(lStart, std::string::npos);
    const Finished lMade =
        RunShell(lWorkplace.GetFolder(), lReadme.substr(lStart, lReadme.find("```", lStart) - lStart));
    ASSERT_EQ(lMade.mStatus, 0) << lMade.mOutput;
    for (const CommandHelp& lCommand : Commands())
    {
        const Finished lFinished =
            RunShell(lWorkplace.GetFolder(), "set -o pipefail; export VISUAL=true; exec 2>&1; " + lCommand.mExample);
        EXPECT_EQ(lFinished.mStatus, Word(lCommand) == "diff" ? 1 : 0) << lCommand.mExample << '\n'
                                                                       << lFinished.mOutput;
        const bool lIsSilent = Word(lCommand) == "set" || lCommand.mExample.find('>') != std::string::npos;
        EXPECT_EQ(lFinished.mOutput == "", lIsSilent) << lCommand.mExample << '\n' << lFinished.mOutput;
    }
}

TEST(ManualPages, HaveEveryOptionOfTheirCommand)
{
    for (const CommandHelp& lCommand : Commands())
    {
        const std::string lPage = ReadFile(TALBASE_TOOL_SHARE "/man/man1/talbase-" + Word(lCommand) + ".1");
        EXPECT_EQ(lPage, MakeManualPage(lCommand, {}));
        for (const char* lSection : {".SH NAME\n", ".SH SYNOPSIS\n", ".SH DESCRIPTION\n", ".SH OPTIONS\n",
                                     ".SH EXIT STATUS\n", ".TP\n\\fBCOLUMNS\\fR\n", ".SH EXAMPLE\n", ".SH SEE ALSO\n"})
        {
            EXPECT_NE(lPage.find(lSection), std::string::npos) << lCommand.mName << ": " << lSection;
        }
        for (const ArgumentHelp& lOption : lCommand.mOptions)
        {
            std::string lName = lOption.mNames.back();
            for (std::size_t lPlace = lName.find('-'); lPlace != std::string::npos;
                 lPlace = lName.find('-', lPlace + 2))
            {
                lName.insert(lPlace, "\\");
            }
            EXPECT_NE(lPage.find("\\fB" + lName + "\\fR"), std::string::npos) << lCommand.mName << ": " << lName;
        }
    }
    const std::string lPage = ReadFile(TALBASE_TOOL_SHARE "/man/man1/talbase.1");
    EXPECT_NE(lPage.find("\ncheck                 valid     invalid              trouble\n"), std::string::npos)
        << lPage;
    for (const CommandHelp& lCommand : Commands())
    {
        EXPECT_NE(lPage.find(lCommand.mSummary), std::string::npos) << lCommand.mName;
    }
}

// What a lock is worth on network file systems, where files are changed.
TEST(ManualPages, OfCommandsThatChangeFilesTellOfLocks)
{
    std::size_t lCount = 0;
    for (const CommandHelp& lCommand : Commands())
    {
        const std::string lPage = ReadFile(TALBASE_TOOL_SHARE "/man/man1/talbase-" + Word(lCommand) + ".1");
        const std::string lHelp = RunTool({Word(lCommand), "--help"}).mOut;
        const bool lChanges = lHelp.find("--wait SECONDS ") != std::string::npos;
        EXPECT_EQ(lHelp.find("--backup[=SUFFIX] ") != std::string::npos, lChanges) << lHelp;
        EXPECT_EQ(lPage.find("\n.SH SEVERAL CHANGES AT ONCE\nA file that is changed in place is locked") !=
                      std::string::npos,
                  lChanges)
            << lPage;
        EXPECT_EQ(lPage.find("On a network file system the lock holds") != std::string::npos, lChanges) << lPage;
        EXPECT_EQ(lPage.find("\\fB\\-\\-backup\\fR[=\\fISUFFIX\\fR]\n") != std::string::npos, lChanges) << lPage;
        lCount += lChanges ? 1 : 0;
    }
    EXPECT_EQ(lCount, 8U);
}

TEST(BashCompletion, KnowsCommandsOptionsWordsAndFiles)
{
    const std::string lCommands = Complete("talbase ''");
    for (const CommandHelp& lCommand : Commands())
    {
        EXPECT_NE(lCommands.find(Word(lCommand) + " "), std::string::npos) << lCommand.mName;
    }
    EXPECT_EQ(Complete("talbase sh"), "show\n");
    EXPECT_EQ(Complete("talbase show --c"), "--color --cut\n");
    EXPECT_EQ(Complete("talbase show --color ''"), "auto always never\n");
    EXPECT_EQ(Complete("talbase show --color = ne"), "never\n");
    EXPECT_EQ(Complete("talbase show --color ="), "auto always never\n");
    const std::string lFiles =
        Complete("talbase show jo"); // in the order of the folder, which bash sorts when it shows them
    EXPECT_TRUE(lFiles == "job-new.bag job.bag\n" || lFiles == "job.bag job-new.bag\n") << lFiles;
    EXPECT_EQ(Complete("talbase set --value-from li"), "lines.txt\n");
    EXPECT_EQ(Complete("talbase set --begin ''"), "\n");
}

TEST(Completions, HaveEveryOption)
{
    const std::string lZsh = ReadFile(TALBASE_TOOL_SHARE "/zsh/site-functions/_talbase");
    const std::string lFish = ReadFile(TALBASE_TOOL_SHARE "/fish/vendor_completions.d/talbase.fish");
    for (const CommandHelp& lCommand : Commands())
    {
        EXPECT_NE(lZsh.find("'" + Word(lCommand) + ":"), std::string::npos);
        for (const ArgumentHelp& lOption : lCommand.mOptions)
        {
            const std::string& lName = lOption.mNames.back();
            const std::string lFlag = lName.rfind("--", 0) == 0 ? " -l " + lName.substr(2) : " -s " + lName.substr(1);
            EXPECT_NE(lZsh.find("'*" + lName), std::string::npos) << lCommand.mName << lName;
            EXPECT_NE(lFish.find("__fish_seen_subcommand_from " + Word(lCommand) + "'"), std::string::npos);
            EXPECT_NE(lFish.find(lFlag + " "), std::string::npos) << lCommand.mName << lName;
        }
    }
}
