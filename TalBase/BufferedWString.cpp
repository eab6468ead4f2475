#include "TalBase/BufferedWString.h"

#include "QBase/Atomic.h"
#include "TalBase/PrivateSource/BufferedWStringImpl.h"

#include <cwchar>
#include <limits>
#include <stdexcept>
#include <utility>

namespace QTalBase
{

namespace
{

const std::size_t gDefaultSize = 0x80000;
const std::size_t gLargestCapacity = std::numeric_limits<std::ptrdiff_t>::max() / sizeof(wchar_t) - 1;

std::size_t CheckedIncrement(std::size_t iInitialSize, std::size_t iIncrement)
{
    const std::size_t lIncrement = iIncrement == 0 ? iInitialSize : iIncrement;
    if (lIncrement == 0)
    {
        throw std::invalid_argument("QTalBase::BufferedWString: initial size and increment are both 0");
    }
    return lIncrement;
}

std::unique_ptr<wchar_t[]> MakeZeroedBuffer(std::size_t iCapacity)
{
    if (iCapacity > gLargestCapacity)
    {
        throw std::length_error("QTalBase::BufferedWString: too long");
    }
    return std::make_unique<wchar_t[]>(iCapacity + 1);
}

} // namespace

BufferedWString::~BufferedWString() = default;

BufferedWStringImpl::BufferedWStringImpl() : BufferedWStringImpl(gDefaultSize, gDefaultSize) {}

BufferedWStringImpl::BufferedWStringImpl(std::size_t iInitialSize, std::size_t iIncrement)
    : mSize(0),
      mInitialSize(iInitialSize),
      mIncrement(CheckedIncrement(iInitialSize, iIncrement)),
      mCapacity(iInitialSize),
      mBuffer(MakeZeroedBuffer(iInitialSize)),
      mRefCount(0)
{
}

BufferedWStringImpl::~BufferedWStringImpl() = default;

void BufferedWStringImpl::AddRef() const noexcept
{
    QSynch_AtomicIncrement(mRefCount);
}

void BufferedWStringImpl::Release() const noexcept
{
    if (QSynch_AtomicDecrement(mRefCount) == 0)
    {
        delete this;
    }
}

void BufferedWStringImpl::operator+=(const wchar_t* ipText)
{
    AddAndResizeIfNeeded(ipText, std::wcslen(ipText));
}

void BufferedWStringImpl::operator+=(const std::wstring& iText)
{
    AddAndResizeIfNeeded(iText.c_str(), iText.size());
}

void BufferedWStringImpl::operator+=(const QBase::ReturnWString& iText)
{
    AddAndResizeIfNeeded(iText.c_str(), iText.GetLength());
}

const wchar_t* BufferedWStringImpl::c_str() const
{
    return mBuffer.get();
}

std::size_t BufferedWStringImpl::size() const
{
    return mSize;
}

std::size_t BufferedWStringImpl::capacity() const
{
    return mCapacity;
}

// Grows by whole increments, as few as are needed. Everything that can fail comes first, and changes nothing.
void BufferedWStringImpl::AddAndResizeIfNeeded(const wchar_t* ipText, std::size_t iLength)
{
    const std::size_t lFree = mCapacity - mSize;
    std::unique_ptr<wchar_t[]> lOldBuffer; // kept until the end: the text may lie in it
    if (lFree < iLength)
    {
        const std::size_t lMissing = iLength - lFree;
        const std::size_t lSteps = lMissing / mIncrement + (lMissing % mIncrement != 0 ? 1 : 0);
        if (lSteps > (gLargestCapacity - mCapacity) / mIncrement)
        {
            throw std::length_error("QTalBase::BufferedWString: too long");
        }
        const std::size_t lCapacity = mCapacity + lSteps * mIncrement;
        std::unique_ptr<wchar_t[]> lBuffer = MakeZeroedBuffer(lCapacity);
        std::wmemcpy(lBuffer.get(), mBuffer.get(), mSize);
        lOldBuffer = std::exchange(mBuffer, std::move(lBuffer));
        mCapacity = lCapacity;
    }
    std::wmemmove(mBuffer.get() + mSize, ipText, iLength);
    mSize += iLength;
}

BufferedWString* CreateBufferedWString()
{
    return new BufferedWStringImpl();
}

BufferedWString* CreateBufferedWString(std::size_t iInitialSize, std::size_t iIncrement)
{
    return new BufferedWStringImpl(iInitialSize, iIncrement);
}

} // namespace QTalBase
