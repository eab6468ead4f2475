// Colours and progress are for terminals only: the real program on one, and not.

#include "Tests/Tools/Screens.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace ToolTests;

namespace
{

// Runs a command line by bash on a terminal of its own, and returns what appears there. iWidth: its columns; 0 for a
// terminal that does not say. iKeys: what is typed there.
std::string RunOnTerminal(const Workplace& iWorkplace, const std::string& iCommand, unsigned short iWidth = 0,
                          const std::string& iKeys = {})
{
    int lTerminal = -1;
    const struct winsize lSize = {24, iWidth, 0, 0};
    const pid_t lChild = ::forkpty(&lTerminal, nullptr, nullptr, &lSize);
    if (lChild == 0)
    {
        const std::string lPath = std::filesystem::path(TALBASE_TOOL_PROGRAM).parent_path().string();
        const std::string lLine = "cd '" + iWorkplace.GetFolder().string() + "' && PATH='" + lPath +
                                  "':$PATH; unset NO_COLOR COLUMNS; shopt -u checkwinsize; export TERM=xterm; " +
                                  iCommand;
        ::execlp("bash", "bash", "-c", lLine.c_str(), static_cast<char*>(nullptr));
        ::_exit(127);
    }
    EXPECT_EQ(::write(lTerminal, iKeys.data(), iKeys.size()), static_cast<ssize_t>(iKeys.size()));
    std::string lScreen;
    char lBuffer[4096];
    for (ssize_t lCount; (lCount = ::read(lTerminal, lBuffer, sizeof lBuffer)) > 0;) // ends with an error
    {
        lScreen.append(lBuffer, static_cast<std::size_t>(lCount));
    }
    ::close(lTerminal);
    ::waitpid(lChild, nullptr, 0);
    return lScreen;
}

bool HasColor(const std::string& iScreen)
{
    return iScreen.find("\033[") != std::string::npos;
}

// The longest line in characters.
std::size_t LongestLine(const std::string& iScreen)
{
    std::size_t lLongest = 0;
    std::size_t lLength = 0;
    for (const char lByte : iScreen)
    {
        const bool lIsFollowing = (static_cast<unsigned char>(lByte) & 0xC0U) == 0x80U;
        lLength = lByte == '\n' ? 0 : lLength + (lByte == '\r' || lIsFollowing ? 0 : 1);
        lLongest = std::max(lLongest, lLength);
    }
    return lLongest;
}

} // namespace

TEST(Terminal, GetsColoursUnlessTheyAreRefused)
{
    const Workplace lWorkplace;
    for (const char* lCommand : {"talbase show job.bag", "talbase diff job.bag job-new.bag", "talbase window job.bag",
                                 "talbase check broken.bag"})
    {
        const std::string lLine = lCommand;
        EXPECT_TRUE(HasColor(RunOnTerminal(lWorkplace, lLine))) << lLine;
        EXPECT_FALSE(HasColor(RunOnTerminal(lWorkplace, lLine + " --color=never"))) << lLine;
        EXPECT_FALSE(HasColor(RunOnTerminal(lWorkplace, "NO_COLOR=1 " + lLine))) << lLine;
        EXPECT_FALSE(HasColor(RunOnTerminal(lWorkplace, "TERM=dumb " + lLine))) << lLine;
        EXPECT_FALSE(HasColor(RunOnTerminal(lWorkplace, lLine + " 2>&1 | cat"))) << lLine;
        EXPECT_TRUE(HasColor(RunOnTerminal(lWorkplace, "NO_COLOR=1 " + lLine + " --color=always 2>&1 | cat"))) << lLine;
    }
    EXPECT_TRUE(HasColor(RunOnTerminal(lWorkplace, "NO_COLOR= talbase show job.bag")));
}

