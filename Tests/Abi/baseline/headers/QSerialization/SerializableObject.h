#ifndef QSERIALIZATION_SERIALIZABLEOBJECT_H
#define QSERIALIZATION_SERIALIZABLEOBJECT_H
#include "QBase/Export.h"
namespace QSerialization
{
class ReadDataStream;
class WriteDataStream;
class Q8_EXPORT SerializableObject
{
public:
    virtual void Serialize(WriteDataStream& iStream) const = 0;
    virtual void DeSerialize(ReadDataStream& iStream) = 0;

protected:
    ~SerializableObject() = default;
};
} // namespace QSerialization
#endif
