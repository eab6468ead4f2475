// What may be shown of a job and of an error. The library leaves sensitive properties out of a bag's text on the top
// level only, and some of its messages carry the text that they complain about; a table or a log must show neither.

#ifndef MAILSPOOL_DISPLAY_H
#define MAILSPOOL_DISPLAY_H

#include "JobBag.h"

#include <string>

namespace MailSpool
{

// A copy of the bag without its sensitive properties at any depth. The bag itself stays as it is.
BagPtr MakeDisplayBag(const QTalBase::PropertyBag& iBag);

// The text of a library message without the property texts that it carries: "…; String must be malformed -
// lPropertyString: (312 characters not shown)".
std::wstring MakeDisplayMessage(const std::wstring& iMessage);

// What the exception in flight has to say, fit to be shown. To be called from a catch (...).
std::string DescribeException();

} // namespace MailSpool

#endif
