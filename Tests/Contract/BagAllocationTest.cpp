// What each operation of a bag and of a text buffer leaves behind when memory runs out at any of its allocations.

#include "TalBase/PropertyBag.h"

#include "QDataType/StringCollection.h"
#include "TalBase/BufferedWString.h"
#include "TalBase/Initializer.h"

#include "Tests/Support/BagBuilder.h"
#include "Tests/Support/Describe.h"
#include "Tests/Support/FailingNew.h"
#include "Tests/Support/ModuleHolder.h"
#include "Tests/Support/RecordingStreams.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <set>
#include <string>

using QTalBase::PropertyBagException;
using namespace Support;

namespace
{

// Longer than what a string object holds in itself, so that every copy allocates.
#define LONG_A L"the first name, longer than a string object"
#define LONG_B L"the second name, longer than a string object"
#define LONG_V L"a value*that is longer than a string object"
#define STORED_V L"a value&#42;that is longer than a string object"
#define LONG_BEGIN L"<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<"
#define LONG_END L">>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>"

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
    FailEachAllocation([&] { iOperation(*lBag); },
                       [&] {
                           const std::wstring lAfter = Describe(lBag);
                           EXPECT_TRUE(iAllowed.count(lAfter) == 1) << Readable(lAfter);
                           lBag = nullptr;
                           lBag = Filled();
                       });
    return Describe(lBag);
}

// The same for an operation that promises to leave the bag as it was.
template <class Operation>
std::wstring FailUnchanged(const Operation& iOperation)
{
    return FailOn(iOperation, {gFilled});
}

} // namespace

TEST(BagAllocation, FactoriesLeaveNothing)
{
    BagPtr lBag;
    const auto lLetGo = [&] { lBag = nullptr; };
    FailEachAllocation([&] { lBag = NewBag(); }, lLetGo);
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {}");
    lBag = nullptr;
    FailEachAllocation([&] { lBag = NewBag(LONG_BEGIN, LONG_END); }, lLetGo);
    EXPECT_STREQ(lBag->GetBeginDelimiter(), LONG_BEGIN);
    lBag = nullptr;
    FailEachAllocation([&] { lBag = QTalBase::CreatePropertyBag(L""); }, lLetGo);
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {}");
    lBag = nullptr;
    const std::wstring lText = FullText(*Filled());
    FailEachAllocation([&] { lBag = QTalBase::CreatePropertyBag(lText.c_str()); }, lLetGo);
    EXPECT_EQ(Describe(lBag), gFilled);
}

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

TEST(BagAllocation, RefusedTextLeavesTheBagWhateverIsThrown)
{
    bool lRefused = false;
    const auto lAdd = [&](auto& oBag) {
        try
        {
            oBag.AddString(LONG_A L"++++" LONG_B L"***" LONG_B L"***");
        }
        catch (const PropertyBagException&)
        {
            lRefused = true;
        }
    };
    EXPECT_EQ(FailUnchanged(lAdd), gFilled);
    EXPECT_TRUE(lRefused);
}

TEST(BagAllocation, ReadingOperationsLeaveTheBag)
{
    EXPECT_EQ(FailUnchanged([](auto& oBag) { static_cast<void>(oBag.GetProperty(LONG_A)); }), gFilled);
    EXPECT_EQ(FailUnchanged([](auto& oBag) { static_cast<void>(oBag.GetProperty(L"n")); }), gFilled);
    EXPECT_EQ(FailUnchanged([](auto& oBag) { static_cast<void>(oBag.GetName(0)); }), gFilled);
    EXPECT_EQ(FailUnchanged([](auto& oBag) { static_cast<void>(oBag.GetValue(1)); }), gFilled);
    EXPECT_EQ(FailUnchanged([](auto& oBag) { static_cast<void>(oBag.GetString(true, nullptr, nullptr, true)); }),
              gFilled);
    EXPECT_EQ(FailUnchanged([](auto& oBag) { static_cast<void>(oBag.operator==(oBag)); }), gFilled);
    EXPECT_EQ(FailUnchanged([](auto& oBag) { static_cast<void>(oBag.IsSubset(&oBag)); }), gFilled);
}

TEST(BagAllocation, ClonesLeaveNothing)
{
    EXPECT_EQ(FailUnchanged([](auto& oBag) { static_cast<void>(BagPtr(oBag.Clone())); }), gFilled);
    const std::unique_ptr<QDataType::StringCollection> lFilter(QDataType::CreateStringCollection());
    lFilter->Insert(L"n");
    lFilter->Insert(LONG_A);
    EXPECT_EQ(FailUnchanged([&](auto& oBag) { static_cast<void>(BagPtr(oBag.FilteredClone(lFilter.get()))); }),
              gFilled);
}

TEST(BagAllocation, ChangeDelimitersNeverLeavesHalfAPair)
{
    BagPtr lBag = BagBuilder().Set(LONG_A, L"1");
    FailEachAllocation([&] { lBag->ChangeDelimiters(LONG_BEGIN, LONG_END); },
                       [&] { EXPECT_EQ(Describe(lBag), L"'++++' '***' {'" LONG_A L"'='1'}"); });
    EXPECT_EQ(Describe(lBag), L"'" LONG_BEGIN L"' '" LONG_END L"' {'" LONG_A L"'='1'}");
}

TEST(BagAllocation, DeSerializeKeepsTheProperties)
{
    const std::wstring lText = L"EndDelimiter" LONG_END L"BeginDelimiter" LONG_BEGIN LONG_END;
    BagPtr lBag = Filled();
    FailEachAllocation(
        [&] {
            ScriptedReadStream lStream({LONG_BEGIN, LONG_END, lText});
            lBag->DeSerialize(lStream);
        },
        [&] {
            EXPECT_EQ(lBag->GetCount(), 2U);
            EXPECT_EQ(Text(lBag->GetValue(0)), STORED_V);
            lBag = nullptr;
            lBag = Filled();
        });
    EXPECT_STREQ(lBag->GetBeginDelimiter(), LONG_BEGIN);
}

TEST(BagAllocation, BufferKeepsTextSizeAndCapacity)
{
    using BufferPtr = QBase::SmartPtrI<QTalBase::BufferedWString>;
    BufferPtr lBuffer;
    FailEachAllocation([&] { lBuffer = QTalBase::CreateBufferedWString(4, 3); }, [] {});
    *lBuffer += L"abc";
    FailEachAllocation([&] { *lBuffer += L"defgh"; },
                       [&] {
                           EXPECT_STREQ(lBuffer->c_str(), L"abc");
                           EXPECT_EQ(lBuffer->size(), 3U);
                           EXPECT_EQ(lBuffer->capacity(), 4U);
                       });
    EXPECT_STREQ(lBuffer->c_str(), L"abcdefgh");
    EXPECT_EQ(lBuffer->capacity(), 10U);
}

TEST(BagAllocation, InitializerThatFailsCountsNothing)
{
    std::optional<QTalBase::Initializer> lInitializer;
    FailEachAllocation([&] { lInitializer.emplace(); }, [] { EXPECT_EQ(ReadHolder(), (HolderFields{0, 0, nullptr})); });
    EXPECT_EQ(ReadHolder().mCount, 1);
}
