#include "QBase/Convert.h"

#include "Tests/Support/Expect.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace
{

using QBase::DecimalToInt;
using QBase::Message;
using QBase::ToDecimalWString;
using QBase::UTF8ToWideChar;
using QBase::WideCharToUTF8;
using namespace std::string_view_literals;

const int gSmallest = -2147483647 - 1;

// A character by number, also where no literal can hold it.
std::wstring Character(unsigned int iCodePoint)
{
    return std::wstring(1, static_cast<wchar_t>(iCodePoint));
}

TEST(Convert, ToDecimalWStringWritesTheShortestForm)
{
    EXPECT_STREQ(L"0", ToDecimalWString(0).c_str());
    EXPECT_STREQ(L"7", ToDecimalWString(7).c_str());
    EXPECT_STREQ(L"-1", ToDecimalWString(-1).c_str());
    EXPECT_STREQ(L"1000", ToDecimalWString(1000).c_str());
    EXPECT_STREQ(L"2147483647", ToDecimalWString(2147483647).c_str());
    EXPECT_STREQ(L"-2147483648", ToDecimalWString(gSmallest).c_str());
}

struct Number
{
    const wchar_t* mText;
    int mValue;
};

const Number gNumbers[] = {
    {L"0", 0},
    {L"42", 42},
    {L"+42", 42},
    {L"-42", -42},
    {L"-0", 0},
    {L"0042", 42},
    {L"  42", 42},
    {L"\t\n\v\f\r -42", -42},
    {L"42 ", 42},
    {L"42abc", 42},
    {L"1.9", 1},
    {L"1,000", 1},
    {L"0x10", 0},
    {L"", 0},
    {L"   ", 0},
    {L"abc", 0},
    {L"-", 0},
    {L"+", 0},
    {L"- 5", 0},
    {L"--5", 0},
    {L"+-5", 0},
    {L"\u00A05", 0},      // a no-break space is no blank
    {L"\x0661\x0662", 0}, // nor are Arabic digits digits
    {L"2147483646", 2147483646},
    {L"2147483647", 2147483647},
    {L"2147483648", 2147483647},
    {L"4294967296", 2147483647},
    {L"9223372036854775808", 2147483647},
    {L"18446744073709551617", 2147483647},
    {L"99999999999999999999999999999999999999999999", 2147483647},
    {L"99999999999999999999999999999999999999999999x", 2147483647},
    {L"-2147483647", -2147483647},
    {L"-2147483648", gSmallest},
    {L"-2147483649", gSmallest},
    {L"-99999999999999999999999999999999999999999999", gSmallest},
    {L"00000000000000000000000000000000000000000001", 1},
};

TEST(Convert, DecimalToIntReadsWhatItCan)
{
    for (const Number& lNumber : gNumbers)
    {
        EXPECT_EQ(lNumber.mValue, DecimalToInt(lNumber.mText)) << Support::Readable(lNumber.mText);
    }
}

TEST(Convert, DecimalToIntReadsEveryFormOfToDecimalWString)
{
    for (const int lValue : {0, 1, -1, 9, 10, -10, 99999, 2147483647, gSmallest})
    {
        EXPECT_EQ(lValue, DecimalToInt(ToDecimalWString(lValue).c_str()));
    }
}

struct Encoded
{
    unsigned int mCodePoint;
    std::string_view mBytes;
};

// The first and the last code point of every length and around the surrogates.
const Encoded gEncoded[] = {
    {0x01, "\x01"sv},
    {0x41, "A"sv},
    {0x7F, "\x7F"sv},
    {0x80, "\xC2\x80"sv},
    {0xE9, "\xC3\xA9"sv},
    {0x7FF, "\xDF\xBF"sv},
    {0x800, "\xE0\xA0\x80"sv},
    {0x20AC, "\xE2\x82\xAC"sv},
    {0xCFFF, "\xEC\xBF\xBF"sv},
    {0xD000, "\xED\x80\x80"sv},
    {0xD7FF, "\xED\x9F\xBF"sv},
    {0xE000, "\xEE\x80\x80"sv},
    {0xFEFF, "\xEF\xBB\xBF"sv},
    {0xFFFD, "\xEF\xBF\xBD"sv},
    {0xFFFF, "\xEF\xBF\xBF"sv},
    {0x10000, "\xF0\x90\x80\x80"sv},
    {0x1F600, "\xF0\x9F\x98\x80"sv},
    {0x3FFFF, "\xF0\xBF\xBF\xBF"sv},
    {0x40000, "\xF1\x80\x80\x80"sv},
    {0xFFFFF, "\xF3\xBF\xBF\xBF"sv},
    {0x100000, "\xF4\x80\x80\x80"sv},
    {0x10FFFF, "\xF4\x8F\xBF\xBF"sv},
};

TEST(Convert, WideCharToUTF8EncodesEveryLength)
{
    for (const Encoded& lEncoded : gEncoded)
    {
        EXPECT_EQ(lEncoded.mBytes, WideCharToUTF8(Character(lEncoded.mCodePoint).c_str(), false));
        EXPECT_EQ(lEncoded.mBytes, WideCharToUTF8(Character(lEncoded.mCodePoint).c_str(), true));
    }
    EXPECT_EQ("", WideCharToUTF8(L"", true));
    EXPECT_EQ("na\xC3\xAFve \xE2\x82\xAC", WideCharToUTF8(L"na\x00EFve \x20AC", true));
}

TEST(Convert, UTF8ToWideCharDecodesEveryLength)
{
    for (const Encoded& lEncoded : gEncoded)
    {
        EXPECT_EQ(Character(lEncoded.mCodePoint), UTF8ToWideChar(lEncoded.mBytes, false));
        EXPECT_EQ(Character(lEncoded.mCodePoint), UTF8ToWideChar(lEncoded.mBytes, true));
    }
    EXPECT_EQ(L"", UTF8ToWideChar("", true));
    EXPECT_EQ(std::wstring(L"a\0b", 3), UTF8ToWideChar("a\0b"sv, true));
}

TEST(Convert, EveryScalarValueSurvivesTheRoundTrip)
{
    for (unsigned int lCodePoint = 1; lCodePoint <= 0x10FFFF; ++lCodePoint)
    {
        lCodePoint = lCodePoint == 0xD800 ? 0xE000 : lCodePoint;
        const std::wstring lText = Character(lCodePoint);
        ASSERT_EQ(lText, UTF8ToWideChar(WideCharToUTF8(lText.c_str(), true), true)) << lCodePoint;
    }
}

const unsigned int gNoScalarValues[] = {0xD800, 0xDBFF, 0xDC00, 0xDFFF, 0x110000, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};

TEST(Convert, WideCharToUTF8ReplacesWhatUTF8CannotCarry)
{
    for (const unsigned int lCodePoint : gNoScalarValues)
    {
        const std::wstring lText = L"a" + Character(lCodePoint) + L"b";
        EXPECT_EQ("a\xEF\xBF\xBD"
                  "b",
                  WideCharToUTF8(lText.c_str(), false))
            << lCodePoint;
    }
    // Two surrogates do not make one character where a wide character holds 32 bits.
    const std::wstring lPair = Character(0xD83D) + Character(0xDE00);
    EXPECT_EQ("\xEF\xBF\xBD\xEF\xBF\xBD", WideCharToUTF8(lPair.c_str(), false));
}

TEST(Convert, WideCharToUTF8StrictWhatUTF8CannotCarryThrows)
{
    for (const unsigned int lCodePoint : gNoScalarValues)
    {
        const std::wstring lText = L"ab\x20AC" + Character(lCodePoint) + Character(0xD800);
        EXPECT_MESSAGE(WideCharToUTF8(lText.c_str(), true), Message,
                       L"QBase::WideCharToUTF8; UTF-8 cannot carry the character at index 3");
    }
    EXPECT_MESSAGE(WideCharToUTF8(Character(0xD800).c_str(), true), Message,
                   L"QBase::WideCharToUTF8; UTF-8 cannot carry the character at index 0");
}

struct IllFormed
{
    std::string_view mBytes;
    std::wstring_view mText; // '?' stands for U+FFFD
    std::size_t mOffset;     // of the first place that is ill-formed
};

const IllFormed gIllFormed[] = {
    // Bytes that begin nothing.
    {"\x80"sv, L"?", 0},
    {"\xBF"sv, L"?", 0},
    {"\x80\x80\x80"sv, L"???", 0},
    {"\xC0\x80"sv, L"??", 0},
    {"\xC1\xBF"sv, L"??", 0},
    {"\xF5\x80\x80\x80"sv, L"????", 0},
    {"\xF8\x88\x80\x80\x80"sv, L"?????", 0},
    {"\xFE\xFF"sv, L"??", 0},
    // Overlong, surrogates and beyond the last code point: the second byte does not fit, so each byte stands alone.
    {"\xE0\x80\x80"sv, L"???", 0},
    {"\xE0\x9F\xBF"sv, L"???", 0},
    {"\xF0\x80\x80\x80"sv, L"????", 0},
    {"\xF0\x8F\xBF\xBF"sv, L"????", 0},
    {"\xED\xA0\x80"sv, L"???", 0},
    {"\xED\xBF\xBF"sv, L"???", 0},
    {"\xF4\x90\x80\x80"sv, L"????", 0},
    // Cut short: what is there is one piece.
    {"\xC3"sv, L"?", 0},
    {"a\xC3z"sv, L"a?z", 1},
    {"ab\xE2\x82"sv, L"ab?", 2},
    {"\xE2\x82z"sv, L"?z", 0},
    {"\xE2z"sv, L"?z", 0},
    {"\xF0\x9F"sv, L"?", 0},
    {"\xF0\x9F\x98"sv, L"?", 0},
    {"\xF0\x9F\x98z"sv, L"?z", 0},
    {"\xF0z\x98\x80"sv, L"?z??", 0},
    {"\xE0\xA0\xE0\xA0\x80"sv, L"?\x0800", 0},
    {"\xC3\xC3\xA9"sv, L"?\x00E9", 0},
    {"\xF4\x8F\xBF\xC3\xA9"sv, L"?\x00E9", 0},
    {"\xC3\x00"sv, L"?\0"sv, 0},
    // Several kinds in a row.
    {"\xC0\xAF\xE0\x80\xBF\xF0\x81\x82\x41"sv, L"????????A", 0},
    {"\xED\xA0\x80\xED\xBF\xBF\xED\xAF\x41"sv, L"????????A", 0},
    {"\xF4\x91\x92\x93\xFF\x41\x80\xBF\x42"sv, L"?????A??B", 0},
    {"\xE1\x80\xE2\xF0\x91\x92\xF1\xBF\x41"sv, L"????A", 0},
    {"A\xF1\x80\x80\xE1\x80\xC2"
     "B\x80"
     "C\x80\xBF"
     "D"sv,
     L"A???B?C??D", 1},
};

TEST(Convert, UTF8ToWideCharReplacesEachMaximalSubpart)
{
    for (const IllFormed& lIllFormed : gIllFormed)
    {
        std::wstring lExpected(lIllFormed.mText);
        for (wchar_t& lCharacter : lExpected)
        {
            lCharacter = lCharacter == L'?' ? L'\xFFFD' : lCharacter;
        }
        EXPECT_EQ(Support::Readable(lExpected), Support::Readable(UTF8ToWideChar(lIllFormed.mBytes, false)));
    }
}

TEST(Convert, UTF8ToWideCharStrictIllFormedThrows)
{
    for (const IllFormed& lIllFormed : gIllFormed)
    {
        EXPECT_MESSAGE(UTF8ToWideChar(lIllFormed.mBytes, true), Message,
                       L"QBase::UTF8ToWideChar; Ill-formed UTF-8 at byte offset " +
                           std::to_wstring(lIllFormed.mOffset));
    }
    EXPECT_MESSAGE(UTF8ToWideChar("0123456789\xE2\x82\xAC\xFF", true), Message,
                   L"QBase::UTF8ToWideChar; Ill-formed UTF-8 at byte offset 13");
}

} // namespace
