#include "QSynch/Initializer.h"

#include <gtest/gtest.h>

#include <memory>
#include <type_traits>

namespace
{

TEST(QSynchInitializer, NestedObjectsCount)
{
    const int lBefore = QSynch::Initializer::GetCount();
    {
        const QSynch::Initializer lOuter;
        EXPECT_EQ(lBefore + 1, QSynch::Initializer::GetCount());
        {
            const QSynch::Initializer lInner;
            EXPECT_EQ(lBefore + 2, QSynch::Initializer::GetCount());
        }
        EXPECT_EQ(lBefore + 1, QSynch::Initializer::GetCount());
    }
    EXPECT_EQ(lBefore, QSynch::Initializer::GetCount());
}

TEST(QSynchInitializer, DestroyedInAnyOrderTheLastOneTakesTheLibraryDown)
{
    auto lFirst = std::make_unique<QSynch::Initializer>();
    auto lSecond = std::make_unique<QSynch::Initializer>();
    lFirst.reset();
    EXPECT_EQ(1, QSynch::Initializer::GetCount());
    lSecond.reset();
    EXPECT_EQ(0, QSynch::Initializer::GetCount());
}

TEST(QSynchInitializer, HoldsNoDataAndCannotBeCopied)
{
    static_assert(std::is_empty_v<QSynch::Initializer>);
    static_assert(!std::is_copy_constructible_v<QSynch::Initializer>);
    static_assert(!std::is_copy_assignable_v<QSynch::Initializer>);
    EXPECT_EQ(0, QSynch::Initializer::GetCount());
}

} // namespace
