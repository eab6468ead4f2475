#include "Program/Help.h"

#include "File/Terminal.h"
#include "Program/ExitStatus.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <sstream>

namespace TalBaseTool
{

namespace
{

// Breaks a text into lines of a width that begin at a column; the first one is there already.
std::string Wrap(const std::string& iText, std::size_t iColumn, std::size_t iWidth)
{
    std::string lWrapped;
    std::size_t lUsed = iColumn;
    std::istringstream lWords(iText);
    for (std::string lWord; lWords >> lWord;)
    {
        const bool lIsFirst = lUsed == iColumn;
        if (!lIsFirst && lUsed + 1 + lWord.size() > iWidth)
        {
            lWrapped += "\n" + std::string(iColumn, ' ') + lWord;
            lUsed = iColumn + lWord.size();
            continue;
        }
        lWrapped += (lIsFirst ? "" : " ") + lWord;
        lUsed += lWord.size() + (lIsFirst ? 0 : 1);
    }
    return lWrapped;
}

std::string NameArgument(const ArgumentHelp& iArgument)
{
    std::string lText;
    for (const std::string& lName : iArgument.mNames)
    {
        lText += (lText.empty() ? "" : ", ") + lName;
    }
    lText += iArgument.mOptionalValue.empty() ? "" : "[=" + iArgument.mOptionalValue + "]";
    return iArgument.mNames.empty() ? iArgument.mPlaceholder
                                    : lText + (iArgument.mValue.empty() ? "" : " " + iArgument.mValue);
}

std::string PlaceholderOf(const CLI::Option& iOption)
{
    const std::string lName = iOption.get_name(true) + (iOption.get_expected_max() > 1 ? "..." : "");
    return iOption.get_required() ? lName : "[" + lName + "]";
}

ArgumentHelp ReadArgumentHelp(const CLI::Option& iOption)
{
    ArgumentHelp lArgument;
    for (const std::string& lName : iOption.get_snames())
    {
        lArgument.mNames.push_back("-" + lName);
    }
    for (const std::string& lName : iOption.get_lnames())
    {
        lArgument.mNames.push_back("--" + lName);
    }
    const std::string lType = iOption.get_type_name(); // the validators stand behind a colon
    (iOption.get_items_expected_max() > 0 ? lArgument.mValue : lArgument.mOptionalValue) =
        lType.substr(0, lType.find(':'));
    lArgument.mPlaceholder = lArgument.mNames.empty() ? PlaceholderOf(iOption) : "";
    lArgument.mText = iOption.get_description();
    if (!iOption.get_default_str().empty())
    {
        lArgument.mText += " (" + iOption.get_default_str() + ")";
    }
    return lArgument;
}

// Without the program's.
std::vector<std::string> NamesOf(const std::vector<CommandHelp>& iCommands)
{
    std::vector<std::string> lNames;
    for (const CommandHelp& lCommand : iCommands)
    {
        lNames.push_back(lCommand.mName.substr(lCommand.mName.rfind(' ') + 1));
    }
    return lNames;
}

class HelpFormatter : public CLI::FormatterBase
{
public:
    explicit HelpFormatter(std::size_t iWidth)
        : mWidth(iWidth > 0 ? iWidth : gUsualWidth), mColumn(std::min(gColumn, mWidth / 3))
    {
    }

    std::string make_help(const CLI::App* ipApp, std::string, CLI::AppFormatMode) const override
    {
        const CommandHelp lHelp = ReadHelp(*ipApp);
        std::string lText = Wrap("usage: " + lHelp.GetUsage(), 0, mWidth) + "\n\n" +
                            Wrap(lHelp.mSummary + ".", 0, mWidth) + "\n\n" + Wrap(lHelp.mDetails, 0, mWidth) + "\n";
        const std::vector<CommandHelp> lCommands = ReadCommands(*ipApp);
        lText += lCommands.empty() ? "" : "\nCommands:\n";
        for (const CommandHelp& lCommand : lCommands)
        {
            lText += hDescribe(lCommand.mName.substr(lHelp.mName.size() + 1), lCommand.mSummary);
        }
        lText += lHelp.mPositionals.empty() ? "" : "\nArguments:\n";
        for (const ArgumentHelp& lArgument : lHelp.mPositionals)
        {
            lText += hDescribe(NameArgument(lArgument), lArgument.mText);
        }
        lText += "\nOptions:\n";
        for (const ArgumentHelp& lArgument : lHelp.mOptions)
        {
            lText += hDescribe(NameArgument(lArgument), lArgument.mText);
        }
        lText +=
            "\nExit status:\n" + (lCommands.empty() ? hDescribeExit(lHelp.mExit) : hDescribeExits(lHelp, lCommands));
        return lText + "\nExample:\n  " + lHelp.mExample + "\n";
    }

private:
    static constexpr std::size_t gColumn = 26;

