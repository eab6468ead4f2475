// The delimiters of a bag, what pairs are allowed, and the escaping of the characters of the default pair.

#include "TalBase/PropertyBag.h"

#include "TalBase/PrivateSource/PropertyBagImpl.h"

#include "Tests/Support/BagBuilder.h"
#include "Tests/Support/Describe.h"
#include "Tests/Support/Expect.h"

#include <gtest/gtest.h>

#include <string>

using QTalBase::PropertyBagException;
using QTalBase::PropertyBagImpl;
using QTalBase::PropertyBagUserErrorException;
using namespace Support;

namespace
{

const wchar_t* const gBeginEmpty = L"QTalBase::PropertyBagImpl::CheckValidityOfDelimiters; Begin may not be empty";
const wchar_t* const gEndEmpty = L"QTalBase::PropertyBagImpl::CheckValidityOfDelimiters; End may not be empty";
const wchar_t* const gEqual = L"QTalBase::PropertyBagImpl::CheckValidityOfDelimiters; Begin and End may not be equal";
const wchar_t* const gBeginContainsEnd =
    L"QTalBase::PropertyBagImpl::CheckValidityOfDelimiters; Begin may not contain End";
const wchar_t* const gEndContainsBegin =
    L"QTalBase::PropertyBagImpl::CheckValidityOfDelimiters; End may not contain Begin";

// Shows the two escaping helpers, which a derived class may use.
class Escaping : public PropertyBagImpl
{
public:
    static std::wstring Escape(const wchar_t* ipValue)
    {
        Escaping lBag;
        return Text(lBag.hConvertDelimiters(ipValue));
    }

    static std::wstring Unescape(const wchar_t* ipValue)
    {
        const Escaping lBag;
        return Text(lBag.hInverseConvertDelimiters(ipValue));
    }
};

} // namespace

TEST(PropertyBag, DefaultDelimitersAreTheExportedTexts)
{
    EXPECT_STREQ(BEGIN, L"++++");
    EXPECT_STREQ(END, L"***");
    const BagPtr lBag = NewBag();
    EXPECT_STREQ(lBag->GetBeginDelimiter(), L"++++");
    EXPECT_STREQ(lBag->GetEndDelimiter(), L"***");
}

TEST(PropertyBag, CheckValidityOfDelimitersAcceptsOverlapAtTheEdges)
{
    EXPECT_NO_THROW(PropertyBagImpl::CheckValidityOfDelimiters(L"++++", L"***"));
    EXPECT_NO_THROW(PropertyBagImpl::CheckValidityOfDelimiters(L"ab", L"ba"));
    EXPECT_NO_THROW(PropertyBagImpl::CheckValidityOfDelimiters(L"ab", L"AB"));
    EXPECT_NO_THROW(PropertyBagImpl::CheckValidityOfDelimiters(L"a", L"b"));
    EXPECT_NO_THROW(PropertyBagImpl::CheckValidityOfDelimiters(L" ", L"\n"));
}

TEST(PropertyBag, CheckValidityOfDelimitersTestsTheRulesInOrder)
{
    const auto lCheck = [](const wchar_t* ipBegin, const wchar_t* ipEnd) {
        PropertyBagImpl::CheckValidityOfDelimiters(ipBegin, ipEnd);
    };
    EXPECT_MESSAGE(lCheck(L"", L""), PropertyBagUserErrorException, gBeginEmpty);
    EXPECT_MESSAGE(lCheck(L"", L"x"), PropertyBagUserErrorException, gBeginEmpty);
    EXPECT_MESSAGE(lCheck(L" ", L""), PropertyBagUserErrorException, gEndEmpty);
    EXPECT_MESSAGE(lCheck(L"ab", L"ab"), PropertyBagException, gEqual);
    EXPECT_MESSAGE(lCheck(L"xaby", L"ab"), PropertyBagException, gBeginContainsEnd);
    EXPECT_MESSAGE(lCheck(L"ab", L"b"), PropertyBagException, gBeginContainsEnd);
    EXPECT_MESSAGE(lCheck(L"**", L"***"), PropertyBagException, gEndContainsBegin);
    EXPECT_MESSAGE(lCheck(L"b", L"abc"), PropertyBagException, gEndContainsBegin);
}

