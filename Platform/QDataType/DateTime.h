// An instant in UTC, in whole microseconds, of the years 0001 to 9999 of the Gregorian calendar, which is used for all
// of them, also for those before it was introduced. Every day has 86,400 seconds, as for the system's clock.
//
// A plain value of eight bytes that is copied freely; one thread at a time uses an object. Nothing fails but the
// operation that returns a text.

#ifndef QDATATYPE_DATETIME_H
#define QDATATYPE_DATETIME_H

#include "QBase/Export.h"
#include "QBase/ReturnWString.h"

#include <chrono>
#include <string>

namespace QDataType
{

class Q8_EXPORT DateTime
{
public:
    using TimePoint = std::chrono::time_point<std::chrono::system_clock, std::chrono::microseconds>;

    // 1970-01-01T00:00:00Z.
    DateTime() noexcept;

    // The instant itself, or, outside the years 0001 to 9999, the nearest one within. Implicit, as is the way back, so
    // that the two types can stand for each other in comparisons and calls.
    DateTime(TimePoint iTimePoint) noexcept;

    // Returns the current instant by the system's clock, cut to microseconds.
    static DateTime Now() noexcept;

    // Return the same instant as a time point.
    TimePoint ToTimePoint() const noexcept;
    operator TimePoint() const noexcept
    {
        return ToTimePoint();
    }

    // Returns the RFC 3339 text in UTC, "2026-11-21T02:49:00Z", with a fraction only when it is not zero and then
    // without trailing zeros, "2026-11-21T02:49:00.25Z". FromString gives the same instant back. Throws std::bad_alloc.
    QBase::ReturnWString ToWString() const;

    // Reads an RFC 3339 date-time and nothing before or after it. 'T' and 'Z' may be of either case; a blank in place
    // of the 'T', which the RFC leaves to the application, is not accepted. The offset is applied; "-00:00" is UTC. A
    // fraction may have any number of digits, and what it gives beyond microseconds is cut.
    //
    // A second of 60 is accepted where a leap second can be, 23:59:60 in UTC on the last day of any month, whatever the
    // offset of the text; no table of the leap seconds that were is kept. It is read as the second that follows.
    //
    // Returns whether the text was the date-time of an instant of the years 0001 to 9999; where not, the value is
    // unchanged. The year 0000 is good where the offset takes the instant into 0001. Never throws.
    bool FromString(const std::string& iText);

    // Earlier is less.
    friend bool operator==(const DateTime& iLeft, const DateTime& iRight) noexcept
    {
        return iLeft.mMicroseconds == iRight.mMicroseconds;
    }
    friend bool operator!=(const DateTime& iLeft, const DateTime& iRight) noexcept
    {
        return iLeft.mMicroseconds != iRight.mMicroseconds;
    }
    friend bool operator<(const DateTime& iLeft, const DateTime& iRight) noexcept
    {
        return iLeft.mMicroseconds < iRight.mMicroseconds;
    }
    friend bool operator<=(const DateTime& iLeft, const DateTime& iRight) noexcept
    {
        return iLeft.mMicroseconds <= iRight.mMicroseconds;
    }
    friend bool operator>(const DateTime& iLeft, const DateTime& iRight) noexcept
    {
        return iLeft.mMicroseconds > iRight.mMicroseconds;
    }
    friend bool operator>=(const DateTime& iLeft, const DateTime& iRight) noexcept
    {
        return iLeft.mMicroseconds >= iRight.mMicroseconds;
    }

private:
    std::chrono::microseconds mMicroseconds; // since 1970-01-01T00:00:00Z
};

} // namespace QDataType

#endif
