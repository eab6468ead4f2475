// A file that is written to take the place of another one. Where it does not, nothing is left of it: not after an
// error, and not after a signal that ends the program, because it may hold passwords.

#ifndef TALBASETOOL_FILE_TEMPORARYFILE_H
#define TALBASETOOL_FILE_TEMPORARYFILE_H

#include "File/FileDescriptor.h"

#include <string>

namespace TalBaseTool
{

class TemporaryFile
{
public:
    // Makes the file, which only its owner may read, in a folder, whose name ends with a slash. There may be two
    // objects at a time. Throws IoError.
    explicit TemporaryFile(const std::string& iFolder);

    // Removes the file unless it was moved.
    ~TemporaryFile();

    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    int Get() const
    {
        return mFile.Get();
    }

    // Closes it and gives it the name of the file whose place it takes. Returns whether all went well.
    bool MoveTo(const std::string& iFile);

private:
    static int hMake(std::string& oName);

    std::string mName;
    FileDescriptor mFile;
};

} // namespace TalBaseTool

#endif
