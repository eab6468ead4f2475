// Binary streams in memory. The bytes are the same on every machine: little-endian, one byte for a flag, four or eight
// for integers, and for a text a 32-bit count of characters and then four bytes for each.
//
// One thread at a time uses a stream.

#ifndef QSERIALIZATION_MEMORYDATASTREAM_H
#define QSERIALIZATION_MEMORYDATASTREAM_H

#include "QBase/Message.h"
#include "QSerialization/DataStream.h"

#include <cstddef>
#include <vector>

namespace QSerialization
{

// The bytes cannot be read, or a text cannot be written. Thrown as QBase::ExceptionImpl<StreamException>.
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

    // All write operations throw std::bad_alloc, the bytes unchanged. WriteWString also throws StreamException
    // "QSerialization::MemoryWriteDataStream::WriteWString; The text is too long" above 4,294,967,295 characters.
    void WriteWString(const wchar_t* ipText) override;
    void WriteBool(bool iValue) override;
    void WriteUInt32(unsigned int iValue) override;
    void WriteUInt64(unsigned long iValue) override;

    // Returns all bytes written so far; valid while the stream lives, and changed by further writes.
    const std::vector<std::byte>& GetBytes() const;

private:
    std::vector<std::byte> mBytes;
};

class Q8_EXPORT MemoryReadDataStream : public ReadDataStream
{
public:
    // Reads the iSize bytes at ipBytes, which are not copied and must outlive the stream.
    MemoryReadDataStream(const void* ipBytes, std::size_t iSize);
    ~MemoryReadDataStream() override;

    // A read that fails throws StreamException, consumes nothing and leaves its target unchanged:
    //   "QSerialization::MemoryReadDataStream; The data ends too early" where fewer bytes remain than the value takes,
    //   or than a text's count claims, before anything is allocated for it;
    //   "QSerialization::MemoryReadDataStream::ReadBool; The flag is neither 0 nor 1".
    // ReadWString throws std::bad_alloc too.
    void ReadBool(bool& oValue) override;
    void ReadUInt32(unsigned int& oValue) override;
    void ReadUInt64(unsigned long& oValue) override;
    QBase::ReturnWString ReadWString() override;

    // Returns the number of bytes not yet read.
    std::size_t GetRemaining() const;

private:
    const std::byte* mPosition;
    std::size_t mRemaining;
};

} // namespace QSerialization

#endif
