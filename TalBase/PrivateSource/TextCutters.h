// Cuts a text that comes from the network at its delimiters, in time linear in text and delimiters whatever these
// contain, and knows nothing of what the pieces mean.
//
// Short delimiters are compared on the spot, where their first characters stand. Long ones, for which that product
// could hurt, go through automata. Those that repeat one character, as nearly all do, have a cutter of their own:
// RowCutter.h.

#ifndef TALBASE_PRIVATESOURCE_TEXTCUTTERS_H
#define TALBASE_PRIVATESOURCE_TEXTCUTTERS_H

#include "TalBase/PrivateSource/TextSearch.h"

#include <cstddef>
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

// The cutters cut a text at its delimiters, from left to right. Neither delimiter may be empty or occur inside the
// other; then at most one of them begins at any place, and the one that begins first also ends first.
//
// Next looks for the next delimiter, makes the text before it the run, and goes on behind the delimiter. At the end of
// the text there is nothing, and the rest is no run.

// Compares both delimiters at every place where one of their first characters stands: at most gShortDelimiter steps a
// place.
class ShortCutter
{
public:
    ShortCutter(std::wstring_view iText, std::wstring_view iBegin, std::wstring_view iEnd) noexcept
        : mText(iText), mBegin(iBegin), mEnd(iEnd)
    {
    }

    Found Next() noexcept
    {
        mMayContainStart = false;
        for (std::size_t lPlace = 0; lPlace < mText.size(); ++lPlace)
        {
            if (mText[lPlace] != mBegin[0] && mText[lPlace] != mEnd[0])
            {
                continue;
            }
            const std::wstring_view lHere = mText.substr(lPlace);
            if (lHere.starts_with(mBegin))
            {
                return hTake(Found::Begin, lPlace, mBegin.size());
            }
            if (lHere.starts_with(mEnd))
            {
                return hTake(Found::End, lPlace, mEnd.size());
            }
            mMayContainStart = true;
        }
        return Found::Nothing;
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
        return mText;
    }

private:
    Found hTake(Found iFound, std::size_t iPlace, std::size_t iLength) noexcept
    {
        mRun = mText.substr(0, iPlace);
        mText.remove_prefix(iPlace + iLength);
        return iFound;
    }

    std::wstring_view mText; // what is left of it
    std::wstring_view mRun;
    std::wstring_view mBegin;
    std::wstring_view mEnd;
    bool mMayContainStart = false;
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
