// The decimal point is the current C locale's, in both directions.

#include "TalBase/PropertyBagHelpers.h"

#include "Tests/Support/Expect.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <string>

namespace
{

using QTalBase::Stringize;
using QTalBase::UnStringize;
using Support::Text;

double ParsedDouble(const wchar_t* ipText)
{
    double lValue = 77.0;
    UnStringize(ipText, lValue);
    return lValue;
}

float ParsedFloat(const wchar_t* ipText)
{
    float lValue = 77.0F;
    UnStringize(ipText, lValue);
    return lValue;
}

// Looks first for a locale that the build has compiled for this test, then among the machine's own.
bool SetLocaleWithComma()
{
    ::setenv("LOCPATH", TALBASE_TEST_LOCALES, 1);
    const bool lFound = std::setlocale(LC_NUMERIC, "de_DE.UTF-8") != nullptr;
    ::unsetenv("LOCPATH");
    if (lFound)
    {
        return true;
    }
    for (const char* lName : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "fr_FR.utf8", "it_IT.UTF-8", "nl_NL.UTF-8"})
    {
        if (std::setlocale(LC_NUMERIC, lName) != nullptr)
        {
            return true;
        }
    }
    return false;
}

class StringizeLocale : public testing::Test
{
protected:
    void TearDown() override
    {
        std::setlocale(LC_ALL, "C");
    }
};

TEST_F(StringizeLocale, TheCLocaleWritesAndReadsAPoint)
{
    EXPECT_EQ(Text(Stringize(0.5)), L"0.5");
    EXPECT_EQ(Text(Stringize(2.5F)), L"2.5");
    EXPECT_EQ(ParsedDouble(L"2.5"), 2.5);
    EXPECT_EQ(ParsedDouble(L"2,5"), 2.0);
    EXPECT_EQ(ParsedFloat(L"2,5"), 2.0F);
}

TEST_F(StringizeLocale, ALocaleWithACommaWritesAndReadsAComma)
{
    const bool lHasComma = SetLocaleWithComma();
    EXPECT_TRUE(lHasComma || !TALBASE_TEST_HAS_COMMA_LOCALE) << "the build has compiled a locale for this test";
    const double lWithComma = lHasComma ? 2.5 : 2.0;
    const double lWithPoint = lHasComma ? 2.0 : 2.5;
    EXPECT_EQ(Text(Stringize(0.5)), lHasComma ? L"0,5" : L"0.5");
    EXPECT_EQ(Text(Stringize(2.5F)), lHasComma ? L"2,5" : L"2.5");
    EXPECT_EQ(Text(Stringize(1234567.0)), lHasComma ? L"1,23457e+06" : L"1.23457e+06");
    EXPECT_EQ(ParsedDouble(L"2,5"), lWithComma);
    EXPECT_EQ(ParsedDouble(L"2.5"), lWithPoint);
    EXPECT_EQ(ParsedFloat(L"2,5"), static_cast<float>(lWithComma));
    EXPECT_EQ(ParsedFloat(L"2.5"), static_cast<float>(lWithPoint));
}

TEST_F(StringizeLocale, IntegersHaveNoSeparatorInAnyLocale)
{
    SetLocaleWithComma();
    EXPECT_EQ(Text(Stringize(1234567)), L"1234567");
    EXPECT_EQ(Text(Stringize(1234567U)), L"1234567");
    unsigned int lValue = 77;
    UnStringize(L"1.234", lValue);
    EXPECT_EQ(lValue, 1U);
}

} // namespace
