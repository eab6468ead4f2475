// The two kinds of trouble that the spooler itself reports, next to the library's own messages (QBase::Message).

#ifndef MAILSPOOL_ERRORS_H
#define MAILSPOOL_ERRORS_H

#include <stdexcept>

namespace MailSpool
{

// What was read is not what it should be: a job without its parts, a file that is no message. Exit status 1.
class DamageError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// The operating system refused: a file that cannot be read or written. Exit status 2.
class IoError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

} // namespace MailSpool

#endif
