#include "Fuzz/Support/AllocationLimit.h"

#include "Fuzz/Support/Check.h"

#include <cstdlib>
#include <malloc.h>
#include <new>
#include <string>

namespace
{

// What is freed under a limit may be older than it, so the sum may be negative.
thread_local bool gIsLimited = false;
thread_local std::ptrdiff_t gHeld = 0;
thread_local std::ptrdiff_t gMost = 0;

void* Allocate(std::size_t iSize)
{
    if (gIsLimited && (iSize > static_cast<std::size_t>(gMost) || gHeld + static_cast<std::ptrdiff_t>(iSize) > gMost))
    {
        gIsLimited = false;
        Fuzz::Fail(std::to_string(iSize) + " bytes are asked for beside the " + std::to_string(gHeld) +
                   " that are held; the limit is " + std::to_string(gMost));
    }
    void* const lMemory = std::malloc(iSize == 0 ? 1 : iSize);
    if (lMemory == nullptr)
    {
        throw std::bad_alloc();
    }
    gHeld += static_cast<std::ptrdiff_t>(malloc_usable_size(lMemory));
    return lMemory;
}

void* AllocateOrNull(std::size_t iSize) noexcept
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

void Free(void* ipMemory)
{
    gHeld -= static_cast<std::ptrdiff_t>(malloc_usable_size(ipMemory));
    std::free(ipMemory);
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

void* operator new(std::size_t iSize, const std::nothrow_t&) noexcept
{
    return AllocateOrNull(iSize);
}

void* operator new[](std::size_t iSize, const std::nothrow_t&) noexcept
{
    return AllocateOrNull(iSize);
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

void operator delete(void* ipMemory, const std::nothrow_t&) noexcept
{
    Free(ipMemory);
}

void operator delete[](void* ipMemory, const std::nothrow_t&) noexcept
{
    Free(ipMemory);
}

namespace Fuzz
{

AllocationLimit::AllocationLimit(std::size_t iBytes) : mWasLimited(gIsLimited), mHeldBefore(gHeld), mMostBefore(gMost)
{
    gHeld = 0;
    gMost = static_cast<std::ptrdiff_t>(iBytes);
    gIsLimited = true;
}

AllocationLimit::~AllocationLimit()
{
    gIsLimited = mWasLimited;
    gHeld += mHeldBefore;
    gMost = mMostBefore;
}

} // namespace Fuzz
