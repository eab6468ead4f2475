// Cuts a text that comes from the network at its delimiters, in time linear in text and delimiters whatever these
// contain, and knows nothing of what the pieces mean.
//
// Short delimiters are found by their first characters, 32 places at a time where the machine can, and compared on
// the spot: at most gShortDelimiter steps a place. Long ones, for which that product could hurt, go through automata.
// In "a+b++++1***", 11 characters and so one block, the candidates for "++++" and "***" are the places 1, 3, 4, 5, 6,
// 8, 9 and 10; the one at 1 is passed over, the one at 3 is a delimiter, and then those up to its end are dropped.

#ifndef TALBASE_PRIVATESOURCE_TEXTCUTTERS_H
#define TALBASE_PRIVATESOURCE_TEXTCUTTERS_H

#include "TalBase/PrivateSource/TextPrimitives.h"
#include "TalBase/PrivateSource/TextSearch.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace QTalBase
{

// What a cutter finds next.
enum class Found
{
    Begin,
    End,
    Nothing,
    Run // another run of text: no cutter finds that, but a list of tokens could have it
};

// Whether a ShortCutter may cut at them.
inline bool AreShortDelimiters(std::wstring_view iBegin, std::wstring_view iEnd) noexcept
{
    return iBegin.size() <= gShortDelimiter && iEnd.size() <= gShortDelimiter;
}

// The two cutters cut a text at its delimiters, from left to right. Neither delimiter may be empty or occur inside the
// other; then at most one of them begins at any place, and the one that begins first also ends first.
//
// Next looks for the next delimiter, makes the text before it the run, and goes on behind the delimiter. At the end of
// the text there is nothing, and the rest is no run.

class ShortCutter
{
public:
    ShortCutter(std::wstring_view iText, std::wstring_view iBegin, std::wstring_view iEnd) noexcept
        : mPosition(iText.data()),
          mTextStop(iText.data() + iText.size()),
          mWindow{iText.data(), iText.data(), 0},
          mIsWindowWide(iText.size() >= gBlock),
          mBegin(iBegin),
          mEnd(iEnd)
    {
    }

    // Asks for the likelier delimiter first.
    Found Next(Found iLikely = Found::Begin) noexcept
    {
        mMayContainStart = false;
        const wchar_t* lPlace = nullptr;
        const Found lFound = iLikely == Found::Begin ? hFind(mBegin, Found::Begin, mEnd, Found::End, lPlace)
                                                     : hFind(mEnd, Found::End, mBegin, Found::Begin, lPlace);
        if (lFound != Found::Nothing)
        {
            mRun = std::wstring_view(mPosition, static_cast<std::size_t>(lPlace - mPosition));
            mPosition = lPlace + (lFound == Found::Begin ? mBegin : mEnd).GetLength();
        }
        return lFound;
    }

    std::wstring_view GetRun() const noexcept
    {
        return mRun;
    }

    // Whether the run may contain the first character of a delimiter. False only where it certainly contains none.
    bool MayContainStart() const noexcept
    {
        return mMayContainStart;
    }

    // What is behind the delimiter found last.
    std::wstring_view GetRest() const noexcept
    {
        return {mPosition, static_cast<std::size_t>(mTextStop - mPosition)};
    }

private:
    static constexpr std::size_t gBlock = 32;

    // A delimiter, ready to be compared with the text at a place.
    class Delimiter
    {
    public:
        explicit Delimiter(std::wstring_view iText) noexcept : mText(iText)
        {
#if defined(__SSE2__)
            wchar_t lFour[4] = {};
            const std::size_t lCount = iText.size() < 4 ? iText.size() : 4;
            for (std::size_t lIndex = 0; lIndex < lCount; ++lIndex)
            {
                lFour[lIndex] = iText[lIndex];
            }
            mFour = LoadFour(lFour);
            mMask = (1U << lCount) - 1;
#endif
        }

        std::size_t GetLength() const noexcept
        {
            return mText.size();
        }

        // Mostly decided by the first four characters; the calls of the other cases stay out of the way.
        bool IsAt(const wchar_t* ipPlace, const wchar_t* ipTextStop) const noexcept
        {
#if defined(__SSE2__)
            if (ipTextStop - ipPlace >= 4) [[likely]]
            {
                if ((EqualFour(LoadFour(ipPlace), mFour) & mMask) != mMask)
                {
                    return false;
                }
                if (mText.size() <= 4) [[likely]]
                {
                    return true;
                }
            }
#endif
            return hIsWholeAt(ipPlace, ipTextStop);
        }

        wchar_t GetFirst() const noexcept
        {
            return mText[0];
        }

    private:
        [[gnu::noinline]] bool hIsWholeAt(const wchar_t* ipPlace, const wchar_t* ipTextStop) const noexcept
        {
            return static_cast<std::size_t>(ipTextStop - ipPlace) >= mText.size() &&
                   AreEqualTexts(ipPlace, mText.data(), mText.size());
        }

#if defined(__SSE2__)
        __m128i mFour;
        unsigned int mMask;
#endif
        std::wstring_view mText;
    };

    // What is known of the text from a position on: candidates are places that may have the first character of a
    // delimiter.
    struct Window
    {
        const wchar_t* mBlock;
        const wchar_t* mStop;      // behind the block: from here on nothing is known
        std::uint64_t mCandidates; // of the block, those at or behind the position: a bit each, in the lower half
    };

    // Finds the next delimiter, and drops the candidates up to its end.
    Found hFind(const Delimiter& iLikely, Found iLikelyFound, const Delimiter& iOther, Found iOtherFound,
                const wchar_t*& oPlace) noexcept
    {
        for (;;)
        {
            while (mWindow.mCandidates == 0)
            {
                if (mWindow.mStop == mTextStop)
                {
                    return Found::Nothing;
                }
                hLoadBlock();
            }
            const std::size_t lIndex = static_cast<std::size_t>(__builtin_ctzll(mWindow.mCandidates));
            oPlace = mWindow.mBlock + lIndex;
            if (iLikely.IsAt(oPlace, mTextStop))
            {
                hSkip(lIndex + iLikely.GetLength());
                return iLikelyFound;
            }
            if (iOther.IsAt(oPlace, mTextStop))
            {
                hSkip(lIndex + iOther.GetLength());
                return iOtherFound;
            }
            mMayContainStart = true;
            mWindow.mCandidates &= mWindow.mCandidates - 1;
        }
    }

    // Drops the candidates before an index of the block, which may lie behind it: short delimiters are shorter than a
    // block.
    void hSkip(std::size_t iIndex) noexcept
    {
        mWindow.mCandidates &= ~std::uint64_t{0} << iIndex;
        const wchar_t* lPosition = mWindow.mBlock + iIndex;
        mWindow.mStop = lPosition > mWindow.mStop ? lPosition : mWindow.mStop;
    }

    // Finds the candidates among the characters that follow the window. At the end of the text the block overlaps what
    // is known already.
    void hLoadBlock() noexcept
    {
        const wchar_t* lFrom = mWindow.mStop;
        const std::size_t lLeft = static_cast<std::size_t>(mTextStop - lFrom);
#if defined(__SSE2__)
        if (lLeft >= gBlock || mIsWindowWide)
        {
            mWindow.mBlock = lLeft >= gBlock ? lFrom : mTextStop - gBlock;
            mWindow.mStop = mWindow.mBlock + gBlock;
            mWindow.mCandidates = hCandidatesAmong(mWindow.mBlock) | hCandidatesAmong(mWindow.mBlock + 16) << 16;
            mWindow.mCandidates &= ~std::uint64_t{0} << (lFrom - mWindow.mBlock);
            return;
        }
#endif
        mWindow.mBlock = lFrom;
        mWindow.mStop = lFrom + std::min<std::size_t>(lLeft, gBlock);
        for (const wchar_t* lPlace = lFrom; lPlace != mWindow.mStop; ++lPlace)
        {
            const bool lIsCandidate = *lPlace == mBegin.GetFirst() || *lPlace == mEnd.GetFirst();
            mWindow.mCandidates |= static_cast<std::uint64_t>(lIsCandidate) << (lPlace - lFrom);
        }
    }

#if defined(__SSE2__)
    // A bit for each of 16 characters. They are compared in 16 bits, saturated, so that characters outside the lower
    // half of the basic plane may be candidates for each other.
    std::uint32_t hCandidatesAmong(const wchar_t* ipText) const noexcept
    {
        const __m128i lLow = hCandidatesAmongEight(ipText);
        const __m128i lHigh = hCandidatesAmongEight(ipText + 8);
        return static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_packs_epi16(lLow, lHigh)));
    }

    __m128i hCandidatesAmongEight(const wchar_t* ipText) const noexcept
    {
        const __m128i lEight = _mm_packs_epi32(LoadFour(ipText), LoadFour(ipText + 4));
        return _mm_or_si128(_mm_cmpeq_epi16(lEight, mBeginFirst), _mm_cmpeq_epi16(lEight, mEndFirst));
    }

    static __m128i hSaturated(wchar_t iCharacter) noexcept
    {
        const __m128i lFour = _mm_set1_epi32(static_cast<int>(iCharacter));
        return _mm_packs_epi32(lFour, lFour);
    }
