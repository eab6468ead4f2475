#include "TalBase/PropertyBag.h"

#include "TalBase/PrivateSource/Delimiters.h"
#include "TalBase/PrivateSource/Messages.h"
#include "TalBase/PrivateSource/PropertyBagImpl.h"
#include "TalBase/PrivateSource/TextReader.h"

#include <string>
#include <typeinfo>

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

// What a bag is made with lies with it while it has so few bytes, and stays until the bag goes.
const std::size_t gMostInside = 0x2000;

} // namespace

PropertyBag::~PropertyBag() = default;

PropertyBagException::PropertyBagException(const QBase::Message& iMessage) : QBase::Message(iMessage) {}

PropertyBagException::~PropertyBagException() = default;

PropertyBagUserErrorException::PropertyBagUserErrorException(const QBase::Message& iMessage)
    : PropertyBagException(iMessage)
{
}

PropertyBagUserErrorException::~PropertyBagUserErrorException() = default;

// Between states and objects; no other source knows both.

const BagState* StateOf(const PropertyBag& iBag) noexcept
{
    // The cast to void finds the whole object, which is one of this class.
    return typeid(iBag) == typeid(PropertyBagImpl)
               ? &static_cast<const PropertyBagImpl*>(dynamic_cast<const void*>(&iBag))->GetState()
               : nullptr;
}

NestPtr MakeNest(std::wstring_view iName, const SharedWString& iBegin, const SharedWString& iEnd, const BagRoom& iRoom)
{
    const std::size_t lAllNests = NestContent::SizeOf(iRoom.mNestCount);
    const std::size_t lAllPlain = ValueContent::SizeOf(iRoom.mPlainCount, iRoom.mPlainLength);
    const std::size_t lNests = lAllNests <= gMostInside ? lAllNests : 0;
    const std::size_t lPlain = lAllPlain <= gMostInside ? lAllPlain : 0;
    auto* lBag = new (PropertyBagImpl::Behind{lNests + lPlain + iName.size() * sizeof(wchar_t)})
        PropertyBagImpl(iBegin, iEnd, true);
    char* lBehind = reinterpret_cast<char*>(lBag) + sizeof(PropertyBagImpl);
    NestPtr lNest;
    lNest.Attach(&lBag->GetState());
    // The first reference is stored, not counted: nobody else can see the nest yet.
    lNest->mRefCount.mCount.store(1, std::memory_order_relaxed);
    if (lNests != 0)
    {
        lNest->mNests.Lend(lBehind, iRoom.mNestCount);
    }
    if (lPlain != 0)
    {
        lNest->mValues.Lend(lBehind + lNests, iRoom.mPlainCount, iRoom.mPlainLength);
    }
    wchar_t* lName = reinterpret_cast<wchar_t*>(lBehind + lNests + lPlain);
    CopyText(iName, lName);
    lNest->mName = {lName, iName.size()};
    return lNest;
}

PropertyBag* AsNew(NestPtr&& iBag) noexcept
{
    const BagState* lState = iBag.Detach();
    lState->mRefCount.mCount.store(0, std::memory_order_relaxed);
    return lState->mObject;
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
    return AsNew(lText.empty() ? MakeNest({}, SharedWString(gLiteralBegin), SharedWString(gLiteralEnd), {})
                               : ReadNew(lText, lPosition, lPair));
}

} // namespace QTalBase
