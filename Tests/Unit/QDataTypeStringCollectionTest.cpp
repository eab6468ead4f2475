#include "QDataType/StringCollection.h"

#include "Tests/Support/Expect.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

namespace
{

using QDataType::StringCollection;
using Strings = std::vector<std::wstring>;

std::unique_ptr<StringCollection> Create(const Strings& iStrings)
{
    std::unique_ptr<StringCollection> lCollection(QDataType::CreateStringCollection());
    for (const std::wstring& lString : iStrings)
    {
        lCollection->Insert(lString.c_str());
    }
    return lCollection;
}

Strings Content(const StringCollection& iCollection)
{
    Strings lStrings;
    for (unsigned long lIndex = 0; lIndex < iCollection.GetCount(); ++lIndex)
    {
        lStrings.emplace_back(iCollection.GetString(lIndex));
    }
    return lStrings;
}

// A collection of another maker: it says what it is told to say.
class ForeignCollection : public StringCollection
{
public:
    explicit ForeignCollection(unsigned long iCount, unsigned long iGood) : mCount(iCount), mGood(iGood) {}

    void Insert(const wchar_t*) override {}
    void Insert(const StringCollection&) override {}
    void Clear() override {}

    unsigned long GetCount() const override
    {
        return mCount;
    }

    const wchar_t* GetString(unsigned long iIndex) const override
    {
        if (iIndex >= mGood)
        {
            throw std::out_of_range("foreign");
        }
        return L"foreign";
    }

private:
    unsigned long mCount;
    unsigned long mGood;
};

TEST(StringCollection, NewOneIsEmpty)
{
    const std::unique_ptr<StringCollection> lCollection(QDataType::CreateStringCollection());
    EXPECT_EQ(0U, lCollection->GetCount());
    static_assert(std::has_virtual_destructor_v<StringCollection>);
    static_assert(std::is_abstract_v<StringCollection>);
}

TEST(StringCollection, InsertKeepsOrderAndDuplicates)
{
    const auto lCollection = Create({L"b", L"a", L"b", L"", L"B", L"b"});
    EXPECT_EQ(6U, lCollection->GetCount());
    EXPECT_STREQ(L"b", lCollection->GetString(0));
    EXPECT_STREQ(L"a", lCollection->GetString(1));
    EXPECT_STREQ(L"b", lCollection->GetString(2));
    EXPECT_STREQ(L"", lCollection->GetString(3));
    EXPECT_STREQ(L"B", lCollection->GetString(4));
    EXPECT_STREQ(L"b", lCollection->GetString(5));
}

TEST(StringCollection, InsertCopiesTheText)
{
    std::wstring lText = L"before";
    const auto lCollection = Create({});
    lCollection->Insert(lText.c_str());
    lText = L"after!";
    EXPECT_STREQ(L"before", lCollection->GetString(0));
}

TEST(StringCollection, InsertItsOwnTextWorksAsIfCopiedFirst)
{
    const std::wstring lLong(100, L'y');
    const auto lCollection = Create({L"x", lLong});
    for (int lRound = 0; lRound < 20; ++lRound) // across every growth of the list
    {
        lCollection->Insert(lCollection->GetString(0));
        lCollection->Insert(lCollection->GetString(1));
    }
    ASSERT_EQ(42U, lCollection->GetCount());
    EXPECT_STREQ(L"x", lCollection->GetString(40));
    EXPECT_EQ(lLong, lCollection->GetString(41));
}

TEST(StringCollection, InsertCollectionAppendsItsTextsInOrder)
{
    const auto lCollection = Create({L"1", L"2"});
    const auto lOther = Create({L"2", L"3"});
    lCollection->Insert(*lOther);
    EXPECT_EQ(Strings({L"1", L"2", L"2", L"3"}), Content(*lCollection));
    EXPECT_EQ(Strings({L"2", L"3"}), Content(*lOther));
    lCollection->Insert(*Create({}));
    EXPECT_EQ(4U, lCollection->GetCount());
}

TEST(StringCollection, InsertIntoItselfAppendsItsTextsOnce)
{
    const auto lCollection = Create({L"1", L"2", L"3"});
    lCollection->Insert(*lCollection);
    EXPECT_EQ(Strings({L"1", L"2", L"3", L"1", L"2", L"3"}), Content(*lCollection));
    const auto lEmpty = Create({});
    lEmpty->Insert(*lEmpty);
    EXPECT_EQ(0U, lEmpty->GetCount());
}

TEST(StringCollection, InsertForeignCollectionReadsItThroughItsOperations)
{
    const auto lCollection = Create({L"1"});
    lCollection->Insert(ForeignCollection(2, 2));
    EXPECT_EQ(Strings({L"1", L"foreign", L"foreign"}), Content(*lCollection));
}

TEST(StringCollection, InsertForeignCollectionThrowsHalfWayChangesNothing)
{
    const auto lCollection = Create({L"1"});
    EXPECT_THROW(lCollection->Insert(ForeignCollection(3, 2)), std::out_of_range);
    EXPECT_EQ(Strings({L"1"}), Content(*lCollection));
}

// A collection that grows whenever it is read.
class GrowingCollection : public ForeignCollection
{
public:
    GrowingCollection() : ForeignCollection(2, 100) {}

    unsigned long GetCount() const override
    {
        return ForeignCollection::GetCount() + mRead;
    }

    const wchar_t* GetString(unsigned long iIndex) const override
    {
        ++mRead;
        return ForeignCollection::GetString(iIndex);
    }

private:
    mutable unsigned long mRead = 0;
};

TEST(StringCollection, InsertForeignCollectionTakesTheCountOnce)
{
    const auto lCollection = Create({});
    lCollection->Insert(GrowingCollection());
    EXPECT_EQ(Strings({L"foreign", L"foreign"}), Content(*lCollection));
}

TEST(StringCollection, GetStringOutOfRangeThrows)
{
    const auto lCollection = Create({L"1", L"2"});
    const wchar_t lText[] = L"QDataType::StringCollection::GetString; iIndex is out of range";
    EXPECT_MESSAGE(lCollection->GetString(2), QBase::Message, lText);
    EXPECT_MESSAGE(lCollection->GetString(0x100000000UL), QBase::Message, lText); // not cut to 32 bits
    EXPECT_MESSAGE(lCollection->GetString(std::numeric_limits<unsigned long>::max()), QBase::Message, lText);
    EXPECT_MESSAGE(Create({})->GetString(0), QBase::Message, lText);
    EXPECT_EQ(2U, lCollection->GetCount());
}

TEST(StringCollection, ClearRemovesAllAndLeavesItUsable)
{
    const auto lCollection = Create({L"1", L"2"});
    lCollection->Clear();
    EXPECT_EQ(0U, lCollection->GetCount());
    lCollection->Clear();
    lCollection->Insert(L"3");
    EXPECT_EQ(Strings({L"3"}), Content(*lCollection));
}

} // namespace
