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
    std::string Draw(std::size_t iDepth, bool iIsLast)
    {
        mIsOver.resize(iDepth);
        std::string lText;
        for (std::size_t lLevel = 0; lLevel < std::min(iDepth, gMostBranches); ++lLevel)
        {
            lText += mIsOver[lLevel] ? "    " : "│   ";
        }
        if (iDepth > gMostBranches)
        {
            lText += "⋯ level " + std::to_string(iDepth + 1) + " ";
        }
        mIsOver.push_back(iIsLast);
        return lText + (iIsLast ? "└── " : "├── ");
    }

private:
    std::vector<bool> mIsOver; // for each level: whether its last line is drawn
};

class Tree
{
public:
    Tree(const ShowOptions& iOptions, const Document& iDocument, const Streams& iStreams)
        : mOptions(iOptions),
          mRoot(iDocument.mBag),
          mOut(iStreams.mOut),
          mPalette(iOptions.mColor, iStreams.mIsOutTerminal),
          mEscaping(mRoot->GetBeginDelimiter(), mRoot->GetEndDelimiter()),
          mGate(iDocument.mGate)
    {
    }

    void Draw()
    {
        mOut << mPalette.Paint(Style::Bag, ShowFile(mOptions.mFile)) << "  "
             << mPalette.Paint(Style::Quiet, "begin " + hQuote(mRoot->GetBeginDelimiter()) + ", end " +
                                                 hQuote(mRoot->GetEndDelimiter()) + "; " + CountContent(*mRoot))
             << '\n';
        Branches lBranches;
        for (BagWalk lWalk(mRoot); lWalk.Next();)
        {
            if (lWalk.GetStep() != Step::Leave)
            {
                mOut << mPalette.Paint(Style::Quiet, lBranches.Draw(lWalk.GetDepth(), lWalk.IsLast()));
                hDrawProperty(lWalk);
            }
        }
    }

private:
    std::string hQuote(const wchar_t* ipText) const
    {
        return "\"" + mGate.ShowDelimiter(ipText) + "\"";
    }

    void hDrawProperty(BagWalk& oWalk)
    {
        const bool lIsBag = oWalk.GetStep() == Step::Enter;
        const QBase::ReturnWString lStored = lIsBag ? QBase::ReturnWString(L"") : oWalk.GetValue();
        const std::wstring lValue = mOptions.mIsRaw ? std::wstring(lStored.c_str()) : mEscaping.Unescape(lStored);
        const bool lIsHidden = lIsBag ? mGate.HidesBag(oWalk.GetName()) : mGate.HidesValue(oWalk.GetName(), lValue);
        const std::string lName = mGate.ShowName(oWalk.GetName());
        mOut << mPalette.Paint(lIsBag ? Style::Bag : Style::Name, lName);
        if (lIsBag && (lIsHidden || hIsTooDeep(oWalk.GetDepth())))
        {
            oWalk.Skip();
        }
        if (lIsHidden)
        {
            mOut << (lIsBag ? "  " : " = ") << mPalette.Paint(Style::Quiet, gHidden) << '\n';
            return;
        }
        if (lIsBag)
        {
            mOut << "  " << mPalette.Paint(Style::Quiet, "(" + CountContent(*oWalk.GetBag()) + ")") << '\n';
            return;
        }
        mOut << " = " << ShowValue(lValue, mOptions.mLongest) << '\n';
    }

    bool hIsTooDeep(std::size_t iDepth) const
    {
        return mOptions.mMaxDepth && static_cast<std::size_t>(*mOptions.mMaxDepth) <= iDepth;
    }

    const ShowOptions& mOptions;
    BagPtr mRoot;
    std::ostream& mOut;
    Palette mPalette;
    Escaping mEscaping;
    Gate mGate;
};

} // namespace

int Show(const ShowOptions& iOptions, const Streams& iStreams)
{
    Tree(iOptions, Load(iOptions.mFile, iOptions.mPair, iOptions.mSecrets), iStreams).Draw();
    return ExitGood;
}

} // namespace TalBaseTool
