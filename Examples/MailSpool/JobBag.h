// A delivery job as a property bag: what a service hands on and keeps. Plain properties for what the spooler decides
// on, the body, and two nested bags:
//
//   Sender Recipient Subject Date Message-ID Size EightBit   from the message
//   MboxLine HeaderCharset BodyCharset LineEnding Body
//   Job Queued Attempts Source Route                         from the spooler
//   <route>DeliveryWindow   the hours in which the route is closed; not there when it never is
//   Header      every field of the header, unfolded, in order; the second "Received" is named "Received 2"
//   Transport   how to reach the next hop: Protocol Host Port FTPServerUser FTPServerPassword
//
// Texts that come from outside are escaped (Escapes.h), so every message that can be parsed can be kept, and comes back
// as it was. Numbers, flags, times and identifiers are kept as QTalBase::Stringize writes them.

#ifndef MAILSPOOL_JOBBAG_H
#define MAILSPOOL_JOBBAG_H

#include "MailMessage.h"

#include "QBase/Guid.h"
#include "QBase/SmartPtrI.h"
#include "QDataType/DateTime.h"
#include "TalBase/DeliveryWindow.h"
#include "TalBase/PropertyBag.h"

#include <string>
#include <vector>

namespace MailSpool
{

using BagPtr = QBase::SmartPtrI<QTalBase::PropertyBag>;
using WindowPtr = QBase::SmartPtrI<QTalBase::DeliveryWindow>;

// Names of properties that more than one file uses.
constexpr wchar_t gJobName[] = L"Job";
constexpr wchar_t gSenderName[] = L"Sender";
constexpr wchar_t gRecipientName[] = L"Recipient";
constexpr wchar_t gSubjectName[] = L"Subject";
constexpr wchar_t gSizeName[] = L"Size";
constexpr wchar_t gSourceName[] = L"Source";
constexpr wchar_t gQueuedName[] = L"Queued";
constexpr wchar_t gAttemptsName[] = L"Attempts";
constexpr wchar_t gRouteName[] = L"Route";
constexpr wchar_t gTransportName[] = L"Transport";
constexpr wchar_t gProtocolName[] = L"Protocol";
constexpr wchar_t gHostName[] = L"Host";
constexpr wchar_t gPortName[] = L"Port";

// What the spooler adds to a message.
struct JobSettings
{
    _GUID mJob = {};
    QDataType::DateTime mQueued;
    std::wstring mSource; // where the message was read from, see GetSourceName
    WindowPtr mWindow;    // when the route is open; null for always
    std::wstring mUser;   // for the next hop
    std::wstring mPassword;
};

// The way that a message takes: the domain of its recipient.
std::wstring GetRoute(const MailMessage& iMessage);

// Makes a new bag for a message.
BagPtr MakeJobBag(const MailMessage& iMessage, const JobSettings& iSettings);

// The message of a job again. Throws DamageError when the bag is not one that MakeJobBag made.
MailMessage GetMessage(const QTalBase::PropertyBag& iJob);

// The delivery window of a job. Throws what DeliveryWindow::DeSerializeFromPropertyBag throws for a damaged one.
WindowPtr GetWindow(const QTalBase::PropertyBag& iJob);

// The plain properties that come from the message, in order of their position.
const std::vector<const wchar_t*>& GetMessagePropertyNames();

// A copy of what comes from the message alone, the nested bag Header included: the same for every job of a message.
BagPtr MakeMessageBag(const QTalBase::PropertyBag& iJob);

// The text of a plain property, unescaped; empty when there is none of that name.
std::wstring GetText(const QTalBase::PropertyBag& iBag, const wchar_t* ipName);

// Throws DamageError unless the bag holds every part of a job, each typed value a proper one. A text form that was cut
// between two properties can be read like any other; only what is missing gives it away. Transport stands last, so it
// misses in every such text.
void CheckJob(const QTalBase::PropertyBag& iJob);

} // namespace MailSpool

#endif
