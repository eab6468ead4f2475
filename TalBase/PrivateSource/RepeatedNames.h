// Of the properties of a bag's text that have one name, the last counts, whatever its kind: setting it removed those
// before it. So in "a++++1***b++++2***a++++k++++v******" the plain property a is replaced, by the nest.

#ifndef TALBASE_PRIVATESOURCE_REPEATEDNAMES_H
#define TALBASE_PRIVATESOURCE_REPEATEDNAMES_H

#include "TalBase/PrivateSource/NameTable.h"
#include "TalBase/PrivateSource/TextPrimitives.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string_view>
#include <type_traits>

namespace QTalBase
{

// A hash table for a handful of names, where one with an allocation and a secret would not pay: however the names are
// chosen, a look-up compares with gMostNames others at most.
class SmallNameTable
{
public:
    static constexpr std::size_t gMostNames = 64;

    // Returns the number that stands for the name, for the caller to change: gNone where the name is new.
    template <class IsEqual>
    std::uint8_t* NumberFor(std::wstring_view iName, const IsEqual& iIsEqual) noexcept
    {
        std::uint8_t* lNumber = mNumbers + hHash(iName);
        while (*lNumber != gNone && !iIsEqual(*lNumber))
        {
            lNumber = lNumber + 1 != mNumbers + sizeof(mNumbers) ? lNumber + 1 : mNumbers;
        }
        return lNumber;
    }

    static constexpr std::uint8_t gNone = 0xFF;

    SmallNameTable() noexcept
    {
        std::memset(mNumbers, gNone, sizeof(mNumbers));
    }

private:
    // From the length and the characters at both ends, where names differ. No name is empty.
    static unsigned int hHash(std::wstring_view iName) noexcept
    {
        std::uint64_t lHash = iName.size();
        if (iName.size() >= 2)
        {
            std::uint64_t lFirst = 0;
            std::uint64_t lLast = 0;
            std::memcpy(&lFirst, iName.data(), sizeof(lFirst));
            std::memcpy(&lLast, iName.data() + iName.size() - 2, sizeof(lLast));
            lHash += lFirst * 3 + lLast * 0x2545F4914F6CDD1DU;
        }
        else
        {
            lHash += static_cast<std::uint64_t>(iName[0]);
        }
        return static_cast<unsigned int>(lHash * 0x9E3779B97F4A7C15U >> 56);
    }

    std::uint8_t mNumbers[256];
};

// For so few names that comparing each with all others is less work than any table.
class NameList
{
public:
    static constexpr std::size_t gMostNames = 4;
    static constexpr std::uint8_t gNone = 0xFF;

    // As that of SmallNameTable.
    template <class IsEqual>
    std::uint8_t* NumberFor(std::wstring_view /*iName*/, const IsEqual& iIsEqual) noexcept
    {
        std::size_t lIndex = 0;
        while (lIndex < mCount && !iIsEqual(mNumbers[lIndex]))
        {
            ++lIndex;
        }
        mCount += lIndex == mCount ? 1 : 0;
        return mNumbers + lIndex;
    }

private:
    std::uint8_t mNumbers[gMostNames] = {gNone, gNone, gNone, gNone};
    std::size_t mCount = 0;
};

// With a table that is free: NameList or SmallNameTable for up to their most names, or a NameTable.
template <class Table, class NameOf, class Replace>
void FindReplacedWith(Table& oTable, std::size_t iCount, const NameOf& iNameOf, const Replace& iReplace)
{
    for (std::size_t lNumber = 0; lNumber < iCount; ++lNumber)
    {
        const std::wstring_view lName = iNameOf(lNumber);
        auto* lLast =
            oTable.NumberFor(lName, [&](std::size_t iOther) { return AreEqualTexts(iNameOf(iOther), lName); });
        using Number = std::remove_reference_t<decltype(*lLast)>;
        if (*lLast == Table::gNone)
        {
            *lLast = static_cast<Number>(lNumber);
        }
        else if (std::less<>()(iNameOf(*lLast).data(), lName.data()))
        {
            iReplace(std::size_t{*lLast});
            *lLast = static_cast<Number>(lNumber);
        }
        else
        {
            iReplace(lNumber);
        }
    }
}

// Calls iReplace(number) for each of iCount entries that is replaced; iNameOf(number) is an entry's name. All names are
// views of one text, so the one at the higher address was read later, in whatever order the entries are numbered.
// Throws std::bad_alloc.
template <class NameOf, class Replace>
void FindReplaced(std::size_t iCount, const NameOf& iNameOf, const Replace& iReplace)
{
    if (iCount > SmallNameTable::gMostNames)
    {
        NameTable lTable(iCount);
        FindReplacedWith(lTable, iCount, iNameOf, iReplace);
    }
    else if (iCount > NameList::gMostNames)
    {
        SmallNameTable lTable;
        FindReplacedWith(lTable, iCount, iNameOf, iReplace);
    }
    else if (iCount > 1)
    {
        NameList lTable;
        FindReplacedWith(lTable, iCount, iNameOf, iReplace);
    }
}

} // namespace QTalBase

#endif
