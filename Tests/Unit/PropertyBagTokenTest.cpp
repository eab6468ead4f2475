// The stages of the plain implementation's text reader, reached one by one: the header, the token list, one property.
// What the library must not differ from has to be right itself.

#include "TalBase/PropertyBag.h"

#include "Tests/Support/BagBuilder.h"
#include "Tests/Support/Describe.h"
#include "Tests/Support/Expect.h"
#include "Tests/Support/PlainPropertyBag.h"
#include "Tests/Support/RecordingBag.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <list>
#include <stdexcept>
#include <string>

using QTalBase::PropertyBagException;
using namespace Support;

namespace
{

class Reader : public Plain::PlainPropertyBag
{
public:
    using PlainPropertyBag::BeginToken;
    using PlainPropertyBag::Delimiters;
    using PlainPropertyBag::EndToken;
    using PlainPropertyBag::ExtractData;
    using PlainPropertyBag::ExtractDelimiters;
    using PlainPropertyBag::GetNextToken;
    using PlainPropertyBag::PeekNextToken;
    using PlainPropertyBag::StringToken;
    using PlainPropertyBag::Token;
};

using Tokens = std::list<Reader::Token>;

const wchar_t* const gTokenExpected = L"QTalBase::PropertyBagImpl::GetNextToken; A token was expected";
const wchar_t* const gStringExpected = L"QTalBase::PropertyBagImpl::ExtractData; A string token was expected";
const wchar_t* const gStringOrBeginExpected =
    L"QTalBase::PropertyBagImpl::ExtractData; A string or Begin token was expected";
const wchar_t* const gBeginExpected = L"QTalBase::PropertyBagImpl::ExtractData; A Begin token was expected";
const wchar_t* const gEndExpected = L"QTalBase::PropertyBagImpl::ExtractData; A mEnd token was expected";

// Makes a list of tokens: "<" and ">" are the delimiters, everything else is a run of one letter.
Tokens List(const std::wstring& iPattern)
{
    Tokens lTokens;
    for (const wchar_t lCharacter : iPattern)
    {
        if (lCharacter == L'<')
        {
            lTokens.push_back({Reader::BeginToken, L""});
        }
        else if (lCharacter == L'>')
        {
            lTokens.push_back({Reader::EndToken, L""});
        }
        else
        {
            lTokens.push_back({Reader::StringToken, std::wstring(1, lCharacter)});
        }
    }
    return lTokens;
}

// Reads one property from the pattern; returns the bag and how many tokens are left.
std::wstring Extract(const std::wstring& iPattern)
{
    Tokens lTokens = List(iPattern);
    Reader lReader;
    const BagPtr lBag = NewBag();
    lReader.ExtractData(lTokens, lBag.get());
    return DescribeContent(*lBag) + L" left " + std::to_wstring(lTokens.size());
}

struct Header
{
    unsigned int mPosition;
    std::wstring mBegin;
    std::wstring mEnd;
};

Header ReadHeader(const std::wstring& iText)
{
    Reader::Delimiters lDelimiters{L"old begin", L"old end"};
    const unsigned int lPosition = Reader::ExtractDelimiters(iText, lDelimiters);
    return {lPosition, lDelimiters.mBegin, lDelimiters.mEnd};
}

void ExpectHeader(const std::wstring& iText, unsigned int iPosition, const wchar_t* ipBegin, const wchar_t* ipEnd)
{
    const Header lHeader = ReadHeader(iText);
    EXPECT_EQ(lHeader.mPosition, iPosition) << Readable(iText);
    EXPECT_EQ(lHeader.mBegin, ipBegin) << Readable(iText);
    EXPECT_EQ(lHeader.mEnd, ipEnd) << Readable(iText);
}

} // namespace

TEST(PropertyBagReader, KindsOfTokensHaveTheirNumbers)
{
    EXPECT_EQ(static_cast<int>(Reader::BeginToken), 0);
    EXPECT_EQ(static_cast<int>(Reader::EndToken), 1);
    EXPECT_EQ(static_cast<int>(Reader::StringToken), 2);
}

