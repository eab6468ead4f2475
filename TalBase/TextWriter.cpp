#include "TalBase/PrivateSource/TextWriter.h"

#include "TalBase/PrivateSource/TextPrimitives.h"
#include "TalBase/SensitiveNames.h"

#include <memory>

namespace QTalBase
{

TextWriter& TextWriter::With(const wchar_t* ipBegin, const wchar_t* ipEnd) noexcept
{
    mBegin = ipBegin;
    mEnd = ipEnd;
    mBeginView = ipBegin != nullptr ? std::wstring_view(ipBegin) : std::wstring_view();
    mEndView = ipEnd != nullptr ? std::wstring_view(ipEnd) : std::wstring_view();
    return *this;
}

TextWriter& TextWriter::WithoutSensitiveInfo() noexcept
{
    mWithSensitiveInfo = false;
    return *this;
}

// Measured first, which checks every pair and may throw; writing then cannot fail, and the text is never moved.
QBase::ReturnWString TextWriter::Write(bool iWithMetadata)
{
    const std::size_t lLength = hMeasure(iWithMetadata);
    std::unique_ptr<wchar_t[]> lText(new wchar_t[lLength + 1]);
    hWrite(iWithMetadata, lText.get());
    lText[lLength] = L'\0';
    return {std::move(lText), lLength};
}

std::wstring TextWriter::WriteToString(bool iWithMetadata)
{
    std::wstring lText(hMeasure(iWithMetadata), L'\0');
    hWrite(iWithMetadata, lText.data());
    return lText;
}

// A bag with an accepted pair and no nests renders without failing, so nothing needs to be measured.
void TextWriter::CheckDelimiters(const BagState& iBag)
{
    if (!iBag.mIsPairChecked || !iBag.mNests.IsEmpty())
    {
        TextWriter(iBag).hMeasure(true);
    }
}

DelimiterPair TextWriter::hPairOf(const BagState& iBag) const noexcept
{
    return {mBegin != nullptr ? mBeginView : iBag.mBegin.View(), mEnd != nullptr ? mEndView : iBag.mEnd.View()};
}

// A pair that is known to be allowed, or that the bag around it was just found to have, is not checked again: a stream
// can bring a hundred thousand nests that share a pair of a million characters.
void TextWriter::hCheck(const BagState& iBag, const BagState* ipParent) const
{
    if (mBegin == nullptr && mEnd == nullptr && iBag.mIsPairChecked)
    {
        return;
    }
    if (ipParent != nullptr && (mBegin != nullptr || iBag.mBegin.IsSame(ipParent->mBegin)) &&
        (mEnd != nullptr || iBag.mEnd.IsSame(ipParent->mEnd)))
    {
        return;
    }
    CheckValidityOfDelimiters(hPairOf(iBag));
}

// The names, values and delimiters of the bag itself; its nests' contents not counted.
std::size_t TextWriter::hMeasureBag(const BagState& iBag) const
{
    const DelimiterPair lPair = hPairOf(iBag);
    std::size_t lLength = iBag.mValues.GetTextLength() + iBag.GetCount() * (lPair.mBegin.size() + lPair.mEnd.size());
    const std::size_t lNestCount = iBag.mNests.GetCount();
    for (std::size_t lIndex = 0; lIndex < lNestCount; ++lIndex)
    {
        lLength += iBag.mNests.GetName(lIndex).size();
    }
    if (&iBag == &mBag && !mWithSensitiveInfo)
    {
        for (std::size_t lIndex = 0; lIndex < iBag.mValues.GetCount(); ++lIndex)
        {
            const std::wstring_view lName = iBag.mValues.GetName(lIndex);
            lLength -= IsSensitiveName(lName) ? lName.size() + lPair.mBegin.size() +
                                                    iBag.mValues.GetValue(lIndex).size() + lPair.mEnd.size()
                                              : 0;
        }
    }
    return lLength;
}

std::size_t TextWriter::hMeasure(bool iWithMetadata)
{
    hCheck(mBag, nullptr);
    const DelimiterPair lPair = hPairOf(mBag);
    std::size_t lLength =
        iWithMetadata ? gHeaderEndWord.size() + gHeaderBeginWord.size() + lPair.mBegin.size() + 2 * lPair.mEnd.size()
                      : 0;
    lLength += hMeasureBag(mBag);
    mWalk.Over(mBag, [&](const BagState& iParent, std::size_t iIndex) {
        const BagState& lNest = iParent.mNests.GetNest(iIndex);
        hCheck(lNest, &iParent);
        lLength += hMeasureBag(lNest);
        return true;
    });
    return lLength;
}

// Only the outermost bag leaves out what is sensitive; its nests are written whole, which is the contract.
wchar_t* TextWriter::hWritePlain(const BagState& iBag, wchar_t* opTarget) const
{
    const DelimiterPair lPair = hPairOf(iBag);
    const bool lMayLeaveOut = &iBag == &mBag && !mWithSensitiveInfo;
    const std::size_t lCount = iBag.mValues.GetCount();
    for (std::size_t lIndex = 0; lIndex < lCount; ++lIndex)
    {
        const std::wstring_view lName = iBag.mValues.GetName(lIndex);
        if (lMayLeaveOut && IsSensitiveName(lName))
        {
            continue;
        }
        opTarget = CopyText(lName, opTarget);
        opTarget = CopyText(lPair.mBegin, opTarget);
        opTarget = CopyText(iBag.mValues.GetValue(lIndex), opTarget);
        opTarget = CopyText(lPair.mEnd, opTarget);
    }
    return opTarget;
}

// Allocates nothing that measuring has not allocated already.
void TextWriter::hWrite(bool iWithMetadata, wchar_t* opTarget)
{
    wchar_t* lTarget = opTarget;
    const DelimiterPair lPair = hPairOf(mBag);
    if (iWithMetadata)
    {
        lTarget = CopyText(gHeaderEndWord, lTarget);
        lTarget = CopyText(lPair.mEnd, lTarget);
        lTarget = CopyText(gHeaderBeginWord, lTarget);
        lTarget = CopyText(lPair.mBegin, lTarget);
        lTarget = CopyText(lPair.mEnd, lTarget);
    }
    lTarget = hWritePlain(mBag, lTarget);
    mWalk.Over(
        mBag,
        [&](const BagState& iParent, std::size_t iIndex) {
            lTarget = CopyText(iParent.mNests.GetName(iIndex), lTarget);
            lTarget = CopyText(hPairOf(iParent).mBegin, lTarget);
            lTarget = hWritePlain(iParent.mNests.GetNest(iIndex), lTarget);
            return true;
        },
        [&](const BagState& iParent, std::size_t) { lTarget = CopyText(hPairOf(iParent).mEnd, lTarget); });
}

QBase::ReturnWString ReadProperty(const BagState& iBag, std::wstring_view iName)
{
    const std::size_t lIndex = iBag.mValues.Find(iName);
    if (lIndex < iBag.mValues.GetCount())
    {
        const std::wstring_view lValue = iBag.mValues.GetValue(lIndex);
        if (TriggersUnescaping(lValue) && AreDefaultDelimiters(iBag.GetPair()))
        {
            return Unescaped(lValue);
        }
        return AsReturned(lValue);
    }
    const std::size_t lNest = iBag.mNests.Find(iName);
    return lNest < iBag.mNests.GetCount() ? TextWriter(iBag.mNests.GetNest(lNest)).Write(true)
                                          : QBase::ReturnWString(nullptr, 0);
}

bool IsSensitiveName(std::wstring_view iName)
{
    for (const wchar_t* const* lName = GetSensitiveNames(); *lName != nullptr; ++lName)
    {
        if (iName == *lName)
        {
            return true;
        }
    }
    return false;
}

} // namespace QTalBase