TEST(Terminal, GetsALineEndBehindATextForm)
{
    const Workplace lWorkplace;
    const std::string lText = lWorkplace.Read("brackets.bag");
    EXPECT_EQ(RunOnTerminal(lWorkplace, "talbase merge brackets.bag brackets.bag"), lText + "\r\n");
    EXPECT_EQ(RunShell(lWorkplace.GetFolder(), "talbase merge brackets.bag brackets.bag").mOutput, lText);
}

TEST(Terminal, GetsProgressOfWhatIsLarge)
{
    const Workplace lWorkplace;
    lWorkplace.Write("large.bag", "EndDelimiter***BeginDelimiter++++***a++++" + std::string(17000000, 'x') + "***");
    const std::string lScreen = RunOnTerminal(lWorkplace, "talbase check large.bag");
    EXPECT_NE(lScreen.find("reading large.bag 16 of 17 MB"), std::string::npos) << lScreen;
    EXPECT_NE(lScreen.find("checking large.bag"), std::string::npos) << lScreen;
    EXPECT_NE(lScreen.find("large.bag: valid\r\n"), std::string::npos) << lScreen;
    EXPECT_EQ(RunShell(lWorkplace.GetFolder(), "talbase check large.bag 2>&1").mOutput, "large.bag: valid\n");
    EXPECT_EQ(RunOnTerminal(lWorkplace, "talbase check job.bag"), "job.bag: valid\r\n");
}

TEST(Terminal, GetsHelpOfItsWidth)
{
    const Workplace lWorkplace;
    for (const std::string lCommand : {"talbase --help", "talbase help check", "talbase help window"})
    {
        const auto lWidthAt = [&](unsigned short iWidth) {
            return LongestLine(RunOnTerminal(lWorkplace, lCommand, iWidth));
        };
        EXPECT_LE(lWidthAt(50), 50U) << lCommand;
        EXPECT_LE(lWidthAt(0), 80U) << lCommand;
        EXPECT_GT(lWidthAt(0), 70U) << lCommand;
        EXPECT_LE(lWidthAt(120), 120U) << lCommand;
        EXPECT_GT(lWidthAt(120), 100U) << lCommand;
        EXPECT_LE(LongestLine(RunOnTerminal(lWorkplace, "COLUMNS=60 " + lCommand, 120)), 60U) << lCommand;
        const std::string lPiped = RunOnTerminal(lWorkplace, lCommand + " | cat", 50);
        EXPECT_GT(LongestLine(lPiped), 70U) << lCommand;
        EXPECT_LE(LongestLine(lPiped), 80U) << lCommand;
    }
    const std::string lNarrow = RunOnTerminal(lWorkplace, "talbase --help", 50);
    EXPECT_NE(lNarrow.find("  diff: 0 the same, 1 different, 2 trouble,\r\n  unreadable.\r\n"), std::string::npos)
        << lNarrow;
}

TEST(Terminal, GetsProgressOfItsWidth)
{
    const Workplace lWorkplace;
    lWorkplace.Write("large.bag", "EndDelimiter***BeginDelimiter++++***a++++" + std::string(17000000, 'x') + "***");
    const std::string lScreen = RunOnTerminal(lWorkplace, "talbase check large.bag", 20);
    EXPECT_NE(lScreen.find("\033[Kreading large.bag …\r"), std::string::npos) << lScreen;
    EXPECT_EQ(RunOnTerminal(lWorkplace, "talbase check -q large.bag", 20), "");
}

