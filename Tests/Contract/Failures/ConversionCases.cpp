// The functions without an object: values as text and back, identifiers, and the start of the library.

#include "Tests/Contract/Failures/Subjects.h"

#include "TalBase/DeliveryWindow.h"
#include "TalBase/Guid.h"
#include "TalBase/Initializer.h"
#include "TalBase/ModuleMain.h"
#include "TalBase/PropertyBagHelpers.h"

#include "Tests/Support/ModuleHolder.h"

#include <optional>

namespace Failures
{

namespace
{

using Support::Quoted;
using Support::Text;

const wchar_t* const gTime = L"2026-11-21T02:49:00.000001Z";

struct TextSubject
{
    std::wstring See() const
    {
        return Quoted(Text(mText)) + Quoted(Text(mTime.ToWString())) + std::to_wstring(mNumber);
    }

    std::vector<const void*> Identify() const
    {
        return {};
    }

    QBase::ReturnWString mText = L"";
    QDataType::DateTime mTime;
    long mNumber = -1;
};

Case OnText(const char* ipOperation, const std::function<void(TextSubject&)>& iRun)
{
    return On<TextSubject>(
        ipOperation, "", [] { return std::make_unique<TextSubject>(); }, iRun);
}

template <class Value>
Case Stringizing(const char* ipType, const Value& iValue)
{
    return OnText((std::string("QTalBase::Stringize(") + ipType + ")").c_str(),
                  [iValue](TextSubject& oSubject) { oSubject.mText = QTalBase::Stringize(iValue); });
}

template <class Value>
Case UnStringizing(const char* ipType, const wchar_t* ipText)
{
    return OnText((std::string("QTalBase::UnStringize(wchar_t const*, ") + ipType + "&)").c_str(),
                  [ipText](TextSubject& oSubject) {
                      Value lValue{};
                      QTalBase::UnStringize(ipText, lValue);
                      oSubject.mNumber = static_cast<long>(lValue);
                  })
        .CannotFail();
}

void AddStringizing(Cases& oCases)
{
    QDataType::DateTime lTime;
    QTalBase::UnStringize(gTime, lTime);
    oCases.push_back(Stringizing("int", -2147483647 - 1));
    oCases.push_back(Stringizing("short", static_cast<short>(-32768)));
    oCases.push_back(Stringizing("unsigned int", 4294967295U).MayNotAllocate());
    oCases.push_back(Stringizing("unsigned short", static_cast<unsigned short>(65535)).MayNotAllocate());
    oCases.push_back(Stringizing("bool", true).MayNotAllocate());
    oCases.push_back(Stringizing("float", 1.5e30F).MayNotAllocate());
    oCases.push_back(Stringizing("double", -1.23456e-300).MayNotAllocate());
    oCases.push_back(Stringizing("_GUID const&", _GUID{}));
    oCases.push_back(Stringizing("QDataType::DateTime const&", lTime));
}

void AddUnStringizing(Cases& oCases)
{
    oCases.push_back(UnStringizing<int>("int", L"12"));
    oCases.push_back(UnStringizing<short>("short", L"12"));
    oCases.push_back(UnStringizing<unsigned int>("unsigned int", L"12"));
    oCases.push_back(UnStringizing<unsigned short>("unsigned short", L"12"));
    oCases.push_back(UnStringizing<bool>("bool", L"true"));
    oCases.push_back(UnStringizing<float>("float", L"12.5"));
    oCases.push_back(UnStringizing<double>("double", L"12.5"));
    oCases.push_back(OnText("QTalBase::UnStringize(wchar_t const*, _GUID&)", [](TextSubject& oSubject) {
                         _GUID lGuid{};
                         QTalBase::UnStringize(L"{00112233-4455-6677-8899-aabbccddeeff}", lGuid);
                         oSubject.mNumber = lGuid.Data4[7];
                     }).CannotFail());
    oCases.push_back(OnText("QTalBase::UnStringize(wchar_t const*, QDataType::DateTime&)",
                            [](TextSubject& oSubject) { QTalBase::UnStringize(gTime, oSubject.mTime); }));
}

void AddIdentifiers(Cases& oCases)
{
    oCases.push_back(OnText("QTalBase::Guid::GenerateUniqueGUID()", [](TextSubject& oSubject) {
                         oSubject.mNumber = QTalBase::Guid::GenerateUniqueGUID().Data3 >> 12; // its version
                     }).CannotFail());
    oCases.push_back(OnText("QTalBase::Guid::GenerateUniqueString()", [](TextSubject& oSubject) {
        oSubject.mNumber = static_cast<long>(QTalBase::Guid::GenerateUniqueString().GetLength());
    }));
}

// An exception class takes over a message without copying its text.
template <class Exception>
Case Wrapping(const char* ipConstructor)
{
    const auto lMessage = std::make_shared<QBase::Message>();
    lMessage->SetMessage(LONG_A);
    return OnText(ipConstructor,
                  [lMessage](TextSubject& oSubject) {
                      const QBase::ExceptionImpl<Exception> lException(*lMessage);
                      oSubject.mNumber = static_cast<long>(std::wcslen(lException.GetMessage()));
                  })
        .CannotFail();
}

void AddExceptions(Cases& oCases)
{
    oCases.push_back(Wrapping<QTalBase::PropertyBagException>(
        "QTalBase::PropertyBagException::PropertyBagException(QBase::Message const&)"));
    oCases.push_back(Wrapping<QTalBase::PropertyBagUserErrorException>(
        "QTalBase::PropertyBagUserErrorException::PropertyBagUserErrorException(QBase::Message const&)"));
    oCases.push_back(Wrapping<QTalBase::DeliveryWindowUserErrorException>(
        "QTalBase::DeliveryWindowUserErrorException::DeliveryWindowUserErrorException(QBase::Message const&)"));
    oCases.push_back(
        Wrapping<QTalBase::GuidException>("QTalBase::GuidException::GuidException(QBase::Message const&)"));
}

// The library's start: the holder's lock, count and pointer, and how many there are of each library below.
struct StartSubject
{
    std::wstring See() const
    {
        const Support::HolderFields lHolder = Support::ReadHolder();
        return std::to_wstring(lHolder.mLock) + L" " + std::to_wstring(lHolder.mCount) +
               (lHolder.mModule != nullptr ? L" up " : L" down ") + std::to_wstring(QSynch::Initializer::GetCount()) +
               std::to_wstring(QLog::Initializer::GetCount());
    }

