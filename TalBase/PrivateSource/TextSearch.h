// Searching in texts that come from the network, in time linear in text and delimiters whatever these hold.
//
// Short delimiters are found by their first characters, 32 places at a time where the machine can, and compared on
// the spot: at most gShortDelimiter steps a place. Long ones, for which that product could hurt, go through the
// Knuth-Morris-Pratt automaton.

#ifndef TALBASE_PRIVATESOURCE_TEXTSEARCH_H
#define TALBASE_PRIVATESOURCE_TEXTSEARCH_H

#include "TalBase/PrivateSource/TextPrimitives.h"

#include <cstddef>
#include <cstdint>
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

    // How much of the needle is matched at least where so much of it is, but not by the same characters of the text:
    // what the first iMatched characters of the needle both begin and end with. Needs Prepare.
    std::size_t GetBorder(std::size_t iMatched) const noexcept
    {
        return mBorders[iMatched];
    }

    // The length of the longest text, other than the needle, that the needle both begins and ends with. Throws
    // std::bad_alloc.
    std::size_t GetLongestBorder()
    {
        Prepare();
        return mBorders.back();
    }

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
        : mPosition(iText.data()),
          mTextStop(iText.data() + iText.size()),
          mWindow{iText.data(), iText.data(), 0},
          mIsWindowWide(iText.size() >= gBlock),
          mBegin(iBegin),
          mEnd(iEnd)
    {
    }

    Found Next() noexcept
    {
        mMayHoldFirstCharacter = false;
        const wchar_t* lPlace = nullptr;
        const Found lFound = hFind(mBegin, Found::Begin, mEnd, Found::End, mWindow, mMayHoldFirstCharacter, lPlace);
        if (lFound != Found::Nothing)
        {
            mRun = std::wstring_view(mPosition, static_cast<std::size_t>(lPlace - mPosition));
            mPosition = lPlace + (lFound == Found::Begin ? mBegin : mEnd).GetLength();
        }
        return lFound;
    }

    // Takes the properties that follow each other from here, as long as no run is empty but the one before a nest's
    // end, and goes on behind what it took. Does what calls of Next would, but here all that changes stays in
    // registers. Tells oTaker: TakePlain(name, value, what MayHoldFirstCharacter tells of the value), OpenNest(name),
    // CloseNest(), and ExpectValue(name) where it ends behind a name and its begin delimiter.
    template <class Taker>
    void TakeProperties(Taker& oTaker)
    {
        Window lWindow = mWindow;
        for (;;)
        {
            mWindow = lWindow;
            const wchar_t* lName = mPosition;
            const wchar_t* lNameStop = nullptr;
            bool lMayHold = false;
            const Found lFound = hFind(mBegin, Found::Begin, mEnd, Found::End, lWindow, lMayHold, lNameStop);
            if (lFound == Found::End && lNameStop == lName)
            {
                mPosition = lName + mEnd.GetLength();
                oTaker.CloseNest();
                continue;
            }
            if (lFound != Found::Begin || lNameStop == lName)
            {
                return;
            }
            if (!hTakeValue(oTaker, lName, lNameStop, lWindow))
            {
                return;
            }
        }
    }

    std::wstring_view GetRun() const noexcept
    {
        return mRun;
    }

    // Whether the run may hold the first character of a delimiter. False only where it certainly holds none.
    bool MayHoldFirstCharacter() const noexcept
    {
        return mMayHoldFirstCharacter;
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

    // What is known of the text from a position on: candidates are places that may hold the first character of a
    // delimiter.
    struct Window
    {
        const wchar_t* mBlock;
        const wchar_t* mStop;      // behind the block: from here on nothing is known
        std::uint64_t mCandidates; // of the block, those at or behind the position: a bit each, in the lower half
    };

    // Takes what follows a name and its begin delimiter: a value, or the names of nests and then one. Returns false
    // where neither is there.
    template <class Taker>
    bool hTakeValue(Taker& oTaker, const wchar_t* ipName, const wchar_t* ipNameStop, Window& oWindow)
    {
        const wchar_t* lName = ipName;
        const wchar_t* lNameStop = ipNameStop;
        for (;;)
        {
            const std::wstring_view lNameText(lName, static_cast<std::size_t>(lNameStop - lName));
            const wchar_t* lValue = lNameStop + mBegin.GetLength();
            const wchar_t* lValueStop = nullptr;
            mPosition = lValue;
            bool lMayHold = false;
            const Window lBefore = oWindow;
            const Found lFound = hFind(mEnd, Found::End, mBegin, Found::Begin, oWindow, lMayHold, lValueStop);
            if (lFound == Found::Nothing || lValueStop == lValue)
            {
                mWindow = lBefore;
                oTaker.ExpectValue(lNameText);
                return false;
            }
            if (lFound == Found::End)
            {
                mPosition = lValueStop + mEnd.GetLength();
                oTaker.TakePlain(lNameText, {lValue, static_cast<std::size_t>(lValueStop - lValue)}, lMayHold);
                return true;
            }
            oTaker.OpenNest(lNameText);
            lName = lValue;
            lNameStop = lValueStop;
        }
    }

    // Finds the next delimiter, asking for the likelier one first, and drops the candidates up to its end.
    Found hFind(const Delimiter& iLikely, Found iLikelyFound, const Delimiter& iOther, Found iOtherFound,
                Window& oWindow, bool& oMayHoldFirst, const wchar_t*& oPlace) const noexcept
    {
        for (;;)
        {
            while (oWindow.mCandidates == 0)
            {
                if (oWindow.mStop == mTextStop)
                {
                    return Found::Nothing;
                }
                hLoadBlock(oWindow);
            }
            const std::size_t lIndex = static_cast<std::size_t>(__builtin_ctzll(oWindow.mCandidates));
            oPlace = oWindow.mBlock + lIndex;
            if (iLikely.IsAt(oPlace, mTextStop))
            {
                hSkip(lIndex + iLikely.GetLength(), oWindow);
                return iLikelyFound;
            }
            if (iOther.IsAt(oPlace, mTextStop))
            {
                hSkip(lIndex + iOther.GetLength(), oWindow);
                return iOtherFound;
            }
            oMayHoldFirst = true;
            oWindow.mCandidates &= oWindow.mCandidates - 1;
        }
    }

    // Drops the candidates before an index of the block, which may lie behind it: short delimiters are shorter than a
    // block.
    static void hSkip(std::size_t iIndex, Window& oWindow) noexcept
    {
        oWindow.mCandidates &= ~std::uint64_t{0} << iIndex;
        const wchar_t* lPosition = oWindow.mBlock + iIndex;
        oWindow.mStop = lPosition > oWindow.mStop ? lPosition : oWindow.mStop;
    }

    // Finds the candidates among the characters that follow the window. At the end of the text the block overlaps what
    // is known already.
    void hLoadBlock(Window& oWindow) const noexcept
    {
        const wchar_t* lFrom = oWindow.mStop;
        const std::size_t lLeft = static_cast<std::size_t>(mTextStop - lFrom);
#if defined(__SSE2__)
        if (lLeft >= gBlock || mIsWindowWide)
        {
            oWindow.mBlock = lLeft >= gBlock ? lFrom : mTextStop - gBlock;
            oWindow.mStop = oWindow.mBlock + gBlock;
            oWindow.mCandidates = hCandidatesAmong(oWindow.mBlock) | hCandidatesAmong(oWindow.mBlock + 16) << 16;
            oWindow.mCandidates &= ~std::uint64_t{0} << (lFrom - oWindow.mBlock);
            return;
        }
#endif
        oWindow.mBlock = lFrom;
        oWindow.mStop = lFrom + std::min<std::size_t>(lLeft, gBlock);
        for (const wchar_t* lPlace = lFrom; lPlace != oWindow.mStop; ++lPlace)
        {
            const bool lIsCandidate = *lPlace == mBegin.GetFirst() || *lPlace == mEnd.GetFirst();
            oWindow.mCandidates |= static_cast<std::uint64_t>(lIsCandidate) << (lPlace - lFrom);
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
    bool mMayHoldFirstCharacter = false;
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
    Found Next();

    // Takes none: beside the steps of the automata a fast way would not pay.
    template <class Taker>
    void TakeProperties(Taker& /*oTaker*/)
    {
    }

    std::wstring_view GetRun() const noexcept
    {
        return mRun;
    }

    bool MayHoldFirstCharacter() const noexcept
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
