#include "File/Progress.h"

#include "File/Terminal.h"
#include "Text/Text.h"

#include <cstdio>
#include <unistd.h>

namespace TalBaseTool
{

namespace
{

constexpr std::size_t gMillion = 1000000;
constexpr std::size_t gWorthShowing = 16 * gMillion;

bool gIsAllowed = true;

} // namespace

void Progress::Allow(bool iIsAllowed)
{
    gIsAllowed = iIsAllowed;
}

void Progress::TellWaiting(const char* ipWhat)
{
    if (gIsAllowed)
    {
        std::fprintf(stderr, "talbase: waiting for %s on standard input; Ctrl-D ends it\n", ipWhat);
    }
}

Progress::Progress(std::string iAction, std::size_t iSize)
    : mAction(std::move(iAction)), mSize(iSize), mWidth(gIsAllowed ? FindWidth(STDERR_FILENO) : 0), mNext(gWorthShowing)
{
    if (mSize >= gWorthShowing)
    {
        Show();
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

void Progress::Show()
{
    hDraw("");
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
    if (mWidth > 0)
    {
        // In the last column a terminal may go to the next line, which could not be wiped.
        std::fprintf(stderr, "\r\033[K%s", CutToWidth(mAction + " " + iHowFar, mWidth - 1).c_str());
        std::fflush(stderr);
        mIsDrawn = true;
    }
}

} // namespace TalBaseTool
