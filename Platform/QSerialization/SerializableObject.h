// The base of everything that can write itself to a binary stream and read itself back.

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
    // Writes the object's fields, without a header, version or length of its own. What the stream throws passes on.
    virtual void Serialize(WriteDataStream& iStream) const = 0;

    // Reads what Serialize wrote, in the same order. What the stream throws passes on.
    virtual void DeSerialize(ReadDataStream& iStream) = 0;

protected:
    // Such objects are counted (QBase::ReferenceCounted) and never deleted through this class.
    ~SerializableObject() = default;
};

} // namespace QSerialization

#endif
