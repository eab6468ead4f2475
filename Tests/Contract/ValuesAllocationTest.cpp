// What each operation leaves behind when memory runs out at any of its allocations.

#include "TalBase/DeliveryWindow.h"
#include "TalBase/Guid.h"
#include "TalBase/PropertyBagHelpers.h"
#include "TalBase/PropertyBags.h"
#include "TalBase/SerializableStringCollection.h"

#include "QSerialization/MemoryDataStream.h"
#include "Tests/Support/FailingNew.h"
#include "Tests/Support/TracedBag.h"

#include <gtest/gtest.h>

#include <cwchar>
#include <memory>
#include <string>
#include <vector>

namespace
{

using QBase::SmartPtrI;
using QSerialization::MemoryReadDataStream;
using QSerialization::MemoryWriteDataStream;
using QTalBase::DeliveryWindow;
using QTalBase::PropertyBag;
using QTalBase::PropertyBags;
using QTalBase::SerializableStringCollection;
using Support::AllocationsLive;
using Support::FailEachAllocation;
using Support::TracedBag;

using BagPtr = SmartPtrI<PropertyBag>;
using BagsPtr = SmartPtrI<PropertyBags>;
using StringsPtr = SmartPtrI<SerializableStringCollection>;
using WindowPtr = SmartPtrI<DeliveryWindow>;
using Bytes = std::vector<std::byte>;

// Longer than what a string object holds in itself, so that every copy allocates.
const wchar_t* const gLong = L"a text that is longer than a string object";

BagPtr FilledBag()
{
    BagPtr lBag(QTalBase::CreatePropertyBag());
    lBag->SetProperty(gLong, gLong, false);
    return lBag;
}

BagsPtr FilledBags()
{
    BagsPtr lBags(QTalBase::CreatePropertyBags());
    lBags->Add(L"the first entry of the collection", FilledBag().get());
    lBags->Add(L"the second entry of the collection", FilledBag().get());
    return lBags;
}

WindowPtr Noon()
{
    WindowPtr lWindow(QTalBase::CreateDeliveryWindow());
    lWindow->DisableTimeBlock(10, 11);
    return lWindow;
}

bool IsNoon(const WindowPtr& iWindow)
{
    for (unsigned int lHour = 0; lHour < 24; ++lHour)
    {
        if (iWindow->IsEnabled(lHour) == (lHour == 10 || lHour == 11))
        {
            return false;
        }
    }
    return true;
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

const auto gNothingToCheck = [] {};

// Lets a new object live as long as a reference takes to come and go.
void Drop(const QBase::ReferenceCounted* ipObject)
{
    ipObject->AddRef();
    ipObject->Release();
}

TEST(FactoriesOutOfMemory, LeakNothing)
{
    FailEachAllocation([] { Drop(QTalBase::CreatePropertyBags()); }, gNothingToCheck);
    FailEachAllocation([] { Drop(QTalBase::CreateSerializableStringCollection()); }, gNothingToCheck);
    FailEachAllocation([] { Drop(QTalBase::CreateDeliveryWindow()); }, gNothingToCheck);
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

TEST(PropertyBagsOutOfMemory, HandingOutLeavesTheCollectionAsItWas)
{
    const BagsPtr lBags = FilledBags();
    const Bytes lBytes = BytesOf(*lBags);
    const auto lCheck = [&] { EXPECT_EQ(BytesOf(*lBags), lBytes); };
    FailEachAllocation([&] { lBags->GetPropertyBag(1); }, lCheck);
    FailEachAllocation([&] { lBags->GetPropertyBagByName(L"the second entry of the collection"); }, lCheck);
}

TEST(PropertyBagsOutOfMemory, DeSerializeKeepsTheEntriesReadSoFar)
{
    const Bytes lBytes = BytesOf(*FilledBags());
    BagsPtr lBags;
    const auto lCheck = [&] {
        if (lBags && lBags->GetCount() > 0)
        {
            EXPECT_EQ(lBags->GetCount(), 1U);
            EXPECT_STREQ(lBags->GetName(0), L"the first entry of the collection");
            EXPECT_STREQ(lBags->GetPropertyBag(0)->GetProperty(gLong).c_str(), gLong);
        }
        lBags = nullptr;
    };
    FailEachAllocation(
        [&] {
            MemoryReadDataStream lStream(lBytes.data(), lBytes.size());
            lBags = QTalBase::CreatePropertyBags();
            lBags->DeSerialize(lStream);
            lBags = nullptr;
        },
        lCheck);
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

TEST(PropertyBagOutOfMemory, DeSerializeKeepsWhatTheBagHeld)
{
    const Bytes lBytes = BytesOf(*FilledBag());
    BagPtr lBag;
    FailEachAllocation(
        [&] {
            MemoryReadDataStream lStream(lBytes.data(), lBytes.size());
            lBag = QTalBase::CreatePropertyBag();
            lBag->SetProperty(L"held", L"1", false);
            lBag->DeSerialize(lStream);
            lBag = nullptr;
        },
        [&] {
            if (lBag && lBag->GetCount() > 0)
            {
                EXPECT_EQ(lBag->GetCount(), 1U);
                EXPECT_STREQ(lBag->GetProperty(L"held").c_str(), L"1");
            }
            lBag = nullptr;
        });
}

TEST(StringsOutOfMemory, InsertChangesNothing)
{
    const StringsPtr lStrings(QTalBase::CreateSerializableStringCollection());
    FailEachAllocation([&] { lStrings->Insert(gLong); }, [&] { EXPECT_EQ(lStrings->GetCount(), 0UL); });
    EXPECT_STREQ(lStrings->GetString(0), gLong);
}

TEST(StringsOutOfMemory, GetStringCollectionLeaksNothing)
{
    const StringsPtr lStrings(QTalBase::CreateSerializableStringCollection());
    lStrings->Insert(gLong);
    lStrings->Insert(gLong);
    using Copy = std::unique_ptr<QDataType::StringCollection>;
    FailEachAllocation([&] { Copy(lStrings->GetStringCollection()); }, [&] { EXPECT_EQ(lStrings->GetCount(), 2UL); });
}

TEST(StringsOutOfMemory, DeSerializeKeepsTheStringsReadSoFar)
{
    const StringsPtr lWritten(QTalBase::CreateSerializableStringCollection());
    lWritten->Insert(gLong);
    lWritten->Insert(L"the second text of the collection");
    const Bytes lBytes = BytesOf(*lWritten);
    StringsPtr lStrings;
    FailEachAllocation(
        [&] {
            MemoryReadDataStream lStream(lBytes.data(), lBytes.size());
            lStrings = QTalBase::CreateSerializableStringCollection();
            lStrings->DeSerialize(lStream);
            lStrings = nullptr;
        },
        [&] {
            if (lStrings && lStrings->GetCount() > 0)
            {
                EXPECT_EQ(lStrings->GetCount(), 1UL);
                EXPECT_STREQ(lStrings->GetString(0), gLong);
            }
            lStrings = nullptr;
        });
}

TEST(DeliveryWindowOutOfMemory, CloneAndWritingLeakNothing)
{
    const WindowPtr lWindow = Noon();
    FailEachAllocation([&] { Drop(lWindow->Clone()); }, [&] { EXPECT_TRUE(IsNoon(lWindow)); });
    FailEachAllocation([&] { Drop(lWindow->SerializeToPropertyBag(gLong, L"[", L"]")); },
                       [&] { EXPECT_TRUE(IsNoon(lWindow)); });
}

TEST(DeliveryWindowOutOfMemory, ReadingChangesNothing)
{
    const WindowPtr lNight(QTalBase::CreateDeliveryWindow());
    lNight->DisableTimeBlock(22, 6);
    const BagPtr lBag(lNight->SerializeToPropertyBag(gLong, L"[", L"]"));
    const WindowPtr lWindow = Noon();
    FailEachAllocation([&] { lWindow->DeSerializeFromPropertyBag(gLong, lBag.get()); },
                       [&] { EXPECT_TRUE(IsNoon(lWindow)); });
    EXPECT_FALSE(lWindow->IsEnabled(22));
    EXPECT_TRUE(lWindow->IsEnabled(10));
}

TEST(DeliveryWindowOutOfMemory, RefusedHourChangesNothingWhateverIsThrown)
{
    const WindowPtr lWindow = Noon();
    const auto lRefused = [&] {
        try
        {
            lWindow->DisableTimeBlock(0, 24);
        }
        catch (const QTalBase::DeliveryWindowUserErrorException&)
        {
        }
    };
    FailEachAllocation(lRefused, [&] { EXPECT_TRUE(IsNoon(lWindow)); });
}

TEST(StringizeOutOfMemory, ThrowsBadAllocAndLeaksNothing)
{
    FailEachAllocation([] { QTalBase::Stringize(-2147483647); }, gNothingToCheck);
    FailEachAllocation([] { QTalBase::Stringize(_GUID{}); }, gNothingToCheck);
    FailEachAllocation([] { QTalBase::Stringize(QDataType::DateTime()); }, gNothingToCheck);
}

TEST(StringizeOutOfMemory, DateTimeThatCannotBeConvertedIsLeftAsItWas)
{
    QDataType::DateTime lTime;
    FailEachAllocation([&] { QTalBase::UnStringize(L"2026-11-21T02:49:00.000001Z", lTime); },
                       [&] { EXPECT_EQ(lTime, QDataType::DateTime()); });
    EXPECT_STREQ(lTime.ToWString().c_str(), L"2026-11-21T02:49:00.000001Z");
}

TEST(GuidOutOfMemory, BadAllocIsNotTranslated)
{
    FailEachAllocation([] { QTalBase::Guid::GenerateUniqueString(); }, gNothingToCheck);
}

} // namespace
