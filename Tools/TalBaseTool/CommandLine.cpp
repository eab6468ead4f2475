#include "CommandLine.h"

#include "Arguments.h"
#include "Commands.h"
#include "Errors.h"
#include "Help.h"
#include "Text.h"

#include "QBase/Convert.h"
#include "QBase/Message.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <limits>
#include <map>
#include <new>

namespace TalBaseTool
{

namespace
{

constexpr const char* gColorWords = "auto|always|never";
constexpr int gMost = std::numeric_limits<int>::max(); // of what is counted
const std::string gAboutPaths = " A path is the names on the way to a property, joined with /; a / in a name is "
                                "written \\/ and a \\ is written \\\\";

void AddFile(CLI::App& oApp, std::string& oFile)
{
    oApp.add_option("FILE", oFile, "The text form; - or nothing is standard input")->type_name("FILE");
}

void AddOptional(CLI::App& oApp, const char* ipName, std::optional<std::string>& oValue, const char* ipWhat)
{
    oApp.add_option_function<std::string>(
            ipName, [&oValue](const std::string& iValue) { oValue = iValue; }, ipWhat)
        ->type_name("TEXT");
}

void AddPair(CLI::App& oApp, RawPair& oPair, const char* ipBegin = "--begin", const char* ipEnd = "--end")
{
    AddOptional(oApp, ipBegin, oPair.mBegin,
                "Begin delimiter of a text without a header; one with a header keeps its own");
    AddOptional(oApp, ipEnd, oPair.mEnd, "End delimiter of a text without a header; one with a header keeps its own");
}

void AddColor(CLI::App& oApp, ColorChoice& oColor)
{
    static const std::map<std::string, ColorChoice> lChoices = {
        {"auto", ColorChoice::Auto}, {"always", ColorChoice::Always}, {"never", ColorChoice::Never}};
    oApp.add_option_function<std::string>(
            "--color", [&oColor](const std::string& iWord) { oColor = lChoices.at(iWord); },
            "When to use colours; auto is on a terminal where NO_COLOR is not set")
        ->type_name(gColorWords)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast)
        ->check(
            [](const std::string& iWord) {
                return lChoices.count(iWord) != 0 ? "" : "'" + iWord + "' is none of " + gColorWords;
            },
            "", "");
}

void AddView(CLI::App& oApp, ViewOptions& oOptions)
{
    AddPair(oApp, oOptions.mPair);
    AddColor(oApp, oOptions.mColor);
    oApp.add_flag("--show-secrets", oOptions.mShowSecrets, "Show the values of sensitive properties, too");
}

void AddInPlace(CLI::App& oApp, Target& oTarget)
{
    oApp.add_flag(
        "-i,--in-place", oTarget.mIsInPlace,
        "Change the file itself, which may be a link's: the new text is written beside it and takes its place. "
        "Mode, owner, group and extended attributes stay where the system allows it; where it does not, a "
        "line on standard error says so. Other hard links keep the old text. The folder must be writable; "
        "the file need not be");
}

// A command: its name, what its help says, its options, and what it does.
template <class Options, class Define>
void AddCommand(CLI::App& oApp, ChosenCommand& oChosen, const char* ipName, const std::string& iDescription,
                const char* ipExample, int (*ipRun)(const Options&, const Streams&), Define iDefine)
{
    const auto lOptions = std::make_shared<Options>();
    CLI::App& lApp = *oApp.add_subcommand(ipName, iDescription);
    lApp.footer(ipExample);
    iDefine(lApp, *lOptions);
    lApp.callback([lOptions, ipRun, &oChosen] {
        oChosen = [lOptions, ipRun](const Streams& iStreams) { return ipRun(*lOptions, iStreams); };
    });
}

void AddShow(CLI::App& oApp, ChosenCommand& oChosen)
{
    AddCommand<ShowOptions>(
        oApp, oChosen, "show",
        "Show a bag as a tree\n"
        "The tree has every property in the order of the bag, the delimiters, and how many properties there are. "
        "Control characters are shown as escapes. Sensitive values are hidden at every depth.",
        "talbase show job.bag", Show, [](CLI::App& oCommand, ShowOptions& oOptions) {
            AddFile(oCommand, oOptions.mFile);
            AddView(oCommand, oOptions);
            oCommand.add_flag("--raw", oOptions.mIsRaw, "Show values as they are stored, with their escapes");
            oCommand.add_option("--cut", oOptions.mLongest, "Characters of a value that are shown, 0 for all")
                ->type_name("N")
                ->check(CLI::Range(0, gMost))
                ->capture_default_str();
            oCommand
                .add_option_function<int>(
                    "--depth", [&oOptions](int iDepth) { oOptions.mMaxDepth = iDepth; },
                    "How many levels of nested bags are opened")
                ->type_name("N")
                ->check(CLI::Range(0, gMost));
        });
}

int RunCheck(const CheckOptions& iOptions, const Streams& iStreams)
{
    if (std::count(iOptions.mFiles.begin(), iOptions.mFiles.end(), "-") > 1)
    {
        throw UsageError("standard input can be read only once");
    }
    return Check(iOptions, iStreams);
}

void AddCheck(CLI::App& oApp, ChosenCommand& oChosen)
{
    AddCommand<CheckOptions>(
        oApp, oChosen, "check",
        "Say whether texts can be read, and where not\n"
        "What is wrong is the library's own message, with the place in the text. Warnings are about what is read but "
        "gets lost: text behind the last delimiter, properties without a value, bags without properties, repeated "
        "names, delimiters that could also begin one character further on, and headers that are not as they would be "
        "written. "
        "Sensitive values, and sensitive bags with all that is in them, are masked.",
        "talbase check job.bag route.bag", RunCheck, [](CLI::App& oCommand, CheckOptions& oOptions) {
            oCommand.add_option("FILES", oOptions.mFiles, "The text forms; - or nothing is standard input")
                ->type_name("FILE");
            AddPair(oCommand, oOptions.mPair);
            AddColor(oCommand, oOptions.mColor);
            oCommand.add_flag("--show-secrets", oOptions.mShowSecrets, "Show the values of sensitive properties, too");
            oCommand.add_option("--warnings", oOptions.mMaxWarnings, "How many warnings are shown for each file")
                ->type_name("N")
                ->check(CLI::Range(0, gMost))
                ->capture_default_str();
            oCommand.add_flag("--strict", oOptions.mIsStrict, "Let warnings make the exit status 1");
        });
}

void AddGet(CLI::App& oApp, ChosenCommand& oChosen)
{
    AddCommand<GetOptions>(
        oApp, oChosen, "get",
        "Print one value\n"
        "For a nested bag it is the bag's text form, with a header where the text has one." +
            gAboutPaths + ".",
        "talbase get Transport/Host job.bag", Get, [](CLI::App& oCommand, GetOptions& oOptions) {
            oCommand.add_option("PATH", oOptions.mPath, "The property")->type_name("PATH")->required();
            AddFile(oCommand, oOptions.mFile);
            AddPair(oCommand, oOptions.mPair);
            oCommand.add_flag("--raw", oOptions.mIsRaw, "Print the value as it is stored, with its escapes");
            oCommand.add_flag("-n,--no-newline", oOptions.mHasNoLineEnd, "Print no line end behind the value");
        });
}

void AddSet(CLI::App& oApp, ChosenCommand& oChosen)
{
    AddCommand<SetOptions>(
        oApp, oChosen, "set",
        "Set one plain value\n"
        "Nested bags on the way that are not there are made. A property that is there already moves to the end of its "
        "bag, as it does in the library. A VALUE that begins with - goes behind --. With --value-from there is no "
        "VALUE." +
            gAboutPaths + ".",
        "talbase set --in-place Transport/Port 2121 job.bag", Set, [](CLI::App& oCommand, SetOptions& oOptions) {
            oCommand.add_option("PATH", oOptions.mPath, "The property")->type_name("PATH")->required();
            AddOptional(oCommand, "VALUE", oOptions.mValue, "Its value, which may not be empty");
            AddFile(oCommand, oOptions.mFile);
            oCommand.add_option("--value-from", oOptions.mValueFile, "A file that holds the value, to the last byte")
                ->type_name("FILE");
            AddPair(oCommand, oOptions.mPair);
            AddInPlace(oCommand, oOptions.mTarget);
        });
}

void AddRemove(CLI::App& oApp, ChosenCommand& oChosen)
{
    AddCommand<RemoveOptions>(
        oApp, oChosen, "remove",
        "Take a property out\n"
        "A nested bag goes with everything that it holds. A bag that is left without properties goes, too, because no "
        "text can hold it." +
            gAboutPaths + ".",
        "talbase remove Transport/Route/Port job.bag", Remove, [](CLI::App& oCommand, RemoveOptions& oOptions) {
            oCommand.add_option("PATH", oOptions.mPath, "The property")->type_name("PATH")->required();
            AddFile(oCommand, oOptions.mFile);
            AddPair(oCommand, oOptions.mPair);
            AddInPlace(oCommand, oOptions.mTarget);
        });
}

void AddMove(CLI::App& oApp, ChosenCommand& oChosen)
{
    AddCommand<MoveOptions>(
        oApp, oChosen, "move",
        "Give a property another name or another bag\n"
        "Nested bags on the way to TO that are not there are made; TO itself may not be there." +
            gAboutPaths + ".",
        "talbase move Host Transport/Host job.bag", Move, [](CLI::App& oCommand, MoveOptions& oOptions) {
            oCommand.add_option("FROM", oOptions.mFrom, "The property")->type_name("PATH")->required();
            oCommand.add_option("TO", oOptions.mTo, "Where it goes")->type_name("PATH")->required();
            AddFile(oCommand, oOptions.mFile);
            AddPair(oCommand, oOptions.mPair);
            AddInPlace(oCommand, oOptions.mTarget);
        });
}

void AddEmbed(CLI::App& oApp, ChosenCommand& oChosen)
{
    AddCommand<EmbedOptions>(
        oApp, oChosen, "embed",
        "Put a bag into another one\n"
        "A nested bag that is there already is replaced. Values get the escapes that the delimiters around them want." +
            gAboutPaths + ".",
        "talbase embed Transport route.bag job.bag", Embed, [](CLI::App& oCommand, EmbedOptions& oOptions) {
            oCommand.add_option("PATH", oOptions.mPath, "Where it goes")->type_name("PATH")->required();
            oCommand.add_option("BAG", oOptions.mBagFile, "The text form of the bag that goes there")
                ->type_name("FILE")
                ->required();
            AddFile(oCommand, oOptions.mFile);
            AddPair(oCommand, oOptions.mPair);
            AddInPlace(oCommand, oOptions.mTarget);
        });
}

void AddDiff(CLI::App& oApp, ChosenCommand& oChosen)
{
    AddCommand<DiffOptions>(
        oApp, oChosen, "diff",
        "Show what differs between two bags\n"
        "Names and values are compared as a caller of the library sees them, whatever the delimiters. A line with - is "
        "about the first bag, one with + about the second, one with > about an order. Exit status 1 says that they "
        "differ.",
        "talbase diff old.bag new.bag", Diff, [](CLI::App& oCommand, DiffOptions& oOptions) {
            oCommand.add_option("A", oOptions.mFile, "A text form; - is standard input")->type_name("FILE")->required();
            oCommand.add_option("B", oOptions.mOther, "Another one")->type_name("FILE")->required();
            AddView(oCommand, oOptions);
            oCommand.add_flag("--ordered", oOptions.mIsOrdered, "Compare the order of the properties, too");
        });
}

void AddMerge(CLI::App& oApp, ChosenCommand& oChosen)
{
    AddCommand<MergeOptions>(
        oApp, oChosen, "merge",
        "Make one bag of several\n"
        "A property of a later bag replaces one of the same name and moves to the end. The delimiters are those of the "
        "first bag.",
        "talbase merge defaults.bag job.bag", Merge, [](CLI::App& oCommand, MergeOptions& oOptions) {
            oCommand.add_option("FILES", oOptions.mFiles, "The text forms; - is standard input")
                ->type_name("FILE")
                ->required()
                ->expected(2, 1 << 20);
            AddPair(oCommand, oOptions.mPair);
            oCommand.add_flag("--deep", oOptions.mIsDeep,
                              "Merge nested bags of the same name property by property instead of replacing them");
        });
}

void AddToJson(CLI::App& oApp, ChosenCommand& oChosen)
{
    AddCommand<ToJsonOptions>(
        oApp, oChosen, "to-json",
        "Write a bag as JSON\n"
        "A bag whose names are the numbers from 0 on becomes an array, every other one an object. All values are "
        "strings; with --typed those that are a JSON number, true, false or null are written as that. Lines are "
        "indented by 40 levels at most.",
        "talbase to-json job.bag", ToJson, [](CLI::App& oCommand, ToJsonOptions& oOptions) {
            AddFile(oCommand, oOptions.mFile);
            AddPair(oCommand, oOptions.mPair);
            oCommand.add_option("--indent", oOptions.mIndent, "Blanks for each level, -1 for all on one line")
                ->type_name("N")
                ->check(CLI::Range(-1, 16))
                ->capture_default_str();
            oCommand.add_flag("--typed", oOptions.mIsTyped, "Write numbers, true, false and null without quotes");
        });
}

void AddFromJson(CLI::App& oApp, ChosenCommand& oChosen)
{
    AddCommand<FromJsonOptions>(
        oApp, oChosen, "from-json",
        "Make a bag of a JSON document\n"
        "An object becomes a bag, an array a bag whose names are the numbers from 0 on. What a bag cannot hold is "
        "counted on standard error: empty texts, empty objects and arrays, names and values that the delimiters "
        "forbid, and the types of numbers, true, false and null, which become texts. So is the order of plain values "
        "and nested ones in an object, which changes; since JSON gives it no meaning, --strict lets it pass.",
        "talbase from-json job.json", FromJson, [](CLI::App& oCommand, FromJsonOptions& oOptions) {
            oCommand.add_option("FILE", oOptions.mFile, "The JSON; - or nothing is standard input")->type_name("FILE");
            AddOptional(oCommand, "--begin", oOptions.mPair.mBegin, "Begin delimiter of the bag");
            AddOptional(oCommand, "--end", oOptions.mPair.mEnd, "End delimiter of the bag");
            oCommand.add_flag("!--no-header", oOptions.mHasHeader, "Write the text without a header");
            oCommand.add_flag("--strict", oOptions.mIsStrict,
                              "Write nothing where a bag cannot hold all of it but the order");
            oCommand.add_flag("-v,--verbose", oOptions.mIsVerbose, "Name every place, not only the first ones");
        });
}

void AddRedact(CLI::App& oApp, ChosenCommand& oChosen)
{
    AddCommand<RedactOptions>(
        oApp, oChosen, "redact",
        "Take sensitive properties out at every depth\n"
        "The library knows which names are sensitive; --name adds others. A nested bag of such a name goes whole.",
        "talbase redact --name Token job.bag", Redact, [](CLI::App& oCommand, RedactOptions& oOptions) {
            AddFile(oCommand, oOptions.mFile);
            AddPair(oCommand, oOptions.mPair);
            oCommand
                .add_option_function<std::string>(
                    "--name", [&oOptions](const std::string& iName) { oOptions.mNames.push_back(iName); },
                    "Another sensitive name; may be given several times")
                ->type_name("NAME")
                ->trigger_on_parse();
            AddInPlace(oCommand, oOptions.mTarget);
        });
}

void AddDelimiters(CLI::App& oApp, ChosenCommand& oChosen)
{
    AddCommand<DelimitersOptions>(
        oApp, oChosen, "delimiters",
        "Write a bag with other delimiters\n"
        "Values get the escapes that the new delimiters want and lose those that they do not. Nothing is written where "
        "a name or a value would not be read back.",
        "talbase delimiters --begin '[[' --end ']]' job.bag", Delimiters,
        [](CLI::App& oCommand, DelimitersOptions& oOptions) {
            AddFile(oCommand, oOptions.mFile);
            oCommand.add_option("--begin", oOptions.mBegin, "The new begin delimiter")->type_name("TEXT")->required();
            oCommand.add_option("--end", oOptions.mEnd, "The new end delimiter")->type_name("TEXT")->required();
            AddPair(oCommand, oOptions.mPair, "--from-begin", "--from-end");
            AddInPlace(oCommand, oOptions.mTarget);
        });
}

void AddWindow(CLI::App& oApp, ChosenCommand& oChosen)
{
    AddCommand<WindowOptions>(
        oApp, oChosen, "window",
        "Draw or set the hours in which delivery is allowed\n"
        "The window is that of the bag in FILE, or the one of --value. --open and --close change it, each after the "
        "one before it. Without FILE and --value they begin with a window that is always open, or where --open comes "
        "first with one that is never open: --open 9-17 is 9 to 17 only. RANGE is one hour, or two with - between "
        "them, both included: 22-5 runs past midnight. With --set the bag is written with that window instead of "
        "drawing it.",
        "talbase window --close 22-5 --now", Window, [](CLI::App& oCommand, WindowOptions& oOptions) {
            oCommand
                .add_option_function<std::string>(
                    "FILE",
                    [&oOptions](const std::string& iFile) {
                        oOptions.mFile = iFile;
                        oOptions.mHasFile = true;
                    },
                    "The text form of a bag with a window; - is standard input")
                ->type_name("FILE");
            AddPair(oCommand, oOptions.mPair);
            oCommand.add_option("--path", oOptions.mBagPath, "The nested bag that has the window." + gAboutPaths)
                ->type_name("PATH");
            oCommand
                .add_option("--prefix", oOptions.mPrefix, "What stands before DeliveryWindow in the property's name")
                ->type_name("TEXT");
            AddOptional(oCommand, "--value", oOptions.mValue,
                        "The window as a property has it, for example ' 0, 9,23,'");
            oCommand
                .add_option_function<std::string>(
                    "--open",
                    [&oOptions](const std::string& iRange) {
                        oOptions.mRanges.push_back({true, iRange});
                    },
                    "Hours to open; may be given several times")
                ->type_name("RANGE")
                ->trigger_on_parse();
            oCommand
                .add_option_function<std::string>(
                    "--close",
                    [&oOptions](const std::string& iRange) {
                        oOptions.mRanges.push_back({false, iRange});
                    },
                    "Hours to close; may be given several times")
                ->type_name("RANGE")
                ->trigger_on_parse();
            oCommand.add_flag("--now", oOptions.mHasNow, "Mark the hour that it is now");
            oCommand
                .add_option_function<unsigned int>(
                    "--at", [&oOptions](unsigned int iHour) { oOptions.mHour = iHour; }, "Mark another hour")
                ->type_name("HOUR");
            oCommand.add_flag("--set", oOptions.mIsSet, "Write the bag with this window");
            AddInPlace(oCommand, oOptions.mTarget);
            AddColor(oCommand, oOptions.mColor);
        });
}

struct GuidOptions
{
    unsigned int mCount = 1;
};

int RunGuid(const GuidOptions& iOptions, const Streams& iStreams)
{
    return Guids(iOptions.mCount, iStreams);
}

void AddGuid(CLI::App& oApp, ChosenCommand& oChosen)
{
    AddCommand<GuidOptions>(
        oApp, oChosen, "guid",
        "Print new identifiers\n"
        "Each is unique and on a line of its own.",
        "talbase guid -n 3", RunGuid, [](CLI::App& oCommand, GuidOptions& oOptions) {
            oCommand.add_option("-n", oOptions.mCount, "How many")->type_name("N")->capture_default_str();
        });
}

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
