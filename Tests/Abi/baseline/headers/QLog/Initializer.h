#ifndef QLOG_INITIALIZER_H
#define QLOG_INITIALIZER_H
#include "QBase/Export.h"
namespace QLog
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
} // namespace QLog
#endif
