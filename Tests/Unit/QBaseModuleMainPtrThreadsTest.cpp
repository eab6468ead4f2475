#include "QBase/ModuleMainPtr.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <stdexcept>
#include <thread>
#include <vector>

namespace
{

// Plain numbers on purpose: only the holder's lock keeps the threads apart, and a race detector sees where it does not.
struct Plain
{
    int mAlive = 0;
    int mMostAlive = 0;
    int mAttempts = 0;
    int mCreated = 0;
    int mDestroyed = 0;
    int mFailEvery = 0;
};

Plain gPlain;

class Module
{
public:
    Module()
    {
        std::this_thread::yield(); // now, with the lock held, let another thread try
        ++gPlain.mAttempts;
        if (gPlain.mFailEvery != 0 && gPlain.mAttempts % gPlain.mFailEvery == 0)
        {
            throw std::runtime_error("not now");
        }
        ++gPlain.mCreated;
        ++gPlain.mAlive;
        gPlain.mMostAlive = gPlain.mAlive > gPlain.mMostAlive ? gPlain.mAlive : gPlain.mMostAlive;
    }

    Module(const Module&) = delete;
    Module& operator=(const Module&) = delete;

    ~Module()
    {
        --gPlain.mAlive;
        ++gPlain.mDestroyed;
    }
};

using Holder = QBase::ModuleMainPtr<Module, Module>;

constinit Holder gHolder;

void RunInThreads(int iThreads, const std::function<void()>& iWork)
{
    std::atomic<bool> lGo{false};
    std::vector<std::thread> lThreads;
    for (int lIndex = 0; lIndex < iThreads; ++lIndex)
    {
        lThreads.emplace_back([&] {
            while (!lGo)
            {
                std::this_thread::yield();
            }
            iWork();
        });
    }
    lGo = true;
    for (std::thread& lThread : lThreads)
    {
        lThread.join();
    }
}

const int gThreads =
    static_cast<int>(std::max(8U, 2 * std::thread::hardware_concurrency())); // more than there are cores
const int gRounds = 2000;

TEST(ModuleMainPtrThreads, StormOfStartsAndStopsNeverHasTwoModulesOrNone)
{
    gPlain = Plain();
    std::atomic<int> lSeenDown{0};
    RunInThreads(gThreads, [&] {
        for (int lRound = 0; lRound < gRounds; ++lRound)
        {
            gHolder.Initialize();
            std::this_thread::yield();
            // Between the two calls the module is there, and nobody changes these numbers.
            lSeenDown += gPlain.mAlive == 1 ? 0 : 1;
            gHolder.Finalize();
        }
    });
    EXPECT_EQ(0, lSeenDown);
    EXPECT_EQ(0, gPlain.mAlive);
    EXPECT_EQ(1, gPlain.mMostAlive);
    EXPECT_GE(gPlain.mCreated, 1);
    EXPECT_EQ(gPlain.mCreated, gPlain.mDestroyed);
}

TEST(ModuleMainPtrThreads, OnlyTheFirstOfManyStartsCreates)
{
    gPlain = Plain();
    RunInThreads(gThreads, [] { gHolder.Initialize(); });
    EXPECT_EQ(1, gPlain.mCreated);
    EXPECT_EQ(1, gPlain.mAlive);
    RunInThreads(gThreads, [] { gHolder.Finalize(); });
    EXPECT_EQ(1, gPlain.mCreated);
    EXPECT_EQ(1, gPlain.mDestroyed);
}

// A module whose constructor waits until the test lets it go on.
std::atomic<bool> gIsBuilding{false};
std::atomic<bool> gMayGoOn{false};

class SlowModule
{
public:
    SlowModule()
    {
        gIsBuilding = true;
        while (!gMayGoOn)
        {
            std::this_thread::yield();
        }
    }
};

TEST(ModuleMainPtrThreads, StartDuringAnotherStartWaitsUntilTheModuleIsUp)
{
    static constinit QBase::ModuleMainPtr<SlowModule, SlowModule> lHolder;
    std::atomic<bool> lIsSecondUp{false};
    std::thread lFirst([] { lHolder.Initialize(); });
    while (!gIsBuilding)
    {
        std::this_thread::yield();
    }
    std::thread lSecond([&lIsSecondUp] {
        lHolder.Initialize();
        lIsSecondUp = true;
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(50)); // time enough to come back if it did not wait
    EXPECT_FALSE(lIsSecondUp);
    gMayGoOn = true;
    lFirst.join();
    lSecond.join();
    EXPECT_TRUE(lIsSecondUp);
    lHolder.Finalize();
    lHolder.Finalize();
}

TEST(ModuleMainPtrThreads, FailedStartsAreTheirCallersAlone)
{
    gPlain = Plain();
    gPlain.mFailEvery = 3;
    std::atomic<int> lFailed{0};
    std::atomic<int> lSeenDown{0};
    RunInThreads(gThreads, [&] {
        for (int lRound = 0; lRound < gRounds; ++lRound)
        {
            try
            {
                gHolder.Initialize();
            }
            catch (const std::runtime_error&)
            {
                ++lFailed;
                continue;
            }
            std::this_thread::yield();
            lSeenDown += gPlain.mAlive == 1 ? 0 : 1;
            gHolder.Finalize();
        }
    });
    EXPECT_EQ(gPlain.mAttempts, gPlain.mCreated + lFailed);
    EXPECT_EQ(gPlain.mAttempts / 3, lFailed);
    EXPECT_EQ(0, lSeenDown);
    EXPECT_EQ(0, gPlain.mAlive);
    EXPECT_EQ(1, gPlain.mMostAlive);
    EXPECT_EQ(gPlain.mCreated, gPlain.mDestroyed);
}

} // namespace
