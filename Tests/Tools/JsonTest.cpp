// JSON there and back.

#include "Tests/Tools/RunTool.h"
#include "Tests/Tools/Screens.h"

#include "TalBase/Initializer.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <random>

using namespace ToolTests;
using nlohmann::json;

namespace
{

const QTalBase::Initializer gInitializer;

// Documents that a bag can hold with all their content: no empty text, object or array, no name that runs into a
// delimiter, no escape, and no object that looks like an array.
class Generator
{
public:
    explicit Generator(unsigned int iSeed, bool iIsTyped) : mEngine(iSeed), mIsTyped(iIsTyped) {}

    json Next(int iDepth)
    {
        json lDocument = hBelow(3) == 0 ? json::array() : json::object();
        const unsigned int lCount = 1 + hBelow(5);
        for (unsigned int lIndex = 0; lIndex < lCount; ++lIndex)
        {
            json lValue = iDepth > 0 && hBelow(3) == 0 ? Next(iDepth - 1) : hScalar();
            if (lDocument.is_array())
            {
                lDocument.push_back(lValue);
            }
            else
            {
                lDocument["n" + std::to_string(lIndex) + hText() + "."] = lValue;
            }
        }
        return lDocument;
    }

private:
    json hScalar()
    {
        switch (mIsTyped ? hBelow(6) : 5)
        {
        case 0:
            return nullptr;
        case 1:
            return hBelow(2) == 0;
        case 2:
            return static_cast<int>(hBelow(1000)) - 500;
        case 3:
            return hBelow(1000) / 8.0;
        case 4:
            return 18446744073709551615U;
        default:
            return "x" + hText(); // nothing that looks like another type
        }
    }

    std::string hText()
    {
        const char* const lPieces[] = {
            "a", "+", "*", "/",    "\\", "\"", "\n", "\xC3\xA4", "\xE2\x82\xAC", "\xF0\x9F\x98\x80",
            " ", "]", "{", "\x01", "&",  "#42"};
        std::string lText;
        for (unsigned int lCount = hBelow(4); lCount > 0; --lCount)
        {
            lText += lPieces[hBelow(std::size(lPieces))];
        }
        return lText.find("&#42") == std::string::npos ? lText : "plain";
    }

    unsigned int hBelow(std::size_t iLimit)
    {
        return static_cast<unsigned int>(mEngine() % iLimit);
    }

    std::mt19937 mEngine;
    bool mIsTyped;
};

json ThereAndBack(const Workplace& iWorkplace, const json& iDocument, const std::vector<std::string>& iThere,
                  const std::vector<std::string>& iBack)
{
    const std::string lJson = iWorkplace.Write("document.json", iDocument.dump());
    std::vector<std::string> lThere{"from-json", lJson};
    lThere.insert(lThere.end(), iThere.begin(), iThere.end());
    const ToolRun lRun = RunTool(lThere);
    EXPECT_EQ(lRun.mStatus, 0) << iDocument.dump() << '\n' << lRun.mErr;
    std::vector<std::string> lBack{"to-json", iWorkplace.Write("document.bag", lRun.mOut)};
    lBack.insert(lBack.end(), iBack.begin(), iBack.end());
    const ToolRun lBackRun = RunTool(lBack);
    EXPECT_EQ(lBackRun.mStatus, 0) << lBackRun.mErr;
    return json::parse(lBackRun.mOut);
}

} // namespace

TEST(Json, DocumentsOfTextsComeBackWhole)
{
    const Workplace lWorkplace;
    for (unsigned int lSeed = 0; lSeed < 300; ++lSeed)
    {
        const json lDocument = Generator(lSeed, false).Next(4);
        EXPECT_EQ(ThereAndBack(lWorkplace, lDocument, {"--strict"}, {"--indent", "-1"}), lDocument);
    }
}

TEST(Json, TypedDocumentsComeBackWholeWhenAskedFor)
{
    const Workplace lWorkplace;
    for (unsigned int lSeed = 0; lSeed < 300; ++lSeed)
    {
        const json lDocument = Generator(lSeed, true).Next(4);
        EXPECT_EQ(ThereAndBack(lWorkplace, lDocument, {}, {"--typed"}), lDocument);
    }
}

TEST(Json, NumbersKeepTheirDigits)
{
    const Workplace lWorkplace;
    const std::string lJson =
        "[1.10,1e40,-0.0,-0,0,-7,1e400,-1E+4000,1e-9999,1e5000,-1E+99999,123456789012345678901234567890,1E-7]";
    const ToolRun lBag = RunTool({"from-json", lWorkplace.Write("a.json", lJson)});
    const ToolRun lBack = RunTool({"to-json", "--typed", "--indent", "-1", lWorkplace.Write("a.bag", lBag.mOut)});
    EXPECT_EQ(lBack.mOut, lJson + "\n");
}

