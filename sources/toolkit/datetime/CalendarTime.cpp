#include "toolkit/datetime/CalendarTime.Private.h"

#include <algorithm>
#include <chrono>
#include <ctime>

namespace Toolkit {
namespace {

constexpr long long c_secondsPerMinute = 60;
constexpr long long c_secondsPerHour = 60 * c_secondsPerMinute;
constexpr long long c_secondsPerDay = 24 * c_secondsPerHour;

// No zone is further from Greenwich than this.
constexpr long long c_largestOffset = 16 * c_secondsPerHour;

// After so many years the calendar begins anew.
constexpr long long c_yearsPerCycle = 400;
constexpr long long c_daysPerCycle = 146097;

// The years that the standard calendar knows.
constexpr long long c_firstYear = -32767;
constexpr long long c_lastYear = 32767;

std::tm LocalFields(long long seconds)
{
    const std::time_t time = seconds;
    std::tm fields{};
    ::localtime_r(&time, &fields);
    return fields;
}

CalendarTime FromFields(const std::tm& fields)
{
    return {fields.tm_year + 1900LL, fields.tm_mon + 1LL, fields.tm_mday,
            fields.tm_hour,          fields.tm_min,       fields.tm_sec};
}

int DaysInMonth(long long year, long long month)
{
    using namespace std::chrono;
    const year_month_day_last last(
        std::chrono::year(static_cast<int>(year)),
        month_day_last(std::chrono::month(static_cast<unsigned>(month))));
    return static_cast<int>(static_cast<unsigned>(last.day()));
}

} // namespace

bool IsInRange(const CalendarTime& time)
{
    return time.year >= c_firstYear && time.year <= c_lastYear && time.month >= 1 &&
           time.month <= 12 && time.day >= 1 && time.day <= DaysInMonth(time.year, time.month) &&
           time.hour >= 0 && time.hour < 24 && time.minute >= 0 && time.minute < 60 &&
           time.second >= 0 && time.second < 62;
}

long long SecondsOfUtc(const CalendarTime& time)
{
    using namespace std::chrono;
    // The standard calendar knows some ten thousand years; all others are like one of its first.
    const long long cycle = time.year / c_yearsPerCycle - (time.year < 0 ? 1 : 0);
    const sys_days first(year(static_cast<int>(time.year - cycle * c_yearsPerCycle)) /
                         month(static_cast<unsigned>(time.month)) / day(1));
    const long long days = first.time_since_epoch().count() + cycle * c_daysPerCycle;
    return (days + time.day - 1) * c_secondsPerDay + time.hour * c_secondsPerHour +
           time.minute * c_secondsPerMinute + time.second;
}

long long SecondsOfLocal(const CalendarTime& time)
{
    // Where the clock does not change on that day, the difference to UTC tells all, without the
    // look at the zone file that mktime() takes on every call when TZ is not set.
    const long long asUtc = SecondsOfUtc(time);
    const long before = LocalFields(asUtc - c_largestOffset).tm_gmtoff;
    const long after = LocalFields(asUtc + c_largestOffset).tm_gmtoff;
    if (before == after)
        return asUtc - before;

    std::tm fields{};
    fields.tm_year = static_cast<int>(time.year - 1900);
    fields.tm_mon = static_cast<int>(time.month - 1);
    fields.tm_mday = static_cast<int>(time.day);
    fields.tm_hour = static_cast<int>(time.hour);
    fields.tm_min = static_cast<int>(time.minute);
    fields.tm_sec = static_cast<int>(time.second);
    fields.tm_isdst = -1;
    return ::mktime(&fields);
}

bool MoveDate(CalendarTime& time, long long months, long long days)
{
    const long long month = time.year * 12 + time.month - 1 + months;
    time.year = month >= 0 ? month / 12 : (month - 11) / 12;
    time.month = month - time.year * 12 + 1;
    if (time.year < c_firstYear || time.year > c_lastYear)
        return false;
    time.day = std::min<long long>(time.day, DaysInMonth(time.year, time.month));

    // Days are counted at midnight in UTC, where each has its 24 hours.
    const CalendarTime midnight{time.year, time.month, time.day, 0, 0, 0};
    const CalendarTime moved = UtcOfSeconds(SecondsOfUtc(midnight) + days * c_secondsPerDay);
    time.year = moved.year;
    time.month = moved.month;
    time.day = moved.day;
    return time.year >= c_firstYear && time.year <= c_lastYear;
}

CalendarTime UtcOfSeconds(long long seconds)
{
    const std::time_t time = seconds;
    std::tm fields{};
    ::gmtime_r(&time, &fields);
    return FromFields(fields);
}

CalendarTime LocalOfSeconds(long long seconds)
{
    return FromFields(LocalFields(seconds));
}

} // namespace Toolkit
