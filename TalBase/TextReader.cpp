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
    // From the length and the characters at both ends, where names differ. No name is empty.
    static unsigned int hHash(std::wstring_view iName) noexcept
    {
        std::uint64_t lHash = iName.size();
        if (iName.size() >= 2)
        {
            std::uint64_t lFirst = 0;
            std::uint64_t lLast = 0;
            std::memcpy(&lFirst, iName.data(), sizeof(lFirst));
            std::memcpy(&lLast, iName.data() + iName.size() - 2, sizeof(lLast));
            lHash += lFirst * 3 + lLast * 0x2545F4914F6CDD1DU;
        }
        else
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
      mIsEveryValueSuspect(mIsDefaultPair && !(iBegin.View()[0] == L'+' && iEnd.View()[0] == L'*'))
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
        ShortCutter lCutter(lText, mBegin.View(), mEnd.View());
        hTakeAllOf(lCutter);
    }
    else
    {
        LongCutter lCutter(lText, mBegin.View(), mEnd.View());
        hTakeAllOf(lCutter);
    }
    Finish();
}

// What a cutter that takes whole properties tells.
class TextReader::Taker
{
public:
    explicit Taker(TextReader& oReader) noexcept : mReader(oReader) {}

    void TakePlain(std::wstring_view iName, std::wstring_view iValue, bool iMayBeEscapable)
    {
        mReader.hTakePlain(iName, iValue, iMayBeEscapable);
    }

    void OpenNest(std::wstring_view iName)
    {
        mReader.mName = iName;
        mReader.hOpenNest();
    }

    void CloseNest()
    {
        mReader.Take(Token::End, {});
    }

    void ExpectValue(std::wstring_view iName) noexcept
    {
        mReader.mName = iName;
        mReader.mState = State::Value;
    }

private:
    TextReader& mReader;
};

