#include "Table.h"

#include <gtest/gtest.h>

#include <sstream>

namespace MailSpool
{

TEST(Table, MakePrintableShowsControlsAsNumbers)
{
    EXPECT_EQ(MakePrintable(L"a\tb\x1b[31m\n\x7f\x85"), L"a b\\x1b[31m\\x0a\\x7f\\x85");
    EXPECT_EQ(MakePrintable(L"\u202Eabc\u2066"), L"\\u202eabc\\u2066");
    EXPECT_EQ(MakePrintable(std::wstring_view(L"\0", 1)), L"\\x00");
    EXPECT_EQ(MakePrintable(std::wstring(1, static_cast<wchar_t>(-1))), L"\\uffffffff");
    EXPECT_EQ(MakePrintable(L"Gr\u00FC\u00DFe \u4F1A \u2709"), L"Gr\u00FC\u00DFe \u4F1A \u2709");
}

TEST(Table, GetWidthCountsColumns)
{
    EXPECT_EQ(GetWidth(L"abc"), 3u);
    EXPECT_EQ(GetWidth(L"\u4F1A\u8B70"), 4u);
    EXPECT_EQ(GetWidth(L"e\u0301"), 1u);
    EXPECT_EQ(GetWidth(L"\U0001F600"), 2u);
}

TEST(Table, CutToWidthNeverGoesBeyondIt)
{
    EXPECT_EQ(CutToWidth(L"abcdef", 6), L"abcdef");
    EXPECT_EQ(CutToWidth(L"abcdef", 5), L"abcd\u2026");
    EXPECT_EQ(CutToWidth(L"\u4F1A\u8B70\u4F1A", 4), L"\u4F1A\u2026");
    EXPECT_EQ(CutToWidth(L"\u4F1A\u8B70\u4F1A", 5), L"\u4F1A\u8B70\u2026");
}

TEST(Table, PrintAlignsColumns)
{
    Table lTable({{L"Name", 6}, {L"Size", 10, true}, {L"Text", 20}});
    lTable.AddRow({L"\u4F1A\u8B70", L"7", L"x\ty"});
    lTable.AddRow({L"abcdefgh", L"12345", L""});
    std::ostringstream lStream;
    lTable.Print(lStream);
    EXPECT_EQ(lStream.str(), "Name     Size  Text\n"
                             "------  -----  ----\n"
                             "\xE4\xBC\x9A\xE8\xAD\xB0        7  x y\n"
                             "abcde\xE2\x80\xA6  12345\n");
}

TEST(Table, PrintWithoutRowsWritesTheHeads)
{
    std::ostringstream lStream;
    Table({{L"A", 3}, {L"Bc", 3}}).Print(lStream);
    EXPECT_EQ(lStream.str(), "A  Bc\n-  --\n");
}

} // namespace MailSpool
