// What is shared without a caller seeing it, and so must be counted or built atomically: the nested bags of clones, the
// delimiters of bags that were copied from each other, the texts of copied messages, the secret of the name tables. And
// all const operations of one object at the same time. Made to be run under a thread sanitizer; what is lost or freed
// twice shows without one too.

#include "TalBase/PropertyBag.h"

#include "QBase/Message.h"
#include "QDataType/StringCollection.h"
#include "QSerialization/MemoryDataStream.h"
#include "TalBase/DeliveryWindow.h"
#include "TalBase/PrivateSource/BufferedWStringImpl.h"
#include "TalBase/PrivateSource/DeliveryWindowImpl.h"
#include "TalBase/PrivateSource/PropertyBagImpl.h"
#include "TalBase/PrivateSource/PropertyBagsImpl.h"
#include "TalBase/PrivateSource/SerializableStringCollectionImpl.h"

#include "Tests/Support/BagBuilder.h"
#include "Tests/Support/Describe.h"
#include "Tests/Support/FailingNew.h"
#include "Tests/Support/Together.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <string>
#include <vector>

using namespace Support;
using QBase::SmartPtrI;

namespace
{

const int gRounds = 300;

// Counts how many objects have died.
template <class Implementation>
class Mortal : public Implementation
{
public:
    template <class... Arguments>
    explicit Mortal(std::atomic<int>& oDeaths, Arguments... iArguments)
        : Implementation(iArguments...), mDeaths(oDeaths)
    {
    }

    ~Mortal() override
    {
        ++mDeaths;
    }

private:
    std::atomic<int>& mDeaths;
};

// References come and go on all threads; the object lives as long as one is held, and dies once.
template <class Implementation, class... Arguments>
void ShareReferences(Arguments... iArguments)
{
    std::atomic<int> lDeaths{0};
    {
        SmartPtrI<Implementation> lFirst(new Mortal<Implementation>(lDeaths, iArguments...));
        std::vector<SmartPtrI<Implementation>> lGiven(gThreads, lFirst);
        lFirst = nullptr; // from here on only the threads hold it
        Together([&](int iThread) {
            const SmartPtrI<Implementation> lMine = std::move(lGiven[static_cast<std::size_t>(iThread)]);
            for (int lRound = 0; lRound < 10 * gRounds; ++lRound)
            {
                const SmartPtrI<const QBase::ReferenceCounted> lCopy = lMine;
                ASSERT_EQ(lDeaths, 0);
            }
        });
    }
    EXPECT_EQ(lDeaths, 1);
}

// With delimiters of its own, which bags count, and so many names that they are found with tables.
BagPtr RichBag()
{
    BagBuilder lBuilder(L"[[[[", L"]]]]");
    for (int lNumber = 0; lNumber < 80; ++lNumber)
    {
        lBuilder.Set((L"name " + std::to_wstring(lNumber)).c_str(), L"a value that is not short");
    }
    for (int lNumber = 0; lNumber < 30; ++lNumber)
    {
        lBuilder.Nest((L"nest " + std::to_wstring(lNumber)).c_str(), BagBuilder().Set(L"k", L"v"));
    }
    return lBuilder;
}

std::unique_ptr<QDataType::StringCollection> AllNames(const BagPtr& iBag)
{
    std::unique_ptr<QDataType::StringCollection> lNames(QDataType::CreateStringCollection());
    for (unsigned int lIndex = 0; lIndex < iBag->GetCount(); ++lIndex)
    {
        lNames->Insert(iBag->GetName(lIndex).c_str());
    }
    return lNames;
}

std::vector<std::byte> BytesOf(const QSerialization::SerializableObject& iObject)
{
    QSerialization::MemoryWriteDataStream lStream;
    iObject.Serialize(lStream);
    return lStream.GetBytes();
}

// Reads one entry in every way there is; returns whether the answers fit each other.
bool ReadEntry(const QTalBase::PropertyBag& iBag, unsigned int iIndex)
{
    const QBase::ReturnWString lName = iBag.GetName(iIndex);
    const bool lIsNest = iBag.IsEmbedded(iIndex);
    if (iBag.IsPropertyEmbedded(lName.c_str()) != lIsNest ||
        Text(iBag.GetValue(iIndex)) != Text(iBag.GetProperty(lName.c_str())))
    {
        return false;
    }
    return !lIsNest || iBag.GetPropertyBag(lName.c_str()) == iBag.GetValuePropertyBag(iIndex);
}

} // namespace

// The first look at each table of names on all threads at once: nothing before this has made the tables' secret.
TEST(SharingThreads, FirstTableOfNames)
{
    const BagPtr lBag = RichBag();
    const BagPtr lTurned = NewBag(L"[[[[", L"]]]]");
    for (unsigned int lIndex = lBag->GetCount(); lIndex > 0; --lIndex)
    {
        lTurned->SetProperty(lBag->GetName(lIndex - 1).c_str(), lBag->GetValue(lIndex - 1).c_str(),
                             lBag->IsEmbedded(lIndex - 1));
    }
    std::atomic<int> lRight{0};
    Together([&](int) { lRight += *lBag == *lTurned && lTurned->IsSubset(lBag.get()) ? 1 : 0; });
    EXPECT_EQ(lRight, gThreads);
}

