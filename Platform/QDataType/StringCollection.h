// An ordered list of wide texts that keeps duplicates. Plain ownership: destroyed with delete. One thread at a time may
// change it; const operations may run at the same time.

#ifndef QDATATYPE_STRINGCOLLECTION_H
#define QDATATYPE_STRINGCOLLECTION_H

#include "QBase/Export.h"

namespace QDataType
{

class Q8_EXPORT StringCollection
{
public:
    virtual ~StringCollection();

    // Appends a copy of a text, which may not be null and may be one of the collection's own. Throws std::bad_alloc, the
    // collection unchanged.
    virtual void Insert(const wchar_t* ipString) = 0;

    // Appends all texts of a collection, which may be this one: its texts are then appended once. What the other's
    // operations throw passes on. After any failure this collection is unchanged.
    virtual void Insert(const StringCollection& iStrings) = 0;

    // Returns the number of texts.
    virtual unsigned long GetCount() const = 0;

    // Returns the text at a position below the count; valid until the collection changes. Throws
    // QBase::ExceptionImpl<QBase::Message> "QDataType::StringCollection::GetString; iIndex is out of range".
    virtual const wchar_t* GetString(unsigned long iIndex) const = 0;

    // Removes all texts. Never throws.
    virtual void Clear() = 0;
};

// Creates an empty collection that the caller deletes. Throws std::bad_alloc.
Q8_EXPORT StringCollection* CreateStringCollection();

} // namespace QDataType

#endif
