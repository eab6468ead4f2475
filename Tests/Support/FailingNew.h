// The program's memory under the test's control: counts what operator new hands out, and lets chosen allocations fail.
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
// that was asked for since ForgetLargest, whether it was granted or not.
std::size_t AllocationsMade();
std::size_t AllocationsLive();
std::size_t LargestAllocation();
void ForgetLargest();

// Return the bytes that allocations not yet freed really take, and the most of these since RestartPeak, which lets the
// peak begin anew at what is held now.
std::size_t BytesHeld();
std::size_t PeakBytesHeld();
void RestartPeak();

// Memory may be short for a moment or for good.
enum class Shortage
{
    Once,
    FromThenOn
};

// Lets the allocation after iSuccesses further ones throw std::bad_alloc, and, FromThenOn, every one after it.
void FailAfter(std::size_t iSuccesses, Shortage iShortage = Shortage::Once);

// Returns how many allocations have failed since FailAfter.
std::size_t StopFailing();

// Runs iOperation with its first allocation failing, then its second, and so on until it succeeds; first with that one
// allocation failing, then with all from there on. After each failure iCheck looks at what the operation promises to
// leave, lets go of it, and then nothing may have leaked. When the operation has succeeded once, iBetween puts
// everything back to how it was. An operation that allocates nothing fails the test.
template <class Operation, class Check, class Between>
void FailEachAllocation(const Operation& iOperation, const Check& iCheck, const Between& iBetween)
{
    for (const Shortage lShortage : {Shortage::Once, Shortage::FromThenOn})
    {
        if (lShortage == Shortage::FromThenOn)
        {
            iBetween();
        }
        for (std::size_t lSuccesses = 0;; ++lSuccesses)
        {
            ASSERT_LT(lSuccesses, 10000U) << "the operation never succeeds";
            const std::size_t lLive = AllocationsLive();
            FailAfter(lSuccesses, lShortage);
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
                break;
            }
            iCheck();
            EXPECT_EQ(AllocationsLive(), lLive) << "leaked when allocation " << lSuccesses + 1 << " failed";
        }
    }
}

// Before its version 16, libc++ loses the elements that a vector's constructor has copied when a later copy fails.
#if defined(_LIBCPP_VERSION) && _LIBCPP_VERSION < 16000
inline constexpr bool gLosesFailedCopies = true;
#else
inline constexpr bool gLosesFailedCopies = false;
#endif

// For an operation that can simply be done again.
template <class Operation, class Check>
void FailEachAllocation(const Operation& iOperation, const Check& iCheck)
{
    FailEachAllocation(iOperation, iCheck, [] {});
}

} // namespace Support

#endif
