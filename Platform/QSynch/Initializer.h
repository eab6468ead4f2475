// Brings the synchronisation library up and down. The objects nest: only the first brings it up and only the last takes it
// down. Any thread may create and destroy them.

#ifndef QSYNCH_INITIALIZER_H
#define QSYNCH_INITIALIZER_H

#include "QBase/Export.h"

namespace QSynch
{

class Q8_EXPORT Initializer
{
public:
    // Never throws.
    Initializer();
    ~Initializer();

    Initializer(const Initializer&) = delete;
    Initializer& operator=(const Initializer&) = delete;

    // Returns how many of these objects exist: above 0 while the library is up.
    static int GetCount() noexcept;
};

} // namespace QSynch

#endif
