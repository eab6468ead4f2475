// BEGIN and END are read at the moment of use: each test points them elsewhere and looks at one such moment.

#include "TalBase/PropertyBag.h"

#include "TalBase/PrivateSource/PropertyBagImpl.h"

#include "Tests/Support/BagBuilder.h"
#include "Tests/Support/Describe.h"
#include "Tests/Support/Expect.h"
#include "Tests/Support/RepointedDefaults.h"

#include <gtest/gtest.h>

using QTalBase::PropertyBagException;
using QTalBase::PropertyBagUserErrorException;
using namespace Support;

namespace
{

const wchar_t* const gBeginEmpty = L"QTalBase::PropertyBagImpl::CheckValidityOfDelimiters; Begin may not be empty";
const wchar_t* const gEndEmpty = L"QTalBase::PropertyBagImpl::CheckValidityOfDelimiters; End may not be empty";

} // namespace

TEST(PropertyBagDefaults, NewBagCopiesThem)
{
    BagPtr lBag;
    {
        wchar_t lBegin[] = L"<<";
        wchar_t lEnd[] = L">>";
        const RepointedDefaults lDefaults(lBegin, lEnd);
        lBag = NewBag();
        lBegin[0] = L'x';
        lEnd[0] = L'y';
    }
    EXPECT_STREQ(lBag->GetBeginDelimiter(), L"<<");
    EXPECT_STREQ(lBag->GetEndDelimiter(), L">>");
    EXPECT_STREQ(NewBag()->GetBeginDelimiter(), L"++++");
}

TEST(PropertyBagDefaults, NewBagDoesNotCheckThem)
{
    const RepointedDefaults lDefaults(L"same", L"same");
    const BagPtr lBag = NewBag();
    EXPECT_EQ(Describe(lBag), L"'same' 'same' {}");
    EXPECT_MESSAGE(lBag->GetString(false, nullptr, nullptr, true), PropertyBagException,
                   L"QTalBase::PropertyBagImpl::CheckValidityOfDelimiters; Begin and End may not be equal");
}

TEST(PropertyBagDefaults, ExistingBagsKeepTheirDelimiters)
{
    const BagPtr lBag = BagBuilder().Set(L"a", L"1*2");
    const RepointedDefaults lDefaults(L"<<", L">>");
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'a'='1&#42;2'}");
}

TEST(PropertyBagDefaults, SetPropertyEscapesForBagsThatEqualThemNow)
{
    const BagPtr lOld = NewBag();
    const RepointedDefaults lDefaults(L"<<", L">>");
    const BagPtr lNew = NewBag();
    const BagPtr lGiven = NewBag(L"<<", L">>");
    for (const BagPtr& lBag : {lNew, lGiven})
    {
        lBag->SetProperty(L"p", L"a*b+c", false);
        EXPECT_EQ(Text(lBag->GetValue(0)), L"a&#42;b&#43;c");
        EXPECT_EQ(Text(lBag->GetProperty(L"p")), L"a*b+c");
        EXPECT_MESSAGE(lBag->SetProperty(L"p", L"*<<", false), PropertyBagException,
                       L"QTalBase::PropertyBagImpl::SetProperty; ipValue may not contain the delimiters. ipValue: "
                       L"&#42;<<, begin delimiter: <<, end delimiter: >>");
    }
    lOld->SetProperty(L"p", L"a*b+c", false);
    EXPECT_EQ(Text(lOld->GetValue(0)), L"a*b+c");
    EXPECT_MESSAGE(lOld->SetProperty(L"p", L"a***", false), PropertyBagException,
                   L"QTalBase::PropertyBagImpl::SetProperty; ipValue may not contain the delimiters. ipValue: a***, "
                   L"begin delimiter: ++++, end delimiter: ***");
}

