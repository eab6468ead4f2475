#include "Program/Arguments.h"

#include "Text/Display.h"
#include "Text/Errors.h"
#include "Text/SensitiveNames.h"
#include "Text/Text.h"

#include "QBase/Convert.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iterator>

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

bool TakesSeveral(const CLI::App& iCommand)
{
    const std::vector<const CLI::Option*> lOptions = iCommand.get_options();
    return std::any_of(lOptions.begin(), lOptions.end(), [](const CLI::Option* ipOption) {
        return ipOption->get_positional() && ipOption->get_allow_extra_args();
    });
}

constexpr char gMark = '\0'; // which no argument of a process has

// CLI11 takes "[a,b]" for a list where an argument may be given several times. A mark before it keeps it one.
Arguments WithoutLists(const CLI::App& iCommand, Arguments iArguments)
{
    bool lIsValue = false; // of an option
    bool lHasStopped = false;
    for (auto lArgument = iArguments.begin() + 1; lArgument != iArguments.end(); ++lArgument)
    {
        if (!lIsValue && !lArgument->empty() && lArgument->front() == '[' && lArgument->back() == ']')
        {
            lArgument->insert(lArgument->begin(), gMark);
            continue;
        }
        lHasStopped = lHasStopped || (!lIsValue && *lArgument == "--");
        const CLI::Option* const lOption = !lIsValue && !lHasStopped && lArgument->rfind("-", 0) == 0
                                               ? iCommand.get_option_no_throw(*lArgument)
                                               : nullptr;
        lIsValue = lOption != nullptr && lOption->get_items_expected_max() > 0;
    }
    return iArguments;
}

// Whether one of the arguments, but for those that only tell names, holds a sensitive name.
bool HaveSensitiveName(const Arguments& iArguments)
{
    std::vector<std::wstring> lNames;
    std::vector<std::wstring> lOthers;
    for (std::size_t lIndex = 0; lIndex < iArguments.size(); ++lIndex)
    {
        const bool lIsName = lIndex > 0 && iArguments[lIndex - 1] == "--name";
        (lIsName ? lNames : lOthers).push_back(QBase::UTF8ToWideChar(iArguments[lIndex], false));
    }
    const SensitiveNames lSensitive(lNames);
    return std::any_of(lOthers.begin(), lOthers.end(),
                       [&lSensitive](const std::wstring& iArgument) { return lSensitive.IsIn(iArgument); });
}

// What of an argument a message may quote that is no name of an option; empty where there is nothing.
std::string FindValue(const CLI::App* ipCommand, const std::string& iArgument)
{
    const auto lIsOption = [ipCommand](const std::string& iName) {
        return ipCommand != nullptr && ipCommand->get_option_no_throw(iName) != nullptr;
    };
    const std::size_t lAssign = std::min(iArgument.find('='), iArgument.size());
    if (iArgument.rfind("--", 0) == 0 && lIsOption(iArgument.substr(0, lAssign)))
    {
        return iArgument.substr(std::min(lAssign + 1, iArgument.size()));
    }
    const bool lIsShort = iArgument.rfind("-", 0) == 0 && iArgument.size() > 1 && lIsOption(iArgument.substr(0, 2));
    return iArgument.substr(lIsShort ? 2 : 0);
}

void Replace(std::string& oText, const std::string& iOld, const std::string& iNew)
{
    for (std::size_t lPlace = 0; (lPlace = oText.find(iOld, lPlace)) != std::string::npos; lPlace += iNew.size())
    {
        oText.replace(lPlace, iOld.size(), iNew);
    }
}

} // namespace

std::string HideArguments(const CLI::App& iApp, const std::vector<std::string>& iArguments, std::string iMessage)
{
    constexpr std::size_t lShortest = 4;
    if (iArguments.empty() || !HaveSensitiveName(iArguments))
    {
        return iMessage;
    }
    const CLI::App* const lCommand = FindCommand(iApp, iArguments[0]);
    Arguments lValues;
    std::transform(iArguments.begin() + (lCommand != nullptr ? 1 : 0), iArguments.end(), std::back_inserter(lValues),
                   [lCommand](const std::string& iArgument) { return ShowFile(FindValue(lCommand, iArgument)); });
    // One may be a part of another.
    std::sort(lValues.begin(), lValues.end(),
              [](const std::string& iOne, const std::string& iOther) { return iOne.size() > iOther.size(); });
    for (const std::string& lValue : lValues)
    {
        if (lValue.size() >= lShortest)
        {
            Replace(iMessage, lValue, gHidden);
        }
    }
    return iMessage;
}

std::vector<std::string> PrepareArguments(const CLI::App& iApp, const std::vector<std::string>& iArguments)
{
    const Arguments lArguments = WithHelp(iArguments);
    CheckFirst(iApp, lArguments);
    const CLI::App* const lCommand = FindCommand(iApp, lArguments[0]);
    if (lCommand == nullptr)
    {
        return lArguments;
    }
    const Arguments lPrepared = WithEmptyValues(*lCommand, lArguments);
    return TakesSeveral(*lCommand) ? WithoutLists(*lCommand, lPrepared) : lPrepared;
}

void RestoreArguments(CLI::App& oApp)
{
    for (CLI::App* lCommand : oApp.get_subcommands({}))
    {
        for (CLI::Option* lOption : lCommand->get_options())
        {
            if (lOption->get_positional())
            {
                lOption->transform(
                    [](const std::string& iArgument) {
                        return iArgument.substr(!iArgument.empty() && iArgument[0] == gMark ? 1 : 0);
                    },
                    "", "");
            }
        }
    }
}

} // namespace TalBaseTool
