#include "Text/Excerpts.h"
#include "Text/Text.h"

#include "QBase/Convert.h"
#include "TalBase/Initializer.h"

#include <gtest/gtest.h>

using namespace TalBaseTool;

namespace
{

const QTalBase::Initializer gInitializer;

// The excerpt around a place of a text without secrets.
std::string Around(const std::wstring& iText, std::size_t iPosition, std::size_t iLength, std::size_t iWidth)
{
    const Gate lGate;
    return Excerpts(iText, lGate, iWidth).Make(iPosition, iLength, Palette(ColorChoice::Never, false), Style::Error);
}

std::size_t LongestLine(const std::string& iLines)
{
    std::size_t lLongest = 0;
    for (std::size_t lStart = 0; lStart < iLines.size();)
    {
        const std::size_t lStop = iLines.find('\n', lStart);
        lLongest = std::max(lLongest, GetWidth(QBase::UTF8ToWideChar(iLines.substr(lStart, lStop - lStart), true)));
        lStart = lStop + 1;
    }
    return lLongest;
}

} // namespace

TEST(Excerpts, PlaceHasACaretBelow)
{
    EXPECT_EQ(Around(L"one\ntwo three\nfour", 8, 5, 0), "  two three\n      ^~~~~\n");
    EXPECT_EQ(Around(L"one", 3, 1, 0), "  one\n     ^\n");
}

TEST(Excerpts, KeepTheWidth)
{
    const std::wstring lDigits = L"0123456789";
    const std::wstring lText = lDigits + lDigits + lDigits + lDigits + lDigits + lDigits + lDigits + lDigits + lDigits;
    EXPECT_EQ(Around(lText, 45, 2, 30), "  \u202612345678901234567890123456\u2026\n                 ^~\n");
    for (const std::wstring& lOf : {lText, std::wstring(90, L'\u8A9E'), std::wstring(90, L'\u202E'),
                                    std::wstring(90, L'\t') + std::wstring(90, L'\\')})
    {
        for (const std::size_t lWidth : {24U, 40U, 80U, 200U})
        {
            for (const std::size_t lLength : {1U, 70U})
            {
                EXPECT_LE(LongestLine(Around(lOf, 45, lLength, lWidth)), std::min<std::size_t>(lWidth, 80));
            }
        }
    }
    EXPECT_EQ(Around(lText, 45, 2, 200), Around(lText, 45, 2, 0));
}

TEST(Excerpts, MarksAloneDoNotGoOn)
{
    EXPECT_LT(Around(std::wstring(5000, L'\u0301'), 2500, 1, 80).size(), 400U);
}
