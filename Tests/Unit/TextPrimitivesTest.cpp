// The primitives for short texts, at every length around the steps in which they work.

#include "TalBase/PrivateSource/TextPrimitives.h"

#include <gtest/gtest.h>
#include <string>

namespace
{

const std::size_t gLongest = 150;

std::wstring Sample(std::size_t iLength)
{
    std::wstring lText;
    for (std::size_t lIndex = 0; lIndex < iLength; ++lIndex)
    {
        lText += static_cast<wchar_t>(L'a' + lIndex % 26);
    }
    return lText;
}

} // namespace

TEST(TextPrimitives, TextsThatDifferAnywhereAreNotEqual)
{
    for (std::size_t lLength = 0; lLength < gLongest; ++lLength)
    {
        const std::wstring lText = Sample(lLength);
        const std::wstring lSame = lText + L"x"; // what lies behind does not count
        EXPECT_TRUE(QTalBase::AreEqualTexts(lText.data(), lSame.data(), lLength)) << lLength;
        EXPECT_FALSE(QTalBase::AreEqualTexts(std::wstring_view(lText), std::wstring_view(lSame))) << lLength;
        for (std::size_t lPlace = 0; lPlace < lLength; ++lPlace)
        {
            std::wstring lOther = lText;
            lOther[lPlace] = L'#';
            EXPECT_FALSE(QTalBase::AreEqualTexts(lText, lOther)) << lLength << " at " << lPlace;
        }
    }
}

TEST(TextPrimitives, CopyTextCopiesAllAndNothingElse)
{
    for (std::size_t lLength = 0; lLength < gLongest; ++lLength)
    {
        const std::wstring lText = Sample(lLength);
        std::wstring lTarget(lLength + 8, L'-');
        EXPECT_EQ(QTalBase::CopyText(lText, lTarget.data() + 4), lTarget.data() + 4 + lLength);
        EXPECT_EQ(lTarget, L"----" + lText + L"----") << lLength;
    }
}

TEST(TextPrimitives, ACharacterIsFoundAtEveryPlaceAndNowhereElse)
{
    for (std::size_t lLength = 0; lLength < gLongest; ++lLength)
    {
        const std::wstring lText = Sample(lLength);
        const std::wstring lBehind = lText + L"&";
        const std::wstring_view lView(lBehind.data(), lLength);
        EXPECT_FALSE(QTalBase::Contains(lView, L'&')) << lLength;
        EXPECT_EQ(QTalBase::FindCharacter(lView, L'&'), lLength);
        for (std::size_t lPlace = 0; lPlace < lLength; ++lPlace)
        {
            std::wstring lOther = lText;
            lOther[lPlace] = L'&';
            EXPECT_TRUE(QTalBase::Contains(lOther, L'&')) << lLength << " at " << lPlace;
            EXPECT_EQ(QTalBase::FindCharacter(lOther, L'&'), lPlace) << lLength;
        }
    }
}
