// The base of every object that lives by intrusive reference counting. A new object has count 0; the first
// QBase::SmartPtrI takes the first reference, and the Release that brings the count back to 0 deletes the object.
// References may be taken and dropped from any thread.

#ifndef QBASE_REFERENCECOUNTED_H
#define QBASE_REFERENCECOUNTED_H

#include "QBase/Export.h"

namespace QBase
{

class Q8_EXPORT ReferenceCounted
{
public:
    virtual ~ReferenceCounted();

    // Adds one reference. Never throws.
    virtual void AddRef() const noexcept = 0;

    // Drops one reference; the last one deletes the object. Never throws.
    virtual void Release() const noexcept = 0;
};

} // namespace QBase

#endif
