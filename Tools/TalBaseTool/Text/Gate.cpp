#include "Text/Gate.h"

#include "Text/Display.h"
#include "Text/Text.h"

namespace TalBaseTool
{

namespace
{

// Whether a text begins as the library would write it, with delimiters that give nothing away.
bool HasGoodHeader(const std::wstring& iText, const std::optional<DelimiterTexts>& iPair, const SensitiveNames& iNames)
{
    DelimiterTexts lPair = iPair.value_or(DelimiterTexts());
    if (!iPair)
    {
        if (iText.empty())
        {
            return true;
        }
        const BagPtr lBag = ReadBag(iText.c_str(), {});
        lPair = {lBag->GetBeginDelimiter(), lBag->GetEndDelimiter()};
        if (iText.rfind(WriteHeader(lPair), 0) != 0)
        {
            return false;
        }
    }
    return !iNames.IsIn(lPair.mBegin) && !iNames.IsIn(lPair.mEnd);
}

} // namespace

std::shared_ptr<const SensitiveNames> ReadSensitiveNames(const SecretOptions& iOptions)
{
    std::vector<std::wstring> lNames;
    for (const std::string& lName : iOptions.mNames)
    {
        lNames.push_back(ReadArgument(lName, "--name"));
    }
    return std::make_shared<SensitiveNames>(lNames);
}

Gate::Gate(const SecretOptions& iOptions, const std::wstring& iText, const std::optional<DelimiterTexts>& iPair,
           bool iIsRead)
    : mNames(ReadSensitiveNames(iOptions))
{
    if (!iOptions.mShowSecrets && mNames->IsIn(iText))
    {
        mOpening = iIsRead && HasGoodHeader(iText, iPair, *mNames) ? Opening::Masked : Opening::Nothing;
    }
}

std::string Gate::GetReason() const
{
    return mOpening == Opening::Nothing ? "a sensitive name is in this text, which is damaged, so nothing of it is "
                                          "shown; --show-secrets shows it"
                                        : "";
}

bool Gate::HidesValue(std::wstring_view iName, std::wstring_view iValue) const
{
    return HidesBag(iName) || (mOpening == Opening::Masked && mNames->FindWord(iValue));
}

bool Gate::HidesBag(std::wstring_view iName) const
{
    return mOpening == Opening::Nothing || (mOpening == Opening::Masked && mNames->FindWord(iName));
}

bool Gate::HidesName(std::wstring_view iName) const
{
    if (mOpening != Opening::Masked)
    {
        return mOpening == Opening::Nothing;
    }
    const std::optional<NamePlace> lPlace = mNames->FindWord(iName);
    return lPlace && lPlace->mStop != iName.size();
}

std::string Gate::ShowName(std::wstring_view iName) const
{
    if (mOpening == Opening::Nothing)
    {
        return gHidden;
    }
    const std::wstring_view lShown = HidesName(iName) ? iName.substr(0, mNames->FindWord(iName)->mStop) : iName;
    return ToUtf8(MakeControlsPrintable(lShown)) + (lShown.size() < iName.size() ? gHidden : "");
}

std::string Gate::ShowDelimiter(std::wstring_view iDelimiter) const
{
    return mOpening == Opening::Nothing ? gHidden : ToUtf8(MakePrintable(iDelimiter));
}

std::string Gate::ShowPath(const Path& iPath) const
{
    std::string lText;
    for (std::size_t lIndex = 0; lIndex < iPath.size(); ++lIndex)
    {
        const std::string lStep =
            HidesName(iPath[lIndex]) ? ShowName(iPath[lIndex]) : TalBaseTool::ShowPath({iPath[lIndex]});
        lText += (lIndex > 0 ? "/" : "") + lStep;
        if (HidesBag(iPath[lIndex]) && lIndex + 1 < iPath.size())
        {
            return lText + "/" + gHidden;
        }
    }
    return lText;
}

} // namespace TalBaseTool
