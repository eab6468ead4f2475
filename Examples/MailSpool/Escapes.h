// What a bag, or the text form in which it is kept, cannot carry as it stands, and the way round it. A bag with the
// default delimiters writes '*' and '+' of a value as "&#42;" and "&#43;"; the spooler goes on in the same manner and
// writes whatever else needs it as a reference to the character's number.
//
// In a value:
//  - the empty value, because a bag takes setting a property to the empty text as removing it: "&#;", a reference to
//    no character;
//  - '&', because a value that holds "&#42;" already is stored as it is and read back as '*': "&#38;". With no '&' of
//    its own left, a value holds no reference but those that were put in;
//  - the zero character, because it ends every text that is handed to the library: "&#0;".
//
// In a name:
//  - the same three;
//  - '*' and '+', because a bag refuses a name that holds a delimiter, and because a name that ends with '+' would run
//    into the delimiter behind it ("a+" before "++++" is read as "a" before "++++" and a '+' of the value);
//  - the 'E' of a name that begins with "EndDelimiter", because a nested bag is written without a header, and a text
//    that begins with that word is read as if it had one.

#ifndef MAILSPOOL_ESCAPES_H
#define MAILSPOOL_ESCAPES_H

#include <string>
#include <string_view>

namespace MailSpool
{

std::wstring EscapeValue(std::wstring_view iValue);
std::wstring EscapeName(std::wstring_view iName);

// The way back for both. Text that is no reference is left as it is.
std::wstring Unescape(std::wstring_view iText);

} // namespace MailSpool

#endif
