#include "Commands.h"

#include "CommandSupport.h"
#include "Compare.h"
#include "Display.h"
#include "Plan.h"
#include "Source.h"
#include "Spool.h"
#include "Table.h"

#include "TalBase/Guid.h"

#include <ctime>
#include <map>

namespace MailSpool
{

namespace
{

JobSettings MakeSettings(const Options& iOptions, const MailMessage& iMessage, const std::filesystem::path& iFile)
{
    JobSettings lSettings;
    lSettings.mJob = QTalBase::Guid::GenerateUniqueGUID();
    lSettings.mQueued = QDataType::DateTime::Now();
    lSettings.mSource = GetSourceName(iFile);
    lSettings.mWindow = MakeWindow(GetRoute(iMessage), iOptions.mWindows);
    lSettings.mUser = iOptions.mUser;
    lSettings.mPassword = iOptions.mPassword;
    return lSettings;
}

std::wstring GetNextHop(const QTalBase::PropertyBag& iJob)
{
    const BagPtr lTransport = iJob.GetPropertyBag(gTransportName);
    return GetText(*lTransport, gProtocolName) + L"://" + GetText(*lTransport, gHostName) + L":" +
           GetText(*lTransport, gPortName);
}

void AddJobRow(const QTalBase::PropertyBag& iJob, Table& oTable)
{
    const BagPtr lShown = MakeDisplayBag(iJob);
    oTable.AddRow({GetText(*lShown, gJobName), GetText(*lShown, gQueuedName).substr(0, 19), GetText(*lShown, gSizeName),
                   GetText(*lShown, gAttemptsName), GetText(*lShown, gSenderName), GetText(*lShown, gRecipientName),
                   GetText(*lShown, gSubjectName), GetNextHop(*lShown)});
}

using JobsBySource = std::multimap<std::wstring, BagPtr>;

int VerifyFile(const std::filesystem::path& iFile, const JobsBySource& iJobs, std::ostream& oOut)
{
    const MailMessage lMessage = ReadMessage(iFile);
    const BagPtr lFresh = MakeJobBag(lMessage, JobSettings());
    const auto [lFirst, lLast] = iJobs.equal_range(GetSourceName(iFile));
    if (lFirst == lLast)
    {
        oOut << "missing    " << ShowPath(iFile) << '\n';
        return ExitDamage;
    }
    int lStatus = ExitGood;
    for (auto lJob = lFirst; lJob != lLast; ++lJob)
    {
        const std::vector<std::wstring> lDifferences = FindDifferences(*lFresh, lMessage, *lJob->second);
        oOut << (lDifferences.empty() ? "same       " : "different  ") << ShowPath(iFile) << '\n';
        for (const std::wstring& lDifference : lDifferences)
        {
            oOut << "           " << ToUtf8(MakePrintable(lDifference)) << '\n';
            lStatus = ExitDamage;
        }
    }
    return lStatus;
}

// A night is a night where the spooler stands, so the hour is the local one.
unsigned int GetHourNow()
{
    const std::time_t lNow = std::time(nullptr);
    std::tm lLocal = {};
    ::localtime_r(&lNow, &lLocal);
    return static_cast<unsigned int>(lLocal.tm_hour);
}

} // namespace

int Add(const Options& iOptions, std::ostream& oOut, std::ostream& oErr)
{
    const std::vector<std::filesystem::path> lFiles = FindFiles(iOptions.mPaths);
    std::size_t lAdded = 0;
    const int lStatus = Attempt(iOptions.mSpool.string(), oErr, [&] {
        SpoolChange lSpool(iOptions.mSpool);
        const Outcome lOutcome = DoEachFile("reading message", lFiles, oErr, [&](const std::filesystem::path& iFile) {
            const MailMessage lMessage = ReadMessage(iFile);
            lSpool.Add(*MakeJobBag(lMessage, MakeSettings(iOptions, lMessage, iFile)));
            return int{ExitGood};
        });
        lSpool.Commit();
        lAdded = lOutcome.mGood;
        return lOutcome.mStatus;
    });
    oOut << Count(lFiles.size(), "message") << " in, " << lAdded << " added\n";
    return lStatus;
}

int List(const Options& iOptions, std::ostream& oOut, std::ostream& oErr)
{
    const SpoolContents lContents = ReadSpool(iOptions.mSpool);
    Table lTable({{L"Job", 36},
                  {L"Queued (UTC)", 19},
                  {L"Size", 10, true},
                  {L"Tries", 5, true},
                  {L"Sender", 28},
                  {L"Recipient", 28},
                  {L"Subject", 40},
                  {L"Next hop", 32}});
    const Outcome lOutcome = DoEachJob("showing job", iOptions.mSpool, lContents, oErr,
                                       [&](const BagPtr& iJob) { AddJobRow(*iJob, lTable); });
    lTable.Print(oOut);
    oOut << Count(lOutcome.mGood, "job") << " listed, " << lContents.mJobs->GetCount() - lOutcome.mGood << " damaged"
         << (lContents.mDamage.empty() ? "" : ", the rest of the spool cannot be read") << '\n';
    return lOutcome.mStatus;
}

int Verify(const Options& iOptions, std::ostream& oOut, std::ostream& oErr)
{
    const std::vector<std::filesystem::path> lFiles = FindFiles(iOptions.mPaths);
    JobsBySource lJobs;
    const Outcome lRead = DoEachJob("reading job", iOptions.mSpool, ReadSpool(iOptions.mSpool), oErr,
                                    [&](const BagPtr& iJob) { lJobs.emplace(GetText(*iJob, gSourceName), iJob); });
    const Outcome lOutcome = DoEachFile("comparing message", lFiles, oErr, [&](const std::filesystem::path& iFile) {
        return VerifyFile(iFile, lJobs, oOut);
    });
    oOut << Count(lFiles.size(), "message") << ", " << lOutcome.mGood << " verified\n";
    return std::max(lRead.mStatus, lOutcome.mStatus);
}

int ShowPlan(const Options& iOptions, std::ostream& oOut, std::ostream& oErr)
{
    Plan lPlan(iOptions.mHour.value_or(GetHourNow()));
    const Outcome lOutcome = DoEachJob("planning job", iOptions.mSpool, ReadSpool(iOptions.mSpool), oErr,
                                       [&](const BagPtr& iJob) { lPlan.Add(*iJob); });
    lPlan.Print(oOut);
    return lOutcome.mStatus;
}

} // namespace MailSpool
