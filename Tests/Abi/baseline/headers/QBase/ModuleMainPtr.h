#ifndef QBASE_MODULEMAINPTR_H
#define QBASE_MODULEMAINPTR_H
#include "QBase/Atomic.h"
#include <cstdint>
#include <unistd.h>
namespace QBase
{
template <class Interface, class Implementation>
class ModuleMainPtr
{
public:
    constexpr ModuleMainPtr() noexcept = default;
    ModuleMainPtr(const ModuleMainPtr&) = delete;
    ModuleMainPtr& operator=(const ModuleMainPtr&) = delete;
    void Initialize()
    {
        hLock();
        const std::int32_t lCount = mInitCount;
        mInitCount = lCount + 1;
        if (lCount == 0)
        {
            try
            {
                mModule = new Implementation();
            }
            catch (...)
            {
                --mInitCount;
                hUnlock();
                throw;
            }
        }
        hUnlock();
    }
    void Finalize()
    {
        hLock();
        --mInitCount;
        if (mInitCount == 0)
        {
            delete mModule;
            mModule = nullptr;
        }
        hUnlock();
    }

private:
    static constexpr std::int64_t gLocked = 0x12345678;
    void hLock()
    {
        while (QSynch_AtomicSet(&mLock, gLocked) == gLocked)
        {
            ::sleep(0);
        }
    }
    void hUnlock() noexcept
    {
        QSynch_AtomicSet(&mLock, 0);
    }
    std::int64_t mLock = 0;
    std::int32_t mInitCount = 0;
    Interface* mModule = nullptr;
};
} // namespace QBase
#endif
