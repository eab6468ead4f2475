// What a file has besides its text, and a new file in its place is to have, too.

#ifndef TALBASETOOL_FILE_FILETRAITS_H
#define TALBASETOOL_FILE_FILETRAITS_H

#include <string>
#include <sys/stat.h>
#include <vector>

namespace TalBaseTool
{

// Gives an open file the owner, the group, the access control list, the other extended attributes and the mode of
// another file. What the system does not allow is left out and returned, a line for each; the permissions of a group
// that cannot be kept are, too, but for those that everybody has. Throws IoError where the mode cannot be set.
std::vector<std::string> CopyTraits(const std::string& iFrom, const struct stat& iStatus, int iDescriptor);

} // namespace TalBaseTool

#endif
