#include "QBase/Convert.h"

#include "PrivateSource/Throw.h"

#include <cstdint>
#include <limits>

namespace QBase
{

namespace
{

const std::uint32_t gReplacement = 0xFFFD;

const wchar_t gNotCarried[] = L"QBase::WideCharToUTF8; UTF-8 cannot carry the character at index ";
const wchar_t gIllFormed[] = L"QBase::UTF8ToWideChar; Ill-formed UTF-8 at byte offset ";

[[noreturn]] void ThrowAt(const wchar_t* ipText, std::size_t iPlace)
{
    Throw<Message>((ipText + std::to_wstring(iPlace)).c_str());
}

bool IsBlank(wchar_t iCharacter)
{
    return iCharacter == L' ' || (iCharacter >= L'\t' && iCharacter <= L'\r');
}

bool IsScalarValue(std::uint32_t iCodePoint)
{
    return iCodePoint <= 0x10FFFF && (iCodePoint < 0xD800 || iCodePoint > 0xDFFF);
}

void AppendUTF8(std::string& oText, std::uint32_t iCodePoint)
{
    const auto lAppend = [&oText](std::uint32_t iByte) { oText.push_back(static_cast<char>(iByte)); };
    if (iCodePoint < 0x80)
    {
        lAppend(iCodePoint);
        return;
    }
    if (iCodePoint < 0x800)
    {
        lAppend(0xC0 | iCodePoint >> 6);
    }
    else
    {
        if (iCodePoint < 0x10000)
        {
            lAppend(0xE0 | iCodePoint >> 12);
        }
        else
        {
            lAppend(0xF0 | iCodePoint >> 18);
            lAppend(0x80 | (iCodePoint >> 12 & 0x3F));
        }
        lAppend(0x80 | (iCodePoint >> 6 & 0x3F));
    }
    lAppend(0x80 | (iCodePoint & 0x3F));
}

// What a first byte announces: how many bytes follow it, the bits that it carries, and the range of the second byte,
// which is narrower where a sequence would be overlong, a surrogate or too large. A first byte that announces nothing
// has mFollowing 0.
struct Sequence
{
    int mFollowing;
    std::uint32_t mBits;
    unsigned char mSecondLow;
    unsigned char mSecondHigh;
};

Sequence Announced(unsigned char iFirst)
{
    const std::uint32_t lFirst = iFirst;
    if (iFirst >= 0xC2 && iFirst <= 0xDF)
    {
        return {1, lFirst & 0x1F, 0x80, 0xBF};
    }
    if (iFirst >= 0xE0 && iFirst <= 0xEF)
    {
        const unsigned char lLow = iFirst == 0xE0 ? 0xA0 : 0x80;
        const unsigned char lHigh = iFirst == 0xED ? 0x9F : 0xBF;
        return {2, lFirst & 0x0F, lLow, lHigh};
    }
    if (iFirst >= 0xF0 && iFirst <= 0xF4)
    {
        const unsigned char lLow = iFirst == 0xF0 ? 0x90 : 0x80;
        const unsigned char lHigh = iFirst == 0xF4 ? 0x8F : 0xBF;
        return {3, lFirst & 0x07, lLow, lHigh};
    }
    return {0, 0, 0, 0};
}

struct Decoded
{
    std::uint32_t mCodePoint;
    std::size_t mLength; // of the sequence, or of the maximal subpart where it is ill-formed
    bool mIsWellFormed;
};

Decoded DecodeFirst(std::string_view iText)
{
    const unsigned char lFirst = static_cast<unsigned char>(iText[0]);
    if (lFirst < 0x80)
    {
        return {lFirst, 1, true};
    }
    const Sequence lSequence = Announced(lFirst);
    const std::size_t lWanted = static_cast<std::size_t>(lSequence.mFollowing) + 1;
    std::uint32_t lCodePoint = lSequence.mBits;
    for (std::size_t lIndex = 1; lIndex < lWanted; ++lIndex)
    {
        const unsigned char lByte = lIndex < iText.size() ? static_cast<unsigned char>(iText[lIndex]) : 0;
        const unsigned char lLow = lIndex == 1 ? lSequence.mSecondLow : 0x80;
        const unsigned char lHigh = lIndex == 1 ? lSequence.mSecondHigh : 0xBF;
        if (lByte < lLow || lByte > lHigh)
        {
            return {gReplacement, lIndex, false};
        }
        lCodePoint = lCodePoint << 6 | (lByte & 0x3FU);
    }
    return lWanted == 1 ? Decoded{gReplacement, 1, false} : Decoded{lCodePoint, lWanted, true};
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

std::string WideCharToUTF8(const wchar_t* ipText, bool iStrict)
{
    std::string lText;
    for (std::size_t lIndex = 0; ipText[lIndex] != L'\0'; ++lIndex)
    {
        // NOLINTNEXTLINE(bugprone-signed-char-misuse,cert-str34-c): 32 bits become 32 bits
        const std::uint32_t lCodePoint = static_cast<std::uint32_t>(ipText[lIndex]);
        const bool lIsScalarValue = IsScalarValue(lCodePoint);
        if (!lIsScalarValue && iStrict)
        {
            ThrowAt(gNotCarried, lIndex);
        }
        AppendUTF8(lText, lIsScalarValue ? lCodePoint : gReplacement);
    }
    return lText;
}

std::wstring UTF8ToWideChar(std::string_view iText, bool iStrict)
{
    std::wstring lText;
    for (std::size_t lOffset = 0; lOffset < iText.size();)
    {
        const Decoded lDecoded = DecodeFirst(iText.substr(lOffset));
        if (!lDecoded.mIsWellFormed && iStrict)
        {
            ThrowAt(gIllFormed, lOffset);
        }
        lText.push_back(static_cast<wchar_t>(lDecoded.mCodePoint));
        lOffset += lDecoded.mLength;
    }
    return lText;
}

} // namespace QBase
