// What a bag consists of. Everything that reads, writes, compares, merges or copies bags works on this; the class that
// clients see, PropertyBagImpl, has one state and dispatches, and nothing here knows it.
//
// A nest is a whole bag, which clients can get hold of: its state lies in an object of its own, is counted, and knows
// that object and the nest's name. Object, name, and what the nest is made with are one piece of memory; a nest in it
// has its own, so that who keeps a nest keeps nothing else. Only the implementation class is known nowhere but where
// StateOf and MakeNest are.
//
// Invariant: no plain value is empty, and a name occurs once, unless mMayRepeatNames.

#ifndef TALBASE_PRIVATESOURCE_BAGSTATE_H
#define TALBASE_PRIVATESOURCE_BAGSTATE_H

#include "QBase/Atomic.h"
#include "QBase/ReturnWString.h"
#include "TalBase/PrivateSource/Delimiters.h"
#include "TalBase/PrivateSource/NestContent.h"
#include "TalBase/PrivateSource/SharedWString.h"
#include "TalBase/PrivateSource/ValueContent.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace QTalBase
{

class PropertyBag;

inline QBase::ReturnWString AsReturned(std::wstring_view iText)
{
    return {iText.data(), iText.size()};
}

// What a bag is made with room for.
struct BagRoom
{
    std::size_t mPlainCount = 0;
    std::size_t mPlainLength = 0; // of all names and values together
    std::size_t mNestCount = 0;
};

struct BagState
{
    BagState(PropertyBag& iObject, const SharedWString& iBegin, const SharedWString& iEnd, bool iIsPairChecked) noexcept
        : mBegin(iBegin), mEnd(iEnd), mRefCount(0), mIsPairChecked(iIsPairChecked), mObject(&iObject)
    {
    }

    // Nests that die with their bag do so one after the other: a million levels take no stack and no memory.
    ~BagState();

    BagState(const BagState&) = delete;
    BagState& operator=(const BagState&) = delete;

    void AddRef() const noexcept
    {
        QSynch_AtomicIncrement(mRefCount);
    }

    // Returns whether that was the last reference, so that the object has to go.
    bool DropRef() const noexcept
    {
        return QSynch_AtomicDecrement(mRefCount) == 0;
    }

    // For a nest.
    void Release() const noexcept
    {
        if (DropRef())
        {
            hDeleteObject();
        }
    }

    DelimiterPair GetPair() const noexcept
    {
        return {mBegin.View(), mEnd.View()};
    }

    bool HasPair(const DelimiterPair& iPair) const noexcept
    {
        return mBegin == iPair.mBegin && mEnd == iPair.mEnd;
    }

    std::size_t GetCount() const noexcept
    {
        return mValues.GetCount() + mNests.GetCount();
    }

    // For a copy.
    BagRoom GetRoom() const noexcept
    {
        return {mValues.GetCount(), mValues.GetTextLength(), mNests.GetCount()};
    }

    bool IsEmpty() const noexcept
    {
        return mValues.GetCount() == 0 && mNests.IsEmpty();
    }

    // Takes a pair that is known to be allowed.
    void SetPair(const SharedWString& iBegin, const SharedWString& iEnd) noexcept;

    // Throw for a pair that no bag may have; accepting one spares the next look at it.
    void CheckPair() const;
    void AcceptPair();

    // The plain value at an index, as reading by name gives it.
    std::wstring ReadValue(std::size_t iIndex) const;

    // A clone of a derived class's bag may repeat names, and mostly does not: looks whether it does. Throws
    // std::bad_alloc.
    void FindOutWhetherNamesRepeat();

    // Whether a bag is one of this one's nests, at any depth. Throws std::bad_alloc.
    bool HasInside(const BagState& iBag) const;

    SharedWString mBegin;
    SharedWString mEnd;
    ValueContent mValues;
    NestContent mNests;
    mutable QSynch::AtomicLong mRefCount;
    bool mIsPairChecked;          // false only says that nobody has looked at the pair
    bool mMayRepeatNames = false; // only what a derived class overrides brings that about, and clones carry it on
    PropertyBag* const mObject;
    std::wstring_view mName; // of a nest; it lies behind the object

private:
    void hDeleteObject() const noexcept;
    void hLetNestsGo(BagState*& oDying) noexcept;

    BagState* mNextDying = nullptr; // links the nests that die with their bag
};

// The state of a bag whose class is exactly PropertyBagImpl, so that no overrider can see what is called; else null.
const BagState* StateOf(const PropertyBag& iBag) noexcept;

// Makes a nested bag, which is empty, with a pair that is allowed. The room lies with the object where it is small
// enough to stay until the bag goes; more is set aside when it is needed. Throws std::bad_alloc.
NestPtr MakeNest(std::wstring_view iName, const SharedWString& iBegin, const SharedWString& iEnd, const BagRoom& iRoom);

// A nest that nobody else holds, as a factory hands out a bag: with reference count 0.
PropertyBag* AsNew(NestPtr&& iBag) noexcept;

} // namespace QTalBase

#endif
