// usage: bench-case growth|depth NAME SIZE...
//        bench-case memory TEXT OPERATION SIZE...
// Runs one case at each of the sizes, in this process, which may crash or be ended by whoever started it. Prints for
// each size that worked a line of the size, the seconds, the instructions (0 if unknown), the bytes allocated, the peak
// of bytes and the bytes of stack. "growth" runs on this thread, "depth" on one with the smallest stack. "memory"
// prints for each size the peak of bytes as a multiple of the input's.

#include "Cases.h"
#include "MemoryCases.h"
#include "Meter.h"

#include "QBase/Message.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <functional>
#include <string>

namespace
{

void RunCase(const Bench::HostileCase& iCase, std::size_t iSize, bool iOnSmallStack)
{
    const Bench::PreparedCase lCase = iCase.mPrepare(iSize);
    const Bench::Measurement lMeasurement =
        iOnSmallStack ? Bench::MeasureOnSmallStack(lCase.mRun) : Bench::MeasureHere(lCase.mRun);
    lCase.mCheck();
    std::printf("%zu %.9f %llu %llu %llu %zu\n", iSize, lMeasurement.mSeconds,
                static_cast<unsigned long long>(lMeasurement.mInstructions.value_or(0)),
                static_cast<unsigned long long>(lMeasurement.mAllocatedBytes),
                static_cast<unsigned long long>(lMeasurement.mPeakBytes), lMeasurement.mStackBytes);
    std::fflush(stdout);
}

void RunMemoryCase(const Bench::MemoryCase& iCase, std::size_t iSize)
{
    const Bench::MeteredCase lCase = iCase.mPrepare(iSize);
    const Bench::Measurement lMeasurement = Bench::MeasureHere(lCase.mCase.mRun);
    lCase.mCase.mCheck();
    std::printf("%zu %.9f\n", iSize,
                static_cast<double>(lMeasurement.mPeakBytes) / static_cast<double>(lCase.mInputBytes));
    std::fflush(stdout);
}

// Each returns the function that runs the named case at a size, or none where there is no such case.
std::function<void(std::size_t)> FindCase(const char* ipName, bool iOnSmallStack)
{
    for (const Bench::HostileCase& lCase : iOnSmallStack ? Bench::MakeDepthCases() : Bench::MakeGrowthCases())
    {
        if (lCase.mName == ipName)
        {
            return [=](std::size_t iSize) { RunCase(lCase, iSize, iOnSmallStack); };
        }
    }
    return nullptr;
}

std::function<void(std::size_t)> FindMemoryCase(const char* ipText, const char* ipOperation)
{
    for (const Bench::MemoryCase& lCase : Bench::MakeMemoryCases())
    {
        if (lCase.mText == ipText && lCase.mOperation == ipOperation)
        {
            return [=](std::size_t iSize) { RunMemoryCase(lCase, iSize); };
        }
    }
    return nullptr;
}

} // namespace

int main(int iCount, char** ipArguments)
{
    const std::string lKind = iCount > 1 ? ipArguments[1] : "";
    const int lFirstSize = lKind == "memory" ? 4 : 3;
    if (iCount <= lFirstSize)
    {
        std::fprintf(stderr, "usage: bench-case growth|depth NAME SIZE... | memory TEXT OPERATION SIZE...\n");
        return 2;
    }
    const std::function<void(std::size_t)> lRun =
        lKind == "memory" ? FindMemoryCase(ipArguments[2], ipArguments[3]) : FindCase(ipArguments[2], lKind == "depth");
    if (!lRun)
    {
        std::fprintf(stderr, "bench-case: no such case: %s\n", ipArguments[2]);
        return 2;
    }
    try
    {
        for (int lIndex = lFirstSize; lIndex < iCount; ++lIndex)
        {
            lRun(std::strtoul(ipArguments[lIndex], nullptr, 10));
        }
    }
    catch (const std::exception& lFailure)
    {
        std::fprintf(stderr, "bench-case: %s\n", lFailure.what());
        return 1;
    }
    catch (const QBase::Message&)
    {
        std::fprintf(stderr, "bench-case: the library refused the input\n");
        return 1;
    }
}
