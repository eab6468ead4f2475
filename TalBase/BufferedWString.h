// A growable wide-character buffer for building long texts piece by piece. Its capacity grows by a fixed step that its
// creator chooses and never shrinks; the arithmetic of the capacity is part of the contract, and the memory is that of
// the capacity and a terminator, no more. Reference counted (a new buffer has count 0; the first QBase::SmartPtrI takes
// the first reference), not serializable. One thread at a time may use a buffer, except that references may be taken
// and dropped from any thread.
//
// Time. Every growth takes new memory and copies what is held, so n characters put together piece by piece with an
// increment of i take time that grows with n * n / i. A million characters, ten at a time into a buffer that began
// empty, took 2 s with an increment of 100, 0.7 s with 300, 0.2 s with 1,000, 24 ms with 10,000 and 1 ms with that of
// the default. Choose an initial size that fits the text, or an increment that is a good part of it.

#ifndef TALBASE_BUFFEREDWSTRING_H
#define TALBASE_BUFFEREDWSTRING_H

#include "QBase/ReferenceCounted.h"
#include "QBase/ReturnWString.h"
#include "TalBase/Export.h"

#include <cstddef>
#include <string>

namespace QTalBase
{

class TALBASE_EXPORT BufferedWString : public virtual QBase::ReferenceCounted
{
public:
    ~BufferedWString() override;

    // Append a text at the end. The text may lie inside the buffer itself (`*lBuffer += lBuffer->c_str()`) and is
    // appended as it was before the call. The pointer may not be null; its text ends at the first zero character,
    // while the two string types are appended whole, embedded zero characters included.
    //
    // When the free space is too small, the capacity grows by the smallest whole number of increments that makes room;
    // appending an empty text never grows it. Throws std::bad_alloc when memory runs out, std::length_error or
    // std::bad_alloc when the new capacity cannot be represented; text, size and capacity are then unchanged.
    virtual void operator+=(const wchar_t* ipText) = 0;
    virtual void operator+=(const std::wstring& iText) = 0;
    virtual void operator+=(const QBase::ReturnWString& iText) = 0;

    // Returns the text, always terminated by a zero character. Valid until the next append or the end of the buffer.
    virtual const wchar_t* c_str() const = 0;

    // Returns the number of characters appended so far.
    virtual std::size_t size() const = 0;

    // Returns the number of characters that fit without growing, the terminator not counted.
    virtual std::size_t capacity() const = 0;
};

// Creates an empty buffer with a capacity and an increment of 524,288 characters, for very long texts. Reference count
// 0. Throws std::bad_alloc.
TALBASE_EXPORT BufferedWString* CreateBufferedWString();

// Creates an empty buffer. iInitialSize: its capacity in characters. iIncrement: the growth step in characters, 0 for
// the same as iInitialSize. Reference count 0. Throws std::invalid_argument when both are 0, and std::bad_alloc or
// std::length_error when the capacity cannot be had.
TALBASE_EXPORT BufferedWString* CreateBufferedWString(std::size_t iInitialSize, std::size_t iIncrement);

} // namespace QTalBase

#endif
