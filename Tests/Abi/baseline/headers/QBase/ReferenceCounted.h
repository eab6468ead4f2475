#ifndef QBASE_REFERENCECOUNTED_H
#define QBASE_REFERENCECOUNTED_H
#include "QBase/Export.h"
namespace QBase
{
class Q8_EXPORT ReferenceCounted
{
public:
    virtual ~ReferenceCounted();
    virtual void AddRef() const noexcept = 0;
    virtual void Release() const noexcept = 0;
};
} // namespace QBase
#endif
