#include "Tests/Support/DifferentialDriver.h"

#include "QDataType/StringCollection.h"
#include "QSerialization/MemoryDataStream.h"

#include <algorithm>
#include <cwchar>
#include <memory>

namespace Support
{

void Driver::hSetPlain()
{
    const std::wstring lName = hName();
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
    const std::wstring lName = hName();
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
    if (ShapeOfText(iText, hOwnPair()).mDepth > gDeepest + 1)
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
    const std::wstring lName = hName();
    const bool lIsNull = mChoices.Once(32);
    hTry(L"RemoveProperty " + (lIsNull ? L"null" : Quoted(lName)), [&](Side iSide) {
        hBag(iSide).RemoveProperty(lIsNull ? nullptr : lName.c_str());
        return std::wstring();
    });
}

void Driver::hMove()
{
    const unsigned int lIndex = hBelow(8);
    const bool lIsNull = mChoices.Once(32);
    const std::wstring lName = hName();
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

// Into the bag or into its last nest. Where the text is refused, the delimiters that came before it stay, allowed or
// not.
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
    const unsigned int lCount = hBag(PlainSide).GetCount();
    const bool lIsNest = mChoices.Once(2) && lCount > 0 && hBag(PlainSide).IsEmbedded(lCount - 1);
    hTry(L"DeSerialize " + std::wstring(lIsNest ? L"nest " : L"") + Quoted(lPair) + L" " + Quoted(lText),
         [&](Side iSide) {
             QSerialization::MemoryReadDataStream lReader(lWriter.GetBytes().data(), lSize);
             const BagPtr lBag = lIsNest ? hBag(iSide).GetValuePropertyBag(lCount - 1) : mSlots[mSlot].mBags[iSide];
             lBag->DeSerialize(lReader);
             return L"leaves " + std::to_wstring(lReader.GetRemaining());
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
    const std::wstring lName = hName();
    hTry(L"EmbedProperty " + Quoted(lName) + hWithOther(), [&](Side iSide) {
        hBag(iSide).EmbedProperty(lName.c_str(), lOther.mBags[iSide].get());
        return std::wstring();
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
    const unsigned int lMost = mChoices.Once(4) ? 120 : 11; // many names are looked up in tables
    for (unsigned int lLeft = hBelow(lMost + 1); lLeft > 0; --lLeft)
    {
        const std::wstring lName = hNameOf(*lOther.mBags[PlainSide]);
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
        const auto lSpoil = [&](PropertyBag& oBag) {
            QSerialization::MemoryReadDataStream lReader(lWriter.GetBytes().data(), lWriter.GetBytes().size());
            oBag.DeSerialize(lReader);
        };
        const std::wstring lHidden = Outcome([&] { return hCompareHidden(iSide, hBag(iSide), lSpoil); });
        const BagPtr lNest = hBag(iSide).GetValuePropertyBag(lIndex);
        const std::wstring lRead = Outcome([&] {
            lSpoil(*lNest);
            return std::wstring();
        });
        return lHidden + L" " + lRead + L" " + hCompareWith(hBag(iSide), hBag(iSide));
    });
}

void Driver::hMake()
{
    const unsigned int lKind = hBelow(4);
    const DelimiterPair lPair = mTexts.Pair();
    const std::wstring lText = mTexts.Text(lPair);
    hTry(L"make " + std::to_wstring(lKind) + L" " + Quoted(lPair) + L" " + Quoted(lText), [&](Side iSide) {
        return hReplace(iSide, [&] {
            switch (lKind)
            {
            case 0:
                return MakeBag(iSide);
            case 1:
                return MakeBag(iSide, lPair.mBegin, lPair.mEnd);
            default:
                return MakeBag(iSide, lText);
            }
        });
    });
}

// With the properties of a live bag.
void Driver::hMakeKeeper()
{
    const Twins& lOther = hOther();
    const unsigned int lKept = 1 + hBelow(3);
    hTry(L"make a keeper " + std::to_wstring(lKept) + hWithOther(), [&](Side iSide) {
        return hReplace(iSide, [&] {
            const BagPtr lKeeper = MakeKeeper(iSide, (lKept & 1) != 0, (lKept & 2) != 0);
            lKeeper->AddPropertyBag(lOther.mBags[iSide].get());
            return lKeeper;
        });
    });
}

} // namespace Support
