#include "TalBase/Bytes.h"

#include "QBase/Convert.h"
#include "TalBase/Initializer.h"
#include "TalBase/PropertyBag.h"
#include "Tests/Support/BagTexts.h"
#include "Tests/Support/Choices.h"
#include "Tests/Support/Describe.h"
#include "Tests/Support/Expect.h"
#include "Tests/Support/FailingNew.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace
{

using namespace std::string_view_literals;
using QTalBase::CreatePropertyBag;
using QTalBase::CreatePropertyBagFromUTF8;
using QTalBase::PropertyBag;
using QTalBase::PropertyBagException;
using QTalBase::PropertyBagToUTF8;
using Support::BagPtr;
using Support::Describe;

const QTalBase::Initializer gInitializer;

const std::string gHeader = "EndDelimiter***BeginDelimiter++++***";

PropertyBag* CreateInTwoSteps(std::string_view iBytes)
{
    return CreatePropertyBag(QBase::UTF8ToWideChar(iBytes, true).c_str());
}

// The bag, or what was thrown: its class, and its text.
std::wstring OutcomeOf(const std::function<PropertyBag*()>& iCreate)
{
    try
    {
        return Describe(BagPtr(iCreate()));
    }
    catch (const PropertyBagException& lRefused)
    {
        return std::wstring(L"PropertyBagException: ") + lRefused.GetMessage();
    }
    catch (const QBase::Message& lRefused)
    {
        return std::wstring(L"Message: ") + lRefused.GetMessage();
    }
    catch (const std::out_of_range& lRefused)
    {
        return L"out_of_range: " + QBase::UTF8ToWideChar(lRefused.what(), false);
    }
}

void ExpectAsInTwoSteps(std::string_view iBytes)
{
    const std::wstring lOutcome = OutcomeOf([&] { return CreatePropertyBagFromUTF8(iBytes); });
    EXPECT_EQ(lOutcome, OutcomeOf([&] { return CreateInTwoSteps(iBytes); })) << testing::PrintToString(iBytes);
}

TEST(Bytes, CreatePropertyBagFromUTF8ReadsATextForm)
{
    const BagPtr lBag(
        CreatePropertyBagFromUTF8(gHeader + "Name++++J\xC3\xB6rg &#43; \xE4\xB8\xAD***n++++k++++v******"));
    EXPECT_STREQ(lBag->GetProperty(L"Name").c_str(), L"J\u00F6rg + \u4E2D");
    EXPECT_EQ(Describe(lBag), L"'++++' '***' {'Name'='J\u00F6rg &#43; \u4E2D' 'n'={'k'='v'}}");
}

TEST(Bytes, CreatePropertyBagFromUTF8OfNoBytesIsEmpty)
{
    EXPECT_EQ(Describe(BagPtr(CreatePropertyBagFromUTF8(""))), L"'++++' '***' {}");
    EXPECT_EQ(Describe(BagPtr(CreatePropertyBagFromUTF8(std::string_view()))), L"'++++' '***' {}");
}

TEST(Bytes, CreatePropertyBagFromUTF8IllFormedThrows)
{
    EXPECT_MESSAGE(CreatePropertyBagFromUTF8(gHeader + "a++++\xC3***"), QBase::Message,
                   L"QBase::UTF8ToWideChar; Ill-formed UTF-8 at byte offset 41");
    EXPECT_MESSAGE(CreatePropertyBagFromUTF8("\xED\xA0\x80"), QBase::Message,
                   L"QBase::UTF8ToWideChar; Ill-formed UTF-8 at byte offset 0");
}

TEST(Bytes, CreatePropertyBagFromUTF8ZeroByteThrows)
{
    EXPECT_MESSAGE(CreatePropertyBagFromUTF8("ab\0c"sv), PropertyBagException,
                   L"QTalBase::CreatePropertyBagFromUTF8; Zero byte at offset 2");
    EXPECT_MESSAGE(CreatePropertyBagFromUTF8(gHeader + std::string("a++++b***\0", 10)), PropertyBagException,
                   L"QTalBase::CreatePropertyBagFromUTF8; Zero byte at offset 45");
}

TEST(Bytes, CreatePropertyBagFromUTF8TellsTheFirstOfSeveral)
{
    EXPECT_MESSAGE(CreatePropertyBagFromUTF8("a\0\xFF"sv), PropertyBagException,
                   L"QTalBase::CreatePropertyBagFromUTF8; Zero byte at offset 1");
    EXPECT_MESSAGE(CreatePropertyBagFromUTF8("a\xC3\0"sv), QBase::Message,
                   L"QBase::UTF8ToWideChar; Ill-formed UTF-8 at byte offset 1");
}

TEST(Bytes, CreatePropertyBagFromUTF8BadTextThrows)
{
    EXPECT_MESSAGE(CreatePropertyBagFromUTF8("\xEF\xBB\xBF" + gHeader), PropertyBagException,
                   L"QTalBase::CreatePropertyBag; String must be malformed - lPropertyString: \uFEFF" +
                       std::wstring(gHeader.begin(), gHeader.end()));
    EXPECT_MESSAGE(CreatePropertyBagFromUTF8(gHeader + "a***"), PropertyBagException,
                   L"QTalBase::PropertyBagImpl::ExtractData; A Begin token was expected");
    EXPECT_THROW(CreatePropertyBagFromUTF8("EndDelimiter***Begin"), std::out_of_range);
}

TEST(Bytes, PropertyBagToUTF8WritesHeaderAndAllThatIsSensitive)
{
    const BagPtr lBag(CreatePropertyBag(L"[[", L"]]"));
    lBag->SetProperty(L"FTPServerPassword", L"\u00E4\U0001F600", false);
    EXPECT_EQ(PropertyBagToUTF8(*lBag),
              "EndDelimiter]]BeginDelimiter[[]]FTPServerPassword[[\xC3\xA4\xF0\x9F\x98\x80]]");
}

TEST(Bytes, PropertyBagToUTF8WhatUTF8CannotCarryThrows)
{
    const BagPtr lBag(CreatePropertyBag());
    const wchar_t lSurrogate[] = {static_cast<wchar_t>(0xD800), L'\0'};
    lBag->SetProperty(L"a", lSurrogate, false);
    EXPECT_MESSAGE(PropertyBagToUTF8(*lBag), QBase::Message,
                   L"QBase::WideCharToUTF8; UTF-8 cannot carry the character at index 41");
}

// Texts of all shapes, some of them damaged, and what is left of them at every cut.
TEST(Bytes, RandomTextsAreReadAndWrittenAsInTwoSteps)
{
    Support::RandomChoices lChoices(1);
    Support::BagTexts lTexts(lChoices);
    for (int lTime = 0; lTime < 3000; ++lTime)
    {
        const Support::DelimiterPair lPair = lTexts.Pair();
        std::wstring lText = lTexts.Text(lPair);
        lText = lChoices.Once(2) ? lTexts.Mutated(lText) : lText;
        std::string lBytes = QBase::WideCharToUTF8(lText.c_str(), false);
        if (!lBytes.empty() && lChoices.Once(8))
        {
            lBytes[lBytes.size() / 2] = static_cast<char>(0x80 + lChoices.Below(128));
        }
        ExpectAsInTwoSteps(lBytes);
        ExpectAsInTwoSteps(std::string_view(lBytes).substr(0, lBytes.size() - lBytes.size() / 3));
        const std::wstring lRead = OutcomeOf([&] { return CreatePropertyBagFromUTF8(lBytes); });
        if (lRead.rfind(L"'", 0) == 0)
        {
            const BagPtr lBag(CreatePropertyBagFromUTF8(lBytes));
            EXPECT_EQ(PropertyBagToUTF8(*lBag),
                      QBase::WideCharToUTF8(lBag->GetString(true, nullptr, nullptr, true).c_str(), true));
        }
    }
}

std::size_t PeakOf(const std::function<void()>& iRun)
{
    const std::size_t lBefore = Support::BytesHeld();
    Support::RestartPeak();
    iRun();
    return Support::PeakBytesHeld() - lBefore;
}

// Beside what is made, the wide text is all that is held.
TEST(Bytes, BothHoldOneWideTextInBetween)
{
    std::wstring lText(gHeader.begin(), gHeader.end());
    for (int lIndex = 0; lIndex < 10000; ++lIndex)
    {
        lText += L"Name" + std::to_wstring(lIndex) + L"++++\u00E4 value***";
    }
    const std::string lBytes = QBase::WideCharToUTF8(lText.c_str(), true);
    const std::size_t lBesides = 1000;
    BagPtr lBag;
    const std::size_t lOfText = PeakOf([&] { lBag = CreatePropertyBag(lText.c_str()); });
    lBag = nullptr;
    EXPECT_LE(PeakOf([&] { lBag = CreatePropertyBagFromUTF8(lBytes); }),
              lOfText + lText.size() * sizeof(wchar_t) + lBesides);
    std::string lWritten;
    EXPECT_LE(PeakOf([&] { lWritten = PropertyBagToUTF8(*lBag); }),
              lText.size() * sizeof(wchar_t) + lBytes.size() + lBesides);
    EXPECT_EQ(lWritten, lBytes);
}

} // namespace
