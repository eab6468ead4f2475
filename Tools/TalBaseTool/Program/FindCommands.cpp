// The commands that find properties of many bags, and flat lists.

#include "Program/CommandGroups.h"
#include "Program/Options.h"

#include "Text/Errors.h"

#include <map>

namespace TalBaseTool
{

namespace
{

constexpr const char* gAboutPatterns = " In a path, * stands for any characters of one name, and ** alone for names in "
                                       "any number; a * that is meant itself "
                                       "is written \\*";

} // namespace

void AddGet(CLI::App& oApp, ChosenCommand& oChosen)
{
    AddCommand<GetOptions>(
        oApp, oChosen, "get",
        "Print values\n"
        "The value at a path of one bag is printed as it is; for a nested bag it is the bag's text form, with a header "
        "where the text has one. For a pattern, for several bags and with --format there is a row for each value, with "
        "its path, and with the file of each bag where there are several. A pattern finds plain values; where it ends "
        "with the name of a bag, all that are in it. Values at a path are shown even where they are sensitive, those "
        "that a pattern finds are not. The exit status is 0 where at least one bag has the property." +
            std::string(gAboutPaths) + "." + gAboutPatterns + ".",
        "talbase get 'Transport/*' job.bag", Get, [](CLI::App& oCommand, GetOptions& oOptions) {
            oCommand.add_option("PATH", oOptions.mPath, "The property")->type_name("PATH")->required();
            AddInputs(oCommand, oOptions.mInputs);
            static const std::map<std::string, GetFormat> lFormats = {
                {"lines", GetFormat::Lines}, {"table", GetFormat::Table}, {"json", GetFormat::Json}};
            oCommand
                .add_option_function<std::string>(
                    "--format", [&oOptions](const std::string& iWord) { oOptions.mFormat = lFormats.at(iWord); },
                    "How rows look: lines as those of list, a table for people, or a JSON object each")
                ->type_name("lines|table|json")
                ->check(
                    [](const std::string& iWord) {
                        return lFormats.count(iWord) != 0 ? "" : "'" + iWord + "' is none of lines|table|json";
                    },
                    "", "");
            AddOptional(oCommand, "--default", oOptions.mDefault, "The value where nothing is at the path");
            AddZero(oCommand, oOptions.mEndsWithZero, "End each value, or each row, with a zero character");
            oCommand.add_flag("--raw", oOptions.mIsRaw,
                              "Print values as they are stored, with their escapes; also to a terminal, where control "
                              "characters otherwise are escapes");
            oCommand.add_flag("-n,--no-newline", oOptions.mHasNoLineEnd, "Print no line end behind the one value");
            AddSecrets(oCommand, oOptions.mInputs.mSecrets);
        });
}

void AddHas(CLI::App& oApp, ChosenCommand& oChosen)
{
    AddCommand<HasOptions>(
        oApp, oChosen, "has",
        "Say whether a property is there\n"
        "The answer is the exit status; of several bags the files of those that have it are printed." +
            std::string(gAboutPaths) + "." + gAboutPatterns + ".",
        "talbase has Transport/Host job.bag && echo yes", Has, [](CLI::App& oCommand, HasOptions& oOptions) {
            oCommand.add_option("PATH", oOptions.mPath, "The property")->type_name("PATH")->required();
            AddInputs(oCommand, oOptions.mInputs);
            AddZero(oCommand, oOptions.mEndsWithZero, "End each file with a zero character");
        });
}

void AddGrep(CLI::App& oApp, ChosenCommand& oChosen)
{
    AddCommand<GrepOptions>(
        oApp, oChosen, "grep",
        "Find properties by their names and values\n"
        "Properties whose name or value has PATTERN are printed as lines of list, and a bag whose name has it as its "
        "path with a slash. PATTERN is a basic regular expression, as grep has it; ^ and $ are the ends of the name, "
        "and "
        "of each line of the value. What is hidden is not searched.",
        "talbase grep -i 'host$' job.bag", Grep, [](CLI::App& oCommand, GrepOptions& oOptions) {
            oCommand.add_option("PATTERN", oOptions.mPattern, "What to find")->type_name("PATTERN")->required();
            AddInputs(oCommand, oOptions.mInputs);
            const auto lKind = [&](const char* ipNames, PatternKind iKind, const char* ipWhat) {
                return oCommand.add_flag_callback(
                    ipNames, [&oOptions, iKind] { oOptions.mKind = iKind; }, ipWhat);
            };
            CLI::Option* const lExtended =
                lKind("-E,--extended-regexp", PatternKind::Extended, "PATTERN is an extended regular expression");
            lKind("-F,--fixed-strings", PatternKind::Fixed, "PATTERN is a text as it stands")->excludes(lExtended);
            oCommand.add_flag("-i,--ignore-case", oOptions.mIgnoresCase, "Take capitals for small letters");
            oCommand.add_flag("-v,--invert-match", oOptions.mIsInverted,
                              "Find the plain properties that do not have PATTERN");
            oCommand.add_flag("-l,--files-with-matches", oOptions.mListsFiles,
                              "Print only the files of bags that have it");
            oCommand.add_flag("-c,--count", oOptions.mCounts, "Print only how many properties each bag has");
            AddFileNames(oCommand, oOptions.mFileNames);
            AddZero(oCommand, oOptions.mEndsWithZero, "End each line with a zero character");
            AddSecrets(oCommand, oOptions.mInputs.mSecrets);
        });
}

void AddList(CLI::App& oApp, ChosenCommand& oChosen)
{
    AddCommand<ListOptions>(
        oApp, oChosen, "list",
        "Write bags as lines, one for each property\n"
        "The first line names the delimiters, the others are 'path = value'. A path or a value that could be misread "
        "is "
        "a JSON string; (hidden) without quotes stands for a sensitive value, or, where the path ends with a slash, "
        "for "
        "a bag. 'talbase from-list' makes the same bag of the list, unless something is hidden. For git diff: put "
        "'*.bag diff=bag' into .gitattributes, and run: git config diff.bag.textconv 'talbase list'." +
            std::string(gAboutPaths) + ".",
        "talbase list --show-secrets job.bag >job.list", ListBags, [](CLI::App& oCommand, ListOptions& oOptions) {
            AddInputs(oCommand, oOptions.mInputs);
            oCommand.add_flag("--sort", oOptions.mIsSorted, "Sort by path instead of keeping the order of the bag");
            AddZero(oCommand, oOptions.mEndsWithZero,
                    "End each line with a zero character; line ends and blanks in it then need no quotes");
            AddFileNames(oCommand, oOptions.mFileNames);
            AddSecrets(oCommand, oOptions.mInputs.mSecrets);
        });
}

void AddFromList(CLI::App& oApp, ChosenCommand& oChosen)
{
    AddCommand<FromListOptions>(
        oApp, oChosen, "from-list",
        "Make a bag of a list\n"
        "The first line names the delimiters, as 'talbase list' writes it; each other line is 'path = value'. Lines "
        "that "
        "are empty or begin with # say nothing. Hidden lines are refused, and so is what the text would not give back.",
        "talbase from-list job.list", FromList, [](CLI::App& oCommand, FromListOptions& oOptions) {
            oCommand.add_option("FILE", oOptions.mFile, "The list; - or nothing is standard input")->type_name("FILE");
            AddZero(oCommand, oOptions.mEndsWithZero, "The lines end with zero characters");
        });
}

} // namespace TalBaseTool
