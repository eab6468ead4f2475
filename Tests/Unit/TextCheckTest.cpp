#include "TalBase/TextCheck.h"

#include "QBase/Convert.h"
#include "TalBase/Initializer.h"
#include "TalBase/PropertyBag.h"
#include "Tests/Support/RepointedDefaults.h"

#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <vector>

using QTalBase::CheckText;
using QTalBase::TextCheckResult;
using QTalBase::TextRemark;
using QTalBase::TextRemarkKind;

namespace
{

const QTalBase::Initializer gInitializer;

const std::wstring gHeader = L"EndDelimiter***BeginDelimiter++++***";
const std::wstring gPrefix = L"QTalBase::PropertyBagImpl::";
const std::wstring gMetadata = gPrefix + L"ExtractDelimiters; the string has a malformed metadata. ";

// A text with the place that is meant marked by '^'.
struct Marked
{
    explicit Marked(std::wstring iText) : mText(std::move(iText)), mPlace(mText.find(L'^'))
    {
        if (mPlace == std::wstring::npos)
        {
            throw std::logic_error("no place is marked");
        }
        mText.erase(mPlace, 1);
    }

    std::wstring mText;
    std::size_t mPlace;
};

std::string Readable(const std::wstring& iText)
{
    return QBase::WideCharToUTF8(iText.c_str(), false);
}

void ExpectInvalid(const TextCheckResult& iResult, const Marked& iText, const std::wstring& iMessage)
{
    EXPECT_FALSE(iResult.mIsValid) << Readable(iText.mText);
    EXPECT_EQ(std::wstring(iResult.mMessage.c_str()), iMessage) << Readable(iText.mText);
    EXPECT_EQ(iResult.mPosition, iText.mPlace) << Readable(iText.mText);
}

void ExpectInvalid(const std::wstring& iMarked, const std::wstring& iMessage)
{
    const Marked lText(iMarked);
    ExpectInvalid(CheckText(lText.mText.c_str()), lText, iMessage);
}

void ExpectInvalid(const std::wstring& iMarked, const wchar_t* ipBegin, const wchar_t* ipEnd,
                   const std::wstring& iMessage)
{
    const Marked lText(iMarked);
    ExpectInvalid(CheckText(lText.mText.c_str(), ipBegin, ipEnd), lText, iMessage);
}

const char* NameOf(TextRemarkKind iKind)
{
    switch (iKind)
    {
    case TextRemarkKind::IgnoredTail:
        return "tail";
    case TextRemarkKind::EmptyValue:
        return "empty value";
    case TextRemarkKind::EmptyBag:
        return "empty bag";
    case TextRemarkKind::RepeatedName:
        return "repeated";
    case TextRemarkKind::AmbiguousDelimiter:
        return "ambiguous";
    }
    return "unknown";
}

// The remarks with what they are about: "repeated 'a' at 0, tail 'x' at 20".
std::string Describe(const TextCheckResult& iResult, const std::wstring& iText)
{
    std::string lDescription;
    for (const TextRemark& lRemark : iResult.mRemarks)
    {
        lDescription += (lDescription.empty() ? "" : ", ") + std::string(NameOf(lRemark.mKind)) + " '" +
                        Readable(iText.substr(lRemark.mPosition, lRemark.mLength)) + "' at " +
                        std::to_string(lRemark.mPosition);
    }
    return lDescription;
}

std::string RemarksOn(const std::wstring& iText)
{
    const TextCheckResult lResult = CheckText(iText.c_str(), L"++++", L"***");
    EXPECT_TRUE(lResult.mIsValid) << Readable(iText);
    EXPECT_EQ(lResult.mPosition, 0U);
    EXPECT_EQ(lResult.mMessage.GetLength(), 0U);
    return Describe(lResult, iText);
}

std::string RemarksOn(const std::wstring& iText, const wchar_t* ipBegin, const wchar_t* ipEnd)
{
    return Describe(CheckText(iText.c_str(), ipBegin, ipEnd), iText);
}

} // namespace

