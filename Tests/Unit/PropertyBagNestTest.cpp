// Nested bags are handed on as text and read again at each level, and so lose or change what their text cannot carry.
// The results here were worked out by hand, one reading after the other.

#include "TalBase/PropertyBag.h"

#include "Tests/Support/BagBuilder.h"
#include "Tests/Support/Describe.h"
#include "Tests/Support/Expect.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

using QTalBase::PropertyBagException;
using namespace Support;

namespace
{

const wchar_t* const gBeginExpected = L"QTalBase::PropertyBagImpl::ExtractData; A Begin token was expected";

// What a bag with the default delimiters holds after reading the text.
std::wstring AfterAddString(const wchar_t* ipText)
{
    const BagPtr lBag = NewBag();
    lBag->AddString(ipText);
    return DescribeContent(*lBag);
}

} // namespace

TEST(PropertyBagNest, EmptyNestInATextIsAnEmptyValue)
{
    EXPECT_EQ(AfterAddString(L"e++++***"), L"{}");
    EXPECT_EQ(Describe(ReadBag(std::wstring(gHeader) + L"e++++***a++++1***")), L"'++++' '***' {'a'='1'}");
}

TEST(PropertyBagNest, NestOfAnEmptyNestIsReadAsAnEmptyNest)
{
    EXPECT_EQ(AfterAddString(L"o++++e++++******"), L"{'o'={}}");
    EXPECT_EQ(AfterAddString(L"o++++e++++***f++++******"), L"{'o'={}}");
}

TEST(PropertyBagNest, DeeperEmptyNestsVanishWithTheirSecondReading)
{
    EXPECT_EQ(AfterAddString(L"p++++o++++e++++*********"), L"{'p'={}}");
    EXPECT_EQ(AfterAddString(L"q++++p++++o++++e++++************"), L"{'q'={}}");
}

TEST(PropertyBagNest, EmptyNestBesideAPropertyVanishesAlone)
{
    EXPECT_EQ(AfterAddString(L"o++++e++++***x++++1******"), L"{'o'={'x'='1'}}");
    EXPECT_EQ(AfterAddString(L"p++++x++++1***o++++e++++*********"), L"{'p'={'x'='1'}}");
    EXPECT_EQ(AfterAddString(L"p++++o++++e++++***x++++1*********"), L"{'p'={'o'={'x'='1'}}}");
}

TEST(PropertyBagNest, SetPropertyReadsOnceLessThanAddString)
{
    const BagPtr lBag = NewBag();
    lBag->SetProperty(L"p", L"e++++***", true);
    EXPECT_EQ(DescribeContent(*lBag), L"{'p'={}}");
    lBag->SetProperty(L"p", L"o++++e++++******", true);
    EXPECT_EQ(DescribeContent(*lBag), L"{'p'={'o'={}}}");
    lBag->SetProperty(L"p", L"q++++o++++e++++*********", true);
    EXPECT_EQ(DescribeContent(*lBag), L"{'p'={'q'={}}}");
}

TEST(PropertyBagNest, SetPropertyHeaderAloneStoresAnEmptyNest)
{
    const BagPtr lBag = BagBuilder().Set(L"e", L"1");
    lBag->SetProperty(L"e", gHeader, true);
    EXPECT_EQ(DescribeContent(*lBag), L"{'e'={}}");
    lBag->SetProperty(L"f", L"text without delimiters", true);
    EXPECT_EQ(DescribeContent(*lBag), L"{'e'={} 'f'={}}");
}

TEST(PropertyBagNest, EmbedPropertyDropsEmptyNestsByDepth)
{
    const BagPtr lBag = NewBag();
    lBag->EmbedProperty(L"p", BagBuilder().get());
    EXPECT_EQ(DescribeContent(*lBag), L"{}");
    lBag->EmbedProperty(L"p", BagBuilder().Nest(L"e", BagBuilder()).get());
    EXPECT_EQ(DescribeContent(*lBag), L"{'p'={}}");
    lBag->EmbedProperty(L"p", BagBuilder().Nest(L"o", BagBuilder().Nest(L"e", BagBuilder())).get());
    EXPECT_EQ(DescribeContent(*lBag), L"{'p'={'o'={}}}");
}

