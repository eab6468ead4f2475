#include "Tests/Contract/Documents/Provocations.h"

#include "QBase/Convert.h"
#include "QBase/Guid.h"
#include "QDataType/StringCollection.h"
#include "QSerialization/MemoryDataStream.h"
#include "TalBase/Bytes.h"
#include "TalBase/DeliveryWindow.h"
#include "TalBase/Guid.h"
#include "TalBase/PrivateSource/BagBuilder.h"
#include "TalBase/PrivateSource/PropertyBagImpl.h"
#include "TalBase/PrivateSource/TextParser.h"
#include "TalBase/PropertyBag.h"
#include "TalBase/PropertyBags.h"
#include "TalBase/SerializableStringCollection.h"
#include "TalBase/Views.h"

#include "Tests/Contract/Documents/BagNotation.h"
#include "Tests/Contract/Documents/Provoker.h"
#include "Tests/Support/BagBuilder.h"
#include "Tests/Support/Describe.h"

#include <sys/types.h>

#include <cerrno>
#include <memory>
#include <stdexcept>

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
    const std::wstring lUnreadable = std::wstring(gUnreadablePath) + L"m/k";
    oProvoker.Provoke("GetBagAt", lBag, [&] { GetBagAt(*lBag, lUnreadable.c_str()); });
    oProvoker.Provoke("GetValueAt", lBag, [&] { GetValueAt(*lBag, lUnreadable.c_str()); });
}

// Two runs of text in a row, which no cutter finds.
struct TwoRuns
{
    Found Next() noexcept
    {
        return mCount++ == 0 ? Found::Begin : Found::Run;
    }

    std::wstring_view GetRun() const noexcept
    {
        return L"a";
    }

    std::wstring_view GetRest() const noexcept
    {
        return {};
    }

    bool MayContainStart() const noexcept
    {
        return false;
    }

    int mCount = 0;
};

// The parser itself, with what no text gives.
void ReadTwoStringsInARow()
{
    const QTalBase::SharedWString lBegin(L"++++");
    const QTalBase::SharedWString lEnd(L"***");
    QTalBase::BagBuilder lBuilder(lBegin, lEnd, nullptr);
    QTalBase::TextParser(TwoRuns(), lBuilder).Parse();
}

// A bag whose text no UTF-8 can carry, at index gPlace.
class UnsentBag : public PropertyBagImpl
{
public:
    QBase::ReturnWString GetString(bool, const wchar_t*, const wchar_t*, bool) const override
    {
        const wchar_t lSurrogate[] = {L'a', L'b', static_cast<wchar_t>(0xD800), L'\0'};
        return lSurrogate;
    }
};

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
    ProvokeBags(lProvoker);
    ProvokeLookingUp(lProvoker);
    ProvokePaths(lProvoker);
    const BagPtr lBag = SampleBag();
    lProvoker.Provoke("PropertyBagImpl::ExtractData", lBag, [&] { ReadTwoStringsInARow(); });
    lProvoker.Provoke("CreatePropertyBagFromUTF8", [] { CreatePropertyBagFromUTF8(std::string_view("ab\0", 3)); });
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
    const BagPtr lUnsent(new UnsentBag());
    const QBase::ReturnWString lText = lUnsent->GetString(true, nullptr, nullptr, true);
    lProvoker.Provoke("QBase::WideCharToUTF8", [&] { QBase::WideCharToUTF8(lText.c_str(), true); });
    lProvoker.Provoke("PropertyBagToUTF8", [&] { PropertyBagToUTF8(*lUnsent); });
    lProvoker.Provoke("QBase::UTF8ToWideChar", [] { QBase::UTF8ToWideChar("ab\xFF", true); });
    lProvoker.Provoke("CreatePropertyBagFromUTF8", [] { CreatePropertyBagFromUTF8("ab\xFF"); });
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
