// Looking properties up, by name and by position, and removing them.

#include "TalBase/PropertyBag.h"

#include "TalBase/PrivateSource/PropertyBagImpl.h"

#include "Tests/Support/BagBuilder.h"
#include "Tests/Support/Describe.h"
#include "Tests/Support/Expect.h"

#include <gtest/gtest.h>

#include <utility>

using QTalBase::PropertyBagImpl;
using QTalBase::PropertyBagUserErrorException;
using namespace Support;

TEST(PropertyBag, NewBagHoldsNothing)
{
    const BagPtr lBag = NewBag();
    EXPECT_EQ(lBag->GetCount(), 0U);
    EXPECT_EQ(Text(lBag->GetProperty(L"a")), L"");
    EXPECT_FALSE(lBag->IsPropertyEmbedded(L"a"));
    EXPECT_MESSAGE(lBag->GetPropertyBag(L"a"), PropertyBagUserErrorException,
                   L"QTalBase::PropertyBagImpl::GetPropertyBag; ipName does not exist");
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {}");
}

TEST(PropertyBag, RemovePropertyTakesEitherKind)
{
    const BagPtr lBag = MixedBag();
    lBag->RemoveProperty(L"a");
    lBag->RemoveProperty(L"m");
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'b'='x&#42;y' 'n'={'k'='w'}}");
}

TEST(PropertyBag, RemovePropertyNullOrUnknownNameChangesNothing)
{
    const BagPtr lBag = MixedBag();
    const std::wstring lBefore = Describe(lBag);
    lBag->RemoveProperty(nullptr);
    lBag->RemoveProperty(L"absent");
    lBag->RemoveProperty(L"A");
    EXPECT_EQ(Describe(lBag), lBefore);
    const BagPtr lEmpty = NewBag();
    lEmpty->RemoveProperty(L"a");
    EXPECT_EQ(Describe(lEmpty), L"'++++' '***' {}");
}

TEST(PropertyBag, GetPropertyOfNestedIsItsTextForm)
{
    const BagPtr lBag = BagBuilder(L"[[", L"]]").Nest(L"n", BagBuilder().Set(L"k", L"v"));
    EXPECT_EQ(Text(lBag->GetProperty(L"n")), L"EndDelimiter]]BeginDelimiter[[]]k[[v]]");
    EXPECT_EQ(Text(lBag->GetValue(0)), L"EndDelimiter]]BeginDelimiter[[]]k[[v]]");
    lBag->GetPropertyBag(L"n")->ChangeDelimiters(L"(", L")");
    EXPECT_EQ(Text(lBag->GetProperty(L"n")), L"EndDelimiter)BeginDelimiter()k(v)");
    EXPECT_EQ(Text(lBag->GetValue(0)), L"EndDelimiter)BeginDelimiter()k(v)");
}

TEST(PropertyBag, GetPropertyBagReturnsTheStoredBag)
{
    const BagPtr lBag = MixedBag();
    const BagPtr lNested = lBag->GetPropertyBag(L"m");
    EXPECT_EQ(lNested.get(), lBag->GetPropertyBag(L"m").get());
    EXPECT_EQ(lNested.get(), lBag->GetValuePropertyBag(2).get());
    lNested->SetProperty(L"new", L"1", false);
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'a'='1' 'b'='x&#42;y' 'm'={'k'='v' 'new'='1'} 'n'={'k'='w'}}");
}

TEST(PropertyBag, GetPropertyBagOutlivesItsContainer)
{
    BagPtr lBag = MixedBag();
    const BagPtr lByName = lBag->GetPropertyBag(L"m");
    const BagPtr lByPosition = lBag->GetValuePropertyBag(3);
    lBag = nullptr;
    EXPECT_EQ(Describe(lByName), L"'++++' '***' {'k'='v'}");
    EXPECT_EQ(Describe(lByPosition), L"'++++' '***' {'k'='w'}");
}

TEST(PropertyBag, GetPropertyBagWithoutNestedBagThrows)
{
    const BagPtr lBag = MixedBag();
    EXPECT_MESSAGE(lBag->GetPropertyBag(L"a"), PropertyBagUserErrorException,
                   L"QTalBase::PropertyBagImpl::GetPropertyBag; ipName is not embedded");
    EXPECT_MESSAGE(lBag->GetPropertyBag(L"absent"), PropertyBagUserErrorException,
                   L"QTalBase::PropertyBagImpl::GetPropertyBag; ipName does not exist");
}

TEST(PropertyBag, PositionsCountPlainBeforeNested)
{
    const BagPtr lBag = NewBag();
    lBag->SetProperty(L"e", L"k++++v***", true);
    lBag->SetProperty(L"v", L"1", false);
    EXPECT_EQ(lBag->GetCount(), 2U);
    EXPECT_EQ(Text(lBag->GetName(0)), L"v");
    EXPECT_FALSE(lBag->IsEmbedded(0));
    EXPECT_EQ(Text(lBag->GetName(1)), L"e");
    EXPECT_TRUE(lBag->IsEmbedded(1));
}

TEST(PropertyBag, IsEmbeddedAtTheCountIsTrue)
{
    EXPECT_TRUE(NewBag()->IsEmbedded(0));
    EXPECT_TRUE(MixedBag()->IsEmbedded(4));
    const BagPtr lPlain = BagBuilder().Set(L"a", L"1");
    EXPECT_TRUE(lPlain->IsEmbedded(1));
}

