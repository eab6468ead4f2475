// The fields of the module holder at their fixed offsets, as a client built elsewhere sees them. Look only while no
// thread starts or stops the library.

#ifndef TESTS_SUPPORT_MODULEHOLDER_H
#define TESTS_SUPPORT_MODULEHOLDER_H

#include "TalBase/ModuleMain.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <ostream>

namespace Support
{

struct HolderFields
{
    std::int64_t mLock;
    std::int32_t mCount;
    void* mModule;

    bool operator==(const HolderFields& iOther) const
    {
        return mLock == iOther.mLock && mCount == iOther.mCount && mModule == iOther.mModule;
    }
};

inline std::ostream& operator<<(std::ostream& oStream, const HolderFields& iFields)
{
    return oStream << "lock " << iFields.mLock << ", count " << iFields.mCount << ", module " << iFields.mModule;
}

inline HolderFields ReadHolder()
{
    const auto* lBytes = reinterpret_cast<const std::byte*>(&QTalBase::gModuleMainBasePtr);
    HolderFields lFields = {};
    std::memcpy(&lFields.mLock, lBytes, sizeof lFields.mLock);
    std::memcpy(&lFields.mCount, lBytes + 8, sizeof lFields.mCount);
    std::memcpy(&lFields.mModule, lBytes + 16, sizeof lFields.mModule);
    return lFields;
}

inline void WriteHolder(const HolderFields& iFields)
{
    auto* lBytes = reinterpret_cast<std::byte*>(&QTalBase::gModuleMainBasePtr);
    std::memcpy(lBytes, &iFields.mLock, sizeof iFields.mLock);
    std::memcpy(lBytes + 8, &iFields.mCount, sizeof iFields.mCount);
    std::memcpy(lBytes + 16, &iFields.mModule, sizeof iFields.mModule);
}

} // namespace Support

#endif
