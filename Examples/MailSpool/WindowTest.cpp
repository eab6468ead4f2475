#include "Window.h"

#include <gtest/gtest.h>

namespace MailSpool
{

TEST(Window, ParseHourTakesOneOrTwoDigits)
{
    EXPECT_EQ(ParseHour("0"), 0u);
    EXPECT_EQ(ParseHour("07"), 7u);
    EXPECT_EQ(ParseHour("99"), 99u);
    for (const std::string_view lText : {"", "007", "-1", "1x", " 1"})
    {
        EXPECT_EQ(ParseHour(lText), std::nullopt) << lText;
    }
}

TEST(Window, ParseWindowRuleReadsRangeHourAndRoute)
{
    const auto lRead = [](std::string_view iText) {
        const std::optional<WindowRule> lRule = ParseWindowRule(iText);
        return lRule ? ToUtf8(lRule->mRoute) + "|" + std::to_string(lRule->mStart) + "|" + std::to_string(lRule->mEnd)
                     : std::string("none");
    };
    EXPECT_EQ(lRead("22-6"), "|22|6");
    EXPECT_EQ(lRead("12"), "|12|12");
    EXPECT_EQ(lRead("North.Example=9-17"), "north.example|9|17");
    EXPECT_EQ(lRead("9-99"), "|9|99");
    for (const std::string_view lText : {"", "-", "22-", "-6", "a-b", "=22-6", "x=", "22-6-7", "22:6"})
    {
        EXPECT_EQ(lRead(lText), "none") << lText;
    }
}

TEST(Window, MakeWindowClosesWhatTheRulesForTheRouteSay)
{
    const std::vector<WindowRule> lRules = {{L"", 22, 2}, {L"a.example", 12, 13}, {L"b.example", 0, 23}};
    EXPECT_EQ(DrawDay(*MakeWindow(L"a.example", lRules)), L"...#########..########..");
    EXPECT_EQ(DrawDay(*MakeWindow(L"c.example", lRules)), L"...###################..");
    EXPECT_EQ(DrawDay(*MakeWindow(L"c.example", {})), L"########################");
    EXPECT_THROW(MakeWindow(L"", {{L"", 22, 24}}), QTalBase::DeliveryWindowUserErrorException);
}

TEST(Window, GetWaitGoesPastMidnight)
{
    const WindowPtr lNight = MakeWindow(L"", {{L"", 22, 6}});
    EXPECT_EQ(GetWait(*lNight, 21), 0u);
    EXPECT_EQ(GetWait(*lNight, 22), 9u);
    EXPECT_EQ(GetWait(*lNight, 6), 1u);
    EXPECT_EQ(GetWait(*lNight, 7), 0u);
    EXPECT_EQ(GetWait(*MakeWindow(L"", {{L"", 0, 23}}), 5), std::nullopt);
}

} // namespace MailSpool
