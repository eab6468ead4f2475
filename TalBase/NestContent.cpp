#include "TalBase/PrivateSource/NestContent.h"

#include "TalBase/PrivateSource/BagState.h"

#include <algorithm>
#include <utility>

namespace QTalBase
{

void NestContent::Reserve(std::size_t iCount)
{
    mEntries.reserve(iCount);
}

void NestContent::Append(std::wstring_view iName, NestPtr&& iNest)
{
    mEntries.emplace_back(iName, std::move(iNest));
}

void NestContent::Remove(std::size_t iIndex) noexcept
{
    mEntries.erase(mEntries.begin() + static_cast<std::ptrdiff_t>(iIndex));
}

void NestContent::Swap(std::size_t iLeft, std::size_t iRight) noexcept
{
    std::swap(mEntries[iLeft], mEntries[iRight]);
}

// An entry without a nest is a killed one; its name stays, so that the others keep their positions.
void NestContent::Kill(std::size_t iIndex) noexcept
{
    mEntries[iIndex].mNest = nullptr;
}

void NestContent::Compact() noexcept
{
    mEntries.erase(std::remove_if(mEntries.begin(), mEntries.end(), [](const Entry& iEntry) { return !iEntry.mNest; }),
                   mEntries.end());
}

} // namespace QTalBase
