// The implementation of DeliveryWindow; see TalBase/DeliveryWindow.h for what it promises.

#ifndef TALBASE_PRIVATESOURCE_DELIVERYWINDOWIMPL_H
#define TALBASE_PRIVATESOURCE_DELIVERYWINDOWIMPL_H

#include "QSynch/AtomicLong.h"
#include "TalBase/DeliveryWindow.h"

namespace QTalBase
{

class TALBASE_EXPORT DeliveryWindowImpl : public virtual DeliveryWindow
{
public:
    DeliveryWindowImpl();
    ~DeliveryWindowImpl() override;

    DeliveryWindowImpl(const DeliveryWindowImpl&) = delete;
    DeliveryWindowImpl& operator=(const DeliveryWindowImpl&) = delete;

    void Serialize(QSerialization::WriteDataStream& iStream) const override;
    void DeSerialize(QSerialization::ReadDataStream& iStream) override;

    void DisableTimeBlock(unsigned int iStart, unsigned int iEnd) override;
    void EnableTimeBlock(unsigned int iStart, unsigned int iEnd) override;
    bool IsEnabled(unsigned int iHour) const override;
    PropertyBag* SerializeToPropertyBag(const wchar_t* ipPrefix, const wchar_t* ipBegin,
                                        const wchar_t* ipEnd) const override;
    void DeSerializeFromPropertyBag(const wchar_t* ipPrefix, const PropertyBag* ipPropertyBag) override;
    DeliveryWindow* Clone() const override;

    void AddRef() const noexcept override;
    void Release() const noexcept override;

    // Enables or disables the blocks from iStart to iEnd; what enabling and disabling rest on.
    void SetTimeBlock(unsigned int iStart, unsigned int iEnd, bool iEnable);

private:
    void hSetBlocks(unsigned int iStart, unsigned int iEnd, bool iEnable);

    // Bit h is 1 while block h is disabled. The block operations never set bits 24 to 31.
    unsigned int mDisabledTimeBlocks;
    mutable QSynch::AtomicLong mRefCount;
};

} // namespace QTalBase

#endif
