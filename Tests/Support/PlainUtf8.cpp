#include "Tests/Support/PlainUtf8.h"

#include "Tests/Support/BrokenRule.h"

#include <algorithm>
#include <cstdint>

namespace Plain
{

namespace
{

const std::uint32_t gReplacement = 0xFFFD;

bool CanBeCarried(std::uint32_t iCharacter)
{
    return iCharacter < 0xD800 || (iCharacter >= 0xE000 && iCharacter < 0x110000);
}

// Six bits at a time from behind, until what is left fits into the first byte.
void AppendCharacter(std::uint32_t iCharacter, std::string& oBytes)
{
    if (iCharacter < 128)
    {
        oBytes += static_cast<char>(iCharacter);
        return;
    }
    const std::size_t lBegin = oBytes.size();
    std::uint32_t lFirstFits = 32; // what the first byte of a sequence of two has room for
    while (iCharacter >= lFirstFits)
    {
        oBytes += static_cast<char>(128 + iCharacter % 64);
        iCharacter /= 64;
        lFirstFits = oBytes.size() == lBegin + 1 ? 32 : lFirstFits / 2;
    }
    oBytes += static_cast<char>(256 - 2 * lFirstFits + iCharacter);
    std::reverse(oBytes.begin() + static_cast<std::ptrdiff_t>(lBegin), oBytes.end());
}

// The table of well-formed sequences: what each byte may be.
struct Row
{
    std::size_t mLength;
    unsigned char mLow[4];
    unsigned char mHigh[4];
};

const Row gRows[] = {{1, {0x00}, {0x7F}},
                     {2, {0xC2, 0x80}, {0xDF, 0xBF}},
                     {3, {0xE0, 0xA0, 0x80}, {0xE0, 0xBF, 0xBF}},
                     {3, {0xE1, 0x80, 0x80}, {0xEC, 0xBF, 0xBF}},
                     {3, {0xED, 0x80, 0x80}, {0xED, 0x9F, 0xBF}},
                     {3, {0xEE, 0x80, 0x80}, {0xEF, 0xBF, 0xBF}},
                     {4, {0xF0, 0x90, 0x80, 0x80}, {0xF0, 0xBF, 0xBF, 0xBF}},
                     {4, {0xF1, 0x80, 0x80, 0x80}, {0xF3, 0xBF, 0xBF, 0xBF}},
                     {4, {0xF4, 0x80, 0x80, 0x80}, {0xF4, 0x8F, 0xBF, 0xBF}}};

unsigned char HighOf(const Row& iRow, std::size_t iPlace)
{
    const bool lIsBeforeSurrogates = iRow.mHigh[iPlace] == 0x9F;
    return lIsBeforeSurrogates && IsBroken("SurrogateBytes") ? 0xBF : iRow.mHigh[iPlace];
}

// How many of a row's bytes the text begins with.
std::size_t MatchedBy(const Row& iRow, std::string_view iText)
{
    std::size_t lMatched = 0;
    while (lMatched < iRow.mLength && lMatched < iText.size() &&
           static_cast<unsigned char>(iText[lMatched]) >= iRow.mLow[lMatched] &&
           static_cast<unsigned char>(iText[lMatched]) <= HighOf(iRow, lMatched))
    {
        ++lMatched;
    }
    return lMatched;
}

std::uint32_t ValueOf(std::string_view iSequence)
{
    const std::uint32_t lFirst = static_cast<unsigned char>(iSequence[0]);
    std::uint32_t lValue = iSequence.size() == 1 ? lFirst : lFirst % (256U >> (iSequence.size() + 1));
    for (const char lByte : iSequence.substr(1))
    {
        lValue = lValue * 64 + static_cast<unsigned char>(lByte) % 64;
    }
    return lValue;
}

} // namespace

Utf8Result<std::string> EncodeUtf8(std::wstring_view iText)
{
    Utf8Result<std::string> lResult;
    for (std::size_t lIndex = 0; lIndex < iText.size(); ++lIndex)
    {
        const std::uint32_t lCharacter = static_cast<std::uint32_t>(iText[lIndex]);
        const bool lIsGood = CanBeCarried(lCharacter);
        lResult.mFirstBad = lIsGood ? lResult.mFirstBad : std::min(lResult.mFirstBad, lIndex);
        AppendCharacter(lIsGood ? lCharacter : gReplacement, lResult.mText);
    }
    return lResult;
}

Utf8Result<std::wstring> DecodeUtf8(std::string_view iBytes)
{
    Utf8Result<std::wstring> lResult;
    std::size_t lPlace = 0;
    while (lPlace < iBytes.size())
    {
        const std::string_view lLeft = iBytes.substr(lPlace);
        std::size_t lLongest = 1;
        bool lIsGood = false;
        for (const Row& lRow : gRows)
        {
            const std::size_t lMatched = MatchedBy(lRow, lLeft);
            lLongest = std::max(lLongest, lMatched);
            lIsGood = lIsGood || lMatched == lRow.mLength;
        }
        lResult.mFirstBad = lIsGood ? lResult.mFirstBad : std::min(lResult.mFirstBad, lPlace);
        lResult.mText += static_cast<wchar_t>(lIsGood ? ValueOf(lLeft.substr(0, lLongest)) : gReplacement);
        lPlace += lLongest;
    }
    return lResult;
}

} // namespace Plain
