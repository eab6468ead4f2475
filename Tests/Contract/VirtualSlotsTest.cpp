// Calls through the virtual tables by slot number, the way a host that was built long ago does, and checks the effect.
// The numbers are written out here on purpose: the compiler would follow a function that has moved, a host does not.
// The tables are those of the Itanium C++ ABI; on the machines for which this is built, a virtual function takes its
// object as its first argument.

#include "QDataType/StringCollection.h"
#include "QLog/Initializer.h"
#include "QLog/Router.h"
#include "QSerialization/MemoryDataStream.h"
#include "TalBase/BufferedWString.h"
#include "TalBase/DeliveryWindow.h"
#include "TalBase/Initializer.h"
#include "TalBase/PrivateSource/BufferedWStringImpl.h"
#include "TalBase/PrivateSource/DeliveryWindowImpl.h"
#include "TalBase/PrivateSource/PropertyBagImpl.h"
#include "TalBase/PrivateSource/PropertyBagsImpl.h"
#include "TalBase/PrivateSource/SerializableStringCollectionImpl.h"
#include "TalBase/PropertyBag.h"
#include "TalBase/PropertyBags.h"
#include "TalBase/SerializableStringCollection.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <type_traits>

namespace
{

using QTalBase::PropertyBag;

const QTalBase::Initializer gInitializer;

// Calls what stands in a slot of the table at the start of the object. The sanitizer that compares the type of a called
// function with the type of the pointer has nothing to say here: the types differ by the object's only.
template <class Result, class... Arguments>
__attribute__((no_sanitize("undefined"))) Result CallSlot(std::size_t iSlot, const void* ipObject,
                                                          std::type_identity_t<Arguments>... iArguments)
{
    using Function = Result (*)(const void*, Arguments...);
    const Function* lTable = nullptr;
    std::memcpy(&lTable, ipObject, sizeof(lTable));
    return lTable[iSlot](ipObject, iArguments...);
}

std::wstring Text(const QBase::ReturnWString& iText)
{
    return iText.c_str();
}

// Where an object shows itself as one of its bases.
template <class Base>
const void* As(const Base* ipBase)
{
    return ipBase;
}

// Says when it is destroyed, whichever table the destructor was reached through.
template <class Class>
class Watched : public Class
{
public:
    explicit Watched(bool& oDestroyed) : mDestroyed(oDestroyed) {}
    ~Watched() override
    {
        mDestroyed = true;
    }

private:
    bool& mDestroyed;
};

// Both destructors of a class, at two slots in a row of the table of one of its bases.
template <class Class, class Base>
void ExpectDestructorsAt(std::size_t iSlot)
{
    bool lDestroyed = false;
    alignas(Watched<Class>) std::byte lStorage[sizeof(Watched<Class>)];
    CallSlot<void>(iSlot, As<Base>(new (lStorage) Watched<Class>(lDestroyed)));
    EXPECT_TRUE(lDestroyed) << "complete";
    lDestroyed = false;
    CallSlot<void>(iSlot + 1, As<Base>(new Watched<Class>(lDestroyed)));
    EXPECT_TRUE(lDestroyed) << "deleting";
}

// AddRef and Release, at two slots in a row of the table of one of the class's bases.
template <class Class, class Base>
void ExpectReferencesAt(std::size_t iSlot)
{
    bool lDestroyed = false;
    const Base* lObject = new Watched<Class>(lDestroyed);
    CallSlot<void>(iSlot, As<Base>(lObject));
    CallSlot<void>(iSlot, As<Base>(lObject));
    CallSlot<void>(iSlot + 1, As<Base>(lObject));
    EXPECT_FALSE(lDestroyed);
    CallSlot<void>(iSlot + 1, As<Base>(lObject));
    EXPECT_TRUE(lDestroyed);
}

class VirtualSlots : public testing::Test
{
protected:
    QBase::SmartPtrI<PropertyBag> mBag = QTalBase::CreatePropertyBag(L"<", L">");
    QBase::SmartPtrI<PropertyBag> mOther = QTalBase::CreatePropertyBag(L"<", L">");
    const void* mSlots = As<PropertyBag>(mBag.get());
};

TEST_F(VirtualSlots, PropertyBagStreamsStandAt0And1)
{
    mBag->SetProperty(L"a", L"1", false);
    QSerialization::MemoryWriteDataStream lWritten;
    CallSlot<void, QSerialization::WriteDataStream*>(0, mSlots, &lWritten);
    QSerialization::MemoryReadDataStream lRead(lWritten.GetBytes().data(), lWritten.GetBytes().size());
    CallSlot<void, QSerialization::ReadDataStream*>(1, As<PropertyBag>(mOther.get()), &lRead);
    EXPECT_EQ(Text(mOther->GetProperty(L"a")), L"1");
}

TEST_F(VirtualSlots, PropertyBagDestructorsStandAt2And3)
{
    ExpectDestructorsAt<QTalBase::PropertyBagImpl, PropertyBag>(2);
    ExpectDestructorsAt<QTalBase::PropertyBagImpl, QTalBase::PropertyBagImpl>(2);
    ExpectDestructorsAt<QTalBase::PropertyBagImpl, QBase::ReferenceCounted>(0);
}

TEST_F(VirtualSlots, PropertyBagAccessByNameStandsAt4To9)
{
    mOther->SetProperty(L"x", L"1", false);
    CallSlot<void, const wchar_t*, const wchar_t*, bool>(4, mSlots, L"a", L"2", false);
    CallSlot<void, const wchar_t*, const PropertyBag*>(5, mSlots, L"b", mOther.get());
    EXPECT_EQ(Text(CallSlot<QBase::ReturnWString, const wchar_t*>(7, mSlots, L"a")), L"2");
    EXPECT_TRUE((CallSlot<bool, const wchar_t*>(8, mSlots, L"b")));
    EXPECT_FALSE((CallSlot<bool, const wchar_t*>(8, mSlots, L"a")));
    const auto lNested = CallSlot<QBase::SmartPtrI<PropertyBag>, const wchar_t*>(9, mSlots, L"b");
    EXPECT_EQ(Text(lNested->GetProperty(L"x")), L"1");
    CallSlot<void, const wchar_t*>(6, mSlots, L"a");
    EXPECT_EQ(mBag->GetCount(), 1U);
}

TEST_F(VirtualSlots, PropertyBagAccessByPositionStandsAt10To14)
{
    mOther->SetProperty(L"x", L"1", false);
    mBag->SetProperty(L"a", L"2", false);
    mBag->EmbedProperty(L"b", mOther.get());
    EXPECT_EQ(CallSlot<unsigned int>(10, mSlots), 2U);
    EXPECT_EQ(Text(CallSlot<QBase::ReturnWString, unsigned int>(11, mSlots, 1)), L"b");
    EXPECT_EQ(Text(CallSlot<QBase::ReturnWString, unsigned int>(12, mSlots, 0)), L"2");
    EXPECT_FALSE((CallSlot<bool, unsigned int>(13, mSlots, 0)));
    EXPECT_TRUE((CallSlot<bool, unsigned int>(13, mSlots, 1)));
    const auto lNested = CallSlot<QBase::SmartPtrI<PropertyBag>, unsigned int>(14, mSlots, 1);
    EXPECT_EQ(Text(lNested->GetProperty(L"x")), L"1");
}

TEST_F(VirtualSlots, PropertyBagTextStandsAt15To18)
{
    CallSlot<void, const wchar_t*>(15, mSlots, L"a<1>FTPServerPassword<2>");
    mOther->SetProperty(L"b", L"3", false);
    CallSlot<void, const PropertyBag*>(16, mSlots, mOther.get());
    EXPECT_EQ(Text(CallSlot<QBase::ReturnWString, bool, const wchar_t*, const wchar_t*, bool>(17, mSlots, false, L"[",
                                                                                              L"]", true)),
              L"a[1]FTPServerPassword[2]b[3]");
    EXPECT_EQ(
        Text(CallSlot<QBase::ReturnWString, bool, const wchar_t*, const wchar_t*>(18, mSlots, false, nullptr, nullptr)),
        L"a<1>b<3>");
}

TEST_F(VirtualSlots, PropertyBagComparisonsStandAt19And20)
{
    mBag->SetProperty(L"a", L"1", false);
    mBag->SetProperty(L"b", L"2", false);
    mOther->SetProperty(L"a", L"1", false);
    EXPECT_FALSE((CallSlot<bool, const PropertyBag*>(19, mSlots, mOther.get())));
    EXPECT_TRUE((CallSlot<bool, const PropertyBag*>(20, mSlots, mOther.get())));
    mOther->SetProperty(L"b", L"2", false);
    EXPECT_TRUE((CallSlot<bool, const PropertyBag*>(19, mSlots, mOther.get())));
}

TEST_F(VirtualSlots, PropertyBagDelimitersStandAt21To23)
{
    CallSlot<void, const wchar_t*, const wchar_t*>(21, mSlots, L"{", L"}");
    EXPECT_STREQ(CallSlot<const wchar_t*>(22, mSlots), L"{");
    EXPECT_STREQ(CallSlot<const wchar_t*>(23, mSlots), L"}");
}

TEST_F(VirtualSlots, PropertyBagCopiesStandAt24And25)
{
    mBag->AddString(L"a<1>b<2>");
    const QBase::SmartPtrI<PropertyBag> lClone = CallSlot<PropertyBag*>(24, mSlots);
    EXPECT_EQ(lClone->GetCount(), 2U);
    const std::unique_ptr<QDataType::StringCollection> lFilter(QDataType::CreateStringCollection());
    lFilter->Insert(L"b");
    const QBase::SmartPtrI<PropertyBag> lPart =
        CallSlot<PropertyBag*, const QDataType::StringCollection*>(25, mSlots, lFilter.get());
    EXPECT_EQ(Text(lPart->GetString(false, nullptr, nullptr, true)), L"b<2>");
}

TEST_F(VirtualSlots, PropertyBagMoveStandsAt26)
{
    mBag->AddString(L"a<1>b<2>");
    CallSlot<void, const wchar_t*, unsigned int>(26, mSlots, L"b", 0);
    EXPECT_EQ(Text(mBag->GetString(false, nullptr, nullptr, true)), L"b<2>a<1>");
}

TEST_F(VirtualSlots, PropertyBagImplRemoversStandAt27And28)
{
    QTalBase::PropertyBagImpl lBag(L"<", L">");
    const void* lSlots = As<QTalBase::PropertyBagImpl>(&lBag);
    lBag.AddString(L"a<1>b<c<2>>");
    CallSlot<void, const wchar_t*>(27, lSlots, L"b");
    CallSlot<void, const wchar_t*>(28, lSlots, L"a");
    EXPECT_EQ(lBag.GetCount(), 2U);
    CallSlot<void, const wchar_t*>(27, lSlots, L"a");
    EXPECT_EQ(Text(lBag.GetString(false, nullptr, nullptr, true)), L"b<c<2>>");
    CallSlot<void, const wchar_t*>(28, lSlots, L"b");
    EXPECT_EQ(lBag.GetCount(), 0U);
}

TEST(VirtualSlotsOfReferences, StandAfterEachClassesOwnAndAt2And3OfTheVirtualBase)
{
    ExpectReferencesAt<QTalBase::PropertyBagImpl, QBase::ReferenceCounted>(2);
    ExpectReferencesAt<QTalBase::PropertyBagImpl, QTalBase::PropertyBagImpl>(29);
    ExpectReferencesAt<QTalBase::PropertyBagsImpl, QBase::ReferenceCounted>(2);
    ExpectReferencesAt<QTalBase::PropertyBagsImpl, QTalBase::PropertyBagsImpl>(10);
    ExpectReferencesAt<QTalBase::SerializableStringCollectionImpl, QBase::ReferenceCounted>(2);
    ExpectReferencesAt<QTalBase::SerializableStringCollectionImpl, QTalBase::SerializableStringCollectionImpl>(10);
    ExpectReferencesAt<QTalBase::DeliveryWindowImpl, QBase::ReferenceCounted>(2);
    ExpectReferencesAt<QTalBase::DeliveryWindowImpl, QTalBase::DeliveryWindowImpl>(10);
}

TEST(VirtualSlotsOfPropertyBags, CallThroughEachSlotHasItsEffect)
{
    const QBase::SmartPtrI<QTalBase::PropertyBags> lBags = QTalBase::CreatePropertyBags();
    const QBase::SmartPtrI<QTalBase::PropertyBags> lCopy = QTalBase::CreatePropertyBags();
    const QBase::SmartPtrI<PropertyBag> lBag = QTalBase::CreatePropertyBag();
    lBag->SetProperty(L"a", L"1", false);
    const void* lSlots = As<QTalBase::PropertyBags>(lBags.get());
    CallSlot<void, const wchar_t*, const PropertyBag*>(4, lSlots, L"name", lBag.get());
    EXPECT_EQ(CallSlot<unsigned int>(5, lSlots), 1U);
    EXPECT_STREQ((CallSlot<const wchar_t*, unsigned int>(6, lSlots, 0)), L"name");
    EXPECT_EQ((CallSlot<QBase::SmartPtrI<PropertyBag>, unsigned int>(7, lSlots, 0)->GetCount()), 1U);
    EXPECT_FALSE(static_cast<bool>(CallSlot<QBase::SmartPtrI<PropertyBag>, const wchar_t*>(8, lSlots, L"other")));
    const QBase::SmartPtrI<QTalBase::PropertyBags> lClone = CallSlot<QTalBase::PropertyBags*>(9, lSlots);
    EXPECT_EQ(lClone->GetCount(), 1U);

    QSerialization::MemoryWriteDataStream lWritten;
    CallSlot<void, QSerialization::WriteDataStream*>(0, lSlots, &lWritten);
    QSerialization::MemoryReadDataStream lRead(lWritten.GetBytes().data(), lWritten.GetBytes().size());
    CallSlot<void, QSerialization::ReadDataStream*>(1, As<QTalBase::PropertyBags>(lCopy.get()), &lRead);
    EXPECT_STREQ(lCopy->GetName(0), L"name");
    ExpectDestructorsAt<QTalBase::PropertyBagsImpl, QTalBase::PropertyBags>(2);
}

// The slots that the two string collections have in common, from the first Insert on.
void ExpectStringsFrom(std::size_t iSlot, const void* ipStrings)
{
    const std::unique_ptr<QDataType::StringCollection> lOther(QDataType::CreateStringCollection());
    lOther->Insert(L"two");
    CallSlot<void, const wchar_t*>(iSlot, ipStrings, L"one");
    CallSlot<void, const QDataType::StringCollection*>(iSlot + 1, ipStrings, lOther.get());
    EXPECT_EQ(CallSlot<unsigned long>(iSlot + 2, ipStrings), 2UL);
    EXPECT_STREQ((CallSlot<const wchar_t*, unsigned long>(iSlot + 3, ipStrings, 0)), L"one");
    EXPECT_STREQ((CallSlot<const wchar_t*, unsigned long>(iSlot + 3, ipStrings, 1)), L"two");
    CallSlot<void>(iSlot + 4, ipStrings);
    EXPECT_EQ(CallSlot<unsigned long>(iSlot + 2, ipStrings), 0UL);
}

TEST(VirtualSlotsOfStringCollection, CallThroughEachSlotHasItsEffect)
{
    QDataType::StringCollection* lStrings = QDataType::CreateStringCollection();
    ExpectStringsFrom(2, As<QDataType::StringCollection>(lStrings));
    CallSlot<void>(1, As<QDataType::StringCollection>(lStrings));
}

TEST(VirtualSlotsOfSerializableStringCollection, CallThroughEachSlotHasItsEffect)
{
    using QTalBase::SerializableStringCollection;
    const QBase::SmartPtrI<SerializableStringCollection> lStrings = QTalBase::CreateSerializableStringCollection();
    const void* lSlots = As<SerializableStringCollection>(lStrings.get());
    ExpectStringsFrom(4, lSlots);

    lStrings->Insert(L"three");
    const std::unique_ptr<QDataType::StringCollection> lCopy(CallSlot<QDataType::StringCollection*>(9, lSlots));
    EXPECT_STREQ(lCopy->GetString(0), L"three");

    QSerialization::MemoryWriteDataStream lWritten;
    CallSlot<void, QSerialization::WriteDataStream*>(0, lSlots, &lWritten);
    QSerialization::MemoryReadDataStream lRead(lWritten.GetBytes().data(), lWritten.GetBytes().size());
    CallSlot<void, QSerialization::ReadDataStream*>(1, lSlots, &lRead);
    EXPECT_EQ(lStrings->GetCount(), 2UL);
    ExpectDestructorsAt<QTalBase::SerializableStringCollectionImpl, SerializableStringCollection>(2);
}

TEST(VirtualSlotsOfBufferedWString, CallThroughEachSlotHasItsEffect)
{
    const QBase::SmartPtrI<QTalBase::BufferedWString> lBuffer = QTalBase::CreateBufferedWString(4, 2);
    const void* lSlots = As<QTalBase::BufferedWString>(lBuffer.get());
    const std::wstring lSecond = L"cd";
    const QBase::ReturnWString lThird(L"e");
    CallSlot<void, const wchar_t*>(4, lSlots, L"ab");
    CallSlot<void, const std::wstring*>(5, lSlots, &lSecond);
    EXPECT_EQ(CallSlot<std::size_t>(9, lSlots), 4U);
    CallSlot<void, const QBase::ReturnWString*>(6, lSlots, &lThird);
    EXPECT_STREQ(CallSlot<const wchar_t*>(7, lSlots), L"abcde");
    EXPECT_EQ(CallSlot<std::size_t>(8, lSlots), 5U);
    EXPECT_EQ(CallSlot<std::size_t>(9, lSlots), 6U);
    CallSlot<void>(2, lSlots); // one reference more, and dropped again: the buffer stays
    CallSlot<void>(3, lSlots);
    EXPECT_EQ(lBuffer->size(), 5U);
    ExpectDestructorsAt<QTalBase::BufferedWStringImpl, QTalBase::BufferedWString>(0);
}

TEST(VirtualSlotsOfDeliveryWindow, CallThroughEachSlotHasItsEffect)
{
    const QBase::SmartPtrI<QTalBase::DeliveryWindow> lWindow = QTalBase::CreateDeliveryWindow();
    const QBase::SmartPtrI<QTalBase::DeliveryWindow> lOther = QTalBase::CreateDeliveryWindow();
    const void* lSlots = As<QTalBase::DeliveryWindow>(lWindow.get());
    CallSlot<void, unsigned int, unsigned int>(4, lSlots, 7, 9);
    CallSlot<void, unsigned int, unsigned int>(5, lSlots, 8, 8);
    EXPECT_FALSE((CallSlot<bool, unsigned int>(6, lSlots, 7)));
    EXPECT_TRUE((CallSlot<bool, unsigned int>(6, lSlots, 8)));
    const QBase::SmartPtrI<PropertyBag> lBag =
        CallSlot<PropertyBag*, const wchar_t*, const wchar_t*, const wchar_t*>(7, lSlots, L"My", L"<", L">");
    EXPECT_EQ(Text(lBag->GetProperty(L"MyDeliveryWindow")), L" 7, 9,");
    CallSlot<void, const wchar_t*, const PropertyBag*>(8, As<QTalBase::DeliveryWindow>(lOther.get()), L"My",
                                                       lBag.get());
    EXPECT_FALSE(lOther->IsEnabled(9));
    const QBase::SmartPtrI<QTalBase::DeliveryWindow> lClone = CallSlot<QTalBase::DeliveryWindow*>(9, lSlots);
    EXPECT_FALSE(lClone->IsEnabled(7));

    QSerialization::MemoryWriteDataStream lWritten;
    CallSlot<void, QSerialization::WriteDataStream*>(0, lSlots, &lWritten);
    QSerialization::MemoryReadDataStream lRead(lWritten.GetBytes().data(), lWritten.GetBytes().size());
    lOther->EnableTimeBlock(0, 23);
    CallSlot<void, QSerialization::ReadDataStream*>(1, As<QTalBase::DeliveryWindow>(lOther.get()), &lRead);
    EXPECT_FALSE(lOther->IsEnabled(9));
    ExpectDestructorsAt<QTalBase::DeliveryWindowImpl, QTalBase::DeliveryWindow>(2);
}

TEST(VirtualSlotsOfStreams, PrimitivesStandInTheirListedOrder)
{
    QSerialization::MemoryWriteDataStream lWriter;
    const void* lWrite = As<QSerialization::WriteDataStream>(&lWriter);
    CallSlot<void, bool>(3, lWrite, true);
    EXPECT_EQ(lWriter.GetBytes().size(), 1U);
    CallSlot<void, unsigned int>(4, lWrite, 70000);
    EXPECT_EQ(lWriter.GetBytes().size(), 5U);
    CallSlot<void, unsigned long>(5, lWrite, 5000000000);
    EXPECT_EQ(lWriter.GetBytes().size(), 13U);
    CallSlot<void, const wchar_t*>(2, lWrite, L"ab");
    EXPECT_EQ(lWriter.GetBytes().size(), 25U);

    QSerialization::MemoryReadDataStream lReader(lWriter.GetBytes().data(), lWriter.GetBytes().size());
    const void* lRead = As<QSerialization::ReadDataStream>(&lReader);
    bool lFlag = false;
    unsigned int lNumber = 0;
    unsigned long lLong = 0;
    CallSlot<void, bool*>(2, lRead, &lFlag);
    CallSlot<void, unsigned int*>(3, lRead, &lNumber);
    CallSlot<void, unsigned long*>(4, lRead, &lLong);
    EXPECT_TRUE(lFlag);
    EXPECT_EQ(lNumber, 70000U);
    EXPECT_EQ(lLong, 5000000000UL);
    EXPECT_EQ(Text(CallSlot<QBase::ReturnWString>(5, lRead)), L"ab");
}

TEST(VirtualSlotsOfRouter, ReferencesStandAt2And3)
{
    const QLog::Initializer lLog;
    const QBase::SmartPtrI<QLog::Router> lRouter = QLog::CreateRouter("VirtualSlotsTest", "Error", -3);
    const void* lSlots = As<QBase::ReferenceCounted>(lRouter.get());
    CallSlot<void>(2, lSlots);
    CallSlot<void>(3, lSlots);
    EXPECT_TRUE(static_cast<bool>(lRouter));
}

} // namespace
