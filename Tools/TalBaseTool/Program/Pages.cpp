#include "Program/Pages.h"

#include "Program/ExitStatus.h"

#include <algorithm>
#include <cctype>

namespace TalBaseTool
{

namespace
{

std::string Replaced(std::string iText, const std::string& iPart, const std::string& iBy)
{
    for (std::size_t lPlace = iText.find(iPart); lPlace != std::string::npos;
         lPlace = iText.find(iPart, lPlace + iBy.size()))
    {
        iText.replace(lPlace, iPart.size(), iBy);
    }
    return iText;
}

// A text of a manual page. Whoever copies an option or a quote out of it wants the plain characters.
std::string Roff(const std::string& iText)
{
    std::string lText = Replaced(Replaced(Replaced(iText, "\\", "\\e"), "-", "\\-"), "'", "\\(aq");
    return lText[0] == '.' ? "\\&" + lText : lText;
}

// "talbase-show"
std::string PageName(const CommandHelp& iCommand)
{
    return Replaced(iCommand.mName, " ", "-");
}

std::string UpperCase(std::string iText)
{
    std::transform(iText.begin(), iText.end(), iText.begin(),
                   [](unsigned char iCharacter) { return static_cast<char>(std::toupper(iCharacter)); });
    return iText;
}

// The last word of a command's name.
std::string WordOf(const CommandHelp& iCommand)
{
    return iCommand.mName.substr(iCommand.mName.rfind(' ') + 1);
}

std::string DescribeInRoff(const ArgumentHelp& iArgument)
{
    std::string lText;
    for (const std::string& lName : iArgument.mNames)
    {
        lText += (lText.empty() ? "\\fB" : ", \\fB") + Roff(lName) + "\\fR";
    }
    if (iArgument.mNames.empty())
    {
        lText = "\\fI" + Roff(iArgument.mPlaceholder) + "\\fR";
    }
    else if (!iArgument.mOptionalValue.empty())
    {
        lText += "[=\\fI" + Roff(iArgument.mOptionalValue) + "\\fR]";
    }
    else if (!iArgument.mValue.empty())
    {
        lText += " \\fI" + Roff(iArgument.mValue) + "\\fR";
    }
    return ".TP\n" + lText + "\n" + Roff(iArgument.mText) + ".\n";
}

std::string Words(const ArgumentHelp& iArgument)
{
    return iArgument.mValue.find('|') != std::string::npos ? Replaced(iArgument.mValue, "|", " ") : "";
}

// The pattern of a shell's case for the names of an option: "-i | --in-place".
std::string Alternatives(const ArgumentHelp& iArgument)
{
    std::string lText;
    for (const std::string& lName : iArgument.mNames)
    {
        lText += (lText.empty() ? "" : " | ") + lName;
    }
    return lText;
}

std::string OptionNames(const CommandHelp& iCommand)
{
    std::string lText;
    for (const ArgumentHelp& lOption : iCommand.mOptions)
    {
        lText += (lText.empty() ? "" : " ") + lOption.mNames.back();
    }
    return lText;
}

std::string QuoteForShell(const std::string& iText)
{
    return "'" + Replaced(iText, "'", "'\\''") + "'";
}

// What follows one command: its options, and what may stand behind one that takes a value.
std::string BashCase(const CommandHelp& iCommand)
{
    std::string lCase = "    " + WordOf(iCommand) + ")\n        lWords=" + QuoteForShell(OptionNames(iCommand)) +
                        "\n        case $lPrevious in\n";
    for (const ArgumentHelp& lOption : iCommand.mOptions)
    {
        if (!lOption.mValue.empty())
        {
            const bool lIsFile = lOption.mValue == "FILE";
            lCase +=
                "        " + Alternatives(lOption) +
                (lIsFile ? ") lKind=files ;;\n" : ") lKind=words lWords=" + QuoteForShell(Words(lOption)) + " ;;\n");
        }
    }
    return lCase + "        esac\n        ;;\n";
}

std::string QuoteForFish(const std::string& iText)
{
    return "'" + Replaced(Replaced(iText, "\\", "\\\\"), "'", "\\'") + "'";
}

// The text about an argument as zsh's _arguments reads it.
std::string ZshText(std::string iText)
{
    for (const char* lCharacter : {"\\", "[", "]", ":"})
    {
        iText = Replaced(iText, lCharacter, std::string("\\") + lCharacter);
    }
    return iText;
}

std::string ZshAction(const ArgumentHelp& iArgument, const std::string& iWhat)
{
    const std::string lWords = Words(iArgument);
    return ":" + iWhat + ":" +
           (!lWords.empty()              ? "(" + lWords + ")"
            : iArgument.mValue == "FILE" ? std::string("_files")
                                         : std::string());
}

std::string ZshArguments(const CommandHelp& iCommand)
{
    std::string lText = "_arguments -s";
    for (const ArgumentHelp& lOption : iCommand.mOptions)
    {
        const std::string lAction =
            lOption.mValue.empty() ? "" : ZshAction(lOption, lOption.mValue.substr(0, lOption.mValue.find('|')));
        for (const std::string& lName : lOption.mNames)
        {
            const bool lIsLong = lName.rfind("--", 0) == 0;
            lText += " \\\n            " + QuoteForShell("*" + lName +
                                                         (lAction.empty() ? ""
                                                          : lIsLong       ? "="
                                                                          : "+") +
                                                         "[" + ZshText(lOption.mText) + "]" + lAction);
        }
    }
    for (std::size_t lIndex = 0; lIndex < iCommand.mPositionals.size(); ++lIndex)
    {
        const ArgumentHelp& lArgument = iCommand.mPositionals[lIndex];
        const bool lIsMany = lArgument.mPlaceholder.find("...") != std::string::npos;
        const ArgumentHelp& lActing = lIsMany ? iCommand.mPositionals.back() : lArgument; // it may be the last one
        lText += " \\\n            " + QuoteForShell((lIsMany ? "*" : std::to_string(lIndex + 1)) +
                                                     ZshAction(lActing, ZshText(lArgument.mText)));
        if (lIsMany)
        {
            break;
        }
    }
    return lText + "\n";
}

std::string FishOption(const std::string& iCondition, const ArgumentHelp& iOption)
{
    std::string lText = "complete -c talbase -n " + QuoteForShell(iCondition);
    for (const std::string& lName : iOption.mNames)
    {
        lText += lName.rfind("--", 0) == 0 ? " -l " + lName.substr(2) : " -s " + lName.substr(1);
    }
    const std::string lWords = Words(iOption);
    if (!iOption.mValue.empty())
    {
        lText += iOption.mValue == "FILE" ? " -rF" : lWords.empty() ? " -x" : " -xa " + QuoteForShell(lWords);
    }
    return lText + " -d " + QuoteForFish(iOption.mText) + "\n";
}

bool HasOption(const CommandHelp& iCommand, const std::string& iName)
{
    return std::any_of(iCommand.mOptions.begin(), iCommand.mOptions.end(),
                       [&iName](const ArgumentHelp& iOption) { return iOption.mNames.back() == iName; });
}

// For the commands that change files. The lines of the text are paragraphs.
constexpr const char* gAboutLocks =
    R"(A file that is changed in place is locked, as flock(2) does it, before it is read, and until the new text stands in its place. Other changes with talbase wait as long as --wait says. Whoever only reads does not wait, and finds the old text or the new one.
.PP
Programs that do not ask for the lock, editors among them, are not kept out. A file that one of them has changed since it was read is not replaced; what it writes in the very moment of the replacement can be lost.
.PP
On a network file system the lock holds for all machines only where the file system passes it on. NFS of Linux does, unless it is mounted with nolock or local_lock, and wants a file that may be written; SMB does since Linux 5.5, and refuses others even to read the file meanwhile. Elsewhere, sshfs among them, the lock holds for the processes of one machine. A client that keeps attributes for some seconds may notice late that a file was changed without a lock. Where a file system has no locks at all, nothing is written, and the exit status is 2; write the new text to another file then, and rename that.
)";

} // namespace

