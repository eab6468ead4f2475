// Which name or value a bag's text would not give back, and why: by hand.

#include "TalBase/TextCheck.h"

#include "QSerialization/MemoryDataStream.h"
#include "TalBase/Initializer.h"
#include "TalBase/PropertyBag.h"
#include "Tests/Support/ForeignBag.h"
#include "Tests/Support/RepeatingBag.h"
#include "Tests/Support/RepointedDefaults.h"

#include <gtest/gtest.h>
#include <string>

using QTalBase::FindTextFault;
using QTalBase::PropertyBag;
using QTalBase::PropertyTextCheck;
using QTalBase::TextFault;
using QTalBase::TextFaultKind;
using QTalBase::TextFaultPart;
using Support::BagPtr;

namespace
{

const QTalBase::Initializer gInitializer;

const wchar_t* NameOf(TextFaultKind iKind)
{
    static const wchar_t* const gNames[] = {L"none",      L"empty",       L"zero",     L"delimiter",
                                            L"runs into", L"not escaped", L"repeated", L"like header",
                                            L"refused",   L"not carried", L"different"};
    return gNames[static_cast<int>(iKind)];
}

// "name runs into: n/a+ [1]"
std::wstring Told(const TextFault& iFault)
{
    if (iFault.IsNone())
    {
        return L"none";
    }
    static const wchar_t* const gParts[] = {L"delimiters ", L"name ", L"value "};
    std::wstring lTold = std::wstring(gParts[static_cast<int>(iFault.mPart)]) + NameOf(iFault.mKind);
    const wchar_t* lSeparator = L": ";
    for (const QBase::ReturnWString& lName : iFault.mPath)
    {
        lTold += lSeparator + std::wstring(lName);
        lSeparator = L"/";
    }
    return lTold + L" [" + std::to_wstring(iFault.mPosition) + L"]";
}

std::wstring WithHeader(const PropertyBag& iBag)
{
    return Told(FindTextFault(iBag, true, nullptr, nullptr));
}

std::wstring WithoutHeader(const PropertyBag& iBag)
{
    return Told(FindTextFault(iBag, false, nullptr, nullptr));
}

std::wstring Written(const PropertyBag& iBag, const wchar_t* ipBegin, const wchar_t* ipEnd)
{
    return Told(FindTextFault(iBag, true, ipBegin, ipEnd));
}

BagPtr Read(const std::wstring& iContent)
{
    return QTalBase::CreatePropertyBag((L"EndDelimiter***BeginDelimiter++++***" + iContent).c_str());
}

BagPtr Made(const wchar_t* ipName, const wchar_t* ipValue, const wchar_t* ipBegin = L"++++",
            const wchar_t* ipEnd = L"***")
{
    const BagPtr lBag(QTalBase::CreatePropertyBag(L"\x1", L"\x2"));
    lBag->SetProperty(ipName, ipValue, false);
    lBag->ChangeDelimiters(ipBegin, ipEnd);
    return lBag;
}

} // namespace

TEST(TextFault, OfBagsThatComeBack)
{
    const BagPtr lBag = Read(L"a++++1***+b++++2****c*++++3***n++++k++++v***m++++l++++w*********");
    lBag->SetProperty(L"star", L"2 * 3 + 4", false);
    lBag->SetProperty(L"escape", L"&#42;", false);
    EXPECT_EQ(WithHeader(*lBag), L"none");
    EXPECT_EQ(WithoutHeader(*lBag), L"none");
    EXPECT_EQ(Written(*lBag, L"[", L"]"), L"none");
    EXPECT_EQ(WithHeader(*BagPtr(QTalBase::CreatePropertyBag())), L"none");
    EXPECT_EQ(WithoutHeader(*BagPtr(QTalBase::CreatePropertyBag())), L"none");
}

