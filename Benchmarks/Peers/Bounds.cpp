// Lower bounds: the same work on trees without an interface around them, written by hand for the bag's text form. They
// trust the text and leave out what makes a bag a bag: unique names, messages, delimiters that vary, shared nested
// bags.

#include "Peers/Peers.h"

#include "Peers/DocumentSubject.h"
#include "Texts.h"

#include <cstring>
#include <cwchar>
#include <memory_resource>
#include <string_view>

namespace Bench
{

namespace
{

using View = std::wstring_view;

constexpr std::size_t gHeaderLength = 36;
constexpr std::size_t gBeginLength = 4;
constexpr std::size_t gEndLength = 3;

// Returns the next character that a delimiter could begin with, or the end. Eight at a time, without a branch for each.
const wchar_t* FindDelimiter(const wchar_t* ipNext, const wchar_t* ipEnd)
{
    constexpr std::ptrdiff_t lStep = 8;
    while (ipEnd - ipNext >= lStep)
    {
        int lFound = 0;
        for (std::ptrdiff_t lIndex = 0; lIndex < lStep; ++lIndex)
        {
            lFound |= static_cast<int>(ipNext[lIndex] == L'+') | static_cast<int>(ipNext[lIndex] == L'*');
        }
        if (lFound != 0)
        {
            break;
        }
        ipNext += lStep;
    }
    while (ipNext < ipEnd && *ipNext != L'+' && *ipNext != L'*')
    {
        ++ipNext;
    }
    return ipNext;
}

// Reads the content and tells the builder of each value and of the begin and end of each record.
template <class Builder>
void ReadContent(View iText, Builder& oBuilder)
{
    const wchar_t* lStart = iText.data() + gHeaderLength;
    const wchar_t* const lEnd = iText.data() + iText.size(); // a terminator stands here
    View lName;
    bool lHasName = false;
    for (const wchar_t* lNext = FindDelimiter(lStart, lEnd); lNext < lEnd; lNext = FindDelimiter(lNext, lEnd))
    {
        const View lRun(lStart, static_cast<std::size_t>(lNext - lStart));
        if (lNext[0] == L'+' && lNext[1] == L'+' && lNext[2] == L'+' && lNext[3] == L'+')
        {
            if (lHasName)
            {
                oBuilder.Begin(lName);
            }
            lName = lRun;
            lHasName = true;
            lNext = lStart = lNext + gBeginLength;
        }
        else if (lNext[0] == L'*' && lNext[1] == L'*' && lNext[2] == L'*')
        {
            lHasName ? oBuilder.Value(lName, lRun) : oBuilder.End();
            lHasName = false;
            lNext = lStart = lNext + gEndLength;
        }
        else
        {
            ++lNext;
        }
    }
}

// Builds a tree whose nodes have mName, mValues and mRecords.
template <class Node>
class TreeBuilder
{
public:
    explicit TreeBuilder(Node& oRoot) : mPath{&oRoot} {}

    void Value(View iName, View iValue)
    {
        auto& lValues = mPath.back()->mValues;
        if (lValues.capacity() == 0)
        {
            lValues.reserve(gFirstValues);
        }
        lValues.emplace_back(iName, iValue);
    }

    void Begin(View iName)
    {
        auto& lRecords = mPath.back()->mRecords;
        lRecords.emplace_back().mName = iName;
        mPath.push_back(&lRecords.back());
    }

    void End()
    {
        mPath.pop_back();
    }

private:
    static constexpr std::size_t gFirstValues = 12; // most records need no more

    std::vector<Node*> mPath;
};

// How long the text is once it is unescaped.
std::size_t CountCharacters(View iText)
{
    std::size_t lLength = iText.size();
    for (std::size_t lPosition = iText.find(L"&#4"); lPosition != View::npos;
         lPosition = iText.find(L"&#4", lPosition + 1))
    {
        const View lEscape = iText.substr(lPosition, 5);
        lLength -= lEscape == L"&#42;" || lEscape == L"&#43;" ? 4 : 0;
    }
    return lLength;
}

template <class Node>
void AddNodeTotals(const Node& iNode, Totals& oTotals)
{
    oTotals.mProperties += iNode.mValues.size() + iNode.mRecords.size();
    for (const auto& [lName, lValue] : iNode.mValues)
    {
        oTotals.mCharacters += lName.size() + CountCharacters(lValue);
    }
    for (const Node& lNested : iNode.mRecords)
    {
        oTotals.mCharacters += lNested.mName.size();
        AddNodeTotals(lNested, oTotals);
    }
}

// A text that is allocated once, not cleared, and handed over.
struct OwnedText
{
    explicit OwnedText(std::size_t iSize) : mCharacters(new wchar_t[iSize + gPadding]), mSize(iSize) {}

