#ifndef QBASE_ATOMIC_H
#define QBASE_ATOMIC_H
#include "QSynch/AtomicLong.h"
#include <cstdint>
inline std::int64_t QSynch_AtomicSet(volatile std::int64_t* opTarget, std::int64_t iValue) noexcept
{
    return __atomic_exchange_n(opTarget, iValue, __ATOMIC_SEQ_CST);
}
inline std::int32_t QSynch_AtomicIncrement(QSynch::AtomicLong& oCounter) noexcept
{
    return oCounter.mCount.fetch_add(1, std::memory_order_relaxed) + 1;
}
inline std::int32_t QSynch_AtomicDecrement(QSynch::AtomicLong& oCounter) noexcept
{
    return oCounter.mCount.fetch_sub(1, std::memory_order_acq_rel) - 1;
}
#endif
