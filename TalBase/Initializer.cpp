#include "TalBase/Initializer.h"

#include "TalBase/ModuleMain.h"

namespace QTalBase
{

Initializer::Initializer()
{
    gModuleMainBasePtr.Initialize();
}

Initializer::~Initializer()
{
    gModuleMainBasePtr.Finalize();
}

} // namespace QTalBase
