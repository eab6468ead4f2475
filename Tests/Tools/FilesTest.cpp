// Files in and out: decoding, places, and where data and all else go.

#include "File/Files.h"
#include "Text/Place.h"

#include "Tests/Tools/RunTool.h"
#include "Tests/Tools/Screens.h"
#include "Text/Errors.h"
#include "Text/Place.h"

#include "QBase/Convert.h"
#include "TalBase/Initializer.h"

#include <gtest/gtest.h>

using namespace TalBaseTool;
using namespace ToolTests;

namespace
{

namespace fs = std::filesystem;

const QTalBase::Initializer gInitializer;

std::string ErrorOfReading(const std::string& iFile)
{
    try
    {
        ReadText(iFile);
        return "none";
    }
    catch (const TextError& lError)
    {
        return std::string(lError.what()).substr(iFile.size());
    }
}

} // namespace

TEST(Files, PlacesCountLinesAndCharacters)
{
    const std::wstring lText = L"a\xE4\n\n漢x\n";
    const auto lAt = [&](std::size_t iIndex) {
        const Place lPlace = FindPlace(lText, iIndex);
        return std::to_string(lPlace.mLine) + ":" + std::to_string(lPlace.mColumn);
    };
    EXPECT_EQ(lAt(0), "1:1");
    EXPECT_EQ(lAt(2), "1:3");
    EXPECT_EQ(lAt(3), "2:1");
    EXPECT_EQ(lAt(5), "3:2");
    EXPECT_EQ(lAt(7), "4:1");
}

TEST(Files, CharactersMayLieAcrossBlocks)
{
    const Workplace lWorkplace;
    const std::size_t lBlock = std::size_t{1} << 20;
    for (const char* lCharacter : {"\xC3\xA4", "\xE2\x82\xAC", "\xF0\x9F\x98\x80"})
    {
        for (std::size_t lBefore = lBlock - 4; lBefore <= lBlock; ++lBefore)
        {
            const std::string lBytes = std::string(lBefore, 'x') + lCharacter + lCharacter;
            EXPECT_EQ(QBase::WideCharToUTF8(ReadText(lWorkplace.Write("text", lBytes)).c_str(), true), lBytes);
        }
    }
}

TEST(Files, BytesThatAreNotUtf8HaveAPlace)
{
    const Workplace lWorkplace;
    const auto lError = [&](const std::string& iBytes) { return ErrorOfReading(lWorkplace.Write("text", iBytes)); };
    EXPECT_EQ(lError("good \xC3\xA4"), "none");
    EXPECT_EQ(lError("\xFF"), ":1:1: byte 0xff is not UTF-8");
    EXPECT_EQ(lError("a\nb\xC3\xA4\xC3"), ":2:3: byte 0xc3 is not UTF-8");
    EXPECT_EQ(lError("a\xE2\x82 b"), ":1:2: byte 0xe2 is not UTF-8");
    EXPECT_EQ(lError("a\xED\xA0\x80"), ":1:2: byte 0xed is not UTF-8");
    EXPECT_EQ(lError("\xFF\xFE"), ":1:1: this is UTF-16, but a text form is in UTF-8");
    EXPECT_EQ(lError("\xFE\xFF"), ":1:1: this is UTF-16, but a text form is in UTF-8");
    EXPECT_EQ(lError(std::string("E\0n\0", 4)), ":1:1: this is UTF-16, but a text form is in UTF-8");
    EXPECT_EQ(lError(std::string("E\0\0\0", 4)), ":1:1: this is UTF-32, but a text form is in UTF-8");
    EXPECT_EQ(lError("\x80"), ":1:1: byte 0x80 is not UTF-8");
    EXPECT_EQ(lError(std::string("a\nb\0c", 5)), ":2:2: a zero character, which ends a text form");
    const std::size_t lBlock = std::size_t{1} << 20;
    EXPECT_EQ(lError(std::string(lBlock - 1, 'x') + "\xE2\x82"), ":1:1048576: byte 0xe2 is not UTF-8");
    EXPECT_EQ(lError(std::string(lBlock, '\n') + "ab\xFE"), ":1048577:3: byte 0xfe is not UTF-8");
}

TEST(Files, FoldersAndMissingFilesAreTheSystemsTrouble)
{
    const Workplace lWorkplace;
    EXPECT_THROW(ReadText(lWorkplace.GetFolder()), IoError);
    EXPECT_THROW(ReadText(lWorkplace.GetFolder() / "nothing"), IoError);
    EXPECT_EQ(RunTool({"show", lWorkplace.GetFolder()}).mStatus, 2);
}

