#include "Text/JsonText.h"

#include "Text/Text.h"

#include "QBase/Convert.h"

#include <nlohmann/json.hpp>

namespace TalBaseTool
{

namespace
{

constexpr unsigned long gBeyondOneUnit = 0x10000;

void AppendUnit(unsigned long iUnit, std::string& oUtf8)
{
    const char* const lDigits = "0123456789abcdef";
    oUtf8 += "\\u";
    for (int lShift = 12; lShift >= 0; lShift -= 4)
    {
        oUtf8 += lDigits[(iUnit >> lShift) & 0xFU];
    }
}

void AppendEscape(wchar_t iCharacter, std::string& oUtf8)
{
    constexpr std::wstring_view lKnown = L"\"\\\n\r\t\b\f";
    const std::size_t lPlace = lKnown.find(iCharacter);
    const unsigned long lCode = static_cast<unsigned int>(iCharacter);
    if (lPlace != std::wstring_view::npos)
    {
        oUtf8 += '\\';
        oUtf8 += "\"\\nrtbf"[lPlace];
    }
    else if (lCode < gBeyondOneUnit)
    {
        AppendUnit(lCode, oUtf8);
    }
    else // as JSON has them, two halves
    {
        AppendUnit(0xD800 + ((lCode - gBeyondOneUnit) >> 10), oUtf8);
        AppendUnit(0xDC00 + ((lCode - gBeyondOneUnit) & 0x3FFU), oUtf8);
    }
}

} // namespace

void AppendJsonString(std::wstring_view iText, std::string& oUtf8)
{
    oUtf8 += '"';
    AppendJsonCharacters(iText, oUtf8);
    oUtf8 += '"';
}

void AppendJsonCharacters(std::wstring_view iText, std::string& oUtf8)
{
    if (AppendPlain(iText, oUtf8, [](wchar_t iOne) { return (iOne != L'"') & (iOne != L'\\'); })) // mostly
    {
        return;
    }
    std::size_t lStart = 0; // of what stands for itself
    for (std::size_t lIndex = 0; lIndex < iText.size(); ++lIndex)
    {
        const wchar_t lCharacter = iText[lIndex];
        if (lCharacter == L'"' || lCharacter == L'\\' || IsInvisible(lCharacter))
        {
            AppendUtf8(iText.substr(lStart, lIndex - lStart), oUtf8);
            AppendEscape(lCharacter, oUtf8);
            lStart = lIndex + 1;
        }
    }
    AppendUtf8(iText.substr(lStart), oUtf8);
}

std::optional<std::wstring> ReadJsonString(std::wstring_view iQuoted)
{
    return ReadJsonString(ToUtf8(iQuoted));
}

std::optional<std::wstring> ReadJsonString(std::string_view iQuoted)
{
    const nlohmann::json lText = nlohmann::json::parse(iQuoted, nullptr, false);
    return lText.is_string() ? std::make_optional(QBase::UTF8ToWideChar(lText.get_ref<const std::string&>(), true))
                             : std::nullopt;
}

std::size_t FindJsonStringEnd(std::wstring_view iText)
{
    for (std::size_t lIndex = 1; lIndex < iText.size(); ++lIndex)
    {
        if (iText[lIndex] == L'"')
        {
            return lIndex + 1;
        }
        lIndex += iText[lIndex] == L'\\' ? 1 : 0;
    }
    return std::wstring_view::npos;
}

} // namespace TalBaseTool