TEST(TextFault, OfNames)
{
    EXPECT_EQ(WithHeader(*Made(L"", L"1")), L"name empty:  [0]");
    EXPECT_EQ(WithHeader(*Made(L"a***b", L"1")), L"name delimiter: a***b [0]");
    EXPECT_EQ(WithHeader(*Made(L"a++++b", L"1")), L"name delimiter: a++++b [0]");
    EXPECT_EQ(WithHeader(*Made(L"a+", L"1")), L"name runs into: a+ [0]");
    EXPECT_EQ(WithHeader(*Made(L"a+", L"1", L"[[", L"]]")), L"none");
    EXPECT_EQ(WithHeader(*Made(L"a[", L"1", L"[[", L"]]")), L"name runs into: a[ [0]");
    EXPECT_EQ(WithHeader(*Made(L"a=", L"1", L"=:", L";/")), L"none");
}

TEST(TextFault, OfValues)
{
    EXPECT_EQ(WithHeader(*Made(L"a", L"1*2")), L"value not escaped: a [0]");
    EXPECT_EQ(WithHeader(*Made(L"a", L"1*2", L"[", L"]")), L"none");
    EXPECT_EQ(WithHeader(*Made(L"a", L"1]2", L"[", L"]")), L"value delimiter: a [0]");
    EXPECT_EQ(WithHeader(*Made(L"a", L"x]", L"[[", L"]]")), L"value runs into: a [0]");
    EXPECT_EQ(WithHeader(*Made(L"a", L"x;", L"=:", L";/")), L"none");
    EXPECT_EQ(Written(*Made(L"a", L"x;y"), L"=", L";"), L"value delimiter: a [0]");
    EXPECT_EQ(Written(*Made(L"a", L"x;y"), nullptr, L";"), L"value delimiter: a [0]");
    EXPECT_EQ(WithHeader(*Made(L"a", L"x;y")), L"none");
}

// The first in the text is told, with its place.
TEST(TextFault, OfNests)
{
    const BagPtr lBag = Read(L"p++++1***n++++k++++v***m++++l++++w*********o++++k++++v******");
    const BagPtr lNest = lBag->GetPropertyBag(L"n");
    lNest->GetPropertyBag(L"m")->SetProperty(L"x+", L"1", false);
    lBag->GetPropertyBag(L"o")->RemoveProperty(L"k");
    EXPECT_EQ(WithHeader(*lBag), L"name runs into: n/m/x+ [1]");
    lNest->GetPropertyBag(L"m")->RemoveProperty(L"x+");
    EXPECT_EQ(WithHeader(*lBag), L"value empty: o [2]");
    lBag->RemoveProperty(L"o");
    lNest->GetPropertyBag(L"m")->ChangeDelimiters(L"<", L">");
    EXPECT_EQ(WithHeader(*lBag), L"delimiters different: n/m [1]");
    EXPECT_EQ(Written(*lBag, L"++++", L"***"), L"none");
    EXPECT_EQ(Written(*lBag, L"++++", nullptr), L"delimiters different: n/m [1]");
    lNest->GetPropertyBag(L"m")->RemoveProperty(L"l");
    EXPECT_EQ(Written(*lBag, L"++++", L"***"), L"value empty: n/m [1]");
}

TEST(TextFault, OfDelimiters)
{
    EXPECT_EQ(Written(*Made(L"a", L"1"), L"xy", L"x"), L"delimiters refused [0]");
    EXPECT_EQ(Written(*Made(L"a", L"1"), L"", L"x"), L"delimiters refused [0]");
    EXPECT_EQ(WithHeader(*Made(L"a", L"1", L"[", L"end")), L"delimiters not carried [0]");
    EXPECT_EQ(WithoutHeader(*Made(L"a", L"1", L"[", L"end")), L"none");
    EXPECT_EQ(WithHeader(*Made(L"a", L"1", L"<!", L"!>")), L"delimiters not carried [0]");
    const BagPtr lBag = Read(L"n++++k++++v******");
    lBag->ChangeDelimiters(L"[", L"end");
    EXPECT_EQ(WithoutHeader(*lBag), L"delimiters not carried: n [0]");
}