TEST(TextCheck, ValidTextsAreValid)
{
    for (const std::wstring& lText : {std::wstring(), gHeader, gHeader + L"a++++1***n++++k++++v******",
                                      std::wstring(L"EndDelimiter]]BeginDelimiter[[]]a[[1]]")})
    {
        const TextCheckResult lResult = CheckText(lText.c_str());
        EXPECT_TRUE(lResult.mIsValid) << Readable(lText);
        EXPECT_EQ(lResult.mPosition, 0U);
        EXPECT_EQ(lResult.mMessage.GetLength(), 0U);
        EXPECT_TRUE(lResult.mRemarks.empty());
    }
    EXPECT_TRUE(CheckText(L"a[1end", L"[", L"end").mIsValid);
    EXPECT_EQ(CheckText((gHeader + L"a++++1***").c_str()).mContentPosition, gHeader.size());
    EXPECT_EQ(CheckText((gHeader + L"a++++1").c_str()).mContentPosition, gHeader.size());
    EXPECT_EQ(CheckText(L"EndDelimiter***Begin").mContentPosition, 0U);
    EXPECT_EQ(CheckText(L"a[1end", L"[", L"end").mContentPosition, 0U);
    // Cut inside its header: within the closing delimiter, and before it.
    EXPECT_EQ(CheckText(L"EndDelimiter***BeginDelimiter++++**").mContentPosition, 35U);
    EXPECT_EQ(CheckText(L"EndDelimiter***BeginDelimiter++++").mContentPosition, 2U);
    EXPECT_EQ(CheckText(L"EndDelimiter***BeginDelimiter").mContentPosition, 0U);
    EXPECT_EQ(CheckText(L"EndDelimiter;BeginDelimiter=").mContentPosition, 0U);
    EXPECT_TRUE(CheckText((gHeader + L"a++++1***").c_str(), L"[", L"]").mIsValid);
}

TEST(TextCheck, MisplacedDelimitersAreTheirOwnPlace)
{
    ExpectInvalid(gHeader + L"^++++1***", gPrefix + L"ExtractData; A string token was expected");
    ExpectInvalid(gHeader + L"a++++^++++1***", gPrefix + L"ExtractData; A string token was expected");
    ExpectInvalid(gHeader + L"a++++1***^***", gPrefix + L"ExtractData; A string token was expected");
    ExpectInvalid(gHeader + L"a^***1++++", gPrefix + L"ExtractData; A Begin token was expected");
    ExpectInvalid(gHeader + L"n++++k++++v***tail^***", gPrefix + L"ExtractData; A Begin token was expected");
    ExpectInvalid(gHeader + L"n++++k++++v***^++++***", gPrefix + L"ExtractData; A mEnd token was expected");
}

TEST(TextCheck, MissingDelimiterIsAtTheEnd)
{
    ExpectInvalid(gHeader + L"n++++k++++v***^", gPrefix + L"GetNextToken; A token was expected");
    ExpectInvalid(gHeader + L"a++++1^", gPrefix + L"GetNextToken; A token was expected");
    ExpectInvalid(gHeader + L"n++++m++++^", gPrefix + L"GetNextToken; A token was expected");
}

TEST(TextCheck, HeadersErrorsAreInTheHeader)
{
    ExpectInvalid(L"EndDelimiter^", gMetadata + L"It must contain BeginDelimiter");
    ExpectInvalid(L"EndDelimiter***xyz^", gMetadata + L"It must contain BeginDelimiter");
    ExpectInvalid(L"EndDelimiter^BeginDelimiter++++", gMetadata + L"EndDelimiter cannot be empty");
    ExpectInvalid(L"EndDelimiter***BeginDelimiter^***", gMetadata + L"BeginDelimiter cannot be empty");
    ExpectInvalid(L"EndDelimiter***Begin^*Delimiter++++***", gMetadata + L"BeginDelimiter cannot be empty");
    ExpectInvalid(L"EndDelimiter***BeginDelimiter^", gPrefix + L"CheckValidityOfDelimiters; Begin may not be empty");
    ExpectInvalid(L"EndDelimiter^***BeginDelimiter++++", gPrefix + L"ExtractData; A Begin token was expected");
    ExpectInvalid(L"EndDelimiter***Begin^", L"QTalBase::PropertyBag: the header ends too early");
}

TEST(TextCheck, TextWithoutHeaderIsRefusedAtItsStart)
{
    const std::wstring lMessage = L"QTalBase::CreatePropertyBag; String must be malformed - lPropertyString: ";
    ExpectInvalid(L"^a++++1***", lMessage + L"a++++1***");
    ExpectInvalid(L"EndDelimiter;BeginDelimiter=^", lMessage + L"EndDelimiter;BeginDelimiter=");
}

TEST(TextCheck, ForbiddenPairIsRefusedAtTheStart)
{
    const std::wstring lRule = gPrefix + L"CheckValidityOfDelimiters; ";
    ExpectInvalid(L"^a", L"", L"x", lRule + L"Begin may not be empty");
    ExpectInvalid(L"^a", L"x", L"", lRule + L"End may not be empty");
    ExpectInvalid(L"^a", L"x", L"x", lRule + L"Begin and End may not be equal");
    ExpectInvalid(L"^a", L"xy", L"x", lRule + L"Begin may not contain End");
    ExpectInvalid(L"^a", L"x", L"yx", lRule + L"End may not contain Begin");
}

