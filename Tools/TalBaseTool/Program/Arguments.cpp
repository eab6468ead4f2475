#include "Program/Arguments.h"

#include "Text/Errors.h"
#include "Text/Text.h"

#include "QBase/Convert.h"

#include <CLI/CLI.hpp>
#include <algorithm>

namespace TalBaseTool
{

namespace
{

using Arguments = std::vector<std::string>;

// Null where there is no such command.
const CLI::App* FindCommand(const CLI::App& iApp, const std::string& iName)
{
    const auto lFound = iApp.get_subcommands([&](const CLI::App* ipCommand) { return ipCommand->get_name() == iName; });
    return lFound.empty() ? nullptr : lFound.front();
}

Arguments WithHelp(const Arguments& iArguments)
{
    if (iArguments.empty() || iArguments[0] != "help")
    {
        return iArguments;
    }
    return iArguments.size() == 1 ? Arguments{"--help"} : Arguments{iArguments[1], "--help"};
}

void CheckFirst(const CLI::App& iApp, const Arguments& iArguments)
{
    const std::string lHint = "\ntry 'talbase --help'";
    if (iArguments.empty())
    {
        throw UsageError("a command is needed" + lHint);
    }
    const std::string& lFirst = iArguments[0];
    const std::string lShown = " '" + ToUtf8(MakePrintable(QBase::UTF8ToWideChar(lFirst, false))) + "'";
    const bool lIsOption = lFirst.rfind("-", 0) == 0;
    if (lIsOption && iApp.get_option_no_throw(lFirst) == nullptr)
    {
        throw UsageError("there is no option" + lShown + lHint);
    }
    if (!lIsOption && FindCommand(iApp, lFirst) == nullptr)
    {
        throw UsageError("there is no command" + lShown + lHint);
    }
}

// "--end=" has an empty value; CLI11 would take the next word.
Arguments WithEmptyValues(const CLI::App& iCommand, const Arguments& iArguments)
{
    Arguments lArguments;
    const auto lStop = std::find(iArguments.begin(), iArguments.end(), "--");
    for (auto lArgument = iArguments.begin(); lArgument != lStop; ++lArgument)
    {
        const std::size_t lLast = lArgument->size() - 1;
        const bool lMayBe = lArgument->rfind("--", 0) == 0 && lArgument->find('=') == lLast;
        const CLI::Option* const lOption = lMayBe ? iCommand.get_option_no_throw(lArgument->substr(0, lLast)) : nullptr;
        if (lOption != nullptr && lOption->get_items_expected_max() > 0)
        {
            lArguments.insert(lArguments.end(), {lArgument->substr(0, lLast), ""});
            continue;
        }
        lArguments.push_back(*lArgument);
    }
    lArguments.insert(lArguments.end(), lStop, iArguments.end());
    return lArguments;
}

// CLI11 takes "[a,b]" for a list where an argument may be given several times, and such arguments are files here. The
// value of an option is left as it is.
Arguments WithoutLists(Arguments iArguments)
{
    for (std::size_t lIndex = 1; lIndex < iArguments.size(); ++lIndex)
    {
        std::string& lArgument = iArguments[lIndex];
        const bool lIsValue = iArguments[lIndex - 1].rfind("-", 0) == 0 && iArguments[lIndex - 1] != "-" &&
                              iArguments[lIndex - 1] != "--";
        if (!lIsValue && !lArgument.empty() && lArgument.front() == '[' && lArgument.back() == ']')
        {
            lArgument.insert(0, "./");
        }
    }
    return iArguments;
}

} // namespace

std::vector<std::string> PrepareArguments(const CLI::App& iApp, const std::vector<std::string>& iArguments)
{
    const Arguments lArguments = WithHelp(iArguments);
    CheckFirst(iApp, lArguments);
    const CLI::App* const lCommand = FindCommand(iApp, lArguments[0]);
    if (lCommand == nullptr)
    {
        return lArguments;
    }
    const bool lHasFiles = lArguments[0] == "check" || lArguments[0] == "merge";
    const Arguments lPrepared = WithEmptyValues(*lCommand, lArguments);
    return lHasFiles ? WithoutLists(lPrepared) : lPrepared;
}

} // namespace TalBaseTool
