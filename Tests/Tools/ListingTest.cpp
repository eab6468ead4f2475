// Flat lists of bags, there and back.

#include "Text/Listing.h"

#include "Text/Errors.h"
#include "Text/Text.h"

#include "TalBase/Initializer.h"

#include <gtest/gtest.h>

#include <random>

using namespace TalBaseTool;

namespace
{

const QTalBase::Initializer gInitializer;

const DelimiterTexts gUsual{BEGIN, END};

std::string Write(const BagPtr& iBag, const ListHead& iHead, const Gate& iGate, const ListForm& iForm)
{
    std::string lText;
    WriteList(iBag, iHead, iGate, iForm, [&](std::string_view iBlock) { lText.append(iBlock); });
    return lText;
}

std::string WriteText(const std::wstring& iText, const ListForm& iForm = {})
{
    const BagPtr lBag(QTalBase::CreatePropertyBag(iText.c_str()));
    const Gate lGate({}, iText, {}, true);
    return Write(lBag, {{lBag->GetBeginDelimiter(), lBag->GetEndDelimiter()}, true, L""}, lGate, iForm);
}

// A bag of one property under other delimiters, so that names and values are free.
std::string WriteOne(const wchar_t* ipName, const wchar_t* ipValue, char iEnd = '\n')
{
    const BagPtr lBag(QTalBase::CreatePropertyBag(L"<<<<", L">>>>"));
    lBag->SetProperty(ipName, ipValue, false);
    const std::string lText = Write(lBag, {{L"<<<<", L">>>>"}, true, L""}, Gate(), {iEnd, false, ""});
    const std::size_t lLine = lText.find(iEnd) + 1;
    return lText.substr(lLine, lText.size() - lLine - 1);
}

// The same of a property in a nested bag, whose value is "v".
std::string WriteNested(const std::wstring& iBag, const std::wstring& iName)
{
    const BagPtr lNested(QTalBase::CreatePropertyBag(L"\u4E00", L"\u4E01"));
    lNested->SetProperty(iName.c_str(), L"v", false);
    const BagPtr lBag(QTalBase::CreatePropertyBag(L"\u4E00", L"\u4E01"));
    lBag->EmbedProperty(iBag.c_str(), lNested.get());
    const std::string lText = Write(lBag, {{L"\u4E00", L"\u4E01"}, true, L""}, Gate(), {});
    const std::size_t lLine = lText.find('\n') + 1;
    return lText.substr(lLine, lText.size() - lLine - 1);
}

std::wstring AsStep(const std::wstring& iName)
{
    std::wstring lStep;
    for (const wchar_t lCharacter : iName)
    {
        lStep += lCharacter == L'/' || lCharacter == L'\\' ? L"\\" : L"";
        lStep += lCharacter;
    }
    return lStep;
}

// A text below U+0180 as a line has it, by the rules and character by character. iQuoted: what it may not begin with.
std::string Plainly(const std::wstring& iText, std::wstring_view iQuoted)
{
    const auto lIsBlank = [](wchar_t iOne) { return iOne == L' ' || iOne == 0xA0; };
    bool lWantsQuotes = iQuoted.find(iText[0]) != iQuoted.npos || lIsBlank(iText[0]) || lIsBlank(iText.back());
    std::string lText;
    std::string lEscaped;
    for (const wchar_t lCharacter : iText)
    {
        const bool lIsInvisible = lCharacter < 0x20 || (lCharacter >= 0x7F && lCharacter < 0xA0) || lCharacter == 0xAD;
        lWantsQuotes = lWantsQuotes || lIsInvisible;
        lText += ToUtf8(std::wstring(1, lCharacter));
        const std::size_t lShort = std::wstring_view(L"\"\\\n\r\t\b\f").find(lCharacter);
        char lNumber[8];
        std::snprintf(lNumber, sizeof(lNumber), "\\u%04x", static_cast<unsigned int>(lCharacter));
        lEscaped += lShort != std::wstring_view::npos ? std::string{'\\', "\"\\nrtbf"[lShort]}
                    : lIsInvisible                    ? lNumber
                                                      : ToUtf8(std::wstring(1, lCharacter));
    }
    return lWantsQuotes ? '"' + lEscaped + '"' : lText;
}

List Read(const std::wstring& iText, char iEnd = '\n')
{
    return ReadList("a.list", iText, iEnd);
}

std::string ErrorOf(const std::wstring& iText)
{
    try
    {
        MakeBag("a.list", Read(iText), gUsual);
    }
    catch (const TextError& lError)
    {
        return lError.what();
    }
    return "none";
}

std::wstring BackAgain(const std::string& iList, char iEnd)
{
    const List lList = ReadList("a.list", ReadArgument(iList, "the list"), iEnd);
    const BagPtr lBag = MakeBag("a.list", lList, lList.mHead->mPair);
    return lBag->GetString(lList.mHead->mHasHeader, nullptr, nullptr, true).c_str();
}

// Bags that come from a text, under many delimiters.
class Generator
{
public:
    explicit Generator(unsigned int iSeed) : mEngine(iSeed)
    {
        static const DelimiterTexts lPairs[] = {{BEGIN, END},    {L"[[", L"]]"},     {L"=", L";"},
                                                {L" = ", L"\n"}, {L"\x01", L"\x02"}, {L"<\u20AC", L"\u2028>"}};
        mPair = lPairs[mEngine() % std::size(lPairs)];
    }

