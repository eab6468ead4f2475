// The inside of text reading: the header, the cutters, and the parser, which is the only place where two runs of text
// in a row can be met.

#include "TalBase/PrivateSource/TextParser.h"

#include "TalBase/PrivateSource/BagBuilder.h"
#include "TalBase/PrivateSource/Delimiters.h"
#include "TalBase/PrivateSource/PropertyBagImpl.h"
#include "TalBase/PrivateSource/RowCutter.h"
#include "TalBase/PrivateSource/TextCutters.h"
#include "TalBase/PrivateSource/TextSearch.h"
#include "Tests/Support/Describe.h"
#include "Tests/Support/Expect.h"

#include <gtest/gtest.h>
#include <iterator>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

using QTalBase::BagBuilder;
using QTalBase::DelimiterPair;
using QTalBase::Found;
using QTalBase::LongCutter;
using QTalBase::PropertyBagException;
using QTalBase::RowCutter;
using QTalBase::SharedWString;
using QTalBase::ShortCutter;
using QTalBase::TextParser;

namespace
{

// What a cutter would find, from a pattern: "<" and ">" are the delimiters, every other character a run of its own.
class PatternCutter
{
public:
    explicit PatternCutter(std::wstring_view iPattern) : mRest(iPattern) {}

    Found Next()
    {
        const bool lIsRun = !mRest.empty() && mRest[0] != L'<' && mRest[0] != L'>';
        mRun = mRest.substr(0, lIsRun ? 1 : 0);
        const std::wstring_view lBehind = mRest.substr(mRun.size());
        if (lBehind.empty())
        {
            return Found::Nothing;
        }
        const bool lIsDelimiter = lBehind[0] == L'<' || lBehind[0] == L'>';
        mRest = lBehind.substr(lIsDelimiter ? 1 : 0);
        return !lIsDelimiter ? Found::Run : lBehind[0] == L'<' ? Found::Begin : Found::End;
    }

    std::wstring_view GetRun() const
    {
        return mRun;
    }

    std::wstring_view GetRest() const
    {
        return mRest;
    }

    bool MayContainStart() const
    {
        return true;
    }

private:
    std::wstring_view mRun;
    std::wstring_view mRest;
};

std::wstring Read(const std::wstring& iPattern)
{
    BagBuilder lBuilder{SharedWString(L"[["), SharedWString(L"]]"), nullptr};
    const std::wstring_view lTail = TextParser(PatternCutter(iPattern), lBuilder).Parse();
    return Support::DescribeContent(*lBuilder.MakeBag()->mObject) + std::wstring(lTail);
}

// Writes down what it is told.
struct Recorder
{
    void Cut(std::wstring_view iRun, Found iFound)
    {
        mCuts += std::wstring(iRun) + (iFound == Found::Begin ? L"<" : iFound == Found::End ? L">" : L".");
    }

    void Plain(std::wstring_view iName, std::wstring_view iValue, bool /*iMayContainStart*/)
    {
        mEvents += L" " + std::wstring(iName) + L"=" + std::wstring(iValue);
    }

    void Empty(std::wstring_view iName)
    {
        mEvents += L" " + std::wstring(iName) + L"=";
    }

    void OpenNest(std::wstring_view iName)
    {
        mEvents += L" " + std::wstring(iName) + L"{";
    }

    void CloseNest()
    {
        mEvents += L" }";
    }

