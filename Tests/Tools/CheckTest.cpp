// check on damaged texts: whatever is missing, it says "valid" or names a place that the text has.

#include "Commands/Commands.h"
#include "Tests/Tools/RunTool.h"
#include "Tests/Tools/Screens.h"

#include "QBase/Convert.h"
#include "TalBase/Initializer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <regex>

using namespace ToolTests;

namespace
{

const QTalBase::Initializer gInitializer;

struct Damage
{
    bool mWasValid = false;
    bool mWasInvalid = false;
};

// As the command line does, without the time that this takes.
ToolRun RunCheck(const std::string& iFile, std::size_t iMaxWarnings)
{
    TalBaseTool::CheckOptions lOptions;
    lOptions.mInputs.mFiles = {iFile};
    lOptions.mMaxWarnings = iMaxWarnings;
    std::ostringstream lOut;
    std::ostringstream lErr;
    const int lStatus = TalBaseTool::Check(lOptions, {lOut, lErr, false, false});
    return {lStatus, lOut.str(), lErr.str()};
}

// Checks a text and looks at what is said of it.
void CheckDamaged(const Workplace& iWorkplace, const std::string& iText, Damage& oDamage)
{
    const std::string lFile = iWorkplace.Write("damaged.bag", iText);
    const ToolRun lRun = RunCheck(lFile, 0);
    if (lRun.mStatus == 0)
    {
        EXPECT_EQ(lRun.mOut.rfind(lFile + ": valid", 0), 0U) << iText;
        EXPECT_EQ(lRun.mErr, "") << iText;
        oDamage.mWasValid = true;
        return;
    }
    oDamage.mWasInvalid = true;
    ASSERT_EQ(lRun.mStatus, 1) << iText << '\n' << lRun.mErr;
    EXPECT_EQ(lRun.mOut, "") << iText;
    // A place, a message, an excerpt and a caret, or with a sensitive name in the text why there is none.
    const bool lHasName = iText.find("FTPServerPassword") != std::string::npos;
    const std::regex lShape(
        std::string("[^\n]*:([0-9]+):([0-9]+): ([^\n]+)\n") +
        (lHasName ? "[^\n]*: a sensitive name is in this text, [^\n]*\n" : "  [^\n]*\n  ( *)\\^\n"));
    std::smatch lMatch;
    ASSERT_TRUE(std::regex_match(lRun.mErr, lMatch, lShape)) << lRun.mErr;
    const std::wstring lText = QBase::UTF8ToWideChar(iText, true);
    const std::size_t lLine = std::stoul(lMatch[1]);
    const std::size_t lColumn = std::stoul(lMatch[2]);
    EXPECT_LE(lLine, static_cast<std::size_t>(std::count(lText.begin(), lText.end(), L'\n')) + 1) << iText;
    EXPECT_GE(lColumn, 1U) << iText;
    EXPECT_LE(lColumn, lText.size() + 1) << iText;
    const std::string lMessage = lMatch[3];
    const std::string lAdvice = lText.rfind(L"EndDelimiter", 0) == 0
                                    ? ""
                                    : "there is no header; --begin and --end name the delimiters of a text "
                                      "without one: ";
    EXPECT_EQ(lMessage.rfind(lAdvice + "QTalBase::", 0), 0U) << lMessage;
}

Damage CheckEveryCut(const std::string& iBytes)
{
    const Workplace lWorkplace;
    const std::wstring lText = QBase::UTF8ToWideChar(iBytes, true);
    Damage lDamage;
    for (std::size_t lCut = 0; lCut < lText.size(); ++lCut)
    {
        std::wstring lDamaged = lText;
        lDamaged.erase(lCut, 1);
        CheckDamaged(lWorkplace, QBase::WideCharToUTF8(lDamaged.c_str(), true), lDamage);
    }
    return lDamage;
}

struct Pair
{
    std::string mBegin;
    std::string mEnd;
};

// Word characters and others, short and long ones.
const std::vector<Pair> gPairs{{"++++", "***"}, {"[", "]"}, {"_", "|"},     {"x", "y"},
                               {"9", "Q"},      {"=", ";"}, {"open", "QQ"}, {"AA", "ZZ"}};

// A text with a header, written with "<" and ">" in the place of the delimiters.
std::string WithPair(const Pair& iPair, const std::string& iContent)
{
    std::string lText = "EndDelimiter" + iPair.mEnd + "BeginDelimiter" + iPair.mBegin + iPair.mEnd;
    for (const char lCharacter : iContent)
    {
        lText += lCharacter == '<' ? iPair.mBegin : lCharacter == '>' ? iPair.mEnd : std::string(1, lCharacter);
    }
    return lText;
}

// Looks for the word "secret" in what is said of a text.
void ExpectNoSecret(const Workplace& iWorkplace, const std::string& iText)
{
    const ToolRun lRun = RunCheck(iWorkplace.Write("damaged.bag", iText), 1000);
    const std::string lSaid = std::regex_replace(lRun.mOut + lRun.mErr, std::regex("--show-secrets"), "");
    EXPECT_EQ(lSaid.find("secret"), std::string::npos) << iText << '\n' << lRun.mErr;
}

// Cuts every character but those between two places, and those of the begin delimiter in the header, which is another
// one then.
void CutAllBut(const Workplace& iWorkplace, const Pair& iPair, const std::string& iText, std::size_t iFirst,
               std::size_t iStop)
{
    const std::size_t lBegin = 26 + iPair.mEnd.size();
    for (std::size_t lCut = 0; lCut < iText.size(); ++lCut)
    {
        const bool lIsBegin = lCut >= lBegin && lCut < lBegin + iPair.mBegin.size();
        if (!lIsBegin && (lCut < iFirst || lCut >= iStop))
        {
            ExpectNoSecret(iWorkplace, iText.substr(0, lCut) + iText.substr(lCut + 1));
        }
    }
}

Damage CheckEveryBeginning(const std::string& iBytes)
{
    const Workplace lWorkplace;
    const std::wstring lText = QBase::UTF8ToWideChar(iBytes, true);
    Damage lDamage;
    for (std::size_t lLength = 0; lLength < lText.size(); ++lLength)
    {
        CheckDamaged(lWorkplace, QBase::WideCharToUTF8(lText.substr(0, lLength).c_str(), true), lDamage);
    }
    return lDamage;
}

} // namespace

