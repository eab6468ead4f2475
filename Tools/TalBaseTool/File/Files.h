// Whole texts in, and bytes out, as UTF-8.

#ifndef TALBASETOOL_FILE_FILES_H
#define TALBASETOOL_FILE_FILES_H

#include <cstddef>
#include <deque>
#include <functional>
#include <string>
#include <string_view>

namespace TalBaseTool
{

inline constexpr const char* gTextForm = "a text form";

// Reads a file, or standard input for "-", block by block; ipWhat: what is waited for, for a person at a terminal.
// iOpened: a descriptor of the file, where it is open already. Throws IoError.
void ReadBlocks(const std::string& iFile, const std::function<void(std::string_view)>& iTake,
                const char* ipWhat = gTextForm, int iOpened = -1);

// The text of a file, or of standard input for "-". Throws IoError; throws TextError for a byte that is not UTF-8
// and for a zero character, which no text form can hold.
std::wstring ReadText(const std::string& iFile, const char* ipWhat = gTextForm, int iOpened = -1);

// The text in blocks that were read already, which are let go one by one. iSize: about how many bytes they have.
std::wstring DecodeText(const std::string& iFile, std::deque<std::string> iBlocks, std::size_t iSize);

// Hands the UTF-8 of a text on, block by block.
void EncodeBlocks(std::wstring_view iText, const std::function<void(std::string_view)>& iTake);

} // namespace TalBaseTool

#endif
