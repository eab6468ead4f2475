// Secrets in texts at random: damaged ones, of which no command shows four characters of the secret, and good ones, of
// which every command shows and takes out exactly what it should. TALBASE_SECRETS_TEXTS in the environment says how
// many of the first kind, TALBASE_SECRETS_SEED which; of good ones there are a tenth.

#include "Commands/Commands.h"
#include "Tests/Tools/RunTool.h"
#include "Tests/Tools/Screens.h"
#include "Tests/Tools/SecretTexts.h"
#include "Text/Gate.h"
#include "Text/Messages.h"

#include "QBase/Convert.h"
#include "QBase/Message.h"
#include "TalBase/Initializer.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <regex>
#include <tuple>

using namespace ToolTests;
using namespace TalBaseTool;

namespace
{

const QTalBase::Initializer gInitializer;

std::uint64_t FromEnvironment(const char* ipName, std::uint64_t iDefault)
{
    const char* const lText = std::getenv(ipName);
    return lText != nullptr ? std::strtoull(lText, nullptr, 10) : iDefault;
}

std::string Encode(const std::wstring& iText)
{
    return QBase::WideCharToUTF8(iText.c_str(), false);
}

RawPair RawOf(const std::optional<DelimiterPair>& iPair)
{
    return iPair ? RawPair{Encode(iPair->mBegin), Encode(iPair->mEnd)} : RawPair{};
}

// A command, and what it says of an error, as the command line does without the time that reading one takes.
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

template <class Options>
Options MakeOptions(const std::string& iFile, const RawPair& iPair)
{
    Options lOptions;
    if constexpr (requires { lOptions.mInputs; })
    {
        lOptions.mInputs.mFiles = {iFile};
        lOptions.mInputs.mPair = iPair;
    }
    else
    {
        lOptions.mFile = iFile;
        lOptions.mPair = iPair;
    }
    return lOptions;
}

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

// Calls every command with a text. mShows: those whose output goes through the gate.
class Commands
{
public:
    Commands()
    {
        mOther = mWorkplace.Write("other.bag", "EndDelimiter>BeginDelimiter<>a<1>b<2>c<d<e>>");
        mFile = (mWorkplace.GetFolder() / "text.bag").string();
    }

    void ExpectNoSecret(const PlantedText& iText)
    {
        mWorkplace.Write("text.bag", Encode(iText.mText));
        const RawPair lPair = RawOf(iText.mPair);
        hExpect(iText, "show", true, [&](const Streams& iStreams) { // and what it shows with escapes
            const int lStatus = Show(MakeOptions<ShowOptions>(mFile, lPair), iStreams);
            ShowOptions lRaw = MakeOptions<ShowOptions>(mFile, lPair);
            lRaw.mIsRaw = true;
            return lStatus + Show(lRaw, iStreams);
        });
        hExpect(iText, "check", true,
                [&](const Streams& iStreams) { return Check(MakeOptions<CheckOptions>(mFile, lPair), iStreams); });
        hExpect(iText, "list", true,
                [&](const Streams& iStreams) { return ListBags(MakeOptions<ListOptions>(mFile, lPair), iStreams); });
        hExpect(iText, "grep", true, [&](const Streams& iStreams) {
            return Grep(MakeOptions<GrepOptions>(mFile, lPair), iStreams); // the empty pattern is in everything shown
        });
        hExpect(iText, "get **", true, [&](const Streams& iStreams) {
            GetOptions lOptions = MakeOptions<GetOptions>(mFile, lPair);
            lOptions.mPath = "**";
            return Get(lOptions, iStreams);
        });
        for (const bool lIsFirst : {true, false})
        {
            hExpect(iText, "diff", true, [&](const Streams& iStreams) {
                DiffOptions lOptions = MakeOptions<DiffOptions>(lIsFirst ? mFile : mOther, lPair);
                lOptions.mOther = lIsFirst ? mOther : mFile;
                lOptions.mIsOrdered = true;
                return Diff(lOptions, iStreams);
            });
        }
        hExpect(iText, "redact", true,
                [&](const Streams& iStreams) { return Redact(MakeOptions<RedactOptions>(mFile, lPair), iStreams); });
        hExpect(iText, "to-json --redact", true, [&](const Streams& iStreams) {
            ToJsonOptions lOptions = MakeOptions<ToJsonOptions>(mFile, lPair);
            lOptions.mIsRedacted = true;
            return ToJson(lOptions, iStreams);
        });
        hExpect(iText, "window", true, [&](const Streams& iStreams) {
            WindowOptions lOptions = MakeOptions<WindowOptions>(mFile, lPair);
            lOptions.mHasFile = true;
            return Window(lOptions, iStreams);
        });
        hExpectOfChanges(iText, lPair);
    }

private:
    // Of what is written, only what is said beside it.
    void hExpectOfChanges(const PlantedText& iText, const RawPair& iPair)
    {
        hExpect(iText, "set", false, [&](const Streams& iStreams) {
            SetOptions lOptions = MakeOptions<SetOptions>(mFile, iPair);
            lOptions.mArguments = {"n/m", "x<]>;=***y", mFile};
            return Set(lOptions, iStreams);
        });
        hExpect(iText, "remove", false, [&](const Streams& iStreams) {
            RemoveOptions lOptions = MakeOptions<RemoveOptions>(mFile, iPair);
            lOptions.mPath = "a";
            return Remove(lOptions, iStreams);
        });
        hExpect(iText, "embed", false, [&](const Streams& iStreams) {
            EmbedOptions lOptions = MakeOptions<EmbedOptions>(mOther, iPair);
            lOptions.mPath = "q";
            lOptions.mBagFile = mFile;
            return Embed(lOptions, iStreams);
        });
        hExpect(iText, "merge", false, [&](const Streams& iStreams) {
            MergeOptions lOptions;
            lOptions.mFiles = {mOther, mFile};
            lOptions.mPair = iPair;
            return Merge(lOptions, iStreams);
        });
        hExpect(iText, "delimiters", false, [&](const Streams& iStreams) {
            DelimitersOptions lOptions = MakeOptions<DelimitersOptions>(mFile, iPair);
            lOptions.mBegin = "(";
            lOptions.mEnd = "a";
            return Delimiters(lOptions, iStreams);
        });
        hExpect(iText, "from-json", false, [&](const Streams& iStreams) {
            FromJsonOptions lOptions;
            lOptions.mFile = mFile;
            return FromJson(lOptions, iStreams);
        });
    }

