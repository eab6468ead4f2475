#include "TalBase/PropertyBags.h"

#include "Tests/Support/Describe.h"
#include "Tests/Support/Expect.h"
#include "Tests/Support/RecordingStreams.h"
#include "Tests/Support/ScriptedStream.h"
#include "Tests/Support/TracedBag.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

namespace
{

using QBase::SmartPtrI;
using QTalBase::CreatePropertyBag;
using QTalBase::CreatePropertyBags;
using QTalBase::PropertyBag;
using QTalBase::PropertyBags;
using Support::Answer;
using Support::AnsweringReadStream;
using Support::CallLog;
using Support::Failing;
using Support::RecordingWriteStream;
using Support::StreamFailure;
using Support::TracedBag;
using Support::Untouched;

using Support::BagPtr;
using BagsPtr = SmartPtrI<PropertyBags>;

const std::vector<Answer> gThreeEntries = {3U,
                                           L"job",
                                           true,
                                           L"++++",
                                           L"***",
                                           L"EndDelimiter***BeginDelimiter++++***n++++1***",
                                           L"hole",
                                           false,
                                           L"",
                                           true,
                                           L"[",
                                           L"]",
                                           L"EndDelimiter]BeginDelimiter[]n[2]"};

BagsPtr Filled(CallLog& oLog)
{
    BagsPtr lBags(CreatePropertyBags());
    lBags->Add(L"x", new TracedBag(oLog, L"first"));
    lBags->Add(L"y", new TracedBag(oLog, L"second"));
    return lBags;
}

BagsPtr ReadFrom(const std::vector<Answer>& iScript)
{
    CallLog lLog;
    AnsweringReadStream lStream(iScript, lLog);
    BagsPtr lBags(CreatePropertyBags());
    lBags->DeSerialize(lStream);
    EXPECT_EQ(lStream.GetRemaining(), 0U);
    return lBags;
}

TEST(PropertyBagsStream, EmptyCollectionWritesOnlyTheCountZero)
{
    CallLog lLog;
    RecordingWriteStream lStream(lLog);
    const BagsPtr lBags(CreatePropertyBags());
    lBags->Serialize(lStream);
    EXPECT_EQ(lLog, CallLog{L"stream.WriteUInt32(0)"});
}

TEST(PropertyBagsStream, WritesCountAndThenNameFlagAndFieldsOfEachEntry)
{
    CallLog lLog;
    RecordingWriteStream lStream(lLog);
    const BagPtr lNight(CreatePropertyBag(L"<", L">"));
    lNight->SetProperty(L"n", L"*", false);
    const BagPtr lDay(CreatePropertyBag());
    lDay->SetProperty(L"n", L"*", false);
    const BagsPtr lBags(CreatePropertyBags());
    lBags->Add(L"night", lNight.get());
    lBags->Add(L"day", lDay.get());
    lBags->Serialize(lStream);
    EXPECT_EQ(lLog, (CallLog{L"stream.WriteUInt32(2)", L"stream.WriteWString(night)", L"stream.WriteBool(true)",
                             L"stream.WriteWString(<)", L"stream.WriteWString(>)",
                             L"stream.WriteWString(EndDelimiter>BeginDelimiter<>n<*>)", L"stream.WriteWString(day)",
                             L"stream.WriteBool(true)", L"stream.WriteWString(++++)", L"stream.WriteWString(***)",
                             L"stream.WriteWString(EndDelimiter***BeginDelimiter++++***n++++&#42;***)"}));
}

TEST(PropertyBagsStream, EntriesReadWithAndWithoutBagAreWrittenAsTheyCame)
{
    CallLog lLog;
    RecordingWriteStream lStream(lLog);
    ReadFrom(gThreeEntries)->Serialize(lStream);
    EXPECT_EQ(lLog, (CallLog{L"stream.WriteUInt32(3)", L"stream.WriteWString(job)", L"stream.WriteBool(true)",
                             L"stream.WriteWString(++++)", L"stream.WriteWString(***)",
                             L"stream.WriteWString(EndDelimiter***BeginDelimiter++++***n++++1***)",
                             L"stream.WriteWString(hole)", L"stream.WriteBool(false)", L"stream.WriteWString()",
                             L"stream.WriteBool(true)", L"stream.WriteWString([)", L"stream.WriteWString(])",
                             L"stream.WriteWString(EndDelimiter]BeginDelimiter[]n[2])"}));
}

TEST(PropertyBagsStream, ReadsNamesAndBagsInOrder)
{
    const BagsPtr lBags = ReadFrom(gThreeEntries);
    ASSERT_EQ(lBags->GetCount(), 3U);
    EXPECT_STREQ(lBags->GetName(0), L"job");
    EXPECT_STREQ(lBags->GetName(1), L"hole");
    EXPECT_STREQ(lBags->GetName(2), L"");
    EXPECT_STREQ(lBags->GetPropertyBag(0)->GetProperty(L"n").c_str(), L"1");
    EXPECT_STREQ(lBags->GetPropertyBag(2)->GetProperty(L"n").c_str(), L"2");
    EXPECT_STREQ(lBags->GetPropertyBag(2)->GetBeginDelimiter(), L"[");
}

TEST(PropertyBagsStream, EntryWithANullBagIsHandedOutAsNull)
{
    const BagsPtr lBags = ReadFrom(gThreeEntries);
    EXPECT_FALSE(lBags->GetPropertyBag(1));
    EXPECT_FALSE(lBags->GetPropertyBagByName(L"hole"));
}

TEST(PropertyBagsStream, FirstEntryOfANameIsFoundEvenWhenItsBagIsNull)
{
    const BagsPtr lBags = ReadFrom({2U, L"job", false, L"job", true, L"++++", L"***", L"n++++1***"});
    EXPECT_FALSE(lBags->GetPropertyBagByName(L"job"));
    EXPECT_TRUE(lBags->GetPropertyBag(1));
}

// A text with a header is read whatever the delimiters beside it are; only a clone is refused then.
TEST(PropertyBagsStream, EntryWithEqualDelimitersIsReadAndNotHandedOut)
{
    const BagsPtr lBags = ReadFrom({1U, L"job", true, L"=", L"=", L"EndDelimiter***BeginDelimiter++++***n++++1***"});
    const wchar_t* const lRefusal = L"QTalBase::PropertyBagImpl::CheckValidityOfDelimiters; Begin and End may not be "
                                    L"equal";
    EXPECT_MESSAGE(lBags->GetPropertyBag(0), QTalBase::PropertyBagException, lRefusal);
    EXPECT_MESSAGE(lBags->GetPropertyBagByName(L"job"), QTalBase::PropertyBagException, lRefusal);
    EXPECT_STREQ(lBags->GetName(0), L"job");
}

TEST(PropertyBagsStream, CloneKeepsANullBag)
{
    const BagsPtr lClone(ReadFrom(gThreeEntries)->Clone());
    ASSERT_EQ(lClone->GetCount(), 3U);
    EXPECT_STREQ(lClone->GetName(1), L"hole");
    EXPECT_FALSE(lClone->GetPropertyBag(1));
}

TEST(PropertyBagsStream, DeSerializeEmptiesFirstFromTheLastToTheFirst)
{
    CallLog lLog;
    const BagsPtr lBags = Filled(lLog);
    AnsweringReadStream lStream({1U, L"new", false}, lLog);
    lBags->DeSerialize(lStream);
    EXPECT_EQ(lLog, (CallLog{L"second.Dies", L"first.Dies", L"stream.ReadUInt32(0)", L"stream.ReadWString",
                             L"stream.ReadBool(false)"}));
    ASSERT_EQ(lBags->GetCount(), 1U);
    EXPECT_STREQ(lBags->GetName(0), L"new");
}

TEST(PropertyBagsStream, DeSerializeOfNoEntriesLeavesTheCollectionEmpty)
{
    CallLog lLog;
    const BagsPtr lBags = Filled(lLog);
    AnsweringReadStream lStream({Untouched()}, lLog);
    lBags->DeSerialize(lStream);
    EXPECT_EQ(lBags->GetCount(), 0U);
}

TEST(PropertyBagsStream, DeSerializeFailingAtAnyPrimitiveKeepsTheEntriesReadSoFar)
{
    // The first entry is complete after 6 primitives, the second after 8.
    for (std::size_t lFailAt = 0; lFailAt < gThreeEntries.size(); ++lFailAt)
    {
        std::vector<Answer> lScript(gThreeEntries);
        lScript[lFailAt] = Failing();
        CallLog lLog;
        const BagsPtr lBags = Filled(lLog);
        lLog.clear();
        AnsweringReadStream lStream(lScript, lLog);
        EXPECT_THROW(lBags->DeSerialize(lStream), StreamFailure);
        EXPECT_EQ(lBags->GetCount(), lFailAt < 6 ? 0U : lFailAt < 8 ? 1U : 2U) << "failed at primitive " << lFailAt;
    }
}

TEST(PropertyBagsStream, DeSerializeOfATextThatCannotBeParsedKeepsTheEntriesBefore)
{
    CallLog lLog;
    const BagsPtr lBags = Filled(lLog);
    AnsweringReadStream lStream({2U, L"good", false, L"bad", true, L"++++", L"***", L"a++++1******"}, lLog);
    EXPECT_MESSAGE(lBags->DeSerialize(lStream), QTalBase::PropertyBagException,
                   L"QTalBase::PropertyBagImpl::ExtractData; A string token was expected");
    ASSERT_EQ(lBags->GetCount(), 1U);
    EXPECT_STREQ(lBags->GetName(0), L"good");
}

TEST(PropertyBagsStream, SerializeFailingAtAnyPrimitiveLeavesTheCollectionAsItWas)
{
    const BagsPtr lBags = ReadFrom(gThreeEntries);
    for (std::size_t lFailAt = 0; lFailAt < gThreeEntries.size(); ++lFailAt)
    {
        CallLog lLog;
        RecordingWriteStream lStream(lLog, lFailAt);
        EXPECT_THROW(lBags->Serialize(lStream), StreamFailure);
        EXPECT_EQ(lLog.size(), lFailAt);
        EXPECT_EQ(lBags->GetCount(), 3U);
    }
}

TEST(PropertyBagsStream, SerializeOfABagThatCannotBeRenderedStopsAfterItsFlag)
{
    // Only a stream brings a bag with equal delimiters.
    const BagsPtr lBags = ReadFrom({1U, L"bad", true, L"x", L"x", L"EndDelimiter***BeginDelimiter++++***"});
    CallLog lLog;
    RecordingWriteStream lStream(lLog);
    EXPECT_MESSAGE(lBags->Serialize(lStream), QTalBase::PropertyBagException,
                   L"QTalBase::PropertyBagImpl::CheckValidityOfDelimiters; Begin and End may not be equal");
    EXPECT_EQ(lLog, (CallLog{L"stream.WriteUInt32(1)", L"stream.WriteWString(bad)", L"stream.WriteBool(true)"}));
    EXPECT_MESSAGE(lBags->GetPropertyBag(0), QTalBase::PropertyBagException,
                   L"QTalBase::PropertyBagImpl::CheckValidityOfDelimiters; Begin and End may not be equal");
}

} // namespace
