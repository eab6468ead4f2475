#include "Text/Listing.h"

#include "Text/BagWalk.h"
#include "Text/Display.h"
#include "Text/Errors.h"
#include "Text/Escaping.h"
#include "Text/JsonText.h"
#include "Text/Messages.h"
#include "Text/Place.h"
#include "Text/Text.h"
#include "Text/TextBuilder.h"

#include "QBase/Convert.h"
#include "QBase/Message.h"
#include "TalBase/Views.h"

#include <algorithm>
#include <map>
#include <utility>

namespace TalBaseTool
{

namespace
{

constexpr std::wstring_view gEquals = L" = ";
constexpr std::wstring_view gMask = L"(hidden)";
constexpr std::wstring_view gHeadBegin = L"# begin ";
constexpr std::wstring_view gHeadEnd = L", end ";
constexpr std::wstring_view gNoHeader = L", no header";
constexpr std::wstring_view gLineEnd = L", line end ";
constexpr std::size_t gSmall = 2048;   // most bags have no longer list
constexpr std::size_t gSmallPath = 64; // nor longer paths
constexpr std::size_t gBlock = std::size_t{1} << 16;

bool BeginsWith(std::wstring_view iText, std::wstring_view iBegin)
{
    return iText.substr(0, iBegin.size()) == iBegin;
}

bool IsBlank(wchar_t iCharacter)
{
    return iCharacter == L' ' || iCharacter == L'\u00A0' || iCharacter == L'\u1680' ||
           (iCharacter >= L'\u2000' && iCharacter <= L'\u200A') || iCharacter == L'\u202F' || iCharacter == L'\u205F' ||
           iCharacter == L'\u3000';
}

// Whether a person would not see all of it in a line.
bool IsUnclear(std::wstring_view iText)
{
    unsigned int lOthers = 0;
    for (const wchar_t lCharacter : iText) // the compiler takes many at a time
    {
        lOthers |= static_cast<unsigned int>(static_cast<unsigned int>(lCharacter) - L' ' > L'~' - L' ');
    }
    return IsBlank(iText.front()) || IsBlank(iText.back()) ||
           (lOthers != 0 && std::any_of(iText.begin(), iText.end(), IsInvisible));
}

bool PathWantsQuotes(std::wstring_view iPath, char iEnd)
{
    const std::size_t lEquals = iPath.find(L" =");
    return iPath.empty() || iPath.front() == L'"' || iPath.front() == L'#' || (iEnd != '\0' && IsUnclear(iPath)) ||
           (lEquals != std::wstring_view::npos &&
            (iPath.find(gEquals) != std::wstring_view::npos || iPath.substr(iPath.size() - 2) == L" ="));
}

bool ValueWantsQuotes(std::wstring_view iValue, char iEnd)
{
    return iValue.empty() || iValue.front() == L'"' || BeginsWith(iValue, gMask) || (iEnd != '\0' && IsUnclear(iValue));
}

// Most names and values need no quotes. These append one of those as it is, and nothing of any other.
bool AppendPlainPath(std::wstring_view iPath, std::string& oUtf8)
{
    return !iPath.empty() && iPath.front() != L'"' && iPath.front() != L'#' &&
           AppendPlain(iPath, oUtf8, [](wchar_t iOne) { return iOne != L' '; });
}

bool AppendPlainName(std::wstring_view iName, std::string& oUtf8)
{
    return !iName.empty() && iName.front() != L'"' && iName.front() != L'#' &&
           AppendPlain(iName, oUtf8, [](wchar_t iOne) { return (iOne != L' ') & (iOne != L'/') & (iOne != L'\\'); });
}

bool AppendPlainValue(std::wstring_view iValue, std::string& oUtf8)
{
    return !iValue.empty() && iValue.front() != L'"' && iValue.front() != gMask.front() && iValue.front() != L' ' &&
           iValue.back() != L' ' && AppendPlain(iValue, oUtf8, [](wchar_t) { return true; });
}

// Writing

class ListWriter
{
public:
    ListWriter(const BagPtr& iBag, const Gate& iGate, const ListForm& iForm,
               const std::function<void(std::string_view)>& iTake)
        : mWalk(iBag),
          mEscaping(iBag->GetBeginDelimiter(), iBag->GetEndDelimiter()),
          mGate(iGate),
          mForm(iForm),
          mTake(iTake),
          mPath(iGate)
    {
    }