TEST(PropertyBag, CreatePropertyBagInvalidDelimitersThrows)
{
    EXPECT_MESSAGE(QTalBase::CreatePropertyBag(L"", L""), PropertyBagUserErrorException, gBeginEmpty);
    EXPECT_MESSAGE(QTalBase::CreatePropertyBag(L" ", L""), PropertyBagUserErrorException, gEndEmpty);
    EXPECT_MESSAGE(QTalBase::CreatePropertyBag(L"ab", L"ab"), PropertyBagException, gEqual);
    EXPECT_MESSAGE(QTalBase::CreatePropertyBag(L"++++", L"+"), PropertyBagException, gBeginContainsEnd);
    EXPECT_MESSAGE(QTalBase::CreatePropertyBag(L"**", L"***"), PropertyBagException, gEndContainsBegin);
}

TEST(PropertyBag, ChangeDelimitersReachesEveryDepth)
{
    const BagPtr lBag = BagBuilder()
                            .Set(L"a", L"1")
                            .Nest(L"n", BagBuilder().Nest(L"o", BagBuilder().Nest(L"p", BagBuilder().Set(L"k", L"v"))))
                            .Nest(L"q", BagBuilder());
    lBag->ChangeDelimiters(L"<<", L">>");
    EXPECT_EQ(Describe(lBag), L"'<<' '>>' {'a'='1' 'n'={'o'={'p'={'k'='v'}}} 'q'={}}");
}

TEST(PropertyBag, ChangeDelimitersInvalidPairLeavesEveryBagAsItWas)
{
    const BagPtr lBag = BagBuilder().Nest(L"n", BagBuilder().Set(L"k", L"v"));
    lBag->GetPropertyBag(L"n")->ChangeDelimiters(L"<<", L">>");
    const std::wstring lBefore = L"'++++' '***' {'n'='<<' '>>' {'k'='v'}}";
    EXPECT_EQ(Describe(lBag), lBefore);
    EXPECT_MESSAGE(lBag->ChangeDelimiters(L"", L"x"), PropertyBagUserErrorException, gBeginEmpty);
    EXPECT_MESSAGE(lBag->ChangeDelimiters(L"x", L""), PropertyBagUserErrorException, gEndEmpty);
    EXPECT_MESSAGE(lBag->ChangeDelimiters(L"x", L"x"), PropertyBagException, gEqual);
    EXPECT_MESSAGE(lBag->ChangeDelimiters(L"xx", L"x"), PropertyBagException, gBeginContainsEnd);
    EXPECT_MESSAGE(lBag->ChangeDelimiters(L"x", L"xx"), PropertyBagException, gEndContainsBegin);
    EXPECT_EQ(Describe(lBag), lBefore);
}

TEST(PropertyBag, ChangeDelimitersTouchesNoStoredText)
{
    const BagPtr lBag = BagBuilder().Set(L"star", L"1*2").Set(L"name<<", L"value>>");
    lBag->ChangeDelimiters(L"<<", L">>");
    EXPECT_EQ(Describe(lBag), L"'<<' '>>' {'star'='1&#42;2' 'name<<'='value>>'}");
    EXPECT_EQ(Text(lBag->GetProperty(L"star")), L"1&#42;2");
    EXPECT_EQ(ContentText(*lBag), L"star<<1&#42;2>>name<<<<value>>>>");
    lBag->ChangeDelimiters(L"++++", L"***");
    EXPECT_EQ(Text(lBag->GetProperty(L"star")), L"1*2");
}

