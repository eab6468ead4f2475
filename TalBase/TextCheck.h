// Says whether a text form can be read, and where it cannot: the library's own reading, which keeps what it would tell
// its caller instead of throwing it, and hands out no bag. (Inside, nested bags are made and dropped where their text
// may read differently the second time, and where other delimiters are to receive the text.) For editors, importers and
// whoever has to tell a person what is wrong with a text; a program that only wants the bag reads it and catches.
//
// Also tells what a reader accepts silently and what will be missing afterwards.
//
// Both functions keep no state and may be called from any thread. Like reading, they take time that grows linearly with
// the text, and no stack for its nesting. Positions count characters from 0; the length of the text is one, too.

#ifndef TALBASE_TEXTCHECK_H
#define TALBASE_TEXTCHECK_H

#include "QBase/ReturnWString.h"
#include "TalBase/Export.h"

#include <cstddef>
#include <vector>

namespace QTalBase
{

// What a text holds and a bag that is read from it will not hold, or not as it may have been meant.
enum class TextRemarkKind
{
    IgnoredTail,       // characters behind the last delimiter
    EmptyValue,        // a property without a value, or an empty nested bag, which looks the same: nothing is set
    EmptyBag,          // a nested bag of which nothing is left, for this reason: it is not set, or not kept next time
    RepeatedName,      // a property that a later one of the same name in the same bag replaces
    AmbiguousDelimiter // one that could also begin further on: the name before it may have ended with its character
};

// The remark is about iLength characters from a position on: the tail; the name; the delimiter and what belongs to it.
struct TextRemark
{
    TextRemarkKind mKind;
    std::size_t mPosition;
    std::size_t mLength;
};

struct TextCheckResult
{
    // Whether the text can be read.
    bool mIsValid;

    // If not, where: the delimiter that stands in the wrong place, the end of the text where something is missing, the
    // name or the value that is refused, the name of a nested bag that cannot be handed on as text, or the place in the
    // header. 0 for a valid text.
    std::size_t mPosition;

    // If not, the text of the exception that reading throws: the one of a PropertyBagException, or what() of the
    // std::out_of_range for a header that ends too early. Like that it may hold the whole text, passwords included.
    // Empty for a valid text.
    QBase::ReturnWString mMessage;

    // Where reading takes the properties to begin: behind the header, 0 where there is none or where it is wrong. Of a
    // text that is cut inside its header: the end of the text where the closing delimiter has begun; where it has not,
    // but the begin delimiter has, the length of the end delimiter less 1, as Docs/TextFormat.md tells.
    std::size_t mContentPosition;

    // In order of position. Of a text that cannot be read, those that were found up to the failure.
    std::vector<TextRemark> mRemarks;
};

// Checks a text that CreatePropertyBag(ipText) would read: one with a header, or the empty text. ipText may not be
// null. Throws std::bad_alloc.
TALBASE_EXPORT TextCheckResult CheckText(const wchar_t* ipText);

// Checks a text that AddString would read into a new bag with these delimiters: one without a header, or one with a
// header of its own. A pair that no bag may have is invalid at position 0. No pointer may be null. Throws
// std::bad_alloc.
TALBASE_EXPORT TextCheckResult CheckText(const wchar_t* ipText, const wchar_t* ipBegin, const wchar_t* ipEnd);

} // namespace QTalBase

#endif
