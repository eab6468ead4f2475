#include "SmallStack.h"

#include <algorithm>
#include <stdexcept>
#include <sys/mman.h>
#include <unistd.h>

namespace Bench
{

namespace
{

constexpr unsigned char gPattern = 0xA5;

} // namespace

SmallStack::SmallStack()
    : mPageSize(static_cast<std::size_t>(::sysconf(_SC_PAGESIZE))),
      mPages(::mmap(nullptr, GetSize() + 2 * mPageSize, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0))
{
    if (mPages == MAP_FAILED || ::mprotect(GetBase(), GetSize(), PROT_READ | PROT_WRITE) != 0)
    {
        throw std::runtime_error("no memory for a stack");
    }
    std::fill_n(GetBase(), GetSize(), gPattern);
}

SmallStack::~SmallStack()
{
    ::munmap(mPages, GetSize() + 2 * mPageSize);
}

std::size_t SmallStack::GetSize()
{
    constexpr long lWanted = 64L * 1024;
    return static_cast<std::size_t>(std::max(lWanted, ::sysconf(_SC_THREAD_STACK_MIN)));
}

unsigned char* SmallStack::GetBase() const
{
    return static_cast<unsigned char*>(mPages) + mPageSize;
}

std::size_t SmallStack::GetUsed() const
{
    const unsigned char* const lEnd = GetBase() + GetSize();
    const unsigned char* const lBegin = GetBase();
    return static_cast<std::size_t>(lEnd -
                                    std::find_if(lBegin, lEnd, [](unsigned char iByte) { return iByte != gPattern; }));
}

} // namespace Bench
