// The plain properties of a bag: an ordered sequence of names and values whose characters lie together in one piece of
// memory, so that a bag of twenty properties costs one allocation and not forty.
//
// Invariants: in the memory are first the entries and then the characters; an entry's value lies directly behind its
// name. Characters of removed entries stay as gaps until the memory is laid out anew, which happens when it is full or
// far too large: a bag that lives long and changes often does not grow. The first memory may be lent; the content never
// gives it back, and its owner lets it go.

#ifndef TALBASE_PRIVATESOURCE_VALUECONTENT_H
#define TALBASE_PRIVATESOURCE_VALUECONTENT_H

#include "TalBase/PrivateSource/TextPrimitives.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace QTalBase
{

class ValueContent
{
public:
    class Filler;

    ValueContent() noexcept = default;
    ValueContent(const ValueContent& iOther); // laid out without gaps
    ValueContent(ValueContent&& iOther) noexcept;
    ValueContent& operator=(ValueContent iOther) noexcept;
    ~ValueContent();

    // Gives a fresh content room for so many entries and characters that is somebody else's, who outlives the content.
    // It needs SizeOf(iCount, iLength) bytes, aligned as a pointer is.
    void Lend(void* ipRoom, std::size_t iCount, std::size_t iLength) noexcept;
    static constexpr std::size_t SizeOf(std::size_t iCount, std::size_t iLength) noexcept
    {
        return iCount * sizeof(Entry) + iLength * sizeof(wchar_t);
    }

    // Fills an empty content with what another one has, laid out without gaps. Throws as Reserve does, nothing changed.
    void CopyFrom(const ValueContent& iOther);

    std::size_t GetCount() const noexcept
    {
        return mCount;
    }

    std::wstring_view GetName(std::size_t iIndex) const noexcept
    {
        const Entry& lEntry = mEntries[iIndex];
        return {mText + lEntry.mOffset, lEntry.mNameLength};
    }

    std::wstring_view GetValue(std::size_t iIndex) const noexcept
    {
        const Entry& lEntry = mEntries[iIndex];
        return {mText + lEntry.mOffset + lEntry.mNameLength, lEntry.mValueLength};
    }

    // The number of characters of all names and values together.
    std::size_t GetTextLength() const noexcept
    {
        return mUsedLength;
    }

    // The index of the first entry of that name, or the count.
    std::size_t Find(std::wstring_view iName) const noexcept
    {
        std::size_t lIndex = 0;
        while (lIndex < mCount && (mEntries[lIndex].mNameLength != iName.size() ||
                                   !AreEqualTexts(mText + mEntries[lIndex].mOffset, iName.data(), iName.size())))
        {
            ++lIndex;
        }
        return lIndex;
    }

    // Makes room for so many entries and characters more. Throws std::bad_alloc or std::length_error, nothing changed.
    void Reserve(std::size_t iCount, std::size_t iTextLength);

    // Whether the entry is the same as one of another content: compares name and value in one piece.
    bool IsEntryEqual(std::size_t iIndex, const ValueContent& iOther, std::size_t iOtherIndex) const noexcept
    {
        const Entry& lLeft = mEntries[iIndex];
        const Entry& lRight = iOther.mEntries[iOtherIndex];
        return lLeft.mNameLength == lRight.mNameLength && lLeft.mValueLength == lRight.mValueLength &&
               AreEqualTexts(mText + lLeft.mOffset, iOther.mText + lRight.mOffset,
                             lLeft.mNameLength + lLeft.mValueLength);
    }

    // Whether the contents are the same, entry for entry. False also where they are but lie in the memory differently.
    bool IsSameThroughout(const ValueContent& iOther) const noexcept;

    // Whether a character occurs in a name or a value, or may occur: characters of removed entries count.
    bool MayContain(wchar_t iCharacter) const noexcept
    {
        return mTextLength != 0 && std::wmemchr(mText, iCharacter, mTextLength) != nullptr;
    }

    // Makes room for one entry more, and gives back memory that a much larger content once needed. Throws as Reserve.
    void ReserveForOne(std::size_t iTextLength);

    // Appends an entry. Its texts may not lie in this content's own memory. Throws as Reserve does, nothing changed.
    void Append(std::wstring_view iName, std::wstring_view iValue);
    void Remove(std::size_t iIndex) noexcept;
    void Swap(std::size_t iLeft, std::size_t iRight) noexcept;

    // Marks an entry as removed without moving those behind it; it has no name and no value until Compact. For
    // operations that replace many properties and look none up by position meanwhile.
    void Kill(std::size_t iIndex) noexcept;
    bool IsKilled(std::size_t iIndex) const noexcept
    {
        return mEntries[iIndex].mNameLength == gKilled;
    }

    // Drops the killed entries.
    void Compact() noexcept;

private:
    static constexpr std::size_t gKilled = static_cast<std::size_t>(-1);

    struct Entry
    {
        std::size_t mOffset;
        std::size_t mNameLength;
        std::size_t mValueLength;
    };

    void hLayOut(std::size_t iCapacity, std::size_t iTextCapacity);

    Entry* mEntries = nullptr;
    wchar_t* mText = nullptr;
    std::size_t mCount = 0;
    std::size_t mCapacity = 0;
    std::size_t mTextLength = 0; // with the gaps
    std::size_t mTextCapacity = 0;
    std::size_t mUsedLength = 0; // without them
    bool mIsLent = false;        // the memory is somebody else's
};

// Appends many entries from one text to a content, which nobody else may use meanwhile. Characters are copied in whole
// steps where source and target leave room for them, as lengths that differ from property to property would cost more
// in wrong guesses of the processor than the characters that are copied for nothing.
class ValueContent::Filler
{
public:
    // iCount, iLength: the entries and characters that will be appended, no more and no fewer. ipSourceStop: where the
    // text ends that names and values are views of. Throws as Reserve does.
    Filler(ValueContent& oContent, std::size_t iCount, std::size_t iLength, const wchar_t* ipSourceStop)
        : mContent(hReserved(oContent, iCount, iLength)),
          mSourceStop(ipSourceStop),
          mEntry(oContent.mEntries + oContent.mCount),
          mTarget(oContent.mText + oContent.mTextLength),
          mTargetStop(mTarget + iLength)
    {
        oContent.mCount += iCount;
        oContent.mTextLength += iLength;
        oContent.mUsedLength += iLength;
    }

    Filler(const Filler&) = delete;
    Filler& operator=(const Filler&) = delete;

    // The value lies behind the name in the text.
    void Append(std::wstring_view iName, std::wstring_view iValue) noexcept
    {
        if (iName.size() <= gStep && iValue.size() <= 2 * gStep && mSourceStop - iValue.data() >= 2 * gStep &&
            mTargetStop - mTarget >= 3 * gStep)
        {
            *mEntry++ = Entry{static_cast<std::size_t>(mTarget - mContent.mText), iName.size(), iValue.size()};
            std::memcpy(mTarget, iName.data(), gStep * sizeof(wchar_t));
            mTarget += iName.size();
            std::memcpy(mTarget, iValue.data(), gStep * sizeof(wchar_t));
            if (iValue.size() > gStep)
            {
                std::memcpy(mTarget + gStep, iValue.data() + gStep, gStep * sizeof(wchar_t));
            }
            mTarget += iValue.size();
            return;
        }
        CopyText(iValue, AppendName(iName, iValue.size()));
    }

    // Returns where the value's characters go, for the caller to fill.
    wchar_t* AppendName(std::wstring_view iName, std::size_t iValueLength) noexcept
    {
        *mEntry++ = Entry{static_cast<std::size_t>(mTarget - mContent.mText), iName.size(), iValueLength};
        wchar_t* lValue = CopyText(iName, mTarget);
        mTarget = lValue + iValueLength;
        return lValue;
    }

private:
    static constexpr std::ptrdiff_t gStep = 16;

    static ValueContent& hReserved(ValueContent& oContent, std::size_t iCount, std::size_t iLength)
    {
        oContent.Reserve(iCount, iLength);
        return oContent;
    }

    ValueContent& mContent;
    const wchar_t* mSourceStop;
    Entry* mEntry;
    wchar_t* mTarget;
    wchar_t* mTargetStop;
};

} // namespace QTalBase

#endif
