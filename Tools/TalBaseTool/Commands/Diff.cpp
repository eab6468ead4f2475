// Two bags are compared by what a caller sees: the names, and the values with their escapes resolved, whatever the
// delimiters. Bags that both sides have are compared level by level, without recursion.
//
//   - Transport/Port = 21        only in the first bag, or different there
//   + Transport/Port = 2121      only in the second bag, or different there
//   > Host (place 3, was 1)      with --ordered: among the properties that both have

#include "Commands/Commands.h"

#include "Text/BagWalk.h"
#include "Text/Errors.h"
#include "Text/Escaping.h"
#include "Text/Text.h"

#include <algorithm>
#include <vector>

namespace TalBaseTool
{

namespace
{

constexpr std::size_t gLongest = 120; // characters of a value that are shown

// Marks those of the numbers that lie outside a longest ascending sequence: the fewest that have to move.
std::vector<bool> FindMoved(const std::vector<unsigned int>& iPlaces)
{
    constexpr std::size_t lNone = static_cast<std::size_t>(-1);
    std::vector<std::size_t> lLast; // for each length, where the sequence with the smallest end ends
    std::vector<std::size_t> lBefore(iPlaces.size(), lNone);
    for (std::size_t lIndex = 0; lIndex < iPlaces.size(); ++lIndex)
    {
        const auto lSpot =
            std::lower_bound(lLast.begin(), lLast.end(), iPlaces[lIndex],
                             [&](std::size_t iEnd, unsigned int iPlace) { return iPlaces[iEnd] < iPlace; });
        lBefore[lIndex] = lSpot == lLast.begin() ? lNone : *(lSpot - 1);
        if (lSpot == lLast.end())
        {
            lLast.push_back(lIndex);
        }
        else
        {
            *lSpot = lIndex;
        }
    }
    std::vector<bool> lIsMoved(iPlaces.size(), true);
    for (std::size_t lIndex = lLast.empty() ? lNone : lLast.back(); lIndex != lNone; lIndex = lBefore[lIndex])
    {
        lIsMoved[lIndex] = false;
    }
    return lIsMoved;
}

// One of the two bags, and how its values are read.
struct Side
{
    explicit Side(const Document& iDocument)
        : mBag(iDocument.mBag), mEscaping(mBag->GetBeginDelimiter(), mBag->GetEndDelimiter())
    {
    }

    BagPtr mBag;
    Escaping mEscaping;
};

class Comparison
{
public:
    Comparison(const DiffOptions& iOptions, const Document& iFirst, const Document& iSecond, const Streams& iStreams)
        : mOptions(iOptions),
          mFirst(iFirst),
          mSecond(iSecond),
          mGate(iFirst.mGate),
          mOut(iStreams.mOut),
          mPalette(iOptions.mColor, iStreams.mIsOutTerminal)
    {
        mGate.Join(iSecond.mGate);
    }

    // Returns the number of differences.
    std::size_t Run()
    {
        mLevels.push_back({gNone, mFirst.mBag, mSecond.mBag});
        while (!mLevels.empty())
        {
            const Level lLevel = std::move(mLevels.back());
            mLevels.pop_back();
            const std::size_t lCount = mLevels.size();
            hCompare(lLevel);
            std::reverse(mLevels.begin() + static_cast<std::ptrdiff_t>(lCount), mLevels.end()); // the first one next
        }
        return mCount;
    }

private:
    // A bag on the way to a property, and the place of the bag around it. Whole paths are put together only where they
    // are shown, because a deep bag has long ones.
    struct Nest
    {
        std::wstring mName;
        std::size_t mAround; // gNone for the outermost bag
        std::size_t mDepth;
        bool mIsHidden; // with all that is in it
    };

    struct Level
    {
        std::size_t mNest; // gNone for the outermost
        BagPtr mFirst;
        BagPtr mSecond;
    };

    static constexpr std::size_t gNone = static_cast<std::size_t>(-1);

    std::size_t hAddNest(std::size_t iAround, const std::wstring& iName)
    {
        const std::size_t lDepth = iAround != gNone ? mNests[iAround].mDepth + 1 : 1;
        mNests.push_back({iName, iAround, lDepth, hIsHidden(iAround, iName)});
        return mNests.size() - 1;
    }

