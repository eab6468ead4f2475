// The parts of the benchmarks. Each returns the tables of what the filter lets through, and shows its progress.

#ifndef BENCHMARKS_SECTIONS_H
#define BENCHMARKS_SECTIONS_H

#include "Report.h"

#include <regex>
#include <string>
#include <vector>

namespace Bench
{

struct Options
{
    std::regex mFilter;       // searched in names like "ratios/parse/SMALL", "growth/asterisks", "memory/nests"
    std::string mMailFolder;  // where the data set MAIL comes from
    std::string mCaseProgram; // bench-case
};

// Times of each operation of the library beside the peers and the lower bounds, and which of our limits they keep.
std::vector<Table> MakeRatioTables(const Options& iOptions);

// Times of the conversions between UTF-8 and wide characters.
std::vector<Table> MakeConversionTables(const Options& iOptions);

// What each hostile case costs when its size doubles.
std::vector<Table> MakeGrowthTables(const Options& iOptions);

// How much memory each operation takes beside hostile input.
std::vector<Table> MakeMemoryTables(const Options& iOptions);

// How deep each operation goes on the smallest stack.
std::vector<Table> MakeDepthTables(const Options& iOptions);

} // namespace Bench

#endif
