// Runs every row of the tables in Docs/TextFormat.md, and the claims between them.

#include "TalBase/PropertyBag.h"

#include "QSerialization/MemoryDataStream.h"

#include "Tests/Contract/Documents/BagNotation.h"
#include "Tests/Contract/Documents/Document.h"
#include "Tests/Support/BagBuilder.h"
#include "Tests/Support/Describe.h"
#include "Tests/Support/Expect.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

using namespace Documents;
using namespace Support;

namespace
{

using Columns = std::vector<std::string>;

const Columns gPieces = {"piece", "meaning"};
const Columns gReading = {"text", "reads as"};
const Columns gHeaders = {"text with header", "begin", "end", "reads as"};
const Columns gDelimiters = {"begin", "end", "the bag", "as text", "read back"};
const Columns gEscapes = {"value set", "stored", "`GetProperty`"};
const Columns gSurvival = {"in the bag", "as text", "read back"};
const Columns gEmptyNests = {"in the bag", "as text", "read back", "and once more"};
const Columns gEmptyOperations = {"operation on an empty bag", "gives"};
const Columns gSensitive = {"in the bag", "without sensitive information"};

const std::vector<Table>& Tables()
{
    static const std::vector<Table> lTables = ReadTables(ReadProjectFile("Docs/TextFormat.md"));
    return lTables;
}

std::vector<Row> Rows(const Columns& iColumns)
{
    return RowsWithColumns(Tables(), iColumns);
}

// Returns the bag in the document's notation, or what is thrown in its place as the document shows it.
std::wstring Outcome(const std::function<BagPtr()>& iAction)
{
    try
    {
        return DescribeContent(*iAction());
    }
    catch (const QBase::Message& lMessage)
    {
        return lMessage.GetMessage();
    }
    catch (const std::out_of_range&)
    {
        return L"std::out_of_range";
    }
}

BagPtr AddTo(const BagPtr& iBag, const std::wstring& iText)
{
    iBag->AddString(iText.c_str());
    return iBag;
}

std::wstring ReadBack(const BagPtr& iBag)
{
    return Outcome([&] { return ReadBag(FullText(*iBag)); });
}

std::wstring ReadBackTwice(const BagPtr& iBag)
{
    return Outcome([&] { return ReadBag(FullText(*ReadBag(FullText(*iBag)))); });
}

} // namespace

TEST(TextFormatDocument, EveryTableIsOneThatATestRuns)
{
    const std::set<Columns> lKnown = {gPieces,   gReading,    gHeaders,         gDelimiters, gEscapes,
                                      gSurvival, gEmptyNests, gEmptyOperations, gSensitive};
    std::set<Columns> lFound;
    for (const Table& lTable : Tables())
    {
        EXPECT_TRUE(lKnown.count(lTable.mColumns) == 1) << "under '" << lTable.mSection << "'";
        lFound.insert(lTable.mColumns);
    }
    EXPECT_EQ(lFound, lKnown);
}

TEST(TextFormatDocument, WorkedExampleIsWhatTheBagWrites)
{
    const BagPtr lSub = NewBag();
    lSub->SetProperty(L"Key", L"v", false);
    const BagPtr lBag = NewBag();
    lBag->SetProperty(L"Name", L"A+B", false);
    lBag->SetProperty(L"Count", L"2", false);
    lBag->EmbedProperty(L"Sub", lSub.get());
    const std::wstring lText = FullText(*lBag);
    EXPECT_EQ(lText, L"EndDelimiter***BeginDelimiter++++***Name++++A&#43;B***Count++++2***Sub++++Key++++v******");

    std::wstring lPieces;
    for (const Row& lRow : Rows(gPieces))
    {
        lPieces += CodeCell(lRow, "piece");
    }
    EXPECT_EQ(lPieces, lText);
    const std::string lShown = "\n```text\n" + std::string(lText.begin(), lText.end()) + "\n```\n";
    for (const char* lDocument : {"README.md", "Docs/TextFormat.md"})
    {
        EXPECT_NE(ReadProjectFile(lDocument).find(lShown), std::string::npos) << lDocument;
    }
}

