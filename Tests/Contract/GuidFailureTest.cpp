// The identifier generator and the formatter of this program take the place of the base library's, so both really fail
// where the library calls them.

#include "TalBase/Guid.h"

#include "TalBase/PropertyBag.h"
#include "Tests/Support/Expect.h"

#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <stdexcept>

namespace
{

const _GUID gSample = {0x0123abcd, 0x4567, 0x49ef, {0xbe, 0xdc, 0xba, 0x98, 0x76, 0x54, 0x32, 0x10}};
const wchar_t* const gCannotCreate = L"QTalBase::Guid::Generate; Cannot create Guid";

std::function<void()> gGeneratorFailure; // empty: succeeds
std::function<void()> gFormatterFailure;
int gGenerated = 0;
int gFormatted = 0;

QBase::Message SomeMessage()
{
    QBase::Message lMessage;
    lMessage.SetDomainAndID(7, 42);
    lMessage.SetMessage(L"the random source is gone");
    return lMessage;
}

} // namespace

namespace QBase
{

void CreateGUID(_GUID& oGuid)
{
    ++gGenerated;
    if (gGeneratorFailure)
    {
        gGeneratorFailure();
    }
    oGuid = gSample;
}

ReturnWString Guid2String(const _GUID& iGuid)
{
    ++gFormatted;
    if (gFormatterFailure)
    {
        gFormatterFailure();
    }
    return iGuid == gSample ? L"the sample" : L"another one";
}

} // namespace QBase

namespace
{

using QTalBase::Guid;
using QTalBase::GuidException;

class GuidFailure : public testing::Test
{
protected:
    void SetUp() override
    {
        gGeneratorFailure = nullptr;
        gFormatterFailure = nullptr;
        gGenerated = 0;
        gFormatted = 0;
    }
};

TEST_F(GuidFailure, TheLibraryCallsTheFunctionsOfThisProgram)
{
    EXPECT_EQ(Guid::GenerateUniqueGUID(), gSample);
    EXPECT_EQ(gGenerated, 1);
    EXPECT_EQ(gFormatted, 0);
    EXPECT_STREQ(Guid::GenerateUniqueString().c_str(), L"the sample");
    EXPECT_EQ(gGenerated, 2);
    EXPECT_EQ(gFormatted, 1);
}

TEST_F(GuidFailure, MessageBecomesAGuidExceptionWithOneTextForBothOperations)
{
    gGeneratorFailure = [] { throw SomeMessage(); };
    EXPECT_MESSAGE(Guid::GenerateUniqueGUID(), GuidException, gCannotCreate);
    EXPECT_MESSAGE(Guid::GenerateUniqueString(), GuidException, gCannotCreate);
}

TEST_F(GuidFailure, AnythingDerivedFromMessageBecomesAGuidException)
{
    gGeneratorFailure = [] { throw QBase::ExceptionImpl<QBase::Message>(SomeMessage()); };
    EXPECT_MESSAGE(Guid::GenerateUniqueGUID(), GuidException, gCannotCreate);
    gGeneratorFailure = [] { throw QBase::ExceptionImpl<QTalBase::PropertyBagUserErrorException>(SomeMessage()); };
    EXPECT_MESSAGE(Guid::GenerateUniqueString(), GuidException, gCannotCreate);
}

TEST_F(GuidFailure, TheExceptionIsCaughtAsMessageToo)
{
    gGeneratorFailure = [] { throw SomeMessage(); };
    EXPECT_THROW(Guid::GenerateUniqueGUID(), QBase::Message);
    EXPECT_THROW(Guid::GenerateUniqueString(), QBase::Message);
}

TEST_F(GuidFailure, OneFailedAttemptIsOneExceptionAndNothingIsFormatted)
{
    gGeneratorFailure = [] { throw SomeMessage(); };
    EXPECT_THROW(Guid::GenerateUniqueGUID(), GuidException);
    EXPECT_EQ(gGenerated, 1);
    EXPECT_THROW(Guid::GenerateUniqueString(), GuidException);
    EXPECT_EQ(gGenerated, 2);
    EXPECT_EQ(gFormatted, 0);
}

TEST_F(GuidFailure, OtherExceptionsOfTheGeneratorPassThrough)
{
    gGeneratorFailure = [] { throw std::runtime_error("no entropy"); };
    EXPECT_THROW(Guid::GenerateUniqueGUID(), std::runtime_error);
    EXPECT_THROW(Guid::GenerateUniqueString(), std::runtime_error);
    gGeneratorFailure = [] { throw std::bad_alloc(); };
    EXPECT_THROW(Guid::GenerateUniqueGUID(), std::bad_alloc);
    gGeneratorFailure = [] { throw 5; };
    EXPECT_THROW(Guid::GenerateUniqueString(), int);
}

TEST_F(GuidFailure, MessageOfTheFormatterPassesThroughUntranslated)
{
    gFormatterFailure = [] { throw SomeMessage(); };
    try
    {
        Guid::GenerateUniqueString();
        ADD_FAILURE() << "nothing was thrown";
    }
    catch (const QBase::Message& lMessage)
    {
        EXPECT_EQ(typeid(lMessage), typeid(QBase::Message));
        EXPECT_STREQ(lMessage.GetMessage(), L"the random source is gone");
        EXPECT_EQ(lMessage.GetDomain(), 7);
        EXPECT_EQ(lMessage.GetID(), 42);
    }
    EXPECT_EQ(Guid::GenerateUniqueGUID(), gSample);
}

TEST_F(GuidFailure, OtherExceptionsOfTheFormatterPassThrough)
{
    gFormatterFailure = [] { throw std::bad_alloc(); };
    EXPECT_THROW(Guid::GenerateUniqueString(), std::bad_alloc);
}

} // namespace
