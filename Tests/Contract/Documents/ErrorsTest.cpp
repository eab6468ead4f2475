// Docs/Errors.md has every message of the library, to the character, and nothing else: its rows are compared with what
// the sources hold and with what is thrown.

#include "QBase/Convert.h"
#include "QDataType/StringCollection.h"
#include "QSerialization/MemoryDataStream.h"
#include "TalBase/BufferedWString.h"
#include "TalBase/PropertyBag.h"
#include "TalBase/PropertyBags.h"
#include "TalBase/SerializableStringCollection.h"

#include "Tests/Contract/Documents/BagNotation.h"
#include "Tests/Contract/Documents/Document.h"
#include "Tests/Contract/Documents/Provocations.h"
#include "Tests/Support/BagBuilder.h"
#include "Tests/Support/Describe.h"
#include "Tests/Support/Expect.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

using namespace Documents;
using namespace Support;

namespace
{

// A message as the document has it.
struct Entry
{
    std::wstring mText; // with placeholders
    std::string mClass;
    std::set<std::string> mOperations;
    std::string mAfterwards; // empty for the platform's
};

const std::vector<Table>& Tables()
{
    static const std::vector<Table> lTables = ReadTables(ReadProjectFile("Docs/Errors.md"));
    return lTables;
}

// Returns the operations of the sentence "Thrown by `A`, `B`." of a table's introduction.
std::string ThrownBySentence(const Table& iTable)
{
    const std::size_t lBegin = iTable.mIntroduction.find("Thrown by ");
    if (lBegin == std::string::npos)
    {
        throw std::runtime_error("no operation is named for the table under " + iTable.mSection);
    }
    return iTable.mIntroduction.substr(lBegin, iTable.mIntroduction.find('.', lBegin) - lBegin);
}

// Returns what a row adds to that sentence.
std::string AlsoThrownBy(const Row& iRow)
{
    const std::string& lCause = iRow.at("cause");
    const std::size_t lBegin = lCause.find("also thrown by ");
    return lBegin != std::string::npos ? lCause.substr(lBegin) : "";
}

std::vector<Entry> ReadEntries(bool iIsPlatform)
{
    std::vector<Entry> lEntries;
    for (const Table& lTable : Tables())
    {
        if (lTable.mColumns.front() != "text" || (lTable.mSection == "From the platform family") != iIsPlatform)
        {
            continue;
        }
        for (const Row& lRow : lTable.mRows)
        {
            const auto lCell = lRow.find("thrown by");
            const std::vector<std::string> lOperations =
                CodeSpans(lCell != lRow.end() ? lCell->second : ThrownBySentence(lTable) + AlsoThrownBy(lRow));
            const std::wstring lClass = CodeCell(lRow, "class");
            lEntries.push_back({CodeCell(lRow, "text"),
                                std::string(lClass.begin(), lClass.end()),
                                {lOperations.begin(), lOperations.end()},
                                iIsPlatform ? "" : lRow.at("afterwards")});
        }
    }
    return lEntries;
}

void Replace(std::wstring& oText, const std::wstring& iPart, const std::wstring& iBy)
{
    const std::size_t lPlace = oText.find(iPart);
    if (lPlace != std::wstring::npos)
    {
        oText.replace(lPlace, iPart.size(), iBy);
    }
}

// Returns the text with the values of a provocation in the place of the placeholders.
std::wstring Filled(std::wstring iText, const Placeholders& iPlaceholders)
{
    Replace(iText, L"<value>", iPlaceholders.mValue);
    Replace(iText, L"<begin>", iPlaceholders.mBegin);
    Replace(iText, L"<end>", iPlaceholders.mEnd);
    Replace(iText, L"<text>", gRefusedText);
    Replace(iText, L"<path>", gMissingPath);
    Replace(iText, L"<bad path>", gUnreadablePath);
    Replace(iText, L"<n>", gPlace);
    return iText;
}

// Compares the entries with what was seen, in both directions.
void ExpectSame(const std::vector<Entry>& iEntries, const std::vector<Observation>& iObservations,
                const std::set<std::wstring>& iUnseen)
{
    std::set<std::wstring> lTexts;
    for (const Entry& lEntry : iEntries)
    {
        EXPECT_TRUE(lTexts.insert(lEntry.mText).second) << "twice: " << Readable(lEntry.mText);
        std::set<std::string> lOperations;
        for (const Observation& lObservation : iObservations)
        {
            if (lObservation.mText == Filled(lEntry.mText, lObservation.mPlaceholders))
            {
                lOperations.insert(lObservation.mOperation);
                EXPECT_EQ(lObservation.mClass, lEntry.mClass) << Readable(lEntry.mText);
                EXPECT_TRUE(lObservation.mIsUnchanged) << lObservation.mOperation << ": " << Readable(lEntry.mText);
            }
        }
        if (iUnseen.count(lEntry.mText) == 0)
        {
            EXPECT_EQ(lOperations, lEntry.mOperations) << "throw " << Readable(lEntry.mText);
        }
    }
    for (const Observation& lObservation : iObservations)
    {
        bool lIsDocumented = lObservation.mText.empty(); // no message of the library: see below
        for (const Entry& lEntry : iEntries)
        {
            lIsDocumented = lIsDocumented || lObservation.mText == Filled(lEntry.mText, lObservation.mPlaceholders);
        }
        EXPECT_TRUE(lIsDocumented) << lObservation.mOperation << " throws " << Readable(lObservation.mText);
    }
}

// Returns the wide literals of a source, adjacent ones joined.
std::vector<std::wstring> WideLiterals(const std::string& iSource)
{
    std::vector<std::wstring> lLiterals;
    std::size_t lLastEnd = 0;
    for (std::size_t lBegin = iSource.find("L\""); lBegin != std::string::npos; lBegin = iSource.find("L\"", lLastEnd))
    {
        const std::size_t lEnd = iSource.find('"', lBegin + 2);
        const std::wstring lText = QBase::UTF8ToWideChar(iSource.substr(lBegin + 2, lEnd - lBegin - 2), true);
        const bool lContinues = lLastEnd != 0 && iSource.find_first_not_of(" \n", lLastEnd) == lBegin;
        if (lContinues)
        {
            lLiterals.back() += lText;
        }
        else
        {
            lLiterals.push_back(lText);
        }
        lLastEnd = lEnd + 1;
    }
    return lLiterals;
}

// Returns the messages among the literals: they have "; " between the operation and what is wrong.
std::set<std::wstring> Messages(const std::string& iSource, const std::wstring& iPrefix)
{
    std::set<std::wstring> lMessages;
    for (const std::wstring& lLiteral : WideLiterals(iSource))
    {
        if (lLiteral.find(L"; ") != std::wstring::npos)
        {
            lMessages.insert(iPrefix + lLiteral);
        }
    }
    return lMessages;
}

// Returns the texts of the document up to their first placeholder.
std::set<std::wstring> FixedBeginnings(const std::vector<Entry>& iEntries)
{
    std::set<std::wstring> lBeginnings;
    for (const Entry& lEntry : iEntries)
    {
        lBeginnings.insert(lEntry.mText.substr(0, lEntry.mText.find(L'<')));
    }
    return lBeginnings;
}

std::wstring LeftBehind(const BagPtr& iBag, const std::function<void(QTalBase::PropertyBag&)>& iAction)
{
    EXPECT_THROW(iAction(*iBag), QBase::Message);
    return Describe(*iBag);
}

// Lets a bag read itself from a stream.
void Receive(QTalBase::PropertyBag& oBag, const wchar_t* ipBegin, const wchar_t* ipEnd, const std::wstring& iText)
{
    QSerialization::MemoryWriteDataStream lWritten;
    lWritten.WriteWString(ipBegin);
    lWritten.WriteWString(ipEnd);
    lWritten.WriteWString(iText.c_str());
    QSerialization::MemoryReadDataStream lStream(lWritten.GetBytes().data(), lWritten.GetBytes().size());
    oBag.DeSerialize(lStream);
}

// Gives it delimiters that no bag may have.
BagPtr Spoilt(const BagPtr& iBag)
{
    EXPECT_THROW(Receive(*iBag, L"x", L"x", L""), QTalBase::PropertyBagException);
    return iBag;
}

} // namespace

