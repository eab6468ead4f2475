// The library's one module object and the holder that creates and destroys it. Clients do not use these directly: they
// hold a QTalBase::Initializer (TalBase/Initializer.h).

#ifndef TALBASE_MODULEMAIN_H
#define TALBASE_MODULEMAIN_H

#include "QBase/ModuleMainPtr.h"
#include "QBase/SmartPtrI.h"
#include "QLog/Initializer.h"
#include "QLog/Router.h"
#include "QSynch/Initializer.h"
#include "TalBase/Export.h"

namespace QTalBase
{

// What the library keeps while it is started: the synchronisation and logging libraries brought up, in this order, and
// the log router of the module "TalBase". Nothing is ever written through the router; it exists so that the logging
// library knows the module.
class TALBASE_EXPORT ModuleMainBase
{
public:
    // Brings everything up in the order of the members. What QLog::CreateRouter throws passes on unchanged, after what
    // was already up has been taken down again in reverse order.
    ModuleMainBase();

    // Releases the router, then shuts the logging and the synchronisation library down. Never throws.
    ~ModuleMainBase();

    ModuleMainBase(const ModuleMainBase&) = delete;
    ModuleMainBase& operator=(const ModuleMainBase&) = delete;

private:
    QSynch::Initializer mSynchInitializer;
    QLog::Initializer mLogInitializer;
    QBase::SmartPtrI<QLog::Router> mRouter;
};

// The holder: a spin lock, a count of starts, and the module object while the count is above 0. It is initialised at
// compile time, so a client's static Initializer may run before any initialiser of this library. Any thread may start
// and stop at any time.
extern TALBASE_EXPORT QBase::ModuleMainPtr<ModuleMainBase, ModuleMainBase> gModuleMainBasePtr;

} // namespace QTalBase

#endif
