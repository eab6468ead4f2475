// Changes of a file itself: what is written under its name appears there complete or not at all.

#ifndef TALBASETOOL_FILE_INPLACE_H
#define TALBASETOOL_FILE_INPLACE_H

#include "File/FileLock.h"
#include "File/TextOutput.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace TalBaseTool
{

// Throws IoError where a name stands for no regular file: a device or a pipe would be gone, with a file in its place.
void CheckIsRegular(const std::string& iFile);

// Whether a file has other names (hard links), which keep the old text when one of them is given a new one.
bool HasOtherNames(const std::string& iFile);

// Puts what iWrite hands on under the name of a file that is locked, in place of that file: it is written beside it
// first, forced to the disk and renamed, so that after a crash at any moment the name stands for the old text or for
// the new one. Mode, owner, group and extended attributes stay where the system allows it, and a link stays a link;
// returned is what of that did not, a line for each. Throws IoError, also where the file is not what it was when it was
// locked; the old file is then still there, unless the message begins with saying that it is changed.
//
// iBackup: what a copy of the old file, with all of that, is called behind the file's name; null for none. It takes the
// place of an earlier one when the new text is complete, just before that takes the file's.
std::vector<std::string> ReplaceText(const FileLock& iLock, const std::function<void(const TakeBytes&)>& iWrite,
                                     const std::optional<std::string>& iBackup);

} // namespace TalBaseTool

#endif
