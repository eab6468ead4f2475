#include "TalBase/DeliveryWindow.h"

#include "TalBase/PrivateSource/DeliveryWindowImpl.h"
#include "Tests/Support/Expect.h"
#include "Tests/Support/RecordingStreams.h"
#include "Tests/Support/ScriptedStream.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{

using QTalBase::CreateDeliveryWindow;
using QTalBase::DeliveryWindow;
using QTalBase::DeliveryWindowImpl;
using QTalBase::DeliveryWindowUserErrorException;
using Support::Answer;
using Support::AnsweringReadStream;
using Support::CallLog;
using Support::Failing;
using Support::RecordingWriteStream;
using Support::StreamFailure;
using Support::Untouched;

using WindowPtr = QBase::SmartPtrI<DeliveryWindow>;

const wchar_t* const gNoSuchHour =
    L"QTalBase::DeliveryWindowImpl::SetTimeBlock; Time of day may not be greater than 23";

// The 24 blocks from the first to the last, '#' where disabled.
std::string Blocks(const DeliveryWindow& iWindow)
{
    std::string lBlocks;
    for (unsigned int lHour = 0; lHour < 24; ++lHour)
    {
        lBlocks += iWindow.IsEnabled(lHour) ? '.' : '#';
    }
    return lBlocks;
}

std::string Blocks(const WindowPtr& iWindow)
{
    return Blocks(*iWindow);
}

WindowPtr WindowOf(unsigned int iWord)
{
    CallLog lLog;
    AnsweringReadStream lStream({iWord}, lLog);
    WindowPtr lWindow(CreateDeliveryWindow());
    lWindow->DeSerialize(lStream);
    return lWindow;
}

std::wstring WordOf(const DeliveryWindow& iWindow)
{
    CallLog lLog;
    RecordingWriteStream lStream(lLog);
    iWindow.Serialize(lStream);
    EXPECT_EQ(lLog.size(), 1U) << "one primitive and nothing else";
    return lLog.at(0);
}

TEST(DeliveryWindow, NewWindowHasEveryBlockEnabled)
{
    const WindowPtr lWindow(CreateDeliveryWindow());
    EXPECT_EQ(Blocks(lWindow), "........................");
    EXPECT_EQ(WordOf(*lWindow), L"stream.WriteUInt32(0)");
}

TEST(DeliveryWindow, DisableRangeTouchesBothEnds)
{
    const WindowPtr lWindow(CreateDeliveryWindow());
    lWindow->DisableTimeBlock(9, 17);
    EXPECT_EQ(Blocks(lWindow), ".........#########......");
}

TEST(DeliveryWindow, DisableOneBlockTouchesOnlyIt)
{
    const WindowPtr lWindow(CreateDeliveryWindow());
    lWindow->DisableTimeBlock(5, 5);
    EXPECT_EQ(Blocks(lWindow), ".....#..................");
}

TEST(DeliveryWindow, DisableWholeDaySetsTwentyFourBits)
{
    const WindowPtr lWindow(CreateDeliveryWindow());
    lWindow->DisableTimeBlock(0, 23);
    EXPECT_EQ(Blocks(lWindow), "########################");
    EXPECT_EQ(WordOf(*lWindow), L"stream.WriteUInt32(16777215)");
}

TEST(DeliveryWindow, DisablePastMidnightWrapsRound)
{
    const WindowPtr lWindow(CreateDeliveryWindow());
    lWindow->DisableTimeBlock(22, 2);
    EXPECT_EQ(Blocks(lWindow), "###...................##");
}

TEST(DeliveryWindow, DisableFromTheLastToTheFirstBlockTouchesOnlyThoseTwo)
{
    const WindowPtr lWindow(CreateDeliveryWindow());
    lWindow->DisableTimeBlock(23, 0);
    EXPECT_EQ(Blocks(lWindow), "#......................#");
}

TEST(DeliveryWindow, DisableWithEndJustBeforeStartCoversTheWholeDay)
{
    const WindowPtr lWindow(CreateDeliveryWindow());
    lWindow->DisableTimeBlock(12, 11);
    EXPECT_EQ(Blocks(lWindow), "########################");
}

TEST(DeliveryWindow, DisableAgainChangesNothing)
{
    const WindowPtr lWindow(CreateDeliveryWindow());
    lWindow->DisableTimeBlock(3, 4);
    lWindow->DisableTimeBlock(4, 5);
    EXPECT_EQ(Blocks(lWindow), "...###..................");
}

TEST(DeliveryWindow, EnableRangeLeavesTheOthersDisabled)
{
    const WindowPtr lWindow(CreateDeliveryWindow());
    lWindow->DisableTimeBlock(0, 23);
    lWindow->EnableTimeBlock(9, 17);
    EXPECT_EQ(Blocks(lWindow), "#########.........######");
}

