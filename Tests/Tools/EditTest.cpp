// A bag in an editor: scripts in the place of a person's, with and without a terminal.

#include "Tests/Tools/Screens.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace ToolTests;

namespace
{

namespace fs = std::filesystem;

// A workplace where editors are scripts, and the lists to be edited lie in a folder that is looked at.
class EditPlace
{
public:
    EditPlace()
    {
        fs::create_directory(GetFolder() / "tmp");
    }

    const fs::path& GetFolder() const
    {
        return mWorkplace.GetFolder();
    }

    // Runs a command line with an editor, a line of the shell to which the name of the list is "$1", and puts both
    // outputs into one.
    Finished Run(const std::string& iEditor, const std::string& iCommand) const
    {
        hWriteEditor(iEditor);
        Finished lFinished = RunShell(GetFolder(), gSettings + "exec 2>&1 </dev/null; " + iCommand);
        hReplaceName(lFinished.mOutput);
        return lFinished;
    }

    struct Answer
    {
        std::string mAwaited;
        std::string mKeys;
    };

    // The same on a terminal where somebody answers.
    Finished RunOnTerminal(const std::string& iEditor, const std::string& iCommand,
                           const std::vector<Answer>& iAnswers) const;

    std::string Read(const std::string& iName) const
    {
        return mWorkplace.Read(iName);
    }

    std::string Write(const std::string& iName, const std::string& iBytes) const
    {
        return mWorkplace.Write(iName, iBytes);
    }

    // Whether nothing is left of lists.
    bool IsClean() const
    {
        return fs::is_empty(GetFolder() / "tmp");
    }

private:
    static const std::string gSettings;

    void hWriteEditor(const std::string& iEditor) const
    {
        Write("editor", "#!/bin/bash\n" + iEditor + "\n");
        fs::permissions(GetFolder() / "editor", fs::perms(0755));
    }

    // The folder's name is another one each time.
    void hReplaceName(std::string& oText) const
    {
        const std::string lFolder = GetFolder() / "tmp/talbase-";
        for (std::size_t lPlace; (lPlace = oText.find(lFolder)) != std::string::npos;)
        {
            oText.replace(lPlace, lFolder.size() + std::string("XXXXXX/properties.txt").size(), "LIST");
        }
    }

    Workplace mWorkplace;
};

const std::string EditPlace::gSettings = "export TMPDIR=$PWD/tmp EDITOR=$PWD/editor; unset VISUAL; ";

Finished EditPlace::RunOnTerminal(const std::string& iEditor, const std::string& iCommand,
                                  const std::vector<Answer>& iAnswers) const
{
    hWriteEditor(iEditor);
    int lTerminal = -1;
    const pid_t lChild = ::forkpty(&lTerminal, nullptr, nullptr, nullptr);
    if (lChild == 0)
    {
        const std::string lLine = "cd '" + GetFolder().string() + "'; PATH='" +
                                  fs::path(TALBASE_TOOL_PROGRAM).parent_path().string() + "':$PATH; " + gSettings +
                                  iCommand;
        ::execlp("bash", "bash", "-c", lLine.c_str(), static_cast<char*>(nullptr));
        ::_exit(127);
    }
    Finished lFinished{-1, ""};
    auto lAnswer = iAnswers.begin();
    std::size_t lSeen = 0;
    char lBuffer[4096];
    for (struct pollfd lFile = {lTerminal, POLLIN, 0}; ::poll(&lFile, 1, 30000) == 1;)
    {
        const ssize_t lCount = ::read(lTerminal, lBuffer, sizeof lBuffer);
        if (lCount <= 0)
        {
            break;
        }
        lFinished.mOutput.append(lBuffer, static_cast<std::size_t>(lCount));
        const std::size_t lPlace =
            lAnswer != iAnswers.end() ? lFinished.mOutput.find(lAnswer->mAwaited, lSeen) : std::string::npos;
        if (lPlace != std::string::npos)
        {
            lSeen = lPlace + lAnswer->mAwaited.size();
            EXPECT_GT(::write(lTerminal, lAnswer->mKeys.data(), lAnswer->mKeys.size()), 0);
            ++lAnswer;
        }
    }
    ::close(lTerminal);
    int lStatus = 0;
    ::waitpid(lChild, &lStatus, 0);
    lFinished.mStatus = WIFEXITED(lStatus) ? WEXITSTATUS(lStatus) : -1;
    EXPECT_EQ(lAnswer, iAnswers.end()) << lFinished.mOutput;
    lFinished.mOutput.erase(std::remove(lFinished.mOutput.begin(), lFinished.mOutput.end(), '\r'),
                            lFinished.mOutput.end());
    hReplaceName(lFinished.mOutput);
    return lFinished;
}

const std::string gHeader = "EndDelimiter***BeginDelimiter++++***";

} // namespace

