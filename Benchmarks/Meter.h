// Measures one run of an operation: time, instructions, what it allocates, and the stack it takes. Allocations are
// counted in this program's malloc, which replaces the C library's, so they are seen wherever they come from.

#ifndef BENCHMARKS_METER_H
#define BENCHMARKS_METER_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>

namespace Bench
{

struct Measurement
{
    double mSeconds = 0;                        // of processor time
    std::optional<std::uint64_t> mInstructions; // where the machine counts them for us
    std::uint64_t mAllocatedBytes = 0;          // asked for in all
    std::uint64_t mPeakBytes = 0;               // held at once, above what was held before
    std::size_t mStackBytes = 0;                // used of the small stack; 0 on another one
};

// Runs an operation on this thread. Under callgrind, only the operation is counted, and the counts are then dumped.
Measurement MeasureHere(const std::function<void()>& iOperation);

// Runs an operation on a thread of its own with a SmallStack. What it throws passes on.
Measurement MeasureOnSmallStack(const std::function<void()>& iOperation);

} // namespace Bench

#endif
