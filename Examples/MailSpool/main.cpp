// mail-spool: keeps messages as jobs for delivery, each a property bag.

#include "Commands.h"
#include "Display.h"

#include "QBase/Message.h"
#include "TalBase/Initializer.h"

#include <cstdlib>
#include <iostream>
#include <string_view>

namespace
{

// The program is one client of the library and holds it up from its start to its end.
const QTalBase::Initializer gInitializer;

constexpr char gUsage[] =
    "usage: mail-spool add    --spool FILE [--window RANGE]... MESSAGE|FOLDER...  keep a job for each message\n"
    "       mail-spool list   --spool FILE                                       show the jobs\n"
    "       mail-spool verify --spool FILE MESSAGE|FOLDER...                     compare jobs and messages\n"
    "       mail-spool plan   --spool FILE [--at HOUR]                           show when which job may go\n"
    "       mail-spool export --spool FILE FOLDER                                write each job as a text file\n"
    "       mail-spool import --spool FILE TEXT|FOLDER...                        read such text files\n"
    "\n"
    "A FOLDER to read stands for all files in it and below it, hidden ones left out. A message may begin with an\n"
    "mbox \"From \" line. RANGE closes hours of the day, both ends included: 22-6 from 22:00 to 6:59, 12 from 12:00\n"
    "to 12:59, ROUTE=22-6 for one route alone; a job's route is the domain of its recipient. HOUR is 0 to 23,\n"
    "without it the hour that is now. The account for the next hop comes from the environment: MAIL_SPOOL_FTP_USER\n"
    "and MAIL_SPOOL_FTP_PASSWORD (without them: anonymous).\n"
    "Exit status: 0 good, 1 something is damaged or different, 2 wrong usage or the system refused.\n";

class UsageError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

struct Command
{
    const char* mName;
    int (*mRun)(const MailSpool::Options&, std::ostream&, std::ostream&);
    std::size_t mMinPaths;
    std::size_t mMaxPaths;
    std::string_view mOption; // that it takes besides --spool
};

constexpr std::size_t gAny = static_cast<std::size_t>(-1);
constexpr Command gCommands[] = {
    {"add", MailSpool::Add, 1, gAny, "--window"}, {"list", MailSpool::List, 0, 0, ""},
    {"verify", MailSpool::Verify, 1, gAny, ""},   {"plan", MailSpool::ShowPlan, 0, 0, "--at"},
    {"export", MailSpool::Export, 1, 1, ""},      {"import", MailSpool::Import, 1, gAny, ""}};

const Command& FindCommand(std::string_view iName)
{
    for (const Command& lCommand : gCommands)
    {
        if (iName == lCommand.mName)
        {
            return lCommand;
        }
    }
    throw UsageError("there is no command '" + std::string(iName) + "'");
}

std::wstring GetSetting(const char* ipVariable, const char* ipDefault)
{
    const char* lValue = std::getenv(ipVariable);
    return MailSpool::DecodeBytes(lValue != nullptr ? lValue : ipDefault).mText;
}

// The arguments behind the command.
class Arguments
{
public:
    Arguments(const Command& iCommand, int iCount, char** ipTexts)
        : mCommand(iCommand), mTexts(ipTexts, ipTexts + iCount)
    {
    }

    MailSpool::Options Read()
    {
        for (; mNext < mTexts.size(); ++mNext)
        {
            const std::string_view lText = mTexts[mNext];
            if (mHasOnlyPaths || lText.substr(0, 1) != "-" || lText == "-")
            {
                mOptions.mPaths.emplace_back(lText);
            }
            else if (lText == "--")
            {
                mHasOnlyPaths = true;
            }
            else
            {
                ReadOption(lText);
            }
        }
        return mOptions;
    }

private:
    // "--spool FILE" or "--spool=FILE"
    void ReadOption(std::string_view iText)
    {
        const std::size_t lEqual = iText.find('=');
        const std::string_view lName = iText.substr(0, lEqual);
        if (lName != "--spool" && (lName != mCommand.mOption || lName.empty()))
        {
            throw UsageError("'" + std::string(mCommand.mName) + "' has no option '" + std::string(lName) + "'");
        }
        const std::string_view lValue = lEqual != iText.npos ? iText.substr(lEqual + 1) : TakeNext(lName);
        if (lName == "--spool")
        {
            mOptions.mSpool = lValue;
        }
        else if (lName == "--window")
        {
            ReadWindow(lValue);
        }
        else
        {
            ReadHour(lValue);
        }
    }

