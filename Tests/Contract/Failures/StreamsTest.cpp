// What every class that travels through streams leaves behind when a primitive of the stream fails: each in turn, on
// writing and on reading, and, on reading from memory, at each byte at which the data can end. What is expected stands
// here by hand: for each primitive, what is there when it fails.

#include "TalBase/PropertyBags.h"

#include "QSerialization/MemoryDataStream.h"
#include "TalBase/DeliveryWindow.h"
#include "TalBase/SerializableStringCollection.h"
#include "TalBase/SerializationTemplates.h"

#include "Tests/Support/BagBuilder.h"
#include "Tests/Support/Describe.h"
#include "Tests/Support/RecordingStreams.h"
#include "Tests/Support/ScriptedStream.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace
{

using namespace Support;
using QBase::SmartPtrI;
using QSerialization::MemoryReadDataStream;
using QSerialization::ReadDataStream;
using QSerialization::WriteDataStream;
using QTalBase::NamedPropertyBag;

// Something that can be written and read.
class Subject
{
public:
    virtual ~Subject() = default;
    virtual void Write(WriteDataStream& oStream) const = 0;
    virtual void Read(ReadDataStream& oStream) = 0;
    virtual std::wstring See() const = 0;
};

using MakeSubject = std::function<std::unique_ptr<Subject>()>;

// Keeps the primitives for a script, and where in the memory stream's bytes each of them ends.
class KeepingStream : public WriteDataStream
{
public:
    void WriteWString(const wchar_t* ipText) override
    {
        mBytes.WriteWString(ipText);
        hKeep(ipText);
    }

    void WriteBool(bool iFlag) override
    {
        mBytes.WriteBool(iFlag);
        hKeep(iFlag);
    }

    void WriteUInt32(unsigned int iNumber) override
    {
        mBytes.WriteUInt32(iNumber);
        hKeep(iNumber);
    }

    void WriteUInt64(unsigned long iNumber) override
    {
        mBytes.WriteUInt64(iNumber);
        hKeep(iNumber);
    }

    QSerialization::MemoryWriteDataStream mBytes;
    std::vector<Answer> mScript;
    std::vector<std::size_t> mEnds;

private:
    void hKeep(const Answer& iAnswer)
    {
        mScript.push_back(iAnswer);
        mEnds.push_back(mBytes.GetBytes().size());
    }
};

void FailEachWrite(const MakeSubject& iMake)
{
    const std::unique_ptr<Subject> lSubject = iMake();
    const std::wstring lBefore = lSubject->See();
    CallLog lAll;
    RecordingWriteStream lStream(lAll);
    lSubject->Write(lStream);
    ASSERT_FALSE(lAll.empty());
    for (std::size_t lFailAt = 0; lFailAt < lAll.size(); ++lFailAt)
    {
        SCOPED_TRACE("primitive " + std::to_string(lFailAt));
        CallLog lLog;
        RecordingWriteStream lFailing(lLog, lFailAt);
        EXPECT_THROW(lSubject->Write(lFailing), StreamFailure);
        EXPECT_EQ(lLog, CallLog(lAll.begin(), lAll.begin() + static_cast<std::ptrdiff_t>(lFailAt)));
        EXPECT_EQ(lSubject->See(), lBefore);
        CallLog lAgain;
        RecordingWriteStream lWorking(lAgain);
        lSubject->Write(lWorking);
        EXPECT_EQ(lAgain, lAll);
    }
}

// iLeft: what is there when the primitive of that number fails. iAfter: what a whole read makes of that.
struct Left
{
    const wchar_t* mLeft;
    const wchar_t* mAfter;
};

void ExpectLeft(Subject& oSubject, const KeepingStream& iWhole, const Left& iLeft)
{
    EXPECT_EQ(oSubject.See(), iLeft.mLeft);
    MemoryReadDataStream lStream(iWhole.mBytes.GetBytes().data(), iWhole.mBytes.GetBytes().size());
    oSubject.Read(lStream);
    EXPECT_EQ(oSubject.See(), iLeft.mAfter);
    EXPECT_EQ(lStream.GetRemaining(), 0U);
}

// Whether reading ends with the exception of a stream that has no more.
bool IsCutNoticed(Subject& oSubject, ReadDataStream& oStream)
{
    try
    {
        oSubject.Read(oStream);
    }
    catch (const QSerialization::StreamException&)
    {
        return true;
    }
    return false;
}

void FailEachRead(const MakeSubject& iMakeSource, const MakeSubject& iMakeTarget, const std::vector<Left>& iExpected)
{
    KeepingStream lWhole;
    iMakeSource()->Write(lWhole);
    ASSERT_FALSE(iExpected.empty());
    ASSERT_EQ(lWhole.mScript.size(), iExpected.size());
    for (std::size_t lFailAt = 0; lFailAt < iExpected.size(); ++lFailAt)
    {
        SCOPED_TRACE("primitive " + std::to_string(lFailAt));
        std::vector<Answer> lScript(lWhole.mScript.begin(),
                                    lWhole.mScript.begin() + static_cast<std::ptrdiff_t>(lFailAt));
        lScript.emplace_back(Failing());
        CallLog lLog;
        AnsweringReadStream lStream(lScript, lLog);
        const std::unique_ptr<Subject> lTarget = iMakeTarget();
        EXPECT_THROW(lTarget->Read(lStream), StreamFailure);
        EXPECT_EQ(lLog.size(), lFailAt + 1);
        ExpectLeft(*lTarget, lWhole, iExpected[lFailAt]);
    }
    std::size_t lPrimitive = 0;
    for (std::size_t lSize = 0; lSize < lWhole.mBytes.GetBytes().size(); ++lSize)
    {
        SCOPED_TRACE("byte " + std::to_string(lSize));
        lPrimitive += lWhole.mEnds[lPrimitive] == lSize ? 1 : 0;
        MemoryReadDataStream lStream(lWhole.mBytes.GetBytes().data(), lSize);
        const std::unique_ptr<Subject> lTarget = iMakeTarget();
        EXPECT_TRUE(IsCutNoticed(*lTarget, lStream));
        ExpectLeft(*lTarget, lWhole, iExpected[lPrimitive]);
    }
}

// Subjects.

template <class Object>
class ObjectSubject : public Subject
{
public:
    explicit ObjectSubject(Object* ipObject) : mObject(ipObject) {}

    void Write(WriteDataStream& oStream) const override
    {
        mObject->Serialize(oStream);
    }

    void Read(ReadDataStream& oStream) override
    {
        mObject->DeSerialize(oStream);
    }

    SmartPtrI<Object> mObject;
};

std::wstring SeeEntry(const std::wstring& iName, const BagPtr& iBag)
{
    return Quoted(iName) + L"=" + (iBag ? Describe(iBag) : L"null") + L" ";
}

class BagSubject : public ObjectSubject<QTalBase::PropertyBag>
{
public:
    using ObjectSubject::ObjectSubject;

    std::wstring See() const override
    {
        return Describe(mObject);
    }
};

class BagsSubject : public ObjectSubject<QTalBase::PropertyBags>
{
public:
    using ObjectSubject::ObjectSubject;

    std::wstring See() const override
    {
        std::wstring lSeen;
        for (unsigned int lIndex = 0; lIndex < mObject->GetCount(); ++lIndex)
        {
            lSeen += SeeEntry(mObject->GetName(lIndex), mObject->GetPropertyBag(lIndex));
        }
        return lSeen;
    }
};

class StringsSubject : public ObjectSubject<QTalBase::SerializableStringCollection>
{
public:
    using ObjectSubject::ObjectSubject;

    std::wstring See() const override
    {
        std::wstring lSeen;
        for (unsigned long lIndex = 0; lIndex < mObject->GetCount(); ++lIndex)
        {
            lSeen += Quoted(mObject->GetString(lIndex));
        }
        return lSeen;
    }
};

class WindowSubject : public ObjectSubject<QTalBase::DeliveryWindow>
{
public:
    using ObjectSubject::ObjectSubject;

    std::wstring See() const override
    {
        std::wstring lSeen;
        for (unsigned int lHour = 0; lHour < 32; ++lHour)
        {
            lSeen += mObject->IsEnabled(lHour) ? L'+' : L'-';
        }
        return lSeen;
    }
};

class EntriesSubject : public Subject
{
public:
    void Write(WriteDataStream& oStream) const override
    {
        oStream << mEntries;
    }

    void Read(ReadDataStream& oStream) override
    {
        oStream >> mEntries;
    }

    std::wstring See() const override
    {
        std::wstring lSeen;
        for (const NamedPropertyBag& lEntry : mEntries)
        {
            lSeen += SeeEntry(lEntry.first, lEntry.second ? BagPtr(lEntry.second->Clone()) : nullptr);
        }
        return lSeen;
    }

    std::vector<NamedPropertyBag> mEntries;
};

// A possibly missing bag, as it stands in a collection.
class NestSubject : public Subject
{
public:
    explicit NestSubject(const BagPtr& iBag) : mBag(iBag) {}

    void Write(WriteDataStream& oStream) const override
    {
        oStream.WriteBool(static_cast<bool>(mBag));
        mBag->Serialize(oStream);
    }

    void Read(ReadDataStream& oStream) override
    {
        oStream >> mBag;
    }

    std::wstring See() const override
    {
        return SeeEntry(L"", BagPtr(mBag->Clone()));
    }

    SmartPtrI<const QTalBase::PropertyBag> mBag;
};

BagPtr Written()
{
    return BagBuilder(L"[[", L"]]").Set(L"a", L"1*").Nest(L"n", BagBuilder().Set(L"k", L"v"));
}

BagPtr Held()
{
    return BagBuilder().Set(L"h", L"1").Nest(L"m", BagBuilder().Set(L"k", L"v"));
}

std::vector<NamedPropertyBag> WrittenEntries()
{
    return {{L"first", Written()}, {L"second", nullptr}, {L"third", NewBag()}};
}

std::unique_ptr<Subject> WrittenBags()
{
    EntriesSubject lEntries;
    lEntries.mEntries = WrittenEntries();
    KeepingStream lStream;
    lEntries.Write(lStream);
    MemoryReadDataStream lRead(lStream.mBytes.GetBytes().data(), lStream.mBytes.GetBytes().size());
    auto lBags = std::make_unique<BagsSubject>(QTalBase::CreatePropertyBags());
    lBags->Read(lRead); // only a stream brings an entry without a bag
    return lBags;
}

const wchar_t* const gFirstRead = L"'first'='[[' ']]' {'a'='1*' 'n'={'k'='v'}} ";
const wchar_t* const gTwoRead = L"'first'='[[' ']]' {'a'='1*' 'n'={'k'='v'}} 'second'=null ";
const wchar_t* const gAllRead = L"'first'='[[' ']]' {'a'='1*' 'n'={'k'='v'}} 'second'=null 'third'='++++' '***' {} ";

// The count, then a name, a flag and three texts, a name and a flag, and again a name, a flag and three texts.
const std::vector<Left> gEntriesLeft = {
    {L"", gAllRead},      {L"", gAllRead},        {L"", gAllRead},        {L"", gAllRead},      {L"", gAllRead},
    {L"", gAllRead},      {gFirstRead, gAllRead}, {gFirstRead, gAllRead}, {gTwoRead, gAllRead}, {gTwoRead, gAllRead},
    {gTwoRead, gAllRead}, {gTwoRead, gAllRead},   {gTwoRead, gAllRead},
};

} // namespace

