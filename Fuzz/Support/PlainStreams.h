// Streams in memory as plain as can be, and what they are to be compared with: the bytes of QSerialization's streams,
// the same exceptions, no other code in common.

#ifndef TALBASE_FUZZ_SUPPORT_PLAINSTREAMS_H
#define TALBASE_FUZZ_SUPPORT_PLAINSTREAMS_H

#include "QSerialization/DataStream.h"

#include <cstdint>
#include <string>

namespace Fuzz
{

// Bytes, as a string so that they can be compared and cut.
class PlainWriteStream : public QSerialization::WriteDataStream
{
public:
    void WriteWString(const wchar_t* ipText) override;
    void WriteBool(bool iValue) override;
    void WriteUInt32(unsigned int iValue) override;
    void WriteUInt64(unsigned long iValue) override;

    std::string mBytes;
};

class PlainReadStream : public QSerialization::ReadDataStream
{
public:
    explicit PlainReadStream(std::string iBytes) : mBytes(std::move(iBytes)) {}

    void ReadBool(bool& oValue) override;
    void ReadUInt32(unsigned int& oValue) override;
    void ReadUInt64(unsigned long& oValue) override;
    QBase::ReturnWString ReadWString() override;

    std::size_t GetRemaining() const
    {
        return mBytes.size();
    }

private:
    std::uint64_t hNumber(std::size_t iSize, const wchar_t* ipOperation);

    std::string mBytes; // what is left
};

} // namespace Fuzz

#endif
