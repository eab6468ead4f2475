#ifndef TALBASE_VIEWS_H
#define TALBASE_VIEWS_H
#include "QBase/Message.h"
#include "QBase/ReturnWString.h"
#include "QBase/SmartPtrI.h"
#include "TalBase/Iteration.h"
#include "TalBase/Output.h"
#include "TalBase/PropertyBag.h"
#include "TalBase/PropertyBagHelpers.h"
#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>
namespace QTalBase
{
template <class T, class = void>
struct IsPropertyValue : std::false_type
{
};
template <class T>
struct IsPropertyValue<T, std::void_t<decltype(UnStringize(std::declval<const wchar_t*>(), std::declval<T&>())),
                                      decltype(Stringize(std::declval<const T&>()))>> : std::true_type
{
};
template <class T>
T Get(const PropertyBag& iBag, const wchar_t* ipName, T iDefault = T())
{
    constexpr bool lIsText = std::is_same_v<T, std::wstring>;
    static_assert(lIsText || IsPropertyValue<T>::value, "Stringize and UnStringize do not know this type");
    if (iBag.IsPropertyEmbedded(ipName))
    {
        return iDefault;
    }
    const QBase::ReturnWString lText = iBag.GetProperty(ipName);
    if (lText.GetLength() == 0)
    {
        return iDefault;
    }
    if constexpr (lIsText)
    {
        return std::wstring(lText.c_str(), lText.GetLength());
    }
    else
    {
        T lValue = std::move(iDefault);
        UnStringize(lText.c_str(), lValue);
        return lValue;
    }
}
inline std::wstring Get(const PropertyBag& iBag, const wchar_t* ipName, const wchar_t* ipDefault)
{
    return Get<std::wstring>(iBag, ipName, ipDefault);
}
template <class T>
void Set(PropertyBag& oBag, const wchar_t* ipName, const T& iValue)
{
    if constexpr (std::is_convertible_v<const T&, const wchar_t*>)
    {
        oBag.SetProperty(ipName, iValue, false);
    }
    else if constexpr (std::is_convertible_v<const T&, std::wstring_view>)
    {
        oBag.SetProperty(ipName, std::wstring(std::wstring_view(iValue)).c_str(), false);
    }
    else
    {
        static_assert(IsPropertyValue<T>::value, "Stringize and UnStringize do not know this type");
        oBag.SetProperty(ipName, Stringize(iValue).c_str(), false);
    }
}
namespace Paths
{
struct Step
{
    std::wstring mName;
    std::wstring_view mPath;
};
[[noreturn]] inline void Throw(const wchar_t* ipText, std::wstring_view iPath)
{
    QBase::Message lMessage;
    lMessage.SetDomainAndID(QBase::MESSAGE_DOMAIN_UNKNOWN, -1);
    lMessage.SetMessage((ipText + std::wstring(iPath)).c_str());
    throw QBase::ExceptionImpl<PropertyBagUserErrorException>(lMessage);
}
inline std::vector<Step> Read(std::wstring_view iPath)
{
    std::vector<Step> lSteps(1);
    for (std::size_t lIndex = 0; lIndex < iPath.size(); ++lIndex)
    {
        if (iPath[lIndex] == L'/')
        {
            lSteps.back().mPath = iPath.substr(0, lIndex);
            lSteps.emplace_back();
            continue;
        }
        if (iPath[lIndex] == L'\\' && (++lIndex == iPath.size() || (iPath[lIndex] != L'/' && iPath[lIndex] != L'\\')))
        {
            Throw(L"QTalBase::GetBagAt; A backslash may only stand before a slash or another one: ", iPath);
        }
        lSteps.back().mName += iPath[lIndex];
    }
    lSteps.back().mPath = iPath;
    return lSteps;
}
inline QBase::SmartPtrI<PropertyBag> Enter(const PropertyBag& iBag, const Step& iStep)
{
    if (!iBag.IsPropertyEmbedded(iStep.mName.c_str()))
    {
        Throw(L"QTalBase::GetBagAt; There is no nested bag at: ", iStep.mPath);
    }
    return iBag.GetPropertyBag(iStep.mName.c_str());
}
} // namespace Paths
inline std::wstring AsPathStep(std::wstring_view iName)
{
    std::wstring lStep;
    for (const wchar_t lCharacter : iName)
    {
        if (lCharacter == L'/' || lCharacter == L'\\')
        {
            lStep += L'\\';
        }
        lStep += lCharacter;
    }
    return lStep;
}
inline QBase::SmartPtrI<PropertyBag> GetBagAt(const PropertyBag& iBag, const wchar_t* ipPath)
{
    QBase::SmartPtrI<PropertyBag> lBag;
    for (const Paths::Step& lStep : Paths::Read(ipPath))
    {
        lBag = Paths::Enter(lBag ? *lBag : iBag, lStep);
    }
    return lBag;
}
inline QBase::ReturnWString GetValueAt(const PropertyBag& iBag, const wchar_t* ipPath)
{
    std::vector<Paths::Step> lSteps = Paths::Read(ipPath);
    const Paths::Step lLast = std::move(lSteps.back());
    lSteps.pop_back();
    QBase::SmartPtrI<PropertyBag> lNest;
    for (const Paths::Step& lStep : lSteps)
    {
        lNest = Paths::Enter(lNest ? *lNest : iBag, lStep);
    }
    const PropertyBag& lBag = lNest ? *lNest : iBag;
    if (!lBag.IsPropertyEmbedded(lLast.mName.c_str()))
    {
        QBase::ReturnWString lValue = lBag.GetProperty(lLast.mName.c_str());
        if (lValue.GetLength() != 0)
        {
            return lValue;
        }
    }
    Paths::Throw(L"QTalBase::GetValueAt; There is no plain value at: ", lLast.mPath);
}
} // namespace QTalBase
#endif
