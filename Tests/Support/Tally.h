// How often the tests of a program made an allocation or a primitive of a stream fail, and how often a reader noticed
// that its data had been cut. Each program that can do so says it in its last line, which
// Tests/Contract/Failures/tally.sh adds up.

#ifndef TESTS_SUPPORT_TALLY_H
#define TESTS_SUPPORT_TALLY_H

#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <cstdio>

namespace Support
{

inline std::atomic<std::size_t> gFailedAllocations{0};
inline std::atomic<std::size_t> gFailedPrimitives{0};
inline std::atomic<std::size_t> gNoticedCuts{0};

class Tally : public testing::Environment
{
public:
    void TearDown() override
    {
        std::printf("failed on purpose: %zu allocations, %zu stream primitives, %zu cuts\n", gFailedAllocations.load(),
                    gFailedPrimitives.load(), gNoticedCuts.load());
    }
};

inline testing::Environment* const gTally = testing::AddGlobalTestEnvironment(new Tally);

} // namespace Support

#endif