TEST(ErrorsDocument, EveryMessageIsThrownAsWritten)
{
    const std::vector<Entry> lEntries = ReadEntries(false);
    EXPECT_EQ(lEntries.size(), 34U);
    ExpectSame(lEntries, ProvokeLibrary(), {});
    for (const Entry& lEntry : lEntries)
    {
        EXPECT_EQ(lEntry.mAfterwards, "unchanged") << Readable(lEntry.mText);
    }
}

TEST(ErrorsDocument, MessagesAreThoseOfTheTableInTheSources)
{
    std::set<std::wstring> lMessages = Messages(ReadProjectFile("TalBase/PrivateSource/Messages.h"), L"QTalBase::");
    lMessages.merge(Messages(ReadProjectFile("TalBase/Views.h"), L"")); // is not part of the library
    EXPECT_EQ(FixedBeginnings(ReadEntries(false)), lMessages);
}

TEST(ErrorsDocument, EveryMessageOfThePlatformIsThrownAsWritten)
{
    // 16 GiB of text would be needed; the sources have it, as the next test shows.
    const std::wstring lTooLong = L"QSerialization::MemoryWriteDataStream::WriteWString; The text is too long";
    ExpectSame(ReadEntries(true), ProvokePlatform(), {lTooLong});
}

TEST(ErrorsDocument, MessagesOfThePlatformAreThoseInItsSources)
{
    std::set<std::wstring> lMessages;
    const std::string lRoot = TALBASE_SOURCE_DIR;
    for (const auto& lFile : std::filesystem::recursive_directory_iterator(lRoot + "/Platform"))
    {
        if (lFile.path().extension() == ".cpp")
        {
            lMessages.merge(Messages(ReadProjectFile(lFile.path().string().substr(lRoot.size() + 1)), L""));
        }
    }
    EXPECT_EQ(FixedBeginnings(ReadEntries(true)), lMessages);
}