// Whoever forgets an argument would wonder why nothing happens.
TEST(Terminal, IsToldWhatIsWaitedFor)
{
    const Workplace lWorkplace;
    const auto lFirstLine = [&](const std::string& iCommand) {
        const std::string lScreen = RunOnTerminal(lWorkplace, "timeout --foreground 5 " + iCommand, 0, "\x04");
        return lScreen.substr(0, lScreen.find("\r\n"));
    };
    const std::string lWaiting = "talbase: waiting for ";
    const std::string lEnd = " on standard input; Ctrl-D ends it";
    for (const char* lCommand : {"talbase set Subject job.bag", "talbase show", "talbase check -", "talbase get Job",
                                 "talbase diff job.bag -", "talbase redact", "talbase to-json"})
    {
        EXPECT_EQ(lFirstLine(lCommand), lWaiting + "a text form" + lEnd) << lCommand;
    }
    EXPECT_EQ(lFirstLine("talbase from-json"), lWaiting + "a JSON document" + lEnd);
    EXPECT_EQ(lFirstLine("talbase set Job --value-from - job.bag"), lWaiting + "the value" + lEnd);
    EXPECT_EQ(lFirstLine("talbase check --quiet -"), "");
    EXPECT_EQ(RunOnTerminal(lWorkplace, "talbase get Job <job.bag"), "17\r\n");
}

TEST(Terminal, GetsWindowsOfItsWidth)
{
    const Workplace lWorkplace;
    const std::string lWindow = "talbase window --color=never --at 23 --close 1 --close 3 --close 5 ";
    EXPECT_EQ(RunOnTerminal(lWorkplace, lWindow, 75),
              "00 01 02 03 04 05 06 07 08 09 10 11 12 13 14 15 16 17 18 19 20 21 22 23\r\n"
              "██ ·· ██ ·· ██ ·· ██ ██ ██ ██ ██ ██ ██ ██ ██ ██ ██ ██ ██ ██ ██ ██ ██ ██\r\n"
              "                                                                open ^^\r\n"
              "open 00:00-00:59, 02:00-02:59, 04:00-04:59, 06:00-23:59\r\n");
    EXPECT_EQ(RunOnTerminal(lWorkplace, lWindow, 40), "00 01 02 03 04 05 06 07 08 09 10 11\r\n"
                                                      "██ ·· ██ ·· ██ ·· ██ ██ ██ ██ ██ ██\r\n"
                                                      "12 13 14 15 16 17 18 19 20 21 22 23\r\n"
                                                      "██ ██ ██ ██ ██ ██ ██ ██ ██ ██ ██ ██\r\n"
                                                      "                                 ^^ open\r\n"
                                                      "open 00:00-00:59, 02:00-02:59,\r\n"
                                                      "     04:00-04:59, 06:00-23:59\r\n");
    for (unsigned short lWidth = 18; lWidth < 90; ++lWidth)
    {
        EXPECT_LE(LongestLine(RunOnTerminal(lWorkplace, lWindow, lWidth)), lWidth);
    }
}

TEST(Terminal, GetsTreesOfItsWidth)
{
    const Workplace lWorkplace;
    lWorkplace.Write("wide.bag",
                     "Gr\xC3\xB6\xC3\x9F"
                     "e=\xE6\xBC\xA2\xE5\xAD\x97\xE6\xBC\xA2\xE5\xAD\x97\xE6\xBC\xA2"
                     "\xE5\xAD\x97\xE6\xBC\xA2\xE5\xAD\x97\xE6\xBC\xA2\xE5\xAD\x97\xE6\xBC\xA2\xE5\xAD\x97;short=v;"
                     "A name that alone is longer than a line=1;n=n=n=n=n=n=n=deep=value;;;;;;;;");
    EXPECT_EQ(RunOnTerminal(lWorkplace, "talbase show --color=never --begin = --end ';' wide.bag", 32),
              "wide.bag  begin \"=\", end \";\"; 3…\r\n"
              "├── Größe = 漢… (+11 characters)\r\n"
              "├── short = v\r\n"
              "├── A name that alone is longer…\r\n"
              "└── n  (1 bag)\r\n"
              "    └── n  (1 bag)\r\n"
              "        └── n  (1 bag)\r\n"
              "            └── n  (1 bag)\r\n"
              "                └── n  (1 bag)\r\n"
              "                ⋯ level 6 └── n…\r\n"
              "                ⋯ level 7 └── n…\r\n"
              "                ⋯ level 8 └── d…\r\n");
    const std::string lLong = "talbase show --color=never long.bag";
    EXPECT_EQ(LongestLine(RunOnTerminal(lWorkplace, lLong, 60)), 60U);
    EXPECT_EQ(LongestLine(RunOnTerminal(lWorkplace, lLong)), 80U);
    EXPECT_EQ(LongestLine(RunOnTerminal(lWorkplace, "COLUMNS=100 " + lLong, 60)), 100U);
    EXPECT_GT(LongestLine(RunOnTerminal(lWorkplace, lLong + " --cut 0", 60)), 300U);
    EXPECT_GT(LongestLine(RunOnTerminal(lWorkplace, lLong + " | cat", 60)), 200U);
}

