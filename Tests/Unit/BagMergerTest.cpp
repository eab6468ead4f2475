// Names that go and come again while many properties are set at once: what a table still holds of them counts for
// nothing.

#include "TalBase/PrivateSource/BagMerger.h"

#include "TalBase/PrivateSource/PropertyBagImpl.h"
#include "Tests/Support/Describe.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

using QTalBase::BagMerger;
using QTalBase::PropertyBagImpl;

namespace
{

const std::size_t gScanned = 1;   // names that are looked up one by one
const std::size_t gInTable = 100; // and in a table

} // namespace

class BagMerging : public testing::TestWithParam<std::size_t>
{
};

TEST_P(BagMerging, ARemovedNameComesAgain)
{
    const QBase::SmartPtrI<PropertyBagImpl> lBag(new PropertyBagImpl());
    {
        BagMerger lMerger(lBag->GetState(), GetParam());
        lMerger.SetPlain(L"plain", L"1");
        lMerger.SetText(L"nest", L"k++++1***");
        lMerger.SetPlain(L"stays", L"2");
        lMerger.SetText(L"plain", {});
        lMerger.SetText(L"nest", {});
        lMerger.SetPlain(L"plain", L"3");
        lMerger.SetText(L"nest", L"k++++4***");
    }
    EXPECT_EQ(Support::DescribeContent(*lBag), L"{'stays'='2' 'plain'='3' 'nest'={'k'='4'}}");
}

TEST_P(BagMerging, ANameChangesSides)
{
    const QBase::SmartPtrI<PropertyBagImpl> lBag(new PropertyBagImpl());
    {
        BagMerger lMerger(lBag->GetState(), GetParam());
        lMerger.SetPlain(L"a", L"1");
        lMerger.SetText(L"b", L"k++++1***");
        lMerger.SetText(L"a", L"k++++2***");
        lMerger.SetPlain(L"b", L"2");
        lMerger.SetPlain(L"a", L"3");
    }
    EXPECT_EQ(Support::DescribeContent(*lBag), L"{'b'='2' 'a'='3'}");
}

INSTANTIATE_TEST_SUITE_P(Names, BagMerging, testing::Values(gScanned, gInTable));
