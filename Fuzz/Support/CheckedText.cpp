#include "Fuzz/Support/CheckedText.h"

#include "Tests/Support/BrokenRule.h"

namespace Fuzz
{

namespace
{

using QTalBase::TextCheckResult;
using QTalBase::TextRemark;
using QTalBase::TextRemarkKind;

// In a text without a header only a nest can have one that is refused: the one that it is handed on with.
bool IsNestRefused(const std::wstring& iText, const TextCheckResult& iResult)
{
    return iText.rfind(L"EndDelimiter", 0) != 0 &&
           std::wstring_view(iResult.mMessage).find(L"ExtractDelimiters;") != std::wstring_view::npos;
}

// What CheckText would return if it broke the rule.
TextCheckResult BreakRule(const std::wstring& iText, TextCheckResult iResult)
{
    if (Plain::IsBroken("CheckWithoutBags") && IsNestRefused(iText, iResult))
    {
        iResult.mIsValid = true;
        iResult.mPosition = 0;
        iResult.mMessage = L"";
    }
    if (Plain::IsBroken("RemarkWithoutLoss") && iResult.mIsValid && iResult.mContentPosition != 0)
    {
        iResult.mRemarks.insert(iResult.mRemarks.begin(), TextRemark{TextRemarkKind::EmptyValue, 0, 1});
    }
    if (Plain::IsBroken("ShortTail"))
    {
        std::erase_if(iResult.mRemarks, [](const TextRemark& iRemark) {
            return iRemark.mKind == TextRemarkKind::IgnoredTail && iRemark.mLength == 1;
        });
    }
    return iResult;
}

} // namespace

TextCheckResult CheckText(const std::wstring& iText)
{
    return BreakRule(iText, QTalBase::CheckText(iText.c_str()));
}

TextCheckResult CheckText(const std::wstring& iText, const Support::DelimiterPair& iPair)
{
    return BreakRule(iText, QTalBase::CheckText(iText.c_str(), iPair.mBegin.c_str(), iPair.mEnd.c_str()));
}

} // namespace Fuzz
