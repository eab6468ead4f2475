// The library's bags against the plain implementation, by random operations. TALBASE_DIFFERENTIAL_OPERATIONS in the
// environment asks for another number of them, TALBASE_DIFFERENTIAL_SEED for another start.

#include "Tests/Support/Differential.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace
{

std::uint64_t FromEnvironment(const char* ipName, std::uint64_t iDefault)
{
    const char* lText = std::getenv(ipName);
    return lText != nullptr ? std::strtoull(lText, nullptr, 10) : iDefault;
}

TEST(Differential, RandomOperationsCannotTellTheLibraryFromThePlainImplementation)
{
    const std::uint64_t lOperations = FromEnvironment("TALBASE_DIFFERENTIAL_OPERATIONS", 200000);
    const std::uint64_t lSeed = FromEnvironment("TALBASE_DIFFERENTIAL_SEED", 1);
    const std::size_t lPerRound = 100;
    std::uint64_t lDone = 0;
    for (std::uint64_t lRound = 0; lDone < lOperations; ++lRound, lDone += lPerRound)
    {
        Support::RandomChoices lChoices(lSeed * 1000003 + lRound);
        const Support::Look lLook = lRound % 4 == 0 ? Support::Look::AtTheEnd : Support::Look::AfterEachStep;
        const std::string lDifference = Support::FindDifference(lChoices, lPerRound, lLook);
        ASSERT_EQ(lDifference, "") << "round " << lRound;
    }
    RecordProperty("operations", std::to_string(lDone));
    EXPECT_GE(lDone, lOperations);
}

} // namespace
