// Texts on their way in and out: arguments and output are UTF-8 whatever the locale says, and what is shown can't move
// the cursor, switch colours or turn the direction of writing round.

#ifndef TALBASETOOL_TEXT_TEXT_H
#define TALBASETOOL_TEXT_TEXT_H

#include <cstddef>
#include <string>
#include <string_view>

namespace TalBaseTool
{

std::string ToUtf8(std::wstring_view iText);
void AppendUtf8(std::wstring_view iText, std::string& oUtf8);

// The same for a text of visible ASCII and blanks of which iIsPlain says, character by character, that it stands for
// itself. Otherwise appends nothing and returns false: so most texts are looked at while they are copied.
template <class IsPlain>
bool AppendPlain(std::wstring_view iText, std::string& oUtf8, const IsPlain& iIsPlain)
{
    const std::size_t lSize = oUtf8.size();
    oUtf8.resize(lSize + iText.size());
    char* lTo = oUtf8.data() + lSize;
    unsigned int lOthers = 0;
    for (const wchar_t lCharacter : iText) // to the end, so that the compiler takes many at a time
    {
        const auto lCode = static_cast<unsigned int>(lCharacter);
        lOthers |= static_cast<unsigned int>(lCode - L' ' > L'~' - L' ');
        lOthers |= static_cast<unsigned int>(!iIsPlain(lCharacter));
        *lTo++ = static_cast<char>(lCode);
    }
    oUtf8.resize(lOthers == 0 ? oUtf8.size() : lSize);
    return lOthers == 0;
}

// Whether a character is a control, or changes how the text around it is laid out, or has no shape of its own.
bool IsInvisibleBeyondAscii(wchar_t iCharacter);
inline bool IsInvisible(wchar_t iCharacter)
{
    return iCharacter < L' ' || (iCharacter > L'~' && IsInvisibleBeyondAscii(iCharacter));
}

// Appends the text of well-formed UTF-8, piece by piece.
void AppendWide(std::string_view iUtf8, std::wstring& oText);

// An argument of the command line. Throws UsageError, with iWhat for its name, where it is not UTF-8.
std::wstring ReadArgument(const std::string& iArgument, const std::string& iWhat);

// The text with a backslash as "\\", line end, return and tab as "\n", "\r" and "\t", and every other control
// character, C1 and directional ones included, as "\x1b" or "\u202e".
std::wstring MakePrintable(std::wstring_view iText);

// The same with backslashes as they are, for a text that gives them a meaning of its own.
std::wstring MakeControlsPrintable(std::wstring_view iText);

// The same with line ends and tabs as they are, too, for whole texts.
std::wstring MakeSafe(std::wstring_view iText);

// The number of columns that a printable text takes on a terminal.
std::size_t GetWidth(std::wstring_view iText);

// What of a printable UTF-8 text fits into a number of columns; an ellipsis stands for the rest. 0: all of it.
std::string CutToWidth(const std::string& iText, std::size_t iColumns);

// The name of a file as it may be shown; "-" is standard input.
std::string ShowFile(const std::string& iFile);

// "1 property", "2 properties", "1 bag", "2 bags"
std::string Count(std::size_t iCount, const std::string& iOne, const std::string& iMany);
std::string Count(std::size_t iCount, const std::string& iOne);

} // namespace TalBaseTool

#endif
