#include "Program/CommandLine.h"

#include "File/OutputBuffer.h"
#include "File/Progress.h"
#include "File/TerminalBuffer.h"
#include "Program/Arguments.h"
#include "Program/CommandGroups.h"
#include "Program/ExitStatus.h"
#include "Program/Help.h"
#include "Program/Options.h"
#include "Text/Errors.h"
#include "Text/Messages.h"
#include "Text/Text.h"

#include "QBase/Convert.h"
#include "QBase/Message.h"

#include <CLI/CLI.hpp>
#include <cstring>
#include <new>

namespace TalBaseTool
{

namespace
{

void FlushOutput(const Streams& iStreams)
{
    iStreams.mOut.flush();
    if (!iStreams.mOut)
    {
        const auto* const lBuffer = dynamic_cast<const OutputBuffer*>(iStreams.mOut.rdbuf());
        const int lError = lBuffer != nullptr ? lBuffer->GetError() : 0;
        throw IoError(std::string("cannot write to standard output") +
                      (lError != 0 ? std::string(": ") + std::strerror(lError) : ""));
    }
}

// What the command line itself prints: help, a version, or what is wrong with it.
int ReportParseError(const CLI::App& iApp, const std::vector<std::string>& iArguments, const CLI::ParseError& iError,
                     const Streams& iStreams)
{
    if (iError.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success))
    {
        iApp.exit(iError, iStreams.mOut, iStreams.mErr);
        FlushOutput(iStreams);
        return ExitGood;
    }
    std::string lWhat = iError.what();
    if (iError.get_exit_code() ==
        static_cast<int>(CLI::ExitCodes::ExtrasError)) // it has them from the last to the first
    {
        lWhat = "not expected:";
        for (const std::string& lArgument : iApp.remaining(true))
        {
            lWhat += " " + lArgument;
        }
    }
    const auto lChosen = iApp.get_subcommands();
    const std::string lCommand = lChosen.empty() ? "" : " " + lChosen.front()->get_name();
    const std::string lShown = ToUtf8(MakePrintable(QBase::UTF8ToWideChar(lWhat, false)));
    iStreams.mErr << "talbase: " << HideArguments(iApp, iArguments, lShown) << "\ntry 'talbase" << lCommand
                  << " --help'\n";
    return ExitTrouble;
}

// Calls a command with a stream for its data.
int Call(const ChosenCommand& iChosen, std::ostream& oOut, const Streams& iStreams)
{
    const int lStatus = iChosen(
        {oOut, iStreams.mErr, iStreams.mIsOutTerminal, iStreams.mIsErrTerminal, iStreams.mWidth, iStreams.mIsQuiet});
    oOut.flush();
    return lStatus;
}

int CallSafely(const ChosenCommand& iChosen, const Streams& iStreams)
{
    TerminalBuffer lBuffer(iStreams.mOut);
    std::ostream lSafe(&lBuffer);
    return Call(iChosen, lSafe, iStreams);
}

// Runs a command that is asked for its status only, or says nothing that only informs, where it is quiet. What is wrong
// with the data gets the status that it has there.
int Run(const ChosenCommand& iChosen, const ExitMeaning& iMeaning, bool iIsSafe, const Streams& iStreams)
{
    const bool lAnswersByStatus = iStreams.mIsQuiet && iMeaning.mIsQuestion;
    const int lUnreadable = iMeaning.mIsUnreadableTrouble ? ExitTrouble : ExitBad;
    const auto lReport = [&](const std::string& iText, int iStatus) {
        if (iStatus == ExitTrouble || !lAnswersByStatus)
        {
            iStreams.mErr << iText << '\n';
        }
        return iStatus;
    };
    try
    {
        Progress::Allow(!iStreams.mIsQuiet);
        const int lStatus = lAnswersByStatus ? Call(iChosen, iStreams.Remarks(), iStreams)
                            : iIsSafe        ? CallSafely(iChosen, iStreams)
                                             : Call(iChosen, iStreams.mOut, iStreams);
        FlushOutput(iStreams);
        return lStatus;
    }
    catch (const TextError& lError) // like a compiler's, so that editors find the place
    {
        return lReport(lError.what(), lUnreadable);
    }
    catch (const DataError& lError)
    {
        return lReport(std::string("talbase: ") + lError.what(), ExitBad);
    }
    catch (const QBase::Message& lMessage)
    {
        return lReport("talbase: " + ShowMessage(lMessage.GetMessage()), ExitBad);
    }
}

// iChosen: what the parser sets.
int ParseAndRun(CLI::App& oApp, const ChosenCommand& iChosen, const std::vector<std::string>& iArguments,
                const Streams& iStreams)
{
    const std::vector<std::string> lArguments = PrepareArguments(oApp, iArguments);
    try
    {
        oApp.parse(std::vector<std::string>(lArguments.rbegin(), lArguments.rend()));
    }
    catch (const CLI::ParseError& lError)
    {
        return ReportParseError(oApp, iArguments, lError, iStreams);
    }
    const CLI::App& lCommand = *oApp.get_subcommands().front();
    Streams lStreams = iStreams;
    lStreams.mIsQuiet = lCommand.count(gQuiet) > 0;
    const CLI::Option* const lSet = lCommand.get_option_no_throw("--set"); // of window, which draws without it
    const bool lWritesData = WritesData(lCommand) || (lSet != nullptr && lSet->count() > 0);
    const bool lIsSafe = iStreams.mIsOutTerminal && lWritesData && lCommand.count(gRaw) == 0;
    return Run(iChosen, FindExitMeaning(lCommand.get_name()), lIsSafe, lStreams);
}

} // namespace

