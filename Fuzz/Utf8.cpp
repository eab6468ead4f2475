// Wide texts to UTF-8 and back, strict and not, against encodings made by division and the table of well-formed byte
// sequences of the Unicode standard.

#include "Fuzz/Support/Check.h"
#include "Fuzz/Support/Input.h"
#include "Fuzz/Support/Target.h"
#include "QBase/Convert.h"
#include "QBase/Message.h"
#include "Tests/Support/BrokenRule.h"

#include <typeinfo>

namespace
{

const std::uint32_t gReplacement = 0xFFFD;

bool CanBeCarried(std::uint32_t iCharacter)
{
    return iCharacter < 0xD800 || (iCharacter >= 0xE000 && iCharacter < 0x110000);
}

// Six bits at a time from behind, until what is left fits into the first byte.
std::string EncodePlain(std::uint32_t iCharacter)
{
    if (iCharacter < 128)
    {
        return std::string(1, static_cast<char>(iCharacter));
    }
    std::string lBytes;
    std::uint32_t lFirstFits = 32; // what the first byte of a sequence of two has room for
    while (iCharacter >= lFirstFits)
    {
        lBytes.insert(lBytes.begin(), static_cast<char>(128 + iCharacter % 64));
        iCharacter /= 64;
        lFirstFits = lBytes.size() == 1 ? 32 : lFirstFits / 2;
    }
    lBytes.insert(lBytes.begin(), static_cast<char>(256 - 2 * lFirstFits + iCharacter));
    return lBytes;
}

// The table of well-formed sequences: what each byte may be.
struct Row
{
    std::size_t mLength;
    unsigned char mLow[4];
    unsigned char mHigh[4];
};

const Row gRows[] = {{1, {0x00}, {0x7F}},
                     {2, {0xC2, 0x80}, {0xDF, 0xBF}},
                     {3, {0xE0, 0xA0, 0x80}, {0xE0, 0xBF, 0xBF}},
                     {3, {0xE1, 0x80, 0x80}, {0xEC, 0xBF, 0xBF}},
                     {3, {0xED, 0x80, 0x80}, {0xED, 0x9F, 0xBF}},
                     {3, {0xEE, 0x80, 0x80}, {0xEF, 0xBF, 0xBF}},
                     {4, {0xF0, 0x90, 0x80, 0x80}, {0xF0, 0xBF, 0xBF, 0xBF}},
                     {4, {0xF1, 0x80, 0x80, 0x80}, {0xF3, 0xBF, 0xBF, 0xBF}},
                     {4, {0xF4, 0x80, 0x80, 0x80}, {0xF4, 0x8F, 0xBF, 0xBF}}};

unsigned char HighOf(const Row& iRow, std::size_t iPlace)
{
    const bool lIsBeforeSurrogates = iRow.mHigh[iPlace] == 0x9F;
    return lIsBeforeSurrogates && Plain::IsBroken("SurrogateBytes") ? 0xBF : iRow.mHigh[iPlace];
}

// How many of a row's bytes the text begins with.
std::size_t MatchedBy(const Row& iRow, const std::string& iText)
{
    std::size_t lMatched = 0;
    while (lMatched < iRow.mLength && lMatched < iText.size() &&
           static_cast<unsigned char>(iText[lMatched]) >= iRow.mLow[lMatched] &&
           static_cast<unsigned char>(iText[lMatched]) <= HighOf(iRow, lMatched))
    {
        ++lMatched;
    }
    return lMatched;
}

std::uint32_t ValueOf(const std::string& iSequence)
{
    const std::uint32_t lFirst = static_cast<unsigned char>(iSequence[0]);
    std::uint32_t lValue = iSequence.size() == 1 ? lFirst : lFirst % (256U >> (iSequence.size() + 1));
    for (const char lByte : iSequence.substr(1))
    {
        lValue = lValue * 64 + static_cast<unsigned char>(lByte) % 64;
    }
    return lValue;
}

struct Decoded
{
    std::wstring mText;
    std::size_t mFirstBad = std::string::npos; // where the first ill-formed piece begins
};

Decoded DecodePlain(const std::string& iBytes)
{
    Decoded lDecoded;
    std::size_t lPlace = 0;
    while (lPlace < iBytes.size())
    {
        const std::string lLeft = iBytes.substr(lPlace, 4);
        std::size_t lLongest = 1;
        std::uint32_t lCharacter = gReplacement;
        for (const Row& lRow : gRows)
        {
            const std::size_t lMatched = MatchedBy(lRow, lLeft);
            lLongest = std::max(lLongest, lMatched);
            lCharacter = lMatched == lRow.mLength ? ValueOf(lLeft.substr(0, lMatched)) : lCharacter;
        }
        if (lCharacter == gReplacement && lLeft.substr(0, lLongest) != "\xEF\xBF\xBD" &&
            lDecoded.mFirstBad == std::string::npos)
        {
            lDecoded.mFirstBad = lPlace;
        }
        lDecoded.mText += static_cast<wchar_t>(lCharacter);
        lPlace += lLongest;
    }
    return lDecoded;
}

// The text of the exception that the operation throws, empty where it throws none.
template <class Operation>
std::wstring ThrownBy(const Operation& iOperation)
{
    try
    {
        iOperation();
    }
    catch (const QBase::Message& lMessage)
    {
        Fuzz::Require(typeid(lMessage) == typeid(QBase::ExceptionImpl<QBase::Message>),
                      "an exception of another class");
        return lMessage.GetMessage();
    }
    return L"";
}

void CheckWide(const std::wstring& iText)
{
    std::string lExpected;
    std::wstring lRead;
    std::size_t lFirstBad = std::wstring::npos;
    for (std::size_t lIndex = 0; lIndex < iText.size(); ++lIndex)
    {
        const std::uint32_t lCharacter = static_cast<std::uint32_t>(iText[lIndex]);
        const bool lIsGood = CanBeCarried(lCharacter);
        lFirstBad = lIsGood || lFirstBad != std::wstring::npos ? lFirstBad : lIndex;
        lExpected += EncodePlain(lIsGood ? lCharacter : gReplacement);
        lRead += lIsGood ? iText[lIndex] : static_cast<wchar_t>(gReplacement);
    }
    Fuzz::RequireEqual(QBase::WideCharToUTF8(iText.c_str(), false), lExpected, "a text has other UTF-8");
    std::string lStrict = lExpected;
    const std::wstring lThrown = ThrownBy([&] { lStrict = QBase::WideCharToUTF8(iText.c_str(), true); });
    Fuzz::RequireEqual(lThrown,
                       lFirstBad == std::wstring::npos
                           ? L""
                           : L"QBase::WideCharToUTF8; UTF-8 cannot carry the character at index " +
                                 std::to_wstring(lFirstBad),
                       "a text is refused wrongly");
    Fuzz::RequireEqual(lStrict, lExpected, "a text has other strict UTF-8");
    Fuzz::RequireEqual(QBase::UTF8ToWideChar(lExpected, true), lRead, "a text does not come back from UTF-8");
}

void CheckBytes(const std::string& iBytes)
{
    const Decoded lExpected = DecodePlain(iBytes);
    Fuzz::Require(QBase::UTF8ToWideChar(iBytes, false) == lExpected.mText, "bytes are read as another text");
    std::wstring lStrict = lExpected.mText;
    const std::wstring lThrown = ThrownBy([&] { lStrict = QBase::UTF8ToWideChar(iBytes, true); });
    Fuzz::RequireEqual(lThrown,
                       lExpected.mFirstBad == std::string::npos
                           ? L""
                           : L"QBase::UTF8ToWideChar; Ill-formed UTF-8 at byte offset " +
                                 std::to_wstring(lExpected.mFirstBad),
                       "bytes are refused wrongly");
    Fuzz::Require(lStrict == lExpected.mText, "bytes are read strictly as another text");
    if (lThrown.empty() && iBytes.find('\0') == std::string::npos)
    {
        Fuzz::RequireEqual(QBase::WideCharToUTF8(lStrict.c_str(), true), iBytes, "well-formed bytes do not come back");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* ipBytes, std::size_t iSize)
{
    Fuzz::Input lInput(ipBytes, iSize);
    if (lInput.Below(2) == 0)
    {
        CheckWide(lInput.WideRest());
    }
    else
    {
        CheckBytes(lInput.Rest());
    }
    return 0;
}
