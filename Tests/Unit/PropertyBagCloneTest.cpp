// Clones, filtered clones, and the swap that MoveProperty is.

#include "TalBase/PrivateSource/PropertyBagImpl.h"

#include "QDataType/StringCollection.h"

#include "Tests/Support/BagBuilder.h"
#include "Tests/Support/BagGenerator.h"
#include "Tests/Support/Describe.h"
#include "Tests/Support/Expect.h"
#include "Tests/Support/RepointedDefaults.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

using QTalBase::PropertyBagException;
using namespace Support;

namespace
{

std::unique_ptr<QDataType::StringCollection> Filter(std::initializer_list<const wchar_t*> iNames)
{
    std::unique_ptr<QDataType::StringCollection> lFilter(QDataType::CreateStringCollection());
    for (const wchar_t* lName : iNames)
    {
        lFilter->Insert(lName);
    }
    return lFilter;
}

std::wstring DescribeFiltered(const BagPtr& iBag, std::initializer_list<const wchar_t*> iNames)
{
    const BagPtr lClone = iBag->FilteredClone(Filter(iNames).get());
    return Describe(lClone);
}

// A bag of plain properties a, b, c ... and nested bags e1, e2, e3 ...
BagPtr Lined(unsigned int iPlain, unsigned int iNested)
{
    BagBuilder lBuilder;
    for (unsigned int lIndex = 0; lIndex < iPlain; ++lIndex)
    {
        const wchar_t lName[] = {static_cast<wchar_t>(L'a' + lIndex), 0};
        lBuilder.Set(lName, std::to_wstring(lIndex).c_str());
    }
    for (unsigned int lIndex = 1; lIndex <= iNested; ++lIndex)
    {
        lBuilder.Nest((L"e" + std::to_wstring(lIndex)).c_str(),
                      BagBuilder().Set(L"k", std::to_wstring(lIndex).c_str()));
    }
    return lBuilder;
}

// The names in order of position after a move.
std::wstring Moved(const BagPtr& iBag, const wchar_t* ipName, unsigned int iIndex)
{
    iBag->MoveProperty(ipName, iIndex);
    std::wstring lNames;
    for (unsigned int lIndex = 0; lIndex < iBag->GetCount(); ++lIndex)
    {
        lNames += (lIndex == 0 ? L"" : L" ") + Text(iBag->GetName(lIndex));
    }
    return lNames;
}

// Claims so many names, and has only those of a list.
class BoastfulFilter : public QDataType::StringCollection
{
public:
    BoastfulFilter(unsigned long iClaimed, std::vector<std::wstring> iNames)
        : mClaimed(iClaimed), mNames(std::move(iNames))
    {
    }

    void Insert(const wchar_t*) override {}

    void Insert(const QDataType::StringCollection&) override {}

    unsigned long GetCount() const override
    {
        return mClaimed;
    }

    const wchar_t* GetString(unsigned long iIndex) const override
    {
        return mNames.at(iIndex).c_str();
    }

    void Clear() override {}

private:
    unsigned long mClaimed;
    std::vector<std::wstring> mNames;
};

// Could override anything, so that it is asked for each name by calls.
class DerivedBag : public QTalBase::PropertyBagImpl
{
};

std::vector<std::wstring> NumberedNames(std::size_t iCount)
{
    std::vector<std::wstring> lNames;
    for (std::size_t lNumber = 0; lNumber < iCount; ++lNumber)
    {
        lNames.push_back(L"n" + std::to_wstring(lNumber));
    }
    return lNames;
}

} // namespace

TEST(PropertyBag, CloneHasTheSameContentAndSharesNestedBags)
{
    const BagPtr lBag =
        BagBuilder(L"[[", L"]]").Set(L"a", L"1*").Nest(L"n", BagBuilder().Set(L"k", L"v")).Nest(L"m", BagBuilder());
    const BagPtr lClone = lBag->Clone();
    EXPECT_EQ(Describe(lClone), L"'[[' ']]' {'a'='1*' 'n'={'k'='v'} 'm'={}}");
    EXPECT_NE(lClone.get(), lBag.get());
    EXPECT_EQ(lClone->GetValuePropertyBag(1).get(), lBag->GetValuePropertyBag(1).get());
    EXPECT_EQ(lClone->GetPropertyBag(L"m").get(), lBag->GetPropertyBag(L"m").get());
    lClone->GetPropertyBag(L"n")->SetProperty(L"k", L"seen by both", false);
    EXPECT_EQ(Describe(lBag), L"'[[' ']]' {'a'='1*' 'n'={'k'='seen by both'} 'm'={}}");
}

