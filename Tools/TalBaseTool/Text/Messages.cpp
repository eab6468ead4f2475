#include "Text/Messages.h"

#include "Text/Text.h"

#include <string_view>

namespace TalBaseTool
{

std::string ShowMessage(const std::wstring& iMessage)
{
    const std::wstring_view lMessage = iMessage;
    constexpr std::wstring_view lTextLabel = L" - lPropertyString: ";
    constexpr std::wstring_view lValueLabel = L". ipValue: ";
    const std::size_t lText = lMessage.find(lTextLabel);
    const std::size_t lValue = lMessage.find(lValueLabel);
    if (lText == lValue) // neither is there
    {
        return ToUtf8(MakePrintable(lMessage));
    }
    // The first label is the message's, another one belongs to the secret.
    const std::size_t lStop = lText < lValue ? lText + lTextLabel.size() : lValue + lValueLabel.size();
    return ToUtf8(MakePrintable(lMessage.substr(0, lStop))) + "(not shown)";
}

std::string ShowReason(std::wstring_view iText, bool iHasPair, const std::wstring& iMessage)
{
    const bool lHasMark = iText.rfind(L'\uFEFF', 0) == 0;
    const bool lHasHeader = iText.rfind(L"EndDelimiter", lHasMark ? 1 : 0) != iText.npos;
    const std::string lReason =
        lHasMark && lHasHeader     ? "a byte-order mark stands before the header; take it out: "
        : !iHasPair && !lHasHeader ? "there is no header; --begin and --end name the delimiters of a text without one: "
                                   : "";
    return lReason + ShowMessage(iMessage);
}

} // namespace TalBaseTool
