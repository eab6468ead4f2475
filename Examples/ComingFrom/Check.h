// What the tables of a document claim, checked where it is compiled.

#ifndef COMINGFROM_CHECK_H
#define COMINGFROM_CHECK_H

#include <cstdio>
#include <cstdlib>

// Ends the program where a claim does not hold.
inline void Check(bool iIsTrue, const char* ipWhat)
{
    if (!iIsTrue)
    {
        std::fprintf(stderr, "not so: %s\n", ipWhat);
        std::exit(EXIT_FAILURE);
    }
}

#endif
