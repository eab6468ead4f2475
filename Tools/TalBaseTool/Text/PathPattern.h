// Paths with wildcards. A '*' in a name stands for any characters, so a '*' alone for any one name; "**" alone stands
// for names in any number, none included, but at the end of a pattern for at least one. A '*' that is meant itself is
// written "\*"; otherwise patterns are written as paths are.
//
//   Transport/*      what stands in Transport
//   Transport/**     the same, and all that is in its bags
//   **/Host          every Host

#ifndef TALBASETOOL_TEXT_PATHPATTERN_H
#define TALBASETOOL_TEXT_PATHPATTERN_H

#include "Text/Path.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace TalBaseTool
{

class PathPattern
{
public:
    // Reads an argument. Throws UsageError for one with an empty name or a stray backslash.
    explicit PathPattern(const std::string& iArgument);

    // Whether it has no wildcard, and so names one path.
    bool IsPath() const;

    // That path.
    Path GetPath() const;

    // Whether it ends with a name, so that whoever gives it means a bag there with all that is in it.
    bool EndsWithName() const;

    // Which steps of the pattern may come next, somewhere in a bag.
    using Places = std::vector<bool>;

    // In the outermost bag.
    Places Begin() const;

    struct Match
    {
        bool mIsWhole = false; // the pattern ends with this name
        Places mNext;          // in the nested bag of that name
    };
    Match Enter(const Places& iPlaces, std::wstring_view iName) const;

    // Whether everything there matches, or nothing.
    bool TakesAll(const Places& iPlaces) const;
    static bool TakesNone(const Places& iPlaces);

private:
    struct Step
    {
        bool mIsAnyDepth = false;
        std::vector<std::wstring> mPieces; // of the name, with wildcards between them
    };

    void hPassOver(Places& oPlaces) const;

    std::vector<Step> mSteps;
};

} // namespace TalBaseTool

#endif
