// How much memory an operation takes beside its input, for texts that take most of it. A case is one text and one
// operation. The input is the text that is read, the bytes that are read from a stream, or, for an operation on a bag,
// the bag's text form: four bytes for each character.

#ifndef BENCHMARKS_MEMORYCASES_H
#define BENCHMARKS_MEMORYCASES_H

#include "Cases.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace Bench
{

struct MeteredCase
{
    std::size_t mInputBytes;
    PreparedCase mCase; // what it makes is part of what it takes
};

struct MemoryCase
{
    std::string mText;
    std::string mOperation;
    std::function<MeteredCase(std::size_t iCharacters)> mPrepare; // for a text of about so many characters
};

// Text by text, each with the operations in the same order.
std::vector<MemoryCase> MakeMemoryCases();

// Those of them that are read from streams of many small elements.
std::vector<MemoryCase> MakeStreamMemoryCases();

} // namespace Bench

#endif
