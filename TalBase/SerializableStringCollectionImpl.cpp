#include "TalBase/SerializableStringCollection.h"

#include "QBase/Atomic.h"
#include "QSerialization/DataStream.h"
#include "TalBase/PrivateSource/SerializableStringCollectionImpl.h"

#include <string>

namespace QTalBase
{

SerializableStringCollection::~SerializableStringCollection() = default;

SerializableStringCollectionImpl::SerializableStringCollectionImpl()
    : mStrings(QDataType::CreateStringCollection()), mRefCount(0)
{
}

SerializableStringCollectionImpl::~SerializableStringCollectionImpl() = default;

void SerializableStringCollectionImpl::Serialize(QSerialization::WriteDataStream& iStream) const
{
    iStream.WriteUInt64(GetCount());
    for (unsigned long lIndex = 0; lIndex < GetCount(); ++lIndex)
    {
        iStream.WriteWString(GetString(lIndex));
    }
}

// Adds to what is there. Nothing is set aside for the count, which a stream may claim at will; strings that came before
// a failure stay.
void SerializableStringCollectionImpl::DeSerialize(QSerialization::ReadDataStream& iStream)
{
    unsigned long lCount = 0;
    iStream.ReadUInt64(lCount);
    for (unsigned long lIndex = 0; lIndex < lCount; ++lIndex)
    {
        const std::wstring lString = iStream.ReadWString().c_str();
        Insert(lString.c_str());
    }
}

void SerializableStringCollectionImpl::Insert(const wchar_t* ipString)
{
    mStrings->Insert(ipString);
}

void SerializableStringCollectionImpl::Insert(const QDataType::StringCollection& iStrings)
{
    mStrings->Insert(iStrings);
}

unsigned long SerializableStringCollectionImpl::GetCount() const
{
    return mStrings->GetCount();
}

const wchar_t* SerializableStringCollectionImpl::GetString(unsigned long iIndex) const
{
    return mStrings->GetString(iIndex);
}

void SerializableStringCollectionImpl::Clear()
{
    mStrings->Clear();
}

// A copy, which the caller owns.
QDataType::StringCollection* SerializableStringCollectionImpl::GetStringCollection() const
{
    std::unique_ptr<QDataType::StringCollection> lCopy(QDataType::CreateStringCollection());
    for (unsigned long lIndex = 0; lIndex < GetCount(); ++lIndex)
    {
        lCopy->Insert(GetString(lIndex));
    }
    return lCopy.release();
}

void SerializableStringCollectionImpl::AddRef() const noexcept
{
    QSynch_AtomicIncrement(mRefCount);
}

void SerializableStringCollectionImpl::Release() const noexcept
{
    if (QSynch_AtomicDecrement(mRefCount) == 0)
    {
        delete this;
    }
}

SerializableStringCollection* CreateSerializableStringCollection()
{
    return new SerializableStringCollectionImpl();
}

} // namespace QTalBase
