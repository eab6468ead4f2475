// An ordered list of wide texts that keeps duplicates. It owns copies of its texts. Plain ownership of the list itself:
// whoever gets one from a factory destroys it with delete. It must not be changed while another thread uses it; const
// operations may run at the same time.

#ifndef QDATATYPE_STRINGCOLLECTION_H
#define QDATATYPE_STRINGCOLLECTION_H

#include "QBase/Export.h"

namespace QDataType
{

// The order of the operations is fixed: collections of other makers can be inserted.
class Q8_EXPORT StringCollection
{
public:
    virtual ~StringCollection();

    // Appends a copy of a text, up to its terminator. ipString may not be null; it may be a text of this collection.
    // Throws std::bad_alloc, and leaves the collection unchanged then.
    virtual void Insert(const wchar_t* ipString) = 0;

    // Appends copies of all texts of a collection, in its order. It may be this one: every text is then there twice.
    // Throws std::bad_alloc and what the other collection's operations throw, and leaves this one unchanged then.
    virtual void Insert(const StringCollection& iStrings) = 0;

    // Returns the number of texts.
    virtual unsigned long GetCount() const = 0;

    // Returns the text at a position, counted from 0 and below the count; never null, valid until the collection
    // changes. Throws QBase::ExceptionImpl<QBase::Message> "QDataType::StringCollection::GetString; iIndex is out of
    // range" for any other position.
    virtual const wchar_t* GetString(unsigned long iIndex) const = 0;

    // Removes all texts. Never throws.
    virtual void Clear() = 0;
};

// Creates an empty collection, which the caller destroys with delete. Throws std::bad_alloc.
Q8_EXPORT StringCollection* CreateStringCollection();

} // namespace QDataType

#endif