    void Write(const ListHead& iHead)
    {
        mText.reserve(gSmall);
        hWriteHead(iHead);
        while (mWalk.Next())
        {
            hWriteStep();
            if (mText.size() > gBlock && !mForm.mIsSorted)
            {
                hFlush();
            }
        }
        if (mForm.mIsSorted)
        {
            hSort();
        }
        hFlush();
    }

private:
    // Where a line is, with what it is sorted by: the names with zeros between them, which are smaller than any
    // character.
    struct SortedLine
    {
        std::wstring mNames;
        std::size_t mStart;
        std::size_t mStop;
    };

    void hWriteHead(const ListHead& iHead)
    {
        mText.append(mForm.mPrefix).append("# begin ");
        AppendJsonString(iHead.mPair.mBegin, mText);
        AppendUtf8(gHeadEnd, mText);
        AppendJsonString(iHead.mPair.mEnd, mText);
        AppendUtf8(iHead.mHasHeader ? L"" : gNoHeader, mText);
        if (!iHead.mLineEnd.empty())
        {
            AppendUtf8(gLineEnd, mText);
            AppendJsonString(iHead.mLineEnd, mText);
        }
        mText += mForm.mEnd;
        mHead = mText.size();
        mLineStart = mHead;
    }

    void hWriteStep()
    {
        switch (mWalk.GetStep())
        {
        case Step::Plain:
            hBeginLine();
            hWriteValue();
            hEndLine();
            break;
        case Step::Enter:
            hEnter();
            if (mGate.HidesBag(mWalk.GetName()))
            {
                mText += mForm.mPrefix;
                AppendListPath(mPath.Get() + L'/', mForm.mEnd, mText);
                mText.append(" = ").append(gHidden);
                hEndLine();
                mWalk.Skip(); // the step that leaves the bag comes next
            }
            break;
        case Step::Leave:
            hLeave();
            break;
        }
    }

    void hEnter()
    {
        mPath.Enter(mWalk.GetName());
        mHasBeginning = false;
        if (mForm.mIsSorted)
        {
            mNames.append(mWalk.GetName()) += L'\0';
        }
    }

    void hLeave()
    {
        mPath.Leave();
        mHasBeginning = false;
        if (mForm.mIsSorted)
        {
            mNames.resize(mNames.size() - std::wcslen(mWalk.GetName()) - 1);
        }
    }

    // The line of a plain property up to its value.
    void hBeginLine()
    {
        if (!mHasBeginning)
        {
            hMakeBeginning();
        }
        const std::size_t lSize = mText.size();
        mText += mBeginning;
        const std::wstring_view lName = mWalk.GetName();
        if (!mIsBeginningPlain || mGate.HidesName(lName) || !AppendPlainName(lName, mText))
        {
            mText.resize(lSize);
            mText += mForm.mPrefix;
            mPath.Enter(mWalk.GetName());
            AppendListPath(mPath.Get(), mForm.mEnd, mText);
            mPath.Leave();
        }
        mText += " = ";
    }

    // Only when a line needs it, which is no shorter: in a deep bag it would else take more time than what is written.
    void hMakeBeginning()
    {
        mBeginning = mForm.mPrefix;
        mIsBeginningPlain = mPath.Get().empty() || AppendPlainPath(mPath.Get(), mBeginning);
        mBeginning += mPath.Get().empty() ? "" : "/";
        mHasBeginning = true;
    }

    void hWriteValue()
    {
        const QBase::ReturnWString lStored = mWalk.GetValue();
        const std::wstring_view lView = lStored;
        const std::wstring lEscaped = mEscaping.HoldsEscape(lView) ? mEscaping.Unescape(lView) : std::wstring();
        const std::wstring_view lValue = lEscaped.empty() ? lView : std::wstring_view(lEscaped);
        if (mGate.HidesValue(mWalk.GetName(), lValue))
        {
            mText += gHidden;
        }
        else
        {
            AppendListValue(lValue, mForm.mEnd, mText);
        }
    }

    void hEndLine()
    {
        mText += mForm.mEnd;
        if (mForm.mIsSorted)
        {
            const bool lIsBag = mWalk.GetStep() == Step::Enter; // whose name is there already
            mLines.push_back({lIsBag ? mNames : mNames + mWalk.GetName() + L'\0', mLineStart, mText.size()});
            mLineStart = mText.size();
        }
    }

