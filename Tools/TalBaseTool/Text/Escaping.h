// What only the library knows of the values and names of a bag, asked of the library: how a value is stored, and which
// names are sensitive.

#ifndef TALBASETOOL_TEXT_ESCAPING_H
#define TALBASETOOL_TEXT_ESCAPING_H

#include "Text/Path.h"

#include <set>
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

// The names that are sensitive: the library's, and others that are given.
class SensitiveNames
{
public:
    explicit SensitiveNames(std::set<std::wstring> iOthers = {});

    // ipName: any text.
    bool IsSensitive(const wchar_t* ipName) const;

private:
    BagPtr mProbe;
    std::set<std::wstring> mOthers;
};

} // namespace TalBaseTool

#endif
