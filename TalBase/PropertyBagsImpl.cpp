#include "TalBase/PropertyBags.h"

#include "QBase/Atomic.h"
#include "TalBase/PrivateSource/Messages.h"
#include "TalBase/PrivateSource/PropertyBagsImpl.h"

#include <memory>

namespace QTalBase
{

namespace
{

using Messages::Throw;

// A bag that no collection shares; null stays null.
QBase::SmartPtrI<PropertyBag> CloneOf(const QBase::SmartPtrI<const PropertyBag>& iBag)
{
    return iBag ? iBag->Clone() : nullptr;
}

} // namespace

PropertyBags::~PropertyBags() = default;

PropertyBagsImpl::PropertyBagsImpl() : mRefCount(0) {}

PropertyBagsImpl::~PropertyBagsImpl()
{
    QClone::Clear(mEntries);
}

void PropertyBagsImpl::Serialize(QSerialization::WriteDataStream& iStream) const
{
    iStream << mEntries;
}

void PropertyBagsImpl::DeSerialize(QSerialization::ReadDataStream& iStream)
{
    iStream >> mEntries;
}

// Shared, not copied: the collection has a reference, and whoever else holds the bag may change it.
void PropertyBagsImpl::Add(const wchar_t* ipName, const PropertyBag* ipPropertyBag)
{
    if (ipPropertyBag == nullptr)
    {
        Throw<PropertyBagUserErrorException>(Messages::gBagsAddNull);
    }
    mEntries.emplace_back(ipName, ipPropertyBag);
}

unsigned int PropertyBagsImpl::GetCount() const
{
    return static_cast<unsigned int>(mEntries.size());
}

const wchar_t* PropertyBagsImpl::GetName(unsigned int iIndex) const
{
    if (iIndex >= mEntries.size())
    {
        Throw<PropertyBagUserErrorException>(Messages::gBagsNameIndex);
    }
    return mEntries[iIndex].first.c_str();
}

QBase::SmartPtrI<PropertyBag> PropertyBagsImpl::GetPropertyBag(unsigned int iIndex) const
{
    if (iIndex >= mEntries.size())
    {
        Throw<PropertyBagUserErrorException>(Messages::gBagsBagIndex);
    }
    return CloneOf(mEntries[iIndex].second);
}

// The first of that name; an unknown one gives null, where a wrong position throws.
QBase::SmartPtrI<PropertyBag> PropertyBagsImpl::GetPropertyBagByName(const wchar_t* ipName) const
{
    for (const NamedPropertyBag& lEntry : mEntries)
    {
        if (lEntry.first == ipName)
        {
            return CloneOf(lEntry.second);
        }
    }
    return nullptr;
}

PropertyBags* PropertyBagsImpl::Clone() const
{
    auto lClone = std::make_unique<PropertyBagsImpl>();
    QClone::Deep(lClone->mEntries, mEntries);
    return lClone.release();
}

void PropertyBagsImpl::AddRef() const noexcept
{
    QSynch_AtomicIncrement(mRefCount);
}

void PropertyBagsImpl::Release() const noexcept
{
    if (QSynch_AtomicDecrement(mRefCount) == 0)
    {
        delete this;
    }
}

PropertyBags* CreatePropertyBags()
{
    return new PropertyBagsImpl();
}

} // namespace QTalBase
