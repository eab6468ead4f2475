// The commands that look into bags.

#include "Program/CommandGroups.h"
#include "Program/Options.h"

#include "Text/Errors.h"

#include <algorithm>

namespace TalBaseTool
{

void AddShow(CLI::App& oApp, ChosenCommand& oChosen)
{
    AddCommand<ShowOptions>(
        oApp, oChosen, "show",
        "Show a bag as a tree\n"
        "The tree has every property in the order of the bag, the delimiters, and how many properties there are. "
        "Control characters are shown as escapes. Sensitive values are hidden at every depth.",
        "talbase show job.bag", Show, [](CLI::App& oCommand, ShowOptions& oOptions) {
            oOptions.mInputs.mUnreadable = ExitBad;
            AddInputs(oCommand, oOptions.mInputs);
            AddColor(oCommand, oOptions.mColor);
            AddSecrets(oCommand, oOptions.mInputs.mSecrets);
            oCommand.add_flag("--raw", oOptions.mIsRaw, "Show values as they are stored, with their escapes");
            oCommand
                .add_option_function<std::size_t>(
                    "--cut", [&oOptions](std::size_t iLongest) { oOptions.mLongest = iLongest; },
                    "Characters of a value that are shown, 0 for all; otherwise 200, and at a terminal what fits into "
                    "its lines")
                ->type_name("N")
                ->check(CLI::Range(0, gMost));
            oCommand
                .add_option_function<int>(
                    "--depth", [&oOptions](int iDepth) { oOptions.mMaxDepth = iDepth; },
                    "How many levels of nested bags are opened")
                ->type_name("N")
                ->check(CLI::Range(0, gMost));
        });
}

void AddCheck(CLI::App& oApp, ChosenCommand& oChosen)
{
    AddCommand<CheckOptions>(
        oApp, oChosen, "check",
        "Say whether texts can be read, and where not\n"
        "What is wrong is the library's own message, with the place in the text. Warnings are about what is read but "
        "gets lost: text behind the last delimiter, properties without a value, bags without properties, repeated "
        "names, delimiters that could also begin one character further on, and headers that are not as they would be "
        "written; and about what may be damage: an empty text, names that begin with a line end, and values that read "
        "as the text of a bag. "
        "Sensitive values, and sensitive bags with all that is in them, are masked.",
        "talbase check job.bag job-new.bag", Check, [](CLI::App& oCommand, CheckOptions& oOptions) {
            oOptions.mInputs.mUnreadable = ExitBad;
            AddInputs(oCommand, oOptions.mInputs);
            AddColor(oCommand, oOptions.mColor);
            AddSecrets(oCommand, oOptions.mInputs.mSecrets);
            oCommand.add_option("--warnings", oOptions.mMaxWarnings, "How many warnings are shown for each file")
                ->type_name("N")
                ->check(CLI::Range(0, gMost))
                ->capture_default_str();
            oCommand.add_flag("--strict", oOptions.mIsStrict, "Let warnings make the exit status 1");
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
        "talbase diff job.bag job-new.bag", Diff, [](CLI::App& oCommand, DiffOptions& oOptions) {
            oCommand.add_option("A", oOptions.mFile, "A text form; - is standard input")->type_name("FILE")->required();
            oCommand.add_option("B", oOptions.mOther, "Another one")->type_name("FILE")->required();
            AddView(oCommand, oOptions);
            oCommand.add_flag("--ordered", oOptions.mIsOrdered, "Compare the order of the properties, too");
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
        "drawing it. A bag without the property is open all day; where others have a window's name, they are named, "
        "and "
        "without --prefix the exit status is 1.",
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
            oCommand
                .add_option("--path", oOptions.mBagPath,
                            std::string("The nested bag that has the window.") + gAboutPaths)
                ->type_name("PATH");
            AddOptional(oCommand, "--prefix", oOptions.mPrefix,
                        "What stands before DeliveryWindow in the property's name");
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
            AddRaw(oCommand);
            oCommand.add_flag("--set", oOptions.mIsSet, "Write the bag with this window");
            AddInPlace(oCommand, oOptions.mTarget);
            AddColor(oCommand, oOptions.mColor);
            AddSecrets(oCommand, oOptions.mSecrets);
        });
}

namespace
{

struct GuidOptions
{
    unsigned int mCount = 1;
};

int RunGuid(const GuidOptions& iOptions, const Streams& iStreams)
{
    return Guids(iOptions.mCount, iStreams);
}

} // namespace

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

} // namespace TalBaseTool
