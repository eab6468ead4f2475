// What the operations that change a bag leave behind when memory runs out, written out by hand. Failures/ has every
// operation and every situation.

#include "TalBase/PropertyBag.h"

#include "Tests/Support/BagBuilder.h"
#include "Tests/Support/Describe.h"
#include "Tests/Support/FailingNew.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

using namespace Support;

namespace
{

// Longer than what a string object holds in itself, so that every copy allocates.
#define LONG_A L"the first name, longer than a string object"
#define LONG_B L"the second name, longer than a string object"
#define LONG_V L"a value*that is longer than a string object"
#define STORED_V L"a value&#42;that is longer than a string object"

const wchar_t* const gFilled = L"'++++' '***' {'" LONG_A L"'='" STORED_V L"' 'n'={'" LONG_B L"'='" STORED_V L"'}}";

BagPtr Filled()
{
    return BagBuilder().Set(LONG_A, LONG_V).Nest(L"n", BagBuilder().Set(LONG_B, LONG_V));
}

// Lets every allocation of an operation on a filled bag fail in turn. After each failure the bag has to look like one
// of the descriptions. Returns what the bag looks like when the operation has succeeded.
template <class Operation>
std::wstring FailOn(const Operation& iOperation, const std::set<std::wstring>& iAllowed)
{
    BagPtr lBag = Filled();
    const auto lRenew = [&] {
        lBag = nullptr;
        lBag = Filled();
    };
    FailEachAllocation([&] { iOperation(*lBag); },
                       [&] {
                           const std::wstring lAfter = Describe(lBag);
                           EXPECT_TRUE(iAllowed.count(lAfter) == 1) << Readable(lAfter);
                           lRenew();
                       },
                       lRenew);
    return Describe(lBag);
}

// The same for an operation that promises to leave the bag as it was.
template <class Operation>
std::wstring FailUnchanged(const Operation& iOperation)
{
    return FailOn(iOperation, {gFilled});
}

} // namespace

TEST(BagAllocation, SetPropertyPlainLeavesTheBag)
{
    EXPECT_EQ(FailUnchanged([](auto& oBag) { oBag.SetProperty(LONG_B, LONG_V, false); }),
              L"'++++' '***' "
              L"{'" LONG_A L"'='" STORED_V L"' '" LONG_B L"'='" STORED_V L"' 'n'={'" LONG_B L"'='" STORED_V L"'}}");
    EXPECT_EQ(FailUnchanged([](auto& oBag) { oBag.SetProperty(LONG_A, LONG_B, false); }),
              L"'++++' '***' {'" LONG_A L"'='" LONG_B L"' 'n'={'" LONG_B L"'='" STORED_V L"'}}");
}

TEST(BagAllocation, SetPropertyNestedMayHaveRemovedTheName)
{
    const std::wstring lRemoved = L"'++++' '***' {'" LONG_A L"'='" STORED_V L"'}";
    EXPECT_EQ(
        FailOn([](auto& oBag) { oBag.SetProperty(L"n", LONG_A L"++++" LONG_B L"***", true); }, {gFilled, lRemoved}),
        L"'++++' '***' {'" LONG_A L"'='" STORED_V L"' 'n'={'" LONG_A L"'='" LONG_B L"'}}");
    const BagPtr lOther = Filled();
    EXPECT_EQ(
        FailOn([&](auto& oBag) { oBag.EmbedProperty(L"n", lOther.get()); }, {gFilled, lRemoved}),
        L"'++++' '***' "
        L"{'" LONG_A L"'='" STORED_V L"' 'n'={'" LONG_A L"'='" STORED_V L"' 'n'={'" LONG_B L"'='" STORED_V L"'}}}");
}

