// Names with equal hashes. libstdc++ hashes a text eight bytes at a time (MurmurHash64A with a constant start): it
// scrambles each word in a way that can be undone, xors it into its state and multiplies the state by an odd number. So
// whatever the first word did to the state, there is a second word that brings it where we want it.

#include "Cases.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <functional>
#include <stdexcept>
#include <string_view>

namespace Bench
{

namespace
{

constexpr std::uint64_t gFactor = 0xC6A4A7935BD1E995U;
constexpr std::uint64_t gStart = 0xC70F6907U;
constexpr std::uint64_t gNameBytes = 16; // two words of two characters each

// Newton's iteration doubles the number of right bits each time, and an odd number is its own inverse in three.
constexpr std::uint64_t Invert(std::uint64_t iOdd)
{
    std::uint64_t lInverse = iOdd;
    for (int lStep = 0; lStep < 5; ++lStep)
    {
        lInverse *= 2 - iOdd * lInverse;
    }
    return lInverse;
}

static_assert(Invert(gFactor) * gFactor == 1);

constexpr std::uint64_t Unscramble(std::uint64_t iScrambled)
{
    const std::uint64_t lMixed = iScrambled * Invert(gFactor);
    return (lMixed ^ (lMixed >> 47)) * Invert(gFactor);
}

std::wstring MakeName(std::uint64_t iFirstScrambled)
{
    constexpr std::uint64_t lWanted = 1;
    const std::uint64_t lState = ((gStart ^ (gNameBytes * gFactor)) ^ iFirstScrambled) * gFactor;
    const std::uint64_t lWords[] = {Unscramble(iFirstScrambled), Unscramble(lState ^ lWanted)};
    static_assert(sizeof(lWords) == gNameBytes);
    std::wstring lName(gNameBytes / sizeof(wchar_t), L' ');
    std::memcpy(lName.data(), lWords, gNameBytes);
    return lName;
}

} // namespace

std::vector<std::wstring> MakeCollidingNames(std::size_t iCount)
{
    const std::wstring_view lUnwanted(L"\0*+", 3); // a terminator, and what delimiters are made of
    std::vector<std::wstring> lNames;
    for (std::uint64_t lWord = 1; lNames.size() < iCount; ++lWord)
    {
        std::wstring lName = MakeName(lWord * gFactor);
        if (lName.find_first_of(lUnwanted) == std::wstring::npos)
        {
            lNames.push_back(std::move(lName));
        }
    }
#if defined(__GLIBCXX__) // with another standard library they are names like any others
    const std::hash<std::wstring> lHash;
    if (std::any_of(lNames.begin(), lNames.end(), [&](const auto& iName) { return lHash(iName) != lHash(lNames[0]); }))
    {
        throw std::runtime_error("the names were meant to collide");
    }
#endif
    return lNames;
}

} // namespace Bench
