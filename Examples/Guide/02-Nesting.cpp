// What of a bag is copied, and what is shared.

#include "Job.h"

#include <cstdio>

namespace
{

void ShowPort(const char* ipWho, const QTalBase::PropertyBag& iJob)
{
    std::printf("%-6s %ls\n", ipWho, QTalBase::GetValueAt(iJob, L"Transport/Port").c_str());
}

} // namespace

int main()
{
    const QTalBase::Initializer lInitializer;
    // [nesting]
    const BagPtr lJob = MakeJob(L"ann@north.example", L"Timetable");
    const BagPtr lTransport = lJob->GetPropertyBag(L"Transport"); // the bag in the job itself
    const BagPtr lClone(lJob->Clone());                           // shares it
    const BagPtr lCopy(QTalBase::CreatePropertyBag());
    lCopy->AddPropertyBag(lJob.get()); // copies it

    QTalBase::Set(*lTransport, L"Port", 2121);
    ShowPort("job", *lJob);
    ShowPort("clone", *lClone);
    ShowPort("copy", *lCopy);
    // [nesting]
}
