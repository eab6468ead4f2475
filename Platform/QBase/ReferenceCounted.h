// The base of every object that lives by intrusive reference counting. A factory returns a new object with count 0; the
// first QBase::SmartPtrI takes the first reference, and the Release that brings the count back to 0 deletes the object
// through its virtual destructor. An object whose count was never raised belongs to whoever created it. References may
// be taken and dropped from any thread, whatever else an object allows.

#ifndef QBASE_REFERENCECOUNTED_H
#define QBASE_REFERENCECOUNTED_H

#include "QBase/Export.h"

namespace QBase
{

// Interfaces derive from this class virtually, so that an object has one count however many interfaces it has. The
// order of the operations is fixed.
class Q8_EXPORT ReferenceCounted
{
public:
    virtual ~ReferenceCounted();

    // Adds one reference. Const, since a reference changes nothing that a reader of the object could see.
    virtual void AddRef() const noexcept = 0;

    // Drops one reference. The one that leaves 0 deletes the object, in the thread that drops it; any other result,
    // also one below zero after a Release too many, leaves the object alone.
    virtual void Release() const noexcept = 0;
};

} // namespace QBase

#endif
