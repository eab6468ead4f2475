// A bag in a binary stream: two delimiters and the text form.

#include "TalBase/PropertyBag.h"

#include "QSerialization/MemoryDataStream.h"

#include "Tests/Support/BagBuilder.h"
#include "Tests/Support/BagGenerator.h"
#include "Tests/Support/Describe.h"
#include "Tests/Support/Expect.h"
#include "Tests/Support/RecordingStreams.h"
#include "Tests/Support/RepointedDefaults.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

using QTalBase::PropertyBagException;
using QTalBase::PropertyBagUserErrorException;
using namespace Support;

namespace
{

CallLog Written(const BagPtr& iBag)
{
    CallLog lLog;
    RecordingWriteStream lStream(lLog);
    iBag->Serialize(lStream);
    return lLog;
}

void Read(const BagPtr& oBag, std::vector<std::wstring> iTexts)
{
    ScriptedReadStream lStream(std::move(iTexts));
    oBag->DeSerialize(lStream);
}

} // namespace

TEST(PropertyBag, SerializeWritesDelimitersAndText)
{
    const BagPtr lBag =
        BagBuilder().Set(L"a", L"x*y").Set(L"FTPServerPassword", L"p").Nest(L"n", BagBuilder().Set(L"k", L"v"));
    EXPECT_EQ(Written(lBag), (CallLog{L"stream.WriteWString(++++)", L"stream.WriteWString(***)",
                                      L"stream.WriteWString(EndDelimiter***BeginDelimiter++++***a++++x&#42;y***"
                                      L"FTPServerPassword++++p***n++++k++++v******)"}));
}

TEST(PropertyBag, SerializeEmptyBag)
{
    EXPECT_EQ(Written(NewBag(L"[[", L"]]")), (CallLog{L"stream.WriteWString([[)", L"stream.WriteWString(]])",
                                                      L"stream.WriteWString(EndDelimiter]]BeginDelimiter[[]])"}));
}

TEST(PropertyBag, SerializeNestedBagWithDelimitersOfItsOwn)
{
    const BagPtr lBag = BagBuilder().Nest(L"n", BagBuilder().Set(L"k", L"v"));
    lBag->GetPropertyBag(L"n")->ChangeDelimiters(L"<<", L">>");
    EXPECT_EQ(Written(lBag).back(), L"stream.WriteWString(EndDelimiter***BeginDelimiter++++***n++++k<<v>>***)");
}

TEST(PropertyBag, SerializeFailedRenderingWritesNothing)
{
    const RepointedDefaults lDefaults(L"x", L"x");
    const BagPtr lBag = NewBag();
    CallLog lLog;
    RecordingWriteStream lStream(lLog);
    EXPECT_MESSAGE(lBag->Serialize(lStream), PropertyBagException,
                   L"QTalBase::PropertyBagImpl::CheckValidityOfDelimiters; Begin and End may not be equal");
    EXPECT_EQ(lLog, CallLog{});
}

TEST(PropertyBag, SerializeStreamFailurePassesOn)
{
    const BagPtr lBag = BagBuilder().Set(L"a", L"1");
    for (std::size_t lFailAt = 0; lFailAt < 3; ++lFailAt)
    {
        CallLog lLog;
        RecordingWriteStream lStream(lLog, lFailAt);
        EXPECT_THROW(lBag->Serialize(lStream), StreamFailure);
        EXPECT_EQ(lLog.size(), lFailAt);
    }
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'a'='1'}");
}

TEST(PropertyBag, DeSerializeReadsDelimitersAndText)
{
    const BagPtr lBag = NewBag();
    ScriptedReadStream lStream({L"[[", L"]]", L"EndDelimiter]]BeginDelimiter[[]]a[[x*]]n[[k[[v]]]]", L"next"});
    lBag->DeSerialize(lStream);
    EXPECT_EQ(Describe(lBag), L"'[[' ']]' {'a'='x*' 'n'={'k'='v'}}");
    EXPECT_EQ(lStream.GetRemaining(), 1U);
}

TEST(PropertyBag, DeSerializeKeepsWhatTheBagHolds)
{
    const BagPtr lBag = BagBuilder().Set(L"a", L"1*").Set(L"b", L"2").Nest(L"n", BagBuilder().Set(L"k", L"v"));
    Read(lBag, {L"[[", L"]]", L"EndDelimiter]]BeginDelimiter[[]]a[[3]]c[[4]]m[[k[[w]]]]"});
    EXPECT_EQ(Describe(lBag), L"'[[' ']]' {'b'='2' 'a'='3' 'c'='4' 'n'='++++' '***' {'k'='v'} 'm'={'k'='w'}}");
}

TEST(PropertyBag, DeSerializeTextWithoutHeaderIsReadWithTheDelimitersRead)
{
    const BagPtr lBag = NewBag();
    Read(lBag, {L"(", L")", L"a(1)"});
    EXPECT_EQ(Describe(lBag), L"'(' ')' {'a'='1'}");
}

TEST(PropertyBag, DeSerializeDoesNotCheckTheDelimiters)
{
    const BagPtr lBag = NewBag();
    Read(lBag, {L"x", L"x", gHeader});
    EXPECT_EQ(Describe(lBag), L"'x' 'x' {}");
    Read(lBag, {L"", L"", gHeader});
    EXPECT_EQ(Describe(lBag), L"'' '' {}");
}

