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

// The same, cut further where it would take more columns than that (0: not cut).
std::string ShowValueIn(std::wstring_view iValue, std::size_t iLongest, std::size_t iColumns);

// The same with the part around an index; what is left out on either side is an ellipsis.
std::string ShowValueAround(std::wstring_view iValue, std::size_t iIndex, std::size_t iLongest);

// A line that is put together piece by piece, in the columns that there are.
class LineSpace
{
public:
    // iColumns: 0 for as many as are wanted.
    explicit LineSpace(std::size_t iColumns) : mIsLimited(iColumns > 0), mLeft(iColumns) {}

    // What of a printable text still fits; an ellipsis stands for the rest, where there is room for one.
    std::string Take(const std::string& iText);

    // 0 for as many as are wanted; at least one otherwise.
    std::size_t GetLeft() const
    {
        return mIsLimited && mLeft == 0 ? 1 : mLeft;
    }

private:
    bool mIsLimited;
    std::size_t mLeft;
};

} // namespace TalBaseTool

#endif
