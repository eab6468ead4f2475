#include "TalBase/Initializer.h"
#include "TalBase/PropertyBag.h"
#include <cstdio>

using BagPtr = QBase::SmartPtrI<QTalBase::PropertyBag>;

// Removes the password at every depth. A nested bag of that name goes too.
void Redact(QTalBase::PropertyBag& oBag)
{
    oBag.RemoveProperty(L"FTPServerPassword");
    for (unsigned int lIndex = 0; lIndex < oBag.GetCount(); ++lIndex)
    {
        if (oBag.IsEmbedded(lIndex))
        {
            Redact(*oBag.GetValuePropertyBag(lIndex));
        }
    }
}

int main()
{
    const QTalBase::Initializer lInitializer;
    const BagPtr lJob(QTalBase::CreatePropertyBag());
    lJob->SetProperty(L"Transport", L"Host++++ftp.example.com***FTPServerPassword++++nested-secret***", true);
    const BagPtr lShown(QTalBase::CreatePropertyBag()); // not Clone, which shares the nested bags
    lShown->AddPropertyBag(lJob.get());
    Redact(*lShown);
    std::printf("%ls\n", lShown->GetString(false, nullptr, nullptr, true).c_str());
}
