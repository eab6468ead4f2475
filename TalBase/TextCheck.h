// Says whether a text form can be read, and where it cannot: the library's own reading, which keeps what it would tell
// its caller instead of throwing it, and hands out no bag. (Inside, nested bags are made and dropped where their text
// may read differently the second time, and where other delimiters are to receive the text.) For editors, importers and
// whoever has to tell a person what is wrong with a text; a program that only wants the bag reads it and catches.
//
// Also tells what a reader accepts silently and what will be missing afterwards, and, for whoever is about to write
// one, whether a bag's text would give the bag back: which name or value would not, and why.
//
// The functions keep no state and may be called from any thread. Like reading, they take time that grows linearly with
// the text, and no stack for its nesting. Positions in a text count characters from 0; its length is one, too.

#ifndef TALBASE_TEXTCHECK_H
#define TALBASE_TEXTCHECK_H

#include "QBase/ReturnWString.h"
#include "TalBase/Export.h"

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

namespace QTalBase
{

class PropertyBag;

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

// What of a property, or of a bag, a text would not give back.
enum class TextFaultPart
{
    Delimiters,
    Name,
    Value // a plain value, or the nested bag itself
};

// Why not.
enum class TextFaultKind
{
    None,              // it would
    Empty,             // a name or a value without characters, a nested bag without properties
    HoldsZero,         // a zero character, where a text ends
    HoldsDelimiter,    // a name or a value with a delimiter in it
    RunsIntoDelimiter, // one whose end and the delimiter behind it hold a delimiter that begins earlier: "a+" and
                       // "++++"
    NotEscaped,        // a value with '*' or '+' as such under the default delimiters: reading would escape it
    Repeated,          // a name that a property before it in the same bag has
    LikeHeader,        // the first name of a text without a header, which would be taken for one
    Refused,           // delimiters that no bag may have: the text cannot be written
    NotCarried,        // delimiters that a header cannot name, where one is written or, while nests are read, needed
    Different          // a nested bag's delimiters, which are not those of the text
};

struct TextFault
{
    // Whether there is none.
    bool IsNone() const noexcept
    {
        return mKind == TextFaultKind::None;
    }

    TextFaultKind mKind = TextFaultKind::None;
    TextFaultPart mPart = TextFaultPart::Delimiters;

    // The property: its position in its bag, and the names that lead to it, from the outside in, its own last. Without
    // a name for the bag that was asked about, whose position is 0. Holds no values, so no passwords.
    unsigned int mPosition = 0;
    std::vector<QBase::ReturnWString> mPath;
};

// Returns the first fault of the text that iBag.GetString(iWithMetadata, ipBegin, ipEnd, true) writes, in the order of
// the text; ipBegin and ipEnd may be null, as there. There is none if and only if that text reads back as the bag: with
// a header by CreatePropertyBag(text), without one by AddString(text) into a new bag with the text's delimiters. That
// is a bag with the same names, values as they are stored, and nested bags, in the same order, and with the delimiters
// that were written. Properties before nested bags, where a class of one's own mixes them, are no difference.
//
// '*' and '+' in a value are no fault where they are stored escaped, and neither is a value that held an escape before
// it was set: it is stored, and reads back, as it is.
//
// Takes time linear in the text, and mostly does not write it; it is written and read where a fault of one property
// need not be one of the whole text: with delimiters that no header can name, defaults that share characters with
// escapes, and first names like a header's. There, nests that are handed on as text can take longer, as in reading.
//
// A bag of the library is looked into. One of another class is asked by calls of its operations, like the bags nested
// in it, and taken to write what these return. Takes references to its nests while it looks at them. Throws what these
// operations throw, and std::bad_alloc. Nobody may change the bag meanwhile.
TALBASE_EXPORT TextFault FindTextFault(const PropertyBag& iBag, bool iWithMetadata, const wchar_t* ipBegin,
                                       const wchar_t* ipEnd);

// Asks the same of one name or value after the other, for who builds a text piece by piece. A text in which none of
// them has a fault, no bag has a name twice and none is empty, whose delimiters a header can carry and which does not
// begin like a header reads back as it was meant. One thread at a time; the texts BEGIN and END point to must stay.
class TALBASE_EXPORT PropertyTextCheck
{
public:
    // Copies the delimiters; no pointer may be null. Throws what CreatePropertyBag(ipBegin, ipEnd) throws, and
    // std::bad_alloc.
    PropertyTextCheck(const wchar_t* ipBegin, const wchar_t* ipEnd);
    ~PropertyTextCheck();

    PropertyTextCheck(const PropertyTextCheck&) = delete;
    PropertyTextCheck& operator=(const PropertyTextCheck&) = delete;

    // Return None, Empty, HoldsZero, HoldsDelimiter or RunsIntoDelimiter, the first that is true. Take time linear in
    // the text that they are given. Throw std::bad_alloc.
    TextFaultKind CheckName(std::wstring_view iName);

    // iValue: as a bag stores it. May return NotEscaped, too, where nothing else is true.
    TextFaultKind CheckStoredValue(std::wstring_view iValue);

private:
    class Pair;

    std::unique_ptr<Pair> mPair;
};

} // namespace QTalBase

#endif
