// Searching in texts that come from the network, in time linear in text and delimiters whatever these hold.
//
// Short delimiters are found by their first characters, sixteen places at a time where the machine can, and compared on
// the spot: at most gShortDelimiter steps a place. Long ones, for which that product could hurt, go through the
// Knuth-Morris-Pratt automaton.

#ifndef TALBASE_PRIVATESOURCE_TEXTSEARCH_H
#define TALBASE_PRIVATESOURCE_TEXTSEARCH_H

#include "TalBase/PrivateSource/TextPrimitives.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace QTalBase
{

inline constexpr std::size_t gShortDelimiter = 16;

// One needle, for any number of haystacks. Holds a view: the needle must outlive the searcher.
class TextSearcher
{
public:
    explicit TextSearcher(std::wstring_view iNeedle) noexcept : mNeedle(iNeedle) {}

    // Returns whether the needle occurs; the empty needle occurs everywhere. Throws std::bad_alloc for a long needle.
    bool IsIn(std::wstring_view iText);

    // The automaton: how many characters of the needle match after one more character. Needs Prepare.
    std::size_t Step(std::size_t iMatched, wchar_t iCharacter) const noexcept;

    // Makes the automaton's table, once. Throws std::bad_alloc.
    void Prepare();

private:
    std::wstring_view mNeedle;
    std::vector<std::size_t> mBorders; // empty until it is needed
};

// Whether iPart occurs in iText, for a single question.
bool Contains(std::wstring_view iText, std::wstring_view iPart);

// What a cutter finds next.
enum class Found
{
    Begin,
    End,
    Nothing
};

// The two cutters cut a text at its delimiters, from left to right. Neither delimiter may be empty or occur inside the
// other; then at most one of them begins at any place, and the one that begins first also ends first.
//
// Next looks for the next delimiter, makes the text before it the run, and goes on behind the delimiter. At the end of
// the text there is nothing, and the rest is no run.

inline bool AreShortDelimiters(std::wstring_view iBegin, std::wstring_view iEnd) noexcept
{
    return iBegin.size() <= gShortDelimiter && iEnd.size() <= gShortDelimiter;
}

class ShortCutter
{
public:
    ShortCutter(std::wstring_view iText, std::wstring_view iBegin, std::wstring_view iEnd) noexcept
        : mRunStart(iText.data()),
          mRunStop(iText.data()),
          mPosition(iText.data()),
          mBlock(iText.data()),
          mBlockStop(iText.data()),
          mTextStop(iText.data() + iText.size()),
          mBegin(iBegin),
          mEnd(iEnd)
    {
    }

    Found Next() noexcept
    {
        mMayHoldFirstCharacter = false;
        for (;;)
        {
            while (mCandidates == 0)
            {
                if (mBlockStop == mTextStop)
                {
                    return Found::Nothing;
                }
                hLoadBlock(mBlockStop);
            }
            const wchar_t* lPlace = mBlock + __builtin_ctz(mCandidates);
            if (mBegin.IsAt(lPlace, mTextStop))
            {
                return hFound(Found::Begin, lPlace, mBegin.GetLength());
            }
            if (mEnd.IsAt(lPlace, mTextStop))
            {
                return hFound(Found::End, lPlace, mEnd.GetLength());
            }
            mMayHoldFirstCharacter = true;
            mCandidates &= mCandidates - 1;
        }
    }

    std::wstring_view GetRun() const noexcept
    {
        return {mRunStart, static_cast<std::size_t>(mRunStop - mRunStart)};
    }

    // Whether the run may hold the first character of a delimiter. False only where it certainly holds none.
    bool MayHoldFirstCharacter() const noexcept
    {
        return mMayHoldFirstCharacter;
    }

private:
    static constexpr std::ptrdiff_t gBlock = 16;

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
            mFirst = _mm_set1_epi32(static_cast<int>(iText[0]));
            mMask = (1U << lCount) - 1;
#endif
        }

        std::size_t GetLength() const noexcept
        {
            return mText.size();
        }

        bool IsAt(const wchar_t* ipPlace, const wchar_t* ipTextStop) const noexcept
        {
            const std::size_t lLeft = static_cast<std::size_t>(ipTextStop - ipPlace);
#if defined(__SSE2__)
            if (lLeft >= 4)
            {
                return (EqualFour(LoadFour(ipPlace), mFour) & mMask) == mMask &&
                       (mText.size() <= 4 ||
                        (lLeft >= mText.size() && AreEqualTexts(ipPlace + 4, mText.data() + 4, mText.size() - 4)));
            }
#endif
            return lLeft >= mText.size() && AreEqualTexts(ipPlace, mText.data(), mText.size());
        }

        bool StartsWith(wchar_t iCharacter) const noexcept
        {
            return mText[0] == iCharacter;
        }

#if defined(__SSE2__)
        // Which of four characters are the delimiter's first.
        __m128i FirstAmong(__m128i iFour) const noexcept
        {
            return _mm_cmpeq_epi32(iFour, mFirst);
        }
#endif

    private:
        std::wstring_view mText;
#if defined(__SSE2__)
        __m128i mFour;
        __m128i mFirst;
        unsigned int mMask;
#endif
    };

    // Finds the candidates, places that hold the first character of a delimiter, among the next characters.
    void hLoadBlock(const wchar_t* ipFrom) noexcept
    {
        mBlock = ipFrom;
#if defined(__SSE2__)
        if (mTextStop - ipFrom >= gBlock)
        {
            mBlockStop = ipFrom + gBlock;
            const __m128i lLow = _mm_packs_epi32(hCandidatesAmong(ipFrom), hCandidatesAmong(ipFrom + 4));
            const __m128i lHigh = _mm_packs_epi32(hCandidatesAmong(ipFrom + 8), hCandidatesAmong(ipFrom + 12));
            mCandidates = static_cast<unsigned int>(_mm_movemask_epi8(_mm_packs_epi16(lLow, lHigh)));
            return;
        }
#endif
        mBlockStop = mTextStop - ipFrom >= gBlock ? ipFrom + gBlock : mTextStop;
        mCandidates = 0;
        for (const wchar_t* lPlace = mBlockStop; lPlace != ipFrom;)
        {
            --lPlace;
            mCandidates = mCandidates << 1 | (mBegin.StartsWith(*lPlace) || mEnd.StartsWith(*lPlace) ? 1U : 0U);
        }
    }

