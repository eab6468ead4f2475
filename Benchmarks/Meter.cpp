#include "Meter.h"

#include "Allocations.h"
#include "SmallStack.h"

#include <ctime>
#include <exception>
#include <linux/perf_event.h>
#include <malloc.h>
#include <pthread.h>
#include <stdexcept>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#if __has_include(<valgrind/callgrind.h>)
#include <valgrind/callgrind.h>
#else
#define CALLGRIND_START_INSTRUMENTATION
#define CALLGRIND_STOP_INSTRUMENTATION
#define CALLGRIND_DUMP_STATS
#endif

namespace Bench
{

namespace
{

double GetProcessorSeconds()
{
    timespec lTime{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &lTime);
    return static_cast<double>(lTime.tv_sec) + static_cast<double>(lTime.tv_nsec) * 1e-9;
}

// The processor's own counter of this thread's instructions; virtual machines often have none.
class InstructionCounter
{
public:
    InstructionCounter()
    {
        perf_event_attr lAttributes{};
        lAttributes.size = sizeof(lAttributes);
        lAttributes.type = PERF_TYPE_HARDWARE;
        lAttributes.config = PERF_COUNT_HW_INSTRUCTIONS;
        lAttributes.disabled = 1;
        lAttributes.exclude_kernel = 1;
        lAttributes.exclude_hv = 1;
        mFile = static_cast<int>(::syscall(SYS_perf_event_open, &lAttributes, 0, -1, -1, 0));
        Control(PERF_EVENT_IOC_ENABLE);
    }

    ~InstructionCounter()
    {
        if (mFile >= 0)
        {
            ::close(mFile);
        }
    }

    InstructionCounter(const InstructionCounter&) = delete;
    InstructionCounter& operator=(const InstructionCounter&) = delete;

    std::optional<std::uint64_t> Stop()
    {
        Control(PERF_EVENT_IOC_DISABLE);
        std::uint64_t lCount = 0;
        if (mFile < 0 || ::read(mFile, &lCount, sizeof(lCount)) != sizeof(lCount))
        {
            return {};
        }
        return lCount;
    }

private:
    void Control(unsigned long iRequest) const
    {
        if (mFile >= 0)
        {
            ::ioctl(mFile, iRequest, 0);
        }
    }

    int mFile;
};

struct ThreadTask
{
    const std::function<void()>& mOperation;
    Measurement mMeasurement;
    std::exception_ptr mFailure;
};

void* RunTask(void* ipTask)
{
    ThreadTask& lTask = *static_cast<ThreadTask*>(ipTask);
    try
    {
        lTask.mMeasurement = MeasureHere(lTask.mOperation);
    }
    catch (...)
    {
        lTask.mFailure = std::current_exception();
    }
    return nullptr;
}

} // namespace

Measurement MeasureHere(const std::function<void()>& iOperation)
{
    Measurement lMeasurement;
    ::malloc_trim(0); // what setting up left to tidy is not the operation's affair
    InstructionCounter lCounter;
    const AllocationTotals lBefore = RestartPeak();
    CALLGRIND_START_INSTRUMENTATION;
    const double lStart = GetProcessorSeconds();
    iOperation();
    lMeasurement.mSeconds = GetProcessorSeconds() - lStart;
    CALLGRIND_STOP_INSTRUMENTATION;
    const AllocationTotals lAfter = GetAllocations();
    lMeasurement.mInstructions = lCounter.Stop();
    CALLGRIND_DUMP_STATS;
    lMeasurement.mAllocatedBytes = lAfter.mAllocated - lBefore.mAllocated;
    lMeasurement.mPeakBytes = lAfter.mPeak - lBefore.mHeld;
    return lMeasurement;
}

Measurement MeasureOnSmallStack(const std::function<void()>& iOperation)
{
    const SmallStack lStack;
    ThreadTask lTask{iOperation, {}, {}};
    pthread_attr_t lAttributes;
    ::pthread_attr_init(&lAttributes);
    ::pthread_attr_setstack(&lAttributes, lStack.GetBase(), lStack.GetSize());
    pthread_t lThread{};
    const int lError = ::pthread_create(&lThread, &lAttributes, RunTask, &lTask);
    ::pthread_attr_destroy(&lAttributes);
    if (lError != 0)
    {
        throw std::runtime_error("no thread with a small stack");
    }
    ::pthread_join(lThread, nullptr);
    if (lTask.mFailure)
    {
        std::rethrow_exception(lTask.mFailure);
    }
    lTask.mMeasurement.mStackBytes = lStack.GetUsed();
    return lTask.mMeasurement;
}

} // namespace Bench
