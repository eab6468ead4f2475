// Secrets in texts at random: damaged ones, of which no command shows four characters of the secret, and good ones, of
// which every command shows and takes out exactly what it should. TALBASE_SECRETS_TEXTS in the environment says how
// many of the first kind, TALBASE_SECRETS_SEED which; of good ones there are a tenth.

#include "Tests/Tools/SecretCommands.h"
#include "Text/Gate.h"

#include "TalBase/Initializer.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
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

// The place of the first character of an owner, or the place behind the last one.
std::size_t FindOwner(const PlantedText& iText, char iOwner, bool iIsFirst)
{
    const std::string lOwners(iText.mOwners.begin(), iText.mOwners.end());
    return iIsFirst ? lOwners.find(iOwner) : lOwners.rfind(iOwner) + 1;
}

bool HasWord(const std::wstring& iText, std::size_t iStart, std::size_t iStop)
{
    return std::any_of(iText.begin() + static_cast<std::ptrdiff_t>(iStart),
                       iText.begin() + static_cast<std::ptrdiff_t>(iStop), IsWordCharacter);
}

// Whether a letter, a digit or an underscore stands right before a place. The letter of an escape, such as that of
// "\n", is none.
bool IsTouchedBefore(const std::wstring& iText, std::size_t iPlace)
{
    const bool lIsEscape = iPlace > 1 && iText[iPlace - 2] == L'\\' &&
                           std::wstring(L"nrtbf").find(iText[iPlace - 1]) != std::wstring::npos;
    return iPlace > 0 && IsWordCharacter(iText[iPlace - 1]) && !lIsEscape;
}

// Why the bytes of a damaged text in good order are those of a text that nobody damaged, whose secret belongs to no
// sensitive name. Of such a text that secret is shown, because nothing else is hidden there, so it cannot be hidden
// here, either: a good text of the very same bytes would have it hidden, too.
enum class OtherText
{
    None,
    AnotherName,  // "1FTPServerPassword": a letter, a digit or an underscore touches the name
    EarlierValue, // "FTPServerPassword[av]x[secret]" of "FTPServerPassword[avx[secret]]": a password "av", and an "x"
    EarlierMail   // "a[the FTPServerPassword]x[secret]": other words beside the name in a value, as in a mail
};

OtherText FindOtherText(const PlantedText& iText)
{
    const Reading lReading = ReadAgain(iText);
    if (!lReading.mIsGood)
    {
        return OtherText::None;
    }
    const std::wstring& lText = iText.mText;
    const std::size_t lFirst = FindOwner(iText, gOfName, true);
    const std::size_t lLast = FindOwner(iText, gOfName, false);
    const std::size_t lSecret = lText.find(iText.mSecret);
    if (IsTouchedBefore(lText, lFirst) || (lLast < lText.size() && IsWordCharacter(lText[lLast])))
    {
        return OtherText::AnotherName;
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
        const bool lHasWords = HasWord(lText, lBefore, lFirst) || HasWord(lText, lLast, std::min(lPlace, lText.size()));
        return lPlace < lSecret && lHasWords ? OtherText::EarlierMail : OtherText::None;
    }
    const std::size_t lContent = lPlace + lReading.mPair.mBegin.size();
    for (std::size_t lDepth = 1, lFrom = lContent; lDepth > 0;)
    {
        std::tie(lPlace, lIsBegin) = lFind(lFrom);
        lDepth = lIsBegin ? lDepth + 1 : lDepth - 1;
        lFrom = lPlace + (lIsBegin ? lReading.mPair.mBegin : lReading.mPair.mEnd).size();
    }
    return lContent < lPlace && lPlace < lSecret ? OtherText::EarlierValue : OtherText::None;
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
    SecretCommands lCommands;
    const std::uint64_t lCount = FromEnvironment("TALBASE_SECRETS_TEXTS", 20000);
    std::map<OtherText, std::uint64_t> lOthers;
    for (std::uint64_t lLeft = lCount; lLeft > 0 && !HasFailure(); --lLeft)
    {
        PlantedText lText = lTexts.MakePlanted();
        lLeft % 10 == 0 ? lTexts.InsertDelimiter(lText) : lTexts.Damage(lText);
        const OtherText lOther = FindOtherText(lText);
        ++lOthers[lOther];
        if (lOther == OtherText::None)
        {
            lCommands.ExpectNoSecret(lText, lLeft % 20 == 0);
        }
    }
    EXPECT_LE(lOthers[OtherText::AnotherName], lCount / 20);
    EXPECT_LE(lOthers[OtherText::EarlierValue] + lOthers[OtherText::EarlierMail], lCount / 1000 + 1);
    RecordProperty("another_name", std::to_string(lOthers[OtherText::AnotherName]));
    RecordProperty("earlier_value", std::to_string(lOthers[OtherText::EarlierValue]));
    RecordProperty("earlier_mail", std::to_string(lOthers[OtherText::EarlierMail]));
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
