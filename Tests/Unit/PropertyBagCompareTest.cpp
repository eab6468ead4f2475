// Equality and containment, with the asymmetries that callers rely on.

#include "TalBase/PropertyBag.h"

#include "TalBase/PrivateSource/PropertyBagImpl.h"

#include "Tests/Support/BagBuilder.h"
#include "Tests/Support/BagGenerator.h"
#include "Tests/Support/CallLog.h"
#include "Tests/Support/Describe.h"
#include "Tests/Support/ForeignBag.h"
#include "Tests/Support/RepeatingBag.h"

#include <gtest/gtest.h>

using QTalBase::PropertyBagImpl;
using namespace Support;

namespace
{

// Answers the empty text for every plain value.
class EmptyValuesBag : public PropertyBagImpl
{
public:
    QBase::ReturnWString GetValue(unsigned int) const override
    {
        return L"";
    }

    QBase::ReturnWString GetProperty(const wchar_t*) const override
    {
        return L"";
    }
};

} // namespace

TEST(PropertyBag, EqualCharactersSplitElsewhereAreNotEqual)
{
    const BagPtr lBag = BagBuilder().Set(L"ab", L"c");
    EXPECT_FALSE(*lBag == *BagPtr(BagBuilder().Set(L"a", L"bc")));
    EXPECT_TRUE(*lBag == *BagPtr(BagBuilder().Set(L"ab", L"c")));
}

TEST(PropertyBag, EqualsEmptyBags)
{
    EXPECT_TRUE(*NewBag() == *NewBag());
    EXPECT_FALSE(*NewBag() != *NewBag());
    EXPECT_TRUE(*NewBag() == *NewBag(L"[[", L"]]"));
}

TEST(PropertyBag, EqualsIgnoresOrderAndDelimiters)
{
    const BagPtr lOne = BagBuilder().Set(L"x", L"1").Set(L"y", L"2").Nest(L"n", BagBuilder().Set(L"k", L"v"));
    const BagPtr lTwo =
        BagBuilder(L"[[", L"]]").Nest(L"n", BagBuilder().Set(L"k", L"v")).Set(L"y", L"2").Set(L"x", L"1");
    EXPECT_TRUE(*lOne == *lTwo);
    EXPECT_TRUE(*lTwo == *lOne);
    EXPECT_FALSE(*lOne != *lTwo);
}

TEST(PropertyBag, EqualsDifferentContentIsFalse)
{
    const BagPtr lBag = BagBuilder().Set(L"a", L"1");
    EXPECT_FALSE(*lBag == *NewBag());
    EXPECT_FALSE(*NewBag() == *lBag);
    EXPECT_FALSE(*lBag == *BagBuilder().Set(L"b", L"1").get());
    EXPECT_FALSE(*lBag == *BagBuilder().Set(L"a", L"2").get());
    EXPECT_FALSE(*lBag == *BagBuilder().Set(L"a", L"1 ").get());
    EXPECT_FALSE(*lBag == *BagBuilder().Set(L"A", L"1").get());
    EXPECT_FALSE(*lBag == *BagBuilder().Set(L"a", L"1").Set(L"b", L"2").get());
    EXPECT_TRUE(*lBag != *BagBuilder().Set(L"a", L"2").get());
    EXPECT_TRUE(*lBag == *BagBuilder().Set(L"a", L"1").get());
}

TEST(PropertyBag, EqualsNestedBags)
{
    const auto lDeep = [](const wchar_t* ipValue) {
        return BagBuilder().Nest(L"n", BagBuilder().Nest(L"o", BagBuilder().Set(L"k", ipValue)));
    };
    EXPECT_TRUE(*lDeep(L"v").get() == *lDeep(L"v").get());
    EXPECT_FALSE(*lDeep(L"v").get() == *lDeep(L"w").get());
    EXPECT_TRUE(*BagBuilder().Nest(L"n", BagBuilder()).get() == *BagBuilder().Nest(L"n", BagBuilder()).get());
    EXPECT_FALSE(*BagBuilder().Nest(L"n", BagBuilder()).get() == *lDeep(L"v").get());
}