    BagPtr Next(int iDepth)
    {
        const BagPtr lBag(QTalBase::CreatePropertyBag(mPair.mBegin.c_str(), mPair.mEnd.c_str()));
        hFill(*lBag, iDepth);
        return BagPtr(QTalBase::CreatePropertyBag(lBag->GetString(true, nullptr, nullptr, true).c_str()));
    }

    const DelimiterTexts& GetPair() const
    {
        return mPair;
    }

private:
    void hFill(QTalBase::PropertyBag& oBag, int iDepth)
    {
        for (unsigned int lIndex = 0, lCount = 1 + hBelow(5); lIndex < lCount; ++lIndex)
        {
            const std::wstring lName = hText(3) + std::to_wstring(lIndex);
            try
            {
                if (iDepth > 0 && hBelow(3) == 0)
                {
                    const BagPtr lNest(QTalBase::CreatePropertyBag(mPair.mBegin.c_str(), mPair.mEnd.c_str()));
                    hFill(*lNest, iDepth - 1);
                    oBag.EmbedProperty(lName.c_str(), lNest.get());
                }
                else
                {
                    oBag.SetProperty(lName.c_str(), (hText(4) + L"v").c_str(), false);
                }
            }
            catch (const QTalBase::PropertyBagException&) // a delimiter by chance
            {
            }
        }
    }

    std::wstring hText(unsigned int iMost)
    {
        const wchar_t* const lPieces[] = {
            L"a",      L"/",    L"\\", L" = ", L" ", L"\"", L"#",  L"(hidden)", L"\n",     L"\u00E4",    L"\U0001F600",
            L"\u202E", L"\x7F", L"=",  L"+",   L"*", L"\r", L"\t", L"&#43;",    L"\u2028", L"\U000E0001"};
        std::wstring lText;
        for (unsigned int lCount = hBelow(iMost + 1); lCount > 0; --lCount)
        {
            lText += lPieces[hBelow(std::size(lPieces))];
        }
        return lText;
    }

    unsigned int hBelow(std::size_t iLimit)
    {
        return static_cast<unsigned int>(mEngine() % iLimit);
    }

    std::mt19937 mEngine;
    DelimiterTexts mPair;
};

} // namespace

