// Whether what came back from the spool is what went in.

#ifndef MAILSPOOL_COMPARE_H
#define MAILSPOOL_COMPARE_H

#include "JobBag.h"

#include <string>
#include <vector>

namespace MailSpool
{

// Compares a job read back from the spool with a fresh bag of the same message and returns what differs, one text for
// each, in words; empty when nothing does. The bags are compared as bags, whatever the order of their properties; then
// the header fields in their order, and the body byte by byte. Throws DamageError when the job cannot be made a message
// again.
std::vector<std::wstring> FindDifferences(const QTalBase::PropertyBag& iFresh, const MailMessage& iFreshMessage,
                                          const QTalBase::PropertyBag& iStored);

} // namespace MailSpool

#endif
