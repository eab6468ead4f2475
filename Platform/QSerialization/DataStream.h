// The two binary streams that serializable objects are written to and read from: abstract, handed in by the caller. How
// a primitive becomes bytes is the stream's affair; every read must return exactly what the matching write was given, in
// the same order. One thread at a time uses a stream. Failures are exceptions of the stream's own choice.

#ifndef QSERIALIZATION_DATASTREAM_H
#define QSERIALIZATION_DATASTREAM_H

#include "QBase/Export.h"
#include "QBase/ReturnWString.h"

namespace QSerialization
{

class Q8_EXPORT WriteDataStream
{
public:
    virtual ~WriteDataStream();

    // Writes a terminated wide text, which may not be null.
    virtual void WriteWString(const wchar_t* ipText) = 0;
    virtual void WriteBool(bool iValue) = 0;
    virtual void WriteUInt32(unsigned int iValue) = 0;
    virtual void WriteUInt64(unsigned long iValue) = 0;
};

class Q8_EXPORT ReadDataStream
{
public:
    virtual ~ReadDataStream();

    virtual void ReadBool(bool& oValue) = 0;
    virtual void ReadUInt32(unsigned int& oValue) = 0;
    virtual void ReadUInt64(unsigned long& oValue) = 0;
    virtual QBase::ReturnWString ReadWString() = 0;
};

} // namespace QSerialization

#endif
