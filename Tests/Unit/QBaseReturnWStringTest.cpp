#include "QBase/ReturnWString.h"

#include "Tests/Support/Expect.h"

#include <gtest/gtest.h>

#include <cwchar>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace
{

using QBase::ReturnWString;
using Support::Text;

ReturnWString ByValue()
{
    return L"from a literal";
}

TEST(ReturnWString, FromTerminatedTextCopiesIt)
{
    std::wstring lSource = L"text";
    const ReturnWString lText(lSource.c_str());
    lSource = L"????";
    EXPECT_STREQ(L"text", lText.c_str());
    EXPECT_EQ(4U, lText.GetLength());
    EXPECT_STREQ(L"from a literal", ByValue().c_str());
}

TEST(ReturnWString, FromNullIsTheEmptyText)
{
    const ReturnWString lText(nullptr);
    EXPECT_STREQ(L"", lText.c_str());
    EXPECT_EQ(0U, lText.GetLength());
    const ReturnWString lCounted(nullptr, 0);
    EXPECT_STREQ(L"", lCounted.c_str());
    EXPECT_EQ(0U, lCounted.GetLength());
}

TEST(ReturnWString, FromLengthKeepsZeroCharactersAndTerminates)
{
    const ReturnWString lText(L"a\0b\0cde", 4);
    EXPECT_EQ(4U, lText.GetLength());
    EXPECT_EQ(std::wstring(L"a\0b\0", 4), Text(lText));
    EXPECT_EQ(L'\0', lText.c_str()[4]);
}

TEST(ReturnWString, FromStandardStringTakesOverZeroCharactersToo)
{
    const ReturnWString lText(std::wstring(L"x\0y", 3));
    EXPECT_EQ(std::wstring(L"x\0y", 3), Text(lText));
    EXPECT_EQ(1000U, ReturnWString(std::wstring(1000, L'z')).GetLength());
    EXPECT_EQ(0U, ReturnWString(std::wstring()).GetLength());
}

TEST(ReturnWString, CopiesHaveTheirOwnCharacters)
{
    for (const std::size_t lLength : {0U, 1U, 3U, 4U, 500U})
    {
        const std::wstring lExpected(lLength, L'k');
        ReturnWString lOriginal(lExpected.c_str(), lLength);
        const ReturnWString lCopy = lOriginal;
        ReturnWString lAssigned(L"something else that is longer");
        lAssigned = lOriginal;
        lOriginal = ReturnWString(L"gone");
        EXPECT_EQ(lExpected, Text(lCopy));
        EXPECT_EQ(lExpected, Text(lAssigned));
        EXPECT_STREQ(L"gone", lOriginal.c_str());
    }
}

TEST(ReturnWString, MovedFromIsTheEmptyText)
{
    static_assert(std::is_nothrow_move_constructible_v<ReturnWString>);
    static_assert(std::is_nothrow_move_assignable_v<ReturnWString>);
    for (const std::size_t lLength : {0U, 1U, 3U, 4U, 500U})
    {
        const std::wstring lExpected(lLength, L'k');
        ReturnWString lFirst(lExpected.c_str(), lLength);
        ReturnWString lSecond = std::move(lFirst);
        EXPECT_EQ(lExpected, Text(lSecond));
        EXPECT_STREQ(L"", lFirst.c_str()); // NOLINT: what is left is promised
        EXPECT_EQ(0U, lFirst.GetLength());
        ReturnWString lThird(L"held before");
        lThird = std::move(lSecond);
        EXPECT_EQ(lExpected, Text(lThird));
        EXPECT_STREQ(L"", lSecond.c_str()); // NOLINT
        EXPECT_EQ(0U, lSecond.GetLength());
        lFirst = lThird;
        EXPECT_EQ(lExpected, Text(lFirst));
    }
}

TEST(ReturnWString, AssignedToItselfKeepsItsText)
{
    ReturnWString lText(L"a text too long for any small buffer");
    ReturnWString& lSame = lText;
    lText = lSame;
    EXPECT_STREQ(L"a text too long for any small buffer", lText.c_str());
    lText = std::move(lSame);
    EXPECT_STREQ(L"a text too long for any small buffer", lText.c_str());
}

// Every way in which an object comes to its characters.
using Maker = ReturnWString (*)(const std::wstring&);

const Maker gMakers[] = {
    [](const std::wstring& iText) { return ReturnWString(iText.c_str()); },
    [](const std::wstring& iText) { return ReturnWString(iText.c_str(), iText.size()); },
    [](const std::wstring& iText) { return ReturnWString(std::wstring(iText)); },
    [](const std::wstring& iText) {
        std::wstring lSpacious = iText;
        lSpacious.reserve(1000);
        return ReturnWString(std::move(lSpacious));
    },
    [](const std::wstring& iText) {
        std::unique_ptr<wchar_t[]> lCharacters(new wchar_t[iText.size() + 1]);
        std::wmemcpy(lCharacters.get(), iText.c_str(), iText.size() + 1);
        return ReturnWString(std::move(lCharacters), iText.size());
    },
};

// Texts whose lengths lie around everything that a standard string or this class might hold within itself.
std::vector<std::wstring> Texts()
{
    std::vector<std::wstring> lTexts;
    for (const std::size_t lLength : {0U, 1U, 2U, 3U, 4U, 5U, 7U, 8U, 14U, 15U, 16U, 17U, 31U, 32U, 33U, 500U})
    {
        std::wstring lText;
        for (std::size_t lIndex = 0; lIndex < lLength; ++lIndex)
        {
            lText += static_cast<wchar_t>(L'!' + lIndex);
        }
        lTexts.push_back(lText);
    }
    return lTexts;
}

// Whether all ways of reading it give the text.
testing::AssertionResult Holds(const ReturnWString& iText, const std::wstring& iExpected)
{
    if (iText.GetLength() != iExpected.size() || Text(iText) != iExpected || std::wstring_view(iText) != iExpected)
    {
        return testing::AssertionFailure()
               << Support::Readable(iText) << " instead of " << Support::Readable(iExpected);
    }
    return iText.c_str()[iExpected.size()] == L'\0' ? testing::AssertionSuccess()
                                                    : testing::AssertionFailure() << "no terminator";
}

TEST(ReturnWString, EveryMakeOfEveryLengthIsCopiedAndMoved)
{
    for (const std::wstring& lText : Texts())
    {
        for (const Maker lMake : gMakers)
        {
            ReturnWString lOriginal = lMake(lText);
            EXPECT_TRUE(Holds(lOriginal, lText));
            const ReturnWString lCopy(lOriginal);
            EXPECT_NE(lOriginal.c_str(), lCopy.c_str());
            EXPECT_TRUE(Holds(lCopy, lText));
            EXPECT_TRUE(Holds(lOriginal, lText));
            const ReturnWString lMoved(std::move(lOriginal));
            EXPECT_TRUE(Holds(lMoved, lText));
            EXPECT_TRUE(Holds(lOriginal, L"")); // NOLINT: what is left is promised
            lOriginal = lMake(lText);           // and good for another text
            EXPECT_TRUE(Holds(lOriginal, lText));
            ReturnWString& lSame = lOriginal;
            lOriginal = lSame;
            EXPECT_TRUE(Holds(lOriginal, lText));
            lOriginal = std::move(lSame);
            EXPECT_TRUE(Holds(lOriginal, lText));
        }
    }
}

TEST(ReturnWString, EveryMakeOfEveryLengthIsAssignedToEveryOther)
{
    const std::vector<std::wstring> lTexts = Texts();
    for (const std::wstring& lOld : lTexts)
    {
        for (const std::wstring& lNew : lTexts)
        {
            for (const Maker lMakeOld : gMakers)
            {
                for (const Maker lMakeNew : gMakers)
                {
                    ReturnWString lSource = lMakeNew(lNew);
                    ReturnWString lTarget = lMakeOld(lOld);
                    ASSERT_EQ(&lTarget, &(lTarget = lSource));
                    ASSERT_TRUE(Holds(lTarget, lNew) && Holds(lSource, lNew));
                    ReturnWString lOther = lMakeOld(lOld);
                    ASSERT_EQ(&lOther, &(lOther = std::move(lSource)));
                    ASSERT_TRUE(Holds(lOther, lNew) && Holds(lSource, L"")); // NOLINT: what is left is promised
                }
            }
        }
    }
}

TEST(ReturnWString, TakenOverStringIsLeftEmpty)
{
    for (const std::wstring& lText : Texts())
    {
        std::wstring lString = lText;
        const ReturnWString lTaken(std::move(lString));
        EXPECT_TRUE(Holds(lTaken, lText));
        EXPECT_EQ(L"", lString); // NOLINT: what is left is promised
    }
}

TEST(ReturnWString, LongStringsAndArraysAreTakenOverWithoutACopy)
{
    std::wstring lString(500, L's');
    const wchar_t* const lCharacters = lString.c_str();
    ReturnWString lTaken(std::move(lString));
    EXPECT_EQ(lCharacters, lTaken.c_str());
    const ReturnWString lMoved(std::move(lTaken));
    EXPECT_EQ(lCharacters, lMoved.c_str());
    std::unique_ptr<wchar_t[]> lArray(new wchar_t[3]{L'a', L'\0', L'\0'});
    const wchar_t* const lFirst = lArray.get();
    const ReturnWString lOfArray(std::move(lArray), 2);
    EXPECT_EQ(lFirst, lOfArray.c_str());
    EXPECT_TRUE(Holds(lOfArray, std::wstring(L"a\0", 2)));
    EXPECT_EQ(nullptr, lArray); // NOLINT: what is left is promised
}

TEST(ReturnWString, AssignmentFromItsOwnCharactersWorksAsIfCopiedFirst)
{
    for (const std::wstring& lText : Texts())
    {
        for (std::size_t lFrom = 0; lFrom <= lText.size(); lFrom += 5)
        {
            ReturnWString lReturned(lText.c_str());
            lReturned = lReturned.c_str() + lFrom;
            EXPECT_TRUE(Holds(lReturned, lText.substr(lFrom)));
        }
    }
}

TEST(ReturnWString, ConvertsToAViewOfAllCharacters)
{
    const ReturnWString lText(L"p\0q", 3);
    const std::wstring_view lView = lText;
    EXPECT_EQ(std::wstring_view(L"p\0q", 3), lView);
    EXPECT_EQ(lText.c_str(), lView.data());
    static_assert(std::is_nothrow_convertible_v<const ReturnWString&, std::wstring_view>);
}

TEST(ReturnWString, ViewMakesAStandardString)
{
    EXPECT_EQ(L"from a literal", std::wstring(ByValue()));
}

} // namespace
