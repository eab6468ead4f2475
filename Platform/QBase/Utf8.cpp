// A text is read in blocks of 64 characters, of which one bit each says where they are not ASCII. What lies between is
// copied in steps of 16, four characters of three bytes are taken at once, others of two and of three one by one, and
// whatever is left, ill-formed or not, by the plain way. What is made of some blocks is appended in one piece: memory
// is allocated once, for what a text that can be converted becomes, and nothing of it is filled before.

#include "QBase/Convert.h"

#include "PrivateSource/Throw.h"
#include "PrivateSource/Utf8Steps.h"

#include <algorithm>
#include <bit>
#include <cwchar>

namespace QBase
{

namespace
{

const std::uint32_t gReplacement = 0xFFFD;
const std::size_t gPiece = 8 * gBlock; // characters that are appended at once: so many are still near

const wchar_t gNotCarried[] = L"QBase::WideCharToUTF8; UTF-8 cannot carry the character at index ";
const wchar_t gIllFormed[] = L"QBase::UTF8ToWideChar; Ill-formed UTF-8 at byte offset ";

[[noreturn]] void ThrowAt(const wchar_t* ipText, std::size_t iPlace)
{
    Throw<Message>((ipText + std::to_wstring(iPlace)).c_str());
}

// 32 bits of a character, however wide characters are signed.
std::uint32_t CodeOf(wchar_t iCharacter)
{
    return static_cast<std::uint32_t>(iCharacter); // NOLINT(bugprone-signed-char-misuse,cert-str34-c)
}

// A text in blocks, each with a step behind it that may be read, too, so that nobody has to look where the text ends:
// there both are a copy with zeros behind it, which belong to no sequence.
template <class Character>
class Blocks
{
public:
    // cppcheck-suppress uninitMemberVar ; the tail is set when it is given
    Blocks(const Character* ipText, std::size_t iLength) : mText(ipText), mLength(iLength) {}

    std::size_t GetPlace() const
    {
        return mPlace;
    }

    bool IsAtEnd() const
    {
        return mPlace == mLength;
    }

    std::size_t GetLeft() const
    {
        return mLength - mPlace;
    }

    const Character* GetBlock()
    {
        if (GetLeft() >= gBlock + gStep)
        {
            return mText + mPlace;
        }
        std::fill(std::copy_n(mText + mPlace, GetLeft(), mTail), mTail + gBlock + gStep, Character());
        return mTail;
    }

