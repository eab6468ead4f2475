// Texts as the tests hold and show them.

#ifndef TESTS_SUPPORT_TEXT_H
#define TESTS_SUPPORT_TEXT_H

#include "QBase/ReturnWString.h"

#include <cstdio>
#include <string>
#include <string_view>

namespace Support
{

inline std::wstring Text(const QBase::ReturnWString& iText)
{
    return std::wstring(iText.c_str(), iText.GetLength());
}

// Returns a text between quotes, of which no other text gives the same.
inline std::wstring Quoted(std::wstring_view iText)
{
    std::wstring lResult = L"'";
    for (const wchar_t lCharacter : iText)
    {
        if (lCharacter == L'\'' || lCharacter == L'\\')
        {
            lResult += L'\\';
        }
        lResult += lCharacter;
    }
    return lResult + L"'";
}

// Returns a text as a person wants to read it in a failure report: printable ASCII as it is, the rest by code.
inline std::string Readable(std::wstring_view iText)
{
    std::string lResult = "\"";
    for (const wchar_t lCharacter : iText)
    {
        if (lCharacter >= L' ' && lCharacter <= L'~')
        {
            lResult += static_cast<char>(lCharacter);
            continue;
        }
        char lCode[16];
        std::snprintf(lCode, sizeof lCode, "<U+%04lX>", static_cast<unsigned long>(lCharacter));
        lResult += lCode;
    }
    return lResult + '"';
}

} // namespace Support

#endif
