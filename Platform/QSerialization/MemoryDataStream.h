// Binary streams in memory: what one writes, the other reads, in the same process or on another machine. The bytes are
// the same everywhere, little-endian: one byte for a flag, 0 or 1; four or eight for a number; and for a text a number
// of 32 bits that counts its characters, and then four bytes for each of them.
//
// One thread at a time uses a stream. What is thrown is QBase::ExceptionImpl<StreamException> with the text given, or
// std::bad_alloc; a write or read that fails changes nothing.

#ifndef QSERIALIZATION_MEMORYDATASTREAM_H
#define QSERIALIZATION_MEMORYDATASTREAM_H

#include "QBase/Message.h"
#include "QSerialization/DataStream.h"

#include <cstddef>
#include <vector>

namespace QSerialization
{

// Bytes that are not what the reader asked for, or a text that the form cannot carry.
class Q8_EXPORT StreamException : public QBase::Message
{
public:
    explicit StreamException(const QBase::Message& iMessage);
    StreamException(const StreamException&) = default;
    StreamException& operator=(const StreamException&) = default;
    ~StreamException() override;
};

// Owns what was written to it.
class Q8_EXPORT MemoryWriteDataStream : public WriteDataStream
{
public:
    MemoryWriteDataStream();
    ~MemoryWriteDataStream() override;

    // Appends a text; each character is written as the 32 bits that it is, also where it is no Unicode character.
    // Throws "QSerialization::MemoryWriteDataStream::WriteWString; The text is too long" above 4,294,967,295
    // characters.
    void WriteWString(const wchar_t* ipText) override;

    // Append one, four and eight bytes.
    void WriteBool(bool iValue) override;
    void WriteUInt32(unsigned int iValue) override;
    void WriteUInt64(unsigned long iValue) override;

    // Returns all bytes written so far. The reference stays good as long as the stream; further writes show through it
    // and move the bytes.
    const std::vector<std::byte>& GetBytes() const;

private:
    std::vector<std::byte> mBytes;
};

// Reads bytes that somebody else owns. It believes nothing of them: whatever they are, a read gives a value or throws.
class Q8_EXPORT MemoryReadDataStream : public ReadDataStream
{
public:
    // Reads the iSize bytes at ipBytes from the first to the last. They are not copied and must outlive the stream;
    // ipBytes may be null where iSize is 0.
    MemoryReadDataStream(const void* ipBytes, std::size_t iSize);
    ~MemoryReadDataStream() override;

    // Throws "QSerialization::MemoryReadDataStream::ReadBool; The data ends too early" where no byte remains, and
    // "QSerialization::MemoryReadDataStream::ReadBool; The flag is neither 0 nor 1".
    void ReadBool(bool& oValue) override;

    // Throws "QSerialization::MemoryReadDataStream::ReadUInt32; The data ends too early" where fewer than four bytes
    // remain.
    void ReadUInt32(unsigned int& oValue) override;

    // Throws "QSerialization::MemoryReadDataStream::ReadUInt64; The data ends too early" where fewer than eight bytes
    // remain.
    void ReadUInt64(unsigned long& oValue) override;

    // Returns a text with exactly the characters that the bytes hold, zero characters and such that Unicode does not
    // know included. Throws "QSerialization::MemoryReadDataStream::ReadWString; The data ends too early" where fewer
    // bytes remain than the count takes or claims; a false count is found out before anything is allocated for it.
    QBase::ReturnWString ReadWString() override;

    // Returns the number of bytes not yet read.
    std::size_t GetRemaining() const;

private:
    const std::byte* mPosition;
    std::size_t mRemaining;
};

} // namespace QSerialization

#endif
