// What asks bags by calls of the interface, as a derived class, or another maker's bag, is entitled to see: which calls
// there are, and in which order, is a part of the contract. Everything here recurses into nests through those calls.

#ifndef TALBASE_PRIVATESOURCE_BAGBYCALLS_H
#define TALBASE_PRIVATESOURCE_BAGBYCALLS_H

#include "TalBase/PrivateSource/BagState.h"
#include "TalBase/PropertyBag.h"

namespace QTalBase
{

// What operator== and IsSubset of the first bag answer.
bool AreEqualByCalls(const PropertyBag& iAsked, const PropertyBag& iOther);
bool IsSubsetByCalls(const PropertyBag& iWhole, const PropertyBag& iPart);

// What AddPropertyBag of the first bag does. The other bag may change meanwhile.
void AddByCalls(PropertyBag& oBag, const PropertyBag& iOther);

// Sets the properties of another bag that a filter names, in its order, in a bag that nobody else knows.
void SetNamedByCalls(BagState& oBag, const PropertyBag& iOther, const QDataType::StringCollection& iFilter);

} // namespace QTalBase

#endif