#if defined(__SSE2__)
    __m128i hCandidatesAmong(const wchar_t* ipFour) const noexcept
    {
        const __m128i lFour = LoadFour(ipFour);
        return _mm_or_si128(mBegin.FirstAmong(lFour), mEnd.FirstAmong(lFour));
    }
#endif

    // Makes the run and drops the candidates inside the delimiter; one that reaches out of the block ends it.
    Found hFound(Found iFound, const wchar_t* ipStart, std::size_t iLength) noexcept
    {
        mRunStart = mPosition;
        mRunStop = ipStart;
        mPosition = ipStart + iLength;
        if (mPosition >= mBlockStop)
        {
            mBlockStop = mPosition;
            mCandidates = 0;
        }
        else
        {
            mCandidates &= ~0U << (mPosition - mBlock);
        }
        return iFound;
    }

    const wchar_t* mRunStart;
    const wchar_t* mRunStop;
    const wchar_t* mPosition; // behind the delimiter found last
    const wchar_t* mBlock;
    const wchar_t* mBlockStop; // up to here the candidates are known
    const wchar_t* mTextStop;
    unsigned int mCandidates = 0; // of the block, those at or behind the position: a bit each
    bool mMayHoldFirstCharacter = false;
    Delimiter mBegin;
    Delimiter mEnd;
};

class LongCutter
{
public:
    LongCutter(std::wstring_view iText, std::wstring_view iBegin, std::wstring_view iEnd) noexcept
        : mText(iText), mBegin(iBegin), mEnd(iEnd), mBeginSearcher(iBegin), mEndSearcher(iEnd)
    {
    }

    // Throws std::bad_alloc.
    Found Next();

    std::wstring_view GetRun() const noexcept
    {
        return mRun;
    }

    bool MayHoldFirstCharacter() const noexcept
    {
        return true;
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
