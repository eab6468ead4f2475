// The real program, as its users see it: the screens in Tests/Golden/Tools and those of the README.

#include "Tests/Tools/Screens.h"
#include "Tests/Contract/Documents/Document.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

using namespace ToolTests;

namespace
{

namespace fs = std::filesystem;

const fs::path gGolden = fs::path(TALBASE_SOURCE_DIR) / "Tests/Golden/Tools";

std::vector<std::string> ScreenNames()
{
    std::vector<std::string> lNames;
    for (const auto& lFile : fs::directory_iterator(gGolden))
    {
        if (lFile.path().extension() == ".screen")
        {
            lNames.push_back(lFile.path().stem());
        }
    }
    std::sort(lNames.begin(), lNames.end());
    return lNames;
}

std::string TestName(const testing::TestParamInfo<std::string>& iInfo)
{
    std::string lName = iInfo.param;
    std::replace(lName.begin(), lName.end(), '-', '_');
    return lName;
}

class Screens : public testing::TestWithParam<std::string>
{
};

// The blocks of a language in the README that begin with a command of the tool.
std::vector<std::string> ReadmeBlocks(const std::string& iLanguage, const std::string& iCommand)
{
    const std::string lReadme = Documents::ReadProjectFile("README.md");
    const std::string lStart = "\n```" + iLanguage + "\n";
    std::vector<std::string> lBlocks;
    for (std::size_t lPlace = lReadme.find(lStart + iCommand); lPlace != std::string::npos;
         lPlace = lReadme.find(lStart + iCommand, lPlace + 1))
    {
        const std::size_t lText = lPlace + lStart.size();
        lBlocks.push_back(lReadme.substr(lText, lReadme.find("```\n", lText) - lText));
    }
    return lBlocks;
}

} // namespace

TEST_P(Screens, AreAsWritten)
{
    const std::string lScreen = ReadFile(gGolden / (GetParam() + ".screen"));
    ASSERT_FALSE(FindCommands(lScreen).empty());
    EXPECT_EQ(RunScreen(lScreen), lScreen);
}

INSTANTIATE_TEST_SUITE_P(Golden, Screens, testing::ValuesIn(ScreenNames()), TestName);

// Typed in order in an empty folder, as a reader does: first what makes the bags, then the screens.
TEST(ReadmeScreens, AreWhatTheToolPrints)
{
    const Workplace lWorkplace;
    const fs::path lFolder = fs::path(lWorkplace.GetFolder()) / "of-the-reader";
    fs::create_directory(lFolder);
    const std::vector<std::string> lMaking = ReadmeBlocks("sh", "talbase ");
    ASSERT_EQ(lMaking.size(), 1U);
    const Finished lMade = RunShell(lFolder, "exec 2>&1; set -e -o pipefail; " + lMaking[0]);
    EXPECT_EQ(lMade.mOutput, "");
    ASSERT_EQ(lMade.mStatus, 0);
    std::set<std::string> lShown;
    for (const std::string& lScreen : ReadmeBlocks("text", "$ talbase "))
    {
        EXPECT_EQ(RunScreenIn(lFolder, lScreen), lScreen);
        for (const std::string& lCommand : FindCommands(lScreen))
        {
            lShown.insert(lCommand.substr(0, lCommand.find(' ', 8)));
        }
    }
    for (const char* lCommand : {"talbase show", "talbase check", "talbase diff", "talbase window"})
    {
        EXPECT_EQ(lShown.count(lCommand), 1U) << lCommand;
    }
}

// Every message that reading can throw is shown with its place.
TEST(CheckScreens, HaveEveryMessageOfReading)
{
    const std::string lScreen = ReadFile(gGolden / "check-messages.screen");
    std::size_t lCount = 0;
    for (const Documents::Table& lTable : Documents::ReadTables(Documents::ReadProjectFile("Docs/Errors.md")))
    {
        if (lTable.mSection != "Reading a text" && lTable.mSection != "Delimiters")
        {
            continue;
        }
        for (const Documents::Row& lRow : lTable.mRows)
        {
            const std::string lText = Documents::CodeSpans(lRow.at("text")).at(0);
            // No text leads to the one, and the other belongs to a function that the tool does not read with.
            if (lText.find("A string or Begin token was expected") == std::string::npos &&
                lText.find("CreatePropertyBagFromUTF8") == std::string::npos)
            {
                EXPECT_NE(lScreen.find(lText.substr(0, lText.find('<'))), std::string::npos) << lText;
                ++lCount;
            }
        }
    }
    EXPECT_EQ(lCount, 13U);
    for (const char* lText : {"SetProperty; ipName may not contain the delimiters", "the header ends too early",
                              "SetProperty; ipValue may not contain the delimiters"})
    {
        EXPECT_NE(lScreen.find(lText), std::string::npos) << lText;
    }
}
