#include "TalBase/Initializer.h"
#include "TalBase/Views.h"
#include <cstdio>
using BagPtr = QBase::SmartPtrI<QTalBase::PropertyBag>;
int main()
{
    const QTalBase::Initializer lInitializer; // the library is up while this lives
    const BagPtr lTransport(QTalBase::CreatePropertyBag());
    QTalBase::Set(*lTransport, L"Host", L"ftp.example.com");
    const BagPtr lJob(QTalBase::CreatePropertyBag());
    QTalBase::Set(*lJob, L"Subject", L"Save 20% + shipping");
    lJob->EmbedProperty(L"Transport", lTransport.get()); // a copy
    const BagPtr lCopy(QTalBase::CreatePropertyBag(lJob->GetString(true, nullptr, nullptr, true).c_str()));
    std::printf("%ls\n%ls\n", lCopy->GetProperty(L"Subject").c_str(), lCopy->GetProperty(L"Transport").c_str());
}
