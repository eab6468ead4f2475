// A bag in a binary stream: which operations of its own it calls and when, and what its text form cannot carry.

#include "TalBase/PropertyBag.h"

#include "Tests/Support/BagBuilder.h"
#include "Tests/Support/Describe.h"
#include "Tests/Support/Expect.h"
#include "Tests/Support/RecordingBag.h"
#include "Tests/Support/RecordingStreams.h"
#include "Tests/Support/ScriptedStream.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace
{

using Support::Answer;
using Support::AnsweringReadStream;
using Support::BagBuilder;
using Support::BagPtr;
using Support::CallLog;
using Support::Describe;
using Support::FullText;
using Support::NewBag;
using Support::RecordingWriteStream;

void Read(const BagPtr& oBag, std::vector<Answer> iScript)
{
    CallLog lLog;
    AnsweringReadStream lStream(std::move(iScript), lLog);
    oBag->DeSerialize(lStream);
    EXPECT_EQ(lLog, (CallLog{L"stream.ReadWString", L"stream.ReadWString", L"stream.ReadWString"}));
}

// What comes back when the three texts of a bag are read into a new one.
std::wstring ComesBack(const BagPtr& iBag)
{
    const BagPtr lBag = NewBag();
    Read(lBag, {iBag->GetBeginDelimiter(), iBag->GetEndDelimiter(), FullText(*iBag).c_str()});
    return Describe(lBag);
}

TEST(PropertyBagSerialize, RendersThroughTheInterfaceBeforeItWrites)
{
    CallLog lLog;
    const BagPtr lBag(new Support::RecordingBag(lLog));
    RecordingWriteStream lStream(lLog);
    lBag->Serialize(lStream);
    EXPECT_EQ(lLog,
              (CallLog{L"bag.Serialize", L"bag.GetString(true, NULL, NULL, true)", L"stream.WriteWString(++++)",
                       L"stream.WriteWString(***)", L"stream.WriteWString(EndDelimiter***BeginDelimiter++++***)"}));
}

// A derived class decides what is written, and its failure comes before the first primitive.
class SilentBag : public QTalBase::PropertyBagImpl
{
public:
    QBase::ReturnWString GetString(bool, const wchar_t*, const wchar_t*, bool) const override
    {
        throw 5;
    }
};

TEST(PropertyBagSerialize, FailureOfAnOverriddenGetStringPassesThroughWithNothingWritten)
{
    const BagPtr lBag(new SilentBag);
    CallLog lLog;
    RecordingWriteStream lStream(lLog);
    EXPECT_THROW(lBag->Serialize(lStream), int);
    EXPECT_EQ(lLog, CallLog());
}

TEST(PropertyBagSerialize, DelimitersAreWrittenAsStoredWhateverTheGettersAnswer)
{
    class VainBag : public QTalBase::PropertyBagImpl
    {
    public:
        const wchar_t* GetBeginDelimiter() const override
        {
            return L"begin";
        }

        const wchar_t* GetEndDelimiter() const override
        {
            return L"end";
        }
    };
    const BagPtr lBag(new VainBag);
    CallLog lLog;
    RecordingWriteStream lStream(lLog);
    lBag->Serialize(lStream);
    EXPECT_EQ(lLog, (CallLog{L"stream.WriteWString(++++)", L"stream.WriteWString(***)",
                             L"stream.WriteWString(EndDelimiter***BeginDelimiter++++***)"}));
}

TEST(PropertyBagDeSerialize, AddsTheTextThroughTheInterfaceAfterTheLastRead)
{
    CallLog lLog;
    const BagPtr lBag(new Support::RecordingBag(lLog));
    AnsweringReadStream lStream({L"<", L">", L"a<1>"}, lLog);
    lBag->DeSerialize(lStream);
    ASSERT_GE(lLog.size(), 5U);
    EXPECT_EQ(CallLog(lLog.begin(), lLog.begin() + 5),
              (CallLog{L"bag.DeSerialize", L"stream.ReadWString", L"stream.ReadWString", L"stream.ReadWString",
                       L"bag.AddString(a<1>)"}));
}

TEST(PropertyBagDeSerialize, DoesNotChangeTheDelimitersThroughTheInterface)
{
    CallLog lLog;
    const BagPtr lBag(new Support::RecordingBag(lLog));
    Read(lBag, {L"<", L">", L""});
    for (const std::wstring& lCall : lLog)
    {
        EXPECT_EQ(lCall.find(L"ChangeDelimiters"), std::wstring::npos);
    }
    EXPECT_EQ(Describe(lBag), L"'<' '>' {}");
}

TEST(PropertyBagDeSerialize, EscapedValueStaysEscapedUnderOtherDelimiters)
{
    const BagPtr lBag = BagBuilder().Set(L"a", L"x*y");
    Read(lBag, {L"<", L">", L""});
    EXPECT_EQ(Describe(lBag), L"'<' '>' {'a'='x&#42;y'}");
    EXPECT_STREQ(lBag->GetProperty(L"a").c_str(), L"x&#42;y");
    Read(lBag, {L"++++", L"***", L""});
    EXPECT_STREQ(lBag->GetProperty(L"a").c_str(), L"x*y");
}

TEST(PropertyBagDeSerialize, NestedBagsComeBackToAnyDepth)
{
    BagBuilder lNested = BagBuilder().Set(L"leaf", L"1");
    std::wstring lExpected = L"{'leaf'='1'}";
    for (int lDepth = 0; lDepth < 8; ++lDepth)
    {
        lNested = BagBuilder().Set(L"plain", L"*").Nest(L"n", lNested);
        lExpected = L"{'plain'='&#42;' 'n'=" + lExpected + L"}";
    }
    EXPECT_EQ(ComesBack(lNested), L"'++++' '***' " + lExpected);
}

TEST(PropertyBagDeSerialize, EmptyNestedBagDoesNotSurviveItsTextForm)
{
    const BagPtr lBag = BagBuilder().Set(L"a", L"1").Nest(L"e", BagBuilder());
    ASSERT_EQ(Describe(lBag), L"'++++' '***' {'a'='1' 'e'={}}");
    EXPECT_EQ(ComesBack(lBag), L"'++++' '***' {'a'='1'}");
}

TEST(PropertyBagDeSerialize, SensitivePropertyComesBackUnchanged)
{
    EXPECT_EQ(ComesBack(BagBuilder().Set(L"FTPServerPassword", L"secret")),
              L"'++++' '***' {'FTPServerPassword'='secret'}");
}

} // namespace
