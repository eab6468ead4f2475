// Puts the text form of a bag together property by property, and refuses what the text could not give back. Building a
// large bag by setting its properties one by one would take quadratic time, because each setting looks for the name;
// reading a text does not.

#ifndef TALBASETOOL_TEXTBUILDER_H
#define TALBASETOOL_TEXTBUILDER_H

#include "Escaping.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace TalBaseTool
{

// Why a property cannot be kept in a text.
enum class Fault
{
    None,
    EmptyName,
    NameHasDelimiter, // or runs into the one behind it
    NameHasZero,
    EmptyValue,
    ValueHasDelimiter, // or runs into the one behind it
    ValueHasEscape,    // which would be taken for the character that it stands for
    ValueHasZero
};

// "an empty text", "a name that holds a delimiter"
const char* Describe(Fault iFault);

class TextBuilder
{
public:
    // Throws what CreatePropertyBag throws for a pair that no bag may have.
    TextBuilder(const std::wstring& iBegin, const std::wstring& iEnd);

    // Add a property; with a fault nothing is added. iValue: what a caller sees, not yet escaped.
    Fault AddPlain(std::wstring_view iName, std::wstring_view iValue);
    Fault OpenBag(std::wstring_view iName);

    // Ends the bag that was opened last. Returns false, and takes it out again, where it has no properties.
    bool CloseBag();

    // Reads the text into a new bag with the pair. The builder is used up.
    BagPtr MakeBag();

private:
    Fault hCheckName(std::wstring_view iName) const;
    bool hRunsInto(std::wstring_view iRun, const std::wstring& iDelimiter) const;

    struct OpenedBag
    {
        std::size_t mStart;   // of its name
        std::size_t mContent; // behind its name
    };

    std::wstring mBegin;
    std::wstring mEnd;
    Escaping mEscaping;
    std::wstring mText;
    std::vector<OpenedBag> mOpened;
};

// The same properties in a bag with other delimiters, its values stored as that pair wants it. Throws DataError, with
// the path, where the text of that bag would not give them back.
BagPtr WithDelimiters(const BagPtr& iBag, const std::wstring& iBegin, const std::wstring& iEnd);

} // namespace TalBaseTool

#endif
