// Conversions between numbers, wide texts and UTF-8. They keep no state, depend on no locale and may be called from any
// thread. What they return is the caller's own.

#ifndef QBASE_CONVERT_H
#define QBASE_CONVERT_H

#include "QBase/Export.h"
#include "QBase/ReturnWString.h"

#include <string>
#include <string_view>

namespace QBase
{

// Returns the decimal digits, with a minus sign for a negative value. Throws std::bad_alloc.
Q8_EXPORT ReturnWString ToDecimalWString(int iValue);

// Reads leading blanks (space, tab, line feed, vertical tab, form feed, carriage return), an optional sign, and then
// decimal digits up to the first other character. No digits give 0; out of range gives the nearest int. ipText may not
// be null. Never throws; a text that is no number is not an error.
Q8_EXPORT int DecimalToInt(const wchar_t* ipText);

// Returns the text in UTF-8. A code point that UTF-8 cannot carry (a surrogate, above U+10FFFF) becomes U+FFFD or, with
// iStrict, throws ExceptionImpl<Message> "QBase::WideCharToUTF8; UTF-8 cannot carry the character at index " followed
// by the position of the first such character, in decimal and counted from 0. ipText may not be null. Throws
// std::bad_alloc.
Q8_EXPORT std::string WideCharToUTF8(const wchar_t* ipText, bool iStrict);

// Returns the text of UTF-8 bytes, zero bytes included; a byte order mark is a character like others. Ill-formed input
// gives one U+FFFD for each maximal subpart, as the Unicode standard recommends: for the longest piece that begins a
// well-formed sequence, or else for a single byte. With iStrict it throws ExceptionImpl<Message>
// "QBase::UTF8ToWideChar; Ill-formed UTF-8 at byte offset " followed by the place, in decimal and counted from 0, where
// the first such piece begins. Throws std::bad_alloc.
Q8_EXPORT std::wstring UTF8ToWideChar(std::string_view iText, bool iStrict);

} // namespace QBase

#endif
