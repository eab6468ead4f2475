// Changes of a file itself: what is written under its name appears there complete or not at all.

#ifndef TALBASETOOL_FILE_INPLACE_H
#define TALBASETOOL_FILE_INPLACE_H

#include "File/TextOutput.h"

#include <functional>
#include <string>
#include <vector>

namespace TalBaseTool
{

// Throws IoError where a name stands for no regular file: a device or a pipe would be gone, with a file in its place.
void CheckIsRegular(const std::string& iFile);

// Puts what iWrite hands on under a name, in place of the file that is there: it is written beside it first, forced to the disk and renamed, so that after a crash at any moment the name stands for the old text or for
// the new one. Mode, owner, group and extended attributes stay where the system allows it, and a link stays a link;
// returned is what of that did not, a line for each. Throws IoError; the old file is then still there, unless the
// message begins with saying that it is changed.
std::vector<std::string> ReplaceText(const std::string& iFile, const std::function<void(const TakeBytes&)>& iWrite);

} // namespace TalBaseTool

#endif