TEST(Edit, GivesAListAndTakesItBack)
{
    const EditPlace lPlace;
    const Finished lFinished =
        lPlace.Run("cp \"$1\" list; stat -c %a \"$1\" \"${1%/*}\" >modes; echo \"$1\" >name; "
                   "sed -i -e s/17/18/ -e '/Host/d' -e '$a New/\"x\" = \"a\\\\nb\"' -e '$a Added = 1 + 1' \"$1\"",
                   "talbase edit job.bag");
    EXPECT_EQ(lFinished.mOutput, "");
    EXPECT_EQ(lFinished.mStatus, 0);
    EXPECT_EQ(lPlace.Read("list"),
              "# begin \"++++\", end \"***\"\n"
              "# Each line is a property: PATH = VALUE. A line that says (hidden) stands for what is\n"
              "# there and keeps it. Lines that begin with # say nothing.\n"
              "Job = 17\n"
              "Subject = Save 20% + shipping\n"
              "FTPServerPassword = (hidden)\n"
              "DeliveryWindow = \" 0, 1, 2, 3, 4, 5,22,23,\"\n"
              "Transport/Host = ftp.example.com\n"
              "Transport/FTPServerPassword = (hidden)\n"
              "Transport/Route/Via = mx1\n"
              "Transport/Route/Port = 25\n");
    EXPECT_EQ(lPlace.Read("modes"), "600\n700\n");
    EXPECT_EQ(lPlace.Read("name").rfind((lPlace.GetFolder() / "tmp/talbase-").string(), 0), 0U);
    EXPECT_EQ(lPlace.Read("job.bag"),
              gHeader +
                  "Job++++18***Subject++++Save 20% &#43; shipping***FTPServerPassword++++own-secret***"
                  "DeliveryWindow++++ 0, 1, 2, 3, 4, 5,22,23,***Added++++1 &#43; 1***Transport++++"
                  "FTPServerPassword++++nested-secret***Route++++Via++++mx1***Port++++25*********New++++\"x\"++++a\nb"
                  "******");
    EXPECT_TRUE(lPlace.IsClean());
}

TEST(Edit, OrderOfLinesIsTheOrderOfTheBag)
{
    const EditPlace lPlace;
    lPlace.Write("a.bag", gHeader + "a++++1***b++++2***N++++x++++1******M++++y++++2******");
    EXPECT_EQ(lPlace.Run("(head -3 \"$1\"; tail -n +4 \"$1\" | tac) >x; cat x >\"$1\"", "talbase edit a.bag").mStatus,
              0);
    EXPECT_EQ(lPlace.Read("a.bag"), gHeader + "b++++2***a++++1***M++++y++++2******N++++x++++1******");
}

TEST(Edit, WithoutAChangeWritesNothingAndSaysSo)
{
    for (const char* lEditor : {"true", "touch \"$1\"", "echo '# a comment' >>\"$1\"", "sed -i 1d \"$1\"",
                                "sed -i 's/ = 17$/ = \"17\"/' \"$1\"", "sed -i 's/$/\\r/' \"$1\""})
    {
        const EditPlace lPlace;
        const Finished lFinished = lPlace.Run(
            lEditor, "stat -c %i job.bag >old; talbase edit --backup job.bag; stat -c %i job.bag | cmp old -");
        EXPECT_EQ(lFinished.mOutput, "talbase: job.bag: unchanged\n") << lEditor;
        EXPECT_EQ(lFinished.mStatus, 0) << lEditor;
        EXPECT_FALSE(fs::exists(lPlace.GetFolder() / "job.bag~"));
        EXPECT_TRUE(lPlace.IsClean());
        EXPECT_EQ(lPlace.Run(lEditor, "talbase edit -q job.bag").mOutput, "") << lEditor;
    }
}

