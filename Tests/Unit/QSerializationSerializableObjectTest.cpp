#include "QSerialization/SerializableObject.h"

#include "QSerialization/MemoryDataStream.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace
{

class Switch : public virtual QSerialization::SerializableObject
{
public:
    explicit Switch(bool iIsOn) : mIsOn(iIsOn) {}

    virtual ~Switch() = default;

    void Serialize(QSerialization::WriteDataStream& iStream) const override
    {
        iStream.WriteBool(mIsOn);
    }

    void DeSerialize(QSerialization::ReadDataStream& iStream) override
    {
        iStream.ReadBool(mIsOn);
    }

    bool mIsOn;
};

TEST(SerializableObject, WritesAndReadsItselfThroughTheBase)
{
    const Switch lOn(true);
    const QSerialization::SerializableObject& lWriter = lOn;
    QSerialization::MemoryWriteDataStream lWritten;
    lWriter.Serialize(lWritten);
    ASSERT_EQ(1U, lWritten.GetBytes().size());
    EXPECT_EQ(std::byte{1}, lWritten.GetBytes()[0]);

    Switch lOther(false);
    QSerialization::SerializableObject& lReader = lOther;
    QSerialization::MemoryReadDataStream lStream(lWritten.GetBytes().data(), lWritten.GetBytes().size());
    lReader.DeSerialize(lStream);
    EXPECT_TRUE(lOther.mIsOn);
}

TEST(SerializableObject, IsNotDeletedThroughTheBase)
{
    static_assert(!std::is_destructible_v<QSerialization::SerializableObject>);
    static_assert(!std::has_virtual_destructor_v<QSerialization::SerializableObject>);
    static_assert(std::is_abstract_v<QSerialization::SerializableObject>);
    static_assert(sizeof(QSerialization::SerializableObject) == sizeof(void*));
    EXPECT_TRUE(std::has_virtual_destructor_v<Switch>);
}

} // namespace
