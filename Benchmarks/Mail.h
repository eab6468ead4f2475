// Turns mail messages into documents of the benchmarks: a record of the header fields and the body. It reads no more of
// the mail format than that takes: fields, their folded lines, the empty line before the body.

#ifndef BENCHMARKS_MAIL_H
#define BENCHMARKS_MAIL_H

#include "Data.h"

#include <string>

namespace Bench
{

// Returns the document of one message. Each byte becomes one character (as in Latin-1), line ends become L'\n', and
// control characters that XML cannot carry are dropped, and what a bag would take for an escape gets
// another first character. Lines that are no header field are left out. A repeated field
// gets a number: a document has a name once.
Record MakeMailRecord(const std::string& iMessage);

} // namespace Bench

#endif
