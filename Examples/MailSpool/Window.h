// When a route is open: from the command line to a QTalBase::DeliveryWindow, and from there to a plan.

#ifndef MAILSPOOL_WINDOW_H
#define MAILSPOOL_WINDOW_H

#include "JobBag.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace MailSpool
{

constexpr unsigned int gHoursOfDay = 24;

// "22-6" closes every route from 22:00 to 6:59, "12" from 12:00 to 12:59, "north.example=22-6" that route alone.
struct WindowRule
{
    std::wstring mRoute; // empty for every route
    unsigned int mStart = 0;
    unsigned int mEnd = 0;
};

// Returns nothing for a text that is no rule. An hour above 23 is left for the delivery window to refuse.
std::optional<WindowRule> ParseWindowRule(std::string_view iText);

// Returns nothing for a text that is no number of at most two digits.
std::optional<unsigned int> ParseHour(std::string_view iText);

// The window of a route: open but for the hours that the rules for it close. Throws the library's
// DeliveryWindowUserErrorException for an hour above 23.
WindowPtr MakeWindow(const std::wstring& iRoute, const std::vector<WindowRule>& iRules);

// How many hours to wait from an hour (0 to 23) until the window is open: 0 when it is, nothing when it never is.
std::optional<unsigned int> GetWait(const QTalBase::DeliveryWindow& iWindow, unsigned int iHour);

// The day as 24 characters: '#' for an hour in which the window is open, '.' for one in which it is closed.
std::wstring DrawDay(const QTalBase::DeliveryWindow& iWindow);

} // namespace MailSpool

#endif
