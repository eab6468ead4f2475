#include "Commands/Commands.h"

#include "File/EditedFile.h"
#include "File/Files.h"
#include "Text/BagWalk.h"
#include "Text/Errors.h"
#include "Text/Escaping.h"
#include "Text/Listing.h"
#include "Text/Messages.h"
#include "Text/Place.h"
#include "Text/Text.h"

#include "QBase/Convert.h"
#include "QBase/Message.h"

#include <map>
#include <optional>
#include <vector>

namespace TalBaseTool
{

namespace
{

constexpr const char* gAbout = "# Each line is a property: PATH = VALUE. A line that says (hidden) stands for what is\n"
                               "# there and keeps it. Lines that begin with # say nothing.\n";

bool IsSame(const ListHead& iOne, const ListHead& iOther)
{
    return iOne.mPair.mBegin == iOther.mPair.mBegin && iOne.mPair.mEnd == iOther.mPair.mEnd &&
           iOne.mHasHeader == iOther.mHasHeader && iOne.mLineEnd == iOther.mLineEnd;
}

// What is masked in the list of a bag, in the order of the list.
std::vector<HiddenProperty> FindHiddenProperties(const Document& iDocument)
{
    const Escaping lEscaping(iDocument.mBag->GetBeginDelimiter(), iDocument.mBag->GetEndDelimiter());
    std::vector<HiddenProperty> lHidden;
    for (BagWalk lWalk(iDocument.mBag); lWalk.Next();)
    {
        const wchar_t* const lName = lWalk.GetName();
        if (lWalk.GetStep() == Step::Enter && iDocument.mGate.HidesBag(lName))
        {
            lHidden.push_back({lName, {}, lWalk.GetBag()});
            lWalk.Skip();
        }
        else if (lWalk.GetStep() == Step::Plain)
        {
            const QBase::ReturnWString lStored = lWalk.GetValue();
            if (iDocument.mGate.HidesValue(lName, lEscaping.Unescape(lStored)))
            {
                lHidden.push_back({lName, lStored.c_str(), {}});
            }
        }
    }
    return lHidden;
}

// The masked lines of a list that was just written.
std::vector<ListLine> ReadMaskedLines(const std::string& iFile, const std::string& iBytes)
{
    try
    {
        std::vector<ListLine> lLines = ReadList(iFile, QBase::UTF8ToWideChar(iBytes, true)).mLines;
        std::erase_if(lLines, [](const ListLine& iLine) { return iLine.mKind == ListLineKind::Value; });
        return lLines;
    }
    catch (const TextError&)
    {
        throw DataError(ShowFile(iFile) + ": names that are masked look the same; --show-secrets shows them");
    }
}

// The list of a document as it is given to be edited, and how the document becomes what an edited list says.
class EditableList
{
public:
    explicit EditableList(const Document& iDocument) : mDocument(iDocument)
    {
        WriteList(mDocument.mBag, HeadOf(mDocument), mDocument.mGate, {},
                  [this](std::string_view iBytes) { mBytes += iBytes; });
        hFindMasks();
        mBytes.insert(mBytes.find('\n') + 1, gAbout);
    }

    const std::string& GetBytes() const
    {
        return mBytes;
    }

    // The document of an edited list; null where nothing has changed in it. Throws what ReadText, ReadList and MakeBag
    // throw.
    std::optional<Document> Read(const std::string& iFile) const
    {
        const List lList = ReadList(iFile, ReadText(iFile));
        if (lList.mHead && !IsSame(*lList.mHead, HeadOf(mDocument)))
        {
            throw TextError(ShowPlace(iFile, {1, 1}) +
                            "this line is not for editing; 'talbase delimiters' changes the delimiters");
        }
        Document lDocument = mDocument;
        lDocument.mBag = MakeBag(iFile, lList, HeadOf(mDocument).mPair, [this](const ListLine& iLine) {
            const auto lMask = mMasks.find({iLine.mPath, iLine.mKind});
            return lMask != mMasks.end() ? &lMask->second : nullptr;
        });
        const bool lHasChanged =
            FindChange(mDocument.mBag, lDocument.mBag) || FindChange(lDocument.mBag, mDocument.mBag);
        return lHasChanged ? std::make_optional(lDocument) : std::nullopt;
    }

private:
    // The masked lines stand in the order of what they stand for.
    void hFindMasks()
    {
        const std::vector<HiddenProperty> lHidden = FindHiddenProperties(mDocument);
        if (lHidden.empty())
        {
            return;
        }
        const std::vector<ListLine> lLines = ReadMaskedLines(mDocument.mFile, mBytes);
        for (std::size_t lIndex = 0; lIndex < lLines.size(); ++lIndex)
        {
            mMasks.emplace(std::make_pair(lLines[lIndex].mPath, lLines[lIndex].mKind), lHidden.at(lIndex));
        }
    }

