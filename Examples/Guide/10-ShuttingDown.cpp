// The whole service, from its start to its end.

#include "Job.h"
#include "Spool.h"

#include "QSynch/Initializer.h"
#include "TalBase/DeliveryWindow.h"

#include <cstdio>
#include <string>
#include <utility>

// [service]
class Service
{
public:
    explicit Service(std::string iSpool) : mSpool(std::move(iSpool)), mJobs(ReadSpool(mSpool)) {}

    // Takes a job in as text. It is safe as soon as this returns.
    void Accept(const wchar_t* ipText)
    {
        const BagPtr lJob(QTalBase::CreatePropertyBag(ipText));
        mJobs->Add(lJob->GetProperty(L"Job").c_str(), lJob.get());
        WriteSpool(mSpool, *mJobs);
    }

    // Delivers what may go at that hour and keeps the rest.
    void Deliver(unsigned int iHour)
    {
        const BagsPtr lWaiting(QTalBase::CreatePropertyBags());
        for (const QTalBase::BagEntry& lEntry : *mJobs)
        {
            const BagPtr lJob = lEntry.GetBag();
            if (IsOpen(*lJob, iHour))
            {
                std::printf("%u:00 job %ls goes to %ls\n", iHour, lEntry.GetName(),
                            lJob->GetProperty(L"Route").c_str());
            }
            else
            {
                lWaiting->Add(lEntry.GetName(), lJob.get());
            }
        }
        mJobs = lWaiting;
        WriteSpool(mSpool, *mJobs);
    }

private:
    static bool IsOpen(const QTalBase::PropertyBag& iJob, unsigned int iHour)
    {
        const QBase::SmartPtrI<QTalBase::DeliveryWindow> lWindow(QTalBase::CreateDeliveryWindow());
        lWindow->DeSerializeFromPropertyBag(L"Route", &iJob);
        return lWindow->IsEnabled(iHour);
    }

    QTalBase::Initializer mInitializer; // the first member: it comes before what uses the library, and goes after it
    std::string mSpool;
    BagsPtr mJobs;
};
// [service]

namespace
{

std::wstring MakeText(int iNumber, const wchar_t* ipRecipient, const wchar_t* ipClosedHours)
{
    const BagPtr lJob = MakeJob(ipRecipient, L"Timetable");
    QTalBase::Set(*lJob, L"Job", iNumber);
    lJob->SetProperty(L"RouteDeliveryWindow", ipClosedHours, false);
    return lJob->GetString(true, nullptr, nullptr, true).c_str();
}

} // namespace

int main()
{
    // [running]
    {
        Service lService("spool");
        lService.Accept(MakeText(1, L"ann@north.example", L"22,23,").c_str());
        lService.Accept(MakeText(2, L"bob@south.example", L"").c_str());
        lService.Deliver(23);
    }
    std::printf("the library is %s\n", QSynch::Initializer::GetCount() > 0 ? "up" : "down");
    Service lService("spool"); // the next start finds what was left
    lService.Deliver(6);
    // [running]
}
