// Bags as flat lists, and back; what a line looks like is in Text/Listing.h.

#include "Commands/Commands.h"

#include "File/Files.h"
#include "Text/Errors.h"
#include "Text/Listing.h"
#include "Text/Text.h"

#include "QBase/Convert.h"
#include "QBase/Message.h"

namespace TalBaseTool
{

int ListBags(const ListOptions& iOptions, const Streams& iStreams)
{
    const std::function<void(std::string_view)> lTake = [&](std::string_view iBlock) { iStreams.mOut << iBlock; };
    ListForm lForm{iOptions.mEndsWithZero ? '\0' : '\n', iOptions.mIsSorted, ""};
    return ForEachBag(iOptions.mInputs, iStreams, [&](const Document& iDocument, bool iIsOneOfMany) {
        CheckIsShown(iDocument);
        const bool lIsNamed =
            iOptions.mFileNames == FileNames::Always || (iOptions.mFileNames == FileNames::WhereMany && iIsOneOfMany);
        lForm.mPrefix = lIsNamed ? ShowFile(iDocument.mFile) + ":" : "";
        WriteList(iDocument.mBag, HeadOf(iDocument), iDocument.mGate, lForm, lTake);
    });
}

namespace
{

// A list whose lines end with zeros is no text form, which has none.
std::wstring ReadZeros(const std::string& iFile)
{
    std::string lBytes;
    ReadBlocks(
        iFile, [&](std::string_view iBlock) { lBytes.append(iBlock); }, "a list");
    try
    {
        return QBase::UTF8ToWideChar(lBytes, true);
    }
    catch (const QBase::Message&)
    {
        throw TextError(ShowFile(iFile) + ": the list is not in UTF-8");
    }
}

} // namespace

int FromList(const FromListOptions& iOptions, const Streams& iStreams)
{
    const std::wstring lText = iOptions.mEndsWithZero ? ReadZeros(iOptions.mFile) : ReadText(iOptions.mFile, "a list");
    const List lList = ReadList(iOptions.mFile, lText, iOptions.mEndsWithZero ? '\0' : '\n');
    if (!lList.mHead)
    {
        throw TextError(ShowFile(iOptions.mFile) +
                        ":1:1: the first line does not name the delimiters: # begin \"++++\", end \"***\"");
    }
    Document lDocument;
    lDocument.mFile = iOptions.mFile;
    lDocument.mBag = MakeBag(iOptions.mFile, lList, lList.mHead->mPair);
    lDocument.mHasHeader = lList.mHead->mHasHeader;
    lDocument.mLineEnd = lList.mHead->mLineEnd;
    Save(lDocument, {}, iStreams);
    return ExitGood;
}

} // namespace TalBaseTool
