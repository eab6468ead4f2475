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

// What the handler knows of the files; an empty name is none. Changed only while the signals are blocked.
char gNames[2][PATH_MAX];
struct sigaction gOld[std::size(gSignals)];

// The signal's own action follows when the handler returns.
extern "C" void RemoveAndEnd(int iSignal)
{
    for (const char* lName : gNames)
    {
        ::unlink(lName);
    }
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

bool IsAnyWatched()
{
    return std::any_of(std::begin(gNames), std::end(gNames), [](const char* ipName) { return *ipName != '\0'; });
}

// A signal that is ignored, as nohup has it, stays ignored.
void CatchSignals()
{
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

void Watch(const std::string& iName)
{
    if (!IsAnyWatched())
    {
        CatchSignals();
    }
    const std::size_t lPlace = gNames[0][0] == '\0' ? 0 : 1;
    iName.copy(gNames[lPlace], sizeof gNames[lPlace] - 1); // the rest is zero: no name is longer than one may be
}

void StopWatching(const std::string& iName)
{
    const std::size_t lPlace = gNames[0] == iName ? 0 : 1;
    std::fill(std::begin(gNames[lPlace]), std::end(gNames[lPlace]), '\0');
    for (std::size_t lIndex = 0; lIndex < std::size(gSignals) && !IsAnyWatched(); ++lIndex)
    {
        ::sigaction(gSignals[lIndex], &gOld[lIndex], nullptr);
    }
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
        StopWatching(mName);
    }
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
    StopWatching(mName);
    mName.clear();
    return true;
}

} // namespace TalBaseTool
