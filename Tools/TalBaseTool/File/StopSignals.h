// Signals that would end the program, held back while there is something that must not be left behind: whoever waits
// meanwhile waits for them, too.

#ifndef TALBASETOOL_FILE_STOPSIGNALS_H
#define TALBASETOOL_FILE_STOPSIGNALS_H

#include "File/FileDescriptor.h"

#include <chrono>
#include <csignal>
#include <optional>

namespace TalBaseTool
{

// Thrown where a signal is to end the program, as soon as all is tidied up.
struct Stopped
{
    int mSignal;
};

class StopSignals
{
public:
    // Throws IoError. Signals that are ignored stay so.
    StopSignals();

    // A signal that came and was not waited for ends the program now.
    ~StopSignals();

    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;

    // Waits until a file can be read (-1 for none) or a signal comes, SIGCHLD included, at most as long as asked.
    // Returns the signal; 0 where there is none.
    int Wait(int iDescriptor, std::optional<std::chrono::milliseconds> iLimit) const;

    // For a program that is started.
    const sigset_t& GetOldMask() const
    {
        return mOldMask;
    }

private:
    sigset_t mOldMask;
    struct sigaction mOldChild = {};
    FileDescriptor mSignals;
};

} // namespace TalBaseTool

#endif
