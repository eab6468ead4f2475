// What the commands share: doing the same for many things, one of which may be damaged.

#ifndef MAILSPOOL_COMMANDSUPPORT_H
#define MAILSPOOL_COMMANDSUPPORT_H

#include "Commands.h"
#include "Progress.h"
#include "Spool.h"

#include <algorithm>
#include <functional>
#include <numeric>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

namespace MailSpool
{

// "1 job", "2 jobs"
std::string Count(std::size_t iCount, const std::string& iWhat);

// A path as it may be shown.
std::string ShowPath(const std::filesystem::path& iPath);

// Does one piece of work; when it fails, reports it under a name, made fit to be shown, and returns the exit status for
// the kind of failure.
int Attempt(const std::string& iName, std::ostream& oErr, const std::function<int()>& iWork);

struct Outcome
{
    int mStatus = ExitGood; // the worst of all
    std::size_t mGood = 0;  // how many went well
};

// Does the same for each item, with progress; one that fails does not keep the others from being done.
template <class Item, class NameOf, class Work>
Outcome DoEach(const char* ipAction, const std::vector<Item>& iItems, std::ostream& oErr, NameOf iNameOf, Work iWork)
{
    Outcome lOutcome;
    Progress lProgress(ipAction, iItems.size());
    for (const Item& lItem : iItems)
    {
        std::ostringstream lReport;
        const int lStatus = Attempt(iNameOf(lItem), lReport, [&] { return iWork(lItem); });
        if (!lReport.str().empty())
        {
            lProgress.Hide();
            oErr << lReport.str();
        }
        lOutcome.mStatus = std::max(lOutcome.mStatus, lStatus);
        lOutcome.mGood += lStatus == ExitGood ? 1 : 0;
        lProgress.Step();
    }
    return lOutcome;
}

// Does the same for each file.
template <class Work>
Outcome DoEachFile(const char* ipAction, const std::vector<std::filesystem::path>& iFiles, std::ostream& oErr,
                   Work iWork)
{
    return DoEach(
        ipAction, iFiles, oErr, [](const std::filesystem::path& iFile) { return iFile.string(); }, iWork);
}

// Reports a damaged spool and how many jobs were read before the damage. Returns the exit status.
int ReportDamage(const std::filesystem::path& iSpool, const SpoolContents& iContents, std::ostream& oErr);

// Does the same for each job of a spool; a job that is damaged is reported by its name, and so is a damaged spool.
template <class Work>
Outcome DoEachJob(const char* ipAction, const std::filesystem::path& iSpool, const SpoolContents& iContents,
                  std::ostream& oErr, Work iWork)
{
    std::vector<unsigned int> lIndexes(iContents.mJobs->GetCount());
    std::iota(lIndexes.begin(), lIndexes.end(), 0U);
    Outcome lOutcome = DoEach(
        ipAction, lIndexes, oErr,
        [&](unsigned int iIndex) {
            return iSpool.string() + ": job " + std::to_string(iIndex + 1) + ", " +
                   ToUtf8(iContents.mJobs->GetName(iIndex));
        },
        [&](unsigned int iIndex) {
            iWork(GetJob(*iContents.mJobs, iIndex));
            return int{ExitGood};
        });
    lOutcome.mStatus = std::max(lOutcome.mStatus, ReportDamage(iSpool, iContents, oErr));
    return lOutcome;
}

} // namespace MailSpool

#endif
