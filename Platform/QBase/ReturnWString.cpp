#include "QBase/ReturnWString.h"

#include <new>

namespace QBase
{

static_assert(sizeof(wchar_t) == 4, "wide characters have 32 bits");

ReturnWString::ReturnWString(std::wstring&& iText) noexcept : mText(mShort), mLength(iText.size())
{
    if (mLength <= gShortLength)
    {
        std::wmemcpy(mShort, iText.data(), mLength + 1);
        iText.clear();
        return;
    }
    new (&mString) std::wstring(std::move(iText));
    iText.clear();
    mText = mString.data();
    mKind = Kind::String;
}

void ReturnWString::hCopyLong(const wchar_t* ipText)
{
    if (mLength + 1 == 0)
    {
        throw std::bad_array_new_length();
    }
    mText = new wchar_t[mLength + 1];
    mKind = Kind::Array;
    std::wmemcpy(mText, ipText, mLength);
    mText[mLength] = L'\0';
}

// This object holds nothing that must be let go.
void ReturnWString::hTakeOver(ReturnWString& iOther) noexcept
{
    mLength = iOther.mLength;
    mKind = iOther.mKind;
    mText = iOther.mText;
    if (mKind == Kind::Short)
    {
        mText = mShort;
        std::wmemcpy(mShort, iOther.mShort, mLength + 1);
    }
    else if (mKind == Kind::String)
    {
        new (&mString) std::wstring(std::move(iOther.mString));
        iOther.mString.~basic_string(); // NOLINT(clang-analyzer-cplusplus.Move): what was moved from must still go
    }
    iOther.mText = iOther.mShort;
    iOther.mLength = 0;
    iOther.mKind = Kind::Short;
    iOther.mShort[0] = L'\0';
}

void ReturnWString::hFree() noexcept
{
    if (mKind == Kind::String)
    {
        mString.~basic_string();
    }
    else
    {
        delete[] mText;
    }
}

} // namespace QBase
