#include "TalBase/Output.h"

#include "TalBase/SerializationTemplates.h"

#include "TalBase/PrivateSource/PropertyBagImpl.h"
#include "Tests/Support/BagBuilder.h"
#include "Tests/Support/RecordingStreams.h"
#include "Tests/Support/ScriptedStream.h"

#include "QSerialization/MemoryDataStream.h"

#include <gtest/gtest.h>

#include <iomanip>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

using namespace Support;
using QBase::SmartPtrI;

// Code that extends the library, in its namespace: the global operators for collections are in its reach.
namespace QTalBase
{

void SaveInTheLibrary(QSerialization::WriteDataStream& iStream, const std::vector<NamedPropertyBag>& iJobs)
{
    iStream << iJobs;
}

void LoadInTheLibrary(QSerialization::ReadDataStream& iStream, std::vector<NamedPropertyBag>& oJobs)
{
    iStream >> oJobs;
}

} // namespace QTalBase

// A client with an operator of its own, which hides the global ones from this namespace.
namespace MailQueue
{

struct Job
{
    BagPtr mBag;
};

std::ostream& operator<<(std::ostream& oStream, const Job& iJob)
{
    return oStream << "job " << *iJob.mBag;
}

class Opaque : public QBase::ReferenceCounted
{
};

} // namespace MailQueue

namespace
{

class FailingBag : public QTalBase::PropertyBagImpl
{
public:
    QBase::ReturnWString GetName(unsigned int) const override
    {
        throw std::runtime_error("no name");
    }
};

template <class T>
std::string Shown(const T& iValue)
{
    std::ostringstream lStream;
    lStream << iValue;
    return lStream.str();
}

SmartPtrI<QTalBase::DeliveryWindow> Window(unsigned int iFirstDisabled, unsigned int iLastDisabled)
{
    SmartPtrI<QTalBase::DeliveryWindow> lWindow(QTalBase::CreateDeliveryWindow());
    lWindow->DisableTimeBlock(iFirstDisabled, iLastDisabled);
    return lWindow;
}

template <class Left, class Right, class = void>
struct CanWrite : std::false_type
{
};

template <class Left, class Right>
struct CanWrite<Left, Right, std::void_t<decltype(std::declval<Left>() << std::declval<Right>())>> : std::true_type
{
};

} // namespace

TEST(Output, BagShowsNamesValuesAndNests)
{
    const BagPtr lBag = BagBuilder()
                            .Set(L"Host", L"ftp.example.com")
                            .Set(L"Sum", L"1+1*2")
                            .Nest(L"Retry", BagBuilder().Set(L"Count", L"3").Nest(L"Empty", BagBuilder()))
                            .Nest(L"Last", BagBuilder().Set(L"k", L"v"));
    EXPECT_EQ(Shown(*lBag),
              "{'Host'='ftp.example.com' 'Sum'='1+1*2' 'Retry'={'Count'='3' 'Empty'={}} 'Last'={'k'='v'}}");
    EXPECT_EQ(Shown(*NewBag()), "{}");
}

TEST(Output, TextsAreEscapedForALog)
{
    const BagPtr lBag = NewBag();
    lBag->SetProperty(L"a'b\\", L"1\n2\r3\t4\x1b[31m5\x7f\x85", false);
    EXPECT_EQ(Shown(*lBag), R"({'a\'b\\'='1\n2\r3\t4\u{1b}[31m5\u{7f}\u{85}'})");
    EXPECT_EQ(Shown(QBase::ReturnWString(L"it's \\ \u202E\u2028\uFEFF")), R"(it's \\ \u{202e}\u{2028}\u{feff})");
    EXPECT_EQ(Shown(QBase::ReturnWString(L"a\0b", 3)), R"(a\u{0}b)");
}

// Only within quotation marks has a character to be told from the mark.
TEST(Output, TextWithoutQuotesKeepsEveryVisibleCharacter)
{
    const std::string lText = "ABCDEFGHIJKLMNOPQRSTUVWXYZ abcdefghijklmnopqrstuvwxyz 0123456789 "
                              "!\"#$%&'()*+,-./:;<=>?@[]^_`{|}~";
    EXPECT_EQ(Shown(QBase::ReturnWString(std::wstring(lText.begin(), lText.end()))), lText);
}

// The first and the last of every range of codes, and their neighbours, which are shown.
TEST(Output, CodesThatAreEscapedForALog)
{
    const auto lIsEscaped = [](wchar_t iCode) {
        const wchar_t lText[] = {iCode, L'\0'};
        return Shown(QBase::ReturnWString(lText)).substr(0, 1) == "\\";
    };
    for (const wchar_t lCode : {0x01, 0x1F, 0x7F, 0x9F, 0x061C, 0x200E, 0x200F, 0x2028, 0x202E, 0x2066, 0x2069, 0xFEFF,
                                0xD800, 0xDFFF, 0x110000})
    {
        EXPECT_TRUE(lIsEscaped(lCode)) << static_cast<unsigned int>(lCode);
    }
    for (const wchar_t lCode : {0x20, 0x7E, 0xA0, 0x061B, 0x061D, 0x200D, 0x2010, 0x2027, 0x202F, 0x2065, 0x206A,
                                0xFEFE, 0xFF00, 0xD7FF, 0xE000, 0x10FFFF})
    {
        EXPECT_FALSE(lIsEscaped(lCode)) << static_cast<unsigned int>(lCode);
    }
}

