// usage: bench-case growth|depth NAME SIZE...
// Runs one case at each of the sizes, in this process, which may crash or be ended by whoever started it. Prints for
// each size that worked a line of the size, the seconds, the instructions (0 if unknown), the bytes allocated, the peak
// of bytes and the bytes of stack. "growth" runs on this thread, "depth" on one with the smallest stack.

#include "Cases.h"
#include "Meter.h"

#include "QBase/Message.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>

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

} // namespace

int main(int iCount, char** ipArguments)
{
    if (iCount < 4)
    {
        std::fprintf(stderr, "usage: bench-case growth|depth NAME SIZE...\n");
        return 2;
    }
    const bool lDepth = std::strcmp(ipArguments[1], "depth") == 0;
    const std::vector<Bench::HostileCase> lCases = lDepth ? Bench::MakeDepthCases() : Bench::MakeGrowthCases();
    const auto lCase = std::find_if(lCases.begin(), lCases.end(),
                                    [&](const Bench::HostileCase& iCase) { return iCase.mName == ipArguments[2]; });
    if (lCase == lCases.end())
    {
        std::fprintf(stderr, "bench-case: no such case: %s\n", ipArguments[2]);
        return 2;
    }
    try
    {
        for (int lIndex = 3; lIndex < iCount; ++lIndex)
        {
            RunCase(*lCase, std::strtoul(ipArguments[lIndex], nullptr, 10), lDepth);
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
