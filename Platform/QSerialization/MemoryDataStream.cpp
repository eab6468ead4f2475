// Little-endian throughout; a flag is one byte, 0 or 1; a text is a 32-bit count and four bytes for each character.

#include "QSerialization/MemoryDataStream.h"

#include <cstdint>
#include <cwchar>
#include <limits>
#include <string>

namespace QSerialization
{

namespace
{

[[noreturn]] void Throw(const wchar_t* ipText)
{
    QBase::Message lMessage;
    lMessage.SetDomainAndID(QBase::MESSAGE_DOMAIN_UNKNOWN, -1);
    lMessage.SetMessage(ipText);
    throw QBase::ExceptionImpl<StreamException>(lMessage);
}

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
    for (std::size_t lIndex = sizeof(Value); lIndex-- > 0;)
    {
        lValue = static_cast<Value>(lValue << 8 | std::to_integer<Value>(ipBytes[lIndex]));
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

const std::size_t gCharacterSize = sizeof(std::uint32_t);

} // namespace

StreamException::StreamException(const QBase::Message& iMessage) : QBase::Message(iMessage)
{
}

StreamException::~StreamException() = default;

MemoryWriteDataStream::MemoryWriteDataStream() = default;

MemoryWriteDataStream::~MemoryWriteDataStream() = default;

void MemoryWriteDataStream::WriteWString(const wchar_t* ipText)
{
    const std::size_t lLength = std::wcslen(ipText);
    if (lLength > std::numeric_limits<std::uint32_t>::max())
    {
        Throw(L"QSerialization::MemoryWriteDataStream::WriteWString; The text is too long");
    }
    const std::size_t lStart = mBytes.size();
    mBytes.resize(lStart + gCharacterSize + lLength * gCharacterSize);
    std::byte* lpBytes = mBytes.data() + lStart;
    Encode(static_cast<std::uint32_t>(lLength), lpBytes);
    for (std::size_t lIndex = 0; lIndex < lLength; ++lIndex)
    {
        lpBytes += gCharacterSize;
        Encode(static_cast<std::uint32_t>(ipText[lIndex]), lpBytes);
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

namespace
{

const wchar_t gTooEarly[] = L"QSerialization::MemoryReadDataStream; The data ends too early";

void Require(std::size_t iRemaining, std::size_t iSize)
{
    if (iRemaining < iSize)
    {
        Throw(gTooEarly);
    }
}

} // namespace

void MemoryReadDataStream::ReadBool(bool& oValue)
{
    Require(mRemaining, 1);
    const std::uint8_t lFlag = Decode<std::uint8_t>(mPosition);
    if (lFlag > 1)
    {
        Throw(L"QSerialization::MemoryReadDataStream::ReadBool; The flag is neither 0 nor 1");
    }
    oValue = lFlag == 1;
    mPosition += 1;
    mRemaining -= 1;
}

void MemoryReadDataStream::ReadUInt32(unsigned int& oValue)
{
    Require(mRemaining, sizeof(std::uint32_t));
    oValue = Decode<std::uint32_t>(mPosition);
    mPosition += sizeof(std::uint32_t);
    mRemaining -= sizeof(std::uint32_t);
}

void MemoryReadDataStream::ReadUInt64(unsigned long& oValue)
{
    Require(mRemaining, sizeof(std::uint64_t));
    oValue = Decode<std::uint64_t>(mPosition);
    mPosition += sizeof(std::uint64_t);
    mRemaining -= sizeof(std::uint64_t);
}

QBase::ReturnWString MemoryReadDataStream::ReadWString()
{
    Require(mRemaining, sizeof(std::uint32_t));
    const std::size_t lLength = Decode<std::uint32_t>(mPosition);
    // Before anything is allocated: a damaged count must not cost memory.
    Require((mRemaining - sizeof(std::uint32_t)) / gCharacterSize, lLength);
    std::wstring lText(lLength, L'\0');
    const std::byte* lpBytes = mPosition + sizeof(std::uint32_t);
    for (std::size_t lIndex = 0; lIndex < lLength; ++lIndex)
    {
        lText[lIndex] = static_cast<wchar_t>(Decode<std::uint32_t>(lpBytes + lIndex * gCharacterSize));
    }
    const std::size_t lSize = sizeof(std::uint32_t) + lLength * gCharacterSize;
    mPosition += lSize;
    mRemaining -= lSize;
    return lText.empty() ? QBase::ReturnWString(L"") : QBase::ReturnWString(std::move(lText));
}

std::size_t MemoryReadDataStream::GetRemaining() const
{
    return mRemaining;
}

} // namespace QSerialization