std::string MakeManualPage(const CommandHelp& iCommand, const std::vector<CommandHelp>& iCommands)
{
    const std::string lName = PageName(iCommand);
    std::string lPage = ".TH " + UpperCase(lName) + " 1 \"\" \"TalBase " TALBASE_TOOL_VERSION "\" \"TalBase\"\n.nh\n";
    lPage += ".SH NAME\n" + Roff(lName) + " \\- " + Roff(iCommand.mSummary) + "\n";
    lPage += ".SH SYNOPSIS\n\\fB" + Roff(iCommand.mName) + "\\fR" +
             Roff(iCommand.GetUsage().substr(iCommand.mName.size())) + "\n";
    lPage += ".SH DESCRIPTION\n" + Roff(iCommand.mDetails) + "\n";
    for (const CommandHelp& lCommand : iCommands)
    {
        lPage += (&lCommand == &iCommands.front() ? ".SH COMMANDS\n" : std::string()) + ".TP\n\\fB" +
                 Roff(WordOf(lCommand)) + "\\fR\n" + Roff(lCommand.mSummary) + "; see \\fB" + Roff(PageName(lCommand)) +
                 "\\fR(1).\n";
    }
    lPage += ".SH OPTIONS\n";
    for (const std::vector<ArgumentHelp>* lArguments : {&iCommand.mPositionals, &iCommand.mOptions})
    {
        for (const ArgumentHelp& lArgument : *lArguments)
        {
            lPage += DescribeInRoff(lArgument);
        }
    }
    if (HasOption(iCommand, "--wait"))
    {
        lPage += ".SH SEVERAL CHANGES AT ONCE\n" + Roff(gAboutLocks);
    }
    lPage += ".SH EXIT STATUS\n" +
             (iCommands.empty() ? Roff(iCommand.mExit) + "\n" : ".nf\n" + Roff(iCommand.mExit) + ".fi\n.PP\n") +
             Roff(gAboutExits) + ".\n";
    lPage +=
        ".SH ENVIRONMENT\n.TP\n\\fBNO_COLOR\\fR\nIf it is set, nothing is coloured unless an option asks for it.\n"
        ".TP\n\\fBCOLUMNS\\fR\nHow many columns a line on a terminal has, in the place of what the terminal says.\n";
    lPage += ".SH EXAMPLE\n.nf\n" + Roff(iCommand.mExample) + "\n.fi\n";
    return lPage + ".SH SEE ALSO\n" +
           (iCommands.empty() ? "\\fBtalbase\\fR(1)\n" : "\\fBtalbase COMMAND \\-\\-help\\fR\n");
}

