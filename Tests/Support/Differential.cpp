// Four pairs of twins live at a time. A step chooses one of them and an operation, most of which take another pair, a
// text or a word as well. Nests are shared: a pair may be the nests of another, or hold the same nests as its clone.

#include "Tests/Support/Differential.h"

#include "QBase/Convert.h"
#include "QDataType/StringCollection.h"
#include "QSerialization/MemoryDataStream.h"
#include "Tests/Support/BagTexts.h"
#include "Tests/Support/Twins.h"

#include <algorithm>
#include <array>
#include <cwchar>
#include <iterator>
#include <memory>
#include <vector>

namespace TalBaseTest
{

namespace
{

using QTalBase::PropertyBag;

const std::size_t gSlots = 4;
const unsigned int gDeepest = 5;
const std::size_t gLargestState = 1500;
const std::size_t gLargestFlatState = 6000;
const std::size_t gDelimiterSpace = 80;

std::wstring Quoted(const std::wstring& iText)
{
    return L"\"" + iText + L"\"";
}

std::wstring Quoted(const DelimiterPair& iPair)
{
    return Quoted(iPair.mBegin) + L" " + Quoted(iPair.mEnd);
}

std::wstring YesOrNo(bool iAnswer)
{
    return iAnswer ? L"yes" : L"no";
}

// What a stream carries, as a text in which every difference shows.
std::wstring Described(const std::vector<std::byte>& iBytes)
{
    std::wstring lText = L"bytes";
    for (const std::byte lByte : iBytes)
    {
        lText += L" " + std::to_wstring(std::to_integer<unsigned int>(lByte));
    }
    return lText;
}

Side OtherSide(Side iSide)
{
    return iSide == Library ? PlainSide : Library;
}

class Driver
{
public:
    Driver(Choices& iChoices, Look iLook)
        : mChoices(iChoices), mTexts(iChoices), mLook(iLook), mOldBegin(BEGIN), mOldEnd(END)
    {
        for (Twins& lTwins : mSlots)
        {
            hMakeNew(lTwins);
        }
    }

    ~Driver()
    {
        BEGIN = mOldBegin;
        END = mOldEnd;
    }

    Driver(const Driver&) = delete;
    Driver& operator=(const Driver&) = delete;

    std::string FindDifference(std::size_t iOperations)
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

private:
    using Operation = std::function<std::wstring(Side)>;

    unsigned int hBelow(unsigned int iLimit)
    {
        return mChoices.Below(iLimit);
    }

    Twins& hOther()
    {
        mOther = hBelow(gSlots);
        return mSlots[mOther];
    }

    std::wstring hWithOther() const
    {
        return L" with " + std::to_wstring(mOther);
    }

    DelimiterPair hOwnPair() const
    {
        const PropertyBag& lBag = *mSlots[mSlot].mBags[PlainSide];
        return {lBag.GetBeginDelimiter(), lBag.GetEndDelimiter()};
    }

    PropertyBag& hBag(Side iSide) const
    {
        return *mSlots[mSlot].mBags[iSide];
    }

    static void hMakeNew(Twins& oTwins)
    {
        oTwins.mBags = {MakeBag(Library), MakeBag(PlainSide)};
    }

    // A new bag takes the slot's place where it could be made.
    template <class Make>
    std::wstring hReplace(Side iSide, const Make& iMake)
    {
        const BagPtr lBag(iMake());
        mSlots[mSlot].mBags[iSide] = lBag;
        return L"made";
    }

    void hOperate();
    void hTry(const std::wstring& iWhat, const Operation& iOperation);
    void hCompareStates();
    void hKeepSmall();

