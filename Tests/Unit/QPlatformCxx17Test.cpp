// A client of the platform family that is built as C++17.

#include "QBase/Atomic.h"
#include "QBase/Convert.h"
#include "QBase/Export.h"
#include "QBase/Guid.h"
#include "QBase/Message.h"
#include "QBase/ModuleMainPtr.h"
#include "QBase/ReferenceCounted.h"
#include "QBase/ReturnWString.h"
#include "QBase/SmartPtrI.h"
#include "QDataType/DateTime.h"
#include "QDataType/StringCollection.h"
#include "QLog/Initializer.h"
#include "QLog/Router.h"
#include "QSerialization/DataStream.h"
#include "QSerialization/MemoryDataStream.h"
#include "QSerialization/SerializableObject.h"
#include "QSynch/AtomicLong.h"
#include "QSynch/Initializer.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

static_assert(__cplusplus == 201703L);

namespace
{

using QBase::SmartPtrI;

// A serializable object as a host of today writes it.
class Counter : public virtual QSerialization::SerializableObject, public virtual QBase::ReferenceCounted
{
public:
    void Serialize(QSerialization::WriteDataStream& oStream) const override
    {
        oStream.WriteBool(true);
        oStream.WriteUInt32(mNumber);
        oStream.WriteUInt64(mNumber);
        oStream.WriteWString(QBase::ToDecimalWString(static_cast<int>(mNumber)).c_str());
    }

    void DeSerialize(QSerialization::ReadDataStream& oStream) override
    {
        bool lFlag = false;
        unsigned long lWide = 0;
        oStream.ReadBool(lFlag);
        oStream.ReadUInt32(mNumber);
        oStream.ReadUInt64(lWide);
        EXPECT_TRUE(lFlag);
        EXPECT_EQ(lWide, mNumber);
        EXPECT_EQ(QBase::DecimalToInt(oStream.ReadWString().c_str()), static_cast<int>(mNumber));
    }

    void AddRef() const noexcept override
    {
        QSynch_AtomicIncrement(mRefCount);
    }

    void Release() const noexcept override
    {
        if (QSynch_AtomicDecrement(mRefCount) == 0)
        {
            delete this;
        }
    }

    unsigned int mNumber = 0;

private:
    mutable QSynch::AtomicLong mRefCount{0};
};

TEST(PlatformAsCxx17, ObjectsAreCountedWrittenAndRead)
{
    SmartPtrI<Counter> lCounter(new Counter);
    lCounter->mNumber = 42;
    QSerialization::MemoryWriteDataStream lWritten;
    lCounter->Serialize(lWritten);
    const SmartPtrI<const QBase::ReferenceCounted> lKept = lCounter;
    EXPECT_TRUE(lKept == lCounter && lCounter != nullptr && nullptr != lKept);
    lCounter = new Counter;
    EXPECT_TRUE(lKept != lCounter);
    QSerialization::MemoryReadDataStream lRead(lWritten.GetBytes().data(), lWritten.GetBytes().size());
    lCounter->DeSerialize(lRead);
    EXPECT_EQ(lCounter->mNumber, 42U);
    EXPECT_EQ(lRead.GetRemaining(), 0U);
}

struct Module
{
    QSynch::Initializer mSynch;
    QLog::Initializer mLog;
    SmartPtrI<QLog::Router> mRouter = QLog::CreateRouter("TalBase", "Error", -3);
};

QBase::ModuleMainPtr<Module, Module> gModule;

TEST(PlatformAsCxx17, ModuleStartsAndStops)
{
    gModule.Initialize();
    EXPECT_EQ(QSynch::Initializer::GetCount(), 1);
    EXPECT_EQ(QLog::Initializer::GetCount(), 1);
    gModule.Finalize();
    EXPECT_EQ(QSynch::Initializer::GetCount(), 0);
    EXPECT_EQ(QLog::Initializer::GetCount(), 0);
}

TEST(PlatformAsCxx17, ValuesHaveTheirTexts)
{
    _GUID lGuid{};
    EXPECT_TRUE(QBase::String2Guid(lGuid, L"{00112233-4455-6677-8899-AABBCCDDEEFF}"));
    EXPECT_STREQ(QBase::Guid2String(lGuid).c_str(), L"00112233-4455-6677-8899-aabbccddeeff");
    QDataType::DateTime lDateTime;
    EXPECT_TRUE(lDateTime.FromString("2026-11-21T03:49:00+01:00"));
    EXPECT_STREQ(lDateTime.ToWString().c_str(), L"2026-11-21T02:49:00Z");
    EXPECT_TRUE(lDateTime == QDataType::DateTime(lDateTime.ToTimePoint()) && lDateTime != QDataType::DateTime());
    EXPECT_EQ(QBase::WideCharToUTF8(L"\u20AC", true), "\xE2\x82\xAC");
    EXPECT_EQ(std::wstring(QBase::ReturnWString(L"text")), L"text");
}

TEST(PlatformAsCxx17, CollectionAndMessage)
{
    const std::unique_ptr<QDataType::StringCollection> lStrings(QDataType::CreateStringCollection());
    lStrings->Insert(L"only");
    EXPECT_STREQ(lStrings->GetString(0), L"only");
    try
    {
        lStrings->GetString(1);
        ADD_FAILURE() << "nothing thrown";
    }
    catch (const QBase::ExceptionImpl<QBase::Message>& lCaught)
    {
        EXPECT_STREQ(lCaught.GetMessage(), L"QDataType::StringCollection::GetString; iIndex is out of range");
        EXPECT_EQ(lCaught.GetDomain(), QBase::MESSAGE_DOMAIN_UNKNOWN);
    }
}

} // namespace
