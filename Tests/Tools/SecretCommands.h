// Every command that shows or quotes, called with texts of which it may not show the secret.

#ifndef TESTS_TOOLS_SECRETCOMMANDS_H
#define TESTS_TOOLS_SECRETCOMMANDS_H

#include "Commands/Commands.h"
#include "Tests/Tools/RunTool.h"
#include "Tests/Tools/Screens.h"
#include "Tests/Tools/SecretTexts.h"

#include <functional>
#include <string>

namespace ToolTests
{

std::string Encode(const std::wstring& iText);
TalBaseTool::RawPair RawOf(const std::optional<DelimiterPair>& iPair);

// Runs a command, and what it says of an error as the command line does, without the time that reading one takes.
ToolRun Call(const std::function<int(const TalBaseTool::Streams&)>& iCommand);

// The options of a command for a file.
template <class Options>
Options MakeOptions(const std::string& iFile, const TalBaseTool::RawPair& iPair)
{
    Options lOptions;
    if constexpr (requires { lOptions.mInputs; })
    {
        lOptions.mInputs.mFiles = {iFile};
        lOptions.mInputs.mPair = iPair;
    }
    else
    {
        lOptions.mFile = iFile;
        lOptions.mPair = iPair;
    }
    return lOptions;
}

class SecretCommands
{
public:
    SecretCommands();

    // iWithEditor: also 'edit', which starts an editor.
    void ExpectNoSecret(const PlantedText& iText, bool iWithEditor);

private:
    using Command = std::function<int(const TalBaseTool::Streams&)>;

    void hExpectOfViews();
    void hExpectOfFinds();
    void hExpectOfLines();
    void hExpectOfChanges();
    void hExpectOfJoins();
    void hExpectOfConversions();
    void hExpectOfEdit();

    // What goes through the gate on both outputs; what does on standard error.
    void hExpectShown(const char* ipCommand, const Command& iCommand);
    void hExpectSaid(const char* ipCommand, const Command& iCommand);
    void hExpect(const char* ipCommand, bool iIsShown, const Command& iCommand);

    Workplace mWorkplace;
    std::string mOther; // the files: another bag, the text, the text as a line of JSON, and what an editor has seen
    std::string mFile;
    std::string mLines;
    std::string mSeen;
    const PlantedText* mText = nullptr; // the one that is looked at
    TalBaseTool::RawPair mPair;
};

} // namespace ToolTests

#endif
