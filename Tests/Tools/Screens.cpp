#include "Tests/Tools/Screens.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <sys/wait.h>

namespace ToolTests
{

namespace fs = std::filesystem;

namespace
{

const fs::path gGolden = fs::path(TALBASE_SOURCE_DIR) / "Tests/Golden/Tools";

std::string Quoted(const std::string& iText)
{
    std::string lQuoted = "'";
    for (const char lCharacter : iText)
    {
        lQuoted += lCharacter == '\'' ? std::string("'\\''") : std::string(1, lCharacter);
    }
    return lQuoted + "'";
}

std::string WithVisibleEscapes(const std::string& iText)
{
    std::string lText;
    for (const char lCharacter : iText)
    {
        lText += lCharacter == '\033' ? std::string("ESC") : std::string(1, lCharacter);
    }
    return lText;
}

} // namespace

Workplace::Workplace()
{
    std::string lTemplate = (fs::temp_directory_path() / "talbase-test-XXXXXX").string();
    if (::mkdtemp(lTemplate.data()) == nullptr)
    {
        throw std::runtime_error("cannot make a temporary folder");
    }
    mFolder = lTemplate;
    fs::copy(gGolden / "Bags", mFolder);
}

Workplace::~Workplace()
{
    std::error_code lIgnored;
    fs::remove_all(mFolder, lIgnored);
}

std::string Workplace::Write(const std::string& iName, const std::string& iBytes) const
{
    std::ofstream(mFolder / iName, std::ios::binary) << iBytes;
    return mFolder / iName;
}

std::string Workplace::Read(const std::string& iName) const
{
    return ReadFile(mFolder / iName);
}

std::string ReadFile(const fs::path& iFile)
{
    std::ifstream lFile(iFile, std::ios::binary);
    std::ostringstream lBytes;
    lBytes << lFile.rdbuf();
    if (!lFile)
    {
        throw std::runtime_error("cannot read " + iFile.string());
    }
    return lBytes.str();
}

Finished RunShell(const fs::path& iFolder, const std::string& iCommand)
{
    const std::string lProgram = TALBASE_TOOL_PROGRAM;
    const std::string lCommand = "cd " + Quoted(iFolder) + " && PATH=" + Quoted(fs::path(lProgram).parent_path()) +
                                 ":$PATH LC_ALL=C TERM=xterm exec bash -c " + Quoted(iCommand);
    std::FILE* lPipe = ::popen(lCommand.c_str(), "r");
    if (lPipe == nullptr)
    {
        throw std::runtime_error("cannot run a shell");
    }
    Finished lFinished{0, ""};
    char lBuffer[4096];
    for (std::size_t lCount; (lCount = std::fread(lBuffer, 1, sizeof lBuffer, lPipe)) > 0;)
    {
        lFinished.mOutput.append(lBuffer, lCount);
    }
    const int lStatus = ::pclose(lPipe);
    lFinished.mStatus = WIFEXITED(lStatus) ? WEXITSTATUS(lStatus) : -1;
    return lFinished;
}

std::vector<std::string> FindCommands(const std::string& iScreen)
{
    std::vector<std::string> lCommands;
    std::istringstream lLines(iScreen);
    for (std::string lLine; std::getline(lLines, lLine);)
    {
        if (lLine.rfind("$ ", 0) == 0)
        {
            lCommands.push_back(lLine.substr(2));
        }
    }
    return lCommands;
}

std::string RunScreen(const std::string& iScreen)
{
    std::string lScreen;
    for (const std::string& lCommand : FindCommands(iScreen))
    {
        lScreen += RunScreenIn(Workplace().GetFolder(), "$ " + lCommand);
    }
    return lScreen;
}

std::string RunScreenIn(const fs::path& iFolder, const std::string& iScreen)
{
    std::string lScreen;
    for (const std::string& lCommand : FindCommands(iScreen))
    {
        const Finished lFinished = RunShell(iFolder, "exec 2>&1; " + lCommand);
        lScreen += "$ " + lCommand + "\n" + WithVisibleEscapes(lFinished.mOutput);
        lScreen += lScreen.back() != '\n' ? "\n" : "";
        lScreen += lFinished.mStatus != 0 ? "[exit " + std::to_string(lFinished.mStatus) + "]\n" : "";
    }
    return lScreen;
}

} // namespace ToolTests
