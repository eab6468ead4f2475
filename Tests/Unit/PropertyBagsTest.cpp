#include "TalBase/PropertyBags.h"

#include "TalBase/PrivateSource/PropertyBagsImpl.h"
#include "Tests/Support/Describe.h"
#include "Tests/Support/Expect.h"
#include "Tests/Support/TracedBag.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

using QBase::SmartPtrI;
using QTalBase::CreatePropertyBag;
using QTalBase::CreatePropertyBags;
using QTalBase::PropertyBag;
using QTalBase::PropertyBagException;
using QTalBase::PropertyBags;
using QTalBase::PropertyBagsImpl;
using QTalBase::PropertyBagUserErrorException;
using Support::CallLog;
using Support::TracedBag;

using Support::BagPtr;
using BagsPtr = SmartPtrI<PropertyBags>;

const wchar_t* const gNameOutOfRange = L"QTalBase::PropertyBagsImpl::GetName; index is out of range";
const wchar_t* const gBagOutOfRange = L"QTalBase::PropertyBagsImpl::GetPropertyBag; index is out of range";

BagPtr BagWith(const wchar_t* ipName, const wchar_t* ipValue)
{
    BagPtr lBag(CreatePropertyBag());
    lBag->SetProperty(ipName, ipValue, false);
    return lBag;
}

TEST(PropertyBags, NewCollectionIsEmpty)
{
    const BagsPtr lBags(CreatePropertyBags());
    EXPECT_EQ(lBags->GetCount(), 0U);
    EXPECT_MESSAGE(lBags->GetName(0), PropertyBagUserErrorException, gNameOutOfRange);
    EXPECT_MESSAGE(lBags->GetPropertyBag(0), PropertyBagUserErrorException, gBagOutOfRange);
    EXPECT_FALSE(lBags->GetPropertyBagByName(L""));
}

TEST(PropertyBags, AddAppendsAtTheEnd)
{
    const BagsPtr lBags(CreatePropertyBags());
    lBags->Add(L"b", BagWith(L"n", L"1").get());
    lBags->Add(L"a", BagWith(L"n", L"2").get());
    ASSERT_EQ(lBags->GetCount(), 2U);
    EXPECT_STREQ(lBags->GetName(0), L"b");
    EXPECT_STREQ(lBags->GetName(1), L"a");
    EXPECT_STREQ(lBags->GetPropertyBag(0)->GetProperty(L"n").c_str(), L"1");
    EXPECT_STREQ(lBags->GetPropertyBag(1)->GetProperty(L"n").c_str(), L"2");
}

TEST(PropertyBags, AddNullBagThrowsAndChangesNothing)
{
    const BagsPtr lBags(CreatePropertyBags());
    lBags->Add(L"a", BagWith(L"n", L"1").get());
    EXPECT_MESSAGE(lBags->Add(L"b", nullptr), PropertyBagUserErrorException,
                   L"QTalBase::PropertyBagsImpl::Add; ipPropertyBag cannot be NULL");
    EXPECT_EQ(lBags->GetCount(), 1U);
}

TEST(PropertyBags, ErrorsAreCaughtAsPropertyBagExceptionAndAsMessage)
{
    const BagsPtr lBags(CreatePropertyBags());
    EXPECT_THROW(lBags->Add(L"b", nullptr), PropertyBagUserErrorException);
    EXPECT_THROW(lBags->GetName(0), PropertyBagException);
    EXPECT_THROW(lBags->GetPropertyBag(0), QBase::Message);
}

TEST(PropertyBags, AddSameNameTwiceKeepsBothAndTheFirstIsFoundByName)
{
    const BagsPtr lBags(CreatePropertyBags());
    lBags->Add(L"job", BagWith(L"n", L"1").get());
    lBags->Add(L"job", BagWith(L"n", L"2").get());
    EXPECT_EQ(lBags->GetCount(), 2U);
    EXPECT_STREQ(lBags->GetPropertyBagByName(L"job")->GetProperty(L"n").c_str(), L"1");
    EXPECT_STREQ(lBags->GetPropertyBag(1)->GetProperty(L"n").c_str(), L"2");
}

TEST(PropertyBags, AddAcceptsTheEmptyNameAndNamesWithDelimiters)
{
    const BagsPtr lBags(CreatePropertyBags());
    lBags->Add(L"", BagWith(L"n", L"1").get());
    lBags->Add(L"++++***", BagWith(L"n", L"2").get());
    EXPECT_STREQ(lBags->GetName(0), L"");
    EXPECT_STREQ(lBags->GetName(1), L"++++***");
    EXPECT_STREQ(lBags->GetPropertyBagByName(L"")->GetProperty(L"n").c_str(), L"1");
    EXPECT_STREQ(lBags->GetPropertyBagByName(L"++++***")->GetProperty(L"n").c_str(), L"2");
}

