// A line on the terminal that says how far a long job is. Silent when standard error is no terminal, or when there is
// little to do, so that logs and pipes stay clean.

#ifndef MAILSPOOL_PROGRESS_H
#define MAILSPOOL_PROGRESS_H

#include <cstddef>

namespace MailSpool
{

class Progress
{
public:
    // ipAction: what is being done, for example "adding". Must outlive the object.
    Progress(const char* ipAction, std::size_t iTotal);

    // Wipes the line.
    ~Progress();

    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    // One more is done.
    void Step();

    // Wipes the line so that something else can be printed; the next Step draws it again.
    void Hide();

private:
    const char* mAction;
    std::size_t mTotal;
    std::size_t mDone = 0;
    bool mIsShown;
};

} // namespace MailSpool

#endif
