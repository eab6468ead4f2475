// mail-spool: keeps messages as jobs for delivery, each a property bag.

#include "Commands.h"
#include "Display.h"

#include "TalBase/Initializer.h"

#include <cstdlib>
#include <iostream>
#include <string_view>

namespace
{

// The program is one client of the library and holds it up from its start to its end.
const QTalBase::Initializer gInitializer;

constexpr char gUsage[] =
    "usage: mail-spool add    --spool DIR FILE|FOLDER...   keep a job for each message\n"
    "       mail-spool list   --spool DIR                  show the jobs\n"
    "       mail-spool verify --spool DIR FILE|FOLDER...   compare the jobs with their messages\n"
    "\n"
    "A FOLDER stands for all files in it and below it, hidden ones left out. A message may begin with an mbox \"From "
    "\"\n"
    "line. The account for the next hop comes from the environment: MAIL_SPOOL_FTP_USER and MAIL_SPOOL_FTP_PASSWORD\n"
    "(without them: anonymous).\n"
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
    bool mTakesPaths;
};

constexpr Command gCommands[] = {
    {"add", MailSpool::Add, true}, {"list", MailSpool::List, false}, {"verify", MailSpool::Verify, true}};

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
    Arguments(int iCount, char** ipTexts) : mTexts(ipTexts, ipTexts + iCount) {}

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
    // "--spool DIR" or "--spool=DIR"
    void ReadOption(std::string_view iText)
    {
        const std::size_t lEqual = iText.find('=');
        const std::string_view lName = iText.substr(0, lEqual);
        if (lName != "--spool")
        {
            throw UsageError("there is no option '" + std::string(lName) + "'");
        }
        mOptions.mSpool = lEqual != iText.npos ? iText.substr(lEqual + 1) : TakeNext(lName);
    }

    std::string_view TakeNext(std::string_view iName)
    {
        if (++mNext >= mTexts.size())
        {
            throw UsageError("'" + std::string(iName) + "' needs a value");
        }
        return mTexts[mNext];
    }

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
    MailSpool::Options lOptions = Arguments(iCount - 2, ipTexts + 2).Read();
    lOptions.mUser = GetSetting("MAIL_SPOOL_FTP_USER", "anonymous");
    lOptions.mPassword = GetSetting("MAIL_SPOOL_FTP_PASSWORD", "anonymous");
    if (lOptions.mSpool.empty())
    {
        throw UsageError("'--spool' is needed");
    }
    if (lOptions.mPaths.empty() == lCommand.mTakesPaths)
    {
        throw UsageError(lCommand.mTakesPaths ? "at least one file or folder is needed"
                                              : "'" + std::string(lName) + "' takes no file");
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
