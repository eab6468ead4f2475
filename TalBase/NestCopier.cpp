#include "TalBase/PrivateSource/NestCopier.h"

#include "TalBase/PrivateSource/Delimiters.h"

#include <algorithm>

namespace QTalBase
{

namespace
{

const std::size_t gBeginFollows = 0;
const std::size_t gEndFollows = 1;

} // namespace

RunGuard::RunGuard(std::wstring_view iBegin, std::wstring_view iEnd) : mDelimiters{Delimiter(iBegin), Delimiter(iEnd)}
{
    for (Delimiter& lDelimiter : mDelimiters)
    {
        lDelimiter.mSearcher.Prepare();
    }
    for (Delimiter& lDelimiter : mDelimiters)
    {
        hFindWhereItGoesOn(lDelimiter, mDelimiters[gBeginFollows], lDelimiter.mGoesOn[gBeginFollows]);
        hFindWhereItGoesOn(lDelimiter, mDelimiters[gEndFollows], lDelimiter.mGoesOn[gEndFollows]);
    }
}

// What is left of the delimiter has to begin the follower. So its ends are looked for that do; they are the longest one
// and its borders.
void RunGuard::hFindWhereItGoesOn(Delimiter& oDelimiter, Delimiter& oFollower, std::vector<bool>& oGoesOn)
{
    const std::wstring_view lText = oDelimiter.mText;
    oGoesOn.resize(lText.size(), false);
    std::size_t lMatched = 0;
    for (std::size_t lIndex = &oDelimiter == &oFollower ? 1 : 0; lIndex < lText.size(); ++lIndex)
    {
        lMatched = oFollower.mSearcher.Step(lMatched, lText[lIndex]);
    }
    for (; lMatched != 0; lMatched = oFollower.mSearcher.GetBorder(lMatched))
    {
        oGoesOn[lText.size() - lMatched] = true;
    }
}

bool RunGuard::IsKept(std::wstring_view iRun, std::size_t iFollower)
{
    for (Delimiter& lDelimiter : mDelimiters)
    {
        if (lDelimiter.mSearcher.IsIn(iRun))
        {
            return false;
        }
        std::size_t lMatched = 0;
        for (const wchar_t lCharacter : iRun.substr(iRun.size() - std::min(iRun.size(), lDelimiter.mText.size() - 1)))
        {
            lMatched = lDelimiter.mSearcher.Step(lMatched, lCharacter);
        }
        for (; lMatched != 0; lMatched = lDelimiter.mSearcher.GetBorder(lMatched))
        {
            if (lDelimiter.mGoesOn[iFollower][lMatched])
            {
                return false;
            }
        }
    }
    return true;
}

NestCopier::NestCopier(const SharedWString& iBegin, const SharedWString& iEnd)
    : mBegin(iBegin),
      mEnd(iEnd),
      mIsDefaultPair(AreDefaultDelimiters({iBegin.View(), iEnd.View()})),
      mCanCopy(IsConstantPair(iBegin, iEnd) || CanHeaderCarry({iBegin.View(), iEnd.View()}))
{
}

QBase::SmartPtrI<PropertyBagImpl> NestCopier::CopyWritten(const PropertyBagImpl& iNest)
{
    return hCopy(iNest, true);
}

QBase::SmartPtrI<PropertyBagImpl> NestCopier::CopyRewritten(const PropertyBagImpl& iNest)
{
    return hMayBeginLikeHeader(iNest) ? nullptr : hCopy(iNest, false);
}

// Whether a text without a header may be taken for one with a header, by the name that it begins with.
bool NestCopier::hMayBeginLikeHeader(const PropertyBagImpl& iNest)
{
    const std::wstring_view lName =
        iNest.mValueContent.GetCount() != 0 ? iNest.mValueContent.GetName(0) : iNest.mEmbeddedContent[0].first;
    return gHeaderEndWord.substr(0, lName.size()) == lName.substr(0, gHeaderEndWord.size());
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
    if ((iIsWritten && !lIsOwnPair) || !hIsKept(iBag.mValueContent))
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
        return hIsKept(lName, gBeginFollows) && (!iIsWritten || HasPair(lNest->mBeginDelimiter, lNest->mEndDelimiter));
    }
    QBase::SmartPtrI<PropertyBagImpl> lCopy = hIsKept(lName, gBeginFollows) ? hCopyPlain(*lNest, iIsWritten) : nullptr;
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

bool NestCopier::hIsKept(const ValueContent& iContent)
{
    const bool lIsUnsuspicious = !iContent.MayHold(mBegin.View()[0]) && !iContent.MayHold(mEnd.View()[0]) &&
                                 (!mIsDefaultPair || (!iContent.MayHold(L'*') && !iContent.MayHold(L'+')));
    for (std::size_t lIndex = 0; lIndex < iContent.GetCount(); ++lIndex)
    {
        const std::wstring_view lName = iContent.GetName(lIndex);
        const std::wstring_view lValue = iContent.GetValue(lIndex);
        if (lName.empty())
        {
            return false;
        }
        if (!lIsUnsuspicious && (!hIsKept(lName, gBeginFollows) || !hIsKept(lValue, gEndFollows) ||
                                 (mIsDefaultPair && CountEscapable(lValue) != 0)))
        {
            return false;
        }
    }
    return true;
}

bool NestCopier::hIsKept(std::wstring_view iRun, std::size_t iFollower)
{
    if (!Holds(iRun, mBegin.View()[0]) && !Holds(iRun, mEnd.View()[0]))
    {
        return !iRun.empty();
    }
    if (!mGuard)
    {
        mGuard.emplace(mBegin.View(), mEnd.View());
    }
    return mGuard->IsKept(iRun, iFollower);
}

} // namespace QTalBase
