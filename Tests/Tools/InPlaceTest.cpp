// What changes of the file itself leave of it, and of the folder.

#include "File/TemporaryFile.h"
#include "Tests/Tools/RunTool.h"
#include "Tests/Tools/Screens.h"

#include "TalBase/Initializer.h"

#include <gtest/gtest.h>

#include <csignal>
#include <fstream>
#include <functional>
#include <grp.h>
#include <sstream>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

using namespace ToolTests;

namespace
{

namespace fs = std::filesystem;

const QTalBase::Initializer gInitializer;

std::size_t CountFiles(const fs::path& iFolder)
{
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(iFolder), fs::directory_iterator()));
}

// Runs something in a process of its own, and returns how that ended, as waitpid tells it.
int RunApart(const std::function<void()>& iWork)
{
    const pid_t lChild = ::fork();
    if (lChild == 0)
    {
        iWork();
        ::_exit(0);
    }
    int lStatus = -1;
    ::waitpid(lChild, &lStatus, 0);
    return lStatus;
}

// What every user may do is tried by one who is not root: by nobody where the tests are root's.
constexpr unsigned int gNobody = 65534;

// Makes a file that user's.
void GiveAway(const fs::path& iFile)
{
    ASSERT_EQ(::geteuid() == 0 ? ::chown(iFile.c_str(), gNobody, gNobody) : 0, 0);
}

// Runs the tool as that user.
ToolRun RunUnprivileged(const std::vector<std::string>& iArguments)
{
    const Workplace lOutputs;
    const int lStatus = RunApart([&] {
        std::ostringstream lOut;
        std::ofstream lErr(lOutputs.GetFolder() / "err");
        const bool lIsReady =
            ::geteuid() != 0 || (::setgroups(0, nullptr) == 0 && ::setgid(gNobody) == 0 && ::setuid(gNobody) == 0);
        const int lResult = lIsReady ? TalBaseTool::RunCommandLine(iArguments, {lOut, lErr, false, false}) : 99;
        lErr.close();
        ::_exit(lResult);
    });
    return {WIFEXITED(lStatus) ? WEXITSTATUS(lStatus) : -1, "", lOutputs.Read("err")};
}

} // namespace

TEST(InPlace, ModeAndLinkStay)
{
    const Workplace lWorkplace;
    const fs::path lFile = lWorkplace.GetFolder() / "job.bag";
    const fs::path lLink = lWorkplace.GetFolder() / "link.bag";
    ASSERT_EQ(::chmod(lFile.c_str(), 0640), 0);
    fs::create_symlink("job.bag", lLink);
    const std::size_t lCount = CountFiles(lWorkplace.GetFolder());
    EXPECT_EQ(RunTool({"set", "-i", "Job", "18", lLink}).mStatus, 0);
    struct stat lStatus = {};
    ASSERT_EQ(::stat(lFile.c_str(), &lStatus), 0);
    EXPECT_EQ(lStatus.st_mode & 07777U, 0640U);
    EXPECT_TRUE(fs::is_symlink(lLink));
    EXPECT_NE(lWorkplace.Read("job.bag").find("Job++++18***"), std::string::npos);
    EXPECT_EQ(CountFiles(lWorkplace.GetFolder()), lCount);
}

TEST(InPlace, LineEndStays)
{
    const Workplace lWorkplace;
    const std::string lHeader = "EndDelimiter***BeginDelimiter++++***";
    for (const std::string lLineEnd : {"", "\n", "\r\n"})
    {
        const std::string lFile = lWorkplace.Write("a.bag", lHeader + "a++++1***" + lLineEnd);
        EXPECT_EQ(RunTool({"set", "-i", "a", "2", lFile}).mStatus, 0);
        EXPECT_EQ(lWorkplace.Read("a.bag"), lHeader + "a++++2***" + lLineEnd);
    }
    // Here the line end is the end delimiter.
    const std::string lFile = lWorkplace.Write("a.txt", "a=1\n");
    EXPECT_EQ(RunTool({"set", "-i", "--begin", "=", "--end", "\n", "b", "2", lFile}).mStatus, 0);
    EXPECT_EQ(lWorkplace.Read("a.txt"), "a=1\nb=2\n");
}

