#include "TalBase/Views.h"

#include "Tests/Support/BagBuilder.h"
#include "Tests/Support/Expect.h"
#include "Tests/Support/ForeignBag.h"
#include "Tests/Support/RepointedDefaults.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <type_traits>

using namespace Support;
using QTalBase::AsPathStep;
using QTalBase::Get;
using QTalBase::GetBagAt;
using QTalBase::GetValueAt;
using QTalBase::IsPropertyValue;
using QTalBase::PropertyBag;
using QTalBase::PropertyBagUserErrorException;
using QTalBase::Set;

// A client's own type, with the two functions beside it.
namespace MailQueue
{

enum class Priority
{
    Low,
    High
};

inline QBase::ReturnWString Stringize(Priority iPriority)
{
    return iPriority == Priority::High ? L"high" : L"low";
}

inline void UnStringize(const wchar_t* ipText, Priority& oPriority)
{
    oPriority = std::wstring_view(ipText) == L"high" ? Priority::High : Priority::Low;
}

} // namespace MailQueue

namespace
{

// Sets a value, looks at its text in the bag, and gets it back.
template <class T>
void ExpectKept(const T& iValue, const wchar_t* ipText)
{
    const BagPtr lBag = NewBag();
    Set(*lBag, L"name", iValue);
    EXPECT_EQ(Text(lBag->GetProperty(L"name")), ipText);
    EXPECT_TRUE(Get<T>(*lBag, L"name") == iValue) << Readable(ipText);
}

template <class T>
void ExpectDefault(const PropertyBag& iBag, const T& iDefault)
{
    EXPECT_TRUE(Get(iBag, L"missing", iDefault) == iDefault);
    EXPECT_TRUE(Get<T>(iBag, L"nest", iDefault) == iDefault) << "a nested bag is no value";
    EXPECT_TRUE(Get<T>(iBag, L"missing") == T());
}

_GUID SampleGuid()
{
    return {0x12345678, 0x9ABC, 0x4DEF, {0x80, 1, 2, 3, 4, 5, 6, 7}};
}

QDataType::DateTime SampleInstant()
{
    QDataType::DateTime lInstant;
    EXPECT_TRUE(lInstant.FromString("2026-11-21T02:49:00.25Z"));
    return lInstant;
}

BagPtr DeepBag()
{
    return BagBuilder()
        .Set(L"top", L"0")
        .Nest(L"a", BagBuilder()
                        .Set(L"x/y", L"slash")
                        .Set(L"back\\slash", L"2*2")
                        .Set(L"", L"nameless")
                        .Nest(L"b", BagBuilder().Set(L"c", L"1"))
                        .Nest(L"", BagBuilder().Set(L"k", L"v")));
}

} // namespace

TEST(ViewsValues, EveryTypeIsKept)
{
    ExpectKept<int>(-17, L"-17");
    ExpectKept<short>(-3, L"-3");
    ExpectKept<unsigned int>(std::numeric_limits<unsigned int>::max(), L"4294967295");
    ExpectKept<unsigned short>(65535, L"65535");
    ExpectKept<bool>(true, L"true");
    ExpectKept<float>(0.5F, L"0.5");
    ExpectKept<double>(-1.25, L"-1.25");
    ExpectKept<_GUID>(SampleGuid(), L"12345678-9abc-4def-8001-020304050607");
    ExpectKept<QDataType::DateTime>(SampleInstant(), L"2026-11-21T02:49:00.25Z");
    ExpectKept<std::wstring>(L"2*3+4", L"2*3+4");
    ExpectKept(MailQueue::Priority::High, L"high");
}

TEST(ViewsValues, MissingNameAndNestedBagGiveTheDefault)
{
    const BagPtr lBag = BagBuilder().Nest(L"nest", BagBuilder().Set(L"k", L"1"));
    ExpectDefault<int>(*lBag, 21);
    ExpectDefault<short>(*lBag, 21);
    ExpectDefault<unsigned int>(*lBag, 21);
    ExpectDefault<unsigned short>(*lBag, 21);
    ExpectDefault<bool>(*lBag, true);
    ExpectDefault<float>(*lBag, 0.5F);
    ExpectDefault<double>(*lBag, 0.5);
    ExpectDefault<_GUID>(*lBag, SampleGuid());
    ExpectDefault<QDataType::DateTime>(*lBag, SampleInstant());
    ExpectDefault<std::wstring>(*lBag, L"none");
    ExpectDefault(*lBag, MailQueue::Priority::High);
}

