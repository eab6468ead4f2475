// What may be shown of a job.

#include "Job.h"
#include "Redact.h"

#include "QBase/Convert.h"

#include <iostream>

int main()
{
    const QTalBase::Initializer lInitializer;
    // [showing]
    const BagPtr lJob = MakeJob(L"ann@north.example", L"Timetable");
    lJob->SetProperty(L"FTPServerPassword", L"own", false);
    lJob->GetPropertyBag(L"Transport")->SetProperty(L"FTPServerPassword", L"nested", false);

    const QBase::ReturnWString lWithout = lJob->GetStringWithoutSensitiveInfo(false, nullptr, nullptr);
    std::cout << QBase::WideCharToUTF8(lWithout.c_str(), true) << '\n';
    const QBase::ReturnWString lShown = MakeShown(*lJob)->GetString(false, nullptr, nullptr, true);
    std::cout << QBase::WideCharToUTF8(lShown.c_str(), true) << '\n';
    std::cout << *lJob << '\n';
    // [showing]
}
