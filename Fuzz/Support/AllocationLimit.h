// A bound on the memory that a test may hold at once, so that bytes that claim much cannot cost much. Linking
// AllocationLimit.cpp replaces operator new and delete for the whole program, the libraries included.

#ifndef TALBASE_FUZZ_SUPPORT_ALLOCATIONLIMIT_H
#define TALBASE_FUZZ_SUPPORT_ALLOCATIONLIMIT_H

#include <cstddef>

namespace Fuzz
{

// While it lives, a request that would bring what was allocated since it was made above the limit breaks a rule. Of
// several the youngest is in force.
class AllocationLimit
{
public:
    explicit AllocationLimit(std::size_t iBytes);
    ~AllocationLimit();

    AllocationLimit(const AllocationLimit&) = delete;
    AllocationLimit& operator=(const AllocationLimit&) = delete;

private:
    bool mWasLimited;
    std::ptrdiff_t mHeldBefore;
    std::ptrdiff_t mMostBefore;
};

} // namespace Fuzz

#endif
