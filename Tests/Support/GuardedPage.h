// A page of characters between two that nobody may read or write.

#ifndef TESTS_SUPPORT_GUARDEDPAGE_H
#define TESTS_SUPPORT_GUARDEDPAGE_H

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <unistd.h>

namespace Support
{

class GuardedPage
{
public:
    GuardedPage()
        : mSize(static_cast<std::size_t>(::sysconf(_SC_PAGESIZE))),
          mMemory(static_cast<char*>(::mmap(nullptr, 3 * mSize, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)))
    {
        EXPECT_EQ(::mprotect(mMemory + mSize, mSize, PROT_READ | PROT_WRITE), 0);
    }

    ~GuardedPage()
    {
        ::munmap(mMemory, 3 * mSize);
    }

    GuardedPage(const GuardedPage&) = delete;
    GuardedPage& operator=(const GuardedPage&) = delete;

    // Room for so many characters, at the page's beginning or its end.
    template <class Character>
    Character* Place(std::size_t iLength, bool iIsAtEnd) const
    {
        Character* lPage = reinterpret_cast<Character*>(mMemory + mSize);
        return iIsAtEnd ? lPage + mSize / sizeof(Character) - iLength : lPage;
    }

    template <class Character>
    std::basic_string_view<Character> Put(const std::basic_string<Character>& iText, bool iIsAtEnd) const
    {
        Character* lPlace = Place<Character>(iText.size(), iIsAtEnd);
        iText.copy(lPlace, iText.size());
        return {lPlace, iText.size()};
    }

private:
    std::size_t mSize;
    char* mMemory;
};

} // namespace Support

#endif
