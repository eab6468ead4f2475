// Columns of text for a terminal. Subjects and addresses come from strangers: whatever could move the cursor, switch
// colours or turn the direction of writing round is shown as a number instead.

#ifndef MAILSPOOL_TABLE_H
#define MAILSPOOL_TABLE_H

#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace MailSpool
{

// The text with every control character, C1 and directional ones included, as "\x1b" or "\u202e"; a tab as a blank.
std::wstring MakePrintable(std::wstring_view iText);

// The number of columns that a text without control characters takes on a terminal: none for a combining mark, two for
// a wide East Asian character or a pictograph.
std::size_t GetWidth(std::wstring_view iText);

// The text cut to that many columns, with an ellipsis in the last one when something was cut.
std::wstring CutToWidth(std::wstring_view iText, std::size_t iWidth);

struct Column
{
    std::wstring mHead;
    std::size_t mMaxWidth = 0;
    bool mIsRightAligned = false;
};

class Table
{
public:
    explicit Table(std::vector<Column> iColumns);

    // Adds a row with a text for each column, printable or not.
    void AddRow(const std::vector<std::wstring>& iTexts);

    // Writes heads, a line and the rows as UTF-8. Each column is as wide as its widest text, up to its limit.
    void Print(std::ostream& oStream) const;

private:
    std::vector<Column> mColumns;
    std::vector<std::vector<std::wstring>> mRows;
};

} // namespace MailSpool

#endif
