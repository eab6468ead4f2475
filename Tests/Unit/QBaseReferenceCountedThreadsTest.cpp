#include "QBase/ReferenceCounted.h"

#include "QBase/Atomic.h"
#include "QBase/SmartPtrI.h"
#include "QLog/Initializer.h"
#include "QLog/Router.h"
#include "QSynch/Initializer.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <thread>
#include <utility>
#include <vector>

namespace
{

const int gThreads = 8;
const int gRounds = 200000; // longer than a time slice, so that threads meet on a busy machine too

// Each thread writes its own plain number while it holds a reference; the destructor, in whichever thread it runs,
// reads them all. A race detector sees it where dropping the last reference does not order that.
class Shared : public virtual QBase::ReferenceCounted
{
public:
    explicit Shared(std::atomic<long>& oSum, std::atomic<int>& oDeleted) : mSum(oSum), mDeleted(oDeleted), mRefCount(0)
    {
    }

    ~Shared() override
    {
        for (const long lNumber : mNumbers)
        {
            mSum += lNumber;
        }
        ++mDeleted;
    }

    void AddRef() const noexcept override
    {
        QSynch_AtomicIncrement(mRefCount);
    }

    void Release() const noexcept override
    {
        if (QSynch_AtomicDecrement(mRefCount) == 0)
        {
            delete this;
        }
    }

    std::array<long, gThreads> mNumbers{};

private:
    std::atomic<long>& mSum;
    std::atomic<int>& mDeleted;
    mutable QSynch::AtomicLong mRefCount;
};

using SharedPtr = QBase::SmartPtrI<Shared>;

// All threads start their work together: a thread is slower to start than its work would be to end.
template <class Work>
void RunInThreads(const Work& iWork)
{
    std::atomic<bool> lGo{false};
    std::vector<std::thread> lThreads;
    for (int lIndex = 0; lIndex < gThreads; ++lIndex)
    {
        lThreads.emplace_back([&iWork, &lGo, lIndex] {
            while (!lGo)
            {
                std::this_thread::yield();
            }
            iWork(lIndex);
        });
    }
    lGo = true;
    for (std::thread& lThread : lThreads)
    {
        lThread.join();
    }
}

TEST(ReferenceCountedThreads, LastReferenceDroppedAnywhereDeletesOnceAndSeesAll)
{
    std::atomic<long> lSum{0};
    std::atomic<int> lDeleted{0};
    for (int lObject = 0; lObject < 50; ++lObject)
    {
        SharedPtr lFirst(new Shared(lSum, lDeleted));
        std::vector<SharedPtr> lGiven(gThreads, lFirst);
        lFirst = nullptr; // from here on only the threads hold it
        RunInThreads([&lGiven](int iThread) {
            SharedPtr lMine = std::move(lGiven[static_cast<std::size_t>(iThread)]);
            lMine->mNumbers[static_cast<std::size_t>(iThread)] = iThread + 1;
        });
    }
    EXPECT_EQ(50, lDeleted);
    EXPECT_EQ(50 * (1 + 2 + 3 + 4 + 5 + 6 + 7 + 8), lSum);
}

TEST(ReferenceCountedThreads, CopiesTakenAndDroppedEverywhereBalance)
{
    std::atomic<long> lSum{0};
    std::atomic<int> lDeleted{0};
    {
        const SharedPtr lShared(new Shared(lSum, lDeleted));
        RunInThreads([&lShared](int iThread) {
            SharedPtr lKept;
            for (int lRound = 0; lRound < gRounds; ++lRound)
            {
                const SharedPtr lCopy = lShared;
                lKept = lCopy;
                ++lKept->mNumbers[static_cast<std::size_t>(iThread)];
            }
        });
        EXPECT_EQ(0, lDeleted);
    }
    EXPECT_EQ(1, lDeleted);
    EXPECT_EQ(static_cast<long>(gThreads) * gRounds, lSum);
}

TEST(ReferenceCountedThreads, RouterIsSharedBetweenThreads)
{
    const QBase::SmartPtrI<QLog::Router> lRouter = QLog::CreateRouter("Queue", "Error", 1);
    std::atomic<int> lRight{0};
    RunInThreads([&](int) {
        for (int lRound = 0; lRound < gRounds; ++lRound)
        {
            const QBase::SmartPtrI<QLog::Router> lCopy = lRouter;
            lRight += lCopy->GetModule()[0] == 'Q' ? 1 : 0;
        }
    });
    EXPECT_EQ(gThreads * gRounds, lRight);
}

TEST(ReferenceCountedThreads, InitializersOfManyThreadsBalance)
{
    std::atomic<int> lDown{0};
    RunInThreads([&](int) {
        for (int lRound = 0; lRound < gRounds; ++lRound)
        {
            const QSynch::Initializer lSynch;
            const QLog::Initializer lLog;
            lDown += QSynch::Initializer::GetCount() > 0 && QLog::Initializer::GetCount() > 0 ? 0 : 1;
        }
    });
    EXPECT_EQ(0, lDown);
    EXPECT_EQ(0, QSynch::Initializer::GetCount());
    EXPECT_EQ(0, QLog::Initializer::GetCount());
}

} // namespace
