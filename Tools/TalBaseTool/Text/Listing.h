// A bag as a flat list, for people, editors, grep, sort and diff, and the way back:
//
//   # begin "++++", end "***"
//   Subject = Save 20% + shipping
//   Note = "two\nlines"
//   Transport/Host = ftp.example.com
//   Transport/FTPServerPassword = (hidden)
//   Account/FTPServerPassword/ = (hidden)
//
// The first line names the delimiters, as JSON strings, and says what else the text form does not have from its
// properties: ", no header" where it has none, and ", line end "\n"" where one stands behind it.
//
// Every other line is a property: its path, " = ", and its value as a caller sees it, without escapes. A line can be
// read in one way only:
// - The path is in the writing of Text/Path.h and ends at the first " = ". It is a JSON string where it begins with a
//   quote or '#', holds " = " or ends with " =", begins or ends with a blank, or has a control or invisible character.
// - The value is the rest of the line. It is a JSON string where it begins with a quote or with "(hidden)", begins or
//   ends with a blank, or has a control or invisible character; so each property is one line, and what a person cannot
//   see is never read. A reader takes quotes where none are needed, too.
// - (hidden) without quotes is the mask: the value at that path is not shown, or, where the path ends with a slash, the
//   bag with all that is in it.
// A line that is empty or begins with '#' says nothing. An empty bag has no line: a text cannot hold one.
//
// Lines may also end with a zero character. Then nothing in them has to be kept on one line, and line ends, controls
// and blanks stand for themselves without quotes.

#ifndef TALBASETOOL_TEXT_LISTING_H
#define TALBASETOOL_TEXT_LISTING_H

#include "Text/Delimiters.h"
#include "Text/Gate.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace TalBaseTool
{

// What a text form does not have from its properties.
struct ListHead
{
    DelimiterTexts mPair;
    bool mHasHeader = true;
    std::wstring mLineEnd; // behind the text
};

struct ListForm
{
    char mEnd = '\n';       // of each line, or a zero
    bool mIsSorted = false; // by path, name by name; otherwise in the order of the bag
    std::string mPrefix;    // of each line
};

// Writes the list of a bag, as much as the gate shows of it, and hands it on in blocks. Throws DataError where the gate
// shows nothing.
void WriteList(const BagPtr& iBag, const ListHead& iHead, const Gate& iGate, const ListForm& iForm,
               const std::function<void(std::string_view)>& iTake);

// What of a name is shown, without the mask, for whoever searches it.
std::wstring VisibleName(const Gate& iGate, const wchar_t* ipName);

// The path of a property as it is shown, step by step.
class ShownPath
{
public:
    explicit ShownPath(const Gate& iGate);

    void Enter(const wchar_t* ipName);
    void Leave();

    const std::wstring& Get() const
    {
        return mPath;
    }

private:
    const Gate& mGate;
    std::wstring mPath;
    std::vector<std::size_t> mStarts; // of each step
};

// A path and a value as such a list has them.
void AppendListPath(std::wstring_view iPath, char iEnd, std::string& oUtf8);
void AppendListValue(std::wstring_view iValue, char iEnd, std::string& oUtf8);

// A whole line. Without a value it is the mask.
void AppendListLine(std::wstring_view iPath, const std::optional<std::wstring>& iValue, const ListForm& iForm,
                    std::string& oUtf8);

enum class ListLineKind
{
    Value,
    HiddenValue,
    HiddenBag
};

struct ListLine
{
    std::size_t mNumber = 0; // in the list, from 1
    ListLineKind mKind = ListLineKind::Value;
    Path mPath;
    std::wstring mValue;
};

struct List
{
    std::optional<ListHead> mHead; // where the first line is one
    std::vector<ListLine> mLines;
};

// Reads a list. iFile: for messages. Throws TextError, with the line, for what is none; for a path that stands there
// twice; and for one that goes through a plain value. Messages name places only: a list may have secrets.
List ReadList(const std::string& iFile, std::wstring_view iText, char iEnd = '\n');

// Throws TextError where a line is masked.
void RefuseHidden(const std::string& iFile, const List& iList);

// What a masked line stands for.
struct HiddenProperty
{
    std::wstring mName;
    std::wstring mStored; // of a plain one
    BagPtr mBag;          // of a nested bag, otherwise null
};

// Returns it, or null where a line may not be there.
using FindHidden = std::function<const HiddenProperty*(const ListLine&)>;

// The bag of the list. Throws TextError for a masked line that stands for nothing and for what a bag with the pair
// cannot hold, and UsageError for a pair that no bag may have.
BagPtr MakeBag(const std::string& iFile, const List& iList, const DelimiterTexts& iPair,
               const FindHidden& iFindHidden = {});

} // namespace TalBaseTool

#endif
