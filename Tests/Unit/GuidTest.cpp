#include "TalBase/Guid.h"

#include "TalBase/PropertyBagHelpers.h"
#include "Tests/Support/Expect.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <type_traits>

namespace
{

using QTalBase::Guid;
using QTalBase::GuidException;

TEST(Guid, GenerateUniqueGUIDGivesADifferentOneEachTime)
{
    const _GUID lFirst = Guid::GenerateUniqueGUID();
    const _GUID lSecond = Guid::GenerateUniqueGUID();
    EXPECT_NE(lFirst, lSecond);
    EXPECT_NE(lFirst, _GUID{});
}

TEST(Guid, GenerateUniqueGUIDIsARandomIdentifierOfTheStandardVariant)
{
    for (int lCount = 0; lCount < 100; ++lCount)
    {
        const _GUID lGuid = Guid::GenerateUniqueGUID();
        EXPECT_EQ(lGuid.Data3 >> 12, 4);
        EXPECT_EQ(lGuid.Data4[0] >> 6, 2);
    }
}

TEST(Guid, GenerateUniqueStringGivesADifferentOneEachTime)
{
    std::set<std::wstring> lTexts;
    for (int lCount = 0; lCount < 1000; ++lCount)
    {
        lTexts.insert(Support::Text(Guid::GenerateUniqueString()));
    }
    EXPECT_EQ(lTexts.size(), 1000U);
}

TEST(Guid, GenerateUniqueStringHasTheLowerCaseFormWithFourHyphens)
{
    const std::wstring lText = Support::Text(Guid::GenerateUniqueString());
    std::wstring lShape;
    for (const wchar_t lCharacter : lText)
    {
        const bool lIsDigit = std::wstring(L"0123456789abcdef").find(lCharacter) != std::wstring::npos;
        lShape += lIsDigit ? L'h' : lCharacter;
    }
    EXPECT_EQ(lShape, L"hhhhhhhh-hhhh-hhhh-hhhh-hhhhhhhhhhhh");
    EXPECT_EQ(lText[14], L'4');
}

TEST(Guid, GenerateUniqueStringIsReadByUnStringize)
{
    const QBase::ReturnWString lText = Guid::GenerateUniqueString();
    _GUID lGuid{};
    QTalBase::UnStringize(lText.c_str(), lGuid);
    EXPECT_NE(lGuid, _GUID{});
    EXPECT_EQ(Support::Text(QTalBase::Stringize(lGuid)), Support::Text(lText));
}

TEST(Guid, HasNoDataAndItsErrorIsAMessage)
{
    EXPECT_TRUE(std::is_empty_v<Guid>);
    EXPECT_TRUE((std::is_base_of_v<QBase::Message, GuidException>));
    EXPECT_EQ(sizeof(GuidException), sizeof(QBase::Message));
}

} // namespace
