// The store of a bag's plain properties where clients cannot reach it: its limits, and the memory it gives back.

#include "TalBase/PrivateSource/ValueContent.h"

#include "Tests/Support/FailingNew.h"

#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>
#include <string>
#include <utility>

using QTalBase::ValueContent;

namespace
{

// "a=1 b=2", as GetName and GetValue tell.
std::wstring Describe(const ValueContent& iContent)
{
    std::wstring lText;
    for (std::size_t lIndex = 0; lIndex < iContent.GetCount(); ++lIndex)
    {
        lText += (lIndex == 0 ? L"" : L" ") + std::wstring(iContent.GetName(lIndex)) + L"=" +
                 std::wstring(iContent.GetValue(lIndex));
    }
    return lText;
}

ValueContent Two()
{
    ValueContent lContent;
    lContent.Append(L"a", L"1");
    lContent.Append(L"b", L"22");
    return lContent;
}

} // namespace

TEST(ValueContent, ReserveOfMoreEntriesThanPositionsThrowsAndChangesNothing)
{
    ValueContent lContent = Two();
    EXPECT_THROW(lContent.Reserve(0xFFFFFFFF - 2, 0), std::length_error);
    EXPECT_THROW(lContent.Reserve(std::numeric_limits<std::size_t>::max(), 0), std::length_error);
    EXPECT_THROW(ValueContent().Reserve(0xFFFFFFFF, 0), std::length_error);
    EXPECT_EQ(Describe(lContent), L"a=1 b=22");
    EXPECT_EQ(lContent.GetTextLength(), 5U);
}

TEST(ValueContent, ReserveOfMoreCharactersThanMemoryCanHoldThrowsAndChangesNothing)
{
    ValueContent lContent = Two();
    EXPECT_THROW(lContent.Reserve(1, std::numeric_limits<std::ptrdiff_t>::max() / 16), std::length_error);
    EXPECT_THROW(lContent.Reserve(1, std::numeric_limits<std::ptrdiff_t>::max() / 16 - 4), std::length_error);
    EXPECT_EQ(Describe(lContent), L"a=1 b=22");
    lContent.Append(L"c", L"3");
    EXPECT_EQ(Describe(lContent), L"a=1 b=22 c=3");
}

TEST(ValueContent, ReserveForOneGivesBackTheMemoryOfAValueThatIsGone)
{
    ValueContent lContent = Two();
    const std::wstring lLong(10000, L'x');
    lContent.ReserveForOne(1 + lLong.size());
    lContent.Append(L"l", lLong);
    lContent.Remove(2);
    Support::ForgetLargest();
    const std::size_t lMade = Support::AllocationsMade();
    lContent.ReserveForOne(2);
    EXPECT_EQ(Support::AllocationsMade(), lMade + 1);
    EXPECT_LT(Support::LargestAllocation(), 1000U);
    lContent.Append(L"c", L"3");
    EXPECT_EQ(Describe(lContent), L"a=1 b=22 c=3");
    EXPECT_EQ(lContent.GetTextLength(), 7U);
}

// Room for twice the double of what will be used, and for 256 characters, is not too much: here for 2 * 2 * 7 + 256.
TEST(ValueContent, ReserveForOneKeepsMemoryThatIsNotFarTooLarge)
{
    for (const bool lIsTooMuch : {false, true})
    {
        ValueContent lContent = Two();
        lContent.Reserve(1, lIsTooMuch ? 280 : 279);
        const std::size_t lMade = Support::AllocationsMade();
        lContent.ReserveForOne(2);
        EXPECT_EQ(Support::AllocationsMade(), lMade + (lIsTooMuch ? 1 : 0));
    }
}

TEST(ValueContent, AppendedOneByOneAllocatesRarely)
{
    ValueContent lContent;
    const std::size_t lMade = Support::AllocationsMade();
    for (int lStep = 0; lStep < 1000; ++lStep)
    {
        lContent.ReserveForOne(4);
        lContent.Append(L"ab", L"cd");
    }
    EXPECT_LE(Support::AllocationsMade() - lMade, 22U); // entries and characters double in turn, at worst
    EXPECT_EQ(lContent.GetCount(), 1000U);
    EXPECT_EQ(lContent.GetTextLength(), 4000U);
}

