// A pointer that holds one reference on an intrusively counted object: anything with AddRef() const and Release() const
// that never throw (QBase::ReferenceCounted, above all). Letting go clears the pointer first and then calls Release, so
// that whatever Release sets off never finds a pointer to a dying object.
//
// No operation throws. Different pointers may hold the same object on different threads; one pointer is used by one
// thread at a time.

#ifndef QBASE_SMARTPTRI_H
#define QBASE_SMARTPTRI_H

#include <cstddef>
#include <type_traits>
#include <utility>

namespace QBase
{

// T may be const, and may be incomplete where nothing takes or drops a reference.
template <class T>
class SmartPtrI
{
    template <class U>
    using IfConvertible = std::enable_if_t<std::is_convertible_v<U*, T*>, int>;

public:
    // Holds nothing.
    constexpr SmartPtrI() noexcept = default;

    // Takes a reference on the object; null holds nothing. Implicit, so that a factory's result can be handed on. There
    // is no constructor for null alone: with two of them the literals NULL and 0 would fit neither.
    SmartPtrI(T* ipObject) noexcept : mPointer(ipObject)
    {
        hAddRef();
    }

    // Takes a reference of its own on what iOther holds.
    SmartPtrI(const SmartPtrI& iOther) noexcept : SmartPtrI(iOther.mPointer) {}

    // Takes over the reference of iOther, which holds nothing afterwards. No count changes.
    SmartPtrI(SmartPtrI&& iOther) noexcept : mPointer(std::exchange(iOther.mPointer, nullptr)) {}

    // The same for a pointer to a derived class, or to the class without its const.
    template <class U, IfConvertible<U> = 0>
    SmartPtrI(const SmartPtrI<U>& iOther) noexcept : SmartPtrI(static_cast<T*>(iOther.get()))
    {
    }

    template <class U, IfConvertible<U> = 0>
    SmartPtrI(SmartPtrI<U>&& iOther) noexcept : mPointer(iOther.mPointer)
    {
        iOther.mPointer = nullptr;
    }

    // Drops the reference, if it holds one.
    ~SmartPtrI()
    {
        hLetGo();
    }

    // Every assignment takes the new reference before it drops the old one: assigning a pointer to itself, or from one
    // that only the old object keeps alive, is safe.
    // NOLINTNEXTLINE(bugprone-unhandled-self-assignment,cert-oop54-cpp): a copy is swapped in
    SmartPtrI& operator=(const SmartPtrI& iOther) noexcept
    {
        SmartPtrI(iOther).swap(*this);
        return *this;
    }

    SmartPtrI& operator=(SmartPtrI&& iOther) noexcept
    {
        // cppcheck-suppress accessMoved ; the move is the one access
        SmartPtrI(std::move(iOther)).swap(*this);
        return *this;
    }

    template <class U, IfConvertible<U> = 0>
    SmartPtrI& operator=(const SmartPtrI<U>& iOther) noexcept
    {
        SmartPtrI(iOther).swap(*this);
        return *this;
    }

    template <class U, IfConvertible<U> = 0>
    SmartPtrI& operator=(SmartPtrI<U>&& iOther) noexcept
    {
        // cppcheck-suppress accessMoved ; the move is the one access
        SmartPtrI(std::move(iOther)).swap(*this);
        return *this;
    }

    // Null, nullptr and {} let go.
    SmartPtrI& operator=(T* ipObject) noexcept
    {
        SmartPtrI(ipObject).swap(*this);
        return *this;
    }

    // Neither may be used on a pointer that holds nothing.
    T* operator->() const noexcept
    {
        return mPointer;
    }

    T& operator*() const noexcept
    {
        return *mPointer;
    }

    // Returns the object, or null. The count does not change.
    T* get() const noexcept
    {
        return mPointer;
    }

    // Returns whether it holds an object.
    explicit operator bool() const noexcept
    {
        return mPointer != nullptr;
    }

    // Returns the object, or null, and gives the reference up without dropping it: the caller drops it with Release.
    // This pointer holds nothing afterwards. No count changes.
    T* Detach() noexcept
    {
        return std::exchange(mPointer, nullptr);
    }

    // Holds the object, or null, and takes over a reference that the caller has on it: the counterpart of Detach. What
    // it held before is let go.
    void Attach(T* ipObject) noexcept
    {
        SmartPtrI lOld;
        lOld.mPointer = std::exchange(mPointer, ipObject);
    }

    // Exchanges what the two hold. No count changes.
    void swap(SmartPtrI& oOther) noexcept
    {
        std::swap(mPointer, oOther.mPointer);
    }

private:
    template <class U>
    friend class SmartPtrI;

    void hAddRef() const noexcept
    {
        if (mPointer != nullptr)
        {
            mPointer->AddRef();
        }
    }

    void hLetGo() noexcept
    {
        if (T* lObject = std::exchange(mPointer, nullptr))
        {
            lObject->Release();
        }
    }

    T* mPointer = nullptr;
};

// Compare addresses, as the plain pointers would: with another SmartPtrI, with nullptr, and with a plain pointer, on
// either side.
template <class T, class U>
bool operator==(const SmartPtrI<T>& iLeft, const SmartPtrI<U>& iRight) noexcept
{
    return iLeft.get() == iRight.get();
}

template <class T, class U>
bool operator!=(const SmartPtrI<T>& iLeft, const SmartPtrI<U>& iRight) noexcept
{
    return iLeft.get() != iRight.get();
}

template <class T>
bool operator==(const SmartPtrI<T>& iLeft, std::nullptr_t) noexcept
{
    return iLeft.get() == nullptr;
}

template <class T>
bool operator!=(const SmartPtrI<T>& iLeft, std::nullptr_t) noexcept
{
    return iLeft.get() != nullptr;
}

template <class T>
bool operator==(std::nullptr_t, const SmartPtrI<T>& iRight) noexcept
{
    return iRight.get() == nullptr;
}

template <class T>
bool operator!=(std::nullptr_t, const SmartPtrI<T>& iRight) noexcept
{
    return iRight.get() != nullptr;
}

template <class T, class U>
bool operator==(const SmartPtrI<T>& iLeft, U* ipRight) noexcept
{
    return iLeft.get() == ipRight;
}

template <class T, class U>
bool operator!=(const SmartPtrI<T>& iLeft, U* ipRight) noexcept
{
    return iLeft.get() != ipRight;
}

template <class T, class U>
bool operator==(T* ipLeft, const SmartPtrI<U>& iRight) noexcept
{
    return ipLeft == iRight.get();
}

template <class T, class U>
bool operator!=(T* ipLeft, const SmartPtrI<U>& iRight) noexcept
{
    return ipLeft != iRight.get();
}

template <class T>
void swap(SmartPtrI<T>& oLeft, SmartPtrI<T>& oRight) noexcept
{
    oLeft.swap(oRight);
}

} // namespace QBase

#endif
