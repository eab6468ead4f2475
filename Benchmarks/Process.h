// Child processes: what is measured in one may crash, hang or take all memory.

#ifndef BENCHMARKS_PROCESS_H
#define BENCHMARKS_PROCESS_H

#include <string>
#include <vector>

namespace Bench
{

enum class Outcome
{
    Done,
    Failed,  // an exit status other than 0
    Crashed, // a signal of its own
    TooLong  // ended at its limit of seconds
};

struct ChildResult
{
    Outcome mOutcome;
    std::string mOutput; // what it wrote to its standard output; all that came before it ended
};

// Runs a program, found like a shell finds it, for so many seconds at most; its error output is dropped, and it gets
// half of the machine's memory. May run on several threads. Throws std::runtime_error where no process can be made.
ChildResult RunChild(const std::vector<std::string>& iCommand, double iSeconds);

// Returns how to say it in a table.
const char* GetOutcomeName(Outcome iOutcome);

} // namespace Bench

#endif
