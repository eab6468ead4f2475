#include "Text/Place.h"

#include "Text/Text.h"

#include <algorithm>

namespace TalBaseTool
{

Place FindPlace(std::wstring_view iText, std::size_t iIndex)
{
    const std::wstring_view lBefore = iText.substr(0, iIndex);
    const std::size_t lLine = static_cast<std::size_t>(std::count(lBefore.begin(), lBefore.end(), L'\n')) + 1;
    const std::size_t lLineEnd = lBefore.rfind(L'\n');
    return {lLine, lLineEnd == std::wstring_view::npos ? lBefore.size() + 1 : lBefore.size() - lLineEnd};
}

std::string ShowPlace(const std::string& iFile, const Place& iPlace)
{
    return ShowFile(iFile) + ":" + std::to_string(iPlace.mLine) + ":" + std::to_string(iPlace.mColumn) + ": ";
}

std::size_t StepBeforeLineEnd(std::wstring_view iText, std::size_t iPosition)
{
    const std::size_t lStop = iText.find_last_not_of(L"\r\n") + 1;
    return iPosition == iText.size() ? lStop : iPosition;
}

} // namespace TalBaseTool
