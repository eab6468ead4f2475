// What several threads may do at the same time: take and drop references, start and stop the library, read one bag, and
// use different bags freely. Made to be run under a thread sanitizer.

#include "TalBase/PropertyBag.h"

#include "QDataType/StringCollection.h"
#include "TalBase/BufferedWString.h"
#include "TalBase/Initializer.h"
#include "TalBase/PrivateSource/PropertyBagImpl.h"

#include "Tests/Support/BagBuilder.h"
#include "Tests/Support/Describe.h"
#include "Tests/Support/Expect.h"
#include "Tests/Support/ModuleHolder.h"
#include "Tests/Support/Together.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>
#include <vector>

using namespace Support;

namespace
{

// Counts how many objects have died.
class Mortal : public QTalBase::PropertyBagImpl
{
public:
    explicit Mortal(std::atomic<int>& oDeaths) : mDeaths(oDeaths) {}

    ~Mortal() override
    {
        ++mDeaths;
    }

private:
    std::atomic<int>& mDeaths;
};

BagPtr SharedBag()
{
    return BagBuilder()
        .Set(L"a", L"1*")
        .Set(L"FTPServerPassword", L"x")
        .Nest(L"n", BagBuilder().Set(L"k", L"v").Nest(L"o", BagBuilder().Set(L"l", L"w")));
}

} // namespace

TEST(BagThreads, ReferencesOnOneBag)
{
    std::atomic<int> lDeaths{0};
    {
        const BagPtr lBag = new Mortal(lDeaths);
        Together([&](int) {
            for (int lRound = 0; lRound < 2000; ++lRound)
            {
                const BagPtr lMine = lBag;
                const BagPtr lCopy = lMine;
                lCopy->AddRef();
                lCopy->Release();
            }
        });
        EXPECT_EQ(lDeaths, 0);
        EXPECT_EQ(Describe(lBag), L"'++++' '***' {}");
    }
    EXPECT_EQ(lDeaths, 1);
}

TEST(BagThreads, LastReferenceDiesOnceOnAnyThread)
{
    for (int lRound = 0; lRound < 100; ++lRound)
    {
        std::atomic<int> lDeaths{0};
        std::vector<BagPtr> lReferences(gThreads, BagPtr(new Mortal(lDeaths)));
        Together([&](int iThread) { lReferences[static_cast<std::size_t>(iThread)] = nullptr; });
        ASSERT_EQ(lDeaths, 1);
    }
}

TEST(BagThreads, ReferencesOnANestedBagThroughItsContainer)
{
    const BagPtr lBag = SharedBag();
    Together([&](int) {
        for (int lRound = 0; lRound < 500; ++lRound)
        {
            const BagPtr lNested = lBag->GetPropertyBag(L"n");
            const BagPtr lSame = lBag->GetValuePropertyBag(2);
            ASSERT_EQ(lNested.get(), lSame.get());
        }
    });
    EXPECT_EQ(Describe(lBag->GetPropertyBag(L"n")), L"'++++' '***' {'k'='v' 'o'={'l'='w'}}");
}

TEST(BagThreads, ConstOperationsOnOneBag)
{
    const BagPtr lBag = SharedBag();
    const BagPtr lRaw = BagBuilder(L"[[", L"]]")
                            .Set(L"a", L"1*")
                            .Set(L"FTPServerPassword", L"x")
                            .Nest(L"n", BagBuilder().Set(L"k", L"v").Nest(L"o", BagBuilder().Set(L"l", L"w")));
    const std::unique_ptr<QDataType::StringCollection> lFilter(QDataType::CreateStringCollection());
    lFilter->Insert(L"n");
    lFilter->Insert(L"a");
    const std::wstring lText = FullText(*lBag);
    std::atomic<int> lWrong{0};
    Together([&](int) {
        for (int lRound = 0; lRound < 50; ++lRound)
        {
            const BagPtr lClone = lBag->Clone();
            const BagPtr lFiltered = lBag->FilteredClone(lFilter.get());
            const BagPtr lContainer = NewBag();
            lContainer->AddPropertyBag(lBag.get());
            const bool lRight = FullText(*lBag) == lText && Text(lBag->GetProperty(L"a")) == L"1*" &&
                                Text(lBag->GetStringWithoutSensitiveInfo(false, nullptr, nullptr)) ==
                                    L"a++++1&#42;***n++++k++++v***o++++l++++w*********" &&
                                *lRaw == *lBag && lBag->IsSubset(lClone.get()) && lFiltered->GetCount() == 2 &&
                                lContainer->GetCount() == 3 && FullText(*lClone) == lText;
            lWrong += lRight ? 0 : 1;
        }
    });
    EXPECT_EQ(lWrong, 0);
}

