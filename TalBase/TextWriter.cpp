#include "TalBase/PrivateSource/TextWriter.h"

#include "TalBase/PrivateSource/TextPrimitives.h"

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

void TextWriter::CheckDelimiters(const PropertyBagImpl& iBag)
{
    if (!iBag.mAreDelimitersValid || !iBag.mEmbeddedContent.empty())
    {
        TextWriter(iBag).hMeasure(true);
    }
}

DelimiterPair TextWriter::hPairOf(const PropertyBagImpl& iBag) const noexcept
{
    return {mBegin != nullptr ? mBeginView : iBag.mBeginDelimiter.View(),
            mEnd != nullptr ? mEndView : iBag.mEndDelimiter.View()};
}

// A pair that is known to be allowed, or that the bag around it was just found to have, is not checked again: a stream
// can bring a hundred thousand nests that share a pair of a million characters.
void TextWriter::hCheck(const PropertyBagImpl& iBag, const PropertyBagImpl* ipParent) const
{
    if (mBegin == nullptr && mEnd == nullptr && iBag.mAreDelimitersValid)
    {
        return;
    }
    if (ipParent != nullptr && (mBegin != nullptr || iBag.mBeginDelimiter.IsSame(ipParent->mBeginDelimiter)) &&
        (mEnd != nullptr || iBag.mEndDelimiter.IsSame(ipParent->mEndDelimiter)))
    {
        return;
    }
    CheckValidityOfDelimiters(hPairOf(iBag));
}

// The names, values and delimiters of the bag itself; its nests' contents not counted.
std::size_t TextWriter::hMeasureBag(const PropertyBagImpl& iBag) const
{
    const DelimiterPair lPair = hPairOf(iBag);
    const std::size_t lCount = iBag.mValueContent.GetCount() + iBag.mEmbeddedContent.size();
    std::size_t lLength = iBag.mValueContent.GetTextLength() + lCount * (lPair.mBegin.size() + lPair.mEnd.size());
    for (const auto& lEntry : iBag.mEmbeddedContent)
    {
        lLength += lEntry.first.GetLength();
    }
    if (&iBag == &mBag && !mWithSensitiveInfo)
    {
        for (std::size_t lIndex = 0; lIndex < iBag.mValueContent.GetCount(); ++lIndex)
        {
            const std::wstring_view lName = iBag.mValueContent.GetName(lIndex);
            lLength -= PropertyBagImpl::IsSensitiveProperty(lName)
                           ? lName.size() + lPair.mBegin.size() + iBag.mValueContent.GetValue(lIndex).size() +
                                 lPair.mEnd.size()
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
    mLevels.clear();
    mLevels.push_back(Level{&mBag, 0});
    while (!mLevels.empty())
    {
        Level& lLevel = mLevels.back();
        if (lLevel.mNextNest == lLevel.mBag->mEmbeddedContent.size())
        {
            mLevels.pop_back();
            continue;
        }
        const PropertyBagImpl& lNest = *lLevel.mBag->mEmbeddedContent[lLevel.mNextNest++].second;
        hCheck(lNest, lLevel.mBag);
        lLength += hMeasureBag(lNest);
        if (!lNest.mEmbeddedContent.empty())
        {
            mLevels.push_back(Level{&lNest, 0});
        }
    }
    return lLength;
}

wchar_t* TextWriter::hWritePlain(const PropertyBagImpl& iBag, wchar_t* opTarget) const
{
    const DelimiterPair lPair = hPairOf(iBag);
    const bool lMayLeaveOut = &iBag == &mBag && !mWithSensitiveInfo;
    const std::size_t lCount = iBag.mValueContent.GetCount();
    for (std::size_t lIndex = 0; lIndex < lCount; ++lIndex)
    {
        const std::wstring_view lName = iBag.mValueContent.GetName(lIndex);
        if (lMayLeaveOut && PropertyBagImpl::IsSensitiveProperty(lName))
        {
            continue;
        }
        opTarget = CopyText(lName, opTarget);
        opTarget = CopyText(lPair.mBegin, opTarget);
        opTarget = CopyText(iBag.mValueContent.GetValue(lIndex), opTarget);
        opTarget = CopyText(lPair.mEnd, opTarget);
    }
    return opTarget;
}

// Allocates nothing that measuring has not allocated already.
void TextWriter::hWrite(bool iWithMetadata, wchar_t* opTarget)
{
    const DelimiterPair lPair = hPairOf(mBag);
    if (iWithMetadata)
    {
        opTarget = CopyText(gHeaderEndWord, opTarget);
        opTarget = CopyText(lPair.mEnd, opTarget);
        opTarget = CopyText(gHeaderBeginWord, opTarget);
        opTarget = CopyText(lPair.mBegin, opTarget);
        opTarget = CopyText(lPair.mEnd, opTarget);
    }
    opTarget = hWritePlain(mBag, opTarget);
    mLevels.push_back(Level{&mBag, 0});
    while (true)
    {
        Level& lLevel = mLevels.back();
        if (lLevel.mNextNest == lLevel.mBag->mEmbeddedContent.size())
        {
            mLevels.pop_back();
            if (mLevels.empty())
            {
                return;
            }
            opTarget = CopyText(hPairOf(*mLevels.back().mBag).mEnd, opTarget);
            continue;
        }
        const auto& lEntry = lLevel.mBag->mEmbeddedContent[lLevel.mNextNest++];
        const DelimiterPair lLevelPair = hPairOf(*lLevel.mBag);
        opTarget = CopyText(lEntry.first, opTarget);
        opTarget = CopyText(lLevelPair.mBegin, opTarget);
        opTarget = hWritePlain(*lEntry.second, opTarget);
        if (lEntry.second->mEmbeddedContent.empty())
        {
            opTarget = CopyText(lLevelPair.mEnd, opTarget);
        }
        else
        {
            mLevels.push_back(Level{lEntry.second.get(), 0});
        }
    }
}

} // namespace QTalBase
