// Copying, comparing and scanning short texts without a call: names, values and delimiters are mostly shorter than what
// a call costs. Nothing here reads or writes outside the texts that it is given.

#ifndef TALBASE_PRIVATESOURCE_TEXTPRIMITIVES_H
#define TALBASE_PRIVATESOURCE_TEXTPRIMITIVES_H

#include <cstring>
#include <cwchar>
#include <string_view>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace QTalBase
{

inline constexpr std::size_t gShortText = 32; // from here on a call is cheap beside the work

// Returns the place behind the copy. The text and its copy may not overlap.
inline wchar_t* CopyText(std::wstring_view iText, wchar_t* opTarget) noexcept
{
    const std::size_t lLength = iText.size();
    const wchar_t* lText = iText.data();
    if (lLength > gShortText)
    {
        std::wmemcpy(opTarget, lText, lLength);
    }
    else if (lLength >= 4)
    {
        // Four at a time; the last four overlap what was copied already.
        for (std::size_t lIndex = 0; lIndex < lLength - 4; lIndex += 4)
        {
            std::memcpy(opTarget + lIndex, lText + lIndex, 4 * sizeof(wchar_t));
        }
        std::memcpy(opTarget + lLength - 4, lText + lLength - 4, 4 * sizeof(wchar_t));
    }
    else if (lLength != 0)
    {
        opTarget[0] = lText[0];
        opTarget[lLength / 2] = lText[lLength / 2];
        opTarget[lLength - 1] = lText[lLength - 1];
    }
    return opTarget + lLength;
}

#if defined(__SSE2__)

inline __m128i LoadFour(const wchar_t* ipText) noexcept
{
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(ipText));
}

// One bit for each of four characters: whether it equals its counterpart.
inline unsigned int EqualFour(__m128i iLeft, __m128i iRight) noexcept
{
    return static_cast<unsigned int>(_mm_movemask_ps(_mm_castsi128_ps(_mm_cmpeq_epi32(iLeft, iRight))));
}

#endif

inline bool AreEqualTexts(const wchar_t* ipLeft, const wchar_t* ipRight, std::size_t iLength) noexcept
{
#if defined(__SSE2__)
    if (iLength <= 2 * gShortText && iLength >= 4)
    {
        std::size_t lIndex = 0;
        for (; lIndex + 8 <= iLength; lIndex += 8)
        {
            const __m128i lLow = _mm_cmpeq_epi32(LoadFour(ipLeft + lIndex), LoadFour(ipRight + lIndex));
            const __m128i lHigh = _mm_cmpeq_epi32(LoadFour(ipLeft + lIndex + 4), LoadFour(ipRight + lIndex + 4));
            if (_mm_movemask_epi8(_mm_and_si128(lLow, lHigh)) != 0xFFFF)
            {
                return false;
            }
        }
        if (lIndex + 4 < iLength && EqualFour(LoadFour(ipLeft + lIndex), LoadFour(ipRight + lIndex)) != 0xF)
        {
            return false;
        }
        return EqualFour(LoadFour(ipLeft + iLength - 4), LoadFour(ipRight + iLength - 4)) == 0xF;
    }
#endif
    if (iLength > 3)
    {
        return std::wmemcmp(ipLeft, ipRight, iLength) == 0;
    }
    for (std::size_t lIndex = 0; lIndex < iLength; ++lIndex)
    {
        if (ipLeft[lIndex] != ipRight[lIndex])
        {
            return false;
        }
    }
    return true;
}

inline bool AreEqualTexts(std::wstring_view iLeft, std::wstring_view iRight) noexcept
{
    return iLeft.size() == iRight.size() && AreEqualTexts(iLeft.data(), iRight.data(), iLeft.size());
}

// Whether the character occurs in the text.
inline bool Contains(std::wstring_view iText, wchar_t iCharacter) noexcept
{
#if defined(__SSE2__)
    if (iText.size() >= 4 && iText.size() <= gShortText)
    {
        const __m128i lWanted = _mm_set1_epi32(static_cast<int>(iCharacter));
        // The last four overlap what was looked at already.
        __m128i lHits = _mm_cmpeq_epi32(LoadFour(iText.data() + iText.size() - 4), lWanted);
        for (std::size_t lIndex = 0; lIndex + 4 < iText.size(); lIndex += 4)
        {
            lHits = _mm_or_si128(lHits, _mm_cmpeq_epi32(LoadFour(iText.data() + lIndex), lWanted));
        }
        return _mm_movemask_epi8(lHits) != 0;
    }
#endif
    return iText.find(iCharacter) != std::wstring_view::npos;
}

// The index of the first such character, or the length.
inline std::size_t FindCharacter(std::wstring_view iText, wchar_t iCharacter) noexcept
{
    std::size_t lIndex = 0;
    if (iText.size() > gShortText)
    {
        const wchar_t* lFound = std::wmemchr(iText.data(), iCharacter, iText.size());
        return lFound != nullptr ? static_cast<std::size_t>(lFound - iText.data()) : iText.size();
    }
#if defined(__SSE2__)
    const __m128i lWanted = _mm_set1_epi32(static_cast<int>(iCharacter));
    for (; lIndex + 4 <= iText.size(); lIndex += 4)
    {
        const unsigned int lMask = EqualFour(LoadFour(iText.data() + lIndex), lWanted);
        if (lMask != 0)
        {
            return lIndex + static_cast<std::size_t>(__builtin_ctz(lMask));
        }
    }
#endif
    while (lIndex < iText.size() && iText[lIndex] != iCharacter)
    {
        ++lIndex;
    }
    return lIndex;
}

} // namespace QTalBase

#endif
