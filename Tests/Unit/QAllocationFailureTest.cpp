// What the family promises when memory runs out: each operation is made to fail at its first allocation, then at its
// second, and so on until it succeeds, and after each failure everything is as it was.

#include "QBase/Convert.h"
#include "QBase/Guid.h"
#include "QBase/Message.h"
#include "QBase/ModuleMainPtr.h"
#include "QBase/ReturnWString.h"
#include "QDataType/DateTime.h"
#include "QDataType/StringCollection.h"
#include "QLog/Router.h"
#include "QSerialization/MemoryDataStream.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

namespace
{

long gLive = 0;       // allocations not yet freed
long gCountdown = -1; // allocations until one fails; below zero none does
bool gHasFailed = false;
std::size_t gLargest = 0; // bytes asked for at once
const std::size_t gMost = std::size_t{1} << 36;

void* Allocate(std::size_t iSize)
{
    gLargest = iSize > gLargest ? iSize : gLargest;
    if (gCountdown == 0)
    {
        gCountdown = -1;
        gHasFailed = true;
        throw std::bad_alloc();
    }
    gCountdown -= gCountdown > 0 ? 1 : 0;
    // More than any machine has is refused here: a sanitizer would end the program over it.
    void* const lMemory = iSize <= gMost ? std::malloc(iSize != 0 ? iSize : 1) : nullptr;
    if (lMemory == nullptr)
    {
        throw std::bad_alloc();
    }
    ++gLive;
    return lMemory;
}

void Free(void* ipMemory)
{
    gLive -= ipMemory != nullptr ? 1 : 0;
    std::free(ipMemory);
}

} // namespace

void* operator new(std::size_t iSize)
{
    return Allocate(iSize);
}

// By default this is the one above; a sanitizer's own is not.
void* operator new[](std::size_t iSize)
{
    return Allocate(iSize);
}

void operator delete(void* ipMemory) noexcept
{
    Free(ipMemory);
}

void operator delete[](void* ipMemory) noexcept
{
    Free(ipMemory);
}

void operator delete[](void* ipMemory, std::size_t) noexcept
{
    Free(ipMemory);
}

void operator delete(void* ipMemory, std::size_t) noexcept
{
    Free(ipMemory);
}

