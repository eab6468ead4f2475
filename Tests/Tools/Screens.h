// Runs command lines as a person would type them, and compares what appears on the screen with files that were written
// by hand. A screen is a line with "$ " and a command, then its output, standard error first, then "[exit N]" where its
// status is not 0; then the next command. An escape character is shown as "ESC".

#ifndef TESTS_TOOLS_SCREENS_H
#define TESTS_TOOLS_SCREENS_H

#include <filesystem>
#include <string>
#include <vector>

namespace ToolTests
{

// A folder of its own with copies of the bags that the screens use, removed at the end.
class Workplace
{
public:
    Workplace();
    ~Workplace();

    Workplace(const Workplace&) = delete;
    Workplace& operator=(const Workplace&) = delete;

    const std::filesystem::path& GetFolder() const
    {
        return mFolder;
    }

    // Writes a file there, and returns its path; reads one.
    std::string Write(const std::string& iName, const std::string& iBytes) const;
    std::string Read(const std::string& iName) const;

private:
    std::filesystem::path mFolder;
};

std::string ReadFile(const std::filesystem::path& iFile);

struct Finished
{
    int mStatus;
    std::string mOutput; // of the shell's standard output
};

// Runs a command line by bash in a folder; talbase is found there.
Finished RunShell(const std::filesystem::path& iFolder, const std::string& iCommand);

// The commands of a screen, without "$ ".
std::vector<std::string> FindCommands(const std::string& iScreen);

// What the commands of a screen really give, in the same form.
std::string RunScreen(const std::string& iScreen);

// The same in one folder for all commands, which see what those before them left there.
std::string RunScreenIn(const std::filesystem::path& iFolder, const std::string& iScreen);

} // namespace ToolTests

#endif