TEST(PropertyBag, PositionAtTheCountThrowsTheOperationsOwnText)
{
    const BagPtr lPlain = BagBuilder().Set(L"a", L"1");
    for (const BagPtr& lBag : {NewBag(), lPlain, MixedBag()})
    {
        const unsigned int lCount = lBag->GetCount();
        EXPECT_MESSAGE(lBag->GetName(lCount), PropertyBagUserErrorException,
                       L"QTalBase::PropertyBagImpl::GetName; iIndex is out of range");
        EXPECT_MESSAGE(lBag->GetValue(lCount), PropertyBagUserErrorException,
                       L"QTalBase::PropertyBagImpl::GetValue; iIndex is out of range");
        EXPECT_MESSAGE(lBag->GetValuePropertyBag(lCount), PropertyBagUserErrorException,
                       L"QTalBase::PropertyBagImpl::GetPropertyBag; iIndex is out of range");
    }
}

TEST(PropertyBag, PositionAboveTheCountThrows)
{
    const BagPtr lBag = MixedBag();
    for (const unsigned int lIndex : {5U, 6U, 0x7FFFFFFFU, 0xFFFFFFFEU, 0xFFFFFFFFU})
    {
        EXPECT_MESSAGE(lBag->GetName(lIndex), PropertyBagUserErrorException,
                       L"QTalBase::PropertyBagImpl::GetName; iIndex is out of range");
        EXPECT_MESSAGE(lBag->GetValue(lIndex), PropertyBagUserErrorException,
                       L"QTalBase::PropertyBagImpl::GetValue; iIndex is out of range");
        EXPECT_MESSAGE(lBag->IsEmbedded(lIndex), PropertyBagUserErrorException,
                       L"QTalBase::PropertyBagImpl::GetValue; iIndex is out of range");
        EXPECT_MESSAGE(lBag->GetValuePropertyBag(lIndex), PropertyBagUserErrorException,
                       L"QTalBase::PropertyBagImpl::GetPropertyBag; iIndex is out of range");
    }
}

TEST(PropertyBag, GetValuePropertyBagAtPlainPositionThrows)
{
    const BagPtr lBag = MixedBag();
    EXPECT_MESSAGE(lBag->GetValuePropertyBag(0), PropertyBagUserErrorException,
                   L"QTalBase::PropertyBagImpl::GetPropertyBag; Value at iIndex is not Embedded");
    EXPECT_MESSAGE(lBag->GetValuePropertyBag(1), PropertyBagUserErrorException,
                   L"QTalBase::PropertyBagImpl::GetPropertyBag; Value at iIndex is not Embedded");
}

TEST(PropertyBagImpl, NamePositionsCountWithinTheirOwnSequence)
{
    PropertyBagImpl lBag;
    lBag.SetProperty(L"n", L"k++++v***", true);
    lBag.SetProperty(L"a", L"1", false);
    lBag.SetProperty(L"b", L"2", false);
    EXPECT_EQ(lBag.NamePositionInValueContent(L"a"), 0U);
    EXPECT_EQ(lBag.NamePositionInValueContent(L"b"), 1U);
    EXPECT_EQ(lBag.NamePositionInValueContent(L"n"), 0xFFFFFFFFU);
    EXPECT_EQ(lBag.NamePositionInEmbeddedContent(L"n"), 0U);
    EXPECT_EQ(lBag.NamePositionInEmbeddedContent(L"a"), 0xFFFFFFFFU);
}

TEST(PropertyBagImpl, RemoversTakeOnlyTheirOwnKindAndNeverThrow)
{
    static_assert(noexcept(std::declval<PropertyBagImpl&>().RemovePropertyInValueContent(L"")));
    static_assert(noexcept(std::declval<PropertyBagImpl&>().RemovePropertyInEmbeddedContent(L"")));
    PropertyBagImpl lBag;
    lBag.SetProperty(L"a", L"1", false);
    lBag.SetProperty(L"b", L"2", false);
    lBag.SetProperty(L"c", L"3", false);
    lBag.SetProperty(L"n", L"k++++v***", true);
    lBag.RemovePropertyInValueContent(L"n");
    lBag.RemovePropertyInEmbeddedContent(L"a");
    lBag.RemovePropertyInValueContent(nullptr);
    lBag.RemovePropertyInEmbeddedContent(nullptr);
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'a'='1' 'b'='2' 'c'='3' 'n'={'k'='v'}}");
    lBag.RemovePropertyInValueContent(L"b");
    lBag.RemovePropertyInEmbeddedContent(L"n");
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'a'='1' 'c'='3'}");
}

TEST(PropertyBag, MergedNestedBagOfItselfMayDieInTheMerge)
{
    const BagPtr lBag = BagBuilder().Nest(L"n", BagBuilder().Set(L"x", L"1").Nest(L"n", BagBuilder().Set(L"y", L"2")));
    const QTalBase::PropertyBag* const lBorrowed = lBag->GetPropertyBag(L"n").get();
    lBag->AddPropertyBag(lBorrowed);
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'x'='1' 'n'={'y'='2'}}");
}