TEST(PropertyBagNest, AddPropertyBagKeepsAnEmptyNestOfTheFirstLevel)
{
    const BagPtr lOther =
        BagBuilder().Nest(L"e", BagBuilder()).Nest(L"p", BagBuilder().Nest(L"o", BagBuilder())).Set(L"a", L"1");
    const BagPtr lBag = NewBag();
    lBag->AddPropertyBag(lOther.get());
    EXPECT_EQ(DescribeContent(*lBag), L"{'a'='1' 'e'={} 'p'={}}");
}

TEST(PropertyBagNest, TextFormOfABagWithEmptyNestsReadsBackWithoutThem)
{
    const BagPtr lBag = BagBuilder()
                            .Set(L"a", L"1")
                            .Nest(L"e", BagBuilder())
                            .Nest(L"p", BagBuilder().Nest(L"o", BagBuilder()).Set(L"k", L"v"));
    EXPECT_EQ(DescribeContent(*ReadBag(FullText(*lBag))), L"{'a'='1' 'p'={'k'='v'}}");
}

// An end delimiter with a letter of the word "BeginDelimiter" is cut short by the reader of the header.
TEST(PropertyBagNest, EndDelimiterThatAHeaderCannotCarryRefusesTheText)
{
    const BagPtr lBag = BagBuilder(L"<i>", L"</i>").Set(L"a", L"1");
    EXPECT_EQ(FullText(*lBag), L"EndDelimiter</i>BeginDelimiter<i></i>a<i>1</i>");
    EXPECT_MESSAGE(ReadBag(FullText(*lBag)), PropertyBagException, gBeginExpected);
    EXPECT_MESSAGE(lBag->AddString(FullText(*lBag).c_str()), PropertyBagException, gBeginExpected);
    lBag->AddString(L"b<i>2</i>");
    EXPECT_EQ(Describe(lBag), L"'<i>' '</i>' {'a'='1' 'b'='2'}");
}

TEST(PropertyBagNest, EndDelimiterThatAHeaderCannotCarryAllowsOneLevelOfEmbedding)
{
    const BagPtr lBag = BagBuilder(L"<i>", L"</i>").Set(L"m", L"old").Set(L"n", L"old").Set(L"p", L"old");
    const BagPtr lOne = BagBuilder(L"<i>", L"</i>").Set(L"k", L"v");
    lBag->EmbedProperty(L"n", lOne.get());
    EXPECT_EQ(DescribeContent(*lBag), L"{'m'='old' 'p'='old' 'n'={'k'='v'}}");
    EXPECT_MESSAGE(lBag->AddString(L"m<i>k<i>v</i></i>"), PropertyBagException, gBeginExpected);
    EXPECT_EQ(DescribeContent(*lBag), L"{'m'='old' 'p'='old' 'n'={'k'='v'}}");
    const BagPtr lTwo = NewBag(L"<i>", L"</i>");
    lTwo->EmbedProperty(L"o", lOne.get());
    EXPECT_MESSAGE(lBag->EmbedProperty(L"p", lTwo.get()), PropertyBagException, gBeginExpected);
    EXPECT_EQ(DescribeContent(*lBag), L"{'m'='old' 'n'={'k'='v'}}");
    EXPECT_MESSAGE(NewBag()->AddPropertyBag(lBag.get()), PropertyBagException, gBeginExpected);
    const BagPtr lClone = lBag->Clone();
    EXPECT_EQ(Describe(lClone), L"'<i>' '</i>' {'m'='old' 'n'={'k'='v'}}");
}

// A begin delimiter with a character of the end delimiter is cut short too, and the text is misread without a word.
TEST(PropertyBagNest, BeginDelimiterThatAHeaderCannotCarryMisreadsTheText)
{
    const BagPtr lBag = BagBuilder(L"[>", L">>").Set(L"a", L"1");
    EXPECT_EQ(FullText(*lBag), L"EndDelimiter>>BeginDelimiter[>>>a[>1>>");
    EXPECT_EQ(Describe(ReadBag(FullText(*lBag))), L"'[' '>>' {'>a'='>1'}");
    EXPECT_EQ(Text(lBag->GetProperty(L"a")), L"1");
}

