#include "Program/CommandLine.h"

#include "Program/Arguments.h"
#include "Program/CommandGroups.h"
#include "Program/Help.h"
#include "Text/Errors.h"
#include "Text/Messages.h"
#include "Text/Text.h"

#include "QBase/Convert.h"
#include "QBase/Message.h"

#include <CLI/CLI.hpp>
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
        throw IoError("cannot write to standard output");
    }
}

// What the command line itself prints: help, a version, or what is wrong with it.
int ReportParseError(const CLI::App& iApp, const CLI::ParseError& iError, const Streams& iStreams)
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
    iStreams.mErr << "talbase: " << ToUtf8(MakePrintable(QBase::UTF8ToWideChar(lWhat, false))) << "\ntry 'talbase"
                  << lCommand << " --help'\n";
    return ExitTrouble;
}

int ParseAndRun(const std::vector<std::string>& iArguments, const Streams& iStreams)
{
    ChosenCommand lChosen;
    const std::unique_ptr<CLI::App> lApp = MakeParser(lChosen);
    const std::vector<std::string> lArguments = PrepareArguments(*lApp, iArguments);
    try
    {
        lApp->parse(std::vector<std::string>(lArguments.rbegin(), lArguments.rend()));
    }
    catch (const CLI::ParseError& lError)
    {
        return ReportParseError(*lApp, lError, iStreams);
    }
    const int lStatus = lChosen(iStreams);
    FlushOutput(iStreams);
    return lStatus;
}

} // namespace

std::unique_ptr<CLI::App> MakeParser(ChosenCommand& oChosen)
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
    lApp->formatter(MakeHelpFormatter());
    lApp->footer("talbase show job.bag");
    for (const auto lAdd : {AddShow, AddCheck, AddGet, AddSet, AddRemove, AddMove, AddEmbed, AddDiff, AddMerge,
                            AddToJson, AddFromJson, AddRedact, AddDelimiters, AddWindow, AddGuid})
    {
        lAdd(*lApp, oChosen);
    }
    return lApp;
}

int RunCommandLine(const std::vector<std::string>& iArguments, const Streams& iStreams)
{
    const auto lReport = [&iStreams](const std::string& iText, int iStatus) {
        iStreams.mErr << "talbase: " << iText << '\n';
        return iStatus;
    };
    try
    {
        return ParseAndRun(iArguments, iStreams);
    }
    catch (const TextError& lError) // like a compiler's, so that editors find the place
    {
        iStreams.mErr << lError.what() << '\n';
        return ExitBad;
    }
    catch (const DataError& lError)
    {
        return lReport(lError.what(), ExitBad);
    }
    catch (const QBase::Message& lMessage)
    {
        return lReport(ShowMessage(lMessage.GetMessage()), ExitBad);
    }
    catch (const std::bad_alloc&)
    {
        return lReport("there is not enough memory", ExitTrouble);
    }
    catch (const std::exception& lError)
    {
        return lReport(lError.what(), ExitTrouble);
    }
}

} // namespace TalBaseTool
