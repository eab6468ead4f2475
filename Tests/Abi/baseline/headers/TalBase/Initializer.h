#ifndef TALBASE_INITIALIZER_H
#define TALBASE_INITIALIZER_H
#include "TalBase/Export.h"
namespace QTalBase
{
class TALBASE_EXPORT Initializer
{
public:
    Initializer();
    ~Initializer();
    Initializer(const Initializer&) = delete;
    Initializer& operator=(const Initializer&) = delete;
};
} // namespace QTalBase
#endif