TEST(PropertyBagNest, BeginDelimiterThatAHeaderCannotCarryMisreadsNests)
{
    const BagPtr lBag = BagBuilder(L"[>", L">>").Set(L"n", L"old").Set(L"p", L"old");
    lBag->SetProperty(L"m", L"EndDelimiter>>BeginDelimiter[>>>k[>v>>", true);
    EXPECT_EQ(DescribeContent(*lBag), L"{'n'='old' 'p'='old' 'm'={'>k'='>v'}}");
    // Read into the scratch bag once, misread there, and unreadable when the scratch bag is merged.
    EXPECT_MESSAGE(lBag->AddString(L"n[>k[>v>>>>"), PropertyBagException,
                   L"QTalBase::PropertyBagImpl::ExtractData; A string token was expected");
    EXPECT_EQ(DescribeContent(*lBag), L"{'p'='old' 'm'={'>k'='>v'}}");
}

// A header carries "<" for "<!", and ends a character early. So whenever n is read again its first name gains ">", what
// follows a name gains "!", and the empty nest e is a plain property then.
TEST(PropertyBagNest, EmptyNestThatIsReadAgainWithAnotherBeginDelimiterGainsAValue)
{
    const BagPtr lBag = NewBag(L"<!", L"!>");
    lBag->AddString(L"n<!k<!v!>e<!m<!!>!>!>");
    EXPECT_EQ(DescribeContent(*lBag), L"{'n'={'>>k'='!!v' 'e'='!!'}}");
}

TEST(PropertyBagNest, NameLikeAHeaderIsOrdinaryAfterAHeader)
{
    EXPECT_EQ(AfterAddString(L"n++++EndDelimiterX++++v******"), L"{'n'={'EndDelimiterX'='v'}}");
    const BagPtr lBag = BagBuilder().Set(L"EndDelimiterX", L"v");
    EXPECT_EQ(Describe(ReadBag(FullText(*lBag))), L"'++++' '***' {'EndDelimiterX'='v'}");
    const BagPtr lMerged = NewBag();
    lMerged->AddPropertyBag(BagBuilder().Nest(L"n", BagBuilder().Set(L"EndDelimiterX", L"v")).get());
    EXPECT_EQ(DescribeContent(*lMerged), L"{'n'={'EndDelimiterX'='v'}}");
}

TEST(PropertyBagNest, EmbedPropertyFirstNameLikeAHeaderIsReadAsOne)
{
    const BagPtr lBag = BagBuilder().Set(L"n", L"old").Set(L"a", L"1");
    EXPECT_MESSAGE(lBag->EmbedProperty(L"n", BagBuilder().Set(L"EndDelimiterX", L"v").get()), PropertyBagException,
                   L"QTalBase::PropertyBagImpl::ExtractDelimiters; the string has a malformed metadata. It must "
                   L"contain BeginDelimiter");
    EXPECT_EQ(DescribeContent(*lBag), L"{'a'='1'}");
    EXPECT_MESSAGE(lBag->EmbedProperty(L"a", BagBuilder().Set(L"EndDelimiterB", L"v").get()), PropertyBagException,
                   L"QTalBase::PropertyBagImpl::ExtractDelimiters; the string has a malformed metadata. EndDelimiter "
                   L"cannot be empty");
    EXPECT_EQ(DescribeContent(*lBag), L"{}");
}

TEST(PropertyBagNest, EmbedPropertyNameLikeAHeaderCutShortThrowsOutOfRange)
{
    const BagPtr lBag = BagBuilder().Set(L"n", L"old");
    EXPECT_THROW(lBag->EmbedProperty(L"n", BagBuilder().Set(L"EndDelimiter", L"time").get()), std::out_of_range);
    EXPECT_EQ(DescribeContent(*lBag), L"{}");
    EXPECT_THROW(lBag->EmbedProperty(L"n", BagBuilder().Set(L"EndDelimiterName", L"v").get()), std::out_of_range);
    EXPECT_EQ(DescribeContent(*lBag), L"{}");
}

TEST(PropertyBagNest, EmbedPropertyNameThatIsAWholeHeaderSwallowsTheContent)
{
    const BagPtr lBag = NewBag();
    lBag->EmbedProperty(L"n", BagBuilder().Set(L"EndDelimiter##BeginDelimiter@@##x", L"1").get());
    EXPECT_EQ(DescribeContent(*lBag), L"{'n'={}}");
    lBag->EmbedProperty(L"n", BagBuilder().Set(L"EndDelimiter##BeginDelimiter@@##x@@1##", L"2").get());
    EXPECT_EQ(DescribeContent(*lBag), L"{'n'={'x'='1'}}");
}

