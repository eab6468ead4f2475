#include "Program/Options.h"

#include "Program/ExitStatus.h"

#include <map>

namespace TalBaseTool
{

namespace
{

constexpr const char* gColorWords = "auto|always|never";

} // namespace

const char* const gAboutPaths =
    " A path is the names on the way to a property, joined with /; a / in a name is written "
    "\\/ and a \\ is written \\\\";

void AddFile(CLI::App& oApp, std::string& oFile)
{
    oApp.add_option("FILE", oFile, "The text form; - or nothing is standard input")->type_name("FILE");
}

void AddInputs(CLI::App& oApp, InputOptions& oInputs, bool iHasLines)
{
    oApp.add_option("FILES", oInputs.mFiles,
                    "The text forms, and with --recursive folders of them; - or nothing is standard input, which has "
                    "one text form or JSON lines")
        ->type_name("FILE");
    oApp.add_flag("-r,--recursive", oInputs.mIsRecursive,
                  "Read all regular files in folders and in the folders in them, but no links");
    if (iHasLines)
    {
        oApp.add_flag("--lines", oInputs.mHasLines,
                      "The files have JSON lines: each line is a JSON string that holds a text form, or a JSON object "
                      "that from-json makes a bag of. Standard input that begins with a quote or a brace has them in "
                      "any case, unless --begin is given");
    }
    AddPair(oApp, oInputs.mPair);
}

void AddZero(CLI::App& oApp, bool& oEndsWithZero, const char* ipWhat)
{
    oApp.add_flag("-0,--null", oEndsWithZero, ipWhat);
}

void AddFileNames(CLI::App& oApp, FileNames& oNames)
{
    oApp.add_flag_callback(
        "-H,--with-filename", [&oNames] { oNames = FileNames::Always; }, "Begin each line with the file");
    oApp.add_flag_callback(
        "--no-filename", [&oNames] { oNames = FileNames::Never; },
        "Do not, even where there are several; -h is the help");
}

void AddOptional(CLI::App& oApp, const char* ipName, std::optional<std::string>& oValue, const char* ipWhat)
{
    oApp.add_option_function<std::string>(
            ipName, [&oValue](const std::string& iValue) { oValue = iValue; }, ipWhat)
        ->type_name("TEXT");
}

void AddPair(CLI::App& oApp, RawPair& oPair, const char* ipBegin, const char* ipEnd)
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

void AddSensitiveNames(CLI::App& oApp, SecretOptions& oOptions)
{
    oApp.add_option_function<std::string>(
            "--name", [&oOptions](const std::string& iName) { oOptions.mNames.push_back(iName); },
            "Another sensitive name; may be given several times. The environment variable TALBASE_SENSITIVE_NAMES has "
            "more, one a line")
        ->type_name("NAME")
        ->trigger_on_parse();
}

void AddSecrets(CLI::App& oApp, SecretOptions& oOptions)
{
    oApp.add_flag("--show-secrets", oOptions.mShowSecrets, "Show the values of sensitive properties, too");
    AddSensitiveNames(oApp, oOptions);
}

void AddView(CLI::App& oApp, ViewOptions& oOptions)
{
    AddPair(oApp, oOptions.mPair);
    AddColor(oApp, oOptions.mColor);
    AddSecrets(oApp, oOptions.mSecrets);
}

// Whoever runs the command looks whether it was given.
void AddQuiet(CLI::App& oApp)
{
    const bool lIsQuestion = FindExitMeaning(oApp.get_name()).mIsQuestion;
    const std::string lText = lIsQuestion ? "Print nothing but trouble: the exit status is the answer"
                                          : "Say nothing on standard error but errors";
    oApp.add_flag(std::string("-q,") + gQuiet, lText);
}

void AddRaw(CLI::App& oApp)
{
    const std::string lText = "Let a terminal have control characters, which otherwise are escapes there";
    oApp.add_flag(std::string(gRaw), lText);
}

bool WritesData(const CLI::App& iApp)
{
    return iApp.get_option_no_throw("--color") == nullptr;
}

void AddInPlace(CLI::App& oApp, Target& oTarget)
{
    CLI::Option* const lInPlace = oApp.add_flag(
        "-i,--in-place", oTarget.mIsInPlace,
        "Change the file itself, which may be a link's: the new text is written beside it and takes its place. "
        "Mode, owner, group and extended attributes stay where the system allows it; where it does not, a "
        "line on standard error says so, and a group that cannot be kept loses what only it might do. Other hard links "
        "keep the old text. The folder must be writable; "
        "the file need not be");
    AddReplacing(oApp, oTarget);
    oApp.get_option("--wait")->needs(lInPlace);
    oApp.get_option("--backup")->needs(lInPlace);
}

void AddReplacing(CLI::App& oApp, Target& oTarget)
{
    oApp.add_option(
            "--wait", oTarget.mWait,
            "How long to wait for another process that changes the file. It is locked (flock) before it is read "
            "and until the new text is in its place, so that no change of several at once is lost")
        ->type_name("SECONDS")
        ->check(CLI::Range(0, gMost))
        ->capture_default_str();
    oApp.add_flag(
            "--backup{~}", oTarget.mBackup,
            "Keep the old file beside the new one, with SUFFIX behind its name, or ~. An older backup of that name "
            "is replaced")
        ->type_name("SUFFIX");
}

} // namespace TalBaseTool
