// The short way to use bags from C++: values by type, properties by path, loops (TalBase/Iteration.h) and output
// (TalBase/Output.h), of which this header brings both.
//
//   QTalBase::Set(*lJob, L"Retries", 3);
//   const int lRetries = QTalBase::Get(*lJob, L"Retries", 5);
//   const QBase::ReturnWString lHost = QTalBase::GetValueAt(*lJob, L"Transport/Server/Host");
//
// Everything here is inline and stands on the public operations of the interfaces, so it works with every class that
// implements them, and a program that includes it is built against nothing new. What the operations of a bag throw
// passes on. Nothing here keeps state, so threads may do with it what they may do with the bag: read it at the same
// time, or change it alone.

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

// Whether Stringize and UnStringize know a type: the types of TalBase/PropertyBagHelpers.h, and each type of a client
// that has the two functions beside it.
template <class T, class = void>
struct IsPropertyValue : std::false_type
{
};

template <class T>
struct IsPropertyValue<T, std::void_t<decltype(UnStringize(std::declval<const wchar_t*>(), std::declval<T&>())),
                                      decltype(Stringize(std::declval<const T&>()))>> : std::true_type
{
};

// Returns the plain value of that name as a T, which is std::wstring or a type that IsPropertyValue names; iDefault
// where the bag has none, also where a nested bag has the name. What is there is read by UnStringize, which reports no
// bad text: a number that cannot be read is 0 and a flag false, while an identifier or a date is iDefault. ipName may
// not be null.
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

// The same for a text whose default is written as a literal. ipDefault may not be null.
inline std::wstring Get(const PropertyBag& iBag, const wchar_t* ipName, const wchar_t* ipDefault)
{
    return Get<std::wstring>(iBag, ipName, ipDefault);
}

// Sets a plain value: a text (a literal, std::wstring, std::wstring_view, QBase::ReturnWString) or what Stringize makes
// of iValue. Requires and throws what PropertyBag::SetProperty does; the empty text only removes.
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

// Paths. A path names a property below a bag: the names of the nested bags on the way and then its own, with a slash
// between each two. In a name a slash is written as "\/" and a backslash as "\\"; AsPathStep does so. A name may be
// empty, so "a//b" has three steps, and the empty path has one.
//
// Thrown are PropertyBagUserErrorExceptions, with the path up to the step that failed, or to the backslash, and so
// without any value:
//   "QTalBase::GetBagAt; There is no nested bag at: " + path (also by GetValueAt, for a bag on the way)
//   "QTalBase::GetValueAt; There is no plain value at: " + path
//   "QTalBase::GetBagAt; A backslash may only stand before a slash or another one: " + path (also by GetValueAt)
// Nothing is changed, and no stack is taken by the depth of a path.
namespace Paths
{

struct Step
{
    std::wstring mName;
    std::wstring_view mPath; // up to here
};

[[noreturn]] inline void Throw(const wchar_t* ipText, std::wstring_view iPath)
{
    QBase::Message lMessage; // of an unknown domain
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
            Throw(L"QTalBase::GetBagAt; A backslash may only stand before a slash or another one: ",
                  iPath.substr(0, lIndex));
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

// Returns a name as a step of a path, to be put together with others: AsPathStep(L"a/b") + L"/c".
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

// Returns the nested bag at a path itself, with a reference for the caller, as PropertyBag::GetPropertyBag does. ipPath
// may not be null.
inline QBase::SmartPtrI<PropertyBag> GetBagAt(const PropertyBag& iBag, const wchar_t* ipPath)
{
    QBase::SmartPtrI<PropertyBag> lBag;
    for (const Paths::Step& lStep : Paths::Read(ipPath))
    {
        lBag = Paths::Enter(lBag ? *lBag : iBag, lStep);
    }
    return lBag;
}

// Returns the plain value at a path, as PropertyBag::GetProperty does. ipPath may not be null.
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