TEST(SharingThreads, ReferencesOnEveryClass)
{
    ShareReferences<QTalBase::PropertyBagImpl>();
    ShareReferences<QTalBase::PropertyBagsImpl>();
    ShareReferences<QTalBase::DeliveryWindowImpl>();
    ShareReferences<QTalBase::SerializableStringCollectionImpl>();
    ShareReferences<QTalBase::BufferedWStringImpl>(std::size_t{4}, std::size_t{4});
}

// Each thread has a clone of its own, so each may do with it what it likes; the nested bags below are the same.
TEST(SharingThreads, NestedBagsOfClones)
{
    const std::size_t lLive = AllocationsLive();
    {
        BagPtr lBag = RichBag();
        std::vector<BagPtr> lClones;
        for (int lThread = 0; lThread < gThreads; ++lThread)
        {
            lClones.emplace_back(lBag->Clone());
        }
        lBag = nullptr;
        Together([&](int iThread) {
            BagPtr& lMine = lClones[static_cast<std::size_t>(iThread)];
            for (int lRound = 0; lRound < gRounds / 10; ++lRound)
            {
                const BagPtr lNest = lMine->GetPropertyBag(L"nest 7");
                const BagPtr lSecond = lMine->Clone();
                lSecond->RemoveProperty(L"nest 7");
                const BagPtr lCopy = NewBag();
                lCopy->EmbedProperty(L"copy", lNest.get());
                ASSERT_EQ(lNest->GetCount(), 1U);
            }
            lMine = nullptr; // the last of these destroys the nested bags
        });
    }
    EXPECT_EQ(AllocationsLive(), lLive);
}

// Bags that share something, so many that the threads meet while they let go of them: each thread drops its own of each
// row, in the same order.
class Rows
{
public:
    template <class MakeRow>
    explicit Rows(const MakeRow& iMakeRow)
    {
        for (int lRow = 0; lRow < 10 * gRounds; ++lRow)
        {
            mRows.push_back(iMakeRow());
        }
    }

    void DropTogether()
    {
        Together([&](int iThread) {
            for (std::vector<BagPtr>& lRow : mRows)
            {
                lRow[static_cast<std::size_t>(iThread)] = nullptr;
            }
        });
    }

private:
    std::vector<std::vector<BagPtr>> mRows;
};

TEST(SharingThreads, ClonesThatDieTogether)
{
    const std::size_t lLive = AllocationsLive();
    {
        Rows lRows([] {
            const BagPtr lBag = BagBuilder().Nest(L"n", BagBuilder().Set(L"k", L"v"));
            std::vector<BagPtr> lClones;
            for (int lThread = 0; lThread < gThreads; ++lThread)
            {
                lClones.emplace_back(lBag->Clone());
            }
            return lClones;
        });
        lRows.DropTogether();
    }
    EXPECT_EQ(AllocationsLive(), lLive);
}

// Copies share the texts of their delimiters, but nobody needs to know.
TEST(SharingThreads, CopiesWithTheSameDelimitersThatDieTogether)
{
    const std::size_t lLive = AllocationsLive();
    {
        const std::unique_ptr<QDataType::StringCollection> lNone(QDataType::CreateStringCollection());
        Rows lRows([&] {
            std::vector<BagPtr> lCopies(1, NewBag(L"[[[[", L"]]]]"));
            while (lCopies.size() < static_cast<std::size_t>(gThreads))
            {
                lCopies.emplace_back(lCopies.back()->FilteredClone(lNone.get()));
            }
            return lCopies;
        });
        lRows.DropTogether();
    }
    EXPECT_EQ(AllocationsLive(), lLive);
}

// Longer than a time slice, so that threads meet on a busy machine too; and several bags, since a count that is lost on
// both sides may come out right.
TEST(SharingThreads, CopiesOfDelimitersOnAllThreads)
{
    const std::size_t lLive = AllocationsLive();
    for (int lObject = 0; lObject < 8; ++lObject)
    {
        const BagPtr lBag = NewBag(L"[[[[", L"]]]]");
        Together([&](int) {
            for (int lRound = 0; lRound < 60 * gRounds; ++lRound)
            {
                const BagPtr lCopy = lBag->Clone();
                ASSERT_EQ(lCopy->GetBeginDelimiter()[3], L'[');
                ASSERT_EQ(lCopy->GetEndDelimiter()[3], L']');
            }
        });
        EXPECT_EQ(Describe(lBag), L"'[[[[' ']]]]' {}");
    }
    EXPECT_EQ(AllocationsLive(), lLive);
}

