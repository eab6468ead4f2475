#include "Text/JsonValues.h"

#include <algorithm>

namespace TalBaseTool
{

std::size_t ReadElement(std::wstring_view iName, std::size_t iCount)
{
    if (iName.empty() || iName.size() > 9 || (iName[0] == L'0' && iName.size() > 1) ||
        iName.find_first_not_of(L"0123456789") != std::wstring_view::npos)
    {
        return iCount;
    }
    return std::min<std::size_t>(std::stoul(std::wstring(iName)), iCount);
}

} // namespace TalBaseTool
