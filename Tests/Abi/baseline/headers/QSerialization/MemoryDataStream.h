#ifndef QSERIALIZATION_MEMORYDATASTREAM_H
#define QSERIALIZATION_MEMORYDATASTREAM_H
#include "QBase/Message.h"
#include "QSerialization/DataStream.h"
#include <cstddef>
#include <vector>
namespace QSerialization
{
class Q8_EXPORT StreamException : public QBase::Message
{
public:
    explicit StreamException(const QBase::Message& iMessage);
    StreamException(const StreamException&) = default;
    StreamException& operator=(const StreamException&) = default;
    ~StreamException() override;
};
class Q8_EXPORT MemoryWriteDataStream : public WriteDataStream
{
public:
    MemoryWriteDataStream();
    ~MemoryWriteDataStream() override;
    void WriteWString(const wchar_t* ipText) override;
    void WriteBool(bool iValue) override;
    void WriteUInt32(unsigned int iValue) override;
    void WriteUInt64(unsigned long iValue) override;
    const std::vector<std::byte>& GetBytes() const;

private:
    std::vector<std::byte> mBytes;
};
class Q8_EXPORT MemoryReadDataStream : public ReadDataStream
{
public:
    MemoryReadDataStream(const void* ipBytes, std::size_t iSize);
    ~MemoryReadDataStream() override;
    void ReadBool(bool& oValue) override;
    void ReadUInt32(unsigned int& oValue) override;
    void ReadUInt64(unsigned long& oValue) override;
    QBase::ReturnWString ReadWString() override;
    std::size_t GetRemaining() const;

private:
    const std::byte* mPosition;
    std::size_t mRemaining;
};
} // namespace QSerialization
#endif