TEST(TextFormatDocument, TextsReadAsShown)
{
    for (const Row& lRow : Rows(gReading))
    {
        const std::wstring lText = CodeCell(lRow, "text");
        const std::wstring lExpected = CodeCell(lRow, "reads as");
        EXPECT_EQ(Outcome([&] { return AddTo(NewBag(), lText); }), lExpected) << Readable(lText);
        EXPECT_EQ(Outcome([&] { return ReadBag(gHeader + lText); }), lExpected) << Readable(lText);
    }
}

// For the factory such a text has no header; for AddString it has one, whose delimiters it is read with from its start.
TEST(TextFormatDocument, HeaderWithoutItsEndIsReadFromTheStartByAddStringOnly)
{
    const std::wstring lText = L"EndDelimiter;BeginDelimiter=";
    EXPECT_EQ(Outcome([&] { return ReadBag(lText); }),
              L"QTalBase::CreatePropertyBag; String must be malformed - lPropertyString: " + lText);
    EXPECT_EQ(Outcome([&] { return AddTo(NewBag(), lText); }),
              L"QTalBase::PropertyBagImpl::ExtractData; A Begin token was expected");
}

TEST(TextFormatDocument, HeadersReadAsShown)
{
    for (const Row& lRow : Rows(gHeaders))
    {
        const std::wstring lText = CodeCell(lRow, "text with header");
        const std::wstring lExpected = CodeCell(lRow, "reads as");
        EXPECT_EQ(Outcome([&] { return ReadBag(lText); }), lExpected) << Readable(lText);
        const bool lIsRead = lExpected.front() == L'{';
        ASSERT_EQ(CodeCell(lRow, "begin").empty(), !lIsRead) << Readable(lText);
        if (lIsRead)
        {
            const BagPtr lBag = ReadBag(lText);
            EXPECT_EQ(lBag->GetBeginDelimiter(), CodeCell(lRow, "begin")) << Readable(lText);
            EXPECT_EQ(lBag->GetEndDelimiter(), CodeCell(lRow, "end")) << Readable(lText);
        }
    }
}

TEST(TextFormatDocument, BagsWithOtherDelimitersReadBackAsShown)
{
    for (const Row& lRow : Rows(gDelimiters))
    {
        const BagPtr lBag =
            MakeBag(CodeCell(lRow, "the bag"), CodeCell(lRow, "begin").c_str(), CodeCell(lRow, "end").c_str());
        const std::wstring lShown = CodeCell(lRow, "as text");
        const bool lHasHeader = lShown.rfind(L"EndDelimiter", 0) == 0;
        EXPECT_EQ(lHasHeader ? FullText(*lBag) : ContentText(*lBag), lShown);
        EXPECT_EQ(ReadBack(lBag), CodeCell(lRow, "read back")) << Readable(lShown);
    }
}

TEST(TextFormatDocument, ValuesAreEscapedAsShown)
{
    for (const Row& lRow : Rows(gEscapes))
    {
        const BagPtr lBag = NewBag();
        lBag->SetProperty(L"a", CodeCell(lRow, "value set").c_str(), false);
        EXPECT_EQ(Text(lBag->GetValue(0)), CodeCell(lRow, "stored"));
        EXPECT_EQ(Text(lBag->GetProperty(L"a")), CodeCell(lRow, "`GetProperty`"));
        EXPECT_EQ(ContentText(*lBag), L"a++++" + CodeCell(lRow, "stored") + L"***");
    }
}

TEST(TextFormatDocument, BagsReadBackAsShown)
{
    for (const Row& lRow : Rows(gSurvival))
    {
        const BagPtr lBag = MakeBag(CodeCell(lRow, "in the bag"));
        EXPECT_EQ(DescribeContent(*lBag), CodeCell(lRow, "in the bag"));
        EXPECT_EQ(ContentText(*lBag), CodeCell(lRow, "as text"));
        EXPECT_EQ(ReadBack(lBag), CodeCell(lRow, "read back")) << Readable(ContentText(*lBag));
    }
}

