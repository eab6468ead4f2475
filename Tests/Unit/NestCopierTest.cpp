// Which nests are copied as they are, and that a copy is what the nest's text would have read back as.

#include "TalBase/PrivateSource/NestCopier.h"

#include "QDataType/StringCollection.h"
#include "Tests/Support/Describe.h"
#include "Tests/Support/RepointedDefaults.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

using Support::BagPtr;

namespace
{

BagPtr Read(const std::wstring& iText)
{
    return QTalBase::CreatePropertyBag(iText.c_str());
}

BagPtr NestOf(const BagPtr& iBag, const wchar_t* ipName)
{
    return iBag->GetPropertyBag(ipName);
}

// What a bag is after an operation, and what the operation threw.
template <class Operation>
std::wstring OutcomeOf(const BagPtr& oBag, const Operation& iOperation)
{
    std::wstring lThrown;
    try
    {
        iOperation(*oBag);
    }
    catch (const QBase::Message& lMessage)
    {
        lThrown = lMessage.GetMessage();
    }
    return Support::Describe(*oBag) + lThrown;
}

// Merges a bag into one with a pair, and expects what setting each of its texts gives.
void ExpectMergedAsText(const BagPtr& iSource, const wchar_t* ipBegin, const wchar_t* ipEnd)
{
    const BagPtr lMerged(QTalBase::CreatePropertyBag(ipBegin, ipEnd));
    const BagPtr lSet(QTalBase::CreatePropertyBag(ipBegin, ipEnd));
    EXPECT_EQ(OutcomeOf(lMerged, [&](auto& oBag) { oBag.AddPropertyBag(iSource.get()); }),
              OutcomeOf(lSet, [&](auto& oBag) {
                  for (unsigned int lIndex = 0; lIndex < iSource->GetCount(); ++lIndex)
                  {
                      oBag.SetProperty(iSource->GetName(lIndex).c_str(), iSource->GetValue(lIndex).c_str(),
                                       iSource->IsEmbedded(lIndex));
                  }
              }));
}

// Embeds the nests of a bag in another, and copies the rest by name.
void CopyAsText(const BagPtr& iSource, QTalBase::PropertyBag& oBag)
{
    for (unsigned int lIndex = 0; lIndex < iSource->GetCount(); ++lIndex)
    {
        const QBase::ReturnWString lName = iSource->GetName(lIndex);
        if (iSource->IsEmbedded(lIndex))
        {
            oBag.EmbedProperty(lName.c_str(), NestOf(iSource, lName.c_str()).get());
        }
        else
        {
            oBag.SetProperty(lName.c_str(), iSource->GetProperty(lName.c_str()).c_str(), false);
        }
    }
}

// Clones a bag by all its names. A clone that fails is nowhere to be seen.
void ExpectFilteredAsText(const BagPtr& iSource)
{
    const std::unique_ptr<QDataType::StringCollection> lFilter(QDataType::CreateStringCollection());
    for (unsigned int lIndex = 0; lIndex < iSource->GetCount(); ++lIndex)
    {
        lFilter->Insert(iSource->GetName(lIndex).c_str());
    }
    BagPtr lClone(QTalBase::CreatePropertyBag());
    const std::wstring lThrown = OutcomeOf(lClone, [&](auto&) { lClone = iSource->FilteredClone(lFilter.get()); });
    const BagPtr lSet(QTalBase::CreatePropertyBag(iSource->GetBeginDelimiter(), iSource->GetEndDelimiter()));
    const std::wstring lExpected = OutcomeOf(lSet, [&](auto& oBag) { CopyAsText(iSource, oBag); });
    const bool lIsThrown = lExpected != Support::Describe(*lSet);
    EXPECT_EQ(lIsThrown ? lThrown : Support::Describe(*lClone),
              lIsThrown ? Support::Describe(*lClone) + lExpected.substr(Support::Describe(*lSet).size()) : lExpected);
}

void ExpectHandedOnAsText(const BagPtr& iSource)
{
    ExpectMergedAsText(iSource, L"++++", L"***");
    ExpectMergedAsText(iSource, L"<", L">");
    ExpectMergedAsText(iSource, iSource->GetBeginDelimiter(), iSource->GetEndDelimiter());
    ExpectFilteredAsText(iSource);
}

} // namespace

