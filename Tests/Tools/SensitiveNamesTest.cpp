#include "Text/SensitiveNames.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

using namespace TalBaseTool;

namespace
{

// The place as text, "3-20"; "none" where there is none.
std::string Show(const std::optional<NamePlace>& iPlace)
{
    return iPlace ? std::to_string(iPlace->mStart) + "-" + std::to_string(iPlace->mStop) : "none";
}

} // namespace

TEST(SensitiveNames, IsWhateverTheCase)
{
    const SensitiveNames lNames({L"Straße", L"kelvin", L"Ωmega"});
    for (const wchar_t* lName : {L"FTPServerPassword", L"ftpserverpassword", L"FTPSERVERPASSWORD", L"fTPſerverPaſſword",
                                 L"STRAßE", L"\u212Aelvin", L"ωmega"})
    {
        EXPECT_TRUE(lNames.Is(lName));
        EXPECT_TRUE(lNames.FindWord(lName));
    }
}

TEST(SensitiveNames, IsWithBlanksMarksAndInvisibleCharactersInAndAroundIt)
{
    const SensitiveNames lNames;
    for (const wchar_t* lName :
         {L" FTPServerPassword\t", L"FTP Server Password", L"\uFEFFFTPServerPassword\r\n", L"FTPServer\nPassword",
          L"FTP\u00ADServer\u200BPassword", L"FTPServer\u0301Password", L"F\u00A0T\u3000P\u2028ServerPassword",
          L"\u202EFTPServerPassword\u202C", L"FTP\u1160ServerPassword\u2800", L"FTPServerPassword\x1F"})
    {
        EXPECT_TRUE(lNames.Is(lName));
        EXPECT_TRUE(lNames.FindWord(lName));
        EXPECT_TRUE(lNames.IsIn(lName));
    }
    EXPECT_FALSE(lNames.Is(L"FTP-Server-Password"));
    EXPECT_FALSE(lNames.Is(L"FTPServerPasswor"));
    EXPECT_FALSE(lNames.Is(L""));
}

TEST(SensitiveNames, IsWithEscapesOfJson)
{
    const SensitiveNames lNames({L"\U0001D4B3key"});
    EXPECT_TRUE(lNames.Is(L"\\u0046TPServerPassword"));
    EXPECT_TRUE(lNames.Is(L"FTPServer\\\\u0050assword")); // JSON within JSON
    EXPECT_TRUE(lNames.Is(L"FTPServer\\nPassword\\t"));
    EXPECT_TRUE(lNames.Is(L"\\ud835\\udcb3key"));
    EXPECT_TRUE(lNames.Is(L"\\\\ud835\\\\udcb3KEY"));
    EXPECT_FALSE(lNames.Is(L"\\u0047TPServerPassword"));
}

TEST(SensitiveNames, FindWordFindsTheFirstThatNothingTouches)
{
    const SensitiveNames lNames({L"Key"});
    EXPECT_EQ(Show(lNames.FindWord(L"monkey")), "none");
    EXPECT_EQ(Show(lNames.FindWord(L"keys, key_1 and monkeykey")), "none");
    EXPECT_EQ(Show(lNames.FindWord(L"FTPServerPassword2")), "none");
    EXPECT_EQ(Show(lNames.FindWord(L"my-key: 17")), "3-6");
    EXPECT_EQ(Show(lNames.FindWord(L"monkey key")), "7-10");
    EXPECT_EQ(Show(lNames.FindWord(L"the FTP Server Password is x")), "4-23");
    EXPECT_EQ(Show(lNames.FindWord(L"äkey")), "none");
    EXPECT_EQ(Show(lNames.FindWord(L"key\u200B2")), "0-3");
}