TEST(PropertyBag, EqualsPlainNeverMatchesNested)
{
    const BagPtr lNested = BagBuilder().Nest(L"n", BagBuilder().Set(L"k", L"v"));
    const BagPtr lPlain = BagBuilder(L"(", L")").Set(L"n", Text(lNested->GetProperty(L"n")).c_str());
    EXPECT_FALSE(*lNested == *lPlain);
    EXPECT_FALSE(*lPlain == *lNested);
    EXPECT_FALSE(lNested->IsSubset(lPlain.get()));
    EXPECT_FALSE(lPlain->IsSubset(lNested.get()));
}

TEST(PropertyBag, EqualsPlainNeverMatchesNestedAtAnyDepth)
{
    BagBuilder lPlain = BagBuilder().Set(L"x", L"1");
    BagBuilder lNested = BagBuilder().Nest(L"x", BagBuilder().Set(L"k", L"v"));
    for (int lDepth = 0; lDepth < 4; ++lDepth)
    {
        EXPECT_FALSE(*lPlain.get() == *lNested.get()) << lDepth;
        EXPECT_FALSE(*lNested.get() == *lPlain.get()) << lDepth;
        EXPECT_TRUE(*lNested.get() == *BagPtr(lNested.get()->Clone())) << lDepth;
        lPlain = BagBuilder().Nest(L"n", lPlain);
        lNested = BagBuilder().Nest(L"n", lNested);
    }
}

TEST(PropertyBag, EqualsEscapedValueIsUnequalToItself)
{
    for (const wchar_t* lValue : {L"a*", L"+b", L"x&#42;"})
    {
        const BagPtr lBag = BagBuilder().Set(L"p", lValue);
        const BagPtr lClone = lBag->Clone();
        EXPECT_FALSE(*lBag == *lBag);
        EXPECT_TRUE(*lBag != *lBag);
        EXPECT_FALSE(*lBag == *lClone);
        EXPECT_TRUE(lBag->IsSubset(lBag.get()));
        EXPECT_TRUE(lBag->IsSubset(lClone.get()));
    }
}

TEST(PropertyBag, EqualsReadsThisSideStoredAndTheOtherUnescaped)
{
    const BagPtr lEscaped = BagBuilder().Set(L"p", L"*");
    const BagPtr lRaw = BagBuilder(L"[[", L"]]").Set(L"p", L"*");
    EXPECT_TRUE(*lRaw == *lEscaped);
    EXPECT_FALSE(*lEscaped == *lRaw);
    EXPECT_FALSE(*lRaw != *lEscaped);
    EXPECT_TRUE(*lEscaped != *lRaw);
}

TEST(PropertyBag, EqualsAsksTheOtherNestedBag)
{
    const BagPtr lEscaped = BagBuilder().Nest(L"n", BagBuilder().Set(L"p", L"*"));
    const BagPtr lRaw = BagBuilder(L"[[", L"]]").Nest(L"n", BagBuilder(L"[[", L"]]").Set(L"p", L"*"));
    EXPECT_TRUE(*lEscaped == *lRaw);
    EXPECT_FALSE(*lRaw == *lEscaped);
    const BagPtr lDeepEscaped = BagBuilder().Nest(L"m", BagBuilder().Nest(L"n", BagBuilder().Set(L"p", L"*")));
    const BagPtr lDeepRaw =
        BagBuilder(L"[[", L"]]")
            .Nest(L"m", BagBuilder(L"[[", L"]]").Nest(L"n", BagBuilder(L"[[", L"]]").Set(L"p", L"*")));
    EXPECT_FALSE(*lDeepEscaped == *lDeepRaw);
    EXPECT_TRUE(*lDeepRaw == *lDeepEscaped);
}

