#include "Tests/Contract/Documents/Document.h"

#include "QBase/Convert.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace Documents
{

namespace
{

std::string Trimmed(const std::string& iText)
{
    const std::size_t lFirst = iText.find_first_not_of(' ');
    if (lFirst == std::string::npos)
    {
        return "";
    }
    return iText.substr(lFirst, iText.find_last_not_of(' ') - lFirst + 1);
}

bool IsTableLine(const std::string& iLine)
{
    return !iLine.empty() && iLine.front() == '|';
}

std::vector<std::string> Cells(const std::string& iLine)
{
    std::vector<std::string> lCells;
    std::istringstream lStream(iLine.substr(1));
    std::string lCell;
    while (std::getline(lStream, lCell, '|'))
    {
        lCells.push_back(Trimmed(lCell));
    }
    return lCells;
}

// Takes the lines of a table, the line of dashes included.
void AddRows(Table& oTable, const std::vector<std::string>& iLines)
{
    oTable.mColumns = Cells(iLines.front());
    for (std::size_t lLine = 2; lLine < iLines.size(); ++lLine)
    {
        const std::vector<std::string> lCells = Cells(iLines[lLine]);
        if (lCells.size() != oTable.mColumns.size())
        {
            throw std::runtime_error("not as many cells as columns: " + iLines[lLine]);
        }
        Row& lRow = oTable.mRows.emplace_back();
        for (std::size_t lCell = 0; lCell < lCells.size(); ++lCell)
        {
            lRow[oTable.mColumns[lCell]] = lCells[lCell];
        }
    }
}

} // namespace

std::string ReadProjectFile(const std::string& iPath)
{
    std::ifstream lFile(std::string(TALBASE_SOURCE_DIR "/") + iPath, std::ios::binary);
    std::ostringstream lContent;
    lContent << lFile.rdbuf();
    if (!lFile || lContent.str().empty())
    {
        throw std::runtime_error("cannot read " + iPath);
    }
    return lContent.str();
}

std::vector<Table> ReadTables(const std::string& iText)
{
    std::vector<Table> lTables;
    std::vector<std::string> lTableLines;
    std::string lSection;
    std::string lIntroduction;
    std::istringstream lStream(iText + "\n");
    for (std::string lLine; std::getline(lStream, lLine);)
    {
        if (IsTableLine(lLine))
        {
            lTableLines.push_back(lLine);
            continue;
        }
        if (!lTableLines.empty())
        {
            lTables.push_back(Table{lSection, lIntroduction, {}, {}});
            AddRows(lTables.back(), lTableLines);
            lTableLines.clear();
            lIntroduction.clear();
        }
        if (!lLine.empty() && lLine.front() == '#')
        {
            lSection = Trimmed(lLine.substr(lLine.find_first_not_of('#')));
            lIntroduction.clear();
        }
        lIntroduction += lLine + "\n";
    }
    return lTables;
}

std::vector<Row> RowsWithColumns(const std::vector<Table>& iTables, const std::vector<std::string>& iColumns)
{
    std::vector<Row> lRows;
    for (const Table& lTable : iTables)
    {
        if (lTable.mColumns == iColumns)
        {
            lRows.insert(lRows.end(), lTable.mRows.begin(), lTable.mRows.end());
        }
    }
    if (lRows.empty())
    {
        throw std::runtime_error("the document has no rows with the columns that begin with '" + iColumns.front() +
                                 "'");
    }
    return lRows;
}

std::vector<std::string> CodeSpans(const std::string& iText)
{
    std::vector<std::string> lSpans;
    std::size_t lEnd = 0;
    for (std::size_t lBegin = iText.find('`'); lBegin != std::string::npos; lBegin = iText.find('`', lEnd + 1))
    {
        lEnd = iText.find('`', lBegin + 1);
        if (lEnd == std::string::npos)
        {
            throw std::runtime_error("a code span is not closed: " + iText);
        }
        lSpans.push_back(iText.substr(lBegin + 1, lEnd - lBegin - 1));
    }
    return lSpans;
}

std::wstring CodeCell(const Row& iRow, const std::string& iColumn)
{
    const std::string& lCell = iRow.at(iColumn);
    if (lCell.empty())
    {
        return L"";
    }
    const std::vector<std::string> lSpans = CodeSpans(lCell);
    if (lSpans.size() != 1 || lCell != '`' + lSpans.front() + '`')
    {
        throw std::runtime_error("not one code span: " + lCell);
    }
    return QBase::UTF8ToWideChar(lSpans.front(), true);
}

} // namespace Documents
