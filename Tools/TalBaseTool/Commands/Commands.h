// What the commands do, without the command line. Each returns an ExitStatus, and throws UsageError, IoError, DataError
// or a library message; main turns those into a line on standard error and a status. Files are names, "-" is standard
// input.

#ifndef TALBASETOOL_COMMANDS_COMMANDS_H
#define TALBASETOOL_COMMANDS_COMMANDS_H

#include "File/Document.h"
#include "File/Inputs.h"
#include "Text/Display.h"
#include "Text/TextMatcher.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace TalBaseTool
{

// What every command that reads a text and shows it has.
struct ViewOptions
{
    std::string mFile = "-";
    RawPair mPair;
    ColorChoice mColor = ColorChoice::Auto;
    SecretOptions mSecrets;
};

// What every command that changes a text has.
struct ChangeOptions
{
    std::string mFile = "-";
    RawPair mPair;
    Target mTarget;
};

// A tree of the properties.
struct ShowOptions
{
    InputOptions mInputs;
    ColorChoice mColor = ColorChoice::Auto;
    bool mIsRaw = false;                 // values as they are stored
    std::optional<std::size_t> mLongest; // characters of a value; 0 for all
    std::optional<int> mMaxDepth;        // of nested bags that are opened
};
int Show(const ShowOptions& iOptions, const Streams& iStreams);

// Whether texts can be read, where they cannot, and what of them gets lost.
struct CheckOptions
{
    InputOptions mInputs;
    ColorChoice mColor = ColorChoice::Auto;
    std::size_t mMaxWarnings = 20; // of each file
    bool mIsStrict = false;        // a text with warnings counts as invalid
};
int Check(const CheckOptions& iOptions, const Streams& iStreams);

// The value at a path, or the text form of the bag there; the values at the paths that a pattern stands for.
enum class GetFormat
{
    Lines,
    Table,
    Json
};
struct GetOptions
{
    std::string mPath;
    InputOptions mInputs;
    std::optional<GetFormat> mFormat;
    std::optional<std::string> mDefault; // where nothing is there
    bool mIsRaw = false;
    bool mHasNoLineEnd = false;
    bool mEndsWithZero = false;
};
int Get(const GetOptions& iOptions, const Streams& iStreams);

// Whether a property is there.
struct HasOptions
{
    std::string mPath;
    InputOptions mInputs;
    bool mEndsWithZero = false;
};
int Has(const HasOptions& iOptions, const Streams& iStreams);

// Whether the file of each bag stands before its lines.
enum class FileNames
{
    WhereMany,
    Always,
    Never
};

// A line for each property.
struct ListOptions
{
    InputOptions mInputs;
    FileNames mFileNames = FileNames::WhereMany;
    bool mIsSorted = false;
    bool mEndsWithZero = false;
};
int ListBags(const ListOptions& iOptions, const Streams& iStreams);

struct FromListOptions
{
    std::string mFile = "-";
    bool mEndsWithZero = false;
};
int FromList(const FromListOptions& iOptions, const Streams& iStreams);

// The properties whose name or value has a pattern.
struct GrepOptions
{
    std::string mPattern;
    InputOptions mInputs;
    PatternKind mKind = PatternKind::Basic;
    FileNames mFileNames = FileNames::WhereMany;
    bool mIgnoresCase = false;
    bool mIsInverted = false;
    bool mListsFiles = false;
    bool mCounts = false;
    bool mEndsWithZero = false;
};
int Grep(const GrepOptions& iOptions, const Streams& iStreams);

// One change of a file, or several, all or none.
struct SetOptions : ChangeOptions
{
    std::vector<std::string> mArguments; // PATH VALUE, as often as wanted, and FILE where one more is there
    std::string mValueFile;              // where the value comes from otherwise
    std::string mListFile;               // where paths and values come from otherwise
};
int Set(const SetOptions& iOptions, const Streams& iStreams);

// A file as a list in an editor.
struct EditOptions : ChangeOptions
{
    SecretOptions mSecrets;
};
int Edit(const EditOptions& iOptions, const Streams& iStreams);

struct RemoveOptions : ChangeOptions
{
    std::string mPath;
};
int Remove(const RemoveOptions& iOptions, const Streams& iStreams);

struct MoveOptions : ChangeOptions
{
    std::string mFrom;
    std::string mTo;
};
int Move(const MoveOptions& iOptions, const Streams& iStreams);

struct EmbedOptions : ChangeOptions
{
    std::string mPath;
    std::string mBagFile;
};
int Embed(const EmbedOptions& iOptions, const Streams& iStreams);

// What two bags do not have in common.
struct DiffOptions : ViewOptions // mFile is the first one
{
    std::string mOther;
    bool mIsOrdered = false;
};
int Diff(const DiffOptions& iOptions, const Streams& iStreams);

// One bag of several: later properties replace earlier ones.
struct MergeOptions
{
    std::vector<std::string> mFiles;
    RawPair mPair;
    bool mIsDeep = false; // nested bags are merged, too, not replaced
};
int Merge(const MergeOptions& iOptions, const Streams& iStreams);

struct ToJsonOptions
{
    InputOptions mInputs;
    bool mHasLines = false; // one line for each bag
    int mIndent = 2;        // negative for all on one line
    bool mIsTyped = false;
    bool mIsRedacted = false; // without sensitive properties
};
int ToJson(const ToJsonOptions& iOptions, const Streams& iStreams);

struct FromJsonOptions
{
    std::string mFile = "-";
    RawPair mPair; // of the bag that is made
    bool mHasHeader = true;
    bool mHasLines = false; // one document a line, and one text form a line, as JSON strings
    bool mIsStrict = false;
    bool mIsVerbose = false;
};
int FromJson(const FromJsonOptions& iOptions, const Streams& iStreams);

struct RedactOptions : ChangeOptions
{
    SecretOptions mSecrets;
    bool mIsForced = false; // also where it is not known what is secret, or a secret stays elsewhere
};
int Redact(const RedactOptions& iOptions, const Streams& iStreams);

struct DelimitersOptions : ChangeOptions // mPair is the one that the text is read with
{
    std::string mBegin;
    std::string mEnd;
};
int Delimiters(const DelimitersOptions& iOptions, const Streams& iStreams);

struct WindowRange
{
    bool mIsOpen;
    std::string mHours;
};
struct WindowOptions : ChangeOptions
{
    bool mHasFile = false;
    std::string mBagPath; // of the bag that holds the window; empty for the outermost
    std::optional<std::string> mPrefix;
    std::optional<std::string> mValue; // the window's text form
    std::vector<WindowRange> mRanges;  // in the order in which they change the window
    bool mIsSet = false;
    bool mHasNow = false;
    std::optional<unsigned int> mHour;
    ColorChoice mColor = ColorChoice::Auto;
    SecretOptions mSecrets;
};
int Window(const WindowOptions& iOptions, const Streams& iStreams);

int Guids(unsigned int iCount, const Streams& iStreams);

} // namespace TalBaseTool

#endif
