// An owned wide text that is returned by value, read by the caller and then let go. May hold zero characters inside; it
// is always terminated by one more. Values, not shared: one thread at a time, like a standard string.

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

    // Copies iLength characters, whatever they are. Throws std::bad_alloc.
    ReturnWString(const wchar_t* ipText, std::size_t iLength);

    // Takes over a standard string. Never throws.
    ReturnWString(std::wstring&& iText) noexcept;

    ReturnWString(const ReturnWString& iOther);
    ReturnWString(ReturnWString&& iOther) noexcept; // iOther is empty afterwards
    ReturnWString& operator=(const ReturnWString& iOther);
    ReturnWString& operator=(ReturnWString&& iOther) noexcept;
    ~ReturnWString();

    // Returns the characters, terminated; valid while this object lives and is not assigned to.
    const wchar_t* c_str() const noexcept;

    // Returns the number of characters, the terminator not counted.
    std::size_t GetLength() const noexcept;

    operator std::wstring_view() const noexcept
    {
        return {c_str(), GetLength()};
    }

private:
    std::wstring mText;
};

} // namespace QBase

#endif
