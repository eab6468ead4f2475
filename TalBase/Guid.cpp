#include "TalBase/Guid.h"

#include "TalBase/PrivateSource/Messages.h"

namespace QTalBase
{

GuidException::GuidException(const QBase::Message& iMessage) : QBase::Message(iMessage) {}

GuidException::~GuidException() = default;

_GUID Guid::GenerateUniqueGUID()
{
    _GUID lGuid{};
    try
    {
        QBase::CreateGUID(lGuid);
    }
    catch (const QBase::Message&)
    {
        Messages::Throw<GuidException>(Messages::gGuid);
    }
    return lGuid;
}

QBase::ReturnWString Guid::GenerateUniqueString()
{
    return QBase::Guid2String(GenerateUniqueGUID());
}

} // namespace QTalBase
