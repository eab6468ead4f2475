// Reading the text form: what is accepted, what is refused, and that a refused text changes nothing.

#include "TalBase/PropertyBag.h"

#include "Tests/Support/BagBuilder.h"
#include "Tests/Support/BagGenerator.h"
#include "Tests/Support/Describe.h"
#include "Tests/Support/Expect.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

using QTalBase::PropertyBagException;
using QTalBase::PropertyBagUserErrorException;
using namespace Support;

namespace
{

const wchar_t* const gTokenExpected = L"QTalBase::PropertyBagImpl::GetNextToken; A token was expected";
const wchar_t* const gStringExpected = L"QTalBase::PropertyBagImpl::ExtractData; A string token was expected";
const wchar_t* const gBeginExpected = L"QTalBase::PropertyBagImpl::ExtractData; A Begin token was expected";
const wchar_t* const gEndExpected = L"QTalBase::PropertyBagImpl::ExtractData; A mEnd token was expected";

struct BadText
{
    const wchar_t* mText;
    const wchar_t* mMessage;
};

// Texts under the default delimiters, without header.
const BadText gBadTexts[] = {
    {L"***", gStringExpected},
    {L"++++", gStringExpected},
    {L"++++1***", gStringExpected},
    {L"a++++1******", gStringExpected},
    {L"a++++1***++++", gStringExpected},
    {L"a++++++++1***", gStringExpected},
    {L"n++++k++++v*********", gStringExpected},
    {L"a***", gBeginExpected},
    {L"a++++1***b***", gBeginExpected},
    {L"n++++k++++v***x***", gBeginExpected},
    {L"a++++", gTokenExpected},
    {L"a++++1", gTokenExpected},
    {L"a++++1**", gTokenExpected},
    {L"a++++1***b++++", gTokenExpected},
    {L"Sub++++Key++++v***", gTokenExpected},
    {L"a++++1++++", gTokenExpected},
    {L"a++++1++++***", gTokenExpected},
    {L"a++++1++++2***", gTokenExpected},
    {L"n++++k++++v***x", gTokenExpected},
    {L"n++++k++++v***x++++y***", gTokenExpected},
    {L"n++++k++++v***++++", gEndExpected},
    {L"n++++k++++v***++++***", gEndExpected},
    {L"m++++n++++k++++v******++++", gEndExpected},
};

} // namespace

TEST(PropertyBag, AddStringSetsProperties)
{
    const BagPtr lBag = NewBag();
    lBag->AddString(L"a++++1***");
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'a'='1'}");
}

TEST(PropertyBag, AddStringReplacesAndMovesToTheEnd)
{
    const BagPtr lBag = BagBuilder().Set(L"a", L"1").Set(L"b", L"2");
    lBag->AddString(L"a++++3***");
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'b'='2' 'a'='3'}");
}

TEST(PropertyBag, AddStringReplacesAcrossKinds)
{
    const BagPtr lBag = BagBuilder().Set(L"a", L"1").Nest(L"n", BagBuilder().Set(L"k", L"v"));
    lBag->AddString(L"n++++plain***a++++k++++w******");
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'n'='plain' 'a'={'k'='w'}}");
}

TEST(PropertyBag, AddStringNestedBagsToAnyDepth)
{
    const BagPtr lBag = NewBag();
    lBag->AddString(L"n++++o++++p++++k++++v*********l++++w******a++++1***");
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'a'='1' 'n'={'l'='w' 'o'={'p'={'k'='v'}}}}");
}

TEST(PropertyBag, AddStringTextWithoutDelimitersSetsNothing)
{
    const BagPtr lBag = BagBuilder().Set(L"a", L"1");
    lBag->AddString(L"");
    lBag->AddString(L"junk");
    lBag->AddString(L"+++**");
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'a'='1'}");
}

TEST(PropertyBag, AddStringIgnoresTextAfterTheLastDelimiter)
{
    const BagPtr lBag = NewBag();
    lBag->AddString(L"a++++1***junk");
    lBag->AddString(L"b++++2****");
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'a'='1' 'b'='2'}");
}

TEST(PropertyBag, AddStringEmptyValueSetsNothing)
{
    const BagPtr lBag = BagBuilder().Set(L"a", L"1");
    lBag->AddString(L"a++++***b++++***c++++3***");
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'a'='1' 'c'='3'}");
    lBag->AddString(L"b++++2***b++++***n++++k++++1***k++++***l++++2******n++++***");
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'a'='1' 'c'='3' 'b'='2' 'n'={'k'='1' 'l'='2'}}");
}

