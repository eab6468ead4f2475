// A name that occurs twice. Only an overrider of RemoveProperty can bring that about, and a clone carries it into a bag
// of the library's own class, whose operations then may not take the shortcuts that unique names allow: by name, the
// first entry is meant, and a plain property before a nest.

#include "TalBase/PropertyBag.h"

#include "QDataType/StringCollection.h"

#include "Tests/Support/BagBuilder.h"
#include "Tests/Support/Describe.h"
#include "Tests/Support/Expect.h"
#include "Tests/Support/RepeatingBag.h"
#include "Tests/Support/ScriptedStream.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

using QTalBase::PropertyBagException;
using namespace Support;

namespace
{

// Lets a nest have a pair of delimiters that is refused, so that rendering it throws.
void Spoil(const BagPtr& iNest)
{
    CallLog lLog;
    AnsweringReadStream lStream({L"=", L"=", L""}, lLog);
    EXPECT_THROW(iNest->DeSerialize(lStream), PropertyBagException);
}

// A plain property and so many nests n, of which the first holds k = 0, the next k = 1 and so on.
BagPtr ManyNestsOfOneName(unsigned int iCount)
{
    RepeatingBag lBag;
    lBag.Plain(L"p", L"1");
    for (unsigned int lIndex = 0; lIndex < iCount; ++lIndex)
    {
        lBag.Nest(L"n", (L"k++++" + std::to_wstring(lIndex) + L"***").c_str());
    }
    return lBag.Cloned();
}

const wchar_t* const gEqualDelimiters =
    L"QTalBase::PropertyBagImpl::CheckValidityOfDelimiters; Begin and End may not be equal";

} // namespace

TEST(RepeatedNames, CloneKeepsThem)
{
    const BagPtr lBag = RepeatingBag().Plain(L"a", L"1").Plain(L"a", L"2").Nest(L"a", L"k++++v***").Cloned();
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'a'='1' 'a'='2' 'a'={'k'='v'}}");
    const BagPtr lClone = lBag->Clone();
    EXPECT_EQ(Describe(lClone), L"'++++' '***' {'a'='1' 'a'='2' 'a'={'k'='v'}}");
    EXPECT_EQ(Text(lClone->GetProperty(L"a")), L"1");
}

// Reading by the name gives the right bag's plain value and never renders its nest, so the nests in it are rendered one
// by one as they are compared.
TEST(RepeatedNames, EqualsRendersWhatAPlainPropertyHides)
{
    const wchar_t* const lText = L"m++++k++++x++++1*********";
    const BagPtr lLeft = RepeatingBag().Plain(L"a", L"1").Plain(L"a", L"1").Nest(L"n", lText).Cloned();
    const BagPtr lRight = RepeatingBag().Plain(L"a", L"1").Plain(L"n", L"1").Nest(L"n", lText).Cloned();
    EXPECT_TRUE(*lLeft == *lRight);
    Spoil(lRight->GetPropertyBag(L"n")->GetPropertyBag(L"m")->GetPropertyBag(L"k"));
    EXPECT_MESSAGE((void)(*lLeft == *lRight), PropertyBagException, gEqualDelimiters);
}

TEST(RepeatedNames, EqualsComparesWithTheFirstOfTheOther)
{
    const BagPtr lSame = RepeatingBag().Plain(L"a", L"1").Plain(L"a", L"1").Cloned();
    const BagPtr lDifferent = RepeatingBag().Plain(L"a", L"1").Plain(L"a", L"2").Cloned();
    EXPECT_TRUE(*lSame == *lDifferent);
    EXPECT_FALSE(*lDifferent == *lSame);
    EXPECT_FALSE(*lDifferent == *lDifferent);
    EXPECT_TRUE(*lSame == *lSame);
}

TEST(RepeatedNames, EqualsPlainPropertyNeverMatchesANestThatHidesBehindAnotherPlainOne)
{
    const BagPtr lBoth = RepeatingBag().Plain(L"a", L"1").Nest(L"a", L"k++++v***").Cloned();
    EXPECT_FALSE(*lBoth == *lBoth);
    const BagPtr lPlain = BagBuilder().Set(L"a", L"1").Set(L"b", L"2");
    EXPECT_FALSE(*lPlain == *lBoth);
    EXPECT_FALSE(*lBoth == *lPlain);
}

