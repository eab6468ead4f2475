// The window as a property of a bag.

#include "TalBase/DeliveryWindow.h"

#include "TalBase/PrivateSource/DeliveryWindowImpl.h"
#include "Tests/Support/Describe.h"
#include "Tests/Support/Expect.h"
#include "Tests/Support/RecordingBag.h"
#include "Tests/Support/ScriptedStream.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace
{

using QTalBase::CreateDeliveryWindow;
using QTalBase::CreatePropertyBag;
using QTalBase::DeliveryWindow;
using QTalBase::DeliveryWindowImpl;
using QTalBase::DeliveryWindowUserErrorException;
using QTalBase::PropertyBag;
using QTalBase::PropertyBagException;
using QTalBase::PropertyBagUserErrorException;
using Support::BagPtr;
using Support::CallLog;
using Support::Describe;

using WindowPtr = QBase::SmartPtrI<DeliveryWindow>;

const wchar_t* const gNoSuchHour =
    L"QTalBase::DeliveryWindowImpl::SetTimeBlock; Time of day may not be greater than 23";
const wchar_t* const gMalformed =
    L"QTalBase::DeliveryWindowImpl::DeSerializeFromPropertyBag; PropertyBag Serialization is malformed";

std::string Blocks(const WindowPtr& iWindow)
{
    std::string lBlocks;
    for (unsigned int lHour = 0; lHour < 24; ++lHour)
    {
        lBlocks += iWindow->IsEnabled(lHour) ? '.' : '#';
    }
    return lBlocks;
}

// Blocks 10 and 11 disabled, to see what changes and what does not.
WindowPtr Noon()
{
    WindowPtr lWindow(CreateDeliveryWindow());
    lWindow->DisableTimeBlock(10, 11);
    return lWindow;
}

BagPtr BagWith(const wchar_t* ipName, const wchar_t* ipValue)
{
    BagPtr lBag(CreatePropertyBag());
    lBag->SetProperty(ipName, ipValue, false);
    return lBag;
}

std::wstring WrittenBy(const WindowPtr& iWindow, const wchar_t* ipPrefix)
{
    return Describe(BagPtr(iWindow->SerializeToPropertyBag(ipPrefix, L"[", L"]")));
}

TEST(DeliveryWindowToBag, NewWindowGivesAnEmptyValueAndSoAnEmptyBag)
{
    const BagPtr lBag(WindowPtr(CreateDeliveryWindow())->SerializeToPropertyBag(L"night", L"++++", L"***"));
    EXPECT_EQ(lBag->GetCount(), 0U);
    EXPECT_STREQ(lBag->GetProperty(L"nightDeliveryWindow").c_str(), L"");
}

TEST(DeliveryWindowToBag, DisabledHoursStandInAscendingOrderTwoCharactersAndACommaEach)
{
    const WindowPtr lWindow(CreateDeliveryWindow());
    lWindow->DisableTimeBlock(23, 0);
    lWindow->DisableTimeBlock(9, 9);
    EXPECT_EQ(WrittenBy(lWindow, L"night"), L"'[' ']' {'nightDeliveryWindow'=' 0, 9,23,'}");
}

TEST(DeliveryWindowToBag, WorkingHoursMixOneAndTwoDigits)
{
    const WindowPtr lWindow(CreateDeliveryWindow());
    lWindow->DisableTimeBlock(9, 17);
    EXPECT_EQ(WrittenBy(lWindow, L"w"), L"'[' ']' {'wDeliveryWindow'=' 9,10,11,12,13,14,15,16,17,'}");
}

TEST(DeliveryWindowToBag, WholeDayListsAllHours)
{
    const WindowPtr lWindow(CreateDeliveryWindow());
    lWindow->DisableTimeBlock(0, 23);
    EXPECT_EQ(WrittenBy(lWindow, L""), L"'[' ']' {'DeliveryWindow'=' 0, 1, 2, 3, 4, 5, 6, 7, 8, 9,10,11,12,13,14,15,"
                                       L"16,17,18,19,20,21,22,23,'}");
}

TEST(DeliveryWindowToBag, BitsAboveTheDayAreNotListed)
{
    CallLog lLog;
    Support::AnsweringReadStream lStream({0xFF000020U}, lLog);
    const WindowPtr lWindow(CreateDeliveryWindow());
    lWindow->DeSerialize(lStream);
    EXPECT_EQ(WrittenBy(lWindow, L""), L"'[' ']' {'DeliveryWindow'=' 5,'}");
}

TEST(DeliveryWindowToBag, EachCallMakesABagOfItsOwn)
{
    const WindowPtr lWindow = Noon();
    const BagPtr lFirst(lWindow->SerializeToPropertyBag(L"", L"[", L"]"));
    const BagPtr lSecond(lWindow->SerializeToPropertyBag(L"", L"<", L">"));
    EXPECT_EQ(Describe(lFirst), L"'[' ']' {'DeliveryWindow'='10,11,'}");
    EXPECT_EQ(Describe(lSecond), L"'<' '>' {'DeliveryWindow'='10,11,'}");
}

TEST(DeliveryWindowToBag, InvalidDelimitersThrowWhatTheBagFactoryThrows)
{
    const WindowPtr lWindow = Noon();
    EXPECT_MESSAGE(lWindow->SerializeToPropertyBag(L"", L"", L"]"), PropertyBagUserErrorException,
                   L"QTalBase::PropertyBagImpl::CheckValidityOfDelimiters; Begin may not be empty");
    EXPECT_MESSAGE(lWindow->SerializeToPropertyBag(L"", L"[", L""), PropertyBagUserErrorException,
                   L"QTalBase::PropertyBagImpl::CheckValidityOfDelimiters; End may not be empty");
    EXPECT_MESSAGE(lWindow->SerializeToPropertyBag(L"", L"[", L"["), PropertyBagException,
                   L"QTalBase::PropertyBagImpl::CheckValidityOfDelimiters; Begin and End may not be equal");
    EXPECT_MESSAGE(lWindow->SerializeToPropertyBag(L"", L"[[", L"["), PropertyBagException,
                   L"QTalBase::PropertyBagImpl::CheckValidityOfDelimiters; Begin may not contain End");
    EXPECT_MESSAGE(lWindow->SerializeToPropertyBag(L"", L"[", L"[["), PropertyBagException,
                   L"QTalBase::PropertyBagImpl::CheckValidityOfDelimiters; End may not contain Begin");
}

TEST(DeliveryWindowToBag, NameWithADelimiterThrowsWhatSetPropertyThrows)
{
    EXPECT_MESSAGE(Noon()->SerializeToPropertyBag(L"a]", L"[", L"]"), PropertyBagException,
                   L"QTalBase::PropertyBagImpl::SetProperty; ipName may not contain the delimiters");
    EXPECT_MESSAGE(WindowPtr(CreateDeliveryWindow())->SerializeToPropertyBag(L"", L"Window", L"]"),
                   PropertyBagException,
                   L"QTalBase::PropertyBagImpl::SetProperty; ipName may not contain the delimiters");
}

TEST(DeliveryWindowToBag, HoursWithADelimiterThrowWhatSetPropertyThrows)
{
    EXPECT_MESSAGE(Noon()->SerializeToPropertyBag(L"", L"[", L",11"), PropertyBagException,
                   L"QTalBase::PropertyBagImpl::SetProperty; ipValue may not contain the delimiters. ipValue: 10,11,, "
                   L"begin delimiter: [, end delimiter: ,11");
}

// Says of itself what it likes, and notes what it is asked.
class StubbornWindow : public DeliveryWindowImpl
{
public:
    explicit StubbornWindow(CallLog& oLog) : mRecorder(oLog, L"window") {}

    bool IsEnabled(unsigned int iHour) const override
    {
        mRecorder.Call(L"IsEnabled", iHour);
        if (iHour == mFailingHour)
        {
            throw std::range_error("no answer");
        }
        return iHour != 3;
    }

    unsigned int mFailingHour = 100;

private:
    Support::Recorder mRecorder;
};

TEST(DeliveryWindowToBag, AsksIsEnabledThroughTheInterfaceForEachHourOfTheDay)
{
    CallLog lLog;
    const WindowPtr lWindow(new StubbornWindow(lLog));
    lWindow->DisableTimeBlock(7, 8);
    EXPECT_EQ(WrittenBy(lWindow, L""), L"'[' ']' {'DeliveryWindow'=' 3,'}");
    ASSERT_EQ(lLog.size(), 24U);
    for (unsigned int lHour = 0; lHour < 24; ++lHour)
    {
        EXPECT_EQ(lLog[lHour], L"window.IsEnabled(" + std::to_wstring(lHour) + L")");
    }
}

TEST(DeliveryWindowToBag, FailingIsEnabledPassesThrough)
{
    CallLog lLog;
    const QBase::SmartPtrI<StubbornWindow> lWindow(new StubbornWindow(lLog));
    lWindow->mFailingHour = 5;
    EXPECT_THROW(lWindow->SerializeToPropertyBag(L"", L"[", L"]"), std::range_error);
    EXPECT_EQ(lLog.size(), 6U);
}

TEST(DeliveryWindowToBag, ChecksTheDelimitersBeforeItAsksForTheHours)
{
    CallLog lLog;
    const WindowPtr lWindow(new StubbornWindow(lLog));
    EXPECT_THROW(lWindow->SerializeToPropertyBag(L"", L"[", L"["), PropertyBagException);
    EXPECT_EQ(lLog, CallLog());
}

struct Reading
{
    const wchar_t* mText;
    const char* mBlocks;
};

TEST(DeliveryWindowFromBag, ReadsEveryAcceptedText)
{
    const Reading lReadings[] = {{L"", "........................"},       {L" 5,", ".....#.................."},
                                 {L"05,", ".....#.................."},    {L"5 ,", ".....#.................."},
                                 {L"+5,", ".....#.................."},    {L" 0, 9,23,", "#........#.............#"},
                                 {L"23, 0,", "#......................#"}, {L" 5, 5,", ".....#.................."},
                                 {L" 5,7", ".....#.................."},   {L" 5,12", ".....#.................."},
                                 {L" 5,12,", ".....#......#..........."}, {L" 5,7;", ".....#.................."},
                                 {L"7", "........................"},      {L"7,", "........................"},
                                 {L"24", "........................"},     {L" x,", "#......................."},
                                 {L"x5,", "#......................."},    {L"  ,", "#......................."},
                                 {L",,,", "#......................."},    {L"-0,", "#......................."},
                                 {L"- ,", "#......................."},    {L"--,", "#......................."},
                                 {L"1x,", ".#......................"},    {L"**,", "#......................."},
                                 {L",5,6", "#......................."}};
    for (const Reading& lReading : lReadings)
    {
        const WindowPtr lWindow = Noon();
        lWindow->DeSerializeFromPropertyBag(L"night", BagWith(L"nightDeliveryWindow", lReading.mText).get());
        EXPECT_EQ(Blocks(lWindow), lReading.mBlocks) << Support::Readable(lReading.mText);
    }
}

TEST(DeliveryWindowFromBag, ThirdCharacterThatIsNoCommaThrowsAndChangesNothing)
{
    for (const wchar_t* lText : {L" 5;", L" 5 ,", L"  5", L"5,6,7,", L" 5, 6;", L" 5, 6;24,", L"24;", L"-1;"})
    {
        const WindowPtr lWindow = Noon();
        const BagPtr lBag = BagWith(L"DeliveryWindow", lText);
        EXPECT_MESSAGE(lWindow->DeSerializeFromPropertyBag(L"", lBag.get()), DeliveryWindowUserErrorException,
                       gMalformed);
        EXPECT_EQ(Blocks(lWindow), "..........##............") << Support::Readable(lText);
    }
}

TEST(DeliveryWindowFromBag, NumberThatIsNoHourThrowsAndChangesNothing)
{
    for (const wchar_t* lText : {L"24,", L"99,", L"-1,", L"-9,", L" 5,24,", L" 5,24,xx;"})
    {
        const WindowPtr lWindow = Noon();
        const BagPtr lBag = BagWith(L"DeliveryWindow", lText);
        EXPECT_MESSAGE(lWindow->DeSerializeFromPropertyBag(L"", lBag.get()), DeliveryWindowUserErrorException,
                       gNoSuchHour);
        EXPECT_EQ(Blocks(lWindow), "..........##............") << Support::Readable(lText);
    }
}

TEST(DeliveryWindowFromBag, NullBagEnablesEveryBlock)
{
    const WindowPtr lWindow = Noon();
    lWindow->DeSerializeFromPropertyBag(L"night", nullptr);
    EXPECT_EQ(Blocks(lWindow), "........................");
}

TEST(DeliveryWindowFromBag, BagWithoutThePropertyEnablesEveryBlock)
{
    const WindowPtr lWindow = Noon();
    lWindow->DeSerializeFromPropertyBag(L"night", BagWith(L"dayDeliveryWindow", L" 1,").get());
    EXPECT_EQ(Blocks(lWindow), "........................");
}

TEST(DeliveryWindowFromBag, PrefixIsReadBackOnlyAsItWasWritten)
{
    const BagPtr lBag(Noon()->SerializeToPropertyBag(L"night", L"[", L"]"));
    for (const wchar_t* lPrefix : {L"", L"Night", L"night ", L"nigh"})
    {
        const WindowPtr lWindow(CreateDeliveryWindow());
        lWindow->DeSerializeFromPropertyBag(lPrefix, lBag.get());
        EXPECT_EQ(Blocks(lWindow), "........................");
    }
    const WindowPtr lWindow(CreateDeliveryWindow());
    lWindow->DeSerializeFromPropertyBag(L"night", lBag.get());
    EXPECT_EQ(Blocks(lWindow), "..........##............");
}

TEST(DeliveryWindowFromBag, EveryPatternOfOneAndTwoBlocksComesBack)
{
    for (unsigned int lFirst = 0; lFirst < 24; ++lFirst)
    {
        for (unsigned int lSecond = 0; lSecond < 24; ++lSecond)
        {
            const WindowPtr lWindow(CreateDeliveryWindow());
            lWindow->DisableTimeBlock(lFirst, lFirst);
            lWindow->DisableTimeBlock(lSecond, lSecond);
            const BagPtr lBag(lWindow->SerializeToPropertyBag(L"p", L"++++", L"***"));
            const WindowPtr lRead = Noon();
            lRead->DeSerializeFromPropertyBag(L"p", lBag.get());
            EXPECT_EQ(Blocks(lRead), Blocks(lWindow));
        }
    }
}

TEST(DeliveryWindowFromBag, EmbeddedBagOfThatNameIsMalformed)
{
    const BagPtr lBag(CreatePropertyBag());
    lBag->EmbedProperty(L"DeliveryWindow", BagWith(L"a", L" 5,").get());
    EXPECT_MESSAGE(Noon()->DeSerializeFromPropertyBag(L"", lBag.get()), DeliveryWindowUserErrorException, gMalformed);
}

TEST(DeliveryWindowFromBag, BitsAboveTheDayAreKept)
{
    CallLog lLog;
    Support::AnsweringReadStream lStream({0xA5000001U}, lLog);
    const WindowPtr lWindow(CreateDeliveryWindow());
    lWindow->DeSerialize(lStream);
    lWindow->DeSerializeFromPropertyBag(L"", BagWith(L"DeliveryWindow", L" 1,").get());
    EXPECT_EQ(Blocks(lWindow), ".#......................");
    std::string lHigh;
    for (unsigned int lHour = 24; lHour < 32; ++lHour)
    {
        lHigh += lWindow->IsEnabled(lHour) ? '0' : '1';
    }
    EXPECT_EQ(lHigh, "10100101"); // bits 24, 26, 29 and 31
}

TEST(DeliveryWindowFromBag, AsksTheBagOnceForThePropertyByName)
{
    CallLog lLog;
    const BagPtr lBag(new Support::RecordingBag(lLog));
    lBag->SetProperty(L"nightDeliveryWindow", L" 5,", false);
    lLog.clear();
    Noon()->DeSerializeFromPropertyBag(L"night", lBag.get());
    ASSERT_FALSE(lLog.empty());
    EXPECT_EQ(lLog, CallLog{L"bag.GetProperty(nightDeliveryWindow)"});
}

class BrokenBag : public QTalBase::PropertyBagImpl
{
public:
    QBase::ReturnWString GetProperty(const wchar_t*) const override
    {
        throw std::range_error("no property");
    }
};

TEST(DeliveryWindowFromBag, FailingGetPropertyPassesThroughAndChangesNothing)
{
    const WindowPtr lWindow = Noon();
    const BagPtr lBag(new BrokenBag);
    EXPECT_THROW(lWindow->DeSerializeFromPropertyBag(L"", lBag.get()), std::range_error);
    EXPECT_EQ(Blocks(lWindow), "..........##............");
}

class WatchedWindow : public DeliveryWindowImpl
{
public:
    explicit WatchedWindow(CallLog& oLog) : mRecorder(oLog, L"window") {}

    void EnableTimeBlock(unsigned int iStart, unsigned int iEnd) override
    {
        mRecorder.Call(L"Enable", iStart, iEnd);
        DeliveryWindowImpl::EnableTimeBlock(iStart, iEnd);
    }

    void DisableTimeBlock(unsigned int iStart, unsigned int iEnd) override
    {
        mRecorder.Call(L"Disable", iStart, iEnd);
        DeliveryWindowImpl::DisableTimeBlock(iStart, iEnd);
    }

private:
    Support::Recorder mRecorder;
};

TEST(DeliveryWindowFromBag, CopiesBlockByBlockThroughTheInterface)
{
    CallLog lLog;
    const WindowPtr lWindow(new WatchedWindow(lLog));
    lWindow->DeSerializeFromPropertyBag(L"", BagWith(L"DeliveryWindow", L" 1,23,").get());
    CallLog lExpected;
    for (unsigned int lHour = 0; lHour < 24; ++lHour)
    {
        const std::wstring lNumber = std::to_wstring(lHour);
        lExpected.push_back((lHour == 1 || lHour == 23 ? L"window.Disable(" : L"window.Enable(") + lNumber + L", " +
                            lNumber + L")");
    }
    EXPECT_EQ(lLog, lExpected);
    EXPECT_EQ(Blocks(lWindow), ".#.....................#");
}

TEST(DeliveryWindowFromBag, BadTextTouchesNoBlock)
{
    CallLog lLog;
    const WindowPtr lWindow(new WatchedWindow(lLog));
    EXPECT_THROW(lWindow->DeSerializeFromPropertyBag(L"", BagWith(L"DeliveryWindow", L" 1,23;").get()),
                 DeliveryWindowUserErrorException);
    EXPECT_EQ(lLog, CallLog());
}

} // namespace
