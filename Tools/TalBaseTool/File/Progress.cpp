#include "File/Progress.h"

#include <cstdio>
#include <unistd.h>

namespace TalBaseTool
{

namespace
{

constexpr std::size_t gMillion = 1000000;
constexpr std::size_t gWorthShowing = 16 * gMillion;

} // namespace

Progress::Progress(std::string iAction, std::size_t iSize)
    : mAction(std::move(iAction)), mSize(iSize), mIsTerminal(::isatty(STDERR_FILENO) == 1), mNext(gWorthShowing)
{
    if (mSize >= gWorthShowing)
    {
        hDraw("");
    }
}

Progress::~Progress()
{
    if (mIsDrawn)
    {
        std::fputs("\r\033[K", stderr);
        std::fflush(stderr);
    }
}

void Progress::Step(std::size_t iDone)
{
    if (iDone < mNext)
    {
        return;
    }
    mNext = iDone + gMillion * 4;
    std::string lHowFar = std::to_string(iDone / gMillion);
    if (mSize != 0)
    {
        lHowFar.append(" of ").append(std::to_string(mSize / gMillion));
    }
    hDraw(lHowFar.append(" MB"));
}

void Progress::hDraw(const std::string& iHowFar)
{
    if (mIsTerminal)
    {
        std::fprintf(stderr, "\r\033[K%s %s", mAction.c_str(), iHowFar.c_str());
        std::fflush(stderr);
        mIsDrawn = true;
    }
}

} // namespace TalBaseTool