TEST(SharingThreads, ConstOperationsOfOneBag)
{
    const BagPtr lBag = RichBag();
    const BagPtr lEqual = RichBag();
    const auto lNames = AllNames(lBag);
    const std::wstring lText = FullText(*lBag);
    const std::vector<std::byte> lBytes = BytesOf(*lBag);
    std::atomic<int> lWrong{0};
    Together([&](int iThread) {
        for (int lRound = 0; lRound < gRounds / 30; ++lRound)
        {
            const BagPtr lClone = lBag->Clone();
            const BagPtr lFiltered = lBag->FilteredClone(lNames.get());
            const BagPtr lMerged = NewBag();
            lMerged->AddPropertyBag(lBag.get());
            const BagPtr lAround = NewBag();
            lAround->EmbedProperty(L"n", lBag.get());
            const auto lEntry = static_cast<unsigned int>(iThread * 10 + lRound);
            const bool lIsRight = *lBag == *lEqual && *lEqual == *lBag && lBag->IsSubset(lFiltered.get()) &&
                                  lMerged->IsSubset(lBag.get()) && FullText(*lClone) == lText &&
                                  FullText(*lBag) == lText && BytesOf(*lBag) == lBytes &&
                                  lAround->GetPropertyBag(L"n")->GetCount() == 110 && ReadEntry(*lBag, lEntry);
            lWrong += lIsRight ? 0 : 1;
        }
    });
    EXPECT_EQ(lWrong, 0);
}

// A stream brings delimiters that nobody has checked yet; that a reader checks them must not show.
TEST(SharingThreads, ConstOperationsOfAStreamedBag)
{
    const std::vector<std::byte> lBytes = BytesOf(*RichBag());
    QSerialization::MemoryReadDataStream lStream(lBytes.data(), lBytes.size());
    const BagPtr lBag = NewBag();
    lBag->SetProperty(L"held", L"1", false);
    lBag->DeSerialize(lStream);
    const auto lNames = AllNames(lBag);
    Together([&](int) {
        const BagPtr lClone = lBag->Clone();
        const BagPtr lFiltered = lBag->FilteredClone(lNames.get());
        EXPECT_EQ(FullText(*lClone), FullText(*lBag));
        EXPECT_TRUE(lFiltered->IsSubset(lBag.get()));
    });
}

TEST(SharingThreads, ConstOperationsOfCollectionsAndWindows)
{
    const SmartPtrI<QTalBase::PropertyBags> lBags(QTalBase::CreatePropertyBags());
    lBags->Add(L"first", RichBag().get());
    lBags->Add(L"second", RichBag().get());
    const SmartPtrI<QTalBase::SerializableStringCollection> lStrings(QTalBase::CreateSerializableStringCollection());
    lStrings->Insert(L"a string that is not short");
    const SmartPtrI<QTalBase::DeliveryWindow> lWindow(QTalBase::CreateDeliveryWindow());
    lWindow->DisableTimeBlock(22, 2);
    const std::vector<std::byte> lBytes[] = {BytesOf(*lBags), BytesOf(*lStrings), BytesOf(*lWindow)};
    std::atomic<int> lWrong{0};
    Together([&](int) {
        for (int lRound = 0; lRound < gRounds / 30; ++lRound)
        {
            const SmartPtrI<QTalBase::PropertyBags> lClone(lBags->Clone());
            const std::unique_ptr<QDataType::StringCollection> lCopy(lStrings->GetStringCollection());
            const SmartPtrI<QTalBase::DeliveryWindow> lSecond(lWindow->Clone());
            const BagPtr lBag(lWindow->SerializeToPropertyBag(L"", L"[", L"]"));
            const bool lIsRight = BytesOf(*lClone) == lBytes[0] && BytesOf(*lStrings) == lBytes[1] &&
                                  BytesOf(*lWindow) == lBytes[2] && BytesOf(*lSecond) == lBytes[2] &&
                                  *lBags->GetPropertyBagByName(L"second") == *lBags->GetPropertyBag(0) &&
                                  std::wstring(lCopy->GetString(0)) == lStrings->GetString(0) &&
                                  Text(lBag->GetValue(0)) == L" 0, 1, 2,22,23,";
            lWrong += lIsRight ? 0 : 1;
        }
    });
    EXPECT_EQ(lWrong, 0);
}

// Copies of a message share its text, also the copies that throwing makes.
TEST(SharingThreads, TextsOfCopiedMessages)
{
    const std::size_t lLive = AllocationsLive();
    {
        QBase::Message lMessage;
        lMessage.SetMessage(L"a text that is longer than a string object");
        std::vector<QBase::Message> lCopies(gThreads, lMessage);
        lMessage.SetMessage(L"another text that is longer than a string object");
        Together([&](int iThread) {
            QBase::Message& lMine = lCopies[static_cast<std::size_t>(iThread)];
            for (int lRound = 0; lRound < gRounds; ++lRound)
            {
                try
                {
                    throw QBase::ExceptionImpl<QBase::Message>(lMine);
                }
                catch (const QBase::Message& lCaught)
                {
                    ASSERT_STREQ(lCaught.GetMessage(), L"a text that is longer than a string object");
                }
            }
            lMine = QBase::Message();
        });
    }
    EXPECT_EQ(AllocationsLive(), lLive);
}
