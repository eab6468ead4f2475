// Comparing and cloning ask bags through their virtual operations: this bag may be a class derived from the library's
// own, the other one any implementation of the interface.

#include "TalBase/PropertyBag.h"

#include "QDataType/StringCollection.h"

#include "Tests/Support/BagBuilder.h"
#include "Tests/Support/Describe.h"
#include "Tests/Support/ForeignBag.h"
#include "Tests/Support/RecordingBag.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

using QTalBase::PropertyBagImpl;
using namespace Support;

namespace
{

class BagComparing : public testing::Test
{
protected:
    // A recording bag that holds a plain property a and a nested bag n, with nothing recorded yet.
    BagComparing()
    {
        mBag->SetProperty(L"a", L"1*", false);
        mBag->SetProperty(L"n", L"k++++v***", true);
        mLog.clear();
    }

    CallLog mLog;
    const QBase::SmartPtrI<RecordingBag> mBag = new RecordingBag(mLog);
    const QBase::SmartPtrI<ForeignBag> mOther = new ForeignBag(mLog);
};

// The calls of one object. Where an operation asks two bags for the same thing, which one it asks first is open.
CallLog Of(const CallLog& iLog, const std::wstring& iObject)
{
    CallLog lCalls;
    for (const std::wstring& lCall : iLog)
    {
        if (lCall.compare(0, iObject.size() + 1, iObject + L".") == 0)
        {
            lCalls.push_back(lCall.substr(iObject.size() + 1));
        }
    }
    return lCalls;
}

} // namespace

TEST_F(BagComparing, EqualsAsksTheOtherByName)
{
    const BagPtr lNested = new RecordingBag(mLog, L"nested", L"(", L")");
    lNested->SetProperty(L"k", L"v", false);
    mOther->Nest(L"n", lNested).Set(L"a", L"1&#42;");
    mLog.clear();
    const PropertyBagImpl& lBag = *mBag;
    EXPECT_TRUE(lBag.operator==(*mOther));
    EXPECT_EQ(Of(mLog, L"other"), (CallLog{L"GetCount", L"GetProperty(a)", L"IsPropertyEmbedded(a)", L"GetProperty(n)",
                                           L"IsPropertyEmbedded(n)", L"GetPropertyBag(n)"}));
    EXPECT_EQ(Of(mLog, L"bag"), (CallLog{L"operator==", L"GetCount", L"GetName(0)", L"GetCount", L"IsEmbedded(0)",
                                         L"GetCount", L"GetValue(0)", L"GetCount", L"GetName(1)", L"GetCount",
                                         L"IsEmbedded(1)", L"GetCount", L"GetValuePropertyBag(1)", L"GetCount"}));
    EXPECT_EQ(Of(mLog, L"nested"), (CallLog{L"operator==", L"GetCount", L"GetName(0)", L"GetCount", L"IsEmbedded(0)",
                                            L"GetCount", L"GetValue(0)", L"GetCount"}));
}

TEST_F(BagComparing, EqualsBelievesTheOthersNestedBag)
{
    const QBase::SmartPtrI<ForeignBag> lNested = new ForeignBag(mLog, L"nested");
    mOther->Set(L"a", L"1&#42;").Entries().push_back({L"n", L"", lNested});
    const PropertyBagImpl& lBag = *mBag;
    EXPECT_FALSE(lBag.operator==(*mOther));
    EXPECT_EQ(mLog.back(), L"nested.operator==");
    lNested->SetEqualAnswer(true);
    EXPECT_TRUE(lBag.operator==(*mOther));
}

TEST_F(BagComparing, EqualsOfDifferentCountsLooksNoFurther)
{
    mOther->Set(L"a", L"1");
    const PropertyBagImpl& lBag = *mBag;
    EXPECT_FALSE(lBag.operator==(*mOther));
    EXPECT_EQ(Of(mLog, L"bag"), (CallLog{L"operator==", L"GetCount"}));
    EXPECT_EQ(Of(mLog, L"other"), (CallLog{L"GetCount"}));
}

TEST_F(BagComparing, EqualsPassesOnWhatTheOtherThrows)
{
    class Failing : public ForeignBag
    {
    public:
        using ForeignBag::ForeignBag;
        QBase::ReturnWString GetProperty(const wchar_t*) const override
        {
            throw std::runtime_error("no answer");
        }
    };
    const QBase::SmartPtrI<Failing> lFailing = new Failing(mLog);
    lFailing->Set(L"a", L"1").Set(L"b", L"2");
    const PropertyBagImpl& lBag = *mBag;
    EXPECT_THROW(static_cast<void>(lBag.operator==(*lFailing)), std::runtime_error);
    EXPECT_THROW(static_cast<void>(lBag.IsSubset(lFailing.get())), std::runtime_error);
}

