// How the library starts and stops, seen from the libraries that it brings up. This program defines the initialisers of
// the synchronisation and logging libraries and the router factory itself: its definitions take the place of those in
// the shared libraries, note when they are called, and fail when they are told to.

#include "TalBase/Initializer.h"

#include "QBase/Message.h"
#include "QLog/Initializer.h"
#include "QLog/Router.h"
#include "QSynch/Initializer.h"
#include "TalBase/ModuleMain.h"

#include "Tests/Support/ModuleHolder.h"
#include "Tests/Support/Together.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <mutex>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <typeinfo>
#include <utility>
#include <vector>

using QTalBase::Initializer;
using namespace Support;

namespace
{

using Events = std::vector<std::string>;

// What happened, in order. Function-local, because a static Initializer writes to it before main.
struct Journal
{
    std::mutex mMutex;
    Events mEvents;
    std::function<void()> mOnCreateRouter; // called in the factory before it returns; may throw
    std::atomic<int> mLiveRouters{0};
    std::atomic<int> mMostLiveRouters{0};
};

Journal& TheJournal()
{
    static Journal gJournal;
    return gJournal;
}

void Note(const std::string& iEvent)
{
    const std::lock_guard<std::mutex> lGuard(TheJournal().mMutex);
    TheJournal().mEvents.push_back(iEvent);
}

Events TakeEvents()
{
    const std::lock_guard<std::mutex> lGuard(TheJournal().mMutex);
    return std::exchange(TheJournal().mEvents, {});
}

class NotingRouter : public QLog::Router
{
public:
    NotingRouter()
    {
        const int lLive = ++TheJournal().mLiveRouters;
        if (lLive > TheJournal().mMostLiveRouters)
        {
            TheJournal().mMostLiveRouters = lLive;
        }
    }

    ~NotingRouter() override
    {
        Note("router dies");
        --TheJournal().mLiveRouters;
    }

    void AddRef() const noexcept override
    {
        ++mCount;
    }

    void Release() const noexcept override
    {
        if (--mCount == 0)
        {
            delete this;
        }
    }

    const char* GetModule() const noexcept override
    {
        return "";
    }

    const char* GetLevel() const noexcept override
    {
        return "";
    }

    int GetCategory() const noexcept override
    {
        return 0;
    }

private:
    mutable std::atomic<int> mCount{0};
};

const Events gStart = {"synchronisation up", "logging up", "CreateRouter(TalBase, Error, -3)"};
const Events gStop = {"router dies", "logging down", "synchronisation down"};

} // namespace

QSynch::Initializer::Initializer()
{
    Note("synchronisation up");
}

QSynch::Initializer::~Initializer()
{
    Note("synchronisation down");
}

QLog::Initializer::Initializer()
{
    Note("logging up");
}

QLog::Initializer::~Initializer()
{
    Note("logging down");
}

QBase::SmartPtrI<QLog::Router> QLog::CreateRouter(const char* ipModule, const char* ipLevel, int iCategory)
{
    Note(std::string("CreateRouter(") + ipModule + ", " + ipLevel + ", " + std::to_string(iCategory) + ")");
    if (TheJournal().mOnCreateRouter)
    {
        TheJournal().mOnCreateRouter();
    }
    return new NotingRouter;
}

namespace
{

// A client's static object, and what had happened when it was built.
std::optional<Initializer> gClient(std::in_place);
const Events gEventsBeforeMain = TakeEvents();

class ModuleStart : public testing::Test
{
protected:
    void SetUp() override
    {
        gClient.reset();
        TheJournal().mOnCreateRouter = nullptr;
        ASSERT_EQ(ReadHolder(), (HolderFields{0, 0, nullptr}));
        TakeEvents();
    }

