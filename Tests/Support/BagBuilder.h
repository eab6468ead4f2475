// Builds the bags that tests start from, in one expression:
//
//   const BagPtr lBag = BagBuilder().Set(L"a", L"1").Nest(L"n", BagBuilder().Set(L"k", L"v"));
//
// Unlike EmbedProperty, Nest keeps empty bags at every depth, because it copies entry by entry instead of through text.

#ifndef TESTS_SUPPORT_BAGBUILDER_H
#define TESTS_SUPPORT_BAGBUILDER_H

#include "TalBase/PropertyBag.h"

#include "Tests/Support/Describe.h"

#include <string>

namespace Support
{

inline const wchar_t* const gHeader = L"EndDelimiter***BeginDelimiter++++***";

inline BagPtr NewBag()
{
    return QTalBase::CreatePropertyBag();
}

inline BagPtr NewBag(const wchar_t* ipBegin, const wchar_t* ipEnd)
{
    return QTalBase::CreatePropertyBag(ipBegin, ipEnd);
}

inline BagPtr ReadBag(const std::wstring& iText)
{
    return QTalBase::CreatePropertyBag(iText.c_str());
}

// Returns the text form with header, sensitive properties included.
inline std::wstring FullText(const QTalBase::PropertyBag& iBag)
{
    return Text(iBag.GetString(true, nullptr, nullptr, true));
}

// Returns the text form without header, sensitive properties included.
inline std::wstring ContentText(const QTalBase::PropertyBag& iBag)
{
    return Text(iBag.GetString(false, nullptr, nullptr, true));
}

class BagBuilder
{
public:
    // The delimiters may not contain 'x' or '1', which Nest uses for a moment.
    explicit BagBuilder(const wchar_t* ipBegin = L"++++", const wchar_t* ipEnd = L"***") : mBag(NewBag(ipBegin, ipEnd))
    {
    }

    BagBuilder& Set(const wchar_t* ipName, const wchar_t* ipValue)
    {
        mBag->SetProperty(ipName, ipValue, false);
        return *this;
    }

    BagBuilder& Nest(const wchar_t* ipName, const BagBuilder& iNested)
    {
        hNest(*mBag, ipName, *iNested.mBag);
        return *this;
    }

    operator BagPtr() const // implicit, so that an expression of a builder is a bag
    {
        return mBag;
    }

    const QTalBase::PropertyBag* get() const
    {
        return mBag.get();
    }

private:
    static void hNest(QTalBase::PropertyBag& oBag, const wchar_t* ipName, const QTalBase::PropertyBag& iNested)
    {
        const std::wstring lContent = std::wstring(L"x") + oBag.GetBeginDelimiter() + L"1" + oBag.GetEndDelimiter();
        oBag.SetProperty(ipName, lContent.c_str(), true);
        const BagPtr lCopy = oBag.GetPropertyBag(ipName);
        lCopy->RemoveProperty(L"x");
        for (unsigned int lIndex = 0; lIndex < iNested.GetCount(); ++lIndex)
        {
            const QBase::ReturnWString lName = iNested.GetName(lIndex);
            if (iNested.IsEmbedded(lIndex))
            {
                hNest(*lCopy, lName.c_str(), *iNested.GetValuePropertyBag(lIndex));
            }
            else
            {
                lCopy->SetProperty(lName.c_str(), iNested.GetValue(lIndex).c_str(), false);
            }
        }
    }

    BagPtr mBag;
};

// A bag with two plain properties and two nested bags, positions 0 to 3.
inline BagPtr MixedBag()
{
    return BagBuilder()
        .Set(L"a", L"1")
        .Set(L"b", L"x*y")
        .Nest(L"m", BagBuilder().Set(L"k", L"v"))
        .Nest(L"n", BagBuilder().Set(L"k", L"w"));
}

} // namespace Support

#endif
