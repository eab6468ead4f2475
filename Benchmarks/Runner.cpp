#include "Runner.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <functional>
#include <poll.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace Bench
{

namespace
{

using Clock = std::chrono::steady_clock;

constexpr double gSampleSeconds = 0.002;
constexpr std::size_t gMinimumRounds = 3;
constexpr std::size_t gMaximumRounds = 41;

double GetSeconds(Clock::duration iDuration)
{
    return std::chrono::duration<double>(iDuration).count();
}

// What this thread has had of the processor: other programs on the machine then cost caches, but no time.
double GetProcessorSeconds()
{
    timespec lTime{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &lTime);
    return static_cast<double>(lTime.tv_sec) + static_cast<double>(lTime.tv_nsec) * 1e-9;
}

void RunOnce(const Operation& iOperation)
{
    if (iOperation.mPrepare)
    {
        iOperation.mPrepare(1);
    }
    iOperation.mRun(1);
}

// Times so many runs, after one that isn't timed: what another library left behind in the caches and on the heap, whose
// freed blocks the next large allocation has to tidy up, is not this one's affair.
double Time(const Operation& iOperation, std::size_t iTimes)
{
    RunOnce(iOperation);
    if (iOperation.mPrepare)
    {
        iOperation.mPrepare(iTimes);
    }
    const double lStart = GetProcessorSeconds();
    iOperation.mRun(iTimes);
    return GetProcessorSeconds() - lStart;
}

struct Candidate
{
    std::string mName;
    Operation mOperation;
    std::size_t mTimes;
};

// Finds how often an operation has to run to fill a sample.
std::size_t Calibrate(const Operation& iOperation)
{
    for (std::size_t lTimes = 1;; lTimes *= 2)
    {
        if (Time(iOperation, lTimes) >= gSampleSeconds)
        {
            return lTimes;
        }
    }
}

std::vector<Candidate> MakeCandidates(OperationKind iKind, const SubjectMap& iSubjects)
{
    std::vector<Candidate> lCandidates;
    for (const auto& [lName, lSubject] : iSubjects)
    {
        Operation lOperation = lSubject->Make(iKind);
        if (lOperation.mRun)
        {
            const std::size_t lTimes = Calibrate(lOperation);
            lCandidates.push_back({lName, std::move(lOperation), lTimes});
        }
    }
    return lCandidates;
}

// Tries the operations one after the other and writes the number of each that works to the pipe.
[[noreturn]] void TryOperations(const Library& iLibrary, const DataSet& iData, const std::vector<OperationKind>& iKinds,
                                int iPipe)
{
    try
    {
        const std::unique_ptr<Subject> lSubject = iLibrary.mBind(iData);
        for (const OperationKind lKind : iKinds)
        {
            const bool lWorks = lSubject->Make(lKind).mRun && lSubject->Check(lKind);
            const char lReport = static_cast<char>(lWorks ? static_cast<int>(lKind) : -1);
            if (::write(iPipe, &lReport, 1) != 1)
            {
                break;
            }
        }
    }
    catch (...) // the operations after it are missing
    {
    }
    ::_exit(EXIT_SUCCESS);
}

} // namespace

double GetMedian(std::vector<double> iValues)
{
    const auto lMiddle = iValues.begin() + static_cast<std::ptrdiff_t>(iValues.size() / 2);
    std::nth_element(iValues.begin(), lMiddle, iValues.end());
    return *lMiddle;
}

double GetMedianRatio(const std::vector<double>& iFirst, const std::vector<double>& iSecond)
{
    std::vector<double> lRatios(iFirst.size());
    std::transform(iFirst.begin(), iFirst.end(), iSecond.begin(), lRatios.begin(), std::divides<>());
    return GetMedian(std::move(lRatios));
}

Samples Measure(OperationKind iKind, const SubjectMap& iSubjects, double iSeconds)
{
    const std::vector<Candidate> lCandidates = MakeCandidates(iKind, iSubjects);
    Samples lSamples;
    const Clock::time_point lStart = Clock::now();
    for (std::size_t lRound = 0; lRound < gMaximumRounds; ++lRound)
    {
        if (lRound >= gMinimumRounds && GetSeconds(Clock::now() - lStart) > iSeconds)
        {
            break;
        }
        for (std::size_t lIndex = 0; lIndex < lCandidates.size(); ++lIndex)
        {
            const Candidate& lCandidate = lCandidates[(lIndex + lRound) % lCandidates.size()];
            const auto lUnits = static_cast<double>(lCandidate.mTimes * lCandidate.mOperation.mUnits);
            lSamples[lCandidate.mName].push_back(Time(lCandidate.mOperation, lCandidate.mTimes) * 1e9 / lUnits);
        }
    }
    return lSamples;
}

std::set<OperationKind> FindWorkingOperations(const Library& iLibrary, const DataSet& iData,
                                              const std::vector<OperationKind>& iKinds, double iSecondsEach)
{
    int lPipe[2];
    if (::pipe(lPipe) != 0)
    {
        throw std::runtime_error("no pipe");
    }
    const pid_t lChild = ::fork();
    if (lChild == 0)
    {
        ::close(lPipe[0]);
        TryOperations(iLibrary, iData, iKinds, lPipe[1]);
    }
    ::close(lPipe[1]);
    std::set<OperationKind> lWorking;
    pollfd lPoll{lPipe[0], POLLIN, 0};
    char lReport = 0;
    while (::poll(&lPoll, 1, static_cast<int>(iSecondsEach * 1000)) == 1 && ::read(lPipe[0], &lReport, 1) == 1)
    {
        if (lReport >= 0)
        {
            lWorking.insert(static_cast<OperationKind>(lReport));
        }
    }
    ::close(lPipe[0]);
    ::kill(lChild, SIGKILL);
    ::waitpid(lChild, nullptr, 0);
    return lWorking;
}

} // namespace Bench
