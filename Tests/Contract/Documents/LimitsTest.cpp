// What Docs/Limits.md claims of the library's behaviour. Its claims on sensitive information and on the text form are
// those of the other documents, and tested with them.

#include "QSerialization/MemoryDataStream.h"
#include "TalBase/DeliveryWindow.h"
#include "TalBase/PropertyBag.h"
#include "TalBase/PropertyBagHelpers.h"

#include "Tests/Contract/Documents/BagNotation.h"
#include "Tests/Support/BagBuilder.h"
#include "Tests/Support/Describe.h"
#include "Tests/Support/Expect.h"

#include <gtest/gtest.h>

#include <string>

using namespace Documents;
using namespace Support;

TEST(LimitsDocument, NestedPasswordIsWrittenByEverythingThatShowsANest)
{
    const BagPtr lBag = MakeBag(L"{'n'={'FTPServerPassword'='secret'}}");
    const std::wstring lNest = std::wstring(gHeader) + L"FTPServerPassword++++secret***";
    EXPECT_EQ(Text(lBag->GetStringWithoutSensitiveInfo(false, nullptr, nullptr)),
              L"n++++FTPServerPassword++++secret******");
    EXPECT_EQ(Text(lBag->GetProperty(L"n")), lNest);
    EXPECT_EQ(Text(lBag->GetValue(0)), lNest);
    const BagPtr lOuter = NewBag();
    lOuter->EmbedProperty(L"o", MakeBag(L"{'FTPServerPassword'='secret'}").get());
    EXPECT_EQ(DescribeContent(*lOuter), L"{'o'={'FTPServerPassword'='secret'}}");
}

TEST(LimitsDocument, NamesAndValuesEndAtTheirFirstZeroCharacter)
{
    const BagPtr lBag = NewBag();
    lBag->SetProperty(L"a\0b", L"1\0 2", false);
    EXPECT_EQ(DescribeContent(*lBag), L"{'a'='1'}");
}

TEST(LimitsDocument, EmptyValueRemovesAndMissingNameReadsAsTheEmptyText)
{
    const BagPtr lBag = MakeBag(L"{'a'='1'}");
    lBag->SetProperty(L"a", L"", false);
    EXPECT_EQ(lBag->GetCount(), 0U);
    EXPECT_EQ(Text(lBag->GetProperty(L"a")), L"");
}

TEST(LimitsDocument, CloneSharesNestedBagsAndACopyThroughTextDoesNot)
{
    const BagPtr lBag = MakeBag(L"{'n'={'k'='v'}}");
    const BagPtr lClone = lBag->Clone();
    const BagPtr lCopy = ReadBag(FullText(*lBag));
    lBag->GetPropertyBag(L"n")->SetProperty(L"k", L"new", false);
    EXPECT_EQ(DescribeContent(*lClone), L"{'n'={'k'='new'}}");
    EXPECT_EQ(DescribeContent(*lCopy), L"{'n'={'k'='v'}}");
}

TEST(LimitsDocument, NestedBagsMoveOnlyBelowTheirNumber)
{
    const BagPtr lBag = MakeBag(L"{'p'='1' 'd'={'k'='1'} 'e'={'k'='2'}}");
    lBag->MoveProperty(L"d", 2);
    EXPECT_EQ(DescribeContent(*lBag), L"{'p'='1' 'd'={'k'='1'} 'e'={'k'='2'}}") << "2 is the number of nested bags";
    lBag->MoveProperty(L"e", 1);
    EXPECT_EQ(DescribeContent(*lBag), L"{'p'='1' 'e'={'k'='2'} 'd'={'k'='1'}}");
    lBag->SetProperty(L"q", L"1", false);
    lBag->MoveProperty(L"e", 3);
    lBag->MoveProperty(L"d", 2);
    EXPECT_EQ(DescribeContent(*lBag), L"{'p'='1' 'q'='1' 'e'={'k'='2'} 'd'={'k'='1'}}");
}

TEST(LimitsDocument, EscapedValueMakesABagUnequalToItselfButNotToItsSubset)
{
    const BagPtr lBag = NewBag();
    lBag->SetProperty(L"a", L"1+1", false);
    const BagPtr lClone = lBag->Clone();
    EXPECT_FALSE(*lBag == *lBag);
    EXPECT_FALSE(*lBag == *lClone);
    EXPECT_TRUE(lBag->IsSubset(lClone.get()) && lClone->IsSubset(lBag.get()));
}

TEST(LimitsDocument, OrderAndDelimitersDoNotCountInAComparison)
{
    EXPECT_TRUE(*MakeBag(L"{'a'='1' 'b'='2'}") == *MakeBag(L"{'b'='2' 'a'='1'}", L"[[", L"]]"));
}

TEST(LimitsDocument, FloatingPointNumbersKeepSixDigitsAndBadTextsAreNotReported)
{
    EXPECT_EQ(Text(QTalBase::Stringize(0.1234567)), L"0.123457");
    int lNumber = 5;
    QTalBase::UnStringize(L"none", lNumber);
    EXPECT_EQ(lNumber, 0);
    bool lFlag = true;
    QTalBase::UnStringize(L"True", lFlag);
    EXPECT_FALSE(lFlag);
    QDataType::DateTime lDate;
    QTalBase::UnStringize(L"yesterday", lDate);
    EXPECT_TRUE(lDate == QDataType::DateTime());
}

TEST(LimitsDocument, HoursOfAWindowAreNotChecked)
{
    const QBase::SmartPtrI<QTalBase::DeliveryWindow> lWindow(QTalBase::CreateDeliveryWindow());
    lWindow->DisableTimeBlock(0, 23);
    EXPECT_TRUE(lWindow->IsEnabled(24));
    EXPECT_TRUE(lWindow->IsEnabled(31));
    EXPECT_FALSE(lWindow->IsEnabled(32));
}

TEST(LimitsDocument, DeSerializeTakesDelimitersUnchecked)
{
    QSerialization::MemoryWriteDataStream lWritten;
    lWritten.WriteWString(L"same");
    lWritten.WriteWString(L"same");
    lWritten.WriteWString((std::wstring(gHeader) + L"b++++2***").c_str());
    QSerialization::MemoryReadDataStream lStream(lWritten.GetBytes().data(), lWritten.GetBytes().size());
    const BagPtr lBag = MakeBag(L"{'a'='1'}");
    lBag->DeSerialize(lStream);
    EXPECT_EQ(Describe(*lBag), L"'same' 'same' {'a'='1' 'b'='2'}");
    EXPECT_MESSAGE(lBag->GetString(true, nullptr, nullptr, true), QTalBase::PropertyBagException,
                   L"QTalBase::PropertyBagImpl::CheckValidityOfDelimiters; Begin and End may not be equal");
}