TEST(Json, StrictWritesNothing)
{
    const Workplace lWorkplace;
    for (const char* lDocument :
         {R"({"a":""})", R"({"a":{}})", R"({"a":[]})", R"({"":"x"})", R"({"a+":"x"})", R"([1])", R"({"a":"x","a":"y"})",
          R"({"0":"x"})", R"({"a":"&#43;"})", "{\"a\":\"x\\u0000\"}", R"({"1":"a","0":"b"})", R"(["a",{},"b"])"})
    {
        const ToolRun lRun = RunTool({"from-json", "--strict", lWorkplace.Write("a.json", lDocument)});
        EXPECT_EQ(lRun.mStatus, 1) << lDocument;
        EXPECT_EQ(lRun.mOut, "") << lDocument;
    }
    const ToolRun lOrder = RunTool({"from-json", "--strict", lWorkplace.Write("a.json", R"({"n":{"k":"v"},"a":"1"})")});
    EXPECT_EQ(lOrder.mStatus, 0);
    EXPECT_EQ(lOrder.mOut, "EndDelimiter***BeginDelimiter++++***a++++1***n++++k++++v******\n");
}

TEST(Json, LastPropertyOfANameCounts)
{
    const Workplace lWorkplace;
    const auto lToBag = [&](const std::string& iJson) {
        return RunTool({"from-json", "--no-header", lWorkplace.Write("a.json", iJson)}).mOut;
    };
    EXPECT_EQ(lToBag(R"({"a":"1","b":"2","a":""})"), "b++++2***\n");
    EXPECT_EQ(lToBag(R"({"a":"1","b":"2","a":{}})"), "b++++2***\n");
    EXPECT_EQ(lToBag(R"({"a":"1","b":"2","a":"x\u0000"})"), "b++++2***\n");
    EXPECT_EQ(lToBag(R"({"a":"1","a":"","a":"3","b":"2"})"), "a++++3***b++++2***\n");
    EXPECT_EQ(lToBag(R"({"a":{"k":"v","k":""},"b":"2"})"), "b++++2***\n");
    EXPECT_EQ(lToBag(R"({"a":"1","a":{"k":"v","k":{"x":""}},"b":"2"})"), "b++++2***\n");
    EXPECT_EQ(lToBag(R"({"a":{"k":"1","l":"2","k":""},"a":"3","b":"2"})"), "a++++3***b++++2***\n");
    EXPECT_EQ(lToBag(R"({"a":{"k":"1","l":"2","k":""},"b":"2"})"), "b++++2***a++++l++++2******\n");
    EXPECT_EQ(lToBag(R"({"a":{"k":{"m":"1","m":""},"l":"2"},"c":{"a":"1","a":"2"}})"),
              "a++++l++++2******c++++a++++2******\n");
}

TEST(Json, VerboseNamesEveryPlace)
{
    const Workplace lWorkplace;
    const std::string lFile = lWorkplace.Write("a.json", R"(["","","","","x"])");
    const std::string lShifted =
        "talbase: 1 array with elements left out before others: would come back as an object (the document)\n";
    EXPECT_EQ(RunTool({"from-json", lFile}).mErr, "talbase: 4 empty texts: left out (0, 1, 2, …)\n" + lShifted);
    EXPECT_EQ(RunTool({"from-json", "-v", lFile}).mErr, "talbase: 4 empty texts: left out (0, 1, 2, 3)\n" + lShifted);
}

TEST(Json, NamesThatAreNoElementsMakeAnObject)
{
    const Workplace lWorkplace;
    const auto lToJson = [&](const std::string& iContent) {
        return RunTool({"to-json", "--indent", "-1",
                        lWorkplace.Write("a.bag", "EndDelimiter***BeginDelimiter++++***" + iContent)})
            .mOut;
    };
    EXPECT_EQ(lToJson("1++++b***0++++a***"), "[\"a\",\"b\"]\n");
    EXPECT_EQ(lToJson("1++++b***2++++a***"), "{\"1\":\"b\",\"2\":\"a\"}\n");
    EXPECT_EQ(lToJson("00++++b***"), "{\"00\":\"b\"}\n");
    EXPECT_EQ(lToJson("-0++++b***"), "{\"-0\":\"b\"}\n");
    EXPECT_EQ(lToJson("12345678901234567890++++b***"), "{\"12345678901234567890\":\"b\"}\n");
    EXPECT_EQ(lToJson(""), "{}\n");
}

TEST(Json, DeepDocumentsTakeNoStack)
{
    std::string lDeep;
    for (int lLevel = 0; lLevel < 50000; ++lLevel)
    {
        lDeep += "{\"n\":";
    }
    lDeep += "\"v\"" + std::string(50000, '}');
    const Workplace lWorkplace;
    const ToolRun lBag = RunTool({"from-json", lWorkplace.Write("deep.json", lDeep)});
    EXPECT_EQ(lBag.mStatus, 0);
    const ToolRun lBack = RunTool({"to-json", "--indent", "-1", lWorkplace.Write("deep.bag", lBag.mOut)});
    EXPECT_EQ(lBack.mOut, lDeep + "\n");
}

// With indentation for each level the text would grow with the square of the depth, to 10 gigabytes here.
TEST(Json, DeepDocumentsAreIndentedOnlySoFar)
{
    std::string lText = "EndDelimiter***BeginDelimiter++++***";
    for (int lLevel = 0; lLevel < 100000; ++lLevel)
    {
        lText += "n++++";
    }
    lText += "v";
    for (int lLevel = 0; lLevel < 100000; ++lLevel)
    {
        lText += "***";
    }
    const Workplace lWorkplace;
    const ToolRun lRun = RunTool({"to-json", lWorkplace.Write("deep.bag", lText)});
    EXPECT_EQ(lRun.mOut.rfind("{\n  \"n\": {\n    \"n\": {\n", 0), 0U);
    EXPECT_LT(lRun.mOut.size(), 200000U * 90);
    EXPECT_NE(lRun.mOut.find("\n" + std::string(80, ' ') + "\"n\": \"v\"\n"), std::string::npos);
}
