// A log router: a module's registration with the logging library, under a name, a level and a category, which lasts as
// long as somebody holds a reference. A router never changes, so any thread may use it.
//
// This implementation keeps the registration and nothing more: it has no operation that writes, opens no file, and
// knows no list of routers. A host with a logging library of its own replaces the library file.

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

    // Return what the router was created with: the module's name, the second text, and the category. The texts are the
    // router's own copies and live as long as it does.
    virtual const char* GetModule() const noexcept = 0;
    virtual const char* GetLevel() const noexcept = 0;
    virtual int GetCategory() const noexcept = 0;
};

// Creates the router of a module. ipModule: the module's name; ipLevel: a second text that is kept with it, such as the
// level from which on a module wants to be heard; iCategory: the category of the locks that a log would take, any
// number. The texts are copied; neither may be null. Two routers may have the same name.
//
// Returns a new router with one reference, which the returned pointer holds; never null. Throws std::bad_alloc; a
// replacement of this library may throw a QBase::Message too.
Q8_EXPORT QBase::SmartPtrI<Router> CreateRouter(const char* ipModule, const char* ipLevel, int iCategory);

} // namespace QLog

#endif
