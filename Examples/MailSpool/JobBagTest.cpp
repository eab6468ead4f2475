#include "JobBag.h"

#include "Compare.h"
#include "Display.h"
#include "Errors.h"
#include "Escapes.h"
#include "JobText.h"
#include "Window.h"

#include "TalBase/Initializer.h"

#include <gtest/gtest.h>

#include <random>

namespace MailSpool
{

namespace
{

const QTalBase::Initializer gInitializer;

JobSettings MakeSettings()
{
    JobSettings lSettings;
    lSettings.mJob = {0x12345678, 0x9abc, 0x4def, {0x80, 1, 2, 3, 4, 5, 6, 7}};
    lSettings.mSource = L"/mail/1.eml";
    lSettings.mUser = L"anonymous";
    lSettings.mPassword = L"sesame";
    return lSettings;
}

// Through the bag, its text, the bytes of a file and back.
BagPtr Travel(const QTalBase::PropertyBag& iJob)
{
    return ReadJobText(WriteJobText(iJob));
}

void ExpectSame(const std::string& iBytes)
{
    const MailMessage lMessage = ParseMessage(iBytes);
    const BagPtr lJob = MakeJobBag(lMessage, MakeSettings());
    const BagPtr lStored = Travel(*lJob);
    EXPECT_EQ(FindDifferences(*lJob, lMessage, *lStored), std::vector<std::wstring>{}) << iBytes;

    const MailMessage lRead = GetMessage(*lStored);
    EXPECT_EQ(lRead.mMboxLine, lMessage.mMboxLine);
    EXPECT_EQ(lRead.mHeaderCharset, lMessage.mHeaderCharset);
    EXPECT_EQ(lRead.mLineEnding, lMessage.mLineEnding);
    EXPECT_EQ(lRead.mSize, iBytes.size());
    EXPECT_EQ(lRead.mIsEightBit, lMessage.mIsEightBit);
    const std::string lBody = EncodeText(lRead.mBody, lRead.mBodyCharset);
    ASSERT_LE(lBody.size(), iBytes.size());
    EXPECT_EQ(lBody, iBytes.substr(iBytes.size() - lBody.size())) << iBytes;
}

std::string GetJobText(const std::string& iMessage)
{
    return WriteJobText(*MakeJobBag(ParseMessage(iMessage), MakeSettings()));
}

} // namespace

TEST(Escapes, EscapeValueWritesWhatABagCannotCarry)
{
    EXPECT_EQ(EscapeValue(L""), L"&#;");
    EXPECT_EQ(EscapeValue(L"a*b+c"), L"a*b+c");
    EXPECT_EQ(EscapeValue(L"&#42; & &#;"), L"&#38;#42; &#38; &#38;#;");
    EXPECT_EQ(EscapeValue(std::wstring_view(L"a\0b", 3)), L"a&#0;b");
}

TEST(Escapes, EscapeNameWritesWhatATextFormCannotCarry)
{
    EXPECT_EQ(EscapeName(L""), L"&#;");
    EXPECT_EQ(EscapeName(L"a+"), L"a&#43;");
    EXPECT_EQ(EscapeName(L"***"), L"&#42;&#42;&#42;");
    EXPECT_EQ(EscapeName(L"EndDelimiter"), L"&#69;ndDelimiter");
    EXPECT_EQ(EscapeName(L"EndDelimiters&"), L"&#69;ndDelimiters&#38;");
    EXPECT_EQ(EscapeName(L"AnEndDelimiter"), L"AnEndDelimiter");
    EXPECT_EQ(EscapeName(L"Message-ID"), L"Message-ID");
}

TEST(Escapes, UnescapeLeavesWhatIsNoReference)
{
    for (const std::wstring_view lText :
         {L"&", L"&#", L"&#42", L"&#x;", L"&#1114112;", L"&amp;", L"&&##;;", L"&#99999999999999999999999999;"})
    {
        EXPECT_EQ(Unescape(lText), lText);
    }
    EXPECT_EQ(Unescape(L"&#;"), L"");
    EXPECT_EQ(Unescape(L"&#&#65;&#066;"), L"&#AB");
    EXPECT_EQ(Unescape(L"&#38;#42;"), L"&#42;");
    EXPECT_EQ(Unescape(L"&#0;"), std::wstring(1, L'\0'));
}

TEST(JobBag, MakeJobBagSetsEveryProperty)
{
    JobSettings lSettings = MakeSettings();
    lSettings.mWindow = MakeWindow(L"b.example", {{L"", 22, 1}, {L"b.example", 9, 9}, {L"c.example", 5, 5}});
    const BagPtr lJob = MakeJobBag(
        ParseMessage("From: Ann <ann@a.example>\nTo: ben@b.example\nSubject: \nReceived: 1\nreceived: 2\n\n*&+\n"),
        lSettings);
    EXPECT_EQ(std::wstring(lJob->GetString(true, nullptr, nullptr, true)),
              L"EndDelimiter***BeginDelimiter++++***"
              L"Job++++12345678-9abc-4def-8001-020304050607***Queued++++1970-01-01T00:00:00Z***Attempts++++0***"
              L"Source++++/mail/1.eml***Route++++b.example***b.exampleDeliveryWindow++++ 0, 1, 9,22,23,***"
              L"Sender++++ann@a.example***Recipient++++ben@b.example***Subject++++&#;***Date++++&#;***"
              L"Message-ID++++&#;***Size++++83***EightBit++++false***MboxLine++++&#;***HeaderCharset++++UTF-8***"
              L"BodyCharset++++UTF-8***LineEnding++++LF***Body++++&#42;&#38;&#43;\n***"
              L"Header++++From++++Ann <ann@a.example>***To++++ben@b.example***Subject++++&#;***Received++++1***"
              L"received 2++++2******"
              L"Transport++++Protocol++++ftp***Host++++b.example***Port++++21***FTPServerUser++++anonymous***"
              L"FTPServerPassword++++sesame******");
    EXPECT_EQ(DrawDay(*GetWindow(*lJob)), L"..#######.############..");
}

TEST(JobBag, WindowOfARouteWithDelimiterCharactersComesBack)
{
    JobSettings lSettings = MakeSettings();
    lSettings.mWindow = MakeWindow(L"", {{L"", 0, 11}});
    const BagPtr lJob = MakeJobBag(ParseMessage("To: a@++++***\n\n"), lSettings);
    EXPECT_EQ(GetText(*lJob, gRouteName), L"++++***");
    EXPECT_EQ(DrawDay(*GetWindow(*Travel(*lJob))), L"............############");
}

TEST(JobBag, CheckJobRefusesWhatIsNoValue)
{
    const std::pair<const wchar_t*, const wchar_t*> lBad[] = {{gJobName, L"12345678-9ABC-4DEF-8001-020304050607"},
                                                              {gJobName, L"../../etc/passwd"},
                                                              {gQueuedName, L"yesterday"},
                                                              {gQueuedName, L"2026-11-20T25:00:00Z"},
                                                              {gAttemptsName, L"-1"},
                                                              {gAttemptsName, L"many"},
                                                              {gSizeName, L"12 "},
                                                              {L"EightBit", L"True"}};
    for (const auto& [lName, lValue] : lBad)
    {
        const BagPtr lJob = MakeJobBag(ParseMessage("To: a@a.example\n"), MakeSettings());
        EXPECT_NO_THROW(CheckJob(*lJob));
        lJob->SetProperty(lName, lValue, false);
        try
        {
            CheckJob(*lJob);
            ADD_FAILURE() << ToUtf8(lName);
        }
        catch (const DamageError& lError)
        {
            EXPECT_EQ(lError.what(), "the job is damaged: '" + ToUtf8(lValue) + "' is no value for " + ToUtf8(lName));
        }
    }
}

TEST(JobBag, CheckJobRefusesADamagedWindow)
{
    const BagPtr lJob = MakeJobBag(ParseMessage("To: a@a.example\n"), MakeSettings());
    lJob->SetProperty(L"a.exampleDeliveryWindow", L" 5;", false);
    EXPECT_THROW(CheckJob(*lJob), QTalBase::DeliveryWindowUserErrorException);
    lJob->SetProperty(L"a.exampleDeliveryWindow", L"24,", false);
    EXPECT_THROW(CheckJob(*lJob), QTalBase::DeliveryWindowUserErrorException);
}

TEST(JobBag, EveryKindOfMessageComesBack)
{
    ExpectSame("A: 1\n\nbody");
    ExpectSame("A: 1\n\n");
    ExpectSame("A: 1\n");
    ExpectSame("A:");
    ExpectSame("EndDelimiter: first in the header\n\nEndDelimiter***");
    ExpectSame("From x y\nA: &#42;\nA: *\na: +\nA: ***\nno name\nno name\n\n&#42;*&#43;+&#;&#38;&");
    ExpectSame("++++: 1\n***: 2\na+: 3\n+a: 4\n*: 5\n&#42;: 6\n&: 7\n\n++++***");
    ExpectSame(std::string("A: x\0y\n\n\0\0*", 12));
    ExpectSame("A: \xFC\n\n\xFF\xFE");
    ExpectSame("A: \xC3\xBC\n\n\xEF\xBB\xBF\xF0\x9D\x84\x9E");
    ExpectSame("A: 1\r\nB: x\r\n\ty\r\n\r\nx\ny\rz\r\n");
}

TEST(JobBag, GeneratedMessagesComeBack)
{
    std::mt19937 lRandom(20261120);
    const std::string_view lPieces[] = {"*",
                                        "+",
                                        "***",
                                        "++++",
                                        "&",
                                        "&#42;",
                                        "#",
                                        ";",
                                        "42",
                                        " ",
                                        "\t",
                                        "\r",
                                        "\n",
                                        "\n\n",
                                        ":",
                                        "A",
                                        "EndDelimiter",
                                        "BeginDelimiter",
                                        "\xC3\xBC",
                                        "\xE9",
                                        std::string_view("\0", 1),
                                        "From ",
                                        "word"};
    std::uniform_int_distribution<std::size_t> lPiece(0, std::size(lPieces) - 1);
    for (int lRound = 0; lRound < 500; ++lRound)
    {
        std::string lBytes = "A: b\n";
        for (std::size_t lCount = lRandom() % 40; lCount > 0; --lCount)
        {
            lBytes += lPieces[lPiece(lRandom)];
        }
        ExpectSame(lBytes);
    }
}

TEST(JobBag, ReadJobTextCutAnywhereThrows)
{
    const std::string lText = GetJobText("From: a@a.example\nSubject: x\nX-1: &\n\nbody*\n");
    for (std::size_t lLength = 0; lLength < lText.size(); ++lLength)
    {
        EXPECT_ANY_THROW(ReadJobText(lText.substr(0, lLength))) << lLength;
    }
    EXPECT_NO_THROW(ReadJobText(lText));
}

TEST(JobBag, ReadJobTextBetweenPropertiesNamesWhatIsMissing)
{
    const std::string lText = GetJobText("From: a@a.example\n\nbody\n");
    const auto lGetDamage = [&](const char* ipCutBefore) -> std::string {
        try
        {
            ReadJobText(lText.substr(0, lText.find(ipCutBefore)));
            return "none";
        }
        catch (const DamageError& lError)
        {
            return lError.what();
        }
    };
    EXPECT_EQ(lGetDamage("Transport++++"), "the job is not complete: there is no Transport");
    EXPECT_EQ(lGetDamage("Header++++"), "the job is not complete: there is no Header");
    EXPECT_EQ(lGetDamage("Body++++"), "the job is not complete: there is no Body");
    EXPECT_EQ(lGetDamage("Job++++"), "the job is not complete: there is no Sender");
}

TEST(JobBag, ReadJobTextWithZeroCharacterThrows)
{
    EXPECT_THROW(ReadJobText(GetJobText("A: 1\n\n") + std::string(1, '\0')), QTalBase::PropertyBagException);
}

TEST(Compare, FindDifferencesNamesEachOne)
{
    const MailMessage lMessage = ParseMessage("To: a@a.example\nA: 1\nB: 2\n\nbody\n");
    const BagPtr lFresh = MakeJobBag(lMessage, MakeSettings());
    const auto lFind = [&](const char* ipBytes) {
        return FindDifferences(*lFresh, lMessage, *MakeJobBag(ParseMessage(ipBytes), MakeSettings()));
    };
    using Texts = std::vector<std::wstring>;
    EXPECT_EQ(lFind("To: a@a.example\nA: 1\nB: 2\n\nbody\n"), Texts{});
    EXPECT_EQ(lFind("To: a@a.example\nB: 2\nA: 1\n\nbody\n"), (Texts{L"header field 2, A", L"header field 3, B"}));
    EXPECT_EQ(lFind("To: a@a.example\nA: 1\nB: 2\n\nboby\n"),
              (Texts{L"the property Body", L"the bag of the message", L"the body, from byte 2"}));
    EXPECT_EQ(lFind("To: a@a.example\nA: 1\nB 2: \n\nbody\n").front(), L"the property Size");
    EXPECT_EQ(lFind("To: b@a.example\nA: 1\n\nbody\n"),
              (Texts{L"the property Recipient", L"the property Size", L"the bag of the message", L"header field 1, To",
                     L"the number of header fields: 3 in the file, 2 in the job"}));
}

TEST(Display, MakeDisplayBagHasNoPasswordAtAnyDepthAndTheJobKeepsIt)
{
    const BagPtr lDeep(QTalBase::CreatePropertyBag());
    lDeep->SetProperty(L"FTPServerPassword", L"deep secret", false);
    lDeep->SetProperty(L"Host", L"h*", false);
    const BagPtr lMiddle(QTalBase::CreatePropertyBag());
    lMiddle->EmbedProperty(L"Deep", lDeep.get());
    lMiddle->SetProperty(L"FTPServerPassword", L"middle secret", false);
    const BagPtr lBag(QTalBase::CreatePropertyBag());
    lBag->SetProperty(L"FTPServerPassword", L"top secret", false);
    lBag->SetProperty(L"Name", L"+", false);
    lBag->EmbedProperty(L"Middle", lMiddle.get());
    const std::wstring lBefore(lBag->GetString(true, nullptr, nullptr, true));

    EXPECT_EQ(std::wstring(MakeDisplayBag(*lBag)->GetString(false, nullptr, nullptr, true)),
              L"Name++++&#43;***Middle++++Deep++++Host++++h&#42;*********");
    EXPECT_EQ(std::wstring(lBag->GetString(true, nullptr, nullptr, true)), lBefore);
}

TEST(Display, MakeDisplayMessageLeavesPropertyTextsOut)
{
    EXPECT_EQ(MakeDisplayMessage(L"QTalBase::CreatePropertyBag; String must be malformed - lPropertyString: "
                                 L"FTPServerPassword++++sesame***"),
              L"QTalBase::CreatePropertyBag; String must be malformed - lPropertyString: (30 characters not shown)");
    EXPECT_EQ(MakeDisplayMessage(L"x; ipValue may not contain the delimiters. ipValue: sesame, begin delimiter: ++++"),
              L"x; ipValue may not contain the delimiters. ipValue: (29 characters not shown)");
    EXPECT_EQ(MakeDisplayMessage(L"QTalBase::PropertyBagImpl::GetNextToken; A token was expected"),
              L"QTalBase::PropertyBagImpl::GetNextToken; A token was expected");
}

} // namespace MailSpool
