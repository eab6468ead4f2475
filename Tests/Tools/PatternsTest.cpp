// Patterns of paths and of texts.

#include "Tests/Tools/RunTool.h"
#include "Tests/Tools/Screens.h"
#include "Text/Errors.h"
#include "Text/PathPattern.h"
#include "Text/TextMatcher.h"

#include "TalBase/Initializer.h"

#include <gtest/gtest.h>

using namespace TalBaseTool;
using namespace ToolTests;

namespace
{

const QTalBase::Initializer gInitializer;

bool Takes(const std::string& iPattern, const Path& iPath)
{
    const PathPattern lPattern(iPattern);
    PathPattern::Places lPlaces = lPattern.Begin();
    bool lIsWhole = false;
    for (const std::wstring& lName : iPath)
    {
        const PathPattern::Match lMatch = lPattern.Enter(lPlaces, lName);
        lIsWhole = lMatch.mIsWhole;
        lPlaces = lMatch.mNext;
    }
    return lIsWhole;
}

bool IsIn(const std::string& iPattern, PatternKind iKind, bool iIgnoresCase, std::wstring_view iText)
{
    return TextMatcher(iPattern, iKind, iIgnoresCase).IsIn(iText);
}

} // namespace

TEST(PathPattern, StarIsOneNameAndTwoStarsAreAny)
{
    const struct
    {
        const char* mPattern;
        Path mPath;
        bool mIsTaken;
    } lCases[] = {
        {"*", {L"a"}, true},
        {"*", {L"a", L"b"}, false},
        {"a/*", {L"a"}, false},
        {"a/*", {L"a", L"b"}, true},
        {"a/*", {L"a", L"b", L"c"}, false},
        {"a/**", {L"a"}, false},
        {"a/**", {L"a", L"b", L"c"}, true},
        {"**", {L"a", L"b", L"c"}, true},
        {"**/c", {L"c"}, true},
        {"**/c", {L"a", L"b", L"c"}, true},
        {"**/c", {L"a", L"c", L"b"}, false},
        {"a/**/c", {L"a", L"c"}, true},
        {"a/**/c", {L"a", L"x", L"c", L"y", L"c"}, true},
        {"**/b/**/d", {L"a", L"b", L"c", L"d"}, true},
        {"**/b/**/d", {L"a", L"d", L"b"}, false},
        {"a*", {L"a"}, true},
        {"a*c", {L"abc"}, true},
        {"a*c", {L"ac"}, true},
        {"ab*bc", {L"abc"}, false},
        {"*b*d*", {L"abcde"}, true},
        {"*b*d*", {L"adcbe"}, false},
        {"***", {L"a", L"b"}, false},
        {"\\*", {L"*"}, true},
        {"\\*", {L"a"}, false},
        {"a\\/*\\\\", {L"a/x\\"}, true},
    };
    for (const auto& lCase : lCases)
    {
        EXPECT_EQ(Takes(lCase.mPattern, lCase.mPath), lCase.mIsTaken)
            << lCase.mPattern << " with " << lCase.mPath.size() << " names";
    }
}

TEST(PathPattern, ReadWrongPatternThrows)
{
    for (const char* lPattern : {"", "/a", "a//b", "a/", "a\\b", "a\\"})
    {
        EXPECT_THROW(PathPattern{lPattern}, UsageError) << lPattern;
    }
    EXPECT_FALSE(PathPattern("a/*").IsPath());
    EXPECT_EQ(PathPattern("a\\*/b\\/c").GetPath(), (Path{L"a*", L"b/c"}));
}

TEST(TextMatcher, PatternsMeanWhatTheyMeanToGrep)
{
    EXPECT_TRUE(IsIn("a.c", PatternKind::Basic, false, L"xabcx"));
    EXPECT_FALSE(IsIn("a+c", PatternKind::Basic, false, L"aac"));
    EXPECT_TRUE(IsIn("a+c", PatternKind::Extended, false, L"aac"));
    EXPECT_TRUE(IsIn("a.c+", PatternKind::Fixed, false, L"xa.c+x"));
    EXPECT_FALSE(IsIn("a.c", PatternKind::Fixed, false, L"abc"));
    EXPECT_TRUE(IsIn("\\[^$*.\\", PatternKind::Fixed, false, L"\\[^$*.\\"));
    EXPECT_TRUE(IsIn("^b$", PatternKind::Basic, false, L"a\nb\nc"));
    EXPECT_FALSE(IsIn("^b.*c$", PatternKind::Basic, false, L"a\nb\nc"));
    EXPECT_TRUE(IsIn("*", PatternKind::Basic, false, L"*"));
    EXPECT_TRUE(IsIn("b|^c", PatternKind::Extended, false, L"c"));
    EXPECT_FALSE(IsIn("b|^c", PatternKind::Extended, false, L"xc"));
    EXPECT_TRUE(IsIn("gr\xC3\xB6\xC3\x9F"
                     "e",
                     PatternKind::Basic, true, L"GR\u00D6\u00DFE"));
    EXPECT_TRUE(IsIn("^.$", PatternKind::Basic, false, L"\u6F22"));
    EXPECT_TRUE(IsIn("\\(a\\)b\\1", PatternKind::Basic, false, L"xaba"));
    EXPECT_FALSE(IsIn("\\(a\\|c\\)b\\1", PatternKind::Basic, false, L"abc"));
    EXPECT_TRUE(IsIn("", PatternKind::Extended, false, L"anything"));
    EXPECT_TRUE(IsIn("^$", PatternKind::Basic, false, L"a\n\nb"));
}