TEST(NestCopier, NestsOfManyLevels)
{
    ExpectHandedOnAsText(Read(L"EndDelimiter***BeginDelimiter++++***p++++1***n++++k++++v***m++++l++++w******o++++u++++"
                              L"x*********"));
}

// Nothing is set by an empty nest; one in which nothing is left stays in the nest that is handed on, not further in.
TEST(NestCopier, EmptyNests)
{
    const BagPtr lBag(QTalBase::CreatePropertyBag());
    lBag->SetProperty(L"a", L"b++++c++++d++++e++++f*************", true);
    lBag->SetProperty(L"g", L"EndDelimiter***BeginDelimiter++++***", true);
    lBag->SetProperty(L"h", L"i++++1***j++++k++++2******", true);
    NestOf(NestOf(lBag, L"h"), L"j")->RemoveProperty(L"k");
    lBag->SetProperty(L"l", L"m++++n++++o++++3*********", true);
    NestOf(NestOf(NestOf(lBag, L"l"), L"m"), L"n")->RemoveProperty(L"o");
    lBag->SetProperty(L"r", L"m++++n++++o++++q++++3************", true);
    NestOf(NestOf(NestOf(NestOf(lBag, L"r"), L"m"), L"n"), L"o")->RemoveProperty(L"q");
    ExpectHandedOnAsText(lBag);
}

// "+" at the end of a name is the begin delimiter's first, and a value may end as its delimiter begins.
TEST(NestCopier, RunsThatTouchTheirDelimiter)
{
    const BagPtr lBag(QTalBase::CreatePropertyBag());
    lBag->SetProperty(L"n", L"k++++v***", true);
    NestOf(lBag, L"n")->SetProperty(L"a+", L"1", false);
    ExpectHandedOnAsText(lBag);
    NestOf(lBag, L"n")->RemoveProperty(L"a+");
    NestOf(lBag, L"n")->SetProperty(L"b+", L"c++++2***", true);
    ExpectHandedOnAsText(lBag);
    NestOf(lBag, L"n")->RemoveProperty(L"b+");
    NestOf(lBag, L"n")->SetProperty(L"d+", L"e++++3***", true);
    NestOf(NestOf(lBag, L"n"), L"d+")->RemoveProperty(L"e");
    ExpectHandedOnAsText(lBag);
    const BagPtr lOther(QTalBase::CreatePropertyBag(L"<<", L">>"));
    lOther->SetProperty(L"n", L"k<<v>>", true);
    NestOf(lOther, L"n")->SetProperty(L"a", L"1>", false);
    NestOf(lOther, L"n")->SetProperty(L"b<c", L"<d>e", false);
    ExpectHandedOnAsText(lOther);
    NestOf(lOther, L"n")->RemoveProperty(L"a");
    ExpectHandedOnAsText(lOther);
}

TEST(NestCopier, ValuesThatAreEscapedOnTheWay)
{
    const BagPtr lBag(QTalBase::CreatePropertyBag(L"<", L">"));
    lBag->SetProperty(L"n", L"k<1*2+3>", true);
    lBag->SetProperty(L"m", L"k<&#42;>l<m<*>>", true);
    ExpectHandedOnAsText(lBag);
    lBag->ChangeDelimiters(L"++++", L"***");
    ExpectHandedOnAsText(lBag);
}

