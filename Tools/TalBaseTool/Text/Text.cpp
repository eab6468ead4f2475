#include "Text/Text.h"

#include "Text/Errors.h"
#include "Text/Utf8Locale.h"

#include "QBase/Convert.h"
#include "QBase/Message.h"

#include <algorithm>
#include <clocale>
#include <cwchar>
#include <iterator>

namespace TalBaseTool
{

namespace
{

struct Range
{
    unsigned long mFirst;
    unsigned long mLast;
};

// Control characters, and those that change how the text around them is laid out.
constexpr Range gControls[] = {{0x0, 0x1F},      {0x7F, 0x9F},          {0xAD, 0xAD},     {0x61C, 0x61C},
                               {0x180E, 0x180E}, {0x200B, 0x200B},      {0x200E, 0x200F}, {0x2028, 0x202E},
                               {0x2060, 0x206F}, {0xFEFF, 0xFEFF},      {0xFFF9, 0xFFFB}, {0xE0000, 0xE007F},
                               {0xD800, 0xDFFF}, {0x110000, 0xFFFFFFFF}};

// Writes controls as numbers, but those of iShort as a backslash and the letter in the same place, and those of iKept
// as they are.
std::wstring Escape(std::wstring_view iText, std::wstring_view iShort, std::wstring_view iLetters,
                    std::wstring_view iKept = {})
{
    std::wstring lText;
    lText.reserve(iText.size());
    for (const wchar_t lCharacter : iText)
    {
        const std::size_t lKnown = iShort.find(lCharacter);
        if (lKnown != std::wstring_view::npos)
        {
            lText += L'\\';
            lText += iLetters[lKnown];
        }
        else if (IsInvisible(lCharacter) && iKept.find(lCharacter) == std::wstring_view::npos)
        {
            wchar_t lNumber[16];
            const unsigned int lCode = static_cast<unsigned int>(lCharacter);
            std::swprintf(lNumber, std::size(lNumber), lCode < 0x100 ? L"\\x%02x" : L"\\u%04x", lCode);
            lText += lNumber;
        }
        else
        {
            lText += lCharacter;
        }
    }
    return lText;
}

} // namespace

std::string ToUtf8(std::wstring_view iText)
{
    return QBase::WideCharToUTF8(std::wstring(iText).c_str(), false);
}

void AppendUtf8(std::wstring_view iText, std::string& oUtf8)
{
    unsigned long lAll = 0;
    for (const wchar_t lCharacter : iText) // the compiler takes many at a time, here and below
    {
        lAll |= static_cast<unsigned int>(lCharacter);
    }
    if (lAll >= 0x80)
    {
        oUtf8 += ToUtf8(iText);
        return;
    }
    const std::size_t lSize = oUtf8.size();
    oUtf8.resize(lSize + iText.size());
    std::transform(iText.begin(), iText.end(), oUtf8.begin() + static_cast<std::ptrdiff_t>(lSize),
                   [](wchar_t iCharacter) { return static_cast<char>(iCharacter); });
}

void AppendWide(std::string_view iUtf8, std::wstring& oText)
{
    constexpr std::size_t lBlock = std::size_t{1} << 14;
    while (!iUtf8.empty())
    {
        std::size_t lStop = std::min(lBlock, iUtf8.size());
        while (lStop < iUtf8.size() && (static_cast<unsigned char>(iUtf8[lStop]) & 0xC0U) == 0x80)
        {
            ++lStop; // up to the end of a character
        }
        oText += QBase::UTF8ToWideChar(iUtf8.substr(0, lStop), true);
        iUtf8.remove_prefix(lStop);
    }
}

bool IsInvisibleBeyondAscii(wchar_t iCharacter)
{
    const unsigned long lCode = static_cast<unsigned int>(iCharacter);
    return std::any_of(std::begin(gControls), std::end(gControls),
                       [lCode](const Range& iRange) { return lCode >= iRange.mFirst && lCode <= iRange.mLast; });
}

std::wstring ReadArgument(const std::string& iArgument, const std::string& iWhat)
{
    try
    {
        return QBase::UTF8ToWideChar(iArgument, true);
    }
    catch (const QBase::Message&)
    {
        throw UsageError(iWhat + " is not UTF-8");
    }
}

std::wstring MakePrintable(std::wstring_view iText)
{
    return Escape(iText, L"\\\n\r\t", L"\\nrt");
}

std::wstring MakeControlsPrintable(std::wstring_view iText)
{
    return Escape(iText, L"\n\r\t", L"nrt");
}

std::wstring MakeSafe(std::wstring_view iText)
{
    return Escape(iText, L"", L"", L"\n\t");
}

std::size_t GetWidth(std::wstring_view iText)
{
    const Utf8Locale lLocale;
    std::size_t lWidth = 0;
    for (const wchar_t lCharacter : iText)
    {
        const int lColumns = ::wcwidth(lCharacter);
        lWidth += static_cast<std::size_t>(std::max(lColumns, 0));
    }
    return lWidth;
}

std::string CutToWidth(const std::string& iText, std::size_t iColumns)
{
    const std::wstring lText = QBase::UTF8ToWideChar(iText, false);
    if (iColumns == 0 || iText.size() <= iColumns || GetWidth(lText) <= iColumns)
    {
        return iText;
    }
    std::size_t lCount = 0;
    const Utf8Locale lLocale;
    for (std::size_t lUsed = 1; lCount < lText.size(); ++lCount) // 1: the ellipsis
    {
        lUsed += static_cast<std::size_t>(std::max(::wcwidth(lText[lCount]), 0));
        if (lUsed > iColumns)
        {
            break;
        }
    }
    return ToUtf8(std::wstring_view(lText).substr(0, lCount)) + "…";
}

std::string ShowFile(const std::string& iFile)
{
    const auto lIsPlain = [](char iByte) { return iByte >= ' ' && iByte <= '~' && iByte != '\\'; };
    if (iFile.size() > 1 && std::all_of(iFile.begin(), iFile.end(), lIsPlain)) // mostly
    {
        return iFile;
    }
    return iFile == "-" ? "(standard input)" : ToUtf8(MakePrintable(QBase::UTF8ToWideChar(iFile, false)));
}

std::string Count(std::size_t iCount, const std::string& iOne, const std::string& iMany)
{
    return std::to_string(iCount) + " " + (iCount == 1 ? iOne : iMany);
}

std::string Count(std::size_t iCount, const std::string& iOne)
{
    return Count(iCount, iOne, iOne + "s");
}

} // namespace TalBaseTool
