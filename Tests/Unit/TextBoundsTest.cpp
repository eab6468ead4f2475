// What scans and copies texts in whole steps touches nothing outside them: the texts lie between pages that nobody may
// read or write, once at the beginning of their own and once at its end.

#include "TalBase/PrivateSource/TextCutters.h"
#include "TalBase/PrivateSource/TextPrimitives.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

using QTalBase::Found;
using QTalBase::LongCutter;
using QTalBase::ShortCutter;

namespace
{

const std::size_t gLongest = 100;

// A page of characters between two that may not be touched.
class GuardedPage
{
public:
    GuardedPage()
        : mSize(static_cast<std::size_t>(::sysconf(_SC_PAGESIZE))),
          mMemory(static_cast<char*>(::mmap(nullptr, 3 * mSize, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)))
    {
        EXPECT_EQ(::mprotect(mMemory + mSize, mSize, PROT_READ | PROT_WRITE), 0);
    }

    ~GuardedPage()
    {
        ::munmap(mMemory, 3 * mSize);
    }

    GuardedPage(const GuardedPage&) = delete;
    GuardedPage& operator=(const GuardedPage&) = delete;

    // Room for so many characters, at the page's beginning or its end.
    wchar_t* Place(std::size_t iLength, bool iIsAtEnd) const
    {
        wchar_t* lPage = reinterpret_cast<wchar_t*>(mMemory + mSize);
        return iIsAtEnd ? lPage + mSize / sizeof(wchar_t) - iLength : lPage;
    }

    std::wstring_view Put(const std::wstring& iText, bool iIsAtEnd) const
    {
        wchar_t* lPlace = Place(iText.size(), iIsAtEnd);
        iText.copy(lPlace, iText.size());
        return {lPlace, iText.size()};
    }

private:
    std::size_t mSize;
    char* mMemory;
};

template <class Cutter>
std::size_t CountDelimiters(Cutter iCutter)
{
    std::size_t lCount = 0;
    while (iCutter.Next() != Found::Nothing)
    {
        ++lCount;
    }
    return lCount;
}

} // namespace

class TextBounds : public testing::TestWithParam<bool>
{
};

TEST_P(TextBounds, CuttersReadNothingOutsideTheText)
{
    const GuardedPage lPage;
    for (std::size_t lLength = 1; lLength < gLongest; ++lLength)
    {
        std::wstring lText;
        while (lText.size() < lLength)
        {
            lText += L"[[+n***]]+++";
        }
        lText.resize(lLength);
        const std::wstring_view lPut = lPage.Put(lText, GetParam());
        const std::size_t lExpected = CountDelimiters(LongCutter(lText, L"[[", L"]]"));
        EXPECT_EQ(CountDelimiters(ShortCutter(lPut, L"[[", L"]]")), lExpected) << lLength;
        EXPECT_EQ(CountDelimiters(LongCutter(lPut, L"[[", L"]]")), lExpected) << lLength;
        EXPECT_EQ(CountDelimiters(ShortCutter(lPut, L"+++[[+n", L"***]]")),
                  CountDelimiters(LongCutter(lPut, L"+++[[+n", L"***]]")));
    }
}

TEST_P(TextBounds, PrimitivesTouchNothingOutsideTheText)
{
    const GuardedPage lSource;
    const GuardedPage lTarget;
    for (std::size_t lLength = 0; lLength < gLongest; ++lLength)
    {
        const std::wstring_view lText = lSource.Put(std::wstring(lLength, L'x'), GetParam());
        wchar_t* lCopy = lTarget.Place(lLength, GetParam());
        EXPECT_EQ(QTalBase::CopyText(lText, lCopy), lCopy + lLength);
        EXPECT_TRUE(QTalBase::AreEqualTexts(lText, std::wstring_view(lCopy, lLength)));
        EXPECT_FALSE(QTalBase::Contains(lText, L'&'));
        EXPECT_EQ(QTalBase::FindCharacter(lText, L'&'), lLength);
    }
}

INSTANTIATE_TEST_SUITE_P(BesideAGuard, TextBounds, testing::Bool(),
                         [](const auto& iInfo) { return iInfo.param ? "AtTheEnd" : "AtTheBeginning"; });
