#include "Window.h"

#include <algorithm>

namespace MailSpool
{

std::optional<unsigned int> ParseHour(std::string_view iText)
{
    if (iText.empty() || iText.size() > 2)
    {
        return {};
    }
    unsigned int lHour = 0;
    for (const char lCharacter : iText)
    {
        if (lCharacter < '0' || lCharacter > '9')
        {
            return {};
        }
        lHour = lHour * 10 + static_cast<unsigned int>(lCharacter - '0');
    }
    return lHour;
}

std::optional<WindowRule> ParseWindowRule(std::string_view iText)
{
    WindowRule lRule;
    const std::size_t lEqual = iText.find('=');
    if (lEqual != iText.npos)
    {
        lRule.mRoute = ToLower(DecodeBytes(iText.substr(0, lEqual)).mText);
        iText.remove_prefix(lEqual + 1);
    }
    const std::size_t lDash = iText.find('-');
    const std::optional<unsigned int> lStart = ParseHour(iText.substr(0, lDash));
    const std::optional<unsigned int> lEnd = lDash == iText.npos ? lStart : ParseHour(iText.substr(lDash + 1));
    if (!lStart || !lEnd || lEqual == 0)
    {
        return {};
    }
    lRule.mStart = *lStart;
    lRule.mEnd = *lEnd;
    return lRule;
}

WindowPtr MakeWindow(const std::wstring& iRoute, const std::vector<WindowRule>& iRules)
{
    WindowPtr lWindow(QTalBase::CreateDeliveryWindow());
    for (const WindowRule& lRule : iRules)
    {
        if (lRule.mRoute.empty() || lRule.mRoute == iRoute)
        {
            lWindow->DisableTimeBlock(lRule.mStart, lRule.mEnd);
        }
    }
    return lWindow;
}

std::optional<unsigned int> GetWait(const QTalBase::DeliveryWindow& iWindow, unsigned int iHour)
{
    for (unsigned int lWait = 0; lWait < gHoursOfDay; ++lWait)
    {
        if (iWindow.IsEnabled((iHour + lWait) % gHoursOfDay))
        {
            return lWait;
        }
    }
    return {};
}

std::wstring DrawDay(const QTalBase::DeliveryWindow& iWindow)
{
    std::wstring lDay;
    for (unsigned int lHour = 0; lHour < gHoursOfDay; ++lHour)
    {
        lDay += iWindow.IsEnabled(lHour) ? L'#' : L'.';
    }
    return lDay;
}

} // namespace MailSpool
