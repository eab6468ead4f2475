#include "TalBase/PrivateSource/TextReader.h"

#include "TalBase/PrivateSource/Messages.h"
#include "TalBase/PrivateSource/NameTable.h"
#include "TalBase/PrivateSource/TextSearch.h"
#include "TalBase/PrivateSource/TextWriter.h"

#include <cstdint>
#include <cstring>
#include <functional>

namespace QTalBase
{

namespace
{

using Messages::Throw;

const std::size_t gEscapeGrowth = 4; // an escape has five characters

// A hash table for a handful of names, where one with an allocation and a secret would not pay: however the names are
// chosen, a look-up compares with gMostNames others at most.
class SmallNameTable
{
public:
    static constexpr std::size_t gMostNames = 64;

    // Returns the place of the name's number: gFree where the name is new, for the caller to put a number there.
    template <class IsEqual>
    std::uint8_t* Place(std::wstring_view iName, const IsEqual& iIsEqual) noexcept
    {
        std::uint8_t* lPlace = mNumbers + hHash(iName);
        while (*lPlace != gFree && !iIsEqual(*lPlace))
        {
            lPlace = lPlace + 1 != mNumbers + sizeof(mNumbers) ? lPlace + 1 : mNumbers;
        }
        return lPlace;
    }

    static constexpr std::uint8_t gFree = 0xFF;

    SmallNameTable() noexcept
    {
        std::memset(mNumbers, gFree, sizeof(mNumbers));
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

    std::uint8_t mNumbers[256];
};

} // namespace

TextReader::TextReader(const SharedWString& iBegin, const SharedWString& iEnd)
    : mBegin(iBegin),
      mEnd(iEnd),
      mIsDefaultPair(AreDefaultDelimiters({iBegin.View(), iEnd.View()})),
      mStartsWithEscapable(iBegin.View()[0] == L'+' && iEnd.View()[0] == L'*')
{
    mFrames.Push(Frame{{}, 0, 0, true});
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
    mTextStop = lText.data() + lText.size();
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
    mPlains.Push(Plain{iName, iValue, 0});
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
    mPlains.Push(Plain{iName, iValue, lEscapable});
}

void TextReader::hOpenNest()
{
    mFrames.Push(Frame{mName, mPlains.GetCount(), mNests.GetCount(), true});
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
    mNests.Push(Nest{lFrame.mName, nullptr, lIsClean, false});
    mNests.Top().mBag = lBag.Detach();
}

// Of the properties that have one name the last counts, whatever its kind: setting it removed those before it.
void TextReader::hMarkReplaced(const Frame& iFrame)
{
    const std::size_t lCount = mPlains.GetCount() - iFrame.mFirstPlain + mNests.GetCount() - iFrame.mFirstNest;
    if (lCount > SmallNameTable::gMostNames)
    {
        NameTable lTable(lCount);
        hMarkReplacedWith(iFrame, [&](std::wstring_view iName, const auto& iIsEqual) {
            std::uint32_t* lPlace = lTable.Place(iName, iIsEqual);
            return std::pair(lPlace, *lPlace == NameTable::gNone);
        });
    }
    else if (lCount > 1)
    {
        SmallNameTable lTable;
        hMarkReplacedWith(iFrame, [&](std::wstring_view iName, const auto& iIsEqual) {
            std::uint8_t* lPlace = lTable.Place(iName, iIsEqual);
            return std::pair(lPlace, *lPlace == SmallNameTable::gFree);
        });
    }
}

// Entries are numbered plain properties first.
inline std::wstring_view TextReader::hGetName(const Frame& iFrame, std::size_t iNumber) noexcept
{
    const std::size_t lPlains = mPlains.GetCount() - iFrame.mFirstPlain;
    return iNumber < lPlains ? mPlains[iFrame.mFirstPlain + iNumber].mName
                             : mNests[iFrame.mFirstNest + iNumber - lPlains].mName;
}

// iPlace says where a table keeps the number of the entry that has a name, and whether there is none yet.
template <class Place>
inline void TextReader::hMarkReplacedWith(const Frame& iFrame, Place iPlace)
{
    const std::size_t lPlains = mPlains.GetCount() - iFrame.mFirstPlain;
    const std::size_t lCount = lPlains + mNests.GetCount() - iFrame.mFirstNest;
    for (std::size_t lNumber = 0; lNumber < lCount; ++lNumber)
    {
        const std::wstring_view lName = hGetName(iFrame, lNumber);
        const auto [lPlace, lIsNew] = iPlace(
            lName, [&](std::size_t iOther) { return AreEqualTexts(hGetName(iFrame, iOther), lName); });
        std::size_t lReplaced = lNumber;
        if (lIsNew || std::less<>()(hGetName(iFrame, *lPlace).data(), lName.data()))
        {
            lReplaced = *lPlace;
            *lPlace = static_cast<std::remove_reference_t<decltype(*lPlace)>>(lNumber);
        }
        if (lIsNew)
        {
            continue;
        }
        if (lReplaced < lPlains)
        {
            mPlains[iFrame.mFirstPlain + lReplaced].mEscapable = gReplaced;
        }
        else
        {
            mNests[iFrame.mFirstNest + lReplaced - lPlains].mIsReplaced = true;
        }
    }
}

TextReader::Size TextReader::hGetSizeOfPlains(const Frame& iFrame) noexcept
{
    Size lSize{0, 0};
    for (std::size_t lIndex = iFrame.mFirstPlain; lIndex < mPlains.GetCount(); ++lIndex)
    {
        const Plain& lPlain = mPlains[lIndex];
        if (lPlain.mEscapable != gReplaced)
        {
            ++lSize.mCount;
            lSize.mLength += lPlain.mName.size() + lPlain.mValue.size() + gEscapeGrowth * lPlain.mEscapable;
        }
    }
    return lSize;
}

// Takes the nests from the stack.
void TextReader::hFill(const Frame& iFrame, bool iWithEmptyNests, PropertyBagImpl& oBag)
{
    const Size lSize = hGetSizeOfPlains(iFrame);
    if (lSize.mCount != 0)
    {
        ValueContent::Filler lFiller(oBag.mValueContent, lSize.mCount, lSize.mLength, mTextStop);
        for (std::size_t lIndex = iFrame.mFirstPlain; lIndex < mPlains.GetCount(); ++lIndex)
        {
            const Plain& lPlain = mPlains[lIndex];
            if (lPlain.mEscapable == 0)
            {
                lFiller.Append(lPlain.mName, lPlain.mValue);
            }
            else if (lPlain.mEscapable != gReplaced)
            {
                const std::size_t lLength = lPlain.mValue.size() + gEscapeGrowth * lPlain.mEscapable;
                WriteEscaped(lPlain.mValue, lFiller.AppendName(lPlain.mName, lLength));
            }
        }
    }
    if (iFrame.mFirstNest != mNests.GetCount())
    {
        hFillWithNests(iFrame, iWithEmptyNests, oBag);
    }
}

void TextReader::hFillWithNests(const Frame& iFrame, bool iWithEmptyNests, PropertyBagImpl& oBag)
{
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
            oBag.mEmbeddedContent.emplace_back(AsName(lNest.mName), nullptr);
            oBag.mEmbeddedContent.back().second.Attach(std::exchange(lNest.mBag, nullptr));
        }
        else
        {
            std::exchange(lNest.mBag, nullptr)->Release();
        }
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
