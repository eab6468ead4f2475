// The counter behind every reference count: four bytes, changed only by QSynch_AtomicIncrement and
// QSynch_AtomicDecrement (QBase/Atomic.h), from any thread. It belongs to the object that holds it and cannot be
// copied: a copy of a counted object starts its own count.

#ifndef QSYNCH_ATOMICLONG_H
#define QSYNCH_ATOMICLONG_H

#include <atomic>
#include <cstdint>

namespace QSynch
{

class AtomicLong
{
public:
    // Starts at iValue; a static counter does so before any code runs.
    constexpr explicit AtomicLong(int iValue) noexcept : mCount(iValue) {}

    AtomicLong(const AtomicLong&) = delete;
    AtomicLong& operator=(const AtomicLong&) = delete;

    // Public for the two operations in QBase/Atomic.h, and for looking at a count in a test or a debugger.
    std::atomic<std::int32_t> mCount;
};

} // namespace QSynch

#endif
