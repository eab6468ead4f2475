#include "Tests/Tools/SecretCommands.h"

#include "Text/Messages.h"

#include "QBase/Convert.h"
#include "QBase/Message.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

using namespace TalBaseTool;

namespace ToolTests
{

namespace
{

// Four characters of the secret in a row, where they stand in what is said.
bool IsIn(const std::wstring& iSecret, const std::string& iSaid)
{
    const std::string lSecret = Encode(iSecret);
    for (std::size_t lStart = 0; lStart + 4 <= lSecret.size(); ++lStart)
    {
        if (iSaid.find(lSecret.substr(lStart, 4)) != std::string::npos)
        {
            return true;
        }
    }
    return false;
}

// What was said without the names of temporary folders, whose last six letters are as random as the secret.
std::string WithoutRandomNames(std::string iSaid)
{
    const std::string lBeginning = "/talbase-";
    for (std::size_t lPlace = 0; (lPlace = iSaid.find(lBeginning, lPlace)) != std::string::npos;)
    {
        lPlace += lBeginning.size();
        if (lPlace + 6 < iSaid.size() && iSaid[lPlace + 6] == '/')
        {
            iSaid.erase(lPlace, 6);
        }
    }
    return iSaid;
}

// An editor of the shell's own words, which are quicker than programs: it keeps what it sees and adds a property.
std::string MakeEditor(const std::string& iSeen)
{
    return "edit() { while IFS= read -r Line; do printf '%s\\n' \"$Line\"; done <\"$1\" >'" + iSeen +
           "'; echo 'n/m = x<]>;' >>\"$1\"; }; edit";
}

} // namespace

std::string Encode(const std::wstring& iText)
{
    return QBase::WideCharToUTF8(iText.c_str(), false);
}

RawPair RawOf(const std::optional<DelimiterPair>& iPair)
{
    return iPair ? RawPair{Encode(iPair->mBegin), Encode(iPair->mEnd)} : RawPair{};
}

ToolRun Call(const std::function<int(const Streams&)>& iCommand)
{
    std::ostringstream lOut;
    std::ostringstream lErr;
    int lStatus = ExitTrouble;
    try
    {
        lStatus = iCommand({lOut, lErr});
    }
    catch (const QBase::Message& lMessage)
    {
        lErr << ShowMessage(lMessage.GetMessage());
    }
    catch (const std::exception& lError)
    {
        lErr << lError.what();
    }
    return {lStatus, lOut.str(), lErr.str()};
}

SecretCommands::SecretCommands()
{
    mOther = mWorkplace.Write("other.bag", "EndDelimiter>BeginDelimiter<>a<1>b<2>c<d<e>>");
    mFile = (mWorkplace.GetFolder() / "text.bag").string();
    mLines = (mWorkplace.GetFolder() / "text.jsonl").string();
    mSeen = (mWorkplace.GetFolder() / "seen").string();
    ::setenv("EDITOR", MakeEditor(mSeen).c_str(), 1);
    ::unsetenv("VISUAL");
    const int lNothing = ::open("/dev/null", O_RDONLY | O_CLOEXEC); // where nobody is asked whether to edit again
    ::dup2(lNothing, STDIN_FILENO);
    ::close(lNothing);
}

void SecretCommands::ExpectNoSecret(const PlantedText& iText, bool iWithEditor)
{
    mText = &iText;
    mPair = RawOf(iText.mPair);
    std::filesystem::remove(mFile); // what is cut off and written anew, some file systems bring to the disk at once
    std::filesystem::remove(mLines);
    mWorkplace.Write("text.bag", Encode(iText.mText));
    mWorkplace.Write("text.jsonl", nlohmann::json(Encode(iText.mText)).dump() + "\n");
    hExpectOfViews();
    hExpectOfFinds();
    hExpectOfLines();
    hExpectOfChanges();
    hExpectOfJoins();
    hExpectOfConversions();
    if (iWithEditor)
    {
        hExpectOfEdit();
    }
}

void SecretCommands::hExpectOfViews()
{
    hExpectShown("show", [this](const Streams& iStreams) { // and what it shows with escapes
        const int lStatus = Show(MakeOptions<ShowOptions>(mFile, mPair), iStreams);
        ShowOptions lRaw = MakeOptions<ShowOptions>(mFile, mPair);
        lRaw.mIsRaw = true;
        return lStatus + Show(lRaw, iStreams);
    });
    hExpectShown("check",
                 [this](const Streams& iStreams) { return Check(MakeOptions<CheckOptions>(mFile, mPair), iStreams); });
    for (const bool lIsFirst : {true, false})
    {
        hExpectShown("diff", [&](const Streams& iStreams) {
            DiffOptions lOptions = MakeOptions<DiffOptions>(lIsFirst ? mFile : mOther, mPair);
            lOptions.mOther = lIsFirst ? mOther : mFile;
            lOptions.mIsOrdered = true;
            return Diff(lOptions, iStreams);
        });
    }
    hExpectShown("window", [this](const Streams& iStreams) {
        WindowOptions lOptions = MakeOptions<WindowOptions>(mFile, mPair);
        lOptions.mHasFile = true;
        return Window(lOptions, iStreams);
    });
    hExpectShown("redact", [this](const Streams& iStreams) {
        return Redact(MakeOptions<RedactOptions>(mFile, mPair), iStreams);
    });
    hExpectShown("to-json --redact", [this](const Streams& iStreams) {
        ToJsonOptions lOptions = MakeOptions<ToJsonOptions>(mFile, mPair);
        lOptions.mIsRedacted = true;
        return ToJson(lOptions, iStreams);
    });
}

void SecretCommands::hExpectOfFinds()
{
    for (const std::optional<GetFormat> lFormat :
         {std::optional<GetFormat>(), std::optional(GetFormat::Table), std::optional(GetFormat::Json)})
    {
        hExpectShown("get **", [&](const Streams& iStreams) {
            GetOptions lOptions = MakeOptions<GetOptions>(mFile, mPair);
            lOptions.mPath = "**";
            lOptions.mFormat = lFormat;
            return Get(lOptions, iStreams);
        });
    }
    hExpectShown("has **", [this](const Streams& iStreams) {
        HasOptions lOptions = MakeOptions<HasOptions>(mFile, mPair);
        lOptions.mInputs.mFiles.push_back(mOther); // so that those that have it are named
        lOptions.mPath = "**";
        return Has(lOptions, iStreams);
    });
    for (const char* lPattern : {"", "[Q-Z]"}) // which everything has that is shown, and which most of it has not
    {
        hExpectShown("grep", [&](const Streams& iStreams) {
            GrepOptions lOptions = MakeOptions<GrepOptions>(mFile, mPair);
            lOptions.mPattern = lPattern;
            lOptions.mIsInverted = *lPattern != '\0';
            return Grep(lOptions, iStreams);
        });
    }
    for (const bool lIsSorted : {false, true})
    {
        hExpectShown("list", [&](const Streams& iStreams) {
            ListOptions lOptions = MakeOptions<ListOptions>(mFile, mPair);
            lOptions.mIsSorted = lIsSorted;
            return ListBags(lOptions, iStreams);
        });
    }
}

// The text in a line of JSON; a pair would make it a text of its own.
void SecretCommands::hExpectOfLines()
{
    if (mText->mPair)
    {
        return;
    }
    const auto lMake = [this](auto oOptions) {
        oOptions.mInputs.mFiles = {mLines};
        oOptions.mInputs.mHasLines = true;
        return oOptions;
    };
    hExpectShown("list --lines", [&](const Streams& iStreams) { return ListBags(lMake(ListOptions()), iStreams); });
    hExpectShown("check --lines", [&](const Streams& iStreams) { return Check(lMake(CheckOptions()), iStreams); });
    hExpectShown("grep --lines", [&](const Streams& iStreams) { return Grep(lMake(GrepOptions()), iStreams); });
    hExpectShown("to-json --lines --redact", [&](const Streams& iStreams) {
        ToJsonOptions lOptions = lMake(ToJsonOptions());
        lOptions.mHasLines = true;
        lOptions.mIsRedacted = true;
        return ToJson(lOptions, iStreams);
    });
}

void SecretCommands::hExpectOfChanges()
{
    hExpectSaid("set", [this](const Streams& iStreams) {
        SetOptions lOptions = MakeOptions<SetOptions>(mFile, mPair);
        lOptions.mArguments = {"n/m", "x<]>;=***y", mFile};
        return Set(lOptions, iStreams);
    });
    hExpectSaid("set --from-list", [this](const Streams& iStreams) { // the text in the place of a list
        SetOptions lOptions = MakeOptions<SetOptions>(mOther, mPair);
        lOptions.mListFile = mFile;
        lOptions.mArguments = {mOther};
        return Set(lOptions, iStreams);
    });
    hExpectSaid("set --value-from", [this](const Streams& iStreams) {
        SetOptions lOptions = MakeOptions<SetOptions>(mFile, mPair);
        lOptions.mValueFile = mFile;
        lOptions.mArguments = {"n/m", mFile};
        return Set(lOptions, iStreams);
    });
    hExpectSaid("remove", [this](const Streams& iStreams) {
        RemoveOptions lOptions = MakeOptions<RemoveOptions>(mFile, mPair);
        lOptions.mPath = "a";
        return Remove(lOptions, iStreams);
    });
    hExpectSaid("move", [this](const Streams& iStreams) {
        MoveOptions lOptions = MakeOptions<MoveOptions>(mFile, mPair);
        lOptions.mFrom = "FTPServerPassword";
        lOptions.mTo = "n/m";
        return Move(lOptions, iStreams);
    });
    hExpectSaid("delimiters", [this](const Streams& iStreams) {
        DelimitersOptions lOptions = MakeOptions<DelimitersOptions>(mFile, mPair);
        lOptions.mBegin = "(";
        lOptions.mEnd = "a";
        return Delimiters(lOptions, iStreams);
    });
    hExpectSaid("window --set", [this](const Streams& iStreams) {
        WindowOptions lOptions = MakeOptions<WindowOptions>(mFile, mPair);
        lOptions.mHasFile = true;
        lOptions.mIsSet = true;
        lOptions.mRanges = {{true, "9-17"}};
        return Window(lOptions, iStreams);
    });
}

void SecretCommands::hExpectOfJoins()
{
    for (const bool lIsInner : {true, false})
    {
        hExpectSaid("embed", [&](const Streams& iStreams) {
            EmbedOptions lOptions = MakeOptions<EmbedOptions>(lIsInner ? mOther : mFile, mPair);
            lOptions.mPath = "q";
            lOptions.mBagFile = lIsInner ? mFile : mOther;
            return Embed(lOptions, iStreams);
        });
        hExpectSaid("merge", [&](const Streams& iStreams) {
            MergeOptions lOptions;
            lOptions.mFiles = {mOther, mFile};
            lOptions.mPair = mPair;
            lOptions.mIsDeep = lIsInner;
            return Merge(lOptions, iStreams);
        });
    }
}

void SecretCommands::hExpectOfConversions()
{
    hExpectSaid("to-json",
                [this](const Streams& iStreams) { return ToJson(MakeOptions<ToJsonOptions>(mFile, mPair), iStreams); });
    hExpectSaid("get", [this](const Streams& iStreams) {
        GetOptions lOptions = MakeOptions<GetOptions>(mFile, mPair);
        lOptions.mPath = "FTPServerPassword/x";
        return Get(lOptions, iStreams);
    });
    hExpectSaid("from-list", [this](const Streams& iStreams) {
        FromListOptions lOptions;
        lOptions.mFile = mFile;
        return FromList(lOptions, iStreams);
    });
    for (const bool lHasLines : {false, true}) // the text is no JSON, and then a value in it
    {
        hExpectSaid("from-json", [&](const Streams& iStreams) {
            FromJsonOptions lOptions;
            lOptions.mFile = lHasLines ? mLines : mFile;
            lOptions.mHasLines = lHasLines;
            lOptions.mIsVerbose = true;
            return FromJson(lOptions, iStreams);
        });
    }
}

// It changes the text's file, so nothing may come after it.
void SecretCommands::hExpectOfEdit()
{
    std::filesystem::remove(mSeen);
    hExpectShown("edit", [this](const Streams& iStreams) {
        EditOptions lOptions = MakeOptions<EditOptions>(mFile, mPair);
        lOptions.mTarget.mIsInPlace = true;
        return Edit(lOptions, iStreams);
    });
    hExpectShown("edit's list", [this](const Streams& iStreams) {
        iStreams.mOut << (std::filesystem::exists(mSeen) ? ReadFile(mSeen) : "");
        return ExitGood;
    });
}

void SecretCommands::hExpectShown(const char* ipCommand, const Command& iCommand)
{
    hExpect(ipCommand, true, iCommand);
}

void SecretCommands::hExpectSaid(const char* ipCommand, const Command& iCommand)
{
    hExpect(ipCommand, false, iCommand);
}

void SecretCommands::hExpect(const char* ipCommand, bool iIsShown, const Command& iCommand)
{
    ToolRun lRun = Call(iCommand);
    lRun.mErr = WithoutRandomNames(lRun.mErr);
    EXPECT_FALSE(IsIn(mText->mSecret, lRun.mErr) || (iIsShown && IsIn(mText->mSecret, lRun.mOut)))
        << ipCommand << ", secret " << Encode(mText->mSecret) << ", of " << testing::PrintToString(Encode(mText->mText))
        << '\n'
        << lRun.mOut << lRun.mErr;
}

} // namespace ToolTests
