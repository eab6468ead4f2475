// Colours, and what is shown in the place of secrets and of long texts.

#ifndef TALBASETOOL_TEXT_DISPLAY_H
#define TALBASETOOL_TEXT_DISPLAY_H

#include <cstddef>
#include <string>
#include <string_view>

namespace TalBaseTool
{

enum class ColorChoice
{
    Auto, // on a terminal, unless NO_COLOR is set or the terminal is dumb
    Always,
    Never
};

enum class Style
{
    Name,
    Bag,
    Quiet,
    Added,
    Removed,
    Moved,
    Warning,
    Error
};

class Palette
{
public:
    Palette(ColorChoice iChoice, bool iIsTerminal);

    // iText: fit to be shown.
    std::string Paint(Style iStyle, const std::string& iText) const;

private:
    bool mHasColor;
};

inline constexpr const char* gHidden = "(hidden)";

// A value fit to be shown, cut to a number of characters (0: not cut): "Lorem ipsum… (+312 characters)".
std::string ShowValue(std::wstring_view iValue, std::size_t iLongest);

// The same with the part around an index; what is left out on either side is an ellipsis.
std::string ShowValueAround(std::wstring_view iValue, std::size_t iIndex, std::size_t iLongest);

} // namespace TalBaseTool

#endif
