// Expectations on what the library reports: exact texts and exact exception classes, in one place for all tests.

#ifndef TESTS_SUPPORT_EXPECT_H
#define TESTS_SUPPORT_EXPECT_H

#include "QBase/Message.h"
#include "Tests/Support/Text.h"

#include <gtest/gtest.h>

#include <exception>
#include <string_view>
#include <typeinfo>

namespace Support
{

// Compares a thrown message with class, text, domain and ID. iText is the whole text.
template <class C>
testing::AssertionResult IsMessage(const QBase::Message& iMessage, std::wstring_view iText)
{
    if (typeid(iMessage) != typeid(QBase::ExceptionImpl<C>))
    {
        return testing::AssertionFailure() << "thrown class: " << typeid(iMessage).name()
                                           << "\nexpected class: " << typeid(QBase::ExceptionImpl<C>).name()
                                           << "\nthrown text: " << Readable(iMessage.GetMessage());
    }
    if (iMessage.GetMessage() != iText)
    {
        return testing::AssertionFailure()
               << "thrown text:   " << Readable(iMessage.GetMessage()) << "\nexpected text: " << Readable(iText);
    }
    if (iMessage.GetDomain() != QBase::MESSAGE_DOMAIN_UNKNOWN || iMessage.GetID() != -1)
    {
        return testing::AssertionFailure() << "domain " << iMessage.GetDomain() << " and ID " << iMessage.GetID()
                                           << " instead of " << QBase::MESSAGE_DOMAIN_UNKNOWN << " and -1";
    }
    return testing::AssertionSuccess();
}

template <class C, class Statement>
testing::AssertionResult ThrowsMessage(const Statement& iStatement, std::wstring_view iText)
{
    try
    {
        iStatement();
    }
    catch (const QBase::Message& lMessage)
    {
        return IsMessage<C>(lMessage, iText);
    }
    catch (const std::exception& lException)
    {
        return testing::AssertionFailure() << "thrown: " << typeid(lException).name() << ", " << lException.what();
    }
    return testing::AssertionFailure() << "nothing thrown, expected text: " << Readable(iText);
}

} // namespace Support

// Expects the expression to throw QBase::ExceptionImpl<iClass> itself, not of a class derived from it, with this text.
#define EXPECT_MESSAGE(iExpression, iClass, iText)                                                                     \
    EXPECT_TRUE(Support::ThrowsMessage<iClass>([&] { static_cast<void>(iExpression); }, (iText))) << "in:"             \
                                                                                                     " " #iExpression

#endif