TEST(PropertyBag, EqualsMissingNameReadsAsTheEmptyText)
{
    EmptyValuesBag lA;
    lA.SetProperty(L"a", L"1", false);
    EmptyValuesBag lB;
    lB.SetProperty(L"b", L"1", false);
    const PropertyBagImpl& lLeft = lA;
    const PropertyBagImpl& lRight = lB;
    EXPECT_TRUE(lLeft == lRight);
    EXPECT_TRUE(lRight == lLeft);
    EXPECT_TRUE(lLeft == *BagBuilder().Set(L"c", L"1").get());
    EXPECT_FALSE(*BagBuilder().Set(L"a", L"1").get() == lRight);
}

TEST(PropertyBag, EqualsRepeatedNameIsNotSymmetric)
{
    RepeatingBag lSame;
    lSame.SetProperty(L"a", L"1", false);
    lSame.SetProperty(L"a", L"1", false);
    RepeatingBag lDifferent;
    lDifferent.SetProperty(L"a", L"1", false);
    lDifferent.SetProperty(L"a", L"2", false);
    EXPECT_EQ(Describe(lDifferent), L"'++++' '***' {'a'='1' 'a'='2'}");
    const PropertyBagImpl& lLeft = lSame;
    const PropertyBagImpl& lRight = lDifferent;
    EXPECT_TRUE(lLeft == lRight);
    EXPECT_FALSE(lRight == lLeft);
    EXPECT_TRUE(lRight != lLeft);
}

TEST(PropertyBag, RepeatedNameOfBothKindsIsUnequalToItselfButItsOwnSubset)
{
    RepeatingBag lBag;
    lBag.SetProperty(L"a", L"1", false);
    lBag.SetProperty(L"a", L"k++++v***", true);
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'a'='1' 'a'={'k'='v'}}");
    const PropertyBagImpl& lSelf = lBag;
    EXPECT_FALSE(lSelf == lSelf);
    EXPECT_TRUE(lBag.IsSubset(&lBag));
    EXPECT_EQ(Text(lBag.GetProperty(L"a")), L"1");
    EXPECT_EQ(Describe(lBag.GetPropertyBag(L"a")), L"'++++' '***' {'k'='v'}");
}

TEST(PropertyBagImpl, RemovePropertyOfRepeatedNameTakesTheFirstOfEachKind)
{
    RepeatingBag lBag;
    lBag.SetProperty(L"a", L"1", false);
    lBag.SetProperty(L"b", L"2", false);
    lBag.SetProperty(L"a", L"3", false);
    lBag.SetProperty(L"a", L"k++++v***", true);
    lBag.SetProperty(L"a", L"k++++w***", true);
    lBag.PropertyBagImpl::RemoveProperty(L"a");
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'b'='2' 'a'='3' 'a'={'k'='w'}}");
    EXPECT_EQ(lBag.NamePositionInValueContent(L"a"), 1U);
    EXPECT_EQ(lBag.NamePositionInEmbeddedContent(L"a"), 0U);
}

TEST(PropertyBag, IsSubsetEmptyArgumentIsInEveryBag)
{
    EXPECT_TRUE(NewBag()->IsSubset(NewBag().get()));
    const BagPtr lBag = BagBuilder().Set(L"a", L"1");
    EXPECT_TRUE(lBag->IsSubset(NewBag(L"[[", L"]]").get()));
}

TEST(PropertyBag, IsSubsetAsksWhetherTheArgumentIsContained)
{
    const BagPtr lSmall = BagBuilder().Set(L"b", L"2");
    const BagPtr lLarge = BagBuilder().Set(L"a", L"1").Set(L"b", L"2");
    EXPECT_TRUE(lLarge->IsSubset(lSmall.get()));
    EXPECT_FALSE(lSmall->IsSubset(lLarge.get()));
    EXPECT_FALSE(lLarge->IsSubset(BagBuilder().Set(L"b", L"3").get()));
    EXPECT_FALSE(lLarge->IsSubset(BagBuilder().Set(L"c", L"2").get()));
    EXPECT_TRUE(lLarge->IsSubset(lLarge.get()));
}

