// The operations that read a bag, copy it or make one.

#include "Tests/Contract/Failures/Subjects.h"

#include "QSerialization/MemoryDataStream.h"
#include "TalBase/Bytes.h"

namespace Failures
{

namespace
{

using QTalBase::PropertyBag;

// Reads a bag and keeps what it answers; a refusal is an answer too.
template <class Operation>
RunOnBag Asked(const Operation& iOperation)
{
    return [iOperation](BagSubject& oSubject) {
        const long lRefusal =
            NumberOfRefusal([&] { iOperation(static_cast<const PropertyBag&>(*oSubject.mBag), oSubject); });
        oSubject.mNumber = lRefusal < 0 ? oSubject.mNumber : lRefusal;
    };
}

RunOnBag AskedByName(QBase::ReturnWString (PropertyBag::*iOperation)(const wchar_t*) const, const wchar_t* ipName)
{
    return Asked([=](const PropertyBag& iBag, BagSubject& oSubject) { oSubject.mText = (iBag.*iOperation)(ipName); });
}

RunOnBag AskedByIndex(QBase::ReturnWString (PropertyBag::*iOperation)(unsigned int) const, unsigned int iIndex)
{
    return Asked([=](const PropertyBag& iBag, BagSubject& oSubject) { oSubject.mText = (iBag.*iOperation)(iIndex); });
}

void AddTextsByName(Cases& oCases)
{
    const char* const lGet = "QTalBase::PropertyBag::GetProperty(const wchar_t*) const";
    oCases.push_back(OnBag(lGet, "unescaped", Filled, AskedByName(&PropertyBag::GetProperty, LONG_A)));
    oCases.push_back(OnBag(lGet, "as stored", Raw, AskedByName(&PropertyBag::GetProperty, LONG_A)));
    oCases.push_back(OnBag(lGet, "a nested bag", Filled, AskedByName(&PropertyBag::GetProperty, L"n")));
    oCases.push_back(OnBag(lGet, "unknown", Filled, AskedByName(&PropertyBag::GetProperty, L"x")).CannotFail());
}

void AddTextsByIndex(Cases& oCases)
{
    const char* const lName = "QTalBase::PropertyBag::GetName(unsigned int) const";
    const char* const lValue = "QTalBase::PropertyBag::GetValue(unsigned int) const";
    for (const unsigned int lIndex : {0U, 1U, 3U, 4U})
    {
        oCases.push_back(OnBag(lName, "each kind of index", Filled, AskedByIndex(&PropertyBag::GetName, lIndex)));
        oCases.push_back(OnBag(lValue, "each kind of index", Filled, AskedByIndex(&PropertyBag::GetValue, lIndex)));
    }
    oCases.push_back(OnBag(lName, "a short name", Filled, AskedByIndex(&PropertyBag::GetName, 2)).MayNotAllocate());
}

void AddNestAnswers(Cases& oCases)
{
    const char* const lByName = "QTalBase::PropertyBag::GetPropertyBag(const wchar_t*) const";
    const char* const lByIndex = "QTalBase::PropertyBag::GetValuePropertyBag(unsigned int) const";
    const auto lAskName = [](const wchar_t* ipName) {
        return Asked(
            [=](const PropertyBag& iBag, BagSubject& oSubject) { oSubject.mAnswer = iBag.GetPropertyBag(ipName); });
    };
    const auto lAskIndex = [](unsigned int iIndex) {
        return Asked([=](const PropertyBag& iBag, BagSubject& oSubject) {
            oSubject.mAnswer = iBag.GetValuePropertyBag(iIndex);
        });
    };
    oCases.push_back(OnBag(lByName, "found", Filled, lAskName(L"n")).CannotFail());
    oCases.push_back(OnBag(lByName, "plain", Filled, lAskName(LONG_A)));
    oCases.push_back(OnBag(lByName, "unknown", Filled, lAskName(L"x")));
    oCases.push_back(OnBag(lByIndex, "found", Filled, lAskIndex(2)).CannotFail());
    oCases.push_back(OnBag(lByIndex, "plain", Filled, lAskIndex(0)));
    oCases.push_back(OnBag(lByIndex, "the count", Filled, lAskIndex(3)));
    oCases.push_back(OnBag(lByIndex, "beyond", Filled, lAskIndex(4)));
}

void AddNumbers(Cases& oCases)
{
    const auto lNumber = [&](const char* iOperation, auto iAsk) {
        return OnBag(iOperation, "", Filled, Asked([iAsk](const PropertyBag& iBag, BagSubject& oSubject) {
                         oSubject.mNumber = static_cast<long>(iAsk(iBag));
                     }));
    };
    oCases.push_back(
        lNumber("QTalBase::PropertyBag::GetCount() const", [](auto& iBag) { return iBag.GetCount(); }).CannotFail());
    oCases.push_back(lNumber("QTalBase::PropertyBag::IsPropertyEmbedded(const wchar_t*) const", [](auto& iBag) {
                         return (iBag.IsPropertyEmbedded(L"n") ? 1 : 0) + (iBag.IsPropertyEmbedded(L"x") ? 2 : 0);
                     }).CannotFail());
    oCases.push_back(lNumber("QTalBase::PropertyBag::IsEmbedded(unsigned int) const", [](auto& iBag) {
                         return (iBag.IsEmbedded(0) ? 1 : 0) + (iBag.IsEmbedded(3) ? 2 : 0);
                     }).CannotFail());
    oCases.push_back(lNumber("QTalBase::PropertyBag::IsEmbedded(unsigned int) const",
                             [](auto& iBag) { return iBag.IsEmbedded(4) ? 1 : 0; }));
    oCases.push_back(lNumber("QTalBase::PropertyBag::GetBeginDelimiter() const", [](auto& iBag) {
                         return std::wcslen(iBag.GetBeginDelimiter());
                     }).CannotFail());
    oCases.push_back(lNumber("QTalBase::PropertyBag::GetEndDelimiter() const", [](auto& iBag) {
                         return std::wcslen(iBag.GetEndDelimiter());
                     }).CannotFail());
}

RunOnBag Rendered(bool iWithMetadata, const wchar_t* ipBegin, const wchar_t* ipEnd, bool iWithSensitiveInfo)
{
    return Asked([=](const PropertyBag& iBag, BagSubject& oSubject) {
        oSubject.mText = iBag.GetString(iWithMetadata, ipBegin, ipEnd, iWithSensitiveInfo);
    });
}

void AddTexts(Cases& oCases)
{
    const char* const lGet = "QTalBase::PropertyBag::GetString(bool, const wchar_t*, const wchar_t*, bool) const";
    oCases.push_back(OnBag(lGet, "whole", Filled, Rendered(true, nullptr, nullptr, true)));
    oCases.push_back(OnBag(lGet, "with other delimiters", Filled, Rendered(true, LONG_BEGIN, LONG_END, false)));
    oCases.push_back(OnBag(lGet, "of a derived class", Derived, Rendered(false, nullptr, nullptr, true)));
    oCases.push_back(OnBag(lGet, "of many", Many, Rendered(true, nullptr, nullptr, true)));
    oCases.push_back(OnBag(lGet, "of an empty bag", Empty, Rendered(true, nullptr, nullptr, true)));
    oCases.push_back(OnBag(lGet, "with an invalid pair", Filled, Rendered(true, LONG_BEGIN, LONG_BEGIN, true)));
    oCases.push_back(
        OnBag("QTalBase::PropertyBag::GetStringWithoutSensitiveInfo(bool, const wchar_t*, const wchar_t*) const", "",
              Filled, Asked([](const PropertyBag& iBag, BagSubject& oSubject) {
                  oSubject.mText = iBag.GetStringWithoutSensitiveInfo(true, nullptr, nullptr);
              })));
}

void AddComparisons(Cases& oCases)
{
    struct Pair
    {
        const char* mSituation;
        BagPtr (*mMake)();
        BagPtr (*mMakeOther)();
    };
    // Without their values that hold an asterisk the bags would be equal; the raw ones are.
    for (const Pair& lPair :
         {Pair{"exact", Raw, Raw}, Pair{"many", Many, Many}, Pair{"escaped beside raw", Raw, Filled},
          Pair{"a derived class asked", Derived, Filled}, Pair{"a derived class as argument", Filled, Derived},
          Pair{"a foreign class", Raw, Foreign}})
    {
        AddComparing(oCases, lPair.mSituation, lPair.mMake, lPair.mMakeOther);
    }
}

// A filter with names of every kind.
void AddFilter(BagSubject& oSubject)
{
    oSubject.mFilter.reset(QDataType::CreateStringCollection());
    for (const wchar_t* lName : {L"n", LONG_A, L"unknown", LONG_B, LONG_A})
    {
        oSubject.mFilter->Insert(lName);
    }
    for (unsigned int lIndex = 0; lIndex < oSubject.mBag->GetCount(); ++lIndex)
    {
        oSubject.mFilter->Insert(oSubject.mBag->GetName(lIndex).c_str());
    }
}

void AddClones(Cases& oCases)
{
    const char* const lClone = "QTalBase::PropertyBag::Clone() const";
    const char* const lFilteredClone = "QTalBase::PropertyBag::FilteredClone(const QDataType::StringCollection*) const";
    struct Source
    {
        const char* mSituation;
        BagPtr (*mMake)();
    };
    for (const Source& lSource : {Source{"exact", Filled}, Source{"many", Many}, Source{"a derived class", Derived},
                                  Source{"other delimiters", Raw}})
    {
        oCases.push_back(OnBag(lClone, lSource.mSituation, lSource.mMake,
                               [](BagSubject& oSubject) { oSubject.mAnswer = oSubject.mBag->Clone(); }));
        oCases.push_back(OnBag(lFilteredClone, lSource.mSituation, lSource.mMake, [](BagSubject& oSubject) {
            AddFilter(oSubject);
            oSubject.mAnswer = oSubject.mBag->FilteredClone(oSubject.mFilter.get());
        }));
    }
}

// Writes nothing, so that all that fails is the bag's.
class NullStream : public QSerialization::WriteDataStream
{
public:
    void WriteWString(const wchar_t*) override {}
    void WriteBool(bool) override {}
    void WriteUInt32(unsigned int) override {}
    void WriteUInt64(unsigned long) override {}
};

void AddStreams(Cases& oCases)
{
    const char* const lSerialize = "QTalBase::PropertyBag::Serialize(QSerialization::WriteDataStream&) const";
    for (const MakeBag& lMake : {MakeBag(Filled), MakeBag(Many), MakeBag(Derived)})
    {
        oCases.push_back(OnBag(lSerialize, "to nowhere", lMake, [](BagSubject& oSubject) {
            NullStream lStream;
            oSubject.mBag->Serialize(lStream);
        }));
        oCases.push_back(OnBag(lSerialize, "to memory", lMake, [](BagSubject& oSubject) {
            QSerialization::MemoryWriteDataStream lStream;
            oSubject.mBag->Serialize(lStream);
            oSubject.mNumber = static_cast<long>(lStream.GetBytes().size());
        }));
    }
}

void AddFactories(Cases& oCases)
{
    const auto lMade = [](auto iMake) { return [iMake](BagSubject& oSubject) { oSubject.mAnswer = iMake(); }; };
    oCases.push_back(
        OnBag("QTalBase::CreatePropertyBag()", "", Nothing, lMade([] { return QTalBase::CreatePropertyBag(); })));
    const char* const lWithPair = "QTalBase::CreatePropertyBag(wchar_t const*, wchar_t const*)";
    oCases.push_back(
        OnBag(lWithPair, "", Nothing, lMade([] { return QTalBase::CreatePropertyBag(LONG_BEGIN, LONG_END); })));
    const char* const lFromText = "QTalBase::CreatePropertyBag(wchar_t const*)";
    for (const std::wstring& lText : {std::wstring(), std::wstring(Support::gHeader), Support::FullText(*Filled()),
                                      Support::FullText(*Many()), Support::FullText(*Raw())})
    {
        oCases.push_back(
            OnBag(lFromText, "", Nothing, lMade([lText] { return QTalBase::CreatePropertyBag(lText.c_str()); })));
    }
    const auto lRefused = [](auto iMake) {
        return
            [iMake](BagSubject& oSubject) { oSubject.mNumber = NumberOfRefusal([&] { oSubject.mAnswer = iMake(); }); };
    };
    oCases.push_back(OnBag(lWithPair, "an invalid pair", Nothing,
                           lRefused([] { return QTalBase::CreatePropertyBag(LONG_BEGIN, LONG_BEGIN); })));
    for (const wchar_t* lText : {L"a text without a header that is quoted", L"EndDelimiter", L"EndDelimiter***Begin",
                                 L"EndDelimiter***BeginDelimiter++++***a++++b", L"EndDelimiter***BeginDelimiter***"})
    {
        oCases.push_back(
            OnBag(lFromText, "refused", Nothing, lRefused([lText] { return QTalBase::CreatePropertyBag(lText); })));
    }
}

void AddBytes(Cases& oCases)
{
    const char* const lRead =
        "QTalBase::CreatePropertyBagFromUTF8(std::basic_string_view<char, std::char_traits<char> >)";
    for (const std::string& lBytes :
         {QTalBase::PropertyBagToUTF8(*Filled()), QTalBase::PropertyBagToUTF8(*Many()), std::string("EndDelimiter***"),
          std::string("no header \xC3"), std::string("no header and \0 a zero", 22)})
    {
        oCases.push_back(OnBag(lRead, "", Nothing, [lBytes](BagSubject& oSubject) {
            oSubject.mNumber = NumberOfRefusal([&] { oSubject.mAnswer = QTalBase::CreatePropertyBagFromUTF8(lBytes); });
        }));
    }
    const char* const lWrite = "QTalBase::PropertyBagToUTF8[abi:cxx11](QTalBase::PropertyBag const&)";
    for (const auto lMake : {Empty, Filled, Derived, Many, Raw, Foreign})
    {
        oCases.push_back(OnBag(lWrite, "", lMake, Asked([](const PropertyBag& iBag, BagSubject& oSubject) {
                                   const std::string lBytes = QTalBase::PropertyBagToUTF8(iBag);
                                   oSubject.mNumber = NumberOf(iBag, std::string_view(lBytes));
                               })));
    }
}

void AddReferences(Cases& oCases)
{
    oCases.push_back(OnBag("QTalBase::PropertyBag::AddRef() const", "", Filled, [](BagSubject& oSubject) {
                         oSubject.mAnswer = oSubject.mBag;
                     }).CannotFail());
    // The last reference of a bag takes its nests with it.
    oCases.push_back(OnBags("QTalBase::PropertyBag::Release() const", "", Filled, Many, [](BagSubject& oSubject) {
                         oSubject.mOther = nullptr;
                     }).CannotFail());
}

} // namespace

Cases MakeBagReadCases()
{
    Cases lCases;
    AddTextsByName(lCases);
    AddTextsByIndex(lCases);
    AddNestAnswers(lCases);
    AddNumbers(lCases);
    AddTexts(lCases);
    AddComparisons(lCases);
    AddClones(lCases);
    AddStreams(lCases);
    AddFactories(lCases);
    AddBytes(lCases);
    AddReferences(lCases);
    return lCases;
}

} // namespace Failures