TEST(ErrorsDocument, UnreadableNestLeavesItsNameGone)
{
    const BagPtr lNameless = MakeBag(L"{''='1'}");
    EXPECT_EQ(LeftBehind(MakeBag(L"{'a'='1' 'n'='2'}"), [](auto& oBag) { oBag.SetProperty(L"n", L"k***", true); }),
              L"'++++' '***' {'a'='1'}");
    EXPECT_EQ(
        LeftBehind(MakeBag(L"{'a'='1' 'n'={'k'='v'}}"), [&](auto& oBag) { oBag.EmbedProperty(L"n", lNameless.get()); }),
        L"'++++' '***' {'a'='1'}");
}

TEST(ErrorsDocument, RefusedPropertyOfANestLeavesItsNameGone)
{
    EXPECT_EQ(
        LeftBehind(MakeBag(L"{'a'='1' 'n'='2'}"),
                   [](auto& oBag) { oBag.SetProperty(L"n", L"EndDelimiter]]BeginDelimiter[[]]k***[[v]]", true); }),
        L"'++++' '***' {'a'='1'}");
    EXPECT_EQ(LeftBehind(MakeBag(L"{'a'='1' 'n'='2'}", L"[[", L"]]"),
                         [](auto& oBag) { oBag.SetProperty(L"n", L"EndDelimiter)BeginDelimiter()k(x]]y)", true); }),
              L"'[[' ']]' {'a'='1'}");
}

TEST(ErrorsDocument, ForbiddenDelimitersOfItsOwnLeaveTheNameOfANestGone)
{
    const auto lBag = [] { return Spoilt(MakeBag(L"{'a'='1' 'n'='2'}")); };
    EXPECT_EQ(LeftBehind(lBag(), [](auto& oBag) { oBag.SetProperty(L"n", L"k++++v***", true); }), L"'x' 'x' {'a'='1'}");
    const std::wstring lText = L"EndDelimiter]]BeginDelimiter[[]]b[[2]]n[[k[[v]]]]o[[k[[v]]]]";
    const std::wstring lLeft = L"'x' 'x' {'a'='1' 'b'='2'}";
    EXPECT_EQ(LeftBehind(lBag(), [&](auto& oBag) { oBag.AddString(lText.c_str()); }), lLeft);
    EXPECT_EQ(LeftBehind(lBag(), [&](auto& oBag) { oBag.AddPropertyBag(ReadBag(lText).get()); }), lLeft);
    EXPECT_EQ(LeftBehind(lBag(), [&](auto& oBag) { Receive(oBag, L"x", L"x", lText); }), lLeft);
    const BagPtr lWithNest = Spoilt(MakeBag(L"{'a'='1' 'n'={'k'='v'}}"));
    EXPECT_EQ(LeftBehind(lWithNest, [](auto& oBag) { oBag.AddPropertyBag(&oBag); }), L"'x' 'x' {'a'='1'}");
}

