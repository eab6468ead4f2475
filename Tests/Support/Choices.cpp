#include "Tests/Support/Choices.h"

#include <algorithm>
#include <cstring>

namespace Support
{

RandomChoices::RandomChoices(std::uint64_t iSeed) : mEngine(iSeed) {}

unsigned int RandomChoices::Below(unsigned int iLimit)
{
    return static_cast<unsigned int>(mEngine() % iLimit);
}

bool RandomChoices::NextStep()
{
    return true;
}

RecordChoices::RecordChoices(const std::uint8_t* ipBytes, std::size_t iSize) : mBytes(ipBytes), mLeft(iSize) {}

unsigned int RecordChoices::Below(unsigned int iLimit)
{
    if (mUsed < gDirect)
    {
        return mRecord[mUsed++] % iLimit;
    }
    mSeed = mSeed * 1664525U + 1013904223U;
    return (mSeed >> 16) % iLimit;
}

bool RecordChoices::NextStep()
{
    if (mLeft == 0)
    {
        return false;
    }
    const std::size_t lTaken = std::min(mLeft, gRecord);
    std::fill(mRecord, mRecord + gRecord, std::uint8_t{0});
    std::memcpy(mRecord, mBytes, lTaken);
    mBytes += lTaken;
    mLeft -= lTaken;
    mUsed = 0;
    mSeed = 0;
    for (std::size_t lIndex = gDirect; lIndex < gRecord; ++lIndex)
    {
        mSeed = mSeed << 8 | mRecord[lIndex];
    }
    return true;
}

} // namespace Support