TEST(RepeatedNames, EqualsOfPlainPropertiesBesideANest)
{
    const BagPtr lAsked = BagBuilder().Set(L"a", L"1").Nest(L"n", BagBuilder().Set(L"k", L"v"));
    const BagPtr lEqual = RepeatingBag().Plain(L"a", L"1").Nest(L"n", L"k++++v***").Cloned();
    EXPECT_TRUE(*lAsked == *lEqual);
    const BagPtr lOther = RepeatingBag().Plain(L"a", L"2").Nest(L"n", L"k++++v***").Cloned();
    EXPECT_FALSE(*lAsked == *lOther);
}

TEST(RepeatedNames, EqualsRendersTheOthersNestOnlyWhereNoPlainPropertyHidesIt)
{
    const BagPtr lAsked = BagBuilder().Nest(L"a", BagBuilder().Set(L"k", L"v")).Nest(L"b", BagBuilder());
    const BagPtr lHidden = RepeatingBag().Plain(L"a", L"1").Nest(L"a", L"k++++v***").Cloned();
    Spoil(lHidden->GetPropertyBag(L"a"));
    EXPECT_FALSE(*lAsked == *lHidden);
    const BagPtr lShown = RepeatingBag().Plain(L"c", L"1").Nest(L"a", L"k++++v***").Cloned();
    Spoil(lShown->GetPropertyBag(L"a"));
    EXPECT_MESSAGE(*lAsked == *lShown, PropertyBagException, gEqualDelimiters);
}

// The other bag is asked for the value of the name, which renders its nest, unless a plain property comes first.
TEST(RepeatedNames, EqualsRendersTheNestThatHasThePlainPropertysName)
{
    const BagPtr lNest = BagBuilder().Nest(L"a", BagBuilder().Set(L"k", L"v"));
    Spoil(lNest->GetPropertyBag(L"a"));
    const BagPtr lAsked = BagBuilder().Set(L"a", L"1");
    EXPECT_MESSAGE(*lAsked == *lNest, PropertyBagException, gEqualDelimiters);
    const BagPtr lBoth = RepeatingBag().Plain(L"a", L"1").Nest(L"a", L"k++++v***").Cloned();
    Spoil(lBoth->GetPropertyBag(L"a"));
    const BagPtr lAskedOfTwo = BagBuilder().Set(L"a", L"1").Set(L"b", L"2");
    EXPECT_FALSE(*lAskedOfTwo == *lBoth);
}

TEST(RepeatedNames, EqualsFindsTheFirstOfManyNestsOfOneName)
{
    const BagPtr lAsked = RepeatingBag()
                              .Nest(L"n", L"k++++0***")
                              .Nest(L"n", L"k++++0***")
                              .Nest(L"n", L"k++++0***")
                              .Plain(L"p", L"1")
                              .Cloned();
    EXPECT_TRUE(*lAsked == *ManyNestsOfOneName(3));
    EXPECT_FALSE(*ManyNestsOfOneName(3) == *lAsked);
    // So many that a table finds them, and still the first.
    EXPECT_FALSE(*ManyNestsOfOneName(17) == *ManyNestsOfOneName(17));
    EXPECT_TRUE(ManyNestsOfOneName(17)->IsSubset(ManyNestsOfOneName(17).get()));
    EXPECT_TRUE(ManyNestsOfOneName(17)->IsSubset(ManyNestsOfOneName(2).get()));
}

TEST(RepeatedNames, EqualsFindsTheFirstOfManyPlainPropertiesOfOneName)
{
    RepeatingBag lDifferent;
    RepeatingBag lSame;
    for (unsigned int lIndex = 0; lIndex < 17; ++lIndex)
    {
        lDifferent.Plain(L"a", std::to_wstring(lIndex).c_str());
        lSame.Plain(L"a", L"0");
    }
    EXPECT_TRUE(*lSame.Cloned() == *lDifferent.Cloned());
    EXPECT_FALSE(*lDifferent.Cloned() == *lSame.Cloned());
}