TEST(Output, OtherCharactersAreUtf8AndWhatIsNoneIsACode)
{
    EXPECT_EQ(Shown(QBase::ReturnWString(L"\u00E9\u4E2D\U0001F4EC")), "\xC3\xA9\xE4\xB8\xAD\xF0\x9F\x93\xAC");
    const wchar_t lNone[] = {static_cast<wchar_t>(0xD800), static_cast<wchar_t>(0x110000), static_cast<wchar_t>(-1), 0};
    EXPECT_EQ(Shown(QBase::ReturnWString(lNone)), R"(\u{d800}\u{110000}\u{ffffffff})");
}

TEST(Output, SensitiveInformationIsHiddenAtEveryDepth)
{
    const BagPtr lBag = BagBuilder()
                            .Set(L"FTPServerPassword", L"own-secret")
                            .Set(L"ftpserverpassword", L"shown")
                            .Nest(L"Transport", BagBuilder().Set(L"FTPServerPassword", L"nested-secret"));
    EXPECT_EQ(Shown(*lBag), "{'FTPServerPassword'=<hidden> 'ftpserverpassword'='shown' "
                            "'Transport'={'FTPServerPassword'=<hidden>}}");
    const BagPtr lNest = BagBuilder().Nest(L"FTPServerPassword", BagBuilder().Set(L"k", L"secret"));
    EXPECT_EQ(Shown(*lNest), "{'FTPServerPassword'=<hidden>}");
}

TEST(Output, BagsWithUnusualNamesAndDelimitersAreShown)
{
    const BagPtr lBag = NewBag(L"[", L"]");
    lBag->SetProperty(L"", L"++++***", false);
    lBag->SetProperty(L"\U0010FFFE", L"1", false);
    EXPECT_EQ(Shown(*lBag), "{''='++++***' '\xF4\x8F\xBF\xBE'='1'}");
    QSerialization::MemoryWriteDataStream lWritten;
    lWritten.WriteWString(L"same");
    lWritten.WriteWString(L"same");
    lWritten.WriteWString(L"");
    QSerialization::MemoryReadDataStream lStream(lWritten.GetBytes().data(), lWritten.GetBytes().size());
    EXPECT_THROW(lBag->DeSerialize(lStream), QTalBase::PropertyBagException);
    EXPECT_EQ(Shown(*lBag), "{''='++++***' '\xF4\x8F\xBF\xBE'='1'}") << "delimiters that cannot be rendered";
}

TEST(Output, CollectionShowsItsEntriesAndTheirLack)
{
    QSerialization::MemoryWriteDataStream lWritten;
    lWritten.WriteUInt32(1);
    lWritten.WriteWString(L"none");
    lWritten.WriteBool(false);
    QSerialization::MemoryReadDataStream lStream(lWritten.GetBytes().data(), lWritten.GetBytes().size());
    const SmartPtrI<QTalBase::PropertyBags> lBags(QTalBase::CreatePropertyBags());
    EXPECT_EQ(Shown(*lBags), "[]");
    lBags->DeSerialize(lStream);
    lBags->Add(L"it's", BagPtr(BagBuilder().Set(L"k", L"v")).get());
    EXPECT_EQ(Shown(*lBags), R"(['none'=null 'it\'s'={'k'='v'}])");
}

TEST(Output, WindowShowsItsEnabledHours)
{
    EXPECT_EQ(Shown(*Window(22, 5)), "enabled 6-21");
    EXPECT_EQ(Shown(*Window(9, 16)), "enabled 0-8 17-23");
    EXPECT_EQ(Shown(*Window(1, 22)), "enabled 0 23");
    EXPECT_EQ(Shown(*Window(2, 21)), "enabled 0-1 22-23");
    EXPECT_EQ(Shown(*Window(0, 23)), "enabled never");
    const SmartPtrI<QTalBase::DeliveryWindow> lWindow(QTalBase::CreateDeliveryWindow());
    EXPECT_EQ(Shown(*lWindow), "enabled always");
}

TEST(Output, StringsAreListed)
{
    const std::unique_ptr<QDataType::StringCollection> lStrings(QDataType::CreateStringCollection());
    EXPECT_EQ(Shown(*lStrings), "[]");
    lStrings->Insert(L"one");
    lStrings->Insert(L"two\n");
    EXPECT_EQ(Shown(*lStrings), R"(['one' 'two\n'])");
    const SmartPtrI<QTalBase::SerializableStringCollection> lOwn(QTalBase::CreateSerializableStringCollection());
    lOwn->Insert(*lStrings);
    lOwn->Insert(L"");
    EXPECT_EQ(Shown(*lOwn), R"(['one' 'two\n' ''])");
}

