// The implementation of SerializableStringCollection; see TalBase/SerializableStringCollection.h for what it promises.

#ifndef TALBASE_PRIVATESOURCE_SERIALIZABLESTRINGCOLLECTIONIMPL_H
#define TALBASE_PRIVATESOURCE_SERIALIZABLESTRINGCOLLECTIONIMPL_H

#include "QSynch/AtomicLong.h"
#include "TalBase/SerializableStringCollection.h"

#include <memory>

namespace QTalBase
{

class TALBASE_EXPORT SerializableStringCollectionImpl : public virtual SerializableStringCollection
{
public:
    SerializableStringCollectionImpl();
    ~SerializableStringCollectionImpl() override;

    SerializableStringCollectionImpl(const SerializableStringCollectionImpl&) = delete;
    SerializableStringCollectionImpl& operator=(const SerializableStringCollectionImpl&) = delete;

    void Serialize(QSerialization::WriteDataStream& iStream) const override;
    void DeSerialize(QSerialization::ReadDataStream& iStream) override;

    void Insert(const wchar_t* ipString) override;
    void Insert(const QDataType::StringCollection& iStrings) override;
    unsigned long GetCount() const override;
    const wchar_t* GetString(unsigned long iIndex) const override;
    void Clear() override;
    QDataType::StringCollection* GetStringCollection() const override;

    void AddRef() const noexcept override;
    void Release() const noexcept override;

private:
    std::unique_ptr<QDataType::StringCollection> mStrings;
    mutable QSynch::AtomicLong mRefCount;
};

} // namespace QTalBase

#endif
