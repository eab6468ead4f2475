// The conversions between UTF-8 and wide characters, which take many characters at once, against plain ones: every
// sequence at every place of a step and cut at every place. Built twice, once with the sources compiled as where there
// is no SSE2.

#include "QBase/Convert.h"

#include "Tests/Support/Expect.h"
#include "Tests/Support/GuardedPage.h"
#include "Tests/Support/PlainUtf8.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace
{

using Plain::DecodeUtf8;
using Plain::EncodeUtf8;
using QBase::UTF8ToWideChar;
using QBase::WideCharToUTF8;

// All sequences are many: where the program is slow, every so many of them have to do.
#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define SANITIZED
#endif
#elif defined(__SANITIZE_ADDRESS__)
#define SANITIZED
#endif
#if defined(__OPTIMIZE__) && defined(__x86_64__) && !defined(SANITIZED)
const unsigned int gEvery = 1;
#else
const unsigned int gEvery = 61;
#endif

const std::size_t gStep = 16; // what is copied at once
const std::string gPadding(2 * gStep, 'x');

std::string Bytes(std::initializer_list<unsigned int> iBytes)
{
    std::string lBytes;
    for (const unsigned int lByte : iBytes)
    {
        lBytes += static_cast<char>(lByte);
    }
    return lBytes;
}

std::wstring IllFormedAt(std::size_t iOffset)
{
    return L"QBase::UTF8ToWideChar; Ill-formed UTF-8 at byte offset " + std::to_wstring(iOffset);
}

std::wstring NotCarriedAt(std::size_t iIndex)
{
    return L"QBase::WideCharToUTF8; UTF-8 cannot carry the character at index " + std::to_wstring(iIndex);
}

// Both ways to read, strict and not.
void ExpectReadAsPlain(std::string_view iBytes)
{
    const auto lPlain = DecodeUtf8(iBytes);
    ASSERT_TRUE(UTF8ToWideChar(iBytes, false) == lPlain.mText) << testing::PrintToString(iBytes);
    if (lPlain.mFirstBad == std::string::npos)
    {
        ASSERT_TRUE(UTF8ToWideChar(iBytes, true) == lPlain.mText) << testing::PrintToString(iBytes);
        return;
    }
    EXPECT_MESSAGE(UTF8ToWideChar(iBytes, true), QBase::Message, IllFormedAt(lPlain.mFirstBad));
}

void ExpectWrittenAsPlain(const std::wstring& iText)
{
    const auto lPlain = EncodeUtf8(iText);
    ASSERT_EQ(WideCharToUTF8(iText.c_str(), false), lPlain.mText);
    if (lPlain.mFirstBad == std::string::npos)
    {
        ASSERT_EQ(WideCharToUTF8(iText.c_str(), true), lPlain.mText);
        return;
    }
    EXPECT_MESSAGE(WideCharToUTF8(iText.c_str(), true), QBase::Message, NotCarriedAt(lPlain.mFirstBad));
}

// Where a sequence of four can begin to be, or cease to be, well-formed: by its first byte, and by the others.
const unsigned int gFirsts[] = {0x7F, 0x80, 0xC2, 0xDF, 0xE0, 0xED, 0xEF, 0xF0, 0xF1, 0xF3, 0xF4, 0xF5, 0xFF};
const unsigned int gOthers[] = {0x00, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF, 0xC0, 0xF0};

// Where characters have more bytes than those before, or none, or are other ones in 16 bits.
const unsigned int gCharacters[] = {0x7F,    0x80,     0xFF,     0x7FF,      0x800,      0x7FFF,    0x8000,
                                    0xD7FF,  0xD800,   0xDFFF,   0xE000,     0xFF80,     0xFFFF,    0x10000,
                                    0x1007F, 0x10FFFF, 0x110000, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};

TEST(Utf8, ALongTextIsConvertedBothWays)
{
    std::string lBytes;
    std::wstring lText;
    for (int lTime = 0; lTime < 1000; ++lTime)
    {
        lBytes +=
            "a text of forty ASCII characters, then: \xC3\xA4\xC3\xB6 \xE4\xB8\xAD\xE6\x96\x87\xE5\xAD\x97\xE7\xAC\xA6"
            "\xE4\xB8\xB2 \xF0\x9F\x98\x80.";
        lText += L"a text of forty ASCII characters, then: \u00E4\u00F6 \u4E2D\u6587\u5B57\u7B26\u4E32 \U0001F600.";
    }
    EXPECT_TRUE(UTF8ToWideChar(lBytes, true) == lText);
    EXPECT_TRUE(WideCharToUTF8(lText.c_str(), true) == lBytes);
}

// A text for each first and second byte: each sequence at the beginning of a step, which padding then moves to every
// other place of it.
TEST(Utf8, EverySequenceOfThreeIsReadAsPlainAtEveryPlaceOfAStep)
{
    for (unsigned int lPair = 0; lPair < 0x10000; lPair += gEvery)
    {
        std::string lBytes = gPadding;
        std::wstring lExpected(gPadding.begin(), gPadding.end());
        for (unsigned int lThird = 0; lThird < 0x100; ++lThird)
        {
            const std::string lSequence = Bytes({lPair >> 8, lPair & 0xFF, lThird});
            lBytes.append(lSequence).append(gStep - lSequence.size(), 'x');
            lExpected.append(DecodeUtf8(lSequence).mText).append(gStep - lSequence.size(), L'x');
        }
        for (std::size_t lPlace = 0; lPlace < gStep; ++lPlace)
        {
            const std::wstring lText = UTF8ToWideChar(std::string_view(lBytes).substr(gStep - lPlace), false);
            ASSERT_TRUE(lText == std::wstring_view(lExpected).substr(gStep - lPlace)) << lPair << " at " << lPlace;
        }
    }
}

// Four characters of three bytes are taken at once, so each sequence stands in each place of four.
TEST(Utf8, EverySequenceOfThreeIsReadAsPlainAmongOthersOfThree)
{
    const std::string lMany = EncodeUtf8(L"\u4E2D\u4E2D\u4E2D\u4E2D").mText;
    for (unsigned int lPair = 0; lPair < 0x10000; lPair += gEvery)
    {
        std::string lBytes = lMany;
        std::wstring lExpected(4, L'\u4E2D');
        for (unsigned int lThird = 0; lThird < 0x100; ++lThird)
        {
            const std::string lSequence = Bytes({lPair >> 8, lPair & 0xFF, lThird});
            const std::size_t lBehind = 4 + lThird % 4;
            lBytes.append(lSequence).append("x").append(lMany).append(lMany, 0, 3 * (lBehind - 4));
            lExpected.append(DecodeUtf8(lSequence).mText).append(L"x").append(lBehind, L'\u4E2D');
        }
        for (std::size_t lPlace = 0; lPlace < 4; ++lPlace)
        {
            const std::wstring lText = UTF8ToWideChar(std::string_view(lBytes).substr(3 * lPlace), false);
            ASSERT_TRUE(lText == std::wstring_view(lExpected).substr(lPlace)) << lPair << " at " << lPlace;
        }
    }
}

TEST(Utf8, EverySequenceOfOneOrTwoIsReadAsPlainAtTheEndOfEveryText)
{
    for (unsigned int lPair = 0; lPair < 0x10000; lPair += gEvery)
    {
        const std::string lBytes = gPadding + Bytes({lPair >> 8, lPair & 0xFF});
        for (std::size_t lPlace = 0; lPlace < gStep; ++lPlace)
        {
            const std::string_view lText = std::string_view(lBytes).substr(2 * gStep - lPlace);
            ASSERT_TRUE(UTF8ToWideChar(lText, false) == DecodeUtf8(lText).mText) << lPair << " at " << lPlace;
        }
        ExpectReadAsPlain(lBytes);
        ExpectReadAsPlain(std::string_view(lBytes).substr(0, lBytes.size() - 1));
    }
}

TEST(Utf8, EverySequenceOfThreeIsReadAsPlainAtTheEndOfAText)
{
    std::string lBytes = gPadding + "123";
    for (unsigned int lSequence = 0; lSequence < 0x1000000; lSequence += gEvery)
    {
        const std::size_t lPlace = lSequence % gStep;
        lBytes[2 * gStep] = static_cast<char>(lSequence >> 16);
        lBytes[2 * gStep + 1] = static_cast<char>(lSequence >> 8);
        lBytes[2 * gStep + 2] = static_cast<char>(lSequence);
        const std::wstring lText = UTF8ToWideChar(std::string_view(lBytes).substr(2 * gStep - lPlace), false);
        const std::wstring lPlain = DecodeUtf8(std::string_view(lBytes).substr(2 * gStep)).mText;
        ASSERT_TRUE(lText == std::wstring(lPlace, L'x') + lPlain) << lSequence;
    }
}

// Four of the choices, by a number below their count to the power of four.
template <std::size_t iFirsts, std::size_t iOthers>
std::vector<unsigned int> ChooseFour(const unsigned int (&iFirst)[iFirsts], const unsigned int (&iOther)[iOthers],
                                     std::size_t iNumber)
{
    return {iFirst[iNumber / iOthers / iOthers / iOthers], iOther[iNumber / iOthers / iOthers % iOthers],
            iOther[iNumber / iOthers % iOthers], iOther[iNumber % iOthers]};
}

TEST(Utf8, BordersOfSequencesOfFourAreReadAsPlainAtEveryPlaceAndCut)
{
    const std::size_t lOthers = std::size(gOthers);
    for (std::size_t lNumber = 0; lNumber < std::size(gFirsts) * lOthers * lOthers * lOthers; lNumber += gEvery)
    {
        std::string lBytes = gPadding;
        for (const unsigned int lByte : ChooseFour(gFirsts, gOthers, lNumber))
        {
            lBytes += static_cast<char>(lByte);
        }
        lBytes += "x";
        for (std::size_t lPlace = 0; lPlace < gStep; ++lPlace)
        {
            const std::string_view lText = std::string_view(lBytes).substr(2 * gStep - lPlace);
            for (std::size_t lCut = 0; lCut < 4; ++lCut)
            {
                const std::string_view lLeft = lText.substr(0, lText.size() - lCut);
                ASSERT_TRUE(UTF8ToWideChar(lLeft, false) == DecodeUtf8(lLeft).mText) << lNumber << " at " << lPlace;
            }
        }
        ExpectReadAsPlain(std::string_view(lBytes).substr(2 * gStep - lNumber % gStep));
    }
}

TEST(Utf8, EveryCharacterIsWrittenAndReadAtEveryPlaceOfAStep)
{
    for (unsigned int lBegin = 0x80; lBegin < 0x110200; lBegin += 0x80 * gEvery)
    {
        std::wstring lText(gStep, L'x');
        for (unsigned int lCharacter = lBegin; lCharacter < lBegin + 0x80; ++lCharacter)
        {
            lText += static_cast<wchar_t>(lCharacter);
            lText.append(gStep - 1, L'x');
        }
        const std::string lBytes = EncodeUtf8(lText).mText;
        const std::wstring lRead = DecodeUtf8(lBytes).mText;
        for (std::size_t lPlace = 0; lPlace < gStep; ++lPlace)
        {
            const std::string_view lLeft = std::string_view(lBytes).substr(lPlace);
            ASSERT_EQ(WideCharToUTF8(lText.c_str() + lPlace, false), lLeft);
            ASSERT_TRUE(UTF8ToWideChar(lLeft, true) == std::wstring_view(lRead).substr(lPlace));
        }
    }
}

TEST(Utf8, BordersOfCharactersAreWrittenAsPlainAtEveryPlace)
{
    const std::size_t lOthers = std::size(gCharacters);
    for (std::size_t lNumber = 0; lNumber < lOthers * lOthers * lOthers * lOthers; lNumber += gEvery)
    {
        std::wstring lText(gStep, L'x');
        for (const unsigned int lCharacter : ChooseFour(gCharacters, gCharacters, lNumber))
        {
            lText += static_cast<wchar_t>(lCharacter);
        }
        const std::string lPlain = EncodeUtf8(lText).mText;
        for (std::size_t lPlace = 0; lPlace < gStep; ++lPlace)
        {
            const std::string lBytes = WideCharToUTF8(lText.c_str() + lPlace, false);
            ASSERT_EQ(lBytes, std::string_view(lPlain).substr(lPlace)) << lNumber << " at " << lPlace;
        }
        if (lNumber % 16 == 0)
        {
            ExpectWrittenAsPlain(lText.substr(lNumber / 16 % gStep));
        }
    }
}

// Random texts, longer than what is looked at and kept at once, of one kind of characters and then another.
class RandomTexts
{
public:
    std::wstring Make()
    {
        std::wstring lText;
        const std::size_t lLength = Below(4) == 0 ? Below(3000) : Below(150);
        while (lText.size() < lLength)
        {
            const unsigned int lKind = Below(8);
            for (std::size_t lLeft = 1 + Below(Below(2) == 0 ? 4 : 90); lLeft != 0; --lLeft)
            {
                lText += static_cast<wchar_t>(MakeCharacter(lKind));
            }
        }
        return lText;
    }

    // Well-formed but for one byte in some of them.
    std::string MakeBytes()
    {
        std::string lBytes = EncodeUtf8(Make()).mText;
        if (!lBytes.empty() && Below(2) == 0)
        {
            lBytes[Below(static_cast<unsigned int>(lBytes.size()))] = static_cast<char>(Below(256));
        }
        return lBytes.substr(0, lBytes.size() - std::min<std::size_t>(lBytes.size(), Below(4)));
    }

    unsigned int Below(unsigned int iLimit)
    {
        return static_cast<unsigned int>(mEngine() % iLimit);
    }

private:
    unsigned int MakeCharacter(unsigned int iKind)
    {
        switch (iKind)
        {
        case 0:
            return 0x80 + Below(0x780);
        case 1:
            return 0x4E00 + Below(0x5000);
        case 2:
            return Below(5) == 0 ? 0x20 : 0x410 + Below(0x40);
        case 3:
            return Below(9) == 0 ? 0xE9 : 0x61 + Below(26);
        case 4:
            return 0x10000 + Below(0x100000);
        case 5:
            return Below(20) == 0 ? 0xD800 + Below(0x800) : 0x20AC;
        default:
            return 1 + Below(0x7F);
        }
    }

    std::mt19937_64 mEngine{1};
};

TEST(Utf8, RandomTextsAreConvertedAsPlain)
{
    RandomTexts lTexts;
    for (unsigned int lTime = 0; lTime < 20000 / (gEvery == 1 ? 1 : 10); ++lTime)
    {
        ExpectWrittenAsPlain(lTexts.Make());
        ExpectReadAsPlain(lTexts.MakeBytes());
    }
}

// A text is neither read nor written by growing: where all can be converted, memory fits.
TEST(Utf8, ResultsTakeNoMoreMemoryThanTheyNeed)
{
    const std::size_t lMost = 32; // what an allocator's unit and a short string are
    RandomTexts lTexts;
    for (int lTime = 0; lTime < 1000; ++lTime)
    {
        std::wstring lText = L"\u20AC" + lTexts.Make(); // what is not ASCII stands at the beginning
        const std::string lBytes = WideCharToUTF8(lText.c_str(), false);
        lText = UTF8ToWideChar(lBytes, true);
        EXPECT_LE(lText.capacity(), lText.size() + lMost);
        const std::string lAgain = WideCharToUTF8(lText.c_str(), true);
        EXPECT_LE(lAgain.capacity(), lAgain.size() + lMost);
    }
    const std::string lAscii(100000, 'x');
    const std::wstring lNearlyAscii = UTF8ToWideChar("\xC3\xA9" + lAscii, true);
    EXPECT_LE(lNearlyAscii.capacity(), lNearlyAscii.size() + lMost);
    EXPECT_LE(UTF8ToWideChar(lAscii, true).capacity(), lAscii.size() + lMost);
    EXPECT_LE(WideCharToUTF8(UTF8ToWideChar(lAscii, true).c_str(), true).capacity(), lAscii.size() + lMost);
}

class Utf8Bounds : public testing::TestWithParam<bool>
{
};

TEST_P(Utf8Bounds, NothingOutsideTheTextIsRead)
{
    const Support::GuardedPage lPage;
    RandomTexts lTexts;
    for (std::size_t lLength = 0; lLength < 300; ++lLength)
    {
        for (const wchar_t lCharacter : {L'x', L'\u00E9', L'\u4E2D', L'\U0001F600'})
        {
            std::wstring lText(lLength, L'x');
            std::fill(lText.begin() + static_cast<std::ptrdiff_t>(lLength / 2), lText.end(), lCharacter);
            const std::string lBytes = EncodeUtf8(lText).mText;
            EXPECT_TRUE(UTF8ToWideChar(lPage.Put(lBytes, GetParam()), true) == lText);
            const std::string lCut = lBytes.substr(0, lBytes.size() - (lBytes.empty() ? 0 : 1));
            EXPECT_TRUE(UTF8ToWideChar(lPage.Put(lCut, GetParam()), false) == DecodeUtf8(lCut).mText);
            EXPECT_EQ(WideCharToUTF8(lPage.Put(lText + L'\0', GetParam()).data(), true), lBytes);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(BesideAGuard, Utf8Bounds, testing::Bool(),
                         [](const auto& iInfo) { return iInfo.param ? "AtTheEnd" : "AtTheBeginning"; });

} // namespace
