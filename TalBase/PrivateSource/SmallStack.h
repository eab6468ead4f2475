// A stack of plain values that needs no memory of its own while it is small.

#ifndef TALBASE_PRIVATESOURCE_SMALLSTACK_H
#define TALBASE_PRIVATESOURCE_SMALLSTACK_H

#include <algorithm>
#include <cstddef>
#include <memory>
#include <type_traits>

namespace QTalBase
{

template <class Value, std::size_t iInlineCount>
class SmallStack
{
    static_assert(std::is_trivially_copyable_v<Value> && std::is_trivially_destructible_v<Value>);

public:
    // cppcheck-suppress uninitMemberVar ; values are set when they are pushed
    SmallStack() noexcept : mValues(reinterpret_cast<Value*>(mInline)) {}

    SmallStack(const SmallStack&) = delete;
    SmallStack& operator=(const SmallStack&) = delete;

    std::size_t GetCount() const noexcept
    {
        return mCount;
    }

    Value& operator[](std::size_t iIndex) noexcept
    {
        return mValues[iIndex];
    }

    Value* GetData() noexcept
    {
        return mValues;
    }

    Value& Top() noexcept
    {
        return mValues[mCount - 1];
    }

    // Throws std::bad_alloc, the stack unchanged.
    void Push(const Value& iValue)
    {
        if (mCount == mCapacity)
        {
            hGrow();
        }
        mValues[mCount++] = iValue;
    }

    // Leaves the lowest iCount values.
    void CutTo(std::size_t iCount) noexcept
    {
        mCount = iCount;
    }

private:
    void hGrow()
    {
        std::unique_ptr<Value[]> lValues(new Value[2 * mCapacity]);
        std::copy(mValues, mValues + mCount, lValues.get());
        mHeap = std::move(lValues);
        mValues = mHeap.get();
        mCapacity *= 2;
    }

    alignas(Value) unsigned char mInline[iInlineCount * sizeof(Value)];
    Value* mValues;
    std::unique_ptr<Value[]> mHeap;
    std::size_t mCount = 0;
    std::size_t mCapacity = iInlineCount;
};

} // namespace QTalBase

#endif
