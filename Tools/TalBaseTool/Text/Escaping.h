// How a bag stores a value, asked of the library, which alone knows it.

#ifndef TALBASETOOL_TEXT_ESCAPING_H
#define TALBASETOOL_TEXT_ESCAPING_H

#include "Text/Path.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace TalBaseTool
{

// How bags with one pair of delimiters store values: under the default pair some characters are escaped.
class Escaping
{
public:
    Escaping(const wchar_t* ipBegin, const wchar_t* ipEnd);

    std::wstring Escape(std::wstring_view iValue) const;
    std::wstring Unescape(std::wstring_view iStored) const;

    // Escapes what stands in a text from a place on, where it stands: a value may be as long as memory allows.
    void EscapeFrom(std::size_t iStart, std::wstring& oText) const;

    // How many characters longer that makes a value.
    std::size_t CountGrowth(std::wstring_view iValue) const;

    // Whether a value holds an escape, which would be taken for the character that it stands for.
    bool HoldsEscape(std::wstring_view iValue) const
    {
        return mIsDefaultPair && iValue.find(L'&') != std::wstring_view::npos && hHoldsEscape(iValue);
    }

private:
    static bool hHoldsEscape(std::wstring_view iValue);
    const std::wstring* hFindEscape(wchar_t iCharacter) const;

    bool mIsDefaultPair;
};

} // namespace TalBaseTool

#endif
