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

bool TextSearcher::OccursIn(std::wstring_view iText)
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
    return TextSearcher(iPart).OccursIn(iText);
}

} // namespace QTalBase
