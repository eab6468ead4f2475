#include "TalBase/PropertyBagHelpers.h"

#include "Tests/Support/Expect.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <type_traits>

namespace
{

using QTalBase::Stringize;
using QTalBase::UnStringize;
using Support::Readable;
using Support::Text;

const _GUID gSample = {0x0123abcd, 0x4567, 0x89ef, {0xfe, 0xdc, 0xba, 0x98, 0x76, 0x54, 0x32, 0x10}};

// Returns what the text gives, starting from a value that no row of a table expects by chance.
template <class Value>
Value Parsed(const wchar_t* ipText, Value iStart)
{
    Value lValue = iStart;
    UnStringize(ipText, lValue);
    return lValue;
}

template <class Value>
struct Row
{
    const wchar_t* mText;
    Value mValue;
};

template <class Value, std::size_t iCount>
void ExpectWritten(const Row<Value> (&iRows)[iCount])
{
    for (const Row<Value>& lRow : iRows)
    {
        EXPECT_EQ(Text(Stringize(lRow.mValue)), lRow.mText);
    }
}

template <class Value, std::size_t iCount>
void ExpectParsed(const Row<Value> (&iRows)[iCount], Value iStart)
{
    for (const Row<Value>& lRow : iRows)
    {
        EXPECT_EQ(Parsed(lRow.mText, iStart), lRow.mValue) << Readable(lRow.mText);
    }
}

TEST(Stringize, Int)
{
    const Row<int> lRows[] = {
        {L"0", 0}, {L"7", 7}, {L"-5", -5}, {L"2147483647", 2147483647}, {L"-2147483648", -2147483647 - 1}};
    ExpectWritten(lRows);
}

TEST(Stringize, ShortKeepsItsSign)
{
    const Row<short> lRows[] = {{L"0", 0}, {L"-5", -5}, {L"32767", 32767}, {L"-32768", -32768}};
    ExpectWritten(lRows);
}

TEST(Stringize, UnsignedInt)
{
    const Row<unsigned int> lRows[] = {{L"0", 0}, {L"2147483648", 2147483648U}, {L"4294967295", 4294967295U}};
    ExpectWritten(lRows);
}

TEST(Stringize, UnsignedShort)
{
    const Row<unsigned short> lRows[] = {{L"0", 0}, {L"32768", 32768}, {L"65535", 65535}};
    ExpectWritten(lRows);
}

TEST(Stringize, Bool)
{
    const Row<bool> lRows[] = {{L"true", true}, {L"false", false}};
    ExpectWritten(lRows);
}

TEST(Stringize, DoubleHasSixSignificantDigits)
{
    const Row<double> lRows[] = {{L"0", 0.0},
                                 {L"-0", -0.0},
                                 {L"0.1", 0.1},
                                 {L"100", 100.0},
                                 {L"-2.5", -2.50},
                                 {L"0.333333", 1.0 / 3.0},
                                 {L"999999", 999999.0},
                                 {L"1e+06", 1000000.0},
                                 {L"1e+06", 999999.5},
                                 {L"1.23457e+08", 123456789.0},
                                 {L"0.0001", 0.0001},
                                 {L"9.9999e-05", 0.000099999},
                                 {L"1e-05", 0.00001},
                                 {L"1e+100", 1e100},
                                 {L"1.79769e+308", std::numeric_limits<double>::max()},
                                 {L"-1.79769e+308", std::numeric_limits<double>::lowest()},
                                 {L"2.22507e-308", std::numeric_limits<double>::min()},
                                 {L"4.94066e-324", std::numeric_limits<double>::denorm_min()},
                                 {L"inf", std::numeric_limits<double>::infinity()},
                                 {L"-inf", -std::numeric_limits<double>::infinity()},
                                 {L"nan", std::numeric_limits<double>::quiet_NaN()}};
    ExpectWritten(lRows);
}

TEST(Stringize, FloatIsWidenedFirst)
{
    const Row<float> lRows[] = {{L"0.5", 0.5F},
                                {L"0.1", 0.1F},
                                {L"1.67772e+07", 16777216.0F},
                                {L"1e+06", 1000000.0F},
                                {L"3.40282e+38", std::numeric_limits<float>::max()},
                                {L"1.17549e-38", std::numeric_limits<float>::min()},
                                {L"1.4013e-45", std::numeric_limits<float>::denorm_min()},
                                {L"-inf", -std::numeric_limits<float>::infinity()},
                                {L"nan", std::numeric_limits<float>::quiet_NaN()}};
    ExpectWritten(lRows);
}

TEST(Stringize, Guid)
{
    EXPECT_EQ(Text(Stringize(gSample)), L"0123abcd-4567-89ef-fedc-ba9876543210");
    EXPECT_EQ(Text(Stringize(_GUID{})), L"00000000-0000-0000-0000-000000000000");
}

TEST(Stringize, DateTime)
{
    QDataType::DateTime lTime;
    EXPECT_EQ(Text(Stringize(lTime)), L"1970-01-01T00:00:00Z");
    ASSERT_TRUE(lTime.FromString("2026-11-21T04:49:00.250+02:00"));
    EXPECT_EQ(Text(Stringize(lTime)), L"2026-11-21T02:49:00.25Z");
}

TEST(Stringize, SmallerTypesTakeTheOverloadTheyPromoteTo)
{
    EXPECT_EQ(Text(Stringize('A')), L"65");
    EXPECT_EQ(Text(Stringize(static_cast<signed char>(-1))), L"-1");
    EXPECT_EQ(Text(Stringize(1 == 1)), L"true");
    EXPECT_EQ(Text(Stringize(1U)), L"1");
}

TEST(UnStringize, Int)
{
    const Row<int> lRows[] = {{L"0", 0},
                              {L"-5", -5},
                              {L"+5", 5},
                              {L"  42", 42},
                              {L"12abc", 12},
                              {L"12.9", 12},
                              {L"007", 7},
                              {L"0x10", 0},
                              {L"abc", 0},
                              {L"", 0},
                              {L"-", 0},
                              {L"- 5", 0},
                              {L"--5", 0},
                              {L"2147483647", 2147483647},
                              {L"2147483648", 2147483647},
                              {L"-2147483648", -2147483647 - 1},
                              {L"-2147483649", -2147483647 - 1},
                              {L"99999999999999999999999", 2147483647},
                              {L"-99999999999999999999999", -2147483647 - 1}};
    ExpectParsed(lRows, 77);
}

TEST(UnStringize, ShortTakesTheLowSixteenBits)
{
    const Row<short> lRows[] = {{L"-5", -5},         {L"32767", 32767},   {L"32768", -32768}, {L"-32769", 32767},
                                {L"65535", -1},      {L"65536", 0},       {L"70000", 4464},   {L"40000", -25536},
                                {L"2147483648", -1}, {L"-2147483649", 0}, {L"12abc", 12},     {L"", 0}};
    ExpectParsed(lRows, static_cast<short>(77));
}

TEST(UnStringize, UnsignedIntTakesTheLowThirtyTwoBits)
{
    const Row<unsigned int> lRows[] = {{L"12abc", 12},
                                       {L"abc", 0},
                                       {L"", 0},
                                       {L"+7", 7},
                                       {L" \t\n 8", 8},
                                       {L"0x10", 0},
                                       {L"010", 10},
                                       {L"1 2", 1},
                                       {L"4294967295", 4294967295U},
                                       {L"4294967296", 0},
                                       {L"4294967299", 3},
                                       {L"-1", 4294967295U},
                                       {L"-4294967295", 1},
                                       {L"- 1", 0},
                                       {L"18446744073709551615", 4294967295U},
                                       {L"99999999999999999999999", 4294967295U},
                                       {L"-99999999999999999999999", 4294967295U}};
    ExpectParsed(lRows, 77U);
}

TEST(UnStringize, UnsignedShortTakesTheLowSixteenBits)
{
    const Row<unsigned short> lRows[] = {{L"65535", 65535},
                                         {L"65536", 0},
                                         {L"70000", 4464},
                                         {L"-1", 65535},
                                         {L"12abc", 12},
                                         {L"abc", 0},
                                         {L"99999999999999999999999", 65535}};
    ExpectParsed(lRows, static_cast<unsigned short>(77));
}

TEST(UnStringize, BoolIsTrueForExactlyOneText)
{
    const Row<bool> lFalse[] = {{L"True", false},  {L"TRUE", false},  {L"1", false},   {L" true", false},
                                {L"true ", false}, {L"truex", false}, {L"tru", false}, {L"yes", false},
                                {L"", false},      {L"false", false}};
    ExpectParsed(lFalse, true);
    EXPECT_TRUE(Parsed(L"true", false));
}

TEST(UnStringize, Double)
{
    const Row<double> lRows[] = {{L"0.1", 0.1},
                                 {L"1e+06", 1000000.0},
                                 {L" \t-2.5xyz", -2.5},
                                 {L".5", 0.5},
                                 {L"5.", 5.0},
                                 {L"+3", 3.0},
                                 {L"0x1.8p1", 3.0},
                                 {L"1.7976931348623157e308", std::numeric_limits<double>::max()},
                                 {L"1e400", std::numeric_limits<double>::infinity()},
                                 {L"-1e400", -std::numeric_limits<double>::infinity()},
                                 {L"1e-400", 0.0},
                                 {L"inf", std::numeric_limits<double>::infinity()},
                                 {L"-INFINITY", -std::numeric_limits<double>::infinity()},
                                 {L"0,5", 0.0},
                                 {L"abc", 0.0},
                                 {L"-", 0.0},
                                 {L"", 0.0}};
    ExpectParsed(lRows, 77.0);
    EXPECT_TRUE(std::isnan(Parsed(L"nan", 77.0)));
    EXPECT_TRUE(std::isnan(Parsed(L"NaN(1)", 77.0)));
}

TEST(UnStringize, FloatIsADoubleNarrowed)
{
    const Row<float> lRows[] = {{L"0.5", 0.5F},
                                {L"0.1", 0.1F},
                                {L"-2.5xyz", -2.5F},
                                {L"1e39", std::numeric_limits<float>::infinity()},
                                {L"-1e400", -std::numeric_limits<float>::infinity()},
                                {L"1e-46", 0.0F},
                                {L"abc", 0.0F},
                                {L"", 0.0F}};
    ExpectParsed(lRows, 77.0F);
    EXPECT_TRUE(std::isnan(Parsed(L"nan", 77.0F)));
    // Just above the middle between 1 and the next float: read as a double it is the middle, and goes to the even side.
    EXPECT_EQ(Parsed(L"1.00000005960464477539062500001", 77.0F), 1.0F);
}

TEST(UnStringize, GuidTakesBothCasesAndBraces)
{
    EXPECT_EQ(Parsed(L"0123abcd-4567-89ef-fedc-ba9876543210", _GUID{}), gSample);
    EXPECT_EQ(Parsed(L"0123ABCD-4567-89EF-FEDC-BA9876543210", _GUID{}), gSample);
    EXPECT_EQ(Parsed(L"{0123abcd-4567-89ef-fedc-ba9876543210}", _GUID{}), gSample);
}

TEST(UnStringize, GuidOfAnotherTextIsLeftAsItWas)
{
    for (const wchar_t* lText : {L"", L"0123abcd", L"00000000-0000-0000-0000-00000000000",
                                 L"00000000-0000-0000-0000-0000000000000", L"{00000000-0000-0000-0000-000000000000",
                                 L"00000000-0000-0000-0000-000000000000 ", L"g0000000-0000-0000-0000-000000000000"})
    {
        EXPECT_EQ(Parsed(lText, gSample), gSample) << Readable(lText);
    }
}

TEST(UnStringize, DateTime)
{
    QDataType::DateTime lTime;
    UnStringize(L"2026-11-21T04:49:00+02:00", lTime);
    EXPECT_EQ(Text(lTime.ToWString()), L"2026-11-21T02:49:00Z");
}

TEST(UnStringize, DateTimeOfAnotherTextIsLeftAsItWas)
{
    QDataType::DateTime lTime;
    ASSERT_TRUE(lTime.FromString("2026-11-21T02:49:00Z"));
    // A surrogate cannot become UTF-8; it is replaced, not refused, and then no date-time.
    for (const wchar_t* lText :
         {L"", L"2026-11-21", L"2026-11-21T02:49:00", L"2026-13-21T02:49:00Z", L"1999-01-01T00:00:00Z\xD800",
          L"\x0661"
          L"999-01-01T00:00:00Z"})
    {
        EXPECT_NO_THROW(UnStringize(lText, lTime));
        EXPECT_EQ(Text(lTime.ToWString()), L"2026-11-21T02:49:00Z") << Readable(lText);
    }
}

TEST(UnStringize, ReturnsNothingForAnyType)
{
    EXPECT_TRUE(std::is_void_v<decltype(UnStringize(L"", std::declval<int&>()))>);
    EXPECT_TRUE(std::is_void_v<decltype(UnStringize(L"", std::declval<_GUID&>()))>);
    EXPECT_TRUE(std::is_void_v<decltype(UnStringize(L"", std::declval<QDataType::DateTime&>()))>);
}

template <class Value>
void ExpectComesBack(Value iValue)
{
    EXPECT_EQ(Parsed(Stringize(iValue).c_str(), static_cast<Value>(77)), iValue);
}

TEST(UnStringize, ReadsBackWhatStringizeWrites)
{
    for (int lShift = 0; lShift < 32; ++lShift)
    {
        const unsigned int lBits = 0x9E3779B9U >> lShift;
        ExpectComesBack(lBits);
        ExpectComesBack(static_cast<int>(lBits));
        ExpectComesBack(static_cast<short>(lBits));
        ExpectComesBack(static_cast<unsigned short>(lBits));
        ExpectComesBack(lBits % 2 == 0);
        ExpectComesBack(static_cast<double>(lBits % 1000000)); // six digits are kept
        ExpectComesBack(static_cast<float>(lBits % 1000000));
    }
    EXPECT_EQ(Parsed(Stringize(gSample).c_str(), _GUID{}), gSample);
}

} // namespace
