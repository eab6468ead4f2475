// What a text that can be read may have lost, by guesses.

#include "Text/Damage.h"

#include "TalBase/Initializer.h"

#include <gtest/gtest.h>

using namespace TalBaseTool;

namespace
{

const QTalBase::Initializer gInitializer;

// "name 36+5, nest 50+12"
std::string Find(const std::wstring& iText, const DelimiterTexts& iPair = {BEGIN, END})
{
    const std::wstring lHeader = WriteHeader(iPair);
    const std::size_t lContent = iText.rfind(lHeader, 0) == 0 ? lHeader.size() : 0;
    std::string lFound;
    for (const Damage& lDamage : FindDamage(iText, lContent, iPair))
    {
        lFound += lFound.empty() ? "" : ", ";
        lFound += lDamage.mKind == DamageKind::EmptyText       ? "empty "
                  : lDamage.mKind == DamageKind::LineEndInName ? "name "
                                                               : "nest ";
        lFound += std::to_string(lDamage.mPosition) + "+" + std::to_string(lDamage.mLength);
    }
    return lFound;
}

} // namespace

TEST(Damage, EmptyTextsAreFound)
{
    EXPECT_EQ(Find(L""), "empty 0+0");
    EXPECT_EQ(Find(L" \r\n\t"), "empty 0+1");
    EXPECT_EQ(Find(L"EndDelimiter***BeginDelimiter++++***"), "");
}

TEST(Damage, NamesThatBeginWithALineEndAreFound)
{
    const DelimiterTexts lPair{L"=", L";"};
    EXPECT_EQ(Find(L"a=1;\nb=2;\r\nc=3;d=4;", lPair), "name 4+2, name 9+3");
    EXPECT_EQ(Find(L"\na=\nb=1;;c=\n;", lPair), "name 0+2, name 3+2");
    EXPECT_EQ(Find(L"a\n=\n1;b=2;\n", lPair), "");
    EXPECT_EQ(Find(L"\na=;b=2;", lPair), ""); // it is not kept at all
    EXPECT_EQ(Find(L"a=1\nb=2\n", {L"=", L"\n"}), "");
}

TEST(Damage, NestsThatBecameTextAreFound)
{
    const DelimiterTexts lPair{L"=", L";"};
    EXPECT_EQ(Find(L"n=EndDelimiter***BeginDelimiter++++***a++++1***;", lPair), "nest 2+45");
    EXPECT_EQ(Find(L"n=\n EndDelimiter]]BeginDelimiter[[]]a[[1]];m=v;", lPair), "nest 2+40");
    EXPECT_EQ(Find(L"n=a++++1***;", lPair), "nest 2+9");
    EXPECT_EQ(Find(L"n=m=a++++1***;;", lPair), "nest 4+9");
    EXPECT_EQ(Find(L"n=a++++1;m=2***;", lPair), "");
    EXPECT_EQ(Find(L"n=C++++ and ***;m=EndDelimiter;k=the EndDelimiter comes before BeginDelimiter;", lPair),
              "nest 2+13"); // a guess
    EXPECT_EQ(Find(L"n++++a&#43;&#43;&#43;&#43;1&#42;&#42;&#42;***m++++1&#43;1***"), "nest 5+37");
    EXPECT_EQ(
        Find(L"EndDelimiter***BeginDelimiter++++***n++++see EndDelimiter&#42;&#42;&#42;BeginDelimiter&#43;&#43;&#43;"
             L"&#43;&#42;&#42;&#42;***"),
        "nest 41+80");
    EXPECT_EQ(Find(L"n++++a++++1******m++++2&#42;2***"), "");
}

TEST(Damage, ManyDelimitersTakeLinearTime)
{
    std::wstring lText;
    for (int lIndex = 0; lIndex < 200000; ++lIndex)
    {
        lText += L"\nn=a++++1;";
    }
    EXPECT_EQ(FindDamage(lText, 0, {L"=", L";"}).size(), 200000U);
}
