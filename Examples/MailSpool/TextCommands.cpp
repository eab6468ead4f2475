// export and import: the jobs of a spool as text files and back.

#include "Commands.h"

#include "CommandSupport.h"
#include "Errors.h"
#include "JobText.h"
#include "Source.h"

namespace MailSpool
{

namespace
{

void MakeFolder(const std::filesystem::path& iFolder)
{
    std::error_code lError;
    if (std::filesystem::create_directories(iFolder, lError))
    {
        // Like the spool itself, the files hold passwords.
        std::filesystem::permissions(iFolder, std::filesystem::perms::owner_all, lError);
    }
    if (lError)
    {
        throw IoError("cannot make the folder " + iFolder.string() + ": " + lError.message());
    }
}

} // namespace

int Export(const Options& iOptions, std::ostream& oOut, std::ostream& oErr)
{
    const SpoolContents lContents = ReadSpool(iOptions.mSpool);
    const std::filesystem::path& lFolder = iOptions.mPaths.front();
    MakeFolder(lFolder);
    const Outcome lOutcome = DoEachJob("writing job", iOptions.mSpool, lContents, oErr,
                                       [&](const BagPtr& iJob) { WriteJobFile(lFolder, *iJob); });
    oOut << Count(lOutcome.mGood, "job") << " exported to " << ShowPath(lFolder) << '\n';
    return lOutcome.mStatus;
}

int Import(const Options& iOptions, std::ostream& oOut, std::ostream& oErr)
{
    const std::vector<std::filesystem::path> lFiles = FindFiles(iOptions.mPaths);
    return Attempt(iOptions.mSpool.string(), oErr, [&] {
        SpoolChange lSpool(iOptions.mSpool);
        std::size_t lAdded = 0;
        const Outcome lOutcome = DoEachFile("reading job", lFiles, oErr, [&](const std::filesystem::path& iFile) {
            lAdded += lSpool.Add(*ReadJobFile(iFile)) ? 1 : 0;
            return int{ExitGood};
        });
        lSpool.Commit();
        oOut << Count(lFiles.size(), "file") << ", " << lAdded << " imported, " << lOutcome.mGood - lAdded
             << " in the spool already, " << lFiles.size() - lOutcome.mGood << " damaged\n";
        return lOutcome.mStatus;
    });
}

} // namespace MailSpool
