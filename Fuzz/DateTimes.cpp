// Dates and times: texts are read as the C library's calendar reads them by their parts, every instant comes back from
// its text, and instants outside the years that there are become the nearest one.

#include "Fuzz/Support/Check.h"
#include "Fuzz/Support/Input.h"
#include "Fuzz/Support/Target.h"
#include "QBase/Convert.h"
#include "QDataType/DateTime.h"
#include "TalBase/PropertyBagHelpers.h"
#include "Tests/Support/BrokenRule.h"

#include <cstdio>
#include <ctime>
#include <optional>

namespace
{

using QDataType::DateTime;

const std::int64_t gFirstSecond = -62135596800; // 0001-01-01T00:00:00Z
const std::int64_t gLastSecond = 253402300799;  // 9999-12-31T23:59:59Z
const std::int64_t gMicroseconds = 1000000;

std::int64_t CountOf(const DateTime& iDateTime)
{
    return iDateTime.ToTimePoint().time_since_epoch().count();
}

DateTime FromCount(std::int64_t iMicroseconds)
{
    return DateTime(DateTime::TimePoint(std::chrono::microseconds(iMicroseconds)));
}

// Whether the text has a digit for each 'd' of the form, its other characters where the form has them, and either case
// of the letters.
bool HasForm(const std::string& iText, const std::string& iForm)
{
    bool lHas = iText.size() == iForm.size();
    for (std::size_t lIndex = 0; lHas && lIndex < iForm.size(); ++lIndex)
    {
        const char lCharacter = iText[lIndex];
        const char lForm = iForm[lIndex];
        const bool lIsDigit = lCharacter >= '0' && lCharacter <= '9';
        lHas = lForm == 'd' ? lIsDigit : lCharacter == lForm || (lForm == 'T' && lCharacter == 't');
    }
    return lHas;
}

int Number(const std::string& iText, std::size_t iFrom, std::size_t iLength)
{
    return std::stoi(iText.substr(iFrom, iLength));
}

// Whether the C library agrees that there is such a day.
bool IsDay(const std::tm& iTime)
{
    std::tm lDay = iTime;
    lDay.tm_hour = lDay.tm_min = lDay.tm_sec = 0;
    const std::tm lBefore = lDay;
    timegm(&lDay);
    return lBefore.tm_mday > 0 && lDay.tm_mday == lBefore.tm_mday && lDay.tm_mon == lBefore.tm_mon;
}

// Cuts "Z" or "+hh:mm" from the end and returns its seconds.
std::optional<std::int64_t> TakeOffset(std::string& oText)
{
    if (!oText.empty() && (oText.back() == 'Z' || oText.back() == 'z'))
    {
        oText.pop_back();
        return 0;
    }
    const std::size_t lStart = oText.size() < 6 ? 0 : oText.size() - 6;
    const std::string lOffset = oText.substr(lStart);
    if (!HasForm(lOffset, "+dd:dd") && !HasForm(lOffset, "-dd:dd"))
    {
        return std::nullopt;
    }
    const int lHours = Number(lOffset, 1, 2);
    const int lMinutes = Number(lOffset, 4, 2);
    oText.resize(lStart);
    const std::int64_t lSeconds = lHours * 3600 + lMinutes * 60;
    return lHours > 23 || lMinutes > 59 ? std::nullopt : std::optional(lOffset[0] == '-' ? -lSeconds : lSeconds);
}

// Cuts the fraction from the end and returns its microseconds.
std::optional<std::int64_t> TakeFraction(std::string& oText)
{
    const std::size_t lPoint = oText.find('.');
    if (lPoint == std::string::npos)
    {
        return 0;
    }
    std::string lDigits = oText.substr(lPoint + 1);
    oText.resize(lPoint);
    if (lDigits.empty() || !HasForm(lDigits, std::string(lDigits.size(), 'd')))
    {
        return std::nullopt;
    }
    lDigits.resize(6, '0');
    return Number(lDigits, 0, 6);
}

std::optional<std::int64_t> ReadPlain(std::string iText)
{
    const std::optional<std::int64_t> lOffset = TakeOffset(iText);
    const std::optional<std::int64_t> lFraction = TakeFraction(iText);
    if (!lOffset || !lFraction || !HasForm(iText, "dddd-dd-ddTdd:dd:dd"))
    {
        return std::nullopt;
    }
    std::tm lTime = {};
    lTime.tm_year = Number(iText, 0, 4) - 1900;
    lTime.tm_mon = Number(iText, 5, 2) - 1;
    lTime.tm_mday = Number(iText, 8, 2);
    lTime.tm_hour = Number(iText, 11, 2);
    lTime.tm_min = Number(iText, 14, 2);
    lTime.tm_sec = Number(iText, 17, 2);
    if (!IsDay(lTime) || lTime.tm_hour > 23 || lTime.tm_min > 59 || lTime.tm_sec > 60)
    {
        return std::nullopt;
    }
    const bool lIsLeapSecond = lTime.tm_sec == 60;
    const std::int64_t lSecond = timegm(&lTime) - *lOffset;
    const std::time_t lSecondOfUtc = lSecond;
    std::tm lUtc = {};
    gmtime_r(&lSecondOfUtc, &lUtc);
    const bool lIsFirstOfMonth = lUtc.tm_mday == 1 && lUtc.tm_hour == 0 && lUtc.tm_min == 0 && lUtc.tm_sec == 0;
    const bool lMayBeLeapSecond = lIsFirstOfMonth || Plain::IsBroken("LeapSecond");
    if (lSecond < gFirstSecond || lSecond > gLastSecond || (lIsLeapSecond && !lMayBeLeapSecond))
    {
        return std::nullopt;
    }
    return lSecond * gMicroseconds + *lFraction;
}

std::string WritePlain(std::int64_t iMicroseconds)
{
    const std::int64_t lFraction = (iMicroseconds % gMicroseconds + gMicroseconds) % gMicroseconds;
    const std::time_t lSecond = (iMicroseconds - lFraction) / gMicroseconds;
    std::tm lTime = {};
    gmtime_r(&lSecond, &lTime);
    char lText[100];
    std::snprintf(lText, sizeof(lText), "%04d-%02d-%02dT%02d:%02d:%02d.%06d", lTime.tm_year + 1900, lTime.tm_mon + 1,
                  lTime.tm_mday, lTime.tm_hour, lTime.tm_min, lTime.tm_sec, static_cast<int>(lFraction));
    std::string lResult = lText;
    while (lResult.back() == '0' && lFraction != 0)
    {
        lResult.pop_back();
    }
    lResult.resize(lFraction == 0 ? 19 : lResult.size());
    lResult += 'Z';
    return lResult;
}

std::string TextOf(const DateTime& iDateTime)
{
    return QBase::WideCharToUTF8(iDateTime.ToWString().c_str(), true);
}

void CheckInstant(std::int64_t iMicroseconds)
{
    const DateTime lDateTime = FromCount(iMicroseconds);
    const std::int64_t lExpected = std::min(std::max(iMicroseconds, gFirstSecond * gMicroseconds),
                                            gLastSecond * gMicroseconds + gMicroseconds - 1);
    Fuzz::Require(CountOf(lDateTime) == lExpected, "an instant is not the nearest one that there is");
    Fuzz::RequireEqual(TextOf(lDateTime), WritePlain(lExpected), "an instant has another text");
    DateTime lRead;
    Fuzz::Require(lRead.FromString(TextOf(lDateTime)) && lRead == lDateTime,
                  "an instant does not come back from its text");
    DateTime lValue;
    QTalBase::UnStringize(QTalBase::Stringize(lDateTime).c_str(), lValue);
    Fuzz::Require(lValue == lDateTime, "an instant does not come back as a property's value");
}

void CheckText(const std::string& iText)
{
    const std::int64_t lOld = 1234567;
    DateTime lDateTime = FromCount(lOld);
    const std::optional<std::int64_t> lExpected = ReadPlain(iText);
    Fuzz::Require(lDateTime.FromString(iText) == lExpected.has_value(), "a text is refused or accepted wrongly");
    Fuzz::Require(CountOf(lDateTime) == lExpected.value_or(lOld), "a text is read as another instant");
    CheckInstant(CountOf(lDateTime));
}

void CheckOrder(std::int64_t iLeft, std::int64_t iRight)
{
    const DateTime lLeft = FromCount(iLeft);
    const DateTime lRight = FromCount(iRight);
    const std::int64_t lDifference = CountOf(lLeft) - CountOf(lRight);
    Fuzz::Require((lLeft < lRight) == (lDifference < 0) && (lLeft > lRight) == (lDifference > 0) &&
                      (lLeft <= lRight) == (lDifference <= 0) && (lLeft >= lRight) == (lDifference >= 0) &&
                      (lLeft == lRight) == (lDifference == 0) && (lLeft != lRight) == (lDifference != 0),
                  "instants are ordered wrongly");
}

// A text from numbers that are mostly good, so that the borders of days, months and years come up.
std::string MadeText(Fuzz::Input& iInput)
{
    const unsigned int lFlags = iInput.Byte();
    const unsigned int lYear =
        (lFlags & 1) != 0 ? (iInput.Below(3) * 9999 + 1) / 2 : iInput.Byte() * 256U + iInput.Byte();
    const unsigned int lMonth = iInput.Below(14);
    const unsigned int lDay = 27 * iInput.Below(2) + iInput.Below(6);
    const unsigned int lHour = (lFlags & 2) != 0 ? 23 : iInput.Below(26);
    const unsigned int lMinute = (lFlags & 4) != 0 ? 59 : iInput.Below(62);
    const unsigned int lSecond = (lFlags & 8) != 0 ? 60 : iInput.Below(62);
    char lText[100];
    std::snprintf(lText, sizeof(lText), "%04u-%02u-%02u%c%02u:%02u:%02u", lYear % 10001, lMonth, lDay,
                  (lFlags & 16) != 0 ? 't' : 'T', lHour, lMinute, lSecond);
    std::string lResult = lText;
    if ((lFlags & 32) != 0)
    {
        lResult += '.';
        lResult += iInput.Bytes(iInput.Below(9));
    }
    if ((lFlags & 64) != 0)
    {
        return lResult + "Z";
    }
    const unsigned int lOffsetHour = iInput.Below(26);
    std::snprintf(lText, sizeof(lText), "%c%02u:%02u", (lFlags & 128) != 0 ? '+' : '-', lOffsetHour, iInput.Below(62));
    return lResult + lText;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* ipBytes, std::size_t iSize)
{
    Fuzz::Input lInput(ipBytes, iSize);
    switch (lInput.Below(4))
    {
    case 0:
        CheckInstant(static_cast<std::int64_t>(lInput.UInt64()));
        break;
    case 1: {
        const std::int64_t lLeft = static_cast<std::int64_t>(lInput.UInt64());
        CheckOrder(lLeft, static_cast<std::int64_t>(lInput.UInt64()));
        break;
    }
    case 2:
        CheckText(MadeText(lInput));
        break;
    default:
        CheckText(lInput.Rest());
        break;
    }
    return 0;
}