TEST(TextFormatDocument, EmptyNestedBagsReadBackAsShown)
{
    for (const Row& lRow : Rows(gEmptyNests))
    {
        const BagPtr lBag = MakeBag(CodeCell(lRow, "in the bag"));
        EXPECT_EQ(DescribeContent(*lBag), CodeCell(lRow, "in the bag"));
        EXPECT_EQ(ContentText(*lBag), CodeCell(lRow, "as text"));
        EXPECT_EQ(ReadBack(lBag), CodeCell(lRow, "read back")) << Readable(ContentText(*lBag));
        EXPECT_EQ(ReadBackTwice(lBag), CodeCell(lRow, "and once more")) << Readable(ContentText(*lBag));
    }
}

TEST(TextFormatDocument, OperationsOnEmptyBagsGiveWhatIsShown)
{
    const BagPtr lHolder = MakeBag(L"{'e'={}}");
    using Action = std::function<void(QTalBase::PropertyBag&)>;
    const std::map<std::string, Action> lActions = {
        {"`EmbedProperty(L\"e\", empty)`", [](auto& oBag) { oBag.EmbedProperty(L"e", NewBag().get()); }},
        {"`EmbedProperty(L\"n\", a bag that holds only the empty bag 'e')`",
         [&](auto& oBag) { oBag.EmbedProperty(L"n", lHolder.get()); }},
        {"`SetProperty(L\"e\", text of the empty bag with header, true)`",
         [](auto& oBag) { oBag.SetProperty(L"e", FullText(*NewBag()).c_str(), true); }},
        {"`AddPropertyBag(a bag that holds only the empty bag 'e')`",
         [&](auto& oBag) { oBag.AddPropertyBag(lHolder.get()); }}};
    const std::vector<Row> lRows = Rows(gEmptyOperations);
    EXPECT_EQ(lRows.size(), lActions.size());
    for (const Row& lRow : lRows)
    {
        const BagPtr lBag = NewBag();
        lActions.at(lRow.at("operation on an empty bag"))(*lBag);
        EXPECT_EQ(DescribeContent(*lBag), CodeCell(lRow, "gives")) << lRow.at("operation on an empty bag");
    }
}

TEST(TextFormatDocument, SensitivePropertiesAreLeftOutAsShown)
{
    for (const Row& lRow : Rows(gSensitive))
    {
        const BagPtr lBag = MakeBag(CodeCell(lRow, "in the bag"));
        const std::wstring lExpected = CodeCell(lRow, "without sensitive information");
        EXPECT_EQ(Text(lBag->GetStringWithoutSensitiveInfo(false, nullptr, nullptr)), lExpected);
        EXPECT_EQ(Text(lBag->GetString(false, nullptr, nullptr, false)), lExpected);
    }
}

TEST(TextFormatDocument, UnreadableTextLeavesTheBagAndRefusedPropertyStopsTheMerge)
{
    const BagPtr lBag = MakeBag(L"{'a'='1'}");
    EXPECT_THROW(lBag->AddString(L"b++++2***c***"), QTalBase::PropertyBagException);
    EXPECT_EQ(DescribeContent(*lBag), L"{'a'='1'}");
    EXPECT_MESSAGE(lBag->AddString(L"EndDelimiter]]BeginDelimiter[[]]b[[2]]c++++[[3]]d[[4]]"),
                   QTalBase::PropertyBagException,
                   L"QTalBase::PropertyBagImpl::SetProperty; ipName may not contain the delimiters");
    EXPECT_EQ(DescribeContent(*lBag), L"{'a'='1' 'b'='2'}");
}

