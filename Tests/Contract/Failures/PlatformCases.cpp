// The operations of the platform family.

#include "Tests/Contract/Failures/Subjects.h"

#include "QBase/Convert.h"
#include "QBase/Guid.h"
#include "QBase/Message.h"
#include "QDataType/DateTime.h"
#include "QLog/Initializer.h"
#include "QLog/Router.h"
#include "QSerialization/MemoryDataStream.h"
#include "QSynch/Initializer.h"

#include <chrono>
#include <optional>

namespace Failures
{

namespace
{

using Support::Quoted;
using Support::Text;

// Texts, messages and values: everything that an operation of the base library may change or answer.
struct BaseSubject
{
    std::wstring See() const
    {
        return Quoted(mMessage.GetMessage()) + std::to_wstring(mMessage.GetDomain()) + L"," +
               std::to_wstring(mMessage.GetID()) + Quoted(mOther.GetMessage()) + Quoted(Text(mText)) +
               Quoted(Text(mSource)) + Quoted(mWide) + std::to_wstring(mNarrow.size()) +
               Quoted(Text(mTime.ToWString())) + std::to_wstring(mNumber);
    }

    std::vector<const void*> Identify() const
    {
        return {};
    }

    QBase::Message mMessage;
    QBase::Message mOther;
    QBase::ReturnWString mText = L"before";
    QBase::ReturnWString mSource = LONG_A;
    std::wstring mWide = LONG_B;
    std::string mNarrow;
    QDataType::DateTime mTime;
    long mNumber = -1;
};

Case OnBase(const char* ipOperation, const char* ipSituation, const std::function<void(BaseSubject&)>& iRun)
{
    return On<BaseSubject>(
        ipOperation, ipSituation,
        [] {
            auto lSubject = std::make_unique<BaseSubject>();
            lSubject->mMessage.SetMessage(LONG_C);
            return lSubject;
        },
        iRun);
}

void AddMessages(Cases& oCases)
{
    oCases.push_back(OnBase("QBase::Message::Message()", "", [](BaseSubject& oSubject) {
                         oSubject.mNumber = QBase::Message().GetID();
                     }).CannotFail());
    oCases.push_back(OnBase("QBase::Message::Message(QBase::Message const&)", "", [](BaseSubject& oSubject) {
                         const QBase::Message lCopy = oSubject.mMessage;
                         oSubject.mNumber = static_cast<long>(std::wcslen(lCopy.GetMessage()));
                     }).CannotFail());
    oCases.push_back(OnBase("QBase::Message::operator=(QBase::Message const&)", "", [](BaseSubject& oSubject) {
                         oSubject.mOther = oSubject.mMessage;
                     }).CannotFail());
    oCases.push_back(OnBase("QBase::Message::SetDomainAndID(unsigned short, int)", "", [](BaseSubject& oSubject) {
                         oSubject.mMessage.SetDomainAndID(1, 2);
                     }).CannotFail());
    const char* const lSet = "QBase::Message::SetMessage(wchar_t const*)";
    oCases.push_back(OnBase(lSet, "", [](BaseSubject& oSubject) { oSubject.mMessage.SetMessage(LONG_A); }));
    oCases.push_back(OnBase(lSet, "its own", [](BaseSubject& oSubject) {
        oSubject.mMessage.SetMessage(oSubject.mMessage.GetMessage() + 1);
    }));
    oCases.push_back(OnBase(lSet, "null", [](BaseSubject& oSubject) { oSubject.mMessage.SetMessage(nullptr); }));
    oCases.push_back(OnBase("QBase::Message::GetMessage() const", "", [](BaseSubject& oSubject) {
                         oSubject.mNumber = static_cast<long>(std::wcslen(oSubject.mMessage.GetMessage()));
                     }).CannotFail());
    oCases.push_back(OnBase("QBase::Message::GetDomain() const", "", [](BaseSubject& oSubject) {
                         oSubject.mNumber = oSubject.mMessage.GetDomain();
                     }).CannotFail());
    oCases.push_back(OnBase("QBase::Message::GetID() const", "", [](BaseSubject& oSubject) {
                         oSubject.mNumber = oSubject.mMessage.GetID();
                     }).CannotFail());
    oCases.push_back(OnBase("QSerialization::StreamException::StreamException(QBase::Message const&)", "thrown",
                            [](BaseSubject& oSubject) {
                                oSubject.mNumber = NumberOfRefusal([&] {
                                    throw QBase::ExceptionImpl<QSerialization::StreamException>(oSubject.mMessage);
                                });
                            })
                         .CannotFail());
}

void AddTexts(Cases& oCases)
{
    const char* const lFromText = "QBase::ReturnWString::ReturnWString(const wchar_t*)";
    oCases.push_back(
        OnBase(lFromText, "", [](BaseSubject& oSubject) { oSubject.mText = QBase::ReturnWString(LONG_A); }));
    oCases.push_back(OnBase(lFromText, "null", [](BaseSubject& oSubject) {
                         oSubject.mText = QBase::ReturnWString(static_cast<const wchar_t*>(nullptr));
                     }).CannotFail());
    oCases.push_back(OnBase("QBase::ReturnWString::ReturnWString(const wchar_t*, std::size_t)", "",
                            [](BaseSubject& oSubject) { oSubject.mText = QBase::ReturnWString(LONG_A, 30); }));
    oCases.push_back(
        OnBase("QBase::ReturnWString::ReturnWString(std::__cxx11::basic_string<wchar_t, "
               "std::char_traits<wchar_t>, std::allocator<wchar_t> >&&)",
               "", [](BaseSubject& oSubject) { oSubject.mText = QBase::ReturnWString(std::move(oSubject.mWide)); })
            .CannotFail());
    oCases.push_back(OnBase("QBase::ReturnWString::ReturnWString(const ReturnWString&)", "",
                            [](BaseSubject& oSubject) { const QBase::ReturnWString lCopy(oSubject.mSource); }));
    oCases.push_back(OnBase("QBase::ReturnWString::operator=(const ReturnWString&)", "",
                            [](BaseSubject& oSubject) { oSubject.mText = oSubject.mSource; }));
    oCases.push_back(OnBase("QBase::ReturnWString::operator=(ReturnWString&&)", "", [](BaseSubject& oSubject) {
                         oSubject.mText = std::move(oSubject.mSource);
                     }).CannotFail());
}

void AddConversions(Cases& oCases)
{
    oCases.push_back(OnBase("QBase::ToDecimalWString(int)", "",
                            [](BaseSubject& oSubject) { oSubject.mText = QBase::ToDecimalWString(-2147483647 - 1); }));
    oCases.push_back(OnBase("QBase::DecimalToInt(wchar_t const*)", "", [](BaseSubject& oSubject) {
                         oSubject.mNumber = QBase::DecimalToInt(L" -2147483648x");
                     }).CannotFail());
    const char* const lToUTF8 = "QBase::WideCharToUTF8[abi:cxx11](wchar_t const*, bool)";
    const char* const lFromUTF8 =
        "QBase::UTF8ToWideChar[abi:cxx11](std::basic_string_view<char, std::char_traits<char> >, bool)";
    oCases.push_back(
        OnBase(lToUTF8, "", [](BaseSubject& oSubject) { oSubject.mNarrow = QBase::WideCharToUTF8(LONG_A, true); }));
    oCases.push_back(OnBase(lToUTF8, "refused", [](BaseSubject& oSubject) {
        oSubject.mNumber = NumberOfRefusal([&] { oSubject.mNarrow = QBase::WideCharToUTF8(L"a\xD800", true); });
    }));
    oCases.push_back(OnBase(lFromUTF8, "", [](BaseSubject& oSubject) {
        oSubject.mWide = QBase::UTF8ToWideChar("a text that is longer than a string object", true);
    }));
    oCases.push_back(OnBase(lFromUTF8, "refused", [](BaseSubject& oSubject) {
        oSubject.mNumber = NumberOfRefusal([&] { oSubject.mWide = QBase::UTF8ToWideChar("\xFF", true); });
    }));
}

void AddIdentifiersAndTimes(Cases& oCases)
{
    oCases.push_back(OnBase("QBase::CreateGUID(_GUID&)", "", [](BaseSubject& oSubject) {
                         _GUID lGuid{};
                         QBase::CreateGUID(lGuid);
                         oSubject.mNumber = lGuid.Data3 >> 12; // its version
                     }).CannotFail());
    oCases.push_back(OnBase("QBase::Guid2String(_GUID const&)", "",
                            [](BaseSubject& oSubject) { oSubject.mText = QBase::Guid2String(_GUID{}); }));
    oCases.push_back(OnBase("QBase::String2Guid(_GUID&, wchar_t const*)", "", [](BaseSubject& oSubject) {
                         _GUID lGuid{};
                         oSubject.mNumber = QBase::String2Guid(lGuid, L"00112233-4455-6677-8899-aabbccddeeff") ? 1 : 0;
                     }).CannotFail());
    oCases.push_back(OnBase("QDataType::DateTime::DateTime()", "", [](BaseSubject& oSubject) {
                         oSubject.mTime = QDataType::DateTime();
                     }).CannotFail());
    oCases.push_back(OnBase("QDataType::DateTime::DateTime(std::chrono::time_point<std::chrono::_V2::system_clock, "
                            "std::chrono::duration<long, std::ratio<1l, 1000000l> > >)",
                            "",
                            [](BaseSubject& oSubject) {
                                oSubject.mTime = QDataType::DateTime::TimePoint(std::chrono::microseconds(1));
                            })
                         .CannotFail());
    oCases.push_back(OnBase("QDataType::DateTime::Now()", "", [](BaseSubject& oSubject) {
                         oSubject.mNumber = QDataType::DateTime::Now() > QDataType::DateTime() ? 1 : 0;
                     }).CannotFail());
    oCases.push_back(OnBase("QDataType::DateTime::ToTimePoint() const", "", [](BaseSubject& oSubject) {
                         oSubject.mNumber = oSubject.mTime.ToTimePoint().time_since_epoch().count();
                     }).CannotFail());
    oCases.push_back(OnBase("QDataType::DateTime::ToWString() const", "",
                            [](BaseSubject& oSubject) { oSubject.mText = oSubject.mTime.ToWString(); }));
    const auto lText = std::make_shared<std::string>("2026-11-21T02:49:00.000001Z");
    oCases.push_back(
        OnBase("QDataType::DateTime::FromString(std::__cxx11::basic_string<char, std::char_traits<char>, "
               "std::allocator<char> > const&)",
               "", [lText](BaseSubject& oSubject) { oSubject.mNumber = oSubject.mTime.FromString(*lText) ? 1 : 0; })
            .CannotFail());
}

struct StringsSubject
{
    std::wstring See() const
    {
        std::wstring lSeen;
        for (unsigned long lIndex = 0; lIndex < mStrings->GetCount(); ++lIndex)
        {
            lSeen += Quoted(mStrings->GetString(lIndex));
        }
        return lSeen + (mMade ? L" made " : L" ") + std::to_wstring(mNumber);
    }

