// Which encoding bytes are in that are not UTF-8.

#ifndef TALBASETOOL_TEXT_ENCODING_H
#define TALBASETOOL_TEXT_ENCODING_H

#include <cstddef>
#include <string_view>

namespace TalBaseTool
{

inline constexpr std::size_t gTellingBytes = 4; // of the beginning of a text; more say nothing more

// "UTF-16" or "UTF-32", by the mark at the beginning of a text, or by the zeros between its first letters; null where
// nothing speaks for one of them.
const char* FindForeignEncoding(std::string_view iBytes);

} // namespace TalBaseTool

#endif
