#include "QSynch/Initializer.h"

#include "QBase/Atomic.h"

namespace QSynch
{

namespace
{

constinit QSynch::AtomicLong gCount(0); // counts from the first static object on

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

} // namespace QSynch
