#include "TalBase/PrivateSource/BagIndex.h"

namespace QTalBase
{

namespace
{

const std::size_t gSmall = 16; // up to here a scan beats a table

} // namespace

std::size_t BagIndex::FindValue(std::wstring_view iName, std::size_t iGuess)
{
    const ValueContent& lContent = mBag->mValueContent;
    // A name that occurs once is where it is, whatever stands before it.
    if (!mBag->hMayRepeatNames() && iGuess < lContent.GetCount() && AreEqualTexts(lContent.GetName(iGuess), iName))
    {
        return iGuess;
    }
    if (lContent.GetCount() <= gSmall)
    {
        const std::size_t lIndex = lContent.Find(iName);
        return lIndex < lContent.GetCount() ? lIndex : gNotFound;
    }
    if (!mValueTable)
    {
        mValueTable = hMakeTable(true);
    }
    const std::uint32_t lNumber =
        mValueTable->Find(iName, [&](std::uint32_t iIndex) { return AreEqualTexts(lContent.GetName(iIndex), iName); });
    return lNumber != NameTable::gNone ? lNumber : gNotFound;
}

std::size_t BagIndex::FindEmbedded(std::wstring_view iName, std::size_t iGuess)
{
    const auto& lContent = mBag->mEmbeddedContent;
    if (!mBag->hMayRepeatNames() && iGuess < lContent.size() && AreEqualTexts(lContent[iGuess].first, iName))
    {
        return iGuess;
    }
    if (lContent.size() <= gSmall)
    {
        const std::size_t lIndex = mBag->hFindEmbedded(iName);
        return lIndex < lContent.size() ? lIndex : gNotFound;
    }
    if (!mEmbeddedTable)
    {
        mEmbeddedTable = hMakeTable(false);
    }
    const std::uint32_t lNumber =
        mEmbeddedTable->Find(iName, [&](std::uint32_t iIndex) { return AreEqualTexts(lContent[iIndex].first, iName); });
    return lNumber != NameTable::gNone ? lNumber : gNotFound;
}

std::unique_ptr<NameTable> BagIndex::hMakeTable(bool iOfValues) const
{
    const std::size_t lCount = iOfValues ? mBag->mValueContent.GetCount() : mBag->mEmbeddedContent.size();
    const auto lName = [&](std::size_t iIndex) -> std::wstring_view {
        return iOfValues ? mBag->mValueContent.GetName(iIndex)
                         : std::wstring_view(mBag->mEmbeddedContent[iIndex].first);
    };
    auto lTable = std::make_unique<NameTable>(lCount);
    for (std::size_t lIndex = 0; lIndex < lCount; ++lIndex)
    {
        const std::wstring_view lThis = lName(lIndex);
        std::uint32_t* lNumber = lTable->Place(lThis, [&](std::uint32_t iNumber) { return lName(iNumber) == lThis; });
        if (*lNumber == NameTable::gNone)
        {
            *lNumber = static_cast<std::uint32_t>(lIndex);
        }
    }
    return lTable;
}

} // namespace QTalBase
