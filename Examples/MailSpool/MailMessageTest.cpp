#include "MailMessage.h"

#include "Errors.h"
#include "MailAddress.h"

#include <gtest/gtest.h>

namespace MailSpool
{

namespace
{

using Fields = std::vector<std::pair<std::wstring, std::wstring>>;

Fields GetPairs(const MailMessage& iMessage)
{
    Fields lPairs;
    for (const HeaderField& lField : iMessage.mFields)
    {
        lPairs.emplace_back(lField.mName, lField.mValue);
    }
    return lPairs;
}

std::string GetDamage(std::string_view iBytes)
{
    try
    {
        ParseMessage(iBytes);
        return "none";
    }
    catch (const DamageError& lError)
    {
        return lError.what();
    }
}

} // namespace

TEST(MailMessage, ParsePlainGivesFieldsAndBody)
{
    const MailMessage lMessage = ParseMessage("From: a@b.example\nSubject:  two words \n\nline 1\nline 2");
    EXPECT_EQ(GetPairs(lMessage), (Fields{{L"From", L"a@b.example"}, {L"Subject", L"two words"}}));
    EXPECT_EQ(lMessage.mBody, L"line 1\nline 2");
    EXPECT_EQ(lMessage.mMboxLine, L"");
    EXPECT_EQ(lMessage.mLineEnding, LineEnding::Lf);
    EXPECT_EQ(lMessage.mSize, 53u);
}

TEST(MailMessage, ParseCrLfKeepsBodyBytes)
{
    const MailMessage lMessage = ParseMessage("A: 1\r\nB: 2\r\n\r\nx\r\n\r\ny\r\n");
    EXPECT_EQ(GetPairs(lMessage), (Fields{{L"A", L"1"}, {L"B", L"2"}}));
    EXPECT_EQ(lMessage.mBody, L"x\r\n\r\ny\r\n");
    EXPECT_EQ(lMessage.mLineEnding, LineEnding::CrLf);
}

TEST(MailMessage, ParseMixedLineEndsFindsTheFirstEmptyLine)
{
    const MailMessage lMessage = ParseMessage("A: 1\nB: x\ry\r\n\nbody");
    EXPECT_EQ(GetPairs(lMessage), (Fields{{L"A", L"1"}, {L"B", L"x\ry"}}));
    EXPECT_EQ(lMessage.mBody, L"body");
    EXPECT_EQ(lMessage.mLineEnding, LineEnding::Mixed);
}

TEST(MailMessage, ParseFoldedFieldRemovesTheLineEndAlone)
{
    const MailMessage lMessage = ParseMessage("Subject: one\r\n\ttwo\r\n  three\r\n \r\n four\r\nTo: x\r\n\r\n");
    EXPECT_EQ(GetPairs(lMessage), (Fields{{L"Subject", L"one\ttwo  three  four"}, {L"To", L"x"}}));
}

TEST(MailMessage, ParseMboxLineKeepsIt)
{
    const MailMessage lMessage = ParseMessage("From ann@a.example  Fri Nov 20\nTo: b@b.example\n\nFrom here\n");
    EXPECT_EQ(lMessage.mMboxLine, L"From ann@a.example  Fri Nov 20");
    EXPECT_EQ(GetPairs(lMessage), (Fields{{L"To", L"b@b.example"}}));
    EXPECT_EQ(lMessage.mBody, L"From here\n");
    EXPECT_EQ(GetPairs(ParseMessage("From : ann@a.example\n")), (Fields{{L"From", L"ann@a.example"}}));
}

TEST(MailMessage, ParseDamagedLinesKeepsThemWithoutName)
{
    const MailMessage lMessage = ParseMessage(" starts folded\nno colon\n folded\nTwo Words: x\n: y\nA \t: z\n\n");
    EXPECT_EQ(
        GetPairs(lMessage),
        (Fields{
            {L"", L"starts folded"}, {L"", L"no colon folded"}, {L"", L"Two Words: x"}, {L"", L": y"}, {L"A", L"z"}}));
}

TEST(MailMessage, ParseWithoutFieldThrows)
{
    for (const std::string_view lBytes : {"", "\n", "\nSubject: in the body\n", "just text\n", "From x\n\n", "\r\n"})
    {
        EXPECT_EQ(GetDamage(lBytes), "not a message: there is no header field") << lBytes;
    }
}

TEST(MailMessage, ParseTooManyFieldsThrows)
{
    std::string lBytes;
    for (std::size_t lCount = 0; lCount < gMaxHeaderFields; ++lCount)
    {
        lBytes += "X: y\n";
    }
    EXPECT_EQ(GetDamage(lBytes), "none");
    EXPECT_EQ(GetDamage(lBytes + "X: y\n"), "the message has more than 10000 header fields");
}

TEST(MailMessage, ParseNonUtf8ReadsLatin1EachPartForItself)
{
    const MailMessage lMessage = ParseMessage("Subject: K\xF6ln\n\nM\xC3\xBCnchen");
    EXPECT_EQ(lMessage.mHeaderCharset, Charset::Latin1);
    EXPECT_EQ(lMessage.mFields.at(0).mValue, L"K\u00F6ln");
    EXPECT_EQ(lMessage.mBodyCharset, Charset::Utf8);
    EXPECT_EQ(lMessage.mBody, L"M\u00FCnchen");
    EXPECT_TRUE(lMessage.mIsEightBit);
    EXPECT_FALSE(ParseMessage("Subject: Koeln\n\n\x7F").mIsEightBit);
}

TEST(MailMessage, FindFieldIgnoresCase)
{
    const MailMessage lMessage = ParseMessage("message-id: <1>\nMESSAGE-ID: <2>\n");
    ASSERT_NE(FindField(lMessage, L"Message-ID"), nullptr);
    EXPECT_EQ(FindField(lMessage, L"Message-ID")->mValue, L"<1>");
    EXPECT_EQ(FindField(lMessage, L"Subject"), nullptr);
}

TEST(Charset, EveryByteStringComesBack)
{
    for (const std::string_view lBytes :
         {std::string_view(""), std::string_view("plain"), std::string_view("z\0e\0", 4), std::string_view("\0", 1),
          std::string_view("\xC3\xBC \xF0\x9D\x84\x9E"), std::string_view("\xFC\0\xFF", 3), std::string_view("\xC3"),
          std::string_view("\xED\xA0\x80"), std::string_view("\xF4\x90\x80\x80"), std::string_view("\xC0\x80")})
    {
        const DecodedText lDecoded = DecodeBytes(lBytes);
        EXPECT_EQ(EncodeText(lDecoded.mText, lDecoded.mCharset), lBytes);
        EXPECT_EQ(GetCharsetByName(GetCharsetName(lDecoded.mCharset)), lDecoded.mCharset);
    }
    EXPECT_EQ(DecodeBytes("\xC3\xBC").mText, L"\u00FC");
    EXPECT_EQ(DecodeBytes("\xFC").mText, L"\u00FC");
}

TEST(Charset, EncodeForeignCharacterThrows)
{
    EXPECT_THROW(EncodeText(L"\u20AC", Charset::Latin1), DamageError);
    EXPECT_THROW(EncodeText(std::wstring(1, static_cast<wchar_t>(0xD800)), Charset::Utf8), DamageError);
    EXPECT_THROW(GetCharsetByName(L"utf-8"), DamageError);
}

TEST(MailAddress, GetFirstAddressReadsEveryForm)
{
    const std::vector<std::pair<std::wstring, std::wstring>> lCases = {
        {L"ann@a.example", L"ann@a.example"},
        {L"Ann Carver <ann@a.example>, ben@b.example", L"ann@a.example"},
        {L"\"Carver, <Ann>\" <ann@a.example>", L"ann@a.example"},
        {L"\"a \\\" b\" < ann@a.example >", L"ann@a.example"},
        {L"(a (nested, \\) <x@y>) comment) ann@a.example (b)", L"ann@a.example"},
        {L"Friends: ann@a.example, ben@b.example;", L"ann@a.example"},
        {L"<@r1.example,@r2.example:ann@a.example>", L"ann@a.example"},
        {L"\"a b\"@a.example", L"\"a b\"@a.example"},
        {L"ann@[IPv6:2001:db8::1], x@y", L"ann@[IPv6:2001:db8::1]"},
        {L" , ,ann@a.example", L"ann@a.example"},
        {L"<>", L"<>"},
        {L"undisclosed-recipients:;", L""},
        {L"", L""},
        {L"((((", L""},
        {L"<ann@a.example", L"ann@a.example"}};
    for (const auto& [lList, lAddress] : lCases)
    {
        EXPECT_EQ(GetFirstAddress(lList), lAddress) << ToUtf8(lList);
    }
}

TEST(MailAddress, GetSenderAndRecipientFollowTheOrderOfFields)
{
    MailMessage lMessage =
        ParseMessage("From m@m.example Fri\nFrom: f@f.example\nReturn-Path: <>\nCc: c@c.example\nTo:\n");
    EXPECT_EQ(GetSender(lMessage), L"<>");
    EXPECT_EQ(GetRecipient(lMessage), L"c@c.example");
    lMessage = ParseMessage("From m@m.example Fri\nFrom: f@f.example\nDelivered-To: d@d.example\nTo: t@t.example\n");
    EXPECT_EQ(GetSender(lMessage), L"m@m.example");
    EXPECT_EQ(GetRecipient(lMessage), L"d@d.example");
    lMessage = ParseMessage("Sender: s@s.example\nFrom: F <f@f.example>\n");
    EXPECT_EQ(GetSender(lMessage), L"f@f.example");
    EXPECT_EQ(GetRecipient(lMessage), L"");
}

TEST(MailAddress, GetDomainFallsBackToLocalhost)
{
    EXPECT_EQ(GetDomain(L"ann@A.Example"), L"a.example");
    EXPECT_EQ(GetDomain(L"\"a@b\"@c.example"), L"c.example");
    EXPECT_EQ(GetDomain(L"ann"), L"localhost");
    EXPECT_EQ(GetDomain(L"ann@"), L"localhost");
    EXPECT_EQ(GetDomain(L""), L"localhost");
}

} // namespace MailSpool
