#include "Spool.h"

#include "Display.h"
#include "Errors.h"
#include "FileIO.h"

#include "QSerialization/MemoryDataStream.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <new>
#include <sys/file.h>
#include <unistd.h>

namespace MailSpool
{

namespace
{

constexpr std::size_t gMaxSpoolSize = std::size_t{2} * 1024 * 1024 * 1024;

int OpenLocked(const std::filesystem::path& iPath)
{
    const int lDescriptor = ::open(iPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
    int lResult = lDescriptor;
    while (lResult >= 0 && (lResult = ::flock(lDescriptor, LOCK_EX)) != 0 && errno == EINTR)
    {
        lResult = lDescriptor;
    }
    if (lResult < 0)
    {
        const std::string lReason = std::strerror(errno);
        if (lDescriptor >= 0)
        {
            ::close(lDescriptor);
        }
        throw IoError("cannot lock " + iPath.string() + ": " + lReason);
    }
    return lDescriptor;
}

} // namespace

SpoolContents ReadSpool(const std::filesystem::path& iPath)
{
    const std::string lBytes = ReadFile(iPath, gMaxSpoolSize);
    QSerialization::MemoryReadDataStream lStream(lBytes.data(), lBytes.size());
    SpoolContents lContents{BagsPtr(QTalBase::CreatePropertyBags()), {}};
    try
    {
        lContents.mJobs->DeSerialize(lStream);
        if (lStream.GetRemaining() != 0)
        {
            lContents.mDamage = std::to_string(lStream.GetRemaining()) + " bytes follow the last job";
        }
    }
    catch (const std::bad_alloc&)
    {
        throw; // the file may be sound
    }
    catch (...)
    {
        // A collection whose reading fails part-way keeps the entries that it has read.
        lContents.mDamage = DescribeException();
    }
    return lContents;
}

void WriteSpool(const std::filesystem::path& iPath, const QTalBase::PropertyBags& iJobs)
{
    QSerialization::MemoryWriteDataStream lStream;
    iJobs.Serialize(lStream);
    const std::vector<std::byte>& lBytes = lStream.GetBytes();
    ReplaceFile(iPath, {reinterpret_cast<const char*>(lBytes.data()), lBytes.size()});
}

SpoolLock::SpoolLock(const std::filesystem::path& iSpool) : mDescriptor(OpenLocked(iSpool.string() + ".lock")) {}

SpoolLock::~SpoolLock()
{
    ::close(mDescriptor); // and with it goes the lock
}

SpoolChange::SpoolChange(std::filesystem::path iPath)
    : mPath(std::move(iPath)), mLock(mPath), mJobs(QTalBase::CreatePropertyBags())
{
    if (!std::filesystem::exists(mPath))
    {
        return;
    }
    SpoolContents lContents = ReadSpool(mPath);
    if (!lContents.mDamage.empty())
    {
        throw DamageError("damaged after " + std::to_string(lContents.mJobs->GetCount()) +
                          " jobs, so nothing is added (" + lContents.mDamage +
                          "); export saves what is before the damage");
    }
    mJobs = std::move(lContents.mJobs);
}

bool SpoolChange::Add(const QTalBase::PropertyBag& iJob)
{
    const std::wstring lName = GetText(iJob, gJobName);
    if (mJobs->GetPropertyBagByName(lName.c_str()))
    {
        return false;
    }
    mJobs->Add(lName.c_str(), &iJob);
    mIsChanged = true;
    return true;
}

void SpoolChange::Commit()
{
    if (mIsChanged)
    {
        WriteSpool(mPath, *mJobs);
        mIsChanged = false;
    }
}

BagPtr GetJob(const QTalBase::PropertyBags& iJobs, unsigned int iIndex)
{
    BagPtr lJob = iJobs.GetPropertyBag(iIndex);
    if (!lJob)
    {
        throw DamageError("there is no job under this name");
    }
    CheckJob(*lJob);
    if (GetText(*lJob, gJobName) != iJobs.GetName(iIndex))
    {
        throw DamageError("the job is filed under the name of another");
    }
    return lJob;
}

} // namespace MailSpool