TEST(PropertyBag, CloneHasItsOwnEntries)
{
    const BagPtr lBag = BagBuilder().Set(L"a", L"1").Nest(L"n", BagBuilder().Set(L"k", L"v"));
    const BagPtr lClone = lBag->Clone();
    lClone->SetProperty(L"a", L"2", false);
    lClone->RemoveProperty(L"n");
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'a'='1' 'n'={'k'='v'}}");
    EXPECT_EQ(Describe(lClone), L"'++++' '***' {'a'='2'}");
}

TEST(PropertyBag, CloneKeepsTheSharedBagAlive)
{
    BagPtr lBag = BagBuilder().Nest(L"n", BagBuilder().Set(L"k", L"v"));
    const BagPtr lClone = lBag->Clone();
    lBag = nullptr;
    EXPECT_EQ(Describe(lClone), L"'++++' '***' {'n'={'k'='v'}}");
}

TEST(PropertyBag, ChangeDelimitersReachesTheBagsThatACloneShares)
{
    const BagPtr lBag = BagBuilder().Set(L"a", L"1").Nest(L"n", BagBuilder().Set(L"k", L"v"));
    const BagPtr lClone = lBag->Clone();
    lBag->ChangeDelimiters(L"<<", L">>");
    EXPECT_EQ(Describe(lClone), L"'++++' '***' {'a'='1' 'n'='<<' '>>' {'k'='v'}}");
}

TEST(PropertyBag, CloneOfUncheckedDelimitersThrows)
{
    const RepointedDefaults lDefaults(L"x", L"x");
    const BagPtr lBag = NewBag();
    EXPECT_MESSAGE(lBag->Clone(), PropertyBagException,
                   L"QTalBase::PropertyBagImpl::CheckValidityOfDelimiters; Begin and End may not be equal");
    EXPECT_MESSAGE(lBag->FilteredClone(Filter({}).get()), PropertyBagException,
                   L"QTalBase::PropertyBagImpl::CheckValidityOfDelimiters; Begin and End may not be equal");
    EXPECT_EQ(Describe(lBag), L"'x' 'x' {}");
}

TEST(PropertyBag, CloneOfAnyBagHasTheSameStructure)
{
    BagGenerator lGenerator(4);
    for (int lRound = 0; lRound < 100; ++lRound)
    {
        const BagPtr lBag = lGenerator.Next();
        const BagPtr lClone = lBag->Clone();
        ASSERT_EQ(Describe(lClone), Describe(lBag)) << "round " << lRound;
        ASSERT_EQ(FullText(*lClone), FullText(*lBag));
    }
}

TEST(PropertyBag, FilteredCloneTakesTheListedNamesInTheFiltersOrder)
{
    const BagPtr lBag = BagBuilder(L"[[", L"]]")
                            .Set(L"a", L"1")
                            .Set(L"b", L"2")
                            .Set(L"c", L"3*")
                            .Nest(L"m", BagBuilder().Set(L"a", L"x").Set(L"k", L"v"))
                            .Nest(L"n", BagBuilder().Set(L"k", L"w"));
    EXPECT_EQ(DescribeFiltered(lBag, {L"n", L"c", L"m", L"absent", L"A", L"a"}),
              L"'[[' ']]' {'c'='3*' 'a'='1' 'n'={'k'='w'} 'm'={'a'='x' 'k'='v'}}");
    EXPECT_EQ(DescribeFiltered(lBag, {}), L"'[[' ']]' {}");
    EXPECT_EQ(DescribeFiltered(lBag, {L"k"}), L"'[[' ']]' {}");
}

TEST(PropertyBag, FilteredCloneRepeatedNameIsAppliedTwice)
{
    const BagPtr lBag = BagBuilder()
                            .Set(L"a", L"1")
                            .Set(L"b", L"2")
                            .Nest(L"m", BagBuilder().Set(L"k", L"v"))
                            .Nest(L"n", BagBuilder().Set(L"k", L"w"));
    EXPECT_EQ(DescribeFiltered(lBag, {L"a", L"b", L"a", L"m", L"n", L"m"}),
              L"'++++' '***' {'b'='2' 'a'='1' 'n'={'k'='w'} 'm'={'k'='v'}}");
}

