// How values are stored, which only the library knows.

#include "Text/Escaping.h"

#include "TalBase/Initializer.h"

#include <gtest/gtest.h>

#include <iterator>
#include <random>

using namespace TalBaseTool;

namespace
{

const QTalBase::Initializer gInitializer;

} // namespace

TEST(Escaping, UnescapeTakesWholeEscapesUnderTheUsualPair)
{
    const Escaping lUsual(BEGIN, END);
    EXPECT_EQ(lUsual.Unescape(L"a&#43;b&#42;"), L"a+b*");
    EXPECT_EQ(lUsual.Unescape(L"&#&#42;2;&#43"), L"&#*2;&#43");
    EXPECT_EQ(lUsual.Unescape(L"&amp;"), L"&amp;");
    EXPECT_EQ(Escaping(L"<<", L">>").Unescape(L"a&#43;b"), L"a&#43;b");
}

TEST(Escaping, UnescapeIsWhatABagReturns)
{
    const wchar_t* const lPieces[] = {L"&#42;", L"&#43;", L"&", L"#4", L"2;", L"3;", L"a", L"\u00E4"};
    std::mt19937 lEngine(1);
    for (const wchar_t* const lBegin : {BEGIN, L"<<"})
    {
        const Escaping lEscaping(lBegin, END);
        const BagPtr lBag(QTalBase::CreatePropertyBag(lBegin, END));
        for (int lRun = 0; lRun < 2000; ++lRun)
        {
            std::wstring lStored = L"x";
            for (auto lCount = lEngine() % 12; lCount > 0; --lCount)
            {
                lStored += lPieces[lEngine() % std::size(lPieces)];
            }
            lBag->SetProperty(L"n", lStored.c_str(), false);
            EXPECT_EQ(lEscaping.Unescape(lStored), lBag->GetProperty(L"n").c_str());
            EXPECT_EQ(lEscaping.HoldsEscape(lStored), lEscaping.Unescape(lStored) != lStored);
        }
    }
}