TEST(DeliveryWindow, EnablePastMidnightWrapsRound)
{
    const WindowPtr lWindow(CreateDeliveryWindow());
    lWindow->DisableTimeBlock(0, 23);
    lWindow->EnableTimeBlock(22, 2);
    EXPECT_EQ(Blocks(lWindow), "...###################..");
}

TEST(DeliveryWindow, EnableWhatIsEnabledChangesNothing)
{
    const WindowPtr lWindow(CreateDeliveryWindow());
    lWindow->EnableTimeBlock(0, 23);
    EXPECT_EQ(WordOf(*lWindow), L"stream.WriteUInt32(0)");
}

TEST(DeliveryWindow, SetTimeBlockDoesBoth)
{
    const QBase::SmartPtrI<DeliveryWindowImpl> lWindow(new DeliveryWindowImpl);
    lWindow->SetTimeBlock(22, 2, false);
    EXPECT_EQ(Blocks(*lWindow), "###...................##");
    lWindow->SetTimeBlock(23, 0, true);
    EXPECT_EQ(Blocks(*lWindow), ".##...................#.");
}

TEST(DeliveryWindow, HourAboveTwentyThreeThrowsAndChangesNothing)
{
    const QBase::SmartPtrI<DeliveryWindowImpl> lWindow(new DeliveryWindowImpl);
    lWindow->DisableTimeBlock(7, 7);
    EXPECT_MESSAGE(lWindow->EnableTimeBlock(0, 24), DeliveryWindowUserErrorException, gNoSuchHour);
    EXPECT_MESSAGE(lWindow->EnableTimeBlock(24, 0), DeliveryWindowUserErrorException, gNoSuchHour);
    EXPECT_MESSAGE(lWindow->DisableTimeBlock(0, 24), DeliveryWindowUserErrorException, gNoSuchHour);
    EXPECT_MESSAGE(lWindow->DisableTimeBlock(24, 24), DeliveryWindowUserErrorException, gNoSuchHour);
    EXPECT_MESSAGE(lWindow->DisableTimeBlock(22, 4294967295U), DeliveryWindowUserErrorException, gNoSuchHour);
    EXPECT_MESSAGE(lWindow->SetTimeBlock(32, 8, false), DeliveryWindowUserErrorException, gNoSuchHour);
    EXPECT_EQ(Blocks(*lWindow), ".......#................");
}

TEST(DeliveryWindow, ErrorIsCaughtAsMessageButNotAsPropertyBagException)
{
    const WindowPtr lWindow(CreateDeliveryWindow());
    EXPECT_THROW(lWindow->EnableTimeBlock(0, 24), QBase::Message);
    EXPECT_FALSE((std::is_base_of_v<QTalBase::PropertyBagException, DeliveryWindowUserErrorException>));
}

TEST(DeliveryWindow, IsEnabledTakesTheHourModuloThirtyTwo)
{
    const WindowPtr lWindow(CreateDeliveryWindow());
    lWindow->DisableTimeBlock(0, 0);
    lWindow->DisableTimeBlock(23, 23);
    EXPECT_FALSE(lWindow->IsEnabled(32));
    EXPECT_TRUE(lWindow->IsEnabled(33));
    EXPECT_FALSE(lWindow->IsEnabled(55));
    EXPECT_FALSE(lWindow->IsEnabled(64));
    EXPECT_FALSE(lWindow->IsEnabled(4294967264U));
    for (unsigned int lHour = 24; lHour < 32; ++lHour)
    {
        EXPECT_TRUE(lWindow->IsEnabled(lHour)) << lHour;
    }
}

TEST(DeliveryWindow, HoursTwentyFourToThirtyOneStayEnabledWhenTheWholeDayIsDisabled)
{
    const WindowPtr lWindow(CreateDeliveryWindow());
    lWindow->DisableTimeBlock(0, 23);
    EXPECT_TRUE(lWindow->IsEnabled(24));
    EXPECT_TRUE(lWindow->IsEnabled(31));
    EXPECT_TRUE(lWindow->IsEnabled(4294967295U));
}

TEST(DeliveryWindowStream, WritesTheWordAndNothingElse)
{
    const WindowPtr lWindow(CreateDeliveryWindow());
    lWindow->DisableTimeBlock(0, 0);
    lWindow->DisableTimeBlock(9, 9);
    lWindow->DisableTimeBlock(23, 23);
    CallLog lLog;
    RecordingWriteStream lStream(lLog);
    lWindow->Serialize(lStream);
    EXPECT_EQ(lLog, CallLog{L"stream.WriteUInt32(8389121)"}); // 1 + 512 + 8388608
}

