// An instant in UTC, in microseconds, of the years 0001 to 9999 of the Gregorian calendar. A plain value: copied freely,
// one thread at a time, no failure but std::bad_alloc where a text is returned.

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

    // The instant itself, or the nearest one of the years 0001 to 9999.
    DateTime(TimePoint iTimePoint) noexcept;

    // Returns the current instant.
    static DateTime Now() noexcept;

    TimePoint ToTimePoint() const noexcept;
    operator TimePoint() const noexcept
    {
        return ToTimePoint();
    }

    // Returns the RFC 3339 text in UTC, "2026-11-21T02:49:00Z", with a fraction only when it is not zero and then
    // without trailing zeros.
    QBase::ReturnWString ToWString() const;

    // Reads an RFC 3339 date-time, whose 'T' and 'Z' may be of either case; a blank in place of the 'T' is not accepted.
    // The offset is applied, and what a fraction gives beyond microseconds is cut. A second of 60 is accepted where a
    // leap second can be, in the last minute of a month in UTC, and read as the second that follows. Returns whether the
    // text was one of an instant of the years 0001 to 9999; where not, the value is unchanged. Never throws.
    bool FromString(const std::string& iText);

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
