#ifndef QSYNCH_ATOMICLONG_H
#define QSYNCH_ATOMICLONG_H
#include <atomic>
#include <cstdint>
namespace QSynch
{
class AtomicLong
{
public:
    constexpr explicit AtomicLong(int iValue) noexcept : mCount(iValue) {}
    AtomicLong(const AtomicLong&) = delete;
    AtomicLong& operator=(const AtomicLong&) = delete;
    std::atomic<std::int32_t> mCount;
};
} // namespace QSynch
#endif
