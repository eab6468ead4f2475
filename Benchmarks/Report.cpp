#include "Report.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <sys/utsname.h>
#include <unistd.h>

namespace Bench
{

namespace
{

std::string MakeRow(const std::vector<std::string>& iCells, const std::vector<std::size_t>& iWidths)
{
    std::string lRow = "|";
    for (std::size_t lColumn = 0; lColumn < iCells.size(); ++lColumn)
    {
        const std::string lBlanks(iWidths[lColumn] - iCells[lColumn].size(), ' ');
        lRow.append(" ").append(lColumn == 0 ? "" : lBlanks).append(iCells[lColumn]);
        lRow.append(lColumn == 0 ? lBlanks : "").append(" |");
    }
    lRow.append("\n");
    return lRow;
}

std::string ReadProcessorName()
{
    std::ifstream lFile("/proc/cpuinfo");
    for (std::string lLine; std::getline(lFile, lLine);)
    {
        if (lLine.rfind("model name", 0) == 0)
        {
            return lLine.substr(lLine.find(':') + 2);
        }
    }
    return "unknown";
}

std::string DescribeCompiler()
{
#ifdef __clang__
    return std::string("clang ") + __clang_version__;
#else
    return std::string("g++ ") + __VERSION__;
#endif
}

} // namespace

std::string ToMarkdown(const Table& iTable)
{
    std::vector<std::size_t> lWidths;
    for (const std::string& lCell : iTable.mHeader)
    {
        lWidths.push_back(std::max<std::size_t>(lCell.size(), 3));
    }
    for (const auto& lRow : iTable.mRows)
    {
        for (std::size_t lColumn = 0; lColumn < lRow.size(); ++lColumn)
        {
            lWidths[lColumn] = std::max(lWidths[lColumn], lRow[lColumn].size());
        }
    }
    std::string lText = "### " + iTable.mTitle + "\n\n" + MakeRow(iTable.mHeader, lWidths) + "|";
    for (std::size_t lColumn = 0; lColumn < lWidths.size(); ++lColumn)
    {
        const std::string lLine(lWidths[lColumn] + 1, '-');
        lText.append(lColumn == 0 ? ":" : "").append(lLine).append(lColumn == 0 ? "" : ":");
        lText += '|';
    }
    lText += '\n';
    for (const auto& lRow : iTable.mRows)
    {
        lText += MakeRow(lRow, lWidths);
    }
    return lText + '\n';
}

std::string Format(double iValue, int iDigits)
{
    char lText[64];
    std::snprintf(lText, sizeof(lText), "%.*f", iDigits, iValue);
    return lText;
}

std::string FormatShort(double iValue)
{
    const double lMagnitude = std::abs(iValue);
    return Format(iValue, lMagnitude >= 99.95 ? 0 : lMagnitude >= 9.995 ? 1 : 2);
}

std::string DescribeMachine()
{
    utsname lSystem{};
    ::uname(&lSystem);
    const double lMemory =
        static_cast<double>(::sysconf(_SC_PHYS_PAGES)) * static_cast<double>(::sysconf(_SC_PAGESIZE));
    return "- processor: " + ReadProcessorName() + ", " + std::to_string(::sysconf(_SC_NPROCESSORS_ONLN)) +
           " in use\n- memory: " + Format(lMemory / (1 << 30), 0) + " GiB\n- system: " + lSystem.sysname + ' ' +
           lSystem.release + ' ' + lSystem.machine + "\n- compiler: " + DescribeCompiler() +
           ", flags `" BENCHMARKS_FLAGS "`\n";
}

std::string GetLoad()
{
    std::ifstream lFile("/proc/loadavg");
    std::string lOne;
    std::string lFive;
    std::string lFifteen;
    lFile >> lOne >> lFive >> lFifteen;
    return lOne + ", " + lFive + ", " + lFifteen;
}

void ShowProgress(const std::string& iText)
{
    if (::isatty(STDERR_FILENO) != 0)
    {
        std::fprintf(stderr, "\r\033[K%s", iText.c_str());
    }
    else if (!iText.empty())
    {
        std::fprintf(stderr, "%s\n", iText.c_str());
    }
}

} // namespace Bench
