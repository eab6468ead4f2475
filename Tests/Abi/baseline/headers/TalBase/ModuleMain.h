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
class TALBASE_EXPORT ModuleMainBase
{
public:
    ModuleMainBase();
    ~ModuleMainBase();
    ModuleMainBase(const ModuleMainBase&) = delete;
    ModuleMainBase& operator=(const ModuleMainBase&) = delete;

private:
    QSynch::Initializer mSynchInitializer;
    QLog::Initializer mLogInitializer;
    QBase::SmartPtrI<QLog::Router> mRouter;
};
extern TALBASE_EXPORT QBase::ModuleMainPtr<ModuleMainBase, ModuleMainBase> gModuleMainBasePtr;
} // namespace QTalBase
#endif
