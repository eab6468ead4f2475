#include "QBase/Convert.h"

#include <cstdint>
#include <limits>

namespace QBase
{

namespace
{

bool IsBlank(wchar_t iCharacter)
{
    return iCharacter == L' ' || (iCharacter >= L'\t' && iCharacter <= L'\r');
}

} // namespace

ReturnWString ToDecimalWString(int iValue)
{
    return std::to_wstring(iValue);
}

int DecimalToInt(const wchar_t* ipText)
{
    while (IsBlank(*ipText))
    {
        ++ipText;
    }
    const bool lIsNegative = *ipText == L'-';
    if (lIsNegative || *ipText == L'+')
    {
        ++ipText;
    }
    const std::int64_t lLimit = static_cast<std::int64_t>(std::numeric_limits<int>::max()) + (lIsNegative ? 1 : 0);
    std::int64_t lValue = 0;
    for (; *ipText >= L'0' && *ipText <= L'9'; ++ipText)
    {
        lValue = lValue * 10 + static_cast<std::int64_t>(*ipText - L'0');
        lValue = lValue < lLimit ? lValue : lLimit; // here, so that no number of digits can overflow
    }
    return static_cast<int>(lIsNegative ? -lValue : lValue);
}

} // namespace QBase
