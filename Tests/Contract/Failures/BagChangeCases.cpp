// The operations that change a bag.

#include "Tests/Contract/Failures/Subjects.h"

#include "QSerialization/MemoryDataStream.h"
#include "TalBase/PrivateSource/PropertyBagImpl.h"

#include "Tests/Support/RecordingStreams.h"

namespace Failures
{

namespace
{

using QTalBase::PropertyBagImpl;
using Support::gHeader;

RunOnBag Set(const wchar_t* ipName, const wchar_t* ipValue, bool iIsPropertyBag)
{
    return [=](BagSubject& oSubject) { oSubject.mBag->SetProperty(ipName, ipValue, iIsPropertyBag); };
}

RunOnBag RefusedSet(const wchar_t* ipName, const wchar_t* ipValue, bool iIsPropertyBag)
{
    return Refused([=](BagSubject& oSubject) { oSubject.mBag->SetProperty(ipName, ipValue, iIsPropertyBag); });
}

// What a failed setting of a nested bag may leave: the old property of that name is gone.
std::vector<std::wstring> Without(const MakeBag& iMake, const wchar_t* ipName, const MakeBag& iMakeOther = Nothing)
{
    BagSubject lSubject;
    lSubject.mBag = iMake();
    lSubject.mOther = iMakeOther();
    lSubject.mBag->RemoveProperty(ipName);
    return {lSubject.See()};
}

const char* const gSet = "QTalBase::PropertyBag::SetProperty(const wchar_t*, const wchar_t*, bool)";

void AddPlainSettings(Cases& oCases)
{
    oCases.push_back(OnBag(gSet, "a new plain property", Filled, Set(LONG_C, LONG_V, false)));
    oCases.push_back(OnBag(gSet, "in an empty bag", Empty, Set(LONG_C, L"1", false)));
    oCases.push_back(OnBag(gSet, "a plain property replaced", Filled, Set(LONG_A, LONG_B LONG_B LONG_B, false)));
    oCases.push_back(OnBag(gSet, "a nested bag replaced by a plain property", Filled, Set(L"n", LONG_V, false)));
    oCases.push_back(OnBag(gSet, "in a bag of many", Many, Set(LONG_A, LONG_V LONG_V LONG_V LONG_V, false)));
    oCases.push_back(OnBag(gSet, "with other delimiters", Raw, Set(LONG_A, LONG_V, false)));
    oCases.push_back(OnBag(gSet, "in a derived class", Derived, Set(LONG_A, LONG_V, false)));
    oCases.push_back(OnBag(gSet, "the empty value", Filled, Set(LONG_A, L"", false)).CannotFail());
    oCases.push_back(OnBag(gSet, "the empty value as a nested bag", Filled, Set(L"n", L"", true)).CannotFail());
    oCases.push_back(OnBag(gSet, "a null name", Filled, RefusedSet(nullptr, LONG_V, false)));
    oCases.push_back(OnBag(gSet, "a null value", Filled, RefusedSet(LONG_A, nullptr, false)));
    oCases.push_back(OnBag(gSet, "a name with a delimiter", Filled, RefusedSet(L"a***", LONG_V, false)));
    oCases.push_back(OnBag(gSet, "a value with a delimiter", Raw, RefusedSet(LONG_A, LONG_V L"]]", false)));
}

void AddNestedSettings(Cases& oCases)
{
    const wchar_t* const lText = LONG_A L"++++" LONG_V L"***" LONG_C L"++++k++++v******";
    oCases.push_back(OnBag(gSet, "a new nested bag", Filled, Set(LONG_C, lText, true)));
    oCases.push_back(
        OnBag(gSet, "a nested bag replaced", Filled, Set(L"n", lText, true)).MayLeave(Without(Filled, L"n")));
    oCases.push_back(OnBag(gSet, "a plain property replaced by a nested bag", Filled, Set(LONG_A, lText, true))
                         .MayLeave(Without(Filled, LONG_A)));
    oCases.push_back(OnBag(gSet, "a nested bag in a derived class", Derived, Set(L"n", lText, true))
                         .MayLeave(Without(Derived, L"n")));
    oCases.push_back(
        OnBag(gSet, "a nested bag in a bag of many", Many, Set(L"n", lText, true)).MayLeave(Without(Many, L"n")));
    oCases.push_back(OnBag(gSet, "a nested bag whose text names delimiters", Raw,
                           Set(L"n", L"EndDelimiter***BeginDelimiter++++***" LONG_A L"++++" LONG_V L"***", true))
                         .MayLeave(Without(Raw, L"n")));
    oCases.push_back(OnBag(gSet, "a nested bag whose text is refused", Filled, RefusedSet(L"n", LONG_A L"***", true))
                         .MayLeave(Without(Filled, L"n")));
}

void AddEmbeddings(Cases& oCases)
{
    const char* const lEmbed = "QTalBase::PropertyBag::EmbedProperty(const wchar_t*, const QTalBase::PropertyBag*)";
    const RunOnBag lRun = [](BagSubject& oSubject) { oSubject.mBag->EmbedProperty(L"n", oSubject.mOther.get()); };
    oCases.push_back(OnBags(lEmbed, "in an empty bag", Empty, Filled, lRun));
    oCases.push_back(OnBags(lEmbed, "replacing", Filled, Filled, lRun).MayLeave(Without(Filled, L"n", Filled)));
    oCases.push_back(OnBags(lEmbed, "a foreign bag", Filled, Foreign, lRun).MayLeave(Without(Filled, L"n", Foreign)));
    oCases.push_back(OnBags(lEmbed, "in a derived class", Derived, Many, lRun).MayLeave(Without(Derived, L"n", Many)));
    oCases.push_back(OnBag(lEmbed, "itself", Filled,
                           [](BagSubject& oSubject) { oSubject.mBag->EmbedProperty(LONG_C, oSubject.mBag.get()); }));
    oCases.push_back(OnBags(lEmbed, "a null name", Filled, Filled, Refused([](BagSubject& oSubject) {
                                oSubject.mBag->EmbedProperty(nullptr, oSubject.mOther.get());
                            })));
}

void AddRemovals(Cases& oCases)
{
    const char* const lRemove = "QTalBase::PropertyBag::RemoveProperty(const wchar_t*)";
    for (const MakeBag& lMake : {MakeBag(Filled), MakeBag(Derived), MakeBag(Many)})
    {
        for (const wchar_t* lName : {LONG_A, L"n", LONG_B, L"unknown", static_cast<const wchar_t*>(nullptr)})
        {
            const auto lRun = [lName](BagSubject& oSubject) { oSubject.mBag->RemoveProperty(lName); };
            oCases.push_back(OnBag(lRemove, "each kind of name", lMake, lRun).CannotFail());
        }
    }
    // The contract lets these two end the process where memory runs out; it cannot, for they need none.
    const auto lImpl = [](BagSubject& oSubject) { return dynamic_cast<PropertyBagImpl*>(oSubject.mBag.get()); };
    for (const wchar_t* lName : {LONG_A, L"n", L"unknown", static_cast<const wchar_t*>(nullptr)})
    {
        oCases.push_back(OnBag("QTalBase::PropertyBagImpl::RemovePropertyInValueContent(const wchar_t*)", "", Many,
                               [=](BagSubject& oSubject) { lImpl(oSubject)->RemovePropertyInValueContent(lName); })
                             .CannotFail());
        oCases.push_back(OnBag("QTalBase::PropertyBagImpl::RemovePropertyInEmbeddedContent(const wchar_t*)", "", Many,
                               [=](BagSubject& oSubject) { lImpl(oSubject)->RemovePropertyInEmbeddedContent(lName); })
                             .CannotFail());
    }
}

std::wstring Nested(int iDepth)
{
    std::wstring lText = LONG_C L"++++" LONG_V L"***";
    for (int lLevel = 0; lLevel < iDepth; ++lLevel)
    {
        lText.insert(0, LONG_B L"++++p++++1***").append(L"***");
    }
    return lText;
}

Case Adding(const char* ipSituation, const MakeBag& iMake, const std::wstring& iText, bool iIsDirect = false)
{
    return OnBag("QTalBase::PropertyBag::AddString(const wchar_t*)", ipSituation, iMake,
                 [iText](BagSubject& oSubject) { oSubject.mBag->AddString(iText.c_str()); })
        .MayLeave(iIsDirect ? std::vector<std::wstring>() : BeginningsOfText(iMake, iText));
}

void AddTexts(Cases& oCases)
{
    const std::wstring lHeader = gHeader;
    const std::wstring lText =
        lHeader + LONG_C L"++++" LONG_V L"***n++++" LONG_A L"++++" LONG_B L"******" LONG_A L"++++" LONG_V LONG_V L"***";
    oCases.push_back(Adding("in an empty bag", Empty, lText, true));
    oCases.push_back(Adding("a merge", Filled, lText));
    oCases.push_back(Adding("a merge in a derived class", Derived, lText));
    oCases.push_back(Adding("a merge in a bag of many", Many, lText));
    oCases.push_back(Adding("a text of many", Filled, Support::FullText(*Many())));
    oCases.push_back(Adding("a text of many in a bag of many", Many, Support::FullText(*Many())));
    oCases.push_back(Adding("a text of many in an empty bag", Empty, Support::FullText(*Many()), true));
    oCases.push_back(Adding("a deep text in an empty bag", Empty, lHeader + Nested(30), true));
    oCases.push_back(Adding("a deep text", Filled, lHeader + Nested(30)));
    oCases.push_back(Adding("names that come again", Filled, lText + lText.substr(lHeader.size())));
    oCases.push_back(Adding("empty nests", Filled, lHeader + LONG_C L"++++" LONG_B L"++++" LONG_A L"++++*********"));
    // Read with other delimiters than the bag's, so every level is escaped, checked and stored anew.
    oCases.push_back(Adding("a text of other delimiters", Raw, lHeader + Nested(5)));
    oCases.push_back(Adding("a text of other delimiters, to be escaped", Filled,
                            L"EndDelimiter]]BeginDelimiter[[]]" LONG_A L"[[a*b+c]]n[[" LONG_C L"[[a*b+c]]]]"));
    oCases.push_back(
        Adding("long delimiters", Filled,
               L"EndDelimiter" LONG_END L"BeginDelimiter" LONG_BEGIN LONG_END LONG_A LONG_BEGIN L"1" LONG_END));
    // A header cannot carry these, so each nest is rendered and read again.
    oCases.push_back(OnBag(
        "QTalBase::PropertyBag::AddString(const wchar_t*)", "delimiters that no header carries",
        [] { return QTalBase::CreatePropertyBag(L"(i", L"i)"); },
        Refused([](BagSubject& oSubject) { oSubject.mBag->AddString(LONG_A L"(iaai)N(i" LONG_B L"(icci)i)"); })));
    for (const wchar_t* lRefused : {LONG_A L"++++" LONG_B L"***" LONG_B L"***", LONG_A L"++++", L"***", L"++++",
                                    L"EndDelimiter?", L"EndDelimiter***Begin", L"EndDelimiter<BeginDelimiter<<",
                                    LONG_A L"++++" LONG_A L"++++" LONG_V L"***" LONG_A L"++++++++"})
    {
        oCases.push_back(OnBag("QTalBase::PropertyBag::AddString(const wchar_t*)", "a text that is refused", Filled,
                               Refused([=](BagSubject& oSubject) { oSubject.mBag->AddString(lRefused); })));
    }
}

Case Merging(const char* ipSituation, const MakeBag& iMake, const MakeBag& iMakeOther)
{
    return OnBags("QTalBase::PropertyBag::AddPropertyBag(const QTalBase::PropertyBag*)", ipSituation, iMake, iMakeOther,
                  [](BagSubject& oSubject) {
                      oSubject.mBag->AddPropertyBag(oSubject.mOther ? oSubject.mOther.get() : oSubject.mBag.get());
                  })
        .MayLeave(BeginningsOfMerge(iMake, iMakeOther));
}

// Bags that are merged into themselves come out in another order each time.
std::vector<std::wstring> MergedOnwards(const MakeBag& iMake)
{
    std::vector<std::wstring> lStates;
    const std::vector<std::wstring> lBeginnings = BeginningsOfMerge(iMake, Nothing);
    const BagPtr lProbe = iMake();
    for (unsigned int lSteps = 0; lSteps <= lProbe->GetCount(); ++lSteps)
    {
        for (const bool lIsRemoved : {false, true})
        {
            BagSubject lSubject;
            lSubject.mBag = iMake();
            for (unsigned int lIndex = 0; lIndex < lSteps; ++lIndex)
            {
                lSubject.mBag->SetProperty(lSubject.mBag->GetName(lIndex).c_str(),
                                           lSubject.mBag->GetValue(lIndex).c_str(), lSubject.mBag->IsEmbedded(lIndex));
            }
            if (lIsRemoved && lSteps < lSubject.mBag->GetCount())
            {
                lSubject.mBag->RemoveProperty(lSubject.mBag->GetName(lSteps).c_str());
            }
            lSubject.mBag->AddPropertyBag(lSubject.mBag.get());
            lStates.push_back(lSubject.See());
        }
    }
    return lStates;
}

void AddMerges(Cases& oCases)
{
    oCases.push_back(Merging("in an empty bag", Empty, Filled));
    oCases.push_back(Merging("of the same names", Filled, Filled));
    oCases.push_back(Merging("of many", Filled, Many));
    oCases.push_back(Merging("of many into many", Many, Many));
    oCases.push_back(Merging("in a derived class", Derived, Filled));
    oCases.push_back(Merging("of a derived class", Filled, Derived));
    oCases.push_back(Merging("of a foreign class", Filled, Foreign));
    oCases.push_back(Merging("of other delimiters", Filled, Raw));
    oCases.push_back(Merging("into other delimiters", Raw, Filled));
    oCases.push_back(Merging("of itself", Filled, Nothing).MayComeLast(MergedOnwards(Filled)));
    oCases.push_back(Merging("of itself, many", Many, Nothing).MayComeLast(MergedOnwards(Many)));
    oCases.push_back(Merging("of itself, derived", Derived, Nothing).MayComeLast(MergedOnwards(Derived)));
}

void AddDelimiterChanges(Cases& oCases)
{
    const char* const lChange = "QTalBase::PropertyBag::ChangeDelimiters(const wchar_t*, const wchar_t*)";
    const RunOnBag lRun = [](BagSubject& oSubject) { oSubject.mBag->ChangeDelimiters(LONG_BEGIN, LONG_END); };
    oCases.push_back(OnBag(lChange, "at every depth", Filled, lRun));
    oCases.push_back(OnBag(lChange, "in a bag of many", Many, lRun));
    oCases.push_back(OnBag(lChange, "in a derived class", Derived, lRun));
    oCases.push_back(OnBag(lChange, "an invalid pair", Filled, Refused([](BagSubject& oSubject) {
                               oSubject.mBag->ChangeDelimiters(LONG_BEGIN, LONG_BEGIN L"x");
                           })));
}

Case Streamed(const char* ipSituation, const MakeBag& iMake, const wchar_t* ipBegin, const wchar_t* ipEnd,
              const std::wstring& iText)
{
    const std::wstring lText = iText;
    std::vector<std::wstring> lLeft = BeginningsOfText(
        [=] {
            const BagPtr lBag = iMake();
            Support::ScriptedReadStream lStream({ipBegin, ipEnd, L""});
            lBag->DeSerialize(lStream);
            return lBag;
        },
        lText);
    BagSubject lSubject;
    lSubject.mBag = iMake();
    QSerialization::MemoryWriteDataStream lFirst;
    lFirst.WriteWString(ipBegin);
    QSerialization::MemoryReadDataStream lStream(lFirst.GetBytes().data(), lFirst.GetBytes().size());
    try
    {
        lSubject.mBag->DeSerialize(lStream);
    }
    catch (const QSerialization::StreamException&)
    {
        lLeft.push_back(lSubject.See()); // the first delimiter only
    }
    return OnBag("QTalBase::PropertyBag::DeSerialize(QSerialization::ReadDataStream&)", ipSituation, iMake,
                 [=](BagSubject& oSubject) {
                     QSerialization::MemoryWriteDataStream lWritten;
                     for (const wchar_t* lPart : {ipBegin, ipEnd, lText.c_str()})
                     {
                         lWritten.WriteWString(lPart);
                     }
                     QSerialization::MemoryReadDataStream lRead(lWritten.GetBytes().data(), lWritten.GetBytes().size());
                     oSubject.mBag->DeSerialize(lRead);
                 })
        .MayLeave(lLeft);
}

void AddStreams(Cases& oCases)
{
    const std::wstring lText = L"EndDelimiter" LONG_END L"BeginDelimiter" LONG_BEGIN LONG_END LONG_A
        LONG_BEGIN L"1" LONG_END L"n" LONG_BEGIN LONG_C LONG_BEGIN L"2" LONG_END LONG_END;
    oCases.push_back(Streamed("other delimiters", Filled, LONG_BEGIN, LONG_END, lText));
    oCases.push_back(Streamed("the same delimiters", Filled, L"++++", L"***", Support::FullText(*Many())));
    oCases.push_back(Streamed("in a derived class", Derived, LONG_BEGIN, LONG_END, lText));
}

void AddMoves(Cases& oCases)
{
    const char* const lMove = "QTalBase::PropertyBag::MoveProperty(const wchar_t*, unsigned int)";
    for (const wchar_t* lName : {LONG_A, L"n", L"unknown", static_cast<const wchar_t*>(nullptr)})
    {
        for (const unsigned int lIndex : {0U, 1U, 21U, 22U, 4294967295U})
        {
            oCases.push_back(OnBag(lMove, "", Many, [=](BagSubject& oSubject) {
                                 oSubject.mBag->MoveProperty(lName, lIndex);
                             }).CannotFail());
        }
    }
}

} // namespace

Cases MakeBagChangeCases()
{
    Cases lCases;
    AddPlainSettings(lCases);
    AddNestedSettings(lCases);
    AddEmbeddings(lCases);
    AddRemovals(lCases);
    AddTexts(lCases);
    AddMerges(lCases);
    AddDelimiterChanges(lCases);
    AddStreams(lCases);
    AddMoves(lCases);
    return lCases;
}

} // namespace Failures
