#include "TalBase/BufferedWString.h"

#include "QBase/SmartPtrI.h"
#include "TalBase/PrivateSource/BufferedWStringImpl.h"

#include "Tests/Support/Expect.h"
#include "Tests/Support/FailingNew.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cwchar>
#include <limits>
#include <new>
#include <stdexcept>
#include <string>

using QTalBase::BufferedWString;
using QTalBase::BufferedWStringImpl;
using BufferPtr = QBase::SmartPtrI<BufferedWString>;

namespace
{

BufferPtr NewBuffer(std::size_t iInitialSize, std::size_t iIncrement)
{
    return QTalBase::CreateBufferedWString(iInitialSize, iIncrement);
}

// Checks text, size and capacity, and that everything behind the text is zero.
void ExpectBuffer(const BufferedWString& iBuffer, const std::wstring& iText, std::size_t iCapacity)
{
    EXPECT_EQ(iBuffer.size(), iText.size());
    EXPECT_EQ(iBuffer.capacity(), iCapacity);
    ASSERT_GE(iBuffer.capacity(), iBuffer.size());
    EXPECT_EQ(std::wstring(iBuffer.c_str(), iBuffer.size()), iText);
    for (std::size_t lIndex = iBuffer.size(); lIndex <= iBuffer.capacity(); ++lIndex)
    {
        ASSERT_EQ(iBuffer.c_str()[lIndex], L'\0') << "at " << lIndex;
    }
}

// Expects the statement to fail for want of room, in one of the two ways that are allowed.
template <class Statement>
void ExpectNoRoom(const Statement& iStatement)
{
    try
    {
        iStatement();
        ADD_FAILURE() << "nothing thrown";
    }
    catch (const std::length_error&)
    {
        SUCCEED();
    }
    catch (const std::bad_alloc&)
    {
        SUCCEED();
    }
}

const std::size_t gMax = std::numeric_limits<std::size_t>::max();

} // namespace

TEST(BufferedWString, CreateDefault)
{
    const BufferPtr lBuffer = QTalBase::CreateBufferedWString();
    ExpectBuffer(*lBuffer, L"", 524288);
    *lBuffer += std::wstring(524289, L'x');
    ExpectBuffer(*lBuffer, std::wstring(524289, L'x'), 1048576);
}

TEST(BufferedWString, CreateWithSizes)
{
    ExpectBuffer(*NewBuffer(10, 3), L"", 10);
    ExpectBuffer(*NewBuffer(0, 3), L"", 0);
    ExpectBuffer(*NewBuffer(1, 0), L"", 1);
}

TEST(BufferedWString, CreateZeroIncrementIsTheInitialSize)
{
    const BufferPtr lBuffer = NewBuffer(10, 0);
    *lBuffer += L"0123456789a";
    ExpectBuffer(*lBuffer, L"0123456789a", 20);
}

TEST(BufferedWString, CreateOfNothingThrows)
{
    try
    {
        const BufferPtr lBuffer = NewBuffer(0, 0);
        FAIL() << "a buffer that can never grow";
    }
    catch (const std::invalid_argument& lRefused)
    {
        EXPECT_STREQ(lRefused.what(), "QTalBase::BufferedWString: initial size and increment are both 0");
    }
}

TEST(BufferedWString, CreateImpossibleSizeThrows)
{
    ExpectNoRoom([] { QTalBase::CreateBufferedWString(gMax, 1); });
    ExpectNoRoom([] { QTalBase::CreateBufferedWString(gMax - 1, 1); });
    ExpectNoRoom([] { QTalBase::CreateBufferedWString(gMax / sizeof(wchar_t), 0); });
    ExpectNoRoom([] { QTalBase::CreateBufferedWString(gMax / sizeof(wchar_t) + 1, 1); });
}

TEST(BufferedWString, AppendEveryKindOfText)
{
    const BufferPtr lBuffer = NewBuffer(100, 10);
    *lBuffer += L"plain ";
    *lBuffer += std::wstring(L"standard ");
    *lBuffer += QBase::ReturnWString(L"returned");
    ExpectBuffer(*lBuffer, L"plain standard returned", 100);
}

