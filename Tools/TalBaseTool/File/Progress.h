// A line on the terminal that says what takes long and how far it is, or what is waited for. Silent when standard error
// is no terminal, or when there is little to do, so that logs and pipes stay clean.

#ifndef TALBASETOOL_FILE_PROGRESS_H
#define TALBASETOOL_FILE_PROGRESS_H

#include <cstddef>
#include <string>

namespace TalBaseTool
{

class Progress
{
public:
    // Whether any is shown from now on.
    static void Allow(bool iIsAllowed);

    // Says that somebody has to type something, for example "a text form".
    static void TellWaiting(const char* ipWhat);

    // iAction: what is being done, for example "reading job.bag", fit to be shown. iSize: of the work, in bytes or
    // characters; 0 where it is not known, and then only Step shows anything.
    explicit Progress(std::string iAction, std::size_t iSize = 0);

    // Wipes the line.
    ~Progress();

    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    // Says what is being done, however little it is.
    void Show();

    // Says how much is done.
    void Step(std::size_t iDone);

private:
    void hDraw(const std::string& iHowFar);

    std::string mAction;
    std::size_t mSize;
    std::size_t mWidth; // of the terminal; 0 where nothing is drawn
    bool mIsDrawn = false;
    std::size_t mNext;
};

} // namespace TalBaseTool

#endif
