#include "TalBase/ModuleMain.h"

namespace QTalBase
{

namespace
{

// The lock-stack category under which the router is registered.
const int gLockStackCategory = -3;

} // namespace

// Constant initialisation is what lets a client start the library before any constructor of the library has run.
constinit QBase::ModuleMainPtr<ModuleMainBase, ModuleMainBase> gModuleMainBasePtr;

ModuleMainBase::ModuleMainBase() : mRouter(QLog::CreateRouter("TalBase", "Error", gLockStackCategory)) {}

ModuleMainBase::~ModuleMainBase() = default;

} // namespace QTalBase
