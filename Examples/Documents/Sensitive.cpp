// What is written of a bag that has a password of its own and one in a nested bag, with and without sensitive
// information. The output stands in README.md.

#include "TalBase/Initializer.h"
#include "TalBase/PropertyBag.h"

#include <cstdio>

using BagPtr = QBase::SmartPtrI<QTalBase::PropertyBag>;

int main()
{
    const QTalBase::Initializer lInitializer;
    const BagPtr lTransport(QTalBase::CreatePropertyBag());
    lTransport->SetProperty(L"FTPServerPassword", L"nested-secret", false);
    const BagPtr lJob(QTalBase::CreatePropertyBag());
    lJob->SetProperty(L"Job", L"17", false);
    lJob->SetProperty(L"FTPServerPassword", L"own-secret", false);
    lJob->EmbedProperty(L"Transport", lTransport.get());
    std::printf("with:    %ls\n", lJob->GetString(false, nullptr, nullptr, true).c_str());
    std::printf("without: %ls\n", lJob->GetStringWithoutSensitiveInfo(false, nullptr, nullptr).c_str());
}
