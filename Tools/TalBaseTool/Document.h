// A bag that comes from a text and goes back to one.

#ifndef TALBASETOOL_DOCUMENT_H
#define TALBASETOOL_DOCUMENT_H

#include "Path.h"

#include "TalBase/TextCheck.h"

#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace TalBaseTool
{

// The delimiters of a text without a header, as they are given on the command line: both, or none for a text with a
// header.
struct RawPair
{
    std::optional<std::string> mBegin;
    std::optional<std::string> mEnd;
};

// Where a changed text goes: to the output, or in place of the file that it comes from.
struct Target
{
    bool mIsInPlace = false;
};

// What a command writes to: data to mOut, everything else to mErr.
struct Streams
{
    std::ostream& mOut;
    std::ostream& mErr;
    bool mIsOutTerminal = false;
    bool mIsErrTerminal = false;
};

struct Document
{
    std::string mFile; // "-" for standard input
    BagPtr mBag;
    bool mHasHeader = true;
    std::wstring mLineEnd;            // behind the text, where an editor has put one
    std::vector<std::string> mLosses; // lines about what the text holds and the bag does not
};

// The pair, decoded. Throws UsageError where only one of the two is given or a text is not UTF-8.
struct DelimiterTexts
{
    std::wstring mBegin;
    std::wstring mEnd;
};
std::optional<DelimiterTexts> ReadPair(const RawPair& iPair);

// An empty bag with the delimiters. Throws UsageError for a pair that no bag may have.
BagPtr MakeBag(const DelimiterTexts& iPair);

// What the library says of a text, with a header or with a pair.
QTalBase::TextCheckResult CheckText(const std::wstring& iText, const std::optional<DelimiterTexts>& iPair);

// Where something is missing at the very end of a text: before the line ends there, which an editor has put.
std::size_t StepBeforeLineEnd(const std::wstring& iText, std::size_t iPosition);

// Reads a file, or standard input for "-". A text with a header is read with that, whatever the pair, so that it keeps
// it; the pair is for those without one, of which several may be read together with such a text. Throws what ReadText,
// ReadPair and MakeBag throw, and TextError for a text that is no bag's.
Document Load(const std::string& iFile, const RawPair& iPair);

// The same for a bag that is to be written, with the losses.
Document LoadToChange(const std::string& iFile, const RawPair& iPair);

// Shows the losses of a text. Save does so for the one that it writes.
void ReportLosses(const Document& iDocument, std::ostream& oErr);

// The text form: with a header where the text that was read had one.
QBase::ReturnWString Render(const Document& iDocument);

// Takes nested bags without properties out, with a word about them, since no text can hold them. The bag may become
// another one.
void LeaveOutEmptyBags(BagPtr& oBag, std::ostream& oErr);

// Writes the text form where it is wanted, without empty nested bags, and shows the losses. Throws DataError for
// anything else that the text would not give back, and IoError; nothing has been written then.
void Save(Document iDocument, const Target& iTarget, const Streams& iStreams);

// Throws UsageError where a text is to be changed in place and has no file, and IoError where that is no regular one.
void CheckTarget(const std::string& iFile, const Target& iTarget);

// What a library message says, fit to be shown: without the property texts that some messages carry, which can hold a
// password ("…; String must be malformed - lPropertyString: (312 characters not shown)").
std::string ShowMessage(const std::wstring& iMessage);

} // namespace TalBaseTool

#endif