TEST(TextCheck, ValuesThatTheReceivingBagRefusesAreThePlace)
{
    const std::wstring lHeader = L"EndDelimiter]]BeginDelimiter[[]]";
    ExpectInvalid(lHeader + L"b[[2]]^c***[[3]]d[[4]]", L"++++", L"***",
                  gPrefix + L"SetProperty; ipName may not contain the delimiters");
    ExpectInvalid(gHeader + L"b++++2***c++++^x;y***", L"=", L";",
                  gPrefix + L"SetProperty; ipValue may not contain the delimiters. ipValue: x;y, begin delimiter: =, "
                            L"end delimiter: ;");
    ExpectInvalid(gHeader + L"b++++2***^n++++k++++x;y******", L"=", L";",
                  gPrefix + L"SetProperty; ipValue may not contain the delimiters. ipValue: x;y, begin delimiter: =, "
                            L"end delimiter: ;");
    ExpectInvalid(gHeader + L"m++++a++++1******n++++b++++2******^o++++c;++++3******", L"=", L";",
                  gPrefix + L"SetProperty; ipName may not contain the delimiters");
    ExpectInvalid(gHeader + L"m++++a++++1******m++++b++++2******^o++++c;++++3******", L"=", L";",
                  gPrefix + L"SetProperty; ipName may not contain the delimiters");
    // The first of the two is replaced and not merged.
    ExpectInvalid(gHeader + L"c++++x;y***c++++^z;***", L"=", L";",
                  gPrefix + L"SetProperty; ipValue may not contain the delimiters. ipValue: z;, begin delimiter: =, "
                            L"end delimiter: ;");
}

TEST(TextCheck, NestThatCannotBeHandedOnIsThePlace)
{
    ExpectInvalid(L"a[1end^n[a[1endend", L"[", L"end", gMetadata + L"EndDelimiter cannot be empty");
    ExpectInvalid(L"m[^n[a[1endendend", L"[", L"end", gMetadata + L"EndDelimiter cannot be empty");
}

TEST(TextCheck, ValueThatAnEscapeGivesOneDelimiterIsThePlace)
{
    const std::wstring lMessage = gPrefix + L"SetProperty; ipValue may not contain the delimiters. ipValue: x&#42;y, ";
    const Support::RepointedDefaults lBegin(L"#", L"|");
    ExpectInvalid(L"a#1|b#^x*y|", L"#", L"|", lMessage + L"begin delimiter: #, end delimiter: |");
    ExpectInvalid(L"a#^x*y|b|", L"#", L"|", lMessage + L"begin delimiter: #, end delimiter: |");
    const Support::RepointedDefaults lEnd(L"|", L"#");
    ExpectInvalid(L"a|^x*y#b#", L"|", L"#", lMessage + L"begin delimiter: |, end delimiter: #");
    ExpectInvalid(L"a|1#b|^x*y#", L"|", L"#", lMessage + L"begin delimiter: |, end delimiter: #");
}

TEST(TextCheck, ValueThatAnEscapeSpoilsIsThePlace)
{
    const Support::RepointedDefaults lDefaults(L"#", L";");
    ExpectInvalid(L"a#1;b#^x*y;", L"#", L";",
                  gPrefix + L"SetProperty; ipValue may not contain the delimiters. ipValue: x&#42;y, begin delimiter: "
                            L"#, end delimiter: ;");
}

// The value is written with an escape, so its delimiter begins earlier when the nest is handed on; what is left of that
// and the first character of the next name are a delimiter too.
TEST(TextCheck, NestThatAnEscapeSpoilsIsThePlace)
{
    const Support::RepointedDefaults lDefaults(L"<", L";;");
    ExpectInvalid(L"^n<k<*;;;x<v;;;;", L"<", L";;", gPrefix + L"ExtractData; A string token was expected");
}

TEST(TextCheck, RemarksTellWhatGetsLost)
{
    EXPECT_EQ(RemarksOn(L"a++++1***tail"), "tail 'tail' at 9");
    EXPECT_EQ(RemarksOn(L"only a tail"), "tail 'only a tail' at 0");
    EXPECT_EQ(RemarksOn(L"b++++1***a++++***"), "empty value 'a' at 9");
    EXPECT_EQ(RemarksOn(L"a++++b++++******"), "empty bag 'a' at 0, empty value 'b' at 5");
    EXPECT_EQ(RemarksOn(L"a++++b++++c++++*********"), "empty bag 'a' at 0, empty bag 'b' at 5, empty value 'c' at 10");
    EXPECT_EQ(RemarksOn(L"a++++b++++***k++++v******"), "empty value 'b' at 5");
    EXPECT_EQ(RemarksOn(L"a++++1***b++++2***a++++3***"), "repeated 'a' at 0");
    EXPECT_EQ(RemarksOn(L"n++++2***n++++k++++1******"), "repeated 'n' at 0");
    EXPECT_EQ(RemarksOn(L"n++++k++++1***l++++3***k++++2******"), "repeated 'k' at 5");
    EXPECT_EQ(RemarksOn(L"n++++k++++1******n++++2***"), "repeated 'n' at 0");
    EXPECT_EQ(RemarksOn(L"n++++m++++a++++1******m++++b++++2*********"), "repeated 'm' at 5");
    EXPECT_EQ(RemarksOn(L"n++++k++++1***e++++l++++*********"), "empty bag 'e' at 14, empty value 'l' at 19");
    EXPECT_EQ(RemarksOn(L"n++++e++++l++++******k++++1******"), "empty bag 'e' at 5, empty value 'l' at 10");
}

