#include "QSerialization/DataStream.h"

namespace QSerialization
{

WriteDataStream::~WriteDataStream() = default;

ReadDataStream::~ReadDataStream() = default;

} // namespace QSerialization
