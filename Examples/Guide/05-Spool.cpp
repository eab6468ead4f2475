// Jobs wait in a file.

#include "Job.h"
#include "Spool.h"

#include <cstdio>

int main()
{
    const QTalBase::Initializer lInitializer;
    // [filing]
    const BagsPtr lJobs(QTalBase::CreatePropertyBags());
    lJobs->Add(L"1", MakeJob(L"ann@north.example", L"Timetable").get());
    lJobs->Add(L"2", MakeJob(L"bob@south.example", L"Menu").get());
    WriteSpool("spool", *lJobs);

    const BagsPtr lRead = ReadSpool("spool");
    for (const QTalBase::BagEntry& lEntry : *lRead)
    {
        std::printf("job %ls: %ls\n", lEntry.GetName(), lEntry.GetBag()->GetProperty(L"Subject").c_str());
    }
    std::printf("there is %s job 3\n", lRead->GetPropertyBagByName(L"3") ? "a" : "no");
    // [filing]

    // [damage]
    QSerialization::MemoryWriteDataStream lWritten;
    lJobs->Serialize(lWritten);
    QSerialization::MemoryReadDataStream lCut(lWritten.GetBytes().data(), lWritten.GetBytes().size() - 1);
    try
    {
        lRead->DeSerialize(lCut);
    }
    catch (const QSerialization::StreamException& lError)
    {
        std::printf("%ls\n%u job was read before\n", lError.GetMessage(), lRead->GetCount());
    }
    // [damage]
}
