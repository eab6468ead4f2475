#include "Commands/Commands.h"

#include "Commands/SetList.h"
#include "File/Files.h"
#include "File/TextOutput.h"
#include "Text/BagWalk.h"
#include "Text/Errors.h"
#include "Text/Text.h"
#include "Text/TextBuilder.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace TalBaseTool
{

namespace
{

// Throws where what a path names is of another kind than what is to be put there.
void CheckReplaces(const BagPtr& iRoot, const Path& iPath, Kind iKind)
{
    const Kind lKind = FindKind(iRoot, iPath);
    if (lKind != Kind::Missing && lKind != iKind)
    {
        throw DataError(ShowPath(iPath) +
                        (lKind == Kind::Bag ? " is a bag; remove it first" : " is a plain value; remove it first"));
    }
}

void CheckExists(const BagPtr& iRoot, const Path& iPath)
{
    if (FindKind(iRoot, iPath) == Kind::Missing)
    {
        throw DataError("there is no " + ShowPath(iPath));
    }
}

// Sets a property of a bag, plain or nested, where ipNest is not null.
void PutInto(const BagPtr& iBag, const std::wstring& iName, const std::wstring& iValue, const BagPtr& iNest)
{
    if (iNest)
    {
        iBag->EmbedProperty(iName.c_str(), iNest.get());
    }
    else
    {
        iBag->SetProperty(iName.c_str(), iValue.c_str(), false);
    }
}

// Throws where the text of a bag would not give a name back.
void CheckNames(const QTalBase::PropertyBag& iBag, const Path& iPath)
{
    TextBuilder lBuilder(iBag.GetBeginDelimiter(), iBag.GetEndDelimiter());
    for (const std::wstring& lName : iPath)
    {
        const Fault lFault = lBuilder.OpenBag(lName);
        if (lFault != Fault::None)
        {
            throw DataError(ShowPath(iPath) + ": with these delimiters it would be " + Describe(lFault));
        }
    }
}

// Sets a property at a path. The bags on the way that are not there are made at once, as the text of the first one:
// embedding each in the next would copy the innermost as often as the path has names.
void Put(const BagPtr& iRoot, const Path& iPath, const std::wstring& iValue, const BagPtr& iNest)
{
    CheckNames(*iRoot, iPath);
    if (const BagPtr lParent = FindParent(iRoot, iPath))
    {
        PutInto(lParent, iPath.back(), iValue, iNest);
        return;
    }
    BagPtr lParent = iRoot;
    std::size_t lMissing = 0;
    for (; lParent->IsPropertyEmbedded(iPath[lMissing].c_str()); ++lMissing)
    {
        lParent = lParent->GetPropertyBag(iPath[lMissing].c_str());
    }
    const BagPtr lInner(QTalBase::CreatePropertyBag(iRoot->GetBeginDelimiter(), iRoot->GetEndDelimiter()));
    PutInto(lInner, iPath.back(), iValue, iNest);
    std::wstring lText;
    for (std::size_t lIndex = lMissing + 1; lIndex + 1 < iPath.size(); ++lIndex)
    {
        lText.append(iPath[lIndex]).append(iRoot->GetBeginDelimiter());
    }
    lText += lInner->GetString(false, nullptr, nullptr, true);
    for (std::size_t lIndex = lMissing + 1; lIndex + 1 < iPath.size(); ++lIndex)
    {
        lText += iRoot->GetEndDelimiter();
    }
    lParent->SetProperty(iPath[lMissing].c_str(), lText.c_str(), true);
}

// Puts a plain value and looks whether it can be got again.
void PutPlain(const BagPtr& iRoot, const Path& iPath, const std::wstring& iValue)
{
    Put(iRoot, iPath, iValue, {});
    const BagPtr lParent = FindParent(iRoot, iPath);
    if (!lParent || std::wstring_view(lParent->GetProperty(iPath.back().c_str())) != iValue)
    {
        throw DataError(ShowPath(iPath) + ": a bag with these delimiters does not give that value back as it is");
    }
}

// The same for a nested bag, which is copied through its text.
void PutBag(const BagPtr& iRoot, const Path& iPath, const BagPtr& iNest)
{
    Put(iRoot, iPath, {}, iNest);
    const BagPtr lParent = FindParent(iRoot, iPath);
    const wchar_t* lName = iPath.back().c_str();
    if (!lParent || !lParent->IsPropertyEmbedded(lName) || FindChange(iNest, lParent->GetPropertyBag(lName)))
    {
        throw DataError(ShowPath(iPath) + ": a bag with these delimiters does not give that bag back as it is");
    }
}

struct Change
{
    Path mPath;
    std::wstring mValue;
};

std::wstring CheckedValue(std::wstring iValue)
{
    if (iValue.empty())
    {
        throw UsageError("a bag cannot hold an empty value; 'talbase remove' takes a property out");
    }
    return iValue;
}

// The options with the FILE in its place: a last argument without a partner.
SetOptions Arranged(SetOptions iOptions)
{
    const bool lHasList = !iOptions.mListFile.empty();
    const bool lHasValueFile = !iOptions.mValueFile.empty();
    const std::size_t lCount = iOptions.mArguments.size();
    if (lHasList && lHasValueFile)
    {
        throw UsageError("--from-list and --value-from exclude each other");
    }
    if (!lHasList && lCount < (lHasValueFile ? 1 : 2))
    {
        throw UsageError(lCount == 0 ? "a PATH and a VALUE are needed, or --from-list"
                                     : "a VALUE is needed, or --value-from");
    }
    if (lCount > (lHasList ? 1U : 2U) && (lHasList || lHasValueFile))
    {
        throw UsageError(lHasList ? "PATH and --from-list exclude each other"
                                  : "VALUE and --value-from exclude each other");
    }
    if (lHasValueFile ? lCount == 2 : lCount % 2 == 1)
    {
        iOptions.mFile = iOptions.mArguments.back();
        iOptions.mArguments.pop_back();
    }
    if (iOptions.mFile == "-" && (iOptions.mValueFile == "-" || iOptions.mListFile == "-"))
    {
        throw UsageError(std::string("the text and the ") + (lHasList ? "list" : "value") +
                         " cannot both come from standard input");
    }
    return iOptions;
}

// Without the one line end that an editor or echo puts behind a value, as shells take it off.
std::wstring WithoutLineEnd(std::wstring iValue)
{
    for (const std::wstring_view lLineEnd : {L"\r\n", L"\n"})
    {
        if (iValue.size() >= lLineEnd.size() && iValue.substr(iValue.size() - lLineEnd.size()) == lLineEnd)
        {
            iValue.resize(iValue.size() - lLineEnd.size());
            break;
        }
    }
    return iValue;
}

// The changes that the arguments tell.
std::vector<Change> ReadChanges(const SetOptions& iOptions)
{
    std::vector<Change> lChanges;
    for (std::size_t lIndex = 0; lIndex + 1 < iOptions.mArguments.size(); lIndex += 2)
    {
        lChanges.push_back({ParsePath(iOptions.mArguments[lIndex]),
                            CheckedValue(ReadArgument(iOptions.mArguments[lIndex + 1], "the value"))});
    }
    if (!iOptions.mValueFile.empty())
    {
        Path lPath = ParsePath(iOptions.mArguments.front());
        lChanges.push_back(
            {std::move(lPath), CheckedValue(WithoutLineEnd(ReadText(iOptions.mValueFile, "the value")))});
    }
    return lChanges;
}

} // namespace

int Set(const SetOptions& iOptions, const Streams& iStreams)
{
    const SetOptions lOptions = Arranged(iOptions);
    CheckTarget(lOptions.mFile, lOptions.mTarget);
    const std::vector<Change> lChanges = ReadChanges(lOptions);
    std::optional<ListChanges> lList;
    if (!lOptions.mListFile.empty())
    {
        lList.emplace(lOptions.mListFile);
    }
    const Document lDocument = LoadToChange(lOptions.mFile, lOptions.mPair, {}, lOptions.mTarget);
    for (const Change& lChange : lChanges)
    {
        CheckReplaces(lDocument.mBag, lChange.mPath, Kind::Plain);
        PutPlain(lDocument.mBag, lChange.mPath, lChange.mValue);
    }
    if (lList)
    {
        lList->Apply(lDocument.mBag, lDocument.mGate);
    }
    Save(lDocument, lOptions.mTarget, iStreams);
    return ExitGood;
}

int Remove(const RemoveOptions& iOptions, const Streams& iStreams)
{
    CheckTarget(iOptions.mFile, iOptions.mTarget);
    const Path lPath = ParsePath(iOptions.mPath);
    const Document lDocument = LoadToChange(iOptions.mFile, iOptions.mPair, {}, iOptions.mTarget);
    CheckExists(lDocument.mBag, lPath);
    FindParent(lDocument.mBag, lPath)->RemoveProperty(lPath.back().c_str());
    Save(lDocument, iOptions.mTarget, iStreams);
    return ExitGood;
}

int Move(const MoveOptions& iOptions, const Streams& iStreams)
{
    CheckTarget(iOptions.mFile, iOptions.mTarget);
    const Path lFrom = ParsePath(iOptions.mFrom);
    const Path lTo = ParsePath(iOptions.mTo);
    if (lTo.size() > lFrom.size() && std::equal(lFrom.begin(), lFrom.end(), lTo.begin()))
    {
        throw UsageError("a bag cannot be moved into itself");
    }
    const Document lDocument = LoadToChange(iOptions.mFile, iOptions.mPair, {}, iOptions.mTarget);
    CheckExists(lDocument.mBag, lFrom);
    if (FindKind(lDocument.mBag, lTo) != Kind::Missing)
    {
        throw DataError(ShowPath(lTo) + " is there already; remove it first");
    }
    const BagPtr lParent = FindParent(lDocument.mBag, lFrom);
    const wchar_t* lName = lFrom.back().c_str();
    const BagPtr lNest = lParent->IsPropertyEmbedded(lName) ? lParent->GetPropertyBag(lName) : BagPtr();
    const std::wstring lValue = lNest ? L"" : lParent->GetProperty(lName).c_str();
    lParent->RemoveProperty(lName);
    if (lNest)
    {
        PutBag(lDocument.mBag, lTo, lNest);
    }
    else
    {
        PutPlain(lDocument.mBag, lTo, lValue);
    }
    Save(lDocument, iOptions.mTarget, iStreams);
    return ExitGood;
}

int Embed(const EmbedOptions& iOptions, const Streams& iStreams)
{
    CheckTarget(iOptions.mFile, iOptions.mTarget);
    const Path lPath = ParsePath(iOptions.mPath);
    if (iOptions.mFile == "-" && iOptions.mBagFile == "-")
    {
        throw UsageError("the text and the bag cannot both come from standard input");
    }
    Document lNest = LoadToChange(iOptions.mBagFile, iOptions.mPair);
    Document lDocument = LoadToChange(iOptions.mFile, iOptions.mPair, {}, iOptions.mTarget);
    ReportLosses(lNest, iStreams.Remarks());
    LeaveOutEmptyBags(lNest.mBag, lNest.mGate, iStreams.Remarks());
    if (lNest.mBag->GetCount() == 0)
    {
        throw DataError(ShowFile(iOptions.mBagFile) + ": a text cannot hold a bag without properties");
    }
    CheckReplaces(lDocument.mBag, lPath, Kind::Bag);
    const BagPtr lRoot = lDocument.mBag;
    PutBag(lRoot, lPath,
           WithDelimiters(std::move(lNest.mBag), lRoot->GetBeginDelimiter(), lRoot->GetEndDelimiter(), lNest.mGate));
    lDocument.mGate.Join(lNest.mGate);
    Save(lDocument, iOptions.mTarget, iStreams);
    return ExitGood;
}

} // namespace TalBaseTool
