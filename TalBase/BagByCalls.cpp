#include "TalBase/PrivateSource/BagByCalls.h"

#include "QDataType/StringCollection.h"
#include "TalBase/PrivateSource/BagMerger.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

namespace QTalBase
{

// Asks in an order that overriders can see: the count, then for each position the name, what the other bag has by that
// name, and only then what this one has there.
bool AreEqualByCalls(const PropertyBag& iAsked, const PropertyBag& iOther)
{
    const unsigned int lCount = iAsked.GetCount();
    if (lCount != iOther.GetCount())
    {
        return false;
    }
    for (unsigned int lIndex = 0; lIndex < lCount; ++lIndex)
    {
        const QBase::ReturnWString lName = iAsked.GetName(lIndex);
        const QBase::ReturnWString lOtherValue = iOther.GetProperty(lName.c_str());
        const bool lIsOtherEmbedded = iOther.IsPropertyEmbedded(lName.c_str());
        const bool lIsEmbedded = iAsked.IsEmbedded(lIndex);
        if (lIsOtherEmbedded != lIsEmbedded)
        {
            return false;
        }
        if (lIsEmbedded)
        {
            // The nests change sides: the other bag's nest is asked about this one's.
            const QBase::SmartPtrI<PropertyBag> lOtherBag = iOther.GetPropertyBag(lName.c_str());
            const QBase::SmartPtrI<PropertyBag> lBag = iAsked.GetValuePropertyBag(lIndex);
            if (!lOtherBag->operator==(*lBag))
            {
                return false;
            }
        }
        else if (std::wstring_view(iAsked.GetValue(lIndex)) != std::wstring_view(lOtherValue))
        {
            return false;
        }
    }
    return true;
}

bool IsSubsetByCalls(const PropertyBag& iWhole, const PropertyBag& iPart)
{
    const unsigned int lCount = iPart.GetCount();
    if (iWhole.GetCount() < lCount)
    {
        return false;
    }
    for (unsigned int lIndex = 0; lIndex < lCount; ++lIndex)
    {
        const QBase::ReturnWString lName = iPart.GetName(lIndex);
        if (iWhole.IsPropertyEmbedded(lName.c_str()) != iPart.IsPropertyEmbedded(lName.c_str()))
        {
            return false;
        }
        if (iPart.IsEmbedded(lIndex))
        {
            const QBase::SmartPtrI<PropertyBag> lBag = iWhole.GetPropertyBag(lName.c_str());
            const QBase::SmartPtrI<PropertyBag> lSubset = iPart.GetPropertyBag(lName.c_str());
            if (!lBag->IsSubset(lSubset.get()))
            {
                return false;
            }
        }
        else if (std::wstring_view(iWhole.GetProperty(lName.c_str())) !=
                 std::wstring_view(iPart.GetProperty(lName.c_str())))
        {
            return false;
        }
    }
    return true;
}

// The count is asked again each time: setting a property of the bag that is merged, or of itself, may change it.
void AddByCalls(PropertyBag& oBag, const PropertyBag& iOther)
{
    for (unsigned int lIndex = 0; lIndex < iOther.GetCount(); ++lIndex)
    {
        const QBase::ReturnWString lName = iOther.GetName(lIndex);
        const QBase::ReturnWString lValue = iOther.GetValue(lIndex);
        const bool lIsEmbedded = iOther.IsEmbedded(lIndex);
        oBag.SetProperty(lName.c_str(), lValue.c_str(), lIsEmbedded);
    }
}

// Whoever is asked may change the bag, the filter or the defaults meanwhile, so each is looked at when it is needed.
// How many names there will be nobody knows either: whenever they have doubled, a merger is made for as many more.
void SetNamedByCalls(BagState& oBag, const PropertyBag& iOther, const QDataType::StringCollection& iFilter)
{
    std::optional<BagMerger> lMerger;
    unsigned long lRoom = 0;
    for (unsigned long lIndex = 0; lIndex < iFilter.GetCount(); ++lIndex)
    {
        if (lIndex == lRoom)
        {
            const unsigned long lMore = std::max(32UL, lIndex);
            lMerger.emplace(oBag, lMore);
            lRoom += lMore;
        }
        const std::wstring lName = iFilter.GetString(lIndex);
        if (iOther.IsPropertyEmbedded(lName.c_str()))
        {
            const QBase::SmartPtrI<PropertyBag> lBag = iOther.GetPropertyBag(lName.c_str());
            if (lBag)
            {
                const QBase::ReturnWString lText = lBag->GetString(false, oBag.mBegin.c_str(), oBag.mEnd.c_str(), true);
                lMerger->SetText(lName, lText.c_str());
            }
            continue;
        }
        const QBase::ReturnWString lValue = iOther.GetProperty(lName.c_str());
        if (lValue.GetLength() != 0)
        {
            lMerger->SetAnswer(lName, lValue.c_str());
        }
    }
}

} // namespace QTalBase
