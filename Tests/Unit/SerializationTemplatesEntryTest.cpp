// One entry of a collection: reading its bag, and copying entries without copying bags.

#include "TalBase/SerializationTemplates.h"

#include "Tests/Support/RecordingStreams.h"
#include "Tests/Support/ScriptedStream.h"
#include "Tests/Support/TracedBag.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{

using QBase::SmartPtrI;
using QTalBase::CreatePropertyBag;
using QTalBase::NamedPropertyBag;
using QTalBase::PropertyBag;
using Support::AnsweringReadStream;
using Support::CallLog;
using Support::Failing;
using Support::StreamFailure;
using Support::TracedBag;
using Support::Untouched;

using Entries = std::vector<NamedPropertyBag>;

Entries JobAndHole()
{
    Entries lEntries;
    lEntries.emplace_back(L"job", CreatePropertyBag());
    lEntries.emplace_back(L"hole", nullptr);
    return lEntries;
}

Entries TracedEntries(CallLog& oLog)
{
    Entries lEntries;
    lEntries.emplace_back(L"first", new TracedBag(oLog, L"first"));
    lEntries.emplace_back(L"second", new TracedBag(oLog, L"second"));
    lEntries.emplace_back(L"third", new TracedBag(oLog, L"third"));
    return lEntries;
}

TEST(NestedBagReader, PresentFlagReplacesTheHeldBagBeforeTheFieldsAreRead)
{
    CallLog lLog;
    SmartPtrI<const PropertyBag> lBag(new TracedBag(lLog, L"old"));
    const PropertyBag* const lOld = lBag.get();
    AnsweringReadStream lStream({true, L"[[", L"]]", L"EndDelimiter]]BeginDelimiter[[]]k[[v]]"}, lLog);
    lStream >> lBag;
    EXPECT_EQ(lLog, (CallLog{L"stream.ReadBool(false)", L"old.Dies", L"stream.ReadWString", L"stream.ReadWString",
                             L"stream.ReadWString"}));
    ASSERT_TRUE(lBag);
    EXPECT_NE(lBag.get(), lOld);
    EXPECT_STREQ(lBag->GetBeginDelimiter(), L"[[");
    EXPECT_STREQ(lBag->GetEndDelimiter(), L"]]");
    EXPECT_STREQ(lBag->GetProperty(L"k").c_str(), L"v");
}

TEST(NestedBagReader, AbsentFlagReleasesTheHeldBagAndLeavesNull)
{
    CallLog lLog;
    SmartPtrI<const PropertyBag> lBag(new TracedBag(lLog, L"old"));
    AnsweringReadStream lStream({false}, lLog);
    lStream >> lBag;
    EXPECT_FALSE(lBag);
    EXPECT_EQ(lLog, (CallLog{L"stream.ReadBool(false)", L"old.Dies"}));
}

TEST(NestedBagReader, FlagLeftUntouchedReadsAsAbsent)
{
    CallLog lLog;
    SmartPtrI<const PropertyBag> lBag(new TracedBag(lLog, L"old"));
    AnsweringReadStream lStream({Untouched()}, lLog);
    lStream >> lBag;
    EXPECT_FALSE(lBag);
}

TEST(NestedBagReader, BagHeldElsewhereTooLivesOnWithOneReferenceLess)
{
    CallLog lLog;
    const auto lTraced = new TracedBag(lLog, L"shared");
    const SmartPtrI<const PropertyBag> lElsewhere(lTraced);
    SmartPtrI<const PropertyBag> lBag(lElsewhere);
    EXPECT_EQ(lTraced->GetReferences(), 2);
    AnsweringReadStream lStream({false}, lLog);
    lStream >> lBag;
    EXPECT_EQ(lTraced->GetReferences(), 1);
}

TEST(NestedBagReader, FailingFlagKeepsTheHeldBag)
{
    CallLog lLog;
    SmartPtrI<const PropertyBag> lBag(new TracedBag(lLog, L"old"));
    const PropertyBag* const lOld = lBag.get();
    AnsweringReadStream lStream({Failing()}, lLog);
    EXPECT_THROW(lStream >> lBag, StreamFailure);
    EXPECT_EQ(lBag.get(), lOld);
    EXPECT_EQ(lLog, CallLog{L"stream.ReadBool(false)"});
}