TEST(PropertyBag, IsSubsetNestedBagMayHoldMore)
{
    const BagPtr lLarge = BagBuilder().Set(L"a", L"1").Nest(L"n", BagBuilder().Set(L"k", L"v").Set(L"l", L"w"));
    EXPECT_TRUE(lLarge->IsSubset(BagBuilder().Nest(L"n", BagBuilder().Set(L"l", L"w")).get()));
    EXPECT_TRUE(lLarge->IsSubset(BagBuilder().Nest(L"n", BagBuilder()).get()));
    EXPECT_FALSE(lLarge->IsSubset(BagBuilder().Nest(L"n", BagBuilder().Set(L"l", L"x")).get()));
    EXPECT_FALSE(lLarge->IsSubset(BagBuilder().Nest(L"m", BagBuilder().Set(L"l", L"w")).get()));
    EXPECT_FALSE(BagBuilder()
                     .Nest(L"n", BagBuilder().Set(L"k", L"v"))
                     .get()
                     ->IsSubset(BagBuilder().Nest(L"n", BagBuilder().Set(L"k", L"v").Set(L"l", L"w")).get()));
}

TEST(PropertyBag, IsSubsetReadsBothSidesUnescaped)
{
    const BagPtr lEscaped = BagBuilder().Set(L"p", L"*");
    const BagPtr lRaw = BagBuilder(L"[[", L"]]").Set(L"p", L"*");
    EXPECT_TRUE(lEscaped->IsSubset(lRaw.get()));
    EXPECT_TRUE(lRaw->IsSubset(lEscaped.get()));
    const BagPtr lSequence = BagBuilder(L"[[", L"]]").Set(L"p", L"&#42;");
    EXPECT_FALSE(lEscaped->IsSubset(lSequence.get()));
}

TEST(PropertyBag, IsSubsetMissingNameReadsAsTheEmptyText)
{
    CallLog lLog;
    const QBase::SmartPtrI<ForeignBag> lArgument = new ForeignBag(lLog);
    lArgument->Set(L"x", L"");
    const BagPtr lBag = BagBuilder().Set(L"a", L"1");
    EXPECT_TRUE(lBag->IsSubset(lArgument.get()));
    EXPECT_FALSE(NewBag()->IsSubset(lArgument.get()));
    lArgument->Set(L"y", L"2");
    EXPECT_FALSE(BagBuilder().Set(L"a", L"1").Set(L"b", L"2").get()->IsSubset(lArgument.get()));
}

TEST(PropertyBag, EqualsAndIsSubsetOfCopiesReadFromText)
{
    BagGenerator lGenerator(3);
    bool lIsOneUnequal = false;
    for (int lRound = 0; lRound < 200; ++lRound)
    {
        const BagPtr lBag = lGenerator.Next();
        const BagPtr lCopy = ReadBag(FullText(*lBag));
        const std::wstring lText = FullText(*lBag);
        // Under the default delimiters a value that holds an escape sequence makes a bag unequal to its copy.
        const bool lDefaults = lBag->GetBeginDelimiter() == std::wstring(L"++++");
        const bool lEscaped =
            lDefaults && (lText.find(L"&#42;") != std::wstring::npos || lText.find(L"&#43;") != std::wstring::npos);
        ASSERT_EQ(*lBag == *lCopy, !lEscaped) << Readable(lText);
        ASSERT_TRUE(lBag->IsSubset(lCopy.get())) << Readable(lText);
        lIsOneUnequal = lIsOneUnequal || lEscaped;
        lCopy->SetProperty(L"one more", L"1", false);
        ASSERT_FALSE(*lBag == *lCopy);
        ASSERT_TRUE(lCopy->IsSubset(lBag.get()));
        ASSERT_FALSE(lBag->IsSubset(lCopy.get()));
    }
    EXPECT_TRUE(lIsOneUnequal);
}
