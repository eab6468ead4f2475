#include "Tests/Contract/Documents/Provocations.h"

#include "QBase/Convert.h"
#include "QBase/Guid.h"
#include "QDataType/StringCollection.h"
#include "QSerialization/MemoryDataStream.h"
#include "TalBase/DeliveryWindow.h"
#include "TalBase/Guid.h"
#include "TalBase/PrivateSource/PropertyBagImpl.h"
#include "TalBase/PrivateSource/TextReader.h"
#include "TalBase/PropertyBag.h"
#include "TalBase/PropertyBags.h"
#include "TalBase/SerializableStringCollection.h"
#include "TalBase/Views.h"

#include "Tests/Contract/Documents/BagNotation.h"
#include "Tests/Support/BagBuilder.h"
#include "Tests/Support/Describe.h"

#include <sys/types.h>

#include <cerrno>
#include <functional>
#include <memory>
#include <stdexcept>
#include <typeindex>
#include <typeinfo>
#include <unordered_map>

namespace
{

bool gRandomSourceFails = false;

} // namespace

// Takes the place of the system's: the platform's generator of identifiers draws from here.
// NOLINTNEXTLINE(readability-identifier-naming): the system's name
extern "C" ssize_t getrandom(void* opBytes, std::size_t iSize, unsigned int)
{
    static unsigned char lNext = 0;
    if (gRandomSourceFails)
    {
        errno = ENOSYS;
        return -1;
    }
    for (std::size_t lIndex = 0; lIndex < iSize; ++lIndex)
    {
        static_cast<unsigned char*>(opBytes)[lIndex] = ++lNext;
    }
    return static_cast<ssize_t>(iSize);
}

namespace Documents
{

namespace
{

using namespace QTalBase;
using namespace Support;

using State = std::function<std::wstring()>;
using Action = std::function<void()>;

std::string ClassName(const QBase::Message& iMessage)
{
    using QBase::ExceptionImpl;
    static const std::unordered_map<std::type_index, std::string> lNames = {
        {typeid(ExceptionImpl<PropertyBagException>), "PropertyBagException"},
        {typeid(ExceptionImpl<PropertyBagUserErrorException>), "PropertyBagUserErrorException"},
        {typeid(ExceptionImpl<DeliveryWindowUserErrorException>), "DeliveryWindowUserErrorException"},
        {typeid(ExceptionImpl<GuidException>), "GuidException"},
        {typeid(ExceptionImpl<QSerialization::StreamException>), "StreamException"},
        {typeid(ExceptionImpl<QBase::Message>), "QBase::Message"}};
    return lNames.at(typeid(iMessage));
}

class Provoker
{
public:
    void Provoke(const std::string& iOperation, const State& iState, const Action& iAction)
    {
        const std::wstring lBefore = iState();
        try
        {
            iAction();
        }
        catch (const QBase::Message& lMessage)
        {
            if (lMessage.GetDomain() != QBase::MESSAGE_DOMAIN_UNKNOWN || lMessage.GetID() != -1)
            {
                throw std::runtime_error(iOperation + " throws another domain or ID");
            }
            mObservations.push_back({iOperation, ClassName(lMessage), lMessage.GetMessage(), iState() == lBefore});
            return;
        }
        throw std::runtime_error(iOperation + " throws nothing");
    }

    // For what has no state of its own: factories, free functions.
    void Provoke(const std::string& iOperation, const Action& iAction)
    {
        Provoke(
            iOperation, [] { return std::wstring(); }, iAction);
    }

    void Provoke(const std::string& iOperation, const BagPtr& iBag, const Action& iAction)
    {
        Provoke(
            iOperation, [&] { return Describe(*iBag); }, iAction);
    }