TEST(ErrorsDocument, NestThatCannotBeWrittenLeavesItsNameAndThoseBeforeItMerged)
{
    const BagPtr lOther = MakeBag(L"{'b'='2' 'm'={'k'='v'} 'n'={'k'='v'} 'o'={'k'='v'}}");
    Spoilt(lOther->GetPropertyBag(L"n"));
    EXPECT_EQ(LeftBehind(MakeBag(L"{'a'='1' 'n'='old'}"), [&](auto& oBag) { oBag.AddPropertyBag(lOther.get()); }),
              L"'++++' '***' {'a'='1' 'n'='old' 'b'='2' 'm'={'k'='v'}}");
}

TEST(ErrorsDocument, RefusedPropertyLeavesThoseBeforeItMerged)
{
    EXPECT_EQ(LeftBehind(MakeBag(L"{'a'='1'}"),
                         [](auto& oBag) { oBag.AddString(L"EndDelimiter]]BeginDelimiter[[]]b[[2]]c***[[3]]d[[4]]"); }),
              L"'++++' '***' {'a'='1' 'b'='2'}");

    EXPECT_EQ(LeftBehind(MakeBag(L"{'a'='1' 'n'={'k'='old'}}"),
                         [](auto& oBag) {
                             oBag.AddString(L"EndDelimiter]]BeginDelimiter[[]]m[[k[[v]]]]n[[k***[[v]]]]o[[k[[v]]]]");
                         }),
              L"'++++' '***' {'a'='1' 'm'={'k'='v'}}");

    const BagPtr lOther = MakeBag(L"{'b'='2' 'm'={'k'='v'} 'n'={''='1'} 'o'={'k'='v'}}");
    EXPECT_EQ(LeftBehind(MakeBag(L"{'a'='1' 'n'={'k'='old'}}"), [&](auto& oBag) { oBag.AddPropertyBag(lOther.get()); }),
              L"'++++' '***' {'a'='1' 'b'='2' 'm'={'k'='v'}}");

    const BagPtr lPlain = MakeBag(L"{'b'='2' 'c***'='3' 'd'='4'}", L"(", L")");
    EXPECT_EQ(LeftBehind(MakeBag(L"{'a'='1'}"), [&](auto& oBag) { oBag.AddPropertyBag(lPlain.get()); }),
              L"'++++' '***' {'a'='1' 'b'='2'}");
    const BagPtr lNested = MakeBag(L"{'b'='2' 'n'={'k***'='v'} 'o'={'k'='v'}}", L"(", L")");
    EXPECT_EQ(LeftBehind(MakeBag(L"{'a'='1' 'n'='old'}"), [&](auto& oBag) { oBag.AddPropertyBag(lNested.get()); }),
              L"'++++' '***' {'a'='1' 'b'='2'}");
}

TEST(ErrorsDocument, FailedDeSerializeLeavesWhatWasRead)
{
    QSerialization::MemoryWriteDataStream lWritten;
    lWritten.WriteWString(L"x");
    lWritten.WriteWString(L"x");
    lWritten.WriteWString(L"b++++2***");
    const std::vector<std::byte>& lBytes = lWritten.GetBytes();
    QSerialization::MemoryReadDataStream lOneText(lBytes.data(), 10);
    EXPECT_EQ(LeftBehind(MakeBag(L"{'a'='1'}"), [&](auto& oBag) { oBag.DeSerialize(lOneText); }),
              L"'x' '***' {'a'='1'}");
    QSerialization::MemoryReadDataStream lAll(lBytes.data(), lBytes.size());
    EXPECT_EQ(LeftBehind(MakeBag(L"{'a'='1'}"), [&](auto& oBag) { oBag.DeSerialize(lAll); }), L"'x' 'x' {'a'='1'}");
}

TEST(ErrorsDocument, RefusedPropertyOfAStreamLeavesItsDelimitersAndThoseBeforeIt)
{
    const std::wstring lText = std::wstring(gHeader) + L"b++++2***c]]++++3***d++++4***";
    EXPECT_EQ(LeftBehind(MakeBag(L"{'a'='1'}"), [&](auto& oBag) { Receive(oBag, L"[[", L"]]", lText); }),
              L"'[[' ']]' {'a'='1' 'b'='2'}");
}

