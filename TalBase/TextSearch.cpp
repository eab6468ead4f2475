#include "TalBase/PrivateSource/TextSearch.h"

namespace QTalBase
{

void TextSearcher::Prepare()
{
    if (!mBorders.empty())
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

Found LongCutter::hFound(Found iFound, std::size_t iStop, std::size_t iLength) noexcept
{
    mRun = mText.substr(0, iStop - iLength);
    mText.remove_prefix(iStop);
    return iFound;
}

Found LongCutter::Next()
{
    // A delimiter longer than what is left cannot occur; its table would cost more than the text justifies.
    const bool lMayBegin = mBegin.size() <= mText.size();
    const bool lMayEnd = mEnd.size() <= mText.size();
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
    for (std::size_t lIndex = 0; lIndex < mText.size(); ++lIndex)
    {
        if (lMayBegin && (lBeginMatched = mBeginSearcher.Step(lBeginMatched, mText[lIndex])) == mBegin.size())
        {
            return hFound(Found::Begin, lIndex + 1, mBegin.size());
        }
        if (lMayEnd && (lEndMatched = mEndSearcher.Step(lEndMatched, mText[lIndex])) == mEnd.size())
        {
            return hFound(Found::End, lIndex + 1, mEnd.size());
        }
    }
    return Found::Nothing;
}

} // namespace QTalBase
