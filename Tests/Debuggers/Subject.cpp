// What the tests of the printers look at: one object of each kind, whole and damaged, in a program that stops.

#include "QBase/Guid.h"
#include "QDataType/DateTime.h"
#include "QDataType/StringCollection.h"
#include "TalBase/BufferedWString.h"
#include "TalBase/DeliveryWindow.h"
#include "TalBase/Initializer.h"
#include "TalBase/PrivateSource/PropertyBagImpl.h"
#include "TalBase/PropertyBag.h"
#include "TalBase/PropertyBags.h"
#include "TalBase/SerializableStringCollection.h"

#include <cstring>
#include <memory>

using BagPtr = QBase::SmartPtrI<QTalBase::PropertyBag>;

namespace
{

// The debugger stops here.
__attribute__((noinline)) void Stop()
{
    __asm__ volatile("");
}

// Makes the compiler believe that a local is looked at.
template <class T>
void Show(const T& iLocal)
{
    __asm__ volatile("" : : "g"(&iLocal) : "memory");
}

// An object's memory as somebody left it who wrote where it was not allowed to.
template <class T>
struct Overwritten
{
    explicit Overwritten(int iByte)
    {
        std::memset(mBytes, iByte, sizeof mBytes);
    }

    alignas(T) unsigned char mBytes[sizeof(T)];
};

// A bag of a client, which the printers know by its base.
class OwnBag : public QTalBase::PropertyBagImpl
{
};

BagPtr MakeBag()
{
    const BagPtr lServer(QTalBase::CreatePropertyBag());
    lServer->SetProperty(L"Host", L"ftp.example.com", false);
    lServer->SetProperty(L"Port", L"21", false);
    const BagPtr lTransport(QTalBase::CreatePropertyBag());
    lTransport->SetProperty(L"Kind", L"ftp", false);
    lTransport->EmbedProperty(L"Server", lServer.get());
    BagPtr lBag(QTalBase::CreatePropertyBag());
    lBag->SetProperty(L"gone", L"x", false);
    lBag->SetProperty(L"Subject", L"2*2 \u00E9\n\"", false);
    lBag->SetProperty(L"a name that is too long for an entry", L"v", false);
    lBag->RemoveProperty(L"gone");
    lBag->EmbedProperty(L"Transport", lTransport.get());
    return lBag;
}

// Objects as they should be.
void ShowWhole()
{
    const BagPtr lBag = MakeBag();
    const BagPtr lSecond = lBag;
    const BagPtr lOther(QTalBase::CreatePropertyBag(L"[", L"]"));
    const BagPtr lOwn(new OwnBag());
    const BagPtr lNone;
    const QTalBase::PropertyBag& lReference = *lBag;
    lOwn->SetProperty(L"k", L"v", false);

    const QBase::SmartPtrI<QTalBase::PropertyBags> lBags(QTalBase::CreatePropertyBags());
    lBags->Add(L"first", lOther.get());
    const QBase::SmartPtrI<QTalBase::DeliveryWindow> lWindow(QTalBase::CreateDeliveryWindow());
    lWindow->DisableTimeBlock(22, 5);

    const QBase::ReturnWString lShort(L"short");
    const QBase::ReturnWString lLong(L"a text that is longer than what fits into the object");
    const QBase::ReturnWString lEmpty(nullptr);
    const QBase::SmartPtrI<QTalBase::BufferedWString> lBuffer(QTalBase::CreateBufferedWString(64, 0));
    *lBuffer += L"buffered";

    const std::unique_ptr<QDataType::StringCollection> lStringsOwner(QDataType::CreateStringCollection());
    QDataType::StringCollection& lStrings = *lStringsOwner;
    lStrings.Insert(L"one");
    lStrings.Insert(L"two, which is a long text");
    const QBase::SmartPtrI<QTalBase::SerializableStringCollection> lOwnStrings(
        QTalBase::CreateSerializableStringCollection());
    lOwnStrings->Insert(lStrings);

    QDataType::DateTime lInstant;
    lInstant.FromString("2026-11-21T02:49:00.25Z");
    const QDataType::DateTime lEpoch;
    const _GUID lGuid = {0x12345678, 0x9ABC, 0x4DEF, {0x80, 1, 2, 3, 4, 5, 6, 7}};
    Show(lSecond);
    Show(lNone);
    Show(lReference);
    Show(lEpoch);
    Show(lGuid);
    Stop();
}

// What the printers must bear: memory that is no object, and an object that was written over.
void ShowDamaged()
{
    const Overwritten<QBase::ReturnWString> lTextBytes(0xA5);
    const Overwritten<QBase::SmartPtrI<QTalBase::PropertyBag>> lPointerBytes(0xA5);
    const Overwritten<QDataType::DateTime> lInstantBytes(0x7F);
    alignas(16) unsigned char lBytes[256];
    std::memset(lBytes, 0xA5, sizeof lBytes);
    const auto& lText = reinterpret_cast<const QBase::ReturnWString&>(lTextBytes);
    const auto& lPointer = reinterpret_cast<const QBase::SmartPtrI<QTalBase::PropertyBag>&>(lPointerBytes);
    const auto& lInstant = reinterpret_cast<const QDataType::DateTime&>(lInstantBytes);
    const auto& lBag = reinterpret_cast<const QTalBase::PropertyBag&>(lBytes);
    const auto& lWindow = reinterpret_cast<const QTalBase::DeliveryWindow&>(lBytes);
    const auto& lBuffer = reinterpret_cast<const QTalBase::BufferedWString&>(lBytes);

    const BagPtr lVictim(QTalBase::CreatePropertyBag());
    lVictim->SetProperty(L"k", L"v", false);
    auto* lMembers = reinterpret_cast<unsigned char*>(lVictim.get()) + 24; // behind the table and the delimiters
    unsigned char lKept[56];
    std::memcpy(lKept, lMembers, sizeof lKept);
    std::memset(lMembers, 0x5A, sizeof lKept);
    Show(lText);
    Show(lPointer);
    Show(lInstant);
    Show(lBag);
    Show(lWindow);
    Show(lBuffer);
    Stop();
    std::memcpy(lMembers, lKept, sizeof lKept);
}

} // namespace

int main()
{
    const QTalBase::Initializer lInitializer;
    ShowWhole();
    ShowDamaged();
    return 0;
}
