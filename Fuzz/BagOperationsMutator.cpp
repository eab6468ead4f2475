// Changes sequences of steps as sequences: steps are inserted, removed, repeated and moved whole, which leaves all
// others what they are. Two sequences are crossed at the borders of steps.

#include "Tests/Support/Choices.h"

#include <algorithm>
#include <cstring>
#include <random>
#include <vector>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* opBytes, std::size_t iSize, std::size_t iMaxSize);

namespace
{

using Bytes = std::vector<std::uint8_t>;
using Random = std::minstd_rand;

const std::size_t gRecord = Support::RecordChoices::gRecord;

std::size_t Below(Random& iRandom, std::size_t iLimit)
{
    return iRandom() % iLimit;
}

// The place where a step begins, or the end.
std::size_t Border(Random& iRandom, const Bytes& iBytes)
{
    const std::size_t lSteps = (iBytes.size() - 1) / gRecord;
    return 1 + gRecord * Below(iRandom, lSteps + 1);
}

Bytes Cut(const Bytes& iBytes, std::size_t iStart, std::size_t iStop)
{
    return Bytes(iBytes.begin() + static_cast<std::ptrdiff_t>(iStart),
                 iBytes.begin() + static_cast<std::ptrdiff_t>(iStop));
}

void Insert(Bytes& oBytes, std::size_t iPlace, const Bytes& iPiece)
{
    oBytes.insert(oBytes.begin() + static_cast<std::ptrdiff_t>(iPlace), iPiece.begin(), iPiece.end());
}

Bytes RandomStep(Random& iRandom)
{
    Bytes lStep(gRecord);
    std::generate(lStep.begin(), lStep.end(), [&] { return static_cast<std::uint8_t>(iRandom() >> 8); });
    return lStep;
}

void MutateSteps(Random& iRandom, Bytes& oBytes)
{
    const std::size_t lOne = Border(iRandom, oBytes);
    const std::size_t lOther = Border(iRandom, oBytes);
    const std::size_t lStart = std::min(lOne, lOther);
    const std::size_t lStop = std::min(std::max(lOne, lOther), lStart + 4 * gRecord);
    const Bytes lPiece = Cut(oBytes, lStart, lStop);
    switch (Below(iRandom, 5))
    {
    case 0:
        oBytes.erase(oBytes.begin() + static_cast<std::ptrdiff_t>(lStart),
                     oBytes.begin() + static_cast<std::ptrdiff_t>(lStop));
        break;
    case 1:
        Insert(oBytes, lStop, lPiece);
        break;
    case 2:
        Insert(oBytes, Border(iRandom, oBytes), lPiece);
        break;
    default:
        Insert(oBytes, lOne, RandomStep(iRandom));
        break;
    }
}

std::size_t Store(const Bytes& iBytes, std::uint8_t* opBytes, std::size_t iMaxSize)
{
    const std::size_t lSize = std::min(iBytes.size(), iMaxSize);
    std::memcpy(opBytes, iBytes.data(), lSize);
    return lSize;
}

} // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* opBytes, std::size_t iSize, std::size_t iMaxSize,
                                               unsigned int iSeed)
{
    Random lRandom(iSeed);
    if (iSize == 0 || Below(lRandom, 3) == 0)
    {
        return LLVMFuzzerMutate(opBytes, iSize, iMaxSize);
    }
    Bytes lBytes(opBytes, opBytes + iSize);
    if (Below(lRandom, 2) == 0 && iSize > gRecord)
    {
        // Choices of one step.
        const std::size_t lPlace = std::min(Border(lRandom, lBytes), iSize - gRecord);
        LLVMFuzzerMutate(lBytes.data() + lPlace, gRecord, gRecord);
        return Store(lBytes, opBytes, iMaxSize);
    }
    MutateSteps(lRandom, lBytes);
    return Store(lBytes, opBytes, iMaxSize);
}

extern "C" std::size_t LLVMFuzzerCustomCrossOver(const std::uint8_t* ipOne, std::size_t iOneSize,
                                                 const std::uint8_t* ipOther, std::size_t iOtherSize,
                                                 std::uint8_t* opBytes, std::size_t iMaxSize, unsigned int iSeed)
{
    if (iOneSize == 0 || iOtherSize == 0)
    {
        return 0;
    }
    Random lRandom(iSeed);
    const Bytes lOne(ipOne, ipOne + iOneSize);
    const Bytes lOther(ipOther, ipOther + iOtherSize);
    Bytes lCrossed = Cut(lOne, 0, Border(lRandom, lOne));
    Insert(lCrossed, lCrossed.size(), Cut(lOther, Border(lRandom, lOther), lOther.size()));
    return Store(lCrossed, opBytes, iMaxSize);
}
