// The table that finds names, on a machine whose random source fails: its hash is then keyed by the clock and an
// address. This program's own getrandom takes the place of the system's, so it is a program of its own.

#include "TalBase/PrivateSource/NameTable.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <set>
#include <string>
#include <sys/random.h>
#include <vector>

using QTalBase::NameTable;

namespace
{

unsigned int gAsked = 0;
unsigned int gFlags = 0;

std::wstring NumberedName(std::size_t iNumber)
{
    return L"name " + std::to_wstring(iNumber);
}

} // namespace

// NOLINTNEXTLINE(readability-identifier-naming): the name of the system's own function
extern "C" ssize_t getrandom(void*, std::size_t, unsigned int iFlags)
{
    ++gAsked;
    gFlags = iFlags;
    errno = ENOSYS;
    return -1;
}

TEST(NameTable, WithoutARandomSourceHashesStillDiffer)
{
    std::set<std::uint64_t> lHashes;
    std::set<std::uint32_t> lTags;
    for (std::size_t lNumber = 0; lNumber < 1000; ++lNumber)
    {
        const std::uint64_t lHash = NameTable::Hash(NumberedName(lNumber));
        lHashes.insert(lHash);
        lTags.insert(static_cast<std::uint32_t>(lHash >> 32));
    }
    EXPECT_EQ(lHashes.size(), 1000U);
    EXPECT_GE(lTags.size(), 998U);
    EXPECT_EQ(gAsked, 1U);
    EXPECT_EQ(gFlags, static_cast<unsigned int>(GRND_NONBLOCK)) << "a starting machine may not be waited for";
}

TEST(NameTable, HashSeesEveryCharacterAndTheLength)
{
    for (std::size_t lLength = 1; lLength <= 13; ++lLength)
    {
        const std::wstring lName(lLength, L'a');
        std::set<std::uint64_t> lHashes{NameTable::Hash(lName), NameTable::Hash(lName + L'\0')};
        for (std::size_t lIndex = 0; lIndex < lLength; ++lIndex)
        {
            std::wstring lOther = lName;
            lOther[lIndex] = L'b';
            lHashes.insert(NameTable::Hash(lOther));
            lOther[lIndex] = L'\0';
            lHashes.insert(NameTable::Hash(lOther));
        }
        EXPECT_EQ(lHashes.size(), 2 + 2 * lLength) << lLength;
    }
}

TEST(NameTable, PlaceKeepsANumberForEachOfAsManyNamesAsItWasMadeFor)
{
    for (const std::size_t lCount : {1U, 6U, 7U, 8U, 100U, 1000U})
    {
        NameTable lTable(lCount);
        std::vector<std::wstring> lNames;
        for (std::size_t lNumber = 0; lNumber < lCount; ++lNumber)
        {
            lNames.push_back(NumberedName(lNumber));
        }
        for (std::uint32_t lNumber = 0; lNumber < lCount; ++lNumber)
        {
            const auto lIsEqual = [&](std::uint32_t iOther) { return lNames.at(iOther) == lNames[lNumber]; };
            EXPECT_EQ(lTable.Find(lNames[lNumber], lIsEqual), NameTable::gNone);
            std::uint32_t* lKept = lTable.NumberFor(lNames[lNumber], lIsEqual);
            EXPECT_EQ(*lKept, NameTable::gNone);
            *lKept = lNumber;
        }
        for (std::uint32_t lNumber = 0; lNumber < lCount; ++lNumber)
        {
            const auto lIsEqual = [&](std::uint32_t iOther) { return lNames.at(iOther) == lNames[lNumber]; };
            EXPECT_EQ(lTable.Find(lNames[lNumber], lIsEqual), lNumber);
            EXPECT_EQ(*lTable.NumberFor(lNames[lNumber], lIsEqual), lNumber);
        }
    }
}

TEST(NameTable, TheCallerSaysWhichNamesAreEqual)
{
    NameTable lTable(2);
    const auto lNever = [](std::uint32_t) { return false; };
    *lTable.NumberFor(L"a", lNever) = 7;
    std::uint32_t* lSecond = lTable.NumberFor(L"a", lNever);
    EXPECT_EQ(*lSecond, NameTable::gNone);
    *lSecond = 8;
    EXPECT_EQ(lTable.Find(L"a", lNever), NameTable::gNone);
    EXPECT_EQ(lTable.Find(L"a", [](std::uint32_t iNumber) { return iNumber == 8; }), 8U);
    EXPECT_EQ(lTable.Find(L"a", [](std::uint32_t iNumber) { return iNumber == 7; }), 7U);
}
