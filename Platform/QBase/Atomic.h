// The atomic operations of the family. Each is one atomic instruction, never throws, and may be called from any thread.

#ifndef QBASE_ATOMIC_H
#define QBASE_ATOMIC_H

#include "QSynch/AtomicLong.h"

#include <cstdint>

// Stores a value into the word and returns the previous one, ordering all memory accesses around it.
inline std::int64_t QSynch_AtomicSet(volatile std::int64_t* ipTarget, std::int64_t iValue) noexcept
{
    return __atomic_exchange_n(ipTarget, iValue, __ATOMIC_SEQ_CST);
}

// Adds 1 and returns the new value. A new reference is always taken through an existing one, which orders the accesses.
inline std::int32_t QSynch_AtomicIncrement(QSynch::AtomicLong& iCounter) noexcept
{
    return iCounter.mCount.fetch_add(1, std::memory_order_relaxed) + 1;
}

// Takes 1 and returns the new value; whoever gets 0 sees all that was done through the other references.
inline std::int32_t QSynch_AtomicDecrement(QSynch::AtomicLong& iCounter) noexcept
{
    return iCounter.mCount.fetch_sub(1, std::memory_order_acq_rel) - 1;
}

#endif
