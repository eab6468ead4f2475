#include "Cases.h"

#include "QDataType/StringCollection.h"
#include "QSerialization/MemoryDataStream.h"
#include "TalBase/PropertyBag.h"
#include "TalBase/TextCheck.h"

#include <stdexcept>

namespace Bench
{

namespace
{

using BagPtr = QBase::SmartPtrI<QTalBase::PropertyBag>;
using Names = std::vector<std::wstring>;

constexpr wchar_t gHeader[] = L"EndDelimiter***BeginDelimiter++++***";

void Expect(bool iRight)
{
    if (!iRight)
    {
        throw std::runtime_error("the operation had the wrong result");
    }
}

constexpr std::size_t gFirstNumber = 10'000'000; // for numbers of equal length

Names MakeDistinctNames(std::size_t iCount)
{
    Names lNames(iCount);
    for (std::size_t lIndex = 0; lIndex < iCount; ++lIndex)
    {
        lNames[lIndex] = L"Name" + std::to_wstring(gFirstNumber + lIndex);
    }
    return lNames;
}

std::wstring MakePropertiesText(const Names& iNames)
{
    std::wstring lText = gHeader;
    for (const std::wstring& lName : iNames)
    {
        lText.append(lName).append(L"++++value***");
    }
    return lText;
}

// Reads a text into a new bag and counts what is in it then.
PreparedCase PrepareReading(std::wstring iText, std::size_t iExpectedCount)
{
    const auto lText = std::make_shared<std::wstring>(std::move(iText));
    const auto lBag = std::make_shared<BagPtr>();
    return {[lText, lBag] { *lBag = QTalBase::CreatePropertyBag(lText->c_str()); },
            [lBag, iExpectedCount] { Expect((*lBag)->GetCount() == iExpectedCount); }};
}

// Checks a text that is valid and counts what is remarked on.
PreparedCase PrepareChecking(std::wstring iText, std::size_t iExpectedRemarks)
{
    const auto lText = std::make_shared<std::wstring>(std::move(iText));
    const auto lRemarks = std::make_shared<std::size_t>();
    return {[lText, lRemarks] {
                const QTalBase::TextCheckResult lResult = QTalBase::CheckText(lText->c_str());
                Expect(lResult.mIsValid);
                *lRemarks = lResult.mRemarks.size();
            },
            [lRemarks, iExpectedRemarks] { Expect(*lRemarks == iExpectedRemarks); }};
}

// The text of a bag gives it back.
PreparedCase PrepareFindingNoFault(const BagPtr& iBag)
{
    const auto lIsNone = std::make_shared<bool>(false);
    return {[iBag, lIsNone] { *lIsNone = QTalBase::FindTextFault(*iBag, true, nullptr, nullptr).IsNone(); },
            [lIsNone] { Expect(*lIsNone); }};
}

BagPtr ReadBag(const Names& iNames)
{
    return BagPtr(QTalBase::CreatePropertyBag(MakePropertiesText(iNames).c_str()));
}

PreparedCase PrepareMerging(const Names& iSource, const Names& iTarget, std::size_t iExpectedCount)
{
    const BagPtr lSource = ReadBag(iSource);
    const BagPtr lTarget = ReadBag(iTarget);
    return {[lSource, lTarget] { lTarget->AddPropertyBag(lSource.get()); },
            [lTarget, iExpectedCount] { Expect(lTarget->GetCount() == iExpectedCount); }};
}

PreparedCase PrepareMergingOtherNames(std::size_t iSize)
{
    Names lNames = MakeDistinctNames(2 * iSize);
    const Names lOthers(lNames.begin() + static_cast<std::ptrdiff_t>(iSize), lNames.end());
    lNames.resize(iSize);
    return PrepareMerging(lNames, lOthers, 2 * iSize);
}

PreparedCase PrepareMergingItself(std::size_t iSize)
{
    const BagPtr lBag = ReadBag(MakeDistinctNames(iSize));
    return {[lBag] { lBag->AddPropertyBag(lBag.get()); }, [lBag, iSize] { Expect(lBag->GetCount() == iSize); }};
}

PreparedCase PrepareComparing(const BagPtr& iLeft, const BagPtr& iRight)
{
    const auto lAnswer = std::make_shared<bool>(false);
    return {[iLeft, iRight, lAnswer] { *lAnswer = *iLeft == *iRight; }, [lAnswer] { Expect(*lAnswer); }};
}

PreparedCase PrepareComparingNames(const Names& iNames)
{
    return PrepareComparing(ReadBag(iNames), ReadBag(Names(iNames.rbegin(), iNames.rend())));
}

PreparedCase PrepareIsSubset(const Names& iNames)
{
    const BagPtr lLeft = ReadBag(iNames);
    const BagPtr lRight = ReadBag(Names(iNames.rbegin(), iNames.rend()));
    const auto lAnswer = std::make_shared<bool>(false);
    return {[lLeft, lRight, lAnswer] { *lAnswer = lLeft->IsSubset(lRight.get()); }, [lAnswer] { Expect(*lAnswer); }};
}

PreparedCase PrepareFilteredClone(const Names& iNames)
{
    const BagPtr lBag = ReadBag(iNames);
    const std::shared_ptr<QDataType::StringCollection> lFilter(QDataType::CreateStringCollection());
    for (auto lName = iNames.rbegin(); lName != iNames.rend(); ++lName)
    {
        lFilter->Insert(lName->c_str());
    }
    const auto lClone = std::make_shared<BagPtr>();
    return {[lBag, lFilter, lClone] { *lClone = lBag->FilteredClone(lFilter.get()); },
            [lBag, lClone] { Expect((*lClone)->GetCount() == lBag->GetCount()); }};
}

// Sets a value and reads it back.
PreparedCase PrepareValue(std::wstring iValue, std::size_t iExpectedLength)
{
    const BagPtr lBag(QTalBase::CreatePropertyBag());
    const auto lValue = std::make_shared<std::wstring>(std::move(iValue));
    const auto lLength = std::make_shared<std::size_t>();
    return {[lBag, lValue, lLength] {
                lBag->SetProperty(L"Name", lValue->c_str(), false);
                *lLength = lBag->GetProperty(L"Name").GetLength();
            },
            [lLength, iExpectedLength] { Expect(*lLength == iExpectedLength); }};
}

// Ampersands, then escapes that lack their end, then one whole escape, which starts the search for all of them.
PreparedCase PrepareHalfEscapes(std::size_t iSize)
{
    const std::wstring lValue = std::wstring(iSize / 2, L'&') + Repeat(iSize / 8, L"&#42") + L"&#43;";
    return PrepareValue(lValue, lValue.size() - 4);
}

// Two delimiters of the same characters but the last, and a text of those characters: each place of the text looks like
// both until their end. No header can carry them.
PreparedCase PrepareLongDelimiters(std::size_t iSize)
{
    const std::wstring lCommon(iSize, L'a');
    const std::wstring lBegin = lCommon + L'b';
    const std::wstring lEnd = lCommon + L'c';
    const BagPtr lBag(QTalBase::CreatePropertyBag(lBegin.c_str(), lEnd.c_str()));
    const auto lText =
        std::make_shared<std::wstring>(L"Name" + lBegin + lCommon + std::wstring(iSize, L'a') + L'd' + lEnd);
    return {[lBag, lText] { lBag->AddString(lText->c_str()); },
            [lBag, iSize] { Expect(lBag->GetProperty(L"Name").GetLength() == 2 * iSize + 1); }};
}

// The same with a header: the begin delimiter's characters are none of the end delimiter's.
std::wstring MakeLongHeaderText(std::size_t iSize)
{
    const std::wstring lEnd = std::wstring(iSize, L'x') + L'y';
    const std::wstring lBegin = std::wstring(iSize, L'v') + L'w';
    const std::wstring lValue = std::wstring(iSize, L'x') + std::wstring(iSize, L'v') + std::wstring(iSize, L'x');
    return L"EndDelimiter" + lEnd + L"BeginDelimiter" + lBegin + lEnd + L"Name" + lBegin + lValue + L'z' + lEnd;
}

PreparedCase PrepareAlmostDelimiterValue(std::size_t iSize)
{
    const std::wstring lHalf(iSize / 2, L'a');
    const BagPtr lBag(QTalBase::CreatePropertyBag((lHalf + L'b').c_str(), (lHalf + L'c').c_str()));
    const auto lValue = std::make_shared<std::wstring>(std::wstring(iSize, L'a'));
    return {[lBag, lValue] { lBag->SetProperty(L"Name", lValue->c_str(), false); },
            [lBag, iSize] { Expect(lBag->GetProperty(L"Name").GetLength() == iSize); }};
}

PreparedCase PrepareDelimiterCheck(std::size_t iSize)
{
    const BagPtr lBag(QTalBase::CreatePropertyBag());
    const auto lBegin = std::make_shared<std::wstring>(std::wstring(iSize, L'a') + L'b');
    const auto lEnd = std::make_shared<std::wstring>(std::wstring(iSize / 2, L'a') + L'c');
    return {[lBag, lBegin, lEnd] { lBag->ChangeDelimiters(lBegin->c_str(), lEnd->c_str()); },
            [lBag, lBegin] { Expect(*lBegin == lBag->GetBeginDelimiter()); }};
}

// A filter that holds one name again and again, of a bag with enough names for a table.
PreparedCase PrepareRepeatedFilter(std::size_t iSize)
{
    const Names lNames = MakeDistinctNames(64);
    const BagPtr lBag = ReadBag(lNames);
    const std::shared_ptr<QDataType::StringCollection> lFilter(QDataType::CreateStringCollection());
    for (std::size_t lIndex = 0; lIndex < iSize; ++lIndex)
    {
        lFilter->Insert(lNames[0].c_str());
    }
    const auto lClone = std::make_shared<BagPtr>();
    return {[lBag, lFilter, lClone] { *lClone = lBag->FilteredClone(lFilter.get()); },
            [lClone] { Expect((*lClone)->GetCount() == 1); }};
}

// A stream of delimiters that are as long as all its nested bags together; each of those bears them.
std::shared_ptr<QSerialization::MemoryWriteDataStream> MakeStreamOfLongDelimiters(std::size_t iSize)
{
    const auto lStream = std::make_shared<QSerialization::MemoryWriteDataStream>();
    lStream->WriteWString((std::wstring(iSize, L'<') + L'v').c_str());
    lStream->WriteWString((std::wstring(iSize, L'>') + L'w').c_str());
    std::wstring lText = gHeader;
    for (std::size_t lNest = 0; lNest < iSize / 16; ++lNest)
    {
        lText += L"N" + std::to_wstring(gFirstNumber + lNest) + L"++++K++++v******";
    }
    lStream->WriteWString(lText.c_str());
    return lStream;
}

void Read(const QSerialization::MemoryWriteDataStream& iStream, QTalBase::PropertyBag& oBag)
{
    QSerialization::MemoryReadDataStream lRead(iStream.GetBytes().data(), iStream.GetBytes().size());
    oBag.DeSerialize(lRead);
}

PreparedCase PrepareStreamedDelimiters(std::size_t iSize)
{
    const auto lStream = MakeStreamOfLongDelimiters(iSize);
    const BagPtr lBag(QTalBase::CreatePropertyBag());
    return {[lStream, lBag] { Read(*lStream, *lBag); }, [lBag, iSize] { Expect(lBag->GetCount() == iSize / 16); }};
}

// Each nest is handed on as text would be.
PreparedCase PrepareMergingStreamed(std::size_t iSize)
{
    const BagPtr lSource(QTalBase::CreatePropertyBag());
    Read(*MakeStreamOfLongDelimiters(iSize), *lSource);
    const BagPtr lBag(QTalBase::CreatePropertyBag());
    return {[lSource, lBag] {
                lBag->AddPropertyBag(lSource.get());
                lSource->AddPropertyBag(lSource.get());
            },
            [lBag, iSize] { Expect(lBag->GetCount() == iSize / 16); }};
}

PreparedCase PrepareFilteringStreamed(std::size_t iSize)
{
    const BagPtr lBag(QTalBase::CreatePropertyBag());
    Read(*MakeStreamOfLongDelimiters(iSize), *lBag);
    const std::shared_ptr<QDataType::StringCollection> lFilter(QDataType::CreateStringCollection());
    for (unsigned int lIndex = 0; lIndex < lBag->GetCount(); ++lIndex)
    {
        lFilter->Insert(lBag->GetName(lIndex).c_str());
    }
    const auto lClone = std::make_shared<BagPtr>();
    return {[lBag, lFilter, lClone] { *lClone = lBag->FilteredClone(lFilter.get()); },
            [lClone, iSize] { Expect((*lClone)->GetCount() == iSize / 16); }};
}

// Nested bags of the first level stay even when they are empty, each with a nest inside that vanishes.
PreparedCase PrepareEmptyNests(std::size_t iSize)
{
    std::wstring lText = gHeader;
    for (const std::wstring& lName : MakeDistinctNames(iSize))
    {
        lText.append(lName).append(L"++++Inner++++Gone++++*********");
    }
    return PrepareReading(lText, iSize);
}

// At each level a nest that is closed at once, then one that stays open.
std::wstring MakeCombText(std::size_t iLevels)
{
    return gHeader + Repeat(iLevels, L"Side++++Key++++v******Down++++") + L"Key++++v***" + Repeat(iLevels, L"***");
}

PreparedCase PrepareComparingCombs(std::size_t iSize)
{
    const std::wstring lText = MakeCombText(iSize);
    return PrepareComparing(BagPtr(QTalBase::CreatePropertyBag(lText.c_str())),
                            BagPtr(QTalBase::CreatePropertyBag(lText.c_str())));
}

PreparedCase PrepareAlternating(std::size_t iSize)
{
    std::wstring lText = gHeader;
    for (std::size_t lIndex = 0; lIndex < iSize; ++lIndex)
    {
        lText += lIndex % 2 == 0 ? L"Name++++Inner++++Key++++v*********" : L"Name++++plain***";
    }
    return PrepareReading(lText, 1);
}

PreparedCase PrepareLongValues(std::size_t iSize)
{
    constexpr std::size_t lValueLength = 512;
    const BagPtr lBag(QTalBase::CreatePropertyBag());
    for (const std::wstring& lName : MakeDistinctNames(iSize / lValueLength))
    {
        lBag->SetProperty(lName.c_str(), std::wstring(lValueLength, L'v').c_str(), false);
    }
    const auto lLength = std::make_shared<std::size_t>();
    return {[lBag, lLength] { *lLength = lBag->GetString(true, nullptr, nullptr, true).GetLength(); },
            [lLength, iSize] { Expect(*lLength > iSize); }};
}

PreparedCase PrepareReadingNames(const Names& iNames)
{
    return PrepareReading(MakePropertiesText(iNames), iNames.size());
}

PreparedCase PrepareMergingEqualNames(const Names& iNames)
{
    return PrepareMerging(iNames, iNames, iNames.size());
}

HostileCase MakeNameCase(const char* ipName, Names (*ipMakeNames)(std::size_t), PreparedCase (*ipPrepare)(const Names&))
{
    return {ipName, "properties",
            [ipMakeNames, ipPrepare](std::size_t iSize) { return ipPrepare(ipMakeNames(iSize)); }};
}

std::vector<HostileCase> MakeNameCases()
{
    return {MakeNameCase("names, distinct: parse", MakeDistinctNames, PrepareReadingNames),
            {"names, distinct: CheckText", "properties",
             [](std::size_t iSize) { return PrepareChecking(MakePropertiesText(MakeDistinctNames(iSize)), 0); }},
            {"names, distinct: FindTextFault", "properties",
             [](std::size_t iSize) { return PrepareFindingNoFault(ReadBag(MakeDistinctNames(iSize))); }},
            MakeNameCase("names, distinct: merge", MakeDistinctNames, PrepareMergingEqualNames),
            MakeNameCase("names, distinct: compare", MakeDistinctNames, PrepareComparingNames),
            MakeNameCase("names, distinct: IsSubset", MakeDistinctNames, PrepareIsSubset),
            MakeNameCase("names, distinct: FilteredClone", MakeDistinctNames, PrepareFilteredClone),
            MakeNameCase("names, colliding: parse", MakeCollidingNames, PrepareReadingNames),
            MakeNameCase("names, colliding: merge", MakeCollidingNames, PrepareMergingEqualNames),
            MakeNameCase("names, colliding: compare", MakeCollidingNames, PrepareComparingNames),
            {"names, equal: parse", "properties",
             [](std::size_t iSize) { return PrepareReading(MakePropertiesText(Names(iSize, L"Name")), 1); }},
            {"names, equal: CheckText", "properties",
             [](std::size_t iSize) { return PrepareChecking(MakePropertiesText(Names(iSize, L"Name")), iSize - 1); }},
            {"names, equal: FilteredClone", "names in the filter", PrepareRepeatedFilter},
            {"merge of other names", "properties", PrepareMergingOtherNames},
            {"merge into itself", "properties", PrepareMergingItself}};
}

std::vector<HostileCase> MakeTextCases()
{
    return {
        {"asterisks", "characters", [](std::size_t iSize) { return PrepareValue(std::wstring(iSize, L'*'), iSize); }},
        {"ampersands, half escapes", "characters", PrepareHalfEscapes},
        {"long delimiters: parse", "characters of each", PrepareLongDelimiters},
        {"long delimiters: parse with header", "characters of each",
         [](std::size_t iSize) { return PrepareReading(MakeLongHeaderText(iSize), 1); }},
        {"long delimiters: CheckText", "characters of each",
         [](std::size_t iSize) { return PrepareChecking(MakeLongHeaderText(iSize), 0); }},
        {"long delimiters: FindTextFault", "characters of each",
         [](std::size_t iSize) {
             return PrepareFindingNoFault(BagPtr(QTalBase::CreatePropertyBag(MakeLongHeaderText(iSize).c_str())));
         }},
        {"long delimiters: SetProperty", "characters of the value", PrepareAlmostDelimiterValue},
        {"long delimiters: ChangeDelimiters", "characters of begin", PrepareDelimiterCheck},
        {"long delimiters: DeSerialize nests", "characters of each", PrepareStreamedDelimiters},
        {"long delimiters: merge nests", "characters of each", PrepareMergingStreamed},
        {"long delimiters: FilteredClone nests", "characters of each", PrepareFilteringStreamed},
        {"empty nested bags", "nested bags", PrepareEmptyNests},
        {"open and close, going deeper: parse", "levels",
         [](std::size_t iSize) { return PrepareReading(MakeCombText(iSize), 2); }},
        {"open and close, going deeper: compare", "levels", PrepareComparingCombs},
        {"open and close, one name", "properties", PrepareAlternating},
        {"GetString of long values", "characters", PrepareLongValues}};
}

} // namespace

std::vector<HostileCase> MakeGrowthCases()
{
    std::vector<HostileCase> lCases = MakeDepthCases();
    for (HostileCase& lCase : lCases)
    {
        lCase.mName.insert(0, "depth: ");
    }
    for (HostileCase& lCase : MakeNameCases())
    {
        lCases.push_back(std::move(lCase));
    }
    for (HostileCase& lCase : MakeTextCases())
    {
        lCases.push_back(std::move(lCase));
    }
    return lCases;
}

} // namespace Bench
