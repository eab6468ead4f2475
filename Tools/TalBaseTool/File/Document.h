// A bag that comes from a text and goes back to one.

#ifndef TALBASETOOL_FILE_DOCUMENT_H
#define TALBASETOOL_FILE_DOCUMENT_H

#include "File/FileLock.h"
#include "Text/BagWalk.h"
#include "Text/Delimiters.h"
#include "Text/Gate.h"
#include "Text/Listing.h"

#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace TalBaseTool
{

// Where a changed text goes: to the output, or in place of the file that it comes from.
struct Target
{
    bool mIsInPlace = false;
    unsigned int mWait = 10;            // seconds, while another process changes that file
    std::optional<std::string> mBackup; // what the old file is called behind its name, where it is kept
};

// What a command writes to: data to mOut, everything else to mErr.
struct Streams
{
    std::ostream& mOut;
    std::ostream& mErr;
    bool mIsOutTerminal = false;
    bool mIsErrTerminal = false;
    std::size_t mWidth = 0; // columns of the terminal that mOut is; 0 where it is none, and lines may be long
    bool mIsQuiet = false;

    // Where to say what only informs; errors go to mErr.
    std::ostream& Remarks() const;
};

struct Document
{
    std::string mFile; // "-" for standard input
    BagPtr mBag;
    bool mHasHeader = true;
    Gate mGate;                            // for what is shown of it
    std::wstring mLineEnd;                 // behind the text, where an editor has put one
    std::shared_ptr<const FileLock> mLock; // of the file that is to be changed in place
    std::vector<std::string> mLosses;      // lines about what the text holds and the bag does not
};

// Reads a file, or standard input for "-". A text with a header is read with that, whatever the pair, so that it keeps
// it; the pair is for those without one, of which several may be read together with such a text. Throws what ReadText,
// ReadPair and MakeBag throw, and TextError for a text that is no bag's.
Document Load(const std::string& iFile, const RawPair& iPair, const SecretOptions& iSecrets = {});

// The same with a text that was read already. iFile: what messages call it.
Document ReadDocument(const std::string& iFile, const std::wstring& iText, const RawPair& iPair,
                      const SecretOptions& iSecrets = {});

// The same as Load for a bag that is to be written, with the losses; a file that is to be changed in place is locked
// before.
Document LoadToChange(const std::string& iFile, const RawPair& iPair, const SecretOptions& iSecrets = {},
                      const Target& iTarget = {});

// Shows the losses of a text. Save does so for the one that it writes.
void ReportLosses(const Document& iDocument, std::ostream& oErr);

// Throws TextError where the gate shows nothing of it.
void CheckIsShown(const Document& iDocument);

// What its list says of it.
ListHead HeadOf(const Document& iDocument);

// Takes out what is not kept, and then the nested bags without properties, with a word about those, since no text can
// hold them. The bag may become another one. iGate: for what is shown of it. Returns how many properties were not kept.
std::size_t LeaveOut(BagPtr& oBag, const Gate& iGate, std::ostream& oErr, const Keeps& iKeeps);

// The same where all is kept.
void LeaveOutEmptyBags(BagPtr& oBag, const Gate& iGate, std::ostream& oErr);

// Writes the text form where it is wanted, without empty nested bags, and shows the losses. Throws DataError for
// anything else that the text would not give back, and IoError; nothing has been written then.
void Save(Document iDocument, const Target& iTarget, const Streams& iStreams);

// Throws UsageError where a text is to be changed in place and has no file, or one that is to be kept in another folder
// or under its own name, and IoError where that file is no regular one.
void CheckTarget(const std::string& iFile, const Target& iTarget);

} // namespace TalBaseTool

#endif