    std::wstring mCuts;
    std::wstring mEvents;
};

// The runs and delimiters of a text: "a<" is the run a before the begin delimiter. A run that may hold the first
// character of a delimiter has to be called one that does.
template <class Cutter>
std::wstring CutWith(Cutter iCutter, const std::wstring& iStarts = L"")
{
    std::wstring lParts;
    for (Found lFound = iCutter.Next(); lFound != Found::Nothing; lFound = iCutter.Next())
    {
        lParts += std::wstring(iCutter.GetRun()) + (lFound == Found::Begin ? L"<" : L">");
        const bool lHasStart = iCutter.GetRun().find_first_of(iStarts) != std::wstring_view::npos;
        EXPECT_TRUE(iCutter.MayContainStart() || !lHasStart);
    }
    return lParts + L"|" + std::wstring(iCutter.GetRest());
}

std::wstring Cut(const std::wstring& iText, const std::wstring& iBegin, const std::wstring& iEnd)
{
    const std::wstring lStarts{iBegin[0], iEnd[0]};
    std::wstring lParts = CutWith(LongCutter(iText, iBegin, iEnd), lStarts);
    if (QTalBase::AreShortDelimiters(iBegin, iEnd))
    {
        EXPECT_EQ(CutWith(ShortCutter(iText, iBegin, iEnd), lStarts), lParts) << "both cutters cut alike";
    }
    if (RowCutter::MayCut(iText, iBegin, iEnd))
    {
        EXPECT_EQ(CutWith(RowCutter(iText, iBegin, iEnd), lStarts), lParts) << "all cutters cut alike";
    }
    return lParts;
}

const wchar_t* const gTokenExpected = L"QTalBase::PropertyBagImpl::GetNextToken; A token was expected";
const wchar_t* const gStringExpected = L"QTalBase::PropertyBagImpl::ExtractData; A string token was expected";
const wchar_t* const gStringOrBeginExpected =
    L"QTalBase::PropertyBagImpl::ExtractData; A string or Begin token was expected";
const wchar_t* const gBeginExpected = L"QTalBase::PropertyBagImpl::ExtractData; A Begin token was expected";
const wchar_t* const gEndExpected = L"QTalBase::PropertyBagImpl::ExtractData; A mEnd token was expected";

} // namespace

TEST(TextParser, TwoStringsInARowThrow)
{
    EXPECT_MESSAGE(Read(L"a<bc"), PropertyBagException, gStringOrBeginExpected);
    EXPECT_MESSAGE(Read(L"n<k<vw"), PropertyBagException, gStringOrBeginExpected);
    EXPECT_MESSAGE(Read(L"ab"), PropertyBagException, gBeginExpected);
}

TEST(TextParser, WrongTokenThrows)
{
    EXPECT_MESSAGE(Read(L"<"), PropertyBagException, gStringExpected);
    EXPECT_MESSAGE(Read(L">"), PropertyBagException, gStringExpected);
    EXPECT_MESSAGE(Read(L"a>"), PropertyBagException, gBeginExpected);
    EXPECT_MESSAGE(Read(L"a<<"), PropertyBagException, gStringExpected);
    EXPECT_MESSAGE(Read(L"n<k<v><"), PropertyBagException, gEndExpected);
}

TEST(TextParser, MissingTokenThrows)
{
    for (const wchar_t* lPattern : {L"a<", L"a<1", L"n<k<", L"n<k<>", L"n<k<v", L"n<k<v>", L"n<k<v>l"})
    {
        EXPECT_MESSAGE(Read(lPattern), PropertyBagException, gTokenExpected);
    }
}

TEST(TextParser, WhatFollowsTheLastDelimiterIsTheTail)
{
    EXPECT_EQ(Read(L"a"), L"{}a");
    EXPECT_EQ(Read(L"a<1>b"), L"{'a'='1'}b");
}

TEST(TextParser, TellsWhatItMeetsInOrder)
{
    Recorder lRecorder;
    const std::wstring lText = L"Sub++++Key++++v***Ann++++b***e++++******In++++On++++1******rest";
    EXPECT_EQ(QTalBase::ParseText(lText, {L"++++", L"***"}, lRecorder), L"rest");
    EXPECT_EQ(lRecorder.mEvents, L" Sub{ Key=v Ann=b e= } In{ On=1 }");
    EXPECT_EQ(lRecorder.mCuts, L"Sub<Key<v>Ann<b>e<>>In<On<1>>rest.");
}

