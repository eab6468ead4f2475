// A log router: that a module is known to the logging library, under which name and category. It lasts as long as
// somebody holds a reference. This implementation keeps the registration and writes nothing anywhere.

#ifndef QLOG_ROUTER_H
#define QLOG_ROUTER_H

#include "QBase/Export.h"
#include "QBase/ReferenceCounted.h"
#include "QBase/SmartPtrI.h"

namespace QLog
{

class Q8_EXPORT Router : public virtual QBase::ReferenceCounted
{
public:
    ~Router() override;

    // Return what the router was created with. The texts live as long as the router.
    virtual const char* GetModule() const noexcept = 0;
    virtual const char* GetLevel() const noexcept = 0;
    virtual int GetCategory() const noexcept = 0;
};

// Creates the router of a module. ipModule: the module's name; ipLevel: a second text, kept with it; iCategory: the
// lock-stack category. Neither text may be null. Returns a counted reference, never null. Throws std::bad_alloc; other
// implementations may throw a QBase::Message.
Q8_EXPORT QBase::SmartPtrI<Router> CreateRouter(const char* ipModule, const char* ipLevel, int iCategory);

} // namespace QLog

#endif
