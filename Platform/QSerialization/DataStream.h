// The two binary streams that objects write themselves to and read themselves from. They are abstract: whoever wants
// objects written brings a stream, and keeps it. How a primitive becomes bytes is the stream's affair, as long as every
// read returns exactly what the matching write was given, in the same order.
//
// One thread at a time uses a stream. An operation that cannot do its work throws an exception of the stream's own
// choice, which passes through the object being written or read. The order of the operations is fixed: streams of other
// makers are called through it.

#ifndef QSERIALIZATION_DATASTREAM_H
#define QSERIALIZATION_DATASTREAM_H

#include "QBase/Export.h"
#include "QBase/ReturnWString.h"

namespace QSerialization
{

// See QSerialization/MemoryDataStream.h for an implementation.
class Q8_EXPORT WriteDataStream
{
public:
    virtual ~WriteDataStream();

    // Writes a wide text up to its terminator. ipText may not be null; the text may be empty and may hold any character
    // but zero.
    virtual void WriteWString(const wchar_t* ipText) = 0;

    // Write one flag, one number of 32 bits, and one of 64 bits.
    virtual void WriteBool(bool iValue) = 0;
    virtual void WriteUInt32(unsigned int iValue) = 0;
    virtual void WriteUInt64(unsigned long iValue) = 0;
};

class Q8_EXPORT ReadDataStream
{
public:
    virtual ~ReadDataStream();

    // Read what the operation of the same name wrote. Callers set their variable first, so a stream that leaves it
    // untouched yields that value.
    virtual void ReadBool(bool& oValue) = 0;
    virtual void ReadUInt32(unsigned int& oValue) = 0;
    virtual void ReadUInt64(unsigned long& oValue) = 0;

    // Returns the next wide text.
    virtual QBase::ReturnWString ReadWString() = 0;
};

} // namespace QSerialization

#endif
