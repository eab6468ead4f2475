#include "QSerialization/MemoryDataStream.h"

#include "Tests/Support/Expect.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <functional>
#include <limits>
#include <memory>
#include <sstream>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

namespace
{

using QSerialization::MemoryReadDataStream;
using QSerialization::MemoryWriteDataStream;
using QSerialization::StreamException;
using Bytes = std::vector<std::byte>;

// Reads pairs of hexadecimal digits; '#' begins a comment.
Bytes FromHex(std::istream& iText)
{
    Bytes lBytes;
    for (std::string lLine; std::getline(iText, lLine);)
    {
        std::istringstream lPairs(lLine.substr(0, lLine.find('#')));
        for (std::string lPair; lPairs >> lPair;)
        {
            lBytes.push_back(static_cast<std::byte>(std::stoul(lPair, nullptr, 16)));
        }
    }
    return lBytes;
}

Bytes FromHex(const std::string& iText)
{
    std::istringstream lText(iText);
    return FromHex(lText);
}

Bytes Golden(const std::string& iName)
{
    std::ifstream lFile(TALBASE_SOURCE_DIR "/Tests/Golden/Streams/" + iName + ".hex");
    EXPECT_TRUE(lFile) << iName;
    return FromHex(lFile);
}

std::string ToHex(const Bytes& iBytes)
{
    std::string lText;
    for (const std::byte lByte : iBytes)
    {
        char lPair[4];
        std::snprintf(lPair, sizeof lPair, "%02X ", std::to_integer<unsigned int>(lByte));
        lText += lPair;
    }
    return lText;
}

bool ReadBool(MemoryReadDataStream& iStream)
{
    bool lValue = false;
    iStream.ReadBool(lValue);
    return lValue;
}

unsigned int ReadUInt32(MemoryReadDataStream& iStream)
{
    unsigned int lValue = 0;
    iStream.ReadUInt32(lValue);
    return lValue;
}

unsigned long ReadUInt64(MemoryReadDataStream& iStream)
{
    unsigned long lValue = 0;
    iStream.ReadUInt64(lValue);
    return lValue;
}

std::wstring ReadText(MemoryReadDataStream& iStream)
{
    return Support::Text(iStream.ReadWString());
}

const std::wstring gStrangeText = {static_cast<wchar_t>(0xD800), static_cast<wchar_t>(0xFFFF),
                                   static_cast<wchar_t>(0x110000), static_cast<wchar_t>(0x80000000),
                                   static_cast<wchar_t>(0xFFFFFFFF)};

// Each golden file, as it is written and as it is read.
struct Script
{
    const char* mName;
    std::function<void(MemoryWriteDataStream&)> mWrite;
    std::function<void(MemoryReadDataStream&)> mRead;
};

const Script gScripts[] = {
    {"Flags",
     [](MemoryWriteDataStream& oStream) {
         oStream.WriteBool(false);
         oStream.WriteBool(true);
         oStream.WriteBool(true);
         oStream.WriteBool(false);
     },
     [](MemoryReadDataStream& iStream) {
         EXPECT_FALSE(ReadBool(iStream));
         EXPECT_TRUE(ReadBool(iStream));
         EXPECT_TRUE(ReadBool(iStream));
         EXPECT_FALSE(ReadBool(iStream));
     }},
    {"Numbers",
     [](MemoryWriteDataStream& oStream) {
         oStream.WriteUInt32(0);
         oStream.WriteUInt32(1);
         oStream.WriteUInt32(0x12345678);
         oStream.WriteUInt32(0xFFFFFFFF);
         oStream.WriteUInt64(0);
         oStream.WriteUInt64(1);
         oStream.WriteUInt64(0x0123456789ABCDEF);
         oStream.WriteUInt64(0xFFFFFFFFFFFFFFFF);
     },
     [](MemoryReadDataStream& iStream) {
         EXPECT_EQ(0U, ReadUInt32(iStream));
         EXPECT_EQ(1U, ReadUInt32(iStream));
         EXPECT_EQ(0x12345678U, ReadUInt32(iStream));
         EXPECT_EQ(0xFFFFFFFFU, ReadUInt32(iStream));
         EXPECT_EQ(0UL, ReadUInt64(iStream));
         EXPECT_EQ(1UL, ReadUInt64(iStream));
         EXPECT_EQ(0x0123456789ABCDEFUL, ReadUInt64(iStream));
         EXPECT_EQ(0xFFFFFFFFFFFFFFFFUL, ReadUInt64(iStream));
     }},
    {"Texts",
     [](MemoryWriteDataStream& oStream) {
         oStream.WriteWString(L"");
         oStream.WriteWString(L"A");
         oStream.WriteWString(L"name");
         oStream.WriteWString(L"\x20AC\x1F600\t");
         oStream.WriteWString(gStrangeText.c_str());
     },
     [](MemoryReadDataStream& iStream) {
         EXPECT_EQ(L"", ReadText(iStream));
         EXPECT_EQ(L"A", ReadText(iStream));
         EXPECT_EQ(L"name", ReadText(iStream));
         EXPECT_EQ(L"\x20AC\x1F600\t", ReadText(iStream));
         EXPECT_EQ(gStrangeText, ReadText(iStream));
     }},
    {"Mixed",
     [](MemoryWriteDataStream& oStream) {
         oStream.WriteUInt32(2);
         oStream.WriteWString(L"queue");
         oStream.WriteBool(true);
         oStream.WriteWString(L"on");
         oStream.WriteWString(L"");
         oStream.WriteBool(false);
         oStream.WriteUInt64(3);
     },
     [](MemoryReadDataStream& iStream) {
         EXPECT_EQ(2U, ReadUInt32(iStream));
         EXPECT_EQ(L"queue", ReadText(iStream));
         EXPECT_TRUE(ReadBool(iStream));
         EXPECT_EQ(L"on", ReadText(iStream));
         EXPECT_EQ(L"", ReadText(iStream));
         EXPECT_FALSE(ReadBool(iStream));
         EXPECT_EQ(3UL, ReadUInt64(iStream));
     }},
};

TEST(MemoryDataStream, WritesTheGoldenFiles)
{
    for (const Script& lScript : gScripts)
    {
        MemoryWriteDataStream lStream;
        lScript.mWrite(lStream);
        EXPECT_EQ(ToHex(Golden(lScript.mName)), ToHex(lStream.GetBytes())) << lScript.mName;
    }
}

TEST(MemoryDataStream, ReadsTheGoldenFiles)
{
    for (const Script& lScript : gScripts)
    {
        const Bytes lBytes = Golden(lScript.mName);
        MemoryReadDataStream lStream(lBytes.data(), lBytes.size());
        EXPECT_EQ(lBytes.size(), lStream.GetRemaining());
        SCOPED_TRACE(lScript.mName);
        lScript.mRead(lStream);
        EXPECT_EQ(0U, lStream.GetRemaining());
    }
}

TEST(MemoryDataStream, GoldenFilesCutShortThrowEverywhere)
{
    for (const Script& lScript : gScripts)
    {
        const Bytes lBytes = Golden(lScript.mName);
        for (std::size_t lSize = 0; lSize < lBytes.size(); ++lSize)
        {
            const std::unique_ptr<std::byte[]> lCut(new std::byte[lSize]); // its end is where a checker looks
            std::copy(lBytes.begin(), lBytes.begin() + static_cast<std::ptrdiff_t>(lSize), lCut.get());
            MemoryReadDataStream lStream(lCut.get(), lSize);
            EXPECT_THROW(lScript.mRead(lStream), QBase::ExceptionImpl<StreamException>) << lScript.mName << lSize;
        }
    }
}

TEST(MemoryDataStream, NewStreamsAreEmpty)
{
    EXPECT_TRUE(MemoryWriteDataStream().GetBytes().empty());
    EXPECT_EQ(0U, MemoryReadDataStream(nullptr, 0).GetRemaining());
}

// What a failed read promises: the exception, nothing consumed, the target as it was.
template <class Value>
void ExpectReadFails(const Bytes& iBytes, void (MemoryReadDataStream::*iRead)(Value&), Value iBefore,
                     const wchar_t* ipText)
{
    MemoryReadDataStream lStream(iBytes.data(), iBytes.size());
    Value lValue = iBefore;
    EXPECT_MESSAGE((lStream.*iRead)(lValue), StreamException, ipText);
    EXPECT_EQ(iBefore, lValue);
    EXPECT_EQ(iBytes.size(), lStream.GetRemaining());
}

TEST(MemoryDataStream, ReadBoolPastTheEndThrows)
{
    ExpectReadFails<bool>({}, &MemoryReadDataStream::ReadBool, true,
                          L"QSerialization::MemoryReadDataStream::ReadBool; The data ends too early");
}

TEST(MemoryDataStream, ReadBoolOfAnyOtherByteThrows)
{
    for (unsigned int lByte = 2; lByte <= 0xFF; ++lByte)
    {
        ExpectReadFails<bool>({static_cast<std::byte>(lByte)}, &MemoryReadDataStream::ReadBool, true,
                              L"QSerialization::MemoryReadDataStream::ReadBool; The flag is neither 0 nor 1");
    }
}

TEST(MemoryDataStream, ReadUInt32PastTheEndThrows)
{
    for (const char* lHex : {"", "01", "01 02", "01 02 03"})
    {
        ExpectReadFails<unsigned int>(FromHex(lHex), &MemoryReadDataStream::ReadUInt32, 7U,
                                      L"QSerialization::MemoryReadDataStream::ReadUInt32; The data ends too early");
    }
}

TEST(MemoryDataStream, ReadUInt64PastTheEndThrows)
{
    for (const char* lHex : {"", "01 02 03 04", "01 02 03 04 05 06 07"})
    {
        ExpectReadFails<unsigned long>(FromHex(lHex), &MemoryReadDataStream::ReadUInt64, 7UL,
                                       L"QSerialization::MemoryReadDataStream::ReadUInt64; The data ends too early");
    }
}

TEST(MemoryDataStream, ReadWStringWithTooFewBytesThrows)
{
    const char* const lTexts[] = {
        "",
        "00 00 00",                         // half a count
        "01 00 00 00",                      // no character
        "01 00 00 00 41 00 00",             // half a character
        "02 00 00 00 41 00 00 00 42 00 00", // one and a half
        "00 00 00 40 41 00 00 00",          // a count that is 0 where it is multiplied in 32 bits
        "01 00 00 40 41 00 00 00",          // one that is 1
        "FF FF FF FF 41 00 00 00",          // the largest
        "FF FF FF 7F 41 00 00 00",          // the largest that is positive in 32 bits
    };
    for (const char* lHex : lTexts)
    {
        const Bytes lBytes = FromHex(lHex);
        MemoryReadDataStream lStream(lBytes.data(), lBytes.size());
        EXPECT_MESSAGE(lStream.ReadWString(), StreamException,
                       L"QSerialization::MemoryReadDataStream::ReadWString; The data ends too early")
            << lHex;
        EXPECT_EQ(lBytes.size(), lStream.GetRemaining()) << lHex;
    }
}

TEST(MemoryDataStream, ReadWStringKeepsZeroCharacters)
{
    const Bytes lBytes = FromHex("03 00 00 00  41 00 00 00  00 00 00 00  42 00 00 00");
    MemoryReadDataStream lStream(lBytes.data(), lBytes.size());
    EXPECT_EQ(std::wstring(L"A\0B", 3), ReadText(lStream));
    EXPECT_EQ(0U, lStream.GetRemaining());
}

TEST(MemoryDataStream, ReadGoesOnAfterAFailureWhereItStood)
{
    const Bytes lBytes = FromHex("02 00 00 00 01");
    MemoryReadDataStream lStream(lBytes.data(), lBytes.size());
    EXPECT_THROW(lStream.ReadWString(), StreamException);
    EXPECT_THROW(ReadUInt64(lStream), StreamException);
    EXPECT_THROW(ReadBool(lStream), StreamException);
    EXPECT_EQ(2U, ReadUInt32(lStream));
    EXPECT_TRUE(ReadBool(lStream));
}

TEST(MemoryDataStream, ReadsUnalignedBytesWithoutCopyingThem)
{
    Bytes lBytes = FromHex("FF  41 00 00 00");
    MemoryReadDataStream lStream(lBytes.data() + 1, 4);
    lBytes[1] = std::byte{0x42};
    EXPECT_EQ(0x42U, ReadUInt32(lStream));
}

TEST(MemoryDataStream, WriteWStringEndsAtTheTerminator)
{
    MemoryWriteDataStream lStream;
    lStream.WriteWString(L"A\0B");
    EXPECT_EQ(ToHex(FromHex("01 00 00 00 41 00 00 00")), ToHex(lStream.GetBytes()));
}

TEST(MemoryDataStream, LongTextsSurviveTheRoundTrip)
{
    std::wstring lText;
    for (unsigned int lIndex = 1; lIndex <= 100000; ++lIndex)
    {
        lText += static_cast<wchar_t>(lIndex * 2654435761U | 1U);
    }
    MemoryWriteDataStream lWritten;
    lWritten.WriteBool(true);
    lWritten.WriteWString(lText.c_str());
    EXPECT_EQ(1U + 4U + 400000U, lWritten.GetBytes().size());
    MemoryReadDataStream lStream(lWritten.GetBytes().data(), lWritten.GetBytes().size());
    EXPECT_TRUE(ReadBool(lStream));
    EXPECT_EQ(lText, ReadText(lStream));
}

TEST(StreamException, IsAMessage)
{
    QBase::Message lMessage;
    lMessage.SetDomainAndID(3, 4);
    lMessage.SetMessage(L"text");
    try
    {
        throw QBase::ExceptionImpl<StreamException>(lMessage);
    }
    catch (const QBase::Message& lCaught)
    {
        EXPECT_STREQ(L"text", lCaught.GetMessage());
        EXPECT_EQ(3, lCaught.GetDomain());
        EXPECT_EQ(4, lCaught.GetID());
        EXPECT_NE(nullptr, dynamic_cast<const StreamException*>(&lCaught));
    }
}

// A text of 2 to the 32nd characters that costs 64 MB: the same pages, mapped one after the other.
class EndlessText
{
public:
    EndlessText()
    {
        const int lFile = ::memfd_create("text", 0);
        EXPECT_EQ(0, ::ftruncate(lFile, static_cast<off_t>(gBlock)));
        auto* lBlock = static_cast<wchar_t*>(hMap(nullptr, gBlock, MAP_SHARED, lFile));
        std::fill_n(lBlock, gBlock / sizeof(wchar_t), L'x');
        ::munmap(lBlock, gBlock);
        mText = static_cast<std::byte*>(hMap(nullptr, gSize + gBlock, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1));
        for (std::size_t lOffset = 0; lOffset < gSize; lOffset += gBlock)
        {
            hMap(mText + lOffset, gBlock, MAP_SHARED | MAP_FIXED, lFile);
        }
        ::close(lFile); // behind the last block there are zeros
    }

