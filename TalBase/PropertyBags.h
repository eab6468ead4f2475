// An ordered collection of property bags, each filed under a name, that travels through a stream as one object. The
// collection shares the bags it is given and never changes them; every bag that it hands out is a fresh clone.
//
// A factory or Clone returns a new collection with reference count 0; the first QBase::SmartPtrI takes the first
// reference. References may be taken and dropped from any thread; a collection must not be changed while another
// thread uses it. Errors are QBase::ExceptionImpl of the class named, with the text given; std::bad_alloc may come from
// everything that returns or keeps something.

#ifndef TALBASE_PROPERTYBAGS_H
#define TALBASE_PROPERTYBAGS_H

#include "QBase/ReferenceCounted.h"
#include "QBase/SmartPtrI.h"
#include "QSerialization/SerializableObject.h"
#include "TalBase/Export.h"
#include "TalBase/PropertyBag.h"

namespace QTalBase
{

// Serialize (from QSerialization::SerializableObject) writes a 32-bit count, then for each entry its name, a flag that
// says whether its bag is present, and the bag. DeSerialize EMPTIES the collection first, from the last entry to the
// first, and then reads; when it fails part-way, the entries read so far stay. What the stream or a bag throws passes
// on.
class TALBASE_EXPORT PropertyBags : public virtual QSerialization::SerializableObject,
                                    public virtual QBase::ReferenceCounted
{
public:
    ~PropertyBags() override;

    // Appends an entry. The name is copied and need not be new; the bag is shared, with one more reference, so a later
    // change made by its owner is seen in what the collection hands out. ipName may not be null. Throws
    // PropertyBagUserErrorException "QTalBase::PropertyBagsImpl::Add; ipPropertyBag cannot be NULL".
    virtual void Add(const wchar_t* ipName, const PropertyBag* ipPropertyBag) = 0;

    // Returns the number of entries.
    virtual unsigned int GetCount() const = 0;

    // Returns the name of an entry, valid until the collection changes. Throws PropertyBagUserErrorException
    // "QTalBase::PropertyBagsImpl::GetName; index is out of range" for an index not below the count.
    virtual const wchar_t* GetName(unsigned int iIndex) const = 0;

    // Returns a clone of an entry's bag (its nested bags are shared with the stored one), or null where the entry's bag
    // is null, which only a stream can bring. Throws PropertyBagUserErrorException
    // "QTalBase::PropertyBagsImpl::GetPropertyBag; index is out of range" for an index not below the count, and what
    // PropertyBag::Clone throws.
    virtual QBase::SmartPtrI<PropertyBag> GetPropertyBag(unsigned int iIndex) const = 0;

    // Returns a clone of the bag of the first entry of that name, or null where there is none or its bag is null.
    // ipName may not be null. Throws what PropertyBag::Clone throws.
    virtual QBase::SmartPtrI<PropertyBag> GetPropertyBagByName(const wchar_t* ipName) const = 0;

    // Returns a new collection, reference count 0, with the same names in the same order and the same bags, each with
    // one more reference.
    virtual PropertyBags* Clone() const = 0;
};

// Creates an empty collection, reference count 0.
TALBASE_EXPORT PropertyBags* CreatePropertyBags();

} // namespace QTalBase

#endif