std::unique_ptr<CLI::App> MakeParser(ChosenCommand& oChosen, std::size_t iWidth)
{
    auto lApp =
        std::make_unique<CLI::App>("Look into property bags and change them\n"
                                   "A bag is read from its text form in UTF-8: from a file, or from standard "
                                   "input. Data goes to standard output, all else to standard error. 'talbase help "
                                   "COMMAND' is 'talbase COMMAND --help'.",
                                   "talbase");
    lApp->set_version_flag("--version", "talbase " TALBASE_TOOL_VERSION, "Print the version");
    lApp->require_subcommand(1);
    lApp->set_help_flag("-h,--help", "Print this help");
    lApp->formatter(MakeHelpFormatter(iWidth));
    lApp->footer("talbase show job.bag");
    for (const auto lAdd : {AddShow,   AddCheck,    AddGet,    AddHas,        AddGrep,   AddList, AddFromList,
                            AddSet,    AddEdit,     AddRemove, AddMove,       AddEmbed,  AddDiff, AddMerge,
                            AddToJson, AddFromJson, AddRedact, AddDelimiters, AddWindow, AddGuid})
    {
        lAdd(*lApp, oChosen);
    }
    RestoreArguments(*lApp);
    return lApp;
}

int RunCommandLine(const std::vector<std::string>& iArguments, const Streams& iStreams)
{
    const auto lReport = [&iStreams](const std::string& iText) {
        iStreams.mErr << "talbase: " << iText << '\n';
        return ExitTrouble;
    };
    ChosenCommand lChosen;
    std::unique_ptr<CLI::App> lApp;
    try
    {
        lApp = MakeParser(lChosen, iStreams.mWidth);
        return ParseAndRun(*lApp, lChosen, iArguments, iStreams);
    }
    catch (const UsageError& lError)
    {
        return lReport(HideArguments(*lApp, iArguments, lError.what()));
    }
    catch (const IoError& lError) // the last argument of set is a value or a file, depending on their number
    {
        const bool lIsValues = iArguments[0] == "set";
        return lReport(lIsValues ? HideArguments(*lApp, iArguments, lError.what()) : lError.what());
    }
    catch (const std::bad_alloc&)
    {
        return lReport("there is not enough memory");
    }
    catch (const std::exception& lError)
    {
        return lReport(lError.what());
    }
}

} // namespace TalBaseTool
