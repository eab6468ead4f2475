#include "TalBase/SerializableStringCollection.h"

#include "QBase/SmartPtrI.h"
#include "TalBase/PrivateSource/SerializableStringCollectionImpl.h"
#include "Tests/Support/Expect.h"
#include "Tests/Support/RecordingStreams.h"
#include "Tests/Support/ScriptedStream.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace
{

using QDataType::StringCollection;
using QTalBase::CreateSerializableStringCollection;
using QTalBase::SerializableStringCollection;
using QTalBase::SerializableStringCollectionImpl;
using Support::Answer;
using Support::AnsweringReadStream;
using Support::CallLog;
using Support::Failing;
using Support::RecordingWriteStream;
using Support::StreamFailure;
using Support::Untouched;

using StringsPtr = QBase::SmartPtrI<SerializableStringCollection>;
using Texts = std::vector<std::wstring>;

StringsPtr StringsOf(const Texts& iTexts)
{
    StringsPtr lStrings(CreateSerializableStringCollection());
    for (const std::wstring& lText : iTexts)
    {
        lStrings->Insert(lText.c_str());
    }
    return lStrings;
}

template <class Collection>
Texts TextsOf(const Collection& iStrings)
{
    Texts lTexts;
    for (unsigned long lIndex = 0; lIndex < iStrings.GetCount(); ++lIndex)
    {
        lTexts.push_back(iStrings.GetString(lIndex));
    }
    return lTexts;
}

TEST(SerializableStringCollection, NewCollectionIsEmpty)
{
    const StringsPtr lStrings(CreateSerializableStringCollection());
    EXPECT_EQ(lStrings->GetCount(), 0UL);
    EXPECT_THROW(lStrings->GetString(0), QBase::Message);
}

TEST(SerializableStringCollection, InsertKeepsOrderAndDuplicates)
{
    const StringsPtr lStrings = StringsOf({L"b", L"a", L"", L"b"});
    EXPECT_EQ(TextsOf(*lStrings), (Texts{L"b", L"a", L"", L"b"}));
}

TEST(SerializableStringCollection, InsertCopiesTheText)
{
    std::wstring lText(L"before");
    const StringsPtr lStrings(CreateSerializableStringCollection());
    lStrings->Insert(lText.c_str());
    lText.replace(0, 6, L"after!");
    EXPECT_STREQ(lStrings->GetString(0), L"before");
}

TEST(SerializableStringCollection, InsertCollectionAppendsAllItsStrings)
{
    const std::unique_ptr<StringCollection> lOther(QDataType::CreateStringCollection());
    lOther->Insert(L"y");
    lOther->Insert(L"x");
    const StringsPtr lStrings = StringsOf({L"a"});
    lStrings->Insert(*lOther);
    EXPECT_EQ(TextsOf(*lStrings), (Texts{L"a", L"y", L"x"}));
    EXPECT_EQ(TextsOf(*lOther), (Texts{L"y", L"x"}));
}

TEST(SerializableStringCollection, PositionOutOfRangeThrowsWhatTheWrappedCollectionThrows)
{
    const StringsPtr lStrings = StringsOf({L"a"});
    EXPECT_THROW(lStrings->GetString(1), QBase::Message);
    EXPECT_THROW(lStrings->GetString(18446744073709551615UL), QBase::Message);
}

TEST(SerializableStringCollection, ClearEmptiesAndMoreCanBeInserted)
{
    const StringsPtr lStrings = StringsOf({L"a", L"b"});
    lStrings->Clear();
    EXPECT_EQ(lStrings->GetCount(), 0UL);
    lStrings->Insert(L"c");
    EXPECT_EQ(TextsOf(*lStrings), Texts{L"c"});
}

TEST(SerializableStringCollection, GetStringCollectionReturnsAnIndependentCopy)
{
    const StringsPtr lStrings = StringsOf({L"b", L"a", L"b"});
    const std::unique_ptr<StringCollection> lFirst(lStrings->GetStringCollection());
    const std::unique_ptr<StringCollection> lSecond(lStrings->GetStringCollection());
    lStrings->Clear();
    lSecond->Insert(L"more");
    EXPECT_EQ(TextsOf(*lFirst), (Texts{L"b", L"a", L"b"}));
    EXPECT_EQ(TextsOf(*lSecond), (Texts{L"b", L"a", L"b", L"more"}));
    EXPECT_EQ(lStrings->GetCount(), 0UL);
}

TEST(SerializableStringCollection, GetStringCollectionOfNoneIsEmpty)
{
    const std::unique_ptr<StringCollection> lCopy(
        StringsPtr(CreateSerializableStringCollection())->GetStringCollection());
    EXPECT_EQ(lCopy->GetCount(), 0UL);
}

TEST(SerializableStringCollectionStream, EmptyCollectionWritesOnlyASixtyFourBitZero)
{
    CallLog lLog;
    RecordingWriteStream lStream(lLog);
    StringsPtr(CreateSerializableStringCollection())->Serialize(lStream);
    EXPECT_EQ(lLog, CallLog{L"stream.WriteUInt64(0)"});
}

TEST(SerializableStringCollectionStream, WritesTheCountAndThenTheStringsByPosition)
{
    CallLog lLog;
    RecordingWriteStream lStream(lLog);
    StringsOf({L"b", L"a"})->Serialize(lStream);
    EXPECT_EQ(lLog, (CallLog{L"stream.WriteUInt64(2)", L"stream.WriteWString(b)", L"stream.WriteWString(a)"}));
}

TEST(SerializableStringCollectionStream, FailingWritePassesThroughAtAnyPrimitive)
{
    const StringsPtr lStrings = StringsOf({L"b", L"a"});
    for (std::size_t lFailAt = 0; lFailAt < 3; ++lFailAt)
    {
        CallLog lLog;
        RecordingWriteStream lStream(lLog, lFailAt);
        EXPECT_THROW(lStrings->Serialize(lStream), StreamFailure);
        EXPECT_EQ(lLog.size(), lFailAt);
    }
}

TEST(SerializableStringCollectionStream, ReadsIntoACountThatComesInAsZero)
{
    CallLog lLog;
    AnsweringReadStream lStream({2UL, L"b", L""}, lLog);
    const StringsPtr lStrings(CreateSerializableStringCollection());
    lStrings->DeSerialize(lStream);
    EXPECT_EQ(lLog, (CallLog{L"stream.ReadUInt64(0)", L"stream.ReadWString", L"stream.ReadWString"}));
    EXPECT_EQ(TextsOf(*lStrings), (Texts{L"b", L""}));
}

TEST(SerializableStringCollectionStream, ReadingKeepsWhatIsHeldAndAppends)
{
    CallLog lLog;
    AnsweringReadStream lStream({2UL, L"c", L"a"}, lLog);
    const StringsPtr lStrings = StringsOf({L"b", L"a"});
    lStrings->DeSerialize(lStream);
    EXPECT_EQ(TextsOf(*lStrings), (Texts{L"b", L"a", L"c", L"a"}));
}

TEST(SerializableStringCollectionStream, CountLeftUntouchedReadsNothing)
{
    CallLog lLog;
    AnsweringReadStream lStream({Untouched()}, lLog);
    const StringsPtr lStrings = StringsOf({L"b"});
    lStrings->DeSerialize(lStream);
    EXPECT_EQ(TextsOf(*lStrings), Texts{L"b"});
}

TEST(SerializableStringCollectionStream, FailingReadKeepsTheStringsReadSoFar)
{
    const std::vector<Answer> lWhole = {2UL, L"c", L"d"};
    const Texts lKept[] = {{L"b"}, {L"b"}, {L"b", L"c"}};
    for (std::size_t lFailAt = 0; lFailAt < lWhole.size(); ++lFailAt)
    {
        std::vector<Answer> lScript(lWhole);
        lScript[lFailAt] = Failing();
        CallLog lLog;
        AnsweringReadStream lStream(lScript, lLog);
        const StringsPtr lStrings = StringsOf({L"b"});
        EXPECT_THROW(lStrings->DeSerialize(lStream), StreamFailure);
        EXPECT_EQ(TextsOf(*lStrings), lKept[lFailAt]);
    }
}

TEST(SerializableStringCollectionStream, LargestCountBeforeAnEmptyRestFailsAtTheFirstString)
{
    CallLog lLog;
    AnsweringReadStream lStream({18446744073709551615UL}, lLog);
    const StringsPtr lStrings(CreateSerializableStringCollection());
    EXPECT_THROW(lStrings->DeSerialize(lStream), StreamFailure);
    EXPECT_EQ(lLog, (CallLog{L"stream.ReadUInt64(0)", L"stream.ReadWString"}));
}

// Answers what a derived class likes, and notes what it is asked.
class WatchedStrings : public SerializableStringCollectionImpl
{
public:
    explicit WatchedStrings(CallLog& oLog) : mRecorder(oLog, L"strings") {}

    ~WatchedStrings() override
    {
        mRecorder.Call(L"Dies");
    }

    using SerializableStringCollectionImpl::Insert;

    void Insert(const wchar_t* ipString) override
    {
        mRecorder.Call(L"Insert", ipString);
        SerializableStringCollectionImpl::Insert(ipString);
    }

    unsigned long GetCount() const override
    {
        mRecorder.Call(L"GetCount");
        return mCount;
    }

    const wchar_t* GetString(unsigned long iIndex) const override
    {
        mRecorder.Call(L"GetString", static_cast<unsigned int>(iIndex));
        --mCount; // as if the last string had just been removed
        return L"s";
    }

    mutable unsigned long mCount = 0;

private:
    Support::Recorder mRecorder;
};

TEST(SerializableStringCollectionStream, AsksForTheCountAgainAfterEveryString)
{
    CallLog lLog;
    const QBase::SmartPtrI<WatchedStrings> lStrings(new WatchedStrings(lLog));
    lStrings->mCount = 3;
    RecordingWriteStream lStream(lLog);
    lStrings->Serialize(lStream);
    EXPECT_EQ(lLog, (CallLog{L"strings.GetCount", L"stream.WriteUInt64(3)", L"strings.GetCount",
                             L"strings.GetString(0)", L"stream.WriteWString(s)", L"strings.GetCount",
                             L"strings.GetString(1)", L"stream.WriteWString(s)", L"strings.GetCount"}));
}

TEST(SerializableStringCollectionStream, InsertsWhatItReadsThroughTheInterface)
{
    CallLog lLog;
    const StringsPtr lStrings(new WatchedStrings(lLog));
    AnsweringReadStream lStream({2UL, L"a", L"b"}, lLog);
    lStrings->DeSerialize(lStream);
    EXPECT_EQ(lLog, (CallLog{L"stream.ReadUInt64(0)", L"stream.ReadWString", L"strings.Insert(a)",
                             L"stream.ReadWString", L"strings.Insert(b)"}));
}

TEST(SerializableStringCollection, GetStringCollectionAsksThroughTheInterface)
{
    CallLog lLog;
    const QBase::SmartPtrI<WatchedStrings> lStrings(new WatchedStrings(lLog));
    lStrings->mCount = 2;
    const std::unique_ptr<StringCollection> lCopy(lStrings->GetStringCollection());
    EXPECT_EQ(TextsOf(*lCopy), Texts{L"s"});
    EXPECT_EQ(lLog, (CallLog{L"strings.GetCount", L"strings.GetString(0)", L"strings.GetCount"}));
}

class BoastfulStrings : public SerializableStringCollectionImpl
{
public:
    unsigned long GetCount() const override
    {
        return 2;
    }
};

TEST(SerializableStringCollection, PositionWithoutStringThrowsWhateverAnOverriddenGetCountAnswers)
{
    const StringsPtr lStrings(new BoastfulStrings);
    lStrings->Insert(L"only");
    CallLog lLog;
    RecordingWriteStream lStream(lLog);
    EXPECT_THROW(lStrings->GetString(1), QBase::Message);
    EXPECT_THROW(lStrings->Serialize(lStream), QBase::Message);
    EXPECT_EQ(lLog, (CallLog{L"stream.WriteUInt64(2)", L"stream.WriteWString(only)"}));
    EXPECT_THROW(lStrings->GetStringCollection(), QBase::Message);
}

TEST(SerializableStringCollection, LivesFromCountZeroUntilTheLastReferenceIsDropped)
{
    CallLog lLog;
    const SerializableStringCollection* const lStrings = new WatchedStrings(lLog);
    lStrings->AddRef();
    lStrings->AddRef();
    lStrings->Release();
    EXPECT_EQ(lLog, CallLog());
    lStrings->Release();
    EXPECT_EQ(lLog, CallLog{L"strings.Dies"});
}

} // namespace
