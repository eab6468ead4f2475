#ifndef TALBASE_OUTPUT_H
#define TALBASE_OUTPUT_H
#include "QBase/Convert.h"
#include "QBase/Guid.h"
#include "QBase/ReturnWString.h"
#include "QBase/SmartPtrI.h"
#include "QDataType/DateTime.h"
#include "QDataType/StringCollection.h"
#include "TalBase/BufferedWString.h"
#include "TalBase/DeliveryWindow.h"
#include "TalBase/Iteration.h"
#include "TalBase/PropertyBag.h"
#include "TalBase/PropertyBags.h"
#include "TalBase/SerializableStringCollection.h"
#include <cstdint>
#include <cstdio>
#include <ostream>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>
namespace QTalBase::Output
{
constexpr wchar_t gNoQuote = L'\0';
inline bool IsUnsafe(std::uint32_t iCode) noexcept
{
    return iCode < 0x20 || (iCode >= 0x7F && iCode < 0xA0) || iCode == 0x061C || iCode == 0x200E || iCode == 0x200F ||
           (iCode >= 0x2028 && iCode <= 0x202E) || (iCode >= 0x2066 && iCode <= 0x2069) || iCode == 0xFEFF ||
           (iCode >= 0xD800 && iCode <= 0xDFFF) || iCode > 0x10FFFF;
}
inline void AppendCode(std::wstring& oText, wchar_t iCharacter)
{
    switch (iCharacter)
    {
    case L'\n':
        oText += L"\\n";
        return;
    case L'\r':
        oText += L"\\r";
        return;
    case L'\t':
        oText += L"\\t";
        return;
    default:
        wchar_t lCode[16];
        std::swprintf(lCode, sizeof lCode / sizeof *lCode, L"\\u{%x}", static_cast<unsigned int>(iCharacter));
        oText += lCode;
    }
}
inline void AppendEscaped(std::wstring& oText, std::wstring_view iText, wchar_t iQuote)
{
    for (const wchar_t lCharacter : iText)
    {
        if (IsUnsafe(static_cast<std::uint32_t>(lCharacter)))
        {
            AppendCode(oText, lCharacter);
            continue;
        }
        if (lCharacter == L'\\' || lCharacter == iQuote)
        {
            oText += L'\\';
        }
        oText += lCharacter;
    }
}
inline void AppendQuoted(std::wstring& oText, std::wstring_view iText)
{
    oText += L'\'';
    AppendEscaped(oText, iText, L'\'');
    oText += L'\'';
}
class SensitiveNames
{
public:
    bool Has(std::wstring_view iName) const
    {
        if (iName.find_first_of(gDelimiters) != std::wstring_view::npos)
        {
            return false;
        }
        const std::wstring lName(iName);
        mProbe->SetProperty(lName.c_str(), L"x", false);
        const bool lIsSensitive = mProbe->GetStringWithoutSensitiveInfo(false, nullptr, nullptr).GetLength() == 0;
        mProbe->RemoveProperty(lName.c_str());
        return lIsSensitive;
    }

private:
    static constexpr std::wstring_view gDelimiters = L"\U0010FFFE\U0010FFFF";
    QBase::SmartPtrI<PropertyBag> mProbe{CreatePropertyBag(L"\U0010FFFE", L"\U0010FFFF")};
};
struct BagLevel
{
    QBase::SmartPtrI<PropertyBag> mHeld;
    ViewIterator<Property> mNext;
    ViewIterator<Property> mEnd;
};
inline void AppendBag(std::wstring& oText, const PropertyBag& iBag)
{
    const SensitiveNames lSensitiveNames;
    std::vector<BagLevel> lLevels;
    oText += L'{';
    lLevels.push_back({nullptr, begin(iBag), end(iBag)});
    while (!lLevels.empty())
    {
        if (lLevels.back().mNext == lLevels.back().mEnd)
        {
            oText += L'}';
            lLevels.pop_back();
            continue;
        }
        const Property lProperty = *lLevels.back().mNext++;
        const QBase::ReturnWString lName = lProperty.GetName();
        oText += oText.back() == L'{' ? L"" : L" ";
        AppendQuoted(oText, lName);
        oText += L'=';
        if (lSensitiveNames.Has(lName))
        {
            oText += L"<hidden>";
        }
        else if (lProperty.IsEmbedded())
        {
            const QBase::SmartPtrI<PropertyBag> lNest = lProperty.GetBag();
            oText += L'{';
            lLevels.push_back({lNest, begin(*lNest), end(*lNest)});
        }
        else
        {
            AppendQuoted(oText, lProperty.GetValue());
        }
    }
}
inline void AppendBags(std::wstring& oText, const PropertyBags& iBags)
{
    oText += L'[';
    for (const BagEntry& lEntry : iBags)
    {
        oText += lEntry.GetIndex() == 0 ? L"" : L" ";
        AppendQuoted(oText, lEntry.GetName());
        oText += L'=';
        if (const QBase::SmartPtrI<PropertyBag> lBag = lEntry.GetBag())
        {
            AppendBag(oText, *lBag);
        }
        else
        {
            oText += L"null";
        }
    }
    oText += L']';
}
template <class Strings>
void AppendStrings(std::wstring& oText, const Strings& iStrings)
{
    oText += L'[';
    for (unsigned long lIndex = 0; lIndex < iStrings.GetCount(); ++lIndex)
    {
        oText += lIndex == 0 ? L"" : L" ";
        AppendQuoted(oText, iStrings.GetString(lIndex));
    }
    oText += L']';
}
inline void AppendWindow(std::wstring& oText, const DeliveryWindow& iWindow)
{
    constexpr unsigned int lHours = 24;
    std::wstring lRanges;
    for (unsigned int lFirst = 0; lFirst < lHours; ++lFirst)
    {
        unsigned int lEnd = lFirst;
        while (lEnd < lHours && iWindow.IsEnabled(lEnd))
        {
            ++lEnd;
        }
        if (lEnd > lFirst)
        {
            lRanges += L" " + std::to_wstring(lFirst) + (lEnd - lFirst > 1 ? L"-" + std::to_wstring(lEnd - 1) : L"");
            lFirst = lEnd;
        }
    }
    oText += L"enabled" + (lRanges.empty() ? L" never" : lRanges == L" 0-23" ? L" always" : lRanges);
}
template <class Append>
std::ostream& Write(std::ostream& oStream, const Append& iAppend)
{
    std::wstring lText;
    iAppend(lText);
    return oStream << QBase::WideCharToUTF8(lText.c_str(), true);
}
template <class T, class = void>
struct IsWritable : std::false_type
{
};
template <class T>
struct IsWritable<T, std::void_t<decltype(std::declval<std::ostream&>() << std::declval<const T&>())>> : std::true_type
{
};
} // namespace QTalBase::Output
inline std::ostream& operator<<(std::ostream& oStream, const _GUID& iGuid)
{
    return QTalBase::Output::Write(oStream, [&](std::wstring& oText) { oText += QBase::Guid2String(iGuid); });
}
namespace QDataType
{
inline std::ostream& operator<<(std::ostream& oStream, const DateTime& iInstant)
{
    return QTalBase::Output::Write(oStream, [&](std::wstring& oText) { oText += iInstant.ToWString(); });
}
inline std::ostream& operator<<(std::ostream& oStream, const StringCollection& iStrings)
{
    return QTalBase::Output::Write(oStream,
                                   [&](std::wstring& oText) { QTalBase::Output::AppendStrings(oText, iStrings); });
}
} // namespace QDataType
namespace QBase
{
inline std::ostream& operator<<(std::ostream& oStream, const ReturnWString& iText)
{
    using namespace QTalBase::Output;
    return Write(oStream, [&](std::wstring& oText) { AppendEscaped(oText, iText, gNoQuote); });
}
inline std::ostream& operator<<(std::ostream& oStream, const QTalBase::BufferedWString& iText)
{
    using namespace QTalBase::Output;
    const std::wstring_view lView(iText.c_str(), iText.size());
    return Write(oStream, [&](std::wstring& oText) { AppendEscaped(oText, lView, gNoQuote); });
}
inline std::ostream& operator<<(std::ostream& oStream, const QTalBase::PropertyBag& iBag)
{
    using namespace QTalBase::Output;
    return Write(oStream, [&](std::wstring& oText) { AppendBag(oText, iBag); });
}
inline std::ostream& operator<<(std::ostream& oStream, const QTalBase::PropertyBags& iBags)
{
    using namespace QTalBase::Output;
    return Write(oStream, [&](std::wstring& oText) { AppendBags(oText, iBags); });
}
inline std::ostream& operator<<(std::ostream& oStream, const QTalBase::SerializableStringCollection& iStrings)
{
    using namespace QTalBase::Output;
    return Write(oStream, [&](std::wstring& oText) { AppendStrings(oText, iStrings); });
}
inline std::ostream& operator<<(std::ostream& oStream, const QTalBase::DeliveryWindow& iWindow)
{
    using namespace QTalBase::Output;
    return Write(oStream, [&](std::wstring& oText) { AppendWindow(oText, iWindow); });
}
template <class T, std::enable_if_t<QTalBase::Output::IsWritable<T>::value, int> = 0>
std::ostream& operator<<(std::ostream& oStream, const SmartPtrI<T>& iPointer)
{
    return iPointer ? oStream << *iPointer : oStream << "null";
}
} // namespace QBase
#endif
