// Looks many names up in one bag that does not change meanwhile: by the position where the name is expected, then, for
// a small bag, by a scan, then by a table. Finds the first entry of a name, as a scan from the front would.

#ifndef TALBASE_PRIVATESOURCE_BAGINDEX_H
#define TALBASE_PRIVATESOURCE_BAGINDEX_H

#include "TalBase/PrivateSource/BagState.h"
#include "TalBase/PrivateSource/NameTable.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

namespace QTalBase
{

class BagIndex
{
public:
    static constexpr std::size_t gNotFound = static_cast<std::size_t>(-1);

    explicit BagIndex(const BagState& iBag) noexcept : mBag(&iBag) {}

    // Return the index of the name's first entry among the plain properties or the nests, or gNotFound. iGuess: where
    // the name probably is. Throw std::bad_alloc.
    std::size_t FindValue(std::wstring_view iName, std::size_t iGuess = gNotFound)
    {
        return hFind(mBag->mValues, mValueTable, iName, iGuess);
    }

    std::size_t FindNest(std::wstring_view iName, std::size_t iGuess = gNotFound)
    {
        return hFind(mBag->mNests, mNestTable, iName, iGuess);
    }

private:
    using Table = std::unique_ptr<NameTable>;

    static constexpr std::size_t gSmall = 16; // up to here a scan beats a table

    template <class Content>
    std::size_t hFind(const Content& iContent, Table& oTable, std::wstring_view iName, std::size_t iGuess) const
    {
        const std::size_t lCount = iContent.GetCount();
        // A name that occurs once is where it is, whatever stands before it.
        if (!mBag->mMayRepeatNames && iGuess < lCount && AreEqualTexts(iContent.GetName(iGuess), iName))
        {
            return iGuess;
        }
        if (lCount <= gSmall)
        {
            const std::size_t lIndex = iContent.Find(iName);
            return lIndex < lCount ? lIndex : gNotFound;
        }
        if (!oTable)
        {
            oTable = hMakeTable(iContent);
        }
        const std::uint32_t lNumber =
            oTable->Find(iName, [&](std::uint32_t iIndex) { return AreEqualTexts(iContent.GetName(iIndex), iName); });
        return lNumber != NameTable::gNone ? lNumber : gNotFound;
    }

    template <class Content>
    static Table hMakeTable(const Content& iContent)
    {
        const std::size_t lCount = iContent.GetCount();
        auto lTable = std::make_unique<NameTable>(lCount);
        for (std::size_t lIndex = 0; lIndex < lCount; ++lIndex)
        {
            const std::wstring_view lName = iContent.GetName(lIndex);
            std::uint32_t* lNumber = lTable->NumberFor(
                lName, [&](std::uint32_t iIndex) { return std::wstring_view(iContent.GetName(iIndex)) == lName; });
            if (*lNumber == NameTable::gNone)
            {
                *lNumber = static_cast<std::uint32_t>(lIndex);
            }
        }
        return lTable;
    }

    const BagState* mBag;
    Table mValueTable; // each made when the first name is looked up in it
    Table mNestTable;
};

} // namespace QTalBase

#endif
