// Whole files in, whole files out. What is written appears under its name complete or not at all.

#ifndef MAILSPOOL_FILEIO_H
#define MAILSPOOL_FILEIO_H

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace MailSpool
{

// The bytes of a file. Throws IoError when it cannot be read, DamageError when it is larger than iMaxSize.
std::string ReadFile(const std::filesystem::path& iPath, std::size_t iMaxSize);

// Puts the bytes under a name, in place of what was there. They are written to a temporary name in the same folder
// first (hidden, readable by the owner alone), forced to the disk, renamed, and then the folder is forced to the disk:
// after a crash at any moment the name stands for the old file or for the new one, never for a part. Throws IoError;
// the old file is then still there, unless only the last step failed.
void ReplaceFile(const std::filesystem::path& iPath, std::string_view iBytes);

} // namespace MailSpool

#endif
