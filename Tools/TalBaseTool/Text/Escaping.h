// How a bag stores a value, asked of the library, which alone knows it.

#ifndef TALBASETOOL_TEXT_ESCAPING_H
#define TALBASETOOL_TEXT_ESCAPING_H

#include "Text/Path.h"

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

private:
    BagPtr mProbe;
    bool mIsDefaultPair;
};

} // namespace TalBaseTool

#endif
