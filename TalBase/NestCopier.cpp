#include "TalBase/PrivateSource/NestCopier.h"

#include "TalBase/PrivateSource/Delimiters.h"

#include <utility>

namespace QTalBase
{

NestCopier::NestCopier(const SharedWString& iBegin, const SharedWString& iEnd)
    : mBegin(iBegin),
      mEnd(iEnd),
      mCanCopy(IsConstantPair(iBegin, iEnd) || CanHeaderCarry({iBegin.View(), iEnd.View()})),
      mRule(mBegin.View(), mEnd.View(), AreDefaultDelimiters({mBegin.View(), mEnd.View()}))
{
}

NestPtr NestCopier::CopyWritten(const BagState& iNest)
{
    return hCopy(iNest, true);
}

NestPtr NestCopier::CopyRewritten(const BagState& iNest)
{
    // Without a header, a text that begins with the header's first word would be taken to have one.
    const std::wstring_view lFirstName =
        iNest.mValues.GetCount() != 0 ? iNest.mValues.GetName(0) : iNest.mNests.GetName(0);
    return mRule.MayBeginLikeHeader(lFirstName) ? nullptr : hCopy(iNest, false);
}

// The copies on the way down stand in a list beside the walk; what was copied before something refused is let go.
NestPtr NestCopier::hCopy(const BagState& iNest, bool iIsWritten)
{
    NestPtr lCopy = mCanCopy ? hCopyPlain(iNest, iIsWritten) : nullptr;
    if (!lCopy)
    {
        return nullptr;
    }
    mCopies.assign(1, lCopy.get());
    const bool lIsCopied = mWalk.Over(
        iNest, [&](const BagState& iParent, std::size_t iIndex) { return hCopyNest(iParent, iIndex, iIsWritten); },
        [&](const BagState& iParent, std::size_t iIndex) { hFinishNest(iParent, iIndex); });
    return lIsCopied ? lCopy : nullptr;
}

// A copy of a bag without its nests, or null.
NestPtr NestCopier::hCopyPlain(const BagState& iBag, bool iIsWritten)
{
    const bool lIsOwnPair = iBag.mIsPairChecked && HasPair(iBag.mBegin, iBag.mEnd);
    if ((iIsWritten && !lIsOwnPair) || !mRule.IsKept(iBag.mValues))
    {
        return nullptr;
    }
    NestPtr lCopy = MakeNest(iBag.mName, mBegin, mEnd, iBag.GetRoom());
    lCopy->mValues.CopyFrom(iBag.mValues);
    lCopy->mNests.Reserve(iBag.mNests.GetCount());
    return lCopy;
}

// Returns false where the nest cannot be copied. Nothing is set by an empty one.
bool NestCopier::hCopyNest(const BagState& iParent, std::size_t iIndex, bool iIsWritten)
{
    const std::wstring_view lName = iParent.mNests.GetName(iIndex);
    const BagState& lNest = iParent.mNests.GetNest(iIndex);
    if (lNest.IsEmpty())
    {
        return mRule.IsNameKept(lName) && (!iIsWritten || HasPair(lNest.mBegin, lNest.mEnd));
    }
    NestPtr lCopy = mRule.IsNameKept(lName) ? hCopyPlain(lNest, iIsWritten) : nullptr;
    if (!lCopy)
    {
        return false;
    }
    BagState& lTarget = *mCopies.back();
    if (!lNest.mNests.IsEmpty())
    {
        mCopies.push_back(lCopy.get());
    }
    lTarget.mNests.Append(std::move(lCopy));
    return true;
}

// A nest in which nothing is left is set all the same where it lies in the copied nest itself; further in it is lost.
void NestCopier::hFinishNest(const BagState& iParent, std::size_t iIndex)
{
    if (iParent.mNests.GetNest(iIndex).mNests.IsEmpty())
    {
        return;
    }
    const bool lIsEmpty = mCopies.back()->IsEmpty();
    mCopies.pop_back();
    if (lIsEmpty && mCopies.size() > 1)
    {
        mCopies.back()->mNests.Remove(mCopies.back()->mNests.GetCount() - 1);
    }
}

} // namespace QTalBase
