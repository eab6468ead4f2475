// The library's bags against the plain implementation, by random operations. TALBASE_DIFFERENTIAL_OPERATIONS in the
// environment asks for another number of them, TALBASE_DIFFERENTIAL_SEED for another start.

#include "Tests/Support/Differential.h"
#include "Tests/Support/BrokenRule.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace
{

const std::size_t gPerRound = 100;

std::uint64_t FromEnvironment(const char* ipName, std::uint64_t iDefault)
{
    const char* lText = std::getenv(ipName);
    return lText != nullptr ? std::strtoull(lText, nullptr, 10) : iDefault;
}

// Returns what a round of 100 operations finds.
std::string FindInRound(std::uint64_t iSeed, std::uint64_t iRound)
{
    Support::RandomChoices lChoices(iSeed * 1000003 + iRound);
    const Support::Look lLook = iRound % 4 == 0 ? Support::Look::AtTheEnd : Support::Look::AfterEachStep;
    return Support::FindDifference(lChoices, gPerRound, lLook);
}

TEST(Differential, RandomOperationsCannotTellTheLibraryFromThePlainImplementation)
{
    const std::uint64_t lOperations = FromEnvironment("TALBASE_DIFFERENTIAL_OPERATIONS", 200000);
    const std::uint64_t lSeed = FromEnvironment("TALBASE_DIFFERENTIAL_SEED", 1);
    for (std::uint64_t lRound = 0; lRound * gPerRound < lOperations; ++lRound)
    {
        ASSERT_EQ(FindInRound(lSeed, lRound), "") << "round " << lRound;
    }
}

// What the plain implementation does wrongly on request is found: the operations reach it, and the states show it.
TEST(Differential, RandomOperationsFindABrokenRule)
{
    for (const char* lRule : {"EmptyBeginDelimiter", "EqualsReadsBoth", "MergeIntoItself"})
    {
        Plain::gBrokenRule = lRule;
        std::uint64_t lRound = 0;
        while (lRound < 100 && FindInRound(1, lRound).empty())
        {
            ++lRound;
        }
        Plain::gBrokenRule = {};
        EXPECT_LT(lRound, 100U) << lRule;
    }
}

} // namespace
