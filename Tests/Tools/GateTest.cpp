#include "Text/Gate.h"
#include "Text/Excerpts.h"

#include "TalBase/Initializer.h"

#include <gtest/gtest.h>

#include <chrono>

using namespace TalBaseTool;

namespace
{

const QTalBase::Initializer gInitializer;
const std::wstring gHeader = L"EndDelimiter***BeginDelimiter++++***";

Gate GateOf(const std::wstring& iText, const std::optional<DelimiterTexts>& iPair = {})
{
    return Gate({}, iText, iPair, CheckText(iText, iPair).mIsValid);
}

// A text with its hidden parts as "#".
std::wstring Masked(const std::wstring& iText, const std::optional<DelimiterTexts>& iPair = {})
{
    std::wstring lText;
    std::size_t lPlace = 0;
    for (const TextPart& lPart : GateOf(iText, iPair).FindParts(iText))
    {
        lText += iText.substr(lPlace, lPart.mStart - lPlace) + L"#";
        lPlace = lPart.mStop;
    }
    return lText + iText.substr(lPlace);
}

std::wstring MaskedBrackets(const std::wstring& iText)
{
    return Masked(iText, DelimiterTexts{L"[", L"]"});
}

} // namespace

TEST(Gate, TextWithoutASensitiveNameIsShownWhole)
{
    EXPECT_EQ(GateOf(L"a++++broken").GetOpening(), Gate::Opening::Everything);
    EXPECT_EQ(Masked(gHeader + L"a++++1***b"), gHeader + L"a++++1***b");
    EXPECT_FALSE(GateOf(gHeader + L"a++++1***").HidesBag(L"FTPServerPassword"));
}

TEST(Gate, TextInGoodOrderHidesWhatBelongsToTheName)
{
    EXPECT_EQ(Masked(gHeader + L"a++++1***FTPServerPassword++++x***b++++2***"),
              gHeader + L"a++++1***FTPServerPassword++++#***b++++2***");
    EXPECT_EQ(Masked(gHeader + L"FTPServerPassword++++k++++x***m++++n++++y*********b++++2***"),
              gHeader + L"FTPServerPassword++++#***b++++2***");
    EXPECT_EQ(Masked(gHeader + L"my FTPServerPassword is x++++y***b++++2***"),
              gHeader + L"my FTPServerPassword#++++#***b++++2***");
    EXPECT_EQ(Masked(gHeader + L"Body++++the FTPServerPassword is x***b++++2***"), gHeader + L"Body++++#***b++++2***");
    EXPECT_EQ(Masked(gHeader + L"a++++1***FTPServerPassword: x"), gHeader + L"a++++1***#");
    EXPECT_EQ(Masked(gHeader + L"FTPServerPassword2++++x***a++++FTPServerPasswords***"),
              gHeader + L"FTPServerPassword2++++x***a++++FTPServerPasswords***");
}

TEST(Gate, OfAnyOtherTextNothingIsShown)
{
    const std::wstring lSecret = L"FTPServerPassword++++x***";
    for (const std::wstring& lText : std::vector<std::wstring>{
             gHeader + lSecret + L"a***",                                        // does not read
             L"EndDelimiter***beginDelimiter++++***" + lSecret,                  // not as the library writes it
             L"EndDelimiter***BeginDelimiter++++FTPServerPassword++++x***",      // in a delimiter
             L"EndDelimiter***BeginDelimiter++++FTPServerPassword2***a++++x***", // the same in a longer word
             L"EndDelimiteraBeginDelimiter<x ftpserverpassword<y>>",             // cut by a delimiter of the header
             L"EndDelimiter>BeginDelimiterS>FTPServerPassword<x>",               // cut by a delimiter
             L"EndDelimiter\\BeginDelimiter=;\\nFTPServerPassword=x;",           // behind an escape that one cuts
             L"EndDelimiter\\BeginDelimiter=\\a=1\\u000aFTPServerPassword=x\\",  // the same of a longer escape
             L"FTPServerPassword2=x"})
    {
        const Gate lGate = GateOf(lText);
        EXPECT_EQ(lGate.GetOpening(), Gate::Opening::Nothing);
        EXPECT_NE(lGate.GetReason(), "");
        EXPECT_EQ(lGate.ShowName(L"a"), "(hidden)");
        EXPECT_EQ(lGate.ShowDelimiter(L"+"), "(hidden)");
        EXPECT_EQ(lGate.ShowPath({L"a", L"b"}), "(hidden)/(hidden)");
        EXPECT_TRUE(lGate.HidesValue(L"a", L"b"));
        EXPECT_EQ(Gate({true, {}}, lText, {}, false).GetOpening(), Gate::Opening::Everything);
    }
}

