#include "MemoryCases.h"
#include "MemoryTexts.h"

#include "QDataType/StringCollection.h"
#include "QSerialization/MemoryDataStream.h"
#include "TalBase/PropertyBag.h"
#include "TalBase/TextCheck.h"

#include <exception>
#include <optional>
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

// Reads what is empty or refused, and keeps what is thrown.
MeteredCase Attempt(const std::wstring& iText)
{
    const auto lText = std::make_shared<std::wstring>(iText);
    const auto lBag = std::make_shared<BagPtr>();
    const auto lThrown = std::make_shared<std::exception_ptr>();
    const auto lRun = [=] {
        try
        {
            *lBag = Read(*lText);
        }
        catch (const QTalBase::PropertyBagException&)
        {
            *lThrown = std::current_exception();
        }
    };
    return {BytesOf(lText->size()), {lRun, [=] { Expect(*lBag ? (*lBag)->GetCount() == 0 : *lThrown != nullptr); }}};
}

using CheckResult = std::optional<QTalBase::TextCheckResult>;

MeteredCase KeepCheck(const std::wstring& iText, QTalBase::TextCheckResult (*ipCheck)(const wchar_t*))
{
    const auto lText = std::make_shared<std::wstring>(iText);
    const auto lResult = std::make_shared<CheckResult>();
    return {BytesOf(lText->size()),
            {[=] { *lResult = ipCheck(lText->c_str()); },
             [=] { Expect((*lResult)->mIsValid == ((*lResult)->mMessage.GetLength() == 0)); }}};
}

MeteredCase Check(const std::wstring& iText)
{
    return KeepCheck(iText, [](const wchar_t* ipText) { return QTalBase::CheckText(ipText); });
}

// For a bag with a pair that the text does not have; all of it is merged into that.
MeteredCase CheckForOther(const std::wstring& iText)
{
    return KeepCheck(iText, [](const wchar_t* ipText) { return QTalBase::CheckText(ipText, L"<", L">"); });
}

MeteredCase AddToOther(const std::wstring& iText)
{
    const auto lText = std::make_shared<std::wstring>(iText);
    const BagPtr lBag(QTalBase::CreatePropertyBag(L"<", L">"));
    return {BytesOf(lText->size()), {[=] { lBag->AddString(lText->c_str()); }, [=] { Expect(lBag->GetCount() > 0); }}};
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

MeteredCase ReadStream(const WorkPtr& iWork)
{
    iWork->mBag = nullptr;
    iWork->mResult = QTalBase::CreatePropertyBag();
    return {iWork->mStream.GetBytes().size(),
            {[=] {
                 QSerialization::MemoryReadDataStream lRead(iWork->mStream.GetBytes().data(),
                                                            iWork->mStream.GetBytes().size());
                 iWork->mResult->DeSerialize(lRead);
             },
             [=] { Expect(Render(iWork->mResult).GetLength() <= iWork->mLength); }}};
}

MeteredCase DeSerialize(const std::wstring& iText)
{
    const auto lWork = std::make_shared<Work>(iText);
    lWork->mBag->Serialize(lWork->mStream);
    return ReadStream(lWork);
}

MeteredCase DeSerializeIntoOther(const std::wstring& iText)
{
    const auto lWork = std::make_shared<Work>(iText);
    lWork->mStream.WriteWString(L"<");
    lWork->mStream.WriteWString(L">");
    lWork->mStream.WriteWString(iText.c_str());
    return ReadStream(lWork);
}

struct Operation
{
    const char* mName;
    MeteredCase (*mPrepare)(const std::wstring&);
};

template <std::size_t Count>
void AppendEach(std::vector<MemoryCase>& oCases, const std::vector<MemoryText>& iTexts,
                const Operation (&iOperations)[Count])
{
    for (const MemoryText& lText : iTexts)
    {
        for (const Operation& lOperation : iOperations)
        {
            oCases.push_back({lText.mName, lOperation.mName, [lText, lOperation](std::size_t iCharacters) {
                                  return lOperation.mPrepare(lText.mMake(iCharacters));
                              }});
        }
    }
}

} // namespace

std::vector<MemoryCase> MakeMemoryCases()
{
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
                                         {"DeSerialize", DeSerialize},
                                         {"CheckText", Check},
                                         {"AddString, other pair", AddToOther},
                                         {"DeSerialize, other pair", DeSerializeIntoOther},
                                         {"CheckText, other pair", CheckForOther}};
    constexpr Operation lReadings[] = {{"CreatePropertyBag", Attempt}, {"CheckText", Check}};
    std::vector<MemoryCase> lCases;
    AppendEach(lCases, MakeMemoryTexts(), lOperations);
    AppendEach(lCases, MakeUselessMemoryTexts(), lReadings);
    for (MemoryCase& lCase : MakeStreamMemoryCases())
    {
        lCases.push_back(std::move(lCase));
    }
    return lCases;
}

} // namespace Bench