TEST(PropertyBag, AddStringRepeatedNameKeepsTheLast)
{
    const BagPtr lBag = NewBag();
    lBag->AddString(L"a++++1***b++++2***a++++3***");
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'b'='2' 'a'='3'}");
    const BagPtr lKinds = NewBag();
    lKinds->AddString(L"a++++1***a++++k++++v******b++++k++++v******b++++2***");
    EXPECT_EQ(Describe(lKinds), L"'++++' '***' {'b'='2' 'a'={'k'='v'}}");
}

TEST(PropertyBag, AddStringRepeatedNamesInsideANestKeepTheLast)
{
    const BagPtr lBag = NewBag();
    lBag->AddString(L"p++++1***q++++2***n++++m++++a++++1******m++++b++++2******k++++3***k++++4***o++++c++++5******o++++"
                    L"6******r++++d++++7******");
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'p'='1' 'q'='2' 'n'={'k'='4' 'o'='6' 'm'={'b'='2'}} 'r'={'d'='7'}}");
}

TEST(PropertyBag, AddStringEscapesLoneDelimiterCharacters)
{
    const BagPtr lBag = NewBag();
    lBag->AddString(L"a++++x*y***b++++1+++2**3***");
    EXPECT_EQ(Text(lBag->GetValue(0)), L"x&#42;y");
    EXPECT_EQ(Text(lBag->GetProperty(L"a")), L"x*y");
    EXPECT_EQ(Text(lBag->GetProperty(L"b")), L"1+++2**3");
}

TEST(PropertyBag, AddStringTakesTheFirstDelimiterOfARun)
{
    const BagPtr lBag = NewBag();
    lBag->AddString(L"a+++++1****b++++2***");
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'a'='&#43;1' '*b'='2'}");
}

TEST(PropertyBag, NameEndingLikeADelimiterReadsBackDifferently)
{
    const BagPtr lBag = BagBuilder().Set(L"a+", L"1");
    EXPECT_EQ(ContentText(*lBag), L"a+++++1***");
    EXPECT_EQ(Describe(ReadBag(FullText(*lBag))), L"'++++' '***' {'a'='&#43;1'}");
}

TEST(PropertyBag, AddStringHeaderGovernsOnlyTheReading)
{
    const BagPtr lBag = NewBag();
    lBag->AddString(L"EndDelimiter]]BeginDelimiter[[]]a[[x*y++++z]]n[[k[[v]]]]");
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'a'='x&#42;y&#43;&#43;&#43;&#43;z' 'n'={'k'='v'}}");
    lBag->AddString(L"b++++2***");
    EXPECT_EQ(Text(lBag->GetProperty(L"b")), L"2");
}

TEST(PropertyBag, AddStringBadTextThrowsAndChangesNothing)
{
    const BagPtr lBag = BagBuilder().Set(L"a", L"old").Nest(L"n", BagBuilder().Set(L"k", L"old"));
    for (const BadText& lBad : gBadTexts)
    {
        const std::wstring lAfterGood = std::wstring(L"first++++1***n++++new***") + lBad.mText;
        EXPECT_MESSAGE(lBag->AddString(lBad.mText), PropertyBagException, lBad.mMessage) << Readable(lBad.mText);
        EXPECT_MESSAGE(lBag->AddString(lAfterGood.c_str()), PropertyBagException, lBad.mMessage)
            << Readable(lAfterGood);
        EXPECT_EQ(Describe(lBag), L"'++++' '***' {'a'='old' 'n'={'k'='old'}}") << Readable(lBad.mText);
    }
}

TEST(PropertyBag, CreatePropertyBagBadTextThrows)
{
    for (const BadText& lBad : gBadTexts)
    {
        const std::wstring lText = std::wstring(gHeader) + lBad.mText;
        EXPECT_MESSAGE(QTalBase::CreatePropertyBag(lText.c_str()), PropertyBagException, lBad.mMessage)
            << Readable(lText);
    }
}

