// The text form that a bag renders.

#include "TalBase/PropertyBag.h"

#include "QBase/Convert.h"
#include "TalBase/PrivateSource/PropertyBagImpl.h"

#include "Tests/Support/BagBuilder.h"
#include "Tests/Support/BagGenerator.h"
#include "Tests/Support/Describe.h"
#include "Tests/Support/Expect.h"

#include <gtest/gtest.h>

#include <string>

using QTalBase::PropertyBagException;
using QTalBase::PropertyBagUserErrorException;
using namespace Support;

namespace
{

std::wstring WithoutSensitiveInfo(const BagPtr& iBag)
{
    return Text(iBag->GetStringWithoutSensitiveInfo(false, nullptr, nullptr));
}

// Puts the content together by hand from what the bag answers by position.
std::wstring PlainRendering(const QTalBase::PropertyBag& iBag, const std::wstring& iBegin, const std::wstring& iEnd)
{
    std::wstring lResult;
    for (unsigned int lIndex = 0; lIndex < iBag.GetCount(); ++lIndex)
    {
        lResult += Text(iBag.GetName(lIndex)) + iBegin;
        lResult += iBag.IsEmbedded(lIndex) ? PlainRendering(*iBag.GetValuePropertyBag(lIndex), iBegin, iEnd)
                                           : Text(iBag.GetValue(lIndex));
        lResult += iEnd;
    }
    return lResult;
}

} // namespace

TEST(PropertyBag, GetStringOfEmptyBag)
{
    EXPECT_EQ(ContentText(*NewBag()), L"");
    EXPECT_EQ(FullText(*NewBag()), L"EndDelimiter***BeginDelimiter++++***");
    EXPECT_EQ(FullText(*NewBag(L"[[", L"]]")), L"EndDelimiter]]BeginDelimiter[[]]");
}

TEST(PropertyBag, GetStringWritesPlainThenNested)
{
    const BagPtr lBag = NewBag();
    lBag->SetProperty(L"Sub", L"Key++++v***", true);
    lBag->SetProperty(L"Name", L"A+B", false);
    lBag->SetProperty(L"Count", L"2", false);
    EXPECT_EQ(FullText(*lBag),
              L"EndDelimiter***BeginDelimiter++++***Name++++A&#43;B***Count++++2***Sub++++Key++++v******");
    EXPECT_EQ(ContentText(*lBag), FullText(*lBag).substr(36));
}

TEST(PropertyBag, GetStringOfEmptyNestedBag)
{
    const BagPtr lBag = BagBuilder().Nest(L"Empty", BagBuilder());
    EXPECT_EQ(ContentText(*lBag), L"Empty++++***");
    const BagPtr lDeep = BagBuilder().Nest(L"a", BagBuilder().Nest(L"b", BagBuilder().Nest(L"c", BagBuilder())));
    EXPECT_EQ(ContentText(*lDeep), L"a++++b++++c++++*********");
}

TEST(PropertyBag, GetStringWithGivenDelimitersUsesThemAtEveryLevel)
{
    const BagPtr lBag = BagBuilder().Set(L"a", L"x*").Nest(L"n", BagBuilder().Set(L"k", L"v"));
    lBag->GetPropertyBag(L"n")->ChangeDelimiters(L"@", L"#");
    EXPECT_EQ(Text(lBag->GetString(true, L"<<", L">>", true)),
              L"EndDelimiter>>BeginDelimiter<<>>a<<x&#42;>>n<<k<<v>>>>");
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'a'='x&#42;' 'n'='@' '#' {'k'='v'}}");
}

TEST(PropertyBag, GetStringWithoutDelimitersUsesEachBagsOwn)
{
    const BagPtr lBag = BagBuilder().Nest(L"n", BagBuilder().Set(L"k", L"v").Nest(L"o", BagBuilder().Set(L"l", L"w")));
    lBag->GetPropertyBag(L"n")->ChangeDelimiters(L"<<", L">>");
    lBag->GetPropertyBag(L"n")->GetPropertyBag(L"o")->ChangeDelimiters(L"@", L"#");
    EXPECT_EQ(ContentText(*lBag), L"n++++k<<v>>o<<l@w#>>***");
}