    std::vector<const void*> Identify() const
    {
        return {Support::ReadHolder().mModule};
    }

    std::optional<QTalBase::Initializer> mFirst;
    std::optional<QTalBase::Initializer> mSecond;
    std::optional<QTalBase::ModuleMainBase> mModule;
};

Case OnStart(const char* ipOperation, const char* ipSituation, bool iIsStarted,
             const std::function<void(StartSubject&)>& iRun)
{
    return On<StartSubject>(
        ipOperation, ipSituation,
        [=] {
            auto lSubject = std::make_unique<StartSubject>();
            if (iIsStarted)
            {
                lSubject->mFirst.emplace();
            }
            return lSubject;
        },
        iRun);
}

void AddStarts(Cases& oCases)
{
    const char* const lInitializer = "QTalBase::Initializer::Initializer()";
    oCases.push_back(
        OnStart(lInitializer, "the first", false, [](StartSubject& oSubject) { oSubject.mFirst.emplace(); }));
    oCases.push_back(OnStart(lInitializer, "the second", true, [](StartSubject& oSubject) {
                         oSubject.mSecond.emplace();
                     }).CannotFail());
    oCases.push_back(OnStart("QTalBase::Initializer::~Initializer()", "the last", true, [](StartSubject& oSubject) {
                         oSubject.mFirst.reset();
                     }).CannotFail());
    oCases.push_back(OnStart("QTalBase::ModuleMainBase::ModuleMainBase()", "", false,
                             [](StartSubject& oSubject) { oSubject.mModule.emplace(); }));
}

} // namespace

Cases MakeConversionCases()
{
    Cases lCases;
    AddStringizing(lCases);
    AddUnStringizing(lCases);
    AddIdentifiers(lCases);
    AddExceptions(lCases);
    AddStarts(lCases);
    return lCases;
}

} // namespace Failures
