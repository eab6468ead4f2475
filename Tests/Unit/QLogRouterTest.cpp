#include "QLog/Router.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

namespace
{

TEST(Router, CreateReturnsOneReferenceOnWhatWasRegistered)
{
    const QBase::SmartPtrI<QLog::Router> lRouter = QLog::CreateRouter("TalBase", "Error", -3);
    ASSERT_TRUE(lRouter);
    EXPECT_STREQ("TalBase", lRouter->GetModule());
    EXPECT_STREQ("Error", lRouter->GetLevel());
    EXPECT_EQ(-3, lRouter->GetCategory());
}

TEST(Router, CreateCopiesTheTexts)
{
    std::string lModule = "Queue";
    std::string lLevel = "Warning";
    const QBase::SmartPtrI<QLog::Router> lRouter = QLog::CreateRouter(lModule.c_str(), lLevel.c_str(), 0);
    lModule = "xxxxx";
    lLevel = "xxxxxxx";
    EXPECT_STREQ("Queue", lRouter->GetModule());
    EXPECT_STREQ("Warning", lRouter->GetLevel());
}

TEST(Router, CreateTwiceReturnsDifferentRouters)
{
    const QBase::SmartPtrI<QLog::Router> lFirst = QLog::CreateRouter("Queue", "", 2147483647);
    const QBase::SmartPtrI<QLog::Router> lSecond = QLog::CreateRouter("Queue", "", -2147483648);
    EXPECT_NE(lFirst, lSecond);
    EXPECT_STREQ("", lSecond->GetLevel());
    EXPECT_EQ(2147483647, lFirst->GetCategory());
    EXPECT_EQ(-2147483648, lSecond->GetCategory());
}

TEST(Router, LivesAsLongAsItsLastReference)
{
    QBase::SmartPtrI<QLog::Router> lFirst = QLog::CreateRouter("Queue", "Error", 1);
    QBase::SmartPtrI<QLog::Router> lSecond = lFirst;
    lFirst = nullptr;
    EXPECT_STREQ("Queue", lSecond->GetModule());
    lSecond->AddRef();
    lSecond->Release();
    EXPECT_EQ(1, lSecond->GetCategory());
}

TEST(Router, DerivesVirtuallyFromReferenceCounted)
{
    static_assert(std::is_base_of_v<QBase::ReferenceCounted, QLog::Router>);
    static_assert(std::is_abstract_v<QLog::Router>);
    const QBase::SmartPtrI<QBase::ReferenceCounted> lCounted = QLog::CreateRouter("Queue", "Error", 1);
    EXPECT_NE(nullptr, dynamic_cast<QLog::Router*>(lCounted.get()));
}

} // namespace