TEST(FailedPrimitive, PropertyBag)
{
    const auto lSource = [] { return std::make_unique<BagSubject>(Written().get()); };
    const auto lTarget = [] { return std::make_unique<BagSubject>(Held().get()); };
    FailEachWrite(lSource);
    const wchar_t* const lAll = L"'[[' ']]' {'h'='1' 'a'='1*' 'm'='++++' '***' {'k'='v'} 'n'={'k'='v'}}";
    FailEachRead(lSource, lTarget,
                 {{L"'++++' '***' {'h'='1' 'm'={'k'='v'}}", lAll},
                  {L"'[[' '***' {'h'='1' 'm'='++++' '***' {'k'='v'}}", lAll},
                  {L"'[[' ']]' {'h'='1' 'm'='++++' '***' {'k'='v'}}", lAll}});
}

TEST(FailedPrimitive, PropertyBags)
{
    const auto lTarget = [] {
        auto lBags = std::make_unique<BagsSubject>(QTalBase::CreatePropertyBags());
        lBags->mObject->Add(L"old", Held().get());
        return lBags;
    };
    FailEachWrite(WrittenBags);
    FailEachRead(WrittenBags, lTarget, gEntriesLeft);
}

TEST(FailedPrimitive, SerializableStringCollection)
{
    const auto lSource = [] {
        auto lStrings = std::make_unique<StringsSubject>(QTalBase::CreateSerializableStringCollection());
        lStrings->mObject->Insert(L"first");
        lStrings->mObject->Insert(L"");
        lStrings->mObject->Insert(L"third");
        return lStrings;
    };
    const auto lTarget = [] {
        auto lStrings = std::make_unique<StringsSubject>(QTalBase::CreateSerializableStringCollection());
        lStrings->mObject->Insert(L"held");
        return lStrings;
    };
    FailEachWrite(lSource);
    FailEachRead(lSource, lTarget,
                 {{L"'held'", L"'held''first''''third'"},
                  {L"'held'", L"'held''first''''third'"},
                  {L"'held''first'", L"'held''first''first''''third'"},
                  {L"'held''first'''", L"'held''first''''first''''third'"}});
}