TEST(RepeatedNames, IsSubsetReadsTheFirstOnBothSides)
{
    const BagPtr lWhole = BagBuilder().Set(L"a", L"1").Set(L"b", L"2");
    EXPECT_TRUE(lWhole->IsSubset(RepeatingBag().Plain(L"a", L"1").Plain(L"a", L"2").Cloned().get()));
    EXPECT_FALSE(lWhole->IsSubset(RepeatingBag().Plain(L"a", L"2").Plain(L"a", L"1").Cloned().get()));
    EXPECT_TRUE(
        RepeatingBag().Plain(L"a", L"1").Plain(L"a", L"2").Cloned()->IsSubset(BagBuilder().Set(L"a", L"1").get()));
    EXPECT_FALSE(
        RepeatingBag().Plain(L"a", L"1").Plain(L"a", L"2").Cloned()->IsSubset(BagBuilder().Set(L"a", L"2").get()));
}

TEST(RepeatedNames, IsSubsetComparesNestsByTheFirstOfTheirName)
{
    const BagPtr lWhole = BagBuilder().Nest(L"n", BagBuilder().Set(L"k", L"1")).Set(L"x", L"y");
    EXPECT_TRUE(lWhole->IsSubset(RepeatingBag().Nest(L"n", L"k++++1***").Nest(L"n", L"k++++2***").Cloned().get()));
    EXPECT_FALSE(lWhole->IsSubset(RepeatingBag().Nest(L"n", L"k++++2***").Nest(L"n", L"k++++1***").Cloned().get()));
}

TEST(RepeatedNames, IsSubsetPlainPropertyThatIsANestTooIsReadByName)
{
    // The whole reads its nest as the text that the part holds as a plain value before its own nest.
    const BagPtr lWhole = BagBuilder(L"<", L">").Set(L"x", L"y").Nest(L"a", BagBuilder().Set(L"k", L"v"));
    const BagPtr lPart =
        RepeatingBag(L"(", L")").Plain(L"a", L"EndDelimiter>BeginDelimiter<>k<v>").Nest(L"a", L"k(v)").Cloned();
    EXPECT_TRUE(lWhole->IsSubset(lPart.get()));
    const BagPtr lOther =
        RepeatingBag(L"(", L")").Plain(L"a", L"EndDelimiter>BeginDelimiter<>k<w>").Nest(L"a", L"k(v)").Cloned();
    EXPECT_FALSE(lWhole->IsSubset(lOther.get()));
}

TEST(RepeatedNames, IsSubsetPlainPropertyMatchesOnlyWhereBothHaveANestOfItsName)
{
    const BagPtr lBoth = RepeatingBag().Plain(L"a", L"1").Nest(L"a", L"k++++v***").Cloned();
    EXPECT_TRUE(lBoth->IsSubset(lBoth.get()));
    EXPECT_FALSE(BagBuilder().Set(L"a", L"1").Set(L"b", L"2").get()->IsSubset(lBoth.get()));
    EXPECT_FALSE(lBoth->IsSubset(BagBuilder().Set(L"a", L"1").get()));
}

TEST(RepeatedNames, AddPropertyBagSetsEachInTurn)
{
    const BagPtr lBag = RepeatingBag().Plain(L"a", L"1").Plain(L"a", L"2").Nest(L"a", L"k++++v***").Cloned();
    const BagPtr lTarget = NewBag();
    lTarget->AddPropertyBag(lBag.get());
    EXPECT_EQ(Describe(lTarget), L"'++++' '***' {'a'={'k'='v'}}");
    // What is set replaces the first, so that of three one fewer is left each time.
    lBag->AddPropertyBag(BagBuilder().Set(L"a", L"3").Set(L"b", L"4").get());
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'a'='2' 'a'='3' 'b'='4'}");
    lBag->AddString(L"a++++5***");
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'a'='3' 'b'='4' 'a'='5'}");
}

TEST(RepeatedNames, FilteredCloneTakesTheNestAndThenTheFirstPlainProperty)
{
    const BagPtr lBag = RepeatingBag()
                            .Plain(L"a", L"1")
                            .Nest(L"a", L"k++++v***")
                            .Nest(L"a", L"k++++w***")
                            .Plain(L"b", L"2")
                            .Plain(L"b", L"3")
                            .Cloned();
    const std::unique_ptr<QDataType::StringCollection> lFilter(QDataType::CreateStringCollection());
    lFilter->Insert(L"b");
    lFilter->Insert(L"a");
    EXPECT_EQ(Describe(BagPtr(lBag->FilteredClone(lFilter.get()))), L"'++++' '***' {'b'='2' 'a'={'k'='v'}}");
}
