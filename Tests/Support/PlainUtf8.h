// UTF-8 by the table of well-formed byte sequences of the Unicode standard and by division: what the library's
// conversions are compared with.

#ifndef TESTS_SUPPORT_PLAINUTF8_H
#define TESTS_SUPPORT_PLAINUTF8_H

#include <cstddef>
#include <string>
#include <string_view>

namespace Plain
{

// A result, and where the first thing is that has no counterpart and was replaced, or npos.
template <class String>
struct Utf8Result
{
    String mText;
    std::size_t mFirstBad = std::string::npos;
};

Utf8Result<std::string> EncodeUtf8(std::wstring_view iText);
Utf8Result<std::wstring> DecodeUtf8(std::string_view iBytes);

} // namespace Plain

#endif