TEST(BagAllocation, AddStringMergesFromTheFrontOrNotAtAll)
{
    const std::wstring lFirstOnly =
        L"'++++' '***' {'" LONG_A L"'='" STORED_V L"' '" LONG_B L"'='" LONG_A L"' 'n'={'" LONG_B L"'='" STORED_V L"'}}";
    const std::wstring lNestGone = L"'++++' '***' {'" LONG_A L"'='" STORED_V L"' '" LONG_B L"'='" LONG_A L"'}";
    const std::wstring lAll =
        L"'++++' '***' {'" LONG_A L"'='" STORED_V L"' '" LONG_B L"'='" LONG_A L"' 'n'={'" LONG_A L"'='" LONG_B L"'}}";
    const wchar_t* const lText = LONG_B L"++++" LONG_A L"***n++++" LONG_A L"++++" LONG_B L"******";
    const auto lAdd = [&](auto& oBag) { oBag.AddString(lText); };
    EXPECT_EQ(FailOn(lAdd, {gFilled, lFirstOnly, lNestGone}), lAll);
    const BagPtr lOther = NewBag();
    lOther->AddString(lText);
    const auto lMerge = [&](auto& oBag) { oBag.AddPropertyBag(lOther.get()); };
    EXPECT_EQ(FailOn(lMerge, {gFilled, lFirstOnly, lNestGone}), lAll);
}

// A plain property that a merge replaces is there until its successor is.
TEST(BagAllocation, MergeNeverLosesAPlainProperty)
{
    const std::wstring lReplaced =
        L"'++++' '***' {'" LONG_A L"'='" LONG_B LONG_B LONG_B L"' 'n'={'" LONG_B L"'='" STORED_V L"'}}";
    const BagPtr lOther = NewBag();
    lOther->SetProperty(LONG_A, LONG_B LONG_B LONG_B, false);
    EXPECT_EQ(FailUnchanged([&](auto& oBag) { oBag.AddPropertyBag(lOther.get()); }), lReplaced);
    EXPECT_EQ(FailUnchanged([&](auto& oBag) { oBag.AddString(LONG_A L"++++" LONG_B LONG_B LONG_B L"***"); }),
              lReplaced);
}

// Among many properties the replaced one keeps its place while they are merged, so there has to be room for another
// place even where there is room for the text: here after long values and then as many short ones.
TEST(BagAllocation, MergeIntoManyNeverLosesAPlainProperty)
{
    std::wstring lLong;
    for (int lIndex = 0; lIndex < 40; ++lIndex)
    {
        lLong += L"p" + std::to_wstring(lIndex) + L"++++" + std::wstring(100, L'v') + L"***";
    }
    BagPtr lBag;
    std::wstring lBefore;
    const auto lRenew = [&] {
        lBag = ReadBag(std::wstring(gHeader) + lLong);
        for (int lIndex = 0; lIndex < 40; ++lIndex)
        {
            lBag->SetProperty((L"s" + std::to_wstring(lIndex)).c_str(), L"1", false);
        }
        lBefore = Describe(lBag);
    };
    lRenew();
    const BagPtr lOther = BagBuilder().Set(L"p0", L"new");
    FailEachAllocation([&] { lBag->AddPropertyBag(lOther.get()); }, [&] { EXPECT_EQ(Describe(lBag), lBefore); },
                       lRenew);
    EXPECT_EQ(Text(lBag->GetProperty(L"p0")), L"new");
}

// The same where so many are merged that a table finds them.
TEST(BagAllocation, MergeOfManyIntoManyNeverLosesAPlainProperty)
{
    const auto lText = [](std::size_t iLength) {
        std::wstring lProperties = gHeader;
        for (int lIndex = 0; lIndex < 40; ++lIndex)
        {
            lProperties += L"p" + std::to_wstring(lIndex) + L"++++" + std::wstring(iLength, L'v') + L"***";
        }
        return lProperties;
    };
    BagPtr lBag;
    const auto lRenew = [&] { lBag = ReadBag(lText(100)); };
    lRenew();
    const BagPtr lOther = ReadBag(lText(1));
    FailEachAllocation([&] { lBag->AddPropertyBag(lOther.get()); },
                       [&] {
                           EXPECT_EQ(lBag->GetCount(), 40U);
                           for (unsigned int lIndex = 0; lIndex < 40; ++lIndex)
                           {
                               EXPECT_NE(lBag->GetProperty(lOther->GetName(lIndex).c_str()).GetLength(), 0U);
                           }
                           lRenew();
                       },
                       lRenew);
    EXPECT_TRUE(*lBag == *lOther);
}

TEST(BagAllocation, MergeOfItselfNeverLosesAPlainProperty)
{
    const std::wstring lNestGone = L"'++++' '***' {'" LONG_A L"'='" STORED_V L"'}";
    EXPECT_EQ(FailOn([&](auto& oBag) { oBag.AddPropertyBag(&oBag); }, {gFilled, lNestGone}), gFilled);
}
