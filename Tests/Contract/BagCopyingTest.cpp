// FilteredClone of a class derived from the library's own: what its overriders answer is handed on as SetProperty and
// EmbedProperty would take it, and what they change meanwhile counts from then on. The plain implementation does the
// same, so every test runs on both.

#include "TalBase/PropertyBag.h"

#include "QDataType/StringCollection.h"

#include "TalBase/PrivateSource/PropertyBagImpl.h"
#include "Tests/Support/BagBuilder.h"
#include "Tests/Support/Describe.h"
#include "Tests/Support/PlainPropertyBag.h"
#include "Tests/Support/RepointedDefaults.h"

#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <string>

using namespace Support;

namespace
{

using QDataType::StringCollection;

std::unique_ptr<StringCollection> Filter(std::initializer_list<const wchar_t*> iNames)
{
    std::unique_ptr<StringCollection> lFilter(QDataType::CreateStringCollection());
    for (const wchar_t* lName : iNames)
    {
        lFilter->Insert(lName);
    }
    return lFilter;
}

// Writes a text that is given, whatever it holds.
template <class Bag>
class FixedText : public Bag
{
public:
    explicit FixedText(std::wstring iText) : mText(std::move(iText)) {}

    QBase::ReturnWString GetString(bool, const wchar_t*, const wchar_t*, bool) const override
    {
        return {mText.c_str(), mText.size()};
    }

private:
    std::wstring mText;
};

// Answers for some names with what it is told to, and does something before it is asked for one of them.
template <class Bag>
class Telling : public Bag
{
public:
    using Bag::Bag;

    QBase::ReturnWString GetProperty(const wchar_t* ipName) const override
    {
        hAct(ipName);
        const auto lValue = mValues.find(ipName);
        return lValue != mValues.end() ? QBase::ReturnWString(lValue->second.c_str(), lValue->second.size())
                                       : Bag::GetProperty(ipName);
    }

    bool IsPropertyEmbedded(const wchar_t* ipName) const override
    {
        return mNests.count(ipName) != 0 || Bag::IsPropertyEmbedded(ipName);
    }

    QBase::SmartPtrI<QTalBase::PropertyBag> GetPropertyBag(const wchar_t* ipName) const override
    {
        hAct(ipName);
        const auto lNest = mNests.find(ipName);
        return lNest != mNests.end() ? lNest->second : Bag::GetPropertyBag(ipName);
    }

    std::map<std::wstring, std::wstring> mValues;
    std::map<std::wstring, BagPtr> mNests;
    std::map<std::wstring, std::function<void()>> mActions;

private:
    void hAct(const wchar_t* ipName) const
    {
        const auto lAction = mActions.find(ipName);
        if (lAction != mActions.end())
        {
            lAction->second();
        }
    }
};

// A filter that does something before it gives a name.
class ActingFilter : public StringCollection
{
public:
    ActingFilter(std::initializer_list<const wchar_t*> iNames, std::function<void(unsigned long)> iAction)
        : mNames(Filter(iNames)), mAction(std::move(iAction))
    {
    }

    void Insert(const wchar_t* ipString) override
    {
        mNames->Insert(ipString);
    }

    void Insert(const StringCollection& iStrings) override
    {
        mNames->Insert(iStrings);
    }

    unsigned long GetCount() const override
    {
        return mNames->GetCount();
    }

    const wchar_t* GetString(unsigned long iIndex) const override
    {
        mAction(iIndex);
        return mNames->GetString(iIndex);
    }

    void Clear() override
    {
        mNames->Clear();
    }

private:
    std::unique_ptr<StringCollection> mNames;
    std::function<void(unsigned long)> mAction;
};

template <class Bag>
class BagCopying : public testing::Test
{
protected:
    std::wstring hCopy(const StringCollection& iFilter)
    {
        return Describe(BagPtr(mBag->FilteredClone(&iFilter)));
    }

    const QBase::SmartPtrI<Telling<Bag>> mBag = new Telling<Bag>();
};

using Implementations = testing::Types<QTalBase::PropertyBagImpl, Plain::PlainPropertyBag>;
TYPED_TEST_SUITE(BagCopying, Implementations);

} // namespace

TYPED_TEST(BagCopying, ValuesOfOverridersEndAtTheirFirstZero)
{
    this->mBag->mValues = {{L"a", std::wstring(L"1\0x", 3)}, {L"b", std::wstring(L"\0x", 2)}};
    EXPECT_EQ(this->hCopy(*Filter({L"a", L"b", L"c"})), L"'++++' '***' {'a'='1'}");
}

// It only removes, as SetProperty with the empty text does.
TYPED_TEST(BagCopying, ValueThatIsEmptyByItsFirstCharacterRemovesWhatTheNameHadBefore)
{
    this->mBag->mValues = {{L"a", L"1"}, {L"b", L"2"}};
    this->mBag->mActions[L"c"] = [&] { this->mBag->mValues[L"a"] = std::wstring(L"\0x", 2); };
    EXPECT_EQ(this->hCopy(*Filter({L"a", L"b", L"c", L"a"})), L"'++++' '***' {'b'='2'}");
}

TYPED_TEST(BagCopying, TextOfANestEndsAtItsFirstZero)
{
    const std::wstring lText(L"k++++v***\0l++++w***", 19);
    this->mBag->mNests[L"n"] = BagPtr(new FixedText<TypeParam>(lText));
    this->mBag->mNests[L"o"] = BagPtr(new FixedText<TypeParam>(std::wstring(L"\0x", 2)));
    EXPECT_EQ(this->hCopy(*Filter({L"n", L"o"})), L"'++++' '***' {'n'={'k'='v'}}");
}

