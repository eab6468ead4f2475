// The nested bags of a bag: an ordered sequence of names and nests, the twin of ValueContent.
//
// A nest is known by its state (see BagState.h). The content has one reference on each, and so may others: clones
// share nests, and clients hold them.

#ifndef TALBASE_PRIVATESOURCE_NESTCONTENT_H
#define TALBASE_PRIVATESOURCE_NESTCONTENT_H

#include "QBase/ReturnWString.h"
#include "QBase/SmartPtrI.h"
#include "TalBase/PrivateSource/TextPrimitives.h"

#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

namespace QTalBase
{

struct BagState;

using NestPtr = QBase::SmartPtrI<BagState>;

inline QBase::ReturnWString AsReturned(std::wstring_view iText)
{
    return {iText.data(), iText.size()};
}

class NestContent
{
public:
    std::size_t GetCount() const noexcept
    {
        return mEntries.size();
    }

    bool IsEmpty() const noexcept
    {
        return mEntries.empty();
    }

    const QBase::ReturnWString& GetName(std::size_t iIndex) const noexcept
    {
        return mEntries[iIndex].mName;
    }

    // A nest is not a part of the content, which only has a reference on it: whoever may look at the content may change
    // the nest.
    BagState& GetNest(std::size_t iIndex) const noexcept
    {
        return *mEntries[iIndex].mNest;
    }

    // The index of the first entry of that name, or the count.
    std::size_t Find(std::wstring_view iName) const noexcept
    {
        const Entry* lEntries = mEntries.data();
        const std::size_t lCount = mEntries.size();
        std::size_t lIndex = 0;
        while (lIndex < lCount && (lEntries[lIndex].mName.GetLength() != iName.size() ||
                                   !AreEqualTexts(lEntries[lIndex].mName.c_str(), iName.data(), iName.size())))
        {
            ++lIndex;
        }
        return lIndex;
    }

    // Makes room for so many entries altogether. Throws std::bad_alloc, nothing changed.
    void Reserve(std::size_t iCount);

    // Appends an entry. Throws std::bad_alloc, nothing changed.
    void Append(std::wstring_view iName, NestPtr&& iNest);
    void Remove(std::size_t iIndex) noexcept;
    void Swap(std::size_t iLeft, std::size_t iRight) noexcept;

    // Lets a nest go without moving the entries behind it; the entry keeps its name, and has no nest until Compact. For
    // operations that replace many nests and look none up by position meanwhile.
    void Kill(std::size_t iIndex) noexcept;
    bool IsKilled(std::size_t iIndex) const noexcept
    {
        return !mEntries[iIndex].mNest;
    }

    // Drops the killed entries.
    void Compact() noexcept;

    // Kills an entry without letting its nest go: the reference is the caller's. Returns null for a killed entry.
    BagState* Detach(std::size_t iIndex) noexcept
    {
        return mEntries[iIndex].mNest.Detach();
    }

private:
    struct Entry
    {
        Entry(std::wstring_view iName, NestPtr&& iNest) : mName(iName.data(), iName.size()), mNest(std::move(iNest)) {}

        QBase::ReturnWString mName; // a short one lies in the entry itself
        NestPtr mNest;
    };

    std::vector<Entry> mEntries;
};

} // namespace QTalBase

#endif
