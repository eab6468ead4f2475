#include "TalBase/PrivateSource/PropertyBagImpl.h"

#include "QDataType/StringCollection.h"
#include "TalBase/PrivateSource/BagByCalls.h"
#include "TalBase/PrivateSource/BagComparer.h"
#include "TalBase/PrivateSource/BagMerger.h"
#include "TalBase/PrivateSource/Messages.h"
#include "TalBase/PrivateSource/TextReader.h"
#include "TalBase/PrivateSource/TextWriter.h"

#include <memory>
#include <typeinfo>
#include <utility>
#include <vector>

namespace QTalBase
{

namespace
{

using Messages::Throw;

// So many names are looked up one by one as fast as all of them are compared with each other.
const std::size_t gFewNames = 32;

unsigned int AsPosition(std::size_t iIndex, std::size_t iCount)
{
    return iIndex < iCount ? static_cast<unsigned int>(iIndex) : gNotFoundPosition;
}

const std::type_info& ClassOfLibrarysFilters()
{
    const std::unique_ptr<QDataType::StringCollection> lFilter(QDataType::CreateStringCollection());
    const QDataType::StringCollection& lOne = *lFilter;
    return typeid(lOne);
}

// Whether asking a filter cannot change anything: a client's own class may do anything when it is asked.
bool IsLibrarysOwn(const QDataType::StringCollection& iFilter)
{
    static const std::type_info& lClass = ClassOfLibrarysFilters();
    return typeid(iFilter) == lClass;
}

} // namespace

PropertyBagImpl::PropertyBagImpl() : mState(*this, SharedWString(BEGIN), SharedWString(END), false)
{
    mState.mIsPairChecked = IsConstantPair(mState.mBegin, mState.mEnd);
}

PropertyBagImpl::PropertyBagImpl(const wchar_t* ipBegin, const wchar_t* ipEnd)
    : mState(*this, SharedWString(ipBegin), SharedWString(ipEnd), true)
{
    CheckValidityOfDelimiters(ipBegin, ipEnd);
}

PropertyBagImpl::PropertyBagImpl(const SharedWString& iBegin, const SharedWString& iEnd, bool iIsPairChecked) noexcept
    : mState(*this, iBegin, iEnd, iIsPairChecked)
{
}

PropertyBagImpl::~PropertyBagImpl() = default;

// The text is rendered first, so that a pair that is not allowed leaves nothing in the stream.
void PropertyBagImpl::Serialize(QSerialization::WriteDataStream& iStream) const
{
    const QBase::ReturnWString lText = GetString(true, nullptr, nullptr, true);
    iStream.WriteWString(mState.mBegin.c_str());
    iStream.WriteWString(mState.mEnd.c_str());
    iStream.WriteWString(lText.c_str());
}

void PropertyBagImpl::DeSerialize(QSerialization::ReadDataStream& iStream)
{
    const auto lRead = [&](SharedWString& oDelimiter) {
        const QBase::ReturnWString lText = iStream.ReadWString();
        if (!(oDelimiter == std::wstring_view(lText.c_str())))
        {
            oDelimiter = SharedWString(lText.c_str());
            mState.mIsPairChecked = false; // taken as they are; whoever uses them checks them
        }
    };
    lRead(mState.mBegin);
    lRead(mState.mEnd);
    const QBase::ReturnWString lText = iStream.ReadWString();
    AddString(lText.c_str());
}

void PropertyBagImpl::SetProperty(const wchar_t* ipName, const wchar_t* ipValue, bool iIsPropertyBag)
{
    if (ipName == nullptr)
    {
        Throw<PropertyBagUserErrorException>(Messages::gNameNull);
    }
    // Held, so that arguments may point into them whatever an overrider does meanwhile.
    const SharedWString lBegin = mState.mBegin;
    const SharedWString lEnd = mState.mEnd;
    const std::wstring_view lName(ipName);
    if (Contains(lName, lEnd.View()) || Contains(lName, lBegin.View()))
    {
        Throw<PropertyBagException>(Messages::gNameHasDelimiter);
    }
    if (ipValue == nullptr)
    {
        Throw<PropertyBagUserErrorException>(Messages::gValueNull);
    }
    if (!iIsPropertyBag)
    {
        hSetPlain(ipName, ipValue);
        return;
    }
    const std::wstring_view lText(ipValue); // measured before an overrider is called
    RemoveProperty(ipName);
    if (!lText.empty())
    {
        mState.mNests.Append(ReadNest(mState, lName, lText));
    }
}

void PropertyBagImpl::hSetPlain(const wchar_t* ipName, std::wstring_view iValue)
{
    std::wstring_view lValue = iValue;
    std::wstring lEscaped;
    if (CountEscapable(lValue) != 0 && AreDefaultDelimiters(mState.GetPair()))
    {
        lEscaped = Escaped(lValue);
        lValue = lEscaped;
    }
    if (Contains(lValue, mState.mEnd.View()) || Contains(lValue, mState.mBegin.View()))
    {
        Messages::ThrowValueHasDelimiter(lValue, mState.mBegin.View(), mState.mEnd.View());
    }
    const std::wstring_view lName(ipName);
    if (!lValue.empty())
    {
        mState.mValues.ReserveForOne(lName.size() + lValue.size()); // a failure comes before anything is removed
    }
    RemoveProperty(ipName);
    if (!lValue.empty())
    {
        mState.mValues.Append(lName, lValue);
    }
}

// Through a text without a header, in this bag's delimiters, whoever made the other bag: what that loses is part of the
// contract.
void PropertyBagImpl::EmbedProperty(const wchar_t* ipName, const PropertyBag* ipPropertyBag)
{
    const QBase::ReturnWString lText =
        ipPropertyBag->GetString(false, mState.mBegin.c_str(), mState.mEnd.c_str(), true);
    SetProperty(ipName, lText.c_str(), true);
}

void PropertyBagImpl::RemoveProperty(const wchar_t* ipName)
{
    if (ipName == nullptr)
    {
        return;
    }
    RemovePropertyInValueContent(ipName);
    RemovePropertyInEmbeddedContent(ipName);
}

QBase::ReturnWString PropertyBagImpl::GetProperty(const wchar_t* ipName) const
{
    return ReadProperty(mState, ipName);
}

bool PropertyBagImpl::IsPropertyEmbedded(const wchar_t* ipName) const
{
    return mState.mNests.Find(ipName) < mState.mNests.GetCount();
}

QBase::SmartPtrI<PropertyBag> PropertyBagImpl::GetPropertyBag(const wchar_t* ipName) const
{
    const std::size_t lIndex = mState.mNests.Find(ipName);
    if (lIndex == mState.mNests.GetCount())
    {
        const bool lIsPlain = mState.mValues.Find(ipName) < mState.mValues.GetCount();
        Throw<PropertyBagUserErrorException>(lIsPlain ? Messages::gNameNotEmbedded : Messages::gNameUnknown);
    }
    return mState.mNests.GetNest(lIndex).mObject;
}

unsigned int PropertyBagImpl::GetCount() const
{
    return static_cast<unsigned int>(mState.GetCount());
}

// The four positional operations let the position equal to the count pass their test; it designates no entry, and
// neither does any position that an overridden GetCount lets through.

QBase::ReturnWString PropertyBagImpl::GetName(unsigned int iIndex) const
{
    const std::size_t lEmbeddedIndex = iIndex - mState.mValues.GetCount();
    if (iIndex > GetCount() || (iIndex >= mState.mValues.GetCount() && lEmbeddedIndex >= mState.mNests.GetCount()))
    {
        Throw<PropertyBagUserErrorException>(Messages::gNameIndex);
    }
    return iIndex < mState.mValues.GetCount() ? AsReturned(mState.mValues.GetName(iIndex))
                                              : AsReturned(mState.mNests.GetName(lEmbeddedIndex));
}

QBase::ReturnWString PropertyBagImpl::GetValue(unsigned int iIndex) const
{
    const std::size_t lEmbeddedIndex = iIndex - mState.mValues.GetCount();
    if (iIndex > GetCount() || (iIndex >= mState.mValues.GetCount() && lEmbeddedIndex >= mState.mNests.GetCount()))
    {
        Throw<PropertyBagUserErrorException>(Messages::gValueIndex);
    }
    if (iIndex < mState.mValues.GetCount())
    {
        return AsReturned(mState.mValues.GetValue(iIndex));
    }
    return TextWriter(mState.mNests.GetNest(lEmbeddedIndex)).Write(true);
}

bool PropertyBagImpl::IsEmbedded(unsigned int iIndex) const
{
    if (iIndex > GetCount() || iIndex > mState.GetCount())
    {
        Throw<PropertyBagUserErrorException>(Messages::gValueIndex);
    }
    return iIndex >= mState.mValues.GetCount();
}

QBase::SmartPtrI<PropertyBag> PropertyBagImpl::GetValuePropertyBag(unsigned int iIndex) const
{
    if (iIndex > GetCount())
    {
        Throw<PropertyBagUserErrorException>(Messages::gBagIndex);
    }
    if (iIndex < mState.mValues.GetCount())
    {
        Throw<PropertyBagUserErrorException>(Messages::gIndexNotEmbedded);
    }
    if (iIndex - mState.mValues.GetCount() >= mState.mNests.GetCount())
    {
        Throw<PropertyBagUserErrorException>(Messages::gBagIndex);
    }
    return mState.mNests.GetNest(iIndex - mState.mValues.GetCount()).mObject;
}

void PropertyBagImpl::AddString(const wchar_t* ipString)
{
    if (hMayRepeatNames())
    {
        const NestPtr lRead = ReadApart(mState, ipString);
        AddPropertyBag(lRead->mObject);
    }
    else
    {
        AddText(mState, ipString);
    }
}

void PropertyBagImpl::AddPropertyBag(const PropertyBag* ipPropertyBag)
{
    const BagState* lExact = StateOf(*ipPropertyBag);
    // One of this bag's own nests, on which it has a reference, may be replaced, and so let go, while it is merged.
    const bool lMayBeNest = lExact != nullptr && lExact->mRefCount.mCount.load(std::memory_order_relaxed) > 0;
    const QBase::SmartPtrI<const PropertyBag> lHeld(lMayBeNest ? ipPropertyBag : nullptr);
    if (lExact != nullptr && lExact->GetCount() > gFewNames)
    {
        mState.FindOutWhetherNamesRepeat();
    }
    if (lExact == nullptr || hMayRepeatNames())
    {
        AddByCalls(*this, *ipPropertyBag);
    }
    else if (lExact == &mState)
    {
        BagMerger(mState, 0).SetAllOfItself();
    }
    else
    {
        BagMerger::SetAll(mState, *lExact);
    }
}

QBase::ReturnWString PropertyBagImpl::GetString(bool iWithMetadata, const wchar_t* ipBegin, const wchar_t* ipEnd,
                                                bool iWithSensitiveInfo) const
{
    TextWriter lWriter(mState);
    lWriter.With(ipBegin, ipEnd);
    if (!iWithSensitiveInfo)
    {
        lWriter.WithoutSensitiveInfo();
    }
    return lWriter.Write(iWithMetadata);
}

QBase::ReturnWString PropertyBagImpl::GetStringWithoutSensitiveInfo(bool iWithMetadata, const wchar_t* ipBegin,
                                                                    const wchar_t* ipEnd) const
{
    return GetString(iWithMetadata, ipBegin, ipEnd, false);
}

// Only two bags without overriders may be compared without their noticing.
bool PropertyBagImpl::operator==(const PropertyBag& iOther) const
{
    const BagState* lOther = hIsExact() ? StateOf(iOther) : nullptr;
    return lOther != nullptr ? BagComparer::AreEqual(mState, *lOther) : AreEqualByCalls(*this, iOther);
}

bool PropertyBagImpl::IsSubset(const PropertyBag* ipSubset) const
{
    const BagState* lOther = hIsExact() ? StateOf(*ipSubset) : nullptr;
    return lOther != nullptr ? BagComparer::IsSubset(mState, *lOther) : IsSubsetByCalls(*this, *ipSubset);
}

void PropertyBagImpl::ChangeDelimiters(const wchar_t* ipBegin, const wchar_t* ipEnd)
{
    CheckValidityOfDelimiters(ipBegin, ipEnd);
    const SharedWString lBegin(ipBegin);
    const SharedWString lEnd(ipEnd);
    // A list of all bags, which a deep nest makes longer by a pointer a level: a walk would keep twice that.
    std::vector<BagState*> lBags{&mState};
    for (std::size_t lBag = 0; lBag < lBags.size(); ++lBag)
    {
        const NestContent& lNests = lBags[lBag]->mNests;
        const std::size_t lCount = lNests.GetCount();
        for (std::size_t lIndex = 0; lIndex < lCount; ++lIndex)
        {
            lBags.push_back(&lNests.GetNest(lIndex));
        }
    }
    for (BagState* lBag : lBags) // from here on nothing fails
    {
        lBag->SetPair(lBegin, lEnd);
    }
}

const wchar_t* PropertyBagImpl::GetBeginDelimiter() const
{
    return mState.mBegin.c_str();
}

const wchar_t* PropertyBagImpl::GetEndDelimiter() const
{
    return mState.mEnd.c_str();
}

// Flat: the clone has the same nested bags, not copies, and each counts one reference more.
PropertyBag* PropertyBagImpl::Clone() const
{
    mState.CheckPair();
    NestPtr lClone = MakeNest({}, mState.mBegin, mState.mEnd, mState.GetRoom());
    lClone->mValues.CopyFrom(mState.mValues);
    lClone->mNests.Share(mState.mNests);
    lClone->mMayRepeatNames = hMayRepeatNames();
    return AsNew(std::move(lClone));
}

PropertyBag* PropertyBagImpl::FilteredClone(const QDataType::StringCollection* ipFilter) const
{
    mState.CheckPair();
    std::unique_ptr<PropertyBagImpl> lClone(new PropertyBagImpl(mState.mBegin, mState.mEnd, true));
    if (hIsExact() && IsLibrarysOwn(*ipFilter))
    {
        BagMerger::SetNamed(lClone->mState, mState, *ipFilter);
    }
    else
    {
        SetNamedByCalls(lClone->mState, *this, *ipFilter);
    }
    return lClone.release();
}

void PropertyBagImpl::MoveProperty(const wchar_t* ipName, unsigned int iIndex)
{
    if (ipName == nullptr)
    {
        return;
    }
    const std::size_t lValueCount = mState.mValues.GetCount();
    const std::size_t lValueIndex = mState.mValues.Find(ipName);
    if (lValueIndex < lValueCount)
    {
        if (iIndex < lValueCount)
        {
            mState.mValues.Swap(lValueIndex, iIndex);
        }
        return;
    }
    const std::size_t lEmbeddedIndex = mState.mNests.Find(ipName);
    // The bound really is the number of nested bags, though the position counts the plain properties too.
    if (lEmbeddedIndex < mState.mNests.GetCount() && iIndex < mState.mNests.GetCount() && iIndex >= lValueCount)
    {
        mState.mNests.Swap(lEmbeddedIndex, iIndex - lValueCount);
    }
}

void PropertyBagImpl::RemovePropertyInValueContent(const wchar_t* ipName) noexcept
{
    const std::size_t lIndex = ipName != nullptr ? mState.mValues.Find(ipName) : mState.mValues.GetCount();
    if (lIndex < mState.mValues.GetCount())
    {
        mState.mValues.Remove(lIndex);
    }
}

void PropertyBagImpl::RemovePropertyInEmbeddedContent(const wchar_t* ipName) noexcept
{
    const std::size_t lIndex = ipName != nullptr ? mState.mNests.Find(ipName) : mState.mNests.GetCount();
    if (lIndex < mState.mNests.GetCount())
    {
        mState.mNests.Remove(lIndex);
    }
}

void PropertyBagImpl::AddRef() const noexcept
{
    mState.AddRef();
}

void PropertyBagImpl::Release() const noexcept
{
    if (mState.DropRef())
    {
        delete this;
    }
}

unsigned int PropertyBagImpl::NamePositionInValueContent(const wchar_t* ipName) const
{
    return AsPosition(mState.mValues.Find(ipName), mState.mValues.GetCount());
}

unsigned int PropertyBagImpl::NamePositionInEmbeddedContent(const wchar_t* ipName) const
{
    return AsPosition(mState.mNests.Find(ipName), mState.mNests.GetCount());
}

void PropertyBagImpl::CheckValidityOfDelimiters(const wchar_t* ipBegin, const wchar_t* ipEnd)
{
    QTalBase::CheckValidityOfDelimiters(DelimiterPair{ipBegin, ipEnd});
}

QBase::ReturnWString PropertyBagImpl::hConvertDelimiters(const wchar_t* ipValue)
{
    return ipValue != nullptr ? QBase::ReturnWString(Escaped(ipValue)) : QBase::ReturnWString(ipValue);
}

QBase::ReturnWString PropertyBagImpl::hInverseConvertDelimiters(const wchar_t* ipValue)
{
    return ipValue != nullptr ? QBase::ReturnWString(Unescaped(ipValue)) : QBase::ReturnWString(ipValue);
}

bool PropertyBagImpl::IsSensitiveProperty(std::wstring_view iName)
{
    return IsSensitiveName(iName);
}

bool PropertyBagImpl::hIsExact() const noexcept
{
    return typeid(*this) == typeid(PropertyBagImpl);
}

// Only what a derived class overrides can give a bag a name twice, and only a clone carries that on.
bool PropertyBagImpl::hMayRepeatNames() const noexcept
{
    return mState.mMayRepeatNames || !hIsExact();
}

} // namespace QTalBase
