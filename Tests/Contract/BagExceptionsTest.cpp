// Exceptions cross the border of the shared library: what the library throws is caught here by the thrown class, by its
// exception class, by each base and by QBase::Message, and is the same class on both sides.

#include "TalBase/PropertyBag.h"

#include "Tests/Support/BagBuilder.h"
#include "Tests/Support/Expect.h"

#include <gtest/gtest.h>

#include <typeinfo>

using QTalBase::PropertyBagException;
using QTalBase::PropertyBagUserErrorException;
using namespace Support;

namespace
{

// A caller's mistake, thrown as PropertyBagUserErrorException.
void ThrowUserError()
{
    NewBag()->SetProperty(nullptr, L"1", false);
}

// A bad text, thrown as PropertyBagException.
void ThrowFormatError()
{
    NewBag()->AddString(L"***");
}

const wchar_t* const gUserError = L"QTalBase::PropertyBagImpl::SetProperty; ipName may not be NULL";
const wchar_t* const gFormatError = L"QTalBase::PropertyBagImpl::ExtractData; A string token was expected";

// Returns the text of what the function throws if a handler for Caught receives it; else "not caught".
template <class Caught>
std::wstring CaughtBy(void (*ipThrow)())
{
    try
    {
        ipThrow();
    }
    catch (const Caught& lException)
    {
        return lException.GetMessage();
    }
    catch (...)
    {
    }
    return L"not caught";
}

} // namespace

TEST(BagExceptions, UserErrorIsCaughtByEveryClassAboveIt)
{
    EXPECT_EQ(CaughtBy<QBase::ExceptionImpl<PropertyBagUserErrorException>>(&ThrowUserError), gUserError);
    EXPECT_EQ(CaughtBy<PropertyBagUserErrorException>(&ThrowUserError), gUserError);
    EXPECT_EQ(CaughtBy<PropertyBagException>(&ThrowUserError), gUserError);
    EXPECT_EQ(CaughtBy<QBase::Message>(&ThrowUserError), gUserError);
}

TEST(BagExceptions, FormatErrorIsNoUserError)
{
    EXPECT_EQ(CaughtBy<QBase::ExceptionImpl<PropertyBagException>>(&ThrowFormatError), gFormatError);
    EXPECT_EQ(CaughtBy<PropertyBagException>(&ThrowFormatError), gFormatError);
    EXPECT_EQ(CaughtBy<QBase::Message>(&ThrowFormatError), gFormatError);
    EXPECT_EQ(CaughtBy<PropertyBagUserErrorException>(&ThrowFormatError), L"not caught");
    EXPECT_EQ(CaughtBy<QBase::ExceptionImpl<PropertyBagUserErrorException>>(&ThrowFormatError), L"not caught");
}

TEST(BagExceptions, ThrownWrapperOfABaseDoesNotCatchAWrapperOfADerivedClass)
{
    EXPECT_EQ(CaughtBy<QBase::ExceptionImpl<PropertyBagException>>(&ThrowUserError), L"not caught");
    EXPECT_EQ(CaughtBy<QBase::ExceptionImpl<QBase::Message>>(&ThrowUserError), L"not caught");
}

TEST(BagExceptions, CaughtMessageTellsItsClass)
{
    try
    {
        ThrowUserError();
        FAIL() << "nothing thrown";
    }
    catch (const QBase::Message& lMessage)
    {
        EXPECT_NE(dynamic_cast<const PropertyBagException*>(&lMessage), nullptr);
        EXPECT_NE(dynamic_cast<const PropertyBagUserErrorException*>(&lMessage), nullptr);
        EXPECT_EQ(typeid(lMessage), typeid(QBase::ExceptionImpl<PropertyBagUserErrorException>));
        EXPECT_EQ(lMessage.GetDomain(), QBase::MESSAGE_DOMAIN_UNKNOWN);
        EXPECT_EQ(lMessage.GetID(), -1);
    }
}

TEST(BagExceptions, CaughtExceptionMayBeCopiedAndKept)
{
    QBase::Message lKept;
    try
    {
        ThrowFormatError();
    }
    catch (const PropertyBagException& lException)
    {
        const PropertyBagException lCopy(lException);
        lKept = lCopy;
    }
    EXPECT_STREQ(lKept.GetMessage(), gFormatError);
    EXPECT_EQ(lKept.GetID(), -1);
}

TEST(BagExceptions, AppendedValuesStandVerbatim)
{
    EXPECT_MESSAGE(QTalBase::CreatePropertyBag(L"a \"b\" &#42; \n\xE4\x20AC\x1F600 %s"), PropertyBagException,
                   L"QTalBase::CreatePropertyBag; String must be malformed - lPropertyString: a \"b\" &#42; "
                   L"\n\xE4\x20AC\x1F600 %s");
    EXPECT_MESSAGE(NewBag(L"%d", L"\\")->SetProperty(L"a", L"%s%d\x20AC", false), PropertyBagException,
                   L"QTalBase::PropertyBagImpl::SetProperty; ipValue may not contain the delimiters. ipValue: "
                   L"%s%d\x20AC, begin delimiter: %d, end delimiter: \\");
    const std::wstring lLong(10000, L'x');
    EXPECT_MESSAGE(QTalBase::CreatePropertyBag(lLong.c_str()), PropertyBagException,
                   L"QTalBase::CreatePropertyBag; String must be malformed - lPropertyString: " + lLong);
}
