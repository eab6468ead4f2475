#include "Table.h"

#include "Charset.h"

#include <algorithm>
#include <cwchar>
#include <iterator>

namespace MailSpool
{

namespace
{

struct Range
{
    unsigned long mFirst;
    unsigned long mLast;
};

// The C library knows widths only for the current locale, and a service seldom has one that fits its mail. These ranges
// are coarse: enough to keep columns straight.
constexpr Range gZeroWidth[] = {{0x300, 0x36F},   {0x483, 0x489},   {0x591, 0x5BD},   {0x610, 0x61A},
                                {0x64B, 0x65F},   {0x1AB0, 0x1AFF}, {0x1DC0, 0x1DFF}, {0x200B, 0x200D},
                                {0x20D0, 0x20FF}, {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F}, {0xE0100, 0xE01EF}};
constexpr Range gDoubleWidth[] = {{0x1100, 0x115F},   {0x2E80, 0x303E},   {0x3041, 0xA4CF},  {0xAC00, 0xD7A3},
                                  {0xF900, 0xFAFF},   {0xFE30, 0xFE6F},   {0xFF00, 0xFF60},  {0xFFE0, 0xFFE6},
                                  {0x1F300, 0x1F64F}, {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD}};
constexpr Range gControls[] = {{0x0, 0x1F},      {0x7F, 0x9F},     {0xAD, 0xAD},       {0x61C, 0x61C},
                               {0x200E, 0x200F}, {0x2028, 0x202E}, {0x2060, 0x206F},   {0xD800, 0xDFFF},
                               {0xFEFF, 0xFEFF}, {0xFFF9, 0xFFFB}, {0xE0000, 0xE007F}, {0x110000, 0xFFFFFFFF}};

template <std::size_t iCount>
bool IsIn(const Range (&iRanges)[iCount], wchar_t iCharacter)
{
    const unsigned long lCode = static_cast<unsigned int>(iCharacter);
    return std::any_of(std::begin(iRanges), std::end(iRanges),
                       [lCode](const Range& iRange) { return lCode >= iRange.mFirst && lCode <= iRange.mLast; });
}

std::size_t GetCharacterWidth(wchar_t iCharacter)
{
    if (IsIn(gZeroWidth, iCharacter))
    {
        return 0;
    }
    return IsIn(gDoubleWidth, iCharacter) ? 2 : 1;
}

std::wstring Pad(const std::wstring& iText, std::size_t iWidth, bool iIsRightAligned)
{
    const std::wstring lBlanks(iWidth - std::min(iWidth, GetWidth(iText)), L' ');
    return iIsRightAligned ? lBlanks + iText : iText + lBlanks;
}

} // namespace

std::wstring MakePrintable(std::wstring_view iText)
{
    std::wstring lText;
    for (const wchar_t lCharacter : iText)
    {
        if (lCharacter == L'\t') // frequent in folded fields
        {
            lText += L' ';
        }
        else if (IsIn(gControls, lCharacter))
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

std::size_t GetWidth(std::wstring_view iText)
{
    std::size_t lWidth = 0;
    for (const wchar_t lCharacter : iText)
    {
        lWidth += GetCharacterWidth(lCharacter);
    }
    return lWidth;
}

std::wstring CutToWidth(std::wstring_view iText, std::size_t iWidth)
{
    if (GetWidth(iText) <= iWidth)
    {
        return std::wstring(iText);
    }
    std::size_t lWidth = 1; // the ellipsis
    std::wstring lText;
    for (const wchar_t lCharacter : iText)
    {
        lWidth += GetCharacterWidth(lCharacter);
        if (lWidth > iWidth)
        {
            break;
        }
        lText += lCharacter;
    }
    return lText + L'\u2026';
}

Table::Table(std::vector<Column> iColumns) : mColumns(std::move(iColumns)) {}

void Table::AddRow(const std::vector<std::wstring>& iTexts)
{
    std::vector<std::wstring> lRow;
    for (std::size_t lIndex = 0; lIndex < mColumns.size(); ++lIndex)
    {
        lRow.push_back(CutToWidth(MakePrintable(iTexts.at(lIndex)), mColumns[lIndex].mMaxWidth));
    }
    mRows.push_back(std::move(lRow));
}

void Table::Print(std::ostream& oStream) const
{
    std::wstring lHeads;
    std::wstring lLines;
    std::vector<std::wstring> lTexts(mRows.size());
    for (std::size_t lIndex = 0; lIndex < mColumns.size(); ++lIndex)
    {
        const Column& lColumn = mColumns[lIndex];
        std::size_t lWidth = GetWidth(lColumn.mHead);
        for (const std::vector<std::wstring>& lRow : mRows)
        {
            lWidth = std::max(lWidth, GetWidth(lRow[lIndex]));
        }
        const std::wstring lGap = lIndex > 0 ? L"  " : L"";
        lHeads += lGap + Pad(lColumn.mHead, lWidth, lColumn.mIsRightAligned);
        lLines += lGap + std::wstring(lWidth, L'-');
        for (std::size_t lRow = 0; lRow < mRows.size(); ++lRow)
        {
            lTexts[lRow] += lGap + Pad(mRows[lRow][lIndex], lWidth, lColumn.mIsRightAligned);
        }
    }
    lTexts.insert(lTexts.begin(), {lHeads, lLines});
    for (const std::wstring& lText : lTexts)
    {
        oStream << ToUtf8(lText.substr(0, lText.find_last_not_of(L' ') + 1)) << '\n';
    }
}

} // namespace MailSpool
