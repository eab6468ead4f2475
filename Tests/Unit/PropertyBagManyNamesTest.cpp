// From some dozens of names on, tables find them; the results are those of looking through the entries in order.

#include "TalBase/PropertyBag.h"

#include "QDataType/StringCollection.h"
#include "TalBase/PrivateSource/PropertyBagImpl.h"

#include "Tests/Support/BagBuilder.h"
#include "Tests/Support/Describe.h"
#include "Tests/Support/RepeatingBag.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

using QTalBase::PropertyBagImpl;
using namespace Support;

namespace
{

std::wstring Numbered(const wchar_t* ipName, unsigned int iNumber)
{
    return ipName + std::to_wstring(iNumber);
}

// "p0++++0***p1++++1***" and so on up to, without, iStop.
std::wstring PlainText(unsigned int iStart, unsigned int iStop)
{
    std::wstring lText;
    for (unsigned int lIndex = iStart; lIndex < iStop; ++lIndex)
    {
        lText += Numbered(L"p", lIndex) + L"++++" + std::to_wstring(lIndex) + L"***";
    }
    return lText;
}

// " 'p0'='0' 'p1'='1'" and so on.
std::wstring PlainDescription(unsigned int iStart, unsigned int iStop)
{
    std::wstring lText;
    for (unsigned int lIndex = iStart; lIndex < iStop; ++lIndex)
    {
        lText += L" 'p" + std::to_wstring(lIndex) + L"'='" + std::to_wstring(lIndex) + L"'";
    }
    return lText;
}

// Plain properties p0, p1 ... and then nests n0 = {k=0}, n1 = {k=1} ..., or the nests in reverse order.
BagPtr ManyOfBoth(unsigned int iPlainCount, unsigned int iNestCount, bool iIsReverse = false)
{
    const BagPtr lBag = ReadBag(gHeader + PlainText(0, iPlainCount));
    for (unsigned int lStep = 0; lStep < iNestCount; ++lStep)
    {
        const unsigned int lIndex = iIsReverse ? iNestCount - 1 - lStep : lStep;
        lBag->SetProperty(Numbered(L"n", lIndex).c_str(), (L"k++++" + std::to_wstring(lIndex) + L"***").c_str(), true);
    }
    return lBag;
}

std::unique_ptr<QDataType::StringCollection> Filter(const std::vector<std::wstring>& iNames)
{
    std::unique_ptr<QDataType::StringCollection> lFilter(QDataType::CreateStringCollection());
    for (const std::wstring& lName : iNames)
    {
        lFilter->Insert(lName.c_str());
    }
    return lFilter;
}

// Answers from a script what the property x is: a plain value, or the text of a nest.
class FickleBag : public PropertyBagImpl
{
public:
    struct Answer
    {
        bool mIsNest;
        const wchar_t* mText;
    };

    explicit FickleBag(std::vector<Answer> iAnswers) : mAnswers(std::move(iAnswers)) {}

    bool IsPropertyEmbedded(const wchar_t* ipName) const override
    {
        return ipName == std::wstring(L"x") ? mAnswers.at(mAsked).mIsNest : PropertyBagImpl::IsPropertyEmbedded(ipName);
    }

    QBase::ReturnWString GetProperty(const wchar_t* ipName) const override
    {
        return ipName == std::wstring(L"x") ? mAnswers.at(mAsked++).mText : PropertyBagImpl::GetProperty(ipName);
    }

    BagPtr GetPropertyBag(const wchar_t*) const override
    {
        return ReadBag(std::wstring(gHeader) + mAnswers.at(mAsked++).mText);
    }

private:
    std::vector<Answer> mAnswers;
    mutable std::size_t mAsked = 0;
};

} // namespace

TEST(ManyNames, AddStringReplacesPropertiesOfEitherKind)
{
    const BagPtr lBag = ManyOfBoth(40, 3);
    lBag->AddString(L"p7++++new***n1++++k++++w******n0++++plain***p9++++k++++v******");
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {" + PlainDescription(0, 7).substr(1) + L" 'p8'='8'" +
                                  PlainDescription(10, 40) +
                                  L" 'p7'='new' 'n0'='plain' 'n2'={'k'='2'} 'n1'={'k'='w'} 'p9'={'k'='v'}}");
}

// So many at once that a table finds them.
TEST(ManyNames, AddStringOfManyReplacesPropertiesOfEitherKind)
{
    const BagPtr lBag = ManyOfBoth(40, 3);
    lBag->AddString((PlainText(100, 140) + L"p7++++new***n1++++k++++w******n0++++plain***p9++++k++++v******").c_str());
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {" + PlainDescription(0, 7).substr(1) + L" 'p8'='8'" +
                                  PlainDescription(10, 40) + PlainDescription(100, 140) +
                                  L" 'p7'='new' 'n0'='plain' 'n2'={'k'='2'} 'n1'={'k'='w'} 'p9'={'k'='v'}}");
}