TEST(TextParser, EmptyNestsVanishExceptDirectlyBelow)
{
    EXPECT_EQ(Read(L"n<e<>>"), L"{'n'={}}");
    EXPECT_EQ(Read(L"n<o<e<>>>"), L"{'n'={}}");
    EXPECT_EQ(Read(L"n<a<1>o<e<>>>"), L"{'n'={'a'='1'}}");
    EXPECT_EQ(Read(L"n<a<1>a<e<>>>"), L"{'n'={}}"); // displaced, then gone
}

TEST(TextParser, TheLastPropertyOfANameCounts)
{
    EXPECT_EQ(Read(L"a<1>b<2>a<3>"), L"{'b'='2' 'a'='3'}");
    EXPECT_EQ(Read(L"a<1>a<k<v>>"), L"{'a'={'k'='v'}}");
    EXPECT_EQ(Read(L"a<k<v>>a<1>"), L"{'a'='1'}");
    EXPECT_EQ(Read(L"a<1>a<>"), L"{'a'='1'}");
}

TEST(TextCutters, CutsAtTheFirstDelimiterFromTheLeft)
{
    EXPECT_EQ(Cut(L"a++++1***", L"++++", L"***"), L"a<1>|");
    EXPECT_EQ(Cut(L"a+++++1****b", L"++++", L"***"), L"a<+1>|*b");
    EXPECT_EQ(Cut(L"+++*+++**", L"++++", L"***"), L"|+++*+++**");
    EXPECT_EQ(Cut(L"xx[[[[]]", L"[[", L"]]"), L"xx<<>|");
}

TEST(TextCutters, EveryShortTextIsCutAlike)
{
    std::wstring lText;
    for (unsigned int lNumber = 0; lNumber < 59049; ++lNumber) // all texts of ten characters of three
    {
        lText.clear();
        for (unsigned int lRest = lNumber, lLength = 0; lLength < 10; ++lLength, lRest /= 3)
        {
            lText += L"ab*"[lRest % 3];
        }
        ASSERT_EQ(CutWith(ShortCutter(lText, L"ab", L"a**")), CutWith(LongCutter(lText, L"ab", L"a**")));
        ASSERT_EQ(CutWith(ShortCutter(lText, L"aabaa", L"*")), CutWith(LongCutter(lText, L"aabaa", L"*")));
    }
}

TEST(RowCutter, CutsTextsOf64CharactersAtDelimitersOfOneCharacter)
{
    const std::wstring lText(64, L'x');
    EXPECT_TRUE(RowCutter::MayCut(lText, L"++++", L"***"));
    EXPECT_TRUE(RowCutter::MayCut(lText, L"+", L"aaaaaaaa"));
    EXPECT_FALSE(RowCutter::MayCut(lText.substr(1), L"++++", L"***"));
    EXPECT_FALSE(RowCutter::MayCut(lText, L"+", L"aaaaaaaaa"));
    EXPECT_FALSE(RowCutter::MayCut(lText, L"<", L"</"));
    EXPECT_FALSE(RowCutter::MayCut(lText, L"+", L"\u00FF")); // in eight bits, so are the characters above it
    EXPECT_FALSE(RowCutter::MayCut(lText, L"\u4E00", L"+"));
    EXPECT_EQ(CutWith(RowCutter(lText.substr(2) + L"+*", L"+", L"*")), lText.substr(2) + L"<>|");
}

// Rows of every length, from each place of a block of 64 characters across its end, of both delimiters in turn.
TEST(RowCutter, RowsAcrossTheEndOfABlockAreCutAlike)
{
    for (std::size_t lBefore = 0; lBefore < 66; ++lBefore)
    {
        for (std::size_t lRow = 0; lRow < 140; lRow += lRow < 20 ? 1 : 17)
        {
            const std::wstring lText = std::wstring(lBefore, L'x') + std::wstring(lRow, L'+') + std::wstring(3, L'*') +
                                       std::wstring(lRow, L'*') + L"y" + std::wstring(64, L'z');
            ASSERT_NE(Cut(lText, L"++++", L"***"), L"") << lBefore << " " << lRow;
            ASSERT_NE(Cut(lText, L"*", L"+++++"), L"") << lBefore << " " << lRow;
            ASSERT_NE(Cut(lText, L"********", L"+"), L"") << lBefore << " " << lRow;
            ASSERT_NE(Cut(lText.substr(0, 64 + lRow), L"++", L"**"), L"") << lBefore << " " << lRow;
        }
    }
}

