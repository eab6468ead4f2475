// What the family promises beyond single operations when memory runs out. Tests/Contract/Failures/ has every operation.

#include "QBase/Message.h"
#include "QBase/ModuleMainPtr.h"
#include "QBase/ReturnWString.h"
#include "QSerialization/MemoryDataStream.h"

#include "Tests/Support/FailingNew.h"

#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <string>
#include <utility>
#include <vector>

namespace
{

using Support::AllocationsLive;

const wchar_t gLong[] = L"a text that no small buffer can hold, so that it has to be allocated";

TEST(AllocationFailure, CopyingAMessageAllocatesNothing)
{
    QBase::Message lMessage;
    lMessage.SetMessage(gLong);
    const std::size_t lLive = AllocationsLive();
    Support::FailAfter(0, Support::Shortage::FromThenOn);
    const QBase::Message lCopy = lMessage;
    QBase::Message lAssigned;
    lAssigned = lCopy;
    Support::StopFailing();
    EXPECT_EQ(lLive, AllocationsLive());
    EXPECT_STREQ(gLong, lAssigned.GetMessage());
}

TEST(AllocationFailure, ThrowingAMessageWithoutMemoryDeliversItsText)
{
    QBase::Message lMessage;
    lMessage.SetMessage(gLong);
    std::wstring lCaughtText;
    Support::FailAfter(0, Support::Shortage::FromThenOn);
    try
    {
        throw QBase::ExceptionImpl<QSerialization::StreamException>(lMessage);
    }
    catch (const QBase::Message& lCaught)
    {
        Support::StopFailing();
        lCaughtText = lCaught.GetMessage();
    }
    EXPECT_EQ(gLong, lCaughtText);
}

TEST(AllocationFailure, MovingAReturnWStringAllocatesNothing)
{
    QBase::ReturnWString lOriginal(gLong);
    QBase::ReturnWString lAssigned(L"before");
    std::wstring lText = gLong;
    Support::FailAfter(0, Support::Shortage::FromThenOn);
    QBase::ReturnWString lMoved(std::move(lOriginal));
    lAssigned = std::move(lMoved);
    const QBase::ReturnWString lTakenOver(std::move(lText));
    Support::StopFailing();
    EXPECT_STREQ(gLong, lAssigned.c_str());
    EXPECT_STREQ(gLong, lTakenOver.c_str());
}

TEST(AllocationFailure, ReturnWStringOfALengthThatNoTextCanHaveThrows)
{
    const std::size_t lWrapping = static_cast<std::size_t>(-1) / sizeof(wchar_t) + 1; // times four this is 0
    for (const std::size_t lLength : {lWrapping - 2, lWrapping - 1, lWrapping, lWrapping + 1,
                                      static_cast<std::size_t>(-2), static_cast<std::size_t>(-1), std::size_t{1} << 40})
    {
        EXPECT_THROW(QBase::ReturnWString(L"a", lLength), std::bad_alloc) << lLength;
    }
}

TEST(AllocationFailure, MemoryWritesBehindOthersLeaveTheBytes)
{
    QSerialization::MemoryWriteDataStream lStream;
    const std::function<void()> lWrites[] = {
        [&] { lStream.WriteWString(gLong); },
        [&] { lStream.WriteBool(true); },
        [&] { lStream.WriteUInt32(1); },
        [&] { lStream.WriteUInt64(1); },
    };
    for (const std::function<void()>& lWrite : lWrites)
    {
        while (lStream.GetBytes().size() < lStream.GetBytes().capacity() || lStream.GetBytes().empty())
        {
            lStream.WriteBool(false);
        }
        const std::vector<std::byte> lBefore = lStream.GetBytes();
        Support::FailAfter(0);
        EXPECT_THROW(lWrite(), std::bad_alloc);
        EXPECT_EQ(Support::StopFailing(), 1U);
        EXPECT_EQ(lBefore, lStream.GetBytes());
    }
}

TEST(AllocationFailure, MemoryReadWStringOfADamagedCountAsksForNoMemory)
{
    // The most that the message of the exception takes at once.
    const auto lLargest = [](const std::vector<unsigned char>& iBytes) {
        QSerialization::MemoryReadDataStream lStream(iBytes.data(), iBytes.size());
        Support::ForgetLargest();
        EXPECT_THROW(lStream.ReadWString(), QSerialization::StreamException);
        return Support::LargestAllocation();
    };
    const std::size_t lForTheMessage = lLargest({});
    EXPECT_LT(lForTheMessage, 1000U);
    EXPECT_EQ(lForTheMessage, lLargest({0xFF, 0xFF, 0xFF, 0xFF, 0x41, 0, 0, 0}));
    EXPECT_EQ(lForTheMessage, lLargest({0xFF, 0xFF, 0xFF, 0x7F, 0x41, 0, 0, 0}));
    EXPECT_EQ(lForTheMessage, lLargest({0x00, 0x00, 0x00, 0x40, 0x41, 0, 0, 0})); // 0 bytes in 32 bits
    EXPECT_EQ(lForTheMessage, lLargest({0x01, 0x00, 0x00, 0x40, 0x41, 0, 0, 0})); // 4
    std::vector<unsigned char> lBytes(4 * 1000 + 3, 0x41);
    lBytes[0] = 0xE8; // 1000 characters, of which one byte is missing: too small to be seen but for the comparison
    lBytes[1] = 0x03;
    lBytes[2] = lBytes[3] = 0;
    EXPECT_EQ(lForTheMessage, lLargest(lBytes));
}

struct Module
{
    std::wstring mText = gLong;
};

TEST(AllocationFailure, ModuleMainPtrTakesTheCountBack)
{
    static constinit QBase::ModuleMainPtr<Module, Module> gHolder;
    const std::size_t lLive = AllocationsLive();
    for (std::size_t lSuccesses : {0U, 1U}) // the module, and the text in it
    {
        Support::FailAfter(lSuccesses);
        EXPECT_THROW(gHolder.Initialize(), std::bad_alloc);
        Support::StopFailing();
        EXPECT_EQ(lLive, AllocationsLive());
    }
    gHolder.Initialize();
    EXPECT_LT(lLive, AllocationsLive());
    gHolder.Finalize();
    EXPECT_EQ(lLive, AllocationsLive()); // the failed starts had not counted
}

} // namespace