TYPED_TEST(BagCopying, DefaultsAreThoseOfTheMomentAValueIsSet)
{
    const RepointedDefaults lBack(BEGIN, END); // when the test ends
    this->mBag->mValues = {{L"a", L"1*"}, {L"b", L"2*"}, {L"c", L"3*"}};
    this->mBag->mActions[L"b"] = [] { BEGIN = L"[["; };
    this->mBag->mActions[L"c"] = [] { BEGIN = L"++++"; };
    EXPECT_EQ(this->hCopy(*Filter({L"a", L"b", L"c"})), L"'++++' '***' {'a'='1&#42;' 'b'='2*' 'c'='3&#42;'}");
}

// The copy has the delimiters that the bag had in the beginning, and nests are written with the copy's.
TYPED_TEST(BagCopying, NestsAreWrittenWithTheDelimitersOfTheCopy)
{
    this->mBag->SetProperty(L"n", L"k++++v***", true);
    this->mBag->SetProperty(L"m", L"k++++w***", true);
    this->mBag->mActions[L"n"] = [&] { this->mBag->ChangeDelimiters(L"[[", L"]]"); };
    EXPECT_EQ(this->hCopy(*Filter({L"n", L"m"})), L"'++++' '***' {'n'={'k'='v'} 'm'={'k'='w'}}");
}

TYPED_TEST(BagCopying, PropertiesAreThoseOfTheMomentTheyAreAskedFor)
{
    this->mBag->SetProperty(L"a", L"1", false);
    this->mBag->SetProperty(L"b", L"2", false);
    this->mBag->mActions[L"a"] = [&] {
        this->mBag->RemoveProperty(L"b");
        this->mBag->SetProperty(L"c", L"3", false);
    };
    EXPECT_EQ(this->hCopy(*Filter({L"a", L"b", L"c"})), L"'++++' '***' {'a'='1' 'c'='3'}");
}

TYPED_TEST(BagCopying, FilterThatGrowsIsAppliedToItsEnd)
{
    const auto lFilter = Filter({L"a name that is longer than what lies in a text itself", L"b"});
    this->mBag->mValues = {
        {L"a name that is longer than what lies in a text itself", L"1"}, {L"b", L"2"}, {L"c", L"3"}};
    this->mBag->mActions[L"a name that is longer than what lies in a text itself"] = [&] { lFilter->Insert(L"c"); };
    EXPECT_EQ(this->hCopy(*lFilter),
              L"'++++' '***' {'a name that is longer than what lies in a text itself'='1' 'b'='2' 'c'='3'}");
}

TYPED_TEST(BagCopying, FilterThatIsEmptiedEndsTheCopy)
{
    const auto lFilter = Filter({L"a name that is longer than what lies in a text itself", L"b"});
    this->mBag->mValues = {{L"a name that is longer than what lies in a text itself", L"1"}, {L"b", L"2"}};
    this->mBag->mActions[L"a name that is longer than what lies in a text itself"] = [&] { lFilter->Clear(); };
    EXPECT_EQ(this->hCopy(*lFilter), L"'++++' '***' {'a name that is longer than what lies in a text itself'='1'}");
}

// Here the bag is of the library's own class, and only the filter is not.
TEST(BagCopyingByAFilterOfOnesOwn, WhatItChangesCountsFromThenOn)
{
    const RepointedDefaults lBack(BEGIN, END);
    for (const BagPtr& lBag : {BagPtr(QTalBase::CreatePropertyBag()), BagPtr(Plain::CreatePlainPropertyBag())})
    {
        lBag->SetProperty(L"a", L"1*", false);
        lBag->SetProperty(L"b", L"2*", false);
        const ActingFilter lFilter({L"a", L"b", L"c"}, [&](unsigned long iIndex) {
            if (iIndex == 1)
            {
                lBag->RemoveProperty(L"a");
                lBag->RemoveProperty(L"b");
                lBag->SetProperty(L"c", L"3*", false);
                BEGIN = L"[[";
            }
        });
        EXPECT_EQ(Describe(BagPtr(lBag->FilteredClone(&lFilter))), L"'++++' '***' {'a'='1&#42;' 'c'='3&#42;'}");
        BEGIN = L"++++";
    }
}

TEST(BagCopyingByAFilterOfOnesOwn, WhatItMovesIsFoundWhereItIs)
{
    for (const BagPtr& lBag : {BagPtr(QTalBase::CreatePropertyBag()), BagPtr(Plain::CreatePlainPropertyBag())})
    {
        for (int lIndex = 0; lIndex < 40; ++lIndex)
        {
            lBag->SetProperty((L"p" + std::to_wstring(lIndex)).c_str(), std::to_wstring(lIndex).c_str(), false);
        }
        const ActingFilter lFilter({L"p20", L"p39", L"p38"}, [&](unsigned long iIndex) {
            if (iIndex == 1)
            {
                lBag->MoveProperty(L"p39", 5);
                lBag->RemoveProperty(L"p0");
            }
        });
        EXPECT_EQ(Describe(BagPtr(lBag->FilteredClone(&lFilter))), L"'++++' '***' {'p20'='20' 'p39'='39' 'p38'='38'}");
    }
}
