// Inputs that somebody who means harm would send, and chains of nested bags: for each a size, and one operation whose
// cost is measured while the size doubles. The sizes are what the input is long in: levels, properties, characters.

#ifndef BENCHMARKS_CASES_H
#define BENCHMARKS_CASES_H

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Bench
{

// What was set up and the operation on it. The operation runs once. Whatever it makes is kept and dies with this
// object.
struct PreparedCase
{
    std::function<void()> mRun;
    std::function<void()> mCheck; // throws std::runtime_error where the operation had the wrong result
};

struct HostileCase
{
    std::string mName;
    std::string mSizeName; // what doubles
    std::function<PreparedCase(std::size_t)> mPrepare;
};

// Chains of nested bags with one property at the bottom, by operation; the size is the number of levels.
std::vector<HostileCase> MakeDepthCases();

// The depth cases and all others.
std::vector<HostileCase> MakeGrowthCases();

// Returns so many different names for which std::hash (of libstdc++ on 64 bits) is the same.
std::vector<std::wstring> MakeCollidingNames(std::size_t iCount);

inline std::wstring Repeat(std::size_t iTimes, const wchar_t* ipPart)
{
    std::wstring lText;
    for (std::size_t lTime = 0; lTime < iTimes; ++lTime)
    {
        lText += ipPart;
    }
    return lText;
}

} // namespace Bench

#endif