TEST(PropertyBag, GetStringWithOneGivenDelimiterTakesTheOtherFromEachBag)
{
    const BagPtr lBag = BagBuilder().Set(L"a", L"1").Nest(L"n", BagBuilder().Set(L"k", L"v"));
    lBag->GetPropertyBag(L"n")->ChangeDelimiters(L"@@", L"##");
    EXPECT_EQ(Text(lBag->GetString(true, L"<", nullptr, true)), L"EndDelimiter***BeginDelimiter<***a<1***n<k<v##***");
    EXPECT_EQ(Text(lBag->GetString(true, nullptr, L">", true)), L"EndDelimiter>BeginDelimiter++++>a++++1>n++++k@@v>>");
}

TEST(PropertyBag, GetStringChecksThePairOfEachBagAnew)
{
    const BagPtr lBag = BagBuilder().Nest(L"n", BagBuilder().Set(L"k", L"v"));
    lBag->GetPropertyBag(L"n")->ChangeDelimiters(L"@@", L"##");
    EXPECT_MESSAGE(lBag->GetString(true, nullptr, L"@@", true), PropertyBagException,
                   L"QTalBase::PropertyBagImpl::CheckValidityOfDelimiters; Begin and End may not be equal");
    EXPECT_MESSAGE(lBag->GetString(true, L"#", nullptr, true), PropertyBagException,
                   L"QTalBase::PropertyBagImpl::CheckValidityOfDelimiters; End may not contain Begin");
}

TEST(PropertyBag, GetStringInvalidDelimitersThrows)
{
    const BagPtr lBag = BagBuilder().Set(L"a", L"1");
    EXPECT_MESSAGE(lBag->GetString(true, L"", L"***", true), PropertyBagUserErrorException,
                   L"QTalBase::PropertyBagImpl::CheckValidityOfDelimiters; Begin may not be empty");
    EXPECT_MESSAGE(lBag->GetString(false, L"++++", L"", true), PropertyBagUserErrorException,
                   L"QTalBase::PropertyBagImpl::CheckValidityOfDelimiters; End may not be empty");
    EXPECT_MESSAGE(lBag->GetString(true, L"++++", L"++++", true), PropertyBagException,
                   L"QTalBase::PropertyBagImpl::CheckValidityOfDelimiters; Begin and End may not be equal");
    EXPECT_MESSAGE(lBag->GetString(true, nullptr, L"++", true), PropertyBagException,
                   L"QTalBase::PropertyBagImpl::CheckValidityOfDelimiters; Begin may not contain End");
    EXPECT_MESSAGE(lBag->GetString(true, L"*", nullptr, true), PropertyBagException,
                   L"QTalBase::PropertyBagImpl::CheckValidityOfDelimiters; End may not contain Begin");
    EXPECT_MESSAGE(lBag->GetStringWithoutSensitiveInfo(true, L"a", L"a"), PropertyBagException,
                   L"QTalBase::PropertyBagImpl::CheckValidityOfDelimiters; Begin and End may not be equal");
}

TEST(PropertyBag, GetStringGivenDelimiterInsideAValueIsWrittenAsItIs)
{
    const BagPtr lBag = BagBuilder().Set(L"a", L"x>>y").Set(L"b", L"*");
    EXPECT_EQ(Text(lBag->GetString(false, L"<<", L">>", true)), L"a<<x>>y>>b<<&#42;>>");
    EXPECT_EQ(Text(lBag->GetString(false, L"&", L";", true)), L"a&x>>y;b&&#42;;");
}

TEST(PropertyBag, GetStringWithoutSensitiveInfoLeavesOutThePassword)
{
    const BagPtr lBag = BagBuilder().Set(L"FTPServerPassword", L"x").Set(L"User", L"u");
    EXPECT_EQ(WithoutSensitiveInfo(lBag), L"User++++u***");
    EXPECT_EQ(ContentText(*lBag), L"FTPServerPassword++++x***User++++u***");
    EXPECT_EQ(Text(lBag->GetString(false, nullptr, nullptr, false)), L"User++++u***");
    EXPECT_EQ(Text(lBag->GetStringWithoutSensitiveInfo(true, L"<", L">")), L"EndDelimiter>BeginDelimiter<>User<u>");
}