    static constexpr std::size_t gPadding = 4; // copies go in steps of four characters
    std::unique_ptr<wchar_t[]> mCharacters;
    std::size_t mSize;
};

inline wchar_t* Append(wchar_t* opEnd, View iText)
{
    for (std::size_t lIndex = 0; lIndex < iText.size(); lIndex += 4)
    {
        std::memcpy(opEnd + lIndex, iText.data() + lIndex, 4 * sizeof(wchar_t));
    }
    return opEnd + iText.size();
}

inline wchar_t* AppendBegin(wchar_t* opEnd)
{
    std::memcpy(opEnd, L"++++", gBeginLength * sizeof(wchar_t));
    return opEnd + gBeginLength;
}

inline wchar_t* AppendEnd(wchar_t* opEnd)
{
    std::memcpy(opEnd, L"***", (gEndLength + 1) * sizeof(wchar_t));
    return opEnd + gEndLength;
}

struct BoundTraits
{
    using Text = std::wstring;
    using Name = std::wstring;

    static constexpr bool gCountsBytes = false;

    static Text MakeText(const Record& iRecord)
    {
        return MakeBagText(iRecord);
    }

    static Name MakeName(const std::wstring& iName)
    {
        return iName;
    }

    template <class Node>
    static std::wstring FindValue(const Node& iNode, View iName)
    {
        for (const auto& [lName, lValue] : iNode.mValues)
        {
            if (View(lName) == iName)
            {
                return std::wstring(lValue);
            }
        }
        return {};
    }
};

struct StringsTraits : BoundTraits
{
    using Document = Record;

    static void Parse(const Text& iText, Document& oDocument)
    {
        TreeBuilder<Record> lBuilder(oDocument);
        ReadContent(iText, lBuilder);
    }

    static void AddTotals(const Document& iDocument, Totals& oTotals)
    {
        AddNodeTotals(iDocument, oTotals);
    }

    static std::wstring LookUp(const Document& iDocument, const Name& iName)
    {
        return FindValue(iDocument, iName);
    }

    static void Copy(const Document& iDocument, Document& oCopy)
    {
        oCopy = iDocument;
    }

    static bool Equal(const Document& iLeft, const Document& iRight)
    {
        return iLeft == iRight;
    }
};

struct PooledRecord
{
    using allocator_type = std::pmr::polymorphic_allocator<>;

    explicit PooledRecord(const allocator_type& iAllocator)
        : mName(iAllocator), mValues(iAllocator), mRecords(iAllocator)
    {
    }
    PooledRecord(const PooledRecord& iOther, const allocator_type& iAllocator)
        : mName(iOther.mName, iAllocator), mValues(iOther.mValues, iAllocator), mRecords(iOther.mRecords, iAllocator)
    {
    }
    PooledRecord(PooledRecord&& iOther, const allocator_type& iAllocator)
        : mName(std::move(iOther.mName), iAllocator),
          mValues(std::move(iOther.mValues), iAllocator),
          mRecords(std::move(iOther.mRecords), iAllocator)
    {
    }
    PooledRecord(PooledRecord&&) = default;
    PooledRecord& operator=(const PooledRecord&) = default;

    std::pmr::wstring mName;
    std::pmr::vector<std::pair<std::pmr::wstring, std::pmr::wstring>> mValues;
    std::pmr::vector<PooledRecord> mRecords;
};

struct PooledTraits : BoundTraits
{
    struct Document
    {
        std::pmr::monotonic_buffer_resource mPool;
        PooledRecord mTree{&mPool};
    };

    static void Parse(const Text& iText, Document& oDocument)
    {
        TreeBuilder<PooledRecord> lBuilder(oDocument.mTree);
        ReadContent(iText, lBuilder);
    }

    static void AddTotals(const Document& iDocument, Totals& oTotals)
    {
        AddNodeTotals(iDocument.mTree, oTotals);
    }

    static std::wstring LookUp(const Document& iDocument, const Name& iName)
    {
        return FindValue(iDocument.mTree, iName);
    }

    static void Copy(const Document& iDocument, Document& oCopy)
    {
        oCopy.mTree = iDocument.mTree;
    }
};

struct ViewRecord
{
    View mName;
    std::vector<std::pair<View, View>> mValues;
    std::vector<ViewRecord> mRecords;
};

bool operator==(const ViewRecord& iLeft, const ViewRecord& iRight)
{
    return iLeft.mName == iRight.mName && iLeft.mValues == iRight.mValues && iLeft.mRecords == iRight.mRecords;
}

struct ViewsTraits : BoundTraits
{
    using Document = ViewRecord;

    static void Parse(const Text& iText, Document& oDocument)
    {
        TreeBuilder<ViewRecord> lBuilder(oDocument);
        ReadContent(iText, lBuilder);
    }

    static void AddTotals(const Document& iDocument, Totals& oTotals)
    {
        AddNodeTotals(iDocument, oTotals);
    }

