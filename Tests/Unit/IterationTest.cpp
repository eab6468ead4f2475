#include "TalBase/Iteration.h"

#include "QSerialization/MemoryDataStream.h"

#include "Tests/Support/BagBuilder.h"
#include "Tests/Support/Expect.h"
#include "Tests/Support/ForeignBag.h"
#include "Tests/Support/RepointedDefaults.h"
#include "Tests/Support/TracedBag.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>
#if defined(__cpp_lib_ranges) && __cpp_lib_ranges >= 201911L
#include <ranges>
#endif

using namespace Support;
using QTalBase::BagEntry;
using QTalBase::Each;
using QTalBase::Property;
using QTalBase::PropertyBag;
using QTalBase::PropertyBags;

using BagsPtr = QBase::SmartPtrI<PropertyBags>;
using Texts = std::vector<std::wstring>;

namespace
{

// Name and value of each property, a nested bag's value in angle brackets.
template <class Range>
Texts Walk(const Range& iProperties)
{
    Texts lTexts;
    for (const Property& lProperty : iProperties)
    {
        const std::wstring lValue =
            lProperty.IsEmbedded() ? L"<" + ContentText(*lProperty.GetBag()) + L">" : Text(lProperty.GetValue());
        lTexts.push_back(Text(lProperty.GetName()) + L"=" + lValue);
    }
    return lTexts;
}

const wchar_t* const gAwkwardValues[] = {L"*",      L"+",       L"a*b+c",  L"&#42;",     L"&#42",       L"&#43",
                                         L"&#4*2;", L"&#&#42;", L"&&#43;", L"&#42;&#43", L"&#43;&#42;", L"&#042;",
                                         L"&amp;",  L"&",       L"&#4",    L"plain",     L"&#42;tail*", L"&#4&#42;3;"};

} // namespace

TEST(Iteration, PlainPropertiesComeFirstThenNestedBags)
{
    const BagPtr lBag = BagBuilder()
                            .Set(L"a", L"1")
                            .Nest(L"m", BagBuilder().Set(L"k", L"v"))
                            .Set(L"b", L"2*3")
                            .Nest(L"e", BagBuilder());
    EXPECT_EQ(Walk(*lBag), (Texts{L"a=1", L"b=2*3", L"m=<k++++v***>", L"e=<>"}));
}

TEST(Iteration, ConstBagIsWalkedAlike)
{
    const BagPtr lBag = MixedBag();
    const PropertyBag& lConst = *lBag;
    EXPECT_EQ(Walk(lConst), (Texts{L"a=1", L"b=x*y", L"m=<k++++v***>", L"n=<k++++w***>"}));
}

TEST(Iteration, EmptyBagHasNoProperties)
{
    EXPECT_EQ(Walk(*NewBag()), Texts());
    EXPECT_TRUE(begin(*NewBag()) == end(*NewBag()));
}

TEST(Iteration, PropertyKnowsItsPosition)
{
    EXPECT_EQ(QTalBase::Property().GetIndex(), 0U);
    EXPECT_EQ(QTalBase::BagEntry().GetIndex(), 0U);
    const BagPtr lBag = MixedBag();
    unsigned int lExpected = 0;
    for (const Property& lProperty : *lBag)
    {
        EXPECT_EQ(lProperty.GetIndex(), lExpected);
        EXPECT_EQ(Text(lProperty.GetName()), Text(lBag->GetName(lExpected)));
        ++lExpected;
    }
    EXPECT_EQ(lExpected, 4U);
}

TEST(Iteration, ValuesAreThoseThatGetPropertyGives)
{
    const BagPtr lDefault = NewBag();
    const BagPtr lOther = NewBag(L"[[", L"]]");
    for (const wchar_t* lValue : gAwkwardValues)
    {
        lDefault->SetProperty(lValue, lValue, false);
        lOther->SetProperty(lValue, lValue, false);
    }
    for (const BagPtr& lBag : {lDefault, lOther})
    {
        ASSERT_EQ(lBag->GetCount(), std::size(gAwkwardValues));
        for (const Property& lProperty : *lBag)
        {
            const std::wstring lName = Text(lProperty.GetName());
            EXPECT_EQ(Text(lProperty.GetValue()), Text(lBag->GetProperty(lName.c_str()))) << Readable(lName);
        }
    }
    EXPECT_EQ(Text((*begin(*lDefault)).GetValue()), L"*") << "stored as &#42;";
}

TEST(Iteration, EscapesCountOnlyUnderTheDefaultsOfTheMoment)
{
    const BagPtr lBag = BagBuilder().Set(L"a", L"*");
    EXPECT_EQ(Text(begin(*lBag)->GetValue()), L"*");
    {
        const RepointedDefaults lOtherEnd(BEGIN, L"]]");
        EXPECT_EQ(Text(begin(*lBag)->GetValue()), L"&#42;") << "both have to be the defaults";
    }
    const RepointedDefaults lDefaults(L"[[", L"]]");
    EXPECT_EQ(Text(begin(*lBag)->GetValue()), L"&#42;");
    EXPECT_EQ(Text(lBag->GetProperty(L"a")), L"&#42;");
}

TEST(Iteration, NestedBagReadsAsItsTextAndIsTheBagItself)
{
    const BagPtr lBag = BagBuilder().Nest(L"n", BagBuilder().Set(L"k", L"1*&"));
    for (const Property& lProperty : *lBag)
    {
        EXPECT_EQ(Text(lProperty.GetValue()), std::wstring(gHeader) + L"k++++1&#42;&***") << "escapes stay in a text";
        lProperty.GetBag()->SetProperty(L"k", L"2", false);
    }
    EXPECT_EQ(DescribeContent(*lBag), L"{'n'={'k'='2'}}");
}

