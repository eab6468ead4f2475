#include "Text/Secrets.h"

#include <algorithm>
#include <limits>

namespace TalBaseTool
{

namespace
{

constexpr std::size_t gLongestName = 64; // of a sensitive property
constexpr std::size_t gNear = 4096;      // characters before a fault in which a name may be run together with others
constexpr std::size_t gMostKnown = 10000;
constexpr std::size_t gEndless = std::numeric_limits<std::size_t>::max() / 2; // a depth that nothing leaves
constexpr wchar_t gMask = L'•';

bool IsWordCharacter(wchar_t iCharacter)
{
    return (iCharacter >= L'a' && iCharacter <= L'z') || (iCharacter >= L'A' && iCharacter <= L'Z') ||
           (iCharacter >= L'0' && iCharacter <= L'9') || iCharacter == L'_';
}

} // namespace

HeaderKind FindHeaderKind(std::wstring_view iText, const QTalBase::TextCheckResult& iResult,
                          const DelimiterTexts& iPair)
{
    if (iResult.mContentPosition == 0)
    {
        return HeaderKind::Usual;
    }
    if (iText.substr(0, iResult.mContentPosition) != WriteHeader(iPair))
    {
        return HeaderKind::NotAsWritten;
    }
    const std::size_t lOther = iPair.mBegin.find_first_not_of(iPair.mBegin[0]);
    return lOther != std::wstring::npos && iPair.mBegin.find(iPair.mBegin[0], lOther) != std::wstring::npos
               ? HeaderKind::Swallowing
               : HeaderKind::Usual;
}

Secrets::Secrets(const std::wstring& iText, const QTalBase::TextCheckResult& iResult,
                 const std::optional<DelimiterTexts>& iPair)
    : mText(iText),
      mPair(iPair.value_or(DelimiterTexts{})),
      mIsHeaderUsual(iPair && FindHeaderKind(iText, iResult, *iPair) == HeaderKind::Usual),
      mIsWhole(iResult.mIsValid && mIsHeaderUsual),
      mShown(iResult.mIsValid ? 0 : iResult.mPosition)
{
    if (!iPair)
    {
        const std::size_t lStop = std::min(mText.size(), gNear); // its header should be there, and that is shown
        if (!hScanWithoutPair(lStop))
        {
            mSpans.push_back({lStop, mText.size()});
        }
    }
    else if (!hScanWithoutPair(iResult.mContentPosition))
    {
        hScan(iResult.mContentPosition);
    }
}

bool Secrets::Has(std::size_t iPlace) const
{
    const auto lSpan = std::upper_bound(mSpans.begin(), mSpans.end(), iPlace,
                                        [](std::size_t iValue, const Span& iSpan) { return iValue < iSpan.mStop; });
    return lSpan != mSpans.end() && lSpan->mStart <= iPlace;
}

void Secrets::Mask(std::size_t iStart, std::wstring& oPart) const
{
    for (std::size_t lIndex = 0; lIndex < oPart.size(); ++lIndex)
    {
        oPart[lIndex] = Has(iStart + lIndex) ? gMask : oPart[lIndex];
    }
}

// The runs between delimiters, however those follow one another.
void Secrets::hScan(std::size_t iPlace)
{
    mIsValue = false;
    for (Span lRun{iPlace, iPlace}; lRun.mStart < mText.size();)
    {
        const Delimiter lNext = hFindDelimiter(lRun.mStart);
        lRun.mStop = lNext.mPlace.mStart;
        if (mDepth > 0)
        {
            hFollow(lRun, lNext);
        }
        else
        {
            hLookAt(lRun, lNext);
        }
        lRun.mStart = lNext.mPlace.mStop;
    }
    if (mDepth > 0)
    {
        mSpans.push_back({mHiddenFrom, mText.size()});
    }
}

// Looks for a name in the beginning of the text only, and takes all behind it for secret. Returns whether there is one.
bool Secrets::hScanWithoutPair(std::size_t iStop)
{
    const bool lIsWhole = mIsWhole;
    mIsWhole = false; // a delimiter that swallowed a name is no word
    const std::optional<Span> lName = hFindName({0, iStop});
    mIsWhole = lIsWhole;
    if (lName)
    {
        mSpans.push_back({lName->mStop, mText.size()});
    }
    return lName.has_value();
}

void Secrets::hLookAt(const Span& iRun, const Delimiter& iNext)
{
    const bool lIsValue = mIsValue;
    mIsValue = iNext.mKind == Kind::Begin;
    const std::optional<Span> lName = hFindName(iRun);
    if (!lName)
    {
        return;
    }
    if (!mIsHeaderUsual)
    {
        mHiddenFrom = lName->mStop;
        mDepth = gEndless;
        return;
    }
    if (lName->mStop != iRun.mStop && iNext.mKind == Kind::End)
    {
        mSpans.push_back({lName->mStop, iRun.mStop});
    }
    else if (lName->mStop != iRun.mStop)
    {
        // The delimiter behind the name is damaged. It may have begun a bag, whose end nobody knows.
        mHiddenFrom = lName->mStop;
        mDepth = gEndless;
    }
    else if (iNext.mKind == Kind::End && lIsValue)
    {
        mSpans.push_back({iNext.mPlace.mStop, hFindDelimiter(iNext.mPlace.mStop).mPlace.mStart});
    }
    else
    {
        mHiddenFrom = iNext.mPlace.mStop; // an end delimiter stands there for a begin delimiter
        mDepth = 1;
        mIsValue = true;
    }
}

void Secrets::hFollow(const Span& iRun, const Delimiter& iNext)
{
    const bool lHasLostBegin = !mIsValue && iRun.mStart != iRun.mStop; // the name of a property that ends nothing else
    mIsValue = iNext.mKind == Kind::Begin;
    if (iNext.mKind == Kind::Begin)
    {
        ++mDepth;
    }
    else if (iNext.mKind == Kind::End && !lHasLostBegin && --mDepth == 0)
    {
        mSpans.push_back({mHiddenFrom, iNext.mPlace.mStart});
    }
}

Secrets::Delimiter Secrets::hFindDelimiter(std::size_t iPlace)
{
    const auto lFind = [&](const std::wstring& iDelimiter, std::size_t& oNext) {
        if (oNext < iPlace || iPlace == 0)
        {
            oNext = std::min(mText.find(iDelimiter, iPlace), mText.size());
        }
        return oNext;
    };
    const std::size_t lBegin = lFind(mPair.mBegin, mNextBegin);
    const std::size_t lEnd = lFind(mPair.mEnd, mNextEnd);
    if (std::min(lBegin, lEnd) == mText.size())
    {
        return {Kind::None, {mText.size(), mText.size()}};
    }
    return lBegin < lEnd ? Delimiter{Kind::Begin, {lBegin, lBegin + mPair.mBegin.size()}}
                         : Delimiter{Kind::End, {lEnd, lEnd + mPair.mEnd.size()}};
}

// The first sensitive name in a run: all of it, or a word.
std::optional<Secrets::Span> Secrets::hFindName(const Span& iRun)
{
    if (hIsSensitive(iRun))
    {
        return iRun;
    }
    for (std::size_t lPlace = iRun.mStart; lPlace < iRun.mStop;)
    {
        Span lWord{lPlace, lPlace};
        while (lWord.mStop < iRun.mStop && IsWordCharacter(mText[lWord.mStop]))
        {
            ++lWord.mStop;
        }
        if (const std::optional<Span> lName = hFindNameInWord(lWord))
        {
            return lName;
        }
        lPlace = std::max(lWord.mStop, lPlace + 1);
    }
    return {};
}

// In a broken text the delimiter beside a name may have lost a character, and the rest of it may be word characters.
std::optional<Secrets::Span> Secrets::hFindNameInWord(const Span& iWord)
{
    if (hIsSensitive(iWord))
    {
        return iWord;
    }
    if (mIsWhole || iWord.mStop - iWord.mStart > gNear || iWord.mStop + gNear < mShown)
    {
        return {};
    }
    for (std::size_t lStart = iWord.mStart; lStart < iWord.mStop; ++lStart)
    {
        for (std::size_t lStop = lStart + 1; lStop <= std::min(iWord.mStop, lStart + gLongestName); ++lStop)
        {
            if (mSensitive.Is(std::wstring_view(mText).substr(lStart, lStop - lStart)))
            {
                return Span{lStart, lStop};
            }
        }
    }
    return {};
}

bool Secrets::hIsSensitive(const Span& iName)
{
    if (iName.mStart == iName.mStop || iName.mStop - iName.mStart > gLongestName)
    {
        return false;
    }
    if (mKnown.size() > gMostKnown)
    {
        mKnown.clear();
    }
    const std::wstring lName = mText.substr(iName.mStart, iName.mStop - iName.mStart);
    const auto [lKnown, lIsNew] = mKnown.emplace(lName, false);
    if (lIsNew)
    {
        lKnown->second = mSensitive.Is(lName);
    }
    return lKnown->second;
}

} // namespace TalBaseTool
