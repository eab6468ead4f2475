// Whose references are held, and what has been written, when memory runs out. Failures/ has every operation.

#include "TalBase/DeliveryWindow.h"
#include "TalBase/PropertyBags.h"
#include "TalBase/SerializableStringCollection.h"

#include "QSerialization/MemoryDataStream.h"
#include "Tests/Support/Describe.h"
#include "Tests/Support/FailingNew.h"
#include "Tests/Support/TracedBag.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <vector>

namespace
{

using QBase::SmartPtrI;
using QSerialization::MemoryWriteDataStream;
using QTalBase::DeliveryWindow;
using QTalBase::PropertyBag;
using QTalBase::PropertyBags;
using QTalBase::SerializableStringCollection;
using Support::AllocationsLive;
using Support::FailEachAllocation;
using Support::TracedBag;

using Support::BagPtr;
using BagsPtr = SmartPtrI<PropertyBags>;
using Bytes = std::vector<std::byte>;

// Longer than what a string object holds in itself, so that every copy allocates.
const wchar_t* const gLong = L"a text that is longer than a string object";

BagPtr FilledBag()
{
    BagPtr lBag(QTalBase::CreatePropertyBag());
    lBag->SetProperty(gLong, gLong, false);
    return lBag;
}

Bytes BytesOf(const QSerialization::SerializableObject& iObject)
{
    MemoryWriteDataStream lStream;
    iObject.Serialize(lStream);
    return lStream.GetBytes();
}

bool IsBeginning(const Bytes& iPart, const Bytes& iWhole)
{
    return iPart.size() <= iWhole.size() && std::equal(iPart.begin(), iPart.end(), iWhole.begin());
}

// Lets a new object live as long as a reference takes to come and go.
void Drop(const QBase::ReferenceCounted* ipObject)
{
    ipObject->AddRef();
    ipObject->Release();
}

TEST(Factories, ResultDiesWithItsFirstReference)
{
    const std::size_t lLive = AllocationsLive();
    const PropertyBags* const lBags = QTalBase::CreatePropertyBags();
    const SerializableStringCollection* const lStrings = QTalBase::CreateSerializableStringCollection();
    const DeliveryWindow* const lWindow = QTalBase::CreateDeliveryWindow();
    const PropertyBags* const lBagsClone = lBags->Clone();
    const DeliveryWindow* const lWindowClone = lWindow->Clone();
    const PropertyBag* const lBag = lWindow->SerializeToPropertyBag(L"", L"[", L"]");
    EXPECT_GE(AllocationsLive(), lLive + 6);
    Drop(lBags);
    Drop(lStrings);
    Drop(lWindow);
    Drop(lBagsClone);
    Drop(lWindowClone);
    Drop(lBag);
    EXPECT_EQ(AllocationsLive(), lLive);
}

TEST(PropertyBagsOutOfMemory, AddChangesNeitherCollectionNorBag)
{
    Support::CallLog lLog;
    const auto lTraced = new TracedBag(lLog, L"bag");
    const BagPtr lOwner(lTraced);
    BagsPtr lBags;
    FailEachAllocation(
        [&] {
            lBags = QTalBase::CreatePropertyBags();
            lBags->Add(gLong, lTraced);
            lBags->Add(gLong, lTraced);
            lBags = nullptr;
        },
        [&] {
            const unsigned int lAdded = lBags ? lBags->GetCount() : 0;
            EXPECT_EQ(lTraced->GetReferences(), 1 + static_cast<int>(lAdded));
            lBags = nullptr;
            EXPECT_EQ(lTraced->GetReferences(), 1);
        });
}

TEST(PropertyBagsOutOfMemory, CloneChangesNoReferences)
{
    if constexpr (Support::gLosesFailedCopies)
    {
        return; // what that loses are references
    }
    Support::CallLog lLog;
    const auto lTraced = new TracedBag(lLog, L"bag");
    const BagsPtr lBags(QTalBase::CreatePropertyBags());
    lBags->Add(gLong, lTraced);
    lBags->Add(gLong, lTraced);
    FailEachAllocation([&] { Drop(lBags->Clone()); },
                       [&] {
                           EXPECT_EQ(lTraced->GetReferences(), 2);
                           EXPECT_EQ(lBags->GetCount(), 2U);
                       });
}

TEST(PropertyBagOutOfMemory, SerializeWritesABeginningAndLeavesTheBag)
{
    const BagPtr lBag = FilledBag();
    const Bytes lWhole = BytesOf(*lBag);
    std::unique_ptr<MemoryWriteDataStream> lStream;
    FailEachAllocation(
        [&] {
            lStream.reset();
            lStream = std::make_unique<MemoryWriteDataStream>();
            lBag->Serialize(*lStream);
            lStream.reset();
        },
        [&] {
            EXPECT_TRUE(!lStream || IsBeginning(lStream->GetBytes(), lWhole));
            lStream.reset();
            EXPECT_EQ(BytesOf(*lBag), lWhole);
        });
}

} // namespace