TEST(PropertyBag, GetStringWithoutSensitiveInfoOfThePasswordAlone)
{
    const BagPtr lBag = BagBuilder().Set(L"FTPServerPassword", L"x");
    EXPECT_EQ(WithoutSensitiveInfo(lBag), L"");
    EXPECT_EQ(Text(lBag->GetStringWithoutSensitiveInfo(true, nullptr, nullptr)), gHeader);
    EXPECT_EQ(lBag->GetCount(), 1U);
}

TEST(PropertyBag, GetStringWithoutSensitiveInfoMatchesTheNameExactly)
{
    const BagPtr lBag = BagBuilder()
                            .Set(L"ftpserverpassword", L"1")
                            .Set(L"FTPServerPassword2", L"2")
                            .Set(L"FTPServerPasswor", L"3")
                            .Set(L" FTPServerPassword", L"4")
                            .Set(L"Password", L"5")
                            .Set(L"", L"6");
    EXPECT_EQ(WithoutSensitiveInfo(lBag), L"ftpserverpassword++++1***FTPServerPassword2++++2***FTPServerPasswor++++3***"
                                          L" FTPServerPassword++++4***Password++++5***++++6***");
}

// What a derived class asks that writes a text of its own.
TEST(PropertyBagImpl, IsSensitivePropertyIsTrueForThePasswordOnly)
{
    struct Derived : QTalBase::PropertyBagImpl
    {
        using PropertyBagImpl::IsSensitiveProperty;
    };
    EXPECT_TRUE(Derived::IsSensitiveProperty(L"FTPServerPassword"));
    for (const wchar_t* lName : {L"", L"ftpserverpassword", L"FTPServerPassword2", L"FTPServerPasswor"})
    {
        EXPECT_FALSE(Derived::IsSensitiveProperty(lName)) << QBase::WideCharToUTF8(lName, true);
    }
}

TEST(PropertyBag, GetStringWithoutSensitiveInfoWritesNestedBagsWhole)
{
    const BagPtr lBag = BagBuilder()
                            .Nest(L"n", BagBuilder().Set(L"FTPServerPassword", L"x"))
                            .Nest(L"FTPServerPassword", BagBuilder().Set(L"k", L"v"));
    EXPECT_EQ(WithoutSensitiveInfo(lBag), L"n++++FTPServerPassword++++x******FTPServerPassword++++k++++v******");
}

TEST(PropertyBag, GetStringLongTextsGrowTheBuffer)
{
    const std::wstring lLong(5000, L'v');
    const BagPtr lBag = BagBuilder().Set(L"a", lLong.c_str()).Nest(L"n", BagBuilder().Set(L"k", lLong.c_str()));
    EXPECT_EQ(ContentText(*lBag), L"a++++" + lLong + L"***n++++k++++" + lLong + L"******");
}

TEST(PropertyBag, GetStringOfAnyBagIsHeaderAndContentInOrderOfPosition)
{
    BagGenerator lGenerator(20);
    for (int lRound = 0; lRound < 200; ++lRound)
    {
        const BagPtr lBag = lGenerator.Next();
        const std::wstring lBegin = lBag->GetBeginDelimiter();
        const std::wstring lEnd = lBag->GetEndDelimiter();
        ASSERT_EQ(ContentText(*lBag), PlainRendering(*lBag, lBegin, lEnd)) << "round " << lRound;
        ASSERT_EQ(FullText(*lBag),
                  L"EndDelimiter" + lEnd + L"BeginDelimiter" + lBegin + lEnd + PlainRendering(*lBag, lBegin, lEnd));
        ASSERT_EQ(Text(lBag->GetString(false, L"{|", L"|}", false)), PlainRendering(*lBag, L"{|", L"|}"));
    }
}