TEST(PropertyBag, FilteredCloneCopiesNestedBags)
{
    const BagPtr lBag = BagBuilder().Nest(L"n", BagBuilder().Set(L"k", L"v").Nest(L"o", BagBuilder().Set(L"l", L"w")));
    const BagPtr lClone = lBag->FilteredClone(Filter({L"n"}).get());
    EXPECT_NE(lClone->GetPropertyBag(L"n").get(), lBag->GetPropertyBag(L"n").get());
    lClone->GetPropertyBag(L"n")->SetProperty(L"k", L"changed", false);
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'n'={'k'='v' 'o'={'l'='w'}}}");
    EXPECT_EQ(Describe(lClone), L"'++++' '***' {'n'={'k'='changed' 'o'={'l'='w'}}}");
}

TEST(PropertyBag, FilteredCloneKeepsEscapedAndSensitiveValues)
{
    const BagPtr lBag = BagBuilder()
                            .Set(L"a", L"1*&#43;")
                            .Set(L"FTPServerPassword", L"x+")
                            .Nest(L"n", BagBuilder().Set(L"FTPServerPassword", L"y"));
    EXPECT_EQ(DescribeFiltered(lBag, {L"a", L"FTPServerPassword", L"n"}),
              L"'++++' '***' {'a'='1&#42;&#43;' 'FTPServerPassword'='x&#43;' 'n'={'FTPServerPassword'='y'}}");
}

TEST(PropertyBag, FilteredCloneTakesTheBagsDelimitersForItsNests)
{
    const BagPtr lBag = BagBuilder().Nest(L"n", BagBuilder().Set(L"k", L"v"));
    lBag->GetPropertyBag(L"n")->ChangeDelimiters(L"<<", L">>");
    EXPECT_EQ(DescribeFiltered(lBag, {L"n"}), L"'++++' '***' {'n'={'k'='v'}}");
}

TEST(PropertyBag, FilteredCloneDropsAnEmptyNest)
{
    const BagPtr lBag =
        BagBuilder().Set(L"a", L"1").Nest(L"e", BagBuilder()).Nest(L"p", BagBuilder().Nest(L"o", BagBuilder()));
    EXPECT_EQ(DescribeFiltered(lBag, {L"a", L"e", L"p"}), L"'++++' '***' {'a'='1' 'p'={}}");
}

TEST(PropertyBag, FilteredCloneRefusedValueThrowsAndChangesNothing)
{
    const BagPtr lBag = BagBuilder().Set(L"a", L"1").Set(L"b", L"x>>").Nest(L"n", BagBuilder().Set(L"k", L"v"));
    lBag->ChangeDelimiters(L"<<", L">>");
    EXPECT_MESSAGE(lBag->FilteredClone(Filter({L"n", L"a", L"b"}).get()), PropertyBagException,
                   L"QTalBase::PropertyBagImpl::SetProperty; ipValue may not contain the delimiters. ipValue: x>>, "
                   L"begin delimiter: <<, end delimiter: >>");
    EXPECT_EQ(Describe(lBag), L"'<<' '>>' {'a'='1' 'b'='x>>' 'n'={'k'='v'}}");
    EXPECT_EQ(DescribeFiltered(lBag, {L"n", L"a"}), L"'<<' '>>' {'a'='1' 'n'={'k'='v'}}");
}

TEST(PropertyBag, MovePropertySwapsPlainProperties)
{
    EXPECT_EQ(Moved(Lined(3, 0), L"a", 2), L"c b a");
    EXPECT_EQ(Moved(Lined(3, 0), L"c", 0), L"c b a");
    EXPECT_EQ(Moved(Lined(4, 1), L"b", 2), L"a c b d e1");
    const BagPtr lBag = Lined(3, 1);
    lBag->MoveProperty(L"a", 2);
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'c'='2' 'b'='1' 'a'='0' 'e1'={'k'='1'}}");
}