TEST(Listing, WriteBagIsOneLineForEachProperty)
{
    EXPECT_EQ(
        WriteText(L"EndDelimiter***BeginDelimiter++++***Subject++++Save 20% &#43; shipping***Note++++two\nlines***"
                  L"Transport++++Host++++ftp.example.com***Route++++Via++++mx1*********"),
        "# begin \"++++\", end \"***\"\n"
        "Subject = Save 20% + shipping\n"
        "Note = \"two\\nlines\"\n"
        "Transport/Host = ftp.example.com\n"
        "Transport/Route/Via = mx1\n");
}

TEST(Listing, WriteSecretsIsMasked)
{
    const std::wstring lText = L"EndDelimiter***BeginDelimiter++++***FTPServerPassword++++hunter2***a++++my "
                               L"FTPServerPassword is hunter2***b++++FTPServerPassword2***n++++FTPServerPassword++++k+"
                               L"+++hunter2*********";
    EXPECT_EQ(WriteText(lText), "# begin \"++++\", end \"***\"\n"
                                "FTPServerPassword = (hidden)\n"
                                "a = (hidden)\n"
                                "b = FTPServerPassword2\n"
                                "n/FTPServerPassword/ = (hidden)\n");
}

TEST(Listing, WriteDamagedTextWithASecretThrows)
{
    EXPECT_THROW(WriteText(L"EndDelimiter***BeginDelimite_++++***FTPServerPassword++++hunter2***"), DataError);
}

TEST(Listing, WriteSortedIsByPathNameByName)
{
    EXPECT_EQ(WriteText(L"EndDelimiter***BeginDelimiter++++***n-++++1***b++++2***n++++z++++3***a++++4******",
                        {'\n', true, "x:"}),
              "x:# begin \"++++\", end \"***\"\n"
              "x:b = 2\n"
              "x:n/a = 4\n"
              "x:n/z = 3\n"
              "x:n- = 1\n");
    EXPECT_EQ(WriteText(L"EndDelimiter***BeginDelimiter++++***c++++1***n++++FTPServerPassword++++k++++hunter2******"
                        L"a++++2***m++++l++++k++++3************",
                        {'\n', true, ""}),
              "# begin \"++++\", end \"***\"\n"
              "c = 1\n"
              "n/FTPServerPassword/ = (hidden)\n"
              "n/a = 2\n"
              "n/m/l/k = 3\n");
}