    const Document& mDocument;
    std::string mBytes;
    std::map<std::pair<Path, ListLineKind>, HiddenProperty> mMasks;
};

enum class Outcome
{
    Saved,
    Unchanged,
    Refused // with a word about it
};

// Takes an edited list over. Nothing is written where it is not good.
Outcome TakeOver(const EditableList& iList, const std::string& iFile, const Target& iTarget, const Streams& iStreams)
{
    try
    {
        const std::optional<Document> lDocument = iList.Read(iFile);
        if (!lDocument)
        {
            return Outcome::Unchanged;
        }
        Save(*lDocument, iTarget, iStreams);
        return Outcome::Saved;
    }
    catch (const TextError& lError)
    {
        iStreams.mErr << lError.what() << '\n';
    }
    catch (const QBase::Message& lMessage)
    {
        iStreams.mErr << "talbase: " << ShowMessage(lMessage.GetMessage()) << '\n';
    }
    catch (const std::runtime_error& lError) // what a text cannot hold, or a system that refuses
    {
        iStreams.mErr << "talbase: " << lError.what() << '\n';
    }
    return Outcome::Refused;
}

// Whether a person wants to go on with a list that was refused.
bool WantsToGoOn(const EditedFile& iFile, const Streams& iStreams)
{
    for (;;)
    {
        iStreams.mErr << "What now? (e)dit again, (q)uit without saving: " << std::flush;
        const std::optional<std::string> lAnswer = iFile.ReadLine();
        if (!lAnswer || *lAnswer == "q" || *lAnswer == "quit")
        {
            iStreams.mErr << (lAnswer ? "" : "\n");
            return false;
        }
        if (*lAnswer == "e" || *lAnswer == "edit")
        {
            return true;
        }
    }
}

int EditUntilGood(const EditableList& iList, const EditOptions& iOptions, const Streams& iStreams)
{
    const EditedFile lFile(iList.GetBytes());
    Outcome lOutcome = Outcome::Refused;
    while (lOutcome == Outcome::Refused)
    {
        lFile.Edit();
        lOutcome = TakeOver(iList, lFile.GetName(), iOptions.mTarget, iStreams);
        if (lOutcome == Outcome::Refused && (::isatty(STDIN_FILENO) == 0 || !WantsToGoOn(lFile, iStreams)))
        {
            iStreams.mErr << "talbase: " << ShowFile(iOptions.mFile) << ": nothing is saved\n";
            return ExitTrouble;
        }
    }
    if (lOutcome == Outcome::Unchanged)
    {
        iStreams.Remarks() << "talbase: " << ShowFile(iOptions.mFile) << ": unchanged\n";
    }
    return ExitGood;
}

} // namespace

int Edit(const EditOptions& iOptions, const Streams& iStreams)
{
    if (iOptions.mFile == "-")
    {
        throw UsageError("a FILE is needed; standard input cannot be edited");
    }
    CheckTarget(iOptions.mFile, iOptions.mTarget);
    try
    {
        const Document lDocument = LoadToChange(iOptions.mFile, iOptions.mPair, iOptions.mSecrets, iOptions.mTarget);
        if (lDocument.mGate.GetOpening() == Gate::Opening::Nothing)
        {
            throw RefusedError(ShowFile(iOptions.mFile) + ": " + lDocument.mGate.GetReason());
        }
        return EditUntilGood(EditableList(lDocument), iOptions, iStreams);
    }
    catch (const Stopped& lStopped)
    {
        ::raise(lStopped.mSignal);
        return ExitTrouble; // where the signal does not end the program
    }
}

} // namespace TalBaseTool
