#include "InPlace.h"

#include "FileDescriptor.h"
#include "Files.h"

#include <climits>
#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>

namespace TalBaseTool
{

namespace
{

void WriteAll(const FileDescriptor& iFile, std::string_view iBytes, const std::string& iName)
{
    while (!iBytes.empty())
    {
        const ssize_t lWritten = ::write(iFile.Get(), iBytes.data(), iBytes.size());
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

void SyncFolder(const std::string& iFolder)
{
    const FileDescriptor lFolder(::open(iFolder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (lFolder.Get() < 0 || ::fsync(lFolder.Get()) != 0)
    {
        ThrowIoError("cannot write folder", iFolder);
    }
}

// Stands before every reading, too: a text that is read from a pipe is gone.
void CheckStatus(const std::string& iFile, const struct stat& iStatus)
{
    if (!S_ISREG(iStatus.st_mode))
    {
        throw IoError("cannot change " + ShowFile(iFile) + " in place: it is no regular file");
    }
}

// Writes the file beside the old one and gives it its name; removes it when that fails.
void WriteAndRename(FileDescriptor& oFile, const std::string& iTemporary, std::wstring_view iText,
                    std::wstring_view iTail, const std::string& iName)
{
    struct stat lOld = {};
    try
    {
        const auto lWrite = [&](std::string_view iBytes) { WriteAll(oFile, iBytes, iName); };
        EncodeBlocks(iText, lWrite);
        EncodeBlocks(iTail, lWrite);
        if (::stat(iName.c_str(), &lOld) != 0)
        {
            ThrowIoError("cannot read", iName);
        }
        CheckStatus(iName, lOld);
        // Somebody else's file can only be made a copy that is ours; the mode goes last, since the owner resets it.
        const bool lHasOwner = ::fchown(oFile.Get(), lOld.st_uid, lOld.st_gid) == 0;
        if (::fchmod(oFile.Get(), lOld.st_mode & (lHasOwner ? 07777U : 0777U)) != 0 || ::fsync(oFile.Get()) != 0 ||
            !oFile.Close() || ::rename(iTemporary.c_str(), iName.c_str()) != 0)
        {
            ThrowIoError("cannot write", iName);
        }
    }
    catch (...)
    {
        ::unlink(iTemporary.c_str());
        throw;
    }
}

} // namespace

void CheckIsRegular(const std::string& iFile)
{
    struct stat lStatus = {};
    if (::stat(ResolveLinks(iFile).c_str(), &lStatus) != 0)
    {
        ThrowIoError("cannot read", iFile);
    }
    CheckStatus(iFile, lStatus);
}

void ReplaceText(const std::string& iFile, std::wstring_view iText, std::wstring_view iTail)
{
    const std::string lName = ResolveLinks(iFile);
    const std::string lFolder = lName.substr(0, lName.rfind('/') + 1);
    std::string lTemporary = lFolder + ".talbase-XXXXXX";
    FileDescriptor lFile(::mkostemp(lTemporary.data(), O_CLOEXEC));
    if (lFile.Get() < 0)
    {
        ThrowIoError("cannot write into", lFolder);
    }
    WriteAndRename(lFile, lTemporary, iText, iTail, lName);
    SyncFolder(lFolder);
}

} // namespace TalBaseTool