    void hSort()
    {
        std::sort(mLines.begin(), mLines.end(),
                  [](const SortedLine& iLeft, const SortedLine& iRight) { return iLeft.mNames < iRight.mNames; });
        std::string lText(mText, 0, mHead);
        for (const SortedLine& lLine : mLines)
        {
            lText.append(mText, lLine.mStart, lLine.mStop - lLine.mStart);
        }
        mText = std::move(lText);
    }

    void hFlush()
    {
        mTake(mText);
        mText.clear();
    }

    BagWalk mWalk;
    Escaping mEscaping;
    const Gate& mGate;
    const ListForm& mForm;
    const std::function<void(std::string_view)>& mTake;
    ShownPath mPath;        // of the bag around the step
    std::wstring mNames;    // of the same, each with a zero behind it
    std::string mBeginning; // of the lines of its properties
    bool mHasBeginning = false;
    bool mIsBeginningPlain = false;
    std::string mText;
    std::size_t mHead = 0;      // behind the first line
    std::size_t mLineStart = 0; // of the line that is written
    std::vector<SortedLine> mLines;
};

// Reading

class ListReader
{
public:
    ListReader(const std::string& iFile, char iEnd) : mFile(iFile), mEnd(iEnd) {}

    List Read(std::wstring_view iText)
    {
        for (std::size_t lStart = 0; lStart < iText.size();)
        {
            const std::size_t lStop = std::min(iText.find(static_cast<wchar_t>(mEnd), lStart), iText.size());
            hReadLine(iText.substr(lStart, lStop - lStart));
            lStart = lStop + 1;
        }
        return std::move(mList);
    }

private:
    void hReadLine(std::wstring_view iLine)
    {
        ++mNumber;
        mLine = iLine;
        if (mEnd != '\0' && !mLine.empty() && mLine.back() == L'\r') // another system's
        {
            mLine.remove_suffix(1);
        }
        if (mLine.empty() || mLine.front() == L'#')
        {
            if (mNumber == 1 && BeginsWith(mLine, gHeadBegin))
            {
                hReadHead();
            }
            return;
        }
        ListLine lRead;
        lRead.mNumber = mNumber;
        std::size_t lPlace = 0;
        const bool lIsBag = hReadPath(lPlace, lRead.mPath);
        hReadValue(lPlace, lIsBag, lRead);
        mList.mLines.push_back(std::move(lRead));
    }

    void hReadHead()
    {
        ListHead lHead;
        std::size_t lPlace = 0;
        hPass(lPlace, gHeadBegin);
        lHead.mPair.mBegin = hReadQuoted(lPlace);
        if (!hPass(lPlace, gHeadEnd))
        {
            hThrow(lPlace, "the first line names the delimiters: # begin \"++++\", end \"***\"");
        }
        lHead.mPair.mEnd = hReadQuoted(lPlace);
        lHead.mHasHeader = !hPass(lPlace, gNoHeader);
        if (hPass(lPlace, gLineEnd))
        {
            lHead.mLineEnd = hReadQuoted(lPlace);
        }
        if (lPlace < mLine.size())
        {
            hThrow(lPlace, "this is not expected behind the delimiters");
        }
        mList.mHead = std::move(lHead);
    }

    // Goes over a text where it stands there.
    bool hPass(std::size_t& oPlace, std::wstring_view iText) const
    {
        const bool lIsThere = BeginsWith(mLine.substr(oPlace), iText);
        oPlace += lIsThere ? iText.size() : 0;
        return lIsThere;
    }

    std::wstring hReadQuoted(std::size_t& oPlace) const
    {
        const std::wstring_view lRest = mLine.substr(oPlace);
        const std::size_t lStop = BeginsWith(lRest, L"\"") ? FindJsonStringEnd(lRest) : std::wstring_view::npos;
        const std::optional<std::wstring> lText =
            lStop != std::wstring_view::npos ? ReadJsonString(lRest.substr(0, lStop)) : std::nullopt;
        if (!lText)
        {
            hThrow(oPlace, "this is no JSON string");
        }
        if (lText->find(L'\0') != std::wstring::npos)
        {
            hThrow(oPlace, "a zero character, which ends a text form");
        }
        oPlace += lStop;
        return *lText;
    }

