#include "File/FileLock.h"

#include "File/Progress.h"

#include <chrono>
#include <fcntl.h>
#include <optional>
#include <sys/file.h>
#include <thread>

namespace TalBaseTool
{

namespace
{

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds gPause(10);
constexpr std::chrono::seconds gPatience(1); // before a terminal is told what is waited for

// Neither waits for a writer, where a pipe has taken the file's place, nor gives the file to programs that are started.
int Open(const std::string& iFile, int iAccess)
{
    return ::open(iFile.c_str(), iAccess | O_CLOEXEC | O_NONBLOCK);
}

bool IsSame(const struct stat& iOne, const struct stat& iOther)
{
    return iOne.st_dev == iOther.st_dev && iOne.st_ino == iOther.st_ino;
}

bool IsSame(const struct timespec& iOne, const struct timespec& iOther)
{
    return iOne.tv_sec == iOther.tv_sec && iOne.tv_nsec == iOther.tv_nsec;
}

} // namespace

FileLock::FileLock(const std::string& iFile, unsigned int iWait) : mName(iFile), mFile(-1)
{
    const auto lStart = Clock::now();
    std::optional<Progress> lProgress;
    while (!hTry())
    {
        const auto lWaited = Clock::now() - lStart;
        if (lWaited >= std::chrono::seconds(iWait))
        {
            throw IoError("cannot lock " + ShowFile(iFile) + " within " + Count(iWait, "second") +
                          ", since another process is changing it; --wait SECONDS waits longer");
        }
        if (lWaited >= gPatience && !lProgress)
        {
            lProgress.emplace("waiting for another process to finish with " + ShowFile(iFile)).Show();
        }
        std::this_thread::sleep_for(gPause);
    }
}

void FileLock::CheckUnchanged() const
{
    struct stat lStatus = {};
    if (::stat(mName.c_str(), &lStatus) != 0 || !IsSame(lStatus, mStatus) || lStatus.st_size != mStatus.st_size ||
        !IsSame(lStatus.st_mtim, mStatus.st_mtim) || !IsSame(lStatus.st_ctim, mStatus.st_ctim))
    {
        throw IoError(ShowFile(mName) + " was changed by another process since it was read; nothing is written");
    }
}

// Opens the file each time: another process may have replaced it.
bool FileLock::hTry()
{
    // Some network file systems lock only what could be written. On others, opening it for that would tell programs
    // that watch the file of a change.
    if (!hOpenAndLock(O_RDONLY) && !(errno == EBADF && hOpenAndLock(O_RDWR)))
    {
        if (errno != EWOULDBLOCK && errno != EINTR)
        {
            ThrowIoError("cannot lock", mName);
        }
        return false;
    }
    if (::fstat(mFile.Get(), &mStatus) != 0)
    {
        ThrowIoError("cannot read", mName);
    }
    return hIsStillThere();
}

bool FileLock::hOpenAndLock(int iAccess)
{
    mFile.Reset(Open(mName, iAccess));
    if (mFile.Get() < 0)
    {
        ThrowIoError(iAccess == O_RDONLY ? "cannot read" : "cannot lock", mName);
    }
    return ::flock(mFile.Get(), LOCK_EX | LOCK_NB) == 0;
}

// The file that was locked may have been replaced before; another one has its name then, and is not locked.
bool FileLock::hIsStillThere() const
{
    const FileDescriptor lFile(Open(mName, O_RDONLY));
    struct stat lStatus = {};
    if (lFile.Get() < 0 || ::fstat(lFile.Get(), &lStatus) != 0)
    {
        ThrowIoError("cannot read", mName);
    }
    return IsSame(lStatus, mStatus);
}

} // namespace TalBaseTool