    void hExpect(const PlantedText& iText, const char* ipCommand, bool iShows,
                 const std::function<int(const Streams&)>& iCommand)
    {
        const ToolRun lRun = Call(iCommand);
        EXPECT_FALSE(IsIn(iText.mSecret, lRun.mErr) || (iShows && IsIn(iText.mSecret, lRun.mOut)))
            << ipCommand << ", secret " << Encode(iText.mSecret) << ", of "
            << testing::PrintToString(Encode(iText.mText)) << '\n'
            << lRun.mOut << lRun.mErr;
    }

    Workplace mWorkplace;
    std::string mOther;
    std::string mFile;
};

// How a damaged text is read.
struct Reading
{
    DelimiterTexts mPair;
    bool mIsGood;
};

Reading ReadAgain(const PlantedText& iText)
{
    const std::optional<DelimiterTexts> lPair =
        iText.mPair && !HasHeader(iText.mText)
            ? std::make_optional(DelimiterTexts{iText.mPair->mBegin, iText.mPair->mEnd})
            : std::nullopt;
    const bool lIsGood =
        Gate({}, iText.mText, lPair, CheckText(iText.mText, lPair).mIsValid).GetOpening() == Gate::Opening::Masked;
    if (!lIsGood)
    {
        return {{}, false};
    }
    const BagPtr lBag = ReadBag(iText.mText.c_str(), lPair);
    return {{lBag->GetBeginDelimiter(), lBag->GetEndDelimiter()}, true};
}

// Whether an edit has made a good text of it in which the secret is no secret's any more:
//   - a letter, a digit or an underscore touches the name, which makes it another name;
//   - the name's property has a value, or a bag, that ends before the secret: "FTPServerPassword[av]x[secret]" of
//     "FTPServerPassword[avx[secret]]" is the text of a password "av" and of an "x";
//   - the name stands with other words in a value before the secret, as it does in a mail that speaks of it.
// Who hid the secret there would hide what follows any password or any such mail.
bool IsAnotherText(const PlantedText& iText)
{
    const Reading lReading = ReadAgain(iText);
    if (!lReading.mIsGood)
    {
        return false;
    }
    const std::wstring& lText = iText.mText;
    const std::size_t lFirst = static_cast<std::size_t>(std::find(iText.mOwners.begin(), iText.mOwners.end(), gOfName) -
                                                        iText.mOwners.begin());
    const std::size_t lSecret = lText.find(iText.mSecret);
    std::size_t lLast = lFirst;
    while (lLast < iText.mOwners.size() && iText.mOwners[lLast] == gOfName)
    {
        ++lLast;
    }
    if ((lFirst > 0 && IsWordCharacter(lText[lFirst - 1])) || (lLast < lText.size() && IsWordCharacter(lText[lLast])))
    {
        return true;
    }
    const auto lFind = [&](std::size_t iPlace) { // the next delimiter, and whether it is a begin delimiter
        const std::size_t lBegin = lText.find(lReading.mPair.mBegin, iPlace);
        const std::size_t lEnd = lText.find(lReading.mPair.mEnd, iPlace);
        return std::make_pair(std::min(lBegin, lEnd), lBegin < lEnd);
    };
    auto [lPlace, lIsBegin] = lFind(lLast);
    if (!lIsBegin)
    {
        const std::size_t lBefore = lText.rfind(lReading.mPair.mBegin, lFirst) + lReading.mPair.mBegin.size();
        const auto lHasWord = [&](std::size_t iStart, std::size_t iStop) {
            return std::any_of(lText.begin() + static_cast<std::ptrdiff_t>(iStart),
                               lText.begin() + static_cast<std::ptrdiff_t>(iStop), IsWordCharacter);
        };
        return lHasWord(lBefore, lFirst) || lHasWord(lLast, std::min(lPlace, lText.size()));
    }
    const std::size_t lContent = lPlace + lReading.mPair.mBegin.size();
    for (std::size_t lDepth = 1, lFrom = lContent; lDepth > 0;)
    {
        std::tie(lPlace, lIsBegin) = lFind(lFrom);
        lDepth = lIsBegin ? lDepth + 1 : lDepth - 1;
        lFrom = lPlace + (lIsBegin ? lReading.mPair.mBegin : lReading.mPair.mEnd).size();
    }
    return lContent < lPlace && lPlace < lSecret;
}

std::string Shown(const std::string& iFile, const RawPair& iPair, bool iWithSecrets)
{
    ShowOptions lOptions = MakeOptions<ShowOptions>(iFile, iPair);
    lOptions.mInputs.mSecrets.mShowSecrets = iWithSecrets;
    lOptions.mLongest = 0;
    const ToolRun lRun = Call([&](const Streams& iStreams) { return Show(lOptions, iStreams); });
    return lRun.mOut + lRun.mErr;
}

} // namespace