TEST(InPlace, WhatIsRefusedLeavesTheFile)
{
    const Workplace lWorkplace;
    const std::string lFile = lWorkplace.GetFolder() / "job.bag";
    const std::string lBefore = lWorkplace.Read("job.bag");
    const std::size_t lCount = CountFiles(lWorkplace.GetFolder());
    EXPECT_EQ(RunTool({"set", "-i", "a+", "2", lFile}).mStatus, 1);
    EXPECT_EQ(RunTool({"remove", "-i", "nothing", lFile}).mStatus, 1);
    EXPECT_EQ(RunTool({"delimiters", "-i", "--begin", "+", "--end", " ", lFile}).mStatus, 1);
    EXPECT_EQ(RunTool({"set", "-i", "a", "2"}).mErr, "talbase: --in-place needs a file\n");
    EXPECT_EQ(lWorkplace.Read("job.bag"), lBefore);
    EXPECT_EQ(CountFiles(lWorkplace.GetFolder()), lCount);
}

// The disk is full, as far as the program can tell.
TEST(InPlace, FailedWriteLeavesTheFileAndNothingElse)
{
    const Workplace lWorkplace;
    lWorkplace.Write("a.bag", "EndDelimiter***BeginDelimiter++++***a++++" + std::string(5000, 'x') + "***");
    const std::string lBefore = lWorkplace.Read("a.bag");
    const std::size_t lCount = CountFiles(lWorkplace.GetFolder());
    const Finished lFinished =
        RunShell(lWorkplace.GetFolder(), "trap '' XFSZ; ulimit -f 1; talbase set -i b 2 a.bag 2>&1");
    EXPECT_EQ(lFinished.mStatus, 2);
    EXPECT_NE(lFinished.mOutput.find("talbase: cannot write "), std::string::npos) << lFinished.mOutput;
    EXPECT_EQ(lWorkplace.Read("a.bag"), lBefore);
    EXPECT_EQ(CountFiles(lWorkplace.GetFolder()), lCount);
}

// A pipe that was opened would wait for a writer; a device that was replaced would be gone.
TEST(InPlace, PipesAndOtherThatIsNoRegularFileAreRefusedBeforeTheyAreRead)
{
    const Workplace lWorkplace;
    const fs::path lPipe = lWorkplace.GetFolder() / "pipe";
    ASSERT_EQ(::mkfifo(lPipe.c_str(), 0600), 0);
    const std::size_t lCount = CountFiles(lWorkplace.GetFolder());
    for (const std::string lName : {"pipe", "."})
    {
        for (const std::string lCommand : {"set -i a 1", "remove -i a", "move -i a b", "embed -i a job.bag",
                                           "redact -i", "delimiters -i --begin [ --end ]", "window --set --close 1 -i"})
        {
            const Finished lFinished =
                RunShell(lWorkplace.GetFolder(), "timeout 60 talbase " + lCommand + " " + lName + " 2>&1");
            EXPECT_EQ(lFinished.mStatus, 2) << lCommand;
            EXPECT_EQ(lFinished.mOutput, "talbase: cannot change " + lName + " in place: it is no regular file\n")
                << lCommand;
        }
    }
    struct stat lStatus = {};
    ASSERT_EQ(::stat(lPipe.c_str(), &lStatus), 0);
    EXPECT_TRUE(S_ISFIFO(lStatus.st_mode));
    EXPECT_EQ(CountFiles(lWorkplace.GetFolder()), lCount);
}

// As root, the file of one user in the folder of everybody, changed by another; without being root there is but one.
TEST(InPlace, OwnerThatCannotBeKeptIsTold)
{
    const Workplace lWorkplace;
    const fs::path lFile = lWorkplace.GetFolder() / "job.bag";
    const bool lIsRoot = ::geteuid() == 0;
    ASSERT_EQ(::chmod(lWorkplace.GetFolder().c_str(), 0777), 0);
    ASSERT_EQ(::chmod(lFile.c_str(), 0644), 0);
    ASSERT_EQ(::chown(lFile.c_str(), lIsRoot ? 12345 : ::geteuid(), lIsRoot ? 54321 : ::getegid()), 0);
    ToolRun lRun = RunUnprivileged({"set", "-i", "Job", "18", lFile});
    EXPECT_EQ(lRun.mStatus, 0) << lRun.mErr;
    const std::string lBegin = "talbase: " + lFile.string() + ": its ";
    EXPECT_EQ(lRun.mErr, lIsRoot ? lBegin + "owner is 65534 now; 12345 could not be kept\n" + lBegin +
                                       "group is 65534 now; 54321 could not be kept\n"
                                 : "");
    EXPECT_NE(lWorkplace.Read("job.bag").find("Job++++18***"), std::string::npos);
}