TEST(Terminal, GetsExcerptsOfItsWidth)
{
    const Workplace lWorkplace;
    lWorkplace.Write("a.bag", "EndDelimiter***BeginDelimiter++++***a++++" + std::string(60, 'x') + "***b");
    const auto lExcerptAt = [&](unsigned short iWidth) {
        const std::string lScreen = RunOnTerminal(lWorkplace, "talbase check --color=never a.bag", iWidth);
        return lScreen.substr(lScreen.find('\n') + 1);
    };
    const std::string lEnd = "a.bag: valid, 1 warning\r\n";
    EXPECT_EQ(lExcerptAt(40), "  …" + std::string(16, 'x') + "***b\r\n" + std::string(22, ' ') + "^\r\n" + lEnd);
    EXPECT_EQ(lExcerptAt(200), "  …" + std::string(37, 'x') + "***b\r\n" + std::string(43, ' ') + "^\r\n" + lEnd);
}

TEST(Terminal, GetsNoControlCharactersUnlessAsked)
{
    const Workplace lWorkplace;
    const std::string lValue = "\033]0;title\007\r\xE2\x80\xAE";
    lWorkplace.Write("evil.bag", "EndDelimiter***BeginDelimiter++++***a++++" + lValue + "\n\tb***");
    lWorkplace.Write("evil.txt", lValue);
    const std::string lShown = "\\x1b]0;title\\x07\\x0d\\u202e";
    EXPECT_EQ(RunOnTerminal(lWorkplace, "talbase get a evil.bag"), lShown + "\r\n\tb\r\n");
    for (const std::string lCommand :
         {"talbase set b 1 evil.bag", "talbase merge evil.bag job.bag", "talbase window --set --close 1 evil.bag",
          "talbase redact evil.bag", "talbase move a b/c evil.bag", "talbase set b --value-from evil.txt job.bag",
          "talbase to-json evil.bag | talbase from-json"})
    {
        const std::string lScreen = RunOnTerminal(lWorkplace, lCommand);
        EXPECT_NE(lScreen.find(lShown), std::string::npos) << lCommand << '\n' << lScreen;
        EXPECT_NE(RunOnTerminal(lWorkplace, lCommand + " --raw").find(lValue), std::string::npos) << lCommand;
        EXPECT_NE(RunOnTerminal(lWorkplace, lCommand + " | cat").find(lValue), std::string::npos) << lCommand;
    }
    EXPECT_NE(RunOnTerminal(lWorkplace, "talbase get --raw a evil.bag").find(lValue), std::string::npos);
    EXPECT_NE(RunOnTerminal(lWorkplace, "talbase to-json evil.bag").find("\\u001b]0;title\\u0007\\r\\u202e"),
              std::string::npos);
    // Characters stay whole wherever the pieces end.
    std::string lLong;
    for (int lIndex = 0; lIndex < 50000; ++lIndex)
    {
        lLong += "\xE6\xBC\xA2";
    }
    lWorkplace.Write("long.bag", "EndDelimiter***BeginDelimiter++++***a++++" + lLong + "***");
    EXPECT_EQ(RunOnTerminal(lWorkplace, "talbase get a long.bag"), lLong + "\r\n");
}
