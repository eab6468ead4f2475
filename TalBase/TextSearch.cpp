#include "TalBase/PrivateSource/TextSearch.h"

namespace QTalBase
{

void TextSearcher::Prepare()
{
    if (!mBorders.empty() || mNeedle.empty())
    {
        return;
    }
    std::vector<std::size_t> lBorders(mNeedle.size() + 1, 0);
    std::size_t lBorder = 0;
    for (std::size_t lIndex = 1; lIndex < mNeedle.size(); ++lIndex)
    {
        while (lBorder != 0 && mNeedle[lIndex] != mNeedle[lBorder])
        {
            lBorder = lBorders[lBorder];
        }
        lBorder += mNeedle[lIndex] == mNeedle[lBorder] ? 1 : 0;
        lBorders[lIndex + 1] = lBorder;
    }
    mBorders.swap(lBorders);
}

std::size_t TextSearcher::Step(std::size_t iMatched, wchar_t iCharacter) const noexcept
{
    while (iMatched != 0 && mNeedle[iMatched] != iCharacter)
    {
        iMatched = mBorders[iMatched];
    }
    return iMatched + (mNeedle[iMatched] == iCharacter ? 1 : 0);
}

bool TextSearcher::IsIn(std::wstring_view iText)
{
    if (iText.size() < mNeedle.size())
    {
        return false;
    }
    if (mNeedle.size() <= gShortDelimiter)
    {
        return iText.find(mNeedle) != std::wstring_view::npos;
    }
    Prepare();
    std::size_t lMatched = 0;
    for (const wchar_t lCharacter : iText)
    {
        lMatched = Step(lMatched, lCharacter);
        if (lMatched == mNeedle.size())
        {
            return true;
        }
    }
    return false;
}

bool Contains(std::wstring_view iText, std::wstring_view iPart)
{
    return TextSearcher(iPart).IsIn(iText);
}

TextCutter::TextCutter(std::wstring_view iText, std::size_t iPosition, std::wstring_view iBegin, std::wstring_view iEnd)
    : mTextStop(iText.data() + iText.size()),
      mPosition(iText.data() + iPosition),
      mIsShort(iBegin.size() <= gShortDelimiter && iEnd.size() <= gShortDelimiter),
      mBeginFirst(iBegin[0]),
      mEndFirst(iEnd[0]),
      mShortBegin(iBegin),
      mShortEnd(iEnd),
      mBegin(iBegin),
      mEnd(iEnd),
      mBeginSearcher(iBegin),
      mEndSearcher(iEnd)
{
}

TextCutter::Found TextCutter::hNextLong()
{
    mMayHoldFirstCharacter = true;
    // A delimiter longer than what is left cannot occur; its table would cost more than the text justifies.
    const std::size_t lLeft = static_cast<std::size_t>(mTextStop - mPosition);
    const bool lMayBegin = mBegin.size() <= lLeft;
    const bool lMayEnd = mEnd.size() <= lLeft;
    if (lMayBegin)
    {
        mBeginSearcher.Prepare();
    }
    if (lMayEnd)
    {
        mEndSearcher.Prepare();
    }
    std::size_t lBeginMatched = 0;
    std::size_t lEndMatched = 0;
    for (const wchar_t* lPlace = mPosition; lPlace != mTextStop; ++lPlace)
    {
        if (lMayBegin && (lBeginMatched = mBeginSearcher.Step(lBeginMatched, *lPlace)) == mBegin.size())
        {
            return hFound(Found::Begin, lPlace + 1 - mBegin.size(), mBegin.size());
        }
        if (lMayEnd && (lEndMatched = mEndSearcher.Step(lEndMatched, *lPlace)) == mEnd.size())
        {
            return hFound(Found::End, lPlace + 1 - mEnd.size(), mEnd.size());
        }
    }
    return Found::Nothing;
}

} // namespace QTalBase
