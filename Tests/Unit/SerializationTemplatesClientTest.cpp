// What a client's own namespace has to write to reach the operators, and that they take no part where they are not
// meant.

#include "TalBase/SerializationTemplates.h"

#include "Tests/Support/RecordingStreams.h"
#include "Tests/Support/ScriptedStream.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

// A client whose own operators hide the global ones, with a counted class of its own in a collection.
namespace MailQueue
{

struct Priority
{
    unsigned int mLevel = 0;
};

inline QSerialization::WriteDataStream& operator<<(QSerialization::WriteDataStream& iStream, const Priority& iPriority)
{
    iStream.WriteUInt32(iPriority.mLevel);
    return iStream;
}

inline QSerialization::ReadDataStream& operator>>(QSerialization::ReadDataStream& iStream, Priority& oPriority)
{
    iStream.ReadUInt32(oPriority.mLevel);
    return iStream;
}

// As much of a counted, serializable class as the collection templates ask for.
class Note
{
public:
    explicit Note(unsigned int iNumber) : mNumber(iNumber) {}

    void Serialize(QSerialization::WriteDataStream& iStream) const
    {
        iStream.WriteUInt32(mNumber);
    }

    void AddRef() const noexcept
    {
        ++mReferences;
    }

    void Release() const noexcept
    {
        if (--mReferences == 0)
        {
            delete this;
        }
    }

    unsigned int mNumber;

private:
    mutable int mReferences = 0;
};

inline QSerialization::ReadDataStream& operator>>(QSerialization::ReadDataStream& iStream,
                                                  QBase::SmartPtrI<const Note>& oNote)
{
    bool lIsPresent = false;
    unsigned int lNumber = 0;
    iStream.ReadBool(lIsPresent);
    iStream.ReadUInt32(lNumber);
    oNote = lIsPresent ? new Note(lNumber) : nullptr;
    return iStream;
}

using Jobs = std::vector<QTalBase::NamedPropertyBag>;
using Notes = std::vector<std::pair<std::wstring, QBase::SmartPtrI<const Note>>>;

void Save(QSerialization::WriteDataStream& iStream, const Priority& iPriority, const Jobs& iJobs)
{
    using ::operator<<;
    iStream << iPriority << iJobs;
}

void Load(QSerialization::ReadDataStream& iStream, Priority& oPriority, Jobs& oJobs)
{
    using ::operator>>;
    iStream >> oPriority >> oJobs;
}

// The reader of one bag lives beside the stream, where argument-dependent lookup finds it without a using declaration.
void LoadOne(QSerialization::ReadDataStream& iStream, QBase::SmartPtrI<const QTalBase::PropertyBag>& oJob)
{
    iStream >> oJob;
}

void SaveNotes(QSerialization::WriteDataStream& iStream, const Notes& iNotes)
{
    using ::operator<<;
    iStream << iNotes;
}

void LoadNotes(QSerialization::ReadDataStream& iStream, Notes& oNotes)
{
    using ::operator>>;
    iStream >> oNotes;
}

} // namespace MailQueue

