#include "File/Document.h"

#include "File/Files.h"
#include "File/InPlace.h"
#include "File/Losses.h"
#include "File/Progress.h"
#include "File/TextOutput.h"
#include "Text/BagWalk.h"
#include "Text/Errors.h"
#include "Text/Messages.h"
#include "Text/Place.h"
#include "Text/Text.h"
#include "Text/TextBuilder.h"

#include "QBase/Message.h"

#include <algorithm>
#include <stdexcept>
#include <vector>

namespace TalBaseTool
{

namespace
{

// The line end that stands behind a text, outside of it.
std::wstring FindLineEnd(std::wstring_view iText, std::wstring_view iEndDelimiter)
{
    for (const std::wstring_view lLineEnd : {L"\r\n", L"\n"})
    {
        const bool lEndsProperty = lLineEnd.find(iEndDelimiter) != std::wstring_view::npos;
        if (!lEndsProperty && iText.ends_with(lLineEnd) &&
            iText.substr(0, iText.size() - lLineEnd.size()).ends_with(iEndDelimiter))
        {
            return std::wstring(lLineEnd);
        }
    }
    return {};
}

// Reports why, and where, a text could not be read.
[[noreturn]] void ThrowWithPlace(const std::string& iFile, const std::wstring& iText,
                                 const std::optional<DelimiterTexts>& iPair)
{
    const QTalBase::TextCheckResult lResult = CheckText(iText, iPair);
    const Place lPlace = FindPlace(iText, StepBeforeLineEnd(iText, lResult.mPosition));
    throw TextError(ShowPlace(iFile, lPlace) + ShowReason(iText, iPair.has_value(), lResult.mMessage.c_str()));
}

// Of small texts nobody needs to know how far they are.
constexpr std::size_t gWorthShowing = std::size_t{1} << 20;

Document Parse(const std::string& iFile, const std::wstring& iText, const RawPair& iPair, const SecretOptions& iSecrets,
               bool iWithLosses, const std::shared_ptr<const FileLock>& iLock = {})
{
    const std::optional<DelimiterTexts> lPair = PairOf(iText, iPair);
    Document lDocument;
    lDocument.mFile = iFile;
    lDocument.mHasHeader = !lPair;
    std::optional<Progress> lProgress;
    if (iText.size() >= gWorthShowing)
    {
        lProgress.emplace("parsing " + ShowFile(iFile), iText.size());
    }
    std::optional<QTalBase::TextCheckResult> lChecked; // before there is a bag, since both take much memory
    if (iWithLosses)
    {
        lChecked = CheckText(iText, lPair);
    }
    try
    {
        lDocument.mBag = ReadBag(iText.c_str(), lPair);
    }
    catch (const QTalBase::PropertyBagException&)
    {
        ThrowWithPlace(iFile, iText, lPair);
    }
    catch (const std::out_of_range&)
    {
        ThrowWithPlace(iFile, iText, lPair);
    }
    lDocument.mGate = Gate(iSecrets, iText, lPair, true);
    lDocument.mLineEnd = FindLineEnd(iText, lDocument.mBag->GetEndDelimiter());
    if (lChecked)
    {
        lDocument.mLosses = DescribeLosses(iFile, iText, *lChecked, lDocument.mGate);
    }
    lDocument.mLock = iLock;
    return lDocument;
}

Document LoadAnd(const std::string& iFile, const RawPair& iPair, const SecretOptions& iSecrets, bool iWithLosses,
                 const std::shared_ptr<const FileLock>& iLock = {})
{
    ReadPair(iPair); // a wrong command line is told before anything is read
    return Parse(iFile, ReadText(iFile, gTextForm, iLock ? iLock->GetFile() : -1), iPair, iSecrets, iWithLosses, iLock);
}

// A text that would not give the bag back is never written.
void CheckReadsBack(const Document& iDocument)
{
    const Progress lProgress("checking what is written");
    const QTalBase::TextFault lFault = QTalBase::FindTextFault(*iDocument.mBag, iDocument.mHasHeader, nullptr, nullptr);
    if (lFault.IsNone())
    {
        return;
    }
    Path lPath;
    for (const QBase::ReturnWString& lName : lFault.mPath)
    {
        lPath.emplace_back(lName.c_str());
    }
    throw DataError(lPath.empty() ? "with these delimiters the text could not be read back"
                                  : iDocument.mGate.ShowPath(lPath) + " would not be read back as it is");
}

constexpr std::size_t gShownBags = 3;

// Of what is left out.
struct LeftOut
{
    std::size_t mProperties = 0;
    std::size_t mEmptyBags = 0;
    std::vector<std::string> mFirst; // of the empty bags
};

// What is not kept, the bags without properties, and those with nothing but such.
LeftOut FindLeftOut(const BagPtr& iBag, const Gate& iGate, const Keeps& iKeeps)
{
    LeftOut lLeftOut;
    std::vector<bool> lIsEmpty; // for each bag around the step, so far
    for (BagWalk lWalk(iBag); lWalk.Next();)
    {
        if (iKeeps && !iKeeps(lWalk))
        {
            lLeftOut.mProperties += lWalk.GetStep() != Step::Leave ? 1 : 0;
            lWalk.GetStep() == Step::Enter ? lWalk.Skip() : void();
            continue;
        }
        if (lWalk.GetStep() == Step::Enter)
        {
            lIsEmpty.push_back(true);
            continue;
        }
        const bool lIsGone = lWalk.GetStep() == Step::Leave && lIsEmpty.back();
        if (lWalk.GetStep() == Step::Leave)
        {
            lIsEmpty.pop_back();
        }
        if (lIsGone && lLeftOut.mEmptyBags++ < gShownBags)
        {
            lLeftOut.mFirst.push_back(iGate.ShowPath(lWalk.GetPath()));
        }
        if (!lIsGone && !lIsEmpty.empty())
        {
            lIsEmpty.back() = false;
        }
    }
    return lLeftOut;
}

void RemoveLeftOut(const BagPtr& iBag, const Keeps& iKeeps)
{
    for (BagWalk lWalk(iBag); lWalk.Next();)
    {
        const bool lIsKept = !iKeeps || iKeeps(lWalk);
        if (lWalk.GetStep() == Step::Enter && !lIsKept)
        {
            lWalk.Skip(); // taken out when it ends
        }
        else if (!lIsKept || (lWalk.GetStep() == Step::Leave && lWalk.GetBag()->GetCount() == 0))
        {
            lWalk.GetHolder()->RemoveProperty(lWalk.GetName());
            lWalk.Removed();
        }
    }
}

// Removing many one by one would take quadratic time; a bag that is built again lacks them.
void TakeOut(BagPtr& oBag, const Gate& iGate, const Keeps& iKeeps, std::size_t iCount)
{
    constexpr std::size_t lFew = 16;
    if (iCount > lFew)
    {
        try
        {
            Rebuild(oBag, std::wstring(oBag->GetBeginDelimiter()), std::wstring(oBag->GetEndDelimiter()), iGate,
                    iKeeps);
            return;
        }
        catch (const DataError&) // its text would not give it back; who writes it will tell
        {
            if (!oBag)
            {
                throw;
            }
        }
    }
    RemoveLeftOut(oBag, iKeeps);
}

void ReportEmptyBags(const LeftOut& iLeftOut, std::ostream& oErr)
{
    if (iLeftOut.mEmptyBags <= gShownBags)
    {
        for (const std::string& lPath : iLeftOut.mFirst)
        {
            oErr << "talbase: " << lPath << " is left out: a text cannot hold a bag without properties\n";
        }
        return;
    }
    oErr << "talbase: " << iLeftOut.mEmptyBags
         << " bags are left out, since a text cannot hold a bag without properties (";
    for (const std::string& lPath : iLeftOut.mFirst)
    {
        oErr << lPath << ", ";
    }
    oErr << "…)\n";
}

} // namespace

std::ostream& Streams::Remarks() const
{
    static std::ostream lNowhere(nullptr);
    return mIsQuiet ? lNowhere : mErr;
}

Document Load(const std::string& iFile, const RawPair& iPair, const SecretOptions& iSecrets)
{
    return LoadAnd(iFile, iPair, iSecrets, false);
}

Document ReadDocument(const std::string& iFile, const std::wstring& iText, const RawPair& iPair,
                      const SecretOptions& iSecrets)
{
    return Parse(iFile, iText, iPair, iSecrets, false);
}

Document LoadToChange(const std::string& iFile, const RawPair& iPair, const SecretOptions& iSecrets,
                      const Target& iTarget)
{
    return LoadAnd(iFile, iPair, iSecrets, true,
                   iTarget.mIsInPlace ? std::make_shared<const FileLock>(iFile, iTarget.mWait) : nullptr);
}

void ReportLosses(const Document& iDocument, std::ostream& oErr)
{
    for (const std::string& lLine : iDocument.mLosses)
    {
        oErr << lLine << '\n';
    }
}

void CheckIsShown(const Document& iDocument)
{
    if (iDocument.mGate.GetOpening() == Gate::Opening::Nothing)
    {
        throw TextError(ShowFile(iDocument.mFile) + ": " + iDocument.mGate.GetReason());
    }
}

ListHead HeadOf(const Document& iDocument)
{
    return {{iDocument.mBag->GetBeginDelimiter(), iDocument.mBag->GetEndDelimiter()},
            iDocument.mHasHeader,
            iDocument.mLineEnd};
}

std::size_t LeaveOut(BagPtr& oBag, const Gate& iGate, std::ostream& oErr, const Keeps& iKeeps)
{
    const LeftOut lLeftOut = FindLeftOut(oBag, iGate, iKeeps);
    ReportEmptyBags(lLeftOut, oErr);
    if (lLeftOut.mProperties + lLeftOut.mEmptyBags > 0)
    {
        TakeOut(oBag, iGate, iKeeps, lLeftOut.mProperties + lLeftOut.mEmptyBags);
    }
    return lLeftOut.mProperties;
}

void LeaveOutEmptyBags(BagPtr& oBag, const Gate& iGate, std::ostream& oErr)
{
    LeaveOut(oBag, iGate, oErr, {});
}

void Save(Document iDocument, const Target& iTarget, const Streams& iStreams)
{
    LeaveOutEmptyBags(iDocument.mBag, iDocument.mGate, iStreams.Remarks());
    CheckReadsBack(iDocument);
    ReportLosses(iDocument, iStreams.Remarks());
    Progress lProgress("writing");
    std::size_t lDone = 0;
    const auto lWrite = [&](const TakeBytes& iTake) {
        WriteBag(iDocument.mBag, iDocument.mHasHeader, [&](std::string_view iBytes) {
            iTake(iBytes);
            lProgress.Step(lDone += iBytes.size());
        });
    };
    if (iTarget.mIsInPlace)
    {
        const auto lWriteFile = [&](const TakeBytes& iTake) {
            lWrite(iTake);
            iTake(ToUtf8(iDocument.mLineEnd));
        };
        for (const std::string& lLost : ReplaceText(*iDocument.mLock, lWriteFile, iTarget.mBackup))
        {
            iStreams.Remarks() << "talbase: " << ShowFile(iDocument.mFile) << ": " << lLost << '\n';
        }
    }
    else
    {
        lWrite([&](std::string_view iBytes) { iStreams.mOut << iBytes; });
        iStreams.mOut << (iStreams.mIsOutTerminal ? "\n" : ToUtf8(iDocument.mLineEnd));
    }
}

void CheckTarget(const std::string& iFile, const Target& iTarget)
{
    if (iTarget.mIsInPlace && iFile == "-")
    {
        throw UsageError("--in-place needs a file");
    }
    if (iTarget.mBackup && (iTarget.mBackup->empty() || iTarget.mBackup->find('/') != std::string::npos))
    {
        throw UsageError("--backup needs a SUFFIX without /");
    }
    if (iTarget.mIsInPlace)
    {
        CheckIsRegular(iFile);
    }
}

} // namespace TalBaseTool