TEST(BagThreads, FirstSensitiveRenderingOnManyThreads)
{
    const BagPtr lBag = BagBuilder().Set(L"FTPServerPassword", L"x").Set(L"u", L"1");
    std::vector<std::wstring> lTexts(gThreads);
    Together([&](int iThread) {
        lTexts[static_cast<std::size_t>(iThread)] = Text(lBag->GetStringWithoutSensitiveInfo(false, nullptr, nullptr));
    });
    for (const std::wstring& lText : lTexts)
    {
        EXPECT_EQ(lText, L"u++++1***");
    }
}

TEST(BagThreads, DifferentBagsOnDifferentThreads)
{
    std::vector<std::wstring> lResults(gThreads);
    Together([&](int iThread) {
        const BagPtr lBag = NewBag();
        for (int lRound = 0; lRound < 50; ++lRound)
        {
            const std::wstring lName = L"p" + std::to_wstring(lRound % 3);
            lBag->SetProperty(lName.c_str(), std::to_wstring(iThread).c_str(), false);
            lBag->AddString(L"n++++k++++v******");
            EXPECT_THROW(lBag->AddString(L"***"), QTalBase::PropertyBagException);
        }
        lResults[static_cast<std::size_t>(iThread)] = Describe(lBag);
    });
    for (int lThread = 0; lThread < gThreads; ++lThread)
    {
        const std::wstring lNumber = std::to_wstring(lThread);
        EXPECT_EQ(lResults[static_cast<std::size_t>(lThread)], L"'++++' '***' {'p2'='" + lNumber + L"' 'p0'='" +
                                                                   lNumber + L"' 'p1'='" + lNumber +
                                                                   L"' 'n'={'k'='v'}}");
    }
}

TEST(BagThreads, CloneOnEachThreadOfOneSource)
{
    const BagPtr lBag = SharedBag();
    Together([&](int iThread) {
        const BagPtr lClone = lBag->Clone();
        lClone->SetProperty(L"a", std::to_wstring(iThread).c_str(), false);
        lClone->RemoveProperty(L"n");
        EXPECT_EQ(lClone->GetCount(), 2U);
    });
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'a'='1&#42;' 'FTPServerPassword'='x' 'n'={'k'='v' 'o'={'l'='w'}}}");
}

TEST(BagThreads, ReferencesOnOneBuffer)
{
    const QBase::SmartPtrI<QTalBase::BufferedWString> lBuffer = QTalBase::CreateBufferedWString(10, 10);
    *lBuffer += L"text";
    Together([&](int) {
        for (int lRound = 0; lRound < 2000; ++lRound)
        {
            const QBase::SmartPtrI<QTalBase::BufferedWString> lMine = lBuffer;
            ASSERT_EQ(lMine->size(), 4U);
        }
    });
    EXPECT_STREQ(lBuffer->c_str(), L"text");
}

TEST(BagThreads, StartAndStopFromManyThreads)
{
    Together([](int) {
        for (int lRound = 0; lRound < 200; ++lRound)
        {
            const QTalBase::Initializer lOuter;
            const QTalBase::Initializer lInner;
        }
    });
    EXPECT_EQ(ReadHolder(), (HolderFields{0, 0, nullptr}));
}
