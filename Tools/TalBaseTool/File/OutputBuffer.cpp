#include "File/OutputBuffer.h"

#include <cerrno>
#include <unistd.h>

namespace TalBaseTool
{

namespace
{

constexpr std::size_t gSize = std::size_t{1} << 16;

} // namespace

OutputBuffer::OutputBuffer(int iDescriptor) : mDescriptor(iDescriptor), mBuffer(gSize)
{
    setp(mBuffer.data(), mBuffer.data() + mBuffer.size());
}

OutputBuffer::~OutputBuffer()
{
    OutputBuffer::sync();
}

OutputBuffer::int_type OutputBuffer::overflow(int_type iCharacter)
{
    if (OutputBuffer::sync() != 0)
    {
        return traits_type::eof();
    }
    if (!traits_type::eq_int_type(iCharacter, traits_type::eof()))
    {
        sputc(traits_type::to_char_type(iCharacter));
    }
    return traits_type::not_eof(iCharacter);
}

std::streamsize OutputBuffer::xsputn(const char* ipText, std::streamsize iCount)
{
    if (iCount < epptr() - pptr())
    {
        return std::streambuf::xsputn(ipText, iCount);
    }
    const bool lIsWritten = OutputBuffer::sync() == 0 && hWrite(ipText, static_cast<std::size_t>(iCount));
    return lIsWritten ? iCount : 0;
}

int OutputBuffer::sync()
{
    const bool lIsWritten = hWrite(pbase(), static_cast<std::size_t>(pptr() - pbase()));
    setp(mBuffer.data(), mBuffer.data() + mBuffer.size());
    return lIsWritten ? 0 : -1;
}

// What comes after a failure would stand in the wrong place.
bool OutputBuffer::hWrite(const char* ipText, std::size_t iCount)
{
    for (std::size_t lDone = 0; lDone < iCount && mError == 0;)
    {
        const ssize_t lWritten = ::write(mDescriptor, ipText + lDone, iCount - lDone);
        if (lWritten < 0 && errno != EINTR)
        {
            mError = errno;
        }
        lDone += lWritten > 0 ? static_cast<std::size_t>(lWritten) : 0;
    }
    return mError == 0;
}

} // namespace TalBaseTool
