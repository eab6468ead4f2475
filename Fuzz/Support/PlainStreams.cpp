#include "Fuzz/Support/PlainStreams.h"

#include "QBase/Message.h"
#include "QSerialization/MemoryDataStream.h"
#include "Tests/Support/BrokenRule.h"

#include <cwchar>

namespace Fuzz
{

namespace
{

[[noreturn]] void ThrowStreamException(const wchar_t* ipOperation, const wchar_t* ipWhat)
{
    QBase::Message lMessage;
    lMessage.SetDomainAndID(QBase::MESSAGE_DOMAIN_UNKNOWN, -1);
    lMessage.SetMessage((std::wstring(L"QSerialization::MemoryReadDataStream::") + ipOperation + ipWhat).c_str());
    throw QBase::ExceptionImpl<QSerialization::StreamException>(lMessage);
}

std::string LittleEndian(std::uint64_t iValue, std::size_t iSize)
{
    std::string lBytes;
    for (; lBytes.size() < iSize; iValue /= 256)
    {
        lBytes += static_cast<char>(iValue % 256);
    }
    return lBytes;
}

} // namespace

void PlainWriteStream::WriteWString(const wchar_t* ipText)
{
    WriteUInt32(static_cast<unsigned int>(std::wcslen(ipText)));
    for (; *ipText != L'\0'; ++ipText)
    {
        WriteUInt32(static_cast<unsigned int>(*ipText));
    }
}

void PlainWriteStream::WriteBool(bool iValue)
{
    mBytes += iValue ? '\1' : '\0';
}

void PlainWriteStream::WriteUInt32(unsigned int iValue)
{
    mBytes += LittleEndian(iValue, 4);
}

void PlainWriteStream::WriteUInt64(unsigned long iValue)
{
    mBytes += LittleEndian(iValue, 8);
}

std::uint64_t PlainReadStream::hNumber(std::size_t iSize, const wchar_t* ipOperation)
{
    if (mBytes.size() < iSize)
    {
        ThrowStreamException(ipOperation, L"; The data ends too early");
    }
    std::uint64_t lNumber = 0;
    for (std::size_t lIndex = iSize; lIndex > 0; --lIndex)
    {
        lNumber = lNumber * 256 + static_cast<unsigned char>(mBytes[lIndex - 1]);
    }
    mBytes.erase(0, iSize);
    return lNumber;
}

void PlainReadStream::ReadBool(bool& oValue)
{
    const std::string lBefore = mBytes;
    const std::uint64_t lFlag = hNumber(1, L"ReadBool");
    if (lFlag > 1 && !Plain::IsBroken("Flag"))
    {
        mBytes = lBefore;
        ThrowStreamException(L"ReadBool", L"; The flag is neither 0 nor 1");
    }
    oValue = lFlag == 1;
}

void PlainReadStream::ReadUInt32(unsigned int& oValue)
{
    oValue = static_cast<unsigned int>(hNumber(4, L"ReadUInt32"));
}

void PlainReadStream::ReadUInt64(unsigned long& oValue)
{
    oValue = hNumber(8, L"ReadUInt64");
}

QBase::ReturnWString PlainReadStream::ReadWString()
{
    const std::string lBefore = mBytes;
    const std::uint64_t lLength = hNumber(4, L"ReadWString");
    if (mBytes.size() < 4 * lLength)
    {
        mBytes = lBefore;
        ThrowStreamException(L"ReadWString", L"; The data ends too early");
    }
    std::wstring lText;
    while (lText.size() < lLength)
    {
        lText += static_cast<wchar_t>(hNumber(4, L"ReadWString"));
    }
    return {std::move(lText)};
}

} // namespace Fuzz
