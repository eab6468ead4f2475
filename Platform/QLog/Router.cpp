#include "QLog/Router.h"

#include "QBase/Atomic.h"

#include <string>

namespace QLog
{

namespace
{

class RouterImpl : public virtual Router
{
public:
    RouterImpl(const char* ipModule, const char* ipLevel, int iCategory)
        : mModule(ipModule), mLevel(ipLevel), mCategory(iCategory), mRefCount(0)
    {
    }

    const char* GetModule() const noexcept override
    {
        return mModule.c_str();
    }

    const char* GetLevel() const noexcept override
    {
        return mLevel.c_str();
    }

    int GetCategory() const noexcept override
    {
        return mCategory;
    }

    void AddRef() const noexcept override
    {
        QSynch_AtomicIncrement(mRefCount);
    }

    void Release() const noexcept override
    {
        if (QSynch_AtomicDecrement(mRefCount) == 0)
        {
            delete this;
        }
    }

private:
    std::string mModule;
    std::string mLevel;
    int mCategory;
    mutable QSynch::AtomicLong mRefCount;
};

} // namespace

Router::~Router() = default;

QBase::SmartPtrI<Router> CreateRouter(const char* ipModule, const char* ipLevel, int iCategory)
{
    return QBase::SmartPtrI<Router>(new RouterImpl(ipModule, ipLevel, iCategory));
}

} // namespace QLog
