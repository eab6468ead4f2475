#include "TalBase/PrivateSource/BagComparer.h"

#include "TalBase/PrivateSource/TextWriter.h"

#include <string>

namespace QTalBase
{

namespace
{

constexpr std::size_t gNotFound = BagIndex::gNotFound;

// What reading by name makes of a stored value.
class ReadValue
{
public:
    ReadValue(std::wstring_view iStored, bool iIsUnescaped) : mView(iStored)
    {
        if (iIsUnescaped && TriggersUnescaping(iStored))
        {
            mText = Unescaped(iStored);
            mView = mText;
        }
    }

    ReadValue(const ReadValue&) = delete;
    ReadValue& operator=(const ReadValue&) = delete;

    std::wstring_view View() const noexcept
    {
        return mView;
    }

private:
    std::wstring mText;
    std::wstring_view mView;
};

} // namespace

// The levels on the way down stand in a list, each with what it looks up names by; nests are compared when everything
// before them was equal, as the operation that calls itself would.
bool BagComparer::AreEqual(const BagState& iAsked, const BagState& iOther)
{
    Levels lLevels;
    if (!hEnterEqual(lLevels, iAsked, iOther, false, false))
    {
        return false;
    }
    while (!lLevels.empty())
    {
        Level& lLevel = lLevels.back();
        if (lLevel.mNextNest == lLevel.mLeft->mNests.GetCount())
        {
            lLevels.pop_back();
            continue;
        }
        const std::size_t lNest = lLevel.mNextNest++;
        const std::wstring_view lName = lLevel.mLeft->mNests.GetName(lNest);
        const BagState& lAskedNest = lLevel.mLeft->mNests.GetNest(lNest);
        const std::size_t lOtherIndex = lLevel.mIndex.FindNest(lName, lNest);
        if (lOtherIndex == gNotFound)
        {
            return false;
        }
        // Asking the other bag for the value of that name renders its nest, unless a plain property comes first.
        const bool lIsHidden = lLevel.mRight->mMayRepeatNames && lLevel.mIndex.FindValue(lName) != gNotFound;
        if (!lLevel.mIsRightRendered && !lIsHidden)
        {
            TextWriter::CheckDelimiters(lLevel.mRight->mNests.GetNest(lOtherIndex));
        }
        // The nests change sides: the other bag's nest is asked about this one's.
        const BagState& lOtherNest = lLevel.mRight->mNests.GetNest(lOtherIndex);
        const bool lIsOtherRendered = lLevel.mIsRightRendered || !lIsHidden;
        if (!hEnterEqual(lLevels, lOtherNest, lAskedNest, lIsOtherRendered, lLevel.mIsLeftRendered))
        {
            return false;
        }
    }
    return true;
}

// Compares the plain properties of two bags at once, since they come first, and leaves their nests to the list.
bool BagComparer::hEnterEqual(Levels& oLevels, const BagState& iAsked, const BagState& iOther, bool iIsAskedRendered,
                              bool iIsOtherRendered)
{
    if (iAsked.GetCount() != iOther.GetCount())
    {
        return false;
    }
    BagIndex lIndex(iOther);
    if (!hArePlainPropertiesEqual(iAsked, iOther, lIndex, iIsOtherRendered))
    {
        return false;
    }
    if (!iAsked.mNests.IsEmpty())
    {
        oLevels.push_back(Level{&iAsked, &iOther, 0, iIsAskedRendered, iIsOtherRendered, std::move(lIndex)});
    }
    return true;
}

// Three ways, from the cheapest: all characters and lengths are the same, so every value is, unless reading by name
// would unescape one; the same entry at the same position; the entry of that name, wherever it stands.
bool BagComparer::hArePlainPropertiesEqual(const BagState& iAsked, const BagState& iOther, BagIndex& oIndex,
                                           bool iIsOtherRendered)
{
    const bool lIsUnescaped = AreDefaultDelimiters(iOther.GetPair());
    const ValueContent& lAsked = iAsked.mValues;
    const ValueContent& lOther = iOther.mValues;
    const bool lIsUnique = !iOther.mMayRepeatNames;
    const bool lMayHaveBoth = !lIsUnique && !iOther.mNests.IsEmpty();
    if (lIsUnique && lAsked.IsSameThroughout(lOther) && !(lIsUnescaped && lOther.MayContain(L'&')))
    {
        return true;
    }
    for (std::size_t lIndex = 0; lIndex < lAsked.GetCount(); ++lIndex)
    {
        // Mostly the same entry stands at the same position.
        if (lIsUnique && lIndex < lOther.GetCount() && lAsked.IsEntryEqual(lIndex, lOther, lIndex) &&
            (!lIsUnescaped || !TriggersUnescaping(lOther.GetValue(lIndex))))
        {
            continue;
        }
        const std::wstring_view lName = lAsked.GetName(lIndex);
        const std::size_t lOtherIndex = oIndex.FindValue(lName, lIndex);
        if (lOtherIndex == gNotFound || lMayHaveBoth)
        {
            // Asking for the value would render the nest, which throws where a pair in it is not allowed.
            const std::size_t lNestIndex = oIndex.FindNest(lName);
            if (lNestIndex != gNotFound)
            {
                if (lOtherIndex == gNotFound && !iIsOtherRendered)
                {
                    TextWriter::CheckDelimiters(iOther.mNests.GetNest(lNestIndex));
                }
                return false;
            }
        }
        const std::wstring_view lStored = lOtherIndex == gNotFound ? std::wstring_view() : lOther.GetValue(lOtherIndex);
        if (lAsked.GetValue(lIndex) != ReadValue(lStored, lIsUnescaped).View())
        {
            return false;
        }
    }
    return true;
}

// The part is walked through, and the whole is asked by name. Nothing is rendered on the way: nests are asked for as
// bags.
bool BagComparer::IsSubset(const BagState& iWhole, const BagState& iPart)
{
    Levels lLevels;
    if (!hEnterSubset(lLevels, iWhole, iPart))
    {
        return false;
    }
    while (!lLevels.empty())
    {
        Level& lLevel = lLevels.back();
        if (lLevel.mNextNest == lLevel.mRight->mNests.GetCount())
        {
            lLevels.pop_back();
            continue;
        }
        const std::size_t lNest = lLevel.mNextNest++;
        const std::wstring_view lName = lLevel.mRight->mNests.GetName(lNest);
        const std::size_t lWholeIndex = lLevel.mIndex.FindNest(lName, lNest);
        if (lWholeIndex == gNotFound)
        {
            return false;
        }
        // By name on both sides: of a name that occurs twice, the first.
        const std::size_t lPartIndex = lLevel.mRight->mMayRepeatNames ? lLevel.mRight->mNests.Find(lName) : lNest;
        const BagState& lWholeNest = lLevel.mLeft->mNests.GetNest(lWholeIndex);
        const BagState& lPartNest = lLevel.mRight->mNests.GetNest(lPartIndex);
        if (!hEnterSubset(lLevels, lWholeNest, lPartNest))
        {
            return false;
        }
    }
    return true;
}

bool BagComparer::hEnterSubset(Levels& oLevels, const BagState& iWhole, const BagState& iPart)
{
    if (iWhole.GetCount() < iPart.GetCount())
    {
        return false;
    }
    BagIndex lIndex(iWhole);
    if (!hArePlainPropertiesInside(iWhole, iPart, lIndex))
    {
        return false;
    }
    if (!iPart.mNests.IsEmpty())
    {
        oLevels.push_back(Level{&iWhole, &iPart, 0, true, true, std::move(lIndex)});
    }
    return true;
}

// Both values are taken as reading by name gives them; where both bags unescape alike, equal stored values say enough.
bool BagComparer::hArePlainPropertiesInside(const BagState& iWhole, const BagState& iPart, BagIndex& oWholeIndex)
{
    const bool lIsWholeUnescaped = AreDefaultDelimiters(iWhole.GetPair());
    const bool lIsPartUnescaped = AreDefaultDelimiters(iPart.GetPair());
    const bool lMayRepeat = iPart.mMayRepeatNames;
    for (std::size_t lIndex = 0; lIndex < iPart.mValues.GetCount(); ++lIndex)
    {
        const std::wstring_view lName = iPart.mValues.GetName(lIndex);
        const bool lIsNestInWhole = !iWhole.mNests.IsEmpty() && oWholeIndex.FindNest(lName) != gNotFound;
        const bool lIsNestInPart = lMayRepeat && iPart.mNests.Find(lName) < iPart.mNests.GetCount();
        if (lIsNestInWhole != lIsNestInPart)
        {
            return false;
        }
        const std::size_t lWholeIndex = oWholeIndex.FindValue(lName, lIndex);
        if (lWholeIndex == gNotFound && lIsNestInWhole)
        {
            // A name that stands for both kinds in one bag: rare enough to ask as anybody would.
            if (std::wstring_view(ReadProperty(iWhole, lName)) != std::wstring_view(ReadProperty(iPart, lName)))
            {
                return false;
            }
            continue;
        }
        const std::size_t lPartIndex = lMayRepeat ? iPart.mValues.Find(lName) : lIndex;
        const std::wstring_view lWholeStored =
            lWholeIndex == gNotFound ? std::wstring_view() : iWhole.mValues.GetValue(lWholeIndex);
        const std::wstring_view lPartStored = iPart.mValues.GetValue(lPartIndex);
        if (lIsWholeUnescaped == lIsPartUnescaped && lWholeStored == lPartStored)
        {
            continue;
        }
        if (ReadValue(lWholeStored, lIsWholeUnescaped).View() != ReadValue(lPartStored, lIsPartUnescaped).View())
        {
            return false;
        }
    }
    return true;
}

} // namespace QTalBase