TEST(PropertyBagReader, PeekNextTokenLeavesTheList)
{
    Tokens lTokens = List(L"a<");
    EXPECT_EQ(Reader::PeekNextToken(lTokens).mText, L"a");
    EXPECT_EQ(Reader::PeekNextToken(lTokens).mKind, Reader::StringToken);
    EXPECT_EQ(lTokens.size(), 2U);
}

TEST(PropertyBagReader, GetNextTokenTakesTheFirst)
{
    Tokens lTokens = List(L"a<");
    EXPECT_EQ(Reader::GetNextToken(lTokens).mText, L"a");
    EXPECT_EQ(Reader::GetNextToken(lTokens).mKind, Reader::BeginToken);
    EXPECT_TRUE(lTokens.empty());
}

TEST(PropertyBagReader, EmptyListThrowsForBoth)
{
    Tokens lTokens;
    EXPECT_MESSAGE(Reader::PeekNextToken(lTokens), PropertyBagException, gTokenExpected);
    EXPECT_MESSAGE(Reader::GetNextToken(lTokens), PropertyBagException, gTokenExpected);
}

TEST(PropertyBagReader, ExtractDataReadsOneProperty)
{
    EXPECT_EQ(Extract(L""), L"{} left 0");
    EXPECT_EQ(Extract(L"a<>"), L"{} left 0");
    EXPECT_EQ(Extract(L"a<1>"), L"{'a'='1'} left 0");
    EXPECT_EQ(Extract(L"a<1>b<2>"), L"{'a'='1'} left 4");
    EXPECT_EQ(Extract(L"n<k<v>>"), L"{'n'={'k'='v'}} left 0");
    EXPECT_EQ(Extract(L"n<e<>k<v>>a<1>"), L"{'n'={'k'='v'}} left 4");
    EXPECT_EQ(Extract(L"n<e<>>"), L"{'n'={}} left 0");
    EXPECT_EQ(Extract(L"n<o<e<>>>"), L"{'n'={}} left 0");
}

TEST(PropertyBagReader, ExtractDataWrongTokenThrows)
{
    EXPECT_MESSAGE(Extract(L"<"), PropertyBagException, gStringExpected);
    EXPECT_MESSAGE(Extract(L">"), PropertyBagException, gStringExpected);
    EXPECT_MESSAGE(Extract(L"ab"), PropertyBagException, gBeginExpected);
    EXPECT_MESSAGE(Extract(L"a>"), PropertyBagException, gBeginExpected);
    EXPECT_MESSAGE(Extract(L"a<<"), PropertyBagException, gStringExpected);
    EXPECT_MESSAGE(Extract(L"a<bc"), PropertyBagException, gStringOrBeginExpected);
    EXPECT_MESSAGE(Extract(L"n<k<v><"), PropertyBagException, gEndExpected);
    EXPECT_MESSAGE(Extract(L"n<k<vw"), PropertyBagException, gStringOrBeginExpected);
}

TEST(PropertyBagReader, ExtractDataShortListThrows)
{
    for (const wchar_t* lPattern : {L"a", L"a<", L"a<1", L"n<k<", L"n<k<>", L"n<k<v", L"n<k<v>", L"n<k<v>l"})
    {
        EXPECT_MESSAGE(Extract(lPattern), PropertyBagException, gTokenExpected) << Readable(lPattern);
    }
}

TEST(PropertyBagReader, ExtractDataAsksTheGivenBagForTheDelimitersOfItsNests)
{
    CallLog lLog;
    const BagPtr lBag = new RecordingBag(lLog, L"bag", L"[[", L"]]");
    Tokens lTokens = List(L"n<k<*>>");
    Reader().ExtractData(lTokens, lBag.get());
    ASSERT_GE(lLog.size(), 2U);
    std::sort(lLog.begin(), lLog.begin() + 2); // which of the two is asked first is open
    EXPECT_EQ(lLog,
              (CallLog{L"bag.GetBeginDelimiter", L"bag.GetEndDelimiter",
                       L"bag.SetProperty(n, EndDelimiter]]BeginDelimiter[[]]k[[*]], true)", L"bag.RemoveProperty(n)",
                       L"bag.RemovePropertyInValueContent(n)", L"bag.RemovePropertyInEmbeddedContent(n)"}));
    lLog.clear();
    lTokens = List(L"a<1>");
    Reader().ExtractData(lTokens, lBag.get());
    EXPECT_EQ(lLog, (CallLog{L"bag.SetProperty(a, 1, false)", L"bag.RemoveProperty(a)",
                             L"bag.RemovePropertyInValueContent(a)", L"bag.RemovePropertyInEmbeddedContent(a)"}));
}

