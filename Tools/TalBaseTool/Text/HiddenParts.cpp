#include "Text/HiddenParts.h"

#include <algorithm>
#include <optional>

namespace TalBaseTool
{

namespace
{

// Finds one delimiter after the other in time that grows with the text alone, whatever the delimiter: after a part of
// it has matched, no character is looked at again.
class DelimiterFinder
{
public:
    DelimiterFinder(std::wstring_view iText, std::wstring_view iDelimiter)
        : mText(iText), mDelimiter(iDelimiter), mRepeats(iDelimiter.size())
    {
        for (std::size_t lIndex = 1; lIndex < mDelimiter.size(); ++lIndex)
        {
            mRepeats[lIndex] = hAdvance(mRepeats[lIndex - 1], mDelimiter[lIndex]);
        }
    }

    // Where the next one begins from a place on, which is never before the last one asked for; the length of the text
    // where there is none.
    std::size_t Find(std::size_t iPlace)
    {
        if (!mIsFound || mFound < iPlace)
        {
            mFound = hFind(iPlace);
            mIsFound = true;
        }
        return mFound;
    }

private:
    // The number of characters of the delimiter that match, after one more.
    std::size_t hAdvance(std::size_t iMatched, wchar_t iCharacter) const
    {
        std::size_t lMatched = iMatched;
        while (lMatched > 0 && mDelimiter[lMatched] != iCharacter)
        {
            lMatched = mRepeats[lMatched - 1];
        }
        return mDelimiter[lMatched] == iCharacter ? lMatched + 1 : 0;
    }

    std::size_t hFind(std::size_t iPlace) const
    {
        std::size_t lMatched = 0;
        for (std::size_t lPlace = iPlace; lPlace < mText.size(); ++lPlace)
        {
            if (lMatched == 0)
            {
                lPlace = mText.find(mDelimiter[0], lPlace);
                if (lPlace == std::wstring_view::npos)
                {
                    break;
                }
            }
            lMatched = hAdvance(lMatched, mText[lPlace]);
            if (lMatched == mDelimiter.size())
            {
                return lPlace + 1 - lMatched;
            }
        }
        return mText.size();
    }

    std::wstring_view mText;
    std::wstring_view mDelimiter;
    std::vector<std::size_t> mRepeats; // for each beginning of the delimiter, how much of its end begins it, too
    bool mIsFound = false;
    std::size_t mFound = 0;
};

// Whether one changed character, or a single new one, makes another text of the same delimiters.
bool AreFragile(const DelimiterTexts& iPair)
{
    const std::wstring& lBegin = iPair.mBegin;
    const std::wstring& lEnd = iPair.mEnd;
    if (lBegin.size() == 1 || lEnd.size() == 1 || lBegin.size() != lEnd.size())
    {
        return lBegin.size() == 1 || lEnd.size() == 1;
    }
    std::size_t lDiffering = 0;
    for (std::size_t lIndex = 0; lIndex < lBegin.size(); ++lIndex)
    {
        lDiffering += lBegin[lIndex] != lEnd[lIndex] ? 1 : 0;
    }
    return lDiffering == 1;
}

class Scan
{
public:
    Scan(std::wstring_view iText, const DelimiterTexts& iPair, const SensitiveNames& iNames, bool iWithParts)
        : mText(iText),
          mPair(iPair),
          mNames(iNames),
          mWithParts(iWithParts),
          mIsFragile(AreFragile(iPair)),
          mBegin(iText, iPair.mBegin),
          mEnd(iText, iPair.mEnd)
    {
    }

    HiddenParts Run(std::size_t iContent)
    {
        mNext = mNames.Find(mText, 0);
        mHidden.mIsNameCut = iContent > 0 && hIsNameCutByHeader(iContent);
        if (mHidden.mIsNameCut)
        {
            return std::move(mHidden);
        }
        for (TextPart lRun{iContent, iContent}; lRun.mStart < mText.size();)
        {
            const std::size_t lBegin = mBegin.Find(lRun.mStart);
            lRun.mStop = std::min(lBegin, mEnd.Find(lRun.mStart));
            if (lRun.mStop == mText.size())
            {
                hTakeTail(lRun);
                break;
            }
            const bool lIsBegin = lRun.mStop == lBegin;
            const std::size_t lBehind = lRun.mStop + (lIsBegin ? mPair.mBegin.size() : mPair.mEnd.size());
            if (hIsNameCut({lRun.mStop, lBehind}))
            {
                mHidden.mIsNameCut = true;
                break;
            }
            lIsBegin ? hTakeName(lRun, lBehind) : hTakeEnd(lRun);
            mIsBehindBegin = lIsBegin;
            lRun.mStart = lBehind;
        }
        return std::move(mHidden);
    }

private:
    // By one of the delimiters that it names, which may have swallowed properties, or by the one that closes it.
    bool hIsNameCutByHeader(std::size_t iContent)
    {
        constexpr std::size_t lEnd = 12; // behind "EndDelimiter"
        const std::size_t lWord = lEnd + mPair.mEnd.size();
        return hIsNameCut({lEnd, lWord}) || hIsNameCut({lWord + 14, iContent}); // behind "BeginDelimiter"
    }

