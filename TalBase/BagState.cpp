#include "TalBase/PrivateSource/BagState.h"

#include "TalBase/PrivateSource/NameTable.h"
#include "TalBase/PrivateSource/NestWalk.h"
#include "TalBase/PropertyBag.h"

#include <cstdint>

namespace QTalBase
{

// A nest that dies hands its own nests to the list before it goes, so nothing is ever deleted from inside a deletion.
BagState::~BagState()
{
    BagState* lDying = nullptr;
    hLetNestsGo(lDying);
    while (lDying != nullptr)
    {
        BagState* lNest = lDying;
        lDying = lNest->mNextDying;
        lNest->hLetNestsGo(lDying);
        lNest->hDeleteObject();
    }
}

// Drops the references; nests that nobody else holds go onto the list.
void BagState::hLetNestsGo(BagState*& oDying) noexcept
{
    const std::size_t lCount = mNests.GetCount();
    for (std::size_t lIndex = 0; lIndex < lCount; ++lIndex)
    {
        BagState* lNest = mNests.Detach(lIndex);
        // The only reference cannot be taken again by anybody else, so it needs no atomic decrement.
        // Hardly ever true: another thread lets go of the nest between the look at its count and the decrement.
        if (lNest != nullptr && (lNest->mRefCount.mCount.load(std::memory_order_acquire) == 1 || lNest->DropRef()))
        {
            lNest->mNextDying = oDying;
            oDying = lNest;
        }
    }
}

void BagState::hDeleteObject() const noexcept
{
    delete mObject;
}

void BagState::SetPair(const SharedWString& iBegin, const SharedWString& iEnd) noexcept
{
    mBegin = iBegin;
    mEnd = iEnd;
    mIsPairChecked = true;
}

void BagState::CheckPair() const
{
    if (!mIsPairChecked)
    {
        CheckValidityOfDelimiters(GetPair());
    }
}

void BagState::AcceptPair()
{
    CheckPair();
    mIsPairChecked = true;
}

// Unescaped under the pair that BEGIN and END point to now, whatever the value was stored under.
std::wstring BagState::ReadValue(std::size_t iIndex) const
{
    const std::wstring_view lValue = mValues.GetValue(iIndex);
    return TriggersUnescaping(lValue) && AreDefaultDelimiters(GetPair()) ? Unescaped(lValue) : std::wstring(lValue);
}

void BagState::FindOutWhetherNamesRepeat()
{
    if (!mMayRepeatNames)
    {
        return;
    }
    const std::size_t lPlainCount = mValues.GetCount();
    const auto lNameOf = [&](std::size_t iNumber) -> std::wstring_view {
        return iNumber < lPlainCount ? mValues.GetName(iNumber)
                                     : std::wstring_view(mNests.GetName(iNumber - lPlainCount));
    };
    NameTable lTable(GetCount());
    mMayRepeatNames = false;
    for (std::size_t lNumber = 0; lNumber < GetCount() && !mMayRepeatNames; ++lNumber)
    {
        const std::wstring_view lName = lNameOf(lNumber);
        std::uint32_t* lFirst =
            lTable.NumberFor(lName, [&](std::size_t iOther) { return AreEqualTexts(lNameOf(iOther), lName); });
        mMayRepeatNames = *lFirst != NameTable::gNone;
        *lFirst = static_cast<std::uint32_t>(lNumber);
    }
}

bool BagState::HasInside(const BagState& iBag) const
{
    NestWalk<const BagState> lWalk;
    return !lWalk.Over(
        *this, [&](const BagState& iParent, std::size_t iIndex) { return &iParent.mNests.GetNest(iIndex) != &iBag; });
}

} // namespace QTalBase
