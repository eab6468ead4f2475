// Reads the properties of a text form, token by token, into nested bags, without recursion and in one pass.
//
//   text     = { property }
//   property = string Begin ( End                        nothing is set, nothing displaced
//                           | string End                 a plain property
//                           | property { property } End  a nested bag )
//
// The tokens of a text never hold two strings in a row; the reader refuses them all the same.
//
// A nest is read twice by contract: its text is rendered and read again by the bag that holds it, which is how empty
// nests inside it get lost. Invariant that lets the reader keep what it read instead: a run of text means the same as
// long as the delimiter behind it is the same, so the second reading gives the nest itself, less its empty nests. It
// takes a pair that a header can carry, and values that no escape has changed in a way that touches the pair. Where one
// is missing, the nest is not "clean" and really is rendered and read again.

#ifndef TALBASE_PRIVATESOURCE_TEXTREADER_H
#define TALBASE_PRIVATESOURCE_TEXTREADER_H

#include "TalBase/PrivateSource/PropertyBagImpl.h"
#include "TalBase/PrivateSource/SmallStack.h"
#include "TalBase/PrivateSource/TextSearch.h"

namespace QTalBase
{

class TextReader
{
public:
    enum class Token
    {
        Begin,
        End,
        String
    };

    // Reads with a pair that is allowed. Holds views of the text, which must outlive the reader.
    TextReader(const SharedWString& iBegin, const SharedWString& iEnd);
    ~TextReader();

    TextReader(const TextReader&) = delete;
    TextReader& operator=(const TextReader&) = delete;

    // Takes the next token; iRun: its text, for a string. Throws PropertyBagException, as PropertyBag::AddString tells.
    void Take(Token iToken, std::wstring_view iRun);

    // Cuts the rest of a text, from a position, and takes its tokens to the end.
    void TakeAll(std::wstring_view iText, std::size_t iPosition);

    // There are no more tokens: throws where one was expected.
    void Finish() const;

    // Moves what was read, which must be clean, into a bag that has no properties and the reader's pair. When it fails,
    // the bag is unchanged.
    void MoveTo(PropertyBagImpl& oBag);

    // Makes a new bag of what was read.
    QBase::SmartPtrI<PropertyBagImpl> MakeBag();

    // After MakeBag: whether the nested bag at an index is clean.
    bool IsNestClean(std::size_t iIndex) const
    {
        return mIsClean || mAreNestsClean[iIndex];
    }

    // Whether everything read so far is clean.
    bool IsClean() const noexcept
    {
        return mIsClean;
    }

private:
    friend class TextChecker; // reads without making bags

    static constexpr std::size_t gReplaced = static_cast<std::size_t>(-1);

    using Nests = std::vector<PropertyBagImpl::EmbeddedEntry>;

    enum class State
    {
        Name,
        Begin,
        Value,
        ValueEnd
    };

    // All names of one frame are views of one text, so the one at the higher address was read later.
    struct Plain
    {
        std::wstring_view mName;
        std::wstring_view mValue;
        std::size_t mEscapable = 0; // characters of the value to escape, or gReplaced
    };

    struct Nest
    {
        std::wstring_view mName;
        PropertyBagImpl* mBag = nullptr; // with one reference
        bool mIsClean = true;
        bool mIsReplaced = false;
    };

    // What a frame's plain properties come to, without those that a later one of their name replaced.
    struct Size
    {
        std::size_t mCount;
        std::size_t mLength;
    };

    // A nest being read: its plain properties and nests lie on top of those of the nests around it.
    struct Frame
    {
        std::wstring_view mName;
        std::size_t mFirstPlain = 0;
        std::size_t mFirstNest = 0;
        bool mIsClean = true;
    };

    class Taker;

    template <class Cutter>
    void hTakeAllOf(Cutter& oCutter);
    void hTakeInsteadOfName(Token iToken);
    void hTakeBehindValue(Token iToken);
    void hTakePlain(std::wstring_view iName, std::wstring_view iValue, bool iMayBeEscapable);
    void hTakeUnusualPlain(std::wstring_view iName, std::wstring_view iValue);
    void hOpenNest();
    void hCloseNest();
    void hMarkReplaced(const Frame& iFrame);
    template <class Place>
    void hMarkReplacedWith(const Frame& iFrame, const Place& iPlace);
    void hDropEntry(const Frame& iFrame, std::size_t iNumber) noexcept;
    Size hGetSizeOfPlains(const Frame& iFrame) noexcept;
    void hFill(const Frame& iFrame, bool iWithEmptyNests, ValueContent& oValues, Nests& oNests);
    void hFillWithNests(const Frame& iFrame, bool iWithEmptyNests, Nests& oNests);
    void hFillWithAll(ValueContent& oValues, Nests& oNests);
    bool hIsPairNeutral();
    bool hCanHeaderCarryPair();
    bool hIsEveryNestClean();

    SharedWString mBegin;
    SharedWString mEnd;
    bool mIsDefaultPair;
    bool mIsEveryValueSuspect; // of being escapable. Not where the pair starts with what is escaped: then the cutter
                               // has stumbled over every such character.
    signed char mIsPairNeutral = -1;      // not known yet
    signed char mCanHeaderCarryPair = -1; // not known yet
    const wchar_t* mTextStop = nullptr;
    State mState = State::Name;
    std::wstring_view mName;
    std::wstring_view mValue;
    bool mMayValueBeEscapable = false;
    bool mMayRunBeEscapable = true;
    bool mIsClean = true;
    SmallStack<Plain, 24> mPlains;
    SmallStack<Nest, 4> mNests;
    SmallStack<Frame, 4> mFrames;     // the lowest is the text itself
    std::vector<bool> mAreNestsClean; // empty where everything is
};

} // namespace QTalBase

#endif
