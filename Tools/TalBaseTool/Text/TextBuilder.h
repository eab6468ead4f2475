// Puts the text form of a bag together property by property, and refuses what the text could not give back. Building a
// large bag by setting its properties one by one would take quadratic time, because each setting looks for the name;
// reading a text does not.

#ifndef TALBASETOOL_TEXT_TEXTBUILDER_H
#define TALBASETOOL_TEXT_TEXTBUILDER_H

#include "TalBase/TextCheck.h"
#include "Text/BagWalk.h"
#include "Text/Escaping.h"
#include "Text/Gate.h"

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

    // Makes room for so many characters. What is not needed of it is never touched, so it takes no memory.
    void Reserve(std::size_t iSize)
    {
        mText.reserve(iSize);
    }

    // Add a property; with a fault nothing is added. iValue: what a caller sees, not yet escaped; as UTF-8, it is
    // well-formed.
    Fault AddPlain(std::wstring_view iName, std::wstring_view iValue);
    Fault AddPlain(std::wstring_view iName, std::string_view iValue);
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

    // Whether the text is as the bag would write it that MakeBag makes, with a header or without: plain properties
    // first in each bag, and what a reader takes neither for a header nor for other nested bags.
    bool IsAsWritten() const;

    // The text, without a header.
    const std::wstring& GetText();

    // Reads the text into a new bag with the pair. The builder is used up.
    BagPtr MakeBag();

private:
    template <class Append>
    Fault hAddPlain(std::wstring_view iName, const Append& iAppend, bool iIsStored);
    Fault hFinishValue(std::size_t iStart, bool iIsStored);
    Fault hCheckName(std::wstring_view iName);

    struct OpenedBag
    {
        std::size_t mStart;   // of its name
        std::size_t mContent; // behind its name
        std::size_t mDropped; // characters of it
        bool mHasNest;
    };

    void hCutDropped();

    std::wstring mBegin;
    std::wstring mEnd;
    Escaping mEscaping;
    QTalBase::PropertyTextCheck mCheck;
    std::wstring mText;
    std::vector<OpenedBag> mOpened; // the first one is the text itself
    bool mIsInBagOrder = true;
    std::vector<TextSpan> mDropped; // in the order of being dropped; one may lie within another
};

// The same properties in a bag with other delimiters, its values stored as that pair wants it. Throws DataError, with
// the path as the gate shows it, where the text of that bag would not give them back. Hand a bag over that is not
// needed any more: it is let go before the new one is made.
BagPtr WithDelimiters(BagPtr iBag, const std::wstring& iBegin, const std::wstring& iEnd, const Gate& iGate);

// Puts a new bag with the pair in the place of a bag in any case, without empty nested bags, and without the properties
// that are not kept. Values stay as stored where the pair is the bag's own. Throws as WithDelimiters does. The bag is
// still there then, or null where its text could not even be read.
void Rebuild(BagPtr& oBag, const std::wstring& iBegin, const std::wstring& iEnd, const Gate& iGate,
             const Keeps& iKeeps = {});

} // namespace TalBaseTool

#endif
