#include "TalBase/PrivateSource/TextReader.h"

#include "TalBase/PrivateSource/Messages.h"
#include "TalBase/PrivateSource/NameTable.h"
#include "TalBase/PrivateSource/TextSearch.h"
#include "TalBase/PrivateSource/TextWriter.h"

#include <cstdint>
#include <cstring>

namespace QTalBase
{

namespace
{

using Messages::Throw;

const std::size_t gEscapeGrowth = 4; // an escape has five characters

// A filter that is sure of the names that it has not seen yet. For a handful of names, where a table would not pay.
class NameFilter
{
public:
    static constexpr std::size_t gMostNames = 64;

    // Adds a name and returns whether it is certainly new.
    bool Add(std::wstring_view iName) noexcept
    {
        const unsigned int lBit = hHash(iName);
        std::uint64_t& lWord = mWords[lBit / 64];
        const std::uint64_t lMask = std::uint64_t{1} << lBit % 64;
        const bool lIsNew = (lWord & lMask) == 0;
        lWord |= lMask;
        return lIsNew;
    }

private:
    // From the length and the characters at both ends, where names differ.
    static unsigned int hHash(std::wstring_view iName) noexcept
    {
        std::uint64_t lHash = iName.size();
        if (iName.size() >= 2)
        {
            std::uint64_t lFirst;
            std::uint64_t lLast;
            std::memcpy(&lFirst, iName.data(), sizeof(lFirst));
            std::memcpy(&lLast, iName.data() + iName.size() - 2, sizeof(lLast));
            lHash += lFirst * 3 + lLast * 0x2545F4914F6CDD1DU;
        }
        else if (!iName.empty())
        {
            lHash += static_cast<std::uint64_t>(iName[0]);
        }
        return static_cast<unsigned int>(lHash * 0x9E3779B97F4A7C15U >> 56);
    }

