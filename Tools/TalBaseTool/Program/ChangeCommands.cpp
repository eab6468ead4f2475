// The commands that change bags.

#include "Program/CommandGroups.h"
#include "Program/Options.h"

namespace TalBaseTool
{

void AddSet(CLI::App& oApp, ChosenCommand& oChosen)
{
    AddCommand<SetOptions>(
        oApp, oChosen, "set",
        "Set plain values\n"
        "A VALUE stands behind each PATH; where one argument is left, it is the FILE. Either all of the changes are "
        "made, "
        "or none. Nested bags on the way that are not there are made. A property that is there already moves to the "
        "end "
        "of its bag, as it does in the library. A VALUE that begins with - goes behind --. With --value-from there is "
        "no VALUE; that is the way for a secret, because an argument is seen by everybody who looks at the running "
        "programs with ps. With --from-list there is no PATH." +
            std::string(gAboutPaths) + ".",
        "talbase set --in-place Job 18 Transport/Port 2121 job.bag", Set, [](CLI::App& oCommand, SetOptions& oOptions) {
            oCommand
                .add_option("PATH VALUE", oOptions.mArguments, "Properties and their values, which may not be empty")
                ->type_name("PATH");
            AddFile(oCommand, oOptions.mFile); // for the help: the other arguments take it
            oCommand
                .add_option("--value-from", oOptions.mValueFile,
                            "A file that holds the value; one line end behind it is taken off")
                ->type_name("FILE");
            oCommand
                .add_option("--from-list", oOptions.mListFile,
                            "A file with lines as 'talbase list' writes them, each of which is a change; - is standard "
                            "input. One with a masked value is refused")
                ->type_name("FILE");
            AddPair(oCommand, oOptions.mPair);
            AddInPlace(oCommand, oOptions.mTarget);
        });
}

void AddEdit(CLI::App& oApp, ChosenCommand& oChosen)
{
    AddCommand<EditOptions>(
        oApp, oChosen, "edit",
        "Change a file in an editor\n"
        "The editor is $VISUAL, $EDITOR, editor or vi. It gets a list with a line for each property, as 'talbase list' "
        "writes it: PATH = VALUE. Lines can be changed, added, taken out and put into another order. The list is "
        "checked "
        "before the file is changed, and a wrong one can be edited again. What is masked as (hidden) stays as it is as "
        "long as its line is there; that line may not be moved to another path. The list lies in a folder that nobody "
        "else may open, below $TMPDIR or /tmp, and is gone in the end; an editor may keep copies of its own elsewhere. "
        "The file is locked meanwhile.",
        "talbase edit job.bag", Edit, [](CLI::App& oCommand, EditOptions& oOptions) {
            oOptions.mTarget.mIsInPlace = true;
            oCommand.add_option("FILE", oOptions.mFile, "The text form")->type_name("FILE")->required();
            AddPair(oCommand, oOptions.mPair);
            AddSecrets(oCommand, oOptions.mSecrets);
            AddReplacing(oCommand, oOptions.mTarget);
        });
}

void AddRemove(CLI::App& oApp, ChosenCommand& oChosen)
{
    AddCommand<RemoveOptions>(
        oApp, oChosen, "remove",
        "Take a property out\n"
        "A nested bag goes with everything that it holds. A bag that is left without properties goes, too, because no "
        "text can hold it." +
            std::string(gAboutPaths) + ".",
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
            std::string(gAboutPaths) + ".",
        "talbase move Transport/Host Transport/Server job.bag", Move, [](CLI::App& oCommand, MoveOptions& oOptions) {
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
            std::string(gAboutPaths) + ".",
        "talbase embed Previous job-new.bag job.bag", Embed, [](CLI::App& oCommand, EmbedOptions& oOptions) {
            oCommand.add_option("PATH", oOptions.mPath, "Where it goes")->type_name("PATH")->required();
            oCommand.add_option("BAG", oOptions.mBagFile, "The text form of the bag that goes there")
                ->type_name("FILE")
                ->required();
            AddFile(oCommand, oOptions.mFile);
            AddPair(oCommand, oOptions.mPair);
            AddInPlace(oCommand, oOptions.mTarget);
        });
}

void AddMerge(CLI::App& oApp, ChosenCommand& oChosen)
{
    AddCommand<MergeOptions>(
        oApp, oChosen, "merge",
        "Make one bag of several\n"
        "A property of a later bag replaces one of the same name and moves to the end. The delimiters are those of the "
        "first bag.",
        "talbase merge job.bag job-new.bag", Merge, [](CLI::App& oCommand, MergeOptions& oOptions) {
            oCommand.add_option("FILES", oOptions.mFiles, "The text forms; - is standard input")
                ->type_name("FILE")
                ->required()
                ->expected(2, 1 << 20);
            AddPair(oCommand, oOptions.mPair);
            oCommand.add_flag("--deep", oOptions.mIsDeep,
                              "Merge nested bags of the same name property by property instead of replacing them");
        });
}

void AddRedact(CLI::App& oApp, ChosenCommand& oChosen)
{
    AddCommand<RedactOptions>(
        oApp, oChosen, "redact",
        "Take sensitive properties out at every depth\n"
        "The library knows which names are sensitive; --name adds others. What goes is what 'talbase show' hides: the "
        "properties of such a name or of one that holds it as a word, a nested bag with all that is in it, and plain "
        "values that hold it as a word. A text with such a name that is not in good order is refused, because there a "
        "secret may stand anywhere, and so is --in-place for a file with other hard links, which would keep it.",
        "talbase redact --name Token job.bag", Redact, [](CLI::App& oCommand, RedactOptions& oOptions) {
            AddFile(oCommand, oOptions.mFile);
            AddPair(oCommand, oOptions.mPair);
            AddSensitiveNames(oCommand, oOptions.mSecrets);
            oCommand.add_flag("--force", oOptions.mIsForced,
                              "Write also where that is refused: of a text that is not in good order, take out what "
                              "stands where it should; of a file with other hard links, leave them as they are");
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

} // namespace TalBaseTool
