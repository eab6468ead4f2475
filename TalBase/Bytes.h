// Bags as the bytes that services send each other: their text form in UTF-8, in one step each way. For whoever receives
// or sends bags; who wants the text itself has it from PropertyBag and converts it with QBase/Convert.h.
//
// The functions keep no state and may be called from any thread.

#ifndef TALBASE_BYTES_H
#define TALBASE_BYTES_H

#include "TalBase/Export.h"

#include <string>
#include <string_view>

namespace QTalBase
{

class PropertyBag;

// Creates the bag that CreatePropertyBag(text) creates of the text that the bytes are, from a text form with a header
// or from no bytes at all; the first byte is the text's first, so a byte order mark is not skipped. Reference count 0.
//
// Bytes that are no such text are refused, and of several reasons the first in the bytes counts: bytes that are not
// UTF-8 throw ExceptionImpl<Message> "QBase::UTF8ToWideChar; Ill-formed UTF-8 at byte offset " + offset, and a zero
// byte, behind which CreatePropertyBag would read nothing, throws PropertyBagException
// "QTalBase::CreatePropertyBagFromUTF8; Zero byte at offset " + offset. Throws what CreatePropertyBag(text) throws, and
// std::bad_alloc; then nothing was created.
TALBASE_EXPORT PropertyBag* CreatePropertyBagFromUTF8(std::string_view iBytes);

// Returns iBag.GetString(true, nullptr, nullptr, true) in UTF-8: with a header, and with all that is sensitive. Throws
// what GetString throws, std::bad_alloc, and for a character that UTF-8 cannot carry ExceptionImpl<Message>
// "QBase::WideCharToUTF8; UTF-8 cannot carry the character at index " + its index in that text.
TALBASE_EXPORT std::string PropertyBagToUTF8(const PropertyBag& iBag);

} // namespace QTalBase

#endif