    // The path of a property; of a deep one, its level and the last names.
    std::string hShowPath(std::size_t iNest, const std::wstring& iName) const
    {
        Path lPath{iName};
        std::size_t lNest = iNest;
        for (; lNest != gNone && lPath.size() < gMostNames; lNest = mNests[lNest].mAround)
        {
            lPath.push_back(mNests[lNest].mName);
        }
        std::reverse(lPath.begin(), lPath.end());
        return mGate.ShowPath(lPath, iNest != gNone ? mNests[iNest].mDepth + 1 : 1, hIsNestHidden(lNest));
    }

    bool hIsNestHidden(std::size_t iNest) const
    {
        return iNest != gNone && mNests[iNest].mIsHidden;
    }

    void hCompare(const Level& iLevel)
    {
        const NameIndex lNames(*iLevel.mSecond);
        std::vector<bool> lIsMatched(iLevel.mSecond->GetCount());
        std::vector<unsigned int> lPlaces; // in the second bag, of what both have
        std::vector<std::wstring> lCommon; // their names
        for (unsigned int lIndex = 0; lIndex < iLevel.mFirst->GetCount(); ++lIndex)
        {
            const std::wstring lName = iLevel.mFirst->GetName(lIndex).c_str();
            const unsigned int lOther = lNames.Find(lName);
            if (lOther == NameIndex::gNone || iLevel.mFirst->IsEmbedded(lIndex) != iLevel.mSecond->IsEmbedded(lOther))
            {
                hReportWhole('-', mFirst, iLevel.mNest, *iLevel.mFirst, lIndex);
                continue;
            }
            lIsMatched[lOther] = true;
            lPlaces.push_back(lOther);
            lCommon.push_back(lName);
            hCompareProperty(iLevel, lName, lIndex, lOther);
        }
        for (unsigned int lIndex = 0; lIndex < iLevel.mSecond->GetCount(); ++lIndex)
        {
            if (!lIsMatched[lIndex])
            {
                hReportWhole('+', mSecond, iLevel.mNest, *iLevel.mSecond, lIndex);
            }
        }
        if (mOptions.mIsOrdered)
        {
            hReportMoved(iLevel, lCommon, lPlaces);
        }
    }

    void hCompareProperty(const Level& iLevel, const std::wstring& iName, unsigned int iFirst, unsigned int iSecond)
    {
        if (iLevel.mFirst->IsEmbedded(iFirst))
        {
            mLevels.push_back({hAddNest(iLevel.mNest, iName), iLevel.mFirst->GetValuePropertyBag(iFirst),
                               iLevel.mSecond->GetValuePropertyBag(iSecond)});
            return;
        }
        const std::wstring lFirst = mFirst.mEscaping.Unescape(iLevel.mFirst->GetValue(iFirst));
        const std::wstring lSecond = mSecond.mEscaping.Unescape(iLevel.mSecond->GetValue(iSecond));
        if (lFirst != lSecond)
        {
            ++mCount;
            const std::size_t lPlace = static_cast<std::size_t>(
                std::mismatch(lFirst.begin(), lFirst.end(), lSecond.begin(), lSecond.end()).first - lFirst.begin());
            hWriteLine('-', iLevel.mNest, iName, lFirst, lPlace);
            hWriteLine('+', iLevel.mNest, iName, lSecond, lPlace);
        }
    }

    // A property that only one side has; of a bag, everything that it holds.
    void hReportWhole(char iSign, const Side& iSide, std::size_t iNest, const QTalBase::PropertyBag& iBag,
                      unsigned int iIndex)
    {
        ++mCount;
        const std::wstring lName = iBag.GetName(iIndex).c_str();
        if (!iBag.IsEmbedded(iIndex))
        {
            hWriteLine(iSign, iNest, lName, iSide.mEscaping.Unescape(iBag.GetValue(iIndex)), 0);
            return;
        }
        hWrite(iSign, hShowPath(iNest, lName) + "/");
        if (!hIsHidden(iNest, lName))
        {
            const std::size_t lCount = mNests.size();
            hReportContent(iSign, iSide, hAddNest(iNest, lName), iBag.GetValuePropertyBag(iIndex));
            mNests.resize(lCount);
        }
    }

