// The bytes that the library's objects leave in a stream in memory, against files written by hand, in both directions.
// Spools on disk hold these bytes, so none of them may ever change.

#include "TalBase/DeliveryWindow.h"
#include "TalBase/PropertyBag.h"
#include "TalBase/PropertyBags.h"
#include "TalBase/SerializableStringCollection.h"

#include "QSerialization/MemoryDataStream.h"
#include "Tests/Support/Describe.h"
#include "Tests/Support/ScriptedStream.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

namespace
{

using QBase::SmartPtrI;
using QSerialization::MemoryReadDataStream;
using QSerialization::MemoryWriteDataStream;
using QSerialization::SerializableObject;
using QSerialization::StreamException;
using Support::BagPtr;
using Support::Describe;

using Bytes = std::vector<std::byte>;
using BagsPtr = SmartPtrI<QTalBase::PropertyBags>;
using WindowPtr = SmartPtrI<QTalBase::DeliveryWindow>;
using StringsPtr = SmartPtrI<QTalBase::SerializableStringCollection>;

// Reads pairs of hexadecimal digits; blanks, and what follows a '#', are for the reader of the file.
Bytes Golden(const char* ipFile)
{
    std::ifstream lFile(std::string(TALBASE_SOURCE_DIR "/Tests/Golden/Bags/") + ipFile);
    EXPECT_TRUE(lFile.is_open()) << ipFile;
    std::string lDigits;
    for (std::string lLine; std::getline(lFile, lLine);)
    {
        for (const char lCharacter : lLine.substr(0, lLine.find('#')))
        {
            if (lCharacter != ' ')
            {
                lDigits += lCharacter;
            }
        }
    }
    EXPECT_EQ(lDigits.size() % 2, 0U) << ipFile;
    EXPECT_EQ(lDigits.find_first_not_of("0123456789abcdef"), std::string::npos) << ipFile;
    Bytes lBytes;
    for (std::size_t lPosition = 0; lPosition + 1 < lDigits.size(); lPosition += 2)
    {
        lBytes.push_back(std::byte(std::strtoul(lDigits.substr(lPosition, 2).c_str(), nullptr, 16)));
    }
    return lBytes;
}

std::string Hex(const Bytes& iBytes)
{
    std::string lHex;
    for (const std::byte lByte : iBytes)
    {
        const char* const lDigits = "0123456789abcdef";
        lHex += lDigits[std::to_integer<int>(lByte) >> 4];
        lHex += lDigits[std::to_integer<int>(lByte) & 15];
    }
    return lHex;
}

std::string WrittenBy(const SerializableObject& iObject)
{
    MemoryWriteDataStream lStream;
    iObject.Serialize(lStream);
    return Hex(lStream.GetBytes());
}

void ReadWhole(SerializableObject& oObject, const Bytes& iBytes)
{
    MemoryReadDataStream lStream(iBytes.data(), iBytes.size());
    oObject.DeSerialize(lStream);
    EXPECT_EQ(lStream.GetRemaining(), 0U);
}

// Every strict beginning of the bytes ends too early.
template <class Create>
void ExpectEveryCutRefused(const Bytes& iBytes, Create iCreate)
{
    for (std::size_t lSize = 0; lSize < iBytes.size(); ++lSize)
    {
        const auto lObject = iCreate();
        const Bytes lCut(iBytes.begin(), iBytes.begin() + static_cast<std::ptrdiff_t>(lSize));
        MemoryReadDataStream lStream(lCut.data(), lCut.size());
        EXPECT_THROW(lObject->DeSerialize(lStream), StreamException) << "cut after " << lSize << " bytes";
    }
}

BagPtr NewBag()
{
    return QTalBase::CreatePropertyBag();
}

BagPtr NestedBag()
{
    const BagPtr lDeep = NewBag();
    lDeep->SetProperty(L"x", L"1", false);
    const BagPtr lSub = NewBag();
    lSub->SetProperty(L"Key", L"v", false);
    lSub->EmbedProperty(L"Deep", lDeep.get());
    BagPtr lBag = NewBag();
    lBag->SetProperty(L"Name", L"A+B", false);
    lBag->SetProperty(L"City", L"K\u00f6ln", false);
    lBag->SetProperty(L"Mark", L"\U0001F4E8", false);
    lBag->EmbedProperty(L"Sub", lSub.get());
    return lBag;
}

// Only a stream can leave a hole.
BagsPtr BagsWithAHole()
{
    Support::CallLog lLog;
    Support::AnsweringReadStream lStream(
        {3U, L"job", true, L"++++", L"***", L"a++++1***", L"hole", false, L"", true, L"[", L"]", L"b[*]"}, lLog);
    BagsPtr lBags(QTalBase::CreatePropertyBags());
    lBags->DeSerialize(lStream);
    return lBags;
}

WindowPtr Night()
{
    WindowPtr lWindow(QTalBase::CreateDeliveryWindow());
    lWindow->DisableTimeBlock(22, 6);
    return lWindow;
}

StringsPtr NewStrings()
{
    return QTalBase::CreateSerializableStringCollection();
}

TEST(GoldenBytes, EmptyBag)
{
    const Bytes lGolden = Golden("EmptyBag.hex");
    EXPECT_EQ(lGolden.size(), 4U * (1 + 4 + 1 + 3 + 1 + 36));
    EXPECT_EQ(WrittenBy(*NewBag()), Hex(lGolden));
    const BagPtr lBag(QTalBase::CreatePropertyBag(L"[", L"]"));
    ReadWhole(*lBag, lGolden);
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {}");
}

TEST(GoldenBytes, BagWithNestedBags)
{
    const Bytes lGolden = Golden("NestedBag.hex");
    EXPECT_EQ(WrittenBy(*NestedBag()), Hex(lGolden));
    const BagPtr lBag = NewBag();
    ReadWhole(*lBag, lGolden);
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'Name'='A&#43;B' 'City'='K\u00f6ln' 'Mark'='\U0001F4E8' 'Sub'={'Key'='v' "
                              L"'Deep'={'x'='1'}}}");
    ExpectEveryCutRefused(lGolden, NewBag);
}

TEST(GoldenBytes, CollectionWithAHole)
{
    const Bytes lGolden = Golden("Bags.hex");
    EXPECT_EQ(WrittenBy(*BagsWithAHole()), Hex(lGolden));
    const BagsPtr lBags(QTalBase::CreatePropertyBags());
    ReadWhole(*lBags, lGolden);
    ASSERT_EQ(lBags->GetCount(), 3U);
    EXPECT_STREQ(lBags->GetName(0), L"job");
    EXPECT_EQ(Describe(lBags->GetPropertyBag(0)), L"'++++' '***' {'a'='1'}");
    EXPECT_STREQ(lBags->GetName(1), L"hole");
    EXPECT_FALSE(lBags->GetPropertyBag(1));
    EXPECT_STREQ(lBags->GetName(2), L"");
    EXPECT_EQ(Describe(lBags->GetPropertyBag(2)), L"'[' ']' {'b'='*'}");
    ExpectEveryCutRefused(lGolden, [] { return BagsPtr(QTalBase::CreatePropertyBags()); });
}

TEST(GoldenBytes, Window)
{
    const Bytes lGolden = Golden("Window.hex");
    EXPECT_EQ(WrittenBy(*Night()), Hex(lGolden));
    const WindowPtr lWindow(QTalBase::CreateDeliveryWindow());
    lWindow->DisableTimeBlock(12, 12);
    ReadWhole(*lWindow, lGolden);
    for (unsigned int lHour = 0; lHour < 32; ++lHour)
    {
        EXPECT_EQ(lWindow->IsEnabled(lHour), (lHour >= 7 && lHour <= 21) || lHour >= 24) << lHour;
    }
    ExpectEveryCutRefused(lGolden, [] { return WindowPtr(QTalBase::CreateDeliveryWindow()); });
}

TEST(GoldenBytes, Strings)
{
    const Bytes lGolden = Golden("Strings.hex");
    const StringsPtr lWritten = NewStrings();
    lWritten->Insert(L"b");
    lWritten->Insert(L"");
    lWritten->Insert(L"b");
    EXPECT_EQ(WrittenBy(*lWritten), Hex(lGolden));
    const StringsPtr lStrings = NewStrings();
    ReadWhole(*lStrings, lGolden);
    ASSERT_EQ(lStrings->GetCount(), 3UL);
    EXPECT_STREQ(lStrings->GetString(0), L"b");
    EXPECT_STREQ(lStrings->GetString(1), L"");
    EXPECT_STREQ(lStrings->GetString(2), L"b");
    ExpectEveryCutRefused(lGolden, NewStrings);
}

TEST(GoldenBytes, CollectionCutAnywhereKeepsTheEntriesBeforeTheCut)
{
    const Bytes lGolden = Golden("Bags.hex");
    // The first entry ends after count, name, flag and a bag of 4, 3 and 45 characters; the second is name and flag.
    const std::size_t lFirst = 4 + (4 + 3 * 4) + 1 + (4 + 4 * 4) + (4 + 3 * 4) + (4 + 45 * 4);
    const std::size_t lSecond = lFirst + (4 + 4 * 4) + 1;
    for (std::size_t lSize = 0; lSize < lGolden.size(); ++lSize)
    {
        const BagsPtr lBags = BagsWithAHole();
        MemoryReadDataStream lStream(lGolden.data(), lSize);
        EXPECT_THROW(lBags->DeSerialize(lStream), StreamException);
        EXPECT_EQ(lBags->GetCount(), lSize < lFirst ? 0U : lSize < lSecond ? 1U : 2U) << "cut after " << lSize;
    }
}

} // namespace
