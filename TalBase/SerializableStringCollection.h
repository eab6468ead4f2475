// A list of wide strings that can be written to and read from a binary stream. It wraps a QDataType::StringCollection
// of its own, whose behaviour (order and duplicates are kept) it passes through.
//
// The factory returns a new object with reference count 0; the first QBase::SmartPtrI takes the first reference.
// References may be taken and dropped from any thread; the collection must not be changed while another thread uses it.
// The class raises no errors of its own: those of the wrapped collection, of streams and of memory pass through.

#ifndef TALBASE_SERIALIZABLESTRINGCOLLECTION_H
#define TALBASE_SERIALIZABLESTRINGCOLLECTION_H

#include "QBase/ReferenceCounted.h"
#include "QDataType/StringCollection.h"
#include "QSerialization/SerializableObject.h"
#include "TalBase/Export.h"

namespace QTalBase
{

// Serialize (from QSerialization::SerializableObject) writes a 64-bit count and then the strings in order of position.
// DeSerialize KEEPS what the collection holds and adds the strings read after it; when it fails part-way, those read so
// far stay.
class TALBASE_EXPORT SerializableStringCollection : public virtual QSerialization::SerializableObject,
                                                    public virtual QBase::ReferenceCounted
{
public:
    ~SerializableStringCollection() override;

    // Append one string, which may not be null, or all strings of a collection.
    virtual void Insert(const wchar_t* ipString) = 0;
    virtual void Insert(const QDataType::StringCollection& iStrings) = 0;

    // Returns the number of strings.
    virtual unsigned long GetCount() const = 0;

    // Returns the string at a position below the count, valid until the collection changes. Throws what the wrapped
    // collection throws for another position (a QBase::Message).
    virtual const wchar_t* GetString(unsigned long iIndex) const = 0;

    // Removes all strings.
    virtual void Clear() = 0;

    // Returns an independent copy that the caller owns and destroys with delete.
    virtual QDataType::StringCollection* GetStringCollection() const = 0;
};

// Creates an empty collection, reference count 0.
TALBASE_EXPORT SerializableStringCollection* CreateSerializableStringCollection();

} // namespace QTalBase

#endif
