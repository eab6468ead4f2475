// Delivery windows: blocks that are switched on and off, the property that a window is kept in, and texts of others in
// that property, against 24 flags and a plain reading of the text.
//
// Orders: which operation, and its hours or texts.

#include "Fuzz/Support/Check.h"
#include "Fuzz/Support/Input.h"
#include "Fuzz/Support/Target.h"
#include "QBase/SmartPtrI.h"
#include "TalBase/DeliveryWindow.h"
#include "Tests/Support/BagTexts.h"
#include "Tests/Support/BrokenRule.h"
#include "Tests/Support/Twins.h"

#include <array>
#include <cwchar>
#include <typeinfo>

namespace
{

using QTalBase::DeliveryWindow;
using QTalBase::DeliveryWindowUserErrorException;
using Support::BagPtr;
using Support::DelimiterPair;
using Support::Describe;
using Support::Library;
using Support::MakeBag;
using Support::Outcome;
using Support::PlainSide;

using WindowPtr = QBase::SmartPtrI<DeliveryWindow>;
using Hours = std::array<bool, 24>; // whether each is disabled

std::wstring Thrown(const std::wstring& iText)
{
    const std::string lClass = typeid(QBase::ExceptionImpl<DeliveryWindowUserErrorException>).name();
    return L"throws " + std::wstring(lClass.begin(), lClass.end()) + L" QTalBase::DeliveryWindowImpl::" + iText;
}

const wchar_t gNoHour[] = L"SetTimeBlock; Time of day may not be greater than 23";
const wchar_t gMalformed[] = L"DeSerializeFromPropertyBag; PropertyBag Serialization is malformed";

void CheckHours(const DeliveryWindow& iWindow, const Hours& iHours)
{
    for (unsigned int lHour = 0; lHour < 24; ++lHour)
    {
        Fuzz::Require(iWindow.IsEnabled(lHour) == !iHours[lHour], "an hour is not what it was set to");
        Fuzz::Require(iWindow.IsEnabled(lHour + 32) == !iHours[lHour], "an hour is not taken modulo 32");
    }
    for (unsigned int lHour = 24; lHour < 32; ++lHour)
    {
        Fuzz::Require(iWindow.IsEnabled(lHour), "an hour that no day has is disabled");
    }
}

// Hour by hour, round the clock.
std::wstring SetPlain(Hours& oHours, unsigned int iStart, unsigned int iEnd, bool iIsDisabled)
{
    if (iStart > 23 || iEnd > 23)
    {
        return Thrown(gNoHour);
    }
    const bool lSkipsMidnight = iStart > iEnd && Plain::IsBroken("Midnight");
    for (unsigned int lHour = iStart;; lHour = (lHour + 1) % 24)
    {
        oHours[lHour] = lHour == 0 && lSkipsMidnight ? oHours[lHour] : iIsDisabled;
        if (lHour == iEnd)
        {
            return L"";
        }
    }
}

unsigned int AnyHour(Fuzz::Input& iInput)
{
    const unsigned int lByte = iInput.Byte();
    return lByte < 250 ? lByte % 27 : iInput.UInt32();
}

void SetBlocks(DeliveryWindow& oWindow, Hours& oHours, Fuzz::Input& iInput)
{
    const bool lIsDisabled = iInput.Below(3) != 0;
    const unsigned int lStart = AnyHour(iInput);
    const unsigned int lEnd = AnyHour(iInput);
    const std::wstring lOutcome = Outcome([&] {
        lIsDisabled ? oWindow.DisableTimeBlock(lStart, lEnd) : oWindow.EnableTimeBlock(lStart, lEnd);
        return std::wstring();
    });
    Fuzz::RequireEqual(lOutcome, SetPlain(oHours, lStart, lEnd, lIsDisabled), "blocks are set with another outcome");
}

std::wstring ValueOf(const Hours& iHours)
{
    std::wstring lValue;
    for (unsigned int lHour = 0; lHour < 24; ++lHour)
    {
        if (iHours[lHour])
        {
            lValue += (lHour < 10 ? L" " : L"") + std::to_wstring(lHour) + L",";
        }
    }
    return lValue;
}

std::wstring Prefix(Fuzz::Input& iInput)
{
    const std::string lPrefix = iInput.Bytes(iInput.Below(6));
    return std::wstring(lPrefix.begin(), lPrefix.end()).c_str();
}

DelimiterPair Pair(Fuzz::Input& iInput)
{
    const auto& lPairs = Support::OddPairs();
    return lPairs[iInput.Below(static_cast<unsigned int>(lPairs.size()))];
}

// A window writes its bag as somebody would who sets the property by hand, and a new window reads the same hours there.
void WriteToBag(const DeliveryWindow& iWindow, const Hours& iHours, Fuzz::Input& iInput)
{
    const DelimiterPair lPair = Pair(iInput);
    const std::wstring lPrefix = Prefix(iInput);
    const std::wstring lName = lPrefix + L"DeliveryWindow";
    BagPtr lBag;
    const std::wstring lState = Outcome([&] {
        lBag = iWindow.SerializeToPropertyBag(lPrefix.c_str(), lPair.mBegin.c_str(), lPair.mEnd.c_str());
        return Describe(*lBag);
    });
    const std::wstring lExpected = Outcome([&] {
        const BagPtr lPlain = MakeBag(PlainSide, lPair.mBegin, lPair.mEnd);
        lPlain->SetProperty(lName.c_str(), ValueOf(iHours).c_str(), false);
        return Describe(*lPlain);
    });
    Fuzz::RequireEqual(lState, lExpected, "a window's bag is another");
    if (lBag)
    {
        const WindowPtr lRead(QTalBase::CreateDeliveryWindow());
        lRead->DisableTimeBlock(3, 5);
        lRead->DeSerializeFromPropertyBag(lPrefix.c_str(), lBag.get());
        CheckHours(*lRead, iHours);
    }
}

// Three characters at a time: a number of two, and a comma.
std::wstring ReadPlain(const std::wstring& iValue, Hours& oHours)
{
    Hours lHours = {};
    for (std::wstring lLeft = iValue; lLeft.size() >= 3; lLeft = lLeft.substr(3))
    {
        if (lLeft[2] != L',')
        {
            return Thrown(gMalformed);
        }
        const long lHour = std::wcstol(lLeft.substr(0, 2).c_str(), nullptr, 10);
        if (lHour < 0 || lHour > 23)
        {
            return Thrown(gNoHour);
        }
        lHours[static_cast<std::size_t>(lHour)] = true;
    }
    oHours = lHours;
    return L"";
}

void ReadFromBag(DeliveryWindow& oWindow, Hours& oHours, Fuzz::Input& iInput)
{
    const std::wstring lPrefix = Prefix(iInput);
    const std::string lBytes = iInput.Bytes(iInput.Below(100));
    const std::wstring lValue = std::wstring(lBytes.begin(), lBytes.end()).c_str();
    const bool lIsNull = iInput.Below(16) == 0;
    const BagPtr lBag = MakeBag(Library, L"{begin}", L"{end}");
    // Where a name or a value holds a delimiter, the bag has no such property.
    Outcome([&] {
        lBag->SetProperty((lPrefix + L"DeliveryWindow").c_str(), lValue.c_str(), false);
        return std::wstring();
    });
    const bool lIsThere = !lIsNull && lBag->GetCount() != 0;
    const std::wstring lOutcome = Outcome([&] {
        oWindow.DeSerializeFromPropertyBag(lPrefix.c_str(), lIsNull ? nullptr : lBag.get());
        return std::wstring();
    });
    Fuzz::RequireEqual(lOutcome, ReadPlain(lIsThere ? lValue : L"", oHours), "a window is read with another outcome");
}

void Operate(WindowPtr& oWindow, Hours& oHours, Fuzz::Input& iInput)
{
    switch (iInput.Below(8))
    {
    case 0:
    case 1:
    case 2:
        SetBlocks(*oWindow, oHours, iInput);
        return;
    case 3:
        WriteToBag(*oWindow, oHours, iInput);
        return;
    case 4:
        oWindow = WindowPtr(oWindow->Clone());
        return;
    default:
        ReadFromBag(*oWindow, oHours, iInput);
        return;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* ipBytes, std::size_t iSize)
{
    Fuzz::Input lInput(ipBytes, iSize);
    WindowPtr lWindow(QTalBase::CreateDeliveryWindow());
    Hours lHours = {};
    CheckHours(*lWindow, lHours);
    while (!lInput.IsAtEnd())
    {
        Operate(lWindow, lHours, lInput);
        CheckHours(*lWindow, lHours);
    }
    return 0;
}
