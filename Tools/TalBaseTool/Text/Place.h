// A place in a text as editors count it.

#ifndef TALBASETOOL_TEXT_PLACE_H
#define TALBASETOOL_TEXT_PLACE_H

#include <cstddef>
#include <string>
#include <string_view>

namespace TalBaseTool
{

// Both from 1: the line, and the character within it.
struct Place
{
    std::size_t mLine = 1;
    std::size_t mColumn = 1;
};

// The place of the character at an index.
Place FindPlace(std::wstring_view iText, std::size_t iIndex);

// "job.bag:3:17: "
std::string ShowPlace(const std::string& iFile, const Place& iPlace);

// Where something is missing at the very end of a text: before the line ends there, which an editor has put.
std::size_t StepBeforeLineEnd(std::wstring_view iText, std::size_t iPosition);

} // namespace TalBaseTool

#endif
