// The value at one path is written as it is there. What a pattern stands for, or one path in many bags, is written as
// rows: the file where there are many, the path, and the value. A pattern stands for plain values; a bag is meant with
// all that is in it where the pattern ends with its name.

#include "Commands/Commands.h"

#include "File/Files.h"
#include "File/TextOutput.h"
#include "Text/BagWalk.h"
#include "Text/Errors.h"
#include "Text/Escaping.h"
#include "Text/JsonText.h"
#include "Text/Listing.h"
#include "Text/PathPattern.h"
#include "Text/Text.h"

#include "TalBase/Views.h"

#include <algorithm>

namespace TalBaseTool
{

namespace
{

struct Row
{
    std::wstring mPath;
    std::optional<std::wstring> mValue; // none where it is hidden
};

using TakeRow = std::function<void(const Row&)>;

// What stands at a path; missing also where a plain value stands on the way.
Kind FindKindOrNone(const BagPtr& iRoot, const Path& iPath)
{
    try
    {
        return FindKind(iRoot, iPath);
    }
    catch (const DataError&)
    {
        return Kind::Missing;
    }
}

// Finds what a pattern stands for, as much as a gate shows.
class PatternWalk
{
public:
    PatternWalk(const PathPattern& iPattern, const BagPtr& iBag, const Gate& iGate)
        : mPattern(iPattern), mBag(iBag), mWalk(iBag), mGate(iGate), mPath(iGate), mPlaces{iPattern.Begin()}
    {
    }

    bool HasAny()
    {
        bool lIsFound = false;
        while (!lIsFound && mWalk.Next())
        {
            lIsFound = hStep();
        }
        return lIsFound;
    }

    void Find(bool iIsRaw, const TakeRow& iTake)
    {
        const Escaping lEscaping(mBag->GetBeginDelimiter(), mBag->GetEndDelimiter());
        while (mWalk.Next())
        {
            const bool lIsMatch = hStep();
            if (mWalk.GetStep() == Step::Plain && lIsMatch)
            {
                const QBase::ReturnWString lStored = mWalk.GetValue();
                const std::wstring lValue = iIsRaw ? std::wstring(lStored.c_str()) : lEscaping.Unescape(lStored);
                mPath.Enter(mWalk.GetName());
                iTake({mPath.Get(),
                       mGate.HidesValue(mWalk.GetName(), lValue) ? std::nullopt : std::make_optional(lValue)});
                mPath.Leave();
            }
            else if (mWalk.GetStep() == Step::Enter && mGate.HidesBag(mWalk.GetName()))
            {
                if (mInNamed > 0 || mPattern.TakesAll(mPlaces.back()))
                {
                    iTake({mPath.Get() + L'/', std::nullopt});
                }
                mWalk.Skip();
            }
        }
    }

private:
    // Returns whether the property is one that the pattern stands for.
    bool hStep()
    {
        if (mWalk.GetStep() == Step::Leave)
        {
            mPath.Leave();
            mPlaces.pop_back();
            mInNamed -= mInNamed > 0 ? 1 : 0;
            return false;
        }
        const PathPattern::Match lMatch = mPattern.Enter(mPlaces.back(), VisibleName(mGate, mWalk.GetName()));
        if (mWalk.GetStep() == Step::Plain)
        {
            return lMatch.mIsWhole || mInNamed > 0;
        }
        mPath.Enter(mWalk.GetName());
        mPlaces.push_back(lMatch.mNext);
        mInNamed += mInNamed > 0 || (lMatch.mIsWhole && mPattern.EndsWithName()) ? 1 : 0;
        if (mInNamed == 0 && PathPattern::TakesNone(lMatch.mNext))
        {
            mWalk.Skip();
        }
        return lMatch.mIsWhole;
    }

    const PathPattern& mPattern;
    BagPtr mBag;
    BagWalk mWalk;
    const Gate& mGate;
    ShownPath mPath;
    std::vector<PathPattern::Places> mPlaces; // in each bag around the step
    std::size_t mInNamed = 0;                 // bags around it, from one that the pattern names
};

// Writes rows in one of the formats.
class RowWriter
{
public:
    RowWriter(const GetOptions& iOptions, std::ostream& oOut) : mOptions(iOptions), mOut(oOut)
    {
        mForm.mEnd = iOptions.mEndsWithZero ? '\0' : '\n';
    }

