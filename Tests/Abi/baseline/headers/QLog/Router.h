#ifndef QLOG_ROUTER_H
#define QLOG_ROUTER_H
#include "QBase/Export.h"
#include "QBase/ReferenceCounted.h"
#include "QBase/SmartPtrI.h"
namespace QLog
{
class Q8_EXPORT Router : public virtual QBase::ReferenceCounted
{
public:
    ~Router() override;
    virtual const char* GetModule() const noexcept = 0;
    virtual const char* GetLevel() const noexcept = 0;
    virtual int GetCategory() const noexcept = 0;
};
Q8_EXPORT QBase::SmartPtrI<Router> CreateRouter(const char* ipModule, const char* ipLevel, int iCategory);
} // namespace QLog
#endif