TEST(Output, BufferIsItsTextWithZerosShown)
{
    const SmartPtrI<QTalBase::BufferedWString> lBuffer(QTalBase::CreateBufferedWString(16, 0));
    EXPECT_EQ(Shown(*lBuffer), "");
    *lBuffer += std::wstring(L"a\0b", 3);
    EXPECT_EQ(Shown(*lBuffer), R"(a\u{0}b)");
}

TEST(Output, IdentifiersAndDatesAreTheirTexts)
{
    const _GUID lGuid = {0x12345678, 0x9ABC, 0x4DEF, {0x80, 1, 2, 3, 4, 5, 6, 7}};
    EXPECT_EQ(Shown(lGuid), "12345678-9abc-4def-8001-020304050607");
    EXPECT_EQ(Shown(QDataType::DateTime()), "1970-01-01T00:00:00Z");
}

TEST(Output, PointerShowsWhatItHoldsOrNull)
{
    const BagPtr lBag = BagBuilder().Set(L"a", L"1");
    EXPECT_EQ(Shown(lBag), "{'a'='1'}");
    EXPECT_EQ(Shown(SmartPtrI<const QTalBase::PropertyBag>(lBag)), "{'a'='1'}");
    EXPECT_EQ(Shown(BagPtr()), "null");
    EXPECT_FALSE((CanWrite<std::ostream&, SmartPtrI<MailQueue::Opaque>>::value));
}

TEST(Output, WidthAndFillApplyToTheWhole)
{
    std::ostringstream lStream;
    lStream << std::hex << std::setfill('.') << std::setw(12) << std::left << *BagPtr(BagBuilder().Set(L"a", L"10"));
    lStream << 255;
    EXPECT_EQ(lStream.str(), "{'a'='10'}..ff");
}

TEST(Output, FailureComesBeforeAnythingIsWritten)
{
    const BagPtr lBag(new FailingBag());
    lBag->SetProperty(L"a", L"1", false);
    std::ostringstream lStream;
    EXPECT_THROW(lStream << "bag: " << *lBag, std::runtime_error);
    EXPECT_EQ(lStream.str(), "bag: ");
}

TEST(Output, DepthTakesNoStack)
{
    const std::size_t lDepth = 100000;
    std::wstring lText = gHeader;
    std::string lExpected;
    for (std::size_t lLevel = 0; lLevel < lDepth; ++lLevel)
    {
        lText += L"n++++";
        lExpected += "{'n'=";
    }
    lText += L"k++++v***";
    lExpected += "{'k'='v'}";
    for (std::size_t lLevel = 0; lLevel < lDepth; ++lLevel)
    {
        lText += L"***";
        lExpected += "}";
    }
    EXPECT_TRUE(Shown(*ReadBag(lText)) == lExpected);
}

TEST(OutputLookup, GlobalCollectionOperatorsStayInReachOfTheLibrarysNamespace)
{
    CallLog lLog;
    RecordingWriteStream lStream(lLog);
    QTalBase::SaveInTheLibrary(lStream, {{L"night", nullptr}});
    EXPECT_EQ(lLog, (CallLog{L"stream.WriteUInt32(1)", L"stream.WriteWString(night)", L"stream.WriteBool(false)"}));
    CallLog lReadLog;
    AnsweringReadStream lScript({1U, L"day", false}, lReadLog);
    std::vector<QTalBase::NamedPropertyBag> lJobs;
    QTalBase::LoadInTheLibrary(lScript, lJobs);
    ASSERT_EQ(lJobs.size(), 1U);
    EXPECT_EQ(lJobs[0].first, L"day");
}

TEST(OutputLookup, ClientWithItsOwnOperatorFindsThoseOfTheLibrary)
{
    EXPECT_EQ(Shown(MailQueue::Job{BagBuilder().Set(L"a", L"1")}), "job {'a'='1'}");
}

TEST(OutputLookup, TestsShowObjectsInTheirReports)
{
    EXPECT_EQ(testing::PrintToString(*BagPtr(BagBuilder().Set(L"a", L"1"))), "{'a'='1'}");
    EXPECT_EQ(testing::PrintToString(QBase::ReturnWString(L"text")), "text");
    EXPECT_EQ(testing::PrintToString(*Window(0, 23)), "enabled never");
    EXPECT_EQ(testing::PrintToString(QDataType::DateTime()), "1970-01-01T00:00:00Z");
    EXPECT_EQ(testing::PrintToString(_GUID()), "00000000-0000-0000-0000-000000000000");
}

TEST(OutputLookup, DataStreamsTakeNothingNew)
{
    EXPECT_FALSE((CanWrite<QSerialization::WriteDataStream&, const QTalBase::PropertyBag&>::value));
    EXPECT_FALSE((CanWrite<QSerialization::WriteDataStream&, const QBase::ReturnWString&>::value));
    EXPECT_FALSE((CanWrite<QSerialization::WriteDataStream&, const BagPtr&>::value));
}
