#include "File/TemporaryFile.h"

#include <algorithm>
#include <climits>
#include <csignal>
#include <cstddef>
#include <cstdio>
#include <fcntl.h>
#include <iterator>
#include <stdlib.h>

namespace TalBaseTool
{

namespace
{

// Those that end a program from outside: a key, a closed terminal, a shutdown, a limit.
constexpr int gSignals[] = {SIGINT, SIGQUIT, SIGTERM, SIGHUP, SIGXFSZ};

// What the handler knows of the file. Changed only while the signals are blocked.
char gName[PATH_MAX];
struct sigaction gOld[std::size(gSignals)];

// The signal's own action follows when the handler returns.
extern "C" void RemoveAndEnd(int iSignal)
{
    ::unlink(gName);
    ::raise(iSignal);
}

sigset_t AllSignals()
{
    sigset_t lSet;
    ::sigemptyset(&lSet);
    for (const int lSignal : gSignals)
    {
        ::sigaddset(&lSet, lSignal);
    }
    return lSet;
}

class BlockedSignals
{
public:
    BlockedSignals()
    {
        const sigset_t lSet = AllSignals();
        ::sigprocmask(SIG_BLOCK, &lSet, &mOld);
    }

    ~BlockedSignals()
    {
        ::sigprocmask(SIG_SETMASK, &mOld, nullptr);
    }

    BlockedSignals(const BlockedSignals&) = delete;
    BlockedSignals& operator=(const BlockedSignals&) = delete;

private:
    sigset_t mOld;
};

// A signal that is ignored, as nohup has it, stays ignored.
void Watch(const std::string& iName)
{
    iName.copy(gName, sizeof gName - 1); // the rest is zero: the name is never longer than a name may be
    struct sigaction lAction = {};
    lAction.sa_handler = RemoveAndEnd;
    lAction.sa_mask = AllSignals();
    lAction.sa_flags = static_cast<int>(SA_RESETHAND);
    for (std::size_t lIndex = 0; lIndex < std::size(gSignals); ++lIndex)
    {
        ::sigaction(gSignals[lIndex], nullptr, &gOld[lIndex]);
        if (gOld[lIndex].sa_handler != SIG_IGN)
        {
            ::sigaction(gSignals[lIndex], &lAction, nullptr);
        }
    }
}

void StopWatching()
{
    for (std::size_t lIndex = 0; lIndex < std::size(gSignals); ++lIndex)
    {
        ::sigaction(gSignals[lIndex], &gOld[lIndex], nullptr);
    }
    std::fill(std::begin(gName), std::end(gName), '\0');
}

} // namespace

TemporaryFile::TemporaryFile(const std::string& iFolder) : mName(iFolder + ".talbase-XXXXXX"), mFile(hMake(mName))
{
    if (mFile.Get() < 0)
    {
        ThrowIoError("cannot write into", iFolder);
    }
}

TemporaryFile::~TemporaryFile()
{
    const BlockedSignals lBlocked;
    if (!mName.empty())
    {
        ::unlink(mName.c_str());
    }
    StopWatching();
}

// No signal may come between the making and the watching.
int TemporaryFile::hMake(std::string& oName)
{
    const BlockedSignals lBlocked;
    const int lDescriptor = ::mkostemp(oName.data(), O_CLOEXEC);
    if (lDescriptor >= 0)
    {
        Watch(oName);
    }
    return lDescriptor;
}

bool TemporaryFile::MoveTo(const std::string& iFile)
{
    const BlockedSignals lBlocked;
    if (!mFile.Close() || ::rename(mName.c_str(), iFile.c_str()) != 0)
    {
        return false;
    }
    mName.clear();
    return true;
}

} // namespace TalBaseTool
