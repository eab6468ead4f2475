// How a command ends, and the kinds of trouble that the tool itself reports, next to the library's own messages
// (QBase::Message), which count as bad data.

#ifndef TALBASETOOL_TEXT_ERRORS_H
#define TALBASETOOL_TEXT_ERRORS_H

#include <cstddef>
#include <stdexcept>
#include <string>
#include <utility>

namespace TalBaseTool
{

enum ExitStatus
{
    ExitGood = 0,
    ExitBad = 1,    // a text is invalid, two bags differ, a property is not there
    ExitTrouble = 2 // wrong usage, or the system refused
};

// What was read is not what it should be, or what was asked for cannot be kept in a bag.
class DataError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// The same at a place of a file, with which its message begins: "job.bag:3:17: ".
class TextError : public DataError
{
public:
    using DataError::DataError;
};

// A text that is none because of a byte, with all that was read of it. Nothing of it is in the message.
class EncodingError : public TextError
{
public:
    // iPlace: of what stands for the byte in the text.
    EncodingError(const std::string& iMessage, std::wstring iText, std::size_t iPlace)
        : TextError(iMessage), mText(std::move(iText)), mPlace(iPlace)
    {
    }

    const std::wstring& GetText() const
    {
        return mText;
    }

    std::size_t GetPlace() const
    {
        return mPlace;
    }

private:
    std::wstring mText;
    std::size_t mPlace;
};

// The arguments make no sense.
class UsageError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// What was asked for may not be done, lest a secret gets out.
class RefusedError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// The operating system refused: a file that cannot be read or written.
class IoError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

} // namespace TalBaseTool

#endif
