#include "TalBase/PrivateSource/NestCopier.h"

#include "TalBase/PrivateSource/Delimiters.h"

namespace QTalBase
{

NestCopier::NestCopier(const SharedWString& iBegin, const SharedWString& iEnd)
    : mBegin(iBegin),
      mEnd(iEnd),
      mCanCopy(IsConstantPair(iBegin, iEnd) || CanHeaderCarry({iBegin.View(), iEnd.View()})),
      mRule(mBegin.View(), mEnd.View(), AreDefaultDelimiters({mBegin.View(), mEnd.View()}))
{
}

QBase::SmartPtrI<PropertyBagImpl> NestCopier::CopyWritten(const PropertyBagImpl& iNest)
{
    return hCopy(iNest, true);
}

QBase::SmartPtrI<PropertyBagImpl> NestCopier::CopyRewritten(const PropertyBagImpl& iNest)
{
    // Without a header, a text that begins with the header's first word would be taken to have one.
    const std::wstring_view lFirstName =
        iNest.mValueContent.GetCount() != 0 ? iNest.mValueContent.GetName(0) : iNest.mEmbeddedContent[0].first;
    return mRule.MayBeginLikeHeader(lFirstName) ? nullptr : hCopy(iNest, false);
}

QBase::SmartPtrI<PropertyBagImpl> NestCopier::hCopy(const PropertyBagImpl& iNest, bool iIsWritten)
{
    QBase::SmartPtrI<PropertyBagImpl> lCopy = mCanCopy ? hCopyPlain(iNest, iIsWritten) : nullptr;
    if (!lCopy)
    {
        return nullptr;
    }
    mLevels.assign(1, Level{&iNest, lCopy.get(), 0});
    while (!mLevels.empty())
    {
        if (mLevels.back().mNextNest == mLevels.back().mFrom->mEmbeddedContent.size())
        {
            hFinishLevel();
        }
        else if (!hCopyNextNest(iIsWritten))
        {
            return nullptr;
        }
    }
    return lCopy;
}

// A copy of a bag without its nests, or null.
QBase::SmartPtrI<PropertyBagImpl> NestCopier::hCopyPlain(const PropertyBagImpl& iBag, bool iIsWritten)
{
    const bool lIsOwnPair = iBag.mAreDelimitersValid && HasPair(iBag.mBeginDelimiter, iBag.mEndDelimiter);
    if ((iIsWritten && !lIsOwnPair) || !mRule.IsKept(iBag.mValueContent))
    {
        return nullptr;
    }
    QBase::SmartPtrI<PropertyBagImpl> lCopy = PropertyBagImpl::hMake(mBegin, mEnd);
    lCopy->mValueContent = iBag.mValueContent;
    lCopy->mEmbeddedContent.reserve(iBag.mEmbeddedContent.size());
    return lCopy;
}

// Returns false where the nest cannot be copied. Nothing is set by an empty one.
bool NestCopier::hCopyNextNest(bool iIsWritten)
{
    Level& lLevel = mLevels.back();
    const auto& [lName, lNest] = lLevel.mFrom->mEmbeddedContent[lLevel.mNextNest++];
    if (lNest->hIsEmpty())
    {
        return mRule.IsNameKept(lName) && (!iIsWritten || HasPair(lNest->mBeginDelimiter, lNest->mEndDelimiter));
    }
    QBase::SmartPtrI<PropertyBagImpl> lCopy = mRule.IsNameKept(lName) ? hCopyPlain(*lNest, iIsWritten) : nullptr;
    if (!lCopy)
    {
        return false;
    }
    lLevel.mTo->mEmbeddedContent.emplace_back(lName, lCopy);
    if (!lNest->mEmbeddedContent.empty())
    {
        mLevels.push_back(Level{lNest.get(), lCopy.get(), 0});
    }
    return true;
}

// A nest in which nothing is left is set all the same where it lies in the copied nest itself; further in it is lost.
void NestCopier::hFinishLevel()
{
    const bool lIsEmpty = mLevels.back().mTo->hIsEmpty();
    mLevels.pop_back();
    if (lIsEmpty && mLevels.size() > 1)
    {
        mLevels.back().mTo->mEmbeddedContent.pop_back();
    }
}

} // namespace QTalBase
