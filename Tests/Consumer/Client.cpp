// A host's program in small: it sees the installed headers only, is built as C++17 or C++20 by whatever build the host
// has, and crosses the library's border with objects, texts, streams and exceptions. It prints what went wrong and
// returns how much did.

#include "QBase/Guid.h"
#include "QBase/Message.h"
#include "QDataType/StringCollection.h"
#include "QLog/Router.h"
#include "QSerialization/MemoryDataStream.h"
#include "TalBase/BufferedWString.h"
#include "TalBase/Bytes.h"
#include "TalBase/DeliveryWindow.h"
#include "TalBase/Guid.h"
#include "TalBase/Initializer.h"
#include "TalBase/PropertyBag.h"
#include "TalBase/PropertyBagHelpers.h"
#include "TalBase/PropertyBags.h"
#include "TalBase/SerializableStringCollection.h"
#include "TalBase/TextCheck.h"
#include "TalBase/Views.h"

#include <cstdio>
#include <memory>
#include <sstream>
#include <string>

static_assert(CLIENT_CXX_STANDARD == (__cplusplus / 100) % 100, "built as another version than was asked for");

namespace
{

const QTalBase::Initializer gInitializer;
int gFailures = 0;

void Expect(bool iCondition, const char* ipWhat)
{
    if (!iCondition)
    {
        std::printf("failed: %s\n", ipWhat);
        ++gFailures;
    }
}

QBase::SmartPtrI<QTalBase::PropertyBag> MakeJob()
{
    QBase::SmartPtrI<QTalBase::PropertyBag> lTransport = QTalBase::CreatePropertyBag();
    lTransport->SetProperty(L"Host", L"mail.example", false);
    QBase::SmartPtrI<QTalBase::PropertyBag> lJob = QTalBase::CreatePropertyBag();
    lJob->SetProperty(L"Subject", L"2 * 2 + 1", false);
    lJob->EmbedProperty(L"Transport", lTransport.get());
    return lJob;
}

void UseText()
{
    const auto lJob = MakeJob();
    const QBase::ReturnWString lText = lJob->GetString(true, nullptr, nullptr, true);
    Expect(std::wstring(lText.c_str()) == L"EndDelimiter***BeginDelimiter++++***Subject++++2 &#42; 2 &#43; 1***"
                                          L"Transport++++Host++++mail.example******",
           "the text form of a bag");
    const QBase::SmartPtrI<QTalBase::PropertyBag> lCopy = QTalBase::CreatePropertyBag(lText.c_str());
    Expect(std::wstring(lCopy->GetProperty(L"Subject").c_str()) == L"2 * 2 + 1", "a value from a text form");
    Expect(lCopy->IsSubset(lJob.get()), "a bag and its copy");
    Expect(QTalBase::CheckText(lText.c_str()).mIsValid, "a text that can be read");
    Expect(QTalBase::CheckText(L"a++++1", L"++++", L"***").mPosition == 6, "the place where a text ends too early");
}

// What else a bag does. Neighbours of one shape have different effects here, so that a call that arrives at another
// function than the one it was compiled for is seen.
void UseBag()
{
    const QBase::SmartPtrI<QTalBase::PropertyBag> lBag = QTalBase::CreatePropertyBag(L"<", L">");
    lBag->AddString(L"a<1>b<2>n<x<3>>");
    Expect(std::wstring(lBag->GetBeginDelimiter()) == L"<" && std::wstring(lBag->GetEndDelimiter()) == L">",
           "the delimiters of a bag");
    Expect(lBag->GetCount() == 3 && std::wstring(lBag->GetName(1).c_str()) == L"b" &&
               std::wstring(lBag->GetValue(1).c_str()) == L"2",
           "a name and a value by position");
    Expect(lBag->IsEmbedded(2) && !lBag->IsEmbedded(1) && lBag->IsPropertyEmbedded(L"n"), "what is a nest");
    Expect(lBag->GetPropertyBag(L"n") == lBag->GetValuePropertyBag(2), "a nest by name and by position");
    lBag->MoveProperty(L"b", 0);
    lBag->RemoveProperty(L"n");
    Expect(std::wstring(lBag->GetStringWithoutSensitiveInfo(false, L"[", L"]").c_str()) == L"b[2]a[1]",
           "a bag in other delimiters");
    const QBase::SmartPtrI<QTalBase::PropertyBag> lCopy = lBag->Clone();
    lCopy->ChangeDelimiters(L"{", L"}");
    Expect(*lCopy == *lBag && std::wstring(lCopy->GetBeginDelimiter()) == L"{", "a clone in other delimiters");
    lCopy->SetProperty(L"c", L"4", false);
    Expect(lBag->IsSubset(lCopy.get()) != lCopy->IsSubset(lBag.get()), "a bag that holds more than another");
    lBag->AddPropertyBag(lCopy.get());
    Expect(lBag->GetCount() == 3, "a bag added to another");
}

void UseStreams()
{
    const QBase::SmartPtrI<QTalBase::PropertyBags> lJobs = QTalBase::CreatePropertyBags();
    lJobs->Add(L"first", MakeJob().get());
    QSerialization::MemoryWriteDataStream lWritten;
    lJobs->Serialize(lWritten);
    QSerialization::MemoryReadDataStream lRead(lWritten.GetBytes().data(), lWritten.GetBytes().size());
    const QBase::SmartPtrI<QTalBase::PropertyBags> lCopy = QTalBase::CreatePropertyBags();
    lCopy->DeSerialize(lRead);
    Expect(lRead.GetRemaining() == 0, "a stream read to its end");
    Expect(lCopy->GetCount() == 1 && lCopy->GetPropertyBagByName(L"first")->GetCount() == 2, "jobs from a stream");
}

void UseWindow()
{
    const QBase::SmartPtrI<QTalBase::DeliveryWindow> lWindow = QTalBase::CreateDeliveryWindow();
    lWindow->DisableTimeBlock(22, 5);
    Expect(!lWindow->IsEnabled(23) && lWindow->IsEnabled(6), "the hours of a window");
}

void UseBuffer()
{
    const QBase::SmartPtrI<QTalBase::BufferedWString> lBuffer = QTalBase::CreateBufferedWString(4, 3);
    *lBuffer += L"ab";
    *lBuffer += std::wstring(L"cd");
    *lBuffer += QBase::ReturnWString(L"e");
    Expect(std::wstring(lBuffer->c_str()) == L"abcde", "the text of a buffer");
    Expect(lBuffer->size() == 5 && lBuffer->capacity() == 7, "the sizes of a buffer");
}

void UseStrings()
{
    const QBase::SmartPtrI<QTalBase::SerializableStringCollection> lStrings =
        QTalBase::CreateSerializableStringCollection();
    lStrings->Insert(L"one");
    lStrings->Insert(L"two");
    const std::unique_ptr<QDataType::StringCollection> lCopy(lStrings->GetStringCollection());
    lStrings->Clear();
    lStrings->Insert(*lCopy);
    Expect(lStrings->GetCount() == 2 && std::wstring(lStrings->GetString(1)) == L"two", "a collection of strings");
}

void UseValues()
{
    _GUID lBefore = QTalBase::Guid::GenerateUniqueGUID();
    _GUID lAfter = {};
    QTalBase::UnStringize(QTalBase::Stringize(lBefore).c_str(), lAfter);
    Expect(lBefore == lAfter, "an identifier and its text");
}

void UseViews()
{
    const auto lJob = MakeJob();
    QTalBase::Set(*QTalBase::GetBagAt(*lJob, L"Transport"), L"Port", 21);
    Expect(std::wstring(QTalBase::GetValueAt(*lJob, L"Transport/Port").c_str()) == L"21", "a value by its path");
    std::ostringstream lShown;
    for (const QTalBase::Property& lProperty : *lJob)
    {
        lShown << lProperty.GetName() << ' ';
    }
    lShown << *lJob;
    Expect(lShown.str() == "Subject Transport {'Subject'='2 * 2 + 1' 'Transport'={'Host'='mail.example' 'Port'='21'}}",
           "a bag as a log shows it");
}

// An exception thrown inside the library is caught here by each of its classes.
template <class Caught>
void ExpectCaught(const char* ipWhat)
{
    try
    {
        MakeJob()->GetName(3);
        Expect(false, ipWhat);
    }
    catch (const Caught& lMessage)
    {
        Expect(std::wstring(lMessage.GetMessage()) == L"QTalBase::PropertyBagImpl::GetName; iIndex is out of range",
               ipWhat);
    }
}

void UseExceptions()
{
    ExpectCaught<QBase::ExceptionImpl<QTalBase::PropertyBagUserErrorException>>("caught as what was thrown");
    ExpectCaught<QTalBase::PropertyBagUserErrorException>("caught by its class");
    ExpectCaught<QTalBase::PropertyBagException>("caught by its base class");
    ExpectCaught<QBase::Message>("caught as a message");
}

// A host of its own implements interfaces, which are exported and so have one type for everybody.
class OwnStrings : public QDataType::StringCollection
{
public:
    void Insert(const wchar_t* ipString) override
    {
        mOnly = ipString;
    }
    void Insert(const QDataType::StringCollection& iStrings) override
    {
        mOnly = iStrings.GetString(0);
    }
    unsigned long GetCount() const override
    {
        return 1;
    }
    const wchar_t* GetString(unsigned long) const override
    {
        return mOnly.c_str();
    }
    void Clear() override
    {
        mOnly.clear();
    }

private:
    std::wstring mOnly;
};

void UseOwnImplementation()
{
    OwnStrings lFilter;
    lFilter.Insert(L"Transport");
    const QBase::SmartPtrI<QTalBase::PropertyBag> lPart = MakeJob()->FilteredClone(&lFilter);
    Expect(lPart->GetCount() == 1 && lPart->IsPropertyEmbedded(L"Transport"), "a filter of the host's own");
    const std::unique_ptr<QDataType::StringCollection> lStrings(QDataType::CreateStringCollection());
    Expect(dynamic_cast<OwnStrings*>(lStrings.get()) == nullptr, "a cast between classes of both sides");
}

} // namespace

int main()
{
    try
    {
        UseText();
        UseBag();
        UseStreams();
        UseWindow();
        UseBuffer();
        UseStrings();
        UseValues();
        UseViews();
        UseExceptions();
        UseOwnImplementation();
    }
    catch (const QBase::Message& lMessage)
    {
        std::printf("failed: %ls\n", lMessage.GetMessage());
        ++gFailures;
    }
    std::printf("client: %d failures\n", gFailures);
    return gFailures == 0 ? 0 : 1;
}
