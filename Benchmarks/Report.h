// What the benchmarks tell: tables, on the terminal as they come and in one document at the end.

#ifndef BENCHMARKS_REPORT_H
#define BENCHMARKS_REPORT_H

#include <string>
#include <vector>

namespace Bench
{

// All rows are as long as the header. The first column is flush left, the others are flush right.
struct Table
{
    std::string mTitle;
    std::vector<std::string> mHeader;
    std::vector<std::vector<std::string>> mRows;
};

// Returns the table in Markdown, with its columns aligned so that it reads well as it is.
std::string ToMarkdown(const Table& iTable);

// Returns a number with so many digits after the point.
std::string Format(double iValue, int iDigits);

// Returns a number with three digits that count.
std::string FormatShort(double iValue);

// Returns what the numbers depend on: processor, memory, system, compiler and flags, as a list in Markdown.
std::string DescribeMachine();

// Returns the machine's load averages, as the system gives them.
std::string GetLoad();

// Shows on the terminal what is being done, on one line that the next call overwrites.
void ShowProgress(const std::string& iText);

} // namespace Bench

#endif
