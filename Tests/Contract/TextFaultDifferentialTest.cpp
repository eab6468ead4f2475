// FindTextFault against writing, reading and comparing: it finds no fault if and only if the bag comes back, whatever
// names, values, nests, delimiters and defaults are. TALBASE_TEXTFAULT_BAGS in the environment asks for another number
// of random bags.

#include "TalBase/TextCheck.h"

#include "QBase/Convert.h"
#include "TalBase/Initializer.h"
#include "TalBase/PropertyBag.h"
#include "Tests/Support/ReadBack.h"
#include "Tests/Support/RepeatingBag.h"
#include "Tests/Support/RepointedDefaults.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <iterator>
#include <random>
#include <set>
#include <string>
#include <vector>

using QTalBase::FindTextFault;
using QTalBase::PropertyBag;
using QTalBase::TextFault;
using QTalBase::TextFaultKind;
using QTalBase::TextFaultPart;
using Support::BagPtr;
using Support::ReadsBack;

namespace
{

const QTalBase::Initializer gInitializer;

using Texts = std::vector<std::wstring>;

// Delimiters that no name and no value here holds: a bag with them takes whatever it is to hold later.
const wchar_t* const gFreeBegin = L"\x1";
const wchar_t* const gFreeEnd = L"\x2";

std::string Readable(const PropertyBag& iBag, bool iWithHeader, const wchar_t* ipBegin, const wchar_t* ipEnd)
{
    return QBase::WideCharToUTF8(Support::DescribeWritten(iBag, ipBegin, ipEnd).c_str(), false) +
           (iWithHeader ? " with header" : " without header") + ", defaults " + QBase::WideCharToUTF8(BEGIN, false) +
           " " + QBase::WideCharToUTF8(END, false);
}

struct Seen
{
    std::set<std::pair<TextFaultKind, TextFaultPart>> mFaults;
    bool mIsOneWithout = false;
};

// Compares the two answers, and that the fault's place is one of the bag.
void ExpectSameAnswer(const PropertyBag& iBag, bool iWithHeader, const wchar_t* ipBegin, const wchar_t* ipEnd,
                      Seen& oSeen)
{
    const TextFault lFault = FindTextFault(iBag, iWithHeader, ipBegin, ipEnd);
    ASSERT_EQ(lFault.IsNone(), ReadsBack(iBag, iWithHeader, ipBegin, ipEnd))
        << Readable(iBag, iWithHeader, ipBegin, ipEnd) << " kind " << static_cast<int>(lFault.mKind);
    if (lFault.IsNone())
    {
        oSeen.mIsOneWithout = true;
        return;
    }
    oSeen.mFaults.emplace(lFault.mKind, lFault.mPart);
    if (!lFault.mPath.empty())
    {
        const PropertyBag* lBag = &iBag;
        BagPtr lHeld;
        for (std::size_t lStep = 0; lStep + 1 < lFault.mPath.size(); ++lStep)
        {
            unsigned int lIndex = 0;
            while (!lBag->IsEmbedded(lIndex) || std::wstring(lBag->GetName(lIndex)) != lFault.mPath[lStep].c_str())
            {
                ++lIndex;
            }
            lHeld = lBag->GetValuePropertyBag(lIndex);
            lBag = lHeld.get();
        }
        ASSERT_EQ(std::wstring(lBag->GetName(lFault.mPosition)), lFault.mPath.back().c_str());
    }
}

void ExpectSameAnswers(const PropertyBag& iBag, Seen& oSeen)
{
    for (const bool lWithHeader : {false, true})
    {
        ExpectSameAnswer(iBag, lWithHeader, nullptr, nullptr, oSeen);
    }
}

// All texts of up to so many of the letters.
Texts TextsUpTo(std::size_t iLength, const std::wstring& iLetters)
{
    Texts lTexts{L""};
    for (std::size_t lIndex = 0; lTexts[lIndex].size() < iLength; ++lIndex)
    {
        for (const wchar_t lLetter : iLetters)
        {
            lTexts.push_back(lTexts[lIndex] + lLetter);
        }
    }
    return lTexts;
}

bool AreAllowed(const std::wstring& iBegin, const std::wstring& iEnd)
{
    return !iBegin.empty() && !iEnd.empty() && iBegin.find(iEnd) == std::wstring::npos &&
           iEnd.find(iBegin) == std::wstring::npos;
}

// Calls with every allowed pair of up to so many of the letters.
template <class Visit>
void ForEachPair(std::size_t iLength, const std::wstring& iLetters, const Visit& iVisit)
{
    const Texts lDelimiters = TextsUpTo(iLength, iLetters);
    for (const std::wstring& lBegin : lDelimiters)
    {
        for (const std::wstring& lEnd : lDelimiters)
        {
            if (AreAllowed(lBegin, lEnd))
            {
                iVisit(lBegin.c_str(), lEnd.c_str());
            }
        }
    }
}

BagPtr FreeBag()
{
    return QTalBase::CreatePropertyBag(gFreeBegin, gFreeEnd);
}

BagPtr AddNest(const BagPtr& iBag, const std::wstring& iName)
{
    iBag->SetProperty(iName.c_str(), L"k\x1v\x2", true);
    const BagPtr lNest = iBag->GetPropertyBag(iName.c_str());
    lNest->RemoveProperty(L"k");
    return lNest;
}

const wchar_t* const gPairs[][2] = {{L"++++", L"***"}, {L"[[", L"]]"},
                                    {L"<", L">"},      {L"aab", L"bba"},
                                    {L"ab", L"ba"},    {L"[", L"end"},
                                    {L"<!", L"!>"},    {L"y", L"xe"},
                                    {L"=", L"-line-"}, {L"#BeginDelimiter=#EndDelimiter=", L"#z"},
                                    {L"#", L";;"},     {L"*;", L";;"},
                                    {L"&#42", L"*+"},  {L"", L"x"},
                                    {L"xy", L"x"},     {L"Delimiter", L"##"}};

const wchar_t* const gWords[] = {L"a",   L"b",   L"<",    L">",     L"[", L"]",   L"+",  L"++",           L"*", L"**",
                                 L"***", L"+++", L"++++", L"&#42;", L";", L"&#4", L"2;", L"EndDelimiter", L"=", L"#",
                                 L"!",   L"-",   L"l",    L"e",     L"x", L"y",   L"z",  L"name",         L"",  L"End"};

// Random bags, the same everywhere.
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

