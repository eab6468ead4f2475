// The tables of a document in Markdown, so that tests can run what the document says.

#ifndef TESTS_CONTRACT_DOCUMENTS_DOCUMENT_H
#define TESTS_CONTRACT_DOCUMENTS_DOCUMENT_H

#include <map>
#include <string>
#include <vector>

namespace Documents
{

// A row: its cells by the name of their column, blanks around them removed.
using Row = std::map<std::string, std::string>;

struct Table
{
    std::string mSection;              // the heading above it, without '#'
    std::string mIntroduction;         // the text between that heading, or the table before it, and the table
    std::vector<std::string> mColumns; // in order
    std::vector<Row> mRows;
};

// Returns the content of a file of the project, its path relative to the project's folder. Throws std::runtime_error.
std::string ReadProjectFile(const std::string& iPath);

// Returns the tables of a Markdown text in order. Throws std::runtime_error for a row with too few or too many cells.
std::vector<Table> ReadTables(const std::string& iText);

// Returns the rows of all tables that have exactly these columns. Throws std::runtime_error where there is none.
std::vector<Row> RowsWithColumns(const std::vector<Table>& iTables, const std::vector<std::string>& iColumns);

// Returns the contents of the code spans (`...`) of a text in order.
std::vector<std::string> CodeSpans(const std::string& iText);

// Returns the one code span that the cell consists of, or the empty text for an empty cell. Throws std::runtime_error.
std::wstring CodeCell(const Row& iRow, const std::string& iColumn);

} // namespace Documents

#endif
