// How much memory operations take beside what they are given: the multiples that Docs/Limits.md states for hostile
// texts, and that what a stream only claims costs nothing.

#include "TalBase/PropertyBags.h"

#include "QSerialization/MemoryDataStream.h"
#include "TalBase/SerializableStringCollection.h"
#include "TalBase/SerializationTemplates.h"

#include "Benchmarks/MemoryCases.h"
#include "Tests/Contract/Documents/Document.h"
#include "Tests/Support/BagBuilder.h"
#include "Tests/Support/FailingNew.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace
{

using namespace Documents;
using QBase::SmartPtrI;
using QSerialization::MemoryReadDataStream;
using QSerialization::MemoryWriteDataStream;

// Tables double, so the worst of a whole doubling counts.
constexpr std::size_t gCharacters[] = {40'000, 46'000, 53'000, 61'000, 70'000};

double Multiple(const Bench::MemoryCase& iCase, std::size_t iCharacters)
{
    const Bench::MeteredCase lCase = iCase.mPrepare(iCharacters);
    const std::size_t lBefore = Support::BytesHeld();
    Support::RestartPeak();
    lCase.mCase.mRun();
    const std::size_t lTaken = Support::PeakBytesHeld() - lBefore;
    lCase.mCase.mCheck();
    return static_cast<double>(lTaken) / static_cast<double>(lCase.mInputBytes);
}

double WorstMultiple(const Bench::MemoryCase& iCase)
{
    double lWorst = 0;
    for (const std::size_t lCharacters : gCharacters)
    {
        lWorst = std::max(lWorst, Multiple(iCase, lCharacters));
    }
    return lWorst;
}

// The cell of a case; empty where the document has none.
std::string Stated(const std::vector<Table>& iTables, const Bench::MemoryCase& iCase)
{
    for (const Table& lTable : iTables)
    {
        for (const Row& lRow : lTable.mRows)
        {
            const auto lText = lRow.find("text");
            const auto lCell = lRow.find(iCase.mOperation);
            if (lText != lRow.end() && lText->second == iCase.mText && lCell != lRow.end())
            {
                return lCell->second;
            }
        }
    }
    return "";
}

} // namespace

// A nest in a text of 500 characters, beside others that are longer.
TEST(Memory, ANestThatIsKeptKeepsOneAllocationOfItsOwnAndNothingElse)
{
    const std::wstring lHeader = L"EndDelimiter***BeginDelimiter++++***";
    const std::wstring lInner = L"In++++Deep++++" + std::wstring(400, L'd') + L"******";
    const std::wstring lKept = L"Kept++++Key++++" + std::wstring(400, L'k') + L"***" + lInner + L"***";
    const std::wstring lText = lHeader + L"Long++++" + std::wstring(100000, L'l') + L"***" + lKept;
    const std::size_t lLive = Support::AllocationsLive();
    const std::size_t lHeld = Support::BytesHeld();
    SmartPtrI<QTalBase::PropertyBag> lBag(QTalBase::CreatePropertyBag(lText.c_str()));
    SmartPtrI<QTalBase::PropertyBag> lNest = lBag->GetPropertyBag(L"Kept");
    lBag = nullptr;
    EXPECT_EQ(Support::AllocationsLive() - lLive, 2U) << "one for the nest and one for the nest in it";
    EXPECT_LT(Support::BytesHeld() - lHeld, (lKept.size() + 250) * sizeof(wchar_t));
    SmartPtrI<QTalBase::PropertyBag> lDeep = lNest->GetPropertyBag(L"In");
    lNest = nullptr;
    EXPECT_EQ(Support::AllocationsLive() - lLive, 1U);
    EXPECT_EQ(std::wstring(lDeep->GetProperty(L"Deep").c_str()), std::wstring(400, L'd'));
    lDeep = nullptr;
    EXPECT_EQ(Support::BytesHeld(), lHeld);
}

// What a bag was made with may lie with it until it goes, but not much of it.
TEST(Memory, AValueThatIsGoneGivesItsMemoryBackInANestToo)
{
    const std::wstring lLong(100000, L'l');
    const std::wstring lText = L"EndDelimiter***BeginDelimiter++++***n++++a++++" + lLong + L"******";
    const SmartPtrI<QTalBase::PropertyBag> lBag(QTalBase::CreatePropertyBag(lText.c_str()));
    const std::size_t lHeld = Support::BytesHeld();
    lBag->GetPropertyBag(L"n")->SetProperty(L"a", L"short", false);
    lBag->GetPropertyBag(L"n")->SetProperty(L"a", L"other", false);
    EXPECT_LT(Support::BytesHeld() + (lLong.size() - 1000) * sizeof(wchar_t), lHeld);
}

// A stated multiple is the measured one rounded up, so it may be neither exceeded nor far too large.
TEST(Memory, PeaksStayWithinTheStatedMultiplesOfTheInput)
{
    const std::vector<Table> lTables = ReadTables(ReadProjectFile("Docs/Limits.md"));
    std::size_t lCompared = 0;
    for (const Bench::MemoryCase& lCase : Bench::MakeMemoryCases())
    {
        SCOPED_TRACE(lCase.mText + ": " + lCase.mOperation);
        const std::string lStated = Stated(lTables, lCase);
        const double lMeasured = WorstMultiple(lCase);
        ASSERT_FALSE(lStated.empty()) << "not in Docs/Limits.md; measured: " << lMeasured;
        EXPECT_LE(lMeasured, std::stod(lStated));
        EXPECT_GE(2 * lMeasured + 1.5, std::stod(lStated)) << "promises less than is kept";
        ++lCompared;
    }
    EXPECT_EQ(lCompared, 11U * 15U + 4U * 2U + 3U);
}

// What receives a merge is input as well, of AddString and AddPropertyBag: its memory may be laid out anew, and its
// names are looked up in a table.
TEST(Memory, MergesStayWithinTheStatedMultiplesOfBothInputs)
{
    const std::vector<Table> lTables = ReadTables(ReadProjectFile("Docs/Limits.md"));
    for (const std::size_t lCharacters : gCharacters)
    {
        std::wstring lText = L"EndDelimiter)BeginDelimiter()";
        std::wstring lNames;
        for (std::size_t lNumber = 0; lText.size() < lCharacters; ++lNumber)
        {
            lText += std::to_wstring(lNumber) + L"(1)";
            lNames += lNumber < 100 ? L"n" + std::to_wstring(lNumber) + L"(1)" : L"";
        }
        for (const char* lOperation : {"AddString", "AddPropertyBag"})
        {
            const Support::BagPtr lBag = Support::ReadBag(lText);
            const Support::BagPtr lOther = Support::ReadBag(L"EndDelimiter)BeginDelimiter()" + lNames);
            const std::size_t lBefore = Support::BytesHeld();
            Support::RestartPeak();
            if (std::string(lOperation) == "AddString")
            {
                lBag->AddString(lNames.c_str());
            }
            else
            {
                lBag->AddPropertyBag(lOther.get());
            }
            const double lTaken = static_cast<double>(Support::PeakBytesHeld() - lBefore);
            const double lMultiple = std::stod(Stated(lTables, {"tiny properties", lOperation, nullptr}));
            EXPECT_LE(lTaken, lMultiple * static_cast<double>((lText.size() + lNames.size()) * sizeof(wchar_t)));
            EXPECT_GT(lTaken, lMultiple * static_cast<double>(lNames.size() * sizeof(wchar_t))) << "of the text alone";
        }
    }
}

namespace
{

// The most that an operation takes beside a bag of many names.
template <class Operation>
std::size_t PeakOnALargeBag(const Operation& iOperation)
{
    std::wstring lText = Support::gHeader;
    for (int lNumber = 0; lNumber < 50000; ++lNumber)
    {
        lText += L"name" + std::to_wstring(lNumber) + L"++++v***";
    }
    const Support::BagPtr lBag = Support::ReadBag(lText);
    lBag->SetProperty(L"first", L"makes room for more", false);
    const std::size_t lBefore = Support::BytesHeld();
    Support::RestartPeak();
    iOperation(*lBag);
    return Support::PeakBytesHeld() - lBefore;
}

} // namespace

// Nothing is set aside for the names that the bag has already.
TEST(Memory, SmallTextIntoALargeBagTakesLittleMoreThanItsSettings)
{
    const std::size_t lText =
        PeakOnALargeBag([](QTalBase::PropertyBag& oBag) { oBag.AddString(L"new++++1***name7++++2***"); });
    const std::size_t lSettings = PeakOnALargeBag([](QTalBase::PropertyBag& oBag) {
        oBag.SetProperty(L"new", L"1", false);
        oBag.SetProperty(L"name7", L"2", false);
    });
    EXPECT_LT(lText, lSettings + 2000);
}

namespace
{

// Keeps where the counts and lengths stand in what is written.
class MarkingStream : public QSerialization::WriteDataStream
{
public:
    void WriteWString(const wchar_t* ipText) override
    {
        mMarks.push_back({mBytes.GetBytes().size(), 4});
        mBytes.WriteWString(ipText);
    }

    void WriteBool(bool iFlag) override
    {
        mBytes.WriteBool(iFlag);
    }

    void WriteUInt32(unsigned int iNumber) override
    {
        mMarks.push_back({mBytes.GetBytes().size(), 4});
        mBytes.WriteUInt32(iNumber);
    }

    void WriteUInt64(unsigned long iNumber) override
    {
        mMarks.push_back({mBytes.GetBytes().size(), 8});
        mBytes.WriteUInt64(iNumber);
    }

    struct Mark
    {
        std::size_t mPosition;
        std::size_t mSize;
    };

    MemoryWriteDataStream mBytes;
    std::vector<Mark> mMarks;
};

// What the message of the exception takes, and objects that are made before there is anything to read into them.
constexpr std::size_t gOverhead = 2000;

// Lets each count and length claim the most it can, with few bytes behind it and with many: the read throws, and asks
// for no more memory at once than there are bytes.
void ClaimTooMuch(const std::function<void(QSerialization::WriteDataStream&)>& iWrite,
                  const std::function<void(QSerialization::ReadDataStream&)>& iRead, std::size_t iMarks)
{
    MarkingStream lWritten;
    iWrite(lWritten);
    ASSERT_EQ(lWritten.mMarks.size(), iMarks);
    for (const MarkingStream::Mark& lMark : lWritten.mMarks)
    {
        for (const std::size_t lBehind : {std::size_t{0}, std::size_t{3}, std::size_t{4}, std::size_t{64}})
        {
            for (const std::size_t lZeroes : {std::size_t{0}, std::size_t{1}}) // the last bytes of the claim that are 0
            {
                SCOPED_TRACE("at byte " + std::to_string(lMark.mPosition) + ", " + std::to_string(lBehind) + " behind");
                std::vector<std::byte> lBytes = lWritten.mBytes.GetBytes();
                lBytes.resize(lMark.mPosition);
                lBytes.insert(lBytes.end(), lMark.mSize - lZeroes, std::byte{0xFF});
                lBytes.insert(lBytes.end(), lZeroes, std::byte{0});
                lBytes.insert(lBytes.end(), lBehind, std::byte{1}); // neither a length that fits nor a text
                MemoryReadDataStream lStream(lBytes.data(), lBytes.size());
                Support::ForgetLargest();
                EXPECT_THROW(iRead(lStream), QSerialization::StreamException);
                EXPECT_LE(Support::LargestAllocation(), lBytes.size() + gOverhead);
            }
        }
    }
}

Support::BagPtr Written()
{
    return Support::BagBuilder().Set(L"a", L"1").Nest(L"n", Support::BagBuilder().Set(L"k", L"v"));
}

} // namespace

TEST(Memory, ClaimedLengthsInABag)
{
    const Support::BagPtr lBag = Written();
    ClaimTooMuch([&](auto& oStream) { lBag->Serialize(oStream); },
                 [](auto& oStream) { Support::NewBag()->DeSerialize(oStream); }, 3);
}

TEST(Memory, ClaimedCountAndLengthsInACollectionOfBags)
{
    const SmartPtrI<QTalBase::PropertyBags> lBags(QTalBase::CreatePropertyBags());
    lBags->Add(L"first", Written().get());
    lBags->Add(L"second", Written().get());
    ClaimTooMuch([&](auto& oStream) { lBags->Serialize(oStream); },
                 [](auto& oStream) {
                     const SmartPtrI<QTalBase::PropertyBags> lRead(QTalBase::CreatePropertyBags());
                     lRead->DeSerialize(oStream);
                 },
                 9);
}

TEST(Memory, ClaimedCountAndLengthsInACollectionOfStrings)
{
    const SmartPtrI<QTalBase::SerializableStringCollection> lStrings(QTalBase::CreateSerializableStringCollection());
    lStrings->Insert(L"first");
    lStrings->Insert(L"second");
    ClaimTooMuch([&](auto& oStream) { lStrings->Serialize(oStream); },
                 [](auto& oStream) {
                     const SmartPtrI<QTalBase::SerializableStringCollection> lRead(
                         QTalBase::CreateSerializableStringCollection());
                     lRead->DeSerialize(oStream);
                 },
                 3);
}

TEST(Memory, ClaimedCountAndLengthsOfTheTemplates)
{
    std::vector<QTalBase::NamedPropertyBag> lEntries;
    lEntries.emplace_back(L"first", Written());
    lEntries.emplace_back(L"second", nullptr);
    ClaimTooMuch([&](auto& oStream) { oStream << lEntries; },
                 [](auto& oStream) {
                     std::vector<QTalBase::NamedPropertyBag> lRead;
                     oStream >> lRead;
                 },
                 6);
}