TEST(NestCopier, ValuesFromBeforeTheDefaultsWereTheseDelimiters)
{
    for (const wchar_t* lText : {L"k<1*2>", L"k<1+2>", L"k<12>"})
    {
        const BagPtr lBag(QTalBase::CreatePropertyBag(L"<", L">"));
        lBag->SetProperty(L"n", lText, true);
        const Support::RepointedDefaults lDefaults(L"<", L">");
        ExpectHandedOnAsText(lBag);
    }
}

TEST(NestCopier, NestsWithDelimitersOfTheirOwn)
{
    const BagPtr lBag =
        Read(L"EndDelimiter***BeginDelimiter++++***n++++k++++v***m++++l++++w*********o++++i++++1******");
    NestOf(NestOf(lBag, L"n"), L"m")->ChangeDelimiters(L"<", L">");
    NestOf(lBag, L"o")->ChangeDelimiters(L"[", L"]");
    ExpectHandedOnAsText(lBag);
    NestOf(NestOf(lBag, L"n"), L"m")->RemoveProperty(L"l");
    ExpectHandedOnAsText(lBag);
    const BagPtr lHalf = Read(L"EndDelimiter***BeginDelimiter++++***n++++k++++v***m++++l++++w*********");
    NestOf(NestOf(lHalf, L"n"), L"m")->ChangeDelimiters(L"++++", L"]]");
    ExpectHandedOnAsText(lHalf);
}

// Without its header, a text that begins with the header's first word would be taken to have one.
TEST(NestCopier, NamesThatBeginLikeAHeader)
{
    for (const wchar_t* lName : {L"EndDelimiter", L"End", L"EndDelimiters", L"Ends"})
    {
        const BagPtr lBag(QTalBase::CreatePropertyBag(L"<", L">"));
        lBag->SetProperty(L"n", L"k<v>", true);
        NestOf(lBag, L"n")->RemoveProperty(L"k");
        NestOf(lBag, L"n")->SetProperty(lName, L"BeginDelimiters", false);
        ExpectMergedAsText(lBag, L"<", L">");
        if (std::wstring(lName) != L"EndDelimiter" && std::wstring(lName) != L"EndDelimiters")
        {
            ExpectFilteredAsText(lBag);
        }
    }
}

TEST(NestCopier, AHeaderLikeNameIsReadAsOne)
{
    const BagPtr lBag(QTalBase::CreatePropertyBag(L"<", L">"));
    lBag->SetProperty(L"n", L"k<v>", true);
    NestOf(lBag, L"n")->RemoveProperty(L"k");
    NestOf(lBag, L"n")->SetProperty(L"EndDelimiterX", L"1", false);
    const std::unique_ptr<QDataType::StringCollection> lFilter(QDataType::CreateStringCollection());
    lFilter->Insert(L"n");
    EXPECT_THROW(BagPtr(lBag->FilteredClone(lFilter.get())), QTalBase::PropertyBagException);
}

// "e" is a letter of "BeginDelimiter": the header of such a text names other delimiters.
TEST(NestCopier, DelimitersThatNoHeaderCarries)
{
    const BagPtr lBag(QTalBase::CreatePropertyBag(L"<", L">"));
    lBag->SetProperty(L"o", L"k<v>l<m<w>>", true);
    lBag->ChangeDelimiters(L"<", L"e>");
    EXPECT_EQ(Support::DescribeContent(*lBag), L"{'o'={'k'='v' 'l'={'m'='w'}}}");
    ExpectHandedOnAsText(lBag);
}

TEST(NestCopier, NamesAndValuesThatAreEmpty)
{
    const BagPtr lBag(QTalBase::CreatePropertyBag(L"<", L">"));
    lBag->SetProperty(L"n", L"k<v>", true);
    NestOf(lBag, L"n")->SetProperty(L"", L"1", false);
    const BagPtr lTarget(QTalBase::CreatePropertyBag(L"<", L">"));
    EXPECT_THROW(lTarget->AddPropertyBag(lBag.get()), QTalBase::PropertyBagException);
}