TEST(PropertyBag, ChangeDelimitersToTheDefaultsStartsUnescapingButNotEscaping)
{
    const BagPtr lBag = BagBuilder(L"<<", L">>").Set(L"raw", L"a*b").Set(L"escaped", L"a&#43;b");
    lBag->ChangeDelimiters(L"++++", L"***");
    EXPECT_EQ(Text(lBag->GetProperty(L"raw")), L"a*b");
    EXPECT_EQ(Text(lBag->GetValue(0)), L"a*b");
    EXPECT_EQ(Text(lBag->GetProperty(L"escaped")), L"a+b");
}

TEST(PropertyBag, ChangeDelimitersToOwnDelimitersSwapped)
{
    const BagPtr lBag = BagBuilder().Nest(L"n", BagBuilder().Set(L"k", L"v"));
    lBag->ChangeDelimiters(lBag->GetEndDelimiter(), lBag->GetBeginDelimiter());
    EXPECT_EQ(Describe(lBag), L"'***' '++++' {'n'={'k'='v'}}");
    lBag->ChangeDelimiters(lBag->GetBeginDelimiter(), lBag->GetEndDelimiter());
    EXPECT_EQ(Describe(lBag), L"'***' '++++' {'n'={'k'='v'}}");
    lBag->ChangeDelimiters(lBag->GetBeginDelimiter() + 1, lBag->GetEndDelimiter() + 3);
    EXPECT_EQ(Describe(lBag), L"'**' '+' {'n'={'k'='v'}}");
}

TEST(PropertyBag, ChangeDelimitersToNestedBagsDelimitersSwapped)
{
    // Long enough that the texts lie outside the string objects.
    const wchar_t* const lLongBegin = L"<<<<<<<<<<<<<<<<<<<<<<<<";
    const wchar_t* const lLongEnd = L">>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>";
    const BagPtr lBag = BagBuilder().Nest(L"m", BagBuilder()).Nest(L"n", BagBuilder().Set(L"k", L"v"));
    const BagPtr lNested = lBag->GetPropertyBag(L"m");
    lNested->ChangeDelimiters(lLongBegin, lLongEnd);
    lBag->ChangeDelimiters(lNested->GetEndDelimiter(), lNested->GetBeginDelimiter());
    EXPECT_EQ(Describe(lBag), std::wstring(L"'") + lLongEnd + L"' '" + lLongBegin + L"' {'m'={} 'n'={'k'='v'}}");
}

TEST(PropertyBag, GetStringWithOwnDelimitersSwapped)
{
    const BagPtr lBag = BagBuilder().Set(L"a", L"1");
    EXPECT_EQ(Text(lBag->GetString(true, lBag->GetEndDelimiter(), lBag->GetBeginDelimiter(), true)),
              L"EndDelimiter++++BeginDelimiter***++++a***1++++");
}

TEST(PropertyBag, OwnDelimiterAsArgument)
{
    const BagPtr lBag = BagBuilder().Set(L"a", L"1");
    lBag->SetProperty(L"b", lBag->GetBeginDelimiter(), false);
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'a'='1' 'b'='&#43;&#43;&#43;&#43;'}");
    EXPECT_MESSAGE(lBag->SetProperty(lBag->GetEndDelimiter(), L"1", false), PropertyBagException,
                   L"QTalBase::PropertyBagImpl::SetProperty; ipName may not contain the delimiters");
    EXPECT_MESSAGE(lBag->AddString(lBag->GetEndDelimiter()), PropertyBagException,
                   L"QTalBase::PropertyBagImpl::ExtractData; A string token was expected");
    lBag->RemoveProperty(lBag->GetEndDelimiter());
    EXPECT_EQ(Text(lBag->GetProperty(lBag->GetEndDelimiter())), L"");
    EXPECT_EQ(lBag->GetCount(), 2U);
}