TEST(TextMatcher, WrongPatternThrows)
{
    for (const char* lPattern : {"\\(a", "[a", "a\\)", "\xFF"})
    {
        EXPECT_THROW(TextMatcher(lPattern, PatternKind::Basic, false), UsageError) << lPattern;
    }
}

// Trying every beginning would take minutes, and a recursion the stack.
TEST(TextMatcher, LongTextsTakeLinearTimeAndNoStack)
{
    const std::wstring lText(2000000, L'a');
    for (const bool lIgnoresCase : {false, true})
    {
        EXPECT_FALSE(IsIn("a.*b", PatternKind::Basic, lIgnoresCase, lText));
        EXPECT_FALSE(IsIn("(a|aa)*b", PatternKind::Extended, lIgnoresCase, lText));
    }
}

TEST(Grep, HiddenValuesAndNamesAreNotFound)
{
    const Workplace lWorkplace;
    const std::string lBag =
        lWorkplace.Write("a.bag", "EndDelimiter***BeginDelimiter++++***FTPServerPassword hunter2++++x***"
                                  "n++++FTPServerPassword++++hunter3++++hunter4*********");
    for (const char* lSecret : {"hunter2", "hunter3", "hunter4", "^x$"})
    {
        const ToolRun lRun = RunTool({"grep", lSecret, lBag});
        EXPECT_EQ(lRun.mStatus, 1) << lSecret;
        EXPECT_EQ(lRun.mOut, "") << lSecret;
        EXPECT_EQ(RunTool({"grep", "--show-secrets", lSecret, lBag}).mStatus, 0) << lSecret;
    }
    EXPECT_EQ(RunTool({"get", "*hunter*", lBag}).mStatus, 1);
    EXPECT_EQ(RunTool({"grep", "-v", "zzz", lBag}).mOut, "FTPServerPassword(hidden) = (hidden)\n");
}

TEST(Inputs, LinesOfJsonComeThereAndBack)
{
    const Workplace lWorkplace;
    std::string lJson;
    for (int lNumber = 0; lNumber < 3000; ++lNumber) // more than a block of reading
    {
        const char* const lValues[] = {"\\n\\\"+*", " and ASCII", "\xC3\xA4\xE2\x82\xAC"};
        lJson += "{\"a\":\"" + std::to_string(lNumber) + lValues[lNumber % 3] + "\",\"n\":{\"k\":[\"x\",\"y\"]}}\n";
    }
    const ToolRun lBags = RunTool({"from-json", "--strict", "--lines", lWorkplace.Write("a.json", lJson)});
    EXPECT_EQ(lBags.mStatus, 0) << lBags.mErr;
    const std::string lLines = lWorkplace.Write("a.lines", lBags.mOut);
    EXPECT_EQ(RunShell(lWorkplace.GetFolder(), "talbase to-json --lines <a.lines").mOutput, lJson);
    EXPECT_EQ(RunShell(lWorkplace.GetFolder(), "talbase to-json --lines <a.json").mOutput, lJson);
    const ToolRun lGot = RunTool({"get", "--lines", "n/k/1", lLines});
    EXPECT_EQ(lGot.mStatus, 0);
    EXPECT_EQ(lGot.mOut.substr(0, lGot.mOut.find('\n')), lLines + ":1:n/k/1 = y");
}

// A bag that cannot be read stops no other.
TEST(Inputs, TroubleIsToldAndTheRestGoesOn)
{
    const Workplace lWorkplace;
    const std::string lFolder = lWorkplace.GetFolder().string() + "/";
    const ToolRun lRun = RunTool({"list", lFolder + "none.bag", lFolder + "broken.bag", lFolder, lFolder + "long.bag"});
    EXPECT_EQ(lRun.mStatus, 2);
    EXPECT_EQ(std::count(lRun.mErr.begin(), lRun.mErr.end(), '\n'), 3) << lRun.mErr;
    EXPECT_NE(lRun.mOut.find("long.bag:Short = 1\n"), std::string::npos);
    EXPECT_EQ(RunTool({"check", lFolder + "broken.bag", lFolder + "job.bag"}).mStatus, 1);
    EXPECT_EQ(RunTool({"check", lFolder + "none.bag", lFolder + "broken.bag"}).mStatus, 2);
    EXPECT_EQ(RunTool({"grep", "Short", lFolder + "none.bag", lFolder + "long.bag"}).mStatus, 2);
    EXPECT_EQ(RunTool({"has", "Short", "-", "-"}).mStatus, 2);
}
