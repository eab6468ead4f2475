#include "TalBase/PropertyBag.h"

#include "TalBase/PrivateSource/Delimiters.h"
#include "TalBase/PrivateSource/Messages.h"
#include "TalBase/PrivateSource/PropertyBagImpl.h"
#include "TalBase/PrivateSource/TextReader.h"

#include <memory>
#include <string>

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

} // namespace

PropertyBag::~PropertyBag() = default;

PropertyBagException::PropertyBagException(const QBase::Message& iMessage) : QBase::Message(iMessage) {}

PropertyBagException::~PropertyBagException() = default;

PropertyBagUserErrorException::PropertyBagUserErrorException(const QBase::Message& iMessage)
    : PropertyBagException(iMessage)
{
}

PropertyBagUserErrorException::~PropertyBagUserErrorException() = default;

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
    lBag->GetState().CheckPair();
    if (!lText.empty())
    {
        AddContent(lBag->GetState(), lText, lPosition, lPair);
    }
    return lBag.release();
}

} // namespace QTalBase