#endif

    const wchar_t* mPosition; // behind the delimiter found last
    const wchar_t* mTextStop;
    Window mWindow;
    bool mIsWindowWide; // the text is as long as a block
    bool mMayContainStart = false;
    std::wstring_view mRun;
    Delimiter mBegin;
    Delimiter mEnd;
#if defined(__SSE2__)
    __m128i mBeginFirst = hSaturated(mBegin.GetFirst());
    __m128i mEndFirst = hSaturated(mEnd.GetFirst());
#endif
};

class LongCutter
{
public:
    LongCutter(std::wstring_view iText, std::wstring_view iBegin, std::wstring_view iEnd) noexcept
        : mText(iText), mBegin(iBegin), mEnd(iEnd), mBeginSearcher(iBegin), mEndSearcher(iEnd)
    {
    }

    // Throws std::bad_alloc.
    Found Next(Found iLikely = Found::Begin);

    std::wstring_view GetRun() const noexcept
    {
        return mRun;
    }

    bool MayContainStart() const noexcept
    {
        return true;
    }

    std::wstring_view GetRest() const noexcept
    {
        return mText;
    }

private:
    Found hFound(Found iFound, std::size_t iStop, std::size_t iLength) noexcept;

    std::wstring_view mText; // what is left of it
    std::wstring_view mRun;
    std::wstring_view mBegin;
    std::wstring_view mEnd;
    TextSearcher mBeginSearcher;
    TextSearcher mEndSearcher;
};

} // namespace QTalBase

#endif
