// What scans and copies texts in whole steps touches nothing outside them: the texts lie between pages that nobody may
// read or write, once at the beginning of their own and once at its end.

#include "TalBase/PrivateSource/RowCutter.h"
#include "TalBase/PrivateSource/TextCutters.h"
#include "TalBase/PrivateSource/TextPrimitives.h"

#include "Tests/Support/GuardedPage.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

using QTalBase::Found;
using QTalBase::LongCutter;
using QTalBase::RowCutter;
using QTalBase::ShortCutter;

namespace
{

const std::size_t gLongest = 100;

template <class Cutter>
std::size_t CountDelimiters(Cutter iCutter)
{
    std::size_t lCount = 0;
    while (iCutter.Next() != Found::Nothing)
    {
        ++lCount;
    }
    return lCount;
}

} // namespace

class TextBounds : public testing::TestWithParam<bool>
{
};

TEST_P(TextBounds, CuttersReadNothingOutsideTheText)
{
    const Support::GuardedPage lPage;
    for (std::size_t lLength = 1; lLength < gLongest; ++lLength)
    {
        std::wstring lText;
        while (lText.size() < lLength)
        {
            lText += L"[[+n***]]+++";
        }
        lText.resize(lLength);
        const std::wstring_view lPut = lPage.Put(lText, GetParam());
        const std::size_t lExpected = CountDelimiters(LongCutter(lText, L"[[", L"]]"));
        EXPECT_EQ(CountDelimiters(ShortCutter(lPut, L"[[", L"]]")), lExpected) << lLength;
        EXPECT_EQ(CountDelimiters(LongCutter(lPut, L"[[", L"]]")), lExpected) << lLength;
        if (RowCutter::MayCut(lPut, L"[[", L"]]"))
        {
            EXPECT_EQ(CountDelimiters(RowCutter(lPut, L"[[", L"]]")), lExpected) << lLength;
        }
        EXPECT_EQ(CountDelimiters(ShortCutter(lPut, L"+++[[+n", L"***]]")),
                  CountDelimiters(LongCutter(lPut, L"+++[[+n", L"***]]")));
    }
}

TEST_P(TextBounds, PrimitivesTouchNothingOutsideTheText)
{
    const Support::GuardedPage lSource;
    const Support::GuardedPage lTarget;
    for (std::size_t lLength = 0; lLength < gLongest; ++lLength)
    {
        const std::wstring_view lText = lSource.Put(std::wstring(lLength, L'x'), GetParam());
        wchar_t* lCopy = lTarget.Place<wchar_t>(lLength, GetParam());
        EXPECT_EQ(QTalBase::CopyText(lText, lCopy), lCopy + lLength);
        EXPECT_TRUE(QTalBase::AreEqualTexts(lText, std::wstring_view(lCopy, lLength)));
        EXPECT_FALSE(QTalBase::Contains(lText, L'&'));
        EXPECT_EQ(QTalBase::FindCharacter(lText, L'&'), lLength);
    }
}

INSTANTIATE_TEST_SUITE_P(BesideAGuard, TextBounds, testing::Bool(),
                         [](const auto& iInfo) { return iInfo.param ? "AtTheEnd" : "AtTheBeginning"; });
