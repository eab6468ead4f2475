// The whole structure of a bag as one text, for comparisons that show at a glance where two bags differ:
//
//   '++++' '***' {'a'='1' 'n'={'k'='v'}}
//
// First the delimiters, then the plain properties with their values as stored, then the nested bags. A nested bag shows
// its delimiters only where they differ from those of the bag around it.

#ifndef TESTS_SUPPORT_DESCRIBE_H
#define TESTS_SUPPORT_DESCRIBE_H

#include "TalBase/PropertyBag.h"

#include "Tests/Support/Text.h"

#include <cwchar>
#include <string>
#include <vector>

namespace Support
{

using BagPtr = QBase::SmartPtrI<QTalBase::PropertyBag>;

// Visits a bag and its nests from the outside in, without recursion: texts can nest deeper than a stack. Enter gets a
// bag and the one around it, null for the outermost; Visit a bag and the index of each of its properties, before the
// nest there is entered.
template <class Enter, class Visit, class Leave>
void Walk(const QTalBase::PropertyBag& iBag, const Enter& iEnter, const Visit& iVisit, const Leave& iLeave)
{
    struct Level
    {
        BagPtr mHeld; // null for the bag that was asked about, whose reference count may be 0
        const QTalBase::PropertyBag* mBag;
        unsigned int mCount;
        unsigned int mNext;
    };
    std::vector<Level> lLevels;
    iEnter(iBag, static_cast<const QTalBase::PropertyBag*>(nullptr));
    lLevels.push_back({nullptr, &iBag, iBag.GetCount(), 0});
    while (!lLevels.empty())
    {
        Level& lLevel = lLevels.back();
        if (lLevel.mNext == lLevel.mCount)
        {
            lLevels.pop_back();
            iLeave();
            continue;
        }
        const unsigned int lIndex = lLevel.mNext++;
        iVisit(*lLevel.mBag, lIndex);
        if (lLevel.mBag->IsEmbedded(lIndex))
        {
            const BagPtr lNest = lLevel.mBag->GetValuePropertyBag(lIndex);
            iEnter(*lNest, lLevel.mBag);
            lLevels.push_back({lNest, lNest.get(), lNest->GetCount(), 0});
        }
    }
}

inline bool HaveSameDelimiters(const QTalBase::PropertyBag& iBag, const QTalBase::PropertyBag& iOther)
{
    return std::wcscmp(iBag.GetBeginDelimiter(), iOther.GetBeginDelimiter()) == 0 &&
           std::wcscmp(iBag.GetEndDelimiter(), iOther.GetEndDelimiter()) == 0;
}

inline std::wstring DescribeDelimiters(const QTalBase::PropertyBag& iBag)
{
    return Quoted(iBag.GetBeginDelimiter()) + L" " + Quoted(iBag.GetEndDelimiter()) + L" ";
}

inline std::wstring DescribeContent(const QTalBase::PropertyBag& iBag)
{
    std::wstring lText;
    Walk(
        iBag,
        [&lText](const QTalBase::PropertyBag& iEntered, const QTalBase::PropertyBag* ipAround) {
            const bool lShowsDelimiters = ipAround != nullptr && !HaveSameDelimiters(iEntered, *ipAround);
            lText += (lShowsDelimiters ? DescribeDelimiters(iEntered) : L"") + L"{";
        },
        [&lText](const QTalBase::PropertyBag& iVisited, unsigned int iIndex) {
            lText += (iIndex == 0 ? L"" : L" ") + Quoted(Text(iVisited.GetName(iIndex))) + L"=";
            if (!iVisited.IsEmbedded(iIndex))
            {
                lText += Quoted(Text(iVisited.GetValue(iIndex)));
            }
        },
        [&lText] { lText += L"}"; });
    return lText;
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