    // A bag with a pair, whose names and values know nothing of it, and some of whose nests have another one.
    BagPtr Bag(const wchar_t* const* ipPair)
    {
        const BagPtr lBag = FreeBag();
        hFill(lBag, 0);
        lBag->ChangeDelimiters(ipPair[0], ipPair[1]);
        hChangeNest(lBag);
        return lBag;
    }

    // The same names again, now and then.
    BagPtr RepeatingBag(const wchar_t* const* ipPair)
    {
        const QBase::SmartPtrI<Support::RepeatingBag> lBag(new Support::RepeatingBag(gFreeBegin, gFreeEnd));
        for (unsigned int lLeft = Below(3); lLeft > 0; --lLeft)
        {
            lBag->Plain(Word(1).c_str(), hValue().c_str());
            lBag->Nest(Word(1).c_str(), L"k\x1v\x2");
        }
        lBag->ChangeDelimiters(ipPair[0], ipPair[1]);
        return Below(2) == 0 ? lBag->Cloned() : BagPtr(lBag);
    }

    std::wstring Word(unsigned int iPieces)
    {
        std::wstring lWord;
        for (unsigned int lLeft = 1 + Below(iPieces); lLeft > 0; --lLeft)
        {
            lWord += gWords[Below(std::size(gWords))];
        }
        return lWord;
    }

private:
    std::wstring hValue()
    {
        const std::wstring lValue = Word(3);
        return lValue.empty() ? L"v" : lValue;
    }

    void hFill(const BagPtr& iBag, unsigned int iDepth)
    {
        const unsigned int lCount = Below(16) == 0 ? 0 : 1 + Below(3);
        for (unsigned int lEntry = 0; lEntry < lCount; ++lEntry)
        {
            const std::wstring lName = Below(4) == 0 ? Word(2) : L"n" + std::to_wstring(lEntry) + Word(1);
            if (iDepth < 3 && Below(3) == 0)
            {
                hFill(AddNest(iBag, lName), iDepth + 1);
            }
            else
            {
                iBag->SetProperty(lName.c_str(), hValue().c_str(), false);
            }
        }
    }

    void hChangeNest(const BagPtr& iBag)
    {
        const unsigned int lCount = iBag->GetCount();
        if (lCount != 0 && iBag->IsEmbedded(lCount - 1) && Below(8) == 0)
        {
            iBag->GetValuePropertyBag(lCount - 1)->ChangeDelimiters(L"{{", L"}}");
        }
    }

    std::mt19937 mEngine;
};

unsigned long CountOfBags()
{
    const char* lAsked = std::getenv("TALBASE_TEXTFAULT_BAGS");
    return lAsked != nullptr ? std::strtoul(lAsked, nullptr, 10) : 60000;
}

} // namespace

// A plain property, two of them, and one in a nest, of all short texts of the delimiters' letters.
TEST(TextFaultDifferential, AllShortProperties)
{
    const Texts lTexts = TextsUpTo(3, L"ab");
    Seen lSeen;
    ForEachPair(3, L"ab", [&](const wchar_t* ipBegin, const wchar_t* ipEnd) {
        for (const std::wstring& lName : lTexts)
        {
            for (std::size_t lValue = 1; lValue < lTexts.size(); ++lValue)
            {
                const BagPtr lBag = FreeBag();
                lBag->SetProperty(lName.c_str(), lTexts[lValue].c_str(), false);
                lBag->ChangeDelimiters(ipBegin, ipEnd);
                ExpectSameAnswers(*lBag, lSeen);
            }
        }
    });
    EXPECT_TRUE(lSeen.mIsOneWithout);
    EXPECT_EQ(lSeen.mFaults.count({TextFaultKind::RunsIntoDelimiter, TextFaultPart::Value}), 1U);
}

