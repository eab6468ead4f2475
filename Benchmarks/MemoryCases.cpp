#include "MemoryCases.h"

#include "QDataType/StringCollection.h"
#include "QSerialization/MemoryDataStream.h"
#include "TalBase/PropertyBag.h"
#include "TalBase/PropertyBags.h"
#include "TalBase/SerializableStringCollection.h"

#include <stdexcept>

namespace Bench
{

namespace
{

using BagPtr = QBase::SmartPtrI<QTalBase::PropertyBag>;

void Expect(bool iRight)
{
    if (!iRight)
    {
        throw std::runtime_error("the operation had the wrong result");
    }
}

// Texts, all with a header. The shortest delimiters let each character cost the most.

constexpr wchar_t gHeader[] = L"EndDelimiter***BeginDelimiter++++***";
constexpr wchar_t gShortHeader[] = L"EndDelimiter)BeginDelimiter()";

// The shortest names that differ.
std::wstring MakeName(std::size_t iNumber)
{
    constexpr wchar_t lDigits[] = L"0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
    std::wstring lName;
    do
    {
        lName += lDigits[iNumber % 62];
        iNumber /= 62;
    } while (iNumber != 0);
    return lName;
}

// Appends entries, each a name and a tail, until the text is long enough.
std::wstring MakeEntries(std::wstring iText, std::size_t iCharacters, const wchar_t* ipTail)
{
    for (std::size_t lNumber = 0; iText.size() < iCharacters; ++lNumber)
    {
        iText.append(MakeName(lNumber)).append(ipTail);
    }
    return iText;
}

std::wstring Repeat(std::size_t iTimes, const wchar_t* ipPart)
{
    std::wstring lText;
    for (std::size_t lTime = 0; lTime < iTimes; ++lTime)
    {
        lText += ipPart;
    }
    return lText;
}

std::wstring MakeDeep(std::size_t iCharacters)
{
    const std::size_t lLevels = iCharacters / 3;
    return gShortHeader + Repeat(lLevels, L"n(") + L"k(v)" + std::wstring(lLevels, L')');
}

std::wstring MakeDeepDefault(std::size_t iCharacters)
{
    const std::size_t lLevels = iCharacters / 12;
    return gHeader + Repeat(lLevels, L"Level++++") + L"Key++++v***" + Repeat(lLevels, L"***");
}

std::wstring MakeComb(std::size_t iCharacters)
{
    const std::size_t lLevels = iCharacters / 10;
    return gShortHeader + Repeat(lLevels, L"s(k(v))d(") + L"k(v)" + std::wstring(lLevels, L')');
}

std::wstring MakeNests(std::size_t iCharacters)
{
    return MakeEntries(gShortHeader, iCharacters, L"(k(v))");
}

std::wstring MakeEmptyNests(std::size_t iCharacters)
{
    return MakeEntries(gShortHeader, iCharacters, L"(e())");
}

std::wstring MakeProperties(std::size_t iCharacters)
{
    return MakeEntries(gShortHeader, iCharacters, L"(v)");
}

std::wstring MakeOneName(std::size_t iCharacters)
{
    return gShortHeader + Repeat(iCharacters / 4, L"n(v)");
}

std::wstring MakeAsterisks(std::size_t iCharacters)
{
    return gHeader + (L"n++++" + Repeat(iCharacters / 4, L"**++") + L"-***");
}

std::wstring MakeHalfEscapes(std::size_t iCharacters)
{
    return gHeader + (L"n++++" + std::wstring(iCharacters / 2, L'&') + Repeat(iCharacters / 8, L"&#42")) + L"&#43;***";
}

std::wstring MakeLongDelimiters(std::size_t iCharacters)
{
    const std::wstring lEnd = std::wstring(iCharacters / 6, L'x') + L'y';
    const std::wstring lBegin = std::wstring(iCharacters / 6, L'v') + L'w';
    return L"EndDelimiter" + lEnd + L"BeginDelimiter" + lBegin + lEnd + L"n" + lBegin + L"k" + lBegin + L"v" + lEnd +
           lEnd;
}

std::wstring MakeBigValue(std::size_t iCharacters)
{
    return gHeader + (L"n++++" + std::wstring(iCharacters, L'v')) + L"***";
}

// Operations.

BagPtr Read(const std::wstring& iText)
{
    return BagPtr(QTalBase::CreatePropertyBag(iText.c_str()));
}

QBase::ReturnWString Render(const BagPtr& iBag)
{
    return iBag->GetString(true, nullptr, nullptr, true);
}

std::size_t BytesOf(std::size_t iCharacters)
{
    return iCharacters * sizeof(wchar_t);
}

// What an operation works on and what it makes.
struct Work
{
    explicit Work(const std::wstring& iText) : mText(iText), mBag(Read(iText)), mLength(Render(mBag).GetLength()) {}