// A clone of a derived class's bag may hold a name twice. Then the first plain property and the first nest of a name
// go; and otherwise everything is as in any other bag.
TEST(ManyNames, AddStringOfManyIntoACloneOfADerivedClass)
{
    const std::wstring lText = PlainText(0, 40) + L"n++++k++++w******";
    const BagPtr lTwice =
        RepeatingBag().Plain(L"p0", L"a").Plain(L"p0", L"b").Plain(L"n", L"c").Nest(L"n", L"k++++v***").Cloned();
    lTwice->AddString(lText.c_str());
    EXPECT_EQ(Describe(lTwice), L"'++++' '***' {'p0'='b'" + PlainDescription(0, 40) + L" 'n'={'k'='w'}}");

    const BagPtr lPlain = RepeatingBag().Plain(L"p0", L"a").Plain(L"p0", L"b").Plain(L"q", L"c").Cloned();
    lPlain->AddString(lText.c_str());
    EXPECT_EQ(Describe(lPlain), L"'++++' '***' {'p0'='b' 'q'='c'" + PlainDescription(0, 40) + L" 'n'={'k'='w'}}");
    EXPECT_FALSE(*lPlain == *lPlain) << "the second value of p0 is compared with the first";

    const BagPtr lBoth = RepeatingBag().Plain(L"n", L"c").Nest(L"n", L"k++++v***").Cloned();
    lBoth->AddString(lText.c_str());
    EXPECT_EQ(Describe(lBoth), L"'++++' '***' {" + PlainDescription(0, 40).substr(1) + L" 'n'={'k'='w'}}");

    const BagPtr lNests = RepeatingBag().Nest(L"n", L"k++++v***").Nest(L"n", L"k++++x***").Cloned();
    lNests->AddString(lText.c_str());
    EXPECT_EQ(Describe(lNests),
              L"'++++' '***' {" + PlainDescription(0, 40).substr(1) + L" 'n'={'k'='x'} 'n'={'k'='w'}}");

    const BagPtr lOnce = RepeatingBag().Plain(L"p0", L"a").Plain(L"q", L"b").Nest(L"n", L"k++++v***").Cloned();
    lOnce->AddString(lText.c_str());
    lOnce->AddString(lText.c_str());
    EXPECT_EQ(Describe(lOnce), L"'++++' '***' {'q'='b'" + PlainDescription(0, 40) + L" 'n'={'k'='w'}}");
}

TEST(ManyNames, AddPropertyBagReplacesPropertiesOfEitherKind)
{
    const BagPtr lBag = ManyOfBoth(33, 2);
    lBag->AddPropertyBag(
        BagBuilder().Set(L"p32", L"new").Set(L"n1", L"plain").Nest(L"n0", BagBuilder().Set(L"k", L"w")).get());
    EXPECT_EQ(Describe(lBag),
              L"'++++' '***' {" + PlainDescription(0, 32).substr(1) + L" 'p32'='new' 'n1'='plain' 'n0'={'k'='w'}}");
}

// The nest of the merged bag that holds this bag is handed on with what this bag has become meanwhile.
TEST(ManyNames, AddPropertyBagOfABagAroundThisOne)
{
    std::wstring lOutcomes[2];
    for (std::wstring& lOutcome : lOutcomes)
    {
        const BagPtr lOuter =
            ReadBag(std::wstring(gHeader) + L"p3++++new***a++++b++++" + PlainText(0, 40) + L"c++++d++++x************");
        const BagPtr lInner = lOuter->GetPropertyBag(L"a")->GetPropertyBag(L"b")->GetPropertyBag(L"c");
        lInner->AddString(PlainText(0, 40).c_str());
        if (&lOutcome == lOutcomes)
        {
            lInner->AddPropertyBag(lOuter.get());
        }
        for (unsigned int lIndex = 0; &lOutcome != lOutcomes && lIndex < lOuter->GetCount(); ++lIndex)
        {
            lInner->SetProperty(lOuter->GetName(lIndex).c_str(), lOuter->GetValue(lIndex).c_str(),
                                lOuter->IsEmbedded(lIndex));
        }
        lOutcome = Describe(lOuter);
    }
    EXPECT_EQ(lOutcomes[0], lOutcomes[1]);
}

TEST(ManyNames, OfRepeatedNamesInATextTheLastCounts)
{
    for (const unsigned int lCount : {60U, 64U, 65U, 200U})
    {
        const std::wstring lText = L"p3++++k++++early******p5++++early***" + PlainText(0, lCount) +
                                   L"p1++++late***p2++++k++++late******p0++++k++++first******p0++++second***";
        const std::wstring lExpected =
            L"'p3'='3' 'p4'='4'" + PlainDescription(5, lCount) + L" 'p1'='late' 'p0'='second' 'p2'={'k'='late'}}";
        EXPECT_EQ(Describe(ReadBag(gHeader + lText)), L"'++++' '***' {" + lExpected) << lCount;
        EXPECT_EQ(Describe(ReadBag(gHeader + (L"n++++" + lText) + L"***")), L"'++++' '***' {'n'={" + lExpected + L"}")
            << lCount;
    }
}

