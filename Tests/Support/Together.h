// Work that several threads begin at the same moment.

#ifndef TESTS_SUPPORT_TOGETHER_H
#define TESTS_SUPPORT_TOGETHER_H

#include <atomic>
#include <thread>
#include <vector>

namespace Support
{

const int gThreads = 8;

// Runs the work on each of gThreads threads, which get their number, and waits for all of them.
template <class Work>
void Together(const Work& iWork)
{
    std::atomic<int> lReady{0};
    std::vector<std::thread> lThreads;
    for (int lThread = 0; lThread < gThreads; ++lThread)
    {
        lThreads.emplace_back([&, lThread] {
            ++lReady;
            while (lReady < gThreads)
            {
                std::this_thread::yield();
            }
            iWork(lThread);
        });
    }
    for (std::thread& lThread : lThreads)
    {
        lThread.join();
    }
}

} // namespace Support

#endif
