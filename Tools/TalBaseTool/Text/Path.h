// Where a property stands in a bag, in the writing of TalBase/Views.h: the names on the way to it, joined with '/'. A
// '/' of a name is written "\/" and a '\' is written "\\": "Transport/Host", "Types/text\/plain".

#ifndef TALBASETOOL_TEXT_PATH_H
#define TALBASETOOL_TEXT_PATH_H

#include "TalBase/PropertyBag.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace TalBaseTool
{

using BagPtr = QBase::SmartPtrI<QTalBase::PropertyBag>;
using Path = std::vector<std::wstring>; // never empty where it stands for a property

// Reads an argument. Throws UsageError for one with an empty name, which no text can hold, or with a stray backslash.
Path ParsePath(const std::string& iArgument);

// The way back, fit to be shown: only control characters are shown as something else. Of a path of more than gMostNames
// names, the level and the last names are shown: a million of them would fill a screen, and one for each of a million
// properties the disk.
inline constexpr std::size_t gMostNames = 40;
std::string ShowPath(const Path& iPath);

// The same where only the last gMostNames names are at hand, or all that there are, and the number of names.
std::string ShowPath(const Path& iLast, std::size_t iLevel);

// The bag that holds the property that a path names, whether that is there or not; null where one of the names on the
// way is not there. Throws DataError where one of them is a plain value.
BagPtr FindParent(const BagPtr& iRoot, const Path& iPath);

enum class Kind
{
    Missing,
    Plain,
    Bag
};

// What stands at a path. Throws as FindParent does.
Kind FindKind(const BagPtr& iRoot, const Path& iPath);

} // namespace TalBaseTool

#endif
