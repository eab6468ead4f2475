// When a job may go.

#include "Job.h"

#include "TalBase/DeliveryWindow.h"

#include <cstdio>

using WindowPtr = QBase::SmartPtrI<QTalBase::DeliveryWindow>;

int main()
{
    const QTalBase::Initializer lInitializer;
    const BagPtr lJob = MakeJob(L"ann@north.example", L"Timetable");
    // [writing]
    const WindowPtr lNight(QTalBase::CreateDeliveryWindow());
    lNight->DisableTimeBlock(22, 5); // past midnight, both hours included
    const BagPtr lProperty(
        lNight->SerializeToPropertyBag(L"Route", lJob->GetBeginDelimiter(), lJob->GetEndDelimiter()));
    lJob->AddPropertyBag(lProperty.get());
    std::printf("RouteDeliveryWindow: %ls\n", lJob->GetProperty(L"RouteDeliveryWindow").c_str());
    // [writing]

    // [asking]
    const WindowPtr lWindow(QTalBase::CreateDeliveryWindow());
    lWindow->DeSerializeFromPropertyBag(L"Route", lJob.get());
    unsigned int lWait = 0;
    while (lWait < 24 && !lWindow->IsEnabled((23 + lWait) % 24))
    {
        ++lWait;
    }
    std::printf("at 23 o'clock it has to wait %u hours\n", lWait);
    // [asking]
}
