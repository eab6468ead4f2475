// The whole structure of a bag as one text, for comparisons that show at a glance where two bags differ:
//
//   '++++' '***' {'a'='1' 'n'={'k'='v'}}
//
// First the delimiters, then the plain properties with their values as stored, then the nested bags. A nested bag shows
// its delimiters only where they differ from those of the bag around it.

#ifndef TESTS_SUPPORT_DESCRIBE_H
#define TESTS_SUPPORT_DESCRIBE_H

#include "TalBase/PropertyBag.h"

#include "Tests/Support/Expect.h"

#include <string>

namespace Support
{

using BagPtr = QBase::SmartPtrI<QTalBase::PropertyBag>;

inline std::wstring Quoted(const std::wstring& iText)
{
    return L"'" + iText + L"'";
}

inline std::wstring DescribeDelimiters(const QTalBase::PropertyBag& iBag)
{
    return Quoted(iBag.GetBeginDelimiter()) + L" " + Quoted(iBag.GetEndDelimiter()) + L" ";
}

inline std::wstring DescribeContent(const QTalBase::PropertyBag& iBag)
{
    std::wstring lResult = L"{";
    for (unsigned int lIndex = 0; lIndex < iBag.GetCount(); ++lIndex)
    {
        lResult += (lIndex == 0 ? L"" : L" ") + Quoted(Text(iBag.GetName(lIndex))) + L"=";
        if (!iBag.IsEmbedded(lIndex))
        {
            lResult += Quoted(Text(iBag.GetValue(lIndex)));
            continue;
        }
        const BagPtr lNested = iBag.GetValuePropertyBag(lIndex);
        if (DescribeDelimiters(*lNested) != DescribeDelimiters(iBag))
        {
            lResult += DescribeDelimiters(*lNested);
        }
        lResult += DescribeContent(*lNested);
    }
    return lResult + L"}";
}

inline std::wstring Describe(const QTalBase::PropertyBag& iBag)
{
    return DescribeDelimiters(iBag) + DescribeContent(iBag);
}

inline std::wstring Describe(const BagPtr& iBag)
{
    return Describe(*iBag);
}

} // namespace Support

#endif