TEST(PropertyBags, AddCopiesTheName)
{
    const BagsPtr lBags(CreatePropertyBags());
    std::wstring lName(L"before");
    lBags->Add(lName.c_str(), BagWith(L"n", L"1").get());
    lName.replace(0, 6, L"after!");
    EXPECT_STREQ(lBags->GetName(0), L"before");
}

TEST(PropertyBags, AddSharesTheBagWithOneMoreReferenceAndClonesNothing)
{
    CallLog lLog;
    const auto lTraced = new TracedBag(lLog, L"bag");
    const BagPtr lOwner(lTraced);
    {
        const BagsPtr lBags(CreatePropertyBags());
        lBags->Add(L"a", lTraced);
        EXPECT_EQ(lTraced->GetReferences(), 2);
        lBags->Add(L"b", lTraced);
        EXPECT_EQ(lTraced->GetReferences(), 3);
        EXPECT_EQ(lLog, CallLog());
    }
    EXPECT_EQ(lTraced->GetReferences(), 1);
}

TEST(PropertyBags, IndexEqualToTheCountIsRefused)
{
    const BagsPtr lBags(CreatePropertyBags());
    lBags->Add(L"a", BagWith(L"n", L"1").get());
    EXPECT_MESSAGE(lBags->GetName(1), PropertyBagUserErrorException, gNameOutOfRange);
    EXPECT_MESSAGE(lBags->GetName(4294967295U), PropertyBagUserErrorException, gNameOutOfRange);
    EXPECT_MESSAGE(lBags->GetPropertyBag(1), PropertyBagUserErrorException, gBagOutOfRange);
    EXPECT_MESSAGE(lBags->GetPropertyBag(4294967295U), PropertyBagUserErrorException, gBagOutOfRange);
}

class BoastfulBags : public PropertyBagsImpl
{
public:
    unsigned int GetCount() const override
    {
        return 100;
    }
};

TEST(PropertyBags, IndexWithoutEntryThrowsWhateverAnOverriddenGetCountAnswers)
{
    const BagsPtr lBags(new BoastfulBags);
    EXPECT_MESSAGE(lBags->GetName(50), PropertyBagUserErrorException, gNameOutOfRange);
    EXPECT_MESSAGE(lBags->GetPropertyBag(50), PropertyBagUserErrorException, gBagOutOfRange);
}

TEST(PropertyBags, GetPropertyBagHandsOutACloneMadeByTheBagItself)
{
    CallLog lLog;
    const BagsPtr lBags(CreatePropertyBags());
    const auto lTraced = new TracedBag(lLog, L"bag");
    lBags->Add(L"a", lTraced);
    const BagPtr lByIndex = lBags->GetPropertyBag(0);
    const BagPtr lByName = lBags->GetPropertyBagByName(L"a");
    EXPECT_EQ(lLog, (CallLog{L"bag.Clone", L"bag.Clone"}));
    EXPECT_NE(lByIndex.get(), lTraced);
    EXPECT_NE(lByName.get(), lTraced);
    EXPECT_NE(lByIndex, lByName);
    EXPECT_EQ(lTraced->GetReferences(), 1);
}

TEST(PropertyBags, ChangingTheBagHandedOutLeavesTheCollectionAlone)
{
    const BagsPtr lBags(CreatePropertyBags());
    lBags->Add(L"a", BagWith(L"n", L"1").get());
    lBags->GetPropertyBag(0)->SetProperty(L"n", L"2", false);
    lBags->GetPropertyBagByName(L"a")->RemoveProperty(L"n");
    EXPECT_STREQ(lBags->GetPropertyBag(0)->GetProperty(L"n").c_str(), L"1");
}

TEST(PropertyBags, CloneHandedOutSharesTheNestedBags)
{
    const BagPtr lBag(CreatePropertyBag());
    lBag->EmbedProperty(L"sub", BagWith(L"n", L"1").get());
    const BagsPtr lBags(CreatePropertyBags());
    lBags->Add(L"a", lBag.get());
    EXPECT_EQ(lBags->GetPropertyBag(0)->GetPropertyBag(L"sub"), lBag->GetPropertyBag(L"sub"));
    lBags->GetPropertyBagByName(L"a")->GetPropertyBag(L"sub")->SetProperty(L"n", L"2", false);
    EXPECT_STREQ(lBags->GetPropertyBag(0)->GetPropertyBag(L"sub")->GetProperty(L"n").c_str(), L"2");
}

TEST(PropertyBags, CloneHandedOutOutlivesTheCollection)
{
    BagPtr lBag;
    {
        const BagsPtr lBags(CreatePropertyBags());
        lBags->Add(L"a", BagWith(L"n", L"1").get());
        lBag = lBags->GetPropertyBag(0);
    }
    EXPECT_STREQ(lBag->GetProperty(L"n").c_str(), L"1");
}

