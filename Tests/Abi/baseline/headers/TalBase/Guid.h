#ifndef TALBASE_GUID_H
#define TALBASE_GUID_H
#include "QBase/Guid.h"
#include "QBase/Message.h"
#include "QBase/ReturnWString.h"
#include "TalBase/Export.h"
namespace QTalBase
{
class TALBASE_EXPORT GuidException : public QBase::Message
{
public:
    explicit GuidException(const QBase::Message& iMessage);
    GuidException(const GuidException&) = default;
    GuidException& operator=(const GuidException&) = default;
    ~GuidException() override;
};
class TALBASE_EXPORT Guid
{
public:
    static _GUID GenerateUniqueGUID();
    static QBase::ReturnWString GenerateUniqueString();
};
} // namespace QTalBase
#endif
