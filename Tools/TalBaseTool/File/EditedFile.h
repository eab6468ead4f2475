// A text that a person changes in an editor: it lies in a folder of its own, where nobody else may look, and both are
// gone in the end, whatever the end is.

#ifndef TALBASETOOL_FILE_EDITEDFILE_H
#define TALBASETOOL_FILE_EDITEDFILE_H

#include "File/StopSignals.h"

#include <string>
#include <string_view>

namespace TalBaseTool
{

class EditedFile
{
public:
    // Makes the file, below $TMPDIR or /tmp. Throws IoError.
    explicit EditedFile(std::string_view iBytes);

    ~EditedFile();

    EditedFile(const EditedFile&) = delete;
    EditedFile& operator=(const EditedFile&) = delete;

    const std::string& GetName() const
    {
        return mName;
    }

    // Has the file edited with $VISUAL, $EDITOR, editor or vi, whichever is there first. Throws IoError where the
    // editor fails, and Stopped.
    void Edit() const;

    // A line that is typed at the terminal, without its end; null where there is no more. Throws Stopped.
    std::optional<std::string> ReadLine() const;

private:
    void hMakeFolder();
    void hWaitForEditor(pid_t iEditor) const;

    StopSignals mSignals; // before there is anything to be left behind, and until there is nothing
    std::string mFolder;
    std::string mName;
};

} // namespace TalBaseTool

#endif
