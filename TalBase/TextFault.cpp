// Looks for what a bag's text would not give back, without the text.
//
// Where every name and value keeps the rule of TextRule.h, the text is cut where it was written, and the bag comes
// back. One that breaks the rule comes from no text with these delimiters, so then the bag does not come back.
//
// Two kinds of text are doubtful: one that may be read with other delimiters than it was written with, and one whose
// values may be escaped while they are read. There a bag may come back by chance, from a text that is cut elsewhere; so
// a fault is believed only when the text, written and read, shows it.

#include "TalBase/PrivateSource/BagState.h"
#include "TalBase/PrivateSource/NameTable.h"
#include "TalBase/PrivateSource/TextRule.h"
#include "TalBase/PropertyBag.h"
#include "TalBase/TextCheck.h"

#include <stdexcept>
#include <string>
#include <vector>

namespace QTalBase
{

namespace
{

// Whether a bag has an allowed pair. A pair that is not is told by an exception.
bool IsAllowed(const DelimiterPair& iPair)
{
    try
    {
        CheckValidityOfDelimiters(iPair);
        return true;
    }
    catch (const PropertyBagException&)
    {
        return false;
    }
}

using Held = QBase::SmartPtrI<PropertyBag>;
using HeldPairs = std::vector<std::pair<Held, Held>>;

// Whether a bag that was read, which lists its plain properties first, has the same names, values and nested bags in
// the same order as another, at this level; adds the nested bags to oNests, as pairs.
bool HasSameLevel(const PropertyBag& iBag, const PropertyBag& iRead, HeldPairs& oNests)
{
    const unsigned int lCount = iBag.GetCount();
    unsigned int lPlain = 0;
    unsigned int lNest = 0;
    while (lNest < iRead.GetCount() && !iRead.IsEmbedded(lNest))
    {
        ++lNest;
    }
    const unsigned int lPlainCount = lNest;
    bool lIsSame = iRead.GetCount() == lCount;
    for (unsigned int lIndex = 0; lIsSame && lIndex < lCount; ++lIndex)
    {
        const bool lIsNest = iBag.IsEmbedded(lIndex);
        const unsigned int lOther = lIsNest ? lNest++ : lPlain++;
        lIsSame = lOther < (lIsNest ? lCount : lPlainCount) &&
                  std::wstring_view(iBag.GetName(lIndex)) == std::wstring_view(iRead.GetName(lOther));
        if (lIsSame && lIsNest)
        {
            oNests.emplace_back(iBag.GetValuePropertyBag(lIndex), iRead.GetValuePropertyBag(lOther));
        }
        else if (lIsSame)
        {
            lIsSame = std::wstring_view(iBag.GetValue(lIndex)) == std::wstring_view(iRead.GetValue(lOther));
        }
    }
    return lIsSame;
}

bool HasSameContent(const PropertyBag& iBag, const PropertyBag& iRead)
{
    HeldPairs lNests;
    bool lIsSame = HasSameLevel(iBag, iRead, lNests);
    while (lIsSame && !lNests.empty())
    {
        const std::pair<Held, Held> lPair = lNests.back();
        lNests.pop_back();
        lIsSame = HasSameLevel(*lPair.first, *lPair.second, lNests);
    }
    return lIsSame;
}

// The first name that stands before it already, or the count.
unsigned int FindRepeatedName(const PropertyBag& iBag)
{
    const unsigned int lCount = iBag.GetCount();
    std::vector<QBase::ReturnWString> lNames;
    NameTable lTable(lCount);
    for (unsigned int lIndex = 0; lIndex < lCount; ++lIndex)
    {
        lNames.push_back(iBag.GetName(lIndex));
        const std::wstring_view lName = lNames.back();
        std::uint32_t* lFirst =
            lTable.NumberFor(lName, [&](std::uint32_t iNumber) { return std::wstring_view(lNames[iNumber]) == lName; });
        if (*lFirst != NameTable::gNone)
        {
            return lIndex;
        }
        *lFirst = lIndex;
    }
    return lCount;
}

class TextFaultFinder
{
public:
    TextFaultFinder(const PropertyBag& iBag, bool iWithHeader, const wchar_t* ipBegin, const wchar_t* ipEnd)
        : mBag(iBag),
          mWithHeader(iWithHeader),
          mGivenBegin(ipBegin),
          mGivenEnd(ipEnd),
          mBegin(ipBegin != nullptr ? ipBegin : iBag.GetBeginDelimiter()),
          mEnd(ipEnd != nullptr ? ipEnd : iBag.GetEndDelimiter()),
          mIsDefaultPair(AreDefaultDelimiters({mBegin, mEnd})),
          mRule(mBegin, mEnd, mIsDefaultPair)
    {
    }

