// Loops over the properties of a bag and over the entries of a collection of bags:
//
//   for (const QTalBase::Property& lProperty : *lBag)
//   for (const QTalBase::BagEntry& lEntry : *lBags)
//   for (const QTalBase::Property& lProperty : QTalBase::Each(lBags->GetPropertyBag(0)))
//
// Everything here is inline and stands on the public operations of the interfaces, so it works with every class that
// implements them, and a program that includes it is built against nothing new.
//
// What a loop hands out is a place in the bag: it copies nothing, reads what it is asked for, and throws what the
// operation of the bag throws. A place is valid while the bag lives and its properties stay as they are: a loop may
// change what a nested bag holds, but not add, remove or move properties of the bag it runs over. Dereferencing a
// pointer that nobody else holds, `*lBags->GetPropertyBag(0)`, leaves the loop without a bag; Each holds it.
//
// Several threads may run loops over one bag at the same time, while nobody changes the bag.

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

// A position in a container that counts with unsigned int.
template <class Container>
class Place
{
public:
    Place() noexcept = default;
    Place(const Container& iContainer, unsigned int iIndex) noexcept : mContainer(&iContainer), mIndex(iIndex) {}

    // Returns the position, as the operations of the container take it.
    unsigned int GetIndex() const noexcept
    {
        return mIndex;
    }

    // Moves to the next position, which may lie behind the last one.
    void Advance() noexcept
    {
        ++mIndex;
    }

protected:
    const Container* mContainer = nullptr;
    unsigned int mIndex = 0;
};

// A property of a bag: a name with a plain value or a nested bag.
class Property : public Place<PropertyBag>
{
public:
    using Place::Place;

    // Return what PropertyBag::GetName and PropertyBag::IsEmbedded return.
    QBase::ReturnWString GetName() const
    {
        return mContainer->GetName(mIndex);
    }

    bool IsEmbedded() const
    {
        return mContainer->IsEmbedded(mIndex);
    }

    // Returns the value as PropertyBag::GetProperty does, and not as it is stored: a plain value unescaped while the
    // bag's delimiters equal the texts at BEGIN and END, a nested bag as its text form. Looks no name up.
    QBase::ReturnWString GetValue() const
    {
        QBase::ReturnWString lValue = mContainer->GetValue(mIndex);
        if (std::wmemchr(lValue.c_str(), L'&', lValue.GetLength()) == nullptr || IsEmbedded() || !hIsEscaped())
        {
            return lValue;
        }
        return hUnescaped(lValue);
    }

    // Returns the nested bag itself, with a reference for the caller, as PropertyBag::GetValuePropertyBag does.
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

// An entry of a collection: a name with a bag, or with none.
class BagEntry : public Place<PropertyBags>
{
public:
    using Place::Place;

    // Returns what PropertyBags::GetName returns; valid until the collection changes.
    const wchar_t* GetName() const
    {
        return mContainer->GetName(mIndex);
    }

    // Returns a clone of the bag, or null, as PropertyBags::GetPropertyBag does: changing its plain properties changes
    // nothing in the collection.
    QBase::SmartPtrI<PropertyBag> GetBag() const
    {
        return mContainer->GetPropertyBag(mIndex);
    }
};

// An input iterator, for loops and for the algorithms of the standard library. What it refers to lives in the iterator:
// who wants to keep a property copies it.
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

    // Only iterators of one container are compared.
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

// What a loop over a bag or a collection calls. Both positions are those of the moment of the call.
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

// The same without const, which the ranges of C++20 ask for.
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

// A container that is held while the loop runs.
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

// Return what a loop may run over: the properties of a bag, the entries of a collection, with a reference that lasts as
// long as the loop. Null is as good as empty, so what GetPropertyBagByName did not find can be handed on.
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