TEST(BufferedWString, AppendEmbeddedZeroCharacters)
{
    const std::wstring lText(L"a\0b\0", 4);
    const BufferPtr lBuffer = NewBuffer(2, 2);
    *lBuffer += lText;
    ExpectBuffer(*lBuffer, lText, 4);
    *lBuffer += QBase::ReturnWString(lText.c_str(), lText.size());
    ExpectBuffer(*lBuffer, lText + lText, 8);
    *lBuffer += lText.c_str();
    ExpectBuffer(*lBuffer, lText + lText + L"a", 10);
}

TEST(BufferedWString, AppendEmptyTextNeverGrows)
{
    const BufferPtr lBuffer = NewBuffer(0, 5);
    *lBuffer += L"";
    *lBuffer += std::wstring();
    *lBuffer += QBase::ReturnWString(L"");
    ExpectBuffer(*lBuffer, L"", 0);
    const BufferPtr lFull = NewBuffer(3, 5);
    *lFull += L"abc";
    const wchar_t* const lBefore = lFull->c_str();
    *lFull += L"";
    ExpectBuffer(*lFull, L"abc", 3);
    EXPECT_EQ(lFull->c_str(), lBefore);
}

TEST(BufferedWString, AppendFreeSpaceFillsWithoutGrowth)
{
    const BufferPtr lBuffer = NewBuffer(5, 3);
    const wchar_t* const lBefore = lBuffer->c_str();
    *lBuffer += L"ab";
    *lBuffer += L"cde";
    ExpectBuffer(*lBuffer, L"abcde", 5);
    EXPECT_EQ(lBuffer->c_str(), lBefore);
    *lBuffer += L"f";
    ExpectBuffer(*lBuffer, L"abcdef", 8);
}

TEST(BufferedWString, AppendGrowsByTheSmallestNumberOfIncrements)
{
    const BufferPtr lBuffer = NewBuffer(200, 100);
    *lBuffer += std::wstring(150, L'a');
    *lBuffer += std::wstring(260, L'b');
    ExpectBuffer(*lBuffer, std::wstring(150, L'a') + std::wstring(260, L'b'), 500);
}

TEST(BufferedWString, AppendGrowthForEveryLength)
{
    for (std::size_t lLength = 0; lLength <= 40; ++lLength)
    {
        const BufferPtr lBuffer = NewBuffer(4, 7);
        *lBuffer += L"xy";
        *lBuffer += std::wstring(lLength, L'z');
        const std::size_t lMissing = lLength <= 2 ? 0 : lLength - 2;
        ExpectBuffer(*lBuffer, L"xy" + std::wstring(lLength, L'z'), 4 + (lMissing + 6) / 7 * 7);
    }
}

TEST(BufferedWString, AppendIncrementLargerThanTheText)
{
    const BufferPtr lBuffer = NewBuffer(0, 1000);
    *lBuffer += L"a";
    ExpectBuffer(*lBuffer, L"a", 1000);
    const BufferPtr lSingle = NewBuffer(0, 1);
    *lSingle += L"abc";
    ExpectBuffer(*lSingle, L"abc", 3);
}

TEST(BufferedWString, AppendManyTextsConcatenates)
{
    const BufferPtr lBuffer = NewBuffer(10, 7);
    std::wstring lExpected;
    for (int lCount = 0; lCount < 300; ++lCount)
    {
        const std::wstring lText = std::to_wstring(lCount * 7919) + L";";
        *lBuffer += lText;
        lExpected += lText;
        ASSERT_STREQ(lBuffer->c_str(), lExpected.c_str());
    }
    ExpectBuffer(*lBuffer, lExpected, 10 + (lExpected.size() - 10 + 6) / 7 * 7);
}