    TextFault Find()
    {
        if (!IsAllowed({mBegin, mEnd}))
        {
            return hFault(TextFaultKind::Refused, TextFaultPart::Delimiters);
        }
        mCanBeCarried = CanHeaderCarry({mBegin, mEnd});
        if (mWithHeader && !mCanBeCarried)
        {
            return hFault(TextFaultKind::NotCarried, TextFaultPart::Delimiters);
        }
        const bool lIsLikeHeader = !mWithHeader && hBeginsLikeHeader();
        TextFault lFault = lIsLikeHeader ? hMakeLikeHeader() : hFindInProperties();
        const bool lIsDoubtful =
            lIsLikeHeader || !mCanBeCarried || (mIsDefaultPair && !IsNeutralToEscapes({mBegin, mEnd}));
        return !lFault.IsNone() && lIsDoubtful && hComesBack() ? TextFault() : lFault;
    }

private:
    // A bag on the way down.
    struct Level
    {
        Held mHeld; // null for the bag that was asked about, whose reference count may be 0, and in bags of the library
        const PropertyBag* mBag;
        const BagState* mExact; // null for one of another class
        unsigned int mCount;
        unsigned int mNext;     // behind the property that is looked at
        unsigned int mRepeated; // the first whose name stands before it already, or the count
    };

    TextFault hFindInProperties()
    {
        hEnter(nullptr, mBag);
        while (!mLevels.empty())
        {
            Level& lLevel = mLevels.back();
            if (lLevel.mNext == lLevel.mCount)
            {
                mLevels.pop_back();
                continue;
            }
            ++lLevel.mNext;
            if (const TextFaultKind lKind = hCheckName(lLevel); lKind != TextFaultKind::None)
            {
                return hFault(lKind, TextFaultPart::Name);
            }
            TextFault lFault = hIsNest(lLevel) ? hCheckNest(lLevel) : hCheckPlain(lLevel);
            if (!lFault.IsNone())
            {
                return lFault;
            }
        }
        return {};
    }

    // Told before every other fault, as the name stands before all in the text.
    TextFault hMakeLikeHeader() const
    {
        TextFault lFault;
        lFault.mKind = TextFaultKind::LikeHeader;
        lFault.mPart = TextFaultPart::Name;
        lFault.mPosition = hFindFirst();
        lFault.mPath.push_back(mBag.GetName(lFault.mPosition));
        return lFault;
    }

    // Of the property that is looked at, or of the bag itself.
    TextFault hFault(TextFaultKind iKind, TextFaultPart iPart) const
    {
        TextFault lFault;
        lFault.mKind = iKind;
        lFault.mPart = iPart;
        for (const Level& lLevel : mLevels)
        {
            lFault.mPosition = lLevel.mNext - 1;
            lFault.mPath.push_back(lLevel.mBag->GetName(lFault.mPosition));
        }
        return lFault;
    }

    // The plain properties of a bag of the library are mostly looked at all together.
    void hEnter(const Held& iHeld, const PropertyBag& iBag)
    {
        const BagState* lExact = StateOf(iBag);
        const unsigned int lCount = iBag.GetCount();
        const bool lMayRepeat = lExact == nullptr || lExact->mMayRepeatNames;
        Level lLevel{iHeld, &iBag, lExact, lCount, 0, lMayRepeat ? FindRepeatedName(iBag) : lCount};
        if (!lMayRepeat && mRule.IsKept(lExact->mValues))
        {
            lLevel.mNext = static_cast<unsigned int>(lExact->mValues.GetCount());
        }
        mLevels.push_back(std::move(lLevel));
    }

    static bool hIsNest(const Level& iLevel)
    {
        const unsigned int lIndex = iLevel.mNext - 1;
        return iLevel.mExact != nullptr ? lIndex >= iLevel.mExact->mValues.GetCount() : iLevel.mBag->IsEmbedded(lIndex);
    }

    TextFaultKind hCheckName(const Level& iLevel)
    {
        const unsigned int lIndex = iLevel.mNext - 1;
        const TextFaultKind lKind = mRule.CheckName(iLevel.mBag->GetName(lIndex));
        return lKind == TextFaultKind::None && lIndex == iLevel.mRepeated ? TextFaultKind::Repeated : lKind;
    }

    TextFault hCheckPlain(const Level& iLevel)
    {
        const unsigned int lIndex = iLevel.mNext - 1;
        const TextFaultKind lKind = iLevel.mExact != nullptr ? mRule.CheckValue(iLevel.mExact->mValues.GetValue(lIndex))
                                                             : mRule.CheckValue(iLevel.mBag->GetValue(lIndex));
        return lKind != TextFaultKind::None ? hFault(lKind, TextFaultPart::Value) : TextFault();
    }