TEST(Edit, SecretsAreShownWhereAskedFor)
{
    const EditPlace lPlace;
    EXPECT_EQ(
        lPlace.Run("cp \"$1\" list; sed -i s/own-secret/new-secret/ \"$1\"", "talbase edit --show-secrets job.bag")
            .mStatus,
        0);
    EXPECT_NE(lPlace.Read("list").find("\nFTPServerPassword = own-secret\n"), std::string::npos);
    EXPECT_NE(lPlace.Read("job.bag").find("FTPServerPassword++++new-secret***"), std::string::npos);
    EXPECT_EQ(lPlace.Run("cp \"$1\" list", "talbase edit --name Transport job.bag").mStatus, 0);
    EXPECT_NE(lPlace.Read("list").find("\nTransport/ = (hidden)\n"), std::string::npos) << lPlace.Read("list");
    EXPECT_EQ(lPlace.Read("list").find("ftp.example.com"), std::string::npos);
}

TEST(Edit, MaskedLineKeepsWhatItStandsFor)
{
    const EditPlace lPlace;
    const std::string lNest = "Keys++++a++++1&#42;***N++++b++++2*********";
    const std::string lText = gHeader + "p++++1***FTPServerPassword++++a&#43;b***n++++the Keys are here***" + lNest;
    lPlace.Write("a.bag", lText);
    EXPECT_EQ(lPlace.Run("cp \"$1\" list; sed -i s/^p/q/ \"$1\"", "talbase edit --name Keys a.bag").mOutput, "");
    EXPECT_NE(lPlace.Read("list").find("\nn = (hidden)\nKeys/ = (hidden)\n"), std::string::npos) << lPlace.Read("list");
    EXPECT_EQ(lPlace.Read("a.bag"),
              gHeader + "q++++1***FTPServerPassword++++a&#43;b***n++++the Keys are here***" + lNest);
    // Moved among its neighbours, taken out, and replaced by what is seen.
    EXPECT_EQ(lPlace
                  .Run("sed -i -e '/^Keys/d' -e '/^FTP/s/(hidden)/seen/' -e '/^n /{h;d}' -e '$G' \"$1\"; "
                       "echo 'n = (hidden)' >>\"$1\"",
                       "talbase edit --name Keys a.bag")
                  .mOutput,
              "");
    EXPECT_EQ(lPlace.Read("a.bag"), gHeader + "q++++1***FTPServerPassword++++seen***n++++the Keys are here***");
}

TEST(Edit, MaskedLineThatStandsForNothingIsRefused)
{
    const EditPlace lPlace;
    const std::string lBefore = lPlace.Read("job.bag");
    const auto lRefused = [&](const std::string& iEditor, const std::string& iMessage) {
        const Finished lFinished = lPlace.Run(iEditor, "talbase edit job.bag");
        EXPECT_EQ(lFinished.mStatus, 2) << iEditor;
        EXPECT_EQ(lFinished.mOutput, iMessage + "\ntalbase: job.bag: nothing is saved\n");
        EXPECT_EQ(lPlace.Read("job.bag"), lBefore);
        EXPECT_TRUE(lPlace.IsClean());
    };
    const std::string lNothing = "nothing is masked at this path; a masked line cannot be added, moved or renamed";
    lRefused("echo 'New = (hidden)' >>\"$1\"", "LIST:12:1: " + lNothing);
    lRefused("sed -i 's/^FTP.*/Password2 = (hidden)/' \"$1\"", "LIST:6:1: " + lNothing);
    lRefused("sed -i 's/^FTP/Transport\\/Route\\/FTP/' \"$1\"", "LIST:6:1: " + lNothing);
    lRefused("sed -i 's/^Job.*/Job = (hidden)/' \"$1\"", "LIST:4:1: " + lNothing);
    lRefused("sed -i 's/^FTPServerPassword =/FTPServerPassword\\/ =/' \"$1\"", "LIST:6:1: " + lNothing);
    lRefused("sed -i '/^FTP/p' \"$1\"", "LIST:7:1: this path stands in line 6 already");
}