// The n of a line end touches nothing, and an escaped letter does.
TEST(SensitiveNames, FindWordReadsTheEscapesAroundIt)
{
    const SensitiveNames lNames({L"Key"});
    EXPECT_EQ(Show(lNames.FindWord(L"one\\nkey\\n")), "5-8");
    EXPECT_EQ(Show(lNames.FindWord(L"\\u0061key")), "none");
    EXPECT_EQ(Show(lNames.FindWord(L"\\u000akey")), "6-9");
    EXPECT_EQ(Show(lNames.FindWord(L"key\\u0061")), "none");
    EXPECT_EQ(Show(lNames.FindWord(L"C:\\key")), "3-6");
    EXPECT_EQ(Show(lNames.FindWord(L"n\\\\u006bey")), "2-10");
    EXPECT_EQ(Show(lNames.FindWord(L"n\\u006bey")), "none");
    EXPECT_EQ(Show(SensitiveNames({L"name"}).FindWord(L"\\name")), "1-5"); // or a line end before "ame"
}

TEST(SensitiveNames, FindFindsPartsOfWordsFromAPlaceOn)
{
    const SensitiveNames lNames({L"Key", L"KeyRing"});
    EXPECT_EQ(Show(lNames.Find(L"monkeys", 0)), "3-6");
    EXPECT_EQ(Show(lNames.Find(L"monkeys", 4)), "none");
    EXPECT_EQ(Show(lNames.Find(L"my keyring", 0)), "3-10");
    EXPECT_TRUE(lNames.IsIn(L"FTPServerPassword2"));
    EXPECT_FALSE(lNames.IsIn(L"FTPServerPass-word"));
}

// What begins a name is looked for otherwise in a long text than in a short one, and where names begin in many ways.
TEST(SensitiveNames, FindFindsTheSameInLongTextsAsInTheirPieces)
{
    std::mt19937 lEngine(1);
    for (const SensitiveNames& lNames : {SensitiveNames({L"Key"}), SensitiveNames({L"Key", L"a", L"b", L"c", L"d"})})
    {
        std::wstring lText;
        while (lText.size() < 2000)
        {
            lText += L"kKeEyYx. "[lEngine() % 9];
        }
        lText += L"Key";
        std::size_t lCount = 0;
        for (std::size_t lStart = 0; lStart + 32 < lText.size(); ++lStart)
        {
            const std::optional<NamePlace> lPiece = lNames.Find(lText.substr(lStart, 32), 0);
            const std::optional<NamePlace> lFound = lNames.Find(lText, lStart);
            ASSERT_TRUE(lFound);
            if (lPiece && lPiece->mStop < 30)
            {
                EXPECT_EQ(lFound->mStart, lStart + lPiece->mStart);
                EXPECT_EQ(lFound->mStop, lStart + lPiece->mStop);
                ++lCount;
            }
        }
        EXPECT_GT(lCount, 100);
        for (std::size_t lPlace = 0; lPlace < 600; ++lPlace)
        {
            const std::wstring lLong = std::wstring(lPlace, L'x') + L"Key" + std::wstring(600 - lPlace, L'x');
            EXPECT_EQ(Show(lNames.Find(lLong, 0)), std::to_string(lPlace) + "-" + std::to_string(lPlace + 3));
        }
        EXPECT_EQ(Show(lNames.Find(lText, 2000)), "2000-2003");
        EXPECT_EQ(Show(lNames.Find(lText, 2001)), "none");
    }
}

TEST(SensitiveNames, EnvironmentAddsOneALine)
{
    ::setenv("TALBASE_SENSITIVE_NAMES", "Token\r\n\n API key\n", 1);
    const SensitiveNames lNames;
    ::unsetenv("TALBASE_SENSITIVE_NAMES");
    EXPECT_TRUE(lNames.Is(L"token"));
    EXPECT_TRUE(lNames.Is(L"apikey"));
    EXPECT_TRUE(lNames.Is(L"FTPServerPassword"));
    EXPECT_FALSE(lNames.Is(L" \t"));
    EXPECT_FALSE(SensitiveNames().Is(L"token"));
}
