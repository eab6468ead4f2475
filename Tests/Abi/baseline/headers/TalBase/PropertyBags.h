#ifndef TALBASE_PROPERTYBAGS_H
#define TALBASE_PROPERTYBAGS_H
#include "QBase/ReferenceCounted.h"
#include "QBase/SmartPtrI.h"
#include "QSerialization/SerializableObject.h"
#include "TalBase/Export.h"
#include "TalBase/PropertyBag.h"
namespace QTalBase
{
class TALBASE_EXPORT PropertyBags : public virtual QSerialization::SerializableObject,
                                    public virtual QBase::ReferenceCounted
{
public:
    ~PropertyBags() override;
    virtual void Add(const wchar_t* ipName, const PropertyBag* ipPropertyBag) = 0;
    virtual unsigned int GetCount() const = 0;
    virtual const wchar_t* GetName(unsigned int iIndex) const = 0;
    virtual QBase::SmartPtrI<PropertyBag> GetPropertyBag(unsigned int iIndex) const = 0;
    virtual QBase::SmartPtrI<PropertyBag> GetPropertyBagByName(const wchar_t* ipName) const = 0;
    virtual PropertyBags* Clone() const = 0;
};
TALBASE_EXPORT PropertyBags* CreatePropertyBags();
} // namespace QTalBase
#endif
