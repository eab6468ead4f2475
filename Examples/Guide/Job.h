// A job of the guide's mail spool, as the first two steps make it.

#ifndef GUIDE_JOB_H
#define GUIDE_JOB_H

#include "TalBase/Initializer.h"
#include "TalBase/PropertyBag.h"
#include "TalBase/Views.h"

#include <string>

using BagPtr = QBase::SmartPtrI<QTalBase::PropertyBag>;

// [job]
// How to reach the next hop.
inline BagPtr MakeTransport(const std::wstring& iHost)
{
    BagPtr lTransport(QTalBase::CreatePropertyBag());
    QTalBase::Set(*lTransport, L"Host", iHost);
    QTalBase::Set(*lTransport, L"Port", 21);
    return lTransport;
}

inline BagPtr MakeJob(const std::wstring& iRecipient, const std::wstring& iSubject)
{
    const std::wstring lRoute = iRecipient.substr(iRecipient.find(L'@') + 1);
    BagPtr lJob(QTalBase::CreatePropertyBag());
    QTalBase::Set(*lJob, L"Recipient", iRecipient);
    QTalBase::Set(*lJob, L"Subject", iSubject);
    QTalBase::Set(*lJob, L"Route", lRoute);
    QTalBase::Set(*lJob, L"Attempts", 0);
    lJob->EmbedProperty(L"Transport", MakeTransport(lRoute).get());
    return lJob;
}
// [job]

#endif
