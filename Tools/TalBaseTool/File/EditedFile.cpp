#include "File/EditedFile.h"

#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <stdlib.h>
#include <sys/wait.h>
#include <vector>

namespace TalBaseTool
{

namespace
{

using Milliseconds = std::chrono::milliseconds;

constexpr Milliseconds gGrace(3000); // for an editor that is told to end

std::string ReadEnvironment(const char* ipName, const std::string& iDefault)
{
    const char* const lValue = std::getenv(ipName);
    return lValue != nullptr && *lValue != '\0' ? lValue : iDefault;
}

bool IsProgram(const std::string& iName)
{
    const std::string lFolders = ReadEnvironment("PATH", "/usr/bin:/bin");
    for (std::size_t lStart = 0; lStart <= lFolders.size();)
    {
        const std::size_t lStop = std::min(lFolders.find(':', lStart), lFolders.size());
        if (::access((lFolders.substr(lStart, lStop - lStart) + "/" + iName).c_str(), X_OK) == 0)
        {
            return true;
        }
        lStart = lStop + 1;
    }
    return false;
}

// A command line of the shell: people give their editors options.
std::string FindEditor()
{
    return ReadEnvironment("VISUAL", ReadEnvironment("EDITOR", IsProgram("editor") ? "editor" : "vi"));
}

// The editor takes the shell's place, so that signals reach it and not a shell that waits for it; a command line that
// is more than a command keeps its shell.
pid_t Start(const std::string& iEditor, const std::string& iFile, const sigset_t& iMask)
{
    const bool lIsSimple = iEditor.find_first_of("=;&|(){}\n") == std::string::npos;
    const std::string lCommand = (lIsSimple ? "exec " : "") + iEditor + " \"$1\"";
    const pid_t lChild = ::fork();
    if (lChild == 0)
    {
        ::sigprocmask(SIG_SETMASK, &iMask, nullptr);
        ::execl("/bin/sh", "sh", "-c", lCommand.c_str(), "talbase", iFile.c_str(), static_cast<char*>(nullptr));
        ::_exit(127);
    }
    return lChild;
}

} // namespace

EditedFile::EditedFile(std::string_view iBytes)
{
    hMakeFolder();
    mName = mFolder + "/properties.txt";
    FileDescriptor lFile(::open(mName.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    bool lIsGood = lFile.Get() >= 0;
    while (lIsGood && !iBytes.empty())
    {
        const ssize_t lWritten = ::write(lFile.Get(), iBytes.data(), iBytes.size());
        lIsGood = lWritten >= 0;
        iBytes.remove_prefix(lIsGood ? static_cast<std::size_t>(lWritten) : 0);
    }
    if (!lIsGood || !lFile.Close())
    {
        const int lError = errno;
        std::filesystem::remove_all(mFolder); // the destructor will not come
        errno = lError;
        ThrowIoError("cannot write", mName);
    }
}

EditedFile::~EditedFile()
{
    std::error_code lIgnored;
    std::filesystem::remove_all(mFolder, lIgnored); // with what the editor has left there
}

void EditedFile::Edit() const
{
    const std::string lEditor = FindEditor();
    const pid_t lChild = Start(lEditor, mName, mSignals.GetOldMask());
    if (lChild < 0)
    {
        throw IoError(std::string("cannot start the editor: ") + std::strerror(errno));
    }
    hWaitForEditor(lChild);
}

std::optional<std::string> EditedFile::ReadLine() const
{
    for (std::string lLine;;)
    {
        const int lSignal = mSignals.Wait(STDIN_FILENO, {});
        if (lSignal == SIGCHLD || lSignal == SIGPIPE)
        {
            continue;
        }
        if (lSignal != 0)
        {
            throw Stopped{lSignal};
        }
        char lCharacter = '\n';
        if (::read(STDIN_FILENO, &lCharacter, 1) <= 0)
        {
            return {};
        }
        if (lCharacter == '\n')
        {
            return lLine;
        }
        lLine += lCharacter;
    }
}

// Only its owner may look into it.
void EditedFile::hMakeFolder()
{
    mFolder = ReadEnvironment("TMPDIR", "/tmp") + "/talbase-XXXXXX";
    if (::mkdtemp(mFolder.data()) == nullptr)
    {
        ThrowIoError("cannot write into", ReadEnvironment("TMPDIR", "/tmp"));
    }
}

// What a person types to interrupt or quit is for the editor, which is at the same terminal. Other signals end both.
void EditedFile::hWaitForEditor(pid_t iEditor) const
{
    int lStatus = 0;
    int lStop = 0;
    while (::waitpid(iEditor, &lStatus, WNOHANG) == 0)
    {
        const int lSignal = mSignals.Wait(-1, lStop != 0 ? std::make_optional(gGrace) : std::nullopt);
        if (lStop != 0 && lSignal == 0)
        {
            break;
        }
        if (lStop == 0 && lSignal != 0 && lSignal != SIGCHLD && lSignal != SIGINT && lSignal != SIGQUIT &&
            lSignal != SIGPIPE)
        {
            lStop = lSignal;
            ::kill(iEditor, lSignal);
        }
    }
    if (lStop != 0)
    {
        throw Stopped{lStop};
    }
    if (!WIFEXITED(lStatus) || WEXITSTATUS(lStatus) != 0)
    {
        throw IoError("the editor ended with " +
                      (WIFEXITED(lStatus) ? "status " + std::to_string(WEXITSTATUS(lStatus))
                                          : "signal " + std::to_string(WTERMSIG(lStatus))) +
                      "; nothing is changed");
    }
}

} // namespace TalBaseTool