TEST(DeliveryWindowStream, ReadsTheWordStraightIntoTheWindow)
{
    const WindowPtr lWindow(CreateDeliveryWindow());
    lWindow->DisableTimeBlock(10, 10);
    CallLog lLog;
    AnsweringReadStream lStream({513U}, lLog);
    lWindow->DeSerialize(lStream);
    EXPECT_EQ(lLog, CallLog{L"stream.ReadUInt32(1024)"}) << "the stream is handed the window's own word";
    EXPECT_EQ(Blocks(lWindow), "#........#..............");
    EXPECT_EQ(lStream.GetRemaining(), 0U);
}

TEST(DeliveryWindowStream, WordLeftUntouchedKeepsTheWindow)
{
    const WindowPtr lWindow(CreateDeliveryWindow());
    lWindow->DisableTimeBlock(10, 11);
    CallLog lLog;
    AnsweringReadStream lStream({Untouched()}, lLog);
    lWindow->DeSerialize(lStream);
    EXPECT_EQ(Blocks(lWindow), "..........##............");
}

TEST(DeliveryWindowStream, FailingReadPassesThroughAndKeepsTheWindow)
{
    const WindowPtr lWindow(CreateDeliveryWindow());
    lWindow->DisableTimeBlock(10, 11);
    CallLog lLog;
    AnsweringReadStream lStream({Failing()}, lLog);
    EXPECT_THROW(lWindow->DeSerialize(lStream), StreamFailure);
    EXPECT_EQ(Blocks(lWindow), "..........##............");
}

TEST(DeliveryWindowStream, FailingWritePassesThrough)
{
    const WindowPtr lWindow(CreateDeliveryWindow());
    CallLog lLog;
    RecordingWriteStream lStream(lLog, 0);
    EXPECT_THROW(lWindow->Serialize(lStream), StreamFailure);
}

TEST(DeliveryWindowStream, WholeWordIsTakenUncheckedAndWrittenAgain)
{
    const WindowPtr lWindow = WindowOf(0xFF000001U);
    EXPECT_EQ(Blocks(lWindow), "#.......................");
    for (unsigned int lHour = 24; lHour < 32; ++lHour)
    {
        EXPECT_FALSE(lWindow->IsEnabled(lHour)) << lHour;
    }
    EXPECT_FALSE(lWindow->IsEnabled(56));
    EXPECT_EQ(WordOf(*lWindow), L"stream.WriteUInt32(4278190081)");
}

TEST(DeliveryWindowStream, BlockOperationsLeaveTheHighBitsAlone)
{
    const WindowPtr lWindow = WindowOf(0xFF000001U);
    lWindow->EnableTimeBlock(0, 23);
    EXPECT_EQ(WordOf(*lWindow), L"stream.WriteUInt32(4278190080)");
    lWindow->DisableTimeBlock(0, 23);
    EXPECT_EQ(WordOf(*lWindow), L"stream.WriteUInt32(4294967295)");
}

TEST(DeliveryWindowStream, EveryWordComesBack)
{
    for (const unsigned int lWord : {0U, 1U, 0x00800000U, 0x00FFFFFFU, 0x01000000U, 0x80000000U, 0xFFFFFFFFU})
    {
        EXPECT_EQ(WordOf(*WindowOf(lWord)), L"stream.WriteUInt32(" + std::to_wstring(lWord) + L")");
    }
}

TEST(DeliveryWindowClone, HasTheSameWholeWordAndChangesOnItsOwn)
{
    const WindowPtr lWindow = WindowOf(0x80000200U);
    const WindowPtr lClone(lWindow->Clone());
    EXPECT_NE(lClone, lWindow);
    EXPECT_EQ(WordOf(*lClone), L"stream.WriteUInt32(2147484160)");
    lClone->DisableTimeBlock(0, 0);
    lWindow->EnableTimeBlock(9, 9);
    EXPECT_EQ(Blocks(lWindow), "........................");
    EXPECT_EQ(Blocks(lClone), "#........#..............");
}

class MortalWindow : public DeliveryWindowImpl
{
public:
    explicit MortalWindow(CallLog& oLog) : mRecorder(oLog, L"window") {}

    ~MortalWindow() override
    {
        mRecorder.Call(L"Dies");
    }

private:
    Support::Recorder mRecorder;
};

TEST(DeliveryWindow, LivesFromCountZeroUntilTheLastReferenceIsDropped)
{
    CallLog lLog;
    const DeliveryWindow* const lWindow = new MortalWindow(lLog);
    lWindow->AddRef();
    lWindow->AddRef();
    lWindow->Release();
    EXPECT_EQ(lLog, CallLog());
    lWindow->Release();
    EXPECT_EQ(lLog, CallLog{L"window.Dies"});
}

} // namespace
