// Conversions between numbers, wide texts and UTF-8. No state; any thread.

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
// be null. Never throws.
Q8_EXPORT int DecimalToInt(const wchar_t* ipText);

// Returns the text in UTF-8. A code point that UTF-8 cannot carry (a surrogate, above U+10FFFF) becomes U+FFFD or, with
// iStrict, throws ExceptionImpl<Message> "QBase::WideCharToUTF8; UTF-8 cannot carry the character at index N", counted
// from 0. ipText may not be null. Throws std::bad_alloc.
Q8_EXPORT std::string WideCharToUTF8(const wchar_t* ipText, bool iStrict);

// Returns the text of UTF-8 bytes, zero bytes included. Ill-formed input gives one U+FFFD for each maximal subpart: the
// longest beginning of a well-formed sequence, or else one byte. With iStrict it throws ExceptionImpl<Message>
// "QBase::UTF8ToWideChar; Ill-formed UTF-8 at byte offset N", counted from 0, for the first such place. Throws
// std::bad_alloc.
Q8_EXPORT std::wstring UTF8ToWideChar(std::string_view iText, bool iStrict);

} // namespace QBase

#endif
