// The text: Data1 (8 digits), Data2 (4), Data3 (4), Data4 (4, 12), hexadecimal, joined by '-'.

#include "QBase/Guid.h"

#include "PrivateSource/Throw.h"

#include <cerrno>
#include <cstddef>
#include <cwchar>
#include <sys/random.h>

namespace QBase
{

namespace
{

const std::size_t gTextLength = 36;

bool IsDash(std::size_t iPosition)
{
    return iPosition == 8 || iPosition == 13 || iPosition == 18 || iPosition == 23;
}

// The value of a hexadecimal digit, or -1.
int DigitValue(wchar_t iCharacter)
{
    if (iCharacter >= L'0' && iCharacter <= L'9')
    {
        return static_cast<int>(iCharacter - L'0');
    }
    if (iCharacter >= L'a' && iCharacter <= L'f')
    {
        return static_cast<int>(iCharacter - L'a') + 10;
    }
    if (iCharacter >= L'A' && iCharacter <= L'F')
    {
        return static_cast<int>(iCharacter - L'A') + 10;
    }
    return -1;
}

// A signal may interrupt the source before it gave anything, or after it gave a part.
void FillRandom(std::uint8_t* opBytes, std::size_t iSize)
{
    std::size_t lDone = 0;
    while (lDone < iSize)
    {
        const ssize_t lGot = ::getrandom(opBytes + lDone, iSize - lDone, 0);
        if (lGot > 0)
        {
            lDone += static_cast<std::size_t>(lGot);
        }
        else if (lGot == 0 || errno != EINTR)
        {
            Throw<Message>(L"QBase::CreateGUID; The random source failed");
        }
    }
}

// Reads the 36 characters into bytes in the order of the text. The terminator is neither a digit nor a dash, so nothing
// behind it is read.
bool ToBytes(std::uint8_t* opBytes, const wchar_t* ipText)
{
    std::size_t lDigits = 0;
    for (std::size_t lPosition = 0; lPosition < gTextLength; ++lPosition)
    {
        if (IsDash(lPosition))
        {
            if (ipText[lPosition] != L'-')
            {
                return false;
            }
            continue;
        }
        const int lValue = DigitValue(ipText[lPosition]);
        if (lValue < 0)
        {
            return false;
        }
        opBytes[lDigits / 2] = static_cast<std::uint8_t>(opBytes[lDigits / 2] << 4 | lValue);
        ++lDigits;
    }
    return true;
}

void FromBytes(_GUID& oGuid, const std::uint8_t* ipBytes)
{
    oGuid.Data1 = static_cast<std::uint32_t>(ipBytes[0]) << 24 | static_cast<std::uint32_t>(ipBytes[1]) << 16 |
                  static_cast<std::uint32_t>(ipBytes[2]) << 8 | ipBytes[3];
    oGuid.Data2 = static_cast<std::uint16_t>(ipBytes[4] << 8 | ipBytes[5]);
    oGuid.Data3 = static_cast<std::uint16_t>(ipBytes[6] << 8 | ipBytes[7]);
    std::memcpy(oGuid.Data4, ipBytes + 8, sizeof(oGuid.Data4));
}

} // namespace

void CreateGUID(_GUID& oGuid)
{
    std::uint8_t lBytes[16];
    FillRandom(lBytes, sizeof(lBytes));
    lBytes[6] = static_cast<std::uint8_t>((lBytes[6] & 0x0F) | 0x40); // version 4
    lBytes[8] = static_cast<std::uint8_t>((lBytes[8] & 0x3F) | 0x80); // the variant of RFC 9562
    FromBytes(oGuid, lBytes);
}

ReturnWString Guid2String(const _GUID& iGuid)
{
    wchar_t lText[gTextLength + 1];
    const std::uint8_t* lTail = iGuid.Data4;
    std::swprintf(lText, gTextLength + 1, L"%08x-%04x-%04x-%02x%02x-%02x%02x%02x%02x%02x%02x",
                  static_cast<unsigned int>(iGuid.Data1), static_cast<unsigned int>(iGuid.Data2),
                  static_cast<unsigned int>(iGuid.Data3), static_cast<unsigned int>(lTail[0]),
                  static_cast<unsigned int>(lTail[1]), static_cast<unsigned int>(lTail[2]),
                  static_cast<unsigned int>(lTail[3]), static_cast<unsigned int>(lTail[4]),
                  static_cast<unsigned int>(lTail[5]), static_cast<unsigned int>(lTail[6]),
                  static_cast<unsigned int>(lTail[7]));
    return {lText, gTextLength};
}

bool String2Guid(_GUID& oGuid, const wchar_t* ipText)
{
    const bool lHasBrace = *ipText == L'{';
    const wchar_t* lText = lHasBrace ? ipText + 1 : ipText;
    std::uint8_t lBytes[16] = {};
    if (!ToBytes(lBytes, lText) || std::wcscmp(lText + gTextLength, lHasBrace ? L"}" : L"") != 0)
    {
        return false;
    }
    FromBytes(oGuid, lBytes);
    return true;
}

} // namespace QBase
