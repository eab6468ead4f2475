// The old file that is kept beside the new one.

#include "File/TemporaryFile.h"
#include "Tests/Tools/RunTool.h"
#include "Tests/Tools/Screens.h"

#include "TalBase/Initializer.h"

#include <gtest/gtest.h>

#include <csignal>
#include <sys/stat.h>
#include <sys/wait.h>
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

} // namespace

TEST(Backup, IsTheOldFileWithItsModeAndTime)
{
    for (const fs::perms lMode : {fs::perms(0600), fs::perms(0640)})
    {
        const Workplace lWorkplace;
        const fs::path lFile = lWorkplace.GetFolder() / "job.bag";
        const std::string lBefore = lWorkplace.Read("job.bag");
        fs::permissions(lFile, lMode);
        fs::last_write_time(lFile, fs::last_write_time(lFile) - std::chrono::hours(100));
        const fs::file_time_type lTime = fs::last_write_time(lFile);
        const std::size_t lCount = CountFiles(lWorkplace.GetFolder());
        const ToolRun lRun = RunTool({"set", "-i", "--backup", "Job", "18", lFile});
        EXPECT_EQ(lRun.mStatus, 0);
        EXPECT_EQ(lRun.mErr, "");
        EXPECT_EQ(lWorkplace.Read("job.bag~"), lBefore);
        EXPECT_EQ(fs::status(lFile.string() + "~").permissions(), lMode);
        EXPECT_EQ(fs::last_write_time(lFile.string() + "~"), lTime);
        EXPECT_NE(lWorkplace.Read("job.bag").find("Job++++18***"), std::string::npos);
        EXPECT_EQ(fs::status(lFile).permissions(), lMode);
        EXPECT_EQ(CountFiles(lWorkplace.GetFolder()), lCount + 1);
    }
}

TEST(Backup, HasTheSuffixThatIsGivenAndReplacesAnOlderOne)
{
    const Workplace lWorkplace;
    const fs::path lFile = lWorkplace.GetFolder() / "job.bag";
    for (const char* lValue : {"18", "19", "20"})
    {
        EXPECT_EQ(RunTool({"set", "-i", "--backup=.old", "Job", lValue, lFile}).mStatus, 0);
    }
    EXPECT_NE(lWorkplace.Read("job.bag.old").find("Job++++19***"), std::string::npos);
    EXPECT_NE(lWorkplace.Read("job.bag").find("Job++++20***"), std::string::npos);
    EXPECT_FALSE(fs::exists(lFile.string() + "~"));
}

TEST(Backup, IsKeptByEveryCommandThatChangesAFile)
{
    for (const std::string lCommand :
         {"set -i --backup a 1 job.bag", "remove -i --backup Job job.bag", "move -i --backup Job a job.bag",
          "embed -i --backup a brackets.bag job.bag", "redact -i --backup job.bag",
          "delimiters -i --backup --begin [ --end ] job.bag", "window --set --close 12 -i --backup job.bag"})
    {
        const Workplace lWorkplace;
        const std::string lBefore = lWorkplace.Read("job.bag");
        EXPECT_EQ(RunShell(lWorkplace.GetFolder(), "talbase " + lCommand + " 2>&1").mStatus, 0) << lCommand;
        EXPECT_EQ(lWorkplace.Read("job.bag~"), lBefore) << lCommand;
        EXPECT_NE(lWorkplace.Read("job.bag"), lBefore) << lCommand;
    }
}

// What has the backup's name is replaced and never written into: a link's file stays, and another hard link, too.
TEST(Backup, LeavesWhatItsNameStoodForElsewhere)
{
    const Workplace lWorkplace;
    const fs::path lFile = lWorkplace.GetFolder() / "job.bag";
    const std::string lBefore = lWorkplace.Read("job.bag");
    fs::create_symlink("brackets.bag", lFile.string() + "~");
    const std::string lOther = lWorkplace.Read("brackets.bag");
    EXPECT_EQ(RunTool({"set", "-i", "--backup", "Job", "18", lFile}).mStatus, 0);
    EXPECT_EQ(lWorkplace.Read("brackets.bag"), lOther);
    EXPECT_FALSE(fs::is_symlink(lFile.string() + "~"));
    EXPECT_EQ(lWorkplace.Read("job.bag~"), lBefore);

    fs::remove(lFile.string() + "~");
    fs::create_hard_link(lFile, lFile.string() + "~");
    EXPECT_EQ(RunTool({"set", "-i", "--backup", "Job", "19", lFile}).mStatus, 0);
    EXPECT_NE(lWorkplace.Read("job.bag~").find("Job++++18***"), std::string::npos);
    EXPECT_NE(lWorkplace.Read("job.bag").find("Job++++19***"), std::string::npos);
}

