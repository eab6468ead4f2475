#include "TalBase/PrivateSource/ValueContent.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <new>
#include <stdexcept>
#include <type_traits>
#include <utility>

namespace QTalBase
{

namespace
{

const std::size_t gLargestCount = std::numeric_limits<std::uint32_t>::max() - 1; // positions have 32 bits
const std::size_t gToleratedCharacters = 256;

} // namespace

ValueContent::ValueContent(const ValueContent& iOther)
{
    CopyFrom(iOther);
}

ValueContent::ValueContent(ValueContent&& iOther) noexcept
    : mEntries(std::exchange(iOther.mEntries, nullptr)),
      mText(std::exchange(iOther.mText, nullptr)),
      mCount(std::exchange(iOther.mCount, 0)),
      mCapacity(std::exchange(iOther.mCapacity, 0)),
      mTextLength(std::exchange(iOther.mTextLength, 0)),
      mTextCapacity(std::exchange(iOther.mTextCapacity, 0)),
      mUsedLength(std::exchange(iOther.mUsedLength, 0)),
      mIsLent(std::exchange(iOther.mIsLent, false))
{
}

ValueContent& ValueContent::operator=(ValueContent iOther) noexcept
{
    std::swap(mEntries, iOther.mEntries);
    std::swap(mText, iOther.mText);
    std::swap(mCount, iOther.mCount);
    std::swap(mCapacity, iOther.mCapacity);
    std::swap(mTextLength, iOther.mTextLength);
    std::swap(mTextCapacity, iOther.mTextCapacity);
    std::swap(mUsedLength, iOther.mUsedLength);
    std::swap(mIsLent, iOther.mIsLent);
    return *this;
}

ValueContent::~ValueContent()
{
    if (!mIsLent)
    {
        ::operator delete(mEntries);
    }
}

void ValueContent::Lend(void* ipRoom, std::size_t iCount, std::size_t iLength) noexcept
{
    mEntries = static_cast<Entry*>(ipRoom);
    mText = reinterpret_cast<wchar_t*>(mEntries + iCount);
    mCapacity = iCount;
    mTextCapacity = iLength;
    mIsLent = true;
}

// A copy takes what is used, so what was removed or replaced takes no memory in it. There are no killed entries: nobody
// looks at a bag while a merger lives.
void ValueContent::CopyFrom(const ValueContent& iOther)
{
    Reserve(iOther.mCount, iOther.mUsedLength);
    if (iOther.mTextLength == iOther.mUsedLength) // without gaps
    {
        std::copy(iOther.mEntries, iOther.mEntries + iOther.mCount, mEntries);
        std::copy(iOther.mText, iOther.mText + iOther.mTextLength, mText);
        mTextLength = iOther.mTextLength;
    }
    else
    {
        for (std::size_t lIndex = 0; lIndex < iOther.mCount; ++lIndex)
        {
            const Entry& lEntry = iOther.mEntries[lIndex];
            const std::size_t lLength = lEntry.mNameLength + lEntry.mValueLength;
            mEntries[lIndex] = Entry{mTextLength, lEntry.mNameLength, lEntry.mValueLength};
            CopyText({iOther.mText + lEntry.mOffset, lLength}, mText + mTextLength);
            mTextLength += lLength;
        }
    }
    mCount = iOther.mCount;
    mUsedLength = mTextLength;
}

// Entries say where each text begins and ends, so equal entries over equal characters are equal properties. Bags that
// were read from one text are the same in both; others may be equal all the same.
bool ValueContent::IsSameThroughout(const ValueContent& iOther) const noexcept
{
    static_assert(std::has_unique_object_representations_v<Entry>);
    return mCount == iOther.mCount && mTextLength == iOther.mTextLength &&
           (mCount == 0 || (std::memcmp(mEntries, iOther.mEntries, mCount * sizeof(Entry)) == 0 &&
                            std::wmemcmp(mText, iOther.mText, mTextLength) == 0));
}

void ValueContent::Reserve(std::size_t iCount, std::size_t iTextLength)
{
    if (mCapacity - mCount >= iCount && mTextCapacity - mTextLength >= iTextLength)
    {
        return;
    }
    if (iCount > gLargestCount - mCount)
    {
        throw std::length_error("QTalBase::PropertyBag: too many properties");
    }
    const std::size_t lCount = mCount + iCount;
    const std::size_t lLength = mUsedLength + iTextLength;
    // Doubling what is used keeps the cost of growing linear, and so does a character for each entry where most of them
    // are killed ones, which use no text and are copied all the same. Nothing is added to the first reservation.
    hLayOut(mCount == 0 ? lCount : std::max(lCount, 2 * mCount),
            mCount == 0 ? lLength : std::max({lLength, 2 * mUsedLength, mUsedLength + mCount}));
}

// A bag whose long values were replaced by short ones gives their memory back: it keeps a fixed multiple of what is in
// it, however it came about.
void ValueContent::ReserveForOne(std::size_t iTextLength)
{
    const std::size_t lLength = 2 * (mUsedLength + iTextLength);
    if (mTextCapacity > 2 * lLength + gToleratedCharacters)
    {
        hLayOut(mCount + 1 + mCount / 2, lLength);
    }
    Reserve(1, iTextLength);
}

void ValueContent::Append(std::wstring_view iName, std::wstring_view iValue)
{
    Reserve(1, iName.size() + iValue.size());
    mEntries[mCount++] = Entry{mTextLength, iName.size(), iValue.size()};
    CopyText(iValue, CopyText(iName, mText + mTextLength));
    mTextLength += iName.size() + iValue.size();
    mUsedLength += iName.size() + iValue.size();
}

// The characters stay until the next layout; once no entry is left all of them are free again.
void ValueContent::Remove(std::size_t iIndex) noexcept
{
    mUsedLength -= mEntries[iIndex].mNameLength + mEntries[iIndex].mValueLength;
    std::copy(mEntries + iIndex + 1, mEntries + mCount, mEntries + iIndex);
    --mCount;
    mTextLength = mCount == 0 ? 0 : mTextLength;
}

void ValueContent::Swap(std::size_t iLeft, std::size_t iRight) noexcept
{
    std::swap(mEntries[iLeft], mEntries[iRight]);
}

void ValueContent::Kill(std::size_t iIndex) noexcept
{
    mUsedLength -= mEntries[iIndex].mNameLength + mEntries[iIndex].mValueLength;
    mEntries[iIndex].mNameLength = gKilled;
}

void ValueContent::Compact() noexcept
{
    Entry* lEnd =
        std::remove_if(mEntries, mEntries + mCount, [](const Entry& iEntry) { return iEntry.mNameLength == gKilled; });
    mCount = static_cast<std::size_t>(lEnd - mEntries);
}

// Moves everything into new memory, without the gaps. Entries keep their positions, killed ones too.
void ValueContent::hLayOut(std::size_t iCapacity, std::size_t iTextCapacity)
{
    const std::size_t lLargest = std::numeric_limits<std::ptrdiff_t>::max() / 4;
    if (iTextCapacity > lLargest / sizeof(wchar_t))
    {
        throw std::length_error("QTalBase::PropertyBag: too long");
    }
    ValueContent lNew;
    if (iCapacity != 0)
    {
        lNew.mEntries =
            static_cast<Entry*>(::operator new(iCapacity * sizeof(Entry) + iTextCapacity * sizeof(wchar_t)));
        lNew.mText = reinterpret_cast<wchar_t*>(lNew.mEntries + iCapacity);
    }
    lNew.mCapacity = iCapacity;
    lNew.mTextCapacity = iTextCapacity;
    for (std::size_t lIndex = 0; lIndex < mCount; ++lIndex)
    {
        Entry lEntry = mEntries[lIndex];
        if (lEntry.mNameLength != gKilled)
        {
            const std::size_t lLength = lEntry.mNameLength + lEntry.mValueLength;
            std::wmemcpy(lNew.mText + lNew.mTextLength, mText + lEntry.mOffset, lLength);
            lEntry.mOffset = lNew.mTextLength;
            lNew.mTextLength += lLength;
        }
        lNew.mEntries[lIndex] = lEntry;
    }
    lNew.mCount = mCount;
    lNew.mUsedLength = mUsedLength;
    *this = std::move(lNew);
}

} // namespace QTalBase
