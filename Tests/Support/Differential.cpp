#include "Tests/Support/Differential.h"

#include "QBase/Convert.h"
#include "Tests/Support/DifferentialDriver.h"

#include <iterator>

namespace Support
{

namespace
{

const std::size_t gLargestState = 1500;
const std::size_t gLargestFlatState = 6000;

} // namespace

std::wstring Quoted(const DelimiterPair& iPair)
{
    return Quoted(iPair.mBegin) + L" " + Quoted(iPair.mEnd);
}

Driver::Driver(Choices& iChoices, Look iLook)
    : mChoices(iChoices), mTexts(iChoices), mLook(iLook), mOldBegin(BEGIN), mOldEnd(END)
{
    for (Twins& lTwins : mSlots)
    {
        hMakeNew(lTwins);
    }
}

Driver::~Driver()
{
    BEGIN = mOldBegin;
    END = mOldEnd;
}

std::string Driver::FindDifference(std::size_t iOperations)
{
    for (std::size_t lStep = 0; lStep < iOperations && mDifference.empty() && mChoices.NextStep(); ++lStep)
    {
        hOperate();
    }
    hCompareStates();
    if (mDifference.empty())
    {
        return {};
    }
    return QBase::WideCharToUTF8((mLog + L"DIFFERENCE: " + mDifference).c_str(), false);
}

void Driver::hOperate()
{
    // As often as named.
    static void (Driver::*const gOperations[])() = {&Driver::hSetPlain,
                                                    &Driver::hSetPlain,
                                                    &Driver::hSetPlain,
                                                    &Driver::hSetNest,
                                                    &Driver::hSetNest,
                                                    &Driver::hAddText,
                                                    &Driver::hAddText,
                                                    &Driver::hAddText,
                                                    &Driver::hAddMutated,
                                                    &Driver::hAddMutated,
                                                    &Driver::hRemove,
                                                    &Driver::hMove,
                                                    &Driver::hChangeDelimiters,
                                                    &Driver::hSwapDelimiters,
                                                    &Driver::hDeSerialize,
                                                    &Driver::hSerialize,
                                                    &Driver::hGetProperty,
                                                    &Driver::hGetAtPosition,
                                                    &Driver::hGetString,
                                                    &Driver::hWriteOut,
                                                    &Driver::hGetNest,
                                                    &Driver::hRepointDefaults,
                                                    &Driver::hMerge,
                                                    &Driver::hMergeForeign,
                                                    &Driver::hEmbed,
                                                    &Driver::hCompare,
                                                    &Driver::hCompare,
                                                    &Driver::hClone,
                                                    &Driver::hFilteredClone,
                                                    &Driver::hTakeNest,
                                                    &Driver::hTakeNest,
                                                    &Driver::hMake,
                                                    &Driver::hAddManyProperties,
                                                    &Driver::hCompareAltered,
                                                    &Driver::hCompareAltered,
                                                    &Driver::hCompareAltered,
                                                    &Driver::hMakeKeeper,
                                                    &Driver::hSpoilNest};
    mSlot = hBelow(gSlots);
    const unsigned int lOperation = hBelow(static_cast<unsigned int>(std::size(gOperations)));
    (this->*gOperations[lOperation])();
}

void Driver::hTry(const std::wstring& iWhat, const Operation& iOperation)
{
    mLog += std::to_wstring(mSlot) + L": " + iWhat + L"\n";
    const std::wstring lLibrary = Outcome([&] { return iOperation(Library); });
    const std::wstring lPlain = Outcome([&] { return iOperation(PlainSide); });
    if (lLibrary != lPlain)
    {
        mDifference = L"library: " + lLibrary + L"\nplain:   " + lPlain;
        return;
    }
    if (mLook == Look::AfterEachStep)
    {
        hCompareStates();
    }
    hKeepSmall();
}

void Driver::hCompareStates()
{
    for (std::size_t lIndex = 0; lIndex < gSlots && mDifference.empty(); ++lIndex)
    {
        const std::wstring lLibrary = Describe(*mSlots[lIndex].mBags[Library]);
        const std::wstring lPlain = Describe(*mSlots[lIndex].mBags[PlainSide]);
        mSizes[lIndex] = lPlain.size();
        if (lLibrary != lPlain)
        {
            mDifference = L"state of " + std::to_wstring(lIndex) + L"\nlibrary: " + lLibrary + L"\nplain:   " + lPlain;
        }
    }
}

// Merging bags into bags would grow them without end, and what the plain one does with depth takes for ever.
void Driver::hKeepSmall()
{
    for (std::size_t lIndex = 0; lIndex < gSlots; ++lIndex)
    {
        const PropertyBag& lBag = *mSlots[lIndex].mBags[PlainSide];
        const unsigned int lDepth = DepthOf(lBag);
        const std::size_t lSize = mLook == Look::AfterEachStep ? mSizes[lIndex] : Describe(lBag).size();
        if (lDepth > gDeepest || lSize > (lDepth > 2 ? gLargestState : gLargestFlatState))
        {
            mLog += L"(" + std::to_wstring(lIndex) + L" is replaced by an empty one)\n";
            hMakeNew(mSlots[lIndex]);
        }
    }
}

std::wstring Driver::hName()
{
    const PropertyBag& lBag = hBag(PlainSide);
    const unsigned int lPlace = hBelow(256);
    if (lPlace % 2 == 0 || lBag.GetCount() == 0)
    {
        return mTexts.Word();
    }
    return std::wstring(lBag.GetName(lPlace / 2 % lBag.GetCount()));
}

// Mostly one that the bag has.
std::wstring Driver::hNameOf(const PropertyBag& iBag)
{
    const unsigned int lPlace = hBelow(256);
    if (mChoices.Once(8) || iBag.GetCount() == 0)
    {
        return mTexts.Word();
    }
    return std::wstring(iBag.GetName(lPlace % iBag.GetCount()));
}

Twins& Driver::hOther()
{
    mOther = hBelow(gSlots);
    return mSlots[mOther];
}

std::wstring Driver::hWithOther() const
{
    return L" with " + std::to_wstring(mOther);
}

DelimiterPair Driver::hOwnPair() const
{
    return {hBag(PlainSide).GetBeginDelimiter(), hBag(PlainSide).GetEndDelimiter()};
}

void Driver::hMakeNew(Twins& oTwins)
{
    oTwins.mBags = {MakeBag(Library), MakeBag(PlainSide)};
}

std::string FindDifference(Choices& iChoices, std::size_t iOperations, Look iLook)
{
    return Driver(iChoices, iLook).FindDifference(iOperations);
}

} // namespace Support
