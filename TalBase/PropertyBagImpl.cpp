#include "TalBase/PrivateSource/PropertyBagImpl.h"

#include "QBase/Atomic.h"
#include "QDataType/StringCollection.h"
#include "TalBase/PrivateSource/BagComparer.h"
#include "TalBase/PrivateSource/BagIndex.h"
#include "TalBase/PrivateSource/BagMerger.h"
#include "TalBase/PrivateSource/Messages.h"
#include "TalBase/PrivateSource/NameTable.h"
#include "TalBase/PrivateSource/TextPrimitives.h"
#include "TalBase/PrivateSource/TextReader.h"
#include "TalBase/PrivateSource/TextSearch.h"
#include "TalBase/PrivateSource/TextWriter.h"
#include "TalBase/SensitiveNames.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <typeinfo>
#include <utility>

const wchar_t* BEGIN = QTalBase::SharedWString::gDefaultBegin;
const wchar_t* END = QTalBase::SharedWString::gDefaultEnd;

namespace QTalBase
{

namespace
{

using Messages::Throw;

// The delimiters of a bag made from the empty text, whatever BEGIN and END point to.
constexpr std::wstring_view gLiteralBegin = SharedWString::gDefaultBegin;
constexpr std::wstring_view gLiteralEnd = SharedWString::gDefaultEnd;

// So many names are looked up one by one as fast as all of them are compared with each other.
const unsigned int gFewNames = 32;

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

QBase::ReturnWString AsReturned(std::wstring_view iText)
{
    return {iText.data(), iText.size()};
}

} // namespace

PropertyBag::~PropertyBag() = default;

PropertyBagException::PropertyBagException(const QBase::Message& iMessage) : QBase::Message(iMessage) {}

PropertyBagException::~PropertyBagException() = default;

PropertyBagUserErrorException::PropertyBagUserErrorException(const QBase::Message& iMessage)
    : PropertyBagException(iMessage)
{
}

PropertyBagUserErrorException::~PropertyBagUserErrorException() = default;

PropertyBagImpl::PropertyBagImpl()
    : mBeginDelimiter(BEGIN),
      mEndDelimiter(END),
      mRefCount(0),
      mAreDelimitersValid(IsConstantPair(mBeginDelimiter, mEndDelimiter))
{
}

PropertyBagImpl::PropertyBagImpl(const wchar_t* ipBegin, const wchar_t* ipEnd)
    : mBeginDelimiter(ipBegin), mEndDelimiter(ipEnd), mRefCount(0), mAreDelimitersValid(true)
{
    CheckValidityOfDelimiters(ipBegin, ipEnd);
}

PropertyBagImpl::PropertyBagImpl(const SharedWString& iBegin, const SharedWString& iEnd, bool iAreValid) noexcept
    : mBeginDelimiter(iBegin), mEndDelimiter(iEnd), mRefCount(0), mAreDelimitersValid(iAreValid)
{
}

// Nests that die with this bag are linked and deleted one after the other: a million levels take no stack and no
// memory.
PropertyBagImpl::~PropertyBagImpl()
{
    PropertyBagImpl* lDying = nullptr;
    hReleaseNests(mEmbeddedContent, lDying);
    while (lDying != nullptr)
    {
        PropertyBagImpl* lBag = lDying;
        lDying = lBag->mNextDying;
        hReleaseNests(lBag->mEmbeddedContent, lDying);
        delete lBag;
    }
}

void PropertyBagImpl::Serialize(QSerialization::WriteDataStream& iStream) const
{
    const QBase::ReturnWString lText = GetString(true, nullptr, nullptr, true);
    iStream.WriteWString(mBeginDelimiter.c_str());
    iStream.WriteWString(mEndDelimiter.c_str());
    iStream.WriteWString(lText.c_str());
}

void PropertyBagImpl::DeSerialize(QSerialization::ReadDataStream& iStream)
{
    const auto lRead = [&](SharedWString& oDelimiter) {
        const QBase::ReturnWString lText = iStream.ReadWString();
        if (!(oDelimiter == std::wstring_view(lText.c_str())))
        {
            oDelimiter = SharedWString(lText.c_str());
            mAreDelimitersValid = false; // taken as they are; whoever uses them checks them
        }
    };
    lRead(mBeginDelimiter);
    lRead(mEndDelimiter);
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
    const SharedWString lBegin = mBeginDelimiter;
    const SharedWString lEnd = mEndDelimiter;
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
        const QBase::SmartPtrI<PropertyBagImpl> lBag = hMakeNested(lText);
        mEmbeddedContent.emplace_back(AsName(lName), lBag);
    }
}

