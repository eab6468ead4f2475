#ifndef QBASE_GUID_H
#define QBASE_GUID_H
#include "QBase/Export.h"
#include "QBase/ReturnWString.h"
#include <cstdint>
#include <cstring>
struct _GUID
{
    std::uint32_t Data1;
    std::uint16_t Data2;
    std::uint16_t Data3;
    std::uint8_t Data4[8];
};
inline bool operator==(const _GUID& iLeft, const _GUID& iRight) noexcept
{
    return std::memcmp(&iLeft, &iRight, sizeof(_GUID)) == 0;
}
inline bool operator!=(const _GUID& iLeft, const _GUID& iRight) noexcept
{
    return !(iLeft == iRight);
}
namespace QBase
{
Q8_EXPORT void CreateGUID(_GUID& oGuid);
Q8_EXPORT ReturnWString Guid2String(const _GUID& iGuid);
Q8_EXPORT bool String2Guid(_GUID& oGuid, const wchar_t* ipText);
} // namespace QBase
#endif
