// Setting and embedding properties.

#include "TalBase/PropertyBag.h"

#include "Tests/Support/BagBuilder.h"
#include "Tests/Support/Describe.h"
#include "Tests/Support/Expect.h"

#include <gtest/gtest.h>

#include <string>

using QTalBase::PropertyBagException;
using QTalBase::PropertyBagUserErrorException;
using namespace Support;

namespace
{

const wchar_t* const gNameHasDelimiter =
    L"QTalBase::PropertyBagImpl::SetProperty; ipName may not contain the delimiters";

} // namespace

TEST(PropertyBag, SetPropertyPresentNameMovesToTheEnd)
{
    const BagPtr lBag = NewBag();
    lBag->SetProperty(L"a", L"1", false);
    lBag->SetProperty(L"b", L"2", false);
    lBag->SetProperty(L"a", L"3", false);
    EXPECT_EQ(Text(lBag->GetName(0)), L"b");
    EXPECT_EQ(Text(lBag->GetName(1)), L"a");
    EXPECT_EQ(Text(lBag->GetValue(1)), L"3");
    EXPECT_EQ(lBag->GetCount(), 2U);
}

TEST(PropertyBag, SetPropertyPresentNestedNameMovesToTheEnd)
{
    const BagPtr lBag = MixedBag();
    lBag->SetProperty(L"m", L"k++++z***", true);
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'a'='1' 'b'='x&#42;y' 'n'={'k'='w'} 'm'={'k'='z'}}");
}

TEST(PropertyBag, SetPropertyEmptyValueOnlyRemoves)
{
    const BagPtr lBag = MixedBag();
    lBag->SetProperty(L"a", L"", false);
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'b'='x&#42;y' 'm'={'k'='v'} 'n'={'k'='w'}}");
    lBag->SetProperty(L"b", L"", true);
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'m'={'k'='v'} 'n'={'k'='w'}}");
    lBag->SetProperty(L"m", L"", false);
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'n'={'k'='w'}}");
    lBag->SetProperty(L"n", L"", true);
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {}");
    lBag->SetProperty(L"never", L"", false);
    EXPECT_EQ(lBag->GetCount(), 0U);
}

TEST(PropertyBag, SetPropertyPlainReplacesNested)
{
    const BagPtr lBag = MixedBag();
    lBag->SetProperty(L"m", L"plain", false);
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'a'='1' 'b'='x&#42;y' 'm'='plain' 'n'={'k'='w'}}");
    EXPECT_FALSE(lBag->IsPropertyEmbedded(L"m"));
}

TEST(PropertyBag, SetPropertyNestedReplacesPlain)
{
    const BagPtr lBag = MixedBag();
    lBag->SetProperty(L"a", L"k++++u***", true);
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'b'='x&#42;y' 'm'={'k'='v'} 'n'={'k'='w'} 'a'={'k'='u'}}");
    EXPECT_TRUE(lBag->IsPropertyEmbedded(L"a"));
}

TEST(PropertyBag, SetPropertyUnderDefaultsEscapes)
{
    const BagPtr lBag = NewBag();
    lBag->SetProperty(L"p", L"a*b+c", false);
    EXPECT_EQ(Text(lBag->GetProperty(L"p")), L"a*b+c");
    EXPECT_EQ(Text(lBag->GetValue(0)), L"a&#42;b&#43;c");
}

TEST(PropertyBag, SetPropertyUnderDefaultsAcceptsDelimitersInValue)
{
    const BagPtr lBag = NewBag();
    lBag->SetProperty(L"begin", L"++++", false);
    lBag->SetProperty(L"end", L"***", false);
    EXPECT_EQ(Text(lBag->GetProperty(L"begin")), L"++++");
    EXPECT_EQ(Text(lBag->GetProperty(L"end")), L"***");
    EXPECT_EQ(Text(lBag->GetValue(0)), L"&#43;&#43;&#43;&#43;");
    EXPECT_EQ(Text(lBag->GetValue(1)), L"&#42;&#42;&#42;");
}

TEST(PropertyBag, SetPropertyUnderOtherDelimitersStoresUnescaped)
{
    const BagPtr lBag = NewBag(L"[[", L"]]");
    lBag->SetProperty(L"p", L"a*b+c&#42;", false);
    EXPECT_EQ(Text(lBag->GetValue(0)), L"a*b+c&#42;");
    EXPECT_EQ(Text(lBag->GetProperty(L"p")), L"a*b+c&#42;");
}

TEST(PropertyBag, SetPropertyOneDefaultDelimiterIsNotTheDefaults)
{
    const BagPtr lBegin = NewBag(L"++++", L"]]");
    lBegin->SetProperty(L"p", L"a*b+c", false);
    EXPECT_EQ(Text(lBegin->GetValue(0)), L"a*b+c");
    const BagPtr lEnd = NewBag(L"[[", L"***");
    lEnd->SetProperty(L"p", L"a*b+c", false);
    EXPECT_EQ(Text(lEnd->GetValue(0)), L"a*b+c");
}