TEST(PropertyBag, AddStringFailedMergeKeepsWhatCameBefore)
{
    const BagPtr lBag = BagBuilder(L"[[", L"]]").Set(L"p", L"old").Set(L"a", L"old").Set(L"b", L"old");
    EXPECT_MESSAGE(lBag->AddString(L"EndDelimiter***BeginDelimiter++++***p++++1***a++++x[[y***b++++2***"),
                   PropertyBagException,
                   L"QTalBase::PropertyBagImpl::SetProperty; ipValue may not contain the delimiters. ipValue: x[[y, "
                   L"begin delimiter: [[, end delimiter: ]]");
    EXPECT_EQ(Describe(lBag), L"'[[' ']]' {'a'='old' 'b'='old' 'p'='1'}");
    EXPECT_MESSAGE(lBag->AddString(L"EndDelimiter***BeginDelimiter++++***q++++3***a]]++++4***r++++5***"),
                   PropertyBagException,
                   L"QTalBase::PropertyBagImpl::SetProperty; ipName may not contain the delimiters");
    EXPECT_EQ(Describe(lBag), L"'[[' ']]' {'a'='old' 'b'='old' 'p'='1' 'q'='3'}");
}

TEST(PropertyBag, CreatePropertyBagEmptyText)
{
    EXPECT_EQ(Describe(ReadBag(L"")), L"'++++' '***' {}");
}

TEST(PropertyBag, CreatePropertyBagTakesTheHeadersDelimiters)
{
    EXPECT_EQ(Describe(ReadBag(L"EndDelimiter***BeginDelimiter++++***")), L"'++++' '***' {}");
    EXPECT_EQ(Describe(ReadBag(L"EndDelimiter***BeginDelimiter++++***a++++1***junk")), L"'++++' '***' {'a'='1'}");
    EXPECT_EQ(Describe(ReadBag(L"EndDelimiter]]BeginDelimiter[[]]a[[x*]]n[[k[[v]]]]")),
              L"'[[' ']]' {'a'='x*' 'n'={'k'='v'}}");
}

TEST(PropertyBag, CreatePropertyBagWithoutHeaderThrowsWithTheText)
{
    EXPECT_MESSAGE(QTalBase::CreatePropertyBag(L"a++++1***"), PropertyBagException,
                   L"QTalBase::CreatePropertyBag; String must be malformed - lPropertyString: a++++1***");
    EXPECT_MESSAGE(QTalBase::CreatePropertyBag(L" "), PropertyBagException,
                   L"QTalBase::CreatePropertyBag; String must be malformed - lPropertyString:  ");
    EXPECT_MESSAGE(QTalBase::CreatePropertyBag(L"enddelimiter***BeginDelimiter++++***"), PropertyBagException,
                   L"QTalBase::CreatePropertyBag; String must be malformed - lPropertyString: "
                   L"enddelimiter***BeginDelimiter++++***");
    EXPECT_MESSAGE(QTalBase::CreatePropertyBag(L"EndDelimite"), PropertyBagException,
                   L"QTalBase::CreatePropertyBag; String must be malformed - lPropertyString: EndDelimite");
}

TEST(PropertyBag, HeaderWithoutBeginDelimiterThrows)
{
    const wchar_t* const lText = L"QTalBase::PropertyBagImpl::ExtractDelimiters; the string has a malformed metadata. "
                                 L"It must contain BeginDelimiter";
    const BagPtr lBag = BagBuilder().Set(L"a", L"1");
    for (const wchar_t* lHeader :
         {L"EndDelimiter", L"EndDelimiter***", L"EndDelimiter***++++***", L"EndDelimiterbEdLM"})
    {
        EXPECT_MESSAGE(QTalBase::CreatePropertyBag(lHeader), PropertyBagException, lText) << Readable(lHeader);
        EXPECT_MESSAGE(lBag->AddString(lHeader), PropertyBagException, lText) << Readable(lHeader);
    }
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'a'='1'}");
}

TEST(PropertyBag, HeaderWithEmptyEndDelimiterThrows)
{
    const wchar_t* const lText = L"QTalBase::PropertyBagImpl::ExtractDelimiters; the string has a malformed metadata. "
                                 L"EndDelimiter cannot be empty";
    const BagPtr lBag = BagBuilder().Set(L"a", L"1");
    for (const wchar_t* lHeader : {L"EndDelimiterBeginDelimiter++++***", L"EndDelimiterendBeginDelimiter[end",
                                   L"EndDelimiterB", L"EndDelimiterr***"})
    {
        EXPECT_MESSAGE(QTalBase::CreatePropertyBag(lHeader), PropertyBagException, lText) << Readable(lHeader);
        EXPECT_MESSAGE(lBag->AddString(lHeader), PropertyBagException, lText) << Readable(lHeader);
    }
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'a'='1'}");
}

