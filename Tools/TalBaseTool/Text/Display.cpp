#include "Text/Display.h"

#include "Text/Text.h"

#include "QBase/Convert.h"

#include <algorithm>
#include <cstdlib>

namespace TalBaseTool
{

namespace
{

bool IsColorWanted(ColorChoice iChoice, bool iIsTerminal)
{
    if (iChoice != ColorChoice::Auto)
    {
        return iChoice == ColorChoice::Always;
    }
    const char* lNoColor = std::getenv("NO_COLOR");
    const char* lTerminal = std::getenv("TERM");
    return iIsTerminal && (lNoColor == nullptr || *lNoColor == '\0') &&
           (lTerminal == nullptr || std::string_view(lTerminal) != "dumb");
}

const char* CodeOf(Style iStyle)
{
    switch (iStyle)
    {
    case Style::Name:
        return "36"; // cyan
    case Style::Bag:
        return "1;34"; // bold blue
    case Style::Quiet:
        return "2"; // faint
    case Style::Added:
        return "32"; // green
    case Style::Removed:
        return "31"; // red
    case Style::Moved:
    case Style::Warning:
        return "33"; // yellow
    case Style::Error:
        return "1;31"; // bold red
    }
    return "0";
}

} // namespace

Palette::Palette(ColorChoice iChoice, bool iIsTerminal) : mHasColor(IsColorWanted(iChoice, iIsTerminal)) {}

std::string Palette::Paint(Style iStyle, const std::string& iText) const
{
    return mHasColor && !iText.empty() ? std::string("\033[") + CodeOf(iStyle) + "m" + iText + "\033[0m" : iText;
}

std::string ShowValue(std::wstring_view iValue, std::size_t iLongest)
{
    if (iLongest == 0 || iValue.size() <= iLongest)
    {
        return ToUtf8(MakePrintable(iValue));
    }
    return ToUtf8(MakePrintable(iValue.substr(0, iLongest))) + "… (+" + Count(iValue.size() - iLongest, "character") +
           ")";
}

std::string ShowValueIn(std::wstring_view iValue, std::size_t iLongest, std::size_t iColumns)
{
    std::string lText = ShowValue(iValue, iLongest);
    if (iColumns == 0 || CutToWidth(lText, iColumns) == lText)
    {
        return lText;
    }
    std::size_t lCount = std::min(iColumns, iLongest == 0 ? iValue.size() : std::min(iLongest, iValue.size()));
    while (lCount > 1 && CutToWidth(lText, iColumns) != lText)
    {
        lText = ShowValue(iValue, --lCount);
    }
    return CutToWidth(lText, iColumns);
}

std::string LineSpace::Take(const std::string& iText)
{
    if (!mIsLimited)
    {
        return iText;
    }
    const std::string lText = mLeft > 0 ? CutToWidth(iText, mLeft) : std::string();
    mLeft -= std::min(mLeft, GetWidth(QBase::UTF8ToWideChar(lText, false)));
    return lText;
}

std::string ShowValueAround(std::wstring_view iValue, std::size_t iIndex, std::size_t iLongest)
{
    const std::size_t lStart = iIndex > iLongest / 2 ? iIndex - iLongest / 2 : 0;
    const std::wstring_view lPart = iValue.substr(std::min(lStart, iValue.size()), iLongest);
    return (lStart > 0 ? "…" : "") + ToUtf8(MakePrintable(lPart)) + (lStart + lPart.size() < iValue.size() ? "…" : "");
}

} // namespace TalBaseTool