TEST(PropertyBagDefaults, SetPropertyComparesTextsNotPointers)
{
    wchar_t lBegin[] = L"++++";
    wchar_t lEnd[] = L"***";
    const BagPtr lBag = NewBag(L"++++", L"***");
    const RepointedDefaults lDefaults(lBegin, lEnd);
    lBag->SetProperty(L"p", L"*", false);
    EXPECT_EQ(Text(lBag->GetValue(0)), L"&#42;");
}

TEST(PropertyBagDefaults, SetPropertyNeedsBothToBeEqual)
{
    const BagPtr lBag = NewBag();
    {
        const RepointedDefaults lDefaults(L"<<", END);
        lBag->SetProperty(L"p", L"a*", false);
        EXPECT_EQ(Text(lBag->GetValue(0)), L"a*");
    }
    {
        const RepointedDefaults lDefaults(BEGIN, L">>");
        lBag->SetProperty(L"p", L"a+", false);
        EXPECT_EQ(Text(lBag->GetValue(0)), L"a+");
    }
}

TEST(PropertyBagDefaults, SetPropertyChecksTheValueAfterEscapingIt)
{
    const RepointedDefaults lDefaults(L"#", L";");
    const BagPtr lBag = NewBag();
    EXPECT_MESSAGE(lBag->SetProperty(L"p", L"a*b", false), PropertyBagException,
                   L"QTalBase::PropertyBagImpl::SetProperty; ipValue may not contain the delimiters. ipValue: "
                   L"a&#42;b, begin delimiter: #, end delimiter: ;");
    lBag->SetProperty(L"p", L"ab", false);
    EXPECT_EQ(Describe(lBag), L"'#' ';' {'p'='ab'}");
}

TEST(PropertyBagDefaults, GetPropertyUnescapesForBagsThatEqualThemNow)
{
    const BagPtr lBag = BagBuilder().Set(L"p", L"a*b");
    const BagPtr lOther = BagBuilder(L"<<", L">>").Set(L"p", L"a&#42;b");
    {
        const RepointedDefaults lDefaults(L"<<", L">>");
        EXPECT_EQ(Text(lBag->GetProperty(L"p")), L"a&#42;b");
        EXPECT_EQ(Text(lOther->GetProperty(L"p")), L"a*b");
    }
    {
        const RepointedDefaults lDefaults(BEGIN, L">>");
        EXPECT_EQ(Text(lBag->GetProperty(L"p")), L"a&#42;b");
    }
    EXPECT_EQ(Text(lBag->GetProperty(L"p")), L"a*b");
    EXPECT_EQ(Text(lOther->GetProperty(L"p")), L"a&#42;b");
}

TEST(PropertyBagDefaults, CreatePropertyBagOfTheEmptyTextDoesNotReadThem)
{
    const RepointedDefaults lDefaults(L"<<", L">>");
    EXPECT_EQ(Describe(ReadBag(L"")), L"'++++' '***' {}");
    EXPECT_EQ(Describe(NewBag()), L"'<<' '>>' {}");
}

TEST(PropertyBagDefaults, CreatePropertyBagEscapesByThem)
{
    const RepointedDefaults lDefaults(L"<<", L">>");
    EXPECT_EQ(Describe(ReadBag(L"EndDelimiter***BeginDelimiter++++***a++++x*y***")), L"'++++' '***' {'a'='x*y'}");
    EXPECT_EQ(Describe(ReadBag(L"EndDelimiter>>BeginDelimiter<<>>a<<x*y>>")), L"'<<' '>>' {'a'='x&#42;y'}");
}

TEST(PropertyBagDefaults, AddStringChecksEachValueAfterEscapingIt)
{
    const RepointedDefaults lDefaults(L"=", L"42");
    const BagPtr lBag = NewBag();
    EXPECT_MESSAGE(lBag->AddString(L"a=x*42"), PropertyBagException,
                   L"QTalBase::PropertyBagImpl::SetProperty; ipValue may not contain the delimiters. ipValue: "
                   L"x&#42;, begin delimiter: =, end delimiter: 42");
    const RepointedDefaults lTurned(L"42", L"=");
    const BagPtr lOther = NewBag();
    EXPECT_MESSAGE(lOther->AddString(L"a42x*="), PropertyBagException,
                   L"QTalBase::PropertyBagImpl::SetProperty; ipValue may not contain the delimiters. ipValue: "
                   L"x&#42;, begin delimiter: 42, end delimiter: =");
    EXPECT_EQ(Describe(lBag) + Describe(lOther), L"'=' '42' {}'42' '=' {}");
}

