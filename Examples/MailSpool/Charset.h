// Between the bytes of a message and the wide text of a bag. What a message says about its character set is wrong too
// often to rely on, so a text is read as UTF-8 when all of it is well-formed UTF-8, and else as ISO 8859-1, where every
// byte is the character of the same number. Either way can be undone exactly, given the name of the way taken.

#ifndef MAILSPOOL_CHARSET_H
#define MAILSPOOL_CHARSET_H

#include <string>
#include <string_view>

namespace MailSpool
{

enum class Charset
{
    Utf8,
    Latin1
};

struct DecodedText
{
    std::wstring mText;
    Charset mCharset = Charset::Utf8;
};

// Never fails but for want of memory: any bytes at all can be read as ISO 8859-1.
DecodedText DecodeBytes(std::string_view iBytes);

// The way back: EncodeText(lDecoded.mText, lDecoded.mCharset) gives the bytes again. Throws DamageError for a character
// that the character set does not have, which text from DecodeBytes never holds.
std::string EncodeText(std::wstring_view iText, Charset iCharset);

// UTF-8 for printing: what UTF-8 cannot carry becomes U+FFFD.
std::string ToUtf8(std::wstring_view iText);

// The name under which a job remembers the way taken, and back. Throws DamageError for any other name.
const wchar_t* GetCharsetName(Charset iCharset);
Charset GetCharsetByName(std::wstring_view iName);

} // namespace MailSpool

#endif
