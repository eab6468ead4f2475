// A job as a text file: the text form of its bag in UTF-8, for people, for other programs, and for a spool that has to
// be rescued. It holds everything, the password of the next hop included.

#ifndef MAILSPOOL_JOBTEXT_H
#define MAILSPOOL_JOBTEXT_H

#include "JobBag.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace MailSpool
{

// The text form of a job as bytes, and back. Reading throws DamageError, and whatever the library throws for a damaged
// text: a QBase::Message, or std::out_of_range for a header that ends too early.
std::string WriteJobText(const QTalBase::PropertyBag& iJob);
BagPtr ReadJobText(std::string_view iBytes);

// Writes the text file of a job, named for its identifier, into a folder, and reads such a file. Both throw IoError.
void WriteJobFile(const std::filesystem::path& iFolder, const QTalBase::PropertyBag& iJob);
BagPtr ReadJobFile(const std::filesystem::path& iPath);

} // namespace MailSpool

#endif
