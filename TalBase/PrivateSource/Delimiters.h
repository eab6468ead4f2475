// What the bag's own sources share about delimiters: the rules for a pair, the escaping under the default pair, and
// when a nest that was read can be kept as it is.

#ifndef TALBASE_PRIVATESOURCE_DELIMITERS_H
#define TALBASE_PRIVATESOURCE_DELIMITERS_H

#include "TalBase/PrivateSource/TextPrimitives.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace QTalBase
{

struct DelimiterPair
{
    std::wstring_view mBegin;
    std::wstring_view mEnd;
};

// Throws for a pair that no bag may have; the texts are in TalBase/PropertyBag.h, at GetString.
void CheckValidityOfDelimiters(const DelimiterPair& iPair);

// Whether the pair, which must be a bag's own, equals the texts at BEGIN and END now.
bool AreDefaultDelimiters(const DelimiterPair& iPair) noexcept;

// The number of characters that escaping replaces.
std::size_t CountEscapable(std::wstring_view iValue) noexcept;

// Writes the escaped value, which is 4 characters longer for each that CountEscapable counts.
void WriteEscaped(std::wstring_view iValue, wchar_t* opTarget) noexcept;
std::wstring Escaped(std::wstring_view iValue);

// Whether a value has to be unescaped when it is read by name. Also true for "&#42" and "&#43" without the semicolon,
// of which unescaping replaces nothing.
bool ContainsEscapeStart(std::wstring_view iValue) noexcept;
inline bool TriggersUnescaping(std::wstring_view iValue) noexcept
{
    return Contains(iValue, L'&') && ContainsEscapeStart(iValue); // mostly there is not even an ampersand
}
std::wstring Unescaped(std::wstring_view iValue);

// A header names E, 14 characters, B, E. It gives back the pair where E has no letter of "BeginDelimiter" and B no
// character of E. A pair that came from a header always has this property.
bool CanHeaderCarry(const DelimiterPair& iPair);

// Whether escaping a value cannot change where the delimiters around it are found: no character of an escape occurs in
// the pair. True for the initial defaults; only re-pointed ones can differ.
bool IsNeutralToEscapes(const DelimiterPair& iPair) noexcept;

// Whether the pair alone makes the text of every nest that is read with it read back as the nest.
bool IsEveryNestFinal(const DelimiterPair& iPair);

// Reads a header. Returns the position of the content, in 32-bit arithmetic, 0 where there is no header; with one, the
// pair becomes the header's, as views into the text. Throws as PropertyBag::AddString tells; opPosition then gets the
// position of what is wrong.
unsigned int ReadHeader(std::wstring_view iText, DelimiterPair& oPair, std::size_t* opPosition = nullptr);

inline constexpr std::wstring_view gHeaderEndWord = L"EndDelimiter";
inline constexpr std::wstring_view gHeaderBeginWord = L"BeginDelimiter";

} // namespace QTalBase

#endif
