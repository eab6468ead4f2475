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
    DateTime() noexcept;
    DateTime(TimePoint iTimePoint) noexcept;
    static DateTime Now() noexcept;
    TimePoint ToTimePoint() const noexcept;
    operator TimePoint() const noexcept
    {
        return ToTimePoint();
    }
    QBase::ReturnWString ToWString() const;
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
    std::chrono::microseconds mMicroseconds;
};
} // namespace QDataType
#endif
