#include "QLog/Initializer.h"

#include "QBase/Atomic.h"

namespace QLog
{

namespace
{

constinit QSynch::AtomicLong gCount(0); // static objects of a client count before this library's own would be built

} // namespace

Initializer::Initializer()
{
    QSynch_AtomicIncrement(gCount);
}

Initializer::~Initializer()
{
    QSynch_AtomicDecrement(gCount);
}

int Initializer::GetCount() noexcept
{
    return gCount.mCount.load(std::memory_order_acquire);
}

} // namespace QLog
