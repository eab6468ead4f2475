// A daily delivery schedule: 24 hourly time blocks, 0 to 23, each enabled or disabled, the same every day. Block h is
// the hour from h:00 to h:59. A window can be kept in a property bag as one property, and in a binary stream.
//
// A factory or Clone returns a new window with reference count 0; the first QBase::SmartPtrI takes the first reference.
// References may be taken and dropped from any thread; a window must not be changed while another thread uses it.
// Errors are QBase::ExceptionImpl of the class named, with the text given; they leave the window unchanged.

#ifndef TALBASE_DELIVERYWINDOW_H
#define TALBASE_DELIVERYWINDOW_H

#include "QBase/Message.h"
#include "QBase/ReferenceCounted.h"
#include "QSerialization/SerializableObject.h"
#include "TalBase/Export.h"
#include "TalBase/PropertyBag.h"

namespace QTalBase
{

// A mistake of the caller, or a bag whose window property is damaged.
class TALBASE_EXPORT DeliveryWindowUserErrorException : public QBase::Message
{
public:
    explicit DeliveryWindowUserErrorException(const QBase::Message& iMessage);
    DeliveryWindowUserErrorException(const DeliveryWindowUserErrorException&) = default;
    DeliveryWindowUserErrorException& operator=(const DeliveryWindowUserErrorException&) = default;
    ~DeliveryWindowUserErrorException() override;
};

// Serialize (from QSerialization::SerializableObject) writes one 32-bit word, bit h set where block h is disabled.
// DeSerialize reads the whole word as it is, unchecked: bits 24 to 31 are kept, written again and otherwise ignored.
class TALBASE_EXPORT DeliveryWindow : public virtual QSerialization::SerializableObject,
                                      public virtual QBase::ReferenceCounted
{
public:
    ~DeliveryWindow() override;

    // Disable or enable the blocks from iStart to iEnd, both included and both 0 to 23. A range whose end lies before
    // its start runs past midnight: 22 to 2 is 22, 23, 0, 1 and 2. Throw DeliveryWindowUserErrorException
    // "QTalBase::DeliveryWindowImpl::SetTimeBlock; Time of day may not be greater than 23".
    virtual void DisableTimeBlock(unsigned int iStart, unsigned int iEnd) = 0;
    virtual void EnableTimeBlock(unsigned int iStart, unsigned int iEnd) = 0;

    // Returns whether the block iHour modulo 32 is enabled. Nothing is checked: 24 to 31 read as enabled unless a
    // stream brought their bits in, and 32 reads as block 0.
    virtual bool IsEnabled(unsigned int iHour) const = 0;

    // Returns a new bag, reference count 0, with the given delimiters and one property named ipPrefix followed by
    // "DeliveryWindow": the disabled hours in ascending order, each as two characters with a leading blank and a comma
    // (" 0, 9,23,"). With every block enabled the value is empty and so the bag is. No pointer may be null. Throws
    // what CreatePropertyBag and PropertyBag::SetProperty throw.
    virtual PropertyBag* SerializeToPropertyBag(const wchar_t* ipPrefix, const wchar_t* ipBegin,
                                                const wchar_t* ipEnd) const = 0;

    // Sets all 24 blocks from the property of that name; a bag that lacks it, or a null bag, enables every block. A
    // tail of one or two characters is ignored. ipPrefix may not be null. Throws DeliveryWindowUserErrorException
    // "QTalBase::DeliveryWindowImpl::DeSerializeFromPropertyBag; PropertyBag Serialization is malformed" where the
    // third character of an entry is not a comma, what DisableTimeBlock throws for a number that is no hour, and what
    // the bag's GetProperty throws, where a nested bag has that name.
    virtual void DeSerializeFromPropertyBag(const wchar_t* ipPrefix, const PropertyBag* ipPropertyBag) = 0;

    // Returns a new window, reference count 0, with the same blocks.
    virtual DeliveryWindow* Clone() const = 0;
};

// Creates a window with every block enabled, reference count 0.
TALBASE_EXPORT DeliveryWindow* CreateDeliveryWindow();

} // namespace QTalBase

#endif