TEST(PropertyBags, BagChangedByItsOwnerIsSeenChanged)
{
    const BagsPtr lBags(CreatePropertyBags());
    const BagPtr lBag = BagWith(L"n", L"1");
    lBags->Add(L"a", lBag.get());
    const BagPtr lBefore = lBags->GetPropertyBag(0);
    lBag->SetProperty(L"n", L"2", false);
    EXPECT_STREQ(lBefore->GetProperty(L"n").c_str(), L"1");
    EXPECT_STREQ(lBags->GetPropertyBag(0)->GetProperty(L"n").c_str(), L"2");
    EXPECT_STREQ(lBags->GetPropertyBagByName(L"a")->GetProperty(L"n").c_str(), L"2");
}

TEST(PropertyBags, GetPropertyBagByNameComparesTheWholeNameExactly)
{
    const BagsPtr lBags(CreatePropertyBags());
    lBags->Add(L"Night", BagWith(L"n", L"1").get());
    EXPECT_TRUE(lBags->GetPropertyBagByName(L"Night"));
    EXPECT_FALSE(lBags->GetPropertyBagByName(L"night"));
    EXPECT_FALSE(lBags->GetPropertyBagByName(L"Nigh"));
    EXPECT_FALSE(lBags->GetPropertyBagByName(L"Nights"));
    EXPECT_FALSE(lBags->GetPropertyBagByName(L""));
}

TEST(PropertyBags, CloneSharesTheBagsUnderTheSameNamesInTheSameOrder)
{
    CallLog lLog;
    const auto lFirst = new TracedBag(lLog, L"first");
    const auto lSecond = new TracedBag(lLog, L"second");
    const BagsPtr lBags(CreatePropertyBags());
    lBags->Add(L"b", lFirst);
    lBags->Add(L"a", lSecond);
    const BagsPtr lClone(lBags->Clone());
    EXPECT_NE(lClone, lBags);
    EXPECT_EQ(lFirst->GetReferences(), 2);
    EXPECT_EQ(lSecond->GetReferences(), 2);
    EXPECT_EQ(lLog, CallLog()) << "no bag is cloned";
    for (const BagsPtr& lEither : {lBags, lClone})
    {
        ASSERT_EQ(lEither->GetCount(), 2U);
        EXPECT_STREQ(lEither->GetName(0), L"b");
        EXPECT_STREQ(lEither->GetName(1), L"a");
    }
}

TEST(PropertyBags, CloneGrowsOnItsOwn)
{
    const BagsPtr lBags(CreatePropertyBags());
    const BagsPtr lClone(lBags->Clone());
    lClone->Add(L"a", BagWith(L"n", L"1").get());
    EXPECT_EQ(lBags->GetCount(), 0U);
    EXPECT_EQ(lClone->GetCount(), 1U);
}

TEST(PropertyBags, CloneSeesWhatTheOwnerOfABagChanges)
{
    const BagPtr lBag = BagWith(L"n", L"1");
    const BagsPtr lBags(CreatePropertyBags());
    lBags->Add(L"a", lBag.get());
    const BagsPtr lClone(lBags->Clone());
    lBag->SetProperty(L"n", L"2", false);
    EXPECT_STREQ(lClone->GetPropertyBag(0)->GetProperty(L"n").c_str(), L"2");
}

TEST(PropertyBags, DestructorReleasesFromTheLastToTheFirst)
{
    CallLog lLog;
    {
        const BagsPtr lBags(CreatePropertyBags());
        lBags->Add(L"a", new TracedBag(lLog, L"first"));
        lBags->Add(L"b", new TracedBag(lLog, L"second"));
        lBags->Add(L"c", new TracedBag(lLog, L"third"));
        EXPECT_EQ(lLog, CallLog());
    }
    EXPECT_EQ(lLog, (CallLog{L"third.Dies", L"second.Dies", L"first.Dies"}));
}

class TracedBags : public PropertyBagsImpl
{
public:
    explicit TracedBags(CallLog& oLog) : mRecorder(oLog, L"bags") {}

    ~TracedBags() override
    {
        mRecorder.Call(L"Dies");
    }

private:
    Support::Recorder mRecorder;
};

TEST(PropertyBags, LivesFromCountZeroUntilTheLastReferenceIsDropped)
{
    CallLog lLog;
    const PropertyBags* const lBags = new TracedBags(lLog);
    lBags->AddRef();
    lBags->AddRef();
    lBags->Release();
    EXPECT_EQ(lLog, CallLog());
    lBags->Release();
    EXPECT_EQ(lLog, CallLog{L"bags.Dies"});
}

} // namespace
