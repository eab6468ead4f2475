// What bags throw, by every operation that can throw it: by itself, for what it reads, or for a bag inside another one.

#include "QDataType/StringCollection.h"
#include "QSerialization/MemoryDataStream.h"
#include "TalBase/DeliveryWindow.h"
#include "TalBase/PropertyBag.h"
#include "TalBase/PropertyBags.h"
#include "TalBase/TextCheck.h"

#include "Tests/Contract/Documents/Provoker.h"
#include "Tests/Support/BagBuilder.h"
#include "Tests/Support/RepeatingBag.h"
#include "Tests/Support/RepointedDefaults.h"

#include <memory>
#include <stdexcept>
#include <vector>

namespace Documents
{

namespace
{

using namespace QTalBase;
using namespace Support;

using BagsPtr = QBase::SmartPtrI<PropertyBags>;
using FilterPtr = std::unique_ptr<QDataType::StringCollection>;
using WindowPtr = QBase::SmartPtrI<DeliveryWindow>;

struct Pair
{
    const wchar_t* mBegin;
    const wchar_t* mEnd;
};

const Pair gOwnPair = {gBegin, gEnd};
const Pair gDefaultPair = {L"++++", L"***"};
const Pair gForbiddenPairs[] = {{L"", L"]"}, {L"[", L""}, {L"[", L"["}, {L"[x]", L"x"}, {L"[", L"x["}};

FilterPtr Filter(const wchar_t* ipName)
{
    FilterPtr lFilter(QDataType::CreateStringCollection());
    lFilter->Insert(ipName);
    return lFilter;
}

// Reads a bag of a stream into one.
void DeSerialize(const BagPtr& iBag, const Pair& iPair, const std::wstring& iText)
{
    QSerialization::MemoryWriteDataStream lWritten;
    lWritten.WriteWString(iPair.mBegin);
    lWritten.WriteWString(iPair.mEnd);
    lWritten.WriteWString(iText.c_str());
    QSerialization::MemoryReadDataStream lStream(lWritten.GetBytes().data(), lWritten.GetBytes().size());
    iBag->DeSerialize(lStream);
}

// The same as the only entry of a collection.
void DeSerializeCollection(const BagsPtr& iBags, const Pair& iPair, const std::wstring& iText)
{
    QSerialization::MemoryWriteDataStream lWritten;
    lWritten.WriteUInt32(1);
    lWritten.WriteWString(L"name");
    lWritten.WriteBool(true);
    lWritten.WriteWString(iPair.mBegin);
    lWritten.WriteWString(iPair.mEnd);
    lWritten.WriteWString(iText.c_str());
    QSerialization::MemoryReadDataStream lStream(lWritten.GetBytes().data(), lWritten.GetBytes().size());
    iBags->DeSerialize(lStream);
}

// Every operation that reads a text into something that has, or gets, a pair.
void ProvokeReadersInto(Provoker& oProvoker, const Pair& iPair, const std::wstring& iText)
{
    const BagPtr lBag = MakeBag(L"{'a'='1'}", iPair.mBegin, iPair.mEnd);
    oProvoker.Provoke("PropertyBag::AddString", lBag, [&] { lBag->AddString(iText.c_str()); });
    oProvoker.Provoke("PropertyBag::SetProperty", lBag, [&] { lBag->SetProperty(L"m", iText.c_str(), true); });
    oProvoker.Provoke("PropertyBag::DeSerialize", lBag, [&] { DeSerialize(lBag, iPair, iText); });
    const BagsPtr lBags(CreatePropertyBags());
    oProvoker.Provoke(
        "PropertyBags::DeSerialize", [&] { return std::to_wstring(lBags->GetCount()); },
        [&] { DeSerializeCollection(lBags, iPair, iText); });
}

// Hands a nest on as text without a header, which begins with the name.
void ProvokeHandingOn(Provoker& oProvoker, const wchar_t* ipName)
{
    const BagPtr lTarget = MakeBag(L"{'a'='1'}");
    const BagPtr lNest = BagBuilder(gBegin, gEnd).Set(ipName, L"1");
    oProvoker.Provoke("PropertyBag::EmbedProperty", lTarget, [&] { lTarget->EmbedProperty(L"m", lNest.get()); });
    const BagPtr lOuter = BagBuilder(gBegin, gEnd).Nest(L"m", BagBuilder(gBegin, gEnd).Set(ipName, L"1"));
    lOuter->ChangeDelimiters(gDefaultPair.mBegin, gDefaultPair.mEnd);
    oProvoker.Provoke("PropertyBag::FilteredClone", lOuter, [&] { lOuter->FilteredClone(Filter(L"m").get()); });
}

// Hands a nest on as text with a header.
void ProvokeMerging(Provoker& oProvoker, const BagPtr& iOuter)
{
    const BagPtr lTarget = MakeBag(L"{'a'='1'}");
    oProvoker.Provoke("PropertyBag::AddPropertyBag", lTarget, [&] { lTarget->AddPropertyBag(iOuter.get()); });
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

// A name, or a value, that the receiving bag refuses: it was read or kept with other delimiters.
void ProvokeRefusing(Provoker& oProvoker, const wchar_t* ipName, const wchar_t* ipValue)
{
    const BagPtr lOther = BagBuilder(L"(", L")").Set(ipName, ipValue);
    const std::wstring lText = FullText(*lOther);
    ProvokeReadersInto(oProvoker, gOwnPair, lText);
    const BagPtr lBag = SampleBag();
    oProvoker.Provoke("PropertyBag::AddPropertyBag", lBag, [&] { lBag->AddPropertyBag(lOther.get()); });
    const BagPtr lLikeHeader = BagBuilder(L"{", L"}").Set(lText.c_str(), L"1");
    oProvoker.Provoke("PropertyBag::EmbedProperty", lBag, [&] { lBag->EmbedProperty(L"m", lLikeHeader.get()); });
    lOther->ChangeDelimiters(gBegin, gEnd);
    oProvoker.Provoke("PropertyBag::FilteredClone", lOther, [&] { lOther->FilteredClone(Filter(ipName).get()); });
}

void ProvokeRefusingWindows(Provoker& oProvoker)
{
    const WindowPtr lWindow(CreateDeliveryWindow());
    lWindow->DisableTimeBlock(9, 10);
    oProvoker.Provoke("DeliveryWindow::SerializeToPropertyBag",
                      [&] { lWindow->SerializeToPropertyBag(L"a]]", gBegin, gEnd); });
    oProvoker.Provoke("DeliveryWindow::SerializeToPropertyBag",
                      [&] { lWindow->SerializeToPropertyBag(L"Day", L",", L";"); }, {L" 9,10,", L",", L";"});
}

// Escaping brings the delimiters into the value, so a text that was read with them is refused.
void ProvokeEscapesAsDelimiters(Provoker& oProvoker)
{
    const RepointedDefaults lDefaults(L"4", L"2");
    oProvoker.Provoke("CreatePropertyBag(text)", [] { CreatePropertyBag(L"EndDelimiter2BeginDelimiter42a4x*y2"); },
                      {L"x&#42;y", L"4", L"2"});
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
    const WindowPtr lWindow(CreateDeliveryWindow());
    oProvoker.Provoke("DeliveryWindow::SerializeToPropertyBag",
                      [&] { lWindow->SerializeToPropertyBag(L"Day", lBegin, lEnd); });
    oProvoker.Provoke("PropertyTextCheck::PropertyTextCheck", [&] { PropertyTextCheck(lBegin, lEnd); });
}

// A stream brings delimiters unchecked; the text that comes with them is then refused.
void Spoil(const BagPtr& iBag, const Pair& iPair)
{
    try
    {
        DeSerialize(iBag, iPair, L"");
    }
    catch (const PropertyBagException&)
    {
        return;
    }
    throw std::runtime_error("a forbidden pair was accepted");
}

// Of a bag that has the pair itself.
void ProvokeOwnDelimiters(Provoker& oProvoker, const Pair& iPair, const BagPtr& iBag)
{
    const BagPtr lOther = MakeBag(L"{'k'='v'}");
    QSerialization::MemoryWriteDataStream lStream;
    oProvoker.Provoke("PropertyBag::AddString", iBag, [&] { iBag->AddString(L"a[[2]]"); });
    oProvoker.Provoke("PropertyBag::DeSerialize", iBag, [&] { DeSerialize(iBag, iPair, L""); });
    oProvoker.Provoke("PropertyBag::GetString", iBag, [&] { iBag->GetString(true, nullptr, nullptr, true); });
    oProvoker.Provoke("PropertyBag::EmbedProperty", iBag, [&] { iBag->EmbedProperty(L"m", lOther.get()); });
    oProvoker.Provoke("PropertyBag::SetProperty", iBag, [&] { iBag->SetProperty(L"m", L"k", true); });
    oProvoker.Provoke("PropertyBag::Serialize", iBag, [&] { iBag->Serialize(lStream); });
    oProvoker.Provoke("PropertyBag::Clone", iBag, [&] { iBag->Clone(); });
    oProvoker.Provoke("PropertyBag::FilteredClone", iBag, [&] { iBag->FilteredClone(Filter(L"a").get()); });
    const BagsPtr lBags(CreatePropertyBags());
    lBags->Add(L"b", iBag.get());
    oProvoker.Provoke("PropertyBags::GetPropertyBag", iBag, [&] { lBags->GetPropertyBag(0); });
    oProvoker.Provoke("PropertyBags::GetPropertyBagByName", iBag, [&] { lBags->GetPropertyBagByName(L"b"); });
    const BagsPtr lRead(CreatePropertyBags());
    oProvoker.Provoke("PropertyBags::DeSerialize", [&] { DeSerializeCollection(lRead, iPair, L""); });
    if (!lStream.GetBytes().empty())
    {
        throw std::runtime_error("Serialize has written something before it failed");
    }
}

// Of a bag with an allowed pair that holds a nest with one that is not.
void ProvokeDelimitersOfANest(Provoker& oProvoker, const Pair& iPair)
{
    const BagPtr lBag = MakeBag(L"{'n'={'k'='v'} 'DayDeliveryWindow'={'k'='v'}}");
    const BagPtr lIntact = MakeBag(L"{'n'={'k'='v'} 'DayDeliveryWindow'={'k'='v'}}");
    Spoil(lBag->GetPropertyBag(L"n"), iPair);
    Spoil(lBag->GetPropertyBag(L"DayDeliveryWindow"), iPair);
    oProvoker.Provoke("PropertyBag::GetProperty", lBag, [&] { lBag->GetProperty(L"n"); });
    oProvoker.Provoke("PropertyBag::GetValue", lBag, [&] { lBag->GetValue(0); });
    oProvoker.Provoke("PropertyBag::GetString", lBag, [&] { lBag->GetString(true, nullptr, nullptr, true); });
    oProvoker.Provoke("PropertyBag::GetStringWithoutSensitiveInfo", lBag,
                      [&] { lBag->GetStringWithoutSensitiveInfo(true, nullptr, nullptr); });
    oProvoker.Provoke("PropertyBag::operator==", lIntact, [&] { (void)lIntact->operator==(*lBag); });
    // By a name that is both a plain property and a nest in the one, and a nest only in the other.
    const BagPtr lBoth = RepeatingBag().Plain(L"n", L"1").Nest(L"n", L"k++++v***").Cloned();
    oProvoker.Provoke("PropertyBag::IsSubset", lBag, [&] { (void)lBag->IsSubset(lBoth.get()); });
    ProvokeMerging(oProvoker, lBag);
    const BagsPtr lBags(CreatePropertyBags());
    lBags->Add(L"b", lBag.get());
    QSerialization::MemoryWriteDataStream lStream;
    oProvoker.Provoke("PropertyBags::Serialize", lBag, [&] { lBags->Serialize(lStream); });
    const WindowPtr lWindow(CreateDeliveryWindow());
    oProvoker.Provoke("DeliveryWindow::DeSerializeFromPropertyBag", lBag,
                      [&] { lWindow->DeSerializeFromPropertyBag(L"Day", lBag.get()); });
}

void ProvokeDelimiters(Provoker& oProvoker)
{
    for (const Pair& lPair : gForbiddenPairs)
    {
        ProvokeGivenDelimiters(oProvoker, lPair);
        const BagPtr lSpoilt = SampleBag();
        Spoil(lSpoilt, lPair);
        ProvokeOwnDelimiters(oProvoker, lPair, lSpoilt);
        {
            const RepointedDefaults lDefaults(lPair.mBegin, lPair.mEnd);
            ProvokeOwnDelimiters(oProvoker, lPair, NewBag());
        }
        ProvokeDelimitersOfANest(oProvoker, lPair);
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
                                     L"EndDelimiter***BeginDelimiter++++***n++++k++++v***++++***",
                                     L"EndDelimiter***Begin"}; // std::out_of_range
    for (const wchar_t* lText : lTexts)
    {
        oProvoker.Provoke("CreatePropertyBag(text)", [&] { CreatePropertyBag(lText); });
        ProvokeReadersInto(oProvoker, gOwnPair, lText);
    }
    oProvoker.Provoke("CreatePropertyBag(text)", [&] { CreatePropertyBag(gRefusedText); });
}

void ProvokeReadingOfNests(Provoker& oProvoker)
{
    for (const wchar_t* lName : {L"EndDelimiterxyz", L"EndDelimiterB", L"EndDelimiter***B", L"n++++k", L"++++k",
                                 L"a***b", L"n++++k++++v***", L"EndDelimiterxB"}) // of the last one std::out_of_range
    {
        ProvokeHandingOn(oProvoker, lName);
    }
    for (const wchar_t* lName : {L"n++++k", L"++++k", L"a***b", L"n++++k++++v***"})
    {
        const BagPtr lOuter = BagBuilder(gBegin, gEnd).Nest(L"m", BagBuilder(gBegin, gEnd).Set(lName, L"1"));
        lOuter->ChangeDelimiters(gDefaultPair.mBegin, gDefaultPair.mEnd);
        ProvokeMerging(oProvoker, lOuter);
    }
    // Two pairs that no header can carry.
    ProvokeMerging(oProvoker, MakeBag(L"{'n'={'k'='v'}}", L"[", L"end"));
    ProvokeMerging(oProvoker, MakeBag(L"{'n'={'k'='v'}}", L"=", L"-line-"));
}

} // namespace

void ProvokeBags(Provoker& oProvoker)
{
    ProvokeSetting(oProvoker);
    ProvokeRefusing(oProvoker, L"a]]", L"1");
    ProvokeRefusing(oProvoker, L"a", gRefusedValue);
    ProvokeRefusingWindows(oProvoker);
    ProvokeEscapesAsDelimiters(oProvoker);
    ProvokeDelimiters(oProvoker);
    ProvokeReading(oProvoker);
    ProvokeReadingOfNests(oProvoker);
}

} // namespace Documents
