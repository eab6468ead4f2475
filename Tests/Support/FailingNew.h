// The program's memory under the test's control: counts what operator new hands out, and lets a chosen allocation fail.
// Linking FailingNew.cpp replaces operator new and delete for the whole program, the libraries included. What C code
// takes with malloc is not seen; the storage of an exception object is such.

#ifndef TESTS_SUPPORT_FAILINGNEW_H
#define TESTS_SUPPORT_FAILINGNEW_H

#include <gtest/gtest.h>

#include <cstddef>
#include <new>

namespace Support
{

// Return how many allocations were made so far, how many of them are not freed yet, and the size of the largest one
// since ForgetLargest.
std::size_t AllocationsMade();
std::size_t AllocationsLive();
std::size_t LargestAllocation();
void ForgetLargest();

// Lets the allocation after iSuccesses further ones throw std::bad_alloc, once.
void FailAfter(std::size_t iSuccesses);
void StopFailing();

// Runs iOperation with its first allocation failing, then its second, and so on until it succeeds. After each failure
// iCheck looks at what the operation promises to leave, lets go of it, and then nothing may have leaked. An operation
// that allocates nothing fails the test.
template <class Operation, class Check>
void FailEachAllocation(const Operation& iOperation, const Check& iCheck)
{
    for (std::size_t lSuccesses = 0; lSuccesses < 10000; ++lSuccesses)
    {
        const std::size_t lLive = AllocationsLive();
        FailAfter(lSuccesses);
        bool lHasFailed = false;
        try
        {
            iOperation();
        }
        catch (const std::bad_alloc&)
        {
            lHasFailed = true;
        }
        catch (...)
        {
            StopFailing();
            throw;
        }
        StopFailing();
        if (!lHasFailed)
        {
            EXPECT_GT(lSuccesses, 0U) << "nothing was allocated";
            return;
        }
        iCheck();
        EXPECT_EQ(AllocationsLive(), lLive) << "leaked when allocation " << lSuccesses + 1 << " failed";
    }
    ADD_FAILURE() << "the operation never succeeds";
}

} // namespace Support

#endif
