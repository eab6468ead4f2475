#include "Plan.h"

#include "Charset.h"
#include "Table.h"
#include "Window.h"

#include <algorithm>

namespace MailSpool
{

namespace
{

// A label every three hours, each at the column of its hour.
constexpr wchar_t gHours[] = L"0  3  6  9  12 15 18 21 ";

std::wstring WriteHour(unsigned int iHour)
{
    return (iHour < 10 ? L"0" : L"") + std::to_wstring(iHour) + L":00";
}

} // namespace

Plan::Plan(unsigned int iHour) : mHour(iHour) {}

void Plan::Add(const QTalBase::PropertyBag& iJob)
{
    const WindowPtr lWindow = GetWindow(iJob);
    ++mWindows[{GetText(iJob, gRouteName), DrawDay(*lWindow)}];
    mJobs.push_back({GetWait(*lWindow, mHour), GetText(iJob, gJobName), GetText(iJob, gRecipientName),
                     GetText(iJob, gSubjectName)});
}

void Plan::Print(std::ostream& oStream) const
{
    PrintChart(oStream);
    oStream << '\n';
    PrintJobs(oStream);
    std::size_t lNow = 0;
    std::size_t lNever = 0;
    for (const PlannedJob& lJob : mJobs)
    {
        lNow += lJob.mWait == 0U ? 1 : 0;
        lNever += lJob.mWait ? 0 : 1;
    }
    oStream << "at " << ToUtf8(WriteHour(mHour)) << ": " << lNow << " may go now, " << mJobs.size() - lNow - lNever
            << " later, " << lNever << " never\n";
}

std::wstring Plan::GetDeparture(const std::optional<unsigned int>& iWait) const
{
    if (!iWait)
    {
        return L"never";
    }
    return *iWait == 0 ? L"now" : L"at " + WriteHour((mHour + *iWait) % gHoursOfDay);
}

void Plan::PrintChart(std::ostream& oStream) const
{
    Table lChart({{L"Route", 40}, {L"Jobs", 8, true}, {gHours, gHoursOfDay}});
    for (const auto& [lWindow, lCount] : mWindows)
    {
        lChart.AddRow({lWindow.first, std::to_wstring(lCount), lWindow.second});
    }
    lChart.AddRow({L"# open, . closed", L"now", std::wstring(mHour, L' ') + L"^"});
    lChart.Print(oStream);
}

void Plan::PrintJobs(std::ostream& oStream) const
{
    std::vector<PlannedJob> lJobs = mJobs;
    std::stable_sort(lJobs.begin(), lJobs.end(), [](const PlannedJob& iFirst, const PlannedJob& iSecond) {
        return iFirst.mWait.value_or(gHoursOfDay) < iSecond.mWait.value_or(gHoursOfDay); // a whole day: never
    });
    Table lTable({{L"Goes", 8}, {L"Job", 36}, {L"Recipient", 36}, {L"Subject", 40}});
    for (const PlannedJob& lJob : lJobs)
    {
        lTable.AddRow({GetDeparture(lJob.mWait), lJob.mJob, lJob.mRecipient, lJob.mSubject});
    }
    lTable.Print(oStream);
}

} // namespace MailSpool