    // Goes into the nest where it has no fault of its own. iLevel may be gone afterwards.
    TextFault hCheckNest(const Level& iLevel)
    {
        const unsigned int lIndex = iLevel.mNext - 1;
        const BagState* lOwner = iLevel.mExact;
        const BagState* lOwned =
            lOwner != nullptr ? &lOwner->mNests.GetNest(lIndex - lOwner->mValues.GetCount()) : nullptr;
        const Held lHeld = lOwner != nullptr ? nullptr : iLevel.mBag->GetValuePropertyBag(lIndex);
        const PropertyBag& lNest = lOwner != nullptr ? *lOwned->mObject : *lHeld;
        if (!hHasPair(lNest, lOwner, lOwned))
        {
            return hFault(TextFaultKind::Different, TextFaultPart::Delimiters);
        }
        if (!mCanBeCarried)
        {
            return hFault(TextFaultKind::NotCarried, TextFaultPart::Delimiters);
        }
        if (lNest.GetCount() == 0)
        {
            return hFault(TextFaultKind::Empty, TextFaultPart::Value);
        }
        hEnter(lHeld, lNest);
        return {};
    }

    // Whether a nest is written with the text's delimiters. Many can share a pair of a million characters with the bag
    // around them, which has the text's.
    // ipOwner, ipOwned: the bag around the nest and the nest, in a bag of the library.
    bool hHasPair(const PropertyBag& iNest, const BagState* ipOwner, const BagState* ipOwned) const
    {
        const bool lHasBegin = mGivenBegin != nullptr ||
                               (ipOwner != nullptr && ipOwned->mBegin.IsSame(ipOwner->mBegin)) ||
                               iNest.GetBeginDelimiter() == mBegin;
        const bool lHasEnd = mGivenEnd != nullptr || (ipOwner != nullptr && ipOwned->mEnd.IsSame(ipOwner->mEnd)) ||
                             iNest.GetEndDelimiter() == mEnd;
        return lHasBegin && lHasEnd;
    }

    // Plain properties stand before nests in a text.
    unsigned int hFindFirst() const
    {
        const unsigned int lCount = mBag.GetCount();
        for (unsigned int lIndex = 0; lIndex < lCount; ++lIndex)
        {
            if (!mBag.IsEmbedded(lIndex))
            {
                return lIndex;
            }
        }
        return 0;
    }

    // Mostly the first name decides; where it and the delimiter behind it are too short for that, the text does. One
    // that cannot be written, for a nest's delimiters, begins with nothing: these are then told.
    bool hBeginsLikeHeader() const
    {
        if (mBag.GetCount() == 0 || !mRule.MayBeginLikeHeader(mBag.GetName(hFindFirst())))
        {
            return false;
        }
        try
        {
            return std::wstring_view(hText()).substr(0, gHeaderEndWord.size()) == gHeaderEndWord;
        }
        catch (const PropertyBagException&)
        {
            return false;
        }
    }

    QBase::ReturnWString hText() const
    {
        return mBag.GetString(mWithHeader, mGivenBegin, mGivenEnd, true);
    }

    // Whether the bag comes back from its text whatever the way. Its nests' delimiters have been compared, or the text
    // has one pair throughout.
    bool hComesBack() const
    {
        try
        {
            const QBase::ReturnWString lText = hText();
            const Held lRead(mWithHeader ? CreatePropertyBag(lText.c_str())
                                         : CreatePropertyBag(mBegin.c_str(), mEnd.c_str()));
            if (!mWithHeader)
            {
                lRead->AddString(lText.c_str());
            }
            return HasSameContent(mBag, *lRead);
        }
        catch (const PropertyBagException&)
        {
            return false;
        }
        catch (const std::out_of_range&)
        {
            return false;
        }
    }

    const PropertyBag& mBag;
    bool mWithHeader;
    const wchar_t* mGivenBegin;
    const wchar_t* mGivenEnd;
    std::wstring mBegin;
    std::wstring mEnd;
    bool mIsDefaultPair;
    TextRule mRule;
    bool mCanBeCarried = false;
    std::vector<Level> mLevels; // the last is looked at
};

} // namespace

TextFault FindTextFault(const PropertyBag& iBag, bool iWithMetadata, const wchar_t* ipBegin, const wchar_t* ipEnd)
{
    return TextFaultFinder(iBag, iWithMetadata, ipBegin, ipEnd).Find();
}

class PropertyTextCheck::Pair
{
public:
    Pair(const wchar_t* ipBegin, const wchar_t* ipEnd) : mBegin(ipBegin), mEnd(ipEnd)
    {
        CheckValidityOfDelimiters({mBegin, mEnd});
    }

    TextRule& GetRule()
    {
        return mRule;
    }

private:
    std::wstring mBegin;
    std::wstring mEnd;
    TextRule mRule{mBegin, mEnd, AreDefaultDelimiters({mBegin, mEnd})};
};

PropertyTextCheck::PropertyTextCheck(const wchar_t* ipBegin, const wchar_t* ipEnd)
    : mPair(std::make_unique<Pair>(ipBegin, ipEnd))
{
}

PropertyTextCheck::~PropertyTextCheck() = default;

TextFaultKind PropertyTextCheck::CheckName(std::wstring_view iName)
{
    return mPair->GetRule().CheckName(iName);
}

TextFaultKind PropertyTextCheck::CheckStoredValue(std::wstring_view iValue)
{
    return mPair->GetRule().CheckValue(iValue);
}

} // namespace QTalBase
