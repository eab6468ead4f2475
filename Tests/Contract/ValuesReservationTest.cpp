// A count in a stream is believed, but nothing is set aside for it: a damaged spool may claim four thousand million
// entries, and the first read that finds nothing must end the matter.

#include "TalBase/PropertyBags.h"
#include "TalBase/SerializableStringCollection.h"
#include "TalBase/SerializationTemplates.h"

#include "QSerialization/MemoryDataStream.h"
#include "Tests/Support/FailingNew.h"

#include <gtest/gtest.h>

#include <vector>

namespace
{

using QBase::SmartPtrI;
using QTalBase::NamedPropertyBag;
using QTalBase::PropertyBags;
using QTalBase::SerializableStringCollection;
using Support::AllocationsMade;

struct NothingLeft
{
};

// Claims as many elements as a count can hold and then has none. Allocates nothing of its own.
class BoastfulStream : public QSerialization::ReadDataStream
{
public:
    void ReadBool(bool&) override
    {
        throw NothingLeft();
    }

    void ReadUInt32(unsigned int& oValue) override
    {
        oValue = 4294967295U;
    }

    void ReadUInt64(unsigned long& oValue) override
    {
        oValue = 18446744073709551615UL;
    }

    QBase::ReturnWString ReadWString() override
    {
        throw NothingLeft();
    }
};

template <class Operation>
void ExpectFailureWithoutAllocation(const Operation& iOperation)
{
    bool lHasFailed = false;
    const std::size_t lMade = AllocationsMade();
    try
    {
        iOperation();
    }
    catch (const NothingLeft&)
    {
        lHasFailed = true;
    }
    EXPECT_EQ(AllocationsMade() - lMade, 0U);
    EXPECT_TRUE(lHasFailed);
}

TEST(LargestCount, CollectionReaderAllocatesNothing)
{
    BoastfulStream lStream;
    std::vector<NamedPropertyBag> lEntries;
    ExpectFailureWithoutAllocation([&] { lStream >> lEntries; });
    EXPECT_EQ(lEntries.capacity(), 0U);
}

TEST(LargestCount, PropertyBagsAllocatesNothing)
{
    BoastfulStream lStream;
    const SmartPtrI<PropertyBags> lBags(QTalBase::CreatePropertyBags());
    ExpectFailureWithoutAllocation([&] { lBags->DeSerialize(lStream); });
    EXPECT_EQ(lBags->GetCount(), 0U);
}

TEST(LargestCount, SerializableStringCollectionAllocatesNothing)
{
    BoastfulStream lStream;
    const SmartPtrI<SerializableStringCollection> lStrings(QTalBase::CreateSerializableStringCollection());
    ExpectFailureWithoutAllocation([&] { lStrings->DeSerialize(lStream); });
    EXPECT_EQ(lStrings->GetCount(), 0UL);
}

// From real bytes: only the message is made.
TEST(LargestCount, PropertyBagsFromMemoryAllocatesNoMoreThanItsMessage)
{
    const unsigned char lBytes[] = {0xff, 0xff, 0xff, 0xff};
    const SmartPtrI<PropertyBags> lBags(QTalBase::CreatePropertyBags());
    QSerialization::MemoryReadDataStream lStream(lBytes, sizeof lBytes);
    Support::ForgetLargest();
    EXPECT_THROW(lBags->DeSerialize(lStream), QSerialization::StreamException);
    EXPECT_LT(Support::LargestAllocation(), 2000U);
}

TEST(LargestCount, PropertyBagsFromMemoryWithATextLongerThanTheRestAllocatesNoMoreThanItsMessage)
{
    const unsigned char lBytes[] = {0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 'a', 0, 0, 0};
    const SmartPtrI<PropertyBags> lBags(QTalBase::CreatePropertyBags());
    QSerialization::MemoryReadDataStream lStream(lBytes, sizeof lBytes);
    Support::ForgetLargest();
    EXPECT_THROW(lBags->DeSerialize(lStream), QSerialization::StreamException);
    EXPECT_LT(Support::LargestAllocation(), 2000U);
}

} // namespace