TEST(TextFormatDocument, UncarriableDelimitersReadUnnestedTextsAndEmbed)
{
    EXPECT_EQ(Outcome([] { return AddTo(NewBag(L"[", L"end"), L"a[1end"); }), L"{'a'='1'}");
    EXPECT_EQ(Outcome([] { return AddTo(NewBag(L"[", L"end"), L"n[a[1endend"); }),
              L"QTalBase::PropertyBagImpl::ExtractDelimiters; the string has a malformed metadata. "
              L"EndDelimiter cannot be empty");
    const BagPtr lBag = NewBag(L"[", L"end");
    lBag->EmbedProperty(L"n", MakeBag(L"{'a'='1'}").get());
    EXPECT_EQ(DescribeContent(*lBag), L"{'n'={'a'='1'}}");
}

TEST(TextFormatDocument, EscapesStayWhenDelimitersChangeOrDiffer)
{
    const BagPtr lBag = NewBag();
    lBag->SetProperty(L"a", L"1*2", false);
    lBag->ChangeDelimiters(L"<<", L">>");
    EXPECT_EQ(Text(lBag->GetProperty(L"a")), L"1&#42;2");
    lBag->ChangeDelimiters(L"++++", L"***");
    EXPECT_EQ(Text(lBag->GetProperty(L"a")), L"1*2");

    const BagPtr lOther = AddTo(NewBag(L"[[", L"]]"), FullText(*lBag));
    EXPECT_EQ(Text(lOther->GetProperty(L"a")), L"1&#42;2");
}

TEST(TextFormatDocument, FirstNameLikeTheHeaderIsTakenForOneWithoutMetadata)
{
    const BagPtr lBag = MakeBag(L"{'EndDelimiterOfLine'='1'}");
    EXPECT_EQ(ReadBack(lBag), L"{'EndDelimiterOfLine'='1'}");
    EXPECT_EQ(Outcome([&] { return AddTo(NewBag(), ContentText(*lBag)); }), L"std::out_of_range");
    EXPECT_THROW(NewBag()->EmbedProperty(L"n", lBag.get()), std::out_of_range);
}

TEST(TextFormatDocument, ForeignDelimitersInTheDataMakeTheTextUnreadable)
{
    const BagPtr lBag = MakeBag(L"{'a'='x;y'}");
    const std::wstring lText = Text(lBag->GetString(true, L"=", L";", true));
    EXPECT_EQ(lText, L"EndDelimiter;BeginDelimiter=;a=x;y;");
    EXPECT_EQ(Outcome([&] { return ReadBag(lText); }),
              L"QTalBase::PropertyBagImpl::ExtractData; A Begin token was expected");
}

TEST(TextFormatDocument, NestWithDelimitersOfItsOwnComesBackAsAValueUnlessOnePairIsGiven)
{
    const BagPtr lBag = MakeBag(L"{'n'={'k'='v'}}");
    lBag->GetPropertyBag(L"n")->ChangeDelimiters(L"<<", L">>");
    EXPECT_EQ(ReadBack(lBag), L"{'n'='k<<v>>'}");
    const QBase::ReturnWString lText = lBag->GetString(true, lBag->GetBeginDelimiter(), lBag->GetEndDelimiter(), true);
    EXPECT_EQ(Outcome([&] { return ReadBag(lText.c_str()); }), L"{'n'={'k'='v'}}");
}

TEST(TextFormatDocument, TheStreamCarriesTheTextAndCloneDoesNotGoThroughIt)
{
    const BagPtr lBag = MakeBag(L"{'a'={'b'={}}}");
    QSerialization::MemoryWriteDataStream lWritten;
    lBag->Serialize(lWritten);
    QSerialization::MemoryReadDataStream lStream(lWritten.GetBytes().data(), lWritten.GetBytes().size());
    const BagPtr lRead = NewBag();
    lRead->DeSerialize(lStream);
    EXPECT_EQ(DescribeContent(*lRead), L"{'a'={}}");
    EXPECT_EQ(DescribeContent(*BagPtr(lBag->Clone())), L"{'a'={'b'={}}}");
}
