#include "QBase/Message.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <type_traits>

namespace
{

class Failure : public QBase::Message
{
public:
    explicit Failure(const QBase::Message& iMessage) : QBase::Message(iMessage) {}
};

class SpecialFailure : public Failure
{
public:
    explicit SpecialFailure(const QBase::Message& iMessage) : Failure(iMessage) {}
};

QBase::Message Example()
{
    QBase::Message lMessage;
    lMessage.SetDomainAndID(7, -42);
    lMessage.SetMessage(L"Queue::Open; no room");
    return lMessage;
}

void ExpectExample(const QBase::Message& iMessage)
{
    EXPECT_STREQ(L"Queue::Open; no room", iMessage.GetMessage());
    EXPECT_EQ(7, iMessage.GetDomain());
    EXPECT_EQ(-42, iMessage.GetID());
}

TEST(Message, DefaultConstructedIsEmptyAndOfNoDomain)
{
    const QBase::Message lMessage;
    EXPECT_STREQ(L"", lMessage.GetMessage());
    EXPECT_EQ(QBase::MESSAGE_DOMAIN_UNKNOWN, lMessage.GetDomain());
    EXPECT_EQ(-1, lMessage.GetID());
}

TEST(Message, SetDomainAndIDKeepsTheWholeRange)
{
    QBase::Message lMessage;
    lMessage.SetDomainAndID(65535, 2147483647);
    EXPECT_EQ(65535, lMessage.GetDomain());
    EXPECT_EQ(2147483647, lMessage.GetID());
    lMessage.SetDomainAndID(0, -2147483647 - 1);
    EXPECT_EQ(0, lMessage.GetDomain());
    EXPECT_EQ(-2147483647 - 1, lMessage.GetID());
}

TEST(Message, SetMessageCopiesTheText)
{
    std::wstring lText = L"before";
    QBase::Message lMessage;
    lMessage.SetMessage(lText.c_str());
    lText = L"after!";
    EXPECT_STREQ(L"before", lMessage.GetMessage());
}

TEST(Message, SetMessageNullGivesTheEmptyText)
{
    QBase::Message lMessage = Example();
    lMessage.SetMessage(nullptr);
    EXPECT_STREQ(L"", lMessage.GetMessage());
    EXPECT_EQ(-42, lMessage.GetID());
}

TEST(Message, SetMessageFromItsOwnTextWorksAsIfCopiedFirst)
{
    QBase::Message lMessage = Example();
    lMessage.SetMessage(lMessage.GetMessage() + 7);
    EXPECT_STREQ(L"Open; no room", lMessage.GetMessage());
}

TEST(Message, CopiesAreIndependentAndCannotFail)
{
    static_assert(std::is_nothrow_copy_constructible_v<QBase::Message>);
    static_assert(std::is_nothrow_copy_assignable_v<QBase::Message>);
    QBase::Message lOriginal = Example();
    const QBase::Message lCopy = lOriginal;
    QBase::Message lAssigned;
    lAssigned = lOriginal;
    lOriginal.SetMessage(L"changed");
    lOriginal.SetDomainAndID(0, 0);
    ExpectExample(lCopy);
    ExpectExample(lAssigned);
    EXPECT_STREQ(L"changed", lOriginal.GetMessage());
}

TEST(Message, CopyOutlivesItsOriginal)
{
    QBase::Message lOutside;
    {
        const QBase::Message lInside = Example();
        lOutside = lInside;
    }
    ExpectExample(lOutside);
}

TEST(Message, IsNoStandardException)
{
    static_assert(!std::is_base_of_v<std::exception, QBase::Message>);
    static_assert(std::has_virtual_destructor_v<QBase::Message>);
    bool lIsStandard = false;
    try
    {
        throw QBase::ExceptionImpl<QBase::Message>(Example());
    }
    catch (const std::exception&)
    {
        lIsStandard = true;
    }
    catch (...)
    {
    }
    EXPECT_FALSE(lIsStandard);
}

TEST(ExceptionImpl, DerivesFromItsClassAloneAndAddsNothing)
{
    using Thrown = QBase::ExceptionImpl<SpecialFailure>;
    static_assert(std::is_base_of_v<SpecialFailure, Thrown>);
    static_assert(sizeof(Thrown) == sizeof(QBase::Message));
    static_assert(!std::is_convertible_v<const QBase::Message&, Thrown>);
    static_assert(std::is_nothrow_copy_constructible_v<Thrown>);
    ExpectExample(Thrown(Example()));
}

TEST(ExceptionImpl, ThrownIsCaughtAsItselfItsClassAndEveryBase)
{
    using Thrown = QBase::ExceptionImpl<SpecialFailure>;
    EXPECT_THROW(throw Thrown(Example()), Thrown);
    EXPECT_THROW(throw Thrown(Example()), SpecialFailure);
    EXPECT_THROW(throw Thrown(Example()), Failure);
    try
    {
        throw Thrown(Example());
    }
    catch (const QBase::Message& lMessage)
    {
        ExpectExample(lMessage);
        EXPECT_EQ(typeid(Thrown), typeid(lMessage));
    }
}

TEST(ExceptionImpl, ThrownBaseClassIsNotCaughtAsADerivedOne)
{
    bool lIsSpecial = false;
    try
    {
        throw QBase::ExceptionImpl<Failure>(Example());
    }
    catch (const SpecialFailure&)
    {
        lIsSpecial = true;
    }
    catch (const Failure& lFailure)
    {
        ExpectExample(lFailure);
    }
    EXPECT_FALSE(lIsSpecial);
}

TEST(ExceptionImpl, CopyOfWhatWasCaughtOutlivesTheHandler)
{
    QBase::Message lKept;
    try
    {
        throw QBase::ExceptionImpl<Failure>(Example());
    }
    catch (const QBase::Message& lMessage)
    {
        lKept = lMessage;
    }
    ExpectExample(lKept);
}

} // namespace
