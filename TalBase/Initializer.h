// Start-up and shut-down of the library. Each client module holds one Initializer, usually as a static object, for as
// long as it uses the library. The first one in the process brings the library up, the last one takes it down. Any
// thread may create and destroy them; a thread that comes while another is starting the library waits until it is up.

#ifndef TALBASE_INITIALIZER_H
#define TALBASE_INITIALIZER_H

#include "TalBase/Export.h"

namespace QTalBase
{

class TALBASE_EXPORT Initializer
{
public:
    // Starts the library, or only counts when it is started already. Throws what the creation of the log router throws
    // (a QBase::Message) or std::bad_alloc; the library is then as it was before the call, and a later Initializer
    // tries again.
    Initializer();

    // Takes one from the count; the last one destroys the module object. Never throws.
    ~Initializer();

    Initializer(const Initializer&) = delete;
    Initializer& operator=(const Initializer&) = delete;
};

} // namespace QTalBase

#endif
