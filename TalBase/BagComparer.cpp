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

bool BagComparer::AreEqual(const PropertyBagImpl& iAsked, const PropertyBagImpl& iOther)
{
    Levels lLevels;
    if (!hEnterEqual(lLevels, iAsked, iOther, false, false))
    {
        return false;
    }
    while (!lLevels.empty())
    {
        Level& lLevel = lLevels.back();
        if (lLevel.mNextNest == lLevel.mLeft->mEmbeddedContent.size())
        {
            lLevels.pop_back();
            continue;
        }
        const std::size_t lNest = lLevel.mNextNest++;
        const auto& [lName, lAskedNest] = lLevel.mLeft->mEmbeddedContent[lNest];
        const std::size_t lOtherIndex = lLevel.mIndex.FindEmbedded(lName, lNest);
        if (lOtherIndex == gNotFound)
        {
            return false;
        }
        // Asking the other bag for the value of that name renders its nest, unless a plain property comes first.
        const bool lIsHidden =
            lLevel.mRight->hMayRepeatNames() && lLevel.mIndex.FindValue(lName, gNotFound) != gNotFound;
        if (!lLevel.mIsRightRendered && !lIsHidden)
        {
            TextWriter::CheckDelimiters(*lLevel.mRight->mEmbeddedContent[lOtherIndex].second);
        }
        // The nests change sides: the other bag's nest is asked about this one's.
        const PropertyBagImpl& lOtherNest = *lLevel.mRight->mEmbeddedContent[lOtherIndex].second;
        const bool lIsOtherRendered = lLevel.mIsRightRendered || !lIsHidden;
        if (!hEnterEqual(lLevels, lOtherNest, *lAskedNest, lIsOtherRendered, lLevel.mIsLeftRendered))
        {
            return false;
        }
    }
    return true;
}

bool BagComparer::hEnterEqual(Levels& oLevels, const PropertyBagImpl& iAsked, const PropertyBagImpl& iOther,
                              bool iIsAskedRendered, bool iIsOtherRendered)
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
    if (!iAsked.mEmbeddedContent.empty())
    {
        oLevels.push_back(Level{&iAsked, &iOther, 0, iIsAskedRendered, iIsOtherRendered, std::move(lIndex)});
    }
    return true;
}

bool BagComparer::hArePlainPropertiesEqual(const PropertyBagImpl& iAsked, const PropertyBagImpl& iOther,
                                           BagIndex& oIndex, bool iIsOtherRendered)
{
    const bool lIsUnescaped = AreDefaultDelimiters(iOther.hPair());
    const ValueContent& lAsked = iAsked.mValueContent;
    const ValueContent& lOther = iOther.mValueContent;
    const bool lIsUnique = !iOther.hMayRepeatNames();
    const bool lMayHaveBoth = !lIsUnique && !iOther.mEmbeddedContent.empty();
    if (lIsUnique && lAsked.IsSameThroughout(lOther) && !(lIsUnescaped && lOther.MayHold(L'&')))
    {
        return true;
    }
    for (std::size_t lIndex = 0; lIndex < lAsked.GetCount(); ++lIndex)
    {
        // Mostly the same entry stands at the same place.
        if (lIsUnique && lIndex < lOther.GetCount() && lAsked.IsEntryEqual(lIndex, lOther, lIndex) &&
            (!lIsUnescaped || !TriggersUnescaping(lOther.GetValue(lIndex))))
        {
            continue;
        }
        const std::wstring_view lName = lAsked.GetName(lIndex);
        const std::size_t lOtherIndex = oIndex.FindValue(lName, lIndex);
        if (lOtherIndex == gNotFound || lMayHaveBoth)
        {
            const std::size_t lNestIndex = oIndex.FindEmbedded(lName, gNotFound);
            if (lNestIndex != gNotFound)
            {
                if (lOtherIndex == gNotFound && !iIsOtherRendered)
                {
                    TextWriter::CheckDelimiters(*iOther.mEmbeddedContent[lNestIndex].second);
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

bool BagComparer::IsSubset(const PropertyBagImpl& iWhole, const PropertyBagImpl& iPart)
{
    Levels lLevels;
    if (!hEnterSubset(lLevels, iWhole, iPart))
    {
        return false;
    }
    while (!lLevels.empty())
    {
        Level& lLevel = lLevels.back();
        if (lLevel.mNextNest == lLevel.mRight->mEmbeddedContent.size())
        {
            lLevels.pop_back();
            continue;
        }
        const std::size_t lNest = lLevel.mNextNest++;
        const std::wstring_view lName = lLevel.mRight->mEmbeddedContent[lNest].first;
        const std::size_t lWholeIndex = lLevel.mIndex.FindEmbedded(lName, lNest);
        if (lWholeIndex == gNotFound)
        {
            return false;
        }
        // By name on both sides: of a name that occurs twice, the first.
        const std::size_t lPartIndex = lLevel.mRight->hMayRepeatNames() ? lLevel.mRight->hFindEmbedded(lName) : lNest;
        const PropertyBagImpl& lWholeNest = *lLevel.mLeft->mEmbeddedContent[lWholeIndex].second;
        const PropertyBagImpl& lPartNest = *lLevel.mRight->mEmbeddedContent[lPartIndex].second;
        if (!hEnterSubset(lLevels, lWholeNest, lPartNest))
        {
            return false;
        }
    }
    return true;
}

bool BagComparer::hEnterSubset(Levels& oLevels, const PropertyBagImpl& iWhole, const PropertyBagImpl& iPart)
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
    if (!iPart.mEmbeddedContent.empty())
    {
        oLevels.push_back(Level{&iWhole, &iPart, 0, true, true, std::move(lIndex)});
    }
    return true;
}

bool BagComparer::hArePlainPropertiesInside(const PropertyBagImpl& iWhole, const PropertyBagImpl& iPart,
                                            BagIndex& oWholeIndex)
{
    const bool lIsWholeUnescaped = AreDefaultDelimiters(iWhole.hPair());
    const bool lIsPartUnescaped = AreDefaultDelimiters(iPart.hPair());
    const bool lMayRepeat = iPart.hMayRepeatNames();
    for (std::size_t lIndex = 0; lIndex < iPart.mValueContent.GetCount(); ++lIndex)
    {
        const std::wstring_view lName = iPart.mValueContent.GetName(lIndex);
        const bool lIsNestInWhole =
            !iWhole.mEmbeddedContent.empty() && oWholeIndex.FindEmbedded(lName, gNotFound) != gNotFound;
        const bool lIsNestInPart = lMayRepeat && iPart.hFindEmbedded(lName) < iPart.mEmbeddedContent.size();
        if (lIsNestInWhole != lIsNestInPart)
        {
            return false;
        }
        const std::size_t lWholeIndex = oWholeIndex.FindValue(lName, lIndex);
        if (lWholeIndex == gNotFound && lIsNestInWhole)
        {
            // A name that stands for both kinds in one bag: rare enough to ask as anybody would.
            const std::wstring lAsText(lName);
            if (std::wstring_view(iWhole.GetProperty(lAsText.c_str())) !=
                std::wstring_view(iPart.GetProperty(lAsText.c_str())))
            {
                return false;
            }
            continue;
        }
        const std::size_t lPartIndex = lMayRepeat ? iPart.mValueContent.Find(lName) : lIndex;
        const std::wstring_view lWholeStored =
            lWholeIndex == gNotFound ? std::wstring_view() : iWhole.mValueContent.GetValue(lWholeIndex);
        const std::wstring_view lPartStored = iPart.mValueContent.GetValue(lPartIndex);
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
