#include "TalBase/PrivateSource/NameTable.h"

#include <chrono>
#include <cstring>
#include <sys/random.h>

namespace QTalBase
{

namespace
{

struct Secret
{
    std::uint64_t mStart;
    std::uint64_t mStep;
};

// Where the random source fails, the clock and an address still differ from run to run.
Secret MakeSecret() noexcept
{
    Secret lSecret{};
    if (::getrandom(&lSecret, sizeof(lSecret), GRND_NONBLOCK) != static_cast<ssize_t>(sizeof(lSecret)))
    {
        lSecret.mStart = static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
        lSecret.mStep = reinterpret_cast<std::uintptr_t>(&lSecret) * 0x9E3779B97F4A7C15U;
    }
    lSecret.mStep |= 1U;
    return lSecret;
}

// The halves of the product, folded: each bit of the result depends on all bits of both.
std::uint64_t Mix(std::uint64_t iLeft, std::uint64_t iRight) noexcept
{
    __extension__ using Wide = unsigned __int128;
    const Wide lProduct = static_cast<Wide>(iLeft) * iRight;
    return static_cast<std::uint64_t>(lProduct) ^ static_cast<std::uint64_t>(lProduct >> 64);
}

// Up to two characters, or none, as one number.
std::uint64_t Load(const wchar_t* ipText, std::size_t iCount) noexcept
{
    if (iCount < 2)
    {
        return iCount == 0 ? 0 : static_cast<std::uint32_t>(*ipText);
    }
    std::uint64_t lNumber = 0;
    std::memcpy(&lNumber, ipText, sizeof(lNumber));
    return lNumber;
}

// At most half of the slots are taken, so a search ends soon.
std::size_t SlotCount(std::size_t iCount)
{
    std::size_t lSlots = 16;
    while (lSlots < 2 * iCount + 2)
    {
        lSlots *= 2;
    }
    return lSlots;
}

} // namespace

NameTable::NameTable(std::size_t iCount) : mSlots(SlotCount(iCount), Slot{0, gNone}), mMask(mSlots.size() - 1) {}

std::uint64_t NameTable::Hash(std::wstring_view iName) noexcept
{
    static const Secret lSecret = MakeSecret();
    std::uint64_t lHash = lSecret.mStart;
    const wchar_t* lText = iName.data();
    std::size_t lLeft = iName.size();
    for (; lLeft > 4; lLeft -= 4, lText += 4)
    {
        lHash = Mix(Load(lText, 2) ^ lSecret.mStep, Load(lText + 2, 2) ^ lHash);
    }
    lHash = Mix(Load(lText, lLeft) ^ lSecret.mStep, Load(lText + 2, lLeft < 2 ? 0 : lLeft - 2) ^ lHash);
    return Mix(lHash ^ iName.size(), 0x9E3779B97F4A7C15U); // only here can no character cancel the length
}

} // namespace QTalBase
