// Changes of a file itself: what is written under its name appears there complete or not at all.

#ifndef TALBASETOOL_INPLACE_H
#define TALBASETOOL_INPLACE_H

#include <string>
#include <string_view>

namespace TalBaseTool
{

// Throws IoError where a name stands for no regular file: a device or a pipe would be gone, with a file in its place.
void CheckIsRegular(const std::string& iFile);

// Puts a text, and what stands behind it, under a name, in place of the file that is there: it is written beside it
// first, forced to the disk and renamed, so that after a crash at any moment the name stands for the old text or for
// the new one. Mode and, where the system allows it, owner stay; a link stays a link. Throws IoError; the old file is
// then still there, unless only the folder could not be forced to the disk.
void ReplaceText(const std::string& iFile, std::wstring_view iText, std::wstring_view iTail);

} // namespace TalBaseTool

#endif