    std::wstring mText;
    BagPtr mBag;
    std::size_t mLength; // of the bag's text
    BagPtr mOther;
    BagPtr mResult;
    QBase::ReturnWString mResultText = L"";
    std::unique_ptr<QDataType::StringCollection> mNames;
    QSerialization::MemoryWriteDataStream mStream;
    bool mAnswer = false;
};

using WorkPtr = std::shared_ptr<Work>;

MeteredCase OnBag(const WorkPtr& iWork, std::function<void()> iRun, std::function<void()> iCheck)
{
    return {BytesOf(iWork->mLength), {std::move(iRun), std::move(iCheck)}};
}

MeteredCase Parse(const std::wstring& iText)
{
    const auto lText = std::make_shared<std::wstring>(iText);
    const auto lBag = std::make_shared<BagPtr>();
    return {BytesOf(lText->size()), {[=] { *lBag = Read(*lText); }, [=] { Expect((*lBag)->GetCount() > 0); }}};
}

MeteredCase AddString(const std::wstring& iText)
{
    const auto lWork = std::make_shared<Work>(iText);
    return {BytesOf(iText.size()),
            {[=] { lWork->mBag->AddString(lWork->mText.c_str()); },
             [=] { Expect(Render(lWork->mBag).GetLength() <= lWork->mLength); }}};
}

MeteredCase GetString(const std::wstring& iText)
{
    const auto lWork = std::make_shared<Work>(iText);
    return OnBag(
        lWork, [=] { lWork->mResultText = Render(lWork->mBag); },
        [=] { Expect(lWork->mResultText.GetLength() == lWork->mLength); });
}

MeteredCase AddPropertyBag(const std::wstring& iText)
{
    const auto lWork = std::make_shared<Work>(iText);
    lWork->mOther = Read(iText);
    return OnBag(
        lWork, [=] { lWork->mOther->AddPropertyBag(lWork->mBag.get()); },
        [=] { Expect(Render(lWork->mOther).GetLength() <= lWork->mLength); });
}

MeteredCase Clone(const std::wstring& iText)
{
    const auto lWork = std::make_shared<Work>(iText);
    return OnBag(
        lWork, [=] { lWork->mResult = lWork->mBag->Clone(); },
        [=] { Expect(lWork->mResult->GetCount() == lWork->mBag->GetCount()); });
}

// The names from the last to the first, so that none is where it is looked for first.
std::unique_ptr<QDataType::StringCollection> MakeFilter(const BagPtr& iBag)
{
    std::unique_ptr<QDataType::StringCollection> lNames(QDataType::CreateStringCollection());
    for (unsigned int lIndex = iBag->GetCount(); lIndex > 0; --lIndex)
    {
        lNames->Insert(iBag->GetName(lIndex - 1).c_str());
    }
    return lNames;
}

MeteredCase FilteredClone(const std::wstring& iText)
{
    const auto lWork = std::make_shared<Work>(iText);
    lWork->mNames = MakeFilter(lWork->mBag);
    return OnBag(
        lWork, [=] { lWork->mResult = lWork->mBag->FilteredClone(lWork->mNames.get()); },
        [=] { Expect(lWork->mResult->GetBeginDelimiter() != nullptr); });
}

MeteredCase Compare(const std::wstring& iText)
{
    const auto lWork = std::make_shared<Work>(iText);
    lWork->mOther = lWork->mBag->FilteredClone(MakeFilter(lWork->mBag).get());
    return OnBag(
        lWork, [=] { lWork->mAnswer = lWork->mBag->IsSubset(lWork->mOther.get()); }, [=] { Expect(lWork->mAnswer); });
}

MeteredCase Embed(const std::wstring& iText)
{
    const auto lWork = std::make_shared<Work>(iText);
    lWork->mResult = QTalBase::CreatePropertyBag(lWork->mBag->GetBeginDelimiter(), lWork->mBag->GetEndDelimiter());
    return OnBag(
        lWork, [=] { lWork->mResult->EmbedProperty(L"n", lWork->mBag.get()); },
        [=] { Expect(lWork->mResult->GetCount() <= 1); });
}

MeteredCase ChangeDelimiters(const std::wstring& iText)
{
    const auto lWork = std::make_shared<Work>(iText);
    return OnBag(
        lWork, [=] { lWork->mBag->ChangeDelimiters(L"<<<<", L">>>"); },
        [=] { Expect(lWork->mBag->GetBeginDelimiter()[0] == L'<'); });
}

MeteredCase Serialize(const std::wstring& iText)
{
    const auto lWork = std::make_shared<Work>(iText);
    return OnBag(
        lWork, [=] { lWork->mBag->Serialize(lWork->mStream); },
        [=] { Expect(lWork->mStream.GetBytes().size() > BytesOf(lWork->mLength)); });
}

MeteredCase DeSerialize(const std::wstring& iText)
{
    const auto lWork = std::make_shared<Work>(iText);
    lWork->mBag->Serialize(lWork->mStream);
    lWork->mBag = nullptr;
    lWork->mResult = QTalBase::CreatePropertyBag();
    return {lWork->mStream.GetBytes().size(),
            {[=] {
                 QSerialization::MemoryReadDataStream lRead(lWork->mStream.GetBytes().data(),
                                                            lWork->mStream.GetBytes().size());
                 lWork->mResult->DeSerialize(lRead);
             },
             [=] { Expect(Render(lWork->mResult).GetLength() <= lWork->mLength); }}};
}

// Streams of the fewest bytes for each element.

MeteredCase DeSerializeStrings(std::size_t iCharacters)
{
    const auto lStream = std::make_shared<QSerialization::MemoryWriteDataStream>();
    lStream->WriteUInt64(iCharacters);
    for (std::size_t lIndex = 0; lIndex < iCharacters; ++lIndex)
    {
        lStream->WriteWString(L"");
    }
    const QBase::SmartPtrI<QTalBase::SerializableStringCollection> lStrings(
        QTalBase::CreateSerializableStringCollection());
    return {lStream->GetBytes().size(),
            {[=] {
                 QSerialization::MemoryReadDataStream lRead(lStream->GetBytes().data(), lStream->GetBytes().size());
                 lStrings->DeSerialize(lRead);
             },
             [=] { Expect(lStrings->GetCount() == iCharacters); }}};
}

MeteredCase DeSerializeBags(std::size_t iCharacters)
{
    const auto lStream = std::make_shared<QSerialization::MemoryWriteDataStream>();
    lStream->WriteUInt32(static_cast<unsigned int>(iCharacters));
    for (std::size_t lIndex = 0; lIndex < iCharacters; ++lIndex)
    {
        lStream->WriteWString(L"");
        lStream->WriteBool(false);
    }
    const QBase::SmartPtrI<QTalBase::PropertyBags> lBags(QTalBase::CreatePropertyBags());
    return {lStream->GetBytes().size(),
            {[=] {
                 QSerialization::MemoryReadDataStream lRead(lStream->GetBytes().data(), lStream->GetBytes().size());
                 lBags->DeSerialize(lRead);
             },
             [=] { Expect(lBags->GetCount() == iCharacters); }}};
}

} // namespace

std::vector<MemoryCase> MakeMemoryCases()
{
    struct Text
    {
        const char* mName;
        std::wstring (*mMake)(std::size_t);
    };
    constexpr Text lTexts[] = {{"one nest in another, shortest", MakeDeep},
                               {"one nest in another, default", MakeDeepDefault},
                               {"open and close, going deeper", MakeComb},
                               {"nests side by side", MakeNests},
                               {"empty nests", MakeEmptyNests},
                               {"tiny properties", MakeProperties},
                               {"one name again and again", MakeOneName},
                               {"asterisks and plus signs", MakeAsterisks},
                               {"half escapes", MakeHalfEscapes},
                               {"long delimiters", MakeLongDelimiters},
                               {"one big value", MakeBigValue}};
    struct Operation
    {
        const char* mName;
        MeteredCase (*mPrepare)(const std::wstring&);
    };
    constexpr Operation lOperations[] = {{"CreatePropertyBag", Parse},
                                         {"AddString", AddString},
                                         {"GetString", GetString},
                                         {"AddPropertyBag", AddPropertyBag},
                                         {"Clone", Clone},
                                         {"FilteredClone", FilteredClone},
                                         {"IsSubset", Compare},
                                         {"EmbedProperty", Embed},
                                         {"ChangeDelimiters", ChangeDelimiters},
                                         {"Serialize", Serialize},
                                         {"DeSerialize", DeSerialize}};
    std::vector<MemoryCase> lCases;
    for (const Text& lText : lTexts)
    {
        for (const Operation& lOperation : lOperations)
        {
            lCases.push_back({lText.mName, lOperation.mName, [lText, lOperation](std::size_t iCharacters) {
                                  return lOperation.mPrepare(lText.mMake(iCharacters));
                              }});
        }
    }
    lCases.push_back({"a collection of empty strings", "DeSerialize", DeSerializeStrings});
    lCases.push_back({"a collection of no bags", "DeSerialize", DeSerializeBags});
    return lCases;
}

} // namespace Bench
