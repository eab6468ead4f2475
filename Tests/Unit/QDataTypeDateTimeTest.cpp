#include "QDataType/DateTime.h"

#include "Tests/Support/Expect.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

namespace
{

using QDataType::DateTime;
using std::chrono::microseconds;
using TimePoint = std::chrono::time_point<std::chrono::system_clock, microseconds>;
using namespace std::string_literals;

DateTime At(std::int64_t iMicroseconds)
{
    return TimePoint(microseconds(iMicroseconds));
}

std::int64_t Microseconds(const DateTime& iDateTime)
{
    return iDateTime.ToTimePoint().time_since_epoch().count();
}

std::string Narrow(const DateTime& iDateTime)
{
    const std::wstring lText = Support::Text(iDateTime.ToWString());
    return std::string(lText.begin(), lText.end());
}

const std::int64_t gSecond = 1'000'000;
const std::int64_t gFirst = -62'135'596'800 * gSecond;    // 0001-01-01T00:00:00Z
const std::int64_t gLast = 253'402'300'800 * gSecond - 1; // the last microsecond of 9999

// Instants and their texts, worked out by hand or with date(1).
struct Instant
{
    std::int64_t mMicroseconds;
    const char* mText;
};

const Instant gInstants[] = {
    {0, "1970-01-01T00:00:00Z"},
    {1, "1970-01-01T00:00:00.000001Z"},
    {10, "1970-01-01T00:00:00.00001Z"},
    {100'000, "1970-01-01T00:00:00.1Z"},
    {120'000, "1970-01-01T00:00:00.12Z"},
    {999'999, "1970-01-01T00:00:00.999999Z"},
    {gSecond, "1970-01-01T00:00:01Z"},
    {-1, "1969-12-31T23:59:59.999999Z"},
    {-500'000, "1969-12-31T23:59:59.5Z"},
    {-gSecond, "1969-12-31T23:59:59Z"},
    {-gSecond - 1, "1969-12-31T23:59:58.999999Z"},
    {86'399 * gSecond, "1970-01-01T23:59:59Z"},
    {86'400 * gSecond, "1970-01-02T00:00:00Z"},
    {951'782'400 * gSecond, "2000-02-29T00:00:00Z"},
    {951'868'800 * gSecond, "2000-03-01T00:00:00Z"},
    {1'000'000'000 * gSecond, "2001-09-09T01:46:40Z"},
    {2'147'483'647 * gSecond, "2038-01-19T03:14:07Z"},
    {2'147'483'648 * gSecond, "2038-01-19T03:14:08Z"},
    {-2'203'891'200 * gSecond, "1900-03-01T00:00:00Z"},
    {-2'203'977'600 * gSecond, "1900-02-28T00:00:00Z"},
    {1'795'229'340 * gSecond, "2026-11-21T02:49:00Z"},
    {gFirst, "0001-01-01T00:00:00Z"},
    {gFirst + 1, "0001-01-01T00:00:00.000001Z"},
    {gLast, "9999-12-31T23:59:59.999999Z"},
    {gLast - 999'999, "9999-12-31T23:59:59Z"},
};

TEST(DateTime, ToWStringWritesTheShortestForm)
{
    for (const Instant& lInstant : gInstants)
    {
        EXPECT_EQ(lInstant.mText, Narrow(At(lInstant.mMicroseconds)));
    }
}

TEST(DateTime, FromStringReadsWhatToWStringWrites)
{
    for (const Instant& lInstant : gInstants)
    {
        DateTime lDateTime = At(42);
        EXPECT_TRUE(lDateTime.FromString(lInstant.mText)) << lInstant.mText;
        EXPECT_EQ(lInstant.mMicroseconds, Microseconds(lDateTime)) << lInstant.mText;
    }
}

TEST(DateTime, EveryDayOfFourCenturiesAndTheEndsSurvivesTheRoundTrip)
{
    const std::int64_t lDay = 86'400 * gSecond;
    for (std::int64_t lMicroseconds = gFirst; lMicroseconds <= gLast; lMicroseconds += 25 * lDay + 4'321'987'654)
    {
        DateTime lDateTime;
        ASSERT_TRUE(lDateTime.FromString(Narrow(At(lMicroseconds)))) << lMicroseconds;
        ASSERT_EQ(lMicroseconds, Microseconds(lDateTime));
    }
}

// Texts of every form, and the text of the instant in UTC.
struct Form
{
    const char* mText;
    const char* mInUTC;
};

const Form gForms[] = {
    // Fractions of any length; what microseconds cannot hold is cut, not rounded.
    {"1985-04-12T23:20:50.52Z", "1985-04-12T23:20:50.52Z"},
    {"1985-04-12T23:20:50.0Z", "1985-04-12T23:20:50Z"},
    {"1985-04-12T23:20:50.520000000Z", "1985-04-12T23:20:50.52Z"},
    {"1985-04-12T23:20:50.1234567Z", "1985-04-12T23:20:50.123456Z"},
    {"1985-04-12T23:20:50.9999999999999999999999999999999999999999Z", "1985-04-12T23:20:50.999999Z"},
    {"1985-04-12T23:20:50.0000009Z", "1985-04-12T23:20:50Z"},
    {"1969-12-31T23:59:59.0000009Z", "1969-12-31T23:59:59Z"}, // cut towards the past before 1970 too
    // Offsets.
    {"1996-12-19T16:39:57-08:00", "1996-12-20T00:39:57Z"},
    {"1937-01-01T12:00:27.87+00:20", "1937-01-01T11:40:27.87Z"},
    {"2026-11-21T02:49:00+00:00", "2026-11-21T02:49:00Z"},
    {"2026-11-21T02:49:00-00:00", "2026-11-21T02:49:00Z"},
    {"2026-11-21T02:49:00+05:45", "2026-11-20T21:04:00Z"},
    {"2026-11-21T02:49:00+23:59", "2026-11-20T02:50:00Z"},
    {"2026-11-21T02:49:00-23:59", "2026-11-22T02:48:00Z"},
    {"2000-03-01T00:30:00+01:00", "2000-02-29T23:30:00Z"},
    {"1900-03-01T00:30:00+01:00", "1900-02-28T23:30:00Z"},
    {"2025-12-31T23:30:00-01:00", "2026-01-01T00:30:00Z"},
    // Either case.
    {"2026-11-21t02:49:00z", "2026-11-21T02:49:00Z"},
    {"2026-11-21t02:49:00.5+01:00", "2026-11-21T01:49:00.5Z"},
    // Days at the ends of months.
    {"2024-02-29T12:00:00Z", "2024-02-29T12:00:00Z"},
    {"2000-02-29T12:00:00Z", "2000-02-29T12:00:00Z"},
    {"2023-04-30T12:00:00Z", "2023-04-30T12:00:00Z"},
    {"2023-01-31T12:00:00Z", "2023-01-31T12:00:00Z"},
    // Leap seconds: the last minute of a month in UTC, seen from anywhere.
    {"1990-12-31T23:59:60Z", "1991-01-01T00:00:00Z"},
    {"1990-12-31T15:59:60-08:00", "1991-01-01T00:00:00Z"},
    {"1991-01-01T05:29:60+05:30", "1991-01-01T00:00:00Z"},
    {"2015-06-30T23:59:60Z", "2015-07-01T00:00:00Z"},
    {"2015-06-30T23:59:60.75Z", "2015-07-01T00:00:00.75Z"},
    {"2015-07-01T01:59:60+02:00", "2015-07-01T00:00:00Z"},
    {"2026-03-31T23:59:60Z", "2026-04-01T00:00:00Z"},
    {"2024-02-29T23:59:60Z", "2024-03-01T00:00:00Z"},
    {"1960-06-30T23:59:60Z", "1960-07-01T00:00:00Z"},
    // The ends of what there is, and texts from outside whose instants are within.
    {"0001-01-01T00:00:00Z", "0001-01-01T00:00:00Z"},
    {"0001-01-01T23:59:00+23:59", "0001-01-01T00:00:00Z"},
    {"0000-12-31T23:59:00-00:01", "0001-01-01T00:00:00Z"},
    {"0000-12-31T23:59:60Z", "0001-01-01T00:00:00Z"},
    {"9999-12-31T23:59:59.9999999Z", "9999-12-31T23:59:59.999999Z"},
    {"9999-12-31T00:00:59-23:59", "9999-12-31T23:59:59Z"},
};

TEST(DateTime, FromStringReadsEveryForm)
{
    for (const Form& lForm : gForms)
    {
        DateTime lDateTime = At(42);
        EXPECT_TRUE(lDateTime.FromString(lForm.mText)) << lForm.mText;
        EXPECT_EQ(lForm.mInUTC, Narrow(lDateTime)) << lForm.mText;
    }
}

const std::string gNoDateTimes[] = {
    "",
    " ",
    "2026",
    "2026-11-21",
    "02:49:00Z",
    "2026-11-21T02:49Z",       // no seconds
    "2026-11-21T02:49:00",     // no offset
    "2026-11-21T02:49:00.5",   //
    "2026-11-21 02:49:00Z",    // something else for the 'T'
    "2026-11-21_02:49:00Z",    //
    "2026-11-2102:49:00Z",     //
    " 2026-11-21T02:49:00Z",   // something before
    "2026-11-21T02:49:00Z ",   // something after
    "2026-11-21T02:49:00ZZ",   //
    "2026-11-21T02:49:00Z\n",  //
    "2026-11-21T02:49:00Z\0"s, //
    "2026-11-21T02:49:00\0Z"s, // a zero character within
    "2026-11-21\0"
    "02:49:00Z"s,
    "2026-11-21T02:49:00+01:00Z", // two offsets
    "2026/11/21T02:49:00Z",       // other marks
    "2026-11-21T02.49.00Z",       //
    "20261121T024900Z",           // no marks
    "26-11-21T02:49:00Z",         // too few digits
    "2026-1-21T02:49:00Z",        //
    "2026-11-1T02:49:00Z",        //
    "2026-11-21T2:49:00Z",        //
    "2026-11-21T02:9:00Z",        //
    "2026-11-21T02:49:0Z",        //
    "12026-11-21T02:49:00Z",      // too many
    "2026-011-21T02:49:00Z",      //
    "2026-11-021T02:49:00Z",      //
    "2026-11-21T002:49:00Z",      //
    "2026-11-21T02:049:00Z",      //
    "2026-11-21T02:49:000Z",      //
    "+2026-11-21T02:49:00Z",      // a sign
    "-2026-11-21T02:49:00Z",      //
    "2026-11-21T02:49:+1Z",       //
    "2026-11-21T02:49: 1Z",       //
    "202x-11-21T02:49:00Z",       // letters
    "2026-Nov-21T02:49:00Z",      //
    "2026-W47-6T02:49:00Z",       // a week
    "2026-325T02:49:00Z",         // a day of the year
    "2026-00-21T02:49:00Z",       // months
    "2026-13-21T02:49:00Z",       //
    "2026-99-21T02:49:00Z",       //
    "2026-11-00T02:49:00Z",       // days
    "2026-01-32T02:49:00Z",       //
    "2026-04-31T02:49:00Z",       //
    "2026-06-31T02:49:00Z",       //
    "2026-09-31T02:49:00Z",       //
    "2026-11-31T02:49:00Z",       //
    "2026-02-29T02:49:00Z",       //
    "2024-02-30T02:49:00Z",       //
    "1900-02-29T02:49:00Z",       //
    "2100-02-29T02:49:00Z",       //
    "2026-11-21T24:00:00Z",       // hours
    "2026-11-21T25:00:00Z",       //
    "2026-11-21T02:60:00Z",       // minutes
    "2026-11-21T02:99:00Z",       //
    "2026-11-21T02:49:61Z",       // seconds
    "2026-11-21T02:49:99Z",       //
    "2026-12-31T23:59:61Z",       //
    "2026-11-21T02:49:00.Z",      // fractions
    "2026-11-21T02:49:00,5Z",     //
    "2026-11-21T02:49:00.5.5Z",   //
    "2026-11-21T02:49:00.-5Z",    //
    "2026-11-21T02:49:00. 5Z",    //
    "2026-11-21T02:49.5Z",        //
    "2026-11-21T02:49:00+01",     // offsets
    "2026-11-21T02:49:00+0100",   //
    "2026-11-21T02:49:00+1:00",   //
    "2026-11-21T02:49:00+01:0",   //
    "2026-11-21T02:49:00+24:00",  //
    "2026-11-21T02:49:00-24:00",  //
    "2026-11-21T02:49:00+01:60",  //
    "2026-11-21T02:49:00+-1:00",  //
    "2026-11-21T02:49:00 Z",      //
    "2026-11-21T02:49:00UTC",     //
    "2026-11-21T02:49:00A",       //
    "2026-11-21T02:49:00\xE2\x88\x92"
    "01:00",                     // a minus sign that is no hyphen
    "2026-11-21T02:49:60Z",      // leap seconds in the middle of an hour
    "2026-12-31T22:59:60Z",      // of a day
    "2026-12-31T00:00:60Z",      //
    "2026-12-31T23:58:60Z",      //
    "2026-12-30T23:59:60Z",      // of a month
    "2026-02-27T23:59:60Z",      //
    "2024-02-28T23:59:60Z",      //
    "2026-12-31T23:59:60-08:00", // in UTC another time
    "2026-12-31T23:59:60+00:01", //
    "2026-12-31T15:59:60+08:00", //
    "0000-01-01T00:00:00Z",      // outside
    "0000-12-31T23:59:59Z",      //
    "0001-01-01T00:00:00+00:01", //
    "0001-01-01T23:58:59.999999+23:59",
    "9999-12-31T23:59:60Z",      //
    "9999-12-31T23:59:59-00:01", //
    "9999-12-31T00:01:00-23:59", //
};

TEST(DateTime, FromStringOfAnythingElseReturnsFalseAndLeavesTheValue)
{
    for (const std::string& lText : gNoDateTimes)
    {
        DateTime lDateTime = At(42);
        EXPECT_FALSE(lDateTime.FromString(lText)) << lText;
        EXPECT_EQ(42, Microseconds(lDateTime)) << lText;
    }
}

TEST(DateTime, FromStringOfEveryBeginningReturnsFalse)
{
    const std::string lWhole = "2026-11-21T02:49:00.123456+01:30";
    DateTime lDateTime = At(42);
    for (std::size_t lLength = 0; lLength < lWhole.size(); ++lLength)
    {
        EXPECT_FALSE(lDateTime.FromString(lWhole.substr(0, lLength))) << lLength;
    }
    EXPECT_EQ(42, Microseconds(lDateTime));
    EXPECT_TRUE(lDateTime.FromString(lWhole));
    EXPECT_EQ("2026-11-21T01:19:00.123456Z", Narrow(lDateTime));
}

TEST(DateTime, FromStringKnowsTheLengthOfEveryMonth)
{
    const int lDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    for (int lMonth = 1; lMonth <= 12; ++lMonth)
    {
        for (int lDay = 1; lDay <= 31; ++lDay)
        {
            char lText[32];
            std::snprintf(lText, sizeof lText, "2023-%02d-%02dT00:00:00Z", lMonth, lDay);
            EXPECT_EQ(lDay <= lDays[lMonth - 1], DateTime().FromString(lText)) << lText;
        }
    }
}

TEST(DateTime, DefaultIsTheEpoch)
{
    EXPECT_EQ(0, Microseconds(DateTime()));
    EXPECT_EQ("1970-01-01T00:00:00Z", Narrow(DateTime()));
}

TEST(DateTime, GoesFromAndToTimePoints)
{
    const TimePoint lTimePoint(microseconds(1'795'229'340'250'000));
    const DateTime lDateTime = lTimePoint;
    EXPECT_EQ("2026-11-21T02:49:00.25Z", Narrow(lDateTime));
    EXPECT_EQ(lTimePoint, lDateTime.ToTimePoint());
    const TimePoint lBack = lDateTime;
    EXPECT_EQ(lTimePoint, lBack);
    EXPECT_TRUE(lDateTime == lTimePoint);
    EXPECT_TRUE(lTimePoint == lDateTime);
    static_assert(std::is_same_v<TimePoint, DateTime::TimePoint>);
    static_assert(sizeof(DateTime) == 8);
    static_assert(std::is_trivially_copyable_v<DateTime>);
}

TEST(DateTime, TimePointOutsideTheYearsGivesTheNearest)
{
    EXPECT_EQ(gFirst, Microseconds(At(gFirst)));
    EXPECT_EQ(gFirst, Microseconds(At(gFirst - 1)));
    EXPECT_EQ(gFirst, Microseconds(TimePoint::min()));
    EXPECT_EQ(gLast, Microseconds(At(gLast)));
    EXPECT_EQ(gLast, Microseconds(At(gLast + 1)));
    EXPECT_EQ(gLast, Microseconds(TimePoint::max()));
}

TEST(DateTime, NowLiesBetweenTwoLooksAtTheClock)
{
    const auto lBefore = std::chrono::floor<microseconds>(std::chrono::system_clock::now());
    const DateTime lNow = DateTime::Now();
    const auto lAfter = std::chrono::floor<microseconds>(std::chrono::system_clock::now());
    EXPECT_LE(lBefore, lNow.ToTimePoint());
    EXPECT_LE(lNow.ToTimePoint(), lAfter);
}

TEST(DateTime, ComparesByTime)
{
    const DateTime lEarly = At(-1);
    const DateTime lSame = At(-1);
    const DateTime lLate = At(1);
    EXPECT_TRUE(lEarly == lSame);
    EXPECT_FALSE(lEarly == lLate);
    EXPECT_TRUE(lEarly != lLate);
    EXPECT_FALSE(lEarly != lSame);
    EXPECT_TRUE(lEarly < lLate);
    EXPECT_FALSE(lLate < lEarly);
    EXPECT_FALSE(lEarly < lSame);
    EXPECT_TRUE(lEarly <= lSame);
    EXPECT_FALSE(lLate <= lEarly);
    EXPECT_TRUE(lLate > lEarly);
    EXPECT_FALSE(lEarly > lSame);
    EXPECT_TRUE(lEarly >= lSame);
    EXPECT_FALSE(lEarly >= lLate);
}

} // namespace
