#include "MemoryTexts.h"

#include "Cases.h"

namespace Bench
{

namespace
{

// Texts, all with a header. The shortest delimiters let each character cost the most.

constexpr wchar_t gHeader[] = L"EndDelimiter***BeginDelimiter++++***";
constexpr wchar_t gShortHeader[] = L"EndDelimiter)BeginDelimiter()";

// The shortest names that differ.
std::wstring MakeName(std::size_t iNumber)
{
    constexpr wchar_t lDigits[] = L"0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
    std::wstring lName;
    do
    {
        lName += lDigits[iNumber % 62];
        iNumber /= 62;
    } while (iNumber != 0);
    return lName;
}

// Appends entries, each a name and a tail, until the text is long enough.
std::wstring MakeEntries(std::wstring iText, std::size_t iCharacters, const wchar_t* ipTail)
{
    for (std::size_t lNumber = 0; iText.size() < iCharacters; ++lNumber)
    {
        iText.append(MakeName(lNumber)).append(ipTail);
    }
    return iText;
}

std::wstring MakeDeep(std::size_t iCharacters)
{
    const std::size_t lLevels = iCharacters / 3;
    return gShortHeader + Repeat(lLevels, L"n(") + L"k(v)" + std::wstring(lLevels, L')');
}

std::wstring MakeDeepDefault(std::size_t iCharacters)
{
    const std::size_t lLevels = iCharacters / 12;
    return gHeader + Repeat(lLevels, L"Level++++") + L"Key++++v***" + Repeat(lLevels, L"***");
}

std::wstring MakeComb(std::size_t iCharacters)
{
    const std::size_t lLevels = iCharacters / 10;
    return gShortHeader + Repeat(lLevels, L"s(k(v))d(") + L"k(v)" + std::wstring(lLevels, L')');
}

std::wstring MakeNests(std::size_t iCharacters)
{
    return MakeEntries(gShortHeader, iCharacters, L"(k(v))");
}

std::wstring MakeEmptyNests(std::size_t iCharacters)
{
    return MakeEntries(gShortHeader, iCharacters, L"(e())");
}

std::wstring MakeProperties(std::size_t iCharacters)
{
    return MakeEntries(gShortHeader, iCharacters, L"(v)");
}

std::wstring MakeOneName(std::size_t iCharacters)
{
    return gShortHeader + Repeat(iCharacters / 4, L"n(v)");
}

std::wstring MakeAsterisks(std::size_t iCharacters)
{
    return gHeader + (L"n++++" + Repeat(iCharacters / 4, L"**++") + L"-***");
}

std::wstring MakeHalfEscapes(std::size_t iCharacters)
{
    return gHeader + (L"n++++" + std::wstring(iCharacters / 2, L'&') + Repeat(iCharacters / 8, L"&#42")) + L"&#43;***";
}

std::wstring MakeLongDelimiters(std::size_t iCharacters)
{
    const std::wstring lEnd = std::wstring(iCharacters / 6, L'x') + L'y';
    const std::wstring lBegin = std::wstring(iCharacters / 6, L'v') + L'w';
    return L"EndDelimiter" + lEnd + L"BeginDelimiter" + lBegin + lEnd + L"n" + lBegin + L"k" + lBegin + L"v" + lEnd +
           lEnd;
}

std::wstring MakeBigValue(std::size_t iCharacters)
{
    return gHeader + (L"n++++" + std::wstring(iCharacters, L'v')) + L"***";
}

// Of these no bag comes that one could work on.

std::wstring MakeEmptyValues(std::size_t iCharacters)
{
    return gShortHeader + Repeat(iCharacters / 3, L"e()");
}

// The message that refuses it carries it.
std::wstring MakeWithoutHeader(std::size_t iCharacters)
{
    return std::wstring(iCharacters, L'v');
}

std::wstring MakeNeverClosed(std::size_t iCharacters)
{
    return gShortHeader + Repeat(iCharacters / 2, L"n(");
}

std::wstring MakeClosedButOnce(std::size_t iCharacters)
{
    std::wstring lText = MakeDeep(iCharacters);
    lText.pop_back();
    return lText;
}

} // namespace

std::vector<MemoryText> MakeMemoryTexts()
{
    return {{"one nest in another, shortest", MakeDeep},
            {"one nest in another, default", MakeDeepDefault},
            {"open and close, going deeper", MakeComb},
            {"nests side by side", MakeNests},
            {"empty nests", MakeEmptyNests},
            {"tiny properties", MakeProperties},
            {"one name again and again", MakeOneName},
            {"asterisks and plus signs", MakeAsterisks},
            {"half escapes", MakeHalfEscapes},
            {"long delimiters", MakeLongDelimiters},
            {"one big value", MakeBigValue}};
}

std::vector<MemoryText> MakeUselessMemoryTexts()
{
    return {{"empty values", MakeEmptyValues},
            {"no header", MakeWithoutHeader},
            {"one nest in another, never closed", MakeNeverClosed},
            {"one nest in another, closed but once", MakeClosedButOnce}};
}

} // namespace Bench
