#ifndef QSYNCH_INITIALIZER_H
#define QSYNCH_INITIALIZER_H
#include "QBase/Export.h"
namespace QSynch
{
class Q8_EXPORT Initializer
{
public:
    Initializer();
    ~Initializer();
    Initializer(const Initializer&) = delete;
    Initializer& operator=(const Initializer&) = delete;
    static int GetCount() noexcept;
};
} // namespace QSynch
#endif
