// Texts in JSON's quotes, there and back.

#ifndef TALBASETOOL_TEXT_JSONTEXT_H
#define TALBASETOOL_TEXT_JSONTEXT_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace TalBaseTool
{

// Appends a text as a JSON string in UTF-8. Control and invisible characters are escapes, so that it is one line of
// ASCII or of what can be seen.
void AppendJsonString(std::wstring_view iText, std::string& oUtf8);

// The same without the quotes, for a string in pieces.
void AppendJsonCharacters(std::wstring_view iText, std::string& oUtf8);

// The text of a JSON string with its quotes, or nothing where that is none.
std::optional<std::wstring> ReadJsonString(std::wstring_view iQuoted);
std::optional<std::wstring> ReadJsonString(std::string_view iQuoted); // in UTF-8

// Where the JSON string that begins a text ends, behind its quote; npos where it does not.
std::size_t FindJsonStringEnd(std::wstring_view iText);

} // namespace TalBaseTool

#endif