    std::vector<Observation> Take()
    {
        return std::move(mObservations);
    }

private:
    std::vector<Observation> mObservations;
};

// A bag that has everything; plain "a" is at position 0, the nested bag "n" at 1.
BagPtr SampleBag()
{
    return MakeBag(L"{'a'='1' 'n'={'k'='v'}}", gBegin, gEnd);
}

void ProvokeSetting(Provoker& oProvoker)
{
    const BagPtr lBag = SampleBag();
    for (const bool lIsNested : {false, true})
    {
        oProvoker.Provoke("PropertyBag::SetProperty", lBag, [&] { lBag->SetProperty(nullptr, L"2", lIsNested); });
        oProvoker.Provoke("PropertyBag::SetProperty", lBag, [&] { lBag->SetProperty(L"[[", L"2", lIsNested); });
        oProvoker.Provoke("PropertyBag::SetProperty", lBag, [&] { lBag->SetProperty(L"a]]", L"2", lIsNested); });
        oProvoker.Provoke("PropertyBag::SetProperty", lBag, [&] { lBag->SetProperty(L"a", nullptr, lIsNested); });
    }
    oProvoker.Provoke("PropertyBag::SetProperty", lBag, [&] { lBag->SetProperty(L"a", gRefusedValue, false); });
    const BagPtr lOther = MakeBag(L"{'k'='v'}");
    oProvoker.Provoke("PropertyBag::EmbedProperty", lBag, [&] { lBag->EmbedProperty(nullptr, lOther.get()); });
    oProvoker.Provoke("PropertyBag::EmbedProperty", lBag, [&] { lBag->EmbedProperty(L"[[", lOther.get()); });
}

void ProvokeLookingUp(Provoker& oProvoker)
{
    const BagPtr lBag = SampleBag();
    oProvoker.Provoke("PropertyBag::GetPropertyBag", lBag, [&] { lBag->GetPropertyBag(L"unknown"); });
    oProvoker.Provoke("PropertyBag::GetPropertyBag", lBag, [&] { lBag->GetPropertyBag(L"a"); });
    for (const unsigned int lIndex : {2U, 3U, 0xFFFFFFFFU})
    {
        oProvoker.Provoke("PropertyBag::GetName", lBag, [&] { lBag->GetName(lIndex); });
        oProvoker.Provoke("PropertyBag::GetValue", lBag, [&] { lBag->GetValue(lIndex); });
        oProvoker.Provoke("PropertyBag::GetValuePropertyBag", lBag, [&] { lBag->GetValuePropertyBag(lIndex); });
    }
    oProvoker.Provoke("PropertyBag::IsEmbedded", lBag, [&] { lBag->IsEmbedded(3); });
    oProvoker.Provoke("PropertyBag::GetValuePropertyBag", lBag, [&] { lBag->GetValuePropertyBag(0); });
}

void ProvokePaths(Provoker& oProvoker)
{
    const BagPtr lBag = SampleBag();
    const std::wstring lBehind = std::wstring(gMissingPath) + L"/k";
    oProvoker.Provoke("GetBagAt", lBag, [&] { GetBagAt(*lBag, gMissingPath); });
    oProvoker.Provoke("GetValueAt", lBag, [&] { GetValueAt(*lBag, lBehind.c_str()); });
    oProvoker.Provoke("GetValueAt", lBag, [&] { GetValueAt(*lBag, gMissingPath); });
    oProvoker.Provoke("GetBagAt", lBag, [&] { GetBagAt(*lBag, gUnreadablePath); });
    oProvoker.Provoke("GetValueAt", lBag, [&] { GetValueAt(*lBag, gUnreadablePath); });
}

struct Pair
{
    const wchar_t* mBegin;
    const wchar_t* mEnd;
};

const Pair gForbiddenPairs[] = {{L"", L"]"}, {L"[", L""}, {L"[", L"["}, {L"[x]", L"x"}, {L"[", L"x["}};

// A stream brings delimiters unchecked; the text that comes with them is then refused.
BagPtr BagWithForbiddenPair(const Pair& iPair)
{
    QSerialization::MemoryWriteDataStream lWritten;
    lWritten.WriteWString(iPair.mBegin);
    lWritten.WriteWString(iPair.mEnd);
    lWritten.WriteWString(L"");
    QSerialization::MemoryReadDataStream lStream(lWritten.GetBytes().data(), lWritten.GetBytes().size());
    const BagPtr lBag = SampleBag();
    try
    {
        lBag->DeSerialize(lStream);
    }
    catch (const PropertyBagException&)
    {
        return lBag;
    }
    throw std::runtime_error("a forbidden pair was accepted");
}

void ProvokeGivenDelimiters(Provoker& oProvoker, const Pair& iPair)
{
    const wchar_t* lBegin = iPair.mBegin;
    const wchar_t* lEnd = iPair.mEnd;
    const BagPtr lBag = SampleBag();
    oProvoker.Provoke("CreatePropertyBag(begin, end)", [&] { CreatePropertyBag(lBegin, lEnd); });
    oProvoker.Provoke("PropertyBag::ChangeDelimiters", lBag, [&] { lBag->ChangeDelimiters(lBegin, lEnd); });
    oProvoker.Provoke("PropertyBag::GetString", lBag, [&] { lBag->GetString(true, lBegin, lEnd, true); });
    oProvoker.Provoke("PropertyBag::GetStringWithoutSensitiveInfo", lBag,
                      [&] { lBag->GetStringWithoutSensitiveInfo(true, lBegin, lEnd); });
    const QBase::SmartPtrI<DeliveryWindow> lWindow(CreateDeliveryWindow());
    oProvoker.Provoke("DeliveryWindow::SerializeToPropertyBag",
                      [&] { lWindow->SerializeToPropertyBag(L"Day", lBegin, lEnd); });
}

void ProvokeOwnDelimiters(Provoker& oProvoker, const Pair& iPair)
{
    const BagPtr lBag = BagWithForbiddenPair(iPair);
    const BagPtr lOther = MakeBag(L"{'k'='v'}");
    const std::unique_ptr<QDataType::StringCollection> lFilter(QDataType::CreateStringCollection());
    QSerialization::MemoryWriteDataStream lStream;
    oProvoker.Provoke("PropertyBag::AddString", lBag, [&] { lBag->AddString(L"a[[2]]"); });
    oProvoker.Provoke("PropertyBag::GetString", lBag, [&] { lBag->GetString(true, nullptr, nullptr, true); });
    oProvoker.Provoke("PropertyBag::EmbedProperty", lBag, [&] { lBag->EmbedProperty(L"a", lOther.get()); });
    oProvoker.Provoke("PropertyBag::Serialize", lBag, [&] { lBag->Serialize(lStream); });
    oProvoker.Provoke("PropertyBag::Clone", lBag, [&] { lBag->Clone(); });
    oProvoker.Provoke("PropertyBag::FilteredClone", lBag, [&] { lBag->FilteredClone(lFilter.get()); });
    if (!lStream.GetBytes().empty())
    {
        throw std::runtime_error("Serialize has written something before it failed");
    }
}

void ProvokeReading(Provoker& oProvoker)
{
    const wchar_t* const lTexts[] = {L"EndDelimiter***",
                                     L"EndDelimiterBeginDelimiter++++",
                                     L"EndDelimiter***BeginDelimiter***",
                                     L"EndDelimiter***BeginDelimiter",
                                     L"EndDelimiter***BeginDelimiter++++***a++++1",
                                     L"EndDelimiter***BeginDelimiter++++***n++++k++++v***",
                                     L"EndDelimiter***BeginDelimiter++++***++++1***",
                                     L"EndDelimiter***BeginDelimiter++++***a++++++++1***",
                                     L"EndDelimiter***BeginDelimiter++++***a***",
                                     L"EndDelimiter***BeginDelimiter++++***n++++k++++v***++++***"};
    const BagPtr lBag = SampleBag();
    for (const wchar_t* lText : lTexts)
    {
        oProvoker.Provoke("CreatePropertyBag(text)", [&] { CreatePropertyBag(lText); });
        oProvoker.Provoke("PropertyBag::AddString", lBag, [&] { lBag->AddString(lText); });
    }
    oProvoker.Provoke("CreatePropertyBag(text)", [&] { CreatePropertyBag(gRefusedText); });
}

// The token reader itself, with a list of tokens that no text gives.
void ReadTwoStringsInARow()
{
    using Token = QTalBase::TextReader::Token;
    QTalBase::TextReader lReader{QTalBase::SharedWString(L"++++"), QTalBase::SharedWString(L"***")};
    lReader.Take(Token::String, L"a");
    lReader.Take(Token::Begin, L"");
    lReader.Take(Token::String, L"2");
    lReader.Take(Token::String, L"3");
}

void ProvokeCollections(Provoker& oProvoker)
{
    const QBase::SmartPtrI<PropertyBags> lBags(CreatePropertyBags());
    lBags->Add(L"n", SampleBag().get());
    const State lState = [&] { return std::to_wstring(lBags->GetCount()) + Describe(*lBags->GetPropertyBag(0)); };
    oProvoker.Provoke("PropertyBags::Add", lState, [&] { lBags->Add(L"m", nullptr); });
    for (const unsigned int lIndex : {1U, 2U, 0xFFFFFFFFU})
    {
        oProvoker.Provoke("PropertyBags::GetName", lState, [&] { lBags->GetName(lIndex); });
        oProvoker.Provoke("PropertyBags::GetPropertyBag", lState, [&] { lBags->GetPropertyBag(lIndex); });
    }
}

void ProvokeWindows(Provoker& oProvoker)
{
    const QBase::SmartPtrI<DeliveryWindow> lWindow(CreateDeliveryWindow());
    lWindow->DisableTimeBlock(9, 17);
    const State lState = [&] {
        const BagPtr lBag = lWindow->SerializeToPropertyBag(L"", L"++++", L"***");
        return Text(lBag->GetProperty(L"DeliveryWindow"));
    };
    for (const unsigned int lStart : {0U, 24U, 0xFFFFFFFFU})
    {
        const unsigned int lEnd = 24 - lStart; // out of range where the start is not
        oProvoker.Provoke("DeliveryWindow::DisableTimeBlock", lState, [&] { lWindow->DisableTimeBlock(lStart, lEnd); });
        oProvoker.Provoke("DeliveryWindow::EnableTimeBlock", lState, [&] { lWindow->EnableTimeBlock(lStart, lEnd); });
    }
    for (const wchar_t* lValue : {L" 5,24,", L" 5,-1,", L" 5, 6;"})
    {
        const BagPtr lBag = NewBag();
        lBag->SetProperty(L"DayDeliveryWindow", lValue, false);
        oProvoker.Provoke("DeliveryWindow::DeSerializeFromPropertyBag", lState,
                          [&] { lWindow->DeSerializeFromPropertyBag(L"Day", lBag.get()); });
    }
}

void ProvokeGuids(Provoker& oProvoker)
{
    oProvoker.Provoke("Guid::GenerateUniqueGUID", [] { Guid::GenerateUniqueGUID(); });
    oProvoker.Provoke("Guid::GenerateUniqueString", [] { Guid::GenerateUniqueString(); });
}

void ProvokeStreams(Provoker& oProvoker)
{
    const unsigned char lBytes[] = {2, 0, 0, 0, 'x', 0, 0, 0};
    QSerialization::MemoryReadDataStream lEmpty(lBytes, 0);
    QSerialization::MemoryReadDataStream lStream(lBytes, sizeof lBytes);
    const State lState = [&] { return std::to_wstring(lEmpty.GetRemaining() * 100 + lStream.GetRemaining()); };
    bool lFlag = true;
    unsigned int lShort = 7;
    unsigned long lLong = 8;
    oProvoker.Provoke("MemoryReadDataStream::ReadBool", lState, [&] { lEmpty.ReadBool(lFlag); });
    oProvoker.Provoke("MemoryReadDataStream::ReadUInt32", lState, [&] { lEmpty.ReadUInt32(lShort); });
    oProvoker.Provoke("MemoryReadDataStream::ReadUInt64", lState, [&] { lEmpty.ReadUInt64(lLong); });
    oProvoker.Provoke("MemoryReadDataStream::ReadWString", lState, [&] { lEmpty.ReadWString(); });
    oProvoker.Provoke("MemoryReadDataStream::ReadWString", lState, [&] { lStream.ReadWString(); });
    oProvoker.Provoke("MemoryReadDataStream::ReadBool", lState, [&] { lStream.ReadBool(lFlag); });
    if (!lFlag || lShort != 7 || lLong != 8)
    {
        throw std::runtime_error("a failed read has changed its target");
    }
}

// Makes the random source fail while it lives.
class FailingRandomSource
{
public:
    FailingRandomSource()
    {
        gRandomSourceFails = true;
    }