// Each nest is read with what a header would make of the pair, here with "[" alone.
TEST(Gate, NestsUnderDelimitersThatNoHeaderCarriesAreNotInGoodOrder)
{
    const DelimiterTexts lPair{L"[a", L"]a"};
    EXPECT_EQ(GateOf(L"n[aFTPServerPassword[ax]a]a", lPair).GetOpening(), Gate::Opening::Nothing);
    EXPECT_EQ(GateOf(L"FTPServerPassword[ax]a", lPair).GetOpening(), Gate::Opening::Masked);
}

TEST(Gate, FragileDelimitersHideWhatFollowsALoss)
{
    EXPECT_EQ(MaskedBrackets(L"N[FTPServerPassword]x[y]z[1]"), L"N[#]#[#]z[1]");
    EXPECT_EQ(MaskedBrackets(L"FTPServerPassword[]x[y]z[1]"), L"FTPServerPassword[]#[#]z[1]");
    EXPECT_EQ(MaskedBrackets(L"FTPServerPassword[]x"), L"FTPServerPassword[]#");
    EXPECT_EQ(Masked(L"FTPServerPassword<<>>x>_>", DelimiterTexts{L"<<", L">>"}), L"FTPServerPassword<<>>#");
    EXPECT_EQ(Masked(gHeader + L"FTPServerPassword++++***x++++y***"), gHeader + L"FTPServerPassword++++***x++++y***");
    EXPECT_EQ(MaskedBrackets(L"N[the FTPServerPassword]x[y]"), L"N[#]x[y]"); // a mail
    EXPECT_EQ(Masked(gHeader + L"N++++FTPServerPassword***x++++y***"), gHeader + L"N++++#***x++++y***");
    const Gate lGate = GateOf(L"N[FTPServerPassword]x[y]z[1]", DelimiterTexts{L"[", L"]"});
    EXPECT_TRUE(lGate.HidesValue(L"x", L"y"));
    EXPECT_EQ(lGate.ShowName(L"x"), "(hidden)");
    EXPECT_EQ(lGate.ShowName(L"z"), "z");
}

TEST(Gate, PathsEndAtWhatIsHidden)
{
    const Gate lGate = GateOf(gHeader + L"FTPServerPassword++++x***");
    EXPECT_EQ(lGate.ShowPath({L"a", L"FTPServerPassword"}), "a/FTPServerPassword");
    EXPECT_EQ(lGate.ShowPath({L"a", L"FTPServerPassword", L"b", L"c"}), "a/FTPServerPassword/(hidden)");
    EXPECT_EQ(lGate.ShowPath({L"FTPServerPassword is x"}), "FTPServerPassword(hidden)");
    Path lDeep{L"FTPServerPassword"};
    lDeep.resize(60, L"secret");
    EXPECT_EQ(lGate.ShowPath(lDeep).find("secret"), std::string::npos);
}

TEST(Gate, JoinedHidesWhatEitherHides)
{
    Gate lGate = GateOf(gHeader + L"a++++1***");
    lGate.Join(GateOf(gHeader + L"FTPServerPassword++++x***"));
    EXPECT_TRUE(lGate.HidesBag(L"FTPServerPassword"));
    EXPECT_FALSE(lGate.HidesBag(L"a"));
    lGate.Join(GateOf(L"FTPServerPassword"));
    EXPECT_TRUE(lGate.HidesBag(L"a"));
}

// The search for what to mask once took 19 s for this.
TEST(Gate, ManyLettersTakeNoTime)
{
    std::wstring lText = gHeader + L"Job***1++++";
    while (lText.size() < 1000000)
    {
        lText += std::wstring(3000, L'F') + L" ";
    }
    const auto lStart = std::chrono::steady_clock::now();
    EXPECT_EQ(GateOf(lText).GetOpening(), Gate::Opening::Everything);
    EXPECT_EQ(GateOf(lText + L"FTPServerPassword").GetOpening(), Gate::Opening::Nothing);
    const std::wstring lGood = gHeader + L"a++++" + lText.substr(gHeader.size() + 11) + L"***FTPServerPassword++++x***";
    EXPECT_EQ(GateOf(lGood).FindParts(lGood).size(), 1U);
    EXPECT_LT(std::chrono::steady_clock::now() - lStart, std::chrono::seconds(5)); // on a busy machine
}
