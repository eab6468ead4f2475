// The file in which jobs wait: one QTalBase::PropertyBags, each job filed under its identifier, in the byte form of the
// in-memory streams. The file holds the passwords of the next hops and is readable by its owner alone.

#ifndef MAILSPOOL_SPOOL_H
#define MAILSPOOL_SPOOL_H

#include "JobBag.h"

#include "TalBase/PropertyBags.h"

#include <filesystem>
#include <string>

namespace MailSpool
{

using BagsPtr = QBase::SmartPtrI<QTalBase::PropertyBags>;

// What was found in a spool file. A damaged file gives up the jobs before the damage.
struct SpoolContents
{
    BagsPtr mJobs;
    std::string mDamage; // what is wrong behind the last job read; empty when nothing is
};

// Reads a spool file. Throws IoError when there is none. Damage is told in the result, not thrown: a cut file is one
// whose last jobs are lost, not all of them.
SpoolContents ReadSpool(const std::filesystem::path& iPath);

// Puts a spool file in place of what was there, in one step. Throws IoError.
void WriteSpool(const std::filesystem::path& iPath, const QTalBase::PropertyBags& iJobs);

// Keeps others from changing a spool: adding is reading, appending and writing, and two that do so at once would lose
// the jobs of one. Readers need no lock, since a spool file is only ever replaced. The lock is on a file of its own
// beside the spool, because the spool file itself is a new one after each change; it is left there, since taking it
// away would let two others lock two different files.
class SpoolLock
{
public:
    // Waits until nobody else holds the lock. Throws IoError.
    explicit SpoolLock(const std::filesystem::path& iSpool);
    ~SpoolLock();

    SpoolLock(const SpoolLock&) = delete;
    SpoolLock& operator=(const SpoolLock&) = delete;

private:
    int mDescriptor;
};

// The spool that is about to be changed: locked, and read, or empty when there is no file yet. Throws IoError, and
// DamageError for a damaged one: to write it again would make the loss final.
class SpoolChange
{
public:
    explicit SpoolChange(std::filesystem::path iPath);

    // False when there is a job of that identifier already; the spool is then unchanged.
    bool Add(const QTalBase::PropertyBag& iJob);

    // Writes the spool if a job was added. Until then nothing has changed on the disk. Throws IoError.
    void Commit();

private:
    std::filesystem::path mPath;
    SpoolLock mLock;
    BagsPtr mJobs;
    bool mIsChanged = false;
};

// The job at a position of the spool, checked. Throws DamageError, and what the library throws for a damaged bag.
BagPtr GetJob(const QTalBase::PropertyBags& iJobs, unsigned int iIndex);

} // namespace MailSpool

#endif
