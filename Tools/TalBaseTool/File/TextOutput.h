// A bag's text form as bytes, written piece by piece: as one text it would take four bytes for each character, beside a
// bag that takes as much.

#ifndef TALBASETOOL_FILE_TEXTOUTPUT_H
#define TALBASETOOL_FILE_TEXTOUTPUT_H

#include "Text/Path.h"

#include <functional>
#include <string_view>

namespace TalBaseTool
{

// Takes the next piece of what is written.
using TakeBytes = std::function<void(std::string_view)>;

// Hands on the UTF-8 of what iBag->GetString(iHasHeader, nullptr, nullptr, true) returns.
void WriteBag(const BagPtr& iBag, bool iHasHeader, const TakeBytes& iTake);

} // namespace TalBaseTool

#endif