    // A line or more about one argument.
    std::string hDescribe(const std::string& iArgument, const std::string& iText) const
    {
        std::string lLine = "  " + iArgument;
        lLine +=
            lLine.size() + 2 > mColumn ? "\n" + std::string(mColumn, ' ') : std::string(mColumn - lLine.size(), ' ');
        return lLine + Wrap(iText, mColumn, mWidth) + "\n";
    }

    std::string hDescribeExit(const std::string& iText) const
    {
        return "  " + Wrap(iText, 2, mWidth) + "\n";
    }

    // The table, or where there is no room for it what it says.
    std::string hDescribeExits(const CommandHelp& iHelp, const std::vector<CommandHelp>& iCommands) const
    {
        std::string lText;
        std::istringstream lLines(iHelp.mExit);
        for (std::string lLine; std::getline(lLines, lLine);)
        {
            if (lLine.size() + 2 > mWidth)
            {
                lText.clear();
                break;
            }
            lText += "  " + lLine + "\n";
        }
        if (lText.empty())
        {
            for (const ExitRow& lRow : FindExitRows(NamesOf(iCommands)))
            {
                lText += hDescribeExit(lRow.mCommands + ": " + DescribeExit(lRow.mMeaning) + ".");
            }
        }
        return lText + hDescribeExit(std::string(gAboutExits) + ".");
    }

    std::size_t mWidth;
    std::size_t mColumn; // where the texts about arguments begin
};

} // namespace

std::string CommandHelp::GetUsage() const
{
    std::string lUsage = mName + " [OPTION]...";
    for (const ArgumentHelp& lArgument : mPositionals)
    {
        lUsage += " " + lArgument.mPlaceholder;
    }
    return lUsage;
}

CommandHelp ReadHelp(const CLI::App& iApp)
{
    CommandHelp lHelp;
    const std::string lParent = iApp.get_parent() != nullptr ? iApp.get_parent()->get_name() + " " : "";
    lHelp.mName = lParent + iApp.get_name();
    const std::string lDescription = iApp.get_description();
    const std::size_t lBreak = lDescription.find('\n');
    lHelp.mSummary = lDescription.substr(0, lBreak);
    lHelp.mDetails = lDescription.substr(lBreak + 1);
    lHelp.mExample = iApp.get_footer();
    for (const CLI::Option* lOption : iApp.get_options())
    {
        (lOption->get_positional() ? lHelp.mPositionals : lHelp.mOptions).push_back(ReadArgumentHelp(*lOption));
    }
    const std::vector<CommandHelp> lCommands = ReadCommands(iApp);
    lHelp.mExit = DescribeExit(FindExitMeaning(iApp.get_name())) + ".";
    if (!lCommands.empty())
    {
        lHelp.mExit = MakeExitTable(NamesOf(lCommands));
        lHelp.mPositionals.push_back({{}, "", "", "COMMAND", "What to do; 'talbase COMMAND --help' tells more"});
    }
    return lHelp;
}

std::vector<CommandHelp> ReadCommands(const CLI::App& iApp)
{
    std::vector<CommandHelp> lCommands;
    for (const CLI::App* lCommand : iApp.get_subcommands({}))
    {
        lCommands.push_back(ReadHelp(*lCommand));
    }
    return lCommands;
}

std::shared_ptr<CLI::FormatterBase> MakeHelpFormatter(std::size_t iWidth)
{
    return std::make_shared<HelpFormatter>(iWidth);
}

} // namespace TalBaseTool
