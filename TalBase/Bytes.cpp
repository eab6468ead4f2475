#include "TalBase/Bytes.h"

#include "QBase/Convert.h"
#include "TalBase/PrivateSource/Messages.h"
#include "TalBase/PropertyBag.h"

namespace QTalBase
{

// What stands before a zero byte is converted first: it may be the first that is wrong.
PropertyBag* CreatePropertyBagFromUTF8(std::string_view iBytes)
{
    const std::size_t lZero = iBytes.find('\0');
    const std::wstring lText = QBase::UTF8ToWideChar(iBytes.substr(0, lZero), true);
    if (lZero != std::string_view::npos)
    {
        Messages::Throw<PropertyBagException>((Messages::gZeroByte + std::to_wstring(lZero)).c_str());
    }
    return CreatePropertyBag(lText.c_str());
}

std::string PropertyBagToUTF8(const PropertyBag& iBag)
{
    return QBase::WideCharToUTF8(iBag.GetString(true, nullptr, nullptr, true).c_str(), true);
}

} // namespace QTalBase