TEST(PropertyBagDefaults, AddStringEscapesInNestsWithDelimitersThatShareACharacterWithOtherEscapes)
{
    const RepointedDefaults lDefaults(L"3", L"!");
    const BagPtr lBag = BagBuilder(L"3", L"!").Set(L"p", L"1");
    lBag->AddString(L"n3a3x*!b3y!!m3k3v!!");
    EXPECT_EQ(Describe(lBag), L"'3' '!' {'p'='1' 'n'={'a'='x&#42;' 'b'='y'} 'm'={'k'='v'}}");
    lBag->AddString(L"o3n3a3x*!!!p32*!");
    EXPECT_EQ(Describe(lBag),
              L"'3' '!' {'p'='2&#42;' 'n'={'a'='x&#42;' 'b'='y'} 'm'={'k'='v'} 'o'={'n'={'a'='x&#42;'}}}");
    EXPECT_EQ(Describe(ReadBag(L"EndDelimiter!BeginDelimiter3!n3a3x*!!")), L"'3' '!' {'n'={'a'='x&#42;'}}");
}

TEST(PropertyBagDefaults, EmptyBeginIsRefusedBeforeAnythingIsTokenized)
{
    const RepointedDefaults lDefaults(L"", L"***");
    const BagPtr lBag = NewBag();
    EXPECT_EQ(Describe(lBag), L"'' '***' {}");
    EXPECT_MESSAGE(lBag->AddString(L"a++++1***"), PropertyBagUserErrorException, gBeginEmpty);
    EXPECT_MESSAGE(lBag->AddString(L"***"), PropertyBagUserErrorException, gBeginEmpty);
    EXPECT_MESSAGE(lBag->AddString(L""), PropertyBagUserErrorException, gBeginEmpty);
    EXPECT_MESSAGE(lBag->GetString(false, nullptr, nullptr, true), PropertyBagUserErrorException, gBeginEmpty);
    EXPECT_EQ(Text(lBag->GetString(false, L"<", nullptr, true)), L"");
    EXPECT_EQ(Describe(lBag), L"'' '***' {}");
}

TEST(PropertyBagDefaults, EmptyEndIsRefusedBeforeAnythingIsTokenized)
{
    const RepointedDefaults lDefaults(L"++++", L"");
    const BagPtr lBag = NewBag();
    EXPECT_MESSAGE(lBag->AddString(L"a++++1***"), PropertyBagUserErrorException, gEndEmpty);
    EXPECT_MESSAGE(lBag->AddString(L"++++"), PropertyBagUserErrorException, gEndEmpty);
    EXPECT_EQ(Describe(lBag), L"'++++' '' {}");
}

TEST(PropertyBagDefaults, EmptyDelimiterIsPartOfEveryName)
{
    const RepointedDefaults lDefaults(L"", L"");
    const BagPtr lBag = NewBag();
    EXPECT_MESSAGE(lBag->SetProperty(L"a", L"1", false), PropertyBagException,
                   L"QTalBase::PropertyBagImpl::SetProperty; ipName may not contain the delimiters");
    EXPECT_MESSAGE(lBag->AddString(L"EndDelimiter***BeginDelimiter++++***a++++1***"), PropertyBagException,
                   L"QTalBase::PropertyBagImpl::SetProperty; ipName may not contain the delimiters");
    lBag->ChangeDelimiters(L"<<", L">>");
    lBag->SetProperty(L"a", L"1", false);
    EXPECT_EQ(Describe(lBag), L"'<<' '>>' {'a'='1'}");
}