    // Returns whether the path is one of a whole bag.
    bool hReadPath(std::size_t& oPlace, Path& oPath) const
    {
        std::wstring lText;
        if (mLine.front() == L'"')
        {
            lText = hReadQuoted(oPlace);
        }
        else
        {
            oPlace = std::min(mLine.find(gEquals), mLine.size());
            lText = mLine.substr(0, oPlace);
        }
        const bool lIsQuoted = mLine.front() == L'"';
        if (!hPass(oPlace, gEquals))
        {
            hThrow(lIsQuoted ? oPlace : 0, "a line is 'path = value', and ' = ' is missing");
        }
        if (!lIsQuoted)
        {
            hCheckIsClear(0, lText, "a path");
        }
        try
        {
            for (QTalBase::Paths::Step& lStep : QTalBase::Paths::Read(lText))
            {
                oPath.push_back(std::move(lStep.mName));
            }
        }
        catch (const QBase::Message&)
        {
            hThrow(0, "the path has a \\ that is neither \\/ (for a / in a name) nor \\\\");
        }
        const bool lIsBag = oPath.size() > 1 && oPath.back().empty();
        if (lIsBag)
        {
            oPath.pop_back();
        }
        if (std::find(oPath.begin(), oPath.end(), std::wstring()) != oPath.end())
        {
            hThrow(0, "the path has an empty name");
        }
        return lIsBag;
    }

    void hReadValue(std::size_t iPlace, bool iIsBag, ListLine& oLine) const
    {
        const std::wstring_view lRest = mLine.substr(iPlace);
        if (lRest == gMask)
        {
            oLine.mKind = iIsBag ? ListLineKind::HiddenBag : ListLineKind::HiddenValue;
            return;
        }
        if (iIsBag)
        {
            hThrow(0, "a path that ends with / is a bag's, and has no value");
        }
        std::size_t lPlace = iPlace;
        if (BeginsWith(lRest, L"\""))
        {
            oLine.mValue = hReadQuoted(lPlace);
            if (lPlace < mLine.size())
            {
                hThrow(lPlace, "something stands behind the quotes");
            }
        }
        else
        {
            hCheckIsClear(iPlace, lRest, "a value");
            oLine.mValue = lRest;
        }
        if (oLine.mValue.empty())
        {
            hThrow(iPlace, "a bag cannot hold an empty value");
        }
    }

    // Nobody may be misled by what is not seen.
    void hCheckIsClear(std::size_t iPlace, std::wstring_view iText, const char* ipWhat) const
    {
        if (mEnd != '\0' && !iText.empty() && IsUnclear(iText))
        {
            hThrow(iPlace, std::string(ipWhat) +
                               " with a blank at an end or with a control or invisible character needs quotes");
        }
    }

    [[noreturn]] void hThrow(std::size_t iPlace, const std::string& iWhat) const
    {
        throw TextError(ShowPlace(mFile, {mNumber, iPlace + 1}) + iWhat);
    }

    const std::string& mFile;
    char mEnd;
    std::size_t mNumber = 0;
    std::wstring_view mLine;
    List mList;
};

Fault AddHidden(const HiddenProperty& iProperty, TextBuilder& oBuilder)
{
    if (!iProperty.mBag)
    {
        return oBuilder.AddStored(iProperty.mName, iProperty.mStored);
    }
    Fault lFault = oBuilder.OpenBag(iProperty.mName);
    for (BagWalk lWalk(iProperty.mBag); lFault == Fault::None && lWalk.Next();)
    {
        switch (lWalk.GetStep())
        {
        case Step::Plain:
            lFault = oBuilder.AddStored(lWalk.GetName(), lWalk.GetValue());
            break;
        case Step::Enter:
            lFault = oBuilder.OpenBag(lWalk.GetName());
            break;
        case Step::Leave:
            oBuilder.CloseBag();
        }
    }
    if (lFault == Fault::None)
    {
        oBuilder.CloseBag();
    }
    return lFault;
}

// The properties of a list, put together bag by bag. Kept in one vector, without recursion: paths may be long.
class ListTree
{
public:
    explicit ListTree(const std::string& iFile) : mFile(iFile), mNodes(1) {}