TEST_F(BagComparing, IsSubsetAsksBothByName)
{
    const QBase::SmartPtrI<ForeignBag> lNested = new ForeignBag(mLog, L"nested");
    mOther->Set(L"a", L"1*").Entries().push_back({L"n", L"", lNested});
    EXPECT_TRUE(mBag->IsSubset(mOther.get()));
    EXPECT_EQ(Of(mLog, L"other"),
              (CallLog{L"GetCount", L"GetName(0)", L"IsPropertyEmbedded(a)", L"IsEmbedded(0)", L"GetProperty(a)",
                       L"GetName(1)", L"IsPropertyEmbedded(n)", L"IsEmbedded(1)", L"GetPropertyBag(n)"}));
    EXPECT_EQ(Of(mLog, L"bag"), (CallLog{L"IsSubset", L"GetCount", L"IsPropertyEmbedded(a)", L"GetProperty(a)",
                                         L"IsPropertyEmbedded(n)", L"GetPropertyBag(n)"}));
    EXPECT_EQ(Of(mLog, L"nested"), (CallLog{L"GetCount"}));
}

TEST_F(BagComparing, IsSubsetOfMorePropertiesLooksAtNoName)
{
    mOther->Set(L"a", L"1*").Set(L"b", L"2").Set(L"c", L"3");
    EXPECT_FALSE(mBag->IsSubset(mOther.get()));
    EXPECT_EQ(Of(mLog, L"bag"), (CallLog{L"IsSubset", L"GetCount"}));
    EXPECT_EQ(Of(mLog, L"other"), (CallLog{L"GetCount"}));
}

TEST_F(BagComparing, IsSubsetOfAnotherKindLooksNoFurther)
{
    // A nest where this bag has a plain property, and the other way round.
    mOther->Nest(L"a", BagBuilder().Set(L"k", L"v")).Set(L"n", L"1");
    EXPECT_FALSE(mBag->IsSubset(mOther.get()));
    EXPECT_EQ(mLog.back(), L"other.IsPropertyEmbedded(a)");
    mOther->Entries().erase(mOther->Entries().begin());
    EXPECT_FALSE(mBag->IsSubset(mOther.get()));
    EXPECT_EQ(mLog.back(), L"other.IsPropertyEmbedded(n)");
}

TEST_F(BagComparing, IsSubsetOfANestThatHoldsMoreIsFalse)
{
    mOther->Nest(L"n", BagBuilder().Set(L"k", L"v").Set(L"l", L"w")).Set(L"a", L"1*");
    EXPECT_FALSE(mBag->IsSubset(mOther.get()));
    EXPECT_EQ(mLog.back(), L"other.GetPropertyBag(n)");
}

TEST_F(BagComparing, CloneCallsNothing)
{
    const BagPtr lClone = mBag->Clone();
    EXPECT_EQ(mLog, (CallLog{L"bag.Clone"}));
    EXPECT_EQ(Describe(lClone), L"'++++' '***' {'a'='1&#42;' 'n'={'k'='v'}}");
    mBag->MoveProperty(L"a", 0);
    mBag->ChangeDelimiters(L"<", L">");
    EXPECT_EQ(mLog, (CallLog{L"bag.Clone", L"bag.MoveProperty(a, 0)", L"bag.ChangeDelimiters(<, >)"}));
}

TEST_F(BagComparing, FilteredCloneReadsByName)
{
    const std::unique_ptr<QDataType::StringCollection> lFilter(QDataType::CreateStringCollection());
    lFilter->Insert(L"n");
    lFilter->Insert(L"a");
    lFilter->Insert(L"absent");
    const BagPtr lClone = mBag->FilteredClone(lFilter.get());
    EXPECT_EQ(mLog, (CallLog{L"bag.FilteredClone", L"bag.IsPropertyEmbedded(n)", L"bag.GetPropertyBag(n)",
                             L"bag.IsPropertyEmbedded(a)", L"bag.GetProperty(a)", L"bag.IsPropertyEmbedded(absent)",
                             L"bag.GetProperty(absent)"}));
    EXPECT_EQ(Describe(lClone), L"'++++' '***' {'a'='1&#42;' 'n'={'k'='v'}}");
}

TEST_F(BagComparing, FilteredCloneKeepsSensitiveProperties)
{
    const std::unique_ptr<QDataType::StringCollection> lFilter(QDataType::CreateStringCollection());
    lFilter->Insert(L"n");
    mBag->GetPropertyBag(L"n")->SetProperty(L"FTPServerPassword", L"secret", false);
    const BagPtr lClone = mBag->FilteredClone(lFilter.get());
    EXPECT_EQ(Describe(lClone), L"'++++' '***' {'n'={'k'='v' 'FTPServerPassword'='secret'}}");
}

TEST_F(BagComparing, FilteredCloneLeavesOutANullBag)
{
    class Withholding : public PropertyBagImpl
    {
    public:
        QBase::SmartPtrI<QTalBase::PropertyBag> GetPropertyBag(const wchar_t*) const override
        {
            return nullptr;
        }
    };
    Withholding lBag;
    lBag.SetProperty(L"n", L"k++++v***", true);
    lBag.SetProperty(L"a", L"1", false);
    const std::unique_ptr<QDataType::StringCollection> lFilter(QDataType::CreateStringCollection());
    lFilter->Insert(L"n");
    lFilter->Insert(L"a");
    const BagPtr lClone = lBag.FilteredClone(lFilter.get());
    EXPECT_EQ(Describe(lClone), L"'++++' '***' {'a'='1'}");
}