    void Write(const std::string& iFile, bool iIsNamed, const Row& iRow)
    {
        mText.clear();
        switch (mOptions.mFormat.value_or(GetFormat::Lines))
        {
        case GetFormat::Lines:
            mForm.mPrefix = iIsNamed ? ShowFile(iFile) + ":" : "";
            AppendListLine(iRow.mPath, iRow.mValue, mForm, mText);
            break;
        case GetFormat::Json:
            hMakeJson(iFile, iIsNamed, iRow);
            break;
        case GetFormat::Table:
            hKeep(iFile, iIsNamed, iRow);
            break;
        }
        mOut << mText;
    }

    // A table is as wide as its widest row, so it comes at the end.
    void Finish()
    {
        if (mTable.size() > 1)
        {
            for (const Cells& lCells : mTable)
            {
                mOut << (mHasFiles ? hPadded(lCells.mFile, mFileWidth) : "") << hPadded(lCells.mPath, mPathWidth)
                     << lCells.mValue << mForm.mEnd;
            }
        }
    }

private:
    struct Cells
    {
        std::string mFile;
        std::string mPath;
        std::string mValue;
    };

    void hMakeJson(const std::string& iFile, bool iIsNamed, const Row& iRow)
    {
        mText += '{';
        if (iIsNamed)
        {
            mText += "\"file\":";
            AppendJsonString(ReadArgument(ShowFile(iFile), "the file"), mText);
            mText += ',';
        }
        mText += "\"path\":";
        AppendJsonString(iRow.mPath, mText);
        mText += iRow.mValue ? ",\"value\":" : ",\"hidden\":true";
        if (iRow.mValue)
        {
            AppendJsonString(*iRow.mValue, mText);
        }
        (mText += '}') += mForm.mEnd;
    }

    void hKeep(const std::string& iFile, bool iIsNamed, const Row& iRow)
    {
        mHasFiles = mHasFiles || iIsNamed;
        Cells lCells{ShowFile(iFile), ToUtf8(MakeControlsPrintable(iRow.mPath)), gHidden};
        if (iRow.mValue)
        {
            lCells.mValue = ToUtf8(MakePrintable(*iRow.mValue));
        }
        mFileWidth = std::max(mFileWidth, hWidth(lCells.mFile));
        mPathWidth = std::max(mPathWidth, hWidth(lCells.mPath));
        mTable.push_back(std::move(lCells));
    }

    static std::size_t hWidth(const std::string& iText)
    {
        return GetWidth(ReadArgument(iText, "a cell"));
    }

    static std::string hPadded(const std::string& iText, std::size_t iWidth)
    {
        return iText + std::string(iWidth - hWidth(iText) + 2, ' ');
    }

    const GetOptions& mOptions;
    std::ostream& mOut;
    ListForm mForm;
    std::string mText;
    std::vector<Cells> mTable{{"FILE", "PATH", "VALUE"}};
    bool mHasFiles = false;
    std::size_t mFileWidth = 4;
    std::size_t mPathWidth = 4;
};

class Getter
{
public:
    Getter(const GetOptions& iOptions, const Streams& iStreams)
        : mOptions(iOptions), mStreams(iStreams), mPattern(iOptions.mPath), mRows(iOptions, iStreams.mOut)
    {
        if (mPattern.IsPath())
        {
            mPath = mPattern.GetPath();
        }
        else if (iOptions.mDefault)
        {
            throw UsageError("--default goes with a path, not with a pattern");
        }
    }

    int Run()
    {
        const int lTrouble = ForEachBag(mOptions.mInputs, mStreams,
                                        [&](const Document& iDocument, bool iIsMany) { hTake(iDocument, iIsMany); });
        mRows.Finish();
        if (!mIsFound && lTrouble == ExitGood && !mStreams.mIsQuiet)
        {
            mStreams.mErr << "talbase: " << mWhyNot << '\n';
        }
        return lTrouble != ExitGood ? lTrouble : mIsFound ? ExitGood : ExitBad;
    }

private:
    void hTake(const Document& iDocument, bool iIsMany)
    {
        if (mPath && !iIsMany && !mOptions.mFormat)
        {
            hWriteOne(iDocument);
            return;
        }
        bool lIsHere = false;
        const TakeRow lTake = [&](const Row& iRow) {
            lIsHere = true;
            mRows.Write(iDocument.mFile, iIsMany, iRow);
        };
        const Kind lKind = mPath ? FindKindOrNone(iDocument.mBag, *mPath) : Kind::Missing;
        if (lKind == Kind::Plain) // it was asked for by its name
        {
            lTake({hJoin(*mPath), hReadPlain(iDocument.mBag)});
        }
        else if (!mPath || lKind == Kind::Bag)
        {
            hFindRows(iDocument, lTake);
        }
        if (!lIsHere && mOptions.mDefault)
        {
            lTake({ReadArgument(mOptions.mPath, "the path"), ReadArgument(*mOptions.mDefault, "--default")});
        }
        mIsFound = mIsFound || lIsHere;
        mWhyNot = (iIsMany ? "no bag has " : "there is no ") + ShowFile(mOptions.mPath);
    }

