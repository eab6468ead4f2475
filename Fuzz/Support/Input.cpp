#include "Fuzz/Support/Input.h"

#include "QBase/Convert.h"

#include <algorithm>

namespace Fuzz
{

std::uint8_t Input::Byte()
{
    if (mLeft == 0)
    {
        return 0;
    }
    --mLeft;
    return *mBytes++;
}

std::uint32_t Input::UInt32()
{
    std::uint32_t lValue = 0;
    for (unsigned int lShift = 0; lShift < 32; lShift += 8)
    {
        lValue |= static_cast<std::uint32_t>(Byte()) << lShift;
    }
    return lValue;
}

std::uint64_t Input::UInt64()
{
    const std::uint64_t lLow = UInt32();
    return lLow | static_cast<std::uint64_t>(UInt32()) << 32;
}

std::string Input::Bytes(std::size_t iMost)
{
    const std::size_t lCount = std::min(iMost, mLeft);
    const std::string lBytes(mBytes, mBytes + lCount);
    mBytes += lCount;
    mLeft -= lCount;
    return lBytes;
}

std::wstring Input::WideRest()
{
    const unsigned int lEncoding = Below(4);
    std::wstring lText =
        lEncoding == 3 ? QBase::UTF8ToWideChar(Rest(), false) : hFixedWidth(std::size_t{1} << lEncoding);
    lText.erase(std::remove(lText.begin(), lText.end(), L'\0'), lText.end());
    return lText;
}

std::wstring Input::hFixedWidth(std::size_t iWidth)
{
    std::wstring lText;
    while (!IsAtEnd())
    {
        std::uint32_t lCharacter = 0;
        for (std::size_t lIndex = 0; lIndex < iWidth; ++lIndex)
        {
            lCharacter |= static_cast<std::uint32_t>(Byte()) << 8 * lIndex;
        }
        lText += static_cast<wchar_t>(lCharacter);
    }
    return lText;
}

} // namespace Fuzz