TEST(ViewsValues, TypeIsThatOfTheDefaultUnlessNamed)
{
    const BagPtr lBag = BagBuilder().Set(L"n", L"70000");
    EXPECT_TRUE((std::is_same_v<decltype(Get(*lBag, L"n", 1)), int>));
    EXPECT_TRUE((std::is_same_v<decltype(Get(*lBag, L"n", L"none")), std::wstring>));
    EXPECT_EQ(Get(*lBag, L"n", 1), 70000);
    EXPECT_EQ(Get<unsigned short>(*lBag, L"n", 1), 70000 - 65536) << "cut as UnStringize cuts";
    EXPECT_EQ(Get(*lBag, L"n", L"none"), L"70000");
    EXPECT_EQ(Get(*lBag, L"m", L"none"), L"none");
}

TEST(ViewsValues, BadTextReadsAsUnStringizeReadsIt)
{
    const BagPtr lBag = BagBuilder().Set(L"n", L"no such thing");
    EXPECT_EQ(Get(*lBag, L"n", 5), 0);
    EXPECT_FALSE(Get(*lBag, L"n", true));
    EXPECT_TRUE(Get(*lBag, L"n", SampleGuid()) == SampleGuid());
    EXPECT_TRUE(Get(*lBag, L"n", SampleInstant()) == SampleInstant());
}

TEST(ViewsValues, SetTakesEveryKindOfText)
{
    const BagPtr lBag = NewBag();
    Set(*lBag, L"literal", L"1");
    Set(*lBag, L"pointer", static_cast<const wchar_t*>(L"2"));
    Set(*lBag, L"string", std::wstring(L"3"));
    Set(*lBag, L"view", std::wstring_view(L"45", 1));
    Set(*lBag, L"returned", QBase::ReturnWString(L"5"));
    wchar_t lBuffer[] = L"6";
    Set(*lBag, L"buffer", lBuffer);
    EXPECT_EQ(DescribeContent(*lBag),
              L"{'literal'='1' 'pointer'='2' 'string'='3' 'view'='4' 'returned'='5' 'buffer'='6'}");
    Set(*lBag, L"literal", L"");
    Set(*lBag, L"view", std::wstring_view());
    EXPECT_EQ(DescribeContent(*lBag), L"{'pointer'='2' 'string'='3' 'returned'='5' 'buffer'='6'}");
}

TEST(ViewsValues, SetThrowsWhatTheBagThrows)
{
    const BagPtr lBag = NewBag();
    const wchar_t* lNone = nullptr;
    EXPECT_MESSAGE(Set(*lBag, nullptr, 1), PropertyBagUserErrorException,
                   L"QTalBase::PropertyBagImpl::SetProperty; ipName may not be NULL");
    EXPECT_MESSAGE(Set(*lBag, L"n", lNone), PropertyBagUserErrorException,
                   L"QTalBase::PropertyBagImpl::SetProperty; ipValue may not be NULL");
    EXPECT_EQ(lBag->GetCount(), 0U);
}

TEST(ViewsValues, TypesThatLoseSomethingAreRefused)
{
    EXPECT_TRUE(IsPropertyValue<int>::value);
    EXPECT_TRUE(IsPropertyValue<MailQueue::Priority>::value);
    EXPECT_FALSE(IsPropertyValue<long>::value);
    EXPECT_FALSE(IsPropertyValue<unsigned long>::value);
    EXPECT_FALSE(IsPropertyValue<char>::value);
    EXPECT_FALSE(IsPropertyValue<const char*>::value) << "would be a bool";
    EXPECT_FALSE(IsPropertyValue<PropertyBag>::value);
}

TEST(ViewsPath, LeadsThroughNestedBags)
{
    const BagPtr lBag = DeepBag();
    EXPECT_EQ(Text(GetValueAt(*lBag, L"top")), L"0");
    EXPECT_EQ(Text(GetValueAt(*lBag, L"a/b/c")), L"1");
    EXPECT_EQ(DescribeContent(*GetBagAt(*lBag, L"a/b")), L"{'c'='1'}");
}

TEST(ViewsPath, NestedBagIsTheBagItself)
{
    const BagPtr lBag = DeepBag();
    Set(*GetBagAt(*lBag, L"a/b"), L"c", 2);
    EXPECT_EQ(Text(GetValueAt(*lBag, L"a/b/c")), L"2");
    EXPECT_TRUE(GetBagAt(*lBag, L"a") == lBag->GetPropertyBag(L"a"));
}