TEST(ManyNames, EqualsAndIsSubsetFindNestsWhereverTheyStand)
{
    for (const unsigned int lCount : {15U, 16U, 17U, 40U})
    {
        const BagPtr lBag = ManyOfBoth(2, lCount);
        const BagPtr lReverse = ManyOfBoth(2, lCount, true);
        EXPECT_TRUE(*lBag == *lReverse) << lCount;
        EXPECT_TRUE(lBag->IsSubset(lReverse.get())) << lCount;
        lReverse->SetProperty(L"n0", L"", true);
        lReverse->SetProperty(L"other", L"k++++0***", true);
        EXPECT_FALSE(*lBag == *lReverse) << lCount;
        EXPECT_FALSE(*lReverse == *lBag) << lCount;
        EXPECT_FALSE(lBag->IsSubset(lReverse.get())) << lCount;
    }
}

TEST(ManyNames, EqualsAndIsSubsetFindPlainPropertiesWhereverTheyStand)
{
    for (const unsigned int lCount : {15U, 16U, 17U, 40U})
    {
        const BagPtr lBag = ReadBag(gHeader + PlainText(0, lCount));
        const BagPtr lTurned = ReadBag(gHeader + PlainText(1, lCount) + PlainText(0, 1));
        EXPECT_TRUE(*lBag == *lTurned) << lCount;
        EXPECT_TRUE(lBag->IsSubset(lTurned.get())) << lCount;
        lTurned->SetProperty(L"p0", L"other", false);
        EXPECT_FALSE(*lBag == *lTurned) << lCount;
        EXPECT_FALSE(lBag->IsSubset(lTurned.get())) << lCount;
        lTurned->SetProperty(L"p0", L"k++++0***", true);
        EXPECT_FALSE(*lBag == *lTurned) << lCount;
        EXPECT_FALSE(*lTurned == *lBag) << lCount;
        EXPECT_FALSE(lBag->IsSubset(lTurned.get())) << lCount;
    }
}

TEST(ManyNames, FilteredCloneInTheFiltersOrder)
{
    const BagPtr lBag = ManyOfBoth(20, 20);
    std::vector<std::wstring> lNames;
    for (unsigned int lIndex = 20; lIndex-- > 0;)
    {
        lNames.insert(lNames.end(), {Numbered(L"n", lIndex), Numbered(L"absent", lIndex), Numbered(L"p", lIndex)});
    }
    lNames.insert(lNames.end(), {L"p19", L"n19"});
    std::wstring lExpected;
    for (const std::pair<const wchar_t*, bool>& lKind : {std::pair(L"p", false), std::pair(L"n", true)})
    {
        for (unsigned int lStep = 0; lStep < 20; ++lStep)
        {
            const unsigned int lIndex = lStep == 19 ? 19 : 18 - lStep;
            const std::wstring lValue = L"'" + std::to_wstring(lIndex) + L"'";
            lExpected +=
                L" '" + Numbered(lKind.first, lIndex) + L"'=" + (lKind.second ? L"{'k'=" + lValue + L"}" : lValue);
        }
    }
    EXPECT_EQ(Describe(BagPtr(lBag->FilteredClone(Filter(lNames).get()))),
              L"'++++' '***' {" + lExpected.substr(1) + L"}");
}

TEST(ManyNames, FilteredCloneAppliesEachAnswerOfADerivedClass)
{
    const FickleBag::Answer lPlain{false, L"1"};
    const FickleBag::Answer lNest{true, L"k++++v***"};
    const FickleBag::Answer lEmptyNest{true, L""};
    const std::pair<std::vector<FickleBag::Answer>, const wchar_t*> lCases[] = {
        {{lPlain, lNest}, L"'++++' '***' {'x'={'k'='v'}}"},
        {{lNest, lPlain}, L"'++++' '***' {'x'='1'}"},
        {{lPlain, lEmptyNest}, L"'++++' '***' {}"},
        {{lNest, lEmptyNest}, L"'++++' '***' {}"},
        {{lPlain, lEmptyNest, lPlain}, L"'++++' '***' {'x'='1'}"},
        {{lNest, lEmptyNest, lNest, lEmptyNest, lPlain, lNest}, L"'++++' '***' {'x'={'k'='v'}}"},
    };
    for (const auto& [lAnswers, lExpected] : lCases)
    {
        std::vector<std::wstring> lFew(lAnswers.size(), L"x");
        EXPECT_EQ(Describe(BagPtr(FickleBag(lAnswers).FilteredClone(Filter(lFew).get()))), lExpected);
        std::vector<std::wstring> lMany = lFew;
        lMany.resize(100, L"absent");
        EXPECT_EQ(Describe(BagPtr(FickleBag(lAnswers).FilteredClone(Filter(lMany).get()))), lExpected);
    }
}
