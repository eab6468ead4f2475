#include "Tests/Support/FailingNew.h"

#include <atomic>
#include <cstdlib>

namespace
{

const std::size_t gNever = static_cast<std::size_t>(-1);

std::atomic<std::size_t> gMade{0};
std::atomic<std::size_t> gLive{0};
std::atomic<std::size_t> gLargest{0};
std::atomic<std::size_t> gSuccessesLeft{gNever};

bool MustFail()
{
    const std::size_t lLeft = gSuccessesLeft;
    if (lLeft == gNever)
    {
        return false;
    }
    gSuccessesLeft = lLeft == 0 ? gNever : lLeft - 1;
    return lLeft == 0;
}

void* Allocate(std::size_t iSize)
{
    void* const lMemory = MustFail() ? nullptr : std::malloc(iSize == 0 ? 1 : iSize);
    if (lMemory == nullptr)
    {
        throw std::bad_alloc();
    }
    ++gMade;
    ++gLive;
    if (iSize > gLargest)
    {
        gLargest = iSize;
    }
    return lMemory;
}

void Free(void* ipMemory)
{
    if (ipMemory != nullptr)
    {
        --gLive;
        std::free(ipMemory);
    }
}

} // namespace

void* operator new(std::size_t iSize)
{
    return Allocate(iSize);
}

void* operator new[](std::size_t iSize)
{
    return Allocate(iSize);
}

void operator delete(void* ipMemory) noexcept
{
    Free(ipMemory);
}

void operator delete[](void* ipMemory) noexcept
{
    Free(ipMemory);
}

void operator delete(void* ipMemory, std::size_t) noexcept
{
    Free(ipMemory);
}

void operator delete[](void* ipMemory, std::size_t) noexcept
{
    Free(ipMemory);
}

namespace Support
{

std::size_t AllocationsMade()
{
    return gMade;
}

std::size_t AllocationsLive()
{
    return gLive;
}

std::size_t LargestAllocation()
{
    return gLargest;
}

void ForgetLargest()
{
    gLargest = 0;
}

void FailAfter(std::size_t iSuccesses)
{
    gSuccessesLeft = iSuccesses;
}

void StopFailing()
{
    gSuccessesLeft = gNever;
}

} // namespace Support