TEST(FailedPrimitive, DeliveryWindow)
{
    const auto lSource = [] {
        auto lWindow = std::make_unique<WindowSubject>(QTalBase::CreateDeliveryWindow());
        lWindow->mObject->DisableTimeBlock(22, 2);
        return lWindow;
    };
    const auto lTarget = [] {
        auto lWindow = std::make_unique<WindowSubject>(QTalBase::CreateDeliveryWindow());
        lWindow->mObject->DisableTimeBlock(12, 13);
        return lWindow;
    };
    FailEachWrite(lSource);
    FailEachRead(lSource, lTarget, {{L"++++++++++++--++++++++++++++++++", L"---+++++++++++++++++++--++++++++"}});
}

TEST(FailedPrimitive, CollectionWriterAndReader)
{
    const auto lSource = [] {
        auto lEntries = std::make_unique<EntriesSubject>();
        lEntries->mEntries = WrittenEntries();
        return lEntries;
    };
    const auto lTarget = [] {
        auto lEntries = std::make_unique<EntriesSubject>();
        lEntries->mEntries.emplace_back(L"old", Held());
        return lEntries;
    };
    FailEachWrite(lSource);
    FailEachRead(lSource, lTarget, gEntriesLeft);
}

TEST(FailedPrimitive, NestedBagReader)
{
    const auto lSource = [] { return std::make_unique<NestSubject>(Written()); };
    const auto lTarget = [] { return std::make_unique<NestSubject>(Held()); };
    FailEachWrite(lSource);
    const wchar_t* const lAll = L"''='[[' ']]' {'a'='1*' 'n'={'k'='v'}} ";
    FailEachRead(lSource, lTarget,
                 {{L"''='++++' '***' {'h'='1' 'm'={'k'='v'}} ", lAll},
                  {L"''='++++' '***' {} ", lAll},
                  {L"''='[[' '***' {} ", lAll},
                  {L"''='[[' ']]' {} ", lAll}});
}
