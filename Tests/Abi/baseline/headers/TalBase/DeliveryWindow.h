#ifndef TALBASE_DELIVERYWINDOW_H
#define TALBASE_DELIVERYWINDOW_H
#include "QBase/Message.h"
#include "QBase/ReferenceCounted.h"
#include "QSerialization/SerializableObject.h"
#include "TalBase/Export.h"
#include "TalBase/PropertyBag.h"
namespace QTalBase
{
class TALBASE_EXPORT DeliveryWindowUserErrorException : public QBase::Message
{
public:
    explicit DeliveryWindowUserErrorException(const QBase::Message& iMessage);
    DeliveryWindowUserErrorException(const DeliveryWindowUserErrorException&) = default;
    DeliveryWindowUserErrorException& operator=(const DeliveryWindowUserErrorException&) = default;
    ~DeliveryWindowUserErrorException() override;
};
class TALBASE_EXPORT DeliveryWindow : public virtual QSerialization::SerializableObject,
                                      public virtual QBase::ReferenceCounted
{
public:
    ~DeliveryWindow() override;
    virtual void DisableTimeBlock(unsigned int iStart, unsigned int iEnd) = 0;
    virtual void EnableTimeBlock(unsigned int iStart, unsigned int iEnd) = 0;
    virtual bool IsEnabled(unsigned int iHour) const = 0;
    virtual PropertyBag* SerializeToPropertyBag(const wchar_t* ipPrefix, const wchar_t* ipBegin,
                                                const wchar_t* ipEnd) const = 0;
    virtual void DeSerializeFromPropertyBag(const wchar_t* ipPrefix, const PropertyBag* ipPropertyBag) = 0;
    virtual DeliveryWindow* Clone() const = 0;
};
TALBASE_EXPORT DeliveryWindow* CreateDeliveryWindow();
} // namespace QTalBase
#endif