TEST(PropertyBag, DeSerializeBadDelimitersAreRefusedWhereTheTextIsReadWithThem)
{
    const BagPtr lBag = BagBuilder().Set(L"a", L"1");
    EXPECT_MESSAGE(Read(lBag, {L"", L"***", L"b++++2***"}), PropertyBagUserErrorException,
                   L"QTalBase::PropertyBagImpl::CheckValidityOfDelimiters; Begin may not be empty");
    EXPECT_EQ(Describe(lBag), L"'' '***' {'a'='1'}");
    EXPECT_MESSAGE(Read(lBag, {L"++++", L"", L"b++++2***"}), PropertyBagUserErrorException,
                   L"QTalBase::PropertyBagImpl::CheckValidityOfDelimiters; End may not be empty");
    EXPECT_EQ(Describe(lBag), L"'++++' '' {'a'='1'}");
    EXPECT_MESSAGE(Read(lBag, {L"x", L"x", L""}), PropertyBagException,
                   L"QTalBase::PropertyBagImpl::CheckValidityOfDelimiters; Begin and End may not be equal");
    EXPECT_EQ(Describe(lBag), L"'x' 'x' {'a'='1'}");
    EXPECT_MESSAGE(Read(lBag, {L"xyz", L"y", L"b"}), PropertyBagException,
                   L"QTalBase::PropertyBagImpl::CheckValidityOfDelimiters; Begin may not contain End");
    EXPECT_MESSAGE(Read(lBag, {L"y", L"xyz", L"b"}), PropertyBagException,
                   L"QTalBase::PropertyBagImpl::CheckValidityOfDelimiters; End may not contain Begin");
    EXPECT_EQ(Describe(lBag), L"'y' 'xyz' {'a'='1'}");
}

TEST(PropertyBag, DeSerializeBadTextLeavesTheDelimitersAndNoProperties)
{
    const BagPtr lBag = BagBuilder().Set(L"a", L"1").Nest(L"n", BagBuilder().Set(L"k", L"v"));
    EXPECT_MESSAGE(Read(lBag, {L"(", L")", L"b(2)c(3"}), PropertyBagException,
                   L"QTalBase::PropertyBagImpl::GetNextToken; A token was expected");
    EXPECT_EQ(Describe(lBag), L"'(' ')' {'a'='1' 'n'='++++' '***' {'k'='v'}}");
}

TEST(PropertyBag, DeSerializeFailedMergeKeepsWhatCameBefore)
{
    const BagPtr lBag = BagBuilder().Set(L"a", L"1");
    EXPECT_MESSAGE(Read(lBag, {L"(", L")", L"EndDelimiter]BeginDelimiter[]b[2]c[x)]d[4]"}), PropertyBagException,
                   L"QTalBase::PropertyBagImpl::SetProperty; ipValue may not contain the delimiters. ipValue: x), "
                   L"begin delimiter: (, end delimiter: )");
    EXPECT_EQ(Describe(lBag), L"'(' ')' {'a'='1' 'b'='2'}");
}

TEST(PropertyBag, DeSerializeStreamFailureLeavesWhatWasRead)
{
    const BagPtr lBag = BagBuilder().Set(L"a", L"1");
    EXPECT_THROW(Read(lBag, {}), StreamFailure);
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'a'='1'}");
    EXPECT_THROW(Read(lBag, {L"("}), StreamFailure);
    EXPECT_EQ(Describe(lBag), L"'(' '***' {'a'='1'}");
    EXPECT_THROW(Read(lBag, {L"[", L"]"}), StreamFailure);
    EXPECT_EQ(Describe(lBag), L"'[' ']' {'a'='1'}");
}

TEST(PropertyBag, DeSerializeDelimitersThatAHeaderCannotCarryRefusesEvenAnEmptyBag)
{
    const BagPtr lBag = NewBag();
    EXPECT_MESSAGE(Read(lBag, {L"<i>", L"</i>", FullText(*NewBag(L"<i>", L"</i>"))}), PropertyBagException,
                   L"QTalBase::PropertyBagImpl::ExtractData; A Begin token was expected");
    EXPECT_EQ(Describe(lBag), L"'<i>' '</i>' {}");
}

TEST(PropertyBag, StreamBringsAnyBagBack)
{
    BagGenerator lGenerator(5);
    QSerialization::MemoryWriteDataStream lOut;
    std::vector<std::wstring> lExpected;
    for (int lRound = 0; lRound < 100; ++lRound)
    {
        const BagPtr lBag = lGenerator.Next();
        lExpected.push_back(Describe(lBag));
        lBag->Serialize(lOut);
    }
    QSerialization::MemoryReadDataStream lIn(lOut.GetBytes().data(), lOut.GetBytes().size());
    for (const std::wstring& lDescription : lExpected)
    {
        const BagPtr lBag = NewBag();
        lBag->DeSerialize(lIn);
        ASSERT_EQ(Describe(lBag), lDescription);
    }
    EXPECT_EQ(lIn.GetRemaining(), 0U);
}

TEST(PropertyBag, StreamThatEndsInsideABagThrows)
{
    QSerialization::MemoryWriteDataStream lOut;
    const BagPtr lSource = BagBuilder(L"[", L"]").Set(L"a", L"1");
    lSource->Serialize(lOut);
    const BagPtr lBag = NewBag();
    QSerialization::MemoryReadDataStream lIn(lOut.GetBytes().data(), lOut.GetBytes().size() - 1);
    EXPECT_THROW(lBag->DeSerialize(lIn), QBase::ExceptionImpl<QSerialization::StreamException>);
    EXPECT_EQ(Describe(lBag), L"'[' ']' {}");
}
