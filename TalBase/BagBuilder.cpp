#include "TalBase/PrivateSource/BagBuilder.h"

#include "TalBase/PrivateSource/Messages.h"
#include "TalBase/PrivateSource/RepeatedNames.h"
#include "TalBase/PrivateSource/TextReader.h"
#include "TalBase/PrivateSource/TextSearch.h"
#include "TalBase/PrivateSource/TextWriter.h"

#include <utility>

namespace QTalBase
{

namespace
{

const std::size_t gEscapeGrowth = 4; // an escape has five characters

} // namespace

BagBuilder::BagBuilder(const SharedWString& iBegin, const SharedWString& iEnd, const wchar_t* ipTextStop,
                       bool iMakesNests)
    : mBegin(iBegin),
      mEnd(iEnd),
      mIsDefaultPair(AreDefaultDelimiters({iBegin.View(), iEnd.View()})),
      mIsEveryValueSuspect(mIsDefaultPair && !(iBegin.View()[0] == L'+' && iEnd.View()[0] == L'*')),
      mTextStop(ipTextStop),
      mMakesNests(iMakesNests)
{
    mFrames.Push(Frame{{}, 0, 0, false});
}

BagBuilder::~BagBuilder()
{
    for (std::size_t lIndex = 0; lIndex < mNests.GetCount(); ++lIndex)
    {
        if (mNests[lIndex].mNest != nullptr)
        {
            mNests[lIndex].mNest->Release();
        }
    }
}

// Only counted here, and escaped where it is kept, so that most values are copied once. What escaping would break is
// refused at once all the same: SetProperty would refuse it before what follows in the text is read.
void BagBuilder::hAddSuspect(std::wstring_view iName, std::wstring_view iValue)
{
    const std::size_t lEscapable = CountEscapable(iValue);
    if (lEscapable != 0 && !hIsPairNeutral())
    {
        const std::wstring lEscaped = Escaped(iValue);
        if (Contains(lEscaped, mEnd.View()) || Contains(lEscaped, mBegin.View()))
        {
            Messages::ThrowValueHasDelimiter(lEscaped, mBegin.View(), mEnd.View());
        }
        mFrames.Top().mIsTouched = true;
    }
    mPlains.Push(PlainEntry{iName, iValue, lEscapable});
}

void BagBuilder::OpenNest(std::wstring_view iName)
{
    mFrames.Push(Frame{iName, mPlains.GetCount(), mNests.GetCount(), false});
}

// What lies above the frame becomes one nest of the nest around it. Its entry is pushed before the nest is let go, so
// that a failure of pushing frees it.
void BagBuilder::CloseNest()
{
    const Frame lFrame = mFrames.Top();
    hMarkReplaced(lFrame);
    bool lIsFinal = true;
    NestEntry lEntry{lFrame.mName, nullptr, false, !mMakesNests && hIsNothingLeft(lFrame)};
    NestPtr lNest = mMakesNests ? hMakeClosed(lFrame, lIsFinal) : nullptr;
    mPlains.CutTo(lFrame.mFirstPlain);
    mNests.CutTo(lFrame.mFirstNest);
    mFrames.CutTo(mFrames.GetCount() - 1);
    mFrames.Top().mIsTouched = mFrames.Top().mIsTouched || !lIsFinal;
    mNests.Push(lEntry);
    mNests.Top().mNest = lNest.Detach();
}

// A nest that has to be read again keeps its empty nests until then: its text has them, and they may count there.
NestPtr BagBuilder::hMakeClosed(const Frame& iFrame, bool& oIsFinal)
{
    oIsFinal = !iFrame.mIsTouched && hCanHeaderCarryPair();
    NestPtr lNest = hMakeRead(iFrame, !oIsFinal);
    return oIsFinal ? lNest : hReadAgain(*lNest, oIsFinal);
}

NestPtr BagBuilder::hMakeRead(const Frame& iFrame, bool iWithEmptyNests)
{
    const BagRoom lRoom = hGetRoom(iFrame);
    NestPtr lNest = MakeNest(iFrame.mName, mBegin, mEnd, lRoom);
    hFill(iFrame, lRoom, iWithEmptyNests, lNest->mValues, lNest->mNests);
    return lNest;
}

// What IsEmpty would say of the nest, had it been made.
bool BagBuilder::hIsNothingLeft(const Frame& iFrame) noexcept
{
    bool lIsNothing = hGetRoom(iFrame).mPlainCount == 0;
    for (std::size_t lIndex = iFrame.mFirstNest; lIndex < mNests.GetCount(); ++lIndex)
    {
        lIsNothing = lIsNothing && (mNests[lIndex].mIsReplaced || mNests[lIndex].mIsEmpty);
    }
    return lIsNothing;
}

// What was escaped is not escaped again, so the second reading is final as a rule.
NestPtr BagBuilder::hReadAgain(const BagState& iNest, bool& oIsFinal)
{
    const std::wstring lText = TextWriter(iNest).WriteToString(true);
    NestPtr lNest = MakeNest(iNest.mName, mBegin, mEnd, {});
    oIsFinal = AddText(*lNest, lText) && hCanHeaderCarryPair();
    return lNest;
}

bool BagBuilder::AreNestsFinal()
{
    return !mFrames.Top().mIsTouched;
}

// Entries are numbered plain properties first.
void BagBuilder::hMarkReplaced(const Frame& iFrame)
{
    PlainEntry* lPlains = mPlains.GetData() + iFrame.mFirstPlain;
    NestEntry* lNests = mNests.GetData() + iFrame.mFirstNest;
    const std::size_t lPlainCount = mPlains.GetCount() - iFrame.mFirstPlain;
    const std::size_t lNestCount = mNests.GetCount() - iFrame.mFirstNest;
    FindReplaced(
        lPlainCount + lNestCount,
        [=](std::size_t iNumber) {
            return iNumber < lPlainCount ? lPlains[iNumber].mName : lNests[iNumber - lPlainCount].mName;
        },
        [=](std::size_t iNumber) {
            if (iNumber < lPlainCount)
            {
                lPlains[iNumber].mEscapable = gReplaced;
            }
            else
            {
                lNests[iNumber - lPlainCount].mIsReplaced = true;
            }
        });
}

// Of what is kept, escapes counted: all of it then goes into one piece of memory, and nothing is copied twice.
BagRoom BagBuilder::hGetRoom(const Frame& iFrame) noexcept
{
    BagRoom lRoom{0, 0, mNests.GetCount() - iFrame.mFirstNest};
    for (std::size_t lIndex = iFrame.mFirstPlain; lIndex < mPlains.GetCount(); ++lIndex)
    {
        const PlainEntry& lPlain = mPlains[lIndex];
        if (lPlain.mEscapable != gReplaced)
        {
            ++lRoom.mPlainCount;
            lRoom.mPlainLength += lPlain.mName.size() + lPlain.mValue.size() + gEscapeGrowth * lPlain.mEscapable;
        }
    }
    return lRoom;
}

// Takes the nests from the stack.
void BagBuilder::hFill(const Frame& iFrame, const BagRoom& iRoom, bool iWithEmptyNests, ValueContent& oValues,
                       NestContent& oNests)
{
    if (iRoom.mPlainCount != 0)
    {
        ValueContent::Filler lFiller(oValues, iRoom.mPlainCount, iRoom.mPlainLength, mTextStop);
        const PlainEntry* lStop = mPlains.GetData() + mPlains.GetCount();
        for (const PlainEntry* lPlain = mPlains.GetData() + iFrame.mFirstPlain; lPlain != lStop; ++lPlain)
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

// Each reference leaves the stack, also that of a nest which is not kept: letting it go frees it.
void BagBuilder::hFillWithNests(const Frame& iFrame, bool iWithEmptyNests, NestContent& oNests)
{
    const auto lIsKept = [&](const NestEntry& iEntry) {
        return !iEntry.mIsReplaced && (iWithEmptyNests || !iEntry.mNest->IsEmpty());
    };
    std::size_t lNestCount = 0;
    for (std::size_t lIndex = iFrame.mFirstNest; lIndex < mNests.GetCount(); ++lIndex)
    {
        lNestCount += lIsKept(mNests[lIndex]) ? 1 : 0;
    }
    oNests.Reserve(lNestCount);
    for (std::size_t lIndex = iFrame.mFirstNest; lIndex < mNests.GetCount(); ++lIndex)
    {
        NestEntry& lEntry = mNests[lIndex];
        const bool lIsToKeep = lIsKept(lEntry);
        NestPtr lNest;
        lNest.Attach(std::exchange(lEntry.mNest, nullptr));
        if (lIsToKeep)
        {
            oNests.Append(std::move(lNest));
        }
    }
}

// Directly in the bag that the text is read into, an empty nest stays.
void BagBuilder::MoveTo(BagState& oBag)
{
    // Filled apart, so that a failure leaves the bag as it is.
    ValueContent lValues;
    NestContent lNests;
    const Frame lFrame = mFrames.Top();
    hMarkReplaced(lFrame);
    hFill(lFrame, hGetRoom(lFrame), true, lValues, lNests);
    oBag.mValues = std::move(lValues);
    oBag.mNests = std::move(lNests);
}

NestPtr BagBuilder::MakeBag()
{
    const Frame lFrame = mFrames.Top();
    hMarkReplaced(lFrame);
    return hMakeRead(lFrame, true);
}

bool BagBuilder::hIsPairNeutral()
{
    if (!mIsPairNeutral)
    {
        mIsPairNeutral = IsNeutralToEscapes({mBegin.View(), mEnd.View()});
    }
    return *mIsPairNeutral;
}

bool BagBuilder::hCanHeaderCarryPair()
{
    if (!mCanHeaderCarryPair)
    {
        mCanHeaderCarryPair = IsConstantPair(mBegin, mEnd) || CanHeaderCarry({mBegin.View(), mEnd.View()});
    }
    return *mCanHeaderCarryPair;
}

} // namespace QTalBase