void PropertyBagImpl::hSetPlain(const wchar_t* ipName, std::wstring_view iValue)
{
    std::wstring_view lValue = iValue;
    std::wstring lEscaped;
    if (CountEscapable(lValue) != 0 && AreDefaultDelimiters(hPair()))
    {
        lEscaped = Escaped(lValue);
        lValue = lEscaped;
    }
    if (Contains(lValue, mEndDelimiter.View()) || Contains(lValue, mBeginDelimiter.View()))
    {
        Messages::ThrowValueHasDelimiter(lValue, mBeginDelimiter.View(), mEndDelimiter.View());
    }
    const std::wstring_view lName(ipName);
    if (!lValue.empty())
    {
        mValueContent.ReserveForOne(lName.size() + lValue.size()); // a failure comes before anything is removed
    }
    RemoveProperty(ipName);
    if (!lValue.empty())
    {
        mValueContent.Append(lName, lValue);
    }
}

void PropertyBagImpl::EmbedProperty(const wchar_t* ipName, const PropertyBag* ipPropertyBag)
{
    const QBase::ReturnWString lText =
        ipPropertyBag->GetString(false, mBeginDelimiter.c_str(), mEndDelimiter.c_str(), true);
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
    const std::wstring_view lName(ipName);
    const std::size_t lIndex = mValueContent.Find(lName);
    if (lIndex < mValueContent.GetCount())
    {
        const std::wstring_view lValue = mValueContent.GetValue(lIndex);
        if (TriggersUnescaping(lValue) && AreDefaultDelimiters(hPair()))
        {
            return Unescaped(lValue);
        }
        return AsReturned(lValue);
    }
    const std::size_t lEmbeddedIndex = hFindEmbedded(lName);
    if (lEmbeddedIndex < mEmbeddedContent.size())
    {
        return mEmbeddedContent[lEmbeddedIndex].second->GetString(true, nullptr, nullptr, true);
    }
    return {nullptr, 0};
}

bool PropertyBagImpl::IsPropertyEmbedded(const wchar_t* ipName) const
{
    return hFindEmbedded(ipName) < mEmbeddedContent.size();
}

QBase::SmartPtrI<PropertyBag> PropertyBagImpl::GetPropertyBag(const wchar_t* ipName) const
{
    const std::size_t lIndex = hFindEmbedded(ipName);
    if (lIndex == mEmbeddedContent.size())
    {
        const bool lIsPlain = mValueContent.Find(ipName) < mValueContent.GetCount();
        Throw<PropertyBagUserErrorException>(lIsPlain ? Messages::gNameNotEmbedded : Messages::gNameUnknown);
    }
    return mEmbeddedContent[lIndex].second;
}

unsigned int PropertyBagImpl::GetCount() const
{
    return static_cast<unsigned int>(mValueContent.GetCount() + mEmbeddedContent.size());
}

// The four positional operations let the position equal to the count pass their test; it designates no entry, and so
// does any position that an overridden GetCount lets through.

QBase::ReturnWString PropertyBagImpl::GetName(unsigned int iIndex) const
{
    const std::size_t lEmbeddedIndex = iIndex - mValueContent.GetCount();
    if (iIndex > GetCount() || (iIndex >= mValueContent.GetCount() && lEmbeddedIndex >= mEmbeddedContent.size()))
    {
        Throw<PropertyBagUserErrorException>(Messages::gNameIndex);
    }
    return iIndex < mValueContent.GetCount() ? AsReturned(mValueContent.GetName(iIndex))
                                             : mEmbeddedContent[lEmbeddedIndex].first;
}