TEST(PropertyBag, SetPropertyValueWithForeignDelimiterThrowsWithValues)
{
    const BagPtr lBag = BagBuilder(L"[[", L"]]").Set(L"a", L"1");
    EXPECT_MESSAGE(lBag->SetProperty(L"a", L"x]]y", false), PropertyBagException,
                   L"QTalBase::PropertyBagImpl::SetProperty; ipValue may not contain the delimiters. ipValue: x]]y, "
                   L"begin delimiter: [[, end delimiter: ]]");
    EXPECT_MESSAGE(lBag->SetProperty(L"a", L"[[", false), PropertyBagException,
                   L"QTalBase::PropertyBagImpl::SetProperty; ipValue may not contain the delimiters. ipValue: [[, "
                   L"begin delimiter: [[, end delimiter: ]]");
    EXPECT_EQ(Describe(lBag), L"'[[' ']]' {'a'='1'}");
}

TEST(PropertyBag, SetPropertyEscapedTextIsStoredAsItIs)
{
    const BagPtr lBag = NewBag();
    lBag->SetProperty(L"p", L"x&#42;", false);
    EXPECT_EQ(Text(lBag->GetValue(0)), L"x&#42;");
    EXPECT_EQ(Text(lBag->GetProperty(L"p")), L"x*");
}

TEST(PropertyBag, SetPropertyNullNameThrows)
{
    const BagPtr lBag = MixedBag();
    const std::wstring lBefore = Describe(lBag);
    const wchar_t* const lText = L"QTalBase::PropertyBagImpl::SetProperty; ipName may not be NULL";
    EXPECT_MESSAGE(lBag->SetProperty(nullptr, L"1", false), PropertyBagUserErrorException, lText);
    EXPECT_MESSAGE(lBag->SetProperty(nullptr, L"k++++v***", true), PropertyBagUserErrorException, lText);
    EXPECT_MESSAGE(lBag->SetProperty(nullptr, nullptr, false), PropertyBagUserErrorException, lText);
    EXPECT_EQ(Describe(lBag), lBefore);
}

TEST(PropertyBag, SetPropertyNameWithDelimiterThrows)
{
    const BagPtr lBag = MixedBag();
    const std::wstring lBefore = Describe(lBag);
    EXPECT_MESSAGE(lBag->SetProperty(L"x++++", L"1", false), PropertyBagException, gNameHasDelimiter);
    EXPECT_MESSAGE(lBag->SetProperty(L"***x", L"1", false), PropertyBagException, gNameHasDelimiter);
    EXPECT_MESSAGE(lBag->SetProperty(L"x++++y", L"k++++v***", true), PropertyBagException, gNameHasDelimiter);
    EXPECT_MESSAGE(lBag->SetProperty(L"x***y", L"k++++v***", true), PropertyBagException, gNameHasDelimiter);
    EXPECT_MESSAGE(lBag->SetProperty(L"***", nullptr, false), PropertyBagException, gNameHasDelimiter);
    EXPECT_MESSAGE(lBag->SetProperty(L"***", L"", false), PropertyBagException, gNameHasDelimiter);
    EXPECT_EQ(Describe(lBag), lBefore);
}

TEST(PropertyBag, SetPropertyNullValueThrows)
{
    const BagPtr lBag = MixedBag();
    const std::wstring lBefore = Describe(lBag);
    const wchar_t* const lText = L"QTalBase::PropertyBagImpl::SetProperty; ipValue may not be NULL";
    EXPECT_MESSAGE(lBag->SetProperty(L"a", nullptr, false), PropertyBagUserErrorException, lText);
    EXPECT_MESSAGE(lBag->SetProperty(L"m", nullptr, true), PropertyBagUserErrorException, lText);
    EXPECT_EQ(Describe(lBag), lBefore);
}

TEST(PropertyBag, SetPropertyPartOfDelimiterInNameIsAccepted)
{
    const BagPtr lBag = NewBag();
    lBag->SetProperty(L"a**+++", L"1", false);
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'a**+++'='1'}");
}

TEST(PropertyBag, SetPropertyEmptyNameIsAName)
{
    const BagPtr lBag = NewBag();
    lBag->SetProperty(L"", L"1", false);
    EXPECT_EQ(Text(lBag->GetProperty(L"")), L"1");
    EXPECT_EQ(Text(lBag->GetName(0)), L"");
    lBag->SetProperty(L"", L"k++++v***", true);
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {''={'k'='v'}}");
    lBag->RemoveProperty(L"");
    EXPECT_EQ(lBag->GetCount(), 0U);
}

