// What the library says, fit to be shown.

#ifndef TALBASETOOL_TEXT_MESSAGES_H
#define TALBASETOOL_TEXT_MESSAGES_H

#include <string>
#include <string_view>

namespace TalBaseTool
{

// A library message without the texts, values and delimiters that some messages carry, which can hold a password ("…;
// String must be malformed - lPropertyString: (not shown)").
std::string ShowMessage(const std::wstring& iMessage);

// Why a text could not be read: the same, behind what a person can do about it where that is known. iHasPair: whether
// it is read as a text without a header.
std::string ShowReason(std::wstring_view iText, bool iHasPair, const std::wstring& iMessage);

} // namespace TalBaseTool

#endif
