#include "File/InPlace.h"

#include "File/FileTraits.h"
#include "File/Files.h"
#include "File/TemporaryFile.h"

#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>

namespace TalBaseTool
{

namespace
{

void WriteAll(int iDescriptor, std::string_view iBytes, const std::string& iName)
{
    while (!iBytes.empty())
    {
        const ssize_t lWritten = ::write(iDescriptor, iBytes.data(), iBytes.size());
        if (lWritten < 0 && errno != EINTR)
        {
            ThrowIoError("cannot write", iName);
        }
        iBytes.remove_prefix(lWritten < 0 ? 0 : static_cast<std::size_t>(lWritten));
    }
}

// The file itself where the name is a link's.
std::string ResolveLinks(const std::string& iFile)
{
    char lPath[PATH_MAX];
    if (::realpath(iFile.c_str(), lPath) == nullptr)
    {
        ThrowIoError("cannot read", iFile);
    }
    return lPath;
}

// The status of a file that may be replaced.
struct stat ReadStatus(const std::string& iFile)
{
    struct stat lStatus = {};
    if (::stat(iFile.c_str(), &lStatus) != 0)
    {
        ThrowIoError("cannot read", iFile);
    }
    if (!S_ISREG(lStatus.st_mode))
    {
        throw IoError("cannot change " + ShowFile(iFile) + " in place: it is no regular file");
    }
    return lStatus;
}

// A folder that we may write into but not read cannot be forced to the disk, nor can those of some file systems.
void SyncFolder(const std::string& iFolder, const std::string& iFile)
{
    const FileDescriptor lFolder(::open(iFolder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const bool lIsGood = lFolder.Get() < 0 ? errno == EACCES : ::fsync(lFolder.Get()) == 0 || errno == EINVAL;
    if (!lIsGood)
    {
        ThrowIoError((ShowFile(iFile) + " is changed, but cannot write folder").c_str(), iFolder);
    }
}

void Sync(const TemporaryFile& iFile, const std::string& iName)
{
    if (::fsync(iFile.Get()) != 0)
    {
        ThrowIoError("cannot write", iName);
    }
}

void Move(TemporaryFile& oFile, const std::string& iName)
{
    if (!oFile.MoveTo(iName))
    {
        ThrowIoError("cannot write", iName);
    }
}

// A copy, and not another link: whoever writes into the old file without replacing it would change the backup, too, and
// not every file may be linked. What of its traits cannot be kept is told of the new file.
void CopyTo(const TemporaryFile& iCopy, const FileLock& iLock, const std::string& iName, const std::string& iCopyName)
{
    const struct stat lStatus = ReadStatus(iName);
    const auto lWrite = [&](std::string_view iBytes) { WriteAll(iCopy.Get(), iBytes, iCopyName); };
    ReadBlocks(iName, lWrite, gTextForm, iLock.GetFile());
    CopyTraits(iName, lStatus, iCopy.Get());
    const struct timespec lTimes[] = {lStatus.st_atim, lStatus.st_mtim};
    ::futimens(iCopy.Get(), lTimes);
    Sync(iCopy, iCopyName);
}

} // namespace

void CheckIsRegular(const std::string& iFile)
{
    ReadStatus(iFile);
}

bool HasOtherNames(const std::string& iFile)
{
    return ReadStatus(iFile).st_nlink > 1;
}

std::vector<std::string> ReplaceText(const FileLock& iLock, const std::function<void(const TakeBytes&)>& iWrite,
                                     const std::optional<std::string>& iBackup)
{
    const std::string lName = ResolveLinks(iLock.GetName());
    const std::string lFolder = lName.substr(0, lName.rfind('/') + 1);
    TemporaryFile lFile(lFolder);
    iWrite([&](std::string_view iBytes) { WriteAll(lFile.Get(), iBytes, lName); });
    std::vector<std::string> lLost = CopyTraits(lName, ReadStatus(lName), lFile.Get());
    Sync(lFile, lName);
    std::optional<TemporaryFile> lCopy;
    if (iBackup)
    {
        CopyTo(lCopy.emplace(lFolder), iLock, lName, lName + *iBackup);
    }
    iLock.CheckUnchanged();
    if (lCopy)
    {
        Move(*lCopy, lName + *iBackup);
    }
    Move(lFile, lName);
    SyncFolder(lFolder, lName);
    return lLost;
}

} // namespace TalBaseTool
