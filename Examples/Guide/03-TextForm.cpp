// A bag as text, and the way back.

#include "Job.h"

#include <cstdio>

int main()
{
    const QTalBase::Initializer lInitializer;
    // [text]
    const BagPtr lJob = MakeJob(L"ann@north.example", L"Save 20% + shipping");
    const QBase::ReturnWString lText = lJob->GetString(true, nullptr, nullptr, true);
    std::printf("%ls\n", lText.c_str());

    const BagPtr lRead(QTalBase::CreatePropertyBag(lText.c_str()));
    std::printf("%ls\n", lRead->GetProperty(L"Subject").c_str());
    std::printf("same: %d\n", lRead->IsSubset(lJob.get()) && lJob->IsSubset(lRead.get()));
    // [text]

    // [delimiters]
    const BagPtr lLines(QTalBase::CreatePropertyBag(L"=", L"\n"));
    lLines->SetProperty(L"Subject", L"Save 20% + shipping", false);
    lLines->SetProperty(L"Attempts", L"0", false);
    std::printf("%ls", lLines->GetString(true, nullptr, nullptr, true).c_str());
    // [delimiters]

    // [lost]
    lJob->SetProperty(L"Subject", L"A star is &#42; in HTML", false);
    std::printf("%ls\n", lJob->GetProperty(L"Subject").c_str());
    // [lost]
}
