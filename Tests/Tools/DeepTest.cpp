// Bags that are deep or wide: the commands take time and memory for what there is, not for its square.

#include "Tests/Tools/RunTool.h"
#include "Tests/Tools/Screens.h"

#include "TalBase/Initializer.h"

#include <gtest/gtest.h>

using namespace ToolTests;

namespace
{

const QTalBase::Initializer gInitializer;
const std::string gHeader = "EndDelimiter***BeginDelimiter++++***";

std::string Repeated(const std::string& iText, std::size_t iCount)
{
    std::string lText;
    for (std::size_t lIndex = 0; lIndex < iCount; ++lIndex)
    {
        lText += iText;
    }
    return lText;
}

} // namespace

// Putting each path together from its names took 120 seconds and more for this.
TEST(Deep, DiffTellsOfADeepBagThatOneSideHas)
{
    const Workplace lWorkplace;
    const std::size_t lDepth = 100000;
    const std::string lDeep =
        lWorkplace.Write("deep.bag", gHeader + "a++++1***" + Repeated("n++++", lDepth) +
                                         "k++++v***FTPServerPassword++++secret***" + Repeated("***", lDepth));
    const std::string lFlat = lWorkplace.Write("flat.bag", gHeader + "a++++1***");
    const ToolRun lRun = RunTool({"diff", lDeep, lFlat});
    EXPECT_EQ(lRun.mStatus, 1);
    EXPECT_EQ(lRun.mOut.rfind("- n/\n- n/n/\n- n/n/n/\n", 0), 0U);
    const std::string lLast = "- ⋯ level 100001 ⋯/" + Repeated("n/", 39);
    EXPECT_NE(lRun.mOut.find("\n" + lLast + "k = v\n" + lLast + "FTPServerPassword = (hidden)\n"), std::string::npos);
    EXPECT_LT(lRun.mOut.size(), lDepth * 120);
    EXPECT_EQ(RunTool({"diff", lDeep, lDeep}).mOut, "");
}

TEST(Deep, DiffHidesWholeBags)
{
    const Workplace lWorkplace;
    const std::string lFirst = lWorkplace.Write(
        "first.bag", gHeader +
                         "n++++FTPServerPassword++++k++++secret******x++++1******m++++FTPServerPassword++++k++++secret"
                         "*********");
    const std::string lSecond =
        lWorkplace.Write("second.bag", gHeader + "m++++FTPServerPassword++++k++++other*********");
    EXPECT_EQ(RunTool({"diff", lFirst, lSecond}).mOut, "- n/\n- n/x = 1\n- n/FTPServerPassword/\n"
                                                       "- m/FTPServerPassword/(hidden) = (hidden)\n"
                                                       "+ m/FTPServerPassword/(hidden) = (hidden)\n");
}

// Taking them out one by one took half a minute, and a line for each megabytes.
TEST(Deep, EmptyBagsAreLeftOutAtOnce)
{
    const Workplace lWorkplace;
    std::string lNests;
    std::string lEmpty;
    for (int lIndex = 0; lIndex < 100000; ++lIndex)
    {
        const std::string lName = "n" + std::to_string(lIndex) + "++++";
        lNests += lName + "FTPServerPassword++++secret******";
        lEmpty += lName + "k++++******";
    }
    const std::string lRest = "kept++++a++++&#43;1***x++++k++++b******";
    const ToolRun lRedact = RunTool({"redact", lWorkplace.Write("a.bag", gHeader + lNests + lRest + "***")});
    EXPECT_EQ(lRedact.mErr,
              "talbase: 100000 bags are left out, since a text cannot hold a bag without properties (n0, n1, "
              "n2, …)\ntalbase: 100000 properties taken out\n");
    EXPECT_EQ(lRedact.mOut, gHeader + lRest + "***");
    const std::string lB = lWorkplace.Write("b.bag", gHeader + lEmpty + lRest + "***");
    const ToolRun lSet = RunTool({"set", "a", "b", lB});
    EXPECT_EQ(lSet.mErr,
              "talbase: 100000 bags are left out, since a text cannot hold a bag without properties (n0, n1, "
              "n2, …)\n" +
                  lB + ":1:43: not kept: 'k', which has no value\n" + lB +
                  ":1:60: not kept: 'k', which has no value\n" + lB + ":1:77: not kept: 'k', which has no value\n" +
                  lB + ": not kept: 99997 more; 'talbase check' shows all\n");
    EXPECT_EQ(lSet.mOut, gHeader + "a++++b***" + lRest + "***");
}

TEST(Deep, FewEmptyBagsAreNamed)
{
    const Workplace lWorkplace;
    const std::string lFile =
        lWorkplace.Write("a.bag", gHeader + "a++++1***n++++m++++FTPServerPassword++++secret*********");
    EXPECT_EQ(RunTool({"redact", lFile}).mErr, "talbase: n/m is left out: a text cannot hold a bag without properties\n"
                                               "talbase: n is left out: a text cannot hold a bag without properties\n"
                                               "talbase: 1 property taken out\n");
}
