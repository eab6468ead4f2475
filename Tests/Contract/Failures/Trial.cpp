#include "Tests/Contract/Failures/Trial.h"

#include "Tests/Support/Expect.h"
#include "Tests/Support/FailingNew.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace Failures
{

namespace
{

using Support::Readable;
using Support::Shortage;

struct Expected
{
    std::wstring mBefore;
    std::wstring mAfter;
};

Expected Observe(const Case& iCase)
{
    const std::unique_ptr<Scene> lScene = iCase.mMake();
    Expected lExpected;
    lExpected.mBefore = lScene->See();
    lScene->Run();
    lExpected.mAfter = lScene->See();
    return lExpected;
}

bool IsOneOf(const std::vector<std::wstring>& iStates, const std::wstring& iState)
{
    return std::find(iStates.begin(), iStates.end(), iState) != iStates.end();
}

// oLeft: for each state that may be left whether a failure has left it.
void CheckWhatIsLeft(const Case& iCase, const Expected& iExpected, Scene& oScene,
                     const std::vector<const void*>& iIdentity, std::vector<bool>& oLeft)
{
    const std::wstring lLeft = oScene.See();
    if (lLeft == iExpected.mBefore)
    {
        EXPECT_EQ(oScene.Identify(), iIdentity) << "objects were exchanged";
    }
    else
    {
        EXPECT_TRUE(IsOneOf(iCase.mMayLeave, lLeft))
            << "before: " << Readable(iExpected.mBefore) << "\nleft: " << Readable(lLeft);
    }
    for (std::size_t lIndex = 0; lIndex < oLeft.size(); ++lIndex)
    {
        oLeft[lIndex] = oLeft[lIndex] || iCase.mMayLeave[lIndex] == lLeft;
    }
    oScene.Run();
    const std::wstring lLast = oScene.See();
    EXPECT_TRUE(lLast == iExpected.mAfter || IsOneOf(iCase.mMayComeLast, lLast))
        << "run again: " << Readable(lLast) << "\nexpected: " << Readable(iExpected.mAfter);
}

// Returns whether an allocation failed.
bool RunOnce(const Case& iCase, const Expected& iExpected, std::size_t iSuccesses, Shortage iShortage,
             std::vector<bool>& oLeft)
{
    const std::unique_ptr<Scene> lScene = iCase.mMake();
    const std::vector<const void*> lIdentity = lScene->Identify();
    bool lIsThrown = false;
    Support::FailAfter(iSuccesses, iShortage);
    try
    {
        lScene->Run();
    }
    catch (const std::bad_alloc&)
    {
        lIsThrown = true;
    }
    catch (...)
    {
        Support::StopFailing();
        ADD_FAILURE() << "something else than std::bad_alloc was thrown";
        return false;
    }
    const std::size_t lFailed = Support::StopFailing();
    EXPECT_TRUE(lIsThrown == (lFailed > 0) || iCase.mMayDoWithout) << "a failure was kept from the caller";
    if (lIsThrown)
    {
        CheckWhatIsLeft(iCase, iExpected, *lScene, lIdentity, oLeft);
    }
    else
    {
        EXPECT_EQ(Readable(lScene->See()), Readable(iExpected.mAfter));
    }
    return lFailed > 0;
}

// Returns whether the test has failed since it had so many results.
bool HasFailedSince(int iResults)
{
    return testing::UnitTest::GetInstance()->current_test_info()->result()->total_part_count() != iResults;
}

void TryWith(const Case& iCase, const Expected& iExpected, Shortage iShortage)
{
    const int lResults = testing::UnitTest::GetInstance()->current_test_info()->result()->total_part_count();
    std::vector<bool> lLeft(iCase.mMayLeave.size());
    std::size_t lFailures = 0;
    for (bool lHasFailed = true; lHasFailed;)
    {
        ASSERT_LT(lFailures, 10000U) << "the operation never succeeds";
        SCOPED_TRACE("allocation " + std::to_string(lFailures + 1) +
                     (iShortage == Shortage::Once ? " failed" : " and all after it failed"));
        const std::size_t lLive = Support::AllocationsLive();
        lHasFailed = RunOnce(iCase, iExpected, lFailures, iShortage, lLeft);
        if (HasFailedSince(lResults))
        {
            return; // one report tells enough, and holds memory itself
        }
        if (!iCase.mCopiesVector || !Support::gLosesFailedCopies)
        {
            EXPECT_EQ(Support::AllocationsLive(), lLive) << "leaked";
        }
        lFailures += lHasFailed ? 1 : 0;
    }
    for (std::size_t lIndex = 0; iCase.mLeavesEach && lIndex < lLeft.size(); ++lIndex)
    {
        EXPECT_TRUE(lLeft[lIndex]) << "no failure left " << Readable(iCase.mMayLeave[lIndex]);
    }
    if (iCase.mKind != Kind::MayNotAllocate)
    {
        EXPECT_EQ(lFailures > 0, iCase.mKind == Kind::CanFail) << lFailures << " allocations failed";
    }
}

} // namespace

void Try(const Case& iCase)
{
    SCOPED_TRACE(iCase.mOperation + ": " + iCase.mSituation);
    const Expected lExpected = Observe(iCase);
    for (const Shortage lShortage : {Shortage::Once, Shortage::FromThenOn})
    {
        TryWith(iCase, lExpected, lShortage);
    }
}

} // namespace Failures
