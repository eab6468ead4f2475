#include "Progress.h"

#include <cstdio>
#include <unistd.h>

namespace MailSpool
{

namespace
{

constexpr std::size_t gWorthShowing = 20;

} // namespace

Progress::Progress(const char* ipAction, std::size_t iTotal)
    : mAction(ipAction), mTotal(iTotal), mIsShown(iTotal >= gWorthShowing && ::isatty(STDERR_FILENO) == 1)
{
}

Progress::~Progress()
{
    Hide();
}

void Progress::Step()
{
    ++mDone;
    if (mIsShown)
    {
        std::fprintf(stderr, "\r%s %zu of %zu", mAction, mDone, mTotal);
        std::fflush(stderr);
    }
}

void Progress::Hide()
{
    if (mIsShown)
    {
        std::fputs("\r\033[K", stderr);
        std::fflush(stderr);
    }
}

} // namespace MailSpool