// What the old group might do is not for the members of the new one.
TEST(InPlace, GroupThatCannotBeKeptTakesItsPermissionsWithIt)
{
    const Workplace lWorkplace;
    const fs::path lFile = lWorkplace.GetFolder() / "job.bag";
    const bool lIsRoot = ::geteuid() == 0;
    ASSERT_EQ(::chmod(lWorkplace.GetFolder().c_str(), 0777), 0);
    ASSERT_EQ(::chown(lFile.c_str(), lIsRoot ? 12345 : ::geteuid(), lIsRoot ? 54321 : ::getegid()), 0);
    ASSERT_EQ(::chmod(lFile.c_str(), 0674), 0);
    const ToolRun lRun = RunUnprivileged({"set", "-i", "--backup", "Job", "18", lFile});
    EXPECT_EQ(lRun.mStatus, 0) << lRun.mErr;
    const fs::perms lExpected = fs::perms(lIsRoot ? 0644 : 0674);
    EXPECT_EQ(fs::status(lFile).permissions(), lExpected);
    EXPECT_EQ(fs::status(lFile.string() + "~").permissions(), lExpected);
    const std::string lTold = "its permissions are 644 now; 674 could not be kept, for they were another group's\n";
    EXPECT_EQ(lRun.mErr.find(lTold) != std::string::npos, lIsRoot) << lRun.mErr;
}

TEST(InPlace, FileWithoutWritePermissionIsChanged)
{
    const Workplace lWorkplace;
    const fs::path lFile = lWorkplace.GetFolder() / "job.bag";
    GiveAway(lWorkplace.GetFolder());
    GiveAway(lFile);
    ASSERT_EQ(::chmod(lFile.c_str(), 0444), 0);
    const ToolRun lRun = RunUnprivileged({"set", "-i", "Job", "18", lFile});
    EXPECT_EQ(lRun.mStatus, 0) << lRun.mErr;
    EXPECT_EQ(lRun.mErr, "");
    EXPECT_EQ(fs::status(lFile).permissions(), fs::perms(0444));
    EXPECT_NE(lWorkplace.Read("job.bag").find("Job++++18***"), std::string::npos);
}

// It can be written into and not read.
TEST(InPlace, FolderThatCannotBeReadIsNoTrouble)
{
    const Workplace lWorkplace;
    const fs::path lFile = lWorkplace.GetFolder() / "job.bag";
    GiveAway(lWorkplace.GetFolder());
    GiveAway(lFile);
    ASSERT_EQ(::chmod(lWorkplace.GetFolder().c_str(), 0300), 0);
    const ToolRun lRun = RunUnprivileged({"set", "-i", "Job", "18", lFile});
    ASSERT_EQ(::chmod(lWorkplace.GetFolder().c_str(), 0700), 0);
    EXPECT_EQ(lRun.mStatus, 0) << lRun.mErr;
    EXPECT_EQ(lRun.mErr, "");
    EXPECT_NE(lWorkplace.Read("job.bag").find("Job++++18***"), std::string::npos);
}

// Where the file system has any; where it has not, there is nothing to be told.
TEST(InPlace, ExtendedAttributesStay)
{
    const Workplace lWorkplace;
    const std::string lFile = lWorkplace.GetFolder() / "job.bag";
    const std::string lAttribute = "user.talbase-test";
    const bool lHasAttributes = ::setxattr(lFile.c_str(), lAttribute.c_str(), "value", 5, 0) == 0;
    const bool lHasEmpty = lHasAttributes && ::setxattr(lFile.c_str(), "user.talbase-empty", "", 0, 0) == 0;
    ASSERT_EQ(::chmod(lFile.c_str(), 0440), 0);
    const ToolRun lRun = RunTool({"set", "-i", "Job", "18", lFile});
    EXPECT_EQ(lRun.mStatus, 0);
    EXPECT_EQ(lRun.mErr, "");
    char lValue[16] = {};
    EXPECT_EQ(::getxattr(lFile.c_str(), lAttribute.c_str(), lValue, sizeof lValue), lHasAttributes ? 5 : -1);
    EXPECT_EQ(std::string(lValue), lHasAttributes ? "value" : "");
    EXPECT_EQ(::getxattr(lFile.c_str(), "user.talbase-empty", lValue, sizeof lValue), lHasEmpty ? 0 : -1);
    EXPECT_EQ(fs::status(lFile).permissions(), fs::perms(0440));
}