TEST(Iteration, PlainPropertyHasNoBag)
{
    const BagPtr lBag = MixedBag();
    EXPECT_MESSAGE(begin(*lBag)->GetBag(), QTalBase::PropertyBagUserErrorException,
                   L"QTalBase::PropertyBagImpl::GetPropertyBag; Value at iIndex is not Embedded");
}

TEST(Iteration, PropertyThatWasRemovedThrows)
{
    const BagPtr lBag = BagBuilder().Set(L"a", L"1");
    const Property lProperty = *begin(*lBag);
    lBag->RemoveProperty(L"a");
    EXPECT_MESSAGE(lProperty.GetName(), QTalBase::PropertyBagUserErrorException,
                   L"QTalBase::PropertyBagImpl::GetName; iIndex is out of range");
}

TEST(Iteration, ServesTheAlgorithmsOfTheStandardLibrary)
{
    const BagPtr lBag = MixedBag();
    EXPECT_EQ(std::count_if(begin(*lBag), end(*lBag), [](const Property& iProperty) { return iProperty.IsEmbedded(); }),
              2);
    const auto lFound = std::find_if(begin(*lBag), end(*lBag), [](const Property& iProperty) {
        return std::wstring_view(iProperty.GetName()) == L"n";
    });
    ASSERT_TRUE(lFound != end(*lBag));
    EXPECT_EQ(ContentText(*lFound->GetBag()), L"k++++w***");
    const std::vector<Property> lKept(begin(*lBag), end(*lBag));
    ASSERT_EQ(lKept.size(), 4U);
    EXPECT_EQ(Text(lKept[1].GetName()), L"b");
    auto lNext = begin(*lBag);
    EXPECT_EQ(Text((*lNext++).GetName()), L"a");
    EXPECT_EQ(Text((*lNext).GetName()), L"b");
}

#if defined(__cpp_lib_ranges) && __cpp_lib_ranges >= 201911L
TEST(Iteration, BagsAndCollectionsAreRanges)
{
    EXPECT_TRUE(std::ranges::input_range<const PropertyBag&>);
    EXPECT_TRUE(std::ranges::input_range<PropertyBag&>);
    EXPECT_TRUE(std::ranges::input_range<const PropertyBags&>);
    EXPECT_TRUE(std::ranges::input_range<PropertyBags&>);
    EXPECT_TRUE((std::ranges::input_range<QTalBase::ViewRange<PropertyBag, Property>>));
    const BagPtr lBag = MixedBag();
    EXPECT_EQ(std::ranges::count_if(*lBag, &Property::IsEmbedded), 2);
}
#endif

TEST(Iteration, ClassOfTheClientIsAskedForWhatIsRead)
{
    CallLog lLog;
    const QBase::SmartPtrI<ForeignBag> lBag(new ForeignBag(lLog));
    lBag->Nest(L"n", MixedBag()).Set(L"a", L"1");
    Texts lNames;
    for (const Property& lProperty : *lBag)
    {
        lNames.push_back(Text(lProperty.GetName()));
    }
    EXPECT_EQ(lNames, (Texts{L"n", L"a"})) << "the order is the bag's own";
    EXPECT_EQ(lLog, (CallLog{L"other.GetCount", L"other.GetName(0)", L"other.GetName(1)"}));
}

TEST(Iteration, EachHoldsTheBagWhileTheLoopRuns)
{
    CallLog lLog;
    auto* lTraced = new TracedBag(lLog, L"bag");
    lTraced->SetProperty(L"a", L"1", false);
    for (const Property& lProperty : Each(lTraced)) // nobody else holds it
    {
        EXPECT_EQ(lLog, CallLog());
        EXPECT_EQ(Text(lProperty.GetName()), L"a");
    }
    EXPECT_EQ(lLog, (CallLog{L"bag.Dies"}));
}

TEST(Iteration, EachOfNullIsEmpty)
{
    const BagsPtr lBags(QTalBase::CreatePropertyBags());
    EXPECT_EQ(Walk(Each(lBags->GetPropertyBagByName(L"unknown"))), Texts());
    EXPECT_TRUE(Each(BagsPtr()).begin() == Each(BagsPtr()).end());
}

TEST(Iteration, CollectionGivesNamesAndClonesInOrder)
{
    const BagsPtr lBags(QTalBase::CreatePropertyBags());
    lBags->Add(L"b", BagPtr(BagBuilder().Set(L"k", L"1")).get());
    lBags->Add(L"a", BagPtr(BagBuilder().Set(L"k", L"2")).get());
    Texts lTexts;
    for (const BagEntry& lEntry : *lBags)
    {
        const BagPtr lClone = lEntry.GetBag();
        lTexts.push_back(lEntry.GetName() + ContentText(*lClone));
        lClone->SetProperty(L"k", L"changed", false);
    }
    EXPECT_EQ(lTexts, (Texts{L"bk++++1***", L"ak++++2***"}));
    EXPECT_EQ(ContentText(*lBags->GetPropertyBag(0)), L"k++++1***");
}

TEST(Iteration, CollectionGivesNullForAnEntryWithoutABag)
{
    QSerialization::MemoryWriteDataStream lWritten;
    lWritten.WriteUInt32(1);
    lWritten.WriteWString(L"none");
    lWritten.WriteBool(false);
    QSerialization::MemoryReadDataStream lStream(lWritten.GetBytes().data(), lWritten.GetBytes().size());
    const BagsPtr lBags(QTalBase::CreatePropertyBags());
    lBags->DeSerialize(lStream);
    Texts lNames;
    for (const BagEntry& lEntry : Each(lBags))
    {
        EXPECT_FALSE(lEntry.GetBag());
        lNames.push_back(lEntry.GetName());
    }
    EXPECT_EQ(lNames, (Texts{L"none"}));
}
