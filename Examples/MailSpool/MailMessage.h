// A message as it lies in a file, read the way RFC 5322 describes it and lenient where mail is not as described: an
// mbox "From " line before the header, lines that end with LF alone, header lines that are no fields. Nothing of the
// header's text and no byte of the body is dropped.

#ifndef MAILSPOOL_MAILMESSAGE_H
#define MAILSPOOL_MAILMESSAGE_H

#include "Charset.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace MailSpool
{

// One field of the header, unfolded. A header line that is no field (no colon, or no valid name before it) is kept
// under the empty name, with the whole line as its value.
struct HeaderField
{
    std::wstring mName;
    std::wstring mValue;
};

enum class LineEnding
{
    None,
    Lf,
    CrLf,
    Mixed
};

struct MailMessage
{
    std::wstring mMboxLine; // the "From " line without its line end; empty when there is none
    std::vector<HeaderField> mFields;
    std::wstring mBody; // everything behind the empty line, line ends as they are
    Charset mHeaderCharset = Charset::Utf8;
    Charset mBodyCharset = Charset::Utf8;
    LineEnding mLineEnding = LineEnding::None;
    std::size_t mSize = 0;    // bytes in the file
    bool mIsEightBit = false; // whether a byte above 127 is among them
};

// What a message may measure. A bag compares names one by one, and every character takes four bytes in memory several
// times over, so a spooler has to draw the line somewhere.
constexpr std::size_t gMaxMessageSize = std::size_t{16} * 1024 * 1024;
constexpr std::size_t gMaxHeaderFields = 10000;

// Reads a message. Throws DamageError when there is no header field at all, or when there are too many.
MailMessage ParseMessage(std::string_view iBytes);

// The first field of that name, in whatever case it is written; null when there is none.
const HeaderField* FindField(const MailMessage& iMessage, std::wstring_view iName);

// ASCII letters to lower case: field names and domains are compared in that form, whatever the locale.
std::wstring ToLower(std::wstring_view iText);

// The name under which a job remembers the line ends, and back. Throws DamageError for any other name.
const wchar_t* GetLineEndingName(LineEnding iLineEnding);
LineEnding GetLineEndingByName(std::wstring_view iName);

} // namespace MailSpool

#endif
