// Texts between UTF-8 and wide characters, many characters at once: with SSE2, and in plain code that does the same.
// Nothing here looks where a text ends: who calls has so many characters to read, and room for as many.

#ifndef PRIVATESOURCE_UTF8STEPS_H
#define PRIVATESOURCE_UTF8STEPS_H

#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace QBase
{

inline constexpr std::size_t gStep = 16;         // characters that are copied at once
inline constexpr std::size_t gBlock = 4 * gStep; // characters that have a bit each in 64

#if defined(__SSE2__)

inline __m128i LoadSixteen(const unsigned char* ipBytes) noexcept
{
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(ipBytes));
}

inline __m128i LoadFour(const wchar_t* ipText) noexcept
{
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(ipText));
}

// Eight characters in 16 bits each; what does not fit becomes the nearest that does, so it is still not ASCII.
inline __m128i LoadEight(const wchar_t* ipText) noexcept
{
    return _mm_packs_epi32(LoadFour(ipText), LoadFour(ipText + 4));
}

inline void StoreFour(wchar_t* opText, __m128i iFour) noexcept
{
    _mm_storeu_si128(reinterpret_cast<__m128i*>(opText), iFour);
}

inline void StoreSixteen(char* opBytes, __m128i iSixteen) noexcept
{
    _mm_storeu_si128(reinterpret_cast<__m128i*>(opBytes), iSixteen);
}

// Copy a step of ASCII characters; others become anything.
inline void CopyStep(const unsigned char* ipBytes, wchar_t* opText) noexcept
{
    const __m128i lZero = _mm_setzero_si128();
    const __m128i lBytes = LoadSixteen(ipBytes);
    const __m128i lLow = _mm_unpacklo_epi8(lBytes, lZero);
    const __m128i lHigh = _mm_unpackhi_epi8(lBytes, lZero);
    StoreFour(opText, _mm_unpacklo_epi16(lLow, lZero));
    StoreFour(opText + 4, _mm_unpackhi_epi16(lLow, lZero));
    StoreFour(opText + 8, _mm_unpacklo_epi16(lHigh, lZero));
    StoreFour(opText + 12, _mm_unpackhi_epi16(lHigh, lZero));
}

inline void CopyStep(const wchar_t* ipText, char* opBytes) noexcept
{
    StoreSixteen(opBytes, _mm_packus_epi16(LoadEight(ipText), LoadEight(ipText + 8)));
}

// Return one bit for each character of a block, which is 1 where that is not ASCII. A block that is all ASCII is
// copied; of any other, anything.
inline std::uint64_t CopyAsciiBlock(const unsigned char* ipBytes, wchar_t* opText) noexcept
{
    std::uint64_t lNonAscii = 0;
    for (std::size_t lIndex = 0; lIndex < gBlock; lIndex += gStep)
    {
        const int lBits = _mm_movemask_epi8(LoadSixteen(ipBytes + lIndex));
        lNonAscii |= static_cast<std::uint64_t>(lBits) << lIndex;
    }
    for (std::size_t lIndex = 0; lIndex < gBlock && lNonAscii == 0; lIndex += gStep)
    {
        CopyStep(ipBytes + lIndex, opText + lIndex);
    }
    return lNonAscii;
}

inline std::uint64_t CopyAsciiBlock(const wchar_t* ipText, char* opBytes) noexcept
{
    std::uint64_t lAscii = 0;
    for (std::size_t lIndex = 0; lIndex < gBlock; lIndex += gStep)
    {
        const __m128i lLow = LoadEight(ipText + lIndex);
        const __m128i lHigh = LoadEight(ipText + lIndex + 8);
        StoreSixteen(opBytes + lIndex, _mm_packus_epi16(lLow, lHigh));
        const __m128i lRest = _mm_packus_epi16(_mm_srli_epi16(lLow, 7), _mm_srli_epi16(lHigh, 7));
        const int lBits = _mm_movemask_epi8(_mm_cmpeq_epi8(lRest, _mm_setzero_si128()));
        lAscii |= static_cast<std::uint64_t>(lBits) << lIndex;
    }
    return ~lAscii;
}

inline bool AreAllOnes(__m128i iMask) noexcept
{
    return _mm_movemask_epi8(iMask) == 0xFFFF;
}

// Whether four characters in 32 bits each are such as have three bytes: neither less than U+0800 nor surrogates. Needs
// that they are less than U+10000.
inline bool HaveThreeBytes(__m128i iFour) noexcept
{
    const __m128i lHigh = _mm_and_si128(iFour, _mm_set1_epi32(0xF800));
    const __m128i lWrong =
        _mm_or_si128(_mm_cmpeq_epi32(lHigh, _mm_setzero_si128()), _mm_cmpeq_epi32(lHigh, _mm_set1_epi32(0xD800)));
    return _mm_movemask_epi8(lWrong) == 0;
}

