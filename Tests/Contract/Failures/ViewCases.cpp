// What stands on the operations of bags: values by type and by path, loops, and the check of a text. All but the last
// is compiled into its callers, so no table of a library names it.

#include "Tests/Contract/Failures/Subjects.h"

#include "QDataType/DateTime.h"
#include "TalBase/SensitiveNames.h"
#include "TalBase/TextCheck.h"
#include "TalBase/Views.h"

#include <iterator>

namespace Failures
{

namespace
{

void AddValues(Cases& oCases)
{
    const char* const lGet = "QTalBase::Get<T>(const PropertyBag&, const wchar_t*, T)";
    oCases.push_back(OnBag(lGet, "text", Filled, [](BagSubject& oSubject) {
        oSubject.mText = QTalBase::Get<std::wstring>(*oSubject.mBag, LONG_A);
    }));
    oCases.push_back(OnBag(lGet, "a date", Filled, [](BagSubject& oSubject) {
        oSubject.mNumber = QTalBase::Get<QDataType::DateTime>(*oSubject.mBag, LONG_A) == QDataType::DateTime() ? 1 : 0;
    }));
    oCases.push_back(OnBag("QTalBase::Get(const PropertyBag&, const wchar_t*, const wchar_t*)", "", Filled,
                           [](BagSubject& oSubject) { oSubject.mText = QTalBase::Get(*oSubject.mBag, L"x", LONG_V); }));
    const char* const lSet = "QTalBase::Set(PropertyBag&, const wchar_t*, const T&)";
    oCases.push_back(OnBag(lSet, "text", Filled, [](BagSubject& oSubject) {
        QTalBase::Set(*oSubject.mBag, LONG_A, std::wstring_view(LONG_V));
    }));
    oCases.push_back(
        OnBag(lSet, "a number", Filled, [](BagSubject& oSubject) { QTalBase::Set(*oSubject.mBag, LONG_C, -1000000); }));
}

void AddPaths(Cases& oCases)
{
    const char* const lBagAt = "QTalBase::GetBagAt(const PropertyBag&, const wchar_t*)";
    const char* const lValueAt = "QTalBase::GetValueAt(const PropertyBag&, const wchar_t*)";
    oCases.push_back(OnBag(lBagAt, "found", Filled, [](BagSubject& oSubject) {
        oSubject.mAnswer = QTalBase::GetBagAt(*oSubject.mBag, L"n/m");
    }));
    oCases.push_back(OnBag(lBagAt, "unknown", Filled, [](BagSubject& oSubject) {
        oSubject.mNumber = NumberOfRefusal([&] { oSubject.mAnswer = QTalBase::GetBagAt(*oSubject.mBag, L"n/x"); });
    }));
    oCases.push_back(OnBag(lValueAt, "found", Filled, [](BagSubject& oSubject) {
        oSubject.mText = QTalBase::GetValueAt(*oSubject.mBag, L"n/m/l");
    }));
    oCases.push_back(OnBag(lValueAt, "unknown", Filled, [](BagSubject& oSubject) {
        oSubject.mNumber = NumberOfRefusal([&] { oSubject.mText = QTalBase::GetValueAt(*oSubject.mBag, L"n/m/x"); });
    }));
    oCases.push_back(OnBag("QTalBase::AsPathStep(std::wstring_view)", "", Filled,
                           [](BagSubject& oSubject) { oSubject.mText = QTalBase::AsPathStep(LONG_A L"/" LONG_B); }));
}

using QTalBase::BagEntry;
using QTalBase::Property;

void AddProperties(Cases& oCases)
{
    const char* const lName = "QTalBase::Property::GetName() const";
    const char* const lEmbedded = "QTalBase::Property::IsEmbedded() const";
    const char* const lValue = "QTalBase::Property::GetValue() const";
    const char* const lBag = "QTalBase::Property::GetBag() const";
    for (const unsigned int lIndex : {0U, 1U, 4U})
    {
        oCases.push_back(OnBag(lName, "each kind of place", Filled, Refused([=](BagSubject& oSubject) {
                                   oSubject.mText = Property(*oSubject.mBag, lIndex).GetName();
                               })));
    }
    oCases.push_back(OnBag(lEmbedded, "", Filled, [](BagSubject& oSubject) {
                         oSubject.mNumber = Property(*oSubject.mBag, 1).IsEmbedded() ? 1 : 0;
                     }).CannotFail());
    oCases.push_back(OnBag(lEmbedded, "no place", Filled, Refused([](BagSubject& oSubject) {
                               oSubject.mNumber = Property(*oSubject.mBag, 4).IsEmbedded() ? 1 : 0;
                           })));
    const auto lGetValue = [](unsigned int iIndex) {
        return Refused([=](BagSubject& oSubject) { oSubject.mText = Property(*oSubject.mBag, iIndex).GetValue(); });
    };
    oCases.push_back(OnBag(lValue, "unescaped", Filled, lGetValue(0)));
    oCases.push_back(OnBag(lValue, "plain", Many, lGetValue(1)));
    oCases.push_back(OnBag(lValue, "a nested bag", Filled, lGetValue(1)));
    oCases.push_back(OnBag(
        lValue, "as stored", [] { return Support::BagBuilder(L"[[", L"]]").Set(LONG_A, L"&#42;" LONG_V); },
        lGetValue(0)));
    oCases.push_back(OnBag(lValue, "no place", Filled, lGetValue(4)));
    const auto lGetBag = [](unsigned int iIndex) {
        return Refused([=](BagSubject& oSubject) { oSubject.mAnswer = Property(*oSubject.mBag, iIndex).GetBag(); });
    };
    oCases.push_back(OnBag(lBag, "found", Filled, lGetBag(2)).CannotFail());
    oCases.push_back(OnBag(lBag, "plain", Filled, lGetBag(0)));
    oCases.push_back(OnBag("QTalBase::operator!=(const PropertyBag&, const PropertyBag&)", "", Derived,
                           [](BagSubject& oSubject) { oSubject.mNumber = *oSubject.mBag != *oSubject.mBag ? 1 : 0; }));
}

// A bag, and a collection with one like it.
class EntrySubject : public BagSubject
{
public:
    QBase::SmartPtrI<QTalBase::PropertyBags> mBags;
};

Case OnEntry(const char* ipOperation, const char* ipSituation, const std::function<void(EntrySubject&)>& iRun)
{
    const auto lMake = [] {
        auto lSubject = std::make_unique<EntrySubject>();
        lSubject->mBag = Filled();
        lSubject->mBags = QTalBase::CreatePropertyBags();
        lSubject->mBags->Add(LONG_A, lSubject->mBag.get());
        return lSubject;
    };
    return On<EntrySubject>(ipOperation, ipSituation, lMake, iRun);
}

void AddEntries(Cases& oCases)
{
    const char* const lName = "QTalBase::BagEntry::GetName() const";
    const char* const lBag = "QTalBase::BagEntry::GetBag() const";
    oCases.push_back(OnEntry(lName, "", [](EntrySubject& oSubject) {
                         oSubject.mNumber = static_cast<long>(std::wcslen(BagEntry(*oSubject.mBags, 0).GetName()));
                     }).CannotFail());
    oCases.push_back(OnEntry(lName, "no place", [](EntrySubject& oSubject) {
        oSubject.mNumber = NumberOfRefusal([&] { static_cast<void>(BagEntry(*oSubject.mBags, 2).GetName()); });
    }));
    for (const unsigned int lIndex : {0U, 2U})
    {
        oCases.push_back(OnEntry(lBag, "each kind of place", [=](EntrySubject& oSubject) {
            oSubject.mNumber = NumberOfRefusal([&] { oSubject.mAnswer = BagEntry(*oSubject.mBags, lIndex).GetBag(); });
        }));
    }
}

long LengthOfNames(const QTalBase::ViewRange<QTalBase::PropertyBag, Property>& iRange)
{
    long lLength = 0;
    for (const Property& lProperty : iRange)
    {
        lLength += static_cast<long>(lProperty.GetName().GetLength());
    }
    return lLength;
}

void AddLoops(Cases& oCases)
{
    oCases.push_back(OnBag("QTalBase::begin(const PropertyBag&)", "a whole loop", Filled, [](BagSubject& oSubject) {
        long lLength = 0;
        for (const Property& lProperty : *oSubject.mBag)
        {
            lLength += static_cast<long>(lProperty.GetName().GetLength());
        }
        oSubject.mNumber = lLength;
    }));
    oCases.push_back(OnBag("QTalBase::end(const PropertyBag&)", "", Filled, [](BagSubject& oSubject) {
                         oSubject.mNumber = std::distance(begin(*oSubject.mBag), end(*oSubject.mBag));
                     }).CannotFail());
    oCases.push_back(OnEntry("QTalBase::begin(const PropertyBags&)", "a whole loop", [](EntrySubject& oSubject) {
        for (const BagEntry& lEntry : *oSubject.mBags)
        {
            oSubject.mAnswer = lEntry.GetBag();
        }
    }));
    oCases.push_back(OnEntry("QTalBase::end(const PropertyBags&)", "", [](EntrySubject& oSubject) {
                         oSubject.mNumber = std::distance(begin(*oSubject.mBags), end(*oSubject.mBags));
                     }).CannotFail());
    const char* const lEach = "QTalBase::Each(SmartPtrI<const PropertyBag>)";
    oCases.push_back(OnBag(lEach, "a whole loop", Filled, [](BagSubject& oSubject) {
        oSubject.mNumber = LengthOfNames(QTalBase::Each(oSubject.mBag));
    }));
    oCases.push_back(OnBag(lEach, "null", Filled, [](BagSubject& oSubject) {
                         oSubject.mNumber = LengthOfNames(QTalBase::Each(oSubject.mAnswer));
                     }).CannotFail());
    oCases.push_back(OnEntry("QTalBase::Each(SmartPtrI<const PropertyBags>)", "", [](EntrySubject& oSubject) {
        for (const BagEntry& lEntry : QTalBase::Each(oSubject.mBags))
        {
            oSubject.mAnswer = lEntry.GetBag();
        }
    }));
}

// Everything of a result but its message, remarks in their order; made without memory.
long NumberOf(const QTalBase::TextCheckResult& iResult)
{
    unsigned long lNumber = iResult.mIsValid ? 1 : 0;
    const auto lAdd = [&](std::size_t iPart) { lNumber = lNumber * 1000003 + iPart; };
    lAdd(iResult.mPosition);
    lAdd(iResult.mContentPosition);
    for (const QTalBase::TextRemark& lRemark : iResult.mRemarks)
    {
        lAdd(static_cast<std::size_t>(lRemark.mKind) + 1); // no remark is another than one of the first kind
        lAdd(lRemark.mPosition);
        lAdd(lRemark.mLength);
    }
    return static_cast<long>(lNumber >> 1);
}

void AddTextChecks(Cases& oCases)
{
    const char* const lCheck = "QTalBase::CheckText(wchar_t const*)";
    const char* const lCheckWithPair = "QTalBase::CheckText(wchar_t const*, wchar_t const*, wchar_t const*)";
    const auto lChecked = [](const std::wstring& iText, bool iWithPair) {
        return [=](BagSubject& oSubject) {
            QTalBase::TextCheckResult lResult =
                iWithPair ? QTalBase::CheckText(iText.c_str(), L"++++", L"***") : QTalBase::CheckText(iText.c_str());
            oSubject.mText = std::move(lResult.mMessage);
            oSubject.mNumber = NumberOf(lResult);
        };
    };
    const std::wstring lHeader = Support::gHeader;
    // Sorting the remarks takes longer without a buffer.
    for (const std::wstring& lText :
         {Support::FullText(*Filled()), Support::FullText(*Many()),
          lHeader + L"a++++***a++++1***a++++2***b++++c++++******tail", lHeader + L"a++++b",
          std::wstring(L"a text without a header"), lHeader + L"***", std::wstring(L"EndDelimiter***Begin")})
    {
        oCases.push_back(OnBag(lCheck, "", Nothing, lChecked(lText, false)).MayDoWithout());
        oCases.push_back(OnBag(lCheckWithPair, "", Nothing, lChecked(lText, true)).MayNotAllocate().MayDoWithout());
    }
}

long NumberOf(const QTalBase::TextFault& iFault)
{
    return static_cast<long>(iFault.mKind) * 1000 + static_cast<long>(iFault.mPart) * 100 +
           static_cast<long>(iFault.mPath.size());
}

// A bag whose text is not written, and some whose text is; with the fault of a name three levels down.
void AddTextFaults(Cases& oCases)
{
    const char* const lFind =
        "QTalBase::FindTextFault(QTalBase::PropertyBag const&, bool, wchar_t const*, wchar_t const*)";
    const auto lFound = [](bool iWithHeader, const wchar_t* ipBegin, const wchar_t* ipEnd) {
        return [=](BagSubject& oSubject) {
            oSubject.mNumber = NumberOf(QTalBase::FindTextFault(*oSubject.mBag, iWithHeader, ipBegin, ipEnd));
        };
    };
    for (const MakeBag& lMake : {MakeBag(Filled), MakeBag(Derived), MakeBag(Many), MakeBag(Raw), MakeBag(Foreign)})
    {
        oCases.push_back(OnBag(lFind, "its own delimiters", lMake, lFound(true, nullptr, nullptr)));
        oCases.push_back(OnBag(lFind, "others", lMake, lFound(true, LONG_BEGIN, LONG_END)));
        oCases.push_back(OnBag(lFind, "a name that holds one", lMake, lFound(false, L"name", LONG_END)));
        oCases.push_back(OnBag(lFind, "a header cannot name them", lMake, lFound(false, LONG_BEGIN L"!", L"e!")));
    }
    const char* const lMade = "QTalBase::PropertyTextCheck::PropertyTextCheck(wchar_t const*, wchar_t const*)";
    const char* const lName =
        "QTalBase::PropertyTextCheck::CheckName(std::basic_string_view<wchar_t, std::char_traits<wchar_t> >)";
    const char* const lValue =
        "QTalBase::PropertyTextCheck::CheckStoredValue(std::basic_string_view<wchar_t, std::char_traits<wchar_t> >)";
    const auto lChecked = [](BagSubject& oSubject) {
        QTalBase::PropertyTextCheck lCheck(LONG_BEGIN, LONG_END);
        oSubject.mNumber = 100 * static_cast<long>(lCheck.CheckName(LONG_A L"<")) +
                           static_cast<long>(lCheck.CheckStoredValue(LONG_V L">"));
    };
    for (const char* const lOperation : {lMade, lName, lValue})
    {
        oCases.push_back(OnBag(lOperation, "", Nothing, lChecked));
    }
}

void AddSensitiveNames(Cases& oCases)
{
    const auto lCount = [](BagSubject& oSubject) {
        for (const wchar_t* const* lName = QTalBase::GetSensitiveNames(); *lName != nullptr; ++lName)
        {
            ++oSubject.mNumber;
        }
    };
    oCases.push_back(OnBag("QTalBase::GetSensitiveNames()", "", Nothing, lCount).MayNotAllocate());
}

} // namespace

Cases MakeViewCases()
{
    Cases lCases;
    AddValues(lCases);
    AddPaths(lCases);
    AddProperties(lCases);
    AddEntries(lCases);
    AddLoops(lCases);
    AddTextChecks(lCases);
    AddTextFaults(lCases);
    AddSensitiveNames(lCases);
    return lCases;
}

} // namespace Failures
