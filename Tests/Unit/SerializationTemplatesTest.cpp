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
using Support::Answer;
using Support::AnsweringReadStream;
using Support::CallLog;
using Support::Failing;
using Support::RecordingWriteStream;
using Support::StreamFailure;
using Support::TracedBag;
using Support::Untouched;

using Entries = std::vector<NamedPropertyBag>;

const wchar_t* const gHeader = L"EndDelimiter***BeginDelimiter++++***";

SmartPtrI<const PropertyBag> BagWith(const wchar_t* ipName, const wchar_t* ipValue)
{
    const SmartPtrI<PropertyBag> lBag(CreatePropertyBag());
    lBag->SetProperty(ipName, ipValue, false);
    return lBag;
}

Entries JobAndHole()
{
    Entries lEntries;
    lEntries.emplace_back(L"job", BagWith(L"to", L"ann"));
    lEntries.emplace_back(L"hole", nullptr);
    return lEntries;
}

CallLog WrittenJobAndHole()
{
    return {L"stream.WriteUInt32(2)",     L"stream.WriteWString(job)",
            L"stream.WriteBool(true)",    L"stream.WriteWString(++++)",
            L"stream.WriteWString(***)",  L"stream.WriteWString(EndDelimiter***BeginDelimiter++++***to++++ann***)",
            L"stream.WriteWString(hole)", L"stream.WriteBool(false)"};
}

std::vector<Answer> ScriptOfJobAndHole()
{
    return {2U, L"job", true, L"++++", L"***", L"EndDelimiter***BeginDelimiter++++***to++++ann***", L"hole", false};
}

Entries TracedEntries(CallLog& oLog)
{
    Entries lEntries;
    lEntries.emplace_back(L"first", new TracedBag(oLog, L"first"));
    lEntries.emplace_back(L"second", new TracedBag(oLog, L"second"));
    lEntries.emplace_back(L"third", new TracedBag(oLog, L"third"));
    return lEntries;
}

TEST(CollectionWriter, EmptyCollectionWritesOnlyTheCountZero)
{
    CallLog lLog;
    RecordingWriteStream lStream(lLog);
    lStream << Entries();
    EXPECT_EQ(lLog, CallLog{L"stream.WriteUInt32(0)"});
}

TEST(CollectionWriter, BagAndNullBagWriteNameFlagAndFieldsWithNothingBetween)
{
    CallLog lLog;
    RecordingWriteStream lStream(lLog);
    const Entries lEntries = JobAndHole();
    lStream << lEntries;
    EXPECT_EQ(lLog, WrittenJobAndHole());
}

TEST(CollectionWriter, ReturnsTheStreamForTheNextWrite)
{
    CallLog lLog;
    RecordingWriteStream lStream(lLog);
    QSerialization::WriteDataStream& lReturned = lStream << Entries() << Entries();
    EXPECT_EQ(&lReturned, &lStream);
    EXPECT_EQ(lLog, (CallLog{L"stream.WriteUInt32(0)", L"stream.WriteUInt32(0)"}));
}

TEST(CollectionWriter, StreamFailingAtAnyPrimitivePassesThroughAfterWhatCameBefore)
{
    const Entries lEntries = JobAndHole();
    const CallLog lWhole = WrittenJobAndHole();
    for (std::size_t lFailAt = 0; lFailAt < lWhole.size(); ++lFailAt)
    {
        CallLog lLog;
        RecordingWriteStream lStream(lLog, lFailAt);
        EXPECT_THROW(lStream << lEntries, StreamFailure);
        EXPECT_EQ(lLog, CallLog(lWhole.begin(), lWhole.begin() + static_cast<std::ptrdiff_t>(lFailAt)));
    }
}

TEST(CollectionWriter, NullBagAfterBagChangesNothingInTheCollection)
{
    CallLog lLog;
    RecordingWriteStream lStream(lLog);
    const auto lTraced = new TracedBag(lLog, L"bag");
    Entries lEntries;
    lEntries.emplace_back(L"", lTraced);
    lEntries.emplace_back(L"", nullptr);
    lStream << lEntries;
    EXPECT_EQ(lTraced->GetReferences(), 1);
    EXPECT_EQ(lLog, (CallLog{L"stream.WriteUInt32(2)", L"stream.WriteWString()", L"stream.WriteBool(true)",
                             L"stream.WriteWString(++++)", L"stream.WriteWString(***)",
                             L"stream.WriteWString(EndDelimiter***BeginDelimiter++++***)", L"stream.WriteWString()",
                             L"stream.WriteBool(false)"}));
}

TEST(CollectionReader, ReadsWhatTheWriterWrote)
{
    CallLog lLog;
    AnsweringReadStream lStream(ScriptOfJobAndHole(), lLog);
    Entries lEntries;
    lStream >> lEntries;
    ASSERT_EQ(lEntries.size(), 2U);
    EXPECT_EQ(lEntries[0].first, L"job");
    ASSERT_TRUE(lEntries[0].second);
    EXPECT_STREQ(lEntries[0].second->GetProperty(L"to").c_str(), L"ann");
    EXPECT_EQ(lEntries[0].second->GetCount(), 1U);
    EXPECT_EQ(lEntries[1].first, L"hole");
    EXPECT_FALSE(lEntries[1].second);
    EXPECT_EQ(lStream.GetRemaining(), 0U);
}

