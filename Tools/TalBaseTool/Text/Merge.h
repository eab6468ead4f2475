// One bag of two, at every depth.

#ifndef TALBASETOOL_TEXT_MERGE_H
#define TALBASETOOL_TEXT_MERGE_H

#include "Text/Path.h"

#include <optional>

namespace TalBaseTool
{

// What becomes of a property whose name stands for a bag in one of the two and for a plain value in the other.
enum class OtherKind
{
    Replaced,
    Refused
};

// Puts the properties of a bag into another one with the same delimiters: a property that is there is replaced and
// moves to the end of its bag, and bags of the same name are merged in turn. Returns the path of a property that is
// refused; a part of the others is merged then.
std::optional<Path> MergeDeep(const BagPtr& iInto, const BagPtr& iFrom, OtherKind iOther);

} // namespace TalBaseTool

#endif