namespace
{

using Support::AnsweringReadStream;
using Support::CallLog;
using Support::RecordingWriteStream;

template <class Left, class Right, class = void>
struct CanWrite : std::false_type
{
};

template <class Left, class Right>
struct CanWrite<Left, Right, std::void_t<decltype(std::declval<Left>() << std::declval<Right>())>> : std::true_type
{
};

template <class Left, class Right, class = void>
struct CanRead : std::false_type
{
};

template <class Left, class Right>
struct CanRead<Left, Right, std::void_t<decltype(std::declval<Left>() >> std::declval<Right>())>> : std::true_type
{
};

TEST(ClientNamespace, SavesACollectionBesideItsOwnTypes)
{
    CallLog lLog;
    RecordingWriteStream lStream(lLog);
    MailQueue::Jobs lJobs;
    lJobs.emplace_back(L"night", nullptr);
    MailQueue::Save(lStream, MailQueue::Priority{7}, lJobs);
    EXPECT_EQ(lLog, (CallLog{L"stream.WriteUInt32(7)", L"stream.WriteUInt32(1)", L"stream.WriteWString(night)",
                             L"stream.WriteBool(false)"}));
}

TEST(ClientNamespace, LoadsACollectionBesideItsOwnTypes)
{
    CallLog lLog;
    AnsweringReadStream lStream({7U, 1U, L"night", true, L"++++", L"***", L"a++++1***"}, lLog);
    MailQueue::Priority lPriority;
    MailQueue::Jobs lJobs;
    MailQueue::Load(lStream, lPriority, lJobs);
    EXPECT_EQ(lPriority.mLevel, 7U);
    ASSERT_EQ(lJobs.size(), 1U);
    EXPECT_STREQ(lJobs[0].second->GetProperty(L"a").c_str(), L"1");
}

TEST(ClientNamespace, FindsTheReaderOfOneBagBesideTheStream)
{
    CallLog lLog;
    AnsweringReadStream lStream({true, L"++++", L"***", L"a++++1***"}, lLog);
    QBase::SmartPtrI<const QTalBase::PropertyBag> lJob;
    MailQueue::LoadOne(lStream, lJob);
    ASSERT_TRUE(lJob);
    EXPECT_STREQ(lJob->GetProperty(L"a").c_str(), L"1");
}

TEST(ClientNamespace, CollectionOfItsOwnClassIsWrittenInTheSameForm)
{
    CallLog lLog;
    RecordingWriteStream lStream(lLog);
    MailQueue::Notes lNotes;
    lNotes.emplace_back(L"n", new MailQueue::Note(5));
    lNotes.emplace_back(L"none", nullptr);
    MailQueue::SaveNotes(lStream, lNotes);
    EXPECT_EQ(lLog, (CallLog{L"stream.WriteUInt32(2)", L"stream.WriteWString(n)", L"stream.WriteBool(true)",
                             L"stream.WriteUInt32(5)", L"stream.WriteWString(none)", L"stream.WriteBool(false)"}));
}

TEST(ClientNamespace, CollectionOfItsOwnClassIsReadWithItsOwnReader)
{
    CallLog lLog;
    AnsweringReadStream lStream({1U, L"n", true, 5U}, lLog);
    MailQueue::Notes lNotes;
    MailQueue::LoadNotes(lStream, lNotes);
    ASSERT_EQ(lNotes.size(), 1U);
    EXPECT_EQ(lNotes[0].first, L"n");
    ASSERT_TRUE(lNotes[0].second);
    EXPECT_EQ(lNotes[0].second->mNumber, 5U);
}

TEST(OverloadResolution, OnlyTheDataStreamsTakeCollections)
{
    using Jobs = MailQueue::Jobs;
    EXPECT_TRUE((CanWrite<QSerialization::WriteDataStream&, const Jobs&>::value));
    EXPECT_TRUE((CanRead<QSerialization::ReadDataStream&, Jobs&>::value));
    EXPECT_FALSE((CanWrite<std::wostream&, const Jobs&>::value));
    EXPECT_FALSE((CanWrite<QSerialization::ReadDataStream&, const Jobs&>::value));
    EXPECT_FALSE((CanRead<QSerialization::ReadDataStream&, const Jobs&>::value));
}

TEST(OverloadResolution, TheNestedBagReaderTakesACountedPointerOnly)
{
    using QTalBase::PropertyBag;
    EXPECT_TRUE((CanRead<QSerialization::ReadDataStream&, QBase::SmartPtrI<const PropertyBag>&>::value));
    EXPECT_FALSE((CanRead<QSerialization::ReadDataStream&, PropertyBag*&>::value));
}

TEST(OverloadResolution, EveryOperatorReturnsItsStream)
{
    using QSerialization::ReadDataStream;
    using QSerialization::WriteDataStream;
    using Bag = QBase::SmartPtrI<const QTalBase::PropertyBag>;
    using Written = decltype(std::declval<WriteDataStream&>() << std::declval<const MailQueue::Jobs&>());
    using ReadAll = decltype(std::declval<ReadDataStream&>() >> std::declval<MailQueue::Jobs&>());
    using ReadOne = decltype(std::declval<ReadDataStream&>() >> std::declval<Bag&>());
    EXPECT_TRUE((std::is_same_v<Written, WriteDataStream&>));
    EXPECT_TRUE((std::is_same_v<ReadAll, ReadDataStream&>));
    EXPECT_TRUE((std::is_same_v<ReadOne, ReadDataStream&>));
}

} // namespace
