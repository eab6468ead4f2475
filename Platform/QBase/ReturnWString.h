// An owned wide text that an operation returns by value, and that the caller reads and then lets go. It may hold zero
// characters inside and is always terminated by one more. A value like a standard string: a copy has characters of its
// own, and one thread at a time uses an object.

#ifndef QBASE_RETURNWSTRING_H
#define QBASE_RETURNWSTRING_H

#include "QBase/Export.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace QBase
{

class Q8_EXPORT ReturnWString
{
public:
    // Copies a terminated text; null gives the empty text. Throws std::bad_alloc.
    ReturnWString(const wchar_t* ipText);

    // Copies iLength characters, whatever they are. ipText may be null where iLength is 0. Throws std::bad_alloc, or
    // std::length_error for a length that no text can have.
    ReturnWString(const wchar_t* ipText, std::size_t iLength);

    // Takes over the characters of a standard string. Never throws.
    ReturnWString(std::wstring&& iText) noexcept;

    // Copying throws std::bad_alloc, and leaves the target unchanged then. Moving never throws and leaves iOther with
    // the empty text, unless it is moved to itself.
    ReturnWString(const ReturnWString& iOther);
    ReturnWString(ReturnWString&& iOther) noexcept;
    ReturnWString& operator=(const ReturnWString& iOther);
    ReturnWString& operator=(ReturnWString&& iOther) noexcept;
    ~ReturnWString();

    // Returns the characters, terminated; never null. Valid while this object lives and is neither assigned to nor
    // moved from.
    const wchar_t* c_str() const noexcept;

    // Returns the number of characters, the terminator not counted.
    std::size_t GetLength() const noexcept;

    // Gives the characters as they are, zero characters included; valid as long as c_str.
    operator std::wstring_view() const noexcept
    {
        return {c_str(), GetLength()};
    }

private:
    std::wstring mText;
};

} // namespace QBase

#endif
