#include "TalBase/PrivateSource/SharedWString.h"

#include <cwchar>
#include <new>

namespace QTalBase
{

constinit SharedWString::Text SharedWString::gEmptyText{L"", 0, {0}, false};
constinit SharedWString::Text SharedWString::gDefaultBeginText{gDefaultBegin, 4, {0}, false};
constinit SharedWString::Text SharedWString::gDefaultEndText{gDefaultEnd, 3, {0}, false};

SharedWString::SharedWString(std::wstring_view iText) : mText(hMake(iText)) {}

// The characters lie behind their head, in one piece of memory.
SharedWString::Text* SharedWString::hMake(std::wstring_view iText)
{
    for (Text* lConstant : {&gDefaultBeginText, &gDefaultEndText, &gEmptyText})
    {
        if (AreEqualTexts(iText, {lConstant->mCharacters, lConstant->mLength}))
        {
            return lConstant;
        }
    }
    void* lMemory = ::operator new(sizeof(Text) + (iText.size() + 1) * sizeof(wchar_t));
    wchar_t* lCharacters = reinterpret_cast<wchar_t*>(static_cast<char*>(lMemory) + sizeof(Text));
    std::wmemcpy(lCharacters, iText.data(), iText.size());
    lCharacters[iText.size()] = L'\0';
    return new (lMemory) Text{lCharacters, iText.size(), {1}, true};
}

void SharedWString::hFree() noexcept
{
    mText->~Text();
    ::operator delete(mText);
}

} // namespace QTalBase
