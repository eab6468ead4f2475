#include "Escapes.h"

namespace MailSpool
{

namespace
{

constexpr std::wstring_view gHeaderWord = L"EndDelimiter";
constexpr std::wstring_view gEmptyReference = L"&#;";
constexpr std::wstring_view gReferenceStart = L"&#";
constexpr unsigned long gLastCharacter = 0x10FFFF;

void AppendReference(wchar_t iCharacter, std::wstring& oText)
{
    oText += gReferenceStart;
    oText += std::to_wstring(static_cast<unsigned long>(iCharacter));
    oText += L';';
}

std::wstring Escape(std::wstring_view iText, std::wstring_view iCharacters)
{
    if (iText.empty())
    {
        return std::wstring(gEmptyReference);
    }
    std::wstring lText;
    lText.reserve(iText.size());
    for (const wchar_t lCharacter : iText)
    {
        if (iCharacters.find(lCharacter) != iCharacters.npos)
        {
            AppendReference(lCharacter, lText);
        }
        else
        {
            lText += lCharacter;
        }
    }
    return lText;
}

// Reads what follows "&#" up to its semicolon. Returns the length read, or 0 when this is no reference.
std::size_t ReadReference(std::wstring_view iText, std::wstring& oText)
{
    unsigned long lNumber = 0;
    for (std::size_t lAt = 0; lAt < iText.size(); ++lAt)
    {
        if (iText[lAt] == L';')
        {
            oText.append(lAt > 0 ? 1 : 0, static_cast<wchar_t>(lNumber));
            return lAt + 1;
        }
        if (iText[lAt] < L'0' || iText[lAt] > L'9')
        {
            return 0;
        }
        lNumber = lNumber * 10 + static_cast<unsigned long>(iText[lAt] - L'0');
        if (lNumber > gLastCharacter)
        {
            return 0;
        }
    }
    return 0;
}

} // namespace

std::wstring EscapeValue(std::wstring_view iValue)
{
    return Escape(iValue, std::wstring_view(L"&\0", 2));
}

std::wstring EscapeName(std::wstring_view iName)
{
    std::wstring lName = Escape(iName, std::wstring_view(L"&\0*+", 4));
    if (lName.compare(0, gHeaderWord.size(), gHeaderWord) == 0)
    {
        std::wstring lFirst;
        AppendReference(lName.front(), lFirst);
        lName.replace(0, 1, lFirst);
    }
    return lName;
}

std::wstring Unescape(std::wstring_view iText)
{
    std::wstring lText;
    lText.reserve(iText.size());
    std::size_t lRead = 0;
    for (std::size_t lFound = iText.find(gReferenceStart); lFound != iText.npos;
         lFound = iText.find(gReferenceStart, lRead))
    {
        lText += iText.substr(lRead, lFound - lRead);
        const std::size_t lLength = ReadReference(iText.substr(lFound + gReferenceStart.size()), lText);
        lRead = lFound + gReferenceStart.size() + lLength;
        if (lLength == 0)
        {
            lText += gReferenceStart;
        }
    }
    return lText += iText.substr(lRead);
}

} // namespace MailSpool
