#include "File/InPlace.h"

#include "File/FileTraits.h"
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

} // namespace

void CheckIsRegular(const std::string& iFile)
{
    ReadStatus(iFile);
}

std::vector<std::string> ReplaceText(const std::string& iFile, const std::function<void(const TakeBytes&)>& iWrite)
{
    const std::string lName = ResolveLinks(iFile);
    const std::string lFolder = lName.substr(0, lName.rfind('/') + 1);
    TemporaryFile lFile(lFolder);
    iWrite([&](std::string_view iBytes) { WriteAll(lFile.Get(), iBytes, lName); });
    std::vector<std::string> lLost = CopyTraits(lName, ReadStatus(lName), lFile.Get());
    if (::fsync(lFile.Get()) != 0 || !lFile.MoveTo(lName))
    {
        ThrowIoError("cannot write", lName);
    }
    SyncFolder(lFolder, lName);
    return lLost;
}

} // namespace TalBaseTool