    void Add(const ListLine& iLine)
    {
        std::size_t lNode = 0;
        for (std::size_t lIndex = 0; lIndex < iLine.mPath.size(); ++lIndex)
        {
            lNode = hEnter(lNode, iLine.mPath[lIndex], iLine, lIndex + 1 == iLine.mPath.size());
        }
        mNodes[lNode].mLine = &iLine;
    }

    // Hands the properties to a builder, in the order of the list.
    void Build(TextBuilder& oBuilder, const FindHidden& iFindHidden) const
    {
        for (std::size_t lNode = mNodes[0].mFirst; lNode != 0;)
        {
            const Node& lIt = mNodes[lNode];
            const bool lIsBag = lIt.mFirst != 0;
            const Fault lFault = lIsBag ? oBuilder.OpenBag(*lIt.mName)
                                 : lIt.mLine->mKind == ListLineKind::Value
                                     ? oBuilder.AddPlain(*lIt.mName, lIt.mLine->mValue)
                                     : AddHidden(hFind(*lIt.mLine, iFindHidden), oBuilder);
            if (lFault != Fault::None)
            {
                throw TextError(ShowPlace(mFile, {lIt.mFirstLine, 1}) + "with these delimiters it would be " +
                                Describe(lFault));
            }
            lNode = lIsBag ? lIt.mFirst : hGoOn(lNode, oBuilder);
        }
    }

private:
    struct Node
    {
        const std::wstring* mName = nullptr; // of a line's path
        const ListLine* mLine = nullptr;     // of a property that stands there itself
        std::size_t mFirstLine = 0;          // that names it
        std::size_t mParent = 0;
        std::size_t mFirst = 0; // of its properties, or 0
        std::size_t mLast = 0;
        std::size_t mNext = 0; // in the same bag, or 0
    };

    using Key = std::pair<std::size_t, std::wstring_view>; // of the bag, and a name in it

    std::size_t hEnter(std::size_t iParent, const std::wstring& iName, const ListLine& iLine, bool iIsLast)
    {
        const auto [lFound, lIsNew] = mKnown.emplace(Key{iParent, iName}, mNodes.size());
        const std::size_t lIndex = lFound->second;
        if (lIsNew)
        {
            mNodes.push_back(Node{&iName, nullptr, iLine.mNumber, iParent, 0, 0, 0});
            Node& lParent = mNodes[iParent];
            (lParent.mFirst == 0 ? lParent.mFirst : mNodes[lParent.mLast].mNext) = lIndex;
            lParent.mLast = lIndex;
            return lIndex;
        }
        const Node& lNode = mNodes[lIndex];
        const std::string lOther = "line " + std::to_string(lNode.mFirstLine);
        if (iIsLast || lNode.mLine != nullptr)
        {
            throw TextError(ShowPlace(mFile, {iLine.mNumber, 1}) +
                            (!iIsLast                 ? "a part of this path is a property itself in " + lOther
                             : lNode.mLine != nullptr ? "this path stands in " + lOther + " already"
                                                      : "this path is a bag's since " + lOther));
        }
        return lIndex;
    }

    const HiddenProperty& hFind(const ListLine& iLine, const FindHidden& iFindHidden) const
    {
        const HiddenProperty* const lProperty = iFindHidden(iLine);
        if (lProperty == nullptr)
        {
            throw TextError(ShowPlace(mFile, {iLine.mNumber, 1}) +
                            "nothing is masked at this path; a masked line cannot be added, moved or renamed");
        }
        return *lProperty;
    }

    // The property behind one, with the bags that end there.
    std::size_t hGoOn(std::size_t iNode, TextBuilder& oBuilder) const
    {
        while (iNode != 0 && mNodes[iNode].mNext == 0)
        {
            iNode = mNodes[iNode].mParent;
            if (iNode != 0)
            {
                oBuilder.CloseBag();
            }
        }
        return iNode != 0 ? mNodes[iNode].mNext : 0;
    }

