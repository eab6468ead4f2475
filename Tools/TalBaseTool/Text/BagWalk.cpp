#include "Text/BagWalk.h"

namespace TalBaseTool
{

bool BagWalk::Next()
{
    if (mFrames.back().mNext == mFrames.back().mCount)
    {
        if (mFrames.size() == 1)
        {
            return false;
        }
        mStep = Step::Leave;
        mBag = std::move(mFrames.back().mBag);
        mFrames.pop_back();
        mName = hGetName(mFrames.back());
        return true;
    }
    Frame& lFrame = mFrames.back();
    const unsigned int lIndex = lFrame.mNext++;
    mName = hGetName(lFrame);
    mStep = lFrame.mBag->IsEmbedded(lIndex) ? Step::Enter : Step::Plain;
    if (mStep == Step::Enter)
    {
        mBag = lFrame.mBag->GetValuePropertyBag(lIndex);
        mFrames.push_back(Frame{mBag, 0, mBag->GetCount()});
    }
    return true;
}

Path BagWalk::GetPath() const
{
    Path lPath;
    for (std::size_t lIndex = 0; lIndex < GetDepth(); ++lIndex)
    {
        lPath.emplace_back(hGetName(mFrames[lIndex]).c_str());
    }
    lPath.emplace_back(mName.c_str());
    return lPath;
}

NameIndex::NameIndex(const QTalBase::PropertyBag& iBag)
{
    const unsigned int lCount = iBag.GetCount();
    for (unsigned int lIndex = 0; lIndex < lCount; ++lIndex)
    {
        mPositions.emplace(iBag.GetName(lIndex).c_str(), lIndex);
    }
}

unsigned int NameIndex::Find(const std::wstring& iName) const
{
    const auto lFound = mPositions.find(iName);
    return lFound != mPositions.end() ? lFound->second : gNone;
}

std::optional<Path> FindChange(const BagPtr& iBag, const BagPtr& iOther)
{
    BagWalk lLeft(iBag);
    BagWalk lRight(iOther);
    while (lLeft.Next())
    {
        const bool lIsSame = lRight.Next() && lLeft.GetStep() == lRight.GetStep() &&
                             std::wstring_view(lLeft.GetName()) == lRight.GetName() &&
                             (lLeft.GetStep() != Step::Plain ||
                              std::wstring_view(lLeft.GetValue()) == std::wstring_view(lRight.GetValue()));
        if (!lIsSame)
        {
            return lLeft.GetPath();
        }
    }
    return lRight.Next() ? std::make_optional(lRight.GetPath()) : std::nullopt;
}

} // namespace TalBaseTool
