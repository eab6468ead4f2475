// A hash table from names to entry numbers, for operations that look many names up. It lives no longer than the
// operation. The hash is keyed with a secret of the process, so chosen names cannot be made to collide.
//
// The table does not keep the names: whoever asks says how to compare with entry n.

#ifndef TALBASE_PRIVATESOURCE_NAMETABLE_H
#define TALBASE_PRIVATESOURCE_NAMETABLE_H

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace QTalBase
{

class NameTable
{
public:
    static constexpr std::uint32_t gNone = 0xFFFFFFFF;

    // Makes room for so many names: NumberFor may be called so often. Throws std::bad_alloc.
    explicit NameTable(std::size_t iCount);

    // Returns where the number that stands for the name is or, while that is gNone, will be put by the caller;
    // iIsEqual(n) says whether entry n has the name.
    template <class IsEqual>
    std::uint32_t* NumberFor(std::wstring_view iName, const IsEqual& iIsEqual)
    {
        const std::uint64_t lHash = Hash(iName);
        const std::uint32_t lTag = static_cast<std::uint32_t>(lHash >> 32);
        std::size_t lSlot = static_cast<std::size_t>(lHash) & mMask;
        while (mSlots[lSlot].mNumber != gNone)
        {
            if (mSlots[lSlot].mTag == lTag && iIsEqual(mSlots[lSlot].mNumber))
            {
                return &mSlots[lSlot].mNumber;
            }
            lSlot = (lSlot + 1) & mMask;
        }
        mSlots[lSlot].mTag = lTag;
        return &mSlots[lSlot].mNumber;
    }

    // Returns the number that stands for the name, or gNone.
    template <class IsEqual>
    std::uint32_t Find(std::wstring_view iName, const IsEqual& iIsEqual) const
    {
        const std::uint64_t lHash = Hash(iName);
        const std::uint32_t lTag = static_cast<std::uint32_t>(lHash >> 32);
        for (std::size_t lSlot = static_cast<std::size_t>(lHash) & mMask; mSlots[lSlot].mNumber != gNone;
             lSlot = (lSlot + 1) & mMask)
        {
            if (mSlots[lSlot].mTag == lTag && iIsEqual(mSlots[lSlot].mNumber))
            {
                return mSlots[lSlot].mNumber;
            }
        }
        return gNone;
    }

    static std::uint64_t Hash(std::wstring_view iName) noexcept;

private:
    struct Slot
    {
        std::uint32_t mTag; // the hash's high half, compared before the name
        std::uint32_t mNumber;
    };

    std::vector<Slot> mSlots; // never full: a search ends at a free one
    std::size_t mMask;
};

} // namespace QTalBase

#endif
