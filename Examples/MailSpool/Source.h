// The files that messages are read from.

#ifndef MAILSPOOL_SOURCE_H
#define MAILSPOOL_SOURCE_H

#include "MailMessage.h"

#include <filesystem>
#include <string>
#include <vector>

namespace MailSpool
{

// Each file stays; each folder gives every file in it and in its folders, sorted by name, hidden ones left out. Throws
// IoError when a folder cannot be read or holds no file.
std::vector<std::filesystem::path> FindFiles(const std::vector<std::filesystem::path>& iPaths);

// Reads a message from a file. Throws IoError and DamageError.
MailMessage ReadMessage(const std::filesystem::path& iPath);

// The name under which a job remembers its file: the full path, the same from whatever folder and through whatever link
// it was reached, with '%' written as "%25". A path need not be UTF-8; where it is not, its bytes above 127 are written
// as "%" and two hexadecimal digits, so different files never get the same name.
std::wstring GetSourceName(const std::filesystem::path& iPath);

} // namespace MailSpool

#endif
