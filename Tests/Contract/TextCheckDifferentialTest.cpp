// CheckText against reading: whatever the text, the delimiters and the defaults are, it says what reading throws,
// message for message, and names a place inside the text. TALBASE_TEXTCHECK_TEXTS in the environment asks for another
// number of texts.

#include "TalBase/TextCheck.h"

#include "QBase/Convert.h"
#include "TalBase/Initializer.h"
#include "TalBase/PropertyBag.h"
#include "Tests/Support/Describe.h"
#include "Tests/Support/RepointedDefaults.h"
#include "Tests/Support/TextChecks.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <iterator>
#include <random>
#include <set>
#include <string>

using QTalBase::CheckText;
using QTalBase::PropertyBag;
using QTalBase::TextCheckResult;
using Support::DescribeCheck;
using Support::DescribeReading;
using Support::IsInside;

namespace
{

const QTalBase::Initializer gInitializer;

using Support::BagPtr;

const wchar_t* const gPairs[][2] = {
    {L"++++", L"***"}, {L"[[", L"]]"},     {L"<", L">"},
    {L"+*", L"**"},    {L"a", L"e"},       {L"xe", L"e"},
    {L"&#", L";;"},    {L"4", L"x"},       {L"ab", L"ba"},
    {L"::", L":"},     {L"+", L"*"},       {L"[", L"end"},
    {L"", L"x"},       {L"x", L""},        {L"aaaaaaaaaaaaaaaaaaab", L"aaaaaaaaaaaaaaaaaaac"},
    {L"#", L";"},      {L"same", L"same"}, {L"x", L"yx"}};

const wchar_t* const gWords[] = {L"a",
                                 L"b",
                                 L"name",
                                 L"*",
                                 L"+",
                                 L"&#42;",
                                 L"&",
                                 L"#4",
                                 L"2;",
                                 L";",
                                 L"[",
                                 L"]",
                                 L"e",
                                 L"EndDelimiter",
                                 L"EndDelimiter***BeginDelimiter++++***",
                                 L"BeginDelimiter",
                                 L"EndDelimiter]]BeginDelimiter[[]]",
                                 L"EndDelimiter>BeginDelimiter<>",
                                 L"\n"};

// A text or two on their way, from a generator that gives the same everywhere.
class Trial
{
public:
    explicit Trial(unsigned int iSeed) : mEngine(iSeed) {}

    unsigned int Below(std::size_t iLimit)
    {
        return static_cast<unsigned int>(mEngine() % iLimit);
    }

    const wchar_t* const* Pair()
    {
        return gPairs[Below(2) == 0 ? Below(3) : Below(std::size(gPairs))];
    }

    // Mostly of the shape of a text form, with or without a header.
    std::wstring Text(const wchar_t* const* ipPair)
    {
        std::wstring lText;
        if (Below(2) == 0)
        {
            lText = std::wstring(L"EndDelimiter") + ipPair[1] + L"BeginDelimiter" + ipPair[0] + ipPair[1];
        }
        for (unsigned int lPieces = Below(12); lPieces > 0; --lPieces)
        {
            const unsigned int lPiece = Below(8);
            lText += lPiece > 6 ? L"" : gWords[Below(std::size(gWords))];
            lText += lPiece < 4 ? ipPair[lPiece % 2] : L"";
            lText += lPiece == 2 ? std::wstring(gWords[Below(std::size(gWords))]) + ipPair[1] : L"";
        }
        return Below(20) == 0 ? lText.substr(0, lText.size() / 2) : lText;
    }

private:
    std::mt19937 mEngine;
};

std::wstring WithoutData(const std::wstring& iOutcome)
{
    const std::wstring lShort = iOutcome.substr(0, iOutcome.find(L" - lPropertyString"));
    return lShort.substr(0, lShort.find(L". ipValue"));
}

// A description of what differs is the text itself.
std::string Readable(const std::wstring& iText, const wchar_t* const* ipPair)
{
    return QBase::WideCharToUTF8((iText + L"  with  " + ipPair[0] + L"  " + ipPair[1]).c_str(), false);
}

} // namespace

TEST(TextCheckDifferential, SaysWhatReadingThrows)
{
    const char* lAsked = std::getenv("TALBASE_TEXTCHECK_TEXTS");
    const unsigned long lTexts = lAsked != nullptr ? std::strtoul(lAsked, nullptr, 10) : 50000;
    std::set<std::wstring> lSeen;
    for (unsigned int lSeed = 0; lSeed < lTexts; ++lSeed)
    {
        Trial lTrial(lSeed);
        const wchar_t* const* lDefaults = lTrial.Below(4) == 0 ? lTrial.Pair() : gPairs[0];
        const Support::RepointedDefaults lRepointed(lDefaults[0], lDefaults[1]);
        const wchar_t* const* lPair = lTrial.Pair();
        const std::wstring lText = lTrial.Text(lTrial.Below(3) == 0 ? lTrial.Pair() : lPair);

        const TextCheckResult lWithHeader = CheckText(lText.c_str());
        const std::wstring lRead = DescribeReading([&] { BagPtr(QTalBase::CreatePropertyBag(lText.c_str())); });
        ASSERT_EQ(DescribeCheck(lWithHeader), lRead) << Readable(lText, lPair);
        ASSERT_TRUE(IsInside(lWithHeader, lText)) << Readable(lText, lPair);

        const TextCheckResult lWithPair = CheckText(lText.c_str(), lPair[0], lPair[1]);
        const std::wstring lAdded =
            DescribeReading([&] { BagPtr(QTalBase::CreatePropertyBag(lPair[0], lPair[1]))->AddString(lText.c_str()); });
        ASSERT_EQ(DescribeCheck(lWithPair), lAdded) << Readable(lText, lPair);
        ASSERT_TRUE(IsInside(lWithPair, lText)) << Readable(lText, lPair);
        lSeen.insert(WithoutData(lRead));
        lSeen.insert(WithoutData(lAdded));
    }
    // Some could be read, and every message of reading, of the delimiters and of the merge was among them.
    EXPECT_EQ(lSeen.count(L"read"), 1U);
    EXPECT_EQ(lSeen.size(), 1U + 1 + 1 + 3 + 4 + 5 + 2);
}
