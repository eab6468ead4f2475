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