TEST(Listing, WriteQuotesWhatAPersonCouldMisread)
{
    EXPECT_EQ(WriteOne(L"a", L" b"), R"(a = " b")");
    EXPECT_EQ(WriteOne(L"a", L"b\u00A0"), "a = \"b\u00A0\"");
    EXPECT_EQ(WriteOne(L"a", L"\"b\""), R"(a = "\"b\"")");
    EXPECT_EQ(WriteOne(L"a", L"b \"c\" \\d"), R"(a = b "c" \d)");
    EXPECT_EQ(WriteOne(L"a", L"(hidden)"), "a = \"(hidden)\"");
    EXPECT_EQ(WriteOne(L"a", L"x(hidden)"), "a = x(hidden)");
    EXPECT_EQ(WriteOne(L"a", L"b\x1B\x85\u202E\U000E0001"), R"(a = "b\u001b\u0085\u202e\udb40\udc01")");
    EXPECT_EQ(WriteOne(L"a/b\\c", L"d"), R"(a\/b\\c = d)");
    EXPECT_EQ(WriteOne(L"a=b", L"d = e"), "a=b = d = e");
    EXPECT_EQ(WriteOne(L"a = b", L"d"), R"("a = b" = d)");
    EXPECT_EQ(WriteOne(L"a =", L"d"), R"("a =" = d)");
    EXPECT_EQ(WriteOne(L"#a", L"#d"), R"("#a" = #d)");
    EXPECT_EQ(WriteOne(L"\"a", L"d"), R"("\"a" = d)");
    EXPECT_EQ(WriteOne(L" a\n", L"d"), R"(" a\n" = d)");
}

// Characters by themselves, where the rules of Text/Listing.h are short: " = " takes three.
TEST(Listing, WriteQuotesEveryCharacterByTheRules)
{
    for (wchar_t lCharacter = 1; lCharacter < 0x180; ++lCharacter)
    {
        for (const std::wstring& lText : {lCharacter + std::wstring(L"b"), L"b" + std::wstring(1, lCharacter) + L"c",
                                          L"b" + std::wstring(1, lCharacter)})
        {
            EXPECT_EQ(WriteOne(L"a", lText.c_str()), "a = " + Plainly(lText, L"\""));
            EXPECT_EQ(WriteOne(lText.c_str(), L"a"), Plainly(AsStep(lText), L"\"#") + " = a");
            EXPECT_EQ(WriteNested(L"n", lText), Plainly(L"n/" + AsStep(lText), L"\"#") + " = v");
            EXPECT_EQ(WriteNested(lText, L"n"), Plainly(AsStep(lText) + L"/n", L"\"#") + " = v");
        }
    }
    EXPECT_EQ(WriteNested(L"b", L"= c"), "b/= c = v");
    EXPECT_EQ(WriteNested(L"b ", L"c d"), "b /c d = v");
    EXPECT_EQ(WriteNested(L"b", L" = c"), "\"b/ = c\" = v");
    EXPECT_EQ(WriteNested(L"b =", L"c"), "b =/c = v");
}

TEST(Listing, WriteEndedByZerosLeavesLineEndsAlone)
{
    EXPECT_EQ(WriteOne(L"a\n", L" b\nc\t", '\0'), "a\n =  b\nc\t");
    EXPECT_EQ(WriteOne(L"a = ", L"\"b", '\0'), R"("a = " = "\"b")");
}

TEST(Listing, ReadSaysFileLineColumnAndWhy)
{
    const char* const lUnclear = "with a blank at an end or with a control or invisible character needs quotes";
    const struct
    {
        const wchar_t* mText;
        std::string mError;
    } lCases[] = {
        {L"a = b\nc\n", "a.list:2:1: a line is 'path = value', and ' = ' is missing"},
        {L"\"a\" b\n", "a.list:1:4: a line is 'path = value', and ' = ' is missing"},
        {L"\"a\n", "a.list:1:1: this is no JSON string"},
        {L"a = \"b", "a.list:1:5: this is no JSON string"},
        {L"a = \"\\x\"", "a.list:1:5: this is no JSON string"},
        {L"a = \"\\ud800\"", "a.list:1:5: this is no JSON string"},
        {L"a = \"\\u0000\"", "a.list:1:5: a zero character, which ends a text form"},
        {L"a = \"b\" ", "a.list:1:8: something stands behind the quotes"},
        {L"a = b ", std::string("a.list:1:5: a value ") + lUnclear},
        {L"a = b\tc", std::string("a.list:1:5: a value ") + lUnclear},
        {L" a = b", std::string("a.list:1:1: a path ") + lUnclear},
        {L"a = ", "a.list:1:5: a bag cannot hold an empty value"},
        {L"a = \"\"", "a.list:1:5: a bag cannot hold an empty value"},
        {L"a//b = c", "a.list:1:1: the path has an empty name"},
        {L" = c", "a.list:1:1: the path has an empty name"},
        {L"a\\b = c", "a.list:1:1: the path has a \\ that is neither \\/ (for a / in a name) nor \\\\"},
        {L"a/ = c", "a.list:1:1: a path that ends with / is a bag's, and has no value"},
        {L"a = b\n\n# c\na = b", "a.list:4:1: this path stands in line 1 already"},
        {L"a = b\na/c = d", "a.list:2:1: a part of this path is a property itself in line 1"},
        {L"a/c = b\na = d", "a.list:2:1: this path is a bag's since line 1"},
        {L"# begin +, end -\na = b", "a.list:1:9: this is no JSON string"},
        {L"# begin \"+\" end \"-\"", "a.list:1:12: the first line names the delimiters: # begin \"++++\", end \"***\""},
        {L"# begin \"+\", end \"-\", x", "a.list:1:21: this is not expected behind the delimiters"},
        {L"a = b\nb = (hidden)",
         "a.list:2:1: the value is masked, so it is not known; 'talbase list --show-secrets' shows it"},
        {L"a/ = (hidden)",
         "a.list:1:1: the value is masked, so it is not known; 'talbase list --show-secrets' shows it"},
        {L"a = b\nc+ = d",
         "a.list:2:1: with these delimiters it would be a name that holds a delimiter or runs into one"},
        {L"a = b\nc/d = &#43;", "a.list:2:1: with these delimiters it would be a value that holds an escape already"},
    };
    for (const auto& lCase : lCases)
    {
        EXPECT_EQ(ErrorOf(lCase.mText), lCase.mError) << ToUtf8(lCase.mText);
    }
}

TEST(Listing, ReadTakesBlankLinesCommentsAndOtherLineEnds)
{
    const List lList = Read(
        L"# begin \"[\", end \"]\", no header, line end \"\\n\"\r\n\r\n#c\r\na/b = \"(hidden)\"\r\nc = (hidden)\nd/ "
        L"= (hidden)");
    ASSERT_TRUE(lList.mHead.has_value());
    EXPECT_EQ(lList.mHead->mPair.mBegin, L"[");
    EXPECT_EQ(lList.mHead->mPair.mEnd, L"]");
    EXPECT_FALSE(lList.mHead->mHasHeader);
    EXPECT_EQ(lList.mHead->mLineEnd, L"\n");
    ASSERT_EQ(lList.mLines.size(), 3U);
    EXPECT_EQ(lList.mLines[0].mPath, (Path{L"a", L"b"}));
    EXPECT_EQ(lList.mLines[0].mValue, L"(hidden)");
    EXPECT_EQ(lList.mLines[0].mNumber, 4U);
    EXPECT_EQ(lList.mLines[1].mKind, ListLineKind::HiddenValue);
    EXPECT_EQ(lList.mLines[2].mKind, ListLineKind::HiddenBag);
    EXPECT_EQ(lList.mLines[2].mPath, (Path{L"d"}));
}

TEST(Listing, MakeBagPutsScatteredPropertiesOfABagTogether)
{
    const BagPtr lBag = MakeBag("a.list", Read(L"n/a = 1\nb = 2\nn/m/c = 3\nd = 4\nn/e = 5"), gUsual);
    EXPECT_STREQ(lBag->GetString(false, nullptr, nullptr, true).c_str(),
                 L"b++++2***d++++4***n++++a++++1***e++++5***m++++c++++3*********");
}

TEST(Listing, BagsComeBackAsTheyWere)
{
    for (unsigned int lSeed = 0; lSeed < 3000; ++lSeed)
    {
        Generator lGenerator(lSeed);
        const BagPtr lBag = lGenerator.Next(3);
        const std::wstring lText = lBag->GetString(true, nullptr, nullptr, true).c_str();
        const char lEnd = lSeed % 3 == 0 ? '\0' : '\n';
        const std::string lList = Write(lBag, {lGenerator.GetPair(), true, L""}, Gate(), {lEnd, false, ""});
        ASSERT_EQ(ToUtf8(BackAgain(lList, lEnd)), ToUtf8(lText)) << lSeed << '\n' << lList;
    }
}

TEST(Listing, DeepPathsTakeNoStack)
{
    std::wstring lPath = L"a";
    for (int lDepth = 0; lDepth < 100000; ++lDepth)
    {
        lPath += L"/a";
    }
    const std::string lList = "# begin \"++++\", end \"***\"\n" + ToUtf8(lPath) + " = b\n";
    const BagPtr lBag(QTalBase::CreatePropertyBag(BackAgain(lList, '\n').c_str()));
    EXPECT_EQ(Write(lBag, {gUsual, true, L""}, Gate(), {}), lList);
}
