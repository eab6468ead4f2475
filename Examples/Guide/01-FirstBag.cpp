// A bag with what a delivery job consists of.

#include "TalBase/Initializer.h"
#include "TalBase/PropertyBag.h"
#include "TalBase/Views.h"

#include <cstdio>

using BagPtr = QBase::SmartPtrI<QTalBase::PropertyBag>;

int main()
{
    const QTalBase::Initializer lInitializer; // the library is up while this lives

    const BagPtr lJob(QTalBase::CreatePropertyBag());
    lJob->SetProperty(L"Subject", L"Timetable", false);
    lJob->SetProperty(L"Recipient", L"ann@north.example", false);
    QTalBase::Set(*lJob, L"Attempts", 0);

    lJob->SetProperty(L"Subject", L"Timetable for May", false); // replaces, and moves to the end
    QTalBase::Set(*lJob, L"Attempts", QTalBase::Get(*lJob, L"Attempts", 0) + 1);
    for (const QTalBase::Property& lProperty : *lJob)
    {
        std::printf("%ls = %ls\n", lProperty.GetName().c_str(), lProperty.GetValue().c_str());
    }

    lJob->SetProperty(L"Subject", L"", false); // the empty value removes
    std::printf("%u left, the subject is '%ls'\n", lJob->GetCount(), lJob->GetProperty(L"Subject").c_str());
}
