// The bytes of one test, taken from the front. Behind the last one there are zeros without end.

#ifndef TALBASE_FUZZ_SUPPORT_INPUT_H
#define TALBASE_FUZZ_SUPPORT_INPUT_H

#include <cstddef>
#include <cstdint>
#include <string>

namespace Fuzz
{

class Input
{
public:
    Input(const std::uint8_t* ipBytes, std::size_t iSize) : mBytes(ipBytes), mLeft(iSize) {}

    bool IsAtEnd() const
    {
        return mLeft == 0;
    }

    std::uint8_t Byte();

    // A number below iLimit, which is at least 1 and at most 256.
    unsigned int Below(unsigned int iLimit)
    {
        return Byte() % iLimit;
    }

    // Little-endian.
    std::uint32_t UInt32();
    std::uint64_t UInt64();

    // Up to so many bytes, or all that are left.
    std::string Bytes(std::size_t iMost);
    std::string Rest()
    {
        return Bytes(mLeft);
    }

    // All that is left as wide characters, in one of several encodings that the next byte names: a byte, or two, or
    // four for each, or UTF-8. Any of the 32-bit values may come out but zero, which would end the text.
    std::wstring WideRest();

private:
    std::wstring hFixedWidth(std::size_t iWidth);

    const std::uint8_t* mBytes;
    std::size_t mLeft;
};

} // namespace Fuzz

#endif