TEST(Edit, WrongListIsToldAndNothingIsWritten)
{
    const EditPlace lPlace;
    const std::string lBefore = lPlace.Read("job.bag");
    const auto lRefused = [&](const std::string& iEditor, const std::string& iMessage) {
        const Finished lFinished = lPlace.Run(iEditor, "talbase edit job.bag");
        EXPECT_EQ(lFinished.mStatus, 2) << iEditor;
        EXPECT_EQ(lFinished.mOutput, iMessage + "\ntalbase: job.bag: nothing is saved\n");
        EXPECT_EQ(lPlace.Read("job.bag"), lBefore);
        EXPECT_TRUE(lPlace.IsClean());
    };
    lRefused("echo nonsense >>\"$1\"", "LIST:12:1: a line is 'path = value', and ' = ' is missing");
    lRefused("sed -i 's/^Job/Job+/' \"$1\"",
             "LIST:4:1: with these delimiters it would be a name that holds a delimiter or runs into one");
    lRefused("sed -i '1s/+/-/' \"$1\"",
             "LIST:1:1: this line is not for editing; 'talbase delimiters' changes the delimiters");
    lRefused("printf 'a = \\xff\\n' >>\"$1\"", "LIST:12:5: byte 0xff is not UTF-8");
    lRefused("rm \"$1\"", "talbase: cannot read LIST: No such file or directory");
}

TEST(Edit, EditorThatFailsChangesNothing)
{
    const EditPlace lPlace;
    const std::string lBefore = lPlace.Read("job.bag");
    const auto lRefused = [&](const std::string& iEditor, const std::string& iHow) {
        const Finished lFinished = lPlace.Run("sed -i s/17/18/ \"$1\"; " + iEditor, "talbase edit job.bag");
        EXPECT_EQ(lFinished.mStatus, 2) << iEditor;
        EXPECT_EQ(lFinished.mOutput, "talbase: the editor ended with " + iHow + "; nothing is changed\n");
        EXPECT_EQ(lPlace.Read("job.bag"), lBefore);
        EXPECT_TRUE(lPlace.IsClean());
    };
    lRefused("exit 3", "status 3");
    lRefused("touch \"${1%/*}/.properties.swp\"; mkdir \"${1%/*}/more\"; exit 1", "status 1");
    lRefused("kill -KILL $$", "signal 9");
}

TEST(Edit, EditorIsTheFirstOfSeveral)
{
    const EditPlace lPlace;
    fs::create_directory(lPlace.GetFolder() / "bin");
    for (const char* lName : {"bin/say", "bin/vi"})
    {
        lPlace.Write(lName, "#!/bin/bash\necho \"${0##*/}: $*\"\n");
        fs::permissions(lPlace.GetFolder() / lName, fs::perms(0755));
    }
    const auto lSays = [&](const std::string& iSettings) {
        const std::string lOutput =
            lPlace.Run("true", "PATH=bin; " + iSettings + " " + TALBASE_TOOL_PROGRAM + " edit -q job.bag").mOutput;
        return lOutput.substr(0, lOutput.find('\n'));
    };
    EXPECT_EQ(lSays("VISUAL='say a' EDITOR=false"), "say: a LIST");
    EXPECT_EQ(lSays("EDITOR='say \"b  c\"' VISUAL="), "say: b  c LIST");
    EXPECT_EQ(lSays("EDITOR='x=y; say $x'"), "say: y LIST");
    EXPECT_EQ(lSays("EDITOR="), "vi: LIST");
    fs::copy_file(lPlace.GetFolder() / "bin/say", lPlace.GetFolder() / "bin/editor");
    EXPECT_EQ(lSays("unset EDITOR;"), "editor: LIST");
}

