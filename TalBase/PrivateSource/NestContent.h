// The nested bags of a bag: an ordered sequence of nests, the twin of ValueContent.
//
// A nest is known by its state, and knows its own name (see BagState.h): it never gets another one, as what is handed
// on under another name is a copy. The content has one reference on each nest, and so may others: clones share nests,
// and clients hold them.
//
// The first memory may be lent, as that of a ValueContent.

#ifndef TALBASE_PRIVATESOURCE_NESTCONTENT_H
#define TALBASE_PRIVATESOURCE_NESTCONTENT_H

#include "QBase/SmartPtrI.h"

#include <cstddef>
#include <string_view>
#include <utility>

namespace QTalBase
{

struct BagState;

using NestPtr = QBase::SmartPtrI<BagState>;

class NestContent
{
public:
    NestContent() noexcept = default;
    NestContent(NestContent&& iOther) noexcept;
    NestContent& operator=(NestContent iOther) noexcept;
    ~NestContent();

    // As those of ValueContent.
    void Lend(void* ipRoom, std::size_t iCount) noexcept;
    static constexpr std::size_t SizeOf(std::size_t iCount) noexcept
    {
        return iCount * sizeof(void*); // a pointer to each nest
    }

    // Fills an empty content with the nests of another one, which both hold then. Throws std::bad_alloc, nothing
    // changed.
    void Share(const NestContent& iOther);

    std::size_t GetCount() const noexcept
    {
        return mCount;
    }

    bool IsEmpty() const noexcept
    {
        return mCount == 0;
    }

    // A view that is valid while the nest lives.
    std::wstring_view GetName(std::size_t iIndex) const noexcept;

    // A nest is not a part of the content, which only has a reference on it: whoever may look at the content may change
    // the nest.
    BagState& GetNest(std::size_t iIndex) const noexcept
    {
        return *mNests[iIndex];
    }

    // The index of the first nest of that name, or the count.
    std::size_t Find(std::wstring_view iName) const noexcept;

    // Makes room for so many nests altogether. Throws std::bad_alloc or std::length_error, nothing changed.
    void Reserve(std::size_t iCount);

    // Throws as Reserve does, nothing changed.
    void Append(NestPtr&& iNest);
    void Remove(std::size_t iIndex) noexcept;
    void Swap(std::size_t iLeft, std::size_t iRight) noexcept
    {
        std::swap(mNests[iLeft], mNests[iRight]);
    }

    // Lets a nest go without moving those behind it; its place stays, without a nest, until Compact. For operations
    // that replace many nests and look none up by position meanwhile.
    void Kill(std::size_t iIndex) noexcept;
    bool IsKilled(std::size_t iIndex) const noexcept
    {
        return mNests[iIndex] == nullptr;
    }

    // Drops the places without a nest.
    void Compact() noexcept;

    // Takes a nest out of its place without letting it go: the reference is the caller's. Null for a killed one.
    BagState* Detach(std::size_t iIndex) noexcept
    {
        return std::exchange(mNests[iIndex], nullptr);
    }

private:
    BagState** mNests = nullptr; // with one reference each
    std::size_t mCount = 0;
    std::size_t mCapacity = 0;
    bool mIsLent = false; // the memory is somebody else's
};

} // namespace QTalBase

#endif