TEST(Check, TextWithOneCharacterCutIsValidOrHasAPlace)
{
    const Workplace lWorkplace;
    for (const char* lName : {"job.bag", "brackets.bag", "lossy.bag", "long.bag"})
    {
        const Damage lDamage = CheckEveryCut(lWorkplace.Read(lName));
        EXPECT_TRUE(lDamage.mWasValid) << lName;
        EXPECT_TRUE(lDamage.mWasInvalid) << lName;
    }
}

TEST(Check, TextThatEndsAnywhereIsValidOrHasAPlace)
{
    const Workplace lWorkplace;
    for (const char* lName : {"job.bag", "brackets.bag", "lossy.bag"})
    {
        const Damage lDamage = CheckEveryBeginning(lWorkplace.Read(lName));
        EXPECT_TRUE(lDamage.mWasValid) << lName;
        EXPECT_TRUE(lDamage.mWasInvalid) << lName;
    }
}

TEST(Check, SecretsAreNeverShown)
{
    const Workplace lWorkplace;
    const std::string lText = lWorkplace.Read("job.bag");
    for (std::size_t lCut = 0; lCut < lText.size(); ++lCut)
    {
        const std::string lName = "FTPServerPassword++++";
        const bool lIsName = lText.rfind(lName, lCut) != std::string::npos &&
                             lCut < lText.rfind(lName, lCut) + lName.size(); // then it is no secret any more
        if (!lIsName)
        {
            ExpectNoSecret(lWorkplace, lText.substr(0, lCut) + lText.substr(lCut + 1));
        }
    }
}

