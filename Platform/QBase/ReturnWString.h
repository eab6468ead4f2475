// An owned wide text that is returned by value, read by the caller and then let go. May hold zero characters inside; it
// is always terminated by one more. Values, not shared: one thread at a time, like a standard string.
//
// A short text lies in the object itself, so that returning a typical value allocates nothing.

#ifndef QBASE_RETURNWSTRING_H
#define QBASE_RETURNWSTRING_H

#include "QBase/Export.h"

#include <cstddef>
#include <cwchar>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace QBase
{

class Q8_EXPORT ReturnWString
{
public:
    // Copies a terminated text; null gives the empty text. Throws std::bad_alloc.
    ReturnWString(const wchar_t* ipText) : ReturnWString(ipText, ipText != nullptr ? std::wcslen(ipText) : 0) {}

    // Copies iLength characters, whatever they are. Throws std::bad_alloc, also for a length that no text can have.
    // ipText may be null where iLength is 0.
    ReturnWString(const wchar_t* ipText, std::size_t iLength) : mText(mShort), mLength(iLength)
    {
        hCopy(ipText);
    }

    // Takes over the characters of a standard string. Never throws.
    ReturnWString(std::wstring&& iText) noexcept;

    // Takes over an array of iLength characters and a terminating zero character. Never throws.
    ReturnWString(std::unique_ptr<wchar_t[]>&& iText, std::size_t iLength) noexcept
        : mText(iText.get()), mLength(iLength), mKind(Kind::Array)
    {
        iText.release();
    }

    ReturnWString(const ReturnWString& iOther) : ReturnWString(iOther.mText, iOther.mLength) {}

    // iOther is empty afterwards.
    ReturnWString(ReturnWString&& iOther) noexcept : mText(mShort), mLength(0)
    {
        hTakeOver(iOther);
    }

    // The strong guarantee.
    ReturnWString& operator=(const ReturnWString& iOther)
    {
        return *this = ReturnWString(iOther);
    }

    ReturnWString& operator=(ReturnWString&& iOther) noexcept
    {
        if (this != &iOther)
        {
            hLetGo();
            hTakeOver(iOther);
        }
        return *this;
    }

    ~ReturnWString()
    {
        hLetGo();
    }

    // Returns the characters, terminated; valid while this object lives and is not assigned to.
    const wchar_t* c_str() const noexcept
    {
        return mText;
    }

    // Returns the number of characters, the terminator not counted.
    std::size_t GetLength() const noexcept
    {
        return mLength;
    }

    operator std::wstring_view() const noexcept
    {
        return {mText, mLength};
    }

private:
    static constexpr std::size_t gShortLength = 15;

    enum class Kind : unsigned char
    {
        Short,
        Array,
        String
    };

    void hCopy(const wchar_t* ipText)
    {
        if (mLength > gShortLength)
        {
            hCopyLong(ipText);
            return;
        }
        for (std::size_t lIndex = 0; lIndex < mLength; ++lIndex)
        {
            mShort[lIndex] = ipText[lIndex];
        }
        mShort[mLength] = L'\0';
    }

    void hCopyLong(const wchar_t* ipText);
    void hTakeOver(ReturnWString& iOther) noexcept;
    void hLetGo() noexcept
    {
        if (mKind != Kind::Short)
        {
            hFree();
        }
    }
    void hFree() noexcept;

    wchar_t* mText; // mShort, an array, or a standard string's characters
    std::size_t mLength;
    Kind mKind = Kind::Short;
    union
    {
        wchar_t mShort[gShortLength + 1];
        std::wstring mString; // only ever long, so its characters keep their place when it is moved
    };
};

} // namespace QBase

#endif
