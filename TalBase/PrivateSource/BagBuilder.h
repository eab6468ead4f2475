// The handler of a TextParser that makes bags of what the parser meets, without recursion and in one pass.
//
// A nest is read twice by contract: its text is rendered and read again by the bag that holds it, which is how empty
// nests inside it get lost. So of "n++++a++++1***o++++e++++*********", where o has nothing but an empty property, the
// nest n comes to have only a: the first reading gives it an empty nest o, whose text "o++++***" the second one takes
// for a property without a value. See "Empty nested bags" in Docs/TextFormat.md.
//
// Invariant that lets the builder keep what it read instead: a run of text means the same as long as the delimiter
// behind it is the same, so the second reading gives the nest itself, less its empty nests. A nest is "final" where
// that holds: a header can carry the pair, and no value in the nest was escaped with a pair that shares a character
// with an escape. Any other nest really is rendered and read again.
//
// So a nest answers for itself, though mostly the pair decides. Were every nest read again where an escape could touch
// one, each reading again would read all nests below again, and depth would take stack and time without bound.

#ifndef TALBASE_PRIVATESOURCE_BAGBUILDER_H
#define TALBASE_PRIVATESOURCE_BAGBUILDER_H

#include "TalBase/PrivateSource/BagState.h"
#include "TalBase/PrivateSource/SmallStack.h"
#include "TalBase/PrivateSource/TextCutters.h"

#include <cstddef>
#include <optional>
#include <string_view>

namespace QTalBase
{

class BagBuilder
{
public:
    // For a text that is read with a pair that is allowed, and that ends at ipTextStop. Holds views of the text.
    // iMakesNests: false where the text is only looked at and every nest is final, so that none has to be made.
    BagBuilder(const SharedWString& iBegin, const SharedWString& iEnd, const wchar_t* ipTextStop,
               bool iMakesNests = true);
    ~BagBuilder();

    BagBuilder(const BagBuilder&) = delete;
    BagBuilder& operator=(const BagBuilder&) = delete;

    // What TextParser.h asks of a handler. Throw std::bad_alloc, and what setting a value or reading a nest again
    // throws.
    void Cut(std::wstring_view /*iRun*/, Found /*iFound*/) noexcept {}
    void Plain(std::wstring_view iName, std::wstring_view iValue, bool iMayContainStart)
    {
        if (mIsEveryValueSuspect || (iMayContainStart && mIsDefaultPair))
        {
            hAddSuspect(iName, iValue);
            return;
        }
        mPlains.Push(PlainEntry{iName, iValue, 0});
    }
    void Empty(std::wstring_view /*iName*/) noexcept {}
    void OpenNest(std::wstring_view iName);
    void CloseNest();

    // Calls iVisit(name, value, whether a later one of its name replaces it) for each property read so far of the
    // innermost nest that is open, or else of the text: the plain ones first; a nest has no value. Throws
    // std::bad_alloc.
    template <class Visit>
    void VisitInnermost(const Visit& iVisit)
    {
        const Frame& lFrame = mFrames.Top();
        hMarkReplaced(lFrame);
        for (std::size_t lIndex = lFrame.mFirstPlain; lIndex < mPlains.GetCount(); ++lIndex)
        {
            iVisit(mPlains[lIndex].mName, mPlains[lIndex].mValue, mPlains[lIndex].mEscapable == gReplaced);
        }
        for (std::size_t lIndex = lFrame.mFirstNest; lIndex < mNests.GetCount(); ++lIndex)
        {
            iVisit(mNests[lIndex].mName, std::wstring_view(), mNests[lIndex].mIsReplaced);
        }
    }

    // The name of the innermost nest that is open, and of the one that was closed last.
    std::wstring_view GetInnermostName() noexcept
    {
        return mFrames.Top().mName;
    }

    std::wstring_view GetLastNestName() noexcept
    {
        return mNests.Top().mName;
    }

    // Whether nothing is left of the nest that was closed last.
    bool IsLastNestEmpty() noexcept
    {
        return mNests.Top().mNest != nullptr ? mNests.Top().mNest->IsEmpty() : mNests.Top().mIsEmpty;
    }

    // Whether all nests of the text are final.
    bool AreNestsFinal();

    // Moves what was read, whose nests must be final, into a bag that has no properties and the same pair. When it
    // fails, the bag is unchanged.
    void MoveTo(BagState& oBag);

    // Makes a new bag, without a name, of what was read.
    NestPtr MakeBag();

private:
    static constexpr std::size_t gReplaced = static_cast<std::size_t>(-1);

    struct PlainEntry
    {
        std::wstring_view mName;
        std::wstring_view mValue;
        std::size_t mEscapable = 0; // characters of the value to escape, or gReplaced
    };

    struct NestEntry
    {
        std::wstring_view mName;
        BagState* mNest = nullptr; // with one reference
        bool mIsReplaced = false;
        bool mIsEmpty = false; // where no nests are made
    };

    // A nest being read: its plain properties and nests lie on top of those of the nests around it.
    struct Frame
    {
        std::wstring_view mName;
        std::size_t mFirstPlain = 0;
        std::size_t mFirstNest = 0;
        bool mIsTouched = false; // by an escape, so that it is not final
    };

    void hAddSuspect(std::wstring_view iName, std::wstring_view iValue);
    bool hIsNothingLeft(const Frame& iFrame) noexcept;
    NestPtr hMakeClosed(const Frame& iFrame, bool& oIsFinal);
    NestPtr hReadAgain(const BagState& iNest, bool& oIsFinal);
    NestPtr hMakeRead(const Frame& iFrame, bool iWithEmptyNests);
    void hMarkReplaced(const Frame& iFrame);
    BagRoom hGetRoom(const Frame& iFrame) noexcept;
    void hFill(const Frame& iFrame, const BagRoom& iRoom, bool iWithEmptyNests, ValueContent& oValues,
               NestContent& oNests);
    void hFillWithNests(const Frame& iFrame, bool iWithEmptyNests, NestContent& oNests);
    bool hIsPairNeutral();
    bool hCanHeaderCarryPair();

    SharedWString mBegin;
    SharedWString mEnd;
    bool mIsDefaultPair;
    bool mIsEveryValueSuspect; // of being escapable. Not where the pair starts with what is escaped: then the cutter
                               // has stumbled over every such character.
    std::optional<bool> mIsPairNeutral;      // where somebody has asked
    std::optional<bool> mCanHeaderCarryPair; // where somebody has asked
    const wchar_t* mTextStop;
    bool mMakesNests;
    SmallStack<PlainEntry, 24> mPlains;
    SmallStack<NestEntry, 4> mNests;
    SmallStack<Frame, 4> mFrames; // the lowest is the text itself
};

} // namespace QTalBase

#endif
