// The stack that the depth of a document may not need more of.

#ifndef BENCHMARKS_SMALLSTACK_H
#define BENCHMARKS_SMALLSTACK_H

#include <cstddef>

namespace Bench
{

// Memory between two pages that may not be touched, filled with a pattern that shows how much of it was used. Running
// over its end kills the process instead of overwriting something. Throws std::runtime_error where there is no memory.
class SmallStack
{
public:
    SmallStack();
    ~SmallStack();
    SmallStack(const SmallStack&) = delete;
    SmallStack& operator=(const SmallStack&) = delete;

    // Returns 64 KiB, or what the platform asks for at least where that is more.
    static std::size_t GetSize();

    unsigned char* GetBase() const;

    // Returns the bytes between the end and the deepest one that was written.
    std::size_t GetUsed() const;

private:
    std::size_t mPageSize;
    void* mPages;
};

} // namespace Bench

#endif
