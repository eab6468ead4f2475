#include "CommandSupport.h"

#include "Display.h"
#include "Errors.h"
#include "Table.h"

namespace MailSpool
{

std::string Count(std::size_t iCount, const std::string& iWhat)
{
    return std::to_string(iCount) + " " + iWhat + (iCount == 1 ? "" : "s");
}

std::string ShowPath(const std::filesystem::path& iPath)
{
    return ToUtf8(MakePrintable(DecodeBytes(iPath.string()).mText));
}

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
        oErr << "mail-spool: " << ShowPath(iName) << ": " << DescribeException() << '\n';
        return ExitDamage;
    }
}

int ReportDamage(const std::filesystem::path& iSpool, const SpoolContents& iContents, std::ostream& oErr)
{
    if (iContents.mDamage.empty())
    {
        return ExitGood;
    }
    oErr << "mail-spool: " << ShowPath(iSpool) << ": damaged after " << Count(iContents.mJobs->GetCount(), "job")
         << ": " << iContents.mDamage << '\n';
    return ExitDamage;
}

} // namespace MailSpool