    const std::string& mFile;
    std::vector<Node> mNodes;          // the outermost bag is the first
    std::map<Key, std::size_t> mKnown; // not by a hash: somebody could choose names that have the same one
};

} // namespace

void WriteList(const BagPtr& iBag, const ListHead& iHead, const Gate& iGate, const ListForm& iForm,
               const std::function<void(std::string_view)>& iTake)
{
    if (iGate.GetOpening() == Gate::Opening::Nothing)
    {
        throw DataError(iGate.GetReason());
    }
    ListWriter(iBag, iGate, iForm, iTake).Write(iHead);
}

std::wstring VisibleName(const Gate& iGate, const wchar_t* ipName)
{
    std::wstring lName = ipName;
    if (iGate.HidesName(ipName))
    {
        const std::string lShown = iGate.ShowName(ipName);
        lName = QBase::UTF8ToWideChar(lShown.substr(0, lShown.rfind(gHidden)), false);
    }
    return lName;
}

ShownPath::ShownPath(const Gate& iGate) : mGate(iGate)
{
    mPath.reserve(gSmallPath);
    mStarts.reserve(gSmallPath);
}

void ShownPath::Enter(const wchar_t* ipName)
{
    mStarts.push_back(mPath.size());
    if (!mPath.empty())
    {
        mPath += L'/';
    }
    const std::wstring_view lName = ipName;
    if (mGate.HidesName(lName))
    {
        mPath += QTalBase::AsPathStep(QBase::UTF8ToWideChar(mGate.ShowName(lName), false));
    }
    else if (lName.find(L'/') == std::wstring_view::npos && lName.find(L'\\') == std::wstring_view::npos) // mostly
    {
        mPath += lName;
    }
    else
    {
        mPath += QTalBase::AsPathStep(lName);
    }
}

void ShownPath::Leave()
{
    mPath.resize(mStarts.back());
    mStarts.pop_back();
}

void AppendListPath(std::wstring_view iPath, char iEnd, std::string& oUtf8)
{
    if (!AppendPlainPath(iPath, oUtf8))
    {
        PathWantsQuotes(iPath, iEnd) ? AppendJsonString(iPath, oUtf8) : AppendUtf8(iPath, oUtf8);
    }
}

void AppendListValue(std::wstring_view iValue, char iEnd, std::string& oUtf8)
{
    if (!AppendPlainValue(iValue, oUtf8))
    {
        ValueWantsQuotes(iValue, iEnd) ? AppendJsonString(iValue, oUtf8) : AppendUtf8(iValue, oUtf8);
    }
}

void AppendListLine(std::wstring_view iPath, const std::optional<std::wstring>& iValue, const ListForm& iForm,
                    std::string& oUtf8)
{
    oUtf8 += iForm.mPrefix;
    AppendListPath(iPath, iForm.mEnd, oUtf8);
    oUtf8 += " = ";
    iValue ? AppendListValue(*iValue, iForm.mEnd, oUtf8) : static_cast<void>(oUtf8 += gHidden);
    oUtf8 += iForm.mEnd;
}

List ReadList(const std::string& iFile, std::wstring_view iText, char iEnd)
{
    List lList = ListReader(iFile, iEnd).Read(iText);
    ListTree lTree(iFile);
    for (const ListLine& lLine : lList.mLines)
    {
        lTree.Add(lLine);
    }
    return lList;
}

void RefuseHidden(const std::string& iFile, const List& iList)
{
    for (const ListLine& lLine : iList.mLines)
    {
        if (lLine.mKind != ListLineKind::Value)
        {
            throw TextError(ShowPlace(iFile, {lLine.mNumber, 1}) + "the value is masked, so it is not known; "
                                                                   "'talbase list --show-secrets' shows it");
        }
    }
}

BagPtr MakeBag(const std::string& iFile, const List& iList, const DelimiterTexts& iPair, const FindHidden& iFindHidden)
{
    if (!iFindHidden)
    {
        RefuseHidden(iFile, iList);
    }
    MakeBag(iPair); // refuses a pair that no bag may have
    ListTree lTree(iFile);
    for (const ListLine& lLine : iList.mLines)
    {
        lTree.Add(lLine);
    }
    TextBuilder lBuilder(iPair.mBegin, iPair.mEnd);
    lTree.Build(lBuilder, iFindHidden);
    try
    {
        return lBuilder.MakeBag();
    }
    catch (const QBase::Message& lMessage)
    {
        throw DataError(ShowFile(iFile) + ": with these delimiters the text could not be read back: " +
                        ShowMessage(lMessage.GetMessage()));
    }
}

} // namespace TalBaseTool
