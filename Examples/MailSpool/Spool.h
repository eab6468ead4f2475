// The folder in which jobs wait: a file for each, in the text form of its bag, as UTF-8. The files hold the passwords
// of the next hops and are readable by their owner alone.

#ifndef MAILSPOOL_SPOOL_H
#define MAILSPOOL_SPOOL_H

#include "JobBag.h"

#include <filesystem>
#include <string>
#include <vector>

namespace MailSpool
{

class Spool
{
public:
    explicit Spool(std::filesystem::path iFolder);

    // Makes the folder if it is not there. Throws IoError.
    void Create();

    // Keeps a job and returns the name of its file. Throws IoError.
    std::string Add(const QTalBase::PropertyBag& iJob);

    // The names of the files, oldest first. Throws IoError when there is no such folder.
    std::vector<std::string> GetNames() const;

    // Reads a job back. Throws IoError, DamageError, and whatever the library throws for a damaged text: a
    // QBase::Message, or std::out_of_range for a header that ends too early.
    BagPtr Read(const std::string& iName) const;

    std::filesystem::path GetPath(const std::string& iName) const;

private:
    std::filesystem::path mFolder;
    unsigned int mAdded = 0;
};

// The text form of a job as bytes, and back. Reading throws what Spool::Read throws.
std::string WriteJobText(const QTalBase::PropertyBag& iJob);
BagPtr ReadJobText(std::string_view iBytes);

} // namespace MailSpool

#endif