    static std::wstring LookUp(const Document& iDocument, const Name& iName)
    {
        return FindValue(iDocument, iName);
    }

    static bool Equal(const Document& iLeft, const Document& iRight)
    {
        return iLeft == iRight;
    }
};

// Copies each text to the end of a block that is as large as the whole text.
class BlockBuilder : public TreeBuilder<ViewRecord>
{
public:
    BlockBuilder(ViewRecord& oRoot, wchar_t* opBlock) : TreeBuilder(oRoot), mEnd(opBlock) {}

    void Value(View iName, View iValue)
    {
        TreeBuilder::Value(Store(iName), Store(iValue));
    }

    void Begin(View iName)
    {
        TreeBuilder::Begin(Store(iName));
    }

private:
    View Store(View iText)
    {
        const View lStored(mEnd, iText.size());
        mEnd = Append(mEnd, iText);
        return lStored;
    }

    wchar_t* mEnd;
};

// Points a copied tree's views into the copied block.
void Rebase(const wchar_t* ipOld, const wchar_t* ipNew, ViewRecord& oRecord)
{
    const auto lMove = [ipOld, ipNew](View& oView) { oView = View(ipNew + (oView.data() - ipOld), oView.size()); };
    for (auto& [lName, lValue] : oRecord.mValues)
    {
        lMove(lName);
        lMove(lValue);
    }
    for (ViewRecord& lNested : oRecord.mRecords)
    {
        lMove(lNested.mName);
        Rebase(ipOld, ipNew, lNested);
    }
}

std::size_t CountRendered(const ViewRecord& iRecord)
{
    std::size_t lSize = (iRecord.mValues.size() + iRecord.mRecords.size()) * (gBeginLength + gEndLength);
    for (const auto& [lName, lValue] : iRecord.mValues)
    {
        lSize += lName.size() + lValue.size();
    }
    for (const ViewRecord& lNested : iRecord.mRecords)
    {
        lSize += lNested.mName.size() + CountRendered(lNested);
    }
    return lSize;
}

wchar_t* AppendContent(wchar_t* opEnd, const ViewRecord& iRecord)
{
    for (const auto& [lName, lValue] : iRecord.mValues)
    {
        opEnd = AppendEnd(Append(AppendBegin(Append(opEnd, lName)), lValue));
    }
    for (const ViewRecord& lNested : iRecord.mRecords)
    {
        opEnd = AppendEnd(AppendContent(AppendBegin(Append(opEnd, lNested.mName)), lNested));
    }
    return opEnd;
}

struct BlockTraits : BoundTraits
{
    struct Document
    {
        std::unique_ptr<OwnedText> mBlock;
        ViewRecord mTree;
    };

    static void Parse(const Text& iText, Document& oDocument)
    {
        oDocument.mBlock = std::make_unique<OwnedText>(iText.size());
        BlockBuilder lBuilder(oDocument.mTree, oDocument.mBlock->mCharacters.get());
        ReadContent(iText, lBuilder);
    }

    static void AddTotals(const Document& iDocument, Totals& oTotals)
    {
        AddNodeTotals(iDocument.mTree, oTotals);
    }

    static OwnedText Render(const Document& iDocument)
    {
        OwnedText lText(gHeaderLength + CountRendered(iDocument.mTree));
        wchar_t* lEnd = Append(lText.mCharacters.get(), L"EndDelimiter***BeginDelimiter++++***");
        AppendContent(lEnd, iDocument.mTree);
        return lText;
    }

    static Text ToText(OwnedText&& iText)
    {
        return {iText.mCharacters.get(), iText.mSize};
    }

    static std::wstring LookUp(const Document& iDocument, const Name& iName)
    {
        return FindValue(iDocument.mTree, iName);
    }

    static void Copy(const Document& iDocument, Document& oCopy)
    {
        const OwnedText& lBlock = *iDocument.mBlock;
        oCopy.mBlock = std::make_unique<OwnedText>(lBlock.mSize);
        std::wmemcpy(oCopy.mBlock->mCharacters.get(), lBlock.mCharacters.get(), lBlock.mSize);
        oCopy.mTree = iDocument.mTree;
        Rebase(lBlock.mCharacters.get(), oCopy.mBlock->mCharacters.get(), oCopy.mTree);
    }

    static bool Equal(const Document& iLeft, const Document& iRight)
    {
        return iLeft.mTree == iRight.mTree;
    }
};

} // namespace

Library MakeStringsBound()
{
    return MakeLibrary<StringsTraits>("bound: strings");
}

Library MakePooledBound()
{
    return MakeLibrary<PooledTraits>("bound: strings in a pool");
}

Library MakeBlockBound()
{
    return MakeLibrary<BlockTraits>("bound: texts in a block");
}

Library MakeViewsBound()
{
    return MakeLibrary<ViewsTraits>("bound: views");
}

} // namespace Bench