    void Skip(std::size_t iCount)
    {
        mPlace += iCount;
    }

private:
    const Character* mText;
    std::size_t mLength;
    std::size_t mPlace = 0;
    Character mTail[gBlock + gStep];
};

// From wide characters to UTF-8.

// The number of bytes where all characters can be carried; where one cannot, there can be more or less.
std::size_t CountBytes(const wchar_t* ipText, std::size_t iCount)
{
    const std::size_t lMost = 1 << 20; // whose bytes 32 bits can count, which is faster
    std::size_t lBytes = 0;
    for (std::size_t lBegin = 0; lBegin < iCount; lBegin += lMost)
    {
        const std::size_t lEnd = std::min(iCount, lBegin + lMost);
        std::uint32_t lMore = 0;
        for (std::size_t lIndex = lBegin; lIndex < lEnd; ++lIndex)
        {
            const wchar_t lCharacter = ipText[lIndex];
            lMore += static_cast<std::uint32_t>((lCharacter >= 0x80) + (lCharacter >= 0x800) + (lCharacter >= 0x10000));
        }
        lBytes += lEnd - lBegin + lMore;
    }
    return lBytes;
}

bool IsScalarValue(std::uint32_t iCodePoint)
{
    return iCodePoint <= 0x10FFFF && (iCodePoint < 0xD800 || iCodePoint > 0xDFFF);
}

// What was converted, and where the result ends.
template <class To>
struct Converted
{
    std::size_t mCount;
    To* mEnd;
};

char* EncodeTwo(std::uint32_t iCodePoint, char* opBytes)
{
    opBytes[0] = static_cast<char>(0xC0 | iCodePoint >> 6);
    opBytes[1] = static_cast<char>(0x80 | (iCodePoint & 0x3F));
    return opBytes + 2;
}

// For a code point of three bytes or more.
char* EncodeOne(std::uint32_t iCodePoint, char* opBytes)
{
    const auto lPut = [&opBytes](std::uint32_t iByte) { *opBytes++ = static_cast<char>(iByte); };
    if (iCodePoint < 0x10000)
    {
        lPut(0xE0 | iCodePoint >> 12);
    }
    else
    {
        lPut(0xF0 | iCodePoint >> 18);
        lPut(0x80 | (iCodePoint >> 12 & 0x3F));
    }
    lPut(0x80 | (iCodePoint >> 6 & 0x3F));
    lPut(0x80 | (iCodePoint & 0x3F));
    return opBytes;
}

Converted<char> EncodeLonger(const wchar_t* ipText, bool iStrict, char* opBytes)
{
    std::size_t lCount = 0;
    while (lCount < gStep && CopyFourOfThree(ipText + lCount, opBytes))
    {
        lCount += 4;
        opBytes += 12;
    }
    const std::uint32_t lCodePoint = CodeOf(*ipText);
    const bool lIsScalarValue = IsScalarValue(lCodePoint);
    if (lCount != 0 || (!lIsScalarValue && iStrict))
    {
        return {lCount, opBytes};
    }
    return {1, EncodeOne(lIsScalarValue ? lCodePoint : gReplacement, opBytes)};
}

// Converts some of what the text has where it is not ASCII, at most a step. The count is 0 where the first character
// cannot be carried.
inline Converted<char> ConvertSome(const wchar_t* ipText, bool iStrict, char* opBytes)
{
    const std::uint32_t lCodePoint = CodeOf(*ipText);
    if (lCodePoint >= 0x800)
    {
        return EncodeLonger(ipText, iStrict, opBytes);
    }
    opBytes = EncodeTwo(lCodePoint, opBytes);
    std::size_t lCount = 1;
    for (; lCount < gStep && CodeOf(ipText[lCount]) - 0x80 < 0x780; ++lCount)
    {
        opBytes = EncodeTwo(CodeOf(ipText[lCount]), opBytes);
    }
    return {lCount, opBytes};
}

// From UTF-8 to wide characters.

bool IsAscii(const unsigned char* ipBytes, std::size_t iCount)
{
    const std::size_t lMost = 1024;
    for (std::size_t lBegin = 0; lBegin < iCount; lBegin += lMost)
    {
        const std::size_t lEnd = std::min(iCount, lBegin + lMost);
        unsigned char lAll = 0;
        for (std::size_t lIndex = lBegin; lIndex < lEnd; ++lIndex)
        {
            lAll = static_cast<unsigned char>(lAll | ipBytes[lIndex]);
        }
        if (lAll >= 0x80)
        {
            return false;
        }
    }
    return true;
}

// The number of characters where the bytes are well-formed; where they are not, there can be more.
std::size_t CountCharacters(const unsigned char* ipBytes, std::size_t iCount)
{
    const std::size_t lMost = 240; // what a byte can count
    std::size_t lCharacters = 0;
    for (std::size_t lBegin = 0; lBegin < iCount; lBegin += lMost)
    {
        const std::size_t lEnd = std::min(iCount, lBegin + lMost);
        unsigned char lFirsts = 0;
        for (std::size_t lIndex = lBegin; lIndex < lEnd; ++lIndex)
        {
            lFirsts = static_cast<unsigned char>(lFirsts + ((ipBytes[lIndex] & 0xC0) != 0x80 ? 1 : 0));
        }
        lCharacters += lFirsts;
    }
    return lCharacters;
}

// What a first byte announces: how many bytes follow it, the bits that it carries, and the range of the second byte,
// which is narrower where a sequence would be overlong, a surrogate or too large. A first byte that announces nothing
// has mFollowing 0.
struct Sequence
{
    int mFollowing;
    std::uint32_t mBits;
    unsigned char mSecondLow;
    unsigned char mSecondHigh;
};

Sequence Announced(unsigned char iFirst)
{
    const std::uint32_t lFirst = iFirst;
    if (iFirst >= 0xC2 && iFirst <= 0xDF)
    {
        return {1, lFirst & 0x1F, 0x80, 0xBF};
    }
    if (iFirst >= 0xE0 && iFirst <= 0xEF)
    {
        const unsigned char lLow = iFirst == 0xE0 ? 0xA0 : 0x80;
        const unsigned char lHigh = iFirst == 0xED ? 0x9F : 0xBF;
        return {2, lFirst & 0x0F, lLow, lHigh};
    }
    if (iFirst >= 0xF0 && iFirst <= 0xF4)
    {
        const unsigned char lLow = iFirst == 0xF0 ? 0x90 : 0x80;
        const unsigned char lHigh = iFirst == 0xF4 ? 0x8F : 0xBF;
        return {3, lFirst & 0x07, lLow, lHigh};
    }
    return {0, 0, 0, 0};
}

struct Decoded
{
    std::uint32_t mCodePoint;
    std::size_t mLength; // of the sequence, or of the maximal subpart where it is ill-formed
    bool mIsWellFormed;
};

// For a first byte that is not ASCII.
Decoded DecodeOne(const unsigned char* ipBytes)
{
    const Sequence lSequence = Announced(*ipBytes);
    const std::size_t lWanted = static_cast<std::size_t>(lSequence.mFollowing) + 1;
    std::uint32_t lCodePoint = lSequence.mBits;
    for (std::size_t lIndex = 1; lIndex < lWanted; ++lIndex)
    {
        const unsigned char lByte = ipBytes[lIndex];
        const unsigned char lLow = lIndex == 1 ? lSequence.mSecondLow : 0x80;
        const unsigned char lHigh = lIndex == 1 ? lSequence.mSecondHigh : 0xBF;
        if (lByte < lLow || lByte > lHigh)
        {
            return {gReplacement, lIndex, false};
        }
        lCodePoint = lCodePoint << 6 | (lByte & 0x3FU);
    }
    return lWanted == 1 ? Decoded{gReplacement, 1, false} : Decoded{lCodePoint, lWanted, true};
}

// Whether a sequence of two bytes begins here.
bool IsTwo(const unsigned char* ipBytes)
{
    return ipBytes[0] >= 0xC2 && ipBytes[0] < 0xE0 && (ipBytes[1] & 0xC0) == 0x80;
}

Converted<wchar_t> DecodeLonger(const unsigned char* ipBytes, bool iStrict, wchar_t* opText)
{
    if (CopyFourOfThree(ipBytes, opText))
    {
        return {12, opText + 4};
    }
    const Decoded lDecoded = DecodeOne(ipBytes);
    if (!lDecoded.mIsWellFormed && iStrict)
    {
        return {0, opText};
    }
    *opText = static_cast<wchar_t>(lDecoded.mCodePoint);
    return {lDecoded.mLength, opText + 1};
}

// Converts some of what the bytes have where they are not ASCII, at most a step. The count is 0 where they begin with
// something ill-formed.
inline Converted<wchar_t> ConvertSome(const unsigned char* ipBytes, bool iStrict, wchar_t* opText)
{
    std::size_t lCount = 0;
    for (; lCount < gStep && IsTwo(ipBytes + lCount); lCount += 2)
    {
        *opText++ = static_cast<wchar_t>((ipBytes[lCount] & 0x1F) << 6 | (ipBytes[lCount + 1] & 0x3F));
    }
    return lCount != 0 ? Converted<wchar_t>{lCount, opText} : DecodeLonger(ipBytes, iStrict, opText);
}

// Both ways.

// Converts a block, and what follows it of a sequence that begins in it. The count ends before something that has no
// counterpart.
template <class From, class To>
Converted<To> ConvertBlock(const From* ipBlock, std::size_t iCount, bool iStrict, To* opTarget)
{
    std::size_t lPlace = 0;
    std::uint64_t lNonAscii = CopyAsciiBlock(ipBlock, opTarget);
    if (lNonAscii == 0)
    {
        return {iCount, opTarget + iCount};
    }
    while (lNonAscii != 0)
    {
        const std::size_t lRun = static_cast<std::size_t>(std::countr_zero(lNonAscii));
        opTarget = CopyAscii(ipBlock + lPlace, lRun, opTarget);
        lPlace += lRun;
        const Converted<To> lConverted = ConvertSome(ipBlock + lPlace, iStrict, opTarget);
        if (lConverted.mCount == 0)
        {
            return {lPlace, opTarget};
        }
        opTarget = lConverted.mEnd;
        lPlace += lConverted.mCount;
        lNonAscii = lNonAscii >> lRun >> lConverted.mCount;
    }
    if (lPlace < iCount)
    {
        opTarget = CopyAscii(ipBlock + lPlace, iCount - lPlace, opTarget);
        lPlace = iCount;
    }
    return {lPlace, opTarget};
}

// Converts some blocks, for which the array has room and a block and a step more.
template <std::size_t iMost, class From, class To>
std::size_t ConvertPiece(Blocks<From>& oSource, bool iStrict, const wchar_t* ipRefusal, To (&oPiece)[iMost])
{
    To* lEnd = oPiece;
    while (!oSource.IsAtEnd() && lEnd < oPiece + gPiece)
    {
        const std::size_t lCount = std::min(oSource.GetLeft(), gBlock);
        const Converted<To> lConverted = ConvertBlock(oSource.GetBlock(), lCount, iStrict, lEnd);
        oSource.Skip(lConverted.mCount);
        lEnd = lConverted.mEnd;
        if (lConverted.mCount < lCount)
        {
            ThrowAt(ipRefusal, oSource.GetPlace());
        }
    }
    return static_cast<std::size_t>(lEnd - oPiece);
}

} // namespace

std::string WideCharToUTF8(const wchar_t* ipText, bool iStrict)
{
    const std::size_t lLength = std::wcslen(ipText);
    Blocks<wchar_t> lSource(ipText, lLength);
    char lPiece[gPiece + 4 * (gBlock + gStep)];
    std::string lBytes;
    while (!lSource.IsAtEnd())
    {
        const std::size_t lCount = ConvertPiece(lSource, iStrict, gNotCarried, lPiece);
        const std::size_t lPlace = lSource.GetPlace();
        // As long as all was ASCII, all is taken for ASCII: looking first would take as long as converting.
        const std::size_t lMade = lBytes.size() + lCount;
        const std::size_t lLeft = lLength - lPlace;
        if (lBytes.capacity() < lMade + lLeft)
        {
            lBytes.reserve(lMade + (lMade == lPlace ? lLeft : CountBytes(ipText + lPlace, lLeft)));
        }
        lBytes.append(lPiece, lCount);
    }
    return lBytes;
}

std::wstring UTF8ToWideChar(std::string_view iText, bool iStrict)
{
    const unsigned char* lBytes = reinterpret_cast<const unsigned char*>(iText.data());
    if (IsAscii(lBytes, iText.size()))
    {
        return std::wstring(lBytes, lBytes + iText.size());
    }
    Blocks<unsigned char> lSource(lBytes, iText.size());
    wchar_t lPiece[gPiece + gBlock + gStep];
    std::wstring lText;
    lText.reserve(CountCharacters(lBytes, iText.size()));
    while (!lSource.IsAtEnd())
    {
        lText.append(lPiece, ConvertPiece(lSource, iStrict, gIllFormed, lPiece));
    }
    return lText;
}

} // namespace QBase