    std::vector<const void*> Identify() const
    {
        return {};
    }

    std::unique_ptr<QDataType::StringCollection> mStrings{QDataType::CreateStringCollection()};
    std::unique_ptr<QDataType::StringCollection> mMade;
    long mNumber = -1;
};

Case OnStrings(const char* ipOperation, const char* ipSituation, const std::function<void(StringsSubject&)>& iRun)
{
    return On<StringsSubject>(
        ipOperation, ipSituation,
        [] {
            auto lSubject = std::make_unique<StringsSubject>();
            lSubject->mStrings->Insert(LONG_A);
            lSubject->mStrings->Insert(LONG_B);
            return lSubject;
        },
        iRun);
}

void AddStringCollections(Cases& oCases)
{
    oCases.push_back(OnStrings("QDataType::CreateStringCollection()", "", [](StringsSubject& oSubject) {
        oSubject.mMade.reset(QDataType::CreateStringCollection());
    }));
    const char* const lInsert = "QDataType::StringCollection::Insert(const wchar_t*)";
    oCases.push_back(OnStrings(lInsert, "", [](StringsSubject& oSubject) { oSubject.mStrings->Insert(LONG_C); }));
    oCases.push_back(OnStrings(lInsert, "its own", [](StringsSubject& oSubject) {
        oSubject.mStrings->Insert(oSubject.mStrings->GetString(0));
    }));
    oCases.push_back(OnStrings("QDataType::StringCollection::Insert(const QDataType::StringCollection&)", "itself",
                               [](StringsSubject& oSubject) { oSubject.mStrings->Insert(*oSubject.mStrings); }));
    oCases.push_back(OnStrings("QDataType::StringCollection::GetCount() const", "", [](StringsSubject& oSubject) {
                         oSubject.mNumber = static_cast<long>(oSubject.mStrings->GetCount());
                     }).CannotFail());
    const char* const lGet = "QDataType::StringCollection::GetString(unsigned long) const";
    oCases.push_back(OnStrings(lGet, "", [](StringsSubject& oSubject) {
                         oSubject.mNumber = static_cast<long>(std::wcslen(oSubject.mStrings->GetString(1)));
                     }).CannotFail());
    oCases.push_back(OnStrings(lGet, "out of range", [](StringsSubject& oSubject) {
        oSubject.mNumber = NumberOfRefusal([&] { static_cast<void>(oSubject.mStrings->GetString(2)); });
    }));
    oCases.push_back(OnStrings("QDataType::StringCollection::Clear()", "", [](StringsSubject& oSubject) {
                         oSubject.mStrings->Clear();
                     }).CannotFail());
}

struct RouterSubject
{
    std::wstring See() const
    {
        const std::string lModule = mRouter ? mRouter->GetModule() : "null";
        return std::wstring(lModule.begin(), lModule.end()) + (mSecond ? L" second " : L" ") +
               std::to_wstring(mNumber) + L" " + std::to_wstring(QLog::Initializer::GetCount()) +
               std::to_wstring(QSynch::Initializer::GetCount());
    }

