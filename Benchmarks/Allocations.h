// Counts what the program allocates. Linking Allocations.cpp replaces malloc and its kin.

#ifndef BENCHMARKS_ALLOCATIONS_H
#define BENCHMARKS_ALLOCATIONS_H

#include <cstdint>

namespace Bench
{

struct AllocationTotals
{
    std::uint64_t mAllocated; // bytes asked for since the program began
    std::uint64_t mHeld;      // bytes that blocks now held really take
    std::uint64_t mPeak;      // the most of these since the peak was last restarted
};

AllocationTotals GetAllocations() noexcept;

// Lets the peak begin anew at what is held now, and returns that state.
AllocationTotals RestartPeak() noexcept;

} // namespace Bench

#endif
