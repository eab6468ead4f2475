// A counter that is changed only by QSynch_AtomicIncrement and QSynch_AtomicDecrement (QBase/Atomic.h), from any thread.

#ifndef QSYNCH_ATOMICLONG_H
#define QSYNCH_ATOMICLONG_H

#include <atomic>
#include <cstdint>

namespace QSynch
{

class AtomicLong
{
public:
    constexpr explicit AtomicLong(int iValue) noexcept : mCount(iValue)
    {
    }

    AtomicLong(const AtomicLong&) = delete;
    AtomicLong& operator=(const AtomicLong&) = delete;

    // Public for the two operations in QBase/Atomic.h only.
    std::atomic<std::int32_t> mCount;
};

} // namespace QSynch

#endif
