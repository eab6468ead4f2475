// What the library says, fit to be shown.

#ifndef TALBASETOOL_TEXT_MESSAGES_H
#define TALBASETOOL_TEXT_MESSAGES_H

#include <string>

namespace TalBaseTool
{

// A library message without the property texts that some messages carry, which can hold a password ("…; String must be
// malformed - lPropertyString: (312 characters not shown)").
std::string ShowMessage(const std::wstring& iMessage);

} // namespace TalBaseTool

#endif