    std::vector<const void*> Identify() const
    {
        return {mRouter.get()};
    }

    QBase::SmartPtrI<QLog::Router> mRouter =
        QLog::CreateRouter("a module whose name is longer than a string", "Error", 7);
    QBase::SmartPtrI<QLog::Router> mSecond;
    std::optional<QLog::Initializer> mLog;
    std::optional<QSynch::Initializer> mSynch;
    long mNumber = -1;
};

Case OnRouter(const char* ipOperation, const std::function<void(RouterSubject&)>& iRun)
{
    return On<RouterSubject>(
        ipOperation, "", [] { return std::make_unique<RouterSubject>(); }, iRun);
}

void AddRouters(Cases& oCases)
{
    oCases.push_back(OnRouter("QLog::CreateRouter(char const*, char const*, int)", [](RouterSubject& oSubject) {
        oSubject.mSecond = QLog::CreateRouter("a module whose name is longer than a string",
                                              "a level whose name is longer than a string", 1);
    }));
    oCases.push_back(OnRouter("QLog::Router::AddRef() const", [](RouterSubject& oSubject) {
                         oSubject.mSecond = oSubject.mRouter;
                     }).CannotFail());
    oCases.push_back(OnRouter("QLog::Router::Release() const", [](RouterSubject& oSubject) {
                         oSubject.mRouter = nullptr;
                     }).CannotFail());
    oCases.push_back(OnRouter("QLog::Router::GetModule() const", [](RouterSubject& oSubject) {
                         oSubject.mNumber = oSubject.mRouter->GetModule()[0];
                     }).CannotFail());
    oCases.push_back(OnRouter("QLog::Router::GetLevel() const", [](RouterSubject& oSubject) {
                         oSubject.mNumber = oSubject.mRouter->GetLevel()[0];
                     }).CannotFail());
    oCases.push_back(OnRouter("QLog::Router::GetCategory() const", [](RouterSubject& oSubject) {
                         oSubject.mNumber = oSubject.mRouter->GetCategory();
                     }).CannotFail());
    oCases.push_back(OnRouter("QLog::Initializer::Initializer()", [](RouterSubject& oSubject) {
                         oSubject.mLog.emplace();
                     }).CannotFail());
    oCases.push_back(OnRouter("QSynch::Initializer::Initializer()", [](RouterSubject& oSubject) {
                         oSubject.mSynch.emplace();
                     }).CannotFail());
    oCases.push_back(OnRouter("QLog::Initializer::GetCount()", [](RouterSubject& oSubject) {
                         oSubject.mNumber = QLog::Initializer::GetCount();
                     }).CannotFail());
    oCases.push_back(OnRouter("QSynch::Initializer::GetCount()", [](RouterSubject& oSubject) {
                         oSubject.mNumber = QSynch::Initializer::GetCount();
                     }).CannotFail());
}

// A stream that has written something, and one that reads it.
struct StreamSubject
{
    std::wstring See() const
    {
        std::wstring lSeen;
        for (const std::byte lByte : mWritten.GetBytes())
        {
            lSeen += std::to_wstring(std::to_integer<int>(lByte)) + L" ";
        }
        return lSeen + L"left " + std::to_wstring(mRead.GetRemaining()) + Quoted(Text(mText)) +
               std::to_wstring(mNumber);
    }