std::string MakeBashCompletion(const CommandHelp& iProgram, const std::vector<CommandHelp>& iCommands)
{
    std::string lCommands;
    std::string lCases;
    for (const CommandHelp& lCommand : iCommands)
    {
        lCommands += WordOf(lCommand) + " ";
        lCases += BashCase(lCommand);
    }
    const std::string lText = R"(# Completion of talbase for bash.
_talbase()
{
    local lCurrent=${COMP_WORDS[COMP_CWORD]} lPrevious=${COMP_WORDS[COMP_CWORD - 1]}
    local lCommand='' lWord lWords='' lKind=any
    if [[ $lCurrent == '=' ]]; then
        lCurrent=''
    elif [[ $lPrevious == '=' ]]; then
        lPrevious=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    for lWord in "${COMP_WORDS[@]:1:COMP_CWORD - 1}"; do
        if [[ $lWord != -* ]]; then
            lCommand=$lWord
            break
        fi
    done
    case $lCommand in
    '')
        lKind=words lWords=@COMMANDS@
        ;;
@CASES@    esac
    COMPREPLY=()
    if [[ $lKind == files || ($lKind == any && $lCurrent != -*) ]]; then
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$lCurrent")
    else
        mapfile -t COMPREPLY < <(compgen -W "$lWords" -- "$lCurrent")
    fi
}
complete -F _talbase talbase
)";
    return Replaced(Replaced(lText, "@COMMANDS@", QuoteForShell(lCommands + OptionNames(iProgram))), "@CASES@", lCases);
}

std::string MakeZshCompletion(const CommandHelp& iProgram, const std::vector<CommandHelp>& iCommands)
{
    std::string lCommands;
    std::string lCases;
    for (const CommandHelp& lCommand : iCommands)
    {
        lCommands += "        " + QuoteForShell(WordOf(lCommand) + ":" + ZshText(lCommand.mSummary)) + "\n";
        lCases += "        " + WordOf(lCommand) + ")\n            " + ZshArguments(lCommand) + "            ;;\n";
    }
    std::string lOptions;
    for (const ArgumentHelp& lOption : iProgram.mOptions)
    {
        lOptions += QuoteForShell(lOption.mNames.back() + "[" + ZshText(lOption.mText) + "]") + " ";
    }
    const std::string lText = R"(#compdef talbase
# Completion of talbase for zsh.
_talbase()
{
    local context state state_descr line
    typeset -A opt_args
    local -a commands
    commands=(
@COMMANDS@    )
    _arguments -C @OPTIONS@'1:command:->command' '*::argument:->argument'
    case $state in
    command)
        _describe command commands
        ;;
    argument)
        case $words[1] in
@CASES@        esac
        ;;
    esac
}
_talbase "$@"
)";
    return Replaced(Replaced(Replaced(lText, "@COMMANDS@", lCommands), "@OPTIONS@", lOptions), "@CASES@", lCases);
}

std::string MakeFishCompletion(const CommandHelp& iProgram, const std::vector<CommandHelp>& iCommands)
{
    std::string lText = "# Completion of talbase for fish.\ncomplete -c talbase -n __fish_use_subcommand -f\n";
    for (const ArgumentHelp& lOption : iProgram.mOptions)
    {
        lText += FishOption("__fish_use_subcommand", lOption);
    }
    for (const CommandHelp& lCommand : iCommands)
    {
        lText += "complete -c talbase -n __fish_use_subcommand -a " + WordOf(lCommand) + " -d " +
                 QuoteForFish(lCommand.mSummary) + "\n";
        for (const ArgumentHelp& lOption : lCommand.mOptions)
        {
            lText += FishOption("__fish_seen_subcommand_from " + WordOf(lCommand), lOption);
        }
    }
    return lText;
}

} // namespace TalBaseTool
