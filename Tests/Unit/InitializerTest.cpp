#include "TalBase/Initializer.h"

#include "QLog/Initializer.h"
#include "QSynch/Initializer.h"

#include "Tests/Support/ModuleHolder.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>

using QTalBase::Initializer;
using namespace Support;

namespace
{

// A client's static object, which starts the library before main, and what the library looked like right after.
std::optional<Initializer> gClient(std::in_place);
const HolderFields gBeforeMain = ReadHolder();

class InitializerTest : public testing::Test
{
protected:
    void SetUp() override
    {
        gClient.reset();
        ASSERT_EQ(ReadHolder(), (HolderFields{0, 0, nullptr}));
    }

    void TearDown() override
    {
        EXPECT_EQ(ReadHolder(), (HolderFields{0, 0, nullptr}));
    }
};

} // namespace

TEST_F(InitializerTest, StaticObjectStartsTheLibraryBeforeMain)
{
    EXPECT_EQ(gBeforeMain.mLock, 0);
    EXPECT_EQ(gBeforeMain.mCount, 1);
    EXPECT_NE(gBeforeMain.mModule, nullptr);
}

TEST_F(InitializerTest, FirstCreatesAndLastDeletes)
{
    auto lFirst = std::make_unique<Initializer>();
    const HolderFields lStarted = ReadHolder();
    EXPECT_EQ(lStarted.mLock, 0);
    EXPECT_EQ(lStarted.mCount, 1);
    ASSERT_NE(lStarted.mModule, nullptr);
    auto lSecond = std::make_unique<Initializer>();
    EXPECT_EQ(ReadHolder(), (HolderFields{0, 2, lStarted.mModule}));
    lFirst.reset();
    EXPECT_EQ(ReadHolder(), (HolderFields{0, 1, lStarted.mModule}));
    lSecond.reset();
    EXPECT_EQ(ReadHolder(), (HolderFields{0, 0, nullptr}));
}

TEST_F(InitializerTest, BringsTheOtherLibrariesUpAndDown)
{
    EXPECT_EQ(QSynch::Initializer::GetCount(), 0);
    EXPECT_EQ(QLog::Initializer::GetCount(), 0);
    {
        const Initializer lFirst;
        const Initializer lSecond;
        EXPECT_EQ(QSynch::Initializer::GetCount(), 1);
        EXPECT_EQ(QLog::Initializer::GetCount(), 1);
    }
    EXPECT_EQ(QSynch::Initializer::GetCount(), 0);
    EXPECT_EQ(QLog::Initializer::GetCount(), 0);
}

TEST_F(InitializerTest, StartsAgainAfterAStop)
{
    for (int lRound = 0; lRound < 3; ++lRound)
    {
        const Initializer lInitializer;
        EXPECT_EQ(ReadHolder().mCount, 1);
        EXPECT_NE(ReadHolder().mModule, nullptr);
    }
}
