#include "Commands.h"

#include "Compare.h"
#include "Display.h"
#include "Errors.h"
#include "Progress.h"
#include "Source.h"
#include "Spool.h"
#include "Table.h"

#include <algorithm>
#include <functional>
#include <map>
#include <ostream>
#include <sstream>

namespace MailSpool
{

namespace
{

// Does one piece of work; when it fails, reports it under a name and returns the exit status for the kind of failure.
int Attempt(const std::string& iName, std::ostream& oErr, const std::function<int()>& iWork)
{
    try
    {
        return iWork();
    }
    catch (const IoError&) // its text names the file already
    {
        oErr << "mail-spool: " << DescribeException() << '\n';
        return ExitTrouble;
    }
    catch (...)
    {
        const std::string lName = ToUtf8(MakePrintable(DecodeBytes(iName).mText));
        oErr << "mail-spool: " << lName << ": " << DescribeException() << '\n';
        return ExitDamage;
    }
}

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
        if (lStatus != ExitGood)
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

std::string Count(std::size_t iCount, const std::string& iWhat)
{
    return std::to_string(iCount) + " " + iWhat + (iCount == 1 ? "" : "s");
}

JobSettings MakeSettings(const Options& iOptions, const std::filesystem::path& iFile)
{
    return {GetSourceName(iFile), QDataType::DateTime::Now(), iOptions.mUser, iOptions.mPassword};
}

std::wstring GetNextHop(const QTalBase::PropertyBag& iJob)
{
    const BagPtr lTransport = iJob.GetPropertyBag(gTransportName);
    return GetText(*lTransport, gProtocolName) + L"://" + GetText(*lTransport, gHostName) + L":" +
           GetText(*lTransport, gPortName);
}

void AddJobRow(const std::string& iName, const QTalBase::PropertyBag& iJob, Table& oTable)
{
    const BagPtr lShown = MakeDisplayBag(iJob);
    oTable.AddRow({DecodeBytes(iName).mText, GetText(*lShown, gQueuedName).substr(0, 19), GetText(*lShown, gSizeName),
                   GetText(*lShown, gAttemptsName), GetText(*lShown, gSenderName), GetText(*lShown, gRecipientName),
                   GetText(*lShown, gSubjectName), GetNextHop(*lShown)});
}

using JobsBySource = std::multimap<std::wstring, BagPtr>;

// Reads every job of the spool and hands it on with the name of its file.
template <class Use>
Outcome ReadEachJob(const Spool& iSpool, const std::vector<std::string>& iNames, std::ostream& oErr, Use iUse)
{
    return DoEach(
        "reading job", iNames, oErr, [&](const std::string& iName) { return iSpool.GetPath(iName).string(); },
        [&](const std::string& iName) {
            iUse(iName, iSpool.Read(iName));
            return ExitGood;
        });
}

int VerifyFile(const std::filesystem::path& iFile, const JobsBySource& iJobs, std::ostream& oOut)
{
    const MailMessage lMessage = ReadMessage(iFile);
    const JobSettings lSettings{GetSourceName(iFile), {}, {}, {}};
    const BagPtr lFresh = MakeJobBag(lMessage, lSettings);
    const auto lRange = iJobs.equal_range(lSettings.mSource);
    const std::string lShownName = ToUtf8(MakePrintable(DecodeBytes(iFile.string()).mText));
    if (lRange.first == lRange.second)
    {
        oOut << "missing    " << lShownName << '\n';
        return ExitDamage;
    }
    int lStatus = ExitGood;
    for (auto lJob = lRange.first; lJob != lRange.second; ++lJob)
    {
        const std::vector<std::wstring> lDifferences = FindDifferences(*lFresh, lMessage, *lJob->second);
        oOut << (lDifferences.empty() ? "same       " : "different  ") << lShownName << '\n';
        for (const std::wstring& lDifference : lDifferences)
        {
            oOut << "           " << ToUtf8(MakePrintable(lDifference)) << '\n';
            lStatus = ExitDamage;
        }
    }
    return lStatus;
}

} // namespace

int Add(const Options& iOptions, std::ostream& oOut, std::ostream& oErr)
{
    const std::vector<std::filesystem::path> lFiles = FindFiles(iOptions.mPaths);
    Spool lSpool(iOptions.mSpool);
    lSpool.Create();
    const Outcome lOutcome = DoEach(
        "adding message", lFiles, oErr, [](const std::filesystem::path& iFile) { return iFile.string(); },
        [&](const std::filesystem::path& iFile) {
            lSpool.Add(*MakeJobBag(ReadMessage(iFile), MakeSettings(iOptions, iFile)));
            return ExitGood;
        });
    oOut << Count(lFiles.size(), "message") << " in, " << lOutcome.mGood << " added\n";
    return lOutcome.mStatus;
}

int List(const Options& iOptions, std::ostream& oOut, std::ostream& oErr)
{
    const Spool lSpool(iOptions.mSpool);
    const std::vector<std::string> lNames = lSpool.GetNames();
    Table lTable({{L"Job", 48},
                  {L"Queued (UTC)", 19},
                  {L"Size", 10, true},
                  {L"Tries", 5, true},
                  {L"Sender", 28},
                  {L"Recipient", 28},
                  {L"Subject", 40},
                  {L"Next hop", 32}});
    const Outcome lOutcome = ReadEachJob(
        lSpool, lNames, oErr, [&](const std::string& iName, const BagPtr& iJob) { AddJobRow(iName, *iJob, lTable); });
    lTable.Print(oOut);
    oOut << Count(lOutcome.mGood, "job") << " listed, " << lNames.size() - lOutcome.mGood << " damaged\n";
    return lOutcome.mStatus;
}

int Verify(const Options& iOptions, std::ostream& oOut, std::ostream& oErr)
{
    const std::vector<std::filesystem::path> lFiles = FindFiles(iOptions.mPaths);
    const Spool lSpool(iOptions.mSpool);
    JobsBySource lJobs;
    const Outcome lRead = ReadEachJob(lSpool, lSpool.GetNames(), oErr, [&](const std::string&, const BagPtr& iJob) {
        lJobs.emplace(GetText(*iJob, gSourceName), iJob);
    });
    const Outcome lOutcome = DoEach(
        "comparing message", lFiles, oErr, [](const std::filesystem::path& iFile) { return iFile.string(); },
        [&](const std::filesystem::path& iFile) { return VerifyFile(iFile, lJobs, oOut); });
    oOut << Count(lFiles.size(), "message") << ", " << lOutcome.mGood << " verified\n";
    return std::max(lRead.mStatus, lOutcome.mStatus);
}

} // namespace MailSpool
