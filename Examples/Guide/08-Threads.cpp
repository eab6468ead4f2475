// Several threads take jobs in.

#include "Job.h"
#include "Spool.h"

#include <cstdio>
#include <mutex>
#include <string>
#include <thread>

// [queue]
// Nothing in the library locks, so what threads share and change has a lock of its own.
class Queue
{
public:
    void Add(const QTalBase::PropertyBag& iJob)
    {
        const std::lock_guard<std::mutex> lLock(mMutex);
        mJobs->Add(iJob.GetProperty(L"Job").c_str(), &iJob);
    }

    // Returns a collection of the caller's own. It hands out clones, whose nested bags all share: to be read only.
    BagsPtr GetJobs() const
    {
        const std::lock_guard<std::mutex> lLock(mMutex);
        return BagsPtr(mJobs->Clone());
    }

private:
    mutable std::mutex mMutex;
    BagsPtr mJobs{QTalBase::CreatePropertyBags()};
};
// [queue]

int main()
{
    const QTalBase::Initializer lInitializer;
    // [threads]
    const BagPtr lTemplate =
        MakeJob(L"ann@north.example", L"Timetable"); // is not changed from here on: all may read it
    Queue lQueue;
    const auto lTakeIn = [&lTemplate, &lQueue](int iNumber) {
        const BagPtr lJob(QTalBase::CreatePropertyBag());
        lJob->AddPropertyBag(lTemplate.get()); // a copy to the bottom; a clone would share the nested bags
        QTalBase::Set(*lJob, L"Job", iNumber);
        QTalBase::Set(*lJob->GetPropertyBag(L"Transport"), L"Port", 2100 + iNumber);
        lQueue.Add(*lJob);
    };
    std::thread lFirst(lTakeIn, 1);
    std::thread lSecond(lTakeIn, 2);
    lFirst.join();
    lSecond.join();
    for (const wchar_t* lName : {L"1", L"2"})
    {
        const BagPtr lJob = lQueue.GetJobs()->GetPropertyBagByName(lName);
        std::printf("job %ls: port %ls\n", lName, QTalBase::GetValueAt(*lJob, L"Transport/Port").c_str());
    }
    std::printf("the template: port %ls\n", QTalBase::GetValueAt(*lTemplate, L"Transport/Port").c_str());
    // [threads]
}
