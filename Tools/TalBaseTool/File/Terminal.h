// What is known of a terminal.

#ifndef TALBASETOOL_FILE_TERMINAL_H
#define TALBASETOOL_FILE_TERMINAL_H

#include <cstddef>

namespace TalBaseTool
{

inline constexpr std::size_t gUsualWidth = 80;

// The columns of the terminal that an open file is: those that the environment variable COLUMNS asks for, or else what
// the terminal says, or else the usual. 0 where the file is no terminal.
std::size_t FindWidth(int iDescriptor);

} // namespace TalBaseTool

#endif
