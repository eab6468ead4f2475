// The lock that a command holds on a file that it changes in place: from before the file is read until the new text
// stands in its place, so that of several such commands none undoes what another one did.

#ifndef TALBASETOOL_FILE_FILELOCK_H
#define TALBASETOOL_FILE_FILELOCK_H

#include "File/FileDescriptor.h"

#include <string>
#include <sys/stat.h>

namespace TalBaseTool
{

class FileLock
{
public:
    // Takes the lock, and waits a number of seconds for another process that holds it. Throws IoError where it cannot
    // be had.
    FileLock(const std::string& iFile, unsigned int iWait);

    const std::string& GetName() const
    {
        return mName;
    }

    // The file, open for reading. Some file systems let nobody read it otherwise, this process included.
    int GetFile() const
    {
        return mFile.Get();
    }

    // Throws IoError where the name stands for another file by now, or for another text: not everybody locks.
    void CheckUnchanged() const;

private:
    bool hTry();
    bool hOpenAndLock(int iAccess);
    bool hIsStillThere() const;

    std::string mName;
    FileDescriptor mFile;
    struct stat mStatus = {}; // when the lock was taken
};

} // namespace TalBaseTool

#endif