TEST(PropertyBagReader, ExtractDelimitersWithoutHeaderLeavesThem)
{
    ExpectHeader(L"", 0, L"old begin", L"old end");
    ExpectHeader(L"a++++1***", 0, L"old begin", L"old end");
    ExpectHeader(L"EndDelimite", 0, L"old begin", L"old end");
    ExpectHeader(L" EndDelimiter***BeginDelimiter++++***", 0, L"old begin", L"old end");
    ExpectHeader(L"enddelimiter***BeginDelimiter++++***", 0, L"old begin", L"old end");
}

TEST(PropertyBagReader, ExtractDelimitersReadsTheHeader)
{
    ExpectHeader(L"EndDelimiter***BeginDelimiter++++***", 36, L"++++", L"***");
    ExpectHeader(L"EndDelimiter***BeginDelimiter++++***a++++1***", 36, L"++++", L"***");
    ExpectHeader(L"EndDelimiter)BeginDelimiter()", 29, L"(", L")");
    ExpectHeader(L"EndDelimiter***Bxxxxxxxxxxxxx++++***", 36, L"++++", L"***");
    ExpectHeader(L"EndDelimiterEdBeginDelimiter##Ed", 32, L"##", L"Ed");
}

TEST(PropertyBagReader, ExtractDelimitersSearchesForAnyCharacterOfASet)
{
    ExpectHeader(L"EndDelimiter</i>BeginDelimiter<i></i>", 32, L"er", L"</");
    ExpectHeader(L"EndDelimiter>>BeginDelimiter[>>>", 31, L"[", L">>");
    ExpectHeader(L"EndDelimiter*#BeginDelimiter+#*#", 31, L"+", L"*#");
    for (const wchar_t lLetter : std::wstring(L"BeginDlmtr"))
    {
        const std::wstring lText = std::wstring(L"EndDelimiter*") + lLetter + L"xxxxxxxxxxxxx+*";
        ExpectHeader(lText, 29, L"+", L"*");
    }
}

TEST(PropertyBagReader, ExtractDelimitersWithoutClosingEndWrapsRound)
{
    ExpectHeader(L"EndDelimiter***BeginDelimiter++++", 2, L"++++", L"***");
    ExpectHeader(L"EndDelimiter*BeginDelimiter++++", 0, L"++++", L"*");
    ExpectHeader(L"EndDelimiter***BeginDelimiter", 2, L"", L"***");
}

TEST(PropertyBagReader, ExtractDelimitersBadHeaderThrowsAndLeavesThem)
{
    const std::wstring lPrefix = L"QTalBase::PropertyBagImpl::ExtractDelimiters; the string has a malformed metadata. ";
    Reader::Delimiters lDelimiters{L"old begin", L"old end"};
    const auto lExtract = [&](const wchar_t* ipText) { return Reader::ExtractDelimiters(ipText, lDelimiters); };
    EXPECT_MESSAGE(lExtract(L"EndDelimiter"), PropertyBagException, lPrefix + L"It must contain BeginDelimiter");
    EXPECT_MESSAGE(lExtract(L"EndDelimiter***++"), PropertyBagException, lPrefix + L"It must contain BeginDelimiter");
    EXPECT_MESSAGE(lExtract(L"EndDelimiterBegin"), PropertyBagException, lPrefix + L"EndDelimiter cannot be empty");
    EXPECT_MESSAGE(lExtract(L"EndDelimiter***BeginDelimiter***"), PropertyBagException,
                   lPrefix + L"BeginDelimiter cannot be empty");
    EXPECT_MESSAGE(lExtract(L"EndDelimiter***B*"), PropertyBagException, lPrefix + L"BeginDelimiter cannot be empty");
    EXPECT_THROW(lExtract(L"EndDelimiter***Begin"), std::out_of_range);
    EXPECT_EQ(lDelimiters.mBegin, L"old begin");
    EXPECT_EQ(lDelimiters.mEnd, L"old end");
}
