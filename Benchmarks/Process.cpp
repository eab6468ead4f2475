#include "Process.h"

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Bench
{

namespace
{

using Clock = std::chrono::steady_clock;

[[noreturn]] void Execute(char* const* ipArguments, int iOutput)
{
    const auto lMemory = static_cast<rlim_t>(::sysconf(_SC_PHYS_PAGES)) * static_cast<rlim_t>(::sysconf(_SC_PAGESIZE));
    const rlimit lLimit{lMemory / 2, lMemory / 2};
    ::setrlimit(RLIMIT_AS, &lLimit);
    const rlimit lNoCore{0, 0};
    ::setrlimit(RLIMIT_CORE, &lNoCore);
    ::dup2(iOutput, STDOUT_FILENO);
    ::dup2(::open("/dev/null", O_WRONLY | O_CLOEXEC), STDERR_FILENO);
    ::execvp(ipArguments[0], ipArguments);
    ::_exit(127);
}

// Reads until the child closes its output or its time is over; returns whether it came to its end.
bool ReadAll(int iInput, double iSeconds, std::string& oOutput)
{
    const auto lDeadline =
        Clock::now() + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(iSeconds));
    for (;;)
    {
        const auto lLeft = std::chrono::duration_cast<std::chrono::milliseconds>(lDeadline - Clock::now()).count();
        pollfd lPoll{iInput, POLLIN, 0};
        if (lLeft <= 0 || ::poll(&lPoll, 1, static_cast<int>(lLeft)) != 1)
        {
            return false;
        }
        char lBuffer[4096];
        const ssize_t lSize = ::read(iInput, lBuffer, sizeof(lBuffer));
        if (lSize <= 0)
        {
            return true;
        }
        oOutput.append(lBuffer, static_cast<std::size_t>(lSize));
    }
}

} // namespace

ChildResult RunChild(const std::vector<std::string>& iCommand, double iSeconds)
{
    std::vector<char*> lArguments;
    for (const std::string& lArgument : iCommand)
    {
        lArguments.push_back(const_cast<char*>(lArgument.c_str())); // execvp changes nothing
    }
    lArguments.push_back(nullptr);
    int lPipe[2];
    if (::pipe2(lPipe, O_CLOEXEC) != 0)
    {
        throw std::runtime_error("no pipe");
    }
    const pid_t lChild = ::fork();
    if (lChild == 0)
    {
        Execute(lArguments.data(), lPipe[1]);
    }
    ::close(lPipe[1]);
    ChildResult lResult{Outcome::Done, {}};
    const bool lEnded = ReadAll(lPipe[0], iSeconds, lResult.mOutput);
    ::close(lPipe[0]);
    if (!lEnded)
    {
        ::kill(lChild, SIGKILL);
    }
    int lStatus = 0;
    ::waitpid(lChild, &lStatus, 0);
    lResult.mOutcome = !lEnded                ? Outcome::TooLong
                       : WIFSIGNALED(lStatus) ? Outcome::Crashed
                       : lStatus != 0         ? Outcome::Failed
                                              : Outcome::Done;
    return lResult;
}

const char* GetOutcomeName(Outcome iOutcome)
{
    switch (iOutcome)
    {
    case Outcome::Done:
        return "done";
    case Outcome::Failed:
        return "wrong";
    case Outcome::Crashed:
        return "crash";
    case Outcome::TooLong:
        return "too long";
    }
    return "";
}

} // namespace Bench