QBase::ReturnWString PropertyBagImpl::GetValue(unsigned int iIndex) const
{
    const std::size_t lEmbeddedIndex = iIndex - mValueContent.GetCount();
    if (iIndex > GetCount() || (iIndex >= mValueContent.GetCount() && lEmbeddedIndex >= mEmbeddedContent.size()))
    {
        Throw<PropertyBagUserErrorException>(Messages::gValueIndex);
    }
    if (iIndex < mValueContent.GetCount())
    {
        return AsReturned(mValueContent.GetValue(iIndex));
    }
    return mEmbeddedContent[lEmbeddedIndex].second->GetString(true, nullptr, nullptr, true);
}

bool PropertyBagImpl::IsEmbedded(unsigned int iIndex) const
{
    if (iIndex > GetCount() || iIndex > mValueContent.GetCount() + mEmbeddedContent.size())
    {
        Throw<PropertyBagUserErrorException>(Messages::gValueIndex);
    }
    return iIndex >= mValueContent.GetCount();
}

QBase::SmartPtrI<PropertyBag> PropertyBagImpl::GetValuePropertyBag(unsigned int iIndex) const
{
    if (iIndex > GetCount())
    {
        Throw<PropertyBagUserErrorException>(Messages::gBagIndex);
    }
    if (iIndex < mValueContent.GetCount())
    {
        Throw<PropertyBagUserErrorException>(Messages::gIndexNotEmbedded);
    }
    if (iIndex - mValueContent.GetCount() >= mEmbeddedContent.size())
    {
        Throw<PropertyBagUserErrorException>(Messages::gBagIndex);
    }
    return mEmbeddedContent[iIndex - mValueContent.GetCount()].second;
}

void PropertyBagImpl::AddString(const wchar_t* ipString)
{
    if (hMayRepeatNames())
    {
        hAddTextOneByOne(ipString);
    }
    else
    {
        hAddText(ipString);
    }
}

void PropertyBagImpl::AddPropertyBag(const PropertyBag* ipPropertyBag)
{
    const PropertyBagImpl* lExact = hExactly(*ipPropertyBag);
    // One of this bag's own nests, on which it has a reference, may be replaced, and so let go, while it is merged.
    const bool lMayBeNest = lExact != nullptr && lExact->mRefCount.mCount.load(std::memory_order_relaxed) > 0;
    const QBase::SmartPtrI<const PropertyBag> lHeld(lMayBeNest ? ipPropertyBag : nullptr);
    if (lExact != nullptr && lExact->GetCount() > gFewNames)
    {
        hFindOutWhetherNamesRepeat();
    }
    const PropertyBagImpl* lOther = hMayRepeatNames() ? nullptr : lExact;
    if (lOther == this)
    {
        BagMerger(*this, 0).SetAllOfItself();
        return;
    }
    if (lOther != nullptr)
    {
        hMergeExact(*lOther);
        return;
    }
    for (unsigned int lIndex = 0; lIndex < ipPropertyBag->GetCount(); ++lIndex)
    {
        const QBase::ReturnWString lName = ipPropertyBag->GetName(lIndex);
        const QBase::ReturnWString lValue = ipPropertyBag->GetValue(lIndex);
        const bool lIsEmbedded = ipPropertyBag->IsEmbedded(lIndex);
        SetProperty(lName.c_str(), lValue.c_str(), lIsEmbedded);
    }
}