    void hFindRows(const Document& iDocument, const TakeRow& iTake) const
    {
        CheckIsShown(iDocument);
        const auto lHides = [&](const std::wstring& iName) { return iDocument.mGate.HidesBag(iName); };
        if (mPath && std::any_of(mPath->begin(), mPath->end(), lHides))
        {
            iTake({hJoin(*mPath) + L'/', std::nullopt});
            return;
        }
        PatternWalk(mPattern, iDocument.mBag, iDocument.mGate).Find(mOptions.mIsRaw, iTake);
    }

    static std::wstring hJoin(const Path& iPath)
    {
        std::wstring lText;
        for (const std::wstring& lName : iPath)
        {
            lText += (lText.empty() ? L"" : L"/") + QTalBase::AsPathStep(lName);
        }
        return lText;
    }

    std::wstring hReadPlain(const BagPtr& iRoot) const
    {
        const BagPtr lParent = FindParent(iRoot, *mPath);
        const QBase::ReturnWString lValue = lParent->GetProperty(mPath->back().c_str());
        return mOptions.mIsRaw ? Escaping(lParent->GetBeginDelimiter(), lParent->GetEndDelimiter()).Escape(lValue)
                               : std::wstring(lValue.c_str());
    }

    void hWriteOne(const Document& iDocument)
    {
        Kind lKind = Kind::Missing;
        mWhyNot = "there is no " + ShowPath(*mPath);
        try
        {
            lKind = FindKind(iDocument.mBag, *mPath);
        }
        catch (const DataError& lError) // a plain value on the way
        {
            mWhyNot = lError.what();
        }
        mIsFound = lKind != Kind::Missing || mOptions.mDefault;
        if (mIsFound)
        {
            hWrite(iDocument, lKind);
            mStreams.mOut << std::string(mOptions.mEndsWithZero || !mOptions.mHasNoLineEnd ? 1 : 0,
                                         mOptions.mEndsWithZero ? '\0' : '\n');
        }
    }

    void hWrite(const Document& iDocument, Kind iKind)
    {
        const auto lWrite = [&](std::string_view iBytes) { mStreams.mOut << iBytes; };
        switch (iKind)
        {
        case Kind::Missing:
            mStreams.mOut << *mOptions.mDefault;
            break;
        case Kind::Bag:
            WriteBag(FindParent(iDocument.mBag, *mPath)->GetPropertyBag(mPath->back().c_str()), iDocument.mHasHeader,
                     lWrite);
            break;
        case Kind::Plain:
            EncodeBlocks(hReadPlain(iDocument.mBag), lWrite);
            break;
        }
    }

    const GetOptions& mOptions;
    const Streams& mStreams;
    PathPattern mPattern;
    std::optional<Path> mPath; // where the pattern is one
    RowWriter mRows;
    bool mIsFound = false;
    std::string mWhyNot = "there is no bag";
};

} // namespace

int Get(const GetOptions& iOptions, const Streams& iStreams)
{
    return Getter(iOptions, iStreams).Run();
}

int Has(const HasOptions& iOptions, const Streams& iStreams)
{
    const PathPattern lPattern(iOptions.mPath);
    const std::optional<Path> lPath = lPattern.IsPath() ? std::make_optional(lPattern.GetPath()) : std::nullopt;
    bool lIsFound = false;
    const int lTrouble = ForEachBag(iOptions.mInputs, iStreams, [&](const Document& iDocument, bool iIsMany) {
        const Gate lOpen; // only whether it is there is told
        const bool lIsHere = lPath ? FindKindOrNone(iDocument.mBag, *lPath) != Kind::Missing
                                   : PatternWalk(lPattern, iDocument.mBag, lOpen).HasAny();
        if (lIsHere && iIsMany)
        {
            iStreams.mOut << ShowFile(iDocument.mFile) << (iOptions.mEndsWithZero ? '\0' : '\n');
        }
        lIsFound = lIsFound || lIsHere;
    });
    return lTrouble != ExitGood ? lTrouble : lIsFound ? ExitGood : ExitBad;
}

} // namespace TalBaseTool
