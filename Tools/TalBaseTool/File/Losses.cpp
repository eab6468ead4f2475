#include "File/Losses.h"

#include "Text/Damage.h"
#include "Text/Display.h"
#include "Text/Excerpts.h"
#include "Text/Place.h"
#include "Text/Text.h"

namespace TalBaseTool
{

namespace
{

using QTalBase::TextRemark;
using QTalBase::TextRemarkKind;

constexpr std::size_t gNamed = 3;
constexpr std::size_t gLongestName = 60;

// Empty for what is no loss, or is told elsewhere: of an empty bag, what was in it is told here, and the bag itself
// when it is left out of the text that is written.
std::string Describe(const TextRemark& iRemark, const std::wstring& iText, Excerpts& oExcerpts)
{
    const std::wstring_view lPart = std::wstring_view(iText).substr(iRemark.mPosition, iRemark.mLength);
    const bool lIsHidden = oExcerpts.IsHidden(iRemark.mPosition);
    const std::string lName = oExcerpts.ShowName(iRemark.mPosition, iRemark.mLength, gLongestName);
    switch (iRemark.mKind)
    {
    case TextRemarkKind::IgnoredTail:
        return lPart == L"\n" || lPart == L"\r\n" ? ""
               : lIsHidden                        ? "what stands behind the last delimiter" // not even how long it is
                                                  : Count(lPart.size(), "character") + " behind the last delimiter";
    case TextRemarkKind::EmptyValue:
        return lName + ", which has no value";
    case TextRemarkKind::RepeatedName:
        return lName + ", since another one follows in the same bag";
    case TextRemarkKind::EmptyBag:
    case TextRemarkKind::AmbiguousDelimiter:
        return "";
    }
    return "";
}

// iText: one that can be read.
std::optional<HeaderDamage> FindDamageOfHeader(const std::wstring& iText, const QTalBase::TextCheckResult& iResult)
{
    if (iResult.mContentPosition == 0)
    {
        return {};
    }
    const BagPtr lEmpty(QTalBase::CreatePropertyBag(iText.substr(0, iResult.mContentPosition).c_str()));
    return FindHeaderDamage(iText, iResult, {lEmpty->GetBeginDelimiter(), lEmpty->GetEndDelimiter()});
}

} // namespace

std::vector<std::string> DescribeLosses(const std::string& iFile, const std::wstring& iText,
                                        const QTalBase::TextCheckResult& iChecked, const Gate& iGate)
{
    Excerpts lExcerpts(iText, iGate);
    std::vector<std::string> lLines;
    std::size_t lCount = 0;
    if (const std::optional<HeaderDamage> lHeader = FindDamageOfHeader(iText, iChecked))
    {
        lLines.push_back(ShowPlace(iFile, FindPlace(iText, lHeader->mPosition)) + lHeader->mDescription);
    }
    for (const TextRemark& lRemark : iChecked.mRemarks)
    {
        const std::string lLoss = Describe(lRemark, iText, lExcerpts);
        if (!lLoss.empty() && ++lCount <= gNamed)
        {
            lLines.push_back(ShowPlace(iFile, FindPlace(iText, lRemark.mPosition)) + "not kept: " + lLoss);
        }
    }
    if (lCount > gNamed)
    {
        lLines.push_back(ShowFile(iFile) + ": not kept: " + std::to_string(lCount - gNamed) +
                         " more; 'talbase check' shows all");
    }
    return lLines;
}

} // namespace TalBaseTool
