#include "TalBase/PrivateSource/NestContent.h"

#include "TalBase/PrivateSource/BagState.h"

#include <algorithm>
#include <limits>
#include <new>
#include <stdexcept>

namespace QTalBase
{

NestContent::NestContent(NestContent&& iOther) noexcept
    : mNests(std::exchange(iOther.mNests, nullptr)),
      mCount(std::exchange(iOther.mCount, 0)),
      mCapacity(std::exchange(iOther.mCapacity, 0)),
      mIsLent(std::exchange(iOther.mIsLent, false))
{
}

NestContent& NestContent::operator=(NestContent iOther) noexcept
{
    std::swap(mNests, iOther.mNests);
    std::swap(mCount, iOther.mCount);
    std::swap(mCapacity, iOther.mCapacity);
    std::swap(mIsLent, iOther.mIsLent);
    return *this;
}

NestContent::~NestContent()
{
    for (std::size_t lIndex = 0; lIndex < mCount; ++lIndex)
    {
        Kill(lIndex);
    }
    if (!mIsLent)
    {
        ::operator delete(mNests);
    }
}

void NestContent::Lend(void* ipRoom, std::size_t iCount) noexcept
{
    mNests = static_cast<BagState**>(ipRoom);
    mCapacity = iCount;
    mIsLent = true;
}

void NestContent::Share(const NestContent& iOther)
{
    Reserve(iOther.mCount);
    for (std::size_t lIndex = 0; lIndex < iOther.mCount; ++lIndex)
    {
        Append(NestPtr(iOther.mNests[lIndex]));
    }
}

std::wstring_view NestContent::GetName(std::size_t iIndex) const noexcept
{
    return mNests[iIndex]->mName;
}

std::size_t NestContent::Find(std::wstring_view iName) const noexcept
{
    std::size_t lIndex = 0;
    while (lIndex < mCount && !AreEqualTexts(mNests[lIndex]->mName, iName))
    {
        ++lIndex;
    }
    return lIndex;
}

void NestContent::Reserve(std::size_t iCount)
{
    if (iCount <= mCapacity)
    {
        return;
    }
    if (iCount > std::numeric_limits<std::ptrdiff_t>::max() / SizeOf(1))
    {
        throw std::length_error("QTalBase::PropertyBag: too many nested bags");
    }
    NestContent lNew;
    lNew.mNests = static_cast<BagState**>(::operator new(SizeOf(iCount)));
    lNew.mCapacity = iCount;
    std::copy(mNests, mNests + mCount, lNew.mNests);
    lNew.mCount = std::exchange(mCount, 0);
    *this = std::move(lNew);
}

void NestContent::Append(NestPtr&& iNest)
{
    if (mCount == mCapacity)
    {
        Reserve(std::max<std::size_t>(4, 2 * mCount)); // doubling keeps the cost of growing linear
    }
    mNests[mCount++] = iNest.Detach();
}

void NestContent::Remove(std::size_t iIndex) noexcept
{
    Kill(iIndex);
    std::copy(mNests + iIndex + 1, mNests + mCount, mNests + iIndex);
    --mCount;
}

void NestContent::Kill(std::size_t iIndex) noexcept
{
    NestPtr lNest;
    lNest.Attach(Detach(iIndex));
}

void NestContent::Compact() noexcept
{
    mCount = static_cast<std::size_t>(std::remove(mNests, mNests + mCount, nullptr) - mNests);
}

} // namespace QTalBase
