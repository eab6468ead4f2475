// What the program does, one function for each word of its command line. Each prints what was asked for to oOut and
// what went wrong to oErr, and returns the exit status. What is damaged is reported by name and the rest is done. All
// throw IoError when there is nothing to start with: no spool, no files.

#ifndef MAILSPOOL_COMMANDS_H
#define MAILSPOOL_COMMANDS_H

#include "Window.h"

#include <filesystem>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace MailSpool
{

enum ExitStatus
{
    ExitGood = 0,
    ExitDamage = 1, // something is damaged, or is not what it was
    ExitTrouble = 2 // wrong usage, or the operating system refused
};

struct Options
{
    std::filesystem::path mSpool;
    std::vector<std::filesystem::path> mPaths;
    std::vector<WindowRule> mWindows;
    std::optional<unsigned int> mHour; // of the plan; nothing: the hour that is now
    std::wstring mUser;                // for the next hop
    std::wstring mPassword;
};

// Reads messages and keeps a job for each. The spool is written once, when all are read.
int Add(const Options& iOptions, std::ostream& oOut, std::ostream& oErr);

// Prints a table of the jobs, nothing sensitive in it.
int List(const Options& iOptions, std::ostream& oOut, std::ostream& oErr);

// Says for each message whether the job read back is what went in.
int Verify(const Options& iOptions, std::ostream& oOut, std::ostream& oErr);

// Shows when which job may go.
int ShowPlan(const Options& iOptions, std::ostream& oOut, std::ostream& oErr);

// Writes each job as a text file into a folder, which is made if it is not there.
int Export(const Options& iOptions, std::ostream& oOut, std::ostream& oErr);

// Reads such text files into the spool. A job that the spool has already is left as it is.
int Import(const Options& iOptions, std::ostream& oOut, std::ostream& oErr);

} // namespace MailSpool

#endif
