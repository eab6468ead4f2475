// New globally unique identifiers. No state; any thread may call at any time.

#ifndef TALBASE_GUID_H
#define TALBASE_GUID_H

#include "QBase/Guid.h"
#include "QBase/Message.h"
#include "QBase/ReturnWString.h"
#include "TalBase/Export.h"

namespace QTalBase
{

// No identifier could be created.
class TALBASE_EXPORT GuidException : public QBase::Message
{
public:
    explicit GuidException(const QBase::Message& iMessage);
    GuidException(const GuidException&) = default;
    GuidException& operator=(const GuidException&) = default;
    ~GuidException() override;
};

// Both operations throw QBase::ExceptionImpl<GuidException> "QTalBase::Guid::Generate; Cannot create Guid" when the
// base library's generator fails with a QBase::Message; any other exception, std::bad_alloc included, passes on. One
// failed attempt is one exception: nothing is tried again.
class TALBASE_EXPORT Guid
{
public:
    // Returns a new identifier.
    static _GUID GenerateUniqueGUID();

    // Returns the text of a new identifier, in the form of QBase::Guid2String, which UnStringize reads.
    static QBase::ReturnWString GenerateUniqueString();
};

} // namespace QTalBase

#endif
