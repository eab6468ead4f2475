// Whether a text has a pattern in it, as grep means it: the C library's regular expressions, in UTF-8 whatever the
// locale says. A text of several lines has the pattern where one of its lines has it.
//
// The C library's matcher takes no stack for the length of a text, which std::regex does, and runs an automaton instead
// of trying every way. It tries every beginning, though, which takes quadratic time where many are false; so a pattern
// without back references is made one that begins where its line begins. One with them may take exponential time.

#ifndef TALBASETOOL_TEXT_TEXTMATCHER_H
#define TALBASETOOL_TEXT_TEXTMATCHER_H

#include <cstddef>
#include <regex.h>
#include <string>
#include <string_view>

namespace TalBaseTool
{

enum class PatternKind
{
    Basic,
    Extended,
    Fixed // a plain text
};

class TextMatcher
{
public:
    // Throws UsageError for a pattern that is none.
    TextMatcher(const std::string& iPattern, PatternKind iKind, bool iIgnoresCase);
    ~TextMatcher();

    TextMatcher(const TextMatcher&) = delete;
    TextMatcher& operator=(const TextMatcher&) = delete;

    bool IsIn(std::wstring_view iText);

private:
    bool hIsInLine(std::size_t iStart, std::size_t iStop) const;

    regex_t mCompiled;
    std::string mText; // in UTF-8
};

} // namespace TalBaseTool

#endif
