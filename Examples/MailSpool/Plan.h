// Which jobs may go now and when the others may, as a chart of the day and a table of the jobs.

#ifndef MAILSPOOL_PLAN_H
#define MAILSPOOL_PLAN_H

#include "JobBag.h"

#include <map>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace MailSpool
{

class Plan
{
public:
    // iHour: the hour (0 to 23) that is now.
    explicit Plan(unsigned int iHour);

    // Takes a job into the plan. Throws what GetWindow throws.
    void Add(const QTalBase::PropertyBag& iJob);

    // Writes the chart, a row for each window of each route; the jobs, those that go first first; and the numbers.
    void Print(std::ostream& oStream) const;

private:
    struct PlannedJob
    {
        std::optional<unsigned int> mWait; // hours; nothing: never
        std::wstring mJob;
        std::wstring mRecipient;
        std::wstring mSubject;
    };

    std::wstring GetDeparture(const std::optional<unsigned int>& iWait) const;
    void PrintChart(std::ostream& oStream) const;
    void PrintJobs(std::ostream& oStream) const;

    unsigned int mHour;
    std::map<std::pair<std::wstring, std::wstring>, unsigned int> mWindows; // route and day: number of jobs
    std::vector<PlannedJob> mJobs;
};

} // namespace MailSpool

#endif
