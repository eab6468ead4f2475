// Which runs of text are read as they were written.

#include "TalBase/PrivateSource/TextRule.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

using QTalBase::RunGuard;
using QTalBase::TextFaultKind;
using QTalBase::TextRule;

namespace
{

using Texts = std::vector<std::wstring>;

// All texts of up to so many of the letters a and b.
Texts TextsUpTo(std::size_t iLength)
{
    Texts lTexts{L""};
    for (std::size_t lIndex = 0; lTexts[lIndex].size() < iLength; ++lIndex)
    {
        lTexts.push_back(lTexts[lIndex] + L"a");
        lTexts.push_back(lTexts[lIndex] + L"b");
    }
    lTexts.erase(lTexts.begin());
    return lTexts;
}

bool AreAllowed(const std::wstring& iBegin, const std::wstring& iEnd)
{
    return iBegin.find(iEnd) == std::wstring::npos && iEnd.find(iBegin) == std::wstring::npos;
}

void ExpectGuardFindsWhatSearchingFinds(const std::wstring& iBegin, const std::wstring& iEnd, const Texts& iRuns)
{
    RunGuard lGuard(iBegin, iEnd);
    for (const std::wstring& lRun : iRuns)
    {
        for (const std::size_t lFollower : {0U, 1U})
        {
            const std::wstring lText = lRun + (lFollower == 0 ? iBegin : iEnd);
            const bool lIsKept = std::min(lText.find(iBegin), lText.find(iEnd)) == lRun.size();
            ASSERT_EQ(lGuard.IsKept(lRun, lFollower), lIsKept)
                << testing::PrintToString(iBegin) << " " << testing::PrintToString(iEnd) << " "
                << testing::PrintToString(lRun);
        }
    }
}

} // namespace

TEST(RunGuard, FindsEveryDelimiterThatBeginsTooEarly)
{
    const Texts lRuns = TextsUpTo(5);
    const Texts lDelimiters = TextsUpTo(4);
    for (const std::wstring& lBegin : lDelimiters)
    {
        for (const std::wstring& lEnd : lDelimiters)
        {
            if (AreAllowed(lBegin, lEnd))
            {
                ExpectGuardFindsWhatSearchingFinds(lBegin, lEnd, lRuns);
            }
        }
    }
}

TEST(RunGuard, FindsLongDelimitersToo)
{
    const std::wstring lLong(20, L'a');
    const Texts lRuns{L"a", L"ba", L"ab", lLong, lLong + L"b", L"b" + lLong, std::wstring(19, L'a'), L"bab", L"xaxa"};
    ExpectGuardFindsWhatSearchingFinds(lLong + L"b", L"b" + lLong, lRuns);
    ExpectGuardFindsWhatSearchingFinds(lLong + L"b", L"c", lRuns);
    ExpectGuardFindsWhatSearchingFinds(L"x" + lLong + L"x", lLong + L"c", lRuns);
}

TEST(TextRule, NamesThatBeginLikeAHeader)
{
    const TextRule lUsual(L"++++", L"***", true);
    EXPECT_TRUE(lUsual.MayBeginLikeHeader(L"EndDelimiter"));
    EXPECT_TRUE(lUsual.MayBeginLikeHeader(L"EndDelimiters"));
    EXPECT_FALSE(lUsual.MayBeginLikeHeader(L"EndDelimite"));
    EXPECT_FALSE(lUsual.MayBeginLikeHeader(L"End"));
    EXPECT_FALSE(lUsual.MayBeginLikeHeader(L"enddelimiter"));
    EXPECT_FALSE(lUsual.MayBeginLikeHeader(L"TheEndDelimiter"));
    const TextRule lGoesOn(L"Delim", L"#", false);
    EXPECT_TRUE(lGoesOn.MayBeginLikeHeader(L"End")); // what follows the delimiter decides
    EXPECT_FALSE(lGoesOn.MayBeginLikeHeader(L"EndDelimite"));
    const TextRule lGoesFurther(L"DelimiterX", L"#", false);
    EXPECT_TRUE(lGoesFurther.MayBeginLikeHeader(L"End"));
    EXPECT_FALSE(lGoesFurther.MayBeginLikeHeader(L"E"));
}

TEST(TextRule, ZeroCharactersAreToldBeforeEscapes)
{
    TextRule lRule(L"++++", L"***", true);
    EXPECT_EQ(lRule.CheckValue(std::wstring_view(L"a*\0", 3)), TextFaultKind::HoldsZero);
    EXPECT_EQ(lRule.CheckValue(L"*a"), TextFaultKind::NotEscaped);
    EXPECT_EQ(lRule.CheckName(std::wstring_view(L"a\0", 2)), TextFaultKind::HoldsZero);
    EXPECT_EQ(lRule.CheckName(L"a*"), TextFaultKind::None);
}