    EndlessText(const EndlessText&) = delete;
    EndlessText& operator=(const EndlessText&) = delete;

    ~EndlessText()
    {
        ::munmap(mText, gSize + gBlock);
    }

    const wchar_t* c_str() const
    {
        return reinterpret_cast<const wchar_t*>(mText);
    }

private:
    static constexpr std::size_t gBlock = std::size_t{64} << 20;
    static constexpr std::size_t gSize = (std::size_t{1} << 32) * sizeof(wchar_t);

    static void* hMap(void* ipAddress, std::size_t iSize, int iFlags, int iFile)
    {
        void* const lMemory = ::mmap(ipAddress, iSize, PROT_READ | PROT_WRITE, iFlags, iFile, 0);
        if (lMemory == MAP_FAILED)
        {
            throw std::bad_alloc();
        }
        return lMemory;
    }

    std::byte* mText;
};

TEST(MemoryDataStream, WriteWStringTooLongThrowsAndWritesNothing)
{
    const EndlessText lText;
    MemoryWriteDataStream lStream;
    lStream.WriteBool(true);
    EXPECT_MESSAGE(lStream.WriteWString(lText.c_str()), StreamException,
                   L"QSerialization::MemoryWriteDataStream::WriteWString; The text is too long");
    EXPECT_EQ("01 ", ToHex(lStream.GetBytes()));
}

} // namespace