TEST(PropertyBag, HeaderWithEmptyBeginDelimiterThrows)
{
    const wchar_t* const lText = L"QTalBase::PropertyBagImpl::ExtractDelimiters; the string has a malformed metadata. "
                                 L"BeginDelimiter cannot be empty";
    const BagPtr lBag = BagBuilder().Set(L"a", L"1");
    for (const wchar_t* lHeader : {L"EndDelimiter***BeginDelimiter***", L"EndDelimiter***BeginDelimiter***a++++1***",
                                   L"EndDelimiter***B*", L"EndDelimiter***Begin*Delimiter++++***"})
    {
        EXPECT_MESSAGE(QTalBase::CreatePropertyBag(lHeader), PropertyBagException, lText) << Readable(lHeader);
        EXPECT_MESSAGE(lBag->AddString(lHeader), PropertyBagException, lText) << Readable(lHeader);
    }
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'a'='1'}");
}

TEST(PropertyBag, HeaderSkipsFourteenCharactersUnseen)
{
    EXPECT_EQ(Describe(ReadBag(L"EndDelimiter***Bxxxxxxxxxxxxx++++***a++++1***")), L"'++++' '***' {'a'='1'}");
    EXPECT_EQ(Describe(ReadBag(L"EndDelimiter***tttttttttttttt++++***a++++1***")), L"'++++' '***' {'a'='1'}");
    EXPECT_EQ(Describe(ReadBag(L"EndDelimiter***gxxxxx++++xxxx<<***a<<1***")), L"'<<' '***' {'a'='1'}");
}

TEST(PropertyBag, HeaderThatEndsWithinTheSkippedCharactersThrowsOutOfRange)
{
    const BagPtr lBag = BagBuilder().Set(L"a", L"1");
    for (const wchar_t* lHeader : {L"EndDelimiter***Begin", L"EndDelimiter***B", L"EndDelimiter***BeginDelimite"})
    {
        EXPECT_THROW(QTalBase::CreatePropertyBag(lHeader), std::out_of_range) << Readable(lHeader);
        EXPECT_THROW(lBag->AddString(lHeader), std::out_of_range) << Readable(lHeader);
    }
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'a'='1'}");
}

TEST(PropertyBag, HeaderThatEndsAfterTheSkippedCharactersHasAnEmptyBegin)
{
    const wchar_t* const lText = L"QTalBase::PropertyBagImpl::CheckValidityOfDelimiters; Begin may not be empty";
    const BagPtr lBag = BagBuilder().Set(L"a", L"1");
    EXPECT_MESSAGE(QTalBase::CreatePropertyBag(L"EndDelimiter***BeginDelimiter"), PropertyBagUserErrorException, lText);
    EXPECT_MESSAGE(lBag->AddString(L"EndDelimiter***BeginDelimiter"), PropertyBagUserErrorException, lText);
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'a'='1'}");
}

TEST(PropertyBag, HeaderWithoutClosingEndDelimiterReadsFromInsideItself)
{
    const BagPtr lBag = BagBuilder().Set(L"a", L"1");
    EXPECT_MESSAGE(QTalBase::CreatePropertyBag(L"EndDelimiter***BeginDelimiter++++"), PropertyBagException,
                   gBeginExpected);
    EXPECT_MESSAGE(lBag->AddString(L"EndDelimiter***BeginDelimiter++++"), PropertyBagException, gBeginExpected);
    const wchar_t* const lLongEnd = L"EndDelimiter####################BeginDelimiter++++";
    EXPECT_MESSAGE(QTalBase::CreatePropertyBag(lLongEnd), PropertyBagException, gTokenExpected);
    EXPECT_MESSAGE(lBag->AddString(lLongEnd), PropertyBagException, gTokenExpected);
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'a'='1'}");
}

TEST(PropertyBag, HeaderWithoutClosingEndDelimiterOfOneCharacterCountsAsNoHeader)
{
    EXPECT_MESSAGE(QTalBase::CreatePropertyBag(L"EndDelimiter*BeginDelimiter++++"), PropertyBagException,
                   L"QTalBase::CreatePropertyBag; String must be malformed - lPropertyString: "
                   L"EndDelimiter*BeginDelimiter++++");
    const BagPtr lBag = NewBag();
    EXPECT_MESSAGE(lBag->AddString(L"EndDelimiter*BeginDelimiter++++"), PropertyBagException, gBeginExpected);
}

TEST(PropertyBag, SecondHeaderIsContent)
{
    const std::wstring lText = std::wstring(gHeader) + gHeader + L"a++++1***";
    EXPECT_MESSAGE(QTalBase::CreatePropertyBag(lText.c_str()), PropertyBagException, gBeginExpected);
}