namespace
{

const wchar_t gLong[] = L"a text that no small buffer can hold, so that it has to be allocated";

// Runs iWork with the first allocation failing, then the second, until none fails any more; iCheck looks at what is
// left after each failure. Returns the number of failures.
int FailEach(const std::function<void()>& iWork, const std::function<void()>& iCheck)
{
    for (int lFailures = 0;; ++lFailures)
    {
        const long lLive = gLive;
        gHasFailed = false;
        gCountdown = lFailures;
        bool lIsThrown = false;
        try
        {
            iWork();
        }
        catch (const std::bad_alloc&)
        {
            lIsThrown = true;
        }
        gCountdown = -1;
        EXPECT_EQ(gHasFailed, lIsThrown);
        if (!gHasFailed)
        {
            return lFailures;
        }
        EXPECT_EQ(lLive, gLive);
        iCheck();
    }
}

int FailEach(const std::function<void()>& iWork)
{
    return FailEach(iWork, [] {});
}

TEST(AllocationFailure, SetMessageLeavesTheMessage)
{
    QBase::Message lMessage;
    lMessage.SetMessage(L"before");
    EXPECT_LT(0,
              FailEach([&] { lMessage.SetMessage(gLong); }, [&] { EXPECT_STREQ(L"before", lMessage.GetMessage()); }));
    EXPECT_STREQ(gLong, lMessage.GetMessage());
}

TEST(AllocationFailure, CopyingAMessageAllocatesNothing)
{
    QBase::Message lMessage;
    lMessage.SetMessage(gLong);
    const long lLive = gLive;
    gCountdown = 0;
    const QBase::Message lCopy = lMessage;
    QBase::Message lAssigned;
    lAssigned = lCopy;
    gCountdown = -1;
    EXPECT_EQ(lLive, gLive);
    EXPECT_STREQ(gLong, lAssigned.GetMessage());
}

TEST(AllocationFailure, ThrowingAMessageWithoutMemoryDeliversItsText)
{
    QBase::Message lMessage;
    lMessage.SetMessage(gLong);
    std::wstring lCaughtText;
    gCountdown = 0;
    try
    {
        throw QBase::ExceptionImpl<QSerialization::StreamException>(lMessage);
    }
    catch (const QBase::Message& lCaught)
    {
        gCountdown = -1;
        lCaughtText = lCaught.GetMessage();
    }
    EXPECT_EQ(gLong, lCaughtText);
}

TEST(AllocationFailure, MovingAReturnWStringAllocatesNothing)
{
    QBase::ReturnWString lOriginal(gLong);
    QBase::ReturnWString lAssigned(L"before");
    std::wstring lText = gLong;
    gCountdown = 0;
    QBase::ReturnWString lMoved(std::move(lOriginal));
    lAssigned = std::move(lMoved);
    const QBase::ReturnWString lTakenOver(std::move(lText));
    gCountdown = -1;
    EXPECT_STREQ(gLong, lAssigned.c_str());
    EXPECT_STREQ(gLong, lTakenOver.c_str());
}

TEST(AllocationFailure, ReturnWStringLeaksNothingAndKeepsTheTarget)
{
    EXPECT_LT(0, FailEach([] { const QBase::ReturnWString lText(gLong); }));
    EXPECT_LT(0, FailEach([] { const QBase::ReturnWString lText(gLong, 30); }));
    const QBase::ReturnWString lSource(gLong);
    QBase::ReturnWString lTarget(L"before");
    FailEach([&] { lTarget = lSource; }, [&] { EXPECT_STREQ(L"before", lTarget.c_str()); });
    EXPECT_STREQ(gLong, lTarget.c_str());
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

TEST(AllocationFailure, ConversionsLeakNothing)
{
    const std::string lNarrow(1000, 'x');
    const std::wstring lWide(1000, L'\x20AC');
    EXPECT_LT(0, FailEach([&] { EXPECT_EQ(3000U, QBase::WideCharToUTF8(lWide.c_str(), true).size()); }));
    EXPECT_LT(0, FailEach([&] { EXPECT_EQ(1000U, QBase::UTF8ToWideChar(lNarrow, true).size()); }));
    // Short texts may or may not need memory.
    FailEach([] { EXPECT_STREQ(L"-2147483648", QBase::ToDecimalWString(-2147483647 - 1).c_str()); });
    FailEach([] { EXPECT_EQ(36U, QBase::Guid2String(_GUID{}).GetLength()); });
    FailEach([] { EXPECT_EQ(20U, QDataType::DateTime().ToWString().GetLength()); });
}

TEST(AllocationFailure, ParsersAllocateNothing)
{
    const std::string lText = "2026-11-21T02:49:00Z";
    _GUID lGuid{};
    QDataType::DateTime lDateTime;
    const long lLive = gLive;
    gCountdown = 0;
    const bool lIsGuid = QBase::String2Guid(lGuid, L"00112233-4455-6677-8899-aabbccddeeff");
    const bool lIsDateTime = lDateTime.FromString(lText);
    const int lNumber = QBase::DecimalToInt(L"12");
    gCountdown = -1;
    EXPECT_EQ(lLive, gLive);
    EXPECT_TRUE(lIsGuid);
    EXPECT_TRUE(lIsDateTime);
    EXPECT_EQ(12, lNumber);
}

TEST(AllocationFailure, StringCollectionInsertLeavesTheCollection)
{
    std::unique_ptr<QDataType::StringCollection> lCollection;
    EXPECT_LT(0, FailEach([&] { lCollection.reset(QDataType::CreateStringCollection()); }));
    lCollection->Insert(L"before");
    const auto lCheck = [&] {
        EXPECT_EQ(1U, lCollection->GetCount());
        EXPECT_STREQ(L"before", lCollection->GetString(0));
    };
    EXPECT_LT(0, FailEach([&] { lCollection->Insert(gLong); }, lCheck));
    EXPECT_EQ(2U, lCollection->GetCount());
}

TEST(AllocationFailure, StringCollectionInsertCollectionLeavesTheCollection)
{
    const std::unique_ptr<QDataType::StringCollection> lCollection(QDataType::CreateStringCollection());
    lCollection->Insert(L"before");
    lCollection->Insert(gLong);
    const auto lCheck = [&] {
        EXPECT_EQ(2U, lCollection->GetCount());
        EXPECT_STREQ(L"before", lCollection->GetString(0));
        EXPECT_STREQ(gLong, lCollection->GetString(1));
    };
    EXPECT_LT(1, FailEach([&] { lCollection->Insert(*lCollection); }, lCheck));
    EXPECT_EQ(4U, lCollection->GetCount());
}

TEST(AllocationFailure, CreateRouterLeaksNothing)
{
    const std::string lName(100, 'n');
    EXPECT_LT(1, FailEach([&] { EXPECT_TRUE(QLog::CreateRouter(lName.c_str(), lName.c_str(), 1)); }));
}

TEST(AllocationFailure, MemoryWritesLeaveTheBytes)
{
    for (int lKind = 0; lKind < 4; ++lKind)
    {
        QSerialization::MemoryWriteDataStream lStream;
        const std::function<void()> lWrites[] = {
            [&] { lStream.WriteWString(gLong); },
            [&] { lStream.WriteBool(true); },
            [&] { lStream.WriteUInt32(1); },
            [&] { lStream.WriteUInt64(1); },
        };
        EXPECT_LT(0, FailEach(lWrites[lKind], [&] { EXPECT_TRUE(lStream.GetBytes().empty()); }));
        EXPECT_FALSE(lStream.GetBytes().empty());
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
        int lFailures = 0;
        for (int lRound = 0; lFailures == 0 && lRound < 10000; ++lRound) // until the bytes have to grow
        {
            const std::vector<std::byte> lBefore = lStream.GetBytes();
            lFailures = FailEach(lWrite, [&] { EXPECT_EQ(lBefore, lStream.GetBytes()); });
        }
        EXPECT_EQ(1, lFailures);
    }
}

TEST(AllocationFailure, MemoryReadWStringConsumesNothing)
{
    QSerialization::MemoryWriteDataStream lWritten;
    lWritten.WriteWString(gLong);
    const std::size_t lSize = lWritten.GetBytes().size();
    QSerialization::MemoryReadDataStream lStream(lWritten.GetBytes().data(), lSize);
    EXPECT_LT(0, FailEach([&] { EXPECT_STREQ(gLong, lStream.ReadWString().c_str()); },
                          [&] { EXPECT_EQ(lSize, lStream.GetRemaining()); }));
    EXPECT_EQ(0U, lStream.GetRemaining());
}

TEST(AllocationFailure, MemoryReadWStringOfADamagedCountAsksForNoMemory)
{
    // The most that the message of the exception takes at once.
    const auto lLargest = [](const std::vector<unsigned char>& iBytes) {
        QSerialization::MemoryReadDataStream lStream(iBytes.data(), iBytes.size());
        gLargest = 0;
        EXPECT_THROW(lStream.ReadWString(), QSerialization::StreamException);
        return gLargest;
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
    const long lLive = gLive;
    EXPECT_EQ(2, FailEach([] { gHolder.Initialize(); })); // the module, and the text in it
    EXPECT_LT(lLive, gLive);
    gHolder.Finalize();
    EXPECT_EQ(lLive, gLive); // the failed starts had not counted
}

} // namespace