    void TearDown() override
    {
        TheJournal().mOnCreateRouter = nullptr;
        EXPECT_EQ(ReadHolder(), (HolderFields{0, 0, nullptr}));
        EXPECT_EQ(TheJournal().mLiveRouters, 0);
    }
};

void ThrowMessage()
{
    QBase::Message lMessage;
    lMessage.SetDomainAndID(7, 42);
    lMessage.SetMessage(L"no router");
    throw QBase::ExceptionImpl<QBase::Message>(lMessage);
}

} // namespace

TEST_F(ModuleStart, StaticObjectOfAClientStartsEverythingBeforeMain)
{
    EXPECT_EQ(gEventsBeforeMain, gStart);
}

TEST_F(ModuleStart, StartsInOrderAndStopsInReverse)
{
    {
        const Initializer lInitializer;
        EXPECT_EQ(TakeEvents(), gStart);
        EXPECT_EQ(TheJournal().mLiveRouters, 1);
    }
    EXPECT_EQ(TakeEvents(), gStop);
}

TEST_F(ModuleStart, SecondStartOnlyCounts)
{
    std::optional<Initializer> lFirst(std::in_place);
    TakeEvents();
    std::optional<Initializer> lSecond(std::in_place);
    lFirst.reset();
    EXPECT_EQ(TakeEvents(), Events{});
    lSecond.reset();
    EXPECT_EQ(TakeEvents(), gStop);
}

TEST_F(ModuleStart, HolderIsLockedAndCountedWhileTheModuleIsBuilt)
{
    HolderFields lDuring = {};
    TheJournal().mOnCreateRouter = [&] { lDuring = ReadHolder(); };
    const Initializer lInitializer;
    EXPECT_EQ(lDuring, (HolderFields{0x12345678, 1, nullptr}));
    EXPECT_EQ(ReadHolder().mLock, 0);
}

TEST_F(ModuleStart, FailedStartTakesEverythingBack)
{
    TheJournal().mOnCreateRouter = &ThrowMessage;
    try
    {
        const Initializer lInitializer;
        FAIL() << "nothing thrown";
    }
    catch (const QBase::Message& lMessage)
    {
        EXPECT_STREQ(lMessage.GetMessage(), L"no router");
        EXPECT_EQ(lMessage.GetDomain(), 7);
        EXPECT_EQ(lMessage.GetID(), 42);
        EXPECT_EQ(typeid(lMessage), typeid(QBase::ExceptionImpl<QBase::Message>));
    }
    EXPECT_EQ(ReadHolder(), (HolderFields{0, 0, nullptr}));
    EXPECT_EQ(TakeEvents(), (Events{"synchronisation up", "logging up", "CreateRouter(TalBase, Error, -3)",
                                    "logging down", "synchronisation down"}));
}

TEST_F(ModuleStart, AnyExceptionPassesUnchanged)
{
    TheJournal().mOnCreateRouter = [] { throw std::runtime_error("of another family"); };
    EXPECT_THROW(Initializer(), std::runtime_error);
    TheJournal().mOnCreateRouter = [] { throw 42; };
    EXPECT_THROW(Initializer(), int);
    EXPECT_EQ(ReadHolder(), (HolderFields{0, 0, nullptr}));
}

TEST_F(ModuleStart, LaterStartTriesAgain)
{
    TheJournal().mOnCreateRouter = &ThrowMessage;
    EXPECT_THROW(Initializer(), QBase::Message);
    EXPECT_THROW(Initializer(), QBase::Message);
    TakeEvents();
    TheJournal().mOnCreateRouter = nullptr;
    const Initializer lInitializer;
    EXPECT_EQ(TakeEvents(), gStart);
    EXPECT_EQ(ReadHolder().mCount, 1);
    EXPECT_NE(ReadHolder().mModule, nullptr);
}

TEST_F(ModuleStart, StartFromBelowZeroCreatesNothing)
{
    QTalBase::gModuleMainBasePtr.Finalize();
    QTalBase::gModuleMainBasePtr.Initialize();
    EXPECT_EQ(TakeEvents(), Events{});
    EXPECT_EQ(ReadHolder(), (HolderFields{0, 0, nullptr}));
}

