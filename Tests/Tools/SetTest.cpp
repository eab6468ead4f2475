// Several changes in one write, from arguments and from lists: all of them or none.

#include "Tests/Tools/RunTool.h"
#include "Tests/Tools/Screens.h"

#include "TalBase/Initializer.h"

#include <gtest/gtest.h>

using namespace ToolTests;

namespace
{

const QTalBase::Initializer gInitializer;

const std::string gHeader = "EndDelimiter]]BeginDelimiter[[]]"; // of brackets.bag
const std::string gBag = gHeader + "Rate[[2*3+1]]Types[[text/plain[[7bit]]]]";

} // namespace

TEST(Set, SeveralValuesAreOneChange)
{
    const Workplace lWorkplace;
    const std::string lFile = lWorkplace.GetFolder() / "brackets.bag";
    EXPECT_EQ(RunTool({"set", "A", "1", "New/deep", "2", "Rate", "3", "A", "4", lFile}).mOut,
              gHeader + "Rate[[3]]A[[4]]Types[[text/plain[[7bit]]]]New[[deep[[2]]]]");
    EXPECT_EQ(RunTool({"set", "-i", "A", "1", "B", "2", lFile}).mStatus, 0);
    EXPECT_EQ(lWorkplace.Read("brackets.bag"), gHeader + "Rate[[2*3+1]]A[[1]]B[[2]]Types[[text/plain[[7bit]]]]");
    const Finished lFinished = RunShell(lWorkplace.GetFolder(), "talbase set A 1 Types/B 2 <lossy.bag 2>/dev/null");
    EXPECT_EQ(lFinished.mOutput,
              "EndDelimiter***BeginDelimiter++++***a++++&#43;1***c++++3***A++++1***Types++++B++++2******");
}

TEST(Set, OneChangeThatIsRefusedStopsAll)
{
    const Workplace lWorkplace;
    const std::string lFile = lWorkplace.GetFolder() / "brackets.bag";
    const auto lRefused = [&](const std::vector<std::string>& iChanges, int iStatus, const std::string& iMessage) {
        std::vector<std::string> lArguments = {"set", "-i"};
        lArguments.insert(lArguments.end(), iChanges.begin(), iChanges.end());
        lArguments.push_back(lFile);
        const ToolRun lRun = RunTool(lArguments);
        EXPECT_EQ(lRun.mStatus, iStatus) << iMessage;
        EXPECT_EQ(lRun.mErr, "talbase: " + iMessage + "\n");
        EXPECT_EQ(lRun.mOut, "");
        EXPECT_EQ(lWorkplace.Read("brackets.bag"), gBag);
    };
    lRefused({"A", "1", "Types", "2"}, 1, "Types is a bag; remove it first");
    lRefused({"A", "1", "A/b", "2"}, 1, "A is a plain value, not a bag");
    lRefused({"A", "1", "B", ""}, 2, "a bag cannot hold an empty value; 'talbase remove' takes a property out");
    lRefused({"A", "1", "B//c", "2"}, 2, "the path 'B//c' has an empty name; write it as NAME or NAME/NAME/...");
    lRefused({"A", "1", "B]]", "2"}, 1,
             "B]]: with these delimiters it would be a name that holds a delimiter or runs into one");
}

// The parser would take them for lists.
TEST(Set, ValuesAndPathsInBracketsAreTaken)
{
    const Workplace lWorkplace;
    EXPECT_EQ(
        RunShell(lWorkplace.GetFolder(), "printf 'x=1;' | talbase set a '[1,2]' -q '[b,c]' [] --begin = --end ';'")
            .mOutput,
        "x=1;a=[1,2];[b,c]=[];");
    EXPECT_EQ(RunShell(lWorkplace.GetFolder(), "printf 'x[1]' | talbase set a 2 --begin '[' --end ']'").mOutput,
              "x[1]a[2]");
    lWorkplace.Write("[x,y]", gBag);
    EXPECT_EQ(RunShell(lWorkplace.GetFolder(), "talbase set Rate 5 '[x,y]'; talbase check '[x,y]'").mOutput,
              gHeader + "Rate[[5]]Types[[text/plain[[7bit]]]][x,y]: valid\n");
}

TEST(Set, ListIsOneChangeALine)
{
    const Workplace lWorkplace;
    lWorkplace.Write("list", "# begin \"++++\", end \"***\"\n"
                             "Rate = 5\n"
                             "\n"
                             "# a comment\n"
                             "Types/\"a\" = \"  x\\n\"\n"
                             "New/deep/er = 1*2\n"
                             "Types/text\\/plain = 8bit\r\n");
    const Finished lFinished = RunShell(lWorkplace.GetFolder(), "talbase set -i --from-list list brackets.bag 2>&1");
    EXPECT_EQ(lFinished.mStatus, 0);
    EXPECT_EQ(lFinished.mOutput, "");
    EXPECT_EQ(lWorkplace.Read("brackets.bag"),
              gHeader + "Rate[[5]]Types[[\"a\"[[  x\n]]text/plain[[8bit]]]]New[[deep[[er[[1*2]]]]]]");
    EXPECT_EQ(
        RunShell(lWorkplace.GetFolder(), "talbase set --from-list - job.bag <<<'Subject = 1 + 1' | talbase get Subject")
            .mOutput,
        "1 + 1\n");
}