TEST(PropertyBag, DelimiterPointersStayValidWhileTheDelimitersStay)
{
    const BagPtr lBag = NewBag(L"[[", L"]]");
    const wchar_t* const lBegin = lBag->GetBeginDelimiter();
    const wchar_t* const lEnd = lBag->GetEndDelimiter();
    lBag->AddString(L"EndDelimiter***BeginDelimiter++++***a++++1***");
    lBag->EmbedProperty(L"n", lBag.get());
    EXPECT_EQ(lBag->GetBeginDelimiter(), lBegin);
    EXPECT_EQ(lBag->GetEndDelimiter(), lEnd);
    EXPECT_STREQ(lBegin, L"[[");
    EXPECT_STREQ(lEnd, L"]]");
}

TEST(PropertyBag, EscapeWritesStarAndPlusByTheirCodes)
{
    EXPECT_EQ(Escaping::Escape(L"a*b+c"), L"a&#42;b&#43;c");
    EXPECT_EQ(Escaping::Escape(L"**"), L"&#42;&#42;");
    EXPECT_EQ(Escaping::Escape(L"+"), L"&#43;");
    EXPECT_EQ(Escaping::Escape(L"x&#42;"), L"x&#42;");
    EXPECT_EQ(Escaping::Escape(L"x&y<>\"'"), L"x&y<>\"'");
    EXPECT_EQ(Escaping::Escape(L""), L"");
    EXPECT_EQ(Escaping::Escape(nullptr), L"");
}

TEST(PropertyBag, UnescapeReplacesOnlyCompleteSequencesOnce)
{
    EXPECT_EQ(Escaping::Unescape(L"a&#42;b&#43;c"), L"a*b+c");
    EXPECT_EQ(Escaping::Unescape(L"&#43;&#42;"), L"+*");
    EXPECT_EQ(Escaping::Unescape(L"&#42;&#43;"), L"*+");
    EXPECT_EQ(Escaping::Unescape(L"&#42;#43;"), L"*#43;");
    EXPECT_EQ(Escaping::Unescape(L"&&#43;"), L"&+");
    EXPECT_EQ(Escaping::Unescape(L"&#4&#42;2;"), L"&#4*2;");
    EXPECT_EQ(Escaping::Unescape(L"&#42"), L"&#42");
    EXPECT_EQ(Escaping::Unescape(L"&#42 &#43"), L"&#42 &#43");
    EXPECT_EQ(Escaping::Unescape(L"&#42&#43;"), L"&#42+");
    EXPECT_EQ(Escaping::Unescape(L"&#44;&#042;"), L"&#44;&#042;");
    EXPECT_EQ(Escaping::Unescape(L"&#43;&#43;&#42;&#42;&#43;"), L"++**+");
    EXPECT_EQ(Escaping::Unescape(L"plain"), L"plain");
    EXPECT_EQ(Escaping::Unescape(L""), L"");
    EXPECT_EQ(Escaping::Unescape(nullptr), L"");
}

TEST(PropertyBag, EscapeGrowsFarBeyondItsFirstEstimate)
{
    const std::wstring lStars(1000, L'*');
    std::wstring lExpected;
    for (int lCount = 0; lCount < 1000; ++lCount)
    {
        lExpected += L"&#42;";
    }
    EXPECT_EQ(Escaping::Escape(lStars.c_str()), lExpected);
    EXPECT_EQ(Escaping::Unescape(lExpected.c_str()), lStars);
}

TEST(PropertyBag, GetPropertyUnescapesFromTheFirstFourCharactersOn)
{
    const BagPtr lBag = NewBag();
    lBag->SetProperty(L"half", L"x&#42", false);
    lBag->SetProperty(L"mixed", L"&#42 and &#43;", false);
    lBag->SetProperty(L"plus", L"&#43", false);
    lBag->SetProperty(L"other", L"&#44; and &#4", false);
    EXPECT_EQ(Text(lBag->GetProperty(L"half")), L"x&#42");
    EXPECT_EQ(Text(lBag->GetProperty(L"mixed")), L"&#42 and +");
    EXPECT_EQ(Text(lBag->GetProperty(L"plus")), L"&#43");
    EXPECT_EQ(Text(lBag->GetProperty(L"other")), L"&#44; and &#4");
}
