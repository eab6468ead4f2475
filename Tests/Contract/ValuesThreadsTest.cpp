// What several threads may do at once: drop references on shared bags, clone a collection that nobody changes, and use
// the functions that keep no state.

#include "TalBase/Guid.h"
#include "TalBase/PropertyBagHelpers.h"
#include "TalBase/PropertyBags.h"

#include "TalBase/PrivateSource/PropertyBagImpl.h"

#include "Tests/Support/Together.h"

#include <gtest/gtest.h>

#include <atomic>
#include <set>
#include <string>
#include <vector>

namespace
{

using QBase::SmartPtrI;
using QTalBase::PropertyBag;
using QTalBase::PropertyBags;

using Support::gThreads;
using Support::Together;

using BagsPtr = SmartPtrI<PropertyBags>;

class MortalBag : public QTalBase::PropertyBagImpl
{
public:
    explicit MortalBag(std::atomic<int>& oDead) : mDead(oDead) {}

    ~MortalBag() override
    {
        ++mDead;
    }

private:
    std::atomic<int>& mDead;
};

TEST(ValuesThreads, BagsSharedBetweenCollectionsDieOnceWhereverTheLastReferenceIsDropped)
{
    const int lBags = 500;
    std::atomic<int> lDead{0};
    std::vector<BagsPtr> lCollections;
    for (int lThread = 0; lThread < gThreads; ++lThread)
    {
        lCollections.emplace_back(QTalBase::CreatePropertyBags());
    }
    for (int lBag = 0; lBag < lBags; ++lBag)
    {
        const SmartPtrI<PropertyBag> lShared(new MortalBag(lDead));
        for (const BagsPtr& lCollection : lCollections)
        {
            lCollection->Add(L"bag", lShared.get());
        }
    }
    EXPECT_EQ(lDead, 0);
    Together([&](int iThread) { lCollections[static_cast<std::size_t>(iThread)] = nullptr; });
    EXPECT_EQ(lDead, lBags);
}

TEST(ValuesThreads, CollectionThatNobodyChangesIsClonedAndReadByAll)
{
    std::atomic<int> lDead{0};
    {
        const BagsPtr lBags(QTalBase::CreatePropertyBags());
        const SmartPtrI<PropertyBag> lBag(new MortalBag(lDead));
        lBag->SetProperty(L"n", L"1", false);
        lBags->Add(L"a", lBag.get());
        std::atomic<int> lRight{0};
        Together([&](int) {
            for (int lCount = 0; lCount < 200; ++lCount)
            {
                const BagsPtr lClone(lBags->Clone());
                lRight += std::wstring(lClone->GetPropertyBagByName(L"a")->GetProperty(L"n").c_str()) == L"1" ? 1 : 0;
            }
        });
        EXPECT_EQ(lRight, gThreads * 200);
        EXPECT_EQ(lDead, 0);
    }
    EXPECT_EQ(lDead, 1);
}

TEST(ValuesThreads, IdentifiersOfAllThreadsDiffer)
{
    std::vector<std::vector<std::wstring>> lTexts(gThreads);
    Together([&](int iThread) {
        for (int lCount = 0; lCount < 500; ++lCount)
        {
            lTexts[static_cast<std::size_t>(iThread)].push_back(QTalBase::Guid::GenerateUniqueString().c_str());
        }
    });
    std::set<std::wstring> lAll;
    for (const std::vector<std::wstring>& lOfThread : lTexts)
    {
        lAll.insert(lOfThread.begin(), lOfThread.end());
    }
    EXPECT_EQ(lAll.size(), 500U * gThreads);
}

TEST(ValuesThreads, ValuesAreWrittenAndReadByAll)
{
    std::atomic<int> lRight{0};
    Together([&](int iThread) {
        for (int lCount = 0; lCount < 500; ++lCount)
        {
            const double lValue = lCount * 10 + iThread;
            double lRead = -1;
            QTalBase::UnStringize(QTalBase::Stringize(lValue).c_str(), lRead);
            lRight += lRead == lValue ? 1 : 0;
        }
    });
    EXPECT_EQ(lRight, gThreads * 500);
}

} // namespace