TEST(TextFaultDifferential, AllShortPairsOfProperties)
{
    const Texts lTexts{L"a", L"b", L"ab", L"ba", L"aa", L"bb", L"c", L"ac", L"cb"};
    Seen lSeen;
    ForEachPair(2, L"ab", [&](const wchar_t* ipBegin, const wchar_t* ipEnd) {
        for (std::size_t lChoice = 0; lChoice < 9 * 9 * 9 * 9; ++lChoice)
        {
            const BagPtr lBag = FreeBag();
            lBag->SetProperty(lTexts[lChoice % 9].c_str(), lTexts[lChoice / 9 % 9].c_str(), false);
            lBag->SetProperty(lTexts[lChoice / 81 % 9].c_str(), lTexts[lChoice / 729].c_str(), false);
            lBag->ChangeDelimiters(ipBegin, ipEnd);
            ExpectSameAnswers(*lBag, lSeen);
        }
    });
    EXPECT_TRUE(lSeen.mIsOneWithout);
}

TEST(TextFaultDifferential, AllShortPropertiesOfNests)
{
    const Texts lTexts{L"a", L"b", L"ab", L"ba", L"aa", L"bb", L"c", L"ac", L"cb"};
    Seen lSeen;
    ForEachPair(2, L"ab", [&](const wchar_t* ipBegin, const wchar_t* ipEnd) {
        for (std::size_t lChoice = 0; lChoice < 9 * 9 * 9 * 9; ++lChoice)
        {
            const BagPtr lBag = FreeBag();
            lBag->SetProperty(lTexts[lChoice % 9].c_str(), L"c", false);
            const BagPtr lNest = AddNest(lBag, lTexts[lChoice / 9 % 9]);
            lNest->SetProperty(lTexts[lChoice / 81 % 9].c_str(), lTexts[lChoice / 729].c_str(), false);
            lBag->ChangeDelimiters(ipBegin, ipEnd);
            ExpectSameAnswers(*lBag, lSeen);
        }
    });
    EXPECT_TRUE(lSeen.mIsOneWithout);
}

// Escapes of a value share characters with these defaults, and a run that is cut short may be escaped.
TEST(TextFaultDifferential, AllShortPropertiesWithDefaultsLikeEscapes)
{
    const Texts lParts{L"*", L"&#42;", L";", L"a", L"&"};
    Texts lTexts = lParts;
    for (const std::wstring& lFirst : lParts)
    {
        for (const std::wstring& lSecond : lParts)
        {
            lTexts.push_back(lFirst + lSecond);
        }
    }
    Seen lSeen;
    ForEachPair(2, L";&*", [&](const wchar_t* ipBegin, const wchar_t* ipEnd) {
        const Support::RepointedDefaults lDefaults(ipBegin, ipEnd);
        for (const std::wstring& lName : lTexts)
        {
            for (const std::wstring& lValue : lTexts)
            {
                const BagPtr lBag = FreeBag();
                lBag->SetProperty(lName.c_str(), lValue.c_str(), false);
                lBag->SetProperty(L"b", L"&#42;", false);
                lBag->ChangeDelimiters(ipBegin, ipEnd);
                ExpectSameAnswers(*lBag, lSeen);
            }
        }
    });
    EXPECT_EQ(lSeen.mFaults.count({TextFaultKind::NotEscaped, TextFaultPart::Value}), 1U);
}

TEST(TextFaultDifferential, RandomBags)
{
    const unsigned long lBags = CountOfBags();
    Seen lSeen;
    for (unsigned int lSeed = 0; lSeed < lBags && !testing::Test::HasFatalFailure(); ++lSeed)
    {
        Trial lTrial(lSeed);
        const wchar_t* const* lDefaults = lTrial.Below(4) == 0 ? lTrial.Pair() : gPairs[0];
        const Support::RepointedDefaults lRepointed(lDefaults[0], lDefaults[1]);
        const wchar_t* const* lPair = lTrial.Pair();
        const wchar_t* const* lOwn = AreAllowed(lPair[0], lPair[1]) ? lPair : gPairs[2];
        const BagPtr lBag = lTrial.Below(4) == 0 ? lTrial.RepeatingBag(lOwn) : lTrial.Bag(lOwn);
        const wchar_t* const* lGiven = lTrial.Pair();
        const bool lWithHeader = lTrial.Below(2) == 0;
        ExpectSameAnswer(*lBag, lWithHeader, nullptr, nullptr, lSeen);
        ExpectSameAnswer(*lBag, lWithHeader, lGiven[0], lGiven[1], lSeen);
        ExpectSameAnswer(*lBag, lWithHeader, lTrial.Below(2) == 0 ? lGiven[0] : nullptr, lGiven[1], lSeen);
    }
    EXPECT_TRUE(lSeen.mIsOneWithout);
    EXPECT_EQ(lSeen.mFaults.size(), 12U); // every one but zero characters and empty values, which no bag here holds
}
