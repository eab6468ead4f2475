#include "Tests/Support/FailingNew.h"

#include <atomic>
#include <cstdlib>
#include <malloc.h>
#include <new>

// The thread sanitizer's own operators are linked firmly into each program. Nothing is counted there; what is lost or
// freed twice it sees itself, and tests that let allocations fail are not for it.
#if defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define TESTS_SUPPORT_OPERATORS_TAKEN
#endif
#elif defined(__SANITIZE_THREAD__)
#define TESTS_SUPPORT_OPERATORS_TAKEN
#endif

namespace
{

const std::size_t gNever = static_cast<std::size_t>(-1);

std::atomic<std::size_t> gMade{0};
std::atomic<std::size_t> gLive{0};
std::atomic<std::size_t> gLargest{0};
std::atomic<std::size_t> gHeld{0};
std::atomic<std::size_t> gPeak{0};
std::atomic<std::size_t> gSuccessesLeft{gNever};
std::atomic<std::size_t> gFailed{0};
std::atomic<bool> gIsForGood{false};

#ifndef TESTS_SUPPORT_OPERATORS_TAKEN

// More than any machine has is refused here: a sanitizer would end the program over it.
const std::size_t gMost = std::size_t{1} << 36;

bool MustFail()
{
    const std::size_t lLeft = gSuccessesLeft;
    if (lLeft == gNever)
    {
        return false;
    }
    if (lLeft > 0)
    {
        gSuccessesLeft = lLeft - 1;
        return false;
    }
    gSuccessesLeft = gIsForGood ? 0 : gNever;
    ++gFailed;
    return true;
}

void RaiseTo(std::atomic<std::size_t>& oMost, std::size_t iValue)
{
    std::size_t lMost = oMost;
    while (iValue > lMost && !oMost.compare_exchange_weak(lMost, iValue))
    {
    }
}

void* Allocate(std::size_t iSize)
{
    RaiseTo(gLargest, iSize);
    void* const lMemory = MustFail() || iSize > gMost ? nullptr : std::malloc(iSize == 0 ? 1 : iSize);
    if (lMemory == nullptr)
    {
        throw std::bad_alloc();
    }
    ++gMade;
    ++gLive;
    RaiseTo(gPeak, gHeld += ::malloc_usable_size(lMemory));
    return lMemory;
}

void Free(void* ipMemory)
{
    if (ipMemory != nullptr)
    {
        --gLive;
        gHeld -= ::malloc_usable_size(ipMemory);
        std::free(ipMemory);
    }
}

#endif

} // namespace

#ifndef TESTS_SUPPORT_OPERATORS_TAKEN

void* operator new(std::size_t iSize)
{
    return Allocate(iSize);
}

// By default this is the one above; a sanitizer's own is not.
void* operator new[](std::size_t iSize)
{
    return Allocate(iSize);
}

// The same for the two that answer null.
void* operator new(std::size_t iSize, const std::nothrow_t&) noexcept
{
    try
    {
        return Allocate(iSize);
    }
    catch (const std::bad_alloc&)
    {
        return nullptr;
    }
}

void* operator new[](std::size_t iSize, const std::nothrow_t& iNothrow) noexcept
{
    return operator new(iSize, iNothrow);
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

#endif

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

std::size_t BytesHeld()
{
    return gHeld;
}

std::size_t PeakBytesHeld()
{
    return gPeak;
}

void RestartPeak()
{
    gPeak = gHeld.load();
}

void FailAfter(std::size_t iSuccesses, Shortage iShortage)
{
    gFailed = 0;
    gIsForGood = iShortage == Shortage::FromThenOn;
    gSuccessesLeft = iSuccesses;
}

std::size_t StopFailing()
{
    gSuccessesLeft = gNever;
    return gFailed;
}

} // namespace Support
