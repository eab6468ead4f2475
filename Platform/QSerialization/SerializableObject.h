// The base of everything that can write itself to a binary stream (QSerialization/DataStream.h) and read itself back.
// An object's form is the plain sequence of its fields, without a header, a type, a version or a length: a reader has
// to know what comes next and reads exactly what was written, in the same order. A count stands before what it counts,
// and a flag before what may be missing. Reading changes the object, writing does not; one thread at a time reads into
// one.

#ifndef QSERIALIZATION_SERIALIZABLEOBJECT_H
#define QSERIALIZATION_SERIALIZABLEOBJECT_H

#include "QBase/Export.h"

namespace QSerialization
{

class ReadDataStream;
class WriteDataStream;

// Interfaces derive from this class virtually, and first, so that these two operations open their virtual table.
class Q8_EXPORT SerializableObject
{
public:
    // Writes the object's fields. What the stream throws passes on; what was written before stays written.
    virtual void Serialize(WriteDataStream& iStream) const = 0;

    // Reads what Serialize wrote. What the stream throws passes on; each class says what it holds then.
    virtual void DeSerialize(ReadDataStream& iStream) = 0;

protected:
    // Such objects are counted (QBase::ReferenceCounted) and never deleted through this class, which is why it does not
    // spend a place in the virtual table on a destructor.
    ~SerializableObject() = default;
};

} // namespace QSerialization

#endif
