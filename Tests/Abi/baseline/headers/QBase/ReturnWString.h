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
    ReturnWString(const wchar_t* ipText) : ReturnWString(ipText, ipText != nullptr ? std::wcslen(ipText) : 0) {}
    ReturnWString(const wchar_t* ipText, std::size_t iLength) : mText(mShort), mLength(iLength)
    {
        hCopy(ipText);
    }
    ReturnWString(std::wstring&& iText) noexcept;
    ReturnWString(std::unique_ptr<wchar_t[]>&& iText, std::size_t iLength) noexcept
        : mText(iText.get()), mLength(iLength), mKind(Kind::Array)
    {
        iText.release();
    }
    ReturnWString(const ReturnWString& iOther) : ReturnWString(iOther.mText, iOther.mLength) {}
    ReturnWString(ReturnWString&& iOther) noexcept : mText(mShort), mLength(0)
    {
        hTakeOver(iOther);
    }
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
    const wchar_t* c_str() const noexcept
    {
        return mText;
    }
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
    wchar_t* mText;
    std::size_t mLength;
    Kind mKind = Kind::Short;
    union
    {
        wchar_t mShort[gShortLength + 1];
        std::wstring mString;
    };
};
} // namespace QBase
#endif
