#include "QSynch/AtomicLong.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace
{

constinit QSynch::AtomicLong gStatic(41);

TEST(AtomicLong, StartsAtTheGivenValue)
{
    EXPECT_EQ(0, QSynch::AtomicLong(0).mCount.load());
    EXPECT_EQ(7, QSynch::AtomicLong(7).mCount.load());
    EXPECT_EQ(-3, QSynch::AtomicLong(-3).mCount.load());
    EXPECT_EQ(41, gStatic.mCount.load());
}

TEST(AtomicLong, IsFourLockFreeBytesThatCannotBeCopied)
{
    static_assert(sizeof(QSynch::AtomicLong) == 4);
    static_assert(!std::is_copy_constructible_v<QSynch::AtomicLong>);
    static_assert(!std::is_copy_assignable_v<QSynch::AtomicLong>);
    static_assert(!std::is_convertible_v<int, QSynch::AtomicLong>);
    static_assert(std::is_trivially_destructible_v<QSynch::AtomicLong>);
    EXPECT_TRUE(std::atomic<std::int32_t>::is_always_lock_free);
}

} // namespace
