// Brings the logging library up and down. The objects nest: the first one brings the library up, the last one takes
// it down, and those between only count. Any thread may create and destroy them, in any order.
//
// This implementation has nothing to set up on the systems it is built for: the count is all there is to it.

#ifndef QLOG_INITIALIZER_H
#define QLOG_INITIALIZER_H

#include "QBase/Export.h"

namespace QLog
{

// Without data: which object is destroyed first does not matter.
class Q8_EXPORT Initializer
{
public:
    // Adds one to the count. Never throws; an implementation that has something to set up may.
    Initializer();

    // Takes one from the count. Never throws.
    ~Initializer();

    Initializer(const Initializer&) = delete;
    Initializer& operator=(const Initializer&) = delete;

    // Returns how many of these objects exist in the process: above 0 while the library is up. Another thread may have
    // changed it by the time the caller looks at it.
    static int GetCount() noexcept;
};

} // namespace QLog

#endif