TEST(ValueContent, RemovedAndAppendedForeverStaysSmall)
{
    ValueContent lContent = Two();
    Support::ForgetLargest();
    for (int lStep = 0; lStep < 10000; ++lStep)
    {
        lContent.Remove(0);
        lContent.ReserveForOne(2);
        lContent.Append(L"x", std::wstring(1, static_cast<wchar_t>(L'0' + lStep % 10)));
    }
    EXPECT_EQ(Describe(lContent), L"x=8 x=9");
    EXPECT_LT(Support::LargestAllocation(), 1000U);
}

TEST(ValueContent, EmptiedUsesItsMemoryAgain)
{
    ValueContent lContent;
    lContent.Append(L"name", L"value");
    const std::size_t lMade = Support::AllocationsMade();
    for (int lStep = 0; lStep < 3; ++lStep)
    {
        lContent.Remove(0);
        lContent.Append(L"other", L"text"); // as long as what was removed, which filled the memory
    }
    EXPECT_EQ(Support::AllocationsMade(), lMade);
    EXPECT_EQ(Describe(lContent), L"other=text");
}

TEST(ValueContent, KilledEntriesAreGoneAfterCompacting)
{
    ValueContent lContent = Two();
    lContent.Append(L"c", L"3");
    lContent.Kill(1);
    EXPECT_TRUE(lContent.IsKilled(1));
    EXPECT_FALSE(lContent.IsKilled(0));
    EXPECT_EQ(lContent.GetTextLength(), 4U);
    lContent.Append(L"d", L"4444444444");
    lContent.Compact();
    EXPECT_EQ(Describe(lContent), L"a=1 c=3 d=4444444444");
    EXPECT_EQ(lContent.GetTextLength(), 15U);
}

TEST(ValueContent, CopyAndMoveCarryEverything)
{
    ValueContent lContent = Two();
    lContent.Remove(0);
    const ValueContent lCopy = lContent;
    EXPECT_EQ(Describe(lCopy), L"b=22");
    const ValueContent lMoved = std::move(lContent);
    EXPECT_EQ(Describe(lMoved), L"b=22");
    EXPECT_EQ(lContent.GetCount(), 0U); // it is empty now, and usable
    EXPECT_EQ(lContent.GetTextLength(), 0U);
    lContent.Append(L"c", L"3");
    EXPECT_EQ(Describe(lContent), L"c=3");
    EXPECT_TRUE(lMoved.IsEntryEqual(0, lCopy, 0));
    EXPECT_FALSE(lMoved.IsEntryEqual(0, Two(), 0));
    EXPECT_TRUE(lMoved.IsEntryEqual(0, Two(), 1));
}

TEST(ValueContent, SameThroughoutMeansTheSameNamesAndValues)
{
    ValueContent lContent;
    lContent.Append(L"ab", L"c");
    ValueContent lSplitElsewhere;
    lSplitElsewhere.Append(L"a", L"bc");
    EXPECT_FALSE(lContent.IsSameThroughout(lSplitElsewhere));
    EXPECT_TRUE(lContent.IsSameThroughout(ValueContent(lContent)));
    EXPECT_FALSE(lContent.IsSameThroughout(Two()));
    EXPECT_TRUE(ValueContent().IsSameThroughout(ValueContent()));
}

TEST(ValueContent, LentRoomIsFilledFirstAndNeverFreed)
{
    alignas(std::size_t) char lRoom[ValueContent::SizeOf(2, 5)];
    const std::size_t lLive = Support::AllocationsLive();
    {
        ValueContent lContent;
        lContent.Lend(lRoom, 2, 5);
        const std::size_t lMade = Support::AllocationsMade();
        lContent.CopyFrom(Two());
        EXPECT_EQ(Support::AllocationsMade() - lMade, 2U) << "those of the content that is copied";
        EXPECT_EQ(Describe(lContent), L"a=1 b=22");
        lContent.Append(L"c", L"3");
        EXPECT_EQ(Support::AllocationsLive() - lLive, 1U);
        EXPECT_EQ(Describe(lContent), L"a=1 b=22 c=3");
    }
    {
        ValueContent lContent;
        lContent.Lend(lRoom, 2, 5);
        lContent.CopyFrom(Two());
        const ValueContent lMoved = std::move(lContent);
        EXPECT_EQ(Describe(lMoved), L"a=1 b=22");
        EXPECT_EQ(Describe(ValueContent(lMoved)), L"a=1 b=22");
    }
    EXPECT_EQ(Support::AllocationsLive(), lLive);
}
