// Puts the text form of a bag together property by property, and refuses what the text could not give back. Building a
// large bag by setting its properties one by one would take quadratic time, because each setting looks for the name;
// reading a text does not.

#ifndef TALBASETOOL_TEXT_TEXTBUILDER_H
#define TALBASETOOL_TEXT_TEXTBUILDER_H

#include "Text/Escaping.h"

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

// A part of the text; one without characters is nowhere.
struct TextSpan
{
    std::size_t mStart = 0;
    std::size_t mStop = 0;
};

class TextBuilder
{
public:
    // Throws what CreatePropertyBag throws for a pair that no bag may have.
    TextBuilder(const std::wstring& iBegin, const std::wstring& iEnd);

    // Add a property; with a fault nothing is added. iValue: what a caller sees, not yet escaped.
    Fault AddPlain(std::wstring_view iName, std::wstring_view iValue);
    Fault OpenBag(std::wstring_view iName);

    // The same with a value as a bag with the pair stores it.
    Fault AddStored(std::wstring_view iName, std::wstring_view iStored);

    // Ends the bag that was opened last, and takes it out again where it has no properties. Returns where it begins.
    std::size_t CloseBag();

    // The length of the text so far.
    std::size_t GetSize() const
    {
        return mText.size();
    }

    // Leaves a property of the bag that is open out again.
    void Drop(const TextSpan& iSpan);

    // Reads the text into a new bag with the pair. The builder is used up.
    BagPtr MakeBag();

private:
    Fault hCheckPlain(std::wstring_view iName, std::wstring_view iStored) const;
    Fault hCheckName(std::wstring_view iName) const;
    void hAdd(std::wstring_view iName, std::wstring_view iStored);
    bool hRunsInto(std::wstring_view iRun, const std::wstring& iDelimiter) const;

    struct OpenedBag
    {
        std::size_t mStart;   // of its name
        std::size_t mContent; // behind its name
        std::size_t mDropped; // characters of it
    };

    void hCutDropped();

    std::wstring mBegin;
    std::wstring mEnd;
    Escaping mEscaping;
    std::wstring mText;
    std::vector<OpenedBag> mOpened;
    std::vector<TextSpan> mDropped; // in the order of being dropped; one may lie within another
};

// The same properties in a bag with other delimiters, its values stored as that pair wants it. Throws DataError, with
// the path, where the text of that bag would not give them back.
BagPtr WithDelimiters(const BagPtr& iBag, const std::wstring& iBegin, const std::wstring& iEnd);

// The same in a new bag in any case, without empty nested bags. Values stay as stored where the pair is the bag's own.
BagPtr Rebuild(const BagPtr& iBag, const std::wstring& iBegin, const std::wstring& iEnd);

} // namespace TalBaseTool

#endif
