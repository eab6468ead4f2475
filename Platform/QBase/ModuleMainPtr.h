// The holder of a library's one module object: created by the first Initialize, destroyed by the last Finalize.
//
// The holder has standard layout (the lock word at offset 0, the count at 8, the pointer at 16), a constexpr
// constructor and a trivial destructor, so that a global one is initialised at compile time and outlives every static
// object. Initialize and Finalize may be called from any thread; they serialise on the lock word, a spin lock that gives
// up the rest of its time slice between tries. The lock is held while the module object is built, so a second thread
// that starts the library waits until it is up. It is not re-entrant.

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

    // Counts, and creates the module object where the count was 0. What its constructor throws passes on unchanged, with
    // the count as it was before, no object, and the lock free.
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

    // Takes one from the count and destroys the module object where it is 0 then. A call without its Initialize takes
    // the count below zero; nothing guards against it. Never throws.
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

    void hLock() noexcept
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