TEST(ViewsPath, EscapesNameSlashAndBackslash)
{
    const BagPtr lBag = DeepBag();
    EXPECT_EQ(Text(GetValueAt(*lBag, L"a/x\\/y")), L"slash");
    EXPECT_EQ(Text(GetValueAt(*lBag, L"a/back\\\\slash")), L"2*2");
    EXPECT_EQ(AsPathStep(L"x/y\\z"), L"x\\/y\\\\z");
    for (const wchar_t* lName : {L"x/y", L"back\\slash"})
    {
        EXPECT_EQ(Text(GetValueAt(*lBag, (L"a/" + AsPathStep(lName)).c_str())),
                  Text(lBag->GetPropertyBag(L"a")->GetProperty(lName)));
    }
}

TEST(ViewsPath, NameMayBeEmpty)
{
    const BagPtr lBag = DeepBag();
    EXPECT_EQ(Text(GetValueAt(*lBag, L"a//k")), L"v");
    EXPECT_EQ(DescribeContent(*GetBagAt(*lBag, L"a/")), L"{'k'='v'}");
    EXPECT_MESSAGE(GetBagAt(*lBag, L""), PropertyBagUserErrorException,
                   L"QTalBase::GetBagAt; There is no nested bag at: ");
}

TEST(ViewsPath, FailureNamesTheStep)
{
    const BagPtr lBag = DeepBag();
    const std::wstring lNoBag = L"QTalBase::GetBagAt; There is no nested bag at: ";
    const std::wstring lNoValue = L"QTalBase::GetValueAt; There is no plain value at: ";
    EXPECT_MESSAGE(GetBagAt(*lBag, L"a/none/c/d"), PropertyBagUserErrorException, lNoBag + L"a/none");
    EXPECT_MESSAGE(GetBagAt(*lBag, L"top"), PropertyBagUserErrorException, lNoBag + L"top");
    EXPECT_MESSAGE(GetBagAt(*lBag, L"a/b/c"), PropertyBagUserErrorException, lNoBag + L"a/b/c");
    EXPECT_MESSAGE(GetValueAt(*lBag, L"top/c"), PropertyBagUserErrorException, lNoBag + L"top");
    EXPECT_MESSAGE(GetValueAt(*lBag, L"a/x\\/z/c"), PropertyBagUserErrorException, lNoBag + L"a/x\\/z");
    EXPECT_MESSAGE(GetValueAt(*lBag, L"a/b"), PropertyBagUserErrorException, lNoValue + L"a/b");
    EXPECT_MESSAGE(GetValueAt(*lBag, L"a/b/none"), PropertyBagUserErrorException, lNoValue + L"a/b/none");
}

TEST(ViewsPath, OtherBackslashIsRefusedBeforeAnythingIsAsked)
{
    CallLog lLog;
    const QBase::SmartPtrI<ForeignBag> lBag(new ForeignBag(lLog));
    const std::wstring lMessage = L"QTalBase::GetBagAt; A backslash may only stand before a slash or another one: ";
    const struct
    {
        const wchar_t* mPath;
        const wchar_t* mShown; // what is behind the backslash may be anything
    } lCases[] = {{L"a\\", L"a\\"}, {L"a\\b/c", L"a\\"}, {L"a/b\\\\\\", L"a/b\\\\\\"}, {L"\\n", L"\\"}};
    for (const auto& lCase : lCases)
    {
        EXPECT_MESSAGE(GetValueAt(*lBag, lCase.mPath), PropertyBagUserErrorException, lMessage + lCase.mShown);
        EXPECT_MESSAGE(GetBagAt(*lBag, lCase.mPath), PropertyBagUserErrorException, lMessage + lCase.mShown);
    }
    EXPECT_EQ(lLog, CallLog());
}

TEST(ViewsPath, DepthTakesNoStack)
{
    const std::size_t lDepth = 100000;
    std::wstring lText = gHeader;
    std::wstring lPath;
    for (std::size_t lLevel = 0; lLevel < lDepth; ++lLevel)
    {
        lText += L"n++++";
        lPath += L"n/";
    }
    lText += L"k++++v***";
    for (std::size_t lLevel = 0; lLevel < lDepth; ++lLevel)
    {
        lText += L"***";
    }
    const BagPtr lBag = ReadBag(lText);
    EXPECT_EQ(Text(GetValueAt(*lBag, (lPath + L"k").c_str())), L"v");
}
