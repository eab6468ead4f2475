// The commands that convert bags to JSON and back.

#include "Program/CommandGroups.h"
#include "Program/Options.h"
#include "Text/Errors.h"

namespace TalBaseTool
{

void AddToJson(CLI::App& oApp, ChosenCommand& oChosen)
{
    AddCommand<ToJsonOptions>(
        oApp, oChosen, "to-json",
        "Write a bag as JSON\n"
        "A bag whose names are the numbers from 0 on becomes an array, every other one an object. All values are "
        "strings; with --typed those that are a JSON number, true, false or null are written as that. Lines are "
        "indented by 40 levels at most.",
        "talbase to-json job.bag >job.json", ToJson, [](CLI::App& oCommand, ToJsonOptions& oOptions) {
            oOptions.mInputs.mUnreadable = ExitBad;
            AddInputs(oCommand, oOptions.mInputs, false);
            oCommand.add_flag("--lines", oOptions.mHasLines,
                              "Write each bag as one line of JSON; 'talbase from-json --lines' reads them");
            oCommand.add_option("--indent", oOptions.mIndent, "Blanks for each level, -1 for all on one line")
                ->type_name("N")
                ->check(CLI::Range(-1, 16))
                ->capture_default_str();
            oCommand.add_flag("--redact", oOptions.mIsRedacted,
                              "Leave sensitive properties out, as 'talbase redact' does");
            AddSensitiveNames(oCommand, oOptions.mInputs.mSecrets);
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
            oCommand.add_flag(
                "--lines", oOptions.mHasLines,
                "Read one document a line, and write the text form of each as a JSON string on a line, as "
                "the commands that look into bags read them");
            oCommand.add_flag("--strict", oOptions.mIsStrict,
                              "Write nothing where a bag cannot hold all of it but the order");
            oCommand.add_flag("-v,--verbose", oOptions.mIsVerbose, "Name every place, not only the first ones");
        });
}

} // namespace TalBaseTool