TEST(NestedBagReader, FailingFirstFieldLeavesANewBagWithTheDefaultDelimiters)
{
    CallLog lLog;
    SmartPtrI<const PropertyBag> lBag;
    AnsweringReadStream lStream({true, Failing()}, lLog);
    EXPECT_THROW(lStream >> lBag, StreamFailure);
    ASSERT_TRUE(lBag);
    EXPECT_STREQ(lBag->GetBeginDelimiter(), L"++++");
    EXPECT_STREQ(lBag->GetEndDelimiter(), L"***");
    EXPECT_EQ(lBag->GetCount(), 0U);
}

TEST(NestedBagReader, FailingLastFieldLeavesTheDelimitersReadSoFar)
{
    CallLog lLog;
    SmartPtrI<const PropertyBag> lBag;
    AnsweringReadStream lStream({true, L"[[", L"]]", Failing()}, lLog);
    EXPECT_THROW(lStream >> lBag, StreamFailure);
    ASSERT_TRUE(lBag);
    EXPECT_STREQ(lBag->GetBeginDelimiter(), L"[[");
    EXPECT_STREQ(lBag->GetEndDelimiter(), L"]]");
}

TEST(NestedBagReader, ReturnsTheStreamForTheNextRead)
{
    CallLog lLog;
    AnsweringReadStream lStream({false, false}, lLog);
    SmartPtrI<const PropertyBag> lFirst;
    SmartPtrI<const PropertyBag> lSecond;
    QSerialization::ReadDataStream& lReturned = lStream >> lFirst >> lSecond;
    EXPECT_EQ(&lReturned, &lStream);
    EXPECT_EQ(lLog.size(), 2U);
}

TEST(CloneDeep, SharesEveryBagWithOneMoreReferenceAndClonesNone)
{
    CallLog lLog;
    const auto lTraced = new TracedBag(lLog, L"bag");
    Entries lSource;
    lSource.emplace_back(L"b", lTraced);
    lSource.emplace_back(L"a", nullptr);
    lSource.emplace_back(L"b", lTraced);
    EXPECT_EQ(lTraced->GetReferences(), 2);
    Entries lDestination;
    QClone::Deep(lDestination, lSource);
    EXPECT_EQ(lTraced->GetReferences(), 4);
    ASSERT_EQ(lDestination.size(), 3U);
    EXPECT_EQ(lDestination[0].first, L"b");
    EXPECT_EQ(lDestination[0].second.get(), lTraced);
    EXPECT_EQ(lDestination[1].first, L"a");
    EXPECT_FALSE(lDestination[1].second);
    EXPECT_EQ(lDestination[2].first, L"b");
    EXPECT_EQ(lDestination[2].second.get(), lTraced);
    EXPECT_EQ(lLog, CallLog());
}

TEST(CloneDeep, EmptiesTheDestinationFromTheLastToTheFirst)
{
    CallLog lLog;
    Entries lDestination = TracedEntries(lLog);
    QClone::Deep(lDestination, JobAndHole());
    EXPECT_EQ(lLog, (CallLog{L"third.Dies", L"second.Dies", L"first.Dies"}));
    ASSERT_EQ(lDestination.size(), 2U);
    EXPECT_EQ(lDestination[0].first, L"job");
    EXPECT_EQ(lDestination[1].first, L"hole");
}

TEST(CloneDeep, EmptySourceEmptiesTheDestination)
{
    CallLog lLog;
    Entries lDestination = TracedEntries(lLog);
    QClone::Deep(lDestination, Entries());
    EXPECT_TRUE(lDestination.empty());
    EXPECT_EQ(lLog.size(), 3U);
}

TEST(CloneDeep, SourceIsTheDestinationKeepsItsContent)
{
    CallLog lLog;
    Entries lEntries = TracedEntries(lLog);
    QClone::Deep(lEntries, lEntries);
    ASSERT_EQ(lEntries.size(), 3U);
    EXPECT_EQ(lEntries[2].first, L"third");
    EXPECT_EQ(lLog, CallLog());
}

} // namespace