    std::uint64_t mWords[4] = {};
};

} // namespace

TextReader::TextReader(const SharedWString& iBegin, const SharedWString& iEnd)
    : mBegin(iBegin),
      mEnd(iEnd),
      mIsDefaultPair(AreDefaultDelimiters({iBegin.View(), iEnd.View()})),
      mStartsWithEscapable(iBegin.View()[0] == L'+' && iEnd.View()[0] == L'*')
{
    mFrames.Push(Frame{{}, 0, 0, true, false});
}

TextReader::~TextReader()
{
    for (std::size_t lIndex = 0; lIndex < mNests.GetCount(); ++lIndex)
    {
        if (mNests[lIndex].mBag != nullptr)
        {
            mNests[lIndex].mBag->Release();
        }
    }
}

void TextReader::TakeAll(std::wstring_view iText, std::size_t iPosition)
{
    // A header whose closing delimiter is cut off ends behind the text.
    const std::wstring_view lText = iText.substr(std::min(iPosition, iText.size()));
    if (AreShortDelimiters(mBegin.View(), mEnd.View()))
    {
        hTakeAllOf(ShortCutter(lText, mBegin.View(), mEnd.View()));
    }
    else
    {
        hTakeAllOf(LongCutter(lText, mBegin.View(), mEnd.View()));
    }
    Finish();
}

// Plain properties, of which most texts mainly consist, are taken whole; everything else goes token by token.
template <class Cutter>
void TextReader::hTakeAllOf(Cutter iCutter)
{
    for (Found lFound = iCutter.Next(); lFound != Found::Nothing; lFound = iCutter.Next())
    {
        std::wstring_view lRun = iCutter.GetRun();
        while (mState == State::Name && lFound == Found::Begin && !lRun.empty())
        {
            mName = lRun;
            mState = State::Value;
            lFound = iCutter.Next();
            lRun = iCutter.GetRun();
            if (lFound != Found::End || lRun.empty())
            {
                break;
            }
            hTakePlain(mName, lRun, iCutter.MayHoldFirstCharacter());
            mState = State::Name;
            lFound = iCutter.Next();
            lRun = iCutter.GetRun();
        }
        if (lFound == Found::Nothing)
        {
            return;
        }
        if (!lRun.empty())
        {
            mMayRunBeEscapable = iCutter.MayHoldFirstCharacter();
            Take(Token::String, lRun);
        }
        Take(lFound == Found::Begin ? Token::Begin : Token::End, {});
    }
}

void TextReader::Take(Token iToken, std::wstring_view iRun)
{
    switch (mState)
    {
    case State::Name:
        if (iToken == Token::String)
        {
            mName = iRun;
            mState = State::Begin;
        }
        else if (mFrames.GetCount() == 1)
        {
            Throw<PropertyBagException>(Messages::gStringTokenExpected);
        }
        else if (iToken == Token::Begin)
        {
            Throw<PropertyBagException>(Messages::gEndTokenExpected);
        }
        else
        {
            hCloseNest();
        }
        return;
    case State::Begin:
        if (iToken != Token::Begin)
        {
            Throw<PropertyBagException>(Messages::gBeginTokenExpected);
        }
        mState = State::Value;
        return;
    case State::Value:
        if (iToken == Token::Begin)
        {
            Throw<PropertyBagException>(Messages::gStringTokenExpected);
        }
        mValue = iRun;
        mMayValueBeEscapable = mMayRunBeEscapable;
        mState = iToken == Token::End ? State::Name : State::ValueEnd;
        return;
    case State::ValueEnd:
        if (iToken == Token::String)
        {
            Throw<PropertyBagException>(Messages::gStringOrBeginTokenExpected);
        }
        if (iToken == Token::End)
        {
            hTakePlain(mName, mValue, mMayValueBeEscapable);
            mState = State::Name;
            return;
        }
        // What looked like a value is the name of the nest's first property.
        hOpenNest();
        mName = mValue;
        mState = State::Value;
        return;
    }
}

void TextReader::Finish() const
{
    if (mState != State::Name || mFrames.GetCount() != 1)
    {
        Throw<PropertyBagException>(Messages::gTokenExpected);
    }
}

inline void TextReader::hTakePlain(std::wstring_view iName, std::wstring_view iValue, bool iMayBeEscapable)
{
    // With pairs that start with the characters to escape, the cutter has stumbled over every one of them.
    if (mIsDefaultPair && (iMayBeEscapable || !mStartsWithEscapable))
    {
        hTakeUnusualPlain(iName, iValue);
        return;
    }
    mPlains.Push(Plain{iName, iValue, 0, false});
}

void TextReader::hTakeUnusualPlain(std::wstring_view iName, std::wstring_view iValue)
{
    const std::size_t lEscapable = CountEscapable(iValue);
    if (lEscapable != 0 && !hIsPairNeutral())
    {
        const std::wstring lEscaped = Escaped(iValue);
        if (Contains(lEscaped, mEnd.View()) || Contains(lEscaped, mBegin.View()))
        {
            Messages::ThrowValueHasDelimiter(lEscaped, mBegin.View(), mEnd.View());
        }
        mFrames.Top().mIsClean = false;
        mIsClean = false;
    }
    mPlains.Push(Plain{iName, iValue, lEscapable, false});
}

void TextReader::hOpenNest()
{
    mFrames.Push(Frame{mName, mPlains.GetCount(), mNests.GetCount(), true, false});
}

void TextReader::hCloseNest()
{
    Frame lFrame = mFrames.Top();
    hMarkReplaced(lFrame);
    for (std::size_t lIndex = lFrame.mFirstNest; lIndex < mNests.GetCount(); ++lIndex)
    {
        lFrame.mIsClean = lFrame.mIsClean && (mNests[lIndex].mIsClean || mNests[lIndex].mIsReplaced);
    }
    lFrame.mIsClean = lFrame.mIsClean && hCanHeaderCarryPair();
    QBase::SmartPtrI<PropertyBagImpl> lBag(new PropertyBagImpl(mBegin, mEnd, true));
    hFill(lFrame, !lFrame.mIsClean, *lBag);
    bool lIsClean = lFrame.mIsClean;
    if (!lIsClean)
    {
        const std::wstring lText = TextWriter(*lBag).WriteToString(true);
        lBag = new PropertyBagImpl(mBegin, mEnd, true);
        lIsClean = lBag->hAddText(lText) && hCanHeaderCarryPair();
        mIsClean = mIsClean && lIsClean;
    }
    mPlains.CutTo(lFrame.mFirstPlain);
    mNests.CutTo(lFrame.mFirstNest);
    mFrames.CutTo(mFrames.GetCount() - 1);
    mNests.Push(Nest{lFrame.mName, nullptr, mPlains.GetCount(), lIsClean, false});
    lBag->AddRef();
    mNests.Top().mBag = lBag.get();
}

// Of the properties that have one name the last counts, whatever its kind: setting it removed those before it.
void TextReader::hMarkReplaced(Frame& oFrame)
{
    const std::size_t lPlains = mPlains.GetCount() - oFrame.mFirstPlain;
    const std::size_t lCount = lPlains + mNests.GetCount() - oFrame.mFirstNest;
    // Entries are numbered plain properties first.
    const auto lNameOf = [&](std::size_t iNumber) {
        return iNumber < lPlains ? mPlains[oFrame.mFirstPlain + iNumber].mName
                                 : mNests[oFrame.mFirstNest + iNumber - lPlains].mName;
    };
    if (lCount > NameFilter::gMostNames)
    {
        NameTable lTable(lCount);
        hMarkWhatIsNotNew(oFrame, [&](std::wstring_view iName, std::size_t iNumber) {
            std::uint32_t* lNumber =
                lTable.Place(iName, [&](std::uint32_t iOther) { return AreEqualTexts(lNameOf(iOther), iName); });
            const bool lIsNew = *lNumber == NameTable::gNone;
            *lNumber = lIsNew ? static_cast<std::uint32_t>(iNumber) : *lNumber;
            return lIsNew;
        });
    }
    else if (lCount > 1)
    {
        NameFilter lFilter;
        unsigned char lSeen[NameFilter::gMostNames];
        std::size_t lSeenCount = 0;
        hMarkWhatIsNotNew(oFrame, [&](std::wstring_view iName, std::size_t iNumber) {
            const bool lIsNew = lFilter.Add(iName) || std::none_of(lSeen, lSeen + lSeenCount, [&](std::size_t iOther) {
                                    return AreEqualTexts(lNameOf(iOther), iName);
                                });
            lSeen[lSeenCount++] = static_cast<unsigned char>(iNumber);
            return lIsNew;
        });
    }
}

// Asks, from the last entry read to the first, which names are new, and marks the others.
template <class IsNew>
inline void TextReader::hMarkWhatIsNotNew(Frame& oFrame, const IsNew& iIsNew)
{
    const std::size_t lPlains = mPlains.GetCount() - oFrame.mFirstPlain;
    std::size_t lNest = mNests.GetCount();
    std::size_t lPlain = mPlains.GetCount();
    while (lPlain > oFrame.mFirstPlain || lNest > oFrame.mFirstNest)
    {
        if (lNest > oFrame.mFirstNest && mNests[lNest - 1].mPlainsBefore >= lPlain)
        {
            --lNest;
            mNests[lNest].mIsReplaced = !iIsNew(mNests[lNest].mName, lPlains + lNest - oFrame.mFirstNest);
            oFrame.mHasReplaced = oFrame.mHasReplaced || mNests[lNest].mIsReplaced;
            continue;
        }
        --lPlain;
        mPlains[lPlain].mIsReplaced = !iIsNew(mPlains[lPlain].mName, lPlain - oFrame.mFirstPlain);
        oFrame.mHasReplaced = oFrame.mHasReplaced || mPlains[lPlain].mIsReplaced;
    }
}

// Takes the nests from the stack.
void TextReader::hFill(const Frame& iFrame, bool iWithEmptyNests, PropertyBagImpl& oBag)
{
    std::size_t lCount = 0;
    std::size_t lLength = 0;
    const std::size_t lPlainStop = mPlains.GetCount();
    for (std::size_t lIndex = iFrame.mFirstPlain; lIndex < lPlainStop; ++lIndex)
    {
        const Plain& lPlain = mPlains[lIndex];
        if (!lPlain.mIsReplaced)
        {
            ++lCount;
            lLength += lPlain.mName.size() + lPlain.mValue.size() + gEscapeGrowth * lPlain.mEscapable;
        }
    }
    oBag.mValueContent.Reserve(lCount, lLength);
    for (std::size_t lIndex = iFrame.mFirstPlain; lIndex < lPlainStop; ++lIndex)
    {
        const Plain& lPlain = mPlains[lIndex];
        if (lPlain.mIsReplaced)
        {
            continue;
        }
        wchar_t* lValue =
            oBag.mValueContent.AppendReserved(lPlain.mName, lPlain.mValue.size() + gEscapeGrowth * lPlain.mEscapable);
        if (lPlain.mEscapable == 0)
        {
            CopyText(lPlain.mValue, lValue);
        }
        else
        {
            WriteEscaped(lPlain.mValue, lValue);
        }
    }
    if (iFrame.mFirstNest == mNests.GetCount())
    {
        return;
    }
    const auto lIsKept = [&](const Nest& iNest) {
        return !iNest.mIsReplaced && (iWithEmptyNests || !iNest.mBag->hIsEmpty());
    };
    std::size_t lNestCount = 0;
    for (std::size_t lIndex = iFrame.mFirstNest; lIndex < mNests.GetCount(); ++lIndex)
    {
        lNestCount += lIsKept(mNests[lIndex]) ? 1 : 0;
    }
    oBag.mEmbeddedContent.reserve(lNestCount);
    for (std::size_t lIndex = iFrame.mFirstNest; lIndex < mNests.GetCount(); ++lIndex)
    {
        Nest& lNest = mNests[lIndex];
        if (lIsKept(lNest))
        {
            oBag.mEmbeddedContent.emplace_back(AsName(lNest.mName), lNest.mBag);
        }
        std::exchange(lNest.mBag, nullptr)->Release();
    }
}

void TextReader::MoveTo(PropertyBagImpl& oBag)
{
    // Filled apart, so that a failure leaves the bag as it is.
    PropertyBagImpl lFilled(mBegin, mEnd, true);
    hFillWithAll(lFilled);
    oBag.mValueContent = std::move(lFilled.mValueContent);
    oBag.mEmbeddedContent.swap(lFilled.mEmbeddedContent);
}

QBase::SmartPtrI<PropertyBagImpl> TextReader::MakeBag()
{
    QBase::SmartPtrI<PropertyBagImpl> lBag(new PropertyBagImpl(mBegin, mEnd, true));
    hFillWithAll(*lBag);
    return lBag;
}

// Directly in the bag that the text is read into, an empty nest stays.
void TextReader::hFillWithAll(PropertyBagImpl& oBag)
{
    Frame lFrame = mFrames.Top();
    hMarkReplaced(lFrame);
    for (std::size_t lIndex = 0; !mIsClean && lIndex < mNests.GetCount(); ++lIndex)
    {
        if (!mNests[lIndex].mIsReplaced)
        {
            mAreNestsClean.push_back(mNests[lIndex].mIsClean);
        }
    }
    hFill(lFrame, true, oBag);
}

bool TextReader::hIsPairNeutral()
{
    if (mIsPairNeutral < 0)
    {
        mIsPairNeutral = IsNeutralToEscapes({mBegin.View(), mEnd.View()}) ? 1 : 0;
    }
    return mIsPairNeutral == 1;
}

bool TextReader::hCanHeaderCarryPair()
{
    if (mCanHeaderCarryPair < 0)
    {
        mCanHeaderCarryPair = IsConstantPair(mBegin, mEnd) || CanHeaderCarry({mBegin.View(), mEnd.View()}) ? 1 : 0;
    }
    return mCanHeaderCarryPair == 1;
}

} // namespace QTalBase
