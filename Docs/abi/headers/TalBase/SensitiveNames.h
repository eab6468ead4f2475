#ifndef TALBASE_SENSITIVENAMES_H
#define TALBASE_SENSITIVENAMES_H
#include "TalBase/Export.h"
namespace QTalBase
{
TALBASE_EXPORT const wchar_t* const* GetSensitiveNames() noexcept;
}
#endif
