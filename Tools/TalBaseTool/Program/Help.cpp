#include "Program/Help.h"

#include <CLI/CLI.hpp>
#include <sstream>

namespace TalBaseTool
{

namespace
{

constexpr std::size_t gWidth = 80;
constexpr std::size_t gColumn = 26; // where the texts about arguments begin

// Breaks a text into lines that begin at a column; the first one is there already.
std::string Wrap(const std::string& iText, std::size_t iColumn)
{
    std::string lWrapped;
    std::size_t lUsed = iColumn;
    std::istringstream lWords(iText);
    for (std::string lWord; lWords >> lWord;)
    {
        const bool lIsFirst = lUsed == iColumn;
        if (!lIsFirst && lUsed + 1 + lWord.size() > gWidth)
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

// A line or more about one argument.
std::string DescribeArgument(const std::string& iArgument, const std::string& iText)
{
    std::string lLine = "  " + iArgument;
    lLine += lLine.size() + 2 > gColumn ? "\n" + std::string(gColumn, ' ') : std::string(gColumn - lLine.size(), ' ');
    return lLine + Wrap(iText, gColumn) + "\n";
}

std::string NameArgument(const ArgumentHelp& iArgument)
{
    std::string lText;
    for (const std::string& lName : iArgument.mNames)
    {
        lText += (lText.empty() ? "" : ", ") + lName;
    }
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
    if (iOption.get_items_expected_max() > 0)
    {
        const std::string lType = iOption.get_type_name(); // the validators stand behind a colon
        lArgument.mValue = lType.substr(0, lType.find(':'));
    }
    lArgument.mPlaceholder = lArgument.mNames.empty() ? PlaceholderOf(iOption) : "";
    lArgument.mText = iOption.get_description();
    if (!iOption.get_default_str().empty())
    {
        lArgument.mText += " (" + iOption.get_default_str() + ")";
    }
    return lArgument;
}

class HelpFormatter : public CLI::FormatterBase
{
public:
    std::string make_help(const CLI::App* ipApp, std::string, CLI::AppFormatMode) const override
    {
        const CommandHelp lHelp = ReadHelp(*ipApp);
        std::string lText =
            "usage: " + lHelp.GetUsage() + "\n\n" + lHelp.mSummary + ".\n\n" + Wrap(lHelp.mDetails, 0) + "\n";
        const std::vector<CommandHelp> lCommands = ReadCommands(*ipApp);
        lText += lCommands.empty() ? "" : "\nCommands:\n";
        for (const CommandHelp& lCommand : lCommands)
        {
            lText += DescribeArgument(lCommand.mName.substr(lHelp.mName.size() + 1), lCommand.mSummary);
        }
        lText += lHelp.mPositionals.empty() ? "" : "\nArguments:\n";
        for (const ArgumentHelp& lArgument : lHelp.mPositionals)
        {
            lText += DescribeArgument(NameArgument(lArgument), lArgument.mText);
        }
        lText += "\nOptions:\n";
        for (const ArgumentHelp& lArgument : lHelp.mOptions)
        {
            lText += DescribeArgument(NameArgument(lArgument), lArgument.mText);
        }
        return lText + "\nExample:\n  " + lHelp.mExample + "\n";
    }
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
    if (!ReadCommands(iApp).empty())
    {
        lHelp.mPositionals.push_back({{}, "", "COMMAND", "What to do; 'talbase COMMAND --help' tells more"});
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

std::shared_ptr<CLI::FormatterBase> MakeHelpFormatter()
{
    return std::make_shared<HelpFormatter>();
}

} // namespace TalBaseTool