// A link's backup lies beside the file, whose name it has.
TEST(Backup, OfALinkLiesBesideTheFile)
{
    const Workplace lWorkplace;
    fs::create_directory(lWorkplace.GetFolder() / "links");
    fs::create_symlink("../job.bag", lWorkplace.GetFolder() / "links/link.bag");
    EXPECT_EQ(RunTool({"set", "-i", "--backup", "Job", "18", lWorkplace.GetFolder() / "links/link.bag"}).mStatus, 0);
    EXPECT_TRUE(fs::exists(lWorkplace.GetFolder() / "job.bag~"));
    EXPECT_EQ(CountFiles(lWorkplace.GetFolder() / "links"), 1U);
}

TEST(Backup, ThatCannotBeKeptLeavesTheFile)
{
    const Workplace lWorkplace;
    const fs::path lFile = lWorkplace.GetFolder() / "job.bag";
    const std::string lBefore = lWorkplace.Read("job.bag");
    fs::create_directory(lFile.string() + "~");
    const std::size_t lCount = CountFiles(lWorkplace.GetFolder());
    const ToolRun lRun = RunTool({"set", "-i", "--backup", "Job", "18", lFile});
    EXPECT_EQ(lRun.mStatus, 2);
    EXPECT_NE(lRun.mErr.find("cannot write " + lFile.string() + "~: "), std::string::npos) << lRun.mErr;
    EXPECT_EQ(lWorkplace.Read("job.bag"), lBefore);
    EXPECT_EQ(CountFiles(lWorkplace.GetFolder()), lCount);
    EXPECT_EQ(RunTool({"set", "-i", "--backup=/../x", "Job", "18", lFile}).mErr,
              "talbase: --backup needs a SUFFIX without /\n");
    EXPECT_EQ(RunTool({"set", "--backup", "Job", "18", lFile}).mStatus, 2) << "it goes with --in-place";
    EXPECT_EQ(lWorkplace.Read("job.bag"), lBefore);
}

// A change that is refused keeps the backup of an earlier one.
TEST(Backup, StaysWhereTheChangeIsRefused)
{
    const Workplace lWorkplace;
    const fs::path lFile = lWorkplace.GetFolder() / "job.bag";
    lWorkplace.Write("job.bag~", "older");
    EXPECT_EQ(RunTool({"set", "-i", "--backup", "Transport", "18", lFile}).mStatus, 1);
    EXPECT_EQ(RunShell(lWorkplace.GetFolder(), "ulimit -c 0; ulimit -f 1; trap '' XFSZ; "
                                               "talbase set -i --backup b $(printf %02000d 1) job.bag 2>/dev/null")
                  .mStatus,
              2);
    EXPECT_EQ(lWorkplace.Read("job.bag~"), "older");
}

TEST(Backup, FileIsThereAtEveryMoment)
{
    const Workplace lWorkplace;
    const Finished lFinished =
        RunShell(lWorkplace.GetFolder(), "(for n in {1..100}; do talbase set -i --backup Job $n job.bag; done) & "
                                         "lReads=0; while kill -0 $! 2>/dev/null; do "
                                         "lText=$(<job.bag) && [[ $lText == End*'***' ]] || echo \"bad: $lText\"; "
                                         "((++lReads)); done 2>&1; ((lReads > 10)) || echo \"$lReads\"");
    EXPECT_EQ(lFinished.mOutput, "");
    EXPECT_NE(lWorkplace.Read("job.bag~").find("Job++++99***"), std::string::npos);
}

// Both may hold passwords: the new text, and the copy of the old one.
TEST(Backup, SignalLeavesNeitherUnfinishedFile)
{
    const Workplace lWorkplace;
    const std::string lFolder = lWorkplace.GetFolder().string() + "/";
    const std::size_t lCount = CountFiles(lFolder);
    const pid_t lChild = ::fork();
    if (lChild == 0)
    {
        ::signal(SIGTERM, SIG_DFL);
        const TalBaseTool::TemporaryFile lText(lFolder);
        {
            const TalBaseTool::TemporaryFile lGone(lFolder);
        }
        const TalBaseTool::TemporaryFile lCopy(lFolder);
        ::_exit(CountFiles(lFolder) == lCount + 2 ? ::raise(SIGTERM) : 3);
    }
    int lStatus = -1;
    ::waitpid(lChild, &lStatus, 0);
    ASSERT_TRUE(WIFSIGNALED(lStatus)) << WEXITSTATUS(lStatus);
    EXPECT_EQ(WTERMSIG(lStatus), SIGTERM);
    EXPECT_EQ(CountFiles(lFolder), lCount);
}
