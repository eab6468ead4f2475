// Who sent a message and who is to get it, read from the fields in which mail systems leave that.

#ifndef MAILSPOOL_MAILADDRESS_H
#define MAILSPOOL_MAILADDRESS_H

#include "MailMessage.h"

#include <string>
#include <string_view>

namespace MailSpool
{

// The first address of an address list: without display name, comments and group name. "<>", the address of
// those who want no answer, stays "<>". Empty when there is none.
std::wstring GetFirstAddress(std::wstring_view iAddressList);

// From Return-Path, the mbox line, From or Sender, the first of them that is there. Empty when none is.
std::wstring GetSender(const MailMessage& iMessage);

// From Delivered-To, X-Original-To, To, Cc or Bcc, the first of them that names one. Empty when none does.
std::wstring GetRecipient(const MailMessage& iMessage);

// What stands behind the last "@", in lower case; "localhost" when there is none.
std::wstring GetDomain(std::wstring_view iAddress);

} // namespace MailSpool

#endif
