#pragma once

namespace Toolkit {

// Converts between a date with a time of day and seconds since 1970.
//
// The zone data of the C library are used throughout: wxDateTime's own conversions are wrong near
// every change of daylight saving. Years go as far as wxDateTime holds their milliseconds, some
// 292 million in either direction.

struct CalendarTime {
    long long year;
    long long month; // 1 to 12
    long long day;   // 1 to 31
    long long hour;
    long long minute;
    long long second;
};

/// Whether the fields name a time that exists on a calendar and a clock; up to two leap seconds do.
bool IsInRange(const CalendarTime& time);

/// Seconds since 1970 of a time in UTC, by the Gregorian calendar. With TZ=right/... leap seconds
/// count.
long long ToSecondsFromUtc(const CalendarTime& time);

/// Seconds since 1970 of a time on the local clock. A time that the clock skips is moved forward;
/// for a time that occurs twice, mktime(3) chooses.
long long ToSecondsFromLocal(const CalendarTime& time);

/// A moment's date and time in UTC, and on the local clock.
CalendarTime ToUtcTime(long long seconds);
CalendarTime ToLocalTime(long long seconds);

/// Moves a date by months, to the last day of a month that is too short, and then by days; the time
/// of day stays. False when it leaves the calendar.
bool MoveDate(CalendarTime& time, long long months, long long days);

} // namespace Toolkit
