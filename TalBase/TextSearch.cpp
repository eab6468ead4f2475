#include "TalBase/PrivateSource/TextSearch.h"

namespace QTalBase
{

// For each length, the longest proper border of that much of the needle: a prefix that is also its suffix. Searching
// then never goes back in the text, whatever the needle (Knuth, Morris and Pratt).
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

// How much of the needle ends at a character, when so much ended at the one before it.
std::size_t TextSearcher::Step(std::size_t iMatched, wchar_t iCharacter) const noexcept
{
    while (iMatched != 0 && mNeedle[iMatched] != iCharacter)
    {
        iMatched = mBorders[iMatched];
    }
    return iMatched + (mNeedle[iMatched] == iCharacter ? 1 : 0);
}

// A short needle is looked for as the standard library does, which costs at most its length for each character.
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
