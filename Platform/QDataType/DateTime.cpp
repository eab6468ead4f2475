// date-time = YYYY-MM-DD ("T" | "t") hh:mm:ss ["." 1*DIGIT] ("Z" | "z" | ("+" | "-") hh:mm)

#include "QDataType/DateTime.h"

#include <algorithm>
#include <cstdint>
#include <cwchar>
#include <string_view>

namespace QDataType
{

namespace
{

using std::chrono::microseconds;

const std::int64_t gMicrosecondsPerSecond = 1'000'000;
const std::int64_t gSecondsPerDay = 86'400;

std::int64_t FloorDivide(std::int64_t iValue, std::int64_t iDivisor)
{
    return iValue / iDivisor - (iValue % iDivisor < 0 ? 1 : 0);
}

std::int64_t DaysFromCivil(int iYear, unsigned int iMonth, unsigned int iDay)
{
    const std::chrono::year_month_day lDate{std::chrono::year{iYear}, std::chrono::month{iMonth},
                                            std::chrono::day{iDay}};
    return std::chrono::sys_days(lDate).time_since_epoch().count();
}

std::chrono::year_month_day CivilFromDays(std::int64_t iDays)
{
    return std::chrono::sys_days(std::chrono::days(iDays));
}

microseconds Earliest()
{
    return microseconds(DaysFromCivil(1, 1, 1) * gSecondsPerDay * gMicrosecondsPerSecond);
}

microseconds Latest()
{
    return microseconds(DaysFromCivil(10000, 1, 1) * gSecondsPerDay * gMicrosecondsPerSecond - 1);
}

// Takes its parts from the front of a text; once something did not fit, everything fails.
class Reader
{
public:
    explicit Reader(std::string_view iText) : mText(iText) {}

    int Digits(std::size_t iCount, int iLow, int iHigh)
    {
        int lValue = 0;
        for (std::size_t lIndex = 0; lIndex < iCount; ++lIndex)
        {
            lValue = lValue * 10 + hDigit();
        }
        mIsGood = mIsGood && lValue >= iLow && lValue <= iHigh;
        return lValue;
    }

    // Any of the characters.
    char Mark(std::string_view iCharacters)
    {
        const char lMark = hPeek();
        mIsGood = mIsGood && !mText.empty() && iCharacters.find(lMark) != std::string_view::npos;
        hSkip();
        return lMark;
    }

    // An optional '.' and at least one digit; returns microseconds, the rest cut.
    std::int64_t Fraction()
    {
        if (hPeek() != '.')
        {
            return 0;
        }
        hSkip();
        std::int64_t lUnit = gMicrosecondsPerSecond / 10;
        std::int64_t lValue = hDigit() * lUnit;
        while (hPeek() >= '0' && hPeek() <= '9')
        {
            lUnit /= 10;
            lValue += hDigit() * lUnit;
        }
        return lValue;
    }

    bool IsGoodAndAtEnd() const
    {
        return mIsGood && mText.empty();
    }

private:
    char hPeek() const
    {
        return mText.empty() ? '\0' : mText.front();
    }

    void hSkip()
    {
        mText.remove_prefix(mText.empty() ? 0 : 1);
    }

    int hDigit()
    {
        const char lDigit = hPeek();
        mIsGood = mIsGood && lDigit >= '0' && lDigit <= '9';
        hSkip();
        return mIsGood ? lDigit - '0' : 0;
    }