TEST(TextFault, OfAFirstNameLikeAHeader)
{
    EXPECT_EQ(WithHeader(*Made(L"EndDelimiter", L"1")), L"none");
    EXPECT_EQ(WithoutHeader(*Made(L"EndDelimiter", L"1")), L"name like header: EndDelimiter [0]");
    EXPECT_EQ(WithoutHeader(*Made(L"EndDelimite", L"1")), L"none");
    EXPECT_EQ(WithoutHeader(*Made(L"End", L"1", L"Delimiter", L"#")), L"name like header: End [0]");
    EXPECT_EQ(WithoutHeader(*Made(L"End", L"1", L"Delim", L"#")), L"none");
    EXPECT_EQ(WithoutHeader(*Made(L"End", L"iters", L"Delim", L"#")), L"name like header: End [0]");
    const BagPtr lBag = Read(L"a++++1***EndDelimiter++++2***");
    EXPECT_EQ(WithoutHeader(*lBag), L"none");
}

// What is taken for a header happens to be one, and what follows it to be the bag.
// Its text cannot be written, so it does not begin like a header either; the nest is to blame.
TEST(TextFault, OfAFirstNameLikeAHeaderBeforeANestThatCannotBeWritten)
{
    const BagPtr lBag = Read(L"EndDelimiter++++1***n++++k++++v******");
    QSerialization::MemoryWriteDataStream lWritten;
    for (const wchar_t* lText : {L"x", L"x", L""})
    {
        lWritten.WriteWString(lText);
    }
    QSerialization::MemoryReadDataStream lStream(lWritten.GetBytes().data(), lWritten.GetBytes().size());
    EXPECT_THROW(lBag->GetPropertyBag(L"n")->DeSerialize(lStream), QTalBase::PropertyBagException);
    EXPECT_EQ(WithoutHeader(*lBag), L"delimiters different: n [1]");
    EXPECT_EQ(WithHeader(*lBag), L"delimiters different: n [1]");
}

TEST(TextFault, OfAFirstNameThatComesBackByChance)
{
    const BagPtr lBag = Made(L"EndDelimiter", L"v", L"#BeginDelimiter=#EndDelimiter=v#", L"$");
    EXPECT_EQ(std::wstring(lBag->GetString(false, nullptr, nullptr, true)),
              L"EndDelimiter#BeginDelimiter=#EndDelimiter=v#v$");
    EXPECT_EQ(WithoutHeader(*lBag), L"none");
    lBag->SetProperty(L"EndDelimiter", L"w", false);
    EXPECT_EQ(WithoutHeader(*lBag), L"name like header: EndDelimiter [0]");
}

// The nest is handed on with a header that is misread as "r=" and "$", and comes back all the same.
TEST(TextFault, OfANestThatComesBackByChance)
{
    const BagPtr lBag = Read(L"n++++kr++++v******");
    lBag->ChangeDelimiters(L"=$krr=v$krr=", L"$e");
    EXPECT_EQ(WithoutHeader(*lBag), L"none");
    lBag->GetPropertyBag(L"n")->SetProperty(L"l", L"w", false);
    EXPECT_EQ(WithoutHeader(*lBag), L"delimiters not carried: n [0]");
}

TEST(TextFault, OfRepeatedNames)
{
    const QBase::SmartPtrI<Support::RepeatingBag> lBag(new Support::RepeatingBag);
    lBag->Plain(L"a", L"1").Plain(L"b", L"2").Nest(L"b", L"k++++v***");
    EXPECT_EQ(WithHeader(*lBag), L"name repeated: b [2]");
    EXPECT_EQ(WithHeader(*lBag->Cloned()), L"name repeated: b [2]");
    lBag->Plain(L"a", L"3");
    EXPECT_EQ(WithHeader(*lBag), L"name repeated: a [2]");
}

// The defaults decide, not the delimiters as such.
TEST(TextFault, FollowsTheDefaults)
{
    const BagPtr lBag = Made(L"a", L"1*2", L"<", L">");
    const Support::RepointedDefaults lDefaults(L"<", L">");
    EXPECT_EQ(WithHeader(*lBag), L"value not escaped: a [0]");
    EXPECT_EQ(Written(*lBag, L"[", L"]"), L"none");
}

