#include "File/Terminal.h"

#include <cstdlib>
#include <sys/ioctl.h>
#include <unistd.h>

namespace TalBaseTool
{

std::size_t FindWidth(int iDescriptor)
{
    if (::isatty(iDescriptor) != 1)
    {
        return 0;
    }
    const char* const lColumns = std::getenv("COLUMNS");
    const long lWanted = lColumns != nullptr ? std::strtol(lColumns, nullptr, 10) : 0;
    if (lWanted > 0)
    {
        return static_cast<std::size_t>(lWanted);
    }
    struct winsize lSize = {};
    const bool lIsKnown = ::ioctl(iDescriptor, TIOCGWINSZ, &lSize) == 0 && lSize.ws_col > 0;
    return lIsKnown ? lSize.ws_col : gUsualWidth;
}

} // namespace TalBaseTool
