// The implementation of PropertyBags; see TalBase/PropertyBags.h for what it promises.

#ifndef TALBASE_PRIVATESOURCE_PROPERTYBAGSIMPL_H
#define TALBASE_PRIVATESOURCE_PROPERTYBAGSIMPL_H

#include "QSynch/AtomicLong.h"
#include "TalBase/PropertyBags.h"
#include "TalBase/SerializationTemplates.h"

#include <vector>

namespace QTalBase
{

class TALBASE_EXPORT PropertyBagsImpl : public virtual PropertyBags
{
public:
    PropertyBagsImpl();
    ~PropertyBagsImpl() override;

    PropertyBagsImpl(const PropertyBagsImpl&) = delete;
    PropertyBagsImpl& operator=(const PropertyBagsImpl&) = delete;

    void Serialize(QSerialization::WriteDataStream& iStream) const override;
    void DeSerialize(QSerialization::ReadDataStream& iStream) override;

    void Add(const wchar_t* ipName, const PropertyBag* ipPropertyBag) override;
    unsigned int GetCount() const override;
    const wchar_t* GetName(unsigned int iIndex) const override;
    QBase::SmartPtrI<PropertyBag> GetPropertyBag(unsigned int iIndex) const override;
    QBase::SmartPtrI<PropertyBag> GetPropertyBagByName(const wchar_t* ipName) const override;
    PropertyBags* Clone() const override;

    void AddRef() const noexcept override;
    void Release() const noexcept override;

private:
    std::vector<NamedPropertyBag> mEntries;
    mutable QSynch::AtomicLong mRefCount;
};

} // namespace QTalBase

#endif