    ~FailingRandomSource()
    {
        gRandomSourceFails = false;
    }
};

} // namespace

std::vector<Observation> ProvokeLibrary()
{
    Provoker lProvoker;
    ProvokeSetting(lProvoker);
    ProvokeLookingUp(lProvoker);
    ProvokePaths(lProvoker);
    for (const Pair& lPair : gForbiddenPairs)
    {
        ProvokeGivenDelimiters(lProvoker, lPair);
        ProvokeOwnDelimiters(lProvoker, lPair);
    }
    ProvokeReading(lProvoker);
    const BagPtr lBag = SampleBag();
    lProvoker.Provoke("PropertyBagImpl::ExtractData", lBag, [&] { ReadTwoStringsInARow(); });
    ProvokeCollections(lProvoker);
    ProvokeWindows(lProvoker);
    const FailingRandomSource lNoRandomness;
    ProvokeGuids(lProvoker);
    return lProvoker.Take();
}

std::vector<Observation> ProvokePlatform()
{
    Provoker lProvoker;
    ProvokeStreams(lProvoker);
    const wchar_t lSurrogate[] = {L'a', L'b', static_cast<wchar_t>(0xD800), L'\0'}; // gPlace is its index
    lProvoker.Provoke("QBase::WideCharToUTF8", [&] { QBase::WideCharToUTF8(lSurrogate, true); });
    lProvoker.Provoke("QBase::UTF8ToWideChar", [] { QBase::UTF8ToWideChar("ab\xFF", true); });
    const std::unique_ptr<QDataType::StringCollection> lStrings(QDataType::CreateStringCollection());
    lProvoker.Provoke("StringCollection::GetString", [&] { lStrings->GetString(0); });
    const QBase::SmartPtrI<SerializableStringCollection> lOwnStrings(CreateSerializableStringCollection());
    lProvoker.Provoke("SerializableStringCollection::GetString", [&] { lOwnStrings->GetString(0); });
    const FailingRandomSource lNoRandomness;
    _GUID lGuid{};
    lProvoker.Provoke("QBase::CreateGUID", [&] { QBase::CreateGUID(lGuid); });
    return lProvoker.Take();
}

} // namespace Documents
