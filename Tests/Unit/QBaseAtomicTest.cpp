#include "QBase/Atomic.h"

#include <gtest/gtest.h>

#include <limits>
#include <type_traits>

namespace
{

TEST(Atomic, SetStoresAndReturnsThePreviousValue)
{
    std::int64_t lWord = 0;
    EXPECT_EQ(0, QSynch_AtomicSet(&lWord, 0x12345678));
    EXPECT_EQ(0x12345678, lWord);
    EXPECT_EQ(0x12345678, QSynch_AtomicSet(&lWord, 0));
    EXPECT_EQ(0, lWord);
}

TEST(Atomic, SetMovesAll64Bits)
{
    std::int64_t lWord = std::numeric_limits<std::int64_t>::min();
    EXPECT_EQ(std::numeric_limits<std::int64_t>::min(), QSynch_AtomicSet(&lWord, 0x0123456789ABCDEF));
    EXPECT_EQ(0x0123456789ABCDEF, QSynch_AtomicSet(&lWord, -1));
    EXPECT_EQ(-1, lWord);
}

TEST(Atomic, IncrementAndDecrementReturnTheNewValue)
{
    QSynch::AtomicLong lCounter(0);
    EXPECT_EQ(1, QSynch_AtomicIncrement(lCounter));
    EXPECT_EQ(2, QSynch_AtomicIncrement(lCounter));
    EXPECT_EQ(1, QSynch_AtomicDecrement(lCounter));
    EXPECT_EQ(0, QSynch_AtomicDecrement(lCounter));
}

TEST(Atomic, DecrementBelowZeroReturnsNegativeValues)
{
    QSynch::AtomicLong lCounter(0);
    EXPECT_EQ(-1, QSynch_AtomicDecrement(lCounter));
    EXPECT_EQ(-2, QSynch_AtomicDecrement(lCounter));
    EXPECT_EQ(-1, QSynch_AtomicIncrement(lCounter));
}

TEST(Atomic, NothingThrows)
{
    std::int64_t lWord = 0;
    QSynch::AtomicLong lCounter(0);
    static_assert(noexcept(QSynch_AtomicSet(&lWord, 1)));
    static_assert(noexcept(QSynch_AtomicIncrement(lCounter)));
    static_assert(noexcept(QSynch_AtomicDecrement(lCounter)));
    EXPECT_EQ(0, QSynch_AtomicSet(&lWord, 1));
}

} // namespace
