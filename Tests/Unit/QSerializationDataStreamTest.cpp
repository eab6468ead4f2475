#include "QSerialization/DataStream.h"

#include <gtest/gtest.h>

#include <deque>
#include <memory>
#include <string>
#include <type_traits>
#include <variant>

namespace
{

using Primitive = std::variant<bool, unsigned int, unsigned long, std::wstring>;

// The smallest streams that there can be: the values themselves, in order.
class ValueWriter : public QSerialization::WriteDataStream
{
public:
    explicit ValueWriter(std::deque<Primitive>& oValues) : mValues(oValues) {}

    ~ValueWriter() override
    {
        mValues.emplace_back(std::wstring(L"writer gone"));
    }

    void WriteWString(const wchar_t* ipText) override
    {
        mValues.emplace_back(std::wstring(ipText));
    }

    void WriteBool(bool iValue) override
    {
        mValues.emplace_back(iValue);
    }

    void WriteUInt32(unsigned int iValue) override
    {
        mValues.emplace_back(iValue);
    }

    void WriteUInt64(unsigned long iValue) override
    {
        mValues.emplace_back(iValue);
    }

private:
    std::deque<Primitive>& mValues;
};

class ValueReader : public QSerialization::ReadDataStream
{
public:
    explicit ValueReader(std::deque<Primitive>& oValues) : mValues(oValues) {}

    void ReadBool(bool& oValue) override
    {
        oValue = hNext<bool>();
    }

    void ReadUInt32(unsigned int& oValue) override
    {
        oValue = hNext<unsigned int>();
    }

    void ReadUInt64(unsigned long& oValue) override
    {
        oValue = hNext<unsigned long>();
    }

    QBase::ReturnWString ReadWString() override
    {
        return {hNext<std::wstring>()};
    }

private:
    template <class Value>
    Value hNext()
    {
        const Value lValue = std::get<Value>(mValues.front());
        mValues.pop_front();
        return lValue;
    }

    std::deque<Primitive>& mValues;
};

TEST(DataStream, OwnStreamsCarryEveryPrimitiveThroughTheBases)
{
    std::deque<Primitive> lValues;
    std::unique_ptr<QSerialization::WriteDataStream> lWriter = std::make_unique<ValueWriter>(lValues);
    lWriter->WriteWString(L"name");
    lWriter->WriteBool(true);
    lWriter->WriteUInt32(4294967295U);
    lWriter->WriteUInt64(18446744073709551615UL);
    lWriter.reset();
    EXPECT_EQ(Primitive(std::wstring(L"writer gone")), lValues.back()); // deleted through its base

    const std::unique_ptr<QSerialization::ReadDataStream> lReader = std::make_unique<ValueReader>(lValues);
    EXPECT_STREQ(L"name", lReader->ReadWString().c_str());
    bool lFlag = false;
    unsigned int l32 = 0;
    unsigned long l64 = 0;
    lReader->ReadBool(lFlag);
    lReader->ReadUInt32(l32);
    lReader->ReadUInt64(l64);
    EXPECT_TRUE(lFlag);
    EXPECT_EQ(4294967295U, l32);
    EXPECT_EQ(18446744073709551615UL, l64);
}

TEST(DataStream, NumbersHaveTheirWidths)
{
    static_assert(sizeof(unsigned int) == 4);
    static_assert(sizeof(unsigned long) == 8);
    static_assert(std::has_virtual_destructor_v<QSerialization::WriteDataStream>);
    static_assert(std::has_virtual_destructor_v<QSerialization::ReadDataStream>);
    EXPECT_TRUE(std::is_abstract_v<QSerialization::WriteDataStream>);
    EXPECT_TRUE(std::is_abstract_v<QSerialization::ReadDataStream>);
}

} // namespace