TEST(ErrorsDocument, CopiesOfAnIntactBagDoNotMindANestWithForbiddenDelimiters)
{
    const BagPtr lBag = MakeBag(L"{'n'={'k'='v'}}");
    Spoilt(lBag->GetPropertyBag(L"n"));
    EXPECT_EQ(Describe(BagPtr(lBag->Clone())), L"'++++' '***' {'n'='x' 'x' {'k'='v'}}");
    const std::unique_ptr<QDataType::StringCollection> lFilter(QDataType::CreateStringCollection());
    lFilter->Insert(L"n");
    EXPECT_EQ(Describe(BagPtr(lBag->FilteredClone(lFilter.get()))), L"'++++' '***' {'n'={'k'='v'}}");
}

TEST(ErrorsDocument, FailedDeSerializeOfCollectionsKeepsWhatWasRead)
{
    QSerialization::MemoryWriteDataStream lWritten;
    lWritten.WriteUInt32(2);
    lWritten.WriteWString(L"new");
    lWritten.WriteBool(false);
    const std::vector<std::byte>& lBytes = lWritten.GetBytes();
    QSerialization::MemoryReadDataStream lStream(lBytes.data(), lBytes.size());
    const QBase::SmartPtrI<QTalBase::PropertyBags> lBags(QTalBase::CreatePropertyBags());
    lBags->Add(L"old", NewBag().get());
    EXPECT_THROW(lBags->DeSerialize(lStream), QSerialization::StreamException);
    ASSERT_EQ(lBags->GetCount(), 1U);
    EXPECT_STREQ(lBags->GetName(0), L"new");

    lWritten.WriteWString(L"unreadable");
    lWritten.WriteBool(true);
    lWritten.WriteWString(L"++++");
    lWritten.WriteWString(L"***");
    lWritten.WriteWString(L"a***");
    QSerialization::MemoryReadDataStream lUnreadable(lWritten.GetBytes().data(), lWritten.GetBytes().size());
    lBags->Add(L"old", NewBag().get());
    EXPECT_THROW(lBags->DeSerialize(lUnreadable), QTalBase::PropertyBagException);
    ASSERT_EQ(lBags->GetCount(), 1U);
    EXPECT_STREQ(lBags->GetName(0), L"new");

    QSerialization::MemoryWriteDataStream lTexts;
    lTexts.WriteUInt64(2);
    lTexts.WriteWString(L"new");
    QSerialization::MemoryReadDataStream lTextStream(lTexts.GetBytes().data(), lTexts.GetBytes().size());
    const QBase::SmartPtrI<QTalBase::SerializableStringCollection> lStrings(
        QTalBase::CreateSerializableStringCollection());
    lStrings->Insert(L"old");
    EXPECT_THROW(lStrings->DeSerialize(lTextStream), QSerialization::StreamException);
    ASSERT_EQ(lStrings->GetCount(), 2U);
    EXPECT_STREQ(lStrings->GetString(1), L"new");
}

TEST(ErrorsDocument, StandardExceptionsAreThrownAsWritten)
{
    EXPECT_THROW(QTalBase::CreateBufferedWString(0, 0), std::invalid_argument);
    EXPECT_THROW(QTalBase::CreateBufferedWString(SIZE_MAX, 1), std::length_error);
    const QBase::SmartPtrI<QTalBase::BufferedWString> lBuffer(QTalBase::CreateBufferedWString(1, SIZE_MAX));
    EXPECT_THROW(*lBuffer += L"two", std::length_error);
    std::map<std::string, std::set<std::string>> lThrown = {
        {"std::invalid_argument", {"CreateBufferedWString(0, 0)"}},
        {"std::length_error", {"CreateBufferedWString", "BufferedWString::operator+="}},
        {"std::bad_alloc", {}}}; // by everything; the tests of failed allocations have it
    for (const Observation& lObservation : ProvokeLibrary())
    {
        if (lObservation.mText.empty())
        {
            lThrown[lObservation.mClass].insert(lObservation.mOperation);
            EXPECT_TRUE(lObservation.mIsUnchanged) << lObservation.mOperation;
        }
    }
    std::map<std::string, std::set<std::string>> lDocumented;
    for (const Row& lRow : RowsWithColumns(Tables(), {"class", "thrown by", "cause"}))
    {
        const std::vector<std::string> lOperations = CodeSpans(lRow.at("thrown by"));
        const std::wstring lClass = CodeCell(lRow, "class");
        lDocumented[std::string(lClass.begin(), lClass.end())].insert(lOperations.begin(), lOperations.end());
    }
    EXPECT_EQ(lDocumented, lThrown);
}
