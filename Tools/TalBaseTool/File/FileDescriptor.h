// An open file that closes itself, and how the system's refusals are told.

#ifndef TALBASETOOL_FILE_FILEDESCRIPTOR_H
#define TALBASETOOL_FILE_FILEDESCRIPTOR_H

#include "Text/Errors.h"
#include "Text/Text.h"

#include <cerrno>
#include <cstring>
#include <string>
#include <unistd.h>

namespace TalBaseTool
{

// Throws IoError with what errno says.
[[noreturn]] inline void ThrowIoError(const char* ipAction, const std::string& iFile)
{
    const int lError = errno;
    throw IoError(std::string(ipAction) + " " + ShowFile(iFile) + ": " + std::strerror(lError));
}

class FileDescriptor
{
public:
    explicit FileDescriptor(int iDescriptor) : mDescriptor(iDescriptor) {}

    ~FileDescriptor()
    {
        Close();
    }

    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;

    int Get() const
    {
        return mDescriptor;
    }

    // Closes it and takes another one.
    void Reset(int iDescriptor)
    {
        Close();
        mDescriptor = iDescriptor;
    }

    // Returns whether all went well: some file systems report a failed write only here.
    bool Close()
    {
        const int lDescriptor = mDescriptor;
        mDescriptor = -1;
        return lDescriptor <= STDERR_FILENO || ::close(lDescriptor) == 0;
    }

private:
    int mDescriptor;
};

} // namespace TalBaseTool

#endif