TEST(InPlace, OtherHardLinksKeepTheOldTextAndThatIsTold)
{
    const Workplace lWorkplace;
    const std::string lFile = lWorkplace.GetFolder() / "job.bag";
    const std::string lBefore = lWorkplace.Read("job.bag");
    fs::create_hard_link(lFile, lWorkplace.GetFolder() / "other.bag");
    const ToolRun lRun = RunTool({"set", "-i", "Job", "18", lFile});
    EXPECT_EQ(lRun.mStatus, 0);
    EXPECT_EQ(lRun.mErr, "talbase: " + lFile + ": its other names (hard links) keep the old text\n");
    EXPECT_EQ(lWorkplace.Read("other.bag"), lBefore);
}

// It may hold passwords.
TEST(InPlace, SignalLeavesNoPartOfTheText)
{
    const Workplace lWorkplace;
    const std::string lFolder = lWorkplace.GetFolder().string() + "/";
    const std::size_t lCount = CountFiles(lFolder);
    for (const int lSignal : {SIGINT, SIGTERM, SIGHUP})
    {
        const int lStatus = RunApart([&] {
            ::signal(lSignal, SIG_DFL);
            const TalBaseTool::TemporaryFile lFile(lFolder);
            ::_exit(CountFiles(lFolder) == lCount + 1 ? ::raise(lSignal) : 3);
        });
        ASSERT_TRUE(WIFSIGNALED(lStatus)) << WEXITSTATUS(lStatus);
        EXPECT_EQ(WTERMSIG(lStatus), lSignal);
        EXPECT_EQ(CountFiles(lFolder), lCount);
    }
}

TEST(InPlace, IgnoredSignalStaysIgnored)
{
    const Workplace lWorkplace;
    const std::string lFolder = lWorkplace.GetFolder().string() + "/";
    const std::size_t lCount = CountFiles(lFolder);
    const int lStatus = RunApart([&] {
        ::signal(SIGHUP, SIG_IGN);
        const TalBaseTool::TemporaryFile lFile(lFolder);
        ::raise(SIGHUP);
        ::_exit(CountFiles(lFolder) == lCount + 1 ? 0 : 3);
    });
    ASSERT_TRUE(WIFEXITED(lStatus)) << WTERMSIG(lStatus);
    EXPECT_EQ(WEXITSTATUS(lStatus), 0);
}

// Without the file, a signal is what it was before.
TEST(InPlace, SignalsAreAsBeforeAfterwards)
{
    const Workplace lWorkplace;
    const int lStatus = RunApart([&] {
        ::signal(SIGTERM, SIG_IGN);
        ::signal(SIGINT, SIG_DFL);
        RunTool({"set", "-i", "Job", "18", lWorkplace.GetFolder() / "job.bag"});
        ::raise(SIGTERM);
        ::raise(SIGINT);
    });
    ASSERT_TRUE(WIFSIGNALED(lStatus)) << WEXITSTATUS(lStatus);
    EXPECT_EQ(WTERMSIG(lStatus), SIGINT);
    EXPECT_NE(lWorkplace.Read("job.bag").find("Job++++18***"), std::string::npos);
}

// The program itself, ended in the middle of a write.
TEST(InPlace, LimitThatEndsTheProgramLeavesTheFileAndNothingElse)
{
    const Workplace lWorkplace;
    lWorkplace.Write("a.bag", "EndDelimiter***BeginDelimiter++++***a++++" + std::string(5000, 'x') + "***");
    const std::string lBefore = lWorkplace.Read("a.bag");
    const std::size_t lCount = CountFiles(lWorkplace.GetFolder());
    const Finished lFinished = RunShell(
        lWorkplace.GetFolder(), "exec 2>/dev/null; ulimit -c 0; ulimit -f 1; talbase set -i b 2 a.bag; exit $?");
    EXPECT_EQ(lFinished.mStatus, 128 + SIGXFSZ);
    EXPECT_EQ(lWorkplace.Read("a.bag"), lBefore);
    EXPECT_EQ(CountFiles(lWorkplace.GetFolder()), lCount);
}
