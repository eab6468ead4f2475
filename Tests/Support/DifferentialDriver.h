// The inside of FindDifference: four pairs of twins live at a time. A step chooses one of them and an operation, most
// of which take another pair, a text or a word as well. Nests are shared: a pair may be the nests of another, or hold
// the same nests as its clone.

#ifndef TESTS_SUPPORT_DIFFERENTIALDRIVER_H
#define TESTS_SUPPORT_DIFFERENTIALDRIVER_H

#include "Tests/Support/BagTexts.h"
#include "Tests/Support/Differential.h"
#include "Tests/Support/Twins.h"

#include <array>
#include <functional>
#include <string>

namespace Support
{

class Driver
{
public:
    Driver(Choices& iChoices, Look iLook);
    ~Driver();

    Driver(const Driver&) = delete;
    Driver& operator=(const Driver&) = delete;

    std::string FindDifference(std::size_t iOperations);

private:
    static constexpr std::size_t gSlots = 4;
    static constexpr std::size_t gDelimiterSpace = 80;
    static constexpr unsigned int gDeepest = 5; // nests, and one more open in a text

    using PropertyBag = QTalBase::PropertyBag;
    using Operation = std::function<std::wstring(Side)>;

    void hOperate();
    void hTry(const std::wstring& iWhat, const Operation& iOperation);
    void hCompareStates();
    void hKeepSmall();

    // What the operations choose from.
    unsigned int hBelow(unsigned int iLimit)
    {
        return mChoices.Below(iLimit);
    }
    std::wstring hName(); // one that the bag has, or any word
    std::wstring hNameOf(const PropertyBag& iBag);
    Twins& hOther();
    std::wstring hWithOther() const;
    DelimiterPair hOwnPair() const;

    PropertyBag& hBag(Side iSide) const
    {
        return *mSlots[mSlot].mBags[iSide];
    }

    static void hMakeNew(Twins& oTwins);

    // A new bag takes the slot's place where it could be made.
    template <class Make>
    std::wstring hReplace(Side iSide, const Make& iMake)
    {
        const BagPtr lBag(iMake());
        mSlots[mSlot].mBags[iSide] = lBag;
        return L"made";
    }

    // The operations, each with its own choices: in DifferentialChanges.cpp those that change a bag or take its place,
    // in DifferentialQuestions.cpp those that do not.
    void hSetPlain();
    void hSetNest();
    void hAddText();
    void hAddManyProperties();
    void hAddMutated();
    void hReadText(const std::wstring& iText);
    void hRemove();
    void hMove();
    void hChangeDelimiters();
    void hSwapDelimiters();
    void hDeSerialize();
    void hSerialize();
    void hGetProperty();
    void hGetAtPosition();
    void hWriteOut();
    void hGetString();
    void hGetNest();
    void hRepointDefaults();
    void hMerge();
    void hMergeForeign();
    void hEmbed();
    void hCompare();
    void hCompareAltered();
    static std::wstring hCompareWith(const PropertyBag& iLeft, const PropertyBag& iRight);
    static std::wstring hCompareHidden(Side iSide, const PropertyBag& iBag,
                                       const std::function<void(PropertyBag&)>& iSpoil);
    void hClone();
    void hFilteredClone();
    void hTakeNest();
    void hSpoilNest();
    void hMake();
    void hMakeKeeper();

    Choices& mChoices;
    BagTexts mTexts;
    Look mLook;
    const wchar_t* mOldBegin;
    const wchar_t* mOldEnd;
    wchar_t mBegin[gDelimiterSpace] = L"++++"; // where BEGIN and END may point, changed in place too
    wchar_t mEnd[gDelimiterSpace] = L"***";
    std::array<Twins, gSlots> mSlots;
    std::array<std::size_t, gSlots> mSizes = {}; // of their descriptions
    std::size_t mSlot = 0;
    std::size_t mOther = 0;
    std::wstring mLog;
    std::wstring mDifference;
};

// For the log.
std::wstring Quoted(const DelimiterPair& iPair);

// A bag of the other kind says the same.
inline Side OtherSide(Side iSide)
{
    return iSide == Library ? PlainSide : Library;
}

} // namespace Support

#endif
