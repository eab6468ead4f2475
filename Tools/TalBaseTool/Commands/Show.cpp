#include "Commands/Commands.h"

#include "Text/BagWalk.h"
#include "Text/Errors.h"
#include "Text/Escaping.h"
#include "Text/Text.h"

#include <algorithm>

namespace TalBaseTool
{

namespace
{

constexpr std::size_t gLongest = 200;     // characters of a value
constexpr std::size_t gMostBranches = 40; // a tree that is deeper is drawn no wider

// "3 properties, 1 bag"
std::string CountContent(const QTalBase::PropertyBag& iBag)
{
    const std::size_t lCount = iBag.GetCount();
    std::size_t lBags = 0;
    while (lBags < lCount && iBag.IsEmbedded(static_cast<unsigned int>(lCount - lBags - 1)))
    {
        ++lBags;
    }
    if (lCount == 0)
    {
        return "empty";
    }
    const std::string lProperties = lBags < lCount ? Count(lCount - lBags, "property", "properties") : "";
    return lProperties + (lBags > 0 && lBags < lCount ? ", " : "") + (lBags > 0 ? Count(lBags, "bag") : "");
}

// The lines that lead from a line of the tree to those below it.
class Branches
{
public:
    // iColumns: of a whole line, of which half may be branches; 0 for as many as are wanted.
    explicit Branches(std::size_t iColumns)
        : mMost(iColumns == 0 ? gMostBranches : std::min(gMostBranches, iColumns / 2 / gBranch))
    {
    }

    std::string Draw(std::size_t iDepth, bool iIsLast)
    {
        mIsOver.resize(iDepth);
        std::string lText;
        for (std::size_t lLevel = 0; lLevel < std::min(iDepth, mMost); ++lLevel)
        {
            lText += mIsOver[lLevel] ? "    " : "│   ";
        }
        if (iDepth > mMost)
        {
            lText += "⋯ level " + std::to_string(iDepth + 1) + " ";
        }
        mIsOver.push_back(iIsLast);
        return lText + (iIsLast ? "└── " : "├── ");
    }

private:
    static constexpr std::size_t gBranch = 4; // columns of each

    std::size_t mMost;
    std::vector<bool> mIsOver; // for each level: whether its last line is drawn
};

class Tree
{
public:
    Tree(const ShowOptions& iOptions, const Document& iDocument, const Streams& iStreams)
        : mOptions(iOptions),
          mFile(iDocument.mFile),
          mRoot(iDocument.mBag),
          mOut(iStreams.mOut),
          mPalette(iOptions.mColor, iStreams.mIsOutTerminal),
          mEscaping(mRoot->GetBeginDelimiter(), mRoot->GetEndDelimiter()),
          mGate(iDocument.mGate),
          mWidth(iOptions.mLongest ? 0 : iStreams.mWidth), // whoever says how long values are means it
          mLongest(iOptions.mLongest.value_or(gLongest))
    {
    }

    void Draw()
    {
        LineSpace lLine(mWidth);
        mOut << mPalette.Paint(Style::Bag, lLine.Take(ShowFile(mFile))) << lLine.Take("  ")
             << mPalette.Paint(Style::Quiet, lLine.Take("begin " + hQuote(mRoot->GetBeginDelimiter()) + ", end " +
                                                        hQuote(mRoot->GetEndDelimiter()) + "; " + CountContent(*mRoot)))
             << '\n';
        Branches lBranches(mWidth);
        for (BagWalk lWalk(mRoot); lWalk.Next();)
        {
            if (lWalk.GetStep() != Step::Leave)
            {
                LineSpace lSpace(mWidth);
                const std::string lBranch = lSpace.Take(lBranches.Draw(lWalk.GetDepth(), lWalk.IsLast()));
                mOut << mPalette.Paint(Style::Quiet, lBranch);
                hDrawProperty(lWalk, lSpace);
            }
        }
    }

private:
    std::string hQuote(const wchar_t* ipText) const
    {
        return "\"" + mGate.ShowDelimiter(ipText) + "\"";
    }

    void hDrawProperty(BagWalk& oWalk, LineSpace& oLine)
    {
        const bool lIsBag = oWalk.GetStep() == Step::Enter;
        const QBase::ReturnWString lStored = lIsBag ? QBase::ReturnWString(L"") : oWalk.GetValue();
        const std::wstring lValue = mOptions.mIsRaw ? std::wstring(lStored.c_str()) : mEscaping.Unescape(lStored);
        const bool lIsHidden = lIsBag ? mGate.HidesBag(oWalk.GetName()) : mGate.HidesValue(oWalk.GetName(), lValue);
        const std::string lName = oLine.Take(mGate.ShowName(oWalk.GetName()));
        mOut << mPalette.Paint(lIsBag ? Style::Bag : Style::Name, lName);
        if (lIsBag && (lIsHidden || hIsTooDeep(oWalk.GetDepth())))
        {
            oWalk.Skip();
        }
        mOut << oLine.Take(lIsBag ? "  " : " = ");
        if (lIsHidden || lIsBag)
        {
            const std::string lText = lIsHidden ? gHidden : "(" + CountContent(*oWalk.GetBag()) + ")";
            mOut << mPalette.Paint(Style::Quiet, oLine.Take(lText)) << '\n';
            return;
        }
        mOut << oLine.Take(ShowValueIn(lValue, mLongest, oLine.GetLeft())) << '\n';
    }

    bool hIsTooDeep(std::size_t iDepth) const
    {
        return mOptions.mMaxDepth && static_cast<std::size_t>(*mOptions.mMaxDepth) <= iDepth;
    }

    const ShowOptions& mOptions;
    std::string mFile;
    BagPtr mRoot;
    std::ostream& mOut;
    Palette mPalette;
    Escaping mEscaping;
    Gate mGate;
    std::size_t mWidth; // of a line; 0 for any
    std::size_t mLongest;
};

} // namespace

int Show(const ShowOptions& iOptions, const Streams& iStreams)
{
    return ForEachBag(iOptions.mInputs, iStreams, [&](const Document& iDocument, bool) {
        Tree(iOptions, iDocument, iStreams).Draw();
        ReportHidden(iDocument.mFile, iDocument.mGate, iStreams.Remarks());
    });
}

} // namespace TalBaseTool
