// The plain answer to whether a bag's text reads back as the bag: write it, read it, compare everything.

#ifndef TESTS_SUPPORT_READBACK_H
#define TESTS_SUPPORT_READBACK_H

#include "Tests/Support/Describe.h"

#include <stdexcept>
#include <string>
#include <vector>

namespace Support
{

// Names, values as stored, nests and delimiters, without recursion, each with its length: no two bags have the same.
// Plain properties come first, as in a text. A delimiter that is given stands for the bags' own.
inline std::wstring DescribeWritten(const QTalBase::PropertyBag& iBag, const wchar_t* ipBegin, const wchar_t* ipEnd)
{
    std::wstring lText;
    const auto lAdd = [&](std::wstring_view iPart) {
        lText.append(std::to_wstring(iPart.size())).append(L":").append(iPart);
    };
    std::vector<BagPtr> lNests;
    const auto lAddBag = [&](const QTalBase::PropertyBag& iEach) {
        lAdd(ipBegin != nullptr ? ipBegin : iEach.GetBeginDelimiter());
        lAdd(ipEnd != nullptr ? ipEnd : iEach.GetEndDelimiter());
        for (const bool lIsNest : {false, true})
        {
            for (unsigned int lIndex = 0; lIndex < iEach.GetCount(); ++lIndex)
            {
                if (iEach.IsEmbedded(lIndex) == lIsNest)
                {
                    lAdd(iEach.GetName(lIndex));
                    lIsNest ? lNests.push_back(iEach.GetValuePropertyBag(lIndex)) : lAdd(iEach.GetValue(lIndex));
                }
            }
            lText += L"|";
        }
    };
    lAddBag(iBag);
    while (!lNests.empty())
    {
        const BagPtr lNest = lNests.back();
        lNests.pop_back();
        lAddBag(*lNest);
    }
    return lText;
}

inline bool ReadsBack(const QTalBase::PropertyBag& iBag, bool iWithMetadata, const wchar_t* ipBegin = nullptr,
                      const wchar_t* ipEnd = nullptr)
{
    try
    {
        const QBase::ReturnWString lText = iBag.GetString(iWithMetadata, ipBegin, ipEnd, true);
        const BagPtr lRead(iWithMetadata
                               ? QTalBase::CreatePropertyBag(lText.c_str())
                               : QTalBase::CreatePropertyBag(ipBegin != nullptr ? ipBegin : iBag.GetBeginDelimiter(),
                                                             ipEnd != nullptr ? ipEnd : iBag.GetEndDelimiter()));
        if (!iWithMetadata)
        {
            lRead->AddString(lText.c_str());
        }
        return DescribeWritten(*lRead, nullptr, nullptr) == DescribeWritten(iBag, ipBegin, ipEnd);
    }
    catch (const QTalBase::PropertyBagException&)
    {
        return false;
    }
    catch (const std::out_of_range&)
    {
        return false;
    }
}

} // namespace Support

#endif
