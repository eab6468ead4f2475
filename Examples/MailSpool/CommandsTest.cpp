#include "Commands.h"

#include "Errors.h"
#include "FileIO.h"
#include "Source.h"
#include "Spool.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace MailSpool
{

namespace
{

class Commands : public testing::Test
{
protected:
    Commands()
    {
        std::string lTemplate = (std::filesystem::temp_directory_path() / "mail-spool-test-XXXXXX").string();
        mFolder = ::mkdtemp(lTemplate.data());
        mOptions.mSpool = mFolder / "spool";
        mOptions.mPaths = {MAILSPOOL_MAIL_FOLDER};
        mOptions.mUser = L"anonymous";
        mOptions.mPassword = L"sesame";
    }

    ~Commands() override
    {
        std::filesystem::remove_all(mFolder);
    }

    int Run(int (*ipCommand)(const Options&, std::ostream&, std::ostream&))
    {
        std::ostringstream lOut;
        std::ostringstream lErr;
        const int lStatus = ipCommand(mOptions, lOut, lErr);
        mOut = lOut.str();
        mErr = lErr.str();
        return lStatus;
    }

    std::filesystem::path Write(const std::string& iName, const std::string& iBytes)
    {
        const std::filesystem::path lPath = mFolder / iName;
        std::ofstream(lPath, std::ios::binary) << iBytes;
        return lPath;
    }

    std::filesystem::path mFolder;
    Options mOptions;
    std::string mOut;
    std::string mErr;
};

// The text files that export writes, in order of their names.
std::vector<std::filesystem::path> GetFiles(const std::filesystem::path& iFolder)
{
    return FindFiles({iFolder});
}

bool Contains(const std::string& iText, const std::string& iPart)
{
    return iText.find(iPart) != iText.npos;
}

constexpr std::size_t gNoLimit = static_cast<std::size_t>(-1);

} // namespace

TEST_F(Commands, AddListVerifyOnTheMailFolderAllGood)
{
    EXPECT_EQ(Run(Add), ExitGood);
    EXPECT_EQ(mOut, "10 messages in, 10 added\n");
    EXPECT_EQ(mErr, "");

    EXPECT_EQ(Run(List), ExitGood);
    EXPECT_TRUE(Contains(mOut, "10 jobs listed, 0 damaged\n"));
    EXPECT_TRUE(Contains(mOut, "***URGENT*** 2*3+4 is written \"2&#42;3&\xE2\x80\xA6"));
    EXPECT_TRUE(Contains(mOut, "An alarm\\x07 and a red \\x1b[31mword"));
    EXPECT_TRUE(Contains(mOut, "Gr\xC3\xBC\xC3\x9F"
                               "e aus K\xC3\xB6ln"));
    EXPECT_TRUE(Contains(mOut, "ftp://north.example:21"));
    EXPECT_FALSE(Contains(mOut, "sesame"));
    EXPECT_EQ(mErr, "");

    EXPECT_EQ(Run(Verify), ExitGood);
    EXPECT_TRUE(Contains(mOut, "same       " MAILSPOOL_MAIL_FOLDER "/09-control-characters.eml\n"));
    EXPECT_TRUE(Contains(mOut, "10 messages, 10 verified\n"));
}

TEST_F(Commands, AddReportsWhatIsNoMessageAndGoesOn)
{
    mOptions.mPaths = {Write("text.txt", "no header here\n"), Write("good.eml", "To: a@a.example\n\nx\n")};
    EXPECT_EQ(Run(Add), ExitDamage);
    EXPECT_EQ(mErr, "mail-spool: " + (mFolder / "text.txt").string() + ": not a message: there is no header field\n");
    EXPECT_EQ(mOut, "2 messages in, 1 added\n");

    mOptions.mPaths = {mFolder / "nowhere", mFolder / "good.eml"};
    EXPECT_EQ(Run(Add), ExitTrouble);
    EXPECT_EQ(mErr, "mail-spool: cannot read " + (mFolder / "nowhere").string() + ": No such file or directory\n");
    EXPECT_EQ(mOut, "2 messages in, 1 added\n");
}

TEST_F(Commands, AddFolderWithoutFileThrows)
{
    mOptions.mPaths = {mFolder};
    Write(".hidden", "To: a@a.example\n");
    EXPECT_THROW(Run(Add), IoError);
}

TEST_F(Commands, ListWithoutSpoolThrows)
{
    EXPECT_THROW(Run(List), IoError);
}

TEST_F(Commands, AddWritesFilesForTheOwnerAlone)
{
    mOptions.mPaths = {Write("good.eml", "To: a@a.example\n\nx\n")};
    EXPECT_EQ(Run(Add), ExitGood);
    using std::filesystem::perms;
    EXPECT_EQ(std::filesystem::status(mOptions.mSpool).permissions(), perms::owner_read | perms::owner_write);
    mOptions.mPaths = {mFolder / "texts"};
    EXPECT_EQ(Run(Export), ExitGood);
    EXPECT_EQ(std::filesystem::status(mFolder / "texts").permissions(), perms::owner_all);
    EXPECT_EQ(std::filesystem::status(GetFiles(mFolder / "texts").at(0)).permissions(),
              perms::owner_read | perms::owner_write);
}

TEST_F(Commands, AddToADamagedSpoolRefusesAndLeavesIt)
{
    EXPECT_EQ(Run(Add), ExitGood);
    std::filesystem::resize_file(mOptions.mSpool, std::filesystem::file_size(mOptions.mSpool) - 1);
    const std::string lBefore = ReadFile(mOptions.mSpool, gNoLimit);
    EXPECT_EQ(Run(Add), ExitDamage);
    EXPECT_EQ(mOut, "10 messages in, 0 added\n");
    EXPECT_TRUE(Contains(mErr, mOptions.mSpool.string() + ": damaged after 9 jobs, so nothing is added (")) << mErr;
    EXPECT_EQ(ReadFile(mOptions.mSpool, gNoLimit), lBefore);
}

TEST_F(Commands, AddTwiceKeepsBoth)
{
    mOptions.mPaths = {Write("good.eml", "To: a@a.example\n\nx\n")};
    EXPECT_EQ(Run(Add), ExitGood);
    EXPECT_EQ(Run(Add), ExitGood);
    EXPECT_EQ(Run(List), ExitGood);
    EXPECT_TRUE(Contains(mOut, "2 jobs listed, 0 damaged\n"));
    EXPECT_EQ(Run(Verify), ExitGood);
}

TEST_F(Commands, ListOfASpoolCutAtEveryByteSaysHowManyJobsWereRead)
{
    mOptions.mPaths = {Write("1.eml", "To: a@a.example\n\n1\n")};
    EXPECT_EQ(Run(Add), ExitGood);
    const std::size_t lFirstJobEnds = std::filesystem::file_size(mOptions.mSpool);
    mOptions.mPaths = {Write("2.eml", "To: b@b.example\n\n2\n")};
    EXPECT_EQ(Run(Add), ExitGood);
    for (std::size_t lLength = std::filesystem::file_size(mOptions.mSpool); lLength-- > 0;)
    {
        std::filesystem::resize_file(mOptions.mSpool, lLength);
        ASSERT_EQ(Run(List), ExitDamage) << lLength;
        const std::string lCount = lLength >= lFirstJobEnds ? "1 job" : "0 jobs";
        ASSERT_TRUE(Contains(mErr, mOptions.mSpool.string() + ": damaged after " + lCount + ": ")) << mErr;
        ASSERT_TRUE(Contains(mOut, lCount + " listed, 0 damaged, the rest of the spool cannot be read\n")) << mOut;
        ASSERT_FALSE(Contains(mOut + mErr, "sesame")) << lLength;
    }
}

TEST_F(Commands, ListOfASpoolWithAnyByteChangedNeverCrashesNorShowsThePassword)
{
    mOptions.mPaths = {std::filesystem::path(MAILSPOOL_MAIL_FOLDER) / "10-no-body.eml"};
    EXPECT_EQ(Run(Add), ExitGood);
    const std::string lBytes = ReadFile(mOptions.mSpool, gNoLimit);
    std::fstream lFile(mOptions.mSpool, std::ios::binary | std::ios::in | std::ios::out);
    constexpr char lNew[] = {'\xFF', '*', '\1'};
    for (std::size_t lPlace = 0; lPlace < lBytes.size(); ++lPlace)
    {
        const auto lOffset = static_cast<std::streamoff>(lPlace);
        lFile.seekp(lOffset).put(lNew[lPlace % std::size(lNew)]).flush();
        ASSERT_LE(Run(List), ExitDamage) << lPlace;
        ASSERT_FALSE(Contains(mOut + mErr, "sesame")) << lPlace;
        lFile.seekp(lOffset).put(lBytes[lPlace]).flush();
    }
    EXPECT_EQ(Run(List), ExitGood);
}

TEST_F(Commands, ListReportsBytesBehindTheLastJob)
{
    EXPECT_EQ(Run(Add), ExitGood);
    ReplaceFile(mOptions.mSpool, ReadFile(mOptions.mSpool, gNoLimit) + "abc");
    EXPECT_EQ(Run(List), ExitDamage);
    EXPECT_EQ(mErr,
              "mail-spool: " + mOptions.mSpool.string() + ": damaged after 10 jobs: 3 bytes follow the last job\n");
}

TEST_F(Commands, ExportAndImportIntoAnotherSpoolVerifyThere)
{
    EXPECT_EQ(Run(Add), ExitGood);
    const std::string lBytes = ReadFile(mOptions.mSpool, gNoLimit);
    mOptions.mPaths = {mFolder / "texts"};
    EXPECT_EQ(Run(Export), ExitGood);
    EXPECT_EQ(mOut, "10 jobs exported to " + (mFolder / "texts").string() + "\n");
    EXPECT_EQ(GetFiles(mFolder / "texts").size(), 10u);

    EXPECT_EQ(Run(Import), ExitGood);
    EXPECT_EQ(mOut, "10 files, 0 imported, 10 in the spool already, 0 damaged\n");
    EXPECT_EQ(ReadFile(mOptions.mSpool, gNoLimit), lBytes);

    mOptions.mSpool = mFolder / "other";
    EXPECT_EQ(Run(Import), ExitGood);
    EXPECT_EQ(mOut, "10 files, 10 imported, 0 in the spool already, 0 damaged\n");
    EXPECT_EQ(mErr, "");
    mOptions.mPaths = {MAILSPOOL_MAIL_FOLDER};
    EXPECT_EQ(Run(Verify), ExitGood);
}

TEST_F(Commands, ImportNamesADamagedFileAndGoesOn)
{
    EXPECT_EQ(Run(Add), ExitGood);
    mOptions.mPaths = {mFolder / "texts"};
    EXPECT_EQ(Run(Export), ExitGood);
    const std::filesystem::path lCut = GetFiles(mFolder / "texts").at(3);
    std::filesystem::resize_file(lCut, std::filesystem::file_size(lCut) - 3);
    mOptions.mSpool = mFolder / "other";
    EXPECT_EQ(Run(Import), ExitDamage);
    EXPECT_EQ(mErr,
              "mail-spool: " + lCut.string() + ": QTalBase::PropertyBagImpl::GetNextToken; A token was expected\n");
    EXPECT_EQ(mOut, "10 files, 9 imported, 0 in the spool already, 1 damaged\n");
    mOptions.mPaths = {MAILSPOOL_MAIL_FOLDER};
    EXPECT_EQ(Run(Verify), ExitDamage);
    EXPECT_TRUE(Contains(mOut, "10 messages, 9 verified\n"));
}

TEST_F(Commands, ImportOfATextCutAnywhereNeverShowsThePassword)
{
    mOptions.mPaths = {std::filesystem::path(MAILSPOOL_MAIL_FOLDER) / "06-delimiters.eml"};
    EXPECT_EQ(Run(Add), ExitGood);
    mOptions.mPaths = {mFolder / "texts"};
    EXPECT_EQ(Run(Export), ExitGood);
    const std::filesystem::path lFile = GetFiles(mFolder / "texts").at(0);
    const std::string lText = ReadFile(lFile, gNoLimit);
    ASSERT_TRUE(Contains(lText, "FTPServerPassword++++sesame***"));
    mOptions.mPaths = {lFile};
    mOptions.mSpool = mFolder / "other";
    for (std::size_t lPlace = 0; lPlace < lText.size(); ++lPlace)
    {
        // The front of the text and the rest of it in turn: to do both everywhere takes long.
        std::ofstream(lFile, std::ios::binary) << (lPlace % 2 == 0 ? lText.substr(0, lPlace) : lText.substr(lPlace));
        ASSERT_EQ(Run(Import), ExitDamage) << lPlace;
        ASSERT_TRUE(Contains(mErr, lFile.string() + ": ")) << lPlace;
        ASSERT_FALSE(Contains(mOut + mErr, "sesame")) << lPlace;
    }
}

TEST_F(Commands, ExportSavesWhatIsBeforeTheDamage)
{
    EXPECT_EQ(Run(Add), ExitGood);
    std::filesystem::resize_file(mOptions.mSpool, std::filesystem::file_size(mOptions.mSpool) - 1);
    mOptions.mPaths = {mFolder / "texts"};
    EXPECT_EQ(Run(Export), ExitDamage);
    EXPECT_EQ(mOut, "9 jobs exported to " + (mFolder / "texts").string() + "\n");
}

TEST_F(Commands, PlanDrawsTheDayAndSortsTheJobs)
{
    mOptions.mPaths = {
        Write("1.eml", "To: a@night.example\nSubject: one\n"), Write("2.eml", "To: b@open.example\nSubject: two\n"),
        Write("3.eml", "To: c@shut.example\nSubject: three\n"), Write("4.eml", "To: d@open.example\nSubject: four\n")};
    mOptions.mWindows = {{L"night.example", 22, 6}, {L"night.example", 12, 12}, {L"shut.example", 0, 23}};
    EXPECT_EQ(Run(Add), ExitGood);
    mOptions.mHour = 23;
    EXPECT_EQ(Run(ShowPlan), ExitGood);
    EXPECT_EQ(mOut.substr(0, mOut.find("\n\n")), "Route             Jobs  0  3  6  9  12 15 18 21\n"
                                                 "----------------  ----  ------------------------\n"
                                                 "night.example        1  .......#####.#########..\n"
                                                 "open.example         2  ########################\n"
                                                 "shut.example         1  ........................\n"
                                                 "# open, . closed   now                         ^");
    const std::size_t lTwo = mOut.find("  b@open.example   two\n");
    const std::size_t lFour = mOut.find("  d@open.example   four\n");
    const std::size_t lOne = mOut.find("  a@night.example  one\n");
    const std::size_t lThree = mOut.find("  c@shut.example   three\n");
    EXPECT_TRUE(lTwo < lFour && lFour < lOne && lOne < lThree && lThree != mOut.npos) << mOut;
    EXPECT_TRUE(Contains(mOut, "\nat 07:00  "));
    EXPECT_TRUE(Contains(mOut, "\nnever     "));
    EXPECT_TRUE(Contains(mOut, "at 23:00: 2 may go now, 1 later, 1 never\n"));
}

TEST_F(Commands, VerifyTellsAChangedFile)
{
    const std::filesystem::path lFile = Write("good.eml", "To: a@a.example\nSubject: one\n\nbody\n");
    mOptions.mPaths = {lFile};
    EXPECT_EQ(Run(Add), ExitGood);
    Write("good.eml", "To: a@a.example\nSubject: two\n\nbody.\n");
    EXPECT_EQ(Run(Verify), ExitDamage);
    EXPECT_EQ(mOut, "different  " + lFile.string() +
                        "\n"
                        "           the property Subject\n"
                        "           the property Size\n"
                        "           the property Body\n"
                        "           the bag of the message\n"
                        "           header field 2, Subject\n"
                        "           the body, from byte 4\n"
                        "1 message, 0 verified\n");
}

TEST_F(Commands, VerifyFindsAFileByAnyPath)
{
    mOptions.mPaths = {Write("100% \xFF.eml", "To: a@a.example\n\nx\n")};
    EXPECT_EQ(Run(Add), ExitGood);
    std::filesystem::create_symlink(mOptions.mPaths.at(0), mFolder / "link");
    mOptions.mPaths = {mFolder / "." / "link"};
    EXPECT_EQ(Run(Verify), ExitGood);
    const std::wstring lSource = GetText(*GetJob(*ReadSpool(mOptions.mSpool).mJobs, 0), gSourceName);
    EXPECT_TRUE(Contains(ToUtf8(lSource), "/100%25 %FF.eml"));
}

TEST_F(Commands, ReplaceFileLeavesNoTemporaryFile)
{
    ReplaceFile(mFolder / "a", "one");
    ReplaceFile(mFolder / "a", "two");
    EXPECT_EQ(ReadFile(mFolder / "a", gNoLimit), "two");
    std::filesystem::create_directories(mFolder / "folder" / "full");
    EXPECT_THROW(ReplaceFile(mFolder / "folder", "x"), IoError);
    EXPECT_THROW(ReplaceFile(mFolder / "nowhere" / "x", "x"), IoError);
    std::size_t lCount = 0;
    for (const auto& lEntry : std::filesystem::directory_iterator(mFolder))
    {
        lCount += lEntry.path().empty() ? 0 : 1;
    }
    EXPECT_EQ(lCount, 2u);
}

TEST(Program, WrongUsageExitsWith2)
{
    const auto lRun = [](const std::string& iArguments) {
        const int lStatus = std::system((MAILSPOOL_PROGRAM " " + iArguments + " >/dev/null 2>&1").c_str());
        return WEXITSTATUS(lStatus);
    };
    EXPECT_EQ(lRun("--help"), 0);
    for (const char* lArguments :
         {"", "sing", "list", "list --spool", "list --spool x y", "add --spool x", "list --spool=/nowhere/at/all",
          "add --loud --spool x y", "list --spool=", "plan --spool x --at 24", "plan --spool x --at",
          "plan --spool x --at 1x", "add --spool x --window 22-24 y", "add --spool x --window 22- y",
          "add --spool x --at 3 y", "export --spool x", "export --spool x y z"})
    {
        EXPECT_EQ(lRun(lArguments), 2) << lArguments;
    }
}

} // namespace MailSpool