    // The operations, each with its own choices.
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
    void hGetString();
    void hGetNest();
    void hRepointDefaults();
    void hMerge();
    void hMergeForeign();
    void hEmbed();
    void hCompare();
    void hClone();
    void hFilteredClone();
    void hTakeNest();
    void hSpoilNest();
    void hMake();

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
                                                    &Driver::hGetString,
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
        const std::wstring lLibrary = DescribeState(*mSlots[lIndex].mBags[Library]);
        const std::wstring lPlain = DescribeState(*mSlots[lIndex].mBags[PlainSide]);
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
        const std::size_t lSize = mLook == Look::AfterEachStep ? mSizes[lIndex] : DescribeState(lBag).size();
        if (lDepth > gDeepest || lSize > (lDepth > 2 ? gLargestState : gLargestFlatState))
        {
            mLog += L"(" + std::to_wstring(lIndex) + L" is replaced by an empty one)\n";
            hMakeNew(mSlots[lIndex]);
        }
    }
}

void Driver::hSetPlain()
{
    const std::wstring lName = mTexts.Word();
    const std::wstring lValue = mTexts.Word();
    const unsigned int lNull = hBelow(64);
    hTry(L"SetProperty " + Quoted(lName) + L" " + Quoted(lValue) + (lNull < 3 ? L" with null" : L""), [&](Side iSide) {
        const bool lIsNest = lNull == 2;
        hBag(iSide).SetProperty(lNull == 0 ? nullptr : lName.c_str(), lNull == 1 || lIsNest ? nullptr : lValue.c_str(),
                                lIsNest);
        return std::wstring();
    });
}

void Driver::hSetNest()
{
    const std::wstring lName = mTexts.Word();
    const std::wstring lText = mTexts.Text(hOwnPair());
    hTry(L"SetProperty nested " + Quoted(lName) + L" " + Quoted(lText), [&](Side iSide) {
        hBag(iSide).SetProperty(lName.c_str(), lText.c_str(), true);
        return std::wstring();
    });
}

void Driver::hAddText()
{
    hReadText(mTexts.Text(hOwnPair()));
}

void Driver::hAddManyProperties()
{
    const bool lIsOwn = !mChoices.Once(3);
    hReadText(mTexts.ManyProperties(lIsOwn ? hOwnPair() : mTexts.Pair()));
}

// The text of a bag, damaged.
void Driver::hAddMutated()
{
    const PropertyBag& lOther = *hOther().mBags[PlainSide];
    const bool lHasHeader = mChoices.Once(2);
    std::wstring lText;
    Outcome([&] { return lText = lOther.GetString(lHasHeader, nullptr, nullptr, true).c_str(); });
    hReadText(mTexts.Mutated(lText));
}

void Driver::hReadText(const std::wstring& iText)
{
    if (DepthOfText(iText, hOwnPair()) > gDeepest + 1)
    {
        return;
    }
    hTry(L"AddString " + Quoted(iText), [&](Side iSide) {
        hBag(iSide).AddString(iText.c_str());
        return std::wstring();
    });
}

void Driver::hRemove()
{
    const std::wstring lName = mTexts.Word();
    const bool lIsNull = mChoices.Once(32);
    hTry(L"RemoveProperty " + (lIsNull ? L"null" : Quoted(lName)), [&](Side iSide) {
        hBag(iSide).RemoveProperty(lIsNull ? nullptr : lName.c_str());
        return std::wstring();
    });
}

void Driver::hMove()
{
    const unsigned int lIndex = hBelow(8);
    const unsigned int lCount = hBag(PlainSide).GetCount();
    const bool lIsNull = mChoices.Once(32);
    std::wstring lName = mTexts.Word();
    if (lCount != 0 && !mChoices.Once(4))
    {
        lName = hBag(PlainSide).GetName(hBelow(256) % lCount).c_str();
    }
    hTry(L"MoveProperty " + (lIsNull ? L"null" : Quoted(lName)) + L" " + std::to_wstring(lIndex), [&](Side iSide) {
        hBag(iSide).MoveProperty(lIsNull ? nullptr : lName.c_str(), lIndex);
        return std::wstring();
    });
}

void Driver::hChangeDelimiters()
{
    const DelimiterPair lPair = mTexts.Pair();
    hTry(L"ChangeDelimiters " + Quoted(lPair), [&](Side iSide) {
        hBag(iSide).ChangeDelimiters(lPair.mBegin.c_str(), lPair.mEnd.c_str());
        return std::wstring();
    });
}

// Its own ones the other way round, or from the middle of one: arguments that point into the bag itself.
void Driver::hSwapDelimiters()
{
    const std::size_t lSkipped = hBelow(3);
    hTry(L"ChangeDelimiters to its own, swapped, " + std::to_wstring(lSkipped), [&](Side iSide) {
        const wchar_t* lBegin = hBag(iSide).GetEndDelimiter();
        hBag(iSide).ChangeDelimiters(lBegin + std::min(lSkipped, std::wcslen(lBegin)), hBag(iSide).GetBeginDelimiter());
        return std::wstring();
    });
}

void Driver::hDeSerialize()
{
    const DelimiterPair lPair = mTexts.Pair();
    const DelimiterPair lTextPair = mChoices.Once(3) ? mTexts.Pair() : lPair;
    const std::wstring lText = mTexts.Text(lTextPair);
    QSerialization::MemoryWriteDataStream lWriter;
    lWriter.WriteWString(lPair.mBegin.c_str());
    lWriter.WriteWString(lPair.mEnd.c_str());
    lWriter.WriteWString(lText.c_str());
    const std::size_t lSize = lWriter.GetBytes().size() - (mChoices.Once(10) ? 4 : 0);
    hTry(L"DeSerialize " + Quoted(lPair) + L" " + Quoted(lText), [&](Side iSide) {
        QSerialization::MemoryReadDataStream lReader(lWriter.GetBytes().data(), lSize);
        hBag(iSide).DeSerialize(lReader);
        return L"leaves " + std::to_wstring(lReader.GetRemaining());
    });
}

void Driver::hSerialize()
{
    hTry(L"Serialize", [&](Side iSide) {
        QSerialization::MemoryWriteDataStream lWriter;
        const std::wstring lOutcome = Outcome([&] {
            hBag(iSide).Serialize(lWriter);
            return std::wstring();
        });
        return lOutcome + Described(lWriter.GetBytes());
    });
}

void Driver::hGetProperty()
{
    const std::wstring lName = mTexts.Word();
    hTry(L"GetProperty " + Quoted(lName),
         [&](Side iSide) { return std::wstring(hBag(iSide).GetProperty(lName.c_str())); });
}

void Driver::hGetAtPosition()
{
    const unsigned int lChoice = hBelow(12);
    const unsigned int lIndex = lChoice == 11 ? 0xFFFFFFFF : lChoice;
    hTry(L"what is at " + std::to_wstring(lIndex), [&](Side iSide) {
        const PropertyBag& lBag = hBag(iSide);
        std::wstring lText = std::to_wstring(lBag.GetCount());
        lText += L" " + Outcome([&] { return std::wstring(lBag.GetName(lIndex)); });
        lText += L" " + Outcome([&] { return std::wstring(lBag.GetValue(lIndex)); });
        lText += L" " + Outcome([&] { return YesOrNo(lBag.IsEmbedded(lIndex)); });
        return lText + L" " + Outcome([&] { return DescribeState(*lBag.GetValuePropertyBag(lIndex)); });
    });
}

void Driver::hGetString()
{
    const unsigned int lFlags = hBelow(32);
    const DelimiterPair lPair = mTexts.Pair();
    hTry(L"GetString " + std::to_wstring(lFlags) + L" " + Quoted(lPair), [&](Side iSide) {
        const PropertyBag& lBag = hBag(iSide);
        const bool lHasHeader = (lFlags & 1) != 0;
        const wchar_t* lBegin = (lFlags & 2) != 0 ? lPair.mBegin.c_str() : nullptr;
        const wchar_t* lEnd = (lFlags & 4) != 0 ? lPair.mEnd.c_str() : nullptr;
        if ((lFlags & 16) != 0)
        {
            return std::wstring(lBag.GetStringWithoutSensitiveInfo(lHasHeader, lBegin, lEnd));
        }
        return std::wstring(lBag.GetString(lHasHeader, lBegin, lEnd, (lFlags & 8) != 0));
    });
}

void Driver::hGetNest()
{
    const std::wstring lName = mTexts.Word();
    hTry(L"IsPropertyEmbedded, GetPropertyBag " + Quoted(lName), [&](Side iSide) {
        return YesOrNo(hBag(iSide).IsPropertyEmbedded(lName.c_str())) + L" " +
               DescribeState(*hBag(iSide).GetPropertyBag(lName.c_str()));
    });
}

// BEGIN and END point elsewhere, or the text where they point becomes another.
void Driver::hRepointDefaults()
{
    const bool lIsBack = mChoices.Once(3);
    const DelimiterPair lPair = lIsBack ? OddPairs()[0] : mTexts.Pair();
    const bool lIsInPlace = mChoices.Once(2);
    hTry((lIsInPlace ? L"the texts for BEGIN and END become " : L"BEGIN and END point to ") + Quoted(lPair), [&](Side) {
        std::wcsncpy(mBegin, lPair.mBegin.c_str(), gDelimiterSpace - 1);
        std::wcsncpy(mEnd, lPair.mEnd.c_str(), gDelimiterSpace - 1);
        if (!lIsInPlace)
        {
            BEGIN = lIsBack ? mOldBegin : mBegin;
            END = lIsBack ? mOldEnd : mEnd;
        }
        return std::wstring();
    });
}

void Driver::hMerge()
{
    const Twins& lOther = hOther();
    if (mOther == mSlot && IsKeeper(hBag(PlainSide)))
    {
        return; // it would grow with every property that it reads
    }
    hTry(L"AddPropertyBag" + hWithOther(), [&](Side iSide) {
        hBag(iSide).AddPropertyBag(lOther.mBags[iSide].get());
        return std::wstring();
    });
}

// Each side merges a bag of the other side's kind, which shares nothing with any live bag.
void Driver::hMergeForeign()
{
    const DelimiterPair lPair = mTexts.Pair();
    const std::wstring lText = mTexts.Text(lPair);
    const bool lIsEmbedded = mChoices.Once(2);
    const std::wstring lName = mTexts.Word();
    hTry((lIsEmbedded ? L"EmbedProperty " + Quoted(lName) : std::wstring(L"AddPropertyBag")) + L" with a foreign bag " +
             Quoted(lPair) + L" " + Quoted(lText),
         [&](Side iSide) {
             const BagPtr lForeign = MakeBag(OtherSide(iSide), lPair.mBegin, lPair.mEnd);
             lForeign->AddString(lText.c_str());
             if (lIsEmbedded)
             {
                 hBag(iSide).EmbedProperty(lName.c_str(), lForeign.get());
             }
             else
             {
                 hBag(iSide).AddPropertyBag(lForeign.get());
             }
             return std::wstring();
         });
}

void Driver::hEmbed()
{
    const Twins& lOther = hOther();
    const std::wstring lName = mTexts.Word();
    hTry(L"EmbedProperty " + Quoted(lName) + hWithOther(), [&](Side iSide) {
        hBag(iSide).EmbedProperty(lName.c_str(), lOther.mBags[iSide].get());
        return std::wstring();
    });
}

// Also with the twin of the other kind on the right, which changes no answer.
void Driver::hCompare()
{
    const Twins& lOther = hOther();
    const bool lIsForeign = mChoices.Once(3);
    hTry(L"==, IsSubset" + hWithOther() + (lIsForeign ? L", foreign" : L""), [&](Side iSide) {
        const PropertyBag& lLeft = hBag(iSide);
        const PropertyBag& lRight = *lOther.mBags[lIsForeign ? OtherSide(iSide) : iSide];
        const std::wstring lEqual = Outcome([&] { return YesOrNo(lLeft.operator==(lRight)); });
        return lEqual + L" " + Outcome([&] { return YesOrNo(lLeft.IsSubset(&lRight)); });
    });
}

void Driver::hClone()
{
    const Twins& lOther = hOther();
    hTry(L"Clone" + hWithOther(),
         [&](Side iSide) { return hReplace(iSide, [&] { return lOther.mBags[iSide]->Clone(); }); });
}

void Driver::hFilteredClone()
{
    const Twins& lOther = hOther();
    const std::unique_ptr<QDataType::StringCollection> lFilter(QDataType::CreateStringCollection());
    std::wstring lNames;
    for (unsigned int lLeft = hBelow(12); lLeft > 0; --lLeft)
    {
        const std::wstring lName = mTexts.Word();
        lNames += L" " + Quoted(lName);
        lFilter->Insert(lName.c_str());
    }
    hTry(L"FilteredClone" + hWithOther() + lNames, [&](Side iSide) {
        return hReplace(iSide, [&] { return lOther.mBags[iSide]->FilteredClone(lFilter.get()); });
    });
}

// A nest of another bag, shared with it from now on.
void Driver::hTakeNest()
{
    const Twins& lOther = hOther();
    const unsigned int lCount = lOther.mBags[PlainSide]->GetCount();
    const unsigned int lFromBehind = hBelow(3);
    const unsigned int lIndex = lCount > lFromBehind ? lCount - 1 - lFromBehind : 0;
    hTry(L"takes the nest at " + std::to_wstring(lIndex) + hWithOther(),
         [&](Side iSide) { return hReplace(iSide, [&] { return lOther.mBags[iSide]->GetValuePropertyBag(lIndex); }); });
}

// From a stream a nest can get a pair that nobody may have. Comparing with what holds it throws what reading it would.
void Driver::hSpoilNest()
{
    const unsigned int lCount = hBag(PlainSide).GetCount();
    const unsigned int lFromBehind = hBelow(3);
    const unsigned int lIndex = lCount > lFromBehind ? lCount - 1 - lFromBehind : 0;
    const std::wstring lDelimiter = mTexts.Word();
    QSerialization::MemoryWriteDataStream lWriter;
    lWriter.WriteWString(lDelimiter.c_str());
    lWriter.WriteWString(lDelimiter.c_str());
    lWriter.WriteWString(L"");
    hTry(L"spoils the nest at " + std::to_wstring(lIndex) + L" with " + Quoted(lDelimiter), [&](Side iSide) {
        const BagPtr lNest = hBag(iSide).GetValuePropertyBag(lIndex);
        QSerialization::MemoryReadDataStream lReader(lWriter.GetBytes().data(), lWriter.GetBytes().size());
        const std::wstring lRead = Outcome([&] {
            lNest->DeSerialize(lReader);
            return std::wstring();
        });
        return lRead + L" " + Outcome([&] { return YesOrNo(hBag(iSide).operator==(hBag(iSide))); });
    });
}

void Driver::hMake()
{
    const unsigned int lKind = hBelow(4);
    const unsigned int lKept = hBelow(4);
    const DelimiterPair lPair = mTexts.Pair();
    const std::wstring lText = mTexts.Text(lPair);
    hTry(L"make " + std::to_wstring(lKind) + L" " + Quoted(lPair) + L" " + Quoted(lText), [&](Side iSide) {
        return hReplace(iSide, [&] {
            switch (lKind)
            {
            case 0:
                return lKept == 0 ? MakeBag(iSide) : MakeKeeper(iSide, (lKept & 1) != 0, (lKept & 2) != 0);
            case 1:
                return MakeBag(iSide, lPair.mBegin, lPair.mEnd);
            default:
                return MakeBag(iSide, lText);
            }
        });
    });
}

} // namespace

std::string FindDifference(Choices& iChoices, std::size_t iOperations, Look iLook)
{
    return Driver(iChoices, iLook).FindDifference(iOperations);
}

} // namespace TalBaseTest
