#ifndef TALBASE_ITERATION_H
#define TALBASE_ITERATION_H
#include "QBase/ReturnWString.h"
#include "QBase/SmartPtrI.h"
#include "TalBase/PropertyBag.h"
#include "TalBase/PropertyBags.h"
#include <cstddef>
#include <cwchar>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>
namespace QTalBase
{
template <class Container>
class Place
{
public:
    Place() noexcept = default;
    Place(const Container& iContainer, unsigned int iIndex) noexcept : mContainer(&iContainer), mIndex(iIndex) {}
    unsigned int GetIndex() const noexcept
    {
        return mIndex;
    }
    void Advance() noexcept
    {
        ++mIndex;
    }

protected:
    const Container* mContainer = nullptr;
    unsigned int mIndex = 0;
};
class Property : public Place<PropertyBag>
{
public:
    using Place::Place;
    QBase::ReturnWString GetName() const
    {
        return mContainer->GetName(mIndex);
    }
    bool IsEmbedded() const
    {
        return mContainer->IsEmbedded(mIndex);
    }
    QBase::ReturnWString GetValue() const
    {
        QBase::ReturnWString lValue = mContainer->GetValue(mIndex);
        if (std::wmemchr(lValue.c_str(), L'&', lValue.GetLength()) == nullptr || IsEmbedded() || !hIsEscaped())
        {
            return lValue;
        }
        return hUnescaped(lValue);
    }
    QBase::SmartPtrI<PropertyBag> GetBag() const
    {
        return mContainer->GetValuePropertyBag(mIndex);
    }

private:
    bool hIsEscaped() const
    {
        return std::wcscmp(mContainer->GetBeginDelimiter(), BEGIN) == 0 &&
               std::wcscmp(mContainer->GetEndDelimiter(), END) == 0;
    }
    static std::wstring hUnescaped(std::wstring_view iValue)
    {
        constexpr std::size_t lLength = 5;
        std::wstring lResult;
        lResult.reserve(iValue.size());
        for (std::size_t lIndex = 0; lIndex < iValue.size(); ++lIndex)
        {
            const bool lIsStar = iValue.compare(lIndex, lLength, L"&#42;") == 0;
            const bool lIsPlus = iValue.compare(lIndex, lLength, L"&#43;") == 0;
            lResult += lIsStar ? L'*' : lIsPlus ? L'+' : iValue[lIndex];
            lIndex += lIsStar || lIsPlus ? lLength - 1 : 0;
        }
        return lResult;
    }
};
class BagEntry : public Place<PropertyBags>
{
public:
    using Place::Place;
    const wchar_t* GetName() const
    {
        return mContainer->GetName(mIndex);
    }
    QBase::SmartPtrI<PropertyBag> GetBag() const
    {
        return mContainer->GetPropertyBag(mIndex);
    }
};
template <class Item>
class ViewIterator
{
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = Item;
    using difference_type = std::ptrdiff_t;
    using pointer = const Item*;
    using reference = const Item&;
    ViewIterator() noexcept = default;
    explicit ViewIterator(const Item& iItem) noexcept : mItem(iItem) {}
    const Item& operator*() const noexcept
    {
        return mItem;
    }
    const Item* operator->() const noexcept
    {
        return &mItem;
    }
    ViewIterator& operator++() noexcept
    {
        mItem.Advance();
        return *this;
    }
    ViewIterator operator++(int) noexcept
    {
        ViewIterator lBefore(*this);
        mItem.Advance();
        return lBefore;
    }
    friend bool operator==(const ViewIterator& iLeft, const ViewIterator& iRight) noexcept
    {
        return iLeft->GetIndex() == iRight->GetIndex();
    }
    friend bool operator!=(const ViewIterator& iLeft, const ViewIterator& iRight) noexcept
    {
        return !(iLeft == iRight);
    }

private:
    Item mItem;
};
inline ViewIterator<Property> begin(const PropertyBag& iBag) noexcept
{
    return ViewIterator<Property>(Property(iBag, 0));
}
inline ViewIterator<Property> end(const PropertyBag& iBag)
{
    return ViewIterator<Property>(Property(iBag, iBag.GetCount()));
}
inline ViewIterator<BagEntry> begin(const PropertyBags& iBags) noexcept
{
    return ViewIterator<BagEntry>(BagEntry(iBags, 0));
}
inline ViewIterator<BagEntry> end(const PropertyBags& iBags)
{
    return ViewIterator<BagEntry>(BagEntry(iBags, iBags.GetCount()));
}
inline ViewIterator<Property> begin(PropertyBag& iBag) noexcept
{
    return begin(static_cast<const PropertyBag&>(iBag));
}
inline ViewIterator<Property> end(PropertyBag& iBag)
{
    return end(static_cast<const PropertyBag&>(iBag));
}
inline ViewIterator<BagEntry> begin(PropertyBags& iBags) noexcept
{
    return begin(static_cast<const PropertyBags&>(iBags));
}
inline ViewIterator<BagEntry> end(PropertyBags& iBags)
{
    return end(static_cast<const PropertyBags&>(iBags));
}
template <class Container, class Item>
class ViewRange
{
public:
    explicit ViewRange(QBase::SmartPtrI<const Container> iContainer) noexcept : mContainer(std::move(iContainer)) {}
    ViewIterator<Item> begin() const noexcept
    {
        return mContainer ? QTalBase::begin(*mContainer) : ViewIterator<Item>();
    }
    ViewIterator<Item> end() const
    {
        return mContainer ? QTalBase::end(*mContainer) : ViewIterator<Item>();
    }

private:
    QBase::SmartPtrI<const Container> mContainer;
};
inline ViewRange<PropertyBag, Property> Each(QBase::SmartPtrI<const PropertyBag> iBag) noexcept
{
    return ViewRange<PropertyBag, Property>(std::move(iBag));
}
inline ViewRange<PropertyBags, BagEntry> Each(QBase::SmartPtrI<const PropertyBags> iBags) noexcept
{
    return ViewRange<PropertyBags, BagEntry>(std::move(iBags));
}
} // namespace QTalBase
#endif
