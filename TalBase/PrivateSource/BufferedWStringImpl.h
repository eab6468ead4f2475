// The implementation of BufferedWString; see TalBase/BufferedWString.h for what it promises.

#ifndef TALBASE_PRIVATESOURCE_BUFFEREDWSTRINGIMPL_H
#define TALBASE_PRIVATESOURCE_BUFFEREDWSTRINGIMPL_H

#include "QSynch/AtomicLong.h"
#include "TalBase/BufferedWString.h"

#include <memory>

namespace QTalBase
{

// Invariants: mSize <= mCapacity; every character from mSize to mCapacity is 0, so the text is always terminated.
class TALBASE_EXPORT BufferedWStringImpl : public virtual BufferedWString
{
public:
    BufferedWStringImpl();
    BufferedWStringImpl(std::size_t iInitialSize, std::size_t iIncrement);
    ~BufferedWStringImpl() override;

    BufferedWStringImpl(const BufferedWStringImpl&) = delete;
    BufferedWStringImpl& operator=(const BufferedWStringImpl&) = delete;

    void AddRef() const noexcept override;
    void Release() const noexcept override;

    void operator+=(const wchar_t* ipText) override;
    void operator+=(const std::wstring& iText) override;
    void operator+=(const QBase::ReturnWString& iText) override;
    const wchar_t* c_str() const override;
    std::size_t size() const override;
    std::size_t capacity() const override;

    // Appends iLength characters from ipText, growing by whole increments where the free space is too small.
    void AddAndResizeIfNeeded(const wchar_t* ipText, std::size_t iLength);

private:
    std::size_t mSize;
    [[maybe_unused]] std::size_t mInitialSize; // kept, not read by any operation
    std::size_t mIncrement;
    std::size_t mCapacity;
    std::unique_ptr<wchar_t[]> mBuffer; // mCapacity + 1 characters
    mutable QSynch::AtomicLong mRefCount;
};

} // namespace QTalBase

#endif
