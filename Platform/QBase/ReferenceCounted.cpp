#include "QBase/ReferenceCounted.h"

namespace QBase
{

ReferenceCounted::~ReferenceCounted() = default;

} // namespace QBase