// Copies four characters of three bytes each, or returns false. Reads 13 bytes.
inline bool CopyFourOfThree(const unsigned char* ipBytes, wchar_t* opText) noexcept
{
    int lWords[4];
    for (std::size_t lIndex = 0; lIndex < 4; ++lIndex)
    {
        std::memcpy(&lWords[lIndex], ipBytes + 3 * lIndex, 4);
    }
    const __m128i lFour = _mm_set_epi32(lWords[3], lWords[2], lWords[1], lWords[0]);
    const __m128i lMarks = _mm_and_si128(lFour, _mm_set1_epi32(0xC0C0F0));
    const __m128i lFirst = _mm_slli_epi32(_mm_and_si128(lFour, _mm_set1_epi32(0x0F)), 12);
    const __m128i lSecond = _mm_srli_epi32(_mm_and_si128(lFour, _mm_set1_epi32(0x3F00)), 2);
    const __m128i lThird = _mm_srli_epi32(_mm_and_si128(lFour, _mm_set1_epi32(0x3F0000)), 16);
    const __m128i lText = _mm_or_si128(_mm_or_si128(lFirst, lSecond), lThird);
    StoreFour(opText, lText);
    return AreAllOnes(_mm_cmpeq_epi32(lMarks, _mm_set1_epi32(0x8080E0))) && HaveThreeBytes(lText);
}

// The other way. Writes 13 bytes.
inline bool CopyFourOfThree(const wchar_t* ipText, char* opBytes) noexcept
{
    const __m128i lText = LoadFour(ipText);
    const __m128i lTooLarge = _mm_and_si128(lText, _mm_set1_epi32(~0xFFFF));
    const __m128i lFirst = _mm_srli_epi32(lText, 12);
    const __m128i lSecond = _mm_and_si128(_mm_slli_epi32(lText, 2), _mm_set1_epi32(0x3F00));
    const __m128i lThird = _mm_and_si128(_mm_slli_epi32(lText, 16), _mm_set1_epi32(0x3F0000));
    const __m128i lMarks = _mm_set1_epi32(0x8080E0);
    alignas(16) int lWords[4];
    _mm_store_si128(reinterpret_cast<__m128i*>(lWords),
                    _mm_or_si128(_mm_or_si128(lFirst, lSecond), _mm_or_si128(lThird, lMarks)));
    for (std::size_t lIndex = 0; lIndex < 4; ++lIndex)
    {
        std::memcpy(opBytes + 3 * lIndex, &lWords[lIndex], 4);
    }
    return AreAllOnes(_mm_cmpeq_epi32(lTooLarge, _mm_setzero_si128())) && HaveThreeBytes(lText);
}

// Copies so many ASCII characters, and returns the place behind the copy. Reads and writes whole steps, at least one.
template <class From, class To>
To* CopyAscii(const From* ipText, std::size_t iCount, To* opText) noexcept
{
    std::size_t lIndex = 0;
    do
    {
        CopyStep(ipText + lIndex, opText + lIndex);
        lIndex += gStep;
    } while (lIndex < iCount);
    return opText + iCount;
}

#else

template <class From, class To>
To* CopyAscii(const From* ipText, std::size_t iCount, To* opText) noexcept
{
    for (std::size_t lIndex = 0; lIndex < iCount; ++lIndex)
    {
        opText[lIndex] = static_cast<To>(ipText[lIndex]);
    }
    return opText + iCount;
}

template <class From, class To>
std::uint64_t CopyAsciiBlock(const From* ipText, To* opText) noexcept
{
    std::uint64_t lNonAscii = 0;
    for (std::size_t lIndex = 0; lIndex < gBlock; ++lIndex)
    {
        opText[lIndex] = static_cast<To>(ipText[lIndex]);
        lNonAscii |= static_cast<std::uint64_t>((static_cast<std::uint32_t>(ipText[lIndex]) >> 7) != 0) << lIndex;
    }
    return lNonAscii;
}

inline bool HasThreeBytes(std::uint32_t iCharacter) noexcept
{
    return (iCharacter & 0xF800) != 0 && (iCharacter & 0xF800) != 0xD800 && iCharacter < 0x10000;
}

inline bool CopyFourOfThree(const unsigned char* ipBytes, wchar_t* opText) noexcept
{
    for (std::size_t lIndex = 0; lIndex < 4; ++lIndex, ipBytes += 3)
    {
        const std::uint32_t lText = (ipBytes[0] & 0x0FU) << 12 | (ipBytes[1] & 0x3FU) << 6 | (ipBytes[2] & 0x3FU);
        opText[lIndex] = static_cast<wchar_t>(lText);
        if ((ipBytes[0] & 0xF0) != 0xE0 || (ipBytes[1] & 0xC0) != 0x80 || (ipBytes[2] & 0xC0) != 0x80 ||
            !HasThreeBytes(lText))
        {
            return false;
        }
    }
    return true;
}

inline bool CopyFourOfThree(const wchar_t* ipText, char* opBytes) noexcept
{
    for (std::size_t lIndex = 0; lIndex < 4; ++lIndex, opBytes += 3)
    {
        // NOLINTNEXTLINE(bugprone-signed-char-misuse,cert-str34-c): 32 bits, however wide characters are signed
        const std::uint32_t lText = static_cast<std::uint32_t>(ipText[lIndex]);
        opBytes[0] = static_cast<char>(0xE0 | (lText >> 12 & 0x0F));
        opBytes[1] = static_cast<char>(0x80 | (lText >> 6 & 0x3F));
        opBytes[2] = static_cast<char>(0x80 | (lText & 0x3F));
        if (!HasThreeBytes(lText))
        {
            return false;
        }
    }
    return true;
}

#endif

} // namespace QBase

#endif
