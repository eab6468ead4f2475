// The property form: a property named prefix + "DeliveryWindow" whose value lists the disabled hours in ascending
// order, each as exactly three characters: "%2d" and a comma.

#include "TalBase/DeliveryWindow.h"

#include "QBase/Atomic.h"
#include "QBase/Convert.h"
#include "QBase/SmartPtrI.h"
#include "TalBase/PrivateSource/DeliveryWindowImpl.h"
#include "TalBase/PrivateSource/Messages.h"

#include <cwchar>
#include <memory>
#include <string>

namespace QTalBase
{

namespace
{

using Messages::Throw;

const unsigned int gHours = 24;
const std::size_t gEntryLength = 3;

std::wstring PropertyName(const wchar_t* ipPrefix)
{
    return std::wstring(ipPrefix) + L"DeliveryWindow";
}

std::wstring DisabledHours(const DeliveryWindow& iWindow)
{
    std::wstring lHours;
    for (unsigned int lHour = 0; lHour < gHours; ++lHour)
    {
        if (!iWindow.IsEnabled(lHour))
        {
            wchar_t lNumber[100];
            std::swprintf(lNumber, 100, L"%2d", static_cast<int>(lHour));
            lHours += lNumber;
            lHours += L",";
        }
    }
    return lHours;
}

// A tail too short for an entry is ignored.
void DisableHours(const std::wstring& iHours, DeliveryWindow& oWindow)
{
    for (std::size_t lPosition = 0; iHours.size() - lPosition >= gEntryLength; lPosition += gEntryLength)
    {
        if (iHours[lPosition + 2] != L',')
        {
            Throw<DeliveryWindowUserErrorException>(Messages::gWindowMalformed);
        }
        // A negative number becomes one far above 23, which the window refuses.
        const int lHour = QBase::DecimalToInt(iHours.substr(lPosition, 2).c_str());
        oWindow.DisableTimeBlock(static_cast<unsigned int>(lHour), static_cast<unsigned int>(lHour));
    }
}

} // namespace

DeliveryWindowUserErrorException::DeliveryWindowUserErrorException(const QBase::Message& iMessage)
    : QBase::Message(iMessage)
{
}

DeliveryWindowUserErrorException::~DeliveryWindowUserErrorException() = default;

DeliveryWindow::~DeliveryWindow() = default;

DeliveryWindowImpl::DeliveryWindowImpl() : mDisabledTimeBlocks(0), mRefCount(0) {}

DeliveryWindowImpl::~DeliveryWindowImpl() = default;

void DeliveryWindowImpl::Serialize(QSerialization::WriteDataStream& iStream) const
{
    iStream.WriteUInt32(mDisabledTimeBlocks);
}

void DeliveryWindowImpl::DeSerialize(QSerialization::ReadDataStream& iStream)
{
    iStream.ReadUInt32(mDisabledTimeBlocks);
}

void DeliveryWindowImpl::DisableTimeBlock(unsigned int iStart, unsigned int iEnd)
{
    SetTimeBlock(iStart, iEnd, false);
}

void DeliveryWindowImpl::EnableTimeBlock(unsigned int iStart, unsigned int iEnd)
{
    SetTimeBlock(iStart, iEnd, true);
}

// A bit for each hour, set where it is disabled. Hours beyond 31 wrap around; 24 to 31 are what a stream brought.
bool DeliveryWindowImpl::IsEnabled(unsigned int iHour) const
{
    return (mDisabledTimeBlocks >> (iHour % 32) & 1U) == 0;
}

PropertyBag* DeliveryWindowImpl::SerializeToPropertyBag(const wchar_t* ipPrefix, const wchar_t* ipBegin,
                                                        const wchar_t* ipEnd) const
{
    std::unique_ptr<PropertyBag> lBag(CreatePropertyBag(ipBegin, ipEnd));
    const std::wstring lHours = DisabledHours(*this);
    lBag->SetProperty(PropertyName(ipPrefix).c_str(), lHours.c_str(), false);
    return lBag.release();
}

// Read into a scratch window first, so that a value that is refused leaves this one as it was.
void DeliveryWindowImpl::DeSerializeFromPropertyBag(const wchar_t* ipPrefix, const PropertyBag* ipPropertyBag)
{
    const QBase::SmartPtrI<DeliveryWindow> lScratch(new DeliveryWindowImpl());
    const std::wstring lName = PropertyName(ipPrefix);
    std::wstring lHours;
    if (ipPropertyBag != nullptr)
    {
        lHours = ipPropertyBag->GetProperty(lName.c_str()).c_str();
    }
    DisableHours(lHours, *lScratch);
    for (unsigned int lHour = 0; lHour < gHours; ++lHour)
    {
        if (lScratch->IsEnabled(lHour))
        {
            EnableTimeBlock(lHour, lHour);
        }
        else
        {
            DisableTimeBlock(lHour, lHour);
        }
    }
}

DeliveryWindow* DeliveryWindowImpl::Clone() const
{
    auto lClone = std::make_unique<DeliveryWindowImpl>();
    lClone->mDisabledTimeBlocks = mDisabledTimeBlocks;
    return lClone.release();
}

void DeliveryWindowImpl::AddRef() const noexcept
{
    QSynch_AtomicIncrement(mRefCount);
}

void DeliveryWindowImpl::Release() const noexcept
{
    if (QSynch_AtomicDecrement(mRefCount) == 0)
    {
        delete this;
    }
}

void DeliveryWindowImpl::SetTimeBlock(unsigned int iStart, unsigned int iEnd, bool iEnable)
{
    if (iStart >= gHours || iEnd >= gHours)
    {
        Throw<DeliveryWindowUserErrorException>(Messages::gSetTimeBlockHour);
    }
    // Later than its end, a block goes on over midnight.
    if (iStart <= iEnd)
    {
        hSetBlocks(iStart, iEnd, iEnable);
        return;
    }
    hSetBlocks(iStart, gHours - 1, iEnable);
    hSetBlocks(0, iEnd, iEnable);
}

void DeliveryWindowImpl::hSetBlocks(unsigned int iStart, unsigned int iEnd, bool iEnable)
{
    for (unsigned int lHour = iStart; lHour <= iEnd; ++lHour)
    {
        const unsigned int lBit = 1U << lHour;
        mDisabledTimeBlocks = iEnable ? mDisabledTimeBlocks & ~lBit : mDisabledTimeBlocks | lBit;
    }
}

DeliveryWindow* CreateDeliveryWindow()
{
    return new DeliveryWindowImpl();
}

} // namespace QTalBase
