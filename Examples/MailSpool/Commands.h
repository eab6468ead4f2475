// What the program does, one function for each word of its command line. Each prints what was asked for to oOut and
// what went wrong to oErr, and returns the exit status. What is damaged is reported by name and the rest is done.

#ifndef MAILSPOOL_COMMANDS_H
#define MAILSPOOL_COMMANDS_H

#include <filesystem>
#include <iosfwd>
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
    std::wstring mUser; // for the next hop
    std::wstring mPassword;
};

// Reads messages and keeps a job for each.
int Add(const Options& iOptions, std::ostream& oOut, std::ostream& oErr);

// Reads every job back and prints a table of them, nothing sensitive in it.
int List(const Options& iOptions, std::ostream& oOut, std::ostream& oErr);

// Says for each message whether the job read back is what went in.
int Verify(const Options& iOptions, std::ostream& oOut, std::ostream& oErr);

} // namespace MailSpool

#endif