TEST(CollectionReader, CountAndFlagsComeInAsZeroAndFalse)
{
    CallLog lLog;
    AnsweringReadStream lStream(ScriptOfJobAndHole(), lLog);
    Entries lEntries;
    lStream >> lEntries;
    EXPECT_EQ(lLog, (CallLog{L"stream.ReadUInt32(0)", L"stream.ReadWString", L"stream.ReadBool(false)",
                             L"stream.ReadWString", L"stream.ReadWString", L"stream.ReadWString", L"stream.ReadWString",
                             L"stream.ReadBool(false)"}));
}

TEST(CollectionReader, ReturnsTheStreamForTheNextRead)
{
    CallLog lLog;
    AnsweringReadStream lStream({0U, 1U, L"hole", false}, lLog);
    Entries lFirst;
    Entries lSecond;
    QSerialization::ReadDataStream& lReturned = lStream >> lFirst >> lSecond;
    EXPECT_EQ(&lReturned, &lStream);
    EXPECT_EQ(lFirst.size(), 0U);
    EXPECT_EQ(lSecond.size(), 1U);
}

TEST(CollectionReader, CountZeroLeavesTheTargetEmpty)
{
    CallLog lLog;
    AnsweringReadStream lStream({0U}, lLog);
    Entries lEntries = JobAndHole();
    lStream >> lEntries;
    EXPECT_TRUE(lEntries.empty());
    EXPECT_EQ(lLog, CallLog{L"stream.ReadUInt32(0)"});
}

TEST(CollectionReader, CountLeftUntouchedReadsAsZero)
{
    CallLog lLog;
    AnsweringReadStream lStream({Untouched()}, lLog);
    Entries lEntries = JobAndHole();
    lStream >> lEntries;
    EXPECT_TRUE(lEntries.empty());
}

TEST(CollectionReader, FlagLeftUntouchedReadsAsNullBag)
{
    CallLog lLog;
    AnsweringReadStream lStream({2U, L"job", true, L"++++", L"***", gHeader, L"hole", Untouched()}, lLog);
    Entries lEntries;
    lStream >> lEntries;
    ASSERT_EQ(lEntries.size(), 2U);
    EXPECT_TRUE(lEntries[0].second);
    EXPECT_FALSE(lEntries[1].second);
}

TEST(CollectionReader, EmptiesTheTargetFromTheLastToTheFirstBeforeItReads)
{
    CallLog lLog;
    Entries lEntries = TracedEntries(lLog);
    AnsweringReadStream lStream({1U, L"new", false}, lLog);
    lStream >> lEntries;
    EXPECT_EQ(lLog, (CallLog{L"third.Dies", L"second.Dies", L"first.Dies", L"stream.ReadUInt32(0)",
                             L"stream.ReadWString", L"stream.ReadBool(false)"}));
    ASSERT_EQ(lEntries.size(), 1U);
    EXPECT_EQ(lEntries[0].first, L"new");
}

TEST(CollectionReader, FailingCountLeavesTheTargetEmptied)
{
    CallLog lLog;
    Entries lEntries = TracedEntries(lLog);
    AnsweringReadStream lStream({Failing()}, lLog);
    EXPECT_THROW(lStream >> lEntries, StreamFailure);
    EXPECT_TRUE(lEntries.empty());
    EXPECT_EQ(lLog, (CallLog{L"third.Dies", L"second.Dies", L"first.Dies", L"stream.ReadUInt32(0)"}));
}

TEST(CollectionReader, FailingAtAnyPrimitiveKeepsTheEntriesReadSoFar)
{
    // Two bags, six primitives each after the count: the entry under way is dropped.
    std::vector<Answer> lWhole = {2U};
    for (const wchar_t* lName : {L"a", L"b"})
    {
        for (const Answer& lAnswer : std::vector<Answer>{lName, true, L"++++", L"***", gHeader})
        {
            lWhole.push_back(lAnswer);
        }
    }
    for (std::size_t lFailAt = 1; lFailAt <= lWhole.size(); ++lFailAt)
    {
        std::vector<Answer> lScript(lWhole);
        lScript[lFailAt - 1] = Failing();
        CallLog lLog;
        AnsweringReadStream lStream(lScript, lLog);
        Entries lEntries = JobAndHole();
        EXPECT_THROW(lStream >> lEntries, StreamFailure);
        ASSERT_EQ(lLog.size(), lFailAt);
        ASSERT_EQ(lEntries.size(), lFailAt > 6 ? 1U : 0U) << "failed at primitive " << lFailAt;
        if (!lEntries.empty())
        {
            EXPECT_EQ(lEntries[0].first, L"a");
            EXPECT_TRUE(lEntries[0].second);
        }
    }
}

TEST(CollectionReader, LargestCountBeforeAnEmptyRestFailsAtTheFirstNameWithNothingReserved)
{
    CallLog lLog;
    AnsweringReadStream lStream({4294967295U}, lLog);
    Entries lEntries;
    EXPECT_THROW(lStream >> lEntries, StreamFailure);
    EXPECT_EQ(lLog, (CallLog{L"stream.ReadUInt32(0)", L"stream.ReadWString"}));
    EXPECT_EQ(lEntries.capacity(), 0U);
}

TEST(CollectionReader, BagThatCannotBeParsedPassesItsErrorThroughAndIsDropped)
{
    CallLog lLog;
    AnsweringReadStream lStream({2U, L"good", false, L"bad", true, L"++++", L"***", L"a++++1"}, lLog);
    Entries lEntries;
    EXPECT_THROW(lStream >> lEntries, QTalBase::PropertyBagException);
    ASSERT_EQ(lEntries.size(), 1U);
    EXPECT_EQ(lEntries[0].first, L"good");
}

} // namespace