    std::string_view mText;
    bool mIsGood = true;
};

std::chrono::year_month_day ReadDate(Reader& oReader)
{
    const int lYear = oReader.Digits(4, 0, 9999);
    oReader.Mark("-");
    const int lMonth = oReader.Digits(2, 1, 12);
    oReader.Mark("-");
    const int lDay = oReader.Digits(2, 1, 31);
    return {std::chrono::year(lYear), std::chrono::month(static_cast<unsigned int>(lMonth)),
            std::chrono::day(static_cast<unsigned int>(lDay))};
}

struct TimeOfDay
{
    std::int64_t mSeconds; // since midnight; the second 60 counts as the first of the next minute
    bool mIsLeapSecond;
};

TimeOfDay ReadTimeOfDay(Reader& oReader)
{
    const int lHour = oReader.Digits(2, 0, 23);
    oReader.Mark(":");
    const int lMinute = oReader.Digits(2, 0, 59);
    oReader.Mark(":");
    const int lSecond = oReader.Digits(2, 0, 60);
    return {(lHour * 60 + lMinute) * 60 + lSecond, lSecond == 60};
}

// The seconds that the offset lies ahead of UTC.
std::int64_t ReadOffset(Reader& oReader)
{
    const char lSign = oReader.Mark("Zz+-");
    if (lSign == 'Z' || lSign == 'z')
    {
        return 0;
    }
    const int lHours = oReader.Digits(2, 0, 23);
    oReader.Mark(":");
    const int lMinutes = oReader.Digits(2, 0, 59);
    const std::int64_t lSeconds = (static_cast<std::int64_t>(lHours) * 60 + lMinutes) * 60;
    return lSign == '-' ? -lSeconds : lSeconds;
}

// Whether a month begins here, so that a leap second can just have ended.
bool IsFirstOfMonth(std::int64_t iSeconds)
{
    return iSeconds % gSecondsPerDay == 0 && CivilFromDays(iSeconds / gSecondsPerDay).day() == std::chrono::day(1);
}

} // namespace

DateTime::DateTime() noexcept : mMicroseconds(0) {}

DateTime::DateTime(TimePoint iTimePoint) noexcept
    : mMicroseconds(std::clamp(iTimePoint.time_since_epoch(), Earliest(), Latest()))
{
}

DateTime DateTime::Now() noexcept
{
    return {std::chrono::floor<microseconds>(std::chrono::system_clock::now())};
}

DateTime::TimePoint DateTime::ToTimePoint() const noexcept
{
    return TimePoint(mMicroseconds);
}

QBase::ReturnWString DateTime::ToWString() const
{
    const std::int64_t lSeconds = FloorDivide(mMicroseconds.count(), gMicrosecondsPerSecond);
    const std::int64_t lFraction = mMicroseconds.count() - lSeconds * gMicrosecondsPerSecond;
    const std::int64_t lDays = FloorDivide(lSeconds, gSecondsPerDay);
    const int lSecondOfDay = static_cast<int>(lSeconds - lDays * gSecondsPerDay);
    const std::chrono::year_month_day lDate = CivilFromDays(lDays);
    wchar_t lBuffer[100];
    std::swprintf(lBuffer, 100, L"%04d-%02u-%02uT%02d:%02d:%02d", static_cast<int>(lDate.year()),
                  static_cast<unsigned int>(lDate.month()), static_cast<unsigned int>(lDate.day()), lSecondOfDay / 3600,
                  lSecondOfDay / 60 % 60, lSecondOfDay % 60);
    std::wstring lText(lBuffer);
    if (lFraction != 0)
    {
        std::swprintf(lBuffer, 100, L".%06d", static_cast<int>(lFraction));
        lText += lBuffer;
        lText.erase(lText.find_last_not_of(L'0') + 1);
    }
    lText += L'Z';
    return lText;
}

bool DateTime::FromString(const std::string& iText)
{
    Reader lReader(iText);
    const std::chrono::year_month_day lDate = ReadDate(lReader);
    lReader.Mark("Tt");
    const TimeOfDay lTime = ReadTimeOfDay(lReader);
    const std::int64_t lFraction = lReader.Fraction();
    const std::int64_t lOffset = ReadOffset(lReader);
    if (!lReader.IsGoodAndAtEnd() || !lDate.ok())
    {
        return false;
    }
    const std::int64_t lMidnight = std::chrono::sys_days(lDate).time_since_epoch().count() * gSecondsPerDay;
    const std::int64_t lSeconds = lMidnight + lTime.mSeconds - lOffset;
    const microseconds lMicroseconds(lSeconds * gMicrosecondsPerSecond + lFraction);
    if (lMicroseconds < Earliest() || lMicroseconds > Latest() || (lTime.mIsLeapSecond && !IsFirstOfMonth(lSeconds)))
    {
        return false;
    }
    mMicroseconds = lMicroseconds;
    return true;
}

} // namespace QDataType