// Properties are taken whole where they follow each other as they mostly do; everything else goes token by token.
template <class Cutter>
void TextReader::hTakeAllOf(Cutter& oCutter)
{
    Taker lTaker(*this);
    for (;;)
    {
        if (mState == State::Name)
        {
            oCutter.TakeProperties(lTaker);
        }
        const Found lFound = oCutter.Next();
        if (lFound == Found::Nothing)
        {
            return;
        }
        if (const std::wstring_view lRun = oCutter.GetRun(); !lRun.empty())
        {
            mMayRunBeEscapable = oCutter.MayHoldFirstCharacter();
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
        else
        {
            hTakeInsteadOfName(iToken);
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
        hTakeBehindValue(iToken);
        return;
    }
}

void TextReader::hTakeInsteadOfName(Token iToken)
{
    if (mFrames.GetCount() == 1)
    {
        Throw<PropertyBagException>(Messages::gStringTokenExpected);
    }
    if (iToken == Token::Begin)
    {
        Throw<PropertyBagException>(Messages::gEndTokenExpected);
    }
    hCloseNest();
}

void TextReader::hTakeBehindValue(Token iToken)
{
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
    if (mIsEveryValueSuspect || (iMayBeEscapable && mIsDefaultPair))
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
    QBase::SmartPtrI<PropertyBagImpl> lBag = PropertyBagImpl::hMake(mBegin, mEnd);
    hFill(lFrame, !lFrame.mIsClean, lBag->mValueContent, lBag->mEmbeddedContent);
    bool lIsClean = lFrame.mIsClean;
    if (!lIsClean)
    {
        const std::wstring lText = TextWriter(*lBag).WriteToString(true);
        lBag = PropertyBagImpl::hMake(mBegin, mEnd);
        lIsClean = lBag->hAddText(lText) && hCanHeaderCarryPair();
        mIsClean = false;
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

// iPlace says where a table keeps the number of the entry that has a name, and whether there is none yet. Entries are
// numbered plain properties first.
template <class Place>
inline void TextReader::hMarkReplacedWith(const Frame& iFrame, const Place& iPlace)
{
    Plain* lPlains = mPlains.GetData() + iFrame.mFirstPlain;
    Nest* lNests = mNests.GetData() + iFrame.mFirstNest;
    const std::size_t lPlainCount = mPlains.GetCount() - iFrame.mFirstPlain;
    const std::size_t lNestCount = mNests.GetCount() - iFrame.mFirstNest;
    const auto lNameOf = [=](std::size_t iNumber) {
        return iNumber < lPlainCount ? lPlains[iNumber].mName : lNests[iNumber - lPlainCount].mName;
    };
    const auto lTake = [&](std::size_t iNumber, std::wstring_view iName) {
        const auto [lPlace, lIsNew] =
            iPlace(iName, [&](std::size_t iOther) { return AreEqualTexts(lNameOf(iOther), iName); });
        using Number = std::remove_reference_t<decltype(*lPlace)>;
        if (lIsNew)
        {
            *lPlace = static_cast<Number>(iNumber);
            return;
        }
        // The one of the two that was read first is replaced.
        std::size_t lReplaced = iNumber;
        if (std::less<>()(lNameOf(*lPlace).data(), iName.data()))
        {
            lReplaced = *lPlace;
            *lPlace = static_cast<Number>(iNumber);
        }
        hDropEntry(iFrame, lReplaced);
    };
    for (std::size_t lIndex = 0; lIndex < lPlainCount; ++lIndex)
    {
        lTake(lIndex, lPlains[lIndex].mName);
    }
    for (std::size_t lIndex = 0; lIndex < lNestCount; ++lIndex)
    {
        lTake(lPlainCount + lIndex, lNests[lIndex].mName);
    }
}

// Marks the entry of a number, see above.
void TextReader::hDropEntry(const Frame& iFrame, std::size_t iNumber) noexcept
{
    const std::size_t lPlainCount = mPlains.GetCount() - iFrame.mFirstPlain;
    if (iNumber < lPlainCount)
    {
        mPlains[iFrame.mFirstPlain + iNumber].mEscapable = gReplaced;
    }
    else
    {
        mNests[iFrame.mFirstNest + iNumber - lPlainCount].mIsReplaced = true;
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
void TextReader::hFill(const Frame& iFrame, bool iWithEmptyNests, ValueContent& oValues, Nests& oNests)
{
    const Size lSize = hGetSizeOfPlains(iFrame);
    if (lSize.mCount != 0)
    {
        ValueContent::Filler lFiller(oValues, lSize.mCount, lSize.mLength, mTextStop);
        const Plain* lStop = mPlains.GetData() + mPlains.GetCount();
        for (const Plain* lPlain = mPlains.GetData() + iFrame.mFirstPlain; lPlain != lStop; ++lPlain)
        {
            if (lPlain->mEscapable == 0)
            {
                lFiller.Append(lPlain->mName, lPlain->mValue);
            }
            else if (lPlain->mEscapable != gReplaced)
            {
                const std::size_t lLength = lPlain->mValue.size() + gEscapeGrowth * lPlain->mEscapable;
                WriteEscaped(lPlain->mValue, lFiller.AppendName(lPlain->mName, lLength));
            }
        }
    }
    if (iFrame.mFirstNest != mNests.GetCount())
    {
        hFillWithNests(iFrame, iWithEmptyNests, oNests);
    }
}

void TextReader::hFillWithNests(const Frame& iFrame, bool iWithEmptyNests, Nests& oNests)
{
    const auto lIsKept = [&](const Nest& iNest) {
        return !iNest.mIsReplaced && (iWithEmptyNests || !iNest.mBag->hIsEmpty());
    };
    std::size_t lNestCount = 0;
    for (std::size_t lIndex = iFrame.mFirstNest; lIndex < mNests.GetCount(); ++lIndex)
    {
        lNestCount += lIsKept(mNests[lIndex]) ? 1 : 0;
    }
    oNests.reserve(lNestCount);
    for (std::size_t lIndex = iFrame.mFirstNest; lIndex < mNests.GetCount(); ++lIndex)
    {
        Nest& lNest = mNests[lIndex];
        if (lIsKept(lNest))
        {
            oNests.emplace_back(AsName(lNest.mName), nullptr);
            oNests.back().second.Attach(std::exchange(lNest.mBag, nullptr));
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
    ValueContent lValues;
    Nests lNests;
    hFillWithAll(lValues, lNests);
    oBag.mValueContent = std::move(lValues);
    oBag.mEmbeddedContent.swap(lNests);
}

QBase::SmartPtrI<PropertyBagImpl> TextReader::MakeBag()
{
    QBase::SmartPtrI<PropertyBagImpl> lBag = PropertyBagImpl::hMake(mBegin, mEnd);
    hFillWithAll(lBag->mValueContent, lBag->mEmbeddedContent);
    return lBag;
}

// Directly in the bag that the text is read into, an empty nest stays.
void TextReader::hFillWithAll(ValueContent& oValues, Nests& oNests)
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
    hFill(lFrame, true, oValues, oNests);
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

// Whether the pair alone makes every nest clean.
bool TextReader::hIsEveryNestClean()
{
    return hCanHeaderCarryPair() && (!mIsDefaultPair || hIsPairNeutral());
}

} // namespace QTalBase