TEST(Check, SecretsAreNeverShownUnderAnyDelimiters)
{
    const Workplace lWorkplace;
    const std::string lName = "FTPServerPassword";
    for (const Pair& lPair : gPairs)
    {
        const std::string lText = WithPair(lPair, "I<17>FTPServerPassword<secret>N<K<v>>E<>");
        const std::size_t lPlace = lText.find(lName);
        CutAllBut(lWorkplace, lPair, lText, lPlace, lPlace + lName.size()); // without one of these it is another name
        ExpectNoSecret(lWorkplace, lText + "oops" + lPair.mEnd);
        ExpectNoSecret(lWorkplace, WithPair(lPair, "I<17>FTPServerPassword>secret>oops>"));
    }
}

TEST(Check, SecretNestsAreNeverShown)
{
    const Workplace lWorkplace;
    for (const Pair& lPair : gPairs)
    {
        const std::string lText = WithPair(lPair, "I<17>FTPServerPassword<I<17>secret<>N<K<secret>>>E<>");
        ExpectNoSecret(lWorkplace, lText + "oops" + lPair.mEnd);
        ExpectNoSecret(lWorkplace, WithPair(lPair, "I<17>FTPServerPassword>I<17>secret<secret>>oops>"));
        // Where the bag no longer begins, or ends at once, what it held is not known for a part of it.
        const std::string lBefore = WithPair(lPair, "I<17>");
        CutAllBut(lWorkplace, lPair, lText, lBefore.size(), WithPair(lPair, "I<17>FTPServerPassword<I<17>").size());
    }
}

TEST(Check, WhatIsNoSecretIsShown)
{
    const Workplace lWorkplace;
    for (const Pair& lPair : gPairs)
    {
        const std::string lText = WithPair(lPair, "FTPServerPassword<I<17>>plain<>other<17>");
        const ToolRun lRun = RunCheck(lWorkplace.Write("damaged.bag", lText), 1000);
        EXPECT_NE(lRun.mErr.find("'plain' has no value"), std::string::npos) << lRun.mErr;
        EXPECT_NE(lRun.mErr.find(lPair.mEnd + "other"), std::string::npos) << lRun.mErr;
    }
}

TEST(Check, EveryFileIsChecked)
{
    const Workplace lWorkplace;
    const std::string lBad = lWorkplace.Write("a.bag", WithPair({"_", "|"}, "FTPServerPassword<secret>I>"));
    const ToolRun lRun = RunTool({"check", lBad, lWorkplace.Write("b.bag", WithPair({"_", "|"}, "I<1>"))});
    EXPECT_EQ(lRun.mStatus, 1);
    EXPECT_NE(lRun.mErr.find("a.bag: a sensitive name is in this text"), std::string::npos) << lRun.mErr;
    EXPECT_NE(lRun.mOut.find("b.bag: valid\n"), std::string::npos) << lRun.mOut;
}

// Counting the lines from the start for each remark took minutes for this.
TEST(Check, ManyRemarksTakeLinearTime)
{
    std::string lText = "EndDelimiter***BeginDelimiter++++***";
    for (int lIndex = 0; lIndex < 100000; ++lIndex)
    {
        lText += "\na++++***";
    }
    const Workplace lWorkplace;
    const ToolRun lRun = RunCheck(lWorkplace.Write("many.bag", lText), 1000000);
    EXPECT_NE(lRun.mErr.find("many.bag:100000:9: warning: '\\na' has no value"), std::string::npos);
    EXPECT_NE(lRun.mOut.find("valid, 100000 warnings\n"), std::string::npos) << lRun.mOut;
}

TEST(Check, DeepTextTakesNoStack)
{
    std::string lText = "EndDelimiter***BeginDelimiter++++***";
    for (int lLevel = 0; lLevel < 100000; ++lLevel)
    {
        lText += "n++++";
    }
    const Workplace lWorkplace;
    const std::string lFile = lWorkplace.Write("deep.bag", lText);
    EXPECT_NE(RunTool({"check", lFile})
                  .mErr.find(":1:500037: QTalBase::PropertyBagImpl::GetNextToken; A token was "
                             "expected\n"),
              std::string::npos);
}