    bool hIsNameCut(const TextPart& iDelimiter)
    {
        while (mNext && mNext->mStart < iDelimiter.mStop)
        {
            if (mNext->mStop > iDelimiter.mStart)
            {
                return true;
            }
            mNext = mNames.Find(mText, mNext->mStart + 1);
        }
        return mNext && hMayCutEscapeBefore(*mNext, iDelimiter);
    }

    // Whether what is left of an escape stands between a delimiter and a name: "n" of "\n" is no letter of the name.
    bool hMayCutEscapeBefore(const NamePlace& iName, const TextPart& iDelimiter) const
    {
        constexpr std::size_t lLongest = 5; // of "\uXXXX" behind the backslash
        return iDelimiter.mStop > 0 && mText[iDelimiter.mStop - 1] == L'\\' && iName.mStart > iDelimiter.mStop &&
               iName.mStart <= iDelimiter.mStop + lLongest;
    }

    void hTakeName(const TextPart& iRun, std::size_t iBehind)
    {
        ++mDepth;
        mHidden.mHasNest = mHidden.mHasNest || mIsBehindBegin;
        if (mHiddenDepth != 0)
        {
            return;
        }
        const std::wstring_view lName = hView(iRun);
        const std::optional<NamePlace> lWord = mNames.FindWord(lName);
        if (mIsBehindLoss)
        {
            hHide(iRun);
            mHidden.mNames.emplace(lName);
        }
        else if (lWord && lWord->mStop != lName.size())
        {
            hHide({iRun.mStart + lWord->mStop, iRun.mStop});
        }
        if (lWord || mIsBehindLoss)
        {
            mHiddenDepth = mDepth;
            mHiddenFrom = iBehind;
        }
        mIsBehindLoss = false;
    }

    void hTakeEnd(const TextPart& iRun)
    {
        const bool lIsValue = mIsBehindBegin;
        if (mHiddenDepth == mDepth && mHiddenDepth != 0)
        {
            hHide({mHiddenFrom, iRun.mStop});
            mHiddenDepth = 0;
            mIsBehindLoss = (mIsFragile || mPair.mEnd.size() <= 2) && lIsValue && iRun.mStart == iRun.mStop;
        }
        else if (mHiddenDepth == 0 && lIsValue)
        {
            hTakeValue(iRun);
        }
        --mDepth;
    }

    void hTakeValue(const TextPart& iRun)
    {
        const std::wstring_view lValue = hView(iRun);
        const std::optional<NamePlace> lWord = mNames.FindWord(lValue);
        if (lWord)
        {
            hHide(iRun);
            const bool lIsOnlyWord =
                std::none_of(lValue.begin(), lValue.begin() + static_cast<std::ptrdiff_t>(lWord->mStart),
                             IsWordCharacter) &&
                std::none_of(lValue.begin() + static_cast<std::ptrdiff_t>(lWord->mStop), lValue.end(), IsWordCharacter);
            mIsBehindLoss = mIsFragile && lIsOnlyWord;
        }
    }

    void hTakeTail(const TextPart& iRun)
    {
        const std::wstring_view lTail = hView(iRun);
        const bool lIsLineEnd = lTail.find_first_not_of(L"\r\n") == std::wstring_view::npos;
        if (!lIsLineEnd && (mIsBehindLoss || mNames.FindWord(lTail)))
        {
            hHide(iRun);
        }
    }

    std::wstring_view hView(const TextPart& iPart) const
    {
        return mText.substr(iPart.mStart, iPart.mStop - iPart.mStart);
    }

    void hHide(const TextPart& iPart)
    {
        if (mWithParts && iPart.mStart < iPart.mStop)
        {
            mHidden.mParts.push_back(iPart);
        }
    }

    std::wstring_view mText;
    const DelimiterTexts& mPair;
    const SensitiveNames& mNames;
    bool mWithParts;
    bool mIsFragile;
    DelimiterFinder mBegin;
    DelimiterFinder mEnd;
    std::optional<NamePlace> mNext; // the next name, wherever it stands
    HiddenParts mHidden;
    bool mIsBehindBegin = false;  // a begin delimiter stands before what is looked at
    std::size_t mDepth = 0;       // of begin delimiters whose end is still to come
    std::size_t mHiddenDepth = 0; // the depth of what is hidden; 0 where nothing is
    std::size_t mHiddenFrom = 0;
    bool mIsBehindLoss = false; // the property before may have lost what follows
};

} // namespace

HiddenParts FindHiddenParts(std::wstring_view iText, std::size_t iContent, const DelimiterTexts& iPair,
                            const SensitiveNames& iNames, bool iWithParts)
{
    return Scan(iText, iPair, iNames, iWithParts).Run(iContent);
}

} // namespace TalBaseTool