TEST(RowCutter, RandomTextsAreCutAlike)
{
    const wchar_t lCharacters[] = L"++++***xy\u012B\u002A\U0001002B"; // the last ones are like + and * in eight bits
    std::mt19937 lRandom(4711);
    for (unsigned int lRound = 0; lRound < 20000; ++lRound)
    {
        std::wstring lText;
        for (std::size_t lLength = 64 + lRandom() % 200; lText.size() < lLength;)
        {
            lText.append(1 + lRandom() % 5, lCharacters[lRandom() % (std::size(lCharacters) - 1)]);
        }
        const std::wstring lBegin(1 + lRandom() % 8, L'+');
        const std::wstring lEnd(1 + lRandom() % 8, L'*');
        Cut(lText, lBegin, lEnd);
        ASSERT_FALSE(HasFailure()) << lRound;
    }
}

TEST(TextCutters, LongDelimitersGiveTheSame)
{
    const std::wstring lBegin(40, L'b');
    const std::wstring lEnd = std::wstring(40, L'e') + L"!";
    EXPECT_EQ(Cut(L"a" + lBegin + L"1" + lEnd, lBegin, lEnd), L"a<1>|");
    EXPECT_EQ(Cut(L"a" + lBegin + L"b" + lEnd.substr(0, 30) + lEnd, lBegin, lEnd),
              L"a<b" + std::wstring(30, L'e') + L">|");
    EXPECT_EQ(Cut(lBegin.substr(1), lBegin, lEnd), L"|" + lBegin.substr(1));
}

TEST(ReadHeader, TheUsualHeaderGivesTheDefaults)
{
    DelimiterPair lPair{L"x", L"y"};
    EXPECT_EQ(QTalBase::ReadHeader(L"EndDelimiter***BeginDelimiter++++***a", lPair), 36U);
    EXPECT_EQ(lPair.mBegin, L"++++");
    EXPECT_EQ(lPair.mEnd, L"***");
}

TEST(ReadHeader, AnotherHeaderIsReadLoosely)
{
    DelimiterPair lPair{L"x", L"y"};
    EXPECT_EQ(QTalBase::ReadHeader(L"EndDelimiter***Bxxxxxxxxxxxxx++++***", lPair), 36U);
    EXPECT_EQ(lPair.mBegin, L"++++");
    EXPECT_EQ(QTalBase::ReadHeader(L"EndDelimiter***BeginDelimiter++++", lPair), 2U);
    EXPECT_EQ(QTalBase::ReadHeader(L"EndDelimite", lPair), 0U);
    EXPECT_THROW(QTalBase::ReadHeader(L"EndDelimiter***Begin", lPair), std::out_of_range);
}

TEST(CanHeaderCarry, OnlyPairsThatComeBack)
{
    EXPECT_TRUE(QTalBase::CanHeaderCarry({L"++++", L"***"}));
    EXPECT_FALSE(QTalBase::CanHeaderCarry({L"++++", L"end"}));
    EXPECT_FALSE(QTalBase::CanHeaderCarry({L"+*", L"**"}));
}

TEST(TextSearcher, FindsWhatASimpleSearchFinds)
{
    const std::wstring lNeedle = L"aabaaabaaabaaabaaac"; // long, with borders
    EXPECT_TRUE(QTalBase::Contains(L"xxaab" + lNeedle, lNeedle));
    EXPECT_TRUE(QTalBase::Contains(L"aabaaabaaaba" + lNeedle + L"z", lNeedle));
    EXPECT_FALSE(QTalBase::Contains(L"aabaaabaaabaaabaaabaaabaaabaaab", lNeedle));
    EXPECT_TRUE(QTalBase::Contains(L"", L""));
    EXPECT_FALSE(QTalBase::Contains(L"a", L"ab"));
}
