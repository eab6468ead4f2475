// The texts of the memory cases: each is made to cost as much as it can.

#ifndef BENCHMARKS_MEMORYTEXTS_H
#define BENCHMARKS_MEMORYTEXTS_H

#include <cstddef>
#include <string>
#include <vector>

namespace Bench
{

struct MemoryText
{
    const char* mName;
    std::wstring (*mMake)(std::size_t iCharacters);
};

std::vector<MemoryText> MakeMemoryTexts();

// Those that are refused, or of which nothing is left.
std::vector<MemoryText> MakeUselessMemoryTexts();

} // namespace Bench

#endif
