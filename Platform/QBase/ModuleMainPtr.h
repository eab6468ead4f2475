// The holder of a library's one module object, which the first Initialize creates and the last Finalize destroys. A
// library exports one global holder; its clients call the two operations, usually through an object of their own that
// calls Initialize when it is built and Finalize when it dies. The holder owns the module object and hands it to
// nobody.
//
// The constructor is constexpr and the destructor does nothing, so a global holder is initialised at compile time and
// outlives every static object: a client's static objects may use it in any order. The layout is fixed for clients
// built elsewhere: the lock word at offset 0, the count at 8, the pointer at 16.
//
// Both operations may be called from any thread at any time. They serialise on the lock word, a spin lock that gives up
// the rest of the time slice between two tries and never gives up trying. It is held while the module object is built
// and destroyed: a thread that starts the library while another does so waits until it is up, and a module object whose
// constructor or destructor calls the holder waits for itself for ever.

#ifndef QBASE_MODULEMAINPTR_H
#define QBASE_MODULEMAINPTR_H

#include "QBase/Atomic.h"

#include <cstdint>
#include <unistd.h>

namespace QBase
{

// Implementation: the class of the module object, built without arguments. Interface: the class through which it is
// held and deleted: the same one, or a base of it with a virtual destructor.
template <class Interface, class Implementation>
class ModuleMainPtr
{
public:
    constexpr ModuleMainPtr() noexcept = default;
    ModuleMainPtr(const ModuleMainPtr&) = delete;
    ModuleMainPtr& operator=(const ModuleMainPtr&) = delete;

    // Adds one to the count, and creates the module object where the count was 0. Throws std::bad_alloc and whatever
    // the constructor of the module object throws, unchanged: the count is then as it was before the call, there is no
    // module object, the lock is free, and a later call tries again.
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

    // Takes one from the count and, where it is 0 then, destroys the module object if there is one. A call without its
    // Initialize takes the count below zero, and nothing guards against it. Never throws.
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

    // Not noexcept: sleep is where a thread can be cancelled, and one that only waits may go.
    void hLock()
    {
        while (QSynch_AtomicSet(&mLock, gLocked) == gLocked)
        {
            ::sleep(0); // NOLINT(concurrency-mt-unsafe): on Linux it shares no timer with alarms
        }
    }

    void hUnlock() noexcept
    {
        QSynch_AtomicSet(&mLock, 0);
    }

    std::int64_t mLock = 0; // gLocked while a thread is inside
    std::int32_t mInitCount = 0;
    Interface* mModule = nullptr;
};

} // namespace QBase

#endif
