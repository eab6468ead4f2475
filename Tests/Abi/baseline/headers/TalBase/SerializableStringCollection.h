#ifndef TALBASE_SERIALIZABLESTRINGCOLLECTION_H
#define TALBASE_SERIALIZABLESTRINGCOLLECTION_H
#include "QBase/ReferenceCounted.h"
#include "QDataType/StringCollection.h"
#include "QSerialization/SerializableObject.h"
#include "TalBase/Export.h"
namespace QTalBase
{
class TALBASE_EXPORT SerializableStringCollection : public virtual QSerialization::SerializableObject,
                                                    public virtual QBase::ReferenceCounted
{
public:
    ~SerializableStringCollection() override;
    virtual void Insert(const wchar_t* ipString) = 0;
    virtual void Insert(const QDataType::StringCollection& iStrings) = 0;
    virtual unsigned long GetCount() const = 0;
    virtual const wchar_t* GetString(unsigned long iIndex) const = 0;
    virtual void Clear() = 0;
    virtual QDataType::StringCollection* GetStringCollection() const = 0;
};
TALBASE_EXPORT SerializableStringCollection* CreateSerializableStringCollection();
} // namespace QTalBase
#endif
