#include "Text/Excerpts.h"

#include "Text/Text.h"

#include <algorithm>

namespace TalBaseTool
{

namespace
{

constexpr std::size_t gBefore = 40; // characters of a line that are shown before a place, and at it and behind
constexpr std::size_t gBehind = 36;

} // namespace

Excerpts::Excerpts(const std::wstring& iText, const QTalBase::TextCheckResult& iResult,
                   std::optional<DelimiterTexts> iPair, bool iShowSecrets)
    : mText(iText), mResult(iResult), mPair(std::move(iPair)), mShowSecrets(iShowSecrets)
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

bool Excerpts::IsSecret(std::size_t iPosition)
{
    if (mShowSecrets)
    {
        return false;
    }
    if (!mSecrets)
    {
        mSecrets.emplace(mText, mResult, mPair);
    }
    return mSecrets->Has(iPosition);
}

std::string Excerpts::Make(std::size_t iPosition, std::size_t iLength, const Palette& iPalette, Style iStyle)
{
    const std::wstring_view lText = mText;
    const std::size_t lFirst = iPosition - std::min(iPosition, gBefore);
    const std::size_t lLineEnd = lText.substr(lFirst, iPosition - lFirst).rfind(L'\n');
    const std::size_t lStart = lLineEnd != std::wstring_view::npos ? lFirst + lLineEnd + 1 : lFirst;
    const std::size_t lStop =
        iPosition + std::min({lText.substr(iPosition, gBehind).find(L'\n'), lText.size() - iPosition, gBehind});
    const std::wstring lShown = hMasked(lStart, lStop);
    const std::wstring_view lView = lShown;
    const bool lIsCutBefore = lStart > 0 && lText[lStart - 1] != L'\n';
    const bool lIsCutBehind = lStop < lText.size() && lText[lStop] != L'\n';
    const std::wstring lBefore = (lIsCutBefore ? L"…" : L"") + MakePrintable(lView.substr(0, iPosition - lStart));
    const std::wstring lAt = MakePrintable(lView.substr(iPosition - lStart, iLength));
    const std::wstring lBehind =
        MakePrintable(lView.substr(std::min(lView.size(), iPosition - lStart + iLength))) + (lIsCutBehind ? L"…" : L"");
    const std::string lCaret = "^" + std::string(std::max<std::size_t>(GetWidth(lAt), 1) - 1, '~');
    return "  " + ToUtf8(lBefore + lAt + lBehind) + "\n  " + std::string(GetWidth(lBefore), ' ') +
           iPalette.Paint(iStyle, lCaret) + "\n";
}

std::wstring Excerpts::hMasked(std::size_t iStart, std::size_t iStop)
{
    std::wstring lPart = mText.substr(iStart, iStop - iStart);
    if (!mShowSecrets)
    {
        IsSecret(iStart); // looks for them
        mSecrets->Mask(iStart, lPart);
    }
    return lPart;
}

} // namespace TalBaseTool