    void ReadWindow(std::string_view iValue)
    {
        const std::optional<MailSpool::WindowRule> lRule = MailSpool::ParseWindowRule(iValue);
        if (!lRule)
        {
            throw UsageError("'" + std::string(iValue) + "' is no range of hours");
        }
        mOptions.mWindows.push_back(*lRule);
        try
        {
            MailSpool::MakeWindow(lRule->mRoute, {*lRule});
        }
        catch (const QBase::Message& lMessage) // an hour that no day has
        {
            throw UsageError("'" + std::string(iValue) + "': " + MailSpool::ToUtf8(lMessage.GetMessage()));
        }
    }

    void ReadHour(std::string_view iValue)
    {
        mOptions.mHour = MailSpool::ParseHour(iValue);
        if (mOptions.mHour.value_or(MailSpool::gHoursOfDay) >= MailSpool::gHoursOfDay)
        {
            throw UsageError("'" + std::string(iValue) + "' is no hour of the day");
        }
    }

    std::string_view TakeNext(std::string_view iName)
    {
        if (++mNext >= mTexts.size())
        {
            throw UsageError("'" + std::string(iName) + "' needs a value");
        }
        return mTexts[mNext];
    }

    const Command& mCommand;
    std::vector<std::string_view> mTexts;
    std::size_t mNext = 0;
    bool mHasOnlyPaths = false;
    MailSpool::Options mOptions;
};

int Run(int iCount, char** ipTexts)
{
    const std::string_view lName = iCount > 1 ? ipTexts[1] : "";
    if (lName == "--help" || lName == "-h" || lName == "help")
    {
        std::cout << gUsage;
        return MailSpool::ExitGood;
    }
    if (lName.empty())
    {
        throw UsageError("a command is needed");
    }
    const Command& lCommand = FindCommand(lName);
    MailSpool::Options lOptions = Arguments(lCommand, iCount - 2, ipTexts + 2).Read();
    lOptions.mUser = GetSetting("MAIL_SPOOL_FTP_USER", "anonymous");
    lOptions.mPassword = GetSetting("MAIL_SPOOL_FTP_PASSWORD", "anonymous");
    if (lOptions.mSpool.empty())
    {
        throw UsageError("'--spool' is needed");
    }
    const std::size_t lCount = lOptions.mPaths.size();
    if (lCount < lCommand.mMinPaths || lCount > lCommand.mMaxPaths)
    {
        throw UsageError("'" + std::string(lName) +
                         (lCommand.mMaxPaths == 0   ? "' takes no file"
                          : lCommand.mMaxPaths == 1 ? "' needs one folder"
                                                    : "' needs at least one file or folder"));
    }
    const int lStatus = lCommand.mRun(lOptions, std::cout, std::cerr);
    std::cout.flush();
    if (!std::cout)
    {
        throw std::runtime_error("cannot write to standard output");
    }
    return lStatus;
}

} // namespace

int main(int iCount, char** ipTexts)
{
    try
    {
        return Run(iCount, ipTexts);
    }
    catch (const UsageError& lError)
    {
        std::cerr << "mail-spool: " << lError.what() << "\n\n" << gUsage;
    }
    catch (...)
    {
        std::cerr << "mail-spool: " << MailSpool::DescribeException() << '\n';
    }
    return MailSpool::ExitTrouble;
}
