// The atomic operations of the family. Each is one atomic instruction in the caller's own code, never throws, and may
// be called from any thread. They are functions of the base library although their counter is a class of the
// synchronisation library; neither needs the other's library file for them.

#ifndef QBASE_ATOMIC_H
#define QBASE_ATOMIC_H

#include "QSynch/AtomicLong.h"

#include <cstdint>

// Stores iValue into the word at opTarget and returns the word's previous value. Everything written before the call is
// seen by whoever reads this value with the same operation, and nothing moves across the call in either direction, so
// that a word can serve as a spin lock: taken by storing a mark, held when the previous value is not the mark, given
// back by storing 0. opTarget may not be null.
inline std::int64_t QSynch_AtomicSet(volatile std::int64_t* opTarget, std::int64_t iValue) noexcept
{
    return __atomic_exchange_n(opTarget, iValue, __ATOMIC_SEQ_CST);
}

// Adds 1 to the counter and returns its new value. Orders no other memory access: whoever takes a reference holds
// one already, or has the object to itself.
inline std::int32_t QSynch_AtomicIncrement(QSynch::AtomicLong& oCounter) noexcept
{
    return oCounter.mCount.fetch_add(1, std::memory_order_relaxed) + 1;
}

// Takes 1 from the counter and returns its new value, which may be negative. Whoever gets 0 sees all that other threads
// did before their own decrements, and so may destroy what was counted.
inline std::int32_t QSynch_AtomicDecrement(QSynch::AtomicLong& oCounter) noexcept
{
    return oCounter.mCount.fetch_sub(1, std::memory_order_acq_rel) - 1;
}

#endif
