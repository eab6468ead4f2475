#include "QLog/Initializer.h"

#include <gtest/gtest.h>

#include <memory>
#include <type_traits>

namespace
{

TEST(QLogInitializer, NestedObjectsCount)
{
    const int lBefore = QLog::Initializer::GetCount();
    {
        const QLog::Initializer lOuter;
        EXPECT_EQ(lBefore + 1, QLog::Initializer::GetCount());
        {
            const QLog::Initializer lInner;
            EXPECT_EQ(lBefore + 2, QLog::Initializer::GetCount());
        }
        EXPECT_EQ(lBefore + 1, QLog::Initializer::GetCount());
    }
    EXPECT_EQ(lBefore, QLog::Initializer::GetCount());
}

TEST(QLogInitializer, DestroyedInAnyOrderTheLastOneTakesTheLibraryDown)
{
    auto lFirst = std::make_unique<QLog::Initializer>();
    auto lSecond = std::make_unique<QLog::Initializer>();
    lFirst.reset();
    EXPECT_EQ(1, QLog::Initializer::GetCount());
    lSecond.reset();
    EXPECT_EQ(0, QLog::Initializer::GetCount());
}

TEST(QLogInitializer, HoldsNoDataAndCannotBeCopied)
{
    static_assert(std::is_empty_v<QLog::Initializer>);
    static_assert(!std::is_copy_constructible_v<QLog::Initializer>);
    static_assert(!std::is_copy_assignable_v<QLog::Initializer>);
    EXPECT_EQ(0, QLog::Initializer::GetCount());
}

} // namespace
