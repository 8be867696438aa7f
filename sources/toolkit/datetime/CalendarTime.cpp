#include "toolkit/datetime/CalendarTime.Private.h"

#include <algorithm>
#include <chrono>
#include <ctime>

namespace Toolkit {
namespace {

constexpr long long c_secondsPerMinute = 60;
constexpr long long c_secondsPerHour = 60 * c_secondsPerMinute;
constexpr long long c_secondsPerDay = 24 * c_secondsPerHour;

// Larger than the offset of any zone: TZ accepts offsets of up to 24:59:59.
constexpr long long c_maxOffsetSeconds = 25 * c_secondsPerHour;

// The calendar repeats after this many years, which have this many days.
constexpr long long c_yearsPerCycle = 400;
constexpr long long c_daysPerCycle = 146097;

// The first and the last year that wxDateTime represents in full.
constexpr long long c_firstYear = -292275054;
constexpr long long c_lastYear = 292278993;

// Returns the year between 1970 and 2369 with the same calendar. std::chrono supports only 65,535
// years.
std::chrono::year FindSimilarYear(long long year)
{
    constexpr long long first = 1970;
    const long long inCycle =
        ((year - first) % c_yearsPerCycle + c_yearsPerCycle) % c_yearsPerCycle;
    return std::chrono::year(static_cast<int>(first + inCycle));
}

// Counts the days since 1970, by the Gregorian calendar.
long long CountDays(long long year, long long month, long long day)
{
    using namespace std::chrono;
    const std::chrono::year similar = FindSimilarYear(year);
    const sys_days first(similar / std::chrono::month(static_cast<unsigned>(month)) / 1);
    const long long cycles = (year - static_cast<int>(similar)) / c_yearsPerCycle;
    return first.time_since_epoch().count() + cycles * c_daysPerCycle + day - 1;
}

// Counts the seconds since 1970, without leap seconds.
long long CountPlainSeconds(const CalendarTime& time)
{
    return CountDays(time.year, time.month, time.day) * c_secondsPerDay +
           time.hour * c_secondsPerHour + time.minute * c_secondsPerMinute + time.second;
}

std::tm ToLocalFields(long long seconds)
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

std::tm ToFields(const CalendarTime& time)
{
    std::tm fields{};
    fields.tm_year = static_cast<int>(time.year - 1900);
    fields.tm_mon = static_cast<int>(time.month - 1);
    fields.tm_mday = static_cast<int>(time.day);
    fields.tm_hour = static_cast<int>(time.hour);
    fields.tm_min = static_cast<int>(time.minute);
    fields.tm_sec = static_cast<int>(time.second);
    fields.tm_isdst = -1;
    return fields;
}

// Whether the zone ignores leap seconds at this time: the local time in seconds, less its minutes
// and seconds, is then a whole number of hours. In the zones of TZ=right/..., which count leap
// seconds, it is not: there have been some since 1972, but fewer than 3600.
bool IgnoresLeapSeconds(const std::tm& fields, long long seconds)
{
    const long long fromFullHour =
        seconds + fields.tm_gmtoff - fields.tm_min * c_secondsPerMinute - fields.tm_sec;
    return fromFullHour % c_secondsPerHour == 0;
}

int CountDaysInMonth(long long year, long long month)
{
    using namespace std::chrono;
    const year_month_day_last last(
        FindSimilarYear(year), month_day_last(std::chrono::month(static_cast<unsigned>(month))));
    return static_cast<int>(static_cast<unsigned>(last.day()));
}

// Moves by whole cycles first, because std::chrono cannot represent a date billions of days away.
void MoveDays(CalendarTime& time, long long days)
{
    using namespace std::chrono;
    time.year += days / c_daysPerCycle * c_yearsPerCycle;
    const std::chrono::year similar = FindSimilarYear(time.year);
    const sys_days from(similar / month(static_cast<unsigned>(time.month)) /
                        day(static_cast<unsigned>(time.day)));
    const year_month_day moved(from + std::chrono::days(days % c_daysPerCycle));
    time.year += static_cast<int>(moved.year()) - static_cast<int>(similar);
    time.month = static_cast<unsigned>(moved.month());
    time.day = static_cast<unsigned>(moved.day());
}

} // namespace

bool IsInRange(const CalendarTime& time)
{
    return time.year >= c_firstYear && time.year <= c_lastYear && time.month >= 1 &&
           time.month <= 12 && time.day >= 1 &&
           time.day <= CountDaysInMonth(time.year, time.month) && time.hour >= 0 &&
           time.hour < 24 && time.minute >= 0 && time.minute < 60 && time.second >= 0 &&
           time.second < 62;
}

long long ToSecondsFromUtc(const CalendarTime& time)
{
    const long long plain = CountPlainSeconds(time);
    const std::time_t seconds = plain;
    std::tm fields{};
    if (::gmtime_r(&seconds, &fields) && IgnoresLeapSeconds(fields, plain))
        return plain;
    fields = ToFields(time);
    return ::timegm(&fields);
}

long long ToSecondsFromLocal(const CalendarTime& time)
{
    // ParseIso/tz:0: mktime(), which checks the zone file on every call if TZ is not set, takes 17
    // times as long. Subtracting the zone's UTC offset is enough if the offset is the same before
    // and after the time.
    const long long asUtc = CountPlainSeconds(time);
    const std::tm before = ToLocalFields(asUtc - c_maxOffsetSeconds);
    const std::tm after = ToLocalFields(asUtc + c_maxOffsetSeconds);
    if (before.tm_gmtoff == after.tm_gmtoff &&
        IgnoresLeapSeconds(after, asUtc + c_maxOffsetSeconds))
        return asUtc - before.tm_gmtoff;
    std::tm fields = ToFields(time);
    return ::mktime(&fields);
}

bool MoveDate(CalendarTime& time, long long months, long long days)
{
    const long long monthCount = time.year * 12 + time.month - 1 + months;
    time.year = monthCount >= 0 ? monthCount / 12 : (monthCount - 11) / 12;
    time.month = monthCount - time.year * 12 + 1;
    if (time.year < c_firstYear || time.year > c_lastYear)
        return false;
    time.day = std::min<long long>(time.day, CountDaysInMonth(time.year, time.month));

    MoveDays(time, days);
    return time.year >= c_firstYear && time.year <= c_lastYear;
}

CalendarTime ToUtcTime(long long seconds)
{
    const std::time_t time = seconds;
    std::tm fields{};
    ::gmtime_r(&time, &fields);
    return FromFields(fields);
}

CalendarTime ToLocalTime(long long seconds)
{
    return FromFields(ToLocalFields(seconds));
}

} // namespace Toolkit