TEST(PropertyBag, SetPropertyUnreadableNestedTextHasAlreadyRemovedTheName)
{
    const BagPtr lBag = MixedBag();
    EXPECT_MESSAGE(lBag->SetProperty(L"m", L"x++++", true), PropertyBagException,
                   L"QTalBase::PropertyBagImpl::GetNextToken; A token was expected");
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'a'='1' 'b'='x&#42;y' 'n'={'k'='w'}}");
    EXPECT_MESSAGE(lBag->SetProperty(L"a", L"***", true), PropertyBagException,
                   L"QTalBase::PropertyBagImpl::ExtractData; A string token was expected");
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'b'='x&#42;y' 'n'={'k'='w'}}");
}

TEST(PropertyBag, SetPropertyNestedTextWithHeaderTakesContainersDelimiters)
{
    const BagPtr lBag = NewBag();
    lBag->SetProperty(L"n", L"EndDelimiter##BeginDelimiter@@##k@@x*y##", true);
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'n'={'k'='x&#42;y'}}");
    const BagPtr lOther = NewBag(L"[[", L"]]");
    lOther->SetProperty(L"n", L"EndDelimiter***BeginDelimiter++++***k++++x&#42;y***", true);
    EXPECT_EQ(Describe(lOther), L"'[[' ']]' {'n'={'k'='x&#42;y'}}");
    EXPECT_EQ(Text(lOther->GetPropertyBag(L"n")->GetProperty(L"k")), L"x&#42;y");
}

TEST(PropertyBag, SetPropertyNestedValueWithContainersDelimiterThrows)
{
    const BagPtr lBag = BagBuilder(L"[[", L"]]").Set(L"n", L"old");
    EXPECT_MESSAGE(lBag->SetProperty(L"n", L"EndDelimiter##BeginDelimiter@@##k@@x[[y##", true), PropertyBagException,
                   L"QTalBase::PropertyBagImpl::SetProperty; ipValue may not contain the delimiters. ipValue: x[[y, "
                   L"begin delimiter: [[, end delimiter: ]]");
    EXPECT_EQ(Describe(lBag), L"'[[' ']]' {}");
}

TEST(PropertyBag, NamesAreCaseSensitive)
{
    const BagPtr lBag = BagBuilder().Set(L"Key", L"1").Set(L"key", L"2");
    EXPECT_EQ(Text(lBag->GetProperty(L"Key")), L"1");
    EXPECT_EQ(Text(lBag->GetProperty(L"key")), L"2");
    EXPECT_EQ(Text(lBag->GetProperty(L"KEY")), L"");
    EXPECT_EQ(Text(lBag->GetProperty(L"ke")), L"");
}

TEST(PropertyBag, EmbedPropertyStoresACopyWithTheContainersDelimiters)
{
    const BagPtr lSource = BagBuilder(L"[[", L"]]").Set(L"k", L"v").Nest(L"deep", BagBuilder().Set(L"d", L"e"));
    const BagPtr lBag = NewBag();
    lBag->EmbedProperty(L"n", lSource.get());
    lSource->SetProperty(L"k", L"changed", false);
    EXPECT_TRUE(lBag->IsPropertyEmbedded(L"n"));
    EXPECT_NE(lBag->GetPropertyBag(L"n").get(), lSource.get());
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'n'={'k'='v' 'deep'={'d'='e'}}}");
    EXPECT_EQ(Text(lBag->GetProperty(L"n")), L"EndDelimiter***BeginDelimiter++++***k++++v***deep++++d++++e******");
}

TEST(PropertyBag, EmbedPropertyKeepsSensitiveProperties)
{
    const BagPtr lSource = BagBuilder().Set(L"FTPServerPassword", L"x");
    const BagPtr lBag = NewBag();
    lBag->EmbedProperty(L"n", lSource.get());
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'n'={'FTPServerPassword'='x'}}");
}

TEST(PropertyBag, EmbedPropertyEmptyBagOnlyRemoves)
{
    const BagPtr lBag = MixedBag();
    lBag->EmbedProperty(L"m", NewBag().get());
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'a'='1' 'b'='x&#42;y' 'n'={'k'='w'}}");
}

TEST(PropertyBag, EmbedPropertyOfItself)
{
    const BagPtr lBag = BagBuilder().Set(L"a", L"1");
    lBag->EmbedProperty(L"self", lBag.get());
    lBag->EmbedProperty(L"self", lBag.get());
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'a'='1' 'self'={'a'='1' 'self'={'a'='1'}}}");
}

TEST(PropertyBag, EmbedPropertyBadNameThrows)
{
    const BagPtr lBag = MixedBag();
    const std::wstring lBefore = Describe(lBag);
    const BagPtr lSource = BagBuilder().Set(L"k", L"v");
    EXPECT_MESSAGE(lBag->EmbedProperty(nullptr, lSource.get()), PropertyBagUserErrorException,
                   L"QTalBase::PropertyBagImpl::SetProperty; ipName may not be NULL");
    EXPECT_MESSAGE(lBag->EmbedProperty(L"a***", lSource.get()), PropertyBagException, gNameHasDelimiter);
    EXPECT_EQ(Describe(lBag), lBefore);
}
