#include "QBase/ReturnWString.h"

namespace QBase
{

ReturnWString::ReturnWString(const wchar_t* ipText) : mText(ipText != nullptr ? ipText : L"") {}

ReturnWString::ReturnWString(const wchar_t* ipText, std::size_t iLength) : mText(ipText, iLength) {}

ReturnWString::ReturnWString(std::wstring&& iText) noexcept : mText(std::move(iText)) {}

ReturnWString::ReturnWString(const ReturnWString& iOther) = default;

ReturnWString::ReturnWString(ReturnWString&& iOther) noexcept : mText(std::move(iOther.mText))
{
    iOther.mText.clear();
}

ReturnWString& ReturnWString::operator=(const ReturnWString& iOther) = default;

ReturnWString& ReturnWString::operator=(ReturnWString&& iOther) noexcept
{
    mText.swap(iOther.mText);
    if (this != &iOther)
    {
        iOther.mText.clear();
    }
    return *this;
}

ReturnWString::~ReturnWString() = default;

const wchar_t* ReturnWString::c_str() const noexcept
{
    return mText.c_str();
}

std::size_t ReturnWString::GetLength() const noexcept
{
    return mText.size();
}

} // namespace QBase