    void hReportContent(char iSign, const Side& iSide, std::size_t iNest, const BagPtr& iBag)
    {
        std::size_t lNest = iNest;
        for (BagWalk lWalk(iBag); lWalk.Next();)
        {
            const std::wstring lName = lWalk.GetName();
            switch (lWalk.GetStep())
            {
            case Step::Plain:
                hWriteLine(iSign, lNest, lName, iSide.mEscaping.Unescape(lWalk.GetValue()), 0);
                break;
            case Step::Enter:
                hWrite(iSign, hShowPath(lNest, lName) + "/");
                lNest = hAddNest(lNest, lName);
                if (mNests[lNest].mIsHidden)
                {
                    lWalk.Skip();
                }
                break;
            case Step::Leave:
                lNest = mNests[lNest].mAround;
                mNests.pop_back();
                break;
            }
        }
    }

    // Places are counted among the properties that both sides have.
    void hReportMoved(const Level& iLevel, const std::vector<std::wstring>& iNames,
                      const std::vector<unsigned int>& iPlaces)
    {
        std::vector<unsigned int> lSorted = iPlaces;
        std::sort(lSorted.begin(), lSorted.end());
        const std::vector<bool> lIsMoved = FindMoved(iPlaces);
        for (std::size_t lIndex = 0; lIndex < iPlaces.size(); ++lIndex)
        {
            if (lIsMoved[lIndex])
            {
                const auto lRank = std::lower_bound(lSorted.begin(), lSorted.end(), iPlaces[lIndex]) - lSorted.begin();
                ++mCount;
                hWrite('>', hShowPath(iLevel.mNest, iNames[lIndex]) + " (place " + std::to_string(lRank + 1) +
                                ", was " + std::to_string(lIndex + 1) + ")");
            }
        }
    }

    // Whether the property, or a bag around it, is sensitive.
    bool hIsHidden(std::size_t iNest, const std::wstring& iName) const
    {
        return hIsNestHidden(iNest) || mGate.HidesBag(iName);
    }

    void hWriteLine(char iSign, std::size_t iNest, const std::wstring& iName, const std::wstring& iValue,
                    std::size_t iPlace)
    {
        const bool lIsHidden = hIsHidden(iNest, iName) || mGate.HidesValue(iName, iValue);
        const std::string lValue = lIsHidden ? std::string(gHidden) : ShowValueAround(iValue, iPlace, gLongest);
        hWrite(iSign, hShowPath(iNest, iName) + " = " + lValue);
    }

    void hWrite(char iSign, const std::string& iText)
    {
        const Style lStyle = iSign == '-' ? Style::Removed : iSign == '+' ? Style::Added : Style::Moved;
        mOut << mPalette.Paint(lStyle, std::string(1, iSign) + " " + iText) << '\n';
    }

    const DiffOptions& mOptions;
    Side mFirst;
    Side mSecond;
    Gate mGate; // for both
    std::ostream& mOut;
    Palette mPalette;
    std::vector<Level> mLevels; // still to be compared, the next one last
    std::vector<Nest> mNests;
    std::size_t mCount = 0;
};

} // namespace

int Diff(const DiffOptions& iOptions, const Streams& iStreams)
{
    if (iOptions.mFile == "-" && iOptions.mOther == "-")
    {
        throw UsageError("standard input can be read only once");
    }
    const Document lFirst = Load(iOptions.mFile, iOptions.mPair, iOptions.mSecrets);
    const Document lSecond = Load(iOptions.mOther, iOptions.mPair, iOptions.mSecrets);
    ReportHidden(iOptions.mFile, lFirst.mGate, iStreams.Remarks());
    ReportHidden(iOptions.mOther, lSecond.mGate, iStreams.Remarks());
    return Comparison(iOptions, lFirst, lSecond, iStreams).Run() == 0 ? ExitGood : ExitBad;
}

} // namespace TalBaseTool
