// The properties of bags whose name or value has a pattern, as lines of their lists; a bag whose name has it is its
// path with a slash. What is hidden is not searched: it has no pattern.

#include "Commands/Commands.h"

#include "Text/BagWalk.h"
#include "Text/Errors.h"
#include "Text/Escaping.h"
#include "Text/Listing.h"
#include "Text/Text.h"

namespace TalBaseTool
{

namespace
{

class Searcher
{
public:
    Searcher(const GrepOptions& iOptions, const Streams& iStreams)
        : mOptions(iOptions), mStreams(iStreams), mMatcher(iOptions.mPattern, iOptions.mKind, iOptions.mIgnoresCase)
    {
        mForm.mEnd = iOptions.mEndsWithZero ? '\0' : '\n';
    }

    int Run()
    {
        const int lTrouble = ForEachBag(mOptions.mInputs, mStreams,
                                        [&](const Document& iDocument, bool iIsMany) { hTake(iDocument, iIsMany); });
        return lTrouble != ExitGood ? lTrouble : mIsFound ? ExitGood : ExitBad;
    }

private:
    void hTake(const Document& iDocument, bool iIsMany)
    {
        CheckIsShown(iDocument);
        if (mStreams.mIsQuiet && mIsFound)
        {
            return;
        }
        const std::string lFile = ShowFile(iDocument.mFile);
        const bool lIsNamed =
            mOptions.mFileNames == FileNames::Always || (mOptions.mFileNames == FileNames::WhereMany && iIsMany);
        mForm.mPrefix = lIsNamed ? lFile + ":" : "";
        const std::size_t lCount = hSearch(iDocument);
        mIsFound = mIsFound || lCount > 0;
        if (mOptions.mListsFiles && lCount > 0)
        {
            mStreams.mOut << lFile << mForm.mEnd;
        }
        else if (mOptions.mCounts && !mOptions.mListsFiles)
        {
            mStreams.mOut << mForm.mPrefix << lCount << mForm.mEnd;
        }
    }

    // Returns how many were selected, or 1 where one is enough.
    std::size_t hSearch(const Document& iDocument)
    {
        const Gate& lGate = iDocument.mGate;
        const bool lIsOneEnough = mOptions.mListsFiles || mStreams.mIsQuiet;
        const Escaping lEscaping(iDocument.mBag->GetBeginDelimiter(), iDocument.mBag->GetEndDelimiter());
        ShownPath lPath(lGate);
        std::size_t lCount = 0;
        for (BagWalk lWalk(iDocument.mBag); (lCount == 0 || !lIsOneEnough) && lWalk.Next();)
        {
            if (lWalk.GetStep() == Step::Leave)
            {
                lPath.Leave();
                continue;
            }
            lPath.Enter(lWalk.GetName());
            bool lIsSelected = mMatcher.IsIn(VisibleName(lGate, lWalk.GetName()));
            if (lWalk.GetStep() == Step::Plain)
            {
                std::optional<std::wstring> lValue = lEscaping.Unescape(lWalk.GetValue());
                lValue = lGate.HidesValue(lWalk.GetName(), *lValue) ? std::nullopt : std::move(lValue);
                lIsSelected = (lIsSelected || (lValue && mMatcher.IsIn(*lValue))) != mOptions.mIsInverted;
                hWrite(lIsSelected, [&] { AppendListLine(lPath.Get(), lValue, mForm, mText); });
                lPath.Leave();
            }
            else
            {
                lIsSelected = lIsSelected && !mOptions.mIsInverted;
                hWrite(lIsSelected, [&] { hAppendBag(lPath.Get()); });
                lGate.HidesBag(lWalk.GetName()) ? lWalk.Skip() : static_cast<void>(0);
            }
            lCount += lIsSelected ? 1 : 0;
        }
        return lCount;
    }

    template <class Append>
    void hWrite(bool iIsSelected, const Append& iAppend)
    {
        if (iIsSelected && !mOptions.mCounts && !mOptions.mListsFiles)
        {
            mText.clear();
            iAppend();
            mStreams.mOut << mText;
        }
    }

    void hAppendBag(const std::wstring& iPath)
    {
        mText += mForm.mPrefix;
        AppendListPath(iPath + L'/', mForm.mEnd, mText);
        mText += mForm.mEnd;
    }

    const GrepOptions& mOptions;
    const Streams& mStreams;
    TextMatcher mMatcher;
    ListForm mForm;
    std::string mText;
    bool mIsFound = false;
};

} // namespace

int Grep(const GrepOptions& iOptions, const Streams& iStreams)
{
    return Searcher(iOptions, iStreams).Run();
}

} // namespace TalBaseTool