TEST(PropertyBag, MovePropertyRefusedPlainMovesDoNothing)
{
    EXPECT_EQ(Moved(Lined(3, 2), nullptr, 0), L"a b c e1 e2");
    EXPECT_EQ(Moved(Lined(3, 2), L"absent", 0), L"a b c e1 e2");
    EXPECT_EQ(Moved(Lined(3, 2), L"b", 1), L"a b c e1 e2");
    EXPECT_EQ(Moved(Lined(3, 2), L"b", 3), L"a b c e1 e2");
    EXPECT_EQ(Moved(Lined(3, 2), L"b", 4), L"a b c e1 e2");
    EXPECT_EQ(Moved(Lined(3, 2), L"b", 5), L"a b c e1 e2");
    EXPECT_EQ(Moved(Lined(3, 2), L"b", 0xFFFFFFFF), L"a b c e1 e2");
    EXPECT_EQ(Moved(NewBag(), L"b", 0), L"");
}

TEST(PropertyBag, MovePropertySwapsNestedBags)
{
    EXPECT_EQ(Moved(Lined(1, 2), L"e2", 1), L"a e2 e1");
    EXPECT_EQ(Moved(Lined(0, 3), L"e1", 2), L"e3 e2 e1");
    EXPECT_EQ(Moved(Lined(1, 4), L"e4", 2), L"a e1 e4 e3 e2");
    const BagPtr lBag = Lined(1, 2);
    const BagPtr lSecond = lBag->GetPropertyBag(L"e2");
    lBag->MoveProperty(L"e2", 1);
    EXPECT_EQ(lBag->GetValuePropertyBag(1).get(), lSecond.get());
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'a'='0' 'e2'={'k'='2'} 'e1'={'k'='1'}}");
}

TEST(PropertyBag, MovePropertyNestedTargetMustLieBelowTheNumberOfNests)
{
    EXPECT_EQ(Moved(Lined(1, 2), L"e1", 2), L"a e1 e2");
    EXPECT_EQ(Moved(Lined(2, 2), L"e1", 3), L"a b e1 e2");
    EXPECT_EQ(Moved(Lined(2, 2), L"e2", 2), L"a b e1 e2");
    EXPECT_EQ(Moved(Lined(1, 3), L"e1", 2), L"a e2 e1 e3");
    EXPECT_EQ(Moved(Lined(1, 3), L"e1", 3), L"a e1 e2 e3");
}

TEST(PropertyBag, MovePropertyRefusedNestedMovesDoNothing)
{
    EXPECT_EQ(Moved(Lined(1, 3), L"e2", 2), L"a e1 e2 e3");
    EXPECT_EQ(Moved(Lined(1, 3), L"e2", 0), L"a e1 e2 e3");
    EXPECT_EQ(Moved(Lined(1, 3), L"e2", 4), L"a e1 e2 e3");
    EXPECT_EQ(Moved(Lined(1, 3), L"e2", 0xFFFFFFFF), L"a e1 e2 e3");
}

// Nothing is set aside for a count that a filter only claims; what the filter throws passes through.
TEST(PropertyBag, FilteredCloneBelievesNoCount)
{
    for (const BagPtr& lBag : {BagPtr(BagBuilder().Set(L"n1", L"1")), BagPtr(new DerivedBag())})
    {
        for (const unsigned long lClaimed : {1UL << 40, 1UL << 62, ~0UL})
        {
            const BoastfulFilter lFilter(lClaimed, NumberedNames(100));
            EXPECT_THROW(BagPtr(lBag->FilteredClone(&lFilter)), std::out_of_range);
        }
    }
}

TEST(PropertyBag, FilteredCloneOfADerivedClassTakesManyNamesAndTheLastOfEach)
{
    const BagPtr lPlain = NewBag();
    const BagPtr lDerived(new DerivedBag());
    std::vector<std::wstring> lNames = NumberedNames(300);
    for (std::size_t lIndex = 0; lIndex < lNames.size(); ++lIndex)
    {
        const bool lIsNest = lIndex % 3 == 0;
        for (const BagPtr& lBag : {lPlain, lDerived})
        {
            lBag->SetProperty(lNames[lIndex].c_str(), lIsNest ? L"k++++v***" : L"v", lIsNest);
        }
    }
    for (std::size_t lIndex = 0; lIndex < 300; lIndex += 7)
    {
        lNames.push_back(lNames[lIndex]);
    }
    const BoastfulFilter lFilter(lNames.size(), lNames);
    const BagPtr lOfDerived = lDerived->FilteredClone(&lFilter);
    EXPECT_EQ(Describe(lOfDerived), Describe(BagPtr(lPlain->FilteredClone(&lFilter))));
    EXPECT_EQ(lOfDerived->GetCount(), 300U);
}