TEST(Secrets, OfDamagedTextsAreNotShown)
{
    SecretTexts lTexts(FromEnvironment("TALBASE_SECRETS_SEED", 1));
    Commands lCommands;
    std::size_t lOthers = 0;
    for (std::uint64_t lLeft = FromEnvironment("TALBASE_SECRETS_TEXTS", 20000); lLeft > 0 && !HasFailure(); --lLeft)
    {
        PlantedText lText = lTexts.MakePlanted();
        lLeft % 10 == 0 ? lTexts.InsertDelimiter(lText) : lTexts.Damage(lText);
        if (IsAnotherText(lText))
        {
            ++lOthers;
            continue;
        }
        lCommands.ExpectNoSecret(lText);
    }
    RecordProperty("other_texts", static_cast<int>(lOthers));
}

TEST(Secrets, OfGoodTextsAreHiddenAndTakenOutAndNothingElse)
{
    SecretTexts lTexts(FromEnvironment("TALBASE_SECRETS_SEED", 1));
    const Workplace lWorkplace;
    for (std::uint64_t lLeft = FromEnvironment("TALBASE_SECRETS_TEXTS", 20000) / 10; lLeft > 0 && !HasFailure();
         --lLeft)
    {
        const GoodText lText = lTexts.MakeGood();
        const RawPair lPair = RawOf(lText.mPair);
        const std::string lFile = lWorkplace.Write("text.bag", Encode(lText.mShown));
        const std::string lTwin = std::regex_replace(Shown(lFile, lPair, true), std::regex("#[0-9]+#"), "");
        const std::string lExpected =
            std::regex_replace(lTwin, std::regex("\\(1 property\\)\n[^\n]*GONE = 1\n"), "(hidden)\n");
        lWorkplace.Write("text.bag", Encode(lText.mText));
        EXPECT_EQ(Shown(lFile, lPair, false), lExpected) << Encode(lText.mText);
        const ToolRun lRedact =
            Call([&](const Streams& iStreams) { return Redact(MakeOptions<RedactOptions>(lFile, lPair), iStreams); });
        EXPECT_EQ(lRedact.mStatus, 0) << lRedact.mErr;
        EXPECT_EQ(lRedact.mOut, Encode(lText.mRedacted)) << Encode(lText.mText);
    }
}