    std::vector<const void*> Identify() const
    {
        return {};
    }

    static const std::vector<std::byte>& Bytes()
    {
        static const std::vector<std::byte> lBytes = [] {
            QSerialization::MemoryWriteDataStream lStream;
            lStream.WriteWString(LONG_A);
            return lStream.GetBytes();
        }();
        return lBytes;
    }

    QSerialization::MemoryWriteDataStream mWritten;
    QSerialization::MemoryReadDataStream mRead{Bytes().data(), Bytes().size()};
    QBase::ReturnWString mText = L"";
    long mNumber = -1;
};

// Without room for another byte, so that each write has to make some.
Case OnStream(const char* ipOperation, const std::function<void(StreamSubject&)>& iRun)
{
    return On<StreamSubject>(
        ipOperation, "",
        [] {
            auto lSubject = std::make_unique<StreamSubject>();
            while (lSubject->mWritten.GetBytes().size() < lSubject->mWritten.GetBytes().capacity() ||
                   lSubject->mWritten.GetBytes().empty())
            {
                lSubject->mWritten.WriteBool(true);
            }
            return lSubject;
        },
        iRun);
}

void AddStreams(Cases& oCases)
{
    StreamSubject::Bytes();
    oCases.push_back(
        OnStream("QSerialization::MemoryWriteDataStream::MemoryWriteDataStream()", [](StreamSubject& oSubject) {
            oSubject.mNumber = static_cast<long>(QSerialization::MemoryWriteDataStream().GetBytes().size());
        }).CannotFail());
    oCases.push_back(OnStream("QSerialization::MemoryWriteDataStream::WriteWString(wchar_t const*)",
                              [](StreamSubject& oSubject) { oSubject.mWritten.WriteWString(LONG_A); }));
    oCases.push_back(OnStream("QSerialization::MemoryWriteDataStream::WriteBool(bool)",
                              [](StreamSubject& oSubject) { oSubject.mWritten.WriteBool(true); }));
    oCases.push_back(OnStream("QSerialization::MemoryWriteDataStream::WriteUInt32(unsigned int)",
                              [](StreamSubject& oSubject) { oSubject.mWritten.WriteUInt32(1); }));
    oCases.push_back(OnStream("QSerialization::MemoryWriteDataStream::WriteUInt64(unsigned long)",
                              [](StreamSubject& oSubject) { oSubject.mWritten.WriteUInt64(1); }));
    oCases.push_back(OnStream("QSerialization::MemoryWriteDataStream::GetBytes() const", [](StreamSubject& oSubject) {
                         oSubject.mNumber = static_cast<long>(oSubject.mWritten.GetBytes().size());
                     }).CannotFail());
    oCases.push_back(OnStream("QSerialization::MemoryReadDataStream::MemoryReadDataStream(void const*, unsigned long)",
                              [](StreamSubject& oSubject) {
                                  oSubject.mNumber = static_cast<long>(
                                      QSerialization::MemoryReadDataStream(nullptr, 0).GetRemaining());
                              })
                         .CannotFail());
    oCases.push_back(OnStream("QSerialization::MemoryReadDataStream::ReadWString()",
                              [](StreamSubject& oSubject) { oSubject.mText = oSubject.mRead.ReadWString(); }));
    oCases.push_back(OnStream("QSerialization::MemoryReadDataStream::ReadBool(bool&)", [](StreamSubject& oSubject) {
        bool lFlag = false;
        oSubject.mNumber = NumberOfRefusal([&] { oSubject.mRead.ReadBool(lFlag); }); // the first byte is no flag
    }));
    oCases.push_back(
        OnStream("QSerialization::MemoryReadDataStream::ReadUInt32(unsigned int&)", [](StreamSubject& oSubject) {
            unsigned int lNumber = 0;
            oSubject.mRead.ReadUInt32(lNumber);
            oSubject.mNumber = static_cast<long>(lNumber);
        }).CannotFail());
    oCases.push_back(
        OnStream("QSerialization::MemoryReadDataStream::ReadUInt64(unsigned long&)", [](StreamSubject& oSubject) {
            unsigned long lNumber = 0;
            oSubject.mRead.ReadUInt64(lNumber);
            oSubject.mNumber = static_cast<long>(lNumber);
        }).CannotFail());
    oCases.push_back(
        OnStream("QSerialization::MemoryReadDataStream::GetRemaining() const", [](StreamSubject& oSubject) {
            oSubject.mNumber = static_cast<long>(oSubject.mRead.GetRemaining());
        }).CannotFail());
}

} // namespace

Cases MakePlatformCases()
{
    Cases lCases;
    AddMessages(lCases);
    AddTexts(lCases);
    AddConversions(lCases);
    AddIdentifiersAndTimes(lCases);
    AddStringCollections(lCases);
    AddRouters(lCases);
    AddStreams(lCases);
    return lCases;
}

} // namespace Failures
