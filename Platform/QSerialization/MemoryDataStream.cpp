// Little-endian throughout; a flag is one byte, 0 or 1; a text is a 32-bit count and four bytes for each character.

#include "QSerialization/MemoryDataStream.h"

#include "PrivateSource/Throw.h"

#include <cstdint>
#include <cwchar>
#include <limits>
#include <string>
#include <utility>

namespace QSerialization
{

namespace
{

const wchar_t gTextTooLong[] = L"QSerialization::MemoryWriteDataStream::WriteWString; The text is too long";
const wchar_t gNoFlag[] = L"QSerialization::MemoryReadDataStream::ReadBool; The flag is neither 0 nor 1";
const wchar_t gBoolTooEarly[] = L"QSerialization::MemoryReadDataStream::ReadBool; The data ends too early";
const wchar_t gUInt32TooEarly[] = L"QSerialization::MemoryReadDataStream::ReadUInt32; The data ends too early";
const wchar_t gUInt64TooEarly[] = L"QSerialization::MemoryReadDataStream::ReadUInt64; The data ends too early";
const wchar_t gWStringTooEarly[] = L"QSerialization::MemoryReadDataStream::ReadWString; The data ends too early";

const std::size_t gCountSize = sizeof(std::uint32_t);
const std::size_t gCharacterSize = sizeof(std::uint32_t);
const std::size_t gMaximalLength = std::numeric_limits<std::uint32_t>::max();

// Shifts instead of copies, so that the byte order of the machine does not matter; compilers make one move of it.
template <class Value>
void Encode(Value iValue, std::byte* opBytes)
{
    for (std::size_t lIndex = 0; lIndex < sizeof(Value); ++lIndex)
    {
        opBytes[lIndex] = static_cast<std::byte>(iValue >> (8 * lIndex) & 0xFF);
    }
}

template <class Value>
Value Decode(const std::byte* ipBytes)
{
    Value lValue = 0;
    for (std::size_t lIndex = 0; lIndex < sizeof(Value); ++lIndex)
    {
        lValue |= static_cast<Value>(std::to_integer<Value>(ipBytes[lIndex]) << (8 * lIndex));
    }
    return lValue;
}

template <class Value>
void Append(std::vector<std::byte>& oBytes, Value iValue)
{
    std::byte lBytes[sizeof(Value)];
    Encode(iValue, lBytes);
    oBytes.insert(oBytes.end(), lBytes, lBytes + sizeof(Value));
}

void Require(bool iIsThere, const wchar_t* ipText)
{
    if (!iIsThere)
    {
        QBase::Throw<StreamException>(ipText);
    }
}

} // namespace

StreamException::StreamException(const QBase::Message& iMessage) : QBase::Message(iMessage) {}

StreamException::~StreamException() = default;

MemoryWriteDataStream::MemoryWriteDataStream() = default;

MemoryWriteDataStream::~MemoryWriteDataStream() = default;

void MemoryWriteDataStream::WriteWString(const wchar_t* ipText)
{
    const std::size_t lLength = ::wcsnlen(ipText, gMaximalLength + 1);
    Require(lLength <= gMaximalLength, gTextTooLong);
    const std::size_t lStart = mBytes.size();
    mBytes.resize(lStart + gCountSize + lLength * gCharacterSize);
    std::byte* lBytes = mBytes.data() + lStart;
    Encode(static_cast<std::uint32_t>(lLength), lBytes);
    lBytes += gCountSize;
    for (std::size_t lIndex = 0; lIndex < lLength; ++lIndex)
    {
        Encode(static_cast<std::uint32_t>(ipText[lIndex]), lBytes + lIndex * gCharacterSize);
    }
}

void MemoryWriteDataStream::WriteBool(bool iValue)
{
    mBytes.push_back(static_cast<std::byte>(iValue ? 1 : 0));
}

void MemoryWriteDataStream::WriteUInt32(unsigned int iValue)
{
    Append(mBytes, static_cast<std::uint32_t>(iValue));
}

void MemoryWriteDataStream::WriteUInt64(unsigned long iValue)
{
    Append(mBytes, static_cast<std::uint64_t>(iValue));
}

const std::vector<std::byte>& MemoryWriteDataStream::GetBytes() const
{
    return mBytes;
}

MemoryReadDataStream::MemoryReadDataStream(const void* ipBytes, std::size_t iSize)
    : mPosition(static_cast<const std::byte*>(ipBytes)), mRemaining(iSize)
{
}

MemoryReadDataStream::~MemoryReadDataStream() = default;

void MemoryReadDataStream::ReadBool(bool& oValue)
{
    Require(mRemaining >= 1, gBoolTooEarly);
    const std::uint8_t lFlag = std::to_integer<std::uint8_t>(*mPosition);
    Require(lFlag <= 1, gNoFlag);
    oValue = lFlag == 1;
    mPosition += 1;
    mRemaining -= 1;
}

void MemoryReadDataStream::ReadUInt32(unsigned int& oValue)
{
    Require(mRemaining >= sizeof(std::uint32_t), gUInt32TooEarly);
    oValue = Decode<std::uint32_t>(mPosition);
    mPosition += sizeof(std::uint32_t);
    mRemaining -= sizeof(std::uint32_t);
}

void MemoryReadDataStream::ReadUInt64(unsigned long& oValue)
{
    Require(mRemaining >= sizeof(std::uint64_t), gUInt64TooEarly);
    oValue = Decode<std::uint64_t>(mPosition);
    mPosition += sizeof(std::uint64_t);
    mRemaining -= sizeof(std::uint64_t);
}

QBase::ReturnWString MemoryReadDataStream::ReadWString()
{
    Require(mRemaining >= gCountSize, gWStringTooEarly);
    const std::size_t lLength = Decode<std::uint32_t>(mPosition);
    // Divided, not multiplied, so that no count can overflow; and before a damaged count could cost memory.
    Require(lLength <= (mRemaining - gCountSize) / gCharacterSize, gWStringTooEarly);
    std::wstring lText(lLength, L'\0');
    const std::byte* lBytes = mPosition + gCountSize;
    for (std::size_t lIndex = 0; lIndex < lLength; ++lIndex)
    {
        lText[lIndex] = static_cast<wchar_t>(Decode<std::uint32_t>(lBytes + lIndex * gCharacterSize));
    }
    mPosition = lBytes + lLength * gCharacterSize;
    mRemaining -= gCountSize + lLength * gCharacterSize;
    return {std::move(lText)};
}

std::size_t MemoryReadDataStream::GetRemaining() const
{
    return mRemaining;
}

} // namespace QSerialization
