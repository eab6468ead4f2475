// Whether what came back from the spool is what went in.

#ifndef MAILSPOOL_COMPARE_H
#define MAILSPOOL_COMPARE_H

#include "JobBag.h"

#include <string>
#include <vector>

namespace MailSpool
{

// Compares a job read back from the spool with a fresh bag of the same message and returns what differs, one text for
// each, in words: plain properties by value, header fields by name, value and order, the body byte by byte. Empty when
// nothing differs. Throws DamageError when the job cannot be made a message again.
std::vector<std::wstring> FindDifferences(const QTalBase::PropertyBag& iFresh, const MailMessage& iFreshMessage,
                                          const QTalBase::PropertyBag& iStored);

} // namespace MailSpool

#endif
