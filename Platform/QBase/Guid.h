// The 16-byte identifier of RFC 9562, how one is made, and its text. The functions keep no state and may be called from
// any thread.

#ifndef QBASE_GUID_H
#define QBASE_GUID_H

#include "QBase/Export.h"
#include "QBase/ReturnWString.h"

#include <cstdint>
#include <cstring>

// The identifier's first eight bytes are held as numbers, which the text shows from their most significant digit on.
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

// Fills oGuid with a new identifier, version 4, from the operating system's random source. Throws
// ExceptionImpl<Message> "QBase::CreateGUID; The random source failed" when that source fails; oGuid is then unchanged.
// Nothing is tried instead: an identifier that only looks unique would be worse than none.
Q8_EXPORT void CreateGUID(_GUID& oGuid);

// Returns the 36 characters of RFC 9562, lower case, without braces. Throws std::bad_alloc.
Q8_EXPORT ReturnWString Guid2String(const _GUID& iGuid);

// Reads that form, in either case, with or without one pair of braces and with nothing before or after. Returns whether
// it was one; where not, oGuid is unchanged. ipText may not be null. Never throws.
Q8_EXPORT bool String2Guid(_GUID& oGuid, const wchar_t* ipText);

} // namespace QBase

#endif
