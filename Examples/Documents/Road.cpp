// The road of one bag: made, set, rendered, sent as text, parsed, stored in a stream, read again, torn down. It stands
// in Docs/Architecture.md.

#include "QBase/Convert.h"
#include "QSerialization/MemoryDataStream.h"
#include "TalBase/Initializer.h"
#include "TalBase/PropertyBag.h"

#include <cstdio>
#include <string>

using BagPtr = QBase::SmartPtrI<QTalBase::PropertyBag>;

int main()
{
    const QTalBase::Initializer lInitializer;

    // [made]
    const BagPtr lTransport(QTalBase::CreatePropertyBag()); // count 0; the pointer makes it 1
    lTransport->SetProperty(L"Host", L"ftp.example.com", false);
    const BagPtr lJob(QTalBase::CreatePropertyBag());
    lJob->SetProperty(L"Subject", L"2 * 3", false);
    lJob->EmbedProperty(L"Transport", lTransport.get());
    // [made]
    std::printf("stored:   %ls\n", lJob->GetValue(0).c_str());

    // [rendered]
    const QBase::ReturnWString lText = lJob->GetString(true, nullptr, nullptr, true);
    const std::string lSent = QBase::WideCharToUTF8(lText.c_str(), true);
    // [rendered]
    std::printf("rendered: %s\n", lSent.c_str());

    // [parsed]
    const std::wstring lReceived = QBase::UTF8ToWideChar(lSent, true);
    const BagPtr lParsed(QTalBase::CreatePropertyBag(lReceived.c_str()));
    // [parsed]
    std::printf("parsed:   %ls\n", lParsed->GetProperty(L"Subject").c_str());

    // [stored]
    QSerialization::MemoryWriteDataStream lWritten;
    lParsed->Serialize(lWritten);
    // [stored]
    std::printf("stored:   %zu bytes\n", lWritten.GetBytes().size());

    // [read]
    QSerialization::MemoryReadDataStream lStream(lWritten.GetBytes().data(), lWritten.GetBytes().size());
    BagPtr lRead(QTalBase::CreatePropertyBag());
    lRead->DeSerialize(lStream);
    // [read]
    std::printf("read:     %u properties\n", lRead->GetCount());

    // [gone]
    const BagPtr lNest = lRead->GetPropertyBag(L"Transport");
    lRead = nullptr; // the last reference to the bag, but not to the bag in it
    // [gone]
    std::printf("left:     %ls\n", lNest->GetProperty(L"Host").c_str());
}
