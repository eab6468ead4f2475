#include "Text/Delimiters.h"

#include "Text/Errors.h"
#include "Text/Messages.h"
#include "Text/Text.h"

namespace TalBaseTool
{

std::optional<DelimiterTexts> ReadPair(const RawPair& iPair)
{
    if (iPair.mBegin.has_value() != iPair.mEnd.has_value())
    {
        throw UsageError("--begin and --end go together");
    }
    if (!iPair.mBegin)
    {
        return {};
    }
    return DelimiterTexts{ReadArgument(*iPair.mBegin, "the begin delimiter"),
                          ReadArgument(*iPair.mEnd, "the end delimiter")};
}

bool HasHeader(std::wstring_view iText)
{
    return iText.rfind(L"EndDelimiter", 0) == 0;
}

std::optional<DelimiterTexts> PairOf(const std::wstring& iText, const RawPair& iPair)
{
    const std::optional<DelimiterTexts> lPair = ReadPair(iPair);
    if (lPair)
    {
        MakeBag(*lPair); // refuses a pair that no bag may have
    }
    return HasHeader(iText) ? std::nullopt : lPair;
}

BagPtr MakeBag(const DelimiterTexts& iPair)
{
    try
    {
        return QTalBase::CreatePropertyBag(iPair.mBegin.c_str(), iPair.mEnd.c_str());
    }
    catch (const QTalBase::PropertyBagException& lMessage)
    {
        throw UsageError("these delimiters are not allowed: " + ShowMessage(lMessage.GetMessage()));
    }
}

BagPtr ReadBag(const wchar_t* ipText, const std::optional<DelimiterTexts>& iPair)
{
    if (!iPair)
    {
        return QTalBase::CreatePropertyBag(ipText);
    }
    const BagPtr lBag = MakeBag(*iPair);
    lBag->AddString(ipText);
    return lBag;
}

QTalBase::TextCheckResult CheckText(const std::wstring& iText, const std::optional<DelimiterTexts>& iPair)
{
    return iPair ? QTalBase::CheckText(iText.c_str(), iPair->mBegin.c_str(), iPair->mEnd.c_str())
                 : QTalBase::CheckText(iText.c_str());
}

std::wstring WriteHeader(const DelimiterTexts& iPair)
{
    return L"EndDelimiter" + iPair.mEnd + L"BeginDelimiter" + iPair.mBegin + iPair.mEnd;
}

HeaderKind FindHeaderKind(std::wstring_view iText, const QTalBase::TextCheckResult& iResult,
                          const DelimiterTexts& iPair)
{
    if (iResult.mContentPosition == 0)
    {
        return HeaderKind::Usual;
    }
    if (iText.substr(0, iResult.mContentPosition) != WriteHeader(iPair))
    {
        return HeaderKind::NotAsWritten;
    }
    const std::size_t lOther = iPair.mBegin.find_first_not_of(iPair.mBegin[0]);
    return lOther != std::wstring::npos && iPair.mBegin.find(iPair.mBegin[0], lOther) != std::wstring::npos
               ? HeaderKind::Swallowing
               : HeaderKind::Usual;
}

} // namespace TalBaseTool
