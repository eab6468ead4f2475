// Several processes that change one file at the same time: no change is lost.

#include "File/FileLock.h"

#include "File/Document.h"
#include "Tests/Tools/RunTool.h"
#include "Tests/Tools/Screens.h"
#include "Text/Errors.h"

#include "TalBase/Initializer.h"

#include <gtest/gtest.h>

#include <chrono>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace TalBaseTool;
using namespace ToolTests;

namespace
{

namespace fs = std::filesystem;

const QTalBase::Initializer gInitializer;

// A lock as another program takes it.
class ForeignLock
{
public:
    explicit ForeignLock(const fs::path& iFile) : mFile(::open(iFile.c_str(), O_RDONLY | O_CLOEXEC))
    {
        EXPECT_EQ(::flock(mFile, LOCK_EX | LOCK_NB), 0);
    }

    ~ForeignLock()
    {
        ::close(mFile);
    }

    ForeignLock(const ForeignLock&) = delete;
    ForeignLock& operator=(const ForeignLock&) = delete;

private:
    int mFile;
};

// So that a change is seen by the time, too, however soon it comes.
void MakeOld(const fs::path& iFile)
{
    fs::last_write_time(iFile, fs::last_write_time(iFile) - std::chrono::hours(1));
}

double SecondsOf(const std::function<void()>& iWork)
{
    const auto lStart = std::chrono::steady_clock::now();
    iWork();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - lStart).count();
}

const char* const gCommands[] = {"set -i a 1 job.bag",
                                 "remove -i Job job.bag",
                                 "move -i Job a job.bag",
                                 "embed -i a brackets.bag job.bag",
                                 "redact -i job.bag",
                                 "delimiters -i --begin [ --end ] job.bag",
                                 "window --set --close 1 -i job.bag"};

} // namespace

TEST(Lock, AHundredChangesAtOnceAllStay)
{
    const Workplace lWorkplace;
    const Finished lFinished =
        RunShell(lWorkplace.GetFolder(),
                 "for n in {1..100}; do talbase set -i --wait 120 n$n $n job.bag & lIds+=($!); done 2>&1; "
                 "for n in \"${lIds[@]}\"; do wait $n || echo failed; done; talbase check job.bag; ls -A | wc -l");
    const auto lCount = std::distance(fs::directory_iterator(lWorkplace.GetFolder()), fs::directory_iterator());
    EXPECT_EQ(lFinished.mOutput, "job.bag: valid\n" + std::to_string(lCount) + "\n");
    const std::string lText = lWorkplace.Read("job.bag");
    for (int lNumber = 1; lNumber <= 100; ++lNumber)
    {
        const std::string lWanted = "***n" + std::to_string(lNumber) + "++++" + std::to_string(lNumber) + "***";
        EXPECT_NE(lText.find(lWanted), std::string::npos) << lNumber;
    }
}

TEST(Lock, EveryCommandThatChangesAFileGivesUpInTheEnd)
{
    const Workplace lWorkplace;
    const std::string lBefore = lWorkplace.Read("job.bag");
    const ForeignLock lLock(lWorkplace.GetFolder() / "job.bag");
    for (const std::string lCommand : gCommands)
    {
        const Finished lFinished = RunShell(lWorkplace.GetFolder(), "talbase " + lCommand + " --wait 0 2>&1");
        EXPECT_EQ(lFinished.mStatus, 2) << lCommand;
        EXPECT_EQ(lFinished.mOutput, "talbase: cannot lock job.bag within 0 seconds, since another process is changing "
                                     "it; --wait SECONDS waits longer\n")
            << lCommand;
    }
    EXPECT_EQ(lWorkplace.Read("job.bag"), lBefore);
    EXPECT_EQ(RunShell(lWorkplace.GetFolder(), "talbase get Job job.bag; talbase set Job 18 job.bag >new").mStatus, 0)
        << "who only reads waits for nobody";
}

TEST(Lock, IsWaitedForAsLongAsAsked)
{
    const Workplace lWorkplace;
    const std::string lFile = lWorkplace.GetFolder() / "job.bag";
    const ForeignLock lLock(lFile);
    ToolRun lRun;
    EXPECT_GE(SecondsOf([&] { lRun = RunTool({"set", "-i", "--wait", "1", "a", "1", lFile}); }), 1);
    EXPECT_EQ(lRun.mStatus, 2);
    EXPECT_NE(lRun.mErr.find("within 1 second, since"), std::string::npos) << lRun.mErr;
    EXPECT_EQ(RunTool({"set", "-i", "--wait", "-1", "a", "1", lFile}).mStatus, 2);
}

// Who waits for the lock of a file that is replaced meanwhile changes the new file.
TEST(Lock, IsThatOfTheFileThatHasTheNameThen)
{
    const Workplace lWorkplace;
    const std::string lFile = lWorkplace.GetFolder() / "job.bag";
    const ForeignLock lLock(lFile);
    fs::copy_file(lWorkplace.GetFolder() / "job-new.bag", lWorkplace.GetFolder() / "other");
    fs::rename(lWorkplace.GetFolder() / "other", lFile);
    EXPECT_EQ(RunTool({"set", "-i", "--wait", "0", "Added", "1", lFile}).mStatus, 0);
    const std::string lText = lWorkplace.Read("job.bag");
    EXPECT_NE(lText.find("Job++++18***"), std::string::npos) << lText;
    EXPECT_NE(lText.find("Added++++1***"), std::string::npos) << lText;
}

TEST(Lock, IsHeldUntilTheNewTextIsThere)
{
    const Workplace lWorkplace;
    const std::string lFile = lWorkplace.GetFolder() / "job.bag";
    {
        const FileLock lLock(lFile, 0);
        EXPECT_EQ(RunTool({"set", "-i", "--wait", "0", "a", "1", lFile}).mStatus, 2);
    }
    EXPECT_EQ(RunTool({"set", "-i", "--wait", "0", "a", "1", lFile}).mStatus, 0);
    const Document lDocument = LoadToChange(lFile, {}, {}, {true, 0, {}});
    EXPECT_EQ(RunTool({"set", "-i", "--wait", "0", "a", "2", lFile}).mStatus, 2);
}

// By a program that does not lock.
TEST(Lock, FileThatChangedSinceItWasReadIsNotReplaced)
{
    const auto lWrite = [](const fs::path& iFile, const char* ipHow) {
        const Workplace lOther;
        ASSERT_EQ(RunShell(iFile.parent_path(), ipHow).mStatus, 0) << ipHow;
    };
    for (const char* lHow :
         {"tr 7 8 <job.bag >x; cat x >job.bag; rm x", // of the same length
          "printf more >>job.bag", "cp -p job.bag x; mv x job.bag", "rm job.bag", "ln -sf job-new.bag job.bag"})
    {
        const Workplace lWorkplace;
        const fs::path lFile = lWorkplace.GetFolder() / "job.bag";
        MakeOld(lFile);
        const Target lTarget{true, 0, "~"};
        const Document lDocument = LoadToChange(lFile, {}, {}, lTarget);
        lWrite(lFile, lHow);
        const std::string lText = fs::exists(lFile) ? lWorkplace.Read("job.bag") : "";
        std::ostringstream lStream;
        EXPECT_THROW(Save(lDocument, lTarget, {lStream, lStream}), IoError) << lHow;
        EXPECT_EQ(fs::exists(lFile) ? lWorkplace.Read("job.bag") : "", lText) << lHow;
        EXPECT_FALSE(fs::exists(lFile.string() + "~")) << lHow;
    }
}