TEST(Edit, HoldsTheLockFromReadingToWriting)
{
    const EditPlace lPlace;
    const Finished lFinished = lPlace.Run(
        "talbase set -i --wait 0 Job 1 job.bag && echo changed; talbase get Job job.bag; sed -i s/17/18/ \"$1\"",
        "talbase edit job.bag; talbase get Job job.bag");
    EXPECT_EQ(lFinished.mOutput, "talbase: cannot lock job.bag within 0 seconds, since another process is changing it; "
                                 "--wait SECONDS waits longer\n17\n18\n");
    EXPECT_EQ(lPlace.Run("true", "exec 9<job.bag; flock 9; talbase edit --wait 0 job.bag").mStatus, 2);
}

TEST(Edit, FileThatChangedMeanwhileIsNotReplaced)
{
    const EditPlace lPlace;
    const Finished lFinished = lPlace.Run("sed -i s/17/18/ \"$1\"; cp job-new.bag job.bag", "talbase edit job.bag");
    EXPECT_EQ(lFinished.mStatus, 2);
    EXPECT_NE(lFinished.mOutput.find("was changed by another process since it was read; nothing is written\n"),
              std::string::npos)
        << lFinished.mOutput;
    EXPECT_EQ(lPlace.Read("job.bag"), lPlace.Read("job-new.bag"));
    EXPECT_TRUE(lPlace.IsClean());
}

TEST(Edit, BackupIsKept)
{
    const EditPlace lPlace;
    const std::string lBefore = lPlace.Read("job.bag");
    EXPECT_EQ(lPlace.Run("sed -i s/17/18/ \"$1\"", "talbase edit --backup=.old job.bag").mOutput, "");
    EXPECT_EQ(lPlace.Read("job.bag.old"), lBefore);
    EXPECT_NE(lPlace.Read("job.bag"), lBefore);
}

TEST(Edit, NeedsAFileAndATextInGoodOrder)
{
    const EditPlace lPlace;
    EXPECT_EQ(lPlace.Run("echo started", "talbase edit -").mOutput,
              "talbase: a FILE is needed; standard input cannot be edited\n");
    EXPECT_EQ(lPlace.Run("echo started", "talbase edit .").mStatus, 2);
    lPlace.Write("odd.bag", "EndDelimiter***BeginDelimiter++++FTPServerPassword***x++++FTPServerPassword1***");
    const Finished lFinished = lPlace.Run("echo started", "talbase edit odd.bag");
    EXPECT_EQ(lFinished.mStatus, 2);
    EXPECT_EQ(lFinished.mOutput, "talbase: odd.bag: a sensitive name is in this text, which is not in good order, so "
                                 "nothing of it is shown; --show-secrets shows it\n");
    EXPECT_EQ(lPlace.Run("echo started", "TMPDIR=/nonexistent talbase edit job.bag").mOutput,
              "talbase: cannot write into /nonexistent: No such file or directory\n");
    EXPECT_TRUE(lPlace.IsClean());
}

// As visudo does.
TEST(Edit, WrongListIsOfferedAgainAtATerminal)
{
    const EditPlace lPlace;
    const std::string lBefore = lPlace.Read("job.bag");
    const std::string lEditor = "grep -q bad \"$1\" && sed -i -e /bad/d -e s/17/18/ \"$1\" || echo bad >>\"$1\"";
    const std::string lQuestion = "LIST:12:1: a line is 'path = value', and ' = ' is missing\n"
                                  "What now? (e)dit again, (q)uit without saving: ";
    Finished lFinished = lPlace.RunOnTerminal(lEditor, "talbase edit job.bag", {{"saving: ", "q\n"}});
    EXPECT_EQ(lFinished.mOutput, lQuestion + "q\ntalbase: job.bag: nothing is saved\n");
    EXPECT_EQ(lFinished.mStatus, 2);
    EXPECT_EQ(lPlace.Read("job.bag"), lBefore);
    EXPECT_EQ(lPlace.RunOnTerminal(lEditor, "talbase edit job.bag", {{"saving: ", "\x04"}}).mStatus, 2);
    EXPECT_EQ(lPlace.Read("job.bag"), lBefore);
    EXPECT_TRUE(lPlace.IsClean());
    lFinished = lPlace.RunOnTerminal(lEditor, "talbase edit job.bag", {{"saving: ", "what\n"}, {"saving: ", "e\n"}});
    EXPECT_EQ(lFinished.mOutput, lQuestion + "what\nWhat now? (e)dit again, (q)uit without saving: e\n");
    EXPECT_EQ(lFinished.mStatus, 0);
    EXPECT_NE(lPlace.Read("job.bag").find("Job++++18***"), std::string::npos);
    EXPECT_TRUE(lPlace.IsClean());
}