TEST(PropertyBagNest, EmbedPropertySecondNameLikeAHeaderIsOrdinary)
{
    const BagPtr lBag = NewBag();
    lBag->EmbedProperty(L"n", BagBuilder().Set(L"a", L"1").Set(L"EndDelimiterX", L"v").get());
    EXPECT_EQ(DescribeContent(*lBag), L"{'n'={'a'='1' 'EndDelimiterX'='v'}}");
}

TEST(PropertyBagNest, DeepNestsSurviveTheirReadings)
{
    BagBuilder lBuilder;
    lBuilder.Set(L"k", L"v*");
    for (int lDepth = 0; lDepth < 10; ++lDepth)
    {
        lBuilder = BagBuilder().Set(L"d", L"1").Nest(L"n", lBuilder);
    }
    const BagPtr lBag = lBuilder;
    EXPECT_EQ(Describe(ReadBag(FullText(*lBag))), Describe(lBag));
}

// The merged bag lives only as long as the bag holds it, which the first of its properties ends.
TEST(PropertyBagNest, AddPropertyBagOfTheNestThatItReplaces)
{
    const BagPtr lBag = ReadBag(std::wstring(gHeader) + L"n++++n++++1***m++++2***o++++p++++3*********");
    const QTalBase::PropertyBag* lNest = lBag->GetPropertyBag(L"n").get();
    lBag->AddPropertyBag(lNest);
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'n'='1' 'm'='2' 'o'={'p'='3'}}");
}

// The nest is handed on as it is when its turn comes: with the plain properties that it has just got, and the nests
// before it.
TEST(PropertyBagNest, AddPropertyBagOfTheContainer)
{
    const BagPtr lBag = BagBuilder()
                            .Set(L"a", L"1")
                            .Set(L"b", L"2")
                            .Nest(L"m", BagBuilder().Set(L"x", L"y"))
                            .Nest(L"n", BagBuilder().Set(L"a", L"old").Set(L"k", L"v"))
                            .Nest(L"o", BagBuilder().Set(L"p", L"q"));
    const BagPtr lNest = lBag->GetPropertyBag(L"n");
    lNest->AddPropertyBag(lBag.get());
    EXPECT_EQ(DescribeContent(*lNest), L"{'k'='v' 'a'='1' 'b'='2' 'm'={'x'='y'} "
                                       L"'n'={'k'='v' 'a'='1' 'b'='2' 'm'={'x'='y'}} 'o'={'p'='q'}}");
    EXPECT_EQ(lBag->GetCount(), 5U);
}

TEST(PropertyBagNest, AddPropertyBagOfAContainerFurtherOut)
{
    std::wstring lText = gHeader;
    for (int lNumber = 0; lNumber < 100; ++lNumber) // as many as are looked up in a table
    {
        lText += L"name" + std::to_wstring(lNumber) + L"++++" + std::to_wstring(lNumber) + L"***";
    }
    const BagPtr lBag = ReadBag(lText + L"m++++n++++name7++++old***k++++v*********");
    const BagPtr lNest = lBag->GetPropertyBag(L"m")->GetPropertyBag(L"n");
    lNest->AddPropertyBag(lBag.get());
    ASSERT_EQ(lNest->GetCount(), 102U);
    EXPECT_EQ(Text(lNest->GetName(0)), L"k");
    EXPECT_EQ(Text(lNest->GetProperty(L"name7")), L"7");
    const BagPtr lCopy = lNest->GetPropertyBag(L"m")->GetPropertyBag(L"n");
    EXPECT_EQ(lCopy->GetCount(), 101U);
    EXPECT_EQ(Text(lCopy->GetProperty(L"name7")), L"7");
    EXPECT_FALSE(lCopy->IsPropertyEmbedded(L"m"));
}

TEST(PropertyBagNest, AddPropertyBagOfAContainerThatCannotBeReadKeepsWhatCameBefore)
{
    const BagPtr lBag = BagBuilder()
                            .Set(L"a", L"1")
                            .Nest(L"n", BagBuilder().Set(L"", L"nameless"))
                            .Nest(L"o", BagBuilder().Set(L"p", L"q"));
    const BagPtr lNest = lBag->GetPropertyBag(L"n");
    EXPECT_THROW(lNest->AddPropertyBag(lBag.get()), QTalBase::PropertyBagException);
    EXPECT_EQ(DescribeContent(*lNest), L"{''='nameless' 'a'='1'}");
}
