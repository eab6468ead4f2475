#include "File/StopSignals.h"

#include <poll.h>
#include <sys/signalfd.h>

namespace TalBaseTool
{

namespace
{

// All that end a program and can be held back, but for those that tell of a fault in it.
constexpr int gSignals[] = {SIGHUP,  SIGINT,  SIGQUIT, SIGTERM,   SIGPIPE, SIGALRM, SIGUSR1,
                            SIGUSR2, SIGXCPU, SIGXFSZ, SIGVTALRM, SIGPROF, SIGIO,   SIGPWR};

sigset_t FindSignals()
{
    sigset_t lSet;
    ::sigemptyset(&lSet);
    ::sigaddset(&lSet, SIGCHLD);
    for (const int lSignal : gSignals)
    {
        struct sigaction lAction = {};
        ::sigaction(lSignal, nullptr, &lAction);
        if (lAction.sa_handler != SIG_IGN) // as nohup has it
        {
            ::sigaddset(&lSet, lSignal);
        }
    }
    return lSet;
}

} // namespace

StopSignals::StopSignals() : mSignals(-1)
{
    const sigset_t lSet = FindSignals();
    mSignals.Reset(::signalfd(-1, &lSet, SFD_CLOEXEC));
    if (mSignals.Get() < 0)
    {
        throw IoError(std::string("cannot wait for signals: ") + std::strerror(errno));
    }
    struct sigaction lChild = {};
    lChild.sa_handler = SIG_DFL; // where children are ignored, nobody learns how they ended
    ::sigaction(SIGCHLD, &lChild, &mOldChild);
    ::sigprocmask(SIG_BLOCK, &lSet, &mOldMask);
}

StopSignals::~StopSignals()
{
    ::sigaction(SIGCHLD, &mOldChild, nullptr);
    ::sigprocmask(SIG_SETMASK, &mOldMask, nullptr);
}

int StopSignals::Wait(int iDescriptor, std::optional<std::chrono::milliseconds> iLimit) const
{
    struct pollfd lFiles[] = {{mSignals.Get(), POLLIN, 0}, {iDescriptor, POLLIN, 0}};
    int lReady = 0;
    do
    {
        lReady = ::poll(lFiles, 2, iLimit ? static_cast<int>(iLimit->count()) : -1);
    } while (lReady < 0 && errno == EINTR); // stopped and continued
    if (lReady <= 0 || lFiles[0].revents == 0)
    {
        return 0;
    }
    struct signalfd_siginfo lInfo = {};
    return ::read(mSignals.Get(), &lInfo, sizeof lInfo) == sizeof lInfo ? static_cast<int>(lInfo.ssi_signo) : 0;
}

} // namespace TalBaseTool
