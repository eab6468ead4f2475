#ifndef TALBASE_PROPERTYBAG_H
#define TALBASE_PROPERTYBAG_H
#include "QBase/Message.h"
#include "QBase/ReferenceCounted.h"
#include "QBase/ReturnWString.h"
#include "QBase/SmartPtrI.h"
#include "QSerialization/DataStream.h"
#include "QSerialization/SerializableObject.h"
#include "TalBase/Export.h"
namespace QDataType
{
class StringCollection;
}
extern TALBASE_EXPORT const wchar_t* BEGIN;
extern TALBASE_EXPORT const wchar_t* END;
namespace QTalBase
{
class TALBASE_EXPORT PropertyBagException : public QBase::Message
{
public:
    explicit PropertyBagException(const QBase::Message& iMessage);
    PropertyBagException(const PropertyBagException&) = default;
    PropertyBagException& operator=(const PropertyBagException&) = default;
    ~PropertyBagException() override;
};
class TALBASE_EXPORT PropertyBagUserErrorException : public PropertyBagException
{
public:
    explicit PropertyBagUserErrorException(const QBase::Message& iMessage);
    PropertyBagUserErrorException(const PropertyBagUserErrorException&) = default;
    PropertyBagUserErrorException& operator=(const PropertyBagUserErrorException&) = default;
    ~PropertyBagUserErrorException() override;
};
class TALBASE_EXPORT PropertyBag : public virtual QSerialization::SerializableObject,
                                   public virtual QBase::ReferenceCounted
{
public:
    ~PropertyBag() override;
    virtual void SetProperty(const wchar_t* ipName, const wchar_t* ipValue, bool iIsPropertyBag) = 0;
    virtual void EmbedProperty(const wchar_t* ipName, const PropertyBag* ipPropertyBag) = 0;
    virtual void RemoveProperty(const wchar_t* ipName) = 0;
    virtual QBase::ReturnWString GetProperty(const wchar_t* ipName) const = 0;
    virtual bool IsPropertyEmbedded(const wchar_t* ipName) const = 0;
    virtual QBase::SmartPtrI<PropertyBag> GetPropertyBag(const wchar_t* ipName) const = 0;
    virtual unsigned int GetCount() const = 0;
    virtual QBase::ReturnWString GetName(unsigned int iIndex) const = 0;
    virtual QBase::ReturnWString GetValue(unsigned int iIndex) const = 0;
    virtual bool IsEmbedded(unsigned int iIndex) const = 0;
    virtual QBase::SmartPtrI<PropertyBag> GetValuePropertyBag(unsigned int iIndex) const = 0;
    virtual void AddString(const wchar_t* ipString) = 0;
    virtual void AddPropertyBag(const PropertyBag* ipPropertyBag) = 0;
    virtual QBase::ReturnWString GetString(bool iWithMetadata, const wchar_t* ipBegin, const wchar_t* ipEnd,
                                           bool iWithSensitiveInfo) const = 0;
    virtual QBase::ReturnWString GetStringWithoutSensitiveInfo(bool iWithMetadata, const wchar_t* ipBegin,
                                                               const wchar_t* ipEnd) const = 0;
    virtual bool operator==(const PropertyBag& iOther) const = 0;
    virtual bool IsSubset(const PropertyBag* ipSubset) const = 0;
    virtual void ChangeDelimiters(const wchar_t* ipBegin, const wchar_t* ipEnd) = 0;
    virtual const wchar_t* GetBeginDelimiter() const = 0;
    virtual const wchar_t* GetEndDelimiter() const = 0;
    virtual PropertyBag* Clone() const = 0;
    virtual PropertyBag* FilteredClone(const QDataType::StringCollection* ipFilter) const = 0;
    virtual void MoveProperty(const wchar_t* ipName, unsigned int iIndex) = 0;
};
inline bool operator!=(const PropertyBag& iLeft, const PropertyBag& iRight)
{
    return !iLeft.operator==(iRight);
}
TALBASE_EXPORT PropertyBag* CreatePropertyBag();
TALBASE_EXPORT PropertyBag* CreatePropertyBag(const wchar_t* ipBegin, const wchar_t* ipEnd);
TALBASE_EXPORT PropertyBag* CreatePropertyBag(const wchar_t* ipString);
} // namespace QTalBase
#endif