TEST(BufferedWString, MemoryHoldsTheCapacityAndATerminator)
{
    Support::ForgetLargest();
    const BufferPtr lBuffer = NewBuffer(5000, 1);
    EXPECT_EQ(Support::LargestAllocation(), 5001 * sizeof(wchar_t));
    *lBuffer += std::wstring(5000, L'x');
    Support::ForgetLargest();
    *lBuffer += L"y";
    EXPECT_EQ(Support::LargestAllocation(), 5002 * sizeof(wchar_t));
    Support::ForgetLargest();
    *lBuffer += L"abc";
    EXPECT_EQ(Support::LargestAllocation(), 5005 * sizeof(wchar_t));
    ExpectBuffer(*lBuffer, std::wstring(5000, L'x') + L"yabc", 5004);
}

TEST(BufferedWString, GrowthWithoutMemoryLeavesTheBuffer)
{
    const BufferPtr lBuffer = NewBuffer(3, 2);
    *lBuffer += L"abc";
    const wchar_t* const lBefore = lBuffer->c_str();
    Support::FailAfter(0);
    EXPECT_THROW(*lBuffer += lBefore, std::bad_alloc);
    EXPECT_EQ(Support::StopFailing(), 1U);
    EXPECT_EQ(lBuffer->c_str(), lBefore);
    ExpectBuffer(*lBuffer, L"abc", 3);
    *lBuffer += lBefore;
    ExpectBuffer(*lBuffer, L"abcabc", 7);
}

TEST(BufferedWString, AppendOwnText)
{
    const BufferPtr lBuffer = NewBuffer(3, 1);
    *lBuffer += L"abc";
    *lBuffer += lBuffer->c_str();
    ExpectBuffer(*lBuffer, L"abcabc", 6);
    *lBuffer += lBuffer->c_str() + 4;
    ExpectBuffer(*lBuffer, L"abcabcbc", 8);
    const BufferPtr lRoomy = NewBuffer(100, 1);
    *lRoomy += L"abc";
    *lRoomy += lRoomy->c_str();
    *lRoomy += lRoomy->c_str() + 1;
    ExpectBuffer(*lRoomy, L"abcabcbcabc", 100);
}

TEST(BufferedWStringImpl, AddAndResizeIfNeededTakesALength)
{
    BufferedWStringImpl lBuffer(2, 2);
    lBuffer.AddAndResizeIfNeeded(L"abcdef", 3);
    ExpectBuffer(lBuffer, L"abc", 4);
    lBuffer.AddAndResizeIfNeeded(L"xyz", 0);
    ExpectBuffer(lBuffer, L"abc", 4);
    lBuffer.AddAndResizeIfNeeded(lBuffer.c_str(), 3);
    ExpectBuffer(lBuffer, L"abcabc", 6);
}

TEST(BufferedWStringImpl, GrowthThatCannotBeHadLeavesTheBuffer)
{
    BufferedWStringImpl lBuffer(4, 3);
    lBuffer += L"abc";
    for (const std::size_t lLength : {gMax, gMax - 1, gMax - 3, gMax - 4, gMax / sizeof(wchar_t) + 2})
    {
        ExpectNoRoom([&] { lBuffer.AddAndResizeIfNeeded(L"", lLength); });
        ExpectBuffer(lBuffer, L"abc", 4);
    }
    lBuffer += L"de";
    ExpectBuffer(lBuffer, L"abcde", 7);
}

TEST(BufferedWStringImpl, GrowthByAHugeIncrementLeavesTheBuffer)
{
    for (const std::size_t lIncrement : {gMax, gMax - 2, gMax - 3, gMax / 2 + 1, gMax / sizeof(wchar_t) + 1})
    {
        BufferedWStringImpl lBuffer(3, lIncrement);
        lBuffer += L"abc";
        ExpectNoRoom([&] { lBuffer += L"d"; });
        ExpectBuffer(lBuffer, L"abc", 3);
    }
    BufferedWStringImpl lTwice(3, gMax / 2 + 1);
    ExpectNoRoom([&] { lTwice.AddAndResizeIfNeeded(L"", gMax / 2 + 10); });
    ExpectBuffer(lTwice, L"", 3);
}

TEST(BufferedWStringImpl, DefaultConstructor)
{
    const BufferedWStringImpl lBuffer;
    EXPECT_EQ(lBuffer.size(), 0U);
    EXPECT_EQ(lBuffer.capacity(), 524288U);
    EXPECT_STREQ(lBuffer.c_str(), L"");
}
