#ifndef QBASE_SMARTPTRI_H
#define QBASE_SMARTPTRI_H
#include <cstddef>
#include <type_traits>
#include <utility>
namespace QBase
{
template <class T>
class SmartPtrI
{
    template <class U>
    using IfConvertible = std::enable_if_t<std::is_convertible_v<U*, T*>, int>;

public:
    constexpr SmartPtrI() noexcept = default;
    SmartPtrI(T* ipObject) noexcept : mPointer(ipObject)
    {
        hAddRef();
    }
    SmartPtrI(const SmartPtrI& iOther) noexcept : SmartPtrI(iOther.mPointer) {}
    SmartPtrI(SmartPtrI&& iOther) noexcept : mPointer(std::exchange(iOther.mPointer, nullptr)) {}
    template <class U, IfConvertible<U> = 0>
    SmartPtrI(const SmartPtrI<U>& iOther) noexcept : SmartPtrI(static_cast<T*>(iOther.get()))
    {
    }
    template <class U, IfConvertible<U> = 0>
    SmartPtrI(SmartPtrI<U>&& iOther) noexcept : mPointer(iOther.mPointer)
    {
        iOther.mPointer = nullptr;
    }
    ~SmartPtrI()
    {
        hLetGo();
    }
    SmartPtrI& operator=(const SmartPtrI& iOther) noexcept
    {
        SmartPtrI(iOther).swap(*this);
        return *this;
    }
    SmartPtrI& operator=(SmartPtrI&& iOther) noexcept
    {
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
        SmartPtrI(std::move(iOther)).swap(*this);
        return *this;
    }
    SmartPtrI& operator=(T* ipObject) noexcept
    {
        SmartPtrI(ipObject).swap(*this);
        return *this;
    }
    T* operator->() const noexcept
    {
        return mPointer;
    }
    T& operator*() const noexcept
    {
        return *mPointer;
    }
    T* get() const noexcept
    {
        return mPointer;
    }
    explicit operator bool() const noexcept
    {
        return mPointer != nullptr;
    }
    T* Detach() noexcept
    {
        return std::exchange(mPointer, nullptr);
    }
    void Attach(T* ipObject) noexcept
    {
        SmartPtrI lOld;
        lOld.mPointer = std::exchange(mPointer, ipObject);
    }
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
