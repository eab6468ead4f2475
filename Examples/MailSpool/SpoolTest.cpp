#include "Spool.h"

#include "Errors.h"
#include "FileIO.h"

#include "QSerialization/MemoryDataStream.h"
#include "TalBase/Guid.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <thread>

namespace MailSpool
{

namespace
{

class SpoolFile : public testing::Test
{
protected:
    SpoolFile()
    {
        std::string lTemplate = (std::filesystem::temp_directory_path() / "mail-spool-test-XXXXXX").string();
        mFolder = ::mkdtemp(lTemplate.data());
        mPath = mFolder / "spool";
    }

    ~SpoolFile() override
    {
        std::filesystem::remove_all(mFolder);
    }

    static BagPtr MakeJob()
    {
        JobSettings lSettings;
        lSettings.mJob = QTalBase::Guid::GenerateUniqueGUID();
        lSettings.mSource = L"/mail/1.eml";
        return MakeJobBag(ParseMessage("To: a@a.example\n\nbody*\n"), lSettings);
    }

    void WriteBytes(const QSerialization::MemoryWriteDataStream& iStream)
    {
        ReplaceFile(mPath, {reinterpret_cast<const char*>(iStream.GetBytes().data()), iStream.GetBytes().size()});
    }

    std::filesystem::path mFolder;
    std::filesystem::path mPath;
};

std::string GetDamage(const QTalBase::PropertyBags& iJobs)
{
    try
    {
        GetJob(iJobs, 0);
        return "none";
    }
    catch (const DamageError& lError)
    {
        return lError.what();
    }
}

} // namespace

TEST_F(SpoolFile, CommitWritesWhatReadFinds)
{
    const BagPtr lJob = MakeJob();
    {
        SpoolChange lChange(mPath);
        EXPECT_TRUE(lChange.Add(*lJob));
        EXPECT_FALSE(lChange.Add(*lJob));
        EXPECT_FALSE(std::filesystem::exists(mPath));
        lChange.Commit();
    }
    const SpoolContents lContents = ReadSpool(mPath);
    EXPECT_EQ(lContents.mDamage, "");
    ASSERT_EQ(lContents.mJobs->GetCount(), 1u);
    EXPECT_EQ(std::wstring(GetJob(*lContents.mJobs, 0)->GetString(true, nullptr, nullptr, true)),
              std::wstring(lJob->GetString(true, nullptr, nullptr, true)));
}

TEST_F(SpoolFile, ReadOfNoFileThrows)
{
    EXPECT_THROW(ReadSpool(mPath), IoError);
}

TEST_F(SpoolFile, ReadOfAHugeCountKeepsNothingAndReservesNothing)
{
    ReplaceFile(mPath, "\xFF\xFF\xFF\xFF");
    const SpoolContents lContents = ReadSpool(mPath);
    EXPECT_EQ(lContents.mJobs->GetCount(), 0u);
    EXPECT_NE(lContents.mDamage, "");
}

TEST_F(SpoolFile, GetJobRefusesAnEntryWithoutBag)
{
    QSerialization::MemoryWriteDataStream lStream;
    lStream.WriteUInt32(1);
    lStream.WriteWString(L"nobody");
    lStream.WriteBool(false);
    WriteBytes(lStream);
    const SpoolContents lContents = ReadSpool(mPath);
    EXPECT_EQ(lContents.mDamage, "");
    EXPECT_EQ(GetDamage(*lContents.mJobs), "there is no job under this name");
}

TEST_F(SpoolFile, GetJobRefusesAJobUnderAnotherName)
{
    const BagsPtr lJobs(QTalBase::CreatePropertyBags());
    lJobs->Add(L"another", MakeJob().get());
    EXPECT_EQ(GetDamage(*lJobs), "the job is filed under the name of another");
}

TEST_F(SpoolFile, GetJobRefusesABagThatIsNoJob)
{
    const BagsPtr lJobs(QTalBase::CreatePropertyBags());
    lJobs->Add(L"a", BagPtr(QTalBase::CreatePropertyBag()).get());
    EXPECT_EQ(GetDamage(*lJobs), "the job is not complete: there is no Sender");
}

TEST_F(SpoolFile, ChangesAtTheSameTimeLoseNoJob)
{
    constexpr int lThreads = 4;
    constexpr int lChanges = 5;
    std::vector<std::thread> lAdders;
    for (int lThread = 0; lThread < lThreads; ++lThread)
    {
        lAdders.emplace_back([this] {
            for (int lChange = 0; lChange < lChanges; ++lChange)
            {
                SpoolChange lSpool(mPath);
                lSpool.Add(*MakeJob());
                lSpool.Commit();
            }
        });
    }
    for (std::thread& lAdder : lAdders)
    {
        lAdder.join();
    }
    EXPECT_EQ(ReadSpool(mPath).mJobs->GetCount(), static_cast<unsigned int>(lThreads * lChanges));
}

} // namespace MailSpool
