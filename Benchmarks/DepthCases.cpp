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

std::wstring MakeChainText(std::size_t iLevels)
{
    std::wstring lText = L"EndDelimiter***BeginDelimiter++++***";
    for (std::size_t lLevel = 0; lLevel < iLevels; ++lLevel)
    {
        lText += L"Level++++";
    }
    lText += L"Key++++v***";
    for (std::size_t lLevel = 0; lLevel < iLevels; ++lLevel)
    {
        lText += L"***";
    }
    return lText;
}

void Expect(bool iRight)
{
    if (!iRight)
    {
        throw std::runtime_error("the operation had the wrong result");
    }
}

// Everything that the operations need, made of one text.
struct Chain
{
    explicit Chain(std::size_t iLevels)
        : mText(MakeChainText(iLevels)),
          mBag(QTalBase::CreatePropertyBag(mText.c_str())),
          mNames(QDataType::CreateStringCollection())
    {
        mNames->Insert(L"Level");
    }

    // A bag has the chain's length if its text has.
    void ExpectWhole(const BagPtr& iBag) const
    {
        Expect(iBag && iBag->GetString(true, nullptr, nullptr, true).GetLength() == mText.size());
    }

    std::wstring mText;
    BagPtr mBag;
    std::unique_ptr<QDataType::StringCollection> mNames;
    BagPtr mResult;
    bool mAnswer = false;
};

using ChainPtr = std::shared_ptr<Chain>;

PreparedCase PrepareParse(std::size_t iLevels)
{
    const auto lText = std::make_shared<std::wstring>(MakeChainText(iLevels));
    const auto lBag = std::make_shared<BagPtr>();
    return {[lText, lBag] { *lBag = QTalBase::CreatePropertyBag(lText->c_str()); },
            [lText, lBag] { Expect((*lBag)->GetString(true, nullptr, nullptr, true).GetLength() == lText->size()); }};
}

PreparedCase PrepareRender(std::size_t iLevels)
{
    const auto lChain = std::make_shared<Chain>(iLevels);
    const auto lLength = std::make_shared<std::size_t>();
    return {[lChain, lLength] { *lLength = lChain->mBag->GetString(true, nullptr, nullptr, true).GetLength(); },
            [lChain, lLength] { Expect(*lLength == lChain->mText.size()); }};
}

PreparedCase PrepareCompare(std::size_t iLevels)
{
    const auto lChain = std::make_shared<Chain>(iLevels);
    lChain->mResult = QTalBase::CreatePropertyBag(lChain->mText.c_str());
    return {[lChain] { lChain->mAnswer = *lChain->mBag == *lChain->mResult; }, [lChain] { Expect(lChain->mAnswer); }};
}

PreparedCase PrepareIsSubset(std::size_t iLevels)
{
    const auto lChain = std::make_shared<Chain>(iLevels);
    lChain->mResult = QTalBase::CreatePropertyBag(lChain->mText.c_str());
    return {[lChain] { lChain->mAnswer = lChain->mBag->IsSubset(lChain->mResult.get()); },
            [lChain] { Expect(lChain->mAnswer); }};
}

PreparedCase PrepareChangeDelimiters(std::size_t iLevels)
{
    const auto lChain = std::make_shared<Chain>(iLevels);
    return {[lChain] { lChain->mBag->ChangeDelimiters(L"<<<<", L">>>"); },
            [lChain] { lChain->ExpectWhole(lChain->mBag); }};
}

PreparedCase PrepareClone(std::size_t iLevels)
{
    const auto lChain = std::make_shared<Chain>(iLevels);
    return {[lChain] { lChain->mResult = lChain->mBag->Clone(); }, [lChain] { lChain->ExpectWhole(lChain->mResult); }};
}

PreparedCase PrepareFilteredClone(std::size_t iLevels)
{
    const auto lChain = std::make_shared<Chain>(iLevels);
    return {[lChain] { lChain->mResult = lChain->mBag->FilteredClone(lChain->mNames.get()); },
            [lChain] { lChain->ExpectWhole(lChain->mResult); }};
}

PreparedCase PrepareSerialize(std::size_t iLevels)
{
    const auto lChain = std::make_shared<Chain>(iLevels);
    const auto lStream = std::make_shared<QSerialization::MemoryWriteDataStream>();
    return {[lChain, lStream] { lChain->mBag->Serialize(*lStream); },
            [lChain, lStream] { Expect(lStream->GetBytes().size() > lChain->mText.size() * sizeof(wchar_t)); }};
}

PreparedCase PrepareDeSerialize(std::size_t iLevels)
{
    const auto lChain = std::make_shared<Chain>(iLevels);
    const auto lStream = std::make_shared<QSerialization::MemoryWriteDataStream>();
    lChain->mBag->Serialize(*lStream);
    lChain->mResult = QTalBase::CreatePropertyBag();
    return {[lChain, lStream] {
                QSerialization::MemoryReadDataStream lRead(lStream->GetBytes().data(), lStream->GetBytes().size());
                lChain->mResult->DeSerialize(lRead);
            },
            [lChain] { lChain->ExpectWhole(lChain->mResult); }};
}

PreparedCase PrepareCheckText(std::size_t iLevels)
{
    const auto lChain = std::make_shared<Chain>(iLevels);
    return {[lChain] { lChain->mAnswer = QTalBase::CheckText(lChain->mText.c_str()).mIsValid; },
            [lChain] { Expect(lChain->mAnswer); }};
}

// With bags, which are made where the text has other delimiters.
PreparedCase PrepareCheckTextForOther(std::size_t iLevels)
{
    const auto lChain = std::make_shared<Chain>(iLevels);
    return {[lChain] { lChain->mAnswer = QTalBase::CheckText(lChain->mText.c_str(), L"<", L">").mIsValid; },
            [lChain] { Expect(lChain->mAnswer); }};
}

PreparedCase PrepareFindTextFault(std::size_t iLevels)
{
    const auto lChain = std::make_shared<Chain>(iLevels);
    return {[lChain] { lChain->mAnswer = QTalBase::FindTextFault(*lChain->mBag, true, nullptr, nullptr).IsNone(); },
            [lChain] { Expect(lChain->mAnswer); }};
}

PreparedCase PrepareDestroy(std::size_t iLevels)
{
    const auto lChain = std::make_shared<Chain>(iLevels);
    return {[lChain] { lChain->mBag = nullptr; }, [lChain] { Expect(!lChain->mBag); }};
}

} // namespace

std::vector<HostileCase> MakeDepthCases()
{
    return {{"parse", "levels", PrepareParse},
            {"render", "levels", PrepareRender},
            {"compare", "levels", PrepareCompare},
            {"IsSubset", "levels", PrepareIsSubset},
            {"ChangeDelimiters", "levels", PrepareChangeDelimiters},
            {"Clone", "levels", PrepareClone},
            {"FilteredClone", "levels", PrepareFilteredClone},
            {"Serialize", "levels", PrepareSerialize},
            {"DeSerialize", "levels", PrepareDeSerialize},
            {"CheckText", "levels", PrepareCheckText},
            {"CheckText, other pair", "levels", PrepareCheckTextForOther},
            {"FindTextFault", "levels", PrepareFindTextFault},
            {"destroy", "levels", PrepareDestroy}};
}

} // namespace Bench
