// What a program prints for one section of a document stands between two lines "[name]".

#ifndef COMINGFROM_SECTION_H
#define COMINGFROM_SECTION_H

#include <cstdio>

class Section
{
public:
    explicit Section(const char* ipName) : mName(ipName)
    {
        std::printf("[%s]\n", mName);
    }

    ~Section()
    {
        std::printf("[%s]\n", mName);
    }

    Section(const Section&) = delete;
    Section& operator=(const Section&) = delete;

private:
    const char* mName;
};

#endif
