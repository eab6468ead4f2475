#include "QBase/ModuleMainPtr.h"

#include <gtest/gtest.h>

#include <cstring>
#include <stdexcept>
#include <string>
#include <type_traits>

namespace
{

struct Counts
{
    int mCreated = 0;
    int mDestroyed = 0;
    bool mFails = false;
    std::int64_t mLockSeen = 0;
    std::int32_t mCountSeen = 0;
};

Counts gCounts;

class ModuleBase
{
public:
    virtual ~ModuleBase() = default;
};

class Module;
using Holder = QBase::ModuleMainPtr<ModuleBase, Module>;

extern Holder gHolder;

template <class Field>
Field FieldOf(const Holder& iHolder, std::size_t iOffset)
{
    Field lField;
    std::memcpy(&lField, reinterpret_cast<const unsigned char*>(&iHolder) + iOffset, sizeof(Field));
    return lField;
}

std::int64_t Lock(const Holder& iHolder)
{
    return FieldOf<std::int64_t>(iHolder, 0);
}

std::int32_t Count(const Holder& iHolder)
{
    return FieldOf<std::int32_t>(iHolder, 8);
}

ModuleBase* Pointer(const Holder& iHolder)
{
    return FieldOf<ModuleBase*>(iHolder, 16);
}

class Module : public ModuleBase
{
public:
    Module()
    {
        gCounts.mLockSeen = Lock(gHolder);
        gCounts.mCountSeen = Count(gHolder);
        if (gCounts.mFails)
        {
            throw std::runtime_error("no module today");
        }
        ++gCounts.mCreated;
    }

    Module(const Module&) = delete;
    Module& operator=(const Module&) = delete;

    ~Module() override
    {
        gCounts.mLockSeen = Lock(gHolder);
        gCounts.mCountSeen = Count(gHolder);
        ++gCounts.mDestroyed;
    }
};

constinit Holder gHolder;

class ModuleMainPtr : public testing::Test
{
protected:
    void SetUp() override
    {
        gCounts = Counts();
        ExpectHolder(0, false);
    }

    void TearDown() override
    {
        ExpectHolder(0, false);
    }

    static void ExpectHolder(std::int32_t iCount, bool iHasModule)
    {
        EXPECT_EQ(0, Lock(gHolder));
        EXPECT_EQ(iCount, Count(gHolder));
        EXPECT_EQ(iHasModule, Pointer(gHolder) != nullptr);
    }
};

TEST_F(ModuleMainPtr, HasTheLayoutThatClientsAreBuiltAgainst)
{
    static_assert(std::is_standard_layout_v<Holder>);
    static_assert(std::is_trivially_destructible_v<Holder>);
    static_assert(std::is_nothrow_default_constructible_v<Holder>);
    static_assert(!std::is_copy_constructible_v<Holder>);
    static_assert(sizeof(Holder) == 24);
    static_assert(alignof(Holder) == 8);
    gHolder.Initialize();
    EXPECT_EQ(1, Count(gHolder));
    EXPECT_NE(nullptr, dynamic_cast<Module*>(Pointer(gHolder)));
    gHolder.Finalize();
}

TEST_F(ModuleMainPtr, FirstInitializeCreatesAndLastFinalizeDestroys)
{
    gHolder.Initialize();
    EXPECT_EQ(1, gCounts.mCreated);
    ExpectHolder(1, true);
    ModuleBase* const lModule = Pointer(gHolder);
    gHolder.Initialize();
    gHolder.Initialize();
    ExpectHolder(3, true);
    gHolder.Finalize();
    gHolder.Finalize();
    ExpectHolder(1, true);
    EXPECT_EQ(lModule, Pointer(gHolder));
    EXPECT_EQ(1, gCounts.mCreated);
    EXPECT_EQ(0, gCounts.mDestroyed);
    gHolder.Finalize();
    EXPECT_EQ(1, gCounts.mDestroyed);
}

TEST_F(ModuleMainPtr, StartsAgainAfterItWasStopped)
{
    for (int lRound = 1; lRound <= 3; ++lRound)
    {
        gHolder.Initialize();
        gHolder.Finalize();
        EXPECT_EQ(lRound, gCounts.mCreated);
        EXPECT_EQ(lRound, gCounts.mDestroyed);
    }
}

TEST_F(ModuleMainPtr, HoldsTheLockWhileTheModuleIsBuiltAndDestroyed)
{
    gHolder.Initialize();
    EXPECT_EQ(0x12345678, gCounts.mLockSeen);
    EXPECT_EQ(1, gCounts.mCountSeen); // counted before the module is built
    gHolder.Finalize();
    EXPECT_EQ(0x12345678, gCounts.mLockSeen);
    EXPECT_EQ(0, gCounts.mCountSeen);
}

TEST_F(ModuleMainPtr, InitializeModuleThrowsPassesOnAndLeavesNothing)
{
    gCounts.mFails = true;
    for (int lRound = 0; lRound < 2; ++lRound)
    {
        std::string lText;
        try
        {
            gHolder.Initialize();
        }
        catch (const std::runtime_error& lError)
        {
            lText = lError.what();
        }
        EXPECT_EQ("no module today", lText);
        EXPECT_EQ(0x12345678, gCounts.mLockSeen);
        ExpectHolder(0, false);
    }
    gCounts.mFails = false;
    gHolder.Initialize();
    EXPECT_EQ(1, gCounts.mCreated);
    gHolder.Finalize();
    EXPECT_EQ(1, gCounts.mDestroyed);
}

TEST_F(ModuleMainPtr, FinalizeWithoutInitializeGoesBelowZero)
{
    gHolder.Finalize();
    ExpectHolder(-1, false);
    gHolder.Finalize();
    ExpectHolder(-2, false);
    gHolder.Initialize(); // from -2 to -1, so nothing is created
    ExpectHolder(-1, false);
    gHolder.Initialize();
    ExpectHolder(0, false);
    EXPECT_EQ(0, gCounts.mCreated);
    EXPECT_EQ(0, gCounts.mDestroyed);
}

TEST_F(ModuleMainPtr, InitializeAfterAFinalizeTooManyCreatesFromZeroOn)
{
    gHolder.Finalize();
    gHolder.Initialize();
    EXPECT_EQ(0, gCounts.mCreated);
    gHolder.Initialize();
    ExpectHolder(1, true);
    gHolder.Finalize();
    EXPECT_EQ(1, gCounts.mCreated);
    EXPECT_EQ(1, gCounts.mDestroyed);
}

TEST_F(ModuleMainPtr, FinalizeToZeroWithoutModuleOnlyClears)
{
    const std::int32_t lOne = 1; // no sequence of calls leads here, so the count is written where it stands
    std::memcpy(reinterpret_cast<unsigned char*>(&gHolder) + 8, &lOne, sizeof lOne);
    ExpectHolder(1, false);
    gHolder.Finalize();
    EXPECT_EQ(0, gCounts.mDestroyed);
}

TEST_F(ModuleMainPtr, InitializeOfAStartedOneCannotFail)
{
    gHolder.Initialize();
    gCounts.mFails = true;
    EXPECT_NO_THROW(gHolder.Initialize());
    ExpectHolder(2, true);
    gHolder.Finalize();
    gHolder.Finalize();
    EXPECT_EQ(1, gCounts.mCreated);
}

} // namespace