TEST(Set, ListGivesWhatTheSameArgumentsGive)
{
    const Workplace lWorkplace;
    std::string lList;
    std::vector<std::string> lArguments = {"set"};
    for (int lNumber = 0; lNumber < 300; ++lNumber)
    {
        const std::string lPath = (lNumber % 3 == 0   ? "Transport/Route/n"
                                   : lNumber % 3 == 1 ? "n"
                                                      : "New/n") +
                                  std::to_string(lNumber * 7 % 100);
        if (lList.find(lPath + " ") == std::string::npos)
        {
            lList += lPath + " = " + std::to_string(lNumber) + "\n";
            lArguments.insert(lArguments.end(), {lPath, std::to_string(lNumber)});
        }
    }
    const std::string lFile = lWorkplace.GetFolder() / "job.bag";
    lArguments.push_back(lFile);
    const ToolRun lByList = RunTool({"set", "--from-list", lWorkplace.Write("list", lList), lFile});
    EXPECT_EQ(lByList.mErr, "");
    EXPECT_EQ(lByList.mOut, RunTool(lArguments).mOut);
}

TEST(Set, ListThatIsRefusedChangesNothing)
{
    const Workplace lWorkplace;
    const auto lRefused = [&](const std::string& iList, const std::string& iMessage) {
        lWorkplace.Write("list", iList);
        const Finished lFinished =
            RunShell(lWorkplace.GetFolder(), "talbase set -i --from-list list brackets.bag 2>&1");
        EXPECT_EQ(lFinished.mStatus, 1) << iList;
        EXPECT_EQ(lFinished.mOutput, iMessage + "\n");
        EXPECT_EQ(lWorkplace.Read("brackets.bag"), gBag);
    };
    lRefused("A = 1\nTypes = 2\n", "list:2:1: Types is a bag; remove it first");
    lRefused("A = 1\nRate/x/y = 2\n", "list:2:1: Rate is a plain value, not a bag");
    lWorkplace.Write("sensitive.bag", gHeader + "FTPServerPassword[[geheim[[x[[1]]]]]]");
    lWorkplace.Write("list", "FTPServerPassword/geheim = 1\n");
    EXPECT_EQ(RunShell(lWorkplace.GetFolder(), "talbase set -i --from-list list sensitive.bag 2>&1").mOutput,
              "list:1:1: FTPServerPassword/(hidden) is a bag; remove it first\n");
    lRefused("A = 1\nTypes/text\\/plain/x = 2\n", "list:2:1: Types/text\\/plain is a plain value, not a bag");
    lRefused("A = 1\nB = (hidden)\n",
             "list:2:1: the value is masked, so it is not known; 'talbase list --show-secrets' shows it");
    lRefused("A = 1\nB/ = (hidden)\n",
             "list:2:1: the value is masked, so it is not known; 'talbase list --show-secrets' shows it");
    lRefused("A = 1\nA = 2\n", "list:2:1: this path stands in line 1 already");
    lRefused("A = 1\nB]] = 2\n",
             "list:2:1: with these delimiters it would be a name that holds a delimiter or runs into one");
    lRefused("nonsense\n", "list:1:1: a line is 'path = value', and ' = ' is missing");
}

TEST(Set, ArgumentsThatDoNotGoTogetherAreRefused)
{
    const Workplace lWorkplace;
    const auto lError = [&](const std::string& iArguments) {
        const Finished lFinished = RunShell(lWorkplace.GetFolder(), "talbase set " + iArguments + " 2>&1 </dev/null");
        EXPECT_EQ(lFinished.mStatus, 2) << iArguments;
        return lFinished.mOutput;
    };
    EXPECT_EQ(lError(""), "talbase: a PATH and a VALUE are needed, or --from-list\n");
    EXPECT_EQ(lError("A"), "talbase: a VALUE is needed, or --value-from\n");
    EXPECT_EQ(lError("--value-from x"), "talbase: a PATH and a VALUE are needed, or --from-list\n");
    EXPECT_EQ(lError("A B C --value-from x"), "talbase: VALUE and --value-from exclude each other\n");
    EXPECT_EQ(lError("A B --from-list x"), "talbase: PATH and --from-list exclude each other\n");
    EXPECT_EQ(lError("--value-from x --from-list x"), "talbase: --from-list and --value-from exclude each other\n");
    EXPECT_EQ(lError("--from-list -"), "talbase: the text and the list cannot both come from standard input\n");
    EXPECT_EQ(lError("A --value-from -"), "talbase: the text and the value cannot both come from standard input\n");
}