// Also where the editor is at work, and where it does not end by itself.
TEST(Edit, SignalLeavesNothing)
{
    for (const std::string lSignal : {"TERM", "HUP", "USR1", "ALRM"})
    {
        const EditPlace lPlace;
        const std::string lBefore = lPlace.Read("job.bag");
        const Finished lFinished =
            lPlace.Run("sed -i s/17/18/ \"$1\"; echo $$ >ready; exec sleep 60",
                       "talbase edit job.bag & while [ ! -s ready ]; do sleep 0.01; done; kill -" + lSignal +
                           " $!; wait $! 2>/dev/null; echo $(($? == 128 + $(kill -l " + lSignal +
                           "))); kill -0 $(<ready) 2>/dev/null && echo \"editor runs\"");
        EXPECT_EQ(lFinished.mOutput, "1\n") << lSignal;
        EXPECT_EQ(lPlace.Read("job.bag"), lBefore);
        EXPECT_TRUE(lPlace.IsClean()) << lSignal;
    }
    const EditPlace lPlace;
    const Finished lFinished =
        lPlace.Run("trap '' TERM; echo $$ >ready; exec sleep 60",
                   "talbase edit job.bag & while [ ! -s ready ]; do sleep 0.01; done; kill $!; wait $! 2>/dev/null; "
                   "echo $?; kill -KILL $(<ready)");
    EXPECT_EQ(lFinished.mOutput, "143\n") << "an editor that does not end is left to itself";
    EXPECT_TRUE(lPlace.IsClean());
}

TEST(Edit, SignalAtTheQuestionLeavesNothing)
{
    for (const std::string lKeys : {"\x03", "\x1c"})
    {
        const EditPlace lPlace;
        const std::string lBefore = lPlace.Read("job.bag");
        const Finished lFinished = lPlace.RunOnTerminal(
            "echo bad >>\"$1\"", "trap : INT QUIT; ulimit -c 0; talbase edit job.bag; echo \"status $?\"",
            {{"saving: ", lKeys}});
        EXPECT_NE(lFinished.mOutput.find(lKeys == "\x03" ? "status 130" : "status 131"), std::string::npos)
            << lFinished.mOutput;
        EXPECT_EQ(lPlace.Read("job.bag"), lBefore);
        EXPECT_TRUE(lPlace.IsClean());
    }
}

// What is typed at the terminal while the editor runs is the editor's.
TEST(Edit, InterruptBelongsToTheEditor)
{
    const EditPlace lPlace;
    const Finished lFinished =
        lPlace.RunOnTerminal("lCount=0; trap 'echo \"interrupted $((++lCount))\"' INT QUIT; echo ready; "
                             "while ((lCount < 2)); do sleep 0.05; done; sed -i s/17/18/ \"$1\"",
                             "trap : INT QUIT; ulimit -c 0; talbase edit job.bag; echo \"status $?\"",
                             {{"ready", "\x03"}, {"interrupted 1", "\x1c"}});
    EXPECT_NE(lFinished.mOutput.find("status 0"), std::string::npos) << lFinished.mOutput;
    EXPECT_NE(lPlace.Read("job.bag").find("Job++++18***"), std::string::npos);
    EXPECT_TRUE(lPlace.IsClean());
}

TEST(Edit, IgnoredSignalStaysIgnored)
{
    const EditPlace lPlace;
    const Finished lFinished =
        lPlace.Run("kill -HUP $PPID; sed -i s/17/18/ \"$1\"", "trap '' HUP; talbase edit job.bag; echo $?");
    EXPECT_EQ(lFinished.mOutput, "0\n");
    EXPECT_NE(lPlace.Read("job.bag").find("Job++++18***"), std::string::npos);
}
