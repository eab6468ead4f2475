// Where something is hidden in a text in good order. Its delimiters alone tell, since the text reads without an error.
//
// Hidden are the value or the bag of a name that holds a sensitive name as a word, what follows the word in that name,
// values that hold one, and a tail behind the last delimiter that does.
//
// Under short delimiters that is not enough. Where one changed or lost character makes another text of them, such as of
// "[" and "]", two slips make a sensitive bag somebody's value, with the secret behind it as the next property; and
// where the end delimiter has one or two characters, as many new ones make it an empty property. So there the property,
// or the tail, that follows a value that is a sensitive name and nothing else, or an empty sensitive property, is
// hidden, its name, too.

#ifndef TALBASETOOL_TEXT_HIDDENPARTS_H
#define TALBASETOOL_TEXT_HIDDENPARTS_H

#include "Text/Delimiters.h"
#include "Text/SensitiveNames.h"

#include <cstddef>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace TalBaseTool
{

struct TextPart
{
    std::size_t mStart;
    std::size_t mStop;
};

struct HiddenParts
{
    // A delimiter stands inside a sensitive name: then nothing of the text is in its place, and the rest is not filled.
    bool mIsNameCut = false;

    bool mHasNest = false; // a bag in the bag

    std::set<std::wstring> mNames; // of properties that are hidden for what stands before them
    std::vector<TextPart> mParts;  // in order, where they were asked for
};

// iContent: where the properties begin, behind the header. The text reads without an error with the pair.
HiddenParts FindHiddenParts(std::wstring_view iText, std::size_t iContent, const DelimiterTexts& iPair,
                            const SensitiveNames& iNames, bool iWithParts);

} // namespace TalBaseTool

#endif