TEST(TextCheck, RemarksTellWhereADelimiterCouldBeginFurtherOn)
{
    EXPECT_EQ(RemarksOn(L"a+++++1***"), "ambiguous '+++++' at 1");
    EXPECT_EQ(RemarksOn(L"a+++++k++++v******"), "ambiguous '+++++' at 1");
    EXPECT_EQ(RemarksOn(L"a++++1+***"), "");
    EXPECT_EQ(RemarksOn(L"a++++1****b++++2***"), ""); // a value has its '*' escaped, so this one is the name's
    EXPECT_EQ(RemarksOn(L"a[[x]]]b[[y]]", L"[[", L"]]"), "ambiguous ']]]' at 4");
    EXPECT_EQ(RemarksOn(L"a[[[x]]", L"[[", L"]]"), "ambiguous '[[[' at 1");
    EXPECT_EQ(RemarksOn(L"n[[k[[v]]]]b[[y]]", L"[[", L"]]"), "");
    EXPECT_EQ(RemarksOn(L"a=:x;/", L"=:", L";/"), "");
    EXPECT_EQ(RemarksOn(L"aababab1;", L"abab", L";"), "ambiguous 'ababab' at 1");
}

TEST(TextCheck, RemarksUpToAFailureAreKept)
{
    const std::wstring lText = L"a++++***b++++1***c++++unfinished";
    const TextCheckResult lResult = CheckText(lText.c_str(), L"++++", L"***");
    EXPECT_FALSE(lResult.mIsValid);
    EXPECT_EQ(Describe(lResult, lText), "empty value 'a' at 0");
}

TEST(TextCheck, RemarksAreTheSameWhereBagsAreMade)
{
    // Into a bag with other delimiters, where nests are really made.
    const std::wstring lText = gHeader + L"a++++b++++***k++++v***k++++w******a++++***c++++d++++******x";
    const std::string lExpected = "empty value 'b' at 41, repeated 'k' at 49, empty value 'a' at 70, empty bag 'c' at "
                                  "78, empty value 'd' at 83, tail 'x' at 94";
    EXPECT_EQ(Describe(CheckText(lText.c_str()), lText), lExpected);
    EXPECT_EQ(RemarksOn(lText, L"=", L";"), lExpected);
}

// A header names "=" and "xxn" as "r=" and "xx". So when m is handed on and read again, its k is "nk", and without the
// value that it had.
TEST(TextCheck, NestThatIsEmptyOnlyWhenItIsReadAgainIsAnEmptyBag)
{
    const std::wstring lText = L"m=kr=xxxnxxn";
    EXPECT_EQ(RemarksOn(lText, L"=", L"xxn"), "empty bag 'm' at 0");
    const QBase::SmartPtrI<QTalBase::PropertyBag> lBag(QTalBase::CreatePropertyBag(L"=", L"xxn"));
    lBag->AddString(lText.c_str());
    EXPECT_EQ(lBag->GetPropertyBag(L"m")->GetCount(), 0U);
}

TEST(TextCheck, MillionsOfLevelsAndNamesAreChecked)
{
    const std::size_t lLevels = 300000;
    std::wstring lText = gHeader;
    for (std::size_t lLevel = 0; lLevel < lLevels; ++lLevel)
    {
        lText += L"n++++";
    }
    lText += L"k++++v***";
    for (std::size_t lLevel = 0; lLevel + 1 < lLevels; ++lLevel)
    {
        lText += L"***";
    }
    const TextCheckResult lUnfinished = CheckText(lText.c_str());
    EXPECT_FALSE(lUnfinished.mIsValid);
    EXPECT_EQ(lUnfinished.mPosition, lText.size());
    EXPECT_TRUE(CheckText((lText + L"***").c_str()).mIsValid);
    std::wstring lRepeated;
    for (std::size_t lIndex = 0; lIndex < lLevels; ++lIndex)
    {
        lRepeated += L"n++++1***";
    }
    EXPECT_EQ(CheckText(lRepeated.c_str(), L"++++", L"***").mRemarks.size(), lLevels - 1);
}
