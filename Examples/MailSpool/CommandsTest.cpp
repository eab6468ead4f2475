#include "Commands.h"

#include "Errors.h"
#include "FileIO.h"
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

    // The path of the only job's file.
    std::filesystem::path GetOnlyJob() const
    {
        const std::vector<std::string> lNames = Spool(mOptions.mSpool).GetNames();
        EXPECT_EQ(lNames.size(), 1u);
        return mOptions.mSpool / lNames.at(0);
    }

    std::filesystem::path mFolder;
    Options mOptions;
    std::string mOut;
    std::string mErr;
};

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
    EXPECT_EQ(std::filesystem::status(GetOnlyJob()).permissions(), perms::owner_read | perms::owner_write);
    EXPECT_EQ(std::filesystem::status(mOptions.mSpool).permissions(), perms::owner_all);
}

TEST_F(Commands, ListNamesACutFileAndListsTheOthers)
{
    EXPECT_EQ(Run(Add), ExitGood);
    const std::filesystem::path lCut = Spool(mOptions.mSpool).GetPath(Spool(mOptions.mSpool).GetNames().at(3));
    std::filesystem::resize_file(lCut, std::filesystem::file_size(lCut) - 3);
    EXPECT_EQ(Run(List), ExitDamage);
    EXPECT_EQ(mErr,
              "mail-spool: " + lCut.string() + ": QTalBase::PropertyBagImpl::GetNextToken; A token was expected\n");
    EXPECT_TRUE(Contains(mOut, "9 jobs listed, 1 damaged\n"));
    EXPECT_FALSE(Contains(mOut, "Gr\xC3\xBC\xC3\x9F"
                                "e aus K\xC3\xB6ln"));
    EXPECT_EQ(Run(Verify), ExitDamage);
    EXPECT_TRUE(Contains(mOut, "missing    " MAILSPOOL_MAIL_FOLDER "/04-latin-1.eml\n"));
    EXPECT_TRUE(Contains(mOut, "10 messages, 9 verified\n"));
}

TEST_F(Commands, ListSurvivesACutAtEveryByteAndNeverShowsThePassword)
{
    mOptions.mPaths = {std::filesystem::path(MAILSPOOL_MAIL_FOLDER) / "06-delimiters.eml"};
    EXPECT_EQ(Run(Add), ExitGood);
    const std::filesystem::path lJob = GetOnlyJob();
    const std::string lText = ReadFile(lJob, gNoLimit);
    ASSERT_TRUE(Contains(lText, "FTPServerPassword++++sesame***"));
    for (std::size_t lLength = 0; lLength < lText.size(); ++lLength)
    {
        ReplaceFile(lJob, lText.substr(0, lLength));
        ASSERT_EQ(Run(List), ExitDamage) << lLength;
        ASSERT_TRUE(Contains(mErr, lJob.string() + ": ")) << lLength;
        ASSERT_FALSE(Contains(mOut + mErr, "sesame")) << lLength;
    }
    for (std::size_t lStart = 1; lStart < lText.size(); ++lStart)
    {
        ReplaceFile(lJob, lText.substr(lStart));
        ASSERT_EQ(Run(List), ExitDamage) << lStart;
        ASSERT_FALSE(Contains(mOut + mErr, "sesame")) << lStart;
    }
}

TEST_F(Commands, ListReportsBytesThatAreNotUtf8)
{
    mOptions.mPaths = {Write("good.eml", "To: a@a.example\n\nx\n")};
    EXPECT_EQ(Run(Add), ExitGood);
    const std::filesystem::path lJob = GetOnlyJob();
    std::string lText = ReadFile(lJob, gNoLimit);
    lText[40] = '\xFF';
    ReplaceFile(lJob, lText);
    EXPECT_EQ(Run(List), ExitDamage);
    EXPECT_TRUE(Contains(mErr, "40")) << mErr; // the offset
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
    EXPECT_TRUE(Contains(ReadFile(GetOnlyJob(), gNoLimit), "/100%25 %FF.eml***"));
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
    for (const char* lArguments : {"", "sing", "list", "list --spool", "list --spool x y", "add --spool x",
                                   "list --spool=/nowhere/at/all", "add --loud --spool x y", "list --spool="})
    {
        EXPECT_EQ(lRun(lArguments), 2) << lArguments;
    }
}

} // namespace MailSpool
