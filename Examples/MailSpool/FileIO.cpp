#include "FileIO.h"

#include "Errors.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

namespace MailSpool
{

namespace
{

[[noreturn]] void ThrowIoError(const char* ipAction, const std::filesystem::path& iPath)
{
    const int lError = errno;
    throw IoError(std::string(ipAction) + " " + iPath.string() + ": " + std::strerror(lError));
}

class FileDescriptor
{
public:
    explicit FileDescriptor(int iDescriptor) : mDescriptor(iDescriptor) {}

    ~FileDescriptor()
    {
        Close();
    }

    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;

    int Get() const
    {
        return mDescriptor;
    }

    // Returns whether all went well: some file systems report a failed write only here.
    bool Close()
    {
        const int lDescriptor = mDescriptor;
        mDescriptor = -1;
        return lDescriptor < 0 || ::close(lDescriptor) == 0;
    }

private:
    int mDescriptor;
};

void WriteAll(const FileDescriptor& iFile, std::string_view iBytes, const std::filesystem::path& iPath)
{
    while (!iBytes.empty())
    {
        const ssize_t lWritten = ::write(iFile.Get(), iBytes.data(), iBytes.size());
        if (lWritten < 0 && errno != EINTR)
        {
            ThrowIoError("cannot write", iPath);
        }
        iBytes.remove_prefix(lWritten < 0 ? 0 : static_cast<std::size_t>(lWritten));
    }
}

void SyncFolder(const std::filesystem::path& iFolder)
{
    const FileDescriptor lFolder(::open(iFolder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (lFolder.Get() < 0 || ::fsync(lFolder.Get()) != 0)
    {
        ThrowIoError("cannot write folder", iFolder);
    }
}

// Writes the temporary file and gives it its name; removes it when that fails.
void WriteAndRename(FileDescriptor& oFile, const std::string& iTemporary, std::string_view iBytes,
                    const std::filesystem::path& iPath)
{
    try
    {
        WriteAll(oFile, iBytes, iPath);
        if (::fsync(oFile.Get()) != 0 || !oFile.Close() || ::rename(iTemporary.c_str(), iPath.c_str()) != 0)
        {
            ThrowIoError("cannot write", iPath);
        }
    }
    catch (...)
    {
        ::unlink(iTemporary.c_str());
        throw;
    }
}

} // namespace

std::string ReadFile(const std::filesystem::path& iPath, std::size_t iMaxSize)
{
    // Without O_NONBLOCK, opening a pipe that nobody writes to would wait for ever.
    const FileDescriptor lFile(::open(iPath.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    struct stat lStatus = {};
    if (lFile.Get() < 0 || ::fstat(lFile.Get(), &lStatus) != 0)
    {
        ThrowIoError("cannot read", iPath);
    }
    if (!S_ISREG(lStatus.st_mode))
    {
        throw IoError("cannot read " + iPath.string() + ": not a file");
    }
    std::string lBytes;
    char lBuffer[65536];
    for (;;)
    {
        const ssize_t lRead = ::read(lFile.Get(), lBuffer, sizeof lBuffer);
        if (lRead == 0)
        {
            return lBytes;
        }
        if (lRead < 0 && errno != EINTR)
        {
            ThrowIoError("cannot read", iPath);
        }
        lBytes.append(lBuffer, lRead < 0 ? 0 : static_cast<std::size_t>(lRead));
        if (lBytes.size() > iMaxSize)
        {
            throw DamageError("larger than " + std::to_string(iMaxSize) + " bytes");
        }
    }
}

void ReplaceFile(const std::filesystem::path& iPath, std::string_view iBytes)
{
    const std::filesystem::path lFolder = iPath.has_parent_path() ? iPath.parent_path() : ".";
    std::string lTemporary = (lFolder / ".mail-spool-XXXXXX").string();
    FileDescriptor lFile(::mkostemp(lTemporary.data(), O_CLOEXEC));
    if (lFile.Get() < 0)
    {
        ThrowIoError("cannot write into", lFolder);
    }
    WriteAndRename(lFile, lTemporary, iBytes, iPath);
    SyncFolder(lFolder);
}

} // namespace MailSpool