QBase::ReturnWString PropertyBagImpl::GetString(bool iWithMetadata, const wchar_t* ipBegin, const wchar_t* ipEnd,
                                                bool iWithSensitiveInfo) const
{
    TextWriter lWriter(*this);
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

bool PropertyBagImpl::operator==(const PropertyBag& iOther) const
{
    const PropertyBagImpl* lOther = hIsExact() ? hExactly(iOther) : nullptr;
    if (lOther != nullptr)
    {
        return BagComparer::AreEqual(*this, *lOther);
    }
    const unsigned int lCount = GetCount();
    if (lCount != iOther.GetCount())
    {
        return false;
    }
    for (unsigned int lIndex = 0; lIndex < lCount; ++lIndex)
    {
        const QBase::ReturnWString lName = GetName(lIndex);
        const QBase::ReturnWString lOtherValue = iOther.GetProperty(lName.c_str());
        const bool lIsOtherEmbedded = iOther.IsPropertyEmbedded(lName.c_str());
        const bool lIsEmbedded = IsEmbedded(lIndex);
        if (lIsOtherEmbedded != lIsEmbedded)
        {
            return false;
        }
        if (lIsEmbedded)
        {
            const QBase::SmartPtrI<PropertyBag> lOtherBag = iOther.GetPropertyBag(lName.c_str());
            const QBase::SmartPtrI<PropertyBag> lBag = GetValuePropertyBag(lIndex);
            if (!lOtherBag->operator==(*lBag))
            {
                return false;
            }
        }
        else if (std::wstring_view(GetValue(lIndex)) != std::wstring_view(lOtherValue))
        {
            return false;
        }
    }
    return true;
}

bool PropertyBagImpl::IsSubset(const PropertyBag* ipSubset) const
{
    const PropertyBagImpl* lOther = hIsExact() ? hExactly(*ipSubset) : nullptr;
    if (lOther != nullptr)
    {
        return BagComparer::IsSubset(*this, *lOther);
    }
    const unsigned int lCount = ipSubset->GetCount();
    if (GetCount() < lCount)
    {
        return false;
    }
    for (unsigned int lIndex = 0; lIndex < lCount; ++lIndex)
    {
        const QBase::ReturnWString lName = ipSubset->GetName(lIndex);
        if (IsPropertyEmbedded(lName.c_str()) != ipSubset->IsPropertyEmbedded(lName.c_str()))
        {
            return false;
        }
        if (ipSubset->IsEmbedded(lIndex))
        {
            const QBase::SmartPtrI<PropertyBag> lBag = GetPropertyBag(lName.c_str());
            const QBase::SmartPtrI<PropertyBag> lSubset = ipSubset->GetPropertyBag(lName.c_str());
            if (!lBag->IsSubset(lSubset.get()))
            {
                return false;
            }
        }
        else if (std::wstring_view(GetProperty(lName.c_str())) !=
                 std::wstring_view(ipSubset->GetProperty(lName.c_str())))
        {
            return false;
        }
    }
    return true;
}

void PropertyBagImpl::ChangeDelimiters(const wchar_t* ipBegin, const wchar_t* ipEnd)
{
    CheckValidityOfDelimiters(ipBegin, ipEnd);
    const SharedWString lBegin(ipBegin);
    const SharedWString lEnd(ipEnd);
    std::vector<PropertyBagImpl*> lBags{this};
    for (std::size_t lIndex = 0; lIndex < lBags.size(); ++lIndex)
    {
        for (const auto& lEntry : lBags[lIndex]->mEmbeddedContent)
        {
            lBags.push_back(lEntry.second.get());
        }
    }
    for (PropertyBagImpl* lBag : lBags) // from here on nothing fails
    {
        lBag->mBeginDelimiter = lBegin;
        lBag->mEndDelimiter = lEnd;
        lBag->mAreDelimitersValid = true;
    }
}

const wchar_t* PropertyBagImpl::GetBeginDelimiter() const
{
    return mBeginDelimiter.c_str();
}

const wchar_t* PropertyBagImpl::GetEndDelimiter() const
{
    return mEndDelimiter.c_str();
}

PropertyBag* PropertyBagImpl::Clone() const
{
    hCheckOwnDelimiters();
    std::unique_ptr<PropertyBagImpl> lClone(new PropertyBagImpl(mBeginDelimiter, mEndDelimiter, true));
    lClone->mValueContent = mValueContent;
    lClone->mEmbeddedContent = mEmbeddedContent;
    lClone->mMayRepeatNames = hMayRepeatNames();
    return lClone.release();
}

PropertyBag* PropertyBagImpl::FilteredClone(const QDataType::StringCollection* ipFilter) const
{
    hCheckOwnDelimiters();
    std::unique_ptr<PropertyBagImpl> lClone(new PropertyBagImpl(mBeginDelimiter, mEndDelimiter, true));
    if (hIsExact() && IsLibrarysOwn(*ipFilter))
    {
        hCopyNamed(*ipFilter, *lClone);
    }
    else
    {
        hCopyNamedByCalls(*ipFilter, *lClone);
    }
    return lClone.release();
}

// Merges another bag, which may have this one somewhere inside: then the nest that shows it is handed on as it is by
// that time, without the marks of a merger. No bag stands in two places, so the merger is made anew once at most.
void PropertyBagImpl::hMergeExact(const PropertyBagImpl& iOther)
{
    const bool lHoldsThis = iOther.hHolds(*this);
    std::optional<BagMerger> lMerger(std::in_place, *this, iOther.GetCount());
    for (std::size_t lIndex = 0; lIndex < iOther.mValueContent.GetCount(); ++lIndex)
    {
        lMerger->SetPlain(iOther.mValueContent.GetName(lIndex), iOther.mValueContent.GetValue(lIndex));
    }
    for (const auto& [lName, lNest] : iOther.mEmbeddedContent)
    {
        if (lHoldsThis && (lNest.get() == this || lNest->hHolds(*this)))
        {
            lMerger.reset();
            lMerger.emplace(*this, iOther.mEmbeddedContent.size());
        }
        lMerger->SetWritten(lName, *lNest);
    }
}

// A clone of a derived class's bag may repeat names, and mostly does not. Where it does, names are set one by one.
void PropertyBagImpl::hFindOutWhetherNamesRepeat()
{
    if (!mMayRepeatNames || !hIsExact())
    {
        return;
    }
    const std::size_t lPlainCount = mValueContent.GetCount();
    const auto lNameOf = [&](std::size_t iNumber) -> std::wstring_view {
        return iNumber < lPlainCount ? mValueContent.GetName(iNumber)
                                     : std::wstring_view(mEmbeddedContent[iNumber - lPlainCount].first);
    };
    NameTable lTable(GetCount());
    mMayRepeatNames = false;
    for (std::size_t lNumber = 0; lNumber < GetCount() && !mMayRepeatNames; ++lNumber)
    {
        const std::wstring_view lName = lNameOf(lNumber);
        std::uint32_t* lPlace =
            lTable.Place(lName, [&](std::size_t iOther) { return AreEqualTexts(lNameOf(iOther), lName); });
        mMayRepeatNames = *lPlace != NameTable::gNone;
        *lPlace = static_cast<std::uint32_t>(lNumber);
    }
}

// Of a filter's names, those that this bag does not have are not set; and its count is only a claim.
void PropertyBagImpl::hCopyNamed(const QDataType::StringCollection& iFilter, PropertyBagImpl& oClone) const
{
    const unsigned long lCount = iFilter.GetCount();
    BagIndex lIndexOfThis(*this);
    BagMerger lMerger(oClone, std::min<std::size_t>(lCount, GetCount()));
    for (unsigned long lIndex = 0; lIndex < lCount; ++lIndex)
    {
        const wchar_t* lName = iFilter.GetString(lIndex);
        const std::size_t lNest = lIndexOfThis.FindEmbedded(lName, lIndex);
        if (lNest != BagIndex::gNotFound)
        {
            lMerger.SetRewritten(lName, *mEmbeddedContent[lNest].second);
            continue;
        }
        const std::size_t lValue = lIndexOfThis.FindValue(lName, lIndex);
        if (lValue != BagIndex::gNotFound)
        {
            lMerger.SetPlain(lName, hReadValue(lValue));
        }
    }
}

// What a derived class has nobody knows before it was asked, so the merger is made anew whenever the names have
// doubled. Whoever is asked may change the bag, the filter or the defaults meanwhile.
void PropertyBagImpl::hCopyNamedByCalls(const QDataType::StringCollection& iFilter, PropertyBagImpl& oClone) const
{
    std::optional<BagMerger> lMerger;
    unsigned long lRoom = 0;
    for (unsigned long lIndex = 0; lIndex < iFilter.GetCount(); ++lIndex)
    {
        if (lIndex == lRoom)
        {
            const unsigned long lMore = std::max(32UL, lIndex);
            lMerger.emplace(oClone, lMore);
            lRoom += lMore;
        }
        const std::wstring lName = iFilter.GetString(lIndex);
        if (IsPropertyEmbedded(lName.c_str()))
        {
            const QBase::SmartPtrI<PropertyBag> lBag = GetPropertyBag(lName.c_str());
            if (lBag)
            {
                const QBase::ReturnWString lText =
                    lBag->GetString(false, oClone.GetBeginDelimiter(), oClone.GetEndDelimiter(), true);
                lMerger->SetText(lName, lText.c_str());
            }
            continue;
        }
        const QBase::ReturnWString lValue = GetProperty(lName.c_str());
        if (lValue.GetLength() != 0)
        {
            lMerger->SetAnswer(lName, lValue.c_str());
        }
    }
}

void PropertyBagImpl::MoveProperty(const wchar_t* ipName, unsigned int iIndex)
{
    if (ipName == nullptr)
    {
        return;
    }
    const std::size_t lValueCount = mValueContent.GetCount();
    const std::size_t lValueIndex = mValueContent.Find(ipName);
    if (lValueIndex < lValueCount)
    {
        if (iIndex < lValueCount)
        {
            mValueContent.Swap(lValueIndex, iIndex);
        }
        return;
    }
    const std::size_t lEmbeddedIndex = hFindEmbedded(ipName);
    // The bound really is the number of nested bags, though the position counts the plain properties too.
    if (lEmbeddedIndex < mEmbeddedContent.size() && iIndex < mEmbeddedContent.size() && iIndex >= lValueCount)
    {
        std::swap(mEmbeddedContent[lEmbeddedIndex], mEmbeddedContent[iIndex - lValueCount]);
    }
}

void PropertyBagImpl::RemovePropertyInValueContent(const wchar_t* ipName) noexcept
{
    const std::size_t lIndex = ipName != nullptr ? mValueContent.Find(ipName) : mValueContent.GetCount();
    if (lIndex < mValueContent.GetCount())
    {
        mValueContent.Remove(lIndex);
    }
}

void PropertyBagImpl::RemovePropertyInEmbeddedContent(const wchar_t* ipName) noexcept
{
    const std::size_t lIndex = ipName != nullptr ? hFindEmbedded(ipName) : mEmbeddedContent.size();
    if (lIndex < mEmbeddedContent.size())
    {
        mEmbeddedContent.erase(mEmbeddedContent.begin() + static_cast<std::ptrdiff_t>(lIndex));
    }
}

void PropertyBagImpl::AddRef() const noexcept
{
    QSynch_AtomicIncrement(mRefCount);
}

void PropertyBagImpl::Release() const noexcept
{
    if (QSynch_AtomicDecrement(mRefCount) == 0)
    {
        delete this;
    }
}

unsigned int PropertyBagImpl::NamePositionInValueContent(const wchar_t* ipName) const
{
    return AsPosition(mValueContent.Find(ipName), mValueContent.GetCount());
}

unsigned int PropertyBagImpl::NamePositionInEmbeddedContent(const wchar_t* ipName) const
{
    return AsPosition(hFindEmbedded(ipName), mEmbeddedContent.size());
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
    for (const wchar_t* const* lName = GetSensitiveNames(); *lName != nullptr; ++lName)
    {
        if (iName == *lName)
        {
            return true;
        }
    }
    return false;
}

QBase::SmartPtrI<PropertyBagImpl> PropertyBagImpl::hMake(const SharedWString& iBegin, const SharedWString& iEnd)
{
    QBase::SmartPtrI<PropertyBagImpl> lBag;
    lBag.Attach(new PropertyBagImpl(iBegin, iEnd, true));
    lBag->mRefCount.mCount.store(1, std::memory_order_relaxed);
    return lBag;
}

const PropertyBagImpl* PropertyBagImpl::hExactly(const PropertyBag& iBag) noexcept
{
    // The cast to void finds the whole object, which is one of this class.
    return typeid(iBag) == typeid(PropertyBagImpl)
               ? static_cast<const PropertyBagImpl*>(dynamic_cast<const void*>(&iBag))
               : nullptr;
}

bool PropertyBagImpl::hIsExact() const noexcept
{
    return typeid(*this) == typeid(PropertyBagImpl);
}

void PropertyBagImpl::hCheckOwnDelimiters() const
{
    if (!mAreDelimitersValid)
    {
        QTalBase::CheckValidityOfDelimiters(hPair());
    }
}

// The same where the bag may change: a pair is checked once, however many nests it is for.
void PropertyBagImpl::hAcceptOwnDelimiters()
{
    hCheckOwnDelimiters();
    mAreDelimitersValid = true;
}

std::size_t PropertyBagImpl::hFindEmbedded(std::wstring_view iName) const noexcept
{
    const EmbeddedEntry* lEntries = mEmbeddedContent.data();
    const std::size_t lCount = mEmbeddedContent.size();
    std::size_t lIndex = 0;
    while (lIndex < lCount && (lEntries[lIndex].first.GetLength() != iName.size() ||
                               !AreEqualTexts(lEntries[lIndex].first.c_str(), iName.data(), iName.size())))
    {
        ++lIndex;
    }
    return lIndex;
}

std::wstring PropertyBagImpl::hReadValue(std::size_t iIndex) const
{
    const std::wstring_view lValue = mValueContent.GetValue(iIndex);
    return TriggersUnescaping(lValue) && AreDefaultDelimiters(hPair()) ? Unescaped(lValue) : std::wstring(lValue);
}

// As EmbedProperty renders it.
std::wstring PropertyBagImpl::hTextOfNest(const PropertyBagImpl& iNest) const
{
    return TextWriter(iNest).With(mBeginDelimiter.c_str(), mEndDelimiter.c_str()).WriteToString(false);
}

// A reader of texts with a pair, which is checked first.
TextReader PropertyBagImpl::hMakeReader(const DelimiterPair& iPair)
{
    const bool lIsOwnPair = hIsOwnPair(iPair);
    if (!lIsOwnPair || !mAreDelimitersValid)
    {
        QTalBase::CheckValidityOfDelimiters(iPair);
        mAreDelimitersValid = mAreDelimitersValid || lIsOwnPair;
    }
    return TextReader(lIsOwnPair ? mBeginDelimiter : SharedWString(iPair.mBegin),
                      lIsOwnPair ? mEndDelimiter : SharedWString(iPair.mEnd));
}

// Merges a text into a bag that may repeat names, or whose class overrides what merging calls.
void PropertyBagImpl::hAddTextOneByOne(std::wstring_view iText)
{
    DelimiterPair lPair = hPair();
    const unsigned int lPosition = ReadHeader(iText, lPair);
    TextReader lReader = hMakeReader(lPair);
    lReader.TakeAll(iText, lPosition);
    const QBase::SmartPtrI<PropertyBagImpl> lScratch(lReader.MakeBag());
    AddPropertyBag(lScratch.get());
}

// Merges a text into any other bag; returns whether it was clean throughout (see TextReader).
bool PropertyBagImpl::hAddText(std::wstring_view iText)
{
    DelimiterPair lPair = hPair();
    const unsigned int lPosition = ReadHeader(iText, lPair);
    return hAddContent(iText, lPosition, lPair);
}

// The same for a text whose header has been read.
bool PropertyBagImpl::hAddContent(std::wstring_view iText, unsigned int iPosition, const DelimiterPair& iPair)
{
    TextReader lReader = hMakeReader(iPair);
    lReader.TakeAll(iText, iPosition);
    if (lReader.IsClean() && hIsEmpty() && hIsOwnPair(iPair))
    {
        lReader.MoveTo(*this);
        return true;
    }
    const QBase::SmartPtrI<PropertyBagImpl> lScratch(lReader.MakeBag());
    std::size_t lEntry = 0;
    hMergeScratch(lReader, *lScratch, lEntry);
    return lReader.IsClean();
}

// Merges what a reader has read. oEntry: the entry that is being merged, from 0 on.
void PropertyBagImpl::hMergeScratch(const TextReader& iReader, const PropertyBagImpl& iScratch, std::size_t& oEntry)
{
    BagMerger lMerger(*this, iScratch.GetCount());
    for (std::size_t lIndex = 0; lIndex < iScratch.mValueContent.GetCount(); ++lIndex, ++oEntry)
    {
        lMerger.SetPlain(iScratch.mValueContent.GetName(lIndex), iScratch.mValueContent.GetValue(lIndex));
    }
    for (std::size_t lIndex = 0; lIndex < iScratch.mEmbeddedContent.size(); ++lIndex, ++oEntry)
    {
        const auto& [lName, lNest] = iScratch.mEmbeddedContent[lIndex];
        if (iReader.IsNestClean(lIndex))
        {
            lMerger.SetNest(lName, lNest);
        }
        else
        {
            lMerger.SetWritten(lName, *lNest);
        }
    }
}

// A nested bag with this bag's delimiters, read from a text form.
QBase::SmartPtrI<PropertyBagImpl> PropertyBagImpl::hMakeNested(std::wstring_view iText)
{
    hAcceptOwnDelimiters();
    QBase::SmartPtrI<PropertyBagImpl> lBag = hMake(mBeginDelimiter, mEndDelimiter);
    lBag->hAddText(iText);
    return lBag;
}

// Whether a bag is one of this bag's nests, at any depth.
bool PropertyBagImpl::hHolds(const PropertyBagImpl& iBag) const
{
    std::vector<const PropertyBagImpl*> lBags{this};
    while (!lBags.empty())
    {
        const PropertyBagImpl* lBag = lBags.back();
        lBags.pop_back();
        for (const auto& lEntry : lBag->mEmbeddedContent)
        {
            if (lEntry.second.get() == &iBag)
            {
                return true;
            }
            if (!lEntry.second->mEmbeddedContent.empty())
            {
                lBags.push_back(lEntry.second.get());
            }
        }
    }
    return false;
}

// Drops the references; nests that nobody else holds go onto the list.
void PropertyBagImpl::hReleaseNests(std::vector<EmbeddedEntry>& iEntries, PropertyBagImpl*& oDying) noexcept
{
    for (EmbeddedEntry& lEntry : iEntries)
    {
        PropertyBagImpl* lBag = lEntry.second.Detach();
        // The only reference cannot be taken again by anybody else, so it needs no atomic decrement.
        if (lBag != nullptr && (lBag->mRefCount.mCount.load(std::memory_order_acquire) == 1 ||
                                QSynch_AtomicDecrement(lBag->mRefCount) == 0))
        {
            lBag->mNextDying = oDying;
            oDying = lBag;
        }
    }
}

PropertyBag* CreatePropertyBag()
{
    return new PropertyBagImpl();
}

PropertyBag* CreatePropertyBag(const wchar_t* ipBegin, const wchar_t* ipEnd)
{
    return new PropertyBagImpl(ipBegin, ipEnd);
}

PropertyBag* CreatePropertyBag(const wchar_t* ipString)
{
    const std::wstring_view lText(ipString);
    DelimiterPair lPair{gLiteralBegin, gLiteralEnd};
    const unsigned int lPosition = lText.empty() ? 0 : ReadHeader(lText, lPair);
    if (lPosition == 0 && !lText.empty())
    {
        Throw<PropertyBagException>((Messages::gStringMalformed + std::wstring(lText)).c_str());
    }
    const SharedWString lBegin(lPair.mBegin);
    const SharedWString lEnd(lPair.mEnd);
    std::unique_ptr<PropertyBagImpl> lBag(new PropertyBagImpl(lBegin, lEnd, IsConstantPair(lBegin, lEnd)));
    lBag->hCheckOwnDelimiters();
    if (!lText.empty())
    {
        lBag->hAddContent(lText, lPosition, lPair);
    }
    return lBag.release();
}

} // namespace QTalBase