TEST(Program, DataGoesOutAndAllElseGoesToStandardError)
{
    const Workplace lWorkplace;
    const auto lOutOf = [&](const std::string& iCommand) { return RunShell(lWorkplace.GetFolder(), iCommand).mOutput; };
    EXPECT_EQ(lOutOf("talbase redact --name Transport job.bag 2>/dev/null"),
              "EndDelimiter***BeginDelimiter++++***Job++++17***Subject++++Save 20% &#43; "
              "shipping***DeliveryWindow++++ 0, 1, 2, 3, 4, 5,22,23,***");
    EXPECT_EQ(lOutOf("talbase redact --name Transport job.bag 2>&1 >/dev/null"), "talbase: 2 properties taken out\n");
    EXPECT_EQ(lOutOf("talbase check broken.bag lossy.bag 2>/dev/null"), "lossy.bag: valid, 6 warnings\n");
    EXPECT_EQ(lOutOf("talbase show broken.bag 2>/dev/null"), "");
    EXPECT_EQ(lOutOf("talbase show job.bag 2>&1 >/dev/full"),
              "talbase: cannot write to standard output: No space left on device\n");
    EXPECT_EQ(RunShell(lWorkplace.GetFolder(), "talbase show job.bag >/dev/full 2>&1").mStatus, 2);
}

TEST(Program, OutputThatCannotBeWrittenIsTrouble)
{
    const Workplace lWorkplace;
    for (const std::string lCommand : {"--help", "--version", "help", "show --help", "help show", "show job.bag"})
    {
        for (const std::string lOutput : {">/dev/full", ">&-"})
        {
            const Finished lFinished =
                RunShell(lWorkplace.GetFolder(), "talbase " + lCommand + " 3>&1 2>&3 " + lOutput);
            EXPECT_EQ(lFinished.mStatus, 2) << lCommand << lOutput;
            const std::string lWhy = lOutput == ">&-" ? "Bad file descriptor" : "No space left on device";
            EXPECT_EQ(lFinished.mOutput, "talbase: cannot write to standard output: " + lWhy + "\n")
                << lCommand << lOutput;
        }
    }
}

// What is opened does not become standard output, input or error.
TEST(Program, ClosedStreamsStayClosed)
{
    const Workplace lWorkplace;
    fs::create_hard_link(lWorkplace.GetFolder() / "job.bag", lWorkplace.GetFolder() / "other.bag");
    EXPECT_EQ(RunShell(lWorkplace.GetFolder(), "talbase set -i Job 18 job.bag <&- >&- 2>&-").mStatus, 0);
    EXPECT_EQ(RunShell(lWorkplace.GetFolder(), "talbase check job.bag").mOutput, "job.bag: valid\n");
    EXPECT_NE(lWorkplace.Read("job.bag").find("Job++++18***"), std::string::npos);
    EXPECT_EQ(lWorkplace.Read("job.bag").find("talbase"), std::string::npos);
    EXPECT_EQ(RunShell(lWorkplace.GetFolder(), "talbase show <&- 2>&1").mOutput,
              "talbase: cannot read (standard input): Bad file descriptor\n");
}

TEST(Program, ExitStatusTellsGoodBadAndTrouble)
{
    const Workplace lWorkplace;
    const auto lStatusOf = [&](const std::string& iCommand) {
        return RunShell(lWorkplace.GetFolder(), "exec >/dev/null 2>&1; " + iCommand).mStatus;
    };
    EXPECT_EQ(lStatusOf("talbase --help"), 0);
    EXPECT_EQ(lStatusOf("talbase show --help"), 0);
    EXPECT_EQ(lStatusOf("talbase --version"), 0);
    EXPECT_EQ(lStatusOf("talbase diff job.bag job.bag"), 0);
    EXPECT_EQ(lStatusOf("talbase diff job.bag job-new.bag"), 1);
    EXPECT_EQ(lStatusOf("talbase check broken.bag"), 1);
    EXPECT_EQ(lStatusOf("talbase get nothing job.bag"), 1);
    EXPECT_EQ(lStatusOf("talbase"), 2);
    EXPECT_EQ(lStatusOf("talbase nonsense"), 2);
    EXPECT_EQ(lStatusOf("talbase show --nonsense"), 2);
    EXPECT_EQ(lStatusOf("talbase show $'\\xff'"), 2);
    EXPECT_EQ(lStatusOf("talbase set x $'\\xff' job.bag"), 2);
    EXPECT_EQ(lStatusOf("talbase check nothing.bag broken.bag"), 2);
}