TEST(TextFault, OfBagsOfAnotherClass)
{
    Support::CallLog lLog;
    const QBase::SmartPtrI<Support::ForeignBag> lBag(new Support::ForeignBag(lLog));
    lBag->Nest(L"n", Made(L"k", L"v", L"(", L")")).Set(L"a", L"1");
    EXPECT_EQ(WithHeader(*lBag), L"none");
    lBag->Set(L"b", L"");
    EXPECT_EQ(WithHeader(*lBag), L"value empty: b [2]");
    lBag->Entries()[2].mValue = L"x)";
    EXPECT_EQ(WithHeader(*lBag), L"value delimiter: b [2]");
    EXPECT_EQ(Written(*lBag, L"(", L"))"), L"value runs into: b [2]");
    lBag->Entries()[2] = {L"n", L"1", nullptr};
    EXPECT_EQ(WithHeader(*lBag), L"name repeated: n [2]");
    lBag->Entries()[2] = {L"m", L"", Made(L"k(", L"v")};
    EXPECT_EQ(WithHeader(*lBag), L"delimiters different: m [2]");
    EXPECT_EQ(Written(*lBag, L"(", L")"), L"name delimiter: m/k( [0]");
    lBag->Entries()[0].mName = L"EndDelimiter";
    lBag->Entries()[1].mName = L"EndDelimiterX"; // plain properties stand first in a text
    lBag->SetText(L"EndDelimiterX(1)");
    EXPECT_EQ(WithoutHeader(*lBag), L"name like header: EndDelimiterX [1]");
}

TEST(TextFault, NeedsNoReference)
{
    PropertyBag* lBag = QTalBase::CreatePropertyBag();
    lBag->SetProperty(L"a", L"1", false);
    EXPECT_EQ(WithHeader(*lBag), L"none");
    EXPECT_EQ(WithoutHeader(*lBag), L"none");
    const BagPtr lHeld(lBag);
    EXPECT_EQ(lHeld->GetCount(), 1U);
}

TEST(PropertyTextCheck, ChecksNamesAndStoredValues)
{
    PropertyTextCheck lCheck(L"++++", L"***");
    EXPECT_EQ(lCheck.CheckName(L"a"), TextFaultKind::None);
    EXPECT_EQ(lCheck.CheckName(L"*a"), TextFaultKind::None);
    EXPECT_EQ(lCheck.CheckName(L"EndDelimiter"), TextFaultKind::None);
    EXPECT_EQ(lCheck.CheckName(L""), TextFaultKind::Empty);
    EXPECT_EQ(lCheck.CheckName(L"a+"), TextFaultKind::RunsIntoDelimiter);
    EXPECT_EQ(lCheck.CheckName(L"a***"), TextFaultKind::HoldsDelimiter);
    EXPECT_EQ(lCheck.CheckName(std::wstring_view(L"a\0b", 3)), TextFaultKind::HoldsZero);
    EXPECT_EQ(lCheck.CheckStoredValue(L"a"), TextFaultKind::None);
    EXPECT_EQ(lCheck.CheckStoredValue(L"&#42;"), TextFaultKind::None);
    EXPECT_EQ(lCheck.CheckStoredValue(L""), TextFaultKind::Empty);
    EXPECT_EQ(lCheck.CheckStoredValue(L"*a"), TextFaultKind::NotEscaped);
    EXPECT_EQ(lCheck.CheckStoredValue(L"a*"), TextFaultKind::RunsIntoDelimiter);
    EXPECT_EQ(lCheck.CheckStoredValue(std::wstring_view(L"\0", 1)), TextFaultKind::HoldsZero);
    PropertyTextCheck lOther(L"[[", L"]]");
    EXPECT_EQ(lOther.CheckStoredValue(L"a*"), TextFaultKind::None);
    EXPECT_EQ(lOther.CheckStoredValue(L"a]"), TextFaultKind::RunsIntoDelimiter);
    EXPECT_EQ(lOther.CheckStoredValue(L"a]]b"), TextFaultKind::HoldsDelimiter);
}

TEST(PropertyTextCheck, RefusesWhatNoBagMayHave)
{
    EXPECT_THROW(PropertyTextCheck(L"x", L"xy"), QTalBase::PropertyBagException);
    EXPECT_THROW(PropertyTextCheck(L"", L"xy"), QTalBase::PropertyBagUserErrorException);
}
