#include "TalBase/SensitiveNames.h"

namespace QTalBase
{

const wchar_t* const* GetSensitiveNames() noexcept
{
    static constexpr const wchar_t* lSensitivePropertyNameArray[] = {L"FTPServerPassword", nullptr};
    return lSensitivePropertyNameArray;
}

} // namespace QTalBase
