#include "Allocations.h"

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <malloc.h>

// The C library's own functions under the names that it keeps for those who replace them.
// NOLINTBEGIN(readability-identifier-naming)
extern "C"
{
    void* __libc_malloc(std::size_t iSize);
    void* __libc_calloc(std::size_t iCount, std::size_t iSize);
    void* __libc_realloc(void* ipBlock, std::size_t iSize);
    void* __libc_memalign(std::size_t iAlignment, std::size_t iSize);
    void __libc_free(void* ipBlock);
}
// NOLINTEND(readability-identifier-naming)

namespace Bench
{

namespace
{

// One thread at a time runs what is measured; the counters are atomic for the threads' begin and end only.
std::atomic<std::uint64_t> gAllocated{0};
std::atomic<std::uint64_t> gHeld{0};
std::atomic<std::uint64_t> gPeak{0};

void* Count(void* ipBlock, std::size_t iSize) noexcept
{
    if (ipBlock != nullptr)
    {
        gAllocated += iSize;
        const std::uint64_t lHeld = gHeld += ::malloc_usable_size(ipBlock);
        if (lHeld > gPeak)
        {
            gPeak = lHeld;
        }
    }
    return ipBlock;
}

void Forget(void* ipBlock) noexcept
{
    if (ipBlock != nullptr)
    {
        gHeld -= ::malloc_usable_size(ipBlock);
    }
}

} // namespace

AllocationTotals GetAllocations() noexcept
{
    return {gAllocated, gHeld, gPeak};
}

AllocationTotals RestartPeak() noexcept
{
    gPeak = gHeld.load();
    return GetAllocations();
}

} // namespace Bench

extern "C"
{
    void* malloc(std::size_t iSize)
    {
        return Bench::Count(__libc_malloc(iSize), iSize);
    }

    void* calloc(std::size_t iCount, std::size_t iSize)
    {
        return Bench::Count(__libc_calloc(iCount, iSize), iCount * iSize);
    }

    void* realloc(void* ipBlock, std::size_t iSize)
    {
        const std::size_t lOldSize = ipBlock == nullptr ? 0 : ::malloc_usable_size(ipBlock);
        void* const lNew = __libc_realloc(ipBlock, iSize);
        if (lNew != nullptr)
        {
            Bench::gHeld -= lOldSize;
            Bench::Count(lNew, iSize);
        }
        return lNew;
    }

    void* memalign(std::size_t iAlignment, std::size_t iSize)
    {
        return Bench::Count(__libc_memalign(iAlignment, iSize), iSize);
    }

    void* aligned_alloc(std::size_t iAlignment, std::size_t iSize)
    {
        return memalign(iAlignment, iSize);
    }

    int posix_memalign(void** opBlock, std::size_t iAlignment, std::size_t iSize)
    {
        *opBlock = memalign(iAlignment, iSize);
        return *opBlock == nullptr ? ENOMEM : 0;
    }

    void free(void* ipBlock)
    {
        Bench::Forget(ipBlock);
        __libc_free(ipBlock);
    }
}
