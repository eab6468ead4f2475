#include "Text/Excerpts.h"

#include "Text/Text.h"

#include <algorithm>

namespace TalBaseTool
{

namespace
{

constexpr std::size_t gFrame = 4;                // columns of the blanks before a line and of an ellipsis at either end
constexpr std::size_t gMost = 76;                // columns beside them
constexpr std::size_t gLeast = 16;               // where something is to be seen
constexpr std::size_t gBehind = 36;              // of the most: at a place and behind it
constexpr std::wstring_view gMask = L"(hidden)"; // of one width, whatever it stands for

} // namespace

Excerpts::Excerpts(const std::wstring& iText, const Gate& iGate, std::size_t iWidth)
    : mText(iText),
      mGate(iGate),
      mColumns(iWidth == 0 ? gMost : std::clamp(iWidth, gLeast + gFrame, gMost + gFrame) - gFrame)
{
}

Place Excerpts::FindPlace(std::size_t iPosition)
{
    if (iPosition < mPosition)
    {
        mPosition = 0;
        mPlace = {};
    }
    for (; mPosition < iPosition; ++mPosition)
    {
        const bool lIsLineEnd = mText[mPosition] == L'\n';
        mPlace = lIsLineEnd ? Place{mPlace.mLine + 1, 1} : Place{mPlace.mLine, mPlace.mColumn + 1};
    }
    return mPlace;
}

bool Excerpts::IsHidden(std::size_t iPosition)
{
    return mGate.GetOpening() == Gate::Opening::Nothing || hFindPart(iPosition) != nullptr;
}

std::string Excerpts::ShowName(std::size_t iPosition, std::size_t iLength, std::size_t iLongest)
{
    if (IsHidden(iPosition))
    {
        return gHidden;
    }
    const auto lPart =
        std::lower_bound(mParts->begin(), mParts->end(), iPosition,
                         [](const TextPart& iPart, std::size_t iValue) { return iPart.mStart < iValue; });
    const bool lIsWhole = lPart == mParts->end() || lPart->mStart >= iPosition + iLength;
    const std::size_t lShown = lIsWhole ? iLength : lPart->mStart - iPosition; // what is hidden of a name is its end
    return "'" + ShowValue(std::wstring_view(mText).substr(iPosition, lShown), iLongest) + (lIsWhole ? "" : gHidden) +
           "'";
}

std::string Excerpts::Make(std::size_t iPosition, std::size_t iLength, const Palette& iPalette, Style iStyle)
{
    if (mGate.GetOpening() == Gate::Opening::Nothing)
    {
        return "";
    }
    const TextPart* const lPart = hFindPart(iPosition);
    const std::size_t lAt = lPart != nullptr ? lPart->mStart : iPosition;
    const std::size_t lMostBehind = mColumns * gBehind / gMost;
    std::size_t lStart = lAt;
    for (std::size_t lColumns = 0; lStart > 0;)
    {
        const std::size_t lStep = hStepBack(lStart);
        lColumns += hCountColumns(lStep, lStart);
        if (lColumns > mColumns - lMostBehind || mText[lStart - 1] == L'\n')
        {
            break;
        }
        lStart = lStep;
    }
    std::size_t lStop = lAt;
    std::size_t lBehindAt = lAt;
    for (std::size_t lColumns = 0; lStop < mText.size();)
    {
        const std::size_t lStep = hStepOn(lStop);
        lColumns += hCountColumns(lStop, lStep);
        if (lColumns > lMostBehind || mText[lStop] == L'\n')
        {
            break;
        }
        lStop = lStep;
        lBehindAt = lBehindAt < iPosition + iLength ? lStop : lBehindAt;
    }
    const bool lIsCutBefore = lStart > 0 && mText[lStart - 1] != L'\n';
    const bool lIsCutBehind = lStop < mText.size() && mText[lStop] != L'\n';
    const std::wstring lBefore = (lIsCutBefore ? L"…" : L"") + hShow(lStart, lAt);
    const std::wstring lShownAt = hShow(lAt, lBehindAt);
    const std::wstring lBehind = hShow(lBehindAt, lStop) + (lIsCutBehind ? L"…" : L"");
    const std::string lCaret = "^" + std::string(std::max<std::size_t>(GetWidth(lShownAt), 1) - 1, '~');
    return "  " + ToUtf8(lBefore + lShownAt + lBehind) + "\n  " + std::string(GetWidth(lBefore), ' ') +
           iPalette.Paint(iStyle, lCaret) + "\n";
}

// The hidden part that a character belongs to, or null.
const TextPart* Excerpts::hFindPart(std::size_t iPosition)
{
    if (!mParts)
    {
        mParts = mGate.FindParts(mText);
    }
    const auto lPart = std::upper_bound(mParts->begin(), mParts->end(), iPosition,
                                        [](std::size_t iValue, const TextPart& iPart) { return iValue < iPart.mStop; });
    return lPart != mParts->end() && lPart->mStart <= iPosition ? &*lPart : nullptr;
}

// Over a character, or over a hidden part as a whole.
std::size_t Excerpts::hStepBack(std::size_t iPosition)
{
    const TextPart* const lPart = hFindPart(iPosition - 1);
    return lPart != nullptr ? lPart->mStart : iPosition - 1;
}

std::size_t Excerpts::hStepOn(std::size_t iPosition)
{
    const TextPart* const lPart = hFindPart(iPosition);
    return lPart != nullptr ? lPart->mStop : iPosition + 1;
}

// A mark without a column of its own counts, too: many of them are not shown.
std::size_t Excerpts::hCountColumns(std::size_t iStart, std::size_t iStop)
{
    return std::max<std::size_t>(GetWidth(hShow(iStart, iStop)), 1);
}

std::wstring Excerpts::hShow(std::size_t iStart, std::size_t iStop)
{
    std::wstring lShown;
    for (std::size_t lPlace = iStart; lPlace < iStop;)
    {
        const TextPart* const lHidden = hFindPart(lPlace);
        std::size_t lStop = lPlace;
        while (lHidden == nullptr && lStop < iStop && hFindPart(lStop) == nullptr)
        {
            ++lStop;
        }
        lShown += lHidden != nullptr ? std::wstring(gMask)
                                     : MakePrintable(std::wstring_view(mText).substr(lPlace, lStop - lPlace));
        lPlace = lHidden != nullptr ? lHidden->mStop : lStop;
    }
    return lShown;
}

} // namespace TalBaseTool