TEST(PropertyBag, AddPropertyBagReplacesMovesAndKeeps)
{
    const BagPtr lBag = BagBuilder().Set(L"a", L"1").Set(L"b", L"2*").Nest(L"n", BagBuilder().Set(L"k", L"v"));
    const BagPtr lOther = BagBuilder().Set(L"c", L"3+").Set(L"a", L"4").Nest(L"m", BagBuilder().Set(L"k", L"w"));
    lBag->AddPropertyBag(lOther.get());
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'b'='2&#42;' 'c'='3&#43;' 'a'='4' 'n'={'k'='v'} 'm'={'k'='w'}}");
    EXPECT_NE(lBag->GetPropertyBag(L"m").get(), lOther->GetPropertyBag(L"m").get());
}

TEST(PropertyBag, AddPropertyBagTakesStoredValues)
{
    const BagPtr lDefault = BagBuilder().Set(L"a", L"x*y");
    const BagPtr lOther = NewBag(L"[[", L"]]");
    lOther->AddPropertyBag(lDefault.get());
    EXPECT_EQ(Describe(lOther), L"'[[' ']]' {'a'='x&#42;y'}");
    const BagPtr lRaw = BagBuilder(L"[[", L"]]").Set(L"a", L"x*y");
    lDefault->AddPropertyBag(lRaw.get());
    EXPECT_EQ(Describe(lDefault), L"'++++' '***' {'a'='x&#42;y'}");
}

TEST(PropertyBag, AddPropertyBagFailedMergeKeepsWhatCameBefore)
{
    const BagPtr lBag = BagBuilder(L"[[", L"]]").Set(L"a", L"old").Nest(L"n", BagBuilder().Set(L"k", L"old"));
    const BagPtr lOther = BagBuilder()
                              .Set(L"b", L"1")
                              .Nest(L"m", BagBuilder().Set(L"k", L"v"))
                              .Nest(L"n", BagBuilder().Set(L"k", L"]]"))
                              .Nest(L"o", BagBuilder().Set(L"k", L"v"));
    EXPECT_MESSAGE(lBag->AddPropertyBag(lOther.get()), PropertyBagException,
                   L"QTalBase::PropertyBagImpl::SetProperty; ipValue may not contain the delimiters. ipValue: ]], "
                   L"begin delimiter: [[, end delimiter: ]]");
    EXPECT_EQ(Describe(lBag), L"'[[' ']]' {'a'='old' 'b'='1' 'm'={'k'='v'}}");
}

TEST(PropertyBag, AddPropertyBagOfItselfKeepsEveryProperty)
{
    const BagPtr lBag = BagBuilder().Set(L"a", L"1*").Set(L"b", L"2").Nest(L"n", BagBuilder().Set(L"k", L"v"));
    lBag->AddPropertyBag(lBag.get());
    EXPECT_EQ(lBag->GetCount(), 3U);
    EXPECT_EQ(Text(lBag->GetProperty(L"a")), L"1*");
    EXPECT_EQ(Text(lBag->GetProperty(L"b")), L"2");
    EXPECT_EQ(Text(lBag->GetProperty(L"n")), L"EndDelimiter***BeginDelimiter++++***k++++v***");
}

TEST(PropertyBag, TextFormReadsBackToTheSameBag)
{
    BagGenerator lGenerator(1);
    for (int lRound = 0; lRound < 300; ++lRound)
    {
        const BagPtr lBag = lGenerator.Next();
        const std::wstring lText = FullText(*lBag);
        const BagPtr lRead = ReadBag(lText);
        ASSERT_EQ(Describe(lRead), Describe(lBag)) << "round " << lRound;
        ASSERT_EQ(FullText(*lRead), lText);
        const BagPtr lAdded = NewBag(lBag->GetBeginDelimiter(), lBag->GetEndDelimiter());
        lAdded->AddString(ContentText(*lBag).c_str());
        ASSERT_EQ(Describe(lAdded), Describe(lBag));
    }
}

TEST(PropertyBag, EmbeddedBagHasTheSameContent)
{
    BagGenerator lGenerator(2);
    for (int lRound = 0; lRound < 200; ++lRound)
    {
        const BagPtr lBag = lGenerator.Next();
        const BagPtr lContainer = NewBag(lBag->GetBeginDelimiter(), lBag->GetEndDelimiter());
        lContainer->EmbedProperty(L"e", lBag.get());
        const std::wstring lExpected = lBag->GetCount() == 0 ? L"{}" : L"{'e'=" + DescribeContent(*lBag) + L"}";
        ASSERT_EQ(DescribeContent(*lContainer), lExpected) << "round " << lRound;
    }
}