TEST_F(ModuleStart, SecondThreadWaitsUntilTheLibraryIsUp)
{
    std::atomic<bool> lInside{false};
    std::atomic<bool> lGoOn{false};
    std::atomic<bool> lSecondIsUp{false};
    TheJournal().mOnCreateRouter = [&] {
        lInside = true;
        while (!lGoOn)
        {
            std::this_thread::yield();
        }
    };
    std::atomic<bool> lStop{false};
    const auto lClient = [&](std::atomic<bool>* opIsUp) {
        const Initializer lInitializer;
        if (opIsUp != nullptr)
        {
            *opIsUp = true;
        }
        while (!lStop)
        {
            std::this_thread::yield();
        }
    };
    std::thread lFirst(lClient, nullptr);
    while (!lInside)
    {
        std::this_thread::yield();
    }
    std::thread lSecond(lClient, &lSecondIsUp);
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_FALSE(lSecondIsUp);
    lGoOn = true;
    while (!lSecondIsUp)
    {
        std::this_thread::yield();
    }
    EXPECT_EQ(TakeEvents(), gStart);
    lStop = true;
    lFirst.join();
    lSecond.join();
    EXPECT_EQ(TakeEvents(), gStop);
}

TEST_F(ModuleStart, OneModuleAtATimeWhateverTheThreadsDo)
{
    TheJournal().mMostLiveRouters = 0;
    std::atomic<int> lTries{0};
    TheJournal().mOnCreateRouter = [&] {
        if (++lTries % 3 == 0)
        {
            ThrowMessage();
        }
    };
    std::atomic<int> lFailed{0};
    std::vector<std::thread> lThreads;
    for (int lThread = 0; lThread < 8; ++lThread)
    {
        lThreads.emplace_back([&] {
            for (int lRound = 0; lRound < 100; ++lRound)
            {
                try
                {
                    const Initializer lInitializer;
                    std::this_thread::yield();
                }
                catch (const QBase::Message&)
                {
                    ++lFailed;
                }
            }
        });
    }
    for (std::thread& lThread : lThreads)
    {
        lThread.join();
    }
    EXPECT_EQ(TheJournal().mMostLiveRouters, 1);
    EXPECT_EQ(lFailed, lTries / 3);
}

// Whoever got through a storm of starts, of which many fail in one way or another, has the library up as long as it
// holds it; whoever failed has left nothing behind.
TEST_F(ModuleStart, WhoeverStartedItHasItUpWhileOthersFail)
{
    std::atomic<unsigned int> lTries{0};
    TheJournal().mOnCreateRouter = [&] {
        const unsigned int lTry = ++lTries;
        if (lTry % 4 == 1)
        {
            ThrowMessage();
        }
        if (lTry % 4 == 2)
        {
            throw std::bad_alloc();
        }
    };
    std::atomic<int> lSeenDown{0};
    std::atomic<int> lFailed{0};
    std::atomic<int> lStarted{0};
    Together([&](int) {
        for (int lRound = 0; lRound < 200; ++lRound)
        {
            try
            {
                const Initializer lOuter;
                const Initializer lInner; // only counts
                ++lStarted;
                std::this_thread::yield();
                lSeenDown += TheJournal().mLiveRouters == 1 ? 0 : 1;
            }
            catch (const QBase::Message&)
            {
                ++lFailed;
            }
            catch (const std::bad_alloc&)
            {
                ++lFailed;
            }
        }
    });
    EXPECT_EQ(lSeenDown, 0);
    EXPECT_EQ(lFailed + lStarted, gThreads * 200);
    EXPECT_EQ(static_cast<unsigned int>(lFailed),
              lTries / 4 + (lTries % 4 > 0 ? 1 : 0) + lTries / 4 + (lTries % 4 > 1 ? 1 : 0));
}
