#include "TalBase/ModuleMain.h"

#include "QLog/Initializer.h"
#include "QSynch/Initializer.h"

#include "Tests/Support/ModuleHolder.h"

#include <gtest/gtest.h>

#include <type_traits>

using QTalBase::gModuleMainBasePtr;
using QTalBase::ModuleMainBase;
using namespace Support;

namespace
{

using Holder = QBase::ModuleMainPtr<ModuleMainBase, ModuleMainBase>;

} // namespace

TEST(ModuleMain, HolderHasAFixedLayout)
{
    static_assert(std::is_standard_layout_v<Holder>);
    static_assert(std::is_same_v<decltype(gModuleMainBasePtr), Holder>);
    static_assert(sizeof(Holder) == 24);
    EXPECT_EQ(ReadHolder(), (HolderFields{0, 0, nullptr}));
}

TEST(ModuleMain, InitializeAndFinalizeNest)
{
    gModuleMainBasePtr.Initialize();
    const HolderFields lStarted = ReadHolder();
    EXPECT_EQ(lStarted.mCount, 1);
    EXPECT_NE(lStarted.mModule, nullptr);
    gModuleMainBasePtr.Initialize();
    EXPECT_EQ(ReadHolder(), (HolderFields{0, 2, lStarted.mModule}));
    gModuleMainBasePtr.Finalize();
    EXPECT_EQ(ReadHolder(), (HolderFields{0, 1, lStarted.mModule}));
    gModuleMainBasePtr.Finalize();
    EXPECT_EQ(ReadHolder(), (HolderFields{0, 0, nullptr}));
}

TEST(ModuleMain, FinalizeWithoutInitializeCountsBelowZero)
{
    gModuleMainBasePtr.Finalize();
    EXPECT_EQ(ReadHolder(), (HolderFields{0, -1, nullptr}));
    gModuleMainBasePtr.Initialize();
    EXPECT_EQ(ReadHolder(), (HolderFields{0, 0, nullptr}));
    gModuleMainBasePtr.Initialize();
    EXPECT_EQ(ReadHolder().mCount, 1);
    EXPECT_NE(ReadHolder().mModule, nullptr);
    gModuleMainBasePtr.Finalize();
    EXPECT_EQ(ReadHolder(), (HolderFields{0, 0, nullptr}));
}

TEST(ModuleMain, FinalizeToZeroWithoutAnObject)
{
    WriteHolder({0, 1, nullptr});
    gModuleMainBasePtr.Finalize();
    EXPECT_EQ(ReadHolder(), (HolderFields{0, 0, nullptr}));
}

TEST(ModuleMain, AnyOtherLockWordCountsAsFree)
{
    WriteHolder({0x12345679, 0, nullptr});
    gModuleMainBasePtr.Initialize();
    EXPECT_EQ(ReadHolder().mLock, 0);
    EXPECT_EQ(ReadHolder().mCount, 1);
    WriteHolder({-1, 1, ReadHolder().mModule});
    gModuleMainBasePtr.Finalize();
    EXPECT_EQ(ReadHolder(), (HolderFields{0, 0, nullptr}));
}

TEST(ModuleMain, ModuleObjectHoldsTheOtherLibrariesUp)
{
    {
        const ModuleMainBase lModule;
        EXPECT_EQ(QSynch::Initializer::GetCount(), 1);
        EXPECT_EQ(QLog::Initializer::GetCount(), 1);
        EXPECT_EQ(ReadHolder(), (HolderFields{0, 0, nullptr}));
    }
    EXPECT_EQ(QSynch::Initializer::GetCount(), 0);
    EXPECT_EQ(QLog::Initializer::GetCount(), 0);
}
