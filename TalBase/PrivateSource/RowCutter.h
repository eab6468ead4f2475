// Cuts a text at delimiters that each repeat one character, as "++++" and "***" do, or "[" and "]]": a cutter beside
// those of TextCutters.h, for what nearly every text is cut at.
//
// Such delimiters need no comparing. In 64 characters, taken at once, a bit for each says where the one or the other
// character stands; where as many bits as a delimiter is long stand in a row, there it is, and of a longer row the next
// one begins right behind it. In "a+b++++1******" the rows of "+" are those at 1 and 3; the first is too short, and
// belongs to the run of text before the delimiter at 3; the row of "*" is two delimiters.
//
// A row that reaches the end of the 64 is left for the next 64, so that every row is seen from its beginning.

#ifndef TALBASE_PRIVATESOURCE_ROWCUTTER_H
#define TALBASE_PRIVATESOURCE_ROWCUTTER_H

#include "TalBase/PrivateSource/TextCutters.h"
#include "TalBase/PrivateSource/TextPrimitives.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace QTalBase
{

class RowCutter
{
public:
    // Whether a text may be cut by a RowCutter. Where characters are compared in eight bits, those at the ends of their
    // range would stand for others, too.
    static bool MayCut(std::wstring_view iText, std::wstring_view iBegin, std::wstring_view iEnd) noexcept
    {
        return iText.size() >= gBlock && hIsRow(iBegin) && hIsRow(iEnd);
    }

    RowCutter(std::wstring_view iText, std::wstring_view iBegin, std::wstring_view iEnd) noexcept
        : mPosition(iText.data()),
          mTextStop(iText.data() + iText.size()),
          mBlock(iText.data()),
          mStop(iText.data()),
          mBegin(iBegin),
          mEnd(iEnd)
    {
    }

    Found Next() noexcept
    {
        mMayContainStart = mHasLeftOver;
        while (mTokens == 0)
            [[unlikely]]
            {
                if (mStop == mTextStop)
                {
                    return Found::Nothing;
                }
                hLoadBlock();
            }
        const int lIndex = std::countr_zero(mTokens);
        const wchar_t* lPlace = mBlock + lIndex;
        mTokens &= mTokens - 1;
        const bool lIsBegin = (mBegins >> lIndex & 1U) != 0;
        mRun = std::wstring_view(mPosition, static_cast<std::size_t>(lPlace - mPosition));
        mPosition = lPlace + (lIsBegin ? mBegin.mLength : mEnd.mLength);
        return lIsBegin ? Found::Begin : Found::End;
    }

    std::wstring_view GetRun() const noexcept
    {
        return mRun;
    }

    bool MayContainStart() const noexcept
    {
        return mMayContainStart;
    }

    std::wstring_view GetRest() const noexcept
    {
        return {mPosition, static_cast<std::size_t>(mTextStop - mPosition)};
    }

private:
    static constexpr std::size_t gBlock = 64;
    static constexpr std::size_t gLongest = 8;

    struct Row
    {
        explicit Row(std::wstring_view iDelimiter) noexcept
            : mCharacter(iDelimiter[0]),
              mLength(static_cast<unsigned int>(iDelimiter.size())),
              mShifts{std::min(mLength - 1, 1U), mLength > 2 ? std::min(mLength - 2, 2U) : 0,
                      mLength > 4 ? mLength - 4 : 0},
              mBits((std::uint64_t{1} << mLength) - 1)
        {
        }

        // Of 64 places, those where the delimiter stands; oLeftOver gets the other places of its character.
        std::uint64_t FindIn(std::uint64_t iPlaces, std::uint64_t& oLeftOver) const noexcept
        {
            // In each step a bit comes to stand for more places that follow it: 2, 4, 8, or as many as there have to
            // be.
            std::uint64_t lWhole = iPlaces & iPlaces >> mShifts[0];
            lWhole &= lWhole >> mShifts[1];
            lWhole &= lWhole >> mShifts[2];
            std::uint64_t lFound = 0;
            for (std::uint64_t lNext = lWhole & ~(iPlaces << 1); lNext != 0; lNext = lNext << mLength & lWhole)
            {
                lFound |= lNext;
            }
            oLeftOver |= iPlaces ^ lFound * mBits;
            return lFound;
        }

        wchar_t mCharacter;
        unsigned int mLength;
        unsigned int mShifts[3];
        std::uint64_t mBits; // as many as the delimiter is long
    };

    static bool hIsRow(std::wstring_view iDelimiter) noexcept
    {
        return iDelimiter.size() <= gLongest && iDelimiter[0] > 0 && iDelimiter[0] < 0xFF &&
               iDelimiter.find_first_not_of(iDelimiter[0]) == std::wstring_view::npos;
    }

    void hLoadBlock() noexcept
    {
        const std::size_t lLeft = static_cast<std::size_t>(mTextStop - mStop);
        const wchar_t* lFrom = lLeft >= gBlock ? mStop : mTextStop - gBlock;
        std::uint64_t lBegins = 0;
        std::uint64_t lEnds = 0;
        hFindPlaces(lFrom, lBegins, lEnds);
        mBlock = mStop;
        std::size_t lCount = gBlock;
        if (lLeft > gBlock)
        {
            const bool lIsBegin = (lBegins >> 63) != 0;
            lCount = hCountUpToLastRow(lIsBegin ? lBegins : lEnds, lIsBegin ? mBegin.mLength : mEnd.mLength);
            const std::uint64_t lTaken = ~std::uint64_t{0} >> (gBlock - lCount);
            lBegins &= lTaken;
            lEnds &= lTaken;
        }
        else
        {
            lCount = lLeft;
            lBegins >>= gBlock - lLeft;
            lEnds >>= gBlock - lLeft;
        }
        mStop += lCount;
        std::uint64_t lLeftOver = 0;
        mBegins = mBegin.FindIn(lBegins, lLeftOver);
        mTokens = mBegins | mEnd.FindIn(lEnds, lLeftOver);
        mHasLeftOver = lLeftOver != 0;
        mMayContainStart = mMayContainStart || mHasLeftOver;
    }

    // How many of 64 places come before a row that reaches the end; of one that fills them, whole delimiters.
    static std::size_t hCountUpToLastRow(std::uint64_t iPlaces, std::size_t iLength) noexcept
    {
        const std::size_t lRow = static_cast<std::size_t>(std::countl_one(iPlaces));
        return lRow != gBlock ? gBlock - lRow : gBlock / iLength * iLength;
    }

#if defined(__SSE2__)
    // A bit for each of 64 characters, which are compared in eight bits, saturated.
    void hFindPlaces(const wchar_t* ipText, std::uint64_t& oBegins, std::uint64_t& oEnds) const noexcept
    {
        const __m128i lBegin = _mm_set1_epi8(static_cast<char>(mBegin.mCharacter));
        const __m128i lEnd = _mm_set1_epi8(static_cast<char>(mEnd.mCharacter));
        for (unsigned int lFirst = 0; lFirst < gBlock; lFirst += 16)
        {
            const __m128i lSixteen = hLoadSixteen(ipText + lFirst);
            oBegins |= hBits(_mm_cmpeq_epi8(lSixteen, lBegin)) << lFirst;
            oEnds |= hBits(_mm_cmpeq_epi8(lSixteen, lEnd)) << lFirst;
        }
    }

    static __m128i hLoadSixteen(const wchar_t* ipText) noexcept
    {
        return _mm_packus_epi16(_mm_packs_epi32(LoadFour(ipText), LoadFour(ipText + 4)),
                                _mm_packs_epi32(LoadFour(ipText + 8), LoadFour(ipText + 12)));
    }

    static std::uint64_t hBits(__m128i iBytes) noexcept
    {
        return static_cast<std::uint32_t>(_mm_movemask_epi8(iBytes));
    }
#else
    void hFindPlaces(const wchar_t* ipText, std::uint64_t& oBegins, std::uint64_t& oEnds) const noexcept
    {
        for (unsigned int lIndex = 0; lIndex < gBlock; ++lIndex)
        {
            oBegins |= std::uint64_t{ipText[lIndex] == mBegin.mCharacter} << lIndex;
            oEnds |= std::uint64_t{ipText[lIndex] == mEnd.mCharacter} << lIndex;
        }
    }
#endif

    const wchar_t* mPosition; // behind the delimiter found last
    const wchar_t* mTextStop;
    const wchar_t* mBlock;
    const wchar_t* mStop;      // behind the block: from here on nothing is known
    std::uint64_t mTokens = 0; // the delimiters of the block that are still to be given, a bit each
    std::uint64_t mBegins = 0; // those of all that are begin delimiters
    bool mHasLeftOver = false; // the block has more of their characters
    bool mMayContainStart = false;
    std::wstring_view mRun;
    Row mBegin;
    Row mEnd;
};

} // namespace QTalBase

#endif
